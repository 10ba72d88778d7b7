"""The module's import, played while allocations fail; nothing here imports it before."""

import sys

import pygame
from support import host as host_support

host_support.install_modules()
pygame.display.init()
DISPLAY = pygame.display.set_mode((48, 32), 0, 32)


def importing():
    shown = []

    def act():
        import larkspur

        shown.append(larkspur)

    def look():
        """What works, and what a frame shows that is drawn with the module."""
        larkspur = shown[-1]
        DISPLAY.fill((0, 0, 0))
        works = [larkspur is sys.modules["larkspur"], sorted(dir(larkspur))]
        for use in (use_surfaces, use_particles, use_records, use_host):
            try:
                works.append(use(larkspur))
            except Exception as error:
                works.append(str(error))
        return works, pygame.image.tostring(DISPLAY, "RGB")

    return act, look


# Initialisation goes on without types that can't be readied, and without pygame.
importing.may_lack = True
importing.allowed = (MemoryError, ImportError)


def use_surfaces(larkspur):
    larkspur.set_SDL_screen(DISPLAY)
    larkspur.fill_translucent(DISPLAY, 1, 1, 20, 20, 0xFF00, 128)


def use_particles(larkspur):
    shape = pygame.Surface((5, 5), 0, 32)
    shape.fill((200, 100, 50))
    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, larkspur.scale(shape, 2, 2))
    larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(kind, 30, 16), 0, 0)


def use_records(larkspur):
    larkspur.InstanceList()
    (larkspur.GMSprite(), larkspur.BackgroundData(), larkspur.RoomTileData(), larkspur.GMRoom())
    return larkspur.GMVar(5) + 1, str(larkspur.Floatlist8()), str(type(larkspur.Beancounter()))


def use_host(larkspur):
    host = host_support.RecordingHost(DISPLAY)
    host.register(larkspur)
    room = larkspur.GMRoom()
    room.tiles, room.drawn_objects = [], ()
    larkspur.Room_Draw(room, DISPLAY)
