#!/usr/bin/env python2.7
"""Draws the pictures of docs/pixels.md, by calling the module itself.

    pixel_pictures.py           writes docs/pictures/pixels-*.png
    pixel_pictures.py --check   compares their pixels with what it would write; names each file that
                                is stale and exits with 1 if there is one

Needs the built module on PYTHONPATH. No display: SDL's dummy driver serves.
"""

from __future__ import print_function

import argparse
import ctypes
import math
import os
import sys
import types

os.environ["SDL_VIDEODRIVER"] = "dummy"
os.environ.setdefault("PYGAME_HIDE_SUPPORT_PROMPT", "1")

import pygame
import sheets
from sheets import BLUE, ORANGE

DOCS = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
FOLDER = os.path.join(DOCS, "pictures")
PREFIX = "pixels-"
SCREEN = (256, 192)
WHITE = 0xFFFFFF


class DrawProps(object):
    color = (40, 96, 176)
    alpha = 1.0


def start():
    """Imports larkspur with a host that has the drawing properties, and gives it a display."""
    gm6, gmapi = [sys.modules.setdefault(n, types.ModuleType(n)) for n in ("gm6", "gmapi")]
    gmapi.py_draw_props, gmapi.pygame = DrawProps(), pygame
    gmapi.py_self_stack, gmapi.py_ParticleSystem = [], DrawProps
    gmapi.__dict__["__color_to_int"] = lambda color: color[0] << 16 | color[1] << 8 | color[2]
    import larkspur

    for name in (
        "Compile Create InitializeBackgrounds AddInstance AddDrawnInstance ResortDrawnObjects "
        "SetBackgroundIndex StepAlarms MoveInstances HandleCollisions StepEvents DrawBackgrounds "
        "RenderBackground Leave MouseButtonDown MouseButtonUp HandleKeyrelease HandleKeypress"
    ).split():
        setattr(gm6, "Room_" + name, len)
    gm6.SpriteData_load_images = gm6.BackgroundData_load_images = gmapi.draw_sprite_ext = len
    pygame.display.init()
    screen = pygame.display.set_mode(SCREEN, 0, 32)
    larkspur.set_SDL_screen(screen)
    larkspur.RegisterInstancesDict({}, DrawProps, DrawProps, DrawProps)
    native = ctypes.PyDLL(larkspur.__file__)
    for name in ("g_view_xscale", "g_view_yscale"):  # as a frame would set them
        ctypes.c_double.in_dll(native, name).value = 1.0
    return larkspur, gmapi, native, screen


larkspur, gmapi, native, screen = start()


class Rect(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int16) for name in ("x", "y", "w", "h")]


def flagged_blit(source, target, x, y, mode):
    place = Rect(x, y, 0, 0)
    native.flagged_blit(
        sheets.sdl_surface(source), sheets.sdl_surface(target), ctypes.byref(place), mode
    )


def tinted(surface, tint):
    result = surface.copy()
    native.Tint_Surface(sheets.sdl_surface(result), ctypes.c_uint32(tint))
    return result


def faded(surface, alpha):
    result = surface.copy()
    native.Translucentify(sheets.sdl_surface(result), ctypes.c_uint8(alpha))
    return result


def darkened(surface, value):
    result = surface.copy()
    pixels = sheets.sdl_surface(result).value + 32  # where the record has its pixels
    native.satusub(
        ctypes.c_void_p.from_address(pixels),
        result.get_pitch() * result.get_height(),
        ctypes.c_uint32(value),
    )
    return result


def record_of(handle):
    """The address of the record behind a particle's or a type's handle."""
    address = ctypes.pythonapi.PyCObject_AsVoidPtr
    address.restype, address.argtypes = ctypes.c_void_p, [ctypes.py_object]
    return address(handle)


# --- Scenes: made of plain fills, so that all that is drawn on them is the module's -------------


def paper(width, height, surface=None):
    """Two light tones by turns, pixel by pixel, so that pixels can be counted."""
    surface = surface or pygame.Surface((width, height), 0, 32)
    for y in range(height):
        for x in range(width):
            surface.set_at((x, y), (236, 226, 204) if (x + y) % 2 else (250, 244, 228))
    return surface


