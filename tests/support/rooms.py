"""Rooms, views, tiles and things to draw."""

import larkspur

from support.host import Instance, Plain

VIEW_MEMBERS = (
    "view_xview",
    "view_yview",
    "view_object",
    "view_hborder",
    "view_vborder",
    "view_wview",
    "view_hview",
    "view_xport",
    "view_yport",
    "view_wport",
    "view_hport",
)


def float_list(values):
    """A Floatlist8 of up to eight values, 0 for the others."""
    result = larkspur.Floatlist8()
    for i, value in enumerate(values):
        result[i] = value
    return result


def make_room(**members):
    """A GMRoom without views, tiles and objects, and whatever members are given."""
    room = larkspur.GMRoom()
    room.tiles = []
    room.drawn_objects = []
    for name, value in members.items():
        setattr(room, name, value)
    return room


def set_view(room, view, **values):
    """Sets elements of the view members, named without their prefix: xview=5."""
    for name, value in values.items():
        getattr(room, "view_" + name)[view] = value


# For each number of views: the first ones are visible. Made once, as rooms keep it when they die.
FIRST_VISIBLE = [tuple(i < views for i in range(8)) for views in range(9)]


def make_view_room(views=1, **members):
    """A GMRoom of 800 x 600 whose first `views` views are visible: each follows nothing and shows
    320 x 240 pixels of the room one to one at the display's origin."""
    room = make_room(
        view_enabled=1, room_width=800, room_height=600, view_visible=FIRST_VISIBLE[views]
    )
    for name in VIEW_MEMBERS:
        setattr(room, name, float_list([]))
    for view in range(8):
        set_view(room, view, object=-1, wview=320, hview=240, wport=320, hport=240)
    for name, value in members.items():
        setattr(room, name, value)
    return room


def make_background(surface):
    background = larkspur.BackgroundData()
    background.surf = surface
    return background


def make_tile(x=0, y=0, background_idx=0, tilex=0, tiley=0, w=16, h=16):
    tile = larkspur.RoomTileData()
    for name, value in locals().items():
        if name != "tile":
            setattr(tile, name, value)
    return tile


class Drawable(object):
    """An object that a room without views draws: writes its name into a list, then acts."""

    def __init__(self, log, name, action=None):
        self.log, self.name, self.action = log, name, action

    def Draw(self):
        self.log.append(self.name)
        if self.action is not None:
            self.action()


SPRITE_ATTRIBUTES = (
    "sprite_index",
    "image_index",
    "x",
    "y",
    "image_xscale",
    "image_yscale",
    "image_angle",
    "image_blend",
    "image_alpha",
)


def make_instance(py_Draw=1, **attributes):
    """An instance with distinct values in its image attributes, drawn with its sprite."""
    values = dict((name, (name, object())) for name in SPRITE_ATTRIBUTES)
    values.update(attributes)
    if py_Draw is not None:
        values["py_Draw"] = py_Draw
    return Instance(**values)


def compiled(source):
    """Draw code as the host compiles it."""
    return compile(source, "<draw code>", "exec")


def object_with_draw_events(*sources):
    """An object resource whose draw event has these actions."""
    events = [[] for _ in range(9)]
    events[8] = [Plain(python=compiled(source)) for source in sources]
    return Plain(py_objectdata=Plain(events=events, name="object"), instances=[], children=[])
