"""What a game is made of: its lists of resources, object kinds and their events."""

import os

import gm6
import gmapi
import larkspur
import pygame

(
    EVENT_CREATE,
    EVENT_DESTROY,
    EVENT_ALARM,
    EVENT_STEP,
    EVENT_COLLISION,
    EVENT_KEYBOARD,
    EVENT_MOUSE,
    EVENT_OTHER,
    EVENT_DRAW,
    EVENT_KEYPRESS,
    EVENT_KEYRELEASE,
) = range(11)

# These are told apart further: by alarm, other object, key or mouse button. The rest are one
# list of actions each, as the renderer reads the draw event.
KEYED_EVENTS = (
    EVENT_ALARM,
    EVENT_COLLISION,
    EVENT_KEYBOARD,
    EVENT_MOUSE,
    EVENT_OTHER,
    EVENT_KEYPRESS,
    EVENT_KEYRELEASE,
)

# Keys of EVENT_MOUSE and EVENT_OTHER.
MOUSE_LEFT_PRESS, MOUSE_RIGHT_PRESS, MOUSE_LEFT_RELEASE, MOUSE_RIGHT_RELEASE = 4, 5, 7, 8
OTHER_ROOM_START, OTHER_ROOM_END = 4, 5


class Game(object):
    """The resource lists. A resource's index in its list is its number everywhere."""

    def __init__(self):
        self.sprites = []
        self.backgrounds = []
        self.rooms = []
        self.objects = []

    def add_sprite(self, name, images, origin=(0, 0)):
        """Make a sprite of surfaces of one size, publish it in gmapi and return it."""
        sprite = larkspur.GMSprite()
        sprite.name = name
        sprite.xorigin, sprite.yorigin = origin
        set_sprite_images(sprite, images)
        return self._publish(self.sprites, sprite)

    def add_background(self, name, surface):
        """Make a background of a surface, publish it in gmapi and return it."""
        background = larkspur.BackgroundData()
        background.name = name
        set_background_image(background, surface)
        return self._publish(self.backgrounds, background)

    def add_object(self, name, **settings):
        """Make an object kind (settings as of GameObject), publish and return it."""
        return self._publish(self.objects, GameObject(name, **settings))

    def add_room(self, name, width, height):
        """Make a room with one full-size view (switched off), publish and return it."""
        room = larkspur.GMRoom()
        room.name = name
        room.room_width, room.room_height = width, height
        room.room_speed = 60
        room.instances = []
        room.tiles = []
        room.view_visible = [0] * 8
        for member in VIEW_MEMBERS:
            setattr(room, member, larkspur.Floatlist8())
        for view in range(8):
            room.view_object[view] = -1
        return self._publish(self.rooms, room)

    def _publish(self, resources, resource):
        resources.append(resource)
        gmapi.__dict__[resource.name] = resource
        return resource


game = Game()

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


def set_view(room, view, source, port, follow=None, border=(0, 0)):
    """Show the room's rectangle `source` in the screen's rectangle `port`.

    Both are (x, y, width, height). With an object kind in `follow`, the view keeps that kind's
    first instance `border` pixels from its top left corner.
    """
    room.view_enabled = 1
    room.view_visible[view] = 1
    room.numviews = max(room.numviews, view + 1)
    room.view_object[view] = -1 if follow is None else follow.index
    for kind, rectangle in (("view", source), ("port", port)):
        for side, value in zip("xywh", rectangle):
            getattr(room, "view_%s%s" % (side, kind))[view] = value
    room.view_hborder[view], room.view_vborder[view] = border