def stripes(width, height, alpha=False):
    """Upright stripes of a dark and a light tone, to see what shows through."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA if alpha else 0, 32)
    for x in range(width):
        surface.fill((62, 66, 78) if x // 8 % 2 else (246, 240, 224), (x, 0, 1, height))
    return surface


def glass(width, height):
    """An empty surface with alpha."""
    return pygame.Surface((width, height), pygame.SRCALPHA, 32)


def flag(pixels=14, mast=2):
    """A pennant on a mast with a foot: no mirror image or turn of it looks like another."""
    surface = glass(pixels, pixels)
    surface.fill((120, 84, 52, 255), (mast, 0, 2, pixels))
    for y in range(7):
        length = min(y, 6 - y) * 3 + 2
        color = (
            (216, 58, 48, 255) if y < 3 else (244, 180, 40, 255) if y == 3 else (40, 96, 176, 255)
        )
        surface.fill(color, (mast + 2, y, length, 1))
    surface.fill((70, 120, 64, 255), (0, pixels - 1, pixels - 4, 1))
    return surface


def ball(side, color=(255, 255, 255), hard=False):
    """A disc with alpha that gets thinner towards its edge."""
    surface = glass(side, side)
    middle = (side - 1) / 2.0
    for y in range(side):
        for x in range(side):
            away = math.sqrt((x - middle) ** 2 + (y - middle) ** 2) / (side / 2.0)
            alpha = 255 if hard else int(255 * min(1.0, 2 * (1 - away)))
            if away < 1 and alpha > 0:
                surface.set_at((x, y), color + (alpha,))
    return surface


def arrow(side=24):
    """A white arrow to the right with a grey end, to see tints, turns and fades."""
    surface = glass(side, side)
    half = side // 2
    surface.fill((255, 255, 255, 255), (3, half - 3, half, 6))
    surface.fill((150, 150, 150, 255), (3, half - 3, 5, 6))
    for i in range(half - 3):
        surface.fill((255, 255, 255, 255), (half + i, 3 + i, 1, side - 6 - 2 * i))
    return surface


def copied(surface, x=0, y=0, width=None, height=None):
    """A part of the screen, or of another surface, as a surface of its own."""
    width, height = width or surface.get_width(), height or surface.get_height()
    return surface.subsurface((x, y, width, height)).copy()


def both(surface, *rings):
    """A small surface as it is beside its enlargement."""
    margin = 1 if any(not surface.get_rect().collidepoint(at) for at, _ in rings) else 0
    return sheets.row(sheets.natural(surface), sheets.enlarged(surface, rings, margin))


def corners(x1, y1, x2, y2):
    """Rings around the two corners of a call, as everywhere on the page."""
    return (((x1, y1), ORANGE), ((x2, y2), BLUE))


# --- The pictures -------------------------------------------------------------------------------


def colours():
    """One number as a GM colour and as a pixel value, and a mix of two colours."""
    swatches = []
    for colour in (0x0060E8, 0x3CA050, 0xD8A040):
        surface = pygame.Surface((48, 32), 0, 32)
        larkspur.fast_draw_gradient_v(surface, 0, 0, 25, 32, colour, colour, 255)
        larkspur.fill_translucent(surface, 24, 0, 48, 32, colour, 255)
        swatches.append(sheets.natural(copied(surface, 0, 0, 47, 31)))
    native.blend.restype = ctypes.c_uint32
    strip = pygame.Surface((257, 24), 0, 32)
    for weight in range(257):
        colour = native.blend(0xE86000, 0x3060D8, 256 - weight)
        for y in range(24):
            strip.set_at((weight, y), colour)
    return sheets.row(sheets.row(*swatches), sheets.natural(strip), gap=28)


def fill_translucent():
    alphas = []
    for alpha in (0, 64, 128, 192, 255):
        surface = stripes(72, 48)
        larkspur.fill_translucent(surface, 10, 8, 62, 39, 0x2860B0, alpha)
        alphas.append(sheets.natural(surface))
    inside = paper(20, 12)
    larkspur.fill_translucent(inside, 4, 3, 14, 8, 0x2860B0, 160)
    whole = paper(14, 10)
    larkspur.fill_translucent(whole, 0, 0, 14, 10, 0x2860B0, 160)
    return sheets.column(
        sheets.row(*alphas),
        sheets.row(
            both(inside, *corners(4, 3, 14, 8)), both(whole, *corners(0, 0, 14, 10)), gap=28
        ),
    )


def draw_rectangle():
    parts = []
    for alpha, outline in ((1.0, 0), (1.0, 1), (0.5, 0)):
        paper(20, 13, screen)
        gmapi.py_draw_props.alpha = alpha
        larkspur.draw_rectangle(4, 3, 14, 9, outline)
        parts.append(both(copied(screen, 0, 0, 20, 13), *corners(4, 3, 14, 9)))
    gmapi.py_draw_props.alpha = 1.0
    return sheets.row(*parts, gap=28)


def fast_draw_rectangle_color():
    red, yellow, blue, green = 0x2840D8, 0x30C8F8, 0xB06028, 0x509040
    cases = (
        ((red, red, red, red), 0.6, 0),
        ((red, red, blue, blue), 1.0, 0),
        ((red, red, blue, blue), 0.6, 0),
        ((red, yellow, blue, green), 1.0, 0),
        ((red, red, blue, blue), 1.0, 1),
    )
    shown, edges = [], []
    for colours, alpha, outline in cases:
        screen.blit(stripes(96, 64), (0, 0))
        larkspur.fast_draw_rectangle_color(*((10, 8, 86, 56) + colours + (alpha, outline)))
        shown.append(sheets.natural(copied(screen, 0, 0, 96, 64)))
        paper(20, 13, screen)
        larkspur.fast_draw_rectangle_color(*((4, 3, 14, 9) + colours + (alpha, outline)))
        edges.append(sheets.enlarged(copied(screen, 0, 0, 20, 13), corners(4, 3, 14, 9)))
    return sheets.column(
        sheets.row(*shown), sheets.row(edges[0], edges[1], edges[3], edges[4], gap=12)
    )


# Colours and opacities of the layers that the pictures of gradients show.
V1 = (0x3050E0, 0xB06028, 0.8)
C1 = (0x40A0F0, 0.35)
V2 = (0x40D0F8, 0x308848, 0.5)


def _layer_alone(layer):
    """One layer by itself: gradients in GM colours, constants in pixel values."""
    surface, face = glass(60, 60), pygame.Surface((60, 60), 0, 32)
    if len(layer) == 3:
        larkspur.fast_draw_gradient_v(face, 0, 0, 61, 61, layer[0], layer[1], 255)
    else:
        larkspur.fill_translucent(face, 0, 0, 61, 61, layer[0], 255)
    for y in range(59):
        for x in range(59):
            r, g, b = face.get_at((x, y))[:3]
            surface.set_at((x, y), (r, g, b, int(layer[-1] * 255)))
    return copied(surface, 0, 0, 59, 59)


def _gradients(function, *layers):
    """Old pixels, each layer alone, and all together; below them the edges."""
    numbers = tuple(number for layer in layers for number in layer)
    old = stripes(60, 60)
    result = old.copy()
    function(result, 0, 0, 60, 60, *numbers)
    parts = [sheets.natural(copied(old, 0, 0, 59, 59))]
    for layer in layers:
        parts += [sheets.glyph("+"), sheets.natural(_layer_alone(layer))]
    parts += [sheets.glyph("="), sheets.natural(copied(result, 0, 0, 59, 59))]
    edges = []
    for width, height, rectangle in ((20, 13, (4, 2, 14, 10)), (14, 10, (3, 2, 14, 10))):
        surface = paper(width, height)
        function(surface, *(rectangle + numbers))
        edges.append(both(surface, *corners(*rectangle)))
    return sheets.column(sheets.row(*parts), sheets.row(*edges, gap=28))


def fast_draw_gradient_v():
    return _gradients(
        lambda *arguments: larkspur.fast_draw_gradient_v(
            *(arguments[:-1] + (int(arguments[-1] * 255),))
        ),
        V1,
    )


def fast_draw_gradients_vc():
    return _gradients(larkspur.fast_draw_gradients_vc, V1, C1)


def fast_draw_gradients_vv():
    return _gradients(larkspur.fast_draw_gradients_vv, V1, V2)


def fast_draw_gradients_vcv():
    return _gradients(larkspur.fast_draw_gradients_vcv, V1, C1, V2)


def fast_draw_gradients_vcvvc():
    return _gradients(
        larkspur.fast_draw_gradients_vcvvc,
        V1[:2] + (0.6,),
        C1,
        (0x40D0F8, 0x308848, 0.35),
        (0xFFFFFF, 0xE04040, 0.45),
        (0xE0A020, 0.2),
    )


def opacity():
    """What the last layer's opacity does near 1.0: wrapped and unwrapped."""
    shown = []
    for last in (0.0, 0.5, 0.99, 1.0):
        surface = stripes(72, 48)
        larkspur.fast_draw_gradients_vc(
            surface, 8, 6, 64, 42, 0x3050E0, 0xB06028, 0.0, 0xE8A030, last
        )
        shown.append(sheets.natural(surface))
    others = []
    for last in (0.0, 0.5, 0.99, 1.0):
        surface = stripes(72, 48)
        larkspur.fast_draw_gradients_vcv(
            surface, 8, 6, 64, 42, 0x3050E0, 0xB06028, 0.0, 0xE8A030, 0.0, 0x30A0E8, 0x30A0E8, last
        )
        others.append(sheets.natural(surface))
    return sheets.row(sheets.row(*shown), sheets.row(*others), gap=28)


