"""Draws what frames.py measured, as PNG and SVG.

    python charts.py RESULTS DIRECTORY

needs Python 3 with matplotlib, and bench/python on PYTHONPATH; script/bench frames --plots sees to
that. Each picture shows a series of rooms: a bar for each number, stacked of the layers' shares,
with the time of the frame above it.
"""

from __future__ import division, print_function

import json
import os
import sys

import plots
from matplotlib.figure import Figure
from matplotlib.patches import Patch

COLOURS = {
    "larkspur": "#5b4fcf",
    "SDL": "#e3a72f",
    "SDL_gfx": "#cf5a45",
    "Python": "#6aa57f",
    "rest": "#b4b4bd",
}
HEIGHT_INCHES, BAR_INCHES, EDGES_INCHES = 3.6, 0.62, 0.9
LEAST_WIDTH_INCHES = 7.5  # for the names of four panels
LEAST_NAMED_PERCENT = 5  # a smaller share has no room for its number


def draw_bar(axes, x, bar, layers):
    bottom = 0
    for layer in layers:
        percent = 100 * bar["shares"].get(layer, 0)
        axes.bar(x, percent, 0.82, bottom, color=COLOURS[layer])
        if percent >= LEAST_NAMED_PERCENT:
            axes.text(
                x,
                bottom + percent / 2,
                "%.0f %%" % percent,
                color="white",
                fontsize=7,
                ha="center",
                va="center",
            )
        bottom += percent
    axes.text(x, 102, "%.3g ms" % bar["milliseconds"], fontsize=8, ha="center")


def draw_panel(axes, panel, axis, layers):
    """A display's size, with views or without."""
    for x, bar in enumerate(panel["bars"]):
        draw_bar(axes, x, bar, layers)
    axes.set_xlim(-0.6, len(panel["bars"]) - 0.4)
    axes.set_ylim(0, 100)
    axes.set_xticks(range(len(panel["bars"])))
    axes.set_xticklabels([bar["label"] for bar in panel["bars"]], fontsize=8)
    axes.set_xlabel("\n".join(text for text in (axis, panel["name"]) if text), fontsize=9)
    axes.yaxis.set_major_formatter(lambda value, _: "%g %%" % value)
    axes.tick_params(length=0, labelsize=8)
    for side in ("top", "right", "left"):
        axes.spines[side].set_visible(False)


def draw(chart, layers, foot, path):
    numbers = [len(panel["bars"]) for panel in chart["panels"]]
    bars_inches = BAR_INCHES * sum(number + 0.2 for number in numbers)
    canvas = Figure(figsize=(max(LEAST_WIDTH_INCHES, EDGES_INCHES + bars_inches), HEIGHT_INCHES))
    panels = canvas.subplots(
        1,
        len(numbers),
        sharey=True,
        squeeze=False,
        gridspec_kw={"width_ratios": [number + 0.2 for number in numbers]},
    )
    for axes, panel in zip(panels[0], chart["panels"]):
        draw_panel(axes, panel, chart["axis"], layers)
    canvas.suptitle(chart["title"], fontsize=11, x=0.02, ha="left")
    canvas.legend(
        handles=[Patch(color=COLOURS[layer], label=layer) for layer in layers],
        loc="upper left",
        bbox_to_anchor=(0.01, 0.94),
        ncol=len(layers),
        fontsize=8,
        frameon=False,
    )
    canvas.text(0.02, 0.02, foot, fontsize=7, color="#666666")
    canvas.tight_layout(rect=(0, 0.03, 1, 0.93), w_pad=0.4)
    plots.save(canvas, path)


def main():
    with open(sys.argv[1]) as source:
        results = json.load(source)
    for chart in results["charts"]:
        path = os.path.join(sys.argv[2], "frames-" + chart["series"])
        draw(chart, results["layers"], results["told"], path)


if __name__ == "__main__":
    main()
