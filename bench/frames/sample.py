"""Samples frames of the demo on a display of one size: one line of JSON for each room.

    python bench/frames/sample.py WIDTH HEIGHT SECONDS

frames.py calls it, with larkspur and sampler.so (bench/frames) on PYTHONPATH.
"""

from __future__ import division, print_function

import collections
import ctypes
import json
import math
import os
import random
import struct
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.join(os.path.dirname(os.path.dirname(HERE)), "examples")
sys.path[:0] = [os.path.join(EXAMPLES, "host"), EXAMPLES]

import gm6  # noqa: E402  (the engine comes before larkspur, which it imports)
import owners  # noqa: E402
import pygame  # noqa: E402
import sampler  # noqa: E402
import scenery  # noqa: E402

PERIOD_MICROSECONDS = 250
TURN_SECONDS = 0.2
WARM_UP_FRAMES, WARM_UP_SECONDS = 60, 2.0


class Frames(object):
    """What the frames of one room took."""

    def __init__(self, room):
        self.room = room
        self.frames, self.seconds = 0, 0.0
        self.addresses = collections.Counter()

    def warm_up(self):
        """So that pictures that are kept are made before; slow frames are not repeated for ever."""
        begin = time.time()
        gm6.goto_room(self.room)
        for _ in range(WARM_UP_FRAMES):
            frame()
            if time.time() - begin > WARM_UP_SECONDS:
                break

    def take_turn(self):
        gm6.goto_room(self.room)
        frame()  # finds the caches full of another room
        frames, begin, processor = 0, time.time(), time.clock()
        sampler.start(PERIOD_MICROSECONDS)
        while frames == 0 or time.time() - begin < TURN_SECONDS:
            frame()
            frames += 1
        taken = sampler.stop()
        self.seconds += time.clock() - processor
        self.frames += frames
        self.addresses.update(taken[place : place + 16] for place in range(0, len(taken), 16))

    def result(self):
        """Milliseconds of a frame, and how many samples were in what."""
        found = owners.Owners()
        layers, functions = collections.Counter(), collections.Counter()
        for pair, number in self.addresses.items():
            layer, function = found.of(*struct.unpack("QQ", pair))
            layers[layer] += number
            if function:
                functions[function] += number
        return {
            "milliseconds": 1000 * self.seconds / self.frames,
            "samples": sum(layers.values()),
            "layers": layers,
            "functions": functions,
        }


def frame():
    gm6.step()
    gm6.draw()


def configurations():
    """(series, views, [(instances, tiles, particles)]). A room with views draws no tiles."""
    for views in (True, False):
        tiles = 0 if views else 2000
        yield "particles", views, [(300, tiles, number) for number in (0, 2000, 5000, 10000)]
        yield "instances", views, [(number, 0, 0) for number in (0, 100, 1000, 3000, 10000)]
    yield "tiles", False, [(100, number, 0) for number in (0, 2000, 5000, 20000)]


def measure(series, views, numbers, rooms, seconds):
    """Prints what each room's frames take. Rooms take turns, so that other work on the machine, and
    what the processor makes of its clock, falls on all alike."""
    measured = [Frames(room) for room in rooms]
    for room in measured:
        room.warm_up()
    for _ in range(int(math.ceil(seconds / TURN_SECONDS))):
        for room in measured:
            room.take_turn()
    for number, room in zip(numbers, measured):
        names = {"series": series, "views": views, "number": number}
        print(json.dumps(dict(room.result(), **names), sort_keys=True))
    sys.stdout.flush()


def main():
    size, seconds = (int(sys.argv[1]), int(sys.argv[2])), float(sys.argv[3])
    random.seed(1)
    ctypes.CDLL(None).srand48(1)
    pygame.display.init()
    evening = scenery.load_demo(pygame.display.set_mode(size, 0, 32))
    measure("demo", True, ["village"], [evening.village], seconds)
    measure("demo", False, ["garden"], [evening.garden], seconds)
    for series, views, amounts in configurations():
        rooms = [scenery.enter_room(size, views, *amount) for amount in amounts]
        numbers = [amount[("instances", "tiles", "particles").index(series)] for amount in amounts]
        measure(series, views, numbers, rooms, seconds)
        for room in rooms:
            room.drawn_objects, room.tiles = [], []


if __name__ == "__main__":
    main()
