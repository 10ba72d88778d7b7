"""Pictures for the manual, put together of surfaces that were drawn: as they are and enlarged.

A part is a numpy array of red, green and blue, [y][x][channel]. Transparent pixels show a light
checkerboard. There is no text in pictures, as fonts differ between machines.
"""

import ctypes
import os

import numpy
import pygame

CARD = (238, 238, 240)
EDGE = (120, 120, 126)
GLYPH = (105, 105, 112)
CHECKS = (255, 240)  # the greys of the checkerboard
CHECK_SIDE = 4
ORANGE = (232, 102, 0)
BLUE = (0, 104, 222)
FACTOR = 8


def words(surface):
    """The pixel values of a 32-bit pygame Surface, [y][x], whatever is in their top bytes."""
    width, height = surface.get_size()
    if not width or not height:
        return numpy.zeros((height, width), numpy.uint32)
    rows = numpy.frombuffer(surface.get_buffer().raw, numpy.uint8)
    rows = rows.reshape(height, surface.get_pitch())[:, : 4 * width]
    return numpy.ascontiguousarray(rows).view(numpy.uint32)


def channels(surface):
    """Red, green, blue and alpha of a 32-bit pygame Surface, [y][x][channel]; with masks of whole
    bytes. A surface without alpha is opaque."""
    pixels = words(surface)
    found = [
        pixels // (mask // 255) & 255 if mask else numpy.full_like(pixels, 255)
        for mask in [mask & 0xFFFFFFFF for mask in surface.get_masks()]
    ]
    return numpy.dstack(found).astype(numpy.uint8)


def _checkerboard(height, width):
    y, x = numpy.mgrid[:height, :width] // CHECK_SIDE
    grey = numpy.where((x + y) % 2, CHECKS[1], CHECKS[0])
    return numpy.dstack([grey] * 3)