def flips():
    source = flag()
    parts = [both(source), sheets.glyph(">")]
    for flip in (larkspur.flip_h, larkspur.flip_v, larkspur.flip_vh):
        parts.append(sheets.enlarged(flip(source)))
    return sheets.row(*parts)


def scale():
    source = flag()
    parts = [sheets.row(sheets.natural(source), sheets.enlarged(source, factor=8))]
    parts.append(sheets.glyph(">"))
    for x, y in ((2.0, 2.0), (0.5, 1.0), (-1.5, 1.0)):
        result = larkspur.scale(source, x, y)
        parts.append(sheets.row(sheets.natural(result), sheets.enlarged(result, factor=8)))
    return sheets.row(*parts)


def rotoscale():
    source = flag()
    parts = [both(source), sheets.glyph(">")]
    for x, y, angle in ((1.0, 1.0, 30.0), (1.0, 1.0, 90.0), (2.0, 1.0, 0.0)):
        result = larkspur.rotoscale(source, x, y, angle)
        parts.append(sheets.row(sheets.natural(result), sheets.enlarged(result)))
    return sheets.row(*parts)


def tint_surface():
    source = pygame.Surface((48, 48), 0, 32)
    for x in range(48):
        level = 255 * x // 47
        source.fill((level, level, level), (x, 0, 1, 24))
        source.fill((255, level, 255 - level), (x, 24, 1, 24))
    parts = [sheets.natural(source), sheets.glyph(">")]
    parts += [
        sheets.natural(tinted(source, tint)) for tint in (WHITE, 0x8080FF, 0x2060FF, 0xFF8040, 0)
    ]
    return sheets.row(*parts)


