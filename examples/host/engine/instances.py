"""Living instances, their registry, and lists of them."""

import gm6
import gmapi
import larkspur

from engine import resources

FIRST_ID = 100001

# Every living instance by its id; larkspur looks ids up here. The room's list all_objects is
# the second owner that each instance keeps for as long as it lives.
registry = {}
_last_id = [FIRST_ID - 1]


class Instance(object):
    """One instance of an object kind. Game code adds what variables it likes.

    `object_index` is the kind itself. `py_Draw` is where the renderer keeps what it found out
    about drawing: 0 not looked yet, 1 draw the sprite, a code object otherwise.
    """

    def __init__(self, game_object, x, y):
        _last_id[0] += 1
        self.id = _last_id[0]
        self.object_index = game_object
        self.py_Draw = 0
        self.x = self.xprevious = self.xstart = float(x)
        self.y = self.yprevious = self.ystart = float(y)
        self.hspeed = self.vspeed = self.gravity = 0.0
        self.alarm = [-1] * 12
        self.sprite_index = -1 if game_object.sprite is None else game_object.sprite
        self.image_index = 0.0
        self.image_speed = 1.0
        self.image_xscale = self.image_yscale = 1.0
        self.image_angle = 0.0
        self.image_blend = 0xFFFFFF
        self.image_alpha = 1.0
        self.solid = game_object.solid
        self.alive = True
        self.room = None
        self._depth = game_object.depth
        self._visible = game_object.visible

    def __int__(self):
        return self.id

    @property
    def depth(self):
        """Greater depths are drawn first."""
        return self._depth

    @depth.setter
    def depth(self, value):
        self._depth = value
        if self.room is not None:
            self.room.ResortDrawnObjects()

    @property
    def visible(self):
        return self._visible

    @visible.setter
    def visible(self, value):
        if bool(value) == bool(self._visible):
            return
        self._visible = bool(value)
        if self.room is not None:
            if value:
                self.room.AddDrawnInstance(self)
                self.room.ResortDrawnObjects()
            elif self in list(self.room.drawn_objects):
                self.room.drawn_objects.remove(self)

    def Draw(self):
        """Draw in a room without views, the way the renderer does it in one with views."""
        if type(self.py_Draw) is int and self.py_Draw == 0:
            actions = self.object_index.py_objectdata.events[resources.EVENT_DRAW]
            self.py_Draw = actions[0].python if actions else 1
        if type(self.py_Draw) is not int:
            run_code(self, self.py_Draw)
        else:
            gmapi.draw_sprite_ext(
                self.sprite_index,
                self.image_index,
                self.x,
                self.y,
                self.image_xscale,
                self.image_yscale,
                self.image_angle,
                self.image_blend,
                self.image_alpha,
            )

    def box(self):
        """The bounding box (left, top, right, bottom) in the room, or None without a sprite."""
        sprite = self.sprite_index
        if type(sprite) is not larkspur.GMSprite:
            if int(sprite) < 0:
                return None
            sprite = gm6.game.sprites[int(sprite)]
        x1 = self.x + (sprite.leftbound - sprite.xorigin) * self.image_xscale
        x2 = self.x + (sprite.rightbound - sprite.xorigin) * self.image_xscale
        y1 = self.y + (sprite.topbound - sprite.yorigin) * self.image_yscale
        y2 = self.y + (sprite.bottombound - sprite.yorigin) * self.image_yscale
        return min(x1, x2), min(y1, y2), max(x1, x2), max(y1, y2)


def run_code(instance, code, other=None):
    """Run compiled game code with gmapi.self set to the instance."""
    gmapi.py_self_stack.append(gmapi.self)
    previous_other = gmapi.other
    gmapi.self = instance
    gmapi.other = other
    try:
        exec(code, gmapi.__dict__)
    finally:
        gmapi.self = gmapi.py_self_stack.pop()
        gmapi.other = previous_other


def run_event(instance, event, key=None, other=None):
    """Run an instance's actions for an event; nothing where it has none or is gone."""
    actions = instance.object_index.py_objectdata.events[event]
    if key is not None:
        actions = actions.get(key, ())
    for action in actions:
        if instance.alive:
            run_code(instance, action.python, other)


def instance_list(ids):
    """An InstanceList of the instances with these ids (or GMVars that hold ids).

    Assigning by index is the one way of adding by id that takes exactly the reference it keeps:
    `append` of an id releases one that was never taken, so each such call uses up a reference of
    whoever else holds the instance; `insert` uses up one of the id object.
    """
    found = larkspur.InstanceList()
    found.extend(ids)
    for position in range(len(found)):
        found[position] = found[position]
    return found