class BackgroundSlot(object):
    """One of a room's eight background slots (bg0 to bg7), as the room's author sets it.

    `parallax` is the share of the view's horizontal movement that the picture follows: 0.0
    stands still in the room, 1.0 stands still on the screen. Speeds are pixels per step.
    """

    def __init__(
        self,
        background,
        x=0,
        y=0,
        htiled=False,
        vtiled=False,
        stretch=False,
        hspeed=0.0,
        vspeed=0.0,
        parallax=0.0,
        alpha=1.0,
        blend=0xFFFFFF,
    ):
        self.background = background
        self.x, self.y = x, y
        self.htiled, self.vtiled, self.stretch = htiled, vtiled, stretch
        self.hspeed, self.vspeed = hspeed, vspeed
        self.parallax = parallax
        self.alpha, self.blend = alpha, blend


class Placement(object):
    """An instance that a room starts with. `settings` are set on it before its create event."""

    def __init__(self, game_object, x, y, **settings):
        self.game_object = game_object
        self.x, self.y = x, y
        self.settings = settings


class Action(object):
    """A piece of game code; `python` is its compiled form, run in gmapi's dictionary."""

    def __init__(self, name, source):
        self.source = source
        self.python = compile(source, "<%s>" % name, "exec")


class ObjectData(object):
    """The events of an object kind: eleven entries, numbered by the EVENT_ constants."""

    def __init__(self, name, parent=None):
        self.name = name
        self.events = [{} if kind in KEYED_EVENTS else [] for kind in range(11)]
        if parent is not None:
            self.events = [type(actions)(actions) for actions in parent.events]


class GameObject(object):
    """An object kind: what its instances look like and what they do.

    A child takes over its parent's events as they are when the child is made. `children` and
    `instances` are what the renderer searches for the instance that a view follows.
    """

    def __init__(
        self, name, sprite=None, depth=0, visible=True, solid=False, still=False, parent=None
    ):
        self.name = name
        self.index = len(gm6.game.objects)
        self.sprite = sprite
        self.depth = depth
        self.visible = visible
        self.solid = solid
        self.still = still  # never moves by itself
        self.parent = parent
        self.children = []
        self.instances = larkspur.InstanceList()
        self.py_objectdata = ObjectData(name, parent and parent.py_objectdata)
        if parent is not None:
            parent.children.append(self)

    def __int__(self):
        return self.index

    def on(self, event, code, key=None):
        """Run `code` at an event: a source text, or a function that is called with self.

        A function is published in gmapi under its name, as a script of the game. Events of
        KEYED_EVENTS need their key: alarm number, other object's name, key or mouse button.
        """
        if callable(code):
            gmapi.__dict__[code.__name__] = code
            code = "%s(self)" % code.__name__
        actions = [Action("%s, event %d" % (self.name, event), code)]
        if event in KEYED_EVENTS:
            if key is None:
                raise ValueError("%s.on() needs a key for event %d" % (self.name, event))
            self.py_objectdata.events[event][key] = actions
        else:
            self.py_objectdata.events[event] = actions

    def all_instances(self):
        """This kind's living instances and those of its children, as a plain list."""
        found = list(self.instances)
        for child in self.children:
            found += child.all_instances()
        return found


def set_sprite_images(sprite, images):
    """Give a sprite its pictures, all of one size; its bounding box becomes the whole picture."""
    sprite.subimages = list(images)
    sprite.w, sprite.h = sprite.subimages[0].get_size()
    sprite.leftbound = sprite.topbound = 0
    sprite.rightbound, sprite.bottombound = sprite.w, sprite.h


def set_background_image(background, surface):
    background.surf = surface
    background.w, background.h = surface.get_size()


def SpriteData_load_images(sprite, name, count):
    """Load a sprite's pictures again, after unpickling: NAME_0.png up to the count."""
    set_sprite_images(sprite, [_load("%s_%d.png" % (name, number)) for number in range(count)])


def BackgroundData_load_images(background):
    """Load a background's picture again, after unpickling: NAME.png."""
    set_background_image(background, _load(background.name + ".png"))


def _load(file_name):
    return pygame.image.load(os.path.join(gm6.image_directory, file_name)).convert_alpha()