def fades():
    source = ball(48, (216, 58, 48))
    normal = [sheets.natural(faded(source, alpha)) for alpha in (255, 170, 85, 0)]
    plain = pygame.Surface((48, 48), 0, 32)
    plain.blit(ball(48, (255, 170, 60), hard=True), (0, 0))
    adding = [
        sheets.natural(darkened(plain, (255 - alpha) * 0x01010101)) for alpha in (255, 170, 85, 0)
    ]
    return sheets.row(sheets.row(*normal), sheets.row(*adding), gap=28)


def _bright(side, color):
    """A disc on black, as pictures that are added are."""
    surface = pygame.Surface((side, side), 0, 32)
    surface.blit(ball(side, color, hard=True), (0, 0))
    return surface


def flagged_blits():
    shown = []
    for mode in (0, 1):
        target = stripes(96, 64)
        for x, y, color in (
            (12, 8, (200, 60, 40)),
            (36, 8, (40, 160, 60)),
            (24, 24, (40, 70, 200)),
        ):
            flagged_blit(_bright(36, color), target, x, y, mode)
        shown.append(sheets.natural(target))
    edges = []
    source = pygame.Surface((6, 5), 0, 32)
    for y in range(5):
        for x in range(6):
            source.set_at((x, y), (20, 40 + 30 * y, 80 + 30 * x))
    for x, y in ((5, 3), (-2, -2), (9, 3), (10, 3), (5, 7)):
        target = pygame.Surface((16, 10), 0, 32)
        for row in range(10):
            for column in range(16):
                target.set_at((column, row), (92, 64, 60) if (column + row) % 2 else (108, 76, 70))
        flagged_blit(source, target, x, y, 1)
        edges.append(sheets.enlarged(target, [((x, y), ORANGE)], 2 if x < 0 else 0))
    return sheets.column(
        sheets.row(*shown + [both(source), edges[0]], gap=20), sheets.row(*edges[1:])
    )


