"""The engine that larkspur is embedded in, as little of it as jobs need."""

import sys
import types

gm6 = sys.modules["gm6"] = types.ModuleType("gm6")
gmapi = sys.modules["gmapi"] = types.ModuleType("gmapi")

import larkspur  # noqa: E402
import pygame  # noqa: E402
from pictures import surface_of  # noqa: E402

ROOM_FUNCTIONS = (
    "Compile Create InitializeBackgrounds AddInstance AddDrawnInstance ResortDrawnObjects "
    "SetBackgroundIndex StepAlarms MoveInstances HandleCollisions StepEvents RenderBackground "
    "Leave MouseButtonDown MouseButtonUp HandleKeyrelease HandleKeypress"
).split()


class Instance(object):
    pass


class ParticleSystem(object):
    pass


# Ids of instances; the list type's way to append one takes from its references.
INSTANCES = {7: Instance()}


def draw_no_backgrounds(room, surface, x, y):
    pass


def set_up():
    """Hands larkspur the display, which is open, and all that it looks for."""
    larkspur.set_SDL_screen(pygame.display.get_surface())
    gm6.game = gmapi.game = types.ModuleType("game")
    gmapi.game.backgrounds, gmapi.game.sprites = [], []
    gm6.Room_DrawBackgrounds = draw_no_backgrounds
    for name in ROOM_FUNCTIONS:
        setattr(gm6, "Room_" + name, None)
    gm6.SpriteData_load_images = gm6.BackgroundData_load_images = None
    gmapi.draw_sprite_ext = gmapi.py_draw_props = gmapi.self = None
    gmapi.py_ParticleSystem = ParticleSystem
    gmapi.py_self_stack = []
    gmapi.pygame = pygame
    register()


def register():
    """Again whenever what larkspur fetches is replaced."""
    larkspur.RegisterInstancesDict(INSTANCES, Instance, ParticleSystem, types.ModuleType)


def screen(size):
    """A new Surface of the display's format in the display's place."""
    surface = surface_of(size)
    larkspur.set_SDL_screen(surface)
    return surface
