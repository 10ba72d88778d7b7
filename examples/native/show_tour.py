#!/usr/bin/env python2.7
"""Calls each function that larkspur exports to native code; tour.c has the calls.

Needs the built modules larkspur and tour on PYTHONPATH: the build puts them into its top folder and
into examples/native. Prints a line per section; writes debug.log and logfile.txt into the current
folder, as the diagnostic functions do.
"""

from __future__ import print_function

import ctypes
import os
import sys
import types


class Object(object):
    """A kind of object of the game, without children."""

    def __init__(self, *instances):
        self.instances, self.children = list(instances), []


class ParticleSystem(object):
    """What larkspur tells from instances by its class."""


def ignore(*arguments):
    """A callable of an engine that has nothing to do."""


def make_engine(pygame):
    """Registers the least that larkspur takes for an engine; returns gm6 and gmapi."""
    gm6, gmapi = types.ModuleType("gm6"), types.ModuleType("gmapi")
    sys.modules.update(gm6=gm6, gmapi=gmapi)
    gm6.game = gmapi.game = types.ModuleType("game")
    gm6.game.sprites, gm6.game.backgrounds, gm6.game.rooms, gm6.game.objects = [], [], [], []
    for name in (
        "SpriteData_load_images BackgroundData_load_images Room_Compile Room_Create"
        " Room_InitializeBackgrounds Room_AddInstance Room_AddDrawnInstance Room_ResortDrawnObjects"
        " Room_SetBackgroundIndex Room_StepAlarms Room_MoveInstances Room_HandleCollisions"
        " Room_StepEvents Room_DrawBackgrounds Room_RenderBackground Room_Leave"
        " Room_MouseButtonDown Room_MouseButtonUp Room_HandleKeyrelease Room_HandleKeypress"
    ).split():
        setattr(gm6, name, ignore)
    gmapi.pygame = pygame
    gmapi.self = None
    gmapi.py_self_stack = []
    gmapi.py_ParticleSystem = ParticleSystem
    gmapi.py_draw_props = None
    gmapi.draw_sprite_ext = ignore
    return gm6, gmapi


def main():
    if not os.environ.get("DISPLAY"):
        os.environ["SDL_VIDEODRIVER"] = "dummy"
    import pygame

    gm6, _ = make_engine(pygame)
    # What tour.c calls is found among the names that libraries loaded before show to all.
    flags = sys.getdlopenflags()
    sys.setdlopenflags(flags | ctypes.RTLD_GLOBAL)
    import larkspur

    sys.setdlopenflags(flags)
    import tour

    screen = pygame.display.set_mode((64, 48), 0, 32)
    larkspur.set_SDL_screen(screen)
    larkspur.RegisterInstancesDict({}, Object, Object, Object)

    tour.the_module()
    print("the module: surfaces become pygame's")

    assert tour.shared_variables("game")
    print("shared variables: gm6, gmapi and the display are there")

    dot = pygame.Surface((4, 4), pygame.SRCALPHA, 32)
    dot.fill((255, 255, 255, 255))
    sprite, instance = larkspur.GMSprite(), object()
    sprite.subimages = [dot]
    gm6.game.sprites += [larkspur.GMSprite(), sprite]
    tour.host_access(sprite, Object(instance), instance)
    print("host access: sprite 1, its index, self pushed and popped")

    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, dot)
    larkspur.part_type_life(kind, 10, 10)
    larkspur.part_type_alpha2(kind, 1.0, 0.0)
    particle = larkspur.CParticle_new(kind, 10, 10)
    tour.particles(particle)
    assert screen.get_at((10, 8)) != (0, 0, 0, 255)
    print("particles: one stepped up by 2 pixels and drawn")

    tour.colours(kind, particle)
    print("colours: mixed, faded, mapped to the display")

    tour.pixels()
    print("pixels: added, tinted, faded, mirrored, subtracted")

    picture = tour.sprite_scale_cache(sprite, "half")
    assert sprite.scalecache["half"] is picture and picture.get_size() == (8, 8)
    print("sprite scale cache: a copy of 8 x 8 pixels is kept")

    room = larkspur.GMRoom()
    gm6.game.objects.append(Object())  # which every view of a new room follows
    room.room_width, room.room_height = screen.get_size()
    for name in "xview yview wview hview xport yport wport hport hborder vborder object".split():
        setattr(room, "view_" + name, larkspur.Floatlist8())
    room.view_wview[0] = room.view_wport[0] = 64
    room.view_hview[0] = room.view_hport[0] = 48
    tour.room_drawing(room, screen, ())
    print("room drawing: view 0, unscaled")

    sys.stdout.flush()
    tour.diagnostics(False)
    print("diagnostics: debug.log and logfile.txt")


if __name__ == "__main__":
    main()
