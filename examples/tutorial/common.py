"""What every step of the tutorial has around it: the way to the engine, the options, the frames.

Without options a step opens a window and plays until Escape. With --frames it needs no display,
does not wait, holds one key down, and is the same game each time.
"""

import argparse
import ctypes
import os
import random
import sys

import pygame

sys.path.insert(1, os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, "host"))

FRAMES_PER_SECOND = 60
HELD_KEYS = {"left": pygame.K_LEFT, "right": pygame.K_RIGHT, "none": None}

parser = argparse.ArgumentParser(description=__doc__)
parser.add_argument("--frames", type=int, metavar="N", help="run N frames without a window")
parser.add_argument("--picture", metavar="FILE", help="save the last picture")
parser.add_argument(
    "--hold", choices=sorted(HELD_KEYS), default="right", help="the key held down with --frames"
)
options = parser.parse_args()

if options.frames is not None:
    os.environ["SDL_VIDEODRIVER"] = "dummy"
elif not any(os.environ.get(name) for name in ("DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER")):
    parser.error(
        "there is no display to open a window on; --frames 150 --picture step.png needs none"
    )


def frames():
    """One list of pygame's events for each frame; what was drawn is shown when the next begins."""
    run = _frames_in_window() if options.frames is None else _frames_alone(options.frames)
    for events in run:
        yield events
    if options.picture:
        pygame.image.save(pygame.display.get_surface(), options.picture)


def _frames_in_window():
    clock = pygame.time.Clock()
    while True:
        events = pygame.event.get()
        for event in events:
            if event.type == pygame.QUIT:
                return
            if event.type == pygame.KEYDOWN and event.key == pygame.K_ESCAPE:
                return
        yield events
        clock.tick(FRAMES_PER_SECOND)


def _frames_alone(count):
    random.seed(1)
    ctypes.CDLL(None).srand48(1)  # larkspur's particles take their chances from drand48
    pygame.mouse.set_visible(False)  # SDL would draw the pointer into the picture
    key = HELD_KEYS[options.hold]
    for number in range(count):
        pygame.event.pump()
        press = number == 0 and key is not None
        yield [pygame.event.Event(pygame.KEYDOWN, key=key)] if press else []
