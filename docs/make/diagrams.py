"""Makes the manual's diagrams from the texts in diagrams/.

    python2.7 docs/make/diagrams.py [--check]

Each diagrams/NAME.txt gives docs/pictures/NAME.svg. --check makes nothing, and fails when a picture
is not what its text gives.

A text's first line is the kind of the diagram and its title. A `sequence` has:

    lane KEY: TITLE       a participant, from left to right
    A -> B: TEXT          a call
    A ~> B: TEXT          an attribute that is read or written
    A >> B: TEXT          a result
    note A: TEXT          what A does by itself
    when TEXT ... end     what is repeated or happens under a condition

A `following` has the sizes of a room and a view, the borders, and a panel for each place of the
followed instance.
"""

from __future__ import print_function

import collections
import glob
import os
import re
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
PICTURES = os.path.join(os.path.dirname(HERE), "pictures")

INK, GREY, LINE, BLUE, GREEN, RED = (
    "#1b2733",
    "#5d6b79",
    "#b9c3cd",
    "#1f5fa8",
    "#2f7d4f",
    "#b4412f",
)
HEAD_FILL, NOTE_FILL, WHEN_FILL = "#e8f0f9", "#fdf6dc", "#4a6785"
FONT = "DejaVu Sans, Verdana, Helvetica, sans-serif"
TEXT_SIZE = 13
CHARACTER_WIDTH = 7.4  # of that size; generous, so that other fonts fit as well


def text_width(text):
    return len(text) * CHARACTER_WIDTH


class Svg(object):
    """The elements of a picture, in painting order."""

    def __init__(self):
        self.elements = []

    def add(self, name, content=None, **attributes):
        written = "".join(
            ' %s="%s"' % (key.rstrip("_").replace("_", "-"), _attribute(value))
            for key, value in sorted(attributes.items())
        )
        if content is None:
            self.elements.append("<%s%s/>" % (name, written))
        else:
            self.elements.append("<%s%s>%s</%s>" % (name, written, escaped(content), name))

    def text(self, x, y, content, anchor="middle", fill=INK, weight="normal", size=TEXT_SIZE):
        # A white edge keeps the text readable where a line runs under it.
        self.add(
            "text",
            content,
            x=x,
            y=y,
            text_anchor=anchor,
            fill=fill,
            font_size=size,
            font_weight=weight,
            stroke="white",
            stroke_width=4,
            stroke_linejoin="round",
            paint_order="stroke",
        )

    def written(self, width, height, title):
        return "\n".join(
            [
                '<svg xmlns="http://www.w3.org/2000/svg" width="%s" height="%s" '
                'viewBox="0 0 %s %s" font-family="%s" role="img">'
                % ((_attribute(width), _attribute(height)) * 2 + (FONT,)),
                "<title>%s</title>" % escaped(title),
                '<rect width="100%" height="100%" fill="white"/>',
            ]
            + self.elements
            + ["</svg>", ""]
        )


def _attribute(value):
    if isinstance(value, float):
        return ("%.1f" % value).replace(".0", "")
    return escaped(str(value))


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")


def content_lines(text):
    return [line.strip() for line in text.splitlines() if line.strip()]


# --- Sequences -----------------------------------------------------------------------------------

TOP, HEAD_HEIGHT, MARGIN = 46, 34, 24
ROW, NOTE_HEIGHT, WHEN_HEAD, WHEN_FOOT, WHEN_INSET = 34, 26, 30, 12, 10
LEAST_GAP, TEXT_ROOM = 120, 34

Arrow = collections.namedtuple("Arrow", "kind start end text")


def sequence(title, lines):
    lanes, steps = collections.OrderedDict(), []
    for line in lines:
        word, _, rest = line.partition(" ")
        arrow = re.match(r"(\w+) (->|~>|>>) (\w+): (.*)$", line)
        if word == "lane":
            key, _, lane_title = rest.partition(": ")
            lanes[key] = lane_title
        elif arrow:
            start, kind, end, text = arrow.groups()
            steps.append(Arrow(kind, start, end, text))
        elif word == "note":
            steps.append(("note",) + tuple(rest.split(": ", 1)))
        elif word == "when":
            steps.append(("when", rest))
        elif line == "end":
            steps.append(("end",))
        else:
            raise ValueError("not understood: " + line)
    return _drawn_sequence(title, lanes, steps)


