"""How fast a frame of a room without views is drawn: a table on standard output.

    python bench/python/bench_room.py [--rounds N]

needs the built module on PYTHONPATH and the build directory (with benches) in LARKSPUR_BUILD_DIR;
script/bench room sees to both. The frame has 2,000 tiles of 16 x 16 pixels and 500 objects whose
Draw method does nothing. It is drawn by Room_Draw(), by straightforward Python with pygame's blit,
and by a native loop that makes just the same SDL blits and Python calls: once with opaque tiles,
which Room_Draw() copies by itself, and once with tiles that it leaves to SDL like everyone else.
Ratios are of times taken in turns within one process; each is a median with its quartiles.
"""

from __future__ import division, print_function

import argparse
import ctypes
import os
import random
import sys
import time
import types

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")

gm6 = sys.modules["gm6"] = types.ModuleType("gm6")
gmapi = sys.modules["gmapi"] = types.ModuleType("gmapi")

import larkspur  # noqa: E402
import measuring  # noqa: E402
import pygame  # noqa: E402
from measuring import surface_address  # noqa: E402

DISPLAY = (800, 640)
TILE = 16
TILES = 2000
OBJECTS = 500
LEAST_RATIO_TO_PYGAME = 2.2
MOST_RATIO_TO_BARE_LOOP = 1.1


class Rect(ctypes.Structure):
    _fields_ = [
        ("x", ctypes.c_int16),
        ("y", ctypes.c_int16),
        ("w", ctypes.c_uint16),
        ("h", ctypes.c_uint16),
    ]


class Blit(ctypes.Structure):
    _fields_ = [("source", ctypes.c_void_p), ("source_rect", Rect), ("target_rect", Rect)]


class Still(object):
    """An object that draws nothing."""

    def Draw(self):
        pass


def draw_backgrounds(room, surface, x, y):
    pass


def set_up_host(screen, background):
    gm6.game = gmapi.game = types.ModuleType("game")
    gmapi.game.backgrounds = [background]
    gm6.Room_DrawBackgrounds = draw_backgrounds
    names = (
        "Room_Compile Room_Create Room_InitializeBackgrounds Room_AddInstance "
        "Room_AddDrawnInstance Room_ResortDrawnObjects Room_SetBackgroundIndex "
        "Room_StepAlarms Room_MoveInstances Room_HandleCollisions Room_StepEvents "
        "Room_RenderBackground Room_Leave Room_MouseButtonDown Room_MouseButtonUp "
        "Room_HandleKeyrelease Room_HandleKeypress SpriteData_load_images "
        "BackgroundData_load_images"
    ).split()
    for name in names:
        setattr(gm6, name, None)
    for name in "draw_sprite_ext py_ParticleSystem py_draw_props".split():
        setattr(gmapi, name, None)
    gmapi.py_self_stack = []
    gmapi.pygame = pygame
    larkspur.set_SDL_screen(screen)
    larkspur.RegisterInstancesDict({}, int, int, int)


def make_room(sheet):
    """A room whose tiles cover the display, each cut from a random place of the sheet."""
    room = larkspur.GMRoom()
    room.drawn_objects = [Still() for _ in range(OBJECTS)]
    room.tiles = []
    source = random.Random(7)
    columns = DISPLAY[0] // TILE
    for i in range(TILES):
        tile = larkspur.RoomTileData()
        tile.x, tile.y = i % columns * TILE, i // columns * TILE
        tile.tilex, tile.tiley = (source.randrange(0, length, TILE) for length in sheet.get_size())
        tile.w = tile.h = TILE
        room.tiles.append(tile)
    return room


def frame_of_pygame(room, screen):
    """The frame as a game written with pygame draws it."""
    frames = {"second": 0, "count": 0}

    def draw():
        now = int(time.time())
        if now != frames["second"]:
            gmapi.fps = frames["count"]
            frames["second"], frames["count"] = now, 0
        frames["count"] += 1
        gm6.Room_DrawBackgrounds(room, screen, 0, 0)
        backgrounds = gmapi.game.backgrounds
        for tile in room.tiles:
            screen.blit(
                backgrounds[tile.background_idx].surf,
                (tile.x, tile.y),
                (tile.tilex, tile.tiley, tile.w, tile.h),
            )
        room.view_current = 0
        for drawn in list(room.drawn_objects):
            drawn.Draw()

    return draw