def _opaque(rgba):
    """What pixels look like on the checkerboard."""
    alpha = rgba[:, :, 3:].astype(int)
    behind = _checkerboard(*rgba.shape[:2])
    return ((rgba[:, :, :3] * alpha + behind * (255 - alpha) + 127) // 255).astype(numpy.uint8)


def _blank(width, height, colour=CARD):
    return numpy.full((height, width, 3), colour, numpy.uint8)


def _framed(part, colour=EDGE):
    height, width = part.shape[:2]
    result = _blank(width + 2, height + 2, colour)
    result[1:-1, 1:-1] = part
    return result


def natural(surface):
    """A surface as it is, in a frame."""
    return _framed(_opaque(channels(surface)))


def _ring(part, left, top, side, colour):
    """A ring of two pixels around a square, in a light one."""
    for outset, ink in ((3, (255, 255, 255)), (2, colour), (1, colour)):
        box = part[
            max(top - outset, 0) : top + side + outset, max(left - outset, 0) : left + side + outset
        ]
        box[:1] = box[-1:] = box[:, :1] = box[:, -1:] = ink


def enlarged(surface, rings=(), margin=0, factor=FACTOR):
    """A surface whose pixels are squares with lines between them, in a frame.

    rings   ((x, y), colour): pixels to point out, which may lie outside
    margin  pixels to leave free around the surface, for such rings
    """
    rgba = channels(surface)
    height, width = rgba.shape[:2]
    part = _opaque(rgba.repeat(factor, 0).repeat(factor, 1)).astype(int)
    for line in (part[::factor, :], part[:, ::factor]):
        line[...] = (line * 4 + 128) // 5
    framed = _framed(part[1:, 1:].astype(numpy.uint8))
    result = _blank(*[(side + 2 * margin) * factor + 1 for side in (width, height)])
    place = margin * factor
    result[place : place + framed.shape[0], place : place + framed.shape[1]] = framed
    for (x, y), colour in rings:
        left, top = [(place + margin) * factor + 1 for place in (x, y)]
        _ring(result, left, top, factor - 1, colour)
    return result


def glyph(kind):
    """A sign between parts: "+", "=" or ">"."""
    part = _blank(15, 15)
    if kind == "+":
        part[6:9, 1:14] = part[1:14, 6:9] = GLYPH
    elif kind == "=":
        part[4:7, 1:14] = part[9:12, 1:14] = GLYPH
    else:
        part[6:9, 1:9] = GLYPH
        for i in range(7):
            part[1 + i : 14 - i, 7 + i] = GLYPH
    return part


def _joined(parts, axis, gap):
    """Parts one after the other along an axis, each in the middle of the other one."""
    across = 1 - axis
    width = max(part.shape[across] for part in parts)
    pieces = []
    for part in parts:
        before = (width - part.shape[across]) // 2
        shape = list(part.shape)
        shape[across] = width
        piece = numpy.zeros(shape, numpy.uint8) + numpy.array(CARD, numpy.uint8)
        place = [slice(None)] * 3
        place[across] = slice(before, before + part.shape[across])
        piece[tuple(place)] = part
        if pieces and gap:
            shape[axis] = gap
            pieces.append(numpy.zeros(shape, numpy.uint8) + numpy.array(CARD, numpy.uint8))
        pieces.append(piece)
    return numpy.concatenate(pieces, axis)


def row(*parts, **options):
    return _joined(parts, 1, options.get("gap", 12))


def column(*parts, **options):
    return _joined(parts, 0, options.get("gap", 12))


def card(part):
    """A whole picture: a part on a light ground, in a frame, which shows on any page."""
    height, width = part.shape[:2]
    result = _blank(width + 24, height + 24)
    result[12:-12, 12:-12] = part
    return _framed(result)


def plot(width, height, lines, ticks=(), background=None):
    """Axes and a polyline per line; a line is ([(x, y)], colour) with x and y from 0.0 to 1.0, y
    upwards. Ticks are x of upright lines. `background` is a function from x to a colour."""
    part = _blank(width, height, (255, 255, 255))
    if background is not None:
        for x in range(width):
            part[:, x] = background(x / float(width - 1))
    for x in ticks:
        part[:, int(round(x * (width - 1)))] = (200, 200, 205)
    for points, colour in lines:
        for (x1, y1), (x2, y2) in zip(points, points[1:]):
            steps = int(max(abs(x2 - x1) * width, abs(y2 - y1) * height, 1)) * 2
            for i in range(steps + 1):
                x = int(round((x1 + (x2 - x1) * i / steps) * (width - 2)))
                y = int(round((1 - (y1 + (y2 - y1) * i / steps)) * (height - 2)))
                part[y : y + 2, x : x + 2] = colour
    return _framed(part)


def _surface_of(part):
    height, width = part.shape[:2]
    return pygame.image.frombuffer(numpy.ascontiguousarray(part).tostring(), (width, height), "RGB")


def _read(path):
    """The pixels of a picture file; None when there is none."""
    if not os.path.exists(path):
        return None
    surface = pygame.image.load(path)
    width, height = surface.get_size()
    pixels = numpy.frombuffer(pygame.image.tostring(surface, "RGB"), numpy.uint8)
    return pixels.reshape(height, width, 3)


def write(pictures, folder):
    """Writes pictures, (name, whole picture), as PNG files."""
    for name, part in pictures:
        pygame.image.save(_surface_of(part), os.path.join(folder, name + ".png"))


def stale(pictures, folder, prefix, tolerances):
    """The file names in a folder that are not as they would be written: other pixels (which bytes a
    PNG packs them into is its library's affair), missing, or nobody's, among those that begin with
    the prefix. `tolerances`: name -> levels by which channels may differ, 0 for others."""
    found = []
    for name, part in pictures:
        there = _read(os.path.join(folder, name + ".png"))
        if there is None or there.shape != part.shape:
            found.append(name + ".png")
        elif abs(there.astype(int) - part).max() > tolerances.get(name, 0):
            found.append(name + ".png")
    known = set(name + ".png" for name, _ in pictures)
    found += [
        name
        for name in os.listdir(folder)
        if name.startswith(prefix) and name.endswith(".png") and name not in known
    ]
    return sorted(found)


def sdl_surface(surface):
    """The address of the SDL surface inside a pygame Surface, as a native caller passes it."""
    head = 2 * ctypes.sizeof(ctypes.c_void_p)
    return ctypes.c_void_p.from_address(id(surface) + head)