def _places(lanes, steps):
    """The x of each lane: as close together as titles, texts and notes allow."""
    keys = list(lanes)
    gaps = [
        max(LEAST_GAP, (text_width(lanes[a]) + text_width(lanes[b])) / 2 + 48)
        for a, b in zip(keys, keys[1:])
    ]
    # The narrow ones first: what they take, the wide ones have already.
    arrows = [step for step in steps if isinstance(step, Arrow)]
    spans = [(sorted((keys.index(arrow.start), keys.index(arrow.end))), arrow) for arrow in arrows]
    for (first, last), arrow in sorted(spans, key=lambda span: span[0][1] - span[0][0]):
        short = text_width(arrow.text) + TEXT_ROOM - sum(gaps[first:last])
        if short > 0:
            gaps[last - 1] += short
    left = MARGIN + 60.0 + text_width(lanes[keys[0]]) / 2
    places = {}
    for key, gap in zip(keys, gaps + [0]):
        places[key] = left
        left += gap
    return places


def _drawn_sequence(title, lanes, steps):
    places = _places(lanes, steps)
    right = max(places.values()) + text_width(lanes[list(lanes)[-1]]) / 2 + 60 + MARGIN
    svg, frames, front = Svg(), Svg(), Svg()
    y = TOP + HEAD_HEIGHT + 18.0
    open_frames = []
    for step in steps:
        if isinstance(step, Arrow):
            y += ROW
            _arrow(front, places[step.start], places[step.end], y - 8, step)
        elif step[0] == "note":
            width = text_width(step[2]) + 24
            x = places[step[1]] - width / 2
            y += NOTE_HEIGHT + 12
            front.add(
                "rect",
                x=x,
                y=y - NOTE_HEIGHT - 2,
                width=width,
                height=NOTE_HEIGHT,
                rx=4,
                fill=NOTE_FILL,
                stroke="#d9c878",
            )
            front.add(
                "text",
                step[2],
                x=places[step[1]],
                y=y - 11,
                text_anchor="middle",
                fill=INK,
                font_size=TEXT_SIZE,
            )
        elif step[0] == "when":
            y += 10
            open_frames.append((y, step[1]))
            y += WHEN_HEAD - 8
        else:
            start, text = open_frames.pop()
            y += WHEN_FOOT
            _frame(frames, MARGIN + WHEN_INSET * (len(open_frames) + 1), right, start, y, text)
    y += 20
    for key, lane_title in lanes.items():
        x, width = places[key], text_width(lane_title) + 32
        svg.add(
            "line",
            x1=x,
            y1=TOP + HEAD_HEIGHT,
            x2=x,
            y2=y,
            stroke=LINE,
            stroke_width=1.5,
            stroke_dasharray="5 4",
        )
        front.add(
            "rect",
            x=x - width / 2,
            y=TOP,
            width=width,
            height=HEAD_HEIGHT,
            rx=6,
            fill=HEAD_FILL,
            stroke=BLUE,
        )
        front.add(
            "text",
            lane_title,
            x=x,
            y=TOP + 22,
            text_anchor="middle",
            fill=INK,
            font_size=TEXT_SIZE,
            font_weight="bold",
        )
    front.text(MARGIN, 28, title, anchor="start", weight="bold", size=16)
    y = _legend(front, y + 22)
    svg.elements += frames.elements + front.elements
    return svg.written(right, y + 16, title)


def _arrow(svg, start, end, y, arrow):
    color = {"->": BLUE, "~>": GREY, ">>": GREEN}[arrow.kind]
    towards = 1 if end > start else -1
    dash = {"stroke_dasharray": "6 4"} if arrow.kind == ">>" else {}
    thick = 2 if arrow.kind == "->" else 1.3
    svg.add(
        "line", x1=start, y1=y, x2=end - towards * 2, y2=y, stroke=color, stroke_width=thick, **dash
    )
    back = end - towards * 10
    if arrow.kind == "->":
        svg.add(
            "path",
            d="M%.1f %.1f L%.1f %.1f L%.1f %.1f Z" % (end, y, back, y - 5, back, y + 5),
            fill=color,
        )
    else:
        svg.add(
            "path",
            d="M%.1f %.1f L%.1f %.1f L%.1f %.1f" % (back, y - 5, end, y, back, y + 5),
            fill="none",
            stroke=color,
            stroke_width=1.5,
        )
    svg.text((start + end) / 2, y - 7, arrow.text, fill=INK if arrow.kind == "->" else GREY)


def _frame(svg, inset, right, top, bottom, text):
    svg.add(
        "rect",
        x=inset,
        y=top,
        width=right - 2 * inset,
        height=bottom - top,
        rx=5,
        fill=WHEN_FILL,
        fill_opacity=0.035,
        stroke=WHEN_FILL,
        stroke_opacity=0.6,
    )
    svg.add(
        "text",
        text,
        x=inset + 10,
        y=top + 17,
        fill=WHEN_FILL,
        font_size=12,
        font_weight="bold",
        font_style="italic",
    )


def _legend(svg, y):
    x = MARGIN
    for kind, text in (("->", "call"), ("~>", "read or written"), (">>", "result")):
        _arrow(svg, x, x + 44, y, Arrow(kind, None, None, ""))
        svg.add("text", text, x=x + 54, y=y + 4, fill=GREY, font_size=12)
        x += 54 + text_width(text) + 30
    return y