def sprite_scalecache_add():
    add = native.sprite_scalecache_add
    add.restype, add.argtypes = ctypes.py_object, [ctypes.py_object] * 2 + [ctypes.c_int] * 8

    def copies(image, *wanted):
        sprite = larkspur.GMSprite()
        sprite.subimages = [image]
        made = [
            add(sprite, number, 0, width, height, angle, 0, colour, alpha, rgba_copy)
            for number, (width, height, angle, colour, alpha, rgba_copy) in enumerate(wanted)
        ]
        return [sheets.natural(image), sheets.glyph(">")] + [sheets.natural(copy) for copy in made]

    soft = copies(
        flag(20),
        (-20, 20, 0, WHITE, 255, 0),
        (48, 48, 0, WHITE, 255, 0),
        (30, 48, 0, WHITE, 255, 0),
        (40, 40, 30, WHITE, 255, 0),
        (40, 40, 0, WHITE, 110, 0),
    )
    hard = stripes(24, 24)
    hard.blit(flag(20), (2, 2))
    solid = copies(hard, (48, 48, 0, 0x2860B0, 255, 0), (48, 48, 0, WHITE, 110, 1))
    return sheets.row(sheets.row(*soft), sheets.row(*solid), gap=28)


def particle_type(shape, blend=0):
    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, shape)
    larkspur.part_type_life(kind, 60, 60)
    larkspur.part_type_blend(kind, blend)
    return kind


def curves():
    kind = particle_type(ball(8))
    larkspur.part_type_alpha3(kind, 0.2, 1.0, 0.0)
    larkspur.part_type_color3(kind, 0x30D0FF, 0x2848E0, 0xE060C0)
    larkspur.part_type_size(kind, 0.5, 2.0, 0.018, 0)
    record = ctypes.c_void_p(record_of(kind))
    native.DesiredTint_type.restype = ctypes.c_uint32

    def alpha(x):
        return native.DesiredAlpha(record, ctypes.c_float(1 - x)) / 255.0

    def colour(x):
        number = native.DesiredTint_type(record, ctypes.c_float(1 - x))
        return number & 255, number >> 8 & 255, number >> 16 & 255

    places = [i / 60.0 for i in range(61)]
    particle = larkspur.CParticle_new_size_color(kind, 0, 0, 0.5, WHITE)
    size = ctypes.c_float.from_address(record_of(particle) + 40)  # behind 6 floats and 2 pointers
    sizes = []
    for _ in places:
        sizes.append(size.value / 2.5)
        larkspur.CParticle_step(particle)
    ink = (60, 60, 68)
    halves = (0.5,)
    return sheets.row(
        sheets.plot(180, 96, [([(x, alpha(x)) for x in places], ink)], halves),
        sheets.plot(180, 96, [], (), colour),
        sheets.plot(180, 96, [(list(zip(places, sizes)), ink)], halves),
    )


