"""The pictures that jobs work on: the same ones for every way, with either pygame."""

from __future__ import division

import math
from random import Random, randrange

import pygame

XRGB = (0xFF0000, 0xFF00, 0xFF, 0)
ARGB = (0xFF0000, 0xFF00, 0xFF, 0xFF000000)
RGBA = (0xFF000000, 0xFF0000, 0xFF00, 0xFF)
KEY = (255, 0, 255)


# What keeps pictures apart in memory: how a source and a target lie to each other there can make
# the same loop faster or slower.
_gaps = []


def forget_gaps():
    """Forgets the gaps between the pictures that were made before."""
    del _gaps[:]


def surface_of(size, flags=0, masks=XRGB):
    """A black Surface, at a distance from the one before that nobody foresees."""
    _gaps.append(bytearray(16 * randrange(4096)))
    return pygame.Surface(size, flags, 32, masks)


def picture(size, flags=0, masks=XRGB):
    """Bars of many colours and alphas."""
    width, height = size
    surface = surface_of(size, flags, masks)
    for y in range(0, height, 8):
        surface.fill((y * 7 % 256, y * 3 % 256, y % 256, 200), (0, y, width - y % width // 2, 5))
    return surface


def backdrop(size):
    """What is drawn upon: columns of other colours."""
    width, height = size
    surface = surface_of(size)
    for x in range(0, width, 4):
        surface.fill((x * 5 % 256, 90, 255 - x * 3 % 256), (x, 0, 4, height))
    return surface


def leave_disc(surface):
    """Gives all but a disc the colour KEY, which is not set as the key."""
    width, height = surface.get_size()
    for y in range(height):
        rise = (2 * y + 1) / height - 1
        left = int((1 - math.sqrt(1 - rise * rise)) * width / 2)
        surface.fill(KEY, (0, y, left, 1))
        surface.fill(KEY, (width - left, y, left, 1))


def sprite(size):
    """A disc of many colours."""
    surface = picture(size)
    leave_disc(surface)
    return surface


def noise(size):
    """A picture with alpha whose bytes are 0 and 255 in no order: whether a sum is cut off stays as
    unforeseeable in the thousandth call as it is in the first."""
    width, height = size
    source = Random(1)
    bits = format(source.getrandbits(4 * width * height), "0%db" % (4 * width * height))
    steps = bytearray(bits.encode("ascii")).replace(b"0", b"\x00").replace(b"1", b"\xff")
    surface = surface_of(size, pygame.SRCALPHA, ARGB)
    surface.get_buffer().write(bytes(steps), 0)
    return surface


def soft_disc(size):
    """A white disc whose alpha falls to 0 at its edge."""
    disc = surface_of((size, size), pygame.SRCALPHA, ARGB)
    middle = (size - 1) / 2
    for x in range(size):
        for y in range(size):
            distance = math.hypot(x - middle, y - middle) / (size / 2)
            disc.set_at((x, y), (255, 255, 255, int(255 * max(0, 1 - distance))))
    return disc


def soft_sprite(size):
    """A picture that is opaque inside; its alpha falls to 0 over eight pixels at the edges."""
    surface = picture(size, pygame.SRCALPHA, ARGB)
    surface.fill((0, 0, 0, 255), None, pygame.BLEND_RGBA_SUB)
    inner = surface.get_rect()
    for _ in range(8):
        inner.inflate_ip(-2, -2)
        surface.fill((0, 0, 0, 32), inner, pygame.BLEND_RGBA_ADD)
    return surface
