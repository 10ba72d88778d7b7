"""Charts of stacked shares, as SVG and as PNG from the same strokes."""

from __future__ import division

import pygame

LAYERS = (
    ("larkspur", "#5b4fcf"),
    ("SDL", "#e3a72f"),
    ("SDL_gfx", "#cf5a45"),
    ("Python", "#6aa57f"),
    ("rest", "#b4b4bd"),
)
INK, PAPER = "#22222c", "#ffffff"
PNG_SCALE = 2  # pixels per unit, for screens that are finer
BAR, GAP, HEIGHT = 56, 14, 220
LEFT, TOP, BOTTOM = 50, 78, 50


class Canvas(object):
    """Rectangles and lines of text; what is kept is both an SVG and a picture."""

    def __init__(self, width, height):
        self.size = width, height
        self.elements = []
        self.picture = pygame.Surface((width * PNG_SCALE, height * PNG_SCALE), 0, 32)
        self.rectangle(0, 0, width, height, PAPER)

    def rectangle(self, x, y, width, height, colour):
        self.elements.append(
            '<rect x="%.1f" y="%.1f" width="%.1f" height="%.1f" fill="%s"/>'
            % (x, y, width, height, colour)
        )
        left, top, right, bottom = (
            int(round(PNG_SCALE * edge)) for edge in (x, y, x + width, y + height)
        )
        self.picture.fill(pygame.Color(colour), (left, top, right - left, bottom - top))

    def text(self, x, y, text, size=12, colour=INK, anchor="middle"):
        """A line whose foot is at y, with its middle, start or end at x."""
        self.elements.append(
            '<text x="%.1f" y="%.1f" font-size="%d" fill="%s" text-anchor="%s">%s</text>'
            % (x, y, size, colour, anchor, text)
        )
        font = pygame.font.SysFont("dejavusans,liberationsans,arial", int(size * PNG_SCALE * 0.94))
        drawn = font.render(text, True, pygame.Color(colour))
        shift = {"start": 0, "middle": drawn.get_width() // 2, "end": drawn.get_width()}[anchor]
        self.picture.blit(
            drawn, (int(PNG_SCALE * x) - shift, int(PNG_SCALE * y) - font.get_ascent())
        )

    def save(self, path):
        """As path.svg and path.png."""
        with open(path + ".svg", "w") as svg:
            svg.write(
                '<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 %d %d" width="%d" '
                'height="%d" font-family="sans-serif">\n' % (self.size * 2)
            )
            svg.write("\n".join(self.elements) + "\n</svg>\n")
        pygame.image.save(self.picture, path + ".png")


def draw(path, title, axis, panels):
    """Panels side by side: (name, [(label, milliseconds, {layer: share})])."""
    pygame.font.init()
    widths = [len(bars) * (BAR + GAP) + GAP for _, bars in panels]
    canvas = Canvas(LEFT + sum(widths) + GAP * len(panels), TOP + HEIGHT + BOTTOM)
    canvas.text(LEFT, 22, title, 15, anchor="start")
    x = LEFT
    for layer, colour in LAYERS:
        canvas.rectangle(x, 33, 11, 11, colour)
        canvas.text(x + 16, 43, layer, 12, anchor="start")
        x += 95
    for percent in (0, 25, 50, 75, 100):
        y = TOP + HEIGHT * (1 - percent / 100)
        canvas.text(LEFT - 8, y + 4, "%d %%" % percent, 10, anchor="end")
    left = LEFT
    for (name, bars), width in zip(panels, widths):
        for number, (label, milliseconds, shares) in enumerate(bars):
            bar(canvas, left + GAP + number * (BAR + GAP), label, milliseconds, shares)
        middle = left + width / 2
        canvas.text(middle, TOP + HEIGHT + 34, (name + ", " + axis) if axis else name, 12)
        left += width + GAP
    canvas.save(path)


def bar(canvas, left, label, milliseconds, shares):
    y = TOP + HEIGHT
    for layer, colour in LAYERS:
        height = HEIGHT * shares.get(layer, 0)
        y -= height
        canvas.rectangle(left, y, BAR, height, colour)
        if height >= 13:
            percent = "%.0f %%" % (100 * shares[layer])
            canvas.text(left + BAR / 2, y + height / 2 + 4, percent, 10, PAPER)
    canvas.text(left + BAR / 2, TOP - 5, "%.3g ms" % milliseconds, 11)
    canvas.text(left + BAR / 2, TOP + HEIGHT + 15, label, 11)
