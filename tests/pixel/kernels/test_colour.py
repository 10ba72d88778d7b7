"""Colour arithmetic as native callers reach it."""

import ctypes
import itertools
import random

import pygame
import pytest
from models import pixel_model as model
from support import native
from support.surfaces import ALL_MASKS, surface_of

word, byte, integer, single, pointer = (
    ctypes.c_uint32,
    ctypes.c_uint8,
    ctypes.c_int,
    ctypes.c_float,
    ctypes.c_void_p,
)

multalpha = native.function("multalpha", word, word, byte)
blend = native.function("blend", word, word, word, integer)
interpolate_unformatted = native.function("interpolate_unformatted", word, word, word, single)
interpolate_fmt = native.function("interpolate_fmt", word, word, word, single, pointer)
color_for_format = native.function("color_for_format", word, word, pointer)
blend_mode_flatten = native.function("blend_mode_flatten", integer, integer)

COLOURS = (0, 0xFF, 0xFF00, 0xFF0000, 0xFF000000, 0xFFFFFFFF, 0x12345678, 0xFEDCBA98)


def format_of(surface):
    return ctypes.addressof(native.sdl_surface(surface).format.contents)


@pytest.mark.parametrize("colour", COLOURS)
def test_multalpha_scales_each_channel(colour):
    for alpha in range(256):
        assert multalpha(colour, alpha) == model.multalpha(colour, alpha)


def test_multalpha_by_hand():
    assert multalpha(0xFFFFFFFF, 255) == 0x00FEFEFE
    assert multalpha(0x80FF4001, 128) == 0x007F2000


@pytest.mark.parametrize("a, b", itertools.product(COLOURS, COLOURS))
def test_blend_at_every_weight(a, b):
    for weight in range(257):
        assert blend(a, b, weight) == model.blend(a, b, weight)


def test_blend_weights_are_not_clamped():
    assert blend(0xFF, 0, 512) == 0x1FE
    numbers = random.Random(1)
    for weight in [-1, 257, 512, -256, 2**31 - 1, -(2**31)] + [
        numbers.randrange(-(2**31), 2**31) for _ in range(300)
    ]:
        a, b = numbers.randrange(2**32), numbers.randrange(2**32)
        assert blend(a, b, weight) == model.blend(a, b, weight), (hex(a), hex(b), weight)


def test_blend_keeps_one_colour_at_the_ends():
    assert blend(0xDEADBEEF, 0x12345678, 256) == 0xADBEEF
    assert blend(0xDEADBEEF, 0x12345678, 0) == 0x345678


def test_the_two_interpolations_differ_in_their_constant():
    surface = surface_of(1, 1, (0xFF, 0xFF00, 0xFF0000, 0))  # a GM colour is its own pixel value
    form = format_of(surface)
    assert interpolate_unformatted(0xFF, 0, 1.0) == 0xFF
    assert interpolate_fmt(0xFF, 0, 1.0, form) == 255 * 255 // 256
    # t = 0.5: weights 128 of 256, and 127 as 127.5 is truncated
    assert interpolate_unformatted(0xFF, 0, 0.5) == 255 * 128 // 256
    assert interpolate_fmt(0xFF, 0, 0.5, form) == 255 * 127 // 256


@pytest.mark.parametrize("t", [0.0, 0.1, 0.25, 1 / 3.0, 0.999, 1.0, 1.5, -0.001, -2.0])
def test_interpolations_follow_the_weight(t):
    t = ctypes.c_float(t).value
    surface = surface_of(1, 1)
    for a, b in itertools.product(COLOURS, COLOURS):
        assert interpolate_unformatted(a, b, t) == model.blend(a, b, int(256 * t))
        assert interpolate_fmt(a, b, t, format_of(surface)) == model.mapped(
            model.blend(a, b, int(255 * t)), (0xFF0000, 0xFF00, 0xFF, 0)
        )


def test_weight_of_a_formatted_interpolation_is_a_single_float():
    # 255 t is 257 - 2^-23, which a double holds and a single float rounds to 257. Between 0 and 1
    # no fraction comes that close below a whole weight.
    t = (257 * 2**23 - 1) / 255 / 2.0**23
    assert ctypes.c_float(t).value == t and int(255 * t) == 256
    surface = surface_of(1, 1)
    form = format_of(surface)
    # Of the second colour -1/256 is taken: 1 * -1 wraps to 0xFFFFFFFF, its low byte spills.
    assert interpolate_fmt(0, 1, t, form) == 0xFFFFFF
    assert interpolate_fmt(0, 1, 257 / 255.0 - 1e-6, form) == 0


@pytest.mark.parametrize("t", [float("nan"), float("inf"), float("-inf"), 1e30, -1e30])
def test_a_fraction_that_fits_no_integer_is_the_smallest_one(t):
    smallest = model.blend(0x0F, 0xF1, -(2**31))
    surface = surface_of(1, 1, (0xFF, 0xFF00, 0xFF0000, 0))  # a GM colour is its own pixel value
    assert interpolate_unformatted(0x0F, 0xF1, t) == smallest
    assert interpolate_fmt(0x0F, 0xF1, t, format_of(surface)) == smallest


@pytest.mark.parametrize("masks", ALL_MASKS)
def test_color_for_format_maps_red_green_blue(masks):
    surface = surface_of(1, 1, masks)
    for colour in COLOURS + (0x010203,):
        assert color_for_format(colour, format_of(surface)) == model.mapped(colour, masks)


def test_color_for_format_knows_other_depths():
    surface = pygame.Surface((1, 1), 0, 16, (0xF800, 0x7E0, 0x1F, 0))
    assert color_for_format(0xAA0000FF, format_of(surface)) == 0xF800
    assert color_for_format(0x00FF00, format_of(surface)) == 0x7E0


def test_blend_mode_flatten_knows_the_two_additive_modes():
    assert [mode for mode in range(-300, 300) if blend_mode_flatten(mode)] == [1, 128]
    assert blend_mode_flatten(1) == 1