def particle_life():
    rows = []
    for blend, ground in ((0, (246, 240, 224)), (1, (28, 30, 44))):
        screen.fill(ground, (0, 0, 256, 64))
        for column in range(12):
            screen.fill([max(0, level - 24) for level in ground], (column * 21 + 8, 0, 4, 64))
        shape = ball(20) if blend == 0 else _bright(20, (255, 255, 255))
        for column in range(8):
            kind = particle_type(shape, blend)
            larkspur.part_type_alpha3(kind, 0.2, 1.0, 0.0)
            larkspur.part_type_color3(kind, 0x30D0FF, 0x2848E0, 0xE060C0)
            larkspur.part_type_size(kind, 0.5, 2.0, 0.018, 0)
            particle = larkspur.CParticle_new(kind, 16 + 31 * column, 32)
            ctypes.c_float.from_address(record_of(particle) + 40).value = 0.5
            for _ in range(8 * column + 1):
                larkspur.CParticle_step(particle)
            native.particle_render_low(ctypes.c_void_p(record_of(particle)), 0, 0)
        rows.append(sheets.natural(copied(screen, 0, 0, 255, 64)))
    return sheets.row(*rows)


def particle_pictures():
    shown = []
    for colour, alpha, size, angle in (
        (WHITE, 1.0, 1.0, 37),
        (0x40A0FF, 1.0, 1.0, 37),
        (0x40A0FF, 0.6, 1.0, 0),
        (0x40A0FF, 0.6, 1.0, 37),
        (0x40A0FF, 0.6, 2.0, 37),
    ):
        screen.fill((70, 84, 104), (0, 0, 72, 72))
        for x in range(0, 72, 16):
            screen.fill((92, 108, 130), (x, 0, 8, 72))
        kind = particle_type(arrow())
        larkspur.part_type_color3(kind, colour, colour, colour)
        larkspur.part_type_alpha3(kind, alpha, alpha, alpha)
        larkspur.part_type_size(kind, size, size, 0, 0)
        larkspur.part_type_orientation(kind, angle, angle, 0, 0, 0)
        larkspur.CParticle_dec_ttl_and_render(larkspur.CParticle_new(kind, 36, 36), 0, 0)
        shown.append(sheets.natural(copied(screen, 0, 0, 72, 72)))
    return sheets.row(*shown)


PICTURES = (
    ("colours", colours),
    ("fill_translucent", fill_translucent),
    ("draw_rectangle", draw_rectangle),
    ("fast_draw_rectangle_color", fast_draw_rectangle_color),
    ("fast_draw_gradient_v", fast_draw_gradient_v),
    ("fast_draw_gradients_vc", fast_draw_gradients_vc),
    ("fast_draw_gradients_vv", fast_draw_gradients_vv),
    ("fast_draw_gradients_vcv", fast_draw_gradients_vcv),
    ("fast_draw_gradients_vcvvc", fast_draw_gradients_vcvvc),
    ("opacity", opacity),
    ("flips", flips),
    ("scale", scale),
    ("rotoscale", rotoscale),
    ("tint", tint_surface),
    ("fades", fades),
    ("flagged_blit", flagged_blits),
    ("scale_cache", sprite_scalecache_add),
    ("curves", curves),
    ("particle_life", particle_life),
    ("particle_pictures", particle_pictures),
)

# What SDL's own blit of translucent pixels drew. An SDL 1.2 that is a layer over SDL 2 (it numbers
# its patches from 50 on) rounds otherwise there.
BLENDED = ("particle_life", "particle_pictures")
TOLERANCE = 4 if pygame.get_sdl_version() >= (1, 2, 50) else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--check", action="store_true", help="write nothing, compare")
    parser.add_argument("--folder", default=FOLDER, help="of the pictures; default: %(default)s")
    options = parser.parse_args()
    pictures = [(PREFIX + name, sheets.card(draw())) for name, draw in PICTURES]
    if not options.check:
        sheets.write(pictures, options.folder)
        return 0
    tolerances = dict.fromkeys([PREFIX + name for name in BLENDED], TOLERANCE)
    stale = sheets.stale(pictures, options.folder, PREFIX, tolerances)
    for name in stale:
        print("%s is stale; run docs/make/pixel_pictures.py" % name)
    return 1 if stale else 0


if __name__ == "__main__":
    sys.exit(main())
