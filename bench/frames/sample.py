"""Samples frames of the demo on a display of one size: one line of JSON for each room.

    python bench/frames/sample.py WIDTH HEIGHT SECONDS

frames.py calls it, with larkspur and sampler.so (bench/frames) on PYTHONPATH.
"""

from __future__ import division, print_function

import collections
import ctypes
import json
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
LEAST_FRAMES = 10
WARM_UP_FRAMES = 60


def measure(frame, seconds):
    """What a room's frames take: milliseconds each, and how many samples were in what."""
    # Pictures that are kept are made before; a slow frame is not repeated for ever.
    begin = time.time()
    for _ in range(WARM_UP_FRAMES):
        frame()
        if time.time() - begin > seconds:
            break
    frames, begin, processor = 0, time.time(), time.clock()
    sampler.start(PERIOD_MICROSECONDS)
    while frames < LEAST_FRAMES or time.time() - begin < seconds:
        frame()
        frames += 1
    taken = sampler.stop()
    processor = time.clock() - processor
    found = owners.Owners()
    layers, functions = collections.Counter(), collections.Counter()
    for pair, number in collections.Counter(
        taken[place : place + 16] for place in range(0, len(taken), 16)
    ).items():
        layer, function = found.of(*struct.unpack("QQ", pair))
        layers[layer] += number
        if function:
            functions[function] += number
    return {
        "milliseconds": 1000 * processor / frames,
        "samples": len(taken) // 16,
        "layers": layers,
        "functions": functions,
    }


def frame():
    gm6.step()
    gm6.draw()


def configurations():
    """(series, views, instances, tiles, particles). A room with views draws no tiles."""
    for views in (True, False):
        for particles in (0, 2000, 5000, 10000):
            yield "particles", views, 300, 0 if views else 2000, particles
        for instances in (0, 100, 1000, 3000, 10000):
            yield "instances", views, instances, 0, 0
    for tiles in (0, 2000, 5000, 20000):
        yield "tiles", False, 100, tiles, 0


def main():
    width, height, seconds = int(sys.argv[1]), int(sys.argv[2]), float(sys.argv[3])
    random.seed(1)
    ctypes.CDLL(None).srand48(1)
    pygame.display.init()
    evening = scenery.load_demo(pygame.display.set_mode((width, height), 0, 32))
    for name, room in (("village", evening.village), ("garden", evening.garden)):
        gm6.goto_room(room)
        show(measure(frame, seconds), series="demo", views=room is evening.village, number=name)
    for series, views, instances, tiles, particles in configurations():
        room = scenery.enter_room((width, height), views, instances, tiles, particles)
        number = {"instances": instances, "tiles": tiles, "particles": particles}[series]
        show(measure(frame, seconds), series=series, views=views, number=number)
        room.drawn_objects, room.tiles = [], []


def show(measured, **names):
    print(json.dumps(dict(measured, **names), sort_keys=True))
    sys.stdout.flush()


if __name__ == "__main__":
    main()
