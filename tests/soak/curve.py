"""Draws what soak.py noted, as PNG and SVG.

    python curve.py RESULTS DIRECTORY

needs Python 3 with matplotlib, and bench/python on PYTHONPATH; script/soak --plot sees to that. The
memory is drawn from zero, so that its growth shows in proportion, over what caches hold.
"""

from __future__ import division, print_function

import json
import os
import sys

import plots
from matplotlib.figure import Figure
from matplotlib.ticker import FuncFormatter

# (key of the samples, what it says, colour, what to divide by)
CURVES = (
    ("allocated_kib", "memory handed out, MiB", "#5b4fcf", 1024),
    ("resident_kib", "resident memory, MiB", "#3f8fb8", 1024),
    ("objects", "objects that the collector knows, thousands", "#6aa57f", 1000),
    ("particles", "living particles, thousands", "#cf5a45", 1000),
    ("sprite_pictures", "pictures in the fullest sprite's cache", "#e3a72f", 1),
    ("scaled_pictures", "most scaled pictures of a particle type", "#8f4fb0", 1),
)
WIDTH_INCHES, PANEL_INCHES, EDGES_INCHES = 9, 1.35, 0.9


def main():
    with open(sys.argv[1]) as source:
        results = json.load(source)
    samples = results["samples"]
    frames = [held["frame"] for held in samples]
    height = EDGES_INCHES + PANEL_INCHES * len(CURVES)
    canvas = Figure(figsize=(WIDTH_INCHES, height))
    panels = canvas.subplots(len(CURVES), 1, sharex=True)
    for axes, (key, title, colour, divisor) in zip(panels, CURVES):
        axes.plot(frames, [held[key] / divisor for held in samples], color=colour, linewidth=1)
        axes.set_ylim(bottom=0)
        axes.margins(x=0)
        axes.set_title(title, fontsize=9, loc="left")
        axes.tick_params(labelsize=8)
        axes.grid(color="#e4e4e8", linewidth=0.6)
        for side in ("top", "right"):
            axes.spines[side].set_visible(False)
    panels[-1].xaxis.set_major_formatter(FuncFormatter(lambda value, _: "{:,.0f}".format(value)))
    panels[-1].set_xlabel("frames", fontsize=9)
    done = ", ".join(
        "{:,} {}".format(count, what) for what, count in sorted(results["done"].items())
    )
    canvas.text(0.01, 0.08 / height, done, fontsize=7, color="#666666")
    canvas.tight_layout(rect=(0, 0.2 / height, 1, 1))
    plots.save(canvas, os.path.join(sys.argv[2], "soak"))


if __name__ == "__main__":
    main()
