"""Draws what main.py measured, as PNG and SVG.

    python plots.py RESULTS DIRECTORY

needs Python 3 with matplotlib; script/bench --plots sees to that. Each picture shows its group of
comparisons, as far as they were measured: a dot for each size, on a logarithmic axis, with its
quartiles and its target.
"""

from __future__ import division, print_function

import json
import os
import sys

import matplotlib
from jobs import BASE, PEER
from matplotlib.figure import Figure
from matplotlib.lines import Line2D
from matplotlib.ticker import FuncFormatter, LogLocator, NullFormatter
from table import SHORT, size_text

# File -> (title, whom it shows).
PICTURES = {
    "speed-libraries": (
        "SDL's and SDL_gfx's time over larkspur's (above 1 larkspur leads)",
        ["SDL", "SDL_gfx", "bare SDL loop"],
    ),
    "speed-pygame-ce": ("pygame-ce's time over larkspur's (above 1 larkspur leads)", [PEER]),
    "speed-earlier": (
        "revision %s's time over that of this one (above 1 this one leads)" % BASE,
        [BASE],
    ),
    "speed-pygame": (
        "time of Python with pygame 1.9.6 over larkspur's (above 1 larkspur leads)",
        ["pygame", "plain class", "list subclass", "Surface.blit() with BLEND_ADD"],
    ),
    "speed-memory": (
        "time of the least that reads and writes the same bytes, over larkspur's",
        ["roof", "XOR of the same bytes"],
    ),
}
# By the width of what was drawn, from small to large; the first is for what has no size.
COLOURS = [
    (0, "#7f7f7f"),
    (16, "#b8860b"),
    (64, "#e07b39"),
    (256, "#c2477f"),
    (320, "#8f4fb0"),
    (640, "#3f5fc0"),
    (1024, "#1f7fa0"),
    (1920, "#0f5f4f"),
]
ROW_INCHES, HEAD_INCHES, WIDTH_INCHES = 0.3, 1.8, 10
SPREAD = 0.62  # of a row's height, over which its sizes are laid out


def colour_of(size):
    width = size[0] if size else 0
    return [colour for least, colour in COLOURS if width >= least][-1]


def draw_row(axes, y, row):
    colour, short = colour_of(row["size"]), row["verdict"] == SHORT
    axes.plot([row["low"], row["high"]], [y, y], color=colour, linewidth=1.2, zorder=2)
    axes.plot(
        row["median"],
        y,
        "o",
        markersize=5,
        markerfacecolor="white" if short else colour,
        markeredgecolor=colour,
        zorder=3,
    )
    if row["target"] is not None:
        axes.plot(row["target"], y, "|", markersize=8, markeredgewidth=1.6, color=colour, zorder=2)


def legend(rows):
    sizes = sorted({tuple(row["size"]) for row in rows})
    handles = [
        Line2D([], [], marker="o", linestyle="", color=colour_of(size), label=size_text(size))
        for size in sizes
        if size
    ]
    plain = {"linestyle": "", "color": "#444444"}
    if any(row["target"] is not None for row in rows):
        handles.append(Line2D([], [], marker="|", markersize=8, label="target", **plain))
    if any(row["verdict"] == SHORT for row in rows):
        handles.append(
            Line2D([], [], marker="o", markerfacecolor="white", label="short of it", **plain)
        )
    return handles


def draw(title, rows, foot, path):
    jobs = []
    for row in rows:
        if row["job"] not in jobs:
            jobs.append(row["job"])
    height = HEAD_INCHES + ROW_INCHES * len(jobs)
    canvas = Figure(figsize=(WIDTH_INCHES, height))
    axes = canvas.subplots()
    for y, job in enumerate(jobs):
        own = [row for row in rows if row["job"] == job]
        axes.axhspan(y - 0.5, y + 0.5, color="#f4f4f6" if y % 2 else "white", zorder=0)
        for place, row in enumerate(own):
            share = (place + 0.5) / len(own) - 0.5
            draw_row(axes, y + share * SPREAD, row)
    axes.axvline(1, color="#222222", linewidth=1, zorder=1)
    axes.set_xscale("log")
    axes.xaxis.set_major_locator(LogLocator(subs=(1, 2, 5)))
    axes.xaxis.set_major_formatter(FuncFormatter(lambda value, _: "%g" % value))
    axes.xaxis.set_minor_formatter(NullFormatter())
    axes.grid(axis="x", color="#dddddd", linewidth=0.6, zorder=1)
    axes.set_ylim(len(jobs) - 0.5, -0.5)
    axes.set_yticks(range(len(jobs)))
    axes.set_yticklabels(jobs, fontsize=9)
    axes.tick_params(axis="y", length=0)
    axes.set_title(title, fontsize=11, loc="left")
    axes.legend(
        handles=legend(rows),
        loc="upper left",
        bbox_to_anchor=(0, -0.5 / (height - 1)),
        ncol=5,
        fontsize=8,
        frameon=False,
        handletextpad=0.1,
        columnspacing=1.2,
    )
    for side in ("top", "right", "left"):
        axes.spines[side].set_visible(False)
    canvas.text(0.01, 0.1 / height, foot, fontsize=7, color="#666666")
    canvas.tight_layout(rect=(0, 0.4 / height, 1, 1))
    save(canvas, path)


def save(canvas, path):
    """As path.png and path.svg, whose texts stay texts. The same figures give the same files: no
    date, no versions and no names by chance."""
    metadata = {"png": {"Software": None}, "svg": {"Date": None, "Creator": None}}
    with matplotlib.rc_context({"svg.hashsalt": "larkspur", "svg.fonttype": "none"}):
        for kind in sorted(metadata):
            canvas.savefig("%s.%s" % (path, kind), dpi=110, metadata=metadata[kind])
    print("drawn: %s.png, %s.svg" % (path, path))


def main():
    with open(sys.argv[1]) as source:
        results = json.load(source)
    for name, (title, shown) in sorted(PICTURES.items()):
        rows = [row for row in results["rows"] if row["who"] in shown]
        path = os.path.join(sys.argv[2], name)
        if rows:
            draw(title, rows, results["told"], path)
        else:
            print("not measured, so not drawn: %s" % path)


if __name__ == "__main__":
    main()