# --- Following -----------------------------------------------------------------------------------

PANEL_SCALE = 0.42


def followed_position(place, border, view, room):
    """Where a view begins along one axis, as larkspur puts it."""
    start = place - border
    if start < 0:
        return 0
    return room - view if start + view > room else start


def parse_following(lines):
    """(sizes: name -> (x, y), panels: list of ((x, y), text)) of a text."""
    sizes, panels = {}, []
    for line in lines:
        word, x, y = line.partition(":")[0].split()
        if word == "panel":
            panels.append(((int(x), int(y)), line.partition(": ")[2]))
        else:
            sizes[word] = (int(x), int(y))
    return sizes, panels


def following(title, lines):
    sizes, panels = parse_following(lines)
    room, view, border = sizes["room"], sizes["view"], sizes["border"]
    svg = Svg()
    svg.text(MARGIN, 28, title, anchor="start", weight="bold", size=16)
    width, height = [side * PANEL_SCALE for side in room]
    left, top = float(MARGIN), 78.0
    for place, text in panels:
        corner = [
            followed_position(place[axis], border[axis], view[axis], room[axis]) for axis in (0, 1)
        ]
        _panel(svg, left, top, (width, height), view, corner, place, border)
        svg.text(left + width / 2, top - 14, text)
        svg.text(
            left + width / 2,
            top + height + 22,
            "instance at (%d, %d)" % place,
            fill=RED,
        )
        svg.text(
            left + width / 2,
            top + height + 42,
            "view at (%d, %d)" % tuple(corner),
            fill=BLUE,
            weight="bold",
        )
        left += width + 30
    svg.add(
        "text",
        "room %d x %d, view %d x %d, view_hborder %d, view_vborder %d" % (room + view + border),
        x=MARGIN,
        y=top + height + 74,
        fill=GREY,
        font_size=12,
    )
    return svg.written(left - 30 + MARGIN, top + height + 92, title)


def _panel(svg, left, top, room, view, corner, place, border):
    width, height = [side * PANEL_SCALE for side in view]
    view_x, view_y = left + corner[0] * PANEL_SCALE, top + corner[1] * PANEL_SCALE
    x, y = left + place[0] * PANEL_SCALE, top + place[1] * PANEL_SCALE
    svg.add(
        "rect",
        x=left,
        y=top,
        width=room[0],
        height=room[1],
        fill="#eef3ea",
        stroke=GREEN,
        stroke_width=1.5,
    )
    svg.add(
        "rect",
        x=view_x,
        y=view_y,
        width=width,
        height=height,
        fill=BLUE,
        fill_opacity=0.14,
        stroke=BLUE,
        stroke_width=2,
    )
    svg.text(left + 6, top + room[1] - 7, "room", anchor="start", fill=GREEN, size=12)
    svg.text(view_x + width - 6, view_y + 16, "view", anchor="end", fill=BLUE, size=12)
    kept = (place[0] - corner[0] == border[0], place[1] - corner[1] == border[1])
    for axis, horizontal in ((0, True), (1, False)):
        if kept[axis]:
            ends = (view_x, y, x, y) if horizontal else (x, view_y, x, y)
            svg.add(
                "line",
                x1=ends[0],
                y1=ends[1],
                x2=ends[2],
                y2=ends[3],
                stroke=RED,
                stroke_width=1.3,
                stroke_dasharray="4 3",
            )
    if all(kept):
        svg.text((view_x + x) / 2, y + 16, "hborder", fill=RED, size=11)
        svg.text(x + 6, (view_y + y) / 2 + 4, "vborder", anchor="start", fill=RED, size=11)
    svg.add("circle", cx=x, cy=y, r=5, fill=RED, stroke="white", stroke_width=1.5)


# --- The program ---------------------------------------------------------------------------------

KINDS = {"sequence": sequence, "following": following}


def picture_of(text):
    """The SVG that a diagram's text gives."""
    lines = content_lines(text)
    kind, _, title = lines[0].partition(" ")
    return KINDS[kind](title, lines[1:])


def main(arguments):
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    stale = []
    for path in sorted(glob.glob(os.path.join(HERE, "diagrams", "*.txt"))):
        name = os.path.splitext(os.path.basename(path))[0] + ".svg"
        target = os.path.join(PICTURES, name)
        with open(path) as text:
            picture = picture_of(text.read())
        if arguments:
            if not os.path.exists(target) or open(target).read() != picture:
                stale.append(name)
        else:
            with open(target, "w") as written:
                written.write(picture)
    for name in stale:
        print("docs/pictures/%s is not current: run docs/make/diagrams.py" % name, file=sys.stderr)
    return 1 if stale else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
