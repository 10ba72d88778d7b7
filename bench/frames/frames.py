"""Where the time of whole frames of the demo goes, and how it grows.

    python bench/frames/frames.py [--rounds N] [--seconds N] [--results FILE]

script/bench frames calls it. Frames of the demo's two rooms, and of rooms made of its pictures with
chosen numbers of particles, instances and tiles, on displays of two sizes, are sampled 4,000 times
a second. Each sample counts for the layer whose code was running: larkspur, SDL, SDL_gfx, Python
(the interpreter, its modules, pygame, and so all of the engine and the game), or the rest (the C
library and the kernel's entry); what the C library copies or fills counts for its caller. Times are
of the processor, medians of the rounds. charts.py draws the results.
"""

from __future__ import division, print_function

import argparse
import collections
import json
import math
import os
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
LAYERS = ("larkspur", "SDL", "SDL_gfx", "Python", "rest")
SIZES = ((640, 480), (1280, 720))
# Name -> title and axis of its picture.
SERIES = collections.OrderedDict(
    (
        ("demo", ("The demo's rooms", "")),
        ("particles", ("Particles; 300 instances, and 2,000 tiles without views", "particles")),
        ("instances", ("Instances; neither tiles nor particles", "instances")),
        ("tiles", ("Tiles; 100 instances", "tiles")),
    )
)
WORTH_A_LOOK = 0.02
MOST_EXPONENT = 1.05
# A time that hardly differs from that of nothing says nothing of growth, nor do a few samples.
LEAST_GROWTH = 0.2
LEAST_SAMPLES = 20


class Frames(object):
    """What all rounds say of one kind of frame."""

    def __init__(self):
        self.times, self.own_times = [], []
        self.samples = 0
        self.layers, self.functions = collections.Counter(), collections.Counter()

    def add(self, sampled):
        own_share = sampled["layers"].get("larkspur", 0) / sampled["samples"]
        self.times.append(sampled["milliseconds"])
        self.own_times.append(sampled["milliseconds"] * own_share)
        self.samples += sampled["samples"]
        self.layers.update(sampled["layers"])
        self.functions.update(sampled["functions"])

    @property
    def milliseconds(self):
        return median(self.times)

    @property
    def own_milliseconds(self):
        return median(self.own_times)

    def shares(self, counter):
        return dict((name, number / self.samples) for name, number in counter.items())


def median(values):
    values = sorted(values)
    middle = len(values) // 2
    return (values[middle] + values[-1 - middle]) / 2


def sampled_frames(rounds, seconds):
    """{(series, size, views): [(number, Frames)]}, in the order in which they are sampled."""
    found = collections.OrderedDict()
    for number in range(rounds):
        for size in SIZES:
            command = [sys.executable, os.path.join(HERE, "sample.py")]
            child = subprocess.Popen(
                command + [str(value) for value in size + (seconds,)], stdout=subprocess.PIPE
            )
            for line in iter(child.stdout.readline, b""):
                sampled = json.loads(line.decode())
                key = sampled["series"], size, sampled["views"]
                found.setdefault(key, collections.OrderedDict()).setdefault(
                    sampled["number"], Frames()
                ).add(sampled)
            if child.wait() != 0:
                sys.exit("sampling failed")
        print("-- round %d of %d" % (number + 1, rounds), file=sys.stderr)
    return collections.OrderedDict((key, list(by.items())) for key, by in found.items())


def exponent(points):
    """How a time grows with a number, from points (number, time, samples that it was worked out
    of): the slope of its logarithm over that of the number, by least squares, once the time with
    none of them is taken off; and two standard errors of it, as a count of samples is off by its
    root. None where too little of the time is left."""
    nothing = points[0][1]
    grown = [
        (math.log(number), math.log(time - nothing), samples)
        for number, time, samples in points[1:]
        if time - nothing > LEAST_GROWTH * nothing and samples >= LEAST_SAMPLES
    ]
    if len(grown) < 2:
        return None
    x_mean = sum(x for x, _, _ in grown) / len(grown)
    y_mean = sum(y for _, y, _ in grown) / len(grown)
    spread = sum((x - x_mean) ** 2 for x, _, _ in grown)
    slope = sum((x - x_mean) * (y - y_mean) for x, y, _ in grown) / spread
    error = math.sqrt(sum((x - x_mean) ** 2 / samples for x, _, samples in grown)) / spread
    return slope, 2 * error


def title_of(size, views):
    return "%d x %d, %s" % (size + ("views" if views else "no views",))


def report(found):
    """Prints everything; whether all exponents are small enough."""
    good = True
    for (series, size, views), frames in found.items():
        print("%s, %s" % (series, title_of(size, views)))
        for number, entry in frames:
            layers, functions = entry.shares(entry.layers), entry.shares(entry.functions)
            print(
                "  %8s %8.2f ms  %s"
                % (
                    number,
                    entry.milliseconds,
                    "  ".join(
                        "%s %4.1f %%" % (layer, 100 * layers.get(layer, 0)) for layer in LAYERS
                    ),
                )
            )
            for name, share in sorted(functions.items(), key=lambda pair: -pair[1]):
                if share > WORTH_A_LOOK:
                    print("%24s%4.1f %% %s" % ("", 100 * share, name))
        if series != "demo":
            own = exponent(
                [
                    (number, entry.own_milliseconds, entry.layers["larkspur"])
                    for number, entry in frames
                ]
            )
            whole = exponent(
                [(number, entry.milliseconds, entry.samples) for number, entry in frames]
            )
            good = good and (own is None or own[0] - own[1] <= MOST_EXPONENT)
            print(
                "  growth: exponent of larkspur's time %s (wanted: at most %.2f), of the frame's %s"
                % (as_text(own), MOST_EXPONENT, as_text(whole))
            )
    return good


def as_text(value):
    return "%.2f +- %.2f" % value if value is not None else "not to be told, it hardly grows"


def as_results(found, rounds):
    """All that pictures are made of."""

    def panel(size, views, frames):
        bars = [
            {
                "label": str(number),
                "milliseconds": entry.milliseconds,
                "shares": entry.shares(entry.layers),
            }
            for number, entry in frames
        ]
        return {"name": title_of(size, views), "bars": bars}

    return {
        "told": "processor time, medians of %d rounds" % rounds,
        "layers": LAYERS,
        "charts": [
            {
                "series": series,
                "title": title,
                "axis": axis,
                "panels": [
                    panel(size, views, frames)
                    for (name, size, views), frames in found.items()
                    if name == series
                ],
            }
            for series, (title, axis) in SERIES.items()
        ],
    }


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--rounds", type=int, default=2)
    parser.add_argument("--seconds", type=float, default=2.0, help="for each room and round")
    parser.add_argument("--results", help="file for the results, to make plots of")
    options = parser.parse_args()
    found = sampled_frames(options.rounds, options.seconds)
    good = report(found)
    if options.results:
        with open(options.results, "w") as results:
            json.dump(as_results(found, options.rounds), results, indent=1, sort_keys=True)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