def bare_frame(room, screen, sheet):
    """The frame's blits and calls alone, made in a native loop."""
    directory = os.environ.get("LARKSPUR_BUILD_DIR")
    path = os.path.join(directory or "", "bench", "room", "bench_frame.so")
    if not directory or not os.path.exists(path):
        sys.exit(
            "%s is not there: set LARKSPUR_BUILD_DIR, and build with -DLARKSPUR_BENCH=ON" % path
        )
    function = ctypes.PyDLL(path).bare_frame
    function.restype = ctypes.py_object
    function.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_void_p] + [ctypes.py_object] * 3
    blits = (Blit * len(room.tiles))(
        *[
            Blit(
                surface_address(sheet),
                Rect(tile.tilex, tile.tiley, tile.w, tile.h),
                Rect(tile.x, tile.y),
            )
            for tile in room.tiles
        ]
    )
    arguments = (room, screen, 0, 0)
    target = surface_address(screen)
    return lambda: function(
        blits, len(blits), target, draw_backgrounds, arguments, room.drawn_objects
    )


def same_pictures(screen, actions):
    """Every way draws the same picture."""
    pictures = set()
    for action in actions.values():
        screen.fill((0, 0, 0))
        action()
        pictures.add(screen.get_buffer().raw)
    return len(pictures) == 1


def make_sheet(colour_key):
    """256 tiles; with a colour key one of them is left out when it is drawn."""
    sheet = pygame.Surface((16 * TILE, 16 * TILE), 0, 32)
    for place in range(256):
        sheet.fill(
            (place, place * 7 % 256, place * 3 % 256),
            (place % 16 * TILE, place // 16 * TILE, TILE, TILE),
        )
    if colour_key:
        sheet.set_colorkey(sheet.get_at((0, 0)))
    return sheet


def report(kind, screen, sheet, rounds, least_ratio_to_pygame=None):
    """Measures and prints the frame with the tiles of one sheet."""
    gmapi.game.backgrounds[0].surf = sheet
    room = make_room(sheet)
    actions = {
        "Room_Draw()": lambda: larkspur.Room_Draw(room, screen),
        "pygame": frame_of_pygame(room, screen),
        "bare loop": bare_frame(room, screen, sheet),
    }
    if not same_pictures(screen, actions):
        sys.exit("the ways to draw the frame do not draw the same picture")
    times = measuring.times_in_turns(actions, rounds)

    print(
        "%d %s tiles of %d x %d and %d objects that draw nothing"
        % (TILES, kind, TILE, TILE, OBJECTS)
    )
    for name in ("Room_Draw()", "pygame", "bare loop"):
        milliseconds = [seconds * 1000 for seconds in measuring.quartiles(times[name])]
        print("  %-34s %s ms" % (name, measuring.as_text(milliseconds, "%.3f")))
    wanted = ", wanted: at least %.1f" % least_ratio_to_pygame if least_ratio_to_pygame else ""
    print(
        "  %-34s %s%s"
        % (
            "frames per second, times pygame's",
            measuring.as_text(measuring.ratios(times["pygame"], times["Room_Draw()"])),
            wanted,
        )
    )
    print(
        "  %-34s %s, wanted: at most %.1f"
        % (
            "time, times the bare loop's",
            measuring.as_text(measuring.ratios(times["Room_Draw()"], times["bare loop"])),
            MOST_RATIO_TO_BARE_LOOP,
        )
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=31, help="samples of each figure")
    options = parser.parse_args()

    pygame.display.init()
    screen = pygame.display.set_mode(DISPLAY, 0, 32)
    set_up_host(screen, larkspur.BackgroundData())
    report("opaque", screen, make_sheet(colour_key=False), options.rounds, LEAST_RATIO_TO_PYGAME)
    report("colour-keyed", screen, make_sheet(colour_key=True), options.rounds)


if __name__ == "__main__":
    main()
