"""The functions and variables that game code sees.

Compiled game code, draw code included, runs with this module's dictionary as its globals. So what
is here has the names that games use; resources and scripts are published here by their names.
larkspur reads `game`, `self`, `pygame`, `py_self_stack`, `py_draw_props` and `__color_to_int`,
calls `draw_sprite_ext`, tells particle systems by `py_ParticleSystem` and writes `fps`.
"""

import math
import random

import gm6
import larkspur
import pygame
from engine import instances, resources  # noqa: F401
from engine.colors import *  # noqa: F403
from engine.colors import color_to_pixel
from engine.drawing import *  # noqa: F403
from engine.drawing import py_draw_props, view  # noqa: F401
from engine.instances import Instance, instance_list
from engine.particles import *  # noqa: F403
from engine.particles import py_ParticleSystem, shape
from engine.resources import game

self = None  # the instance whose code runs
other = None  # in a collision event, the instance that was hit
py_self_stack = []
fps = 0

GMVar = larkspur.GMVar
score = GMVar(0)
health = GMVar(100)

vk_left, vk_right, vk_up, vk_down = (pygame.K_LEFT, pygame.K_RIGHT, pygame.K_UP, pygame.K_DOWN)
vk_space, vk_tab, vk_enter, vk_escape = (
    pygame.K_SPACE,
    pygame.K_TAB,
    pygame.K_RETURN,
    pygame.K_ESCAPE,
)


def __color_to_int(color):
    return color_to_pixel(color, gm6.screen)


# --- Instances -----------------------------------------------------------------------------------


def instance_create(x, y, kind):
    """Make an instance (in front of its depth) in the current room and return its id."""
    instance = gm6.create_instance(gm6.current_room, kind, x, y)
    gm6.current_room.ResortDrawnObjects()
    return instance.id


def instance_destroy(which=None):
    """Destroy an instance (itself, its id or a GMVar holding it); without one, the running one."""
    gm6.destroy_instance(self if which is None else instance_of(which))


def instance_of(which):
    """The living instance for an instance, an id or a GMVar that holds either."""
    if type(which) is GMVar:
        which = which[0]
    return which if type(which) is Instance else instance_list([which])[0]


def instance_number(kind):
    """How many instances of a kind and its children there are."""
    return len(kind.all_instances())


def instance_nearest(x, y, kind):
    """The id of the kind's instance nearest to a point; -1 when there is none."""
    found = [
        ((instance.x - x) ** 2 + (instance.y - y) ** 2, instance.id)
        for instance in kind.all_instances()
    ]
    return min(found)[1] if found else -1


def instance_deactivate(which):
    gm6.deactivate_instance(instance_of(which))


def instance_activate(which):
    gm6.activate_instance(instance_of(which))


# --- Collisions ----------------------------------------------------------------------------------


def collision_list(box, kind):
    """An InstanceList of the kind's instances (children too) that touch (left, top, right, bottom).

    Rectangles that only share an edge do not touch.
    """
    return instance_list([hit.id for hit in kind.all_instances() if _touches(box, hit)])


def _touches(box, instance):
    its = instance.box()
    return bool(its) and (
        its[0] < box[2] and its[2] > box[0] and its[1] < box[3] and its[3] > box[1]
    )


def _box_at(x, y):
    """The running instance's bounding box if it were at (x, y); None without a sprite."""
    box = self.box()
    if box is None:
        return None
    dx, dy = x - self.x, y - self.y
    return box[0] + dx, box[1] + dy, box[2] + dx, box[3] + dy


def place_meeting(x, y, kind):
    """Whether the running instance, if it were at (x, y), would touch another one of a kind."""
    box = _box_at(x, y)
    return box is not None and any(hit is not self for hit in collision_list(box, kind))


def place_free(x, y):
    """Whether the running instance, if it were at (x, y), would touch nothing solid."""
    box = _box_at(x, y)
    return box is None or not any(
        hit is not self and hit.solid and _touches(box, hit)
        for kind in game.objects
        if kind.solid
        for hit in kind.instances
    )


def position_meeting(x, y, instance):
    """Whether a point of the room lies in an instance's bounding box."""
    box = instance.box()
    return box is not None and box[0] <= x < box[2] and box[1] <= y < box[3]


# --- Input ---------------------------------------------------------------------------------------


def keyboard_check(key):
    """Whether a key is held."""
    return key in gm6.keys_held


def mouse_x():
    """The mouse's x in the room, through view 0 where there are views."""
    x = pygame.mouse.get_pos()[0]
    return x + (gm6.current_room.view_xview[0] if gm6.current_room.view_enabled else 0)


def mouse_y():
    """The mouse's y in the room, through view 0 where there are views."""
    y = pygame.mouse.get_pos()[1]
    return y + (gm6.current_room.view_yview[0] if gm6.current_room.view_enabled else 0)


# --- Rooms ---------------------------------------------------------------------------------------


def room_goto(room):
    """Go to a room (itself, its number or a GMVar)."""
    gm6.goto_room(room if type(room) is larkspur.GMRoom else game.rooms[int(room)])


# --- Particles -----------------------------------------------------------------------------------

part_type_create = larkspur.part_type_create
part_type_size = larkspur.part_type_size
part_type_scale = larkspur.part_type_scale
part_type_orientation = larkspur.part_type_orientation
part_type_life = larkspur.part_type_life
part_type_speed = larkspur.part_type_speed
part_type_direction = larkspur.part_type_direction
part_type_alpha2 = larkspur.part_type_alpha2
part_type_alpha3 = larkspur.part_type_alpha3
part_type_blend = larkspur.part_type_blend
part_type_color3 = larkspur.part_type_color3


def part_type_shape(particle_type, number):
    """Give a particle type one of the built-in pt_shape_ pictures, or a surface."""
    if not isinstance(number, pygame.Surface):
        number = shape(int(number))
    larkspur.part_type_shape(particle_type, number)
    larkspur.CParticle_type_cache_clear(particle_type)


def part_system_create(depth=0):
    """A new particle system, drawn with the current room at the given depth."""
    system = py_ParticleSystem(depth)
    gm6.current_room.AddDrawnInstance(system)
    gm6.current_room.ResortDrawnObjects()
    return system


def particle_systems():
    """The particle systems of the current room."""
    return [drawn for drawn in gm6.current_room.drawn_objects if type(drawn) is py_ParticleSystem]


def part_system_destroy(system):
    """Take a particle system out of the current room, with all its particles."""
    system.clear()
    gm6.current_room.drawn_objects.remove(system)


# --- Small helpers -------------------------------------------------------------------------------


def irandom(most):
    """A whole number from 0 to `most`."""
    return random.randint(0, int(most))


def lengthdir_x(length, direction):
    """The x part of a step of `length` pixels in a direction (degrees, counter-clockwise)."""
    return math.cos(math.radians(direction)) * length


def lengthdir_y(length, direction):
    """The y part of such a step; y grows downward."""
    return -math.sin(math.radians(direction)) * length
