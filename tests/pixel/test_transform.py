"""Scaled and rotated copies of surfaces."""

import ctypes

import larkspur
import pygame
import pytest
from support import leaks, native, sdl
from support.pictures import assert_same_words, words
from support.surfaces import (
    ALL_MASKS,
    ARGB,
    XRGB,
    assert_encoded,
    encoded_surface,
    locked_encoded_surface,
    long_surface,
    set_key_outside_palette,
    surface_of,
)

number, integer, pointer = ctypes.c_double, ctypes.c_int, ctypes.c_void_p

zoom_surface = native.function("zoomSurface", pointer, pointer, number, number, integer)
rotozoom_surface = native.function("rotozoomSurface", pointer, pointer, number, number, integer)
rotozoom_surface_xy = native.function(
    "rotozoomSurfaceXY", pointer, pointer, number, number, number, integer
)
wrap = native.function("PySurface_FromSurface", ctypes.py_object, pointer)

SMOOTH, COARSE = 1, 0
SRCCOLORKEY, RLEACCELOK = 0x1000, 0x2000
NAN, INFINITE = float("nan"), float("inf")


def by_library(function, surface, *arguments):
    """What SDL_gfx makes of a surface, as a pygame Surface."""
    return wrap(function(native.surface_address(surface), *arguments))


def assert_same_picture(result, expected, name):
    assert (result.get_size(), result.get_masks()) == (expected.get_size(), expected.get_masks())
    assert_same_words(words(result), words(expected), name)


# ---- rotoscale


@pytest.mark.parametrize("scale", [1.0, 2.0, 0.5, 0.75, -1.5])
@pytest.mark.parametrize(
    "angle, whole",
    [
        (0.0, 0),
        (45.9, 45),
        (-10.5, -10),
        (0.9, 0),
        (-0.9, 0),
        (90.0, 90),
        (359.999, 359),
        (1234.5, 1234),
    ],
)
def test_rotoscale_turns_by_whole_degrees(scale, angle, whole):
    surface = surface_of(12, 9, ARGB)
    assert_same_picture(
        larkspur.rotoscale(surface, scale, scale, angle),
        by_library(rotozoom_surface, surface, whole, scale, COARSE),
        "turned",
    )


@pytest.mark.parametrize(
    "x_scale, y_scale", [(2.0, 1.0), (0.5, 1.25), (-1.0, 1.0), (1.0, -2.0), (0.1, 3.0)]
)
@pytest.mark.parametrize("angle, whole", [(0.0, 0), (-10.5, -10), (30.0, 30), (200.7, 200)])
def test_rotoscale_scales_each_axis(x_scale, y_scale, angle, whole):
    surface = surface_of(12, 9, ARGB)
    factors = [ctypes.c_float(scale).value for scale in (x_scale, y_scale)]
    assert_same_picture(
        larkspur.rotoscale(surface, x_scale, y_scale, angle),
        by_library(rotozoom_surface_xy, surface, whole, factors[0], factors[1], COARSE),
        "scaled",
    )


def test_rotoscale_takes_factors_in_single_precision():
    surface = surface_of(200, 3)
    # 0.995 is a little less in double precision than in single: 200 times it is 199 or a bit more.
    factor = ctypes.c_float(0.995).value
    assert factor != 0.995
    assert_same_picture(
        larkspur.rotoscale(surface, 0.995, 0.995, 0.0),
        by_library(rotozoom_surface, surface, 0, factor, COARSE),
        "single",
    )


@pytest.mark.parametrize("angle", [NAN, INFINITE, -INFINITE, 1e30, 2.0**31])
def test_rotoscale_turns_by_the_smallest_integer_when_the_angle_is_none(angle):
    surface = surface_of(12, 9)
    assert_same_picture(
        larkspur.rotoscale(surface, 1.0, 1.0, angle),
        by_library(rotozoom_surface, surface, -(2.0**31), 1.0, COARSE),
        "huge",
    )


@pytest.mark.parametrize(
    "x_scale, y_scale",
    [(NAN, NAN), (NAN, 1.0), (1.0, NAN), (0.0, 0.0), (1e-30, 1.0), (0.0001, 0.0001)],
)
def test_rotoscale_of_odd_factors_is_the_library_s_business(x_scale, y_scale):
    surface = surface_of(12, 9)
    factors = [ctypes.c_float(scale).value for scale in (x_scale, y_scale)]
    assert_same_picture(
        larkspur.rotoscale(surface, x_scale, y_scale, 0.0),
        by_library(rotozoom_surface_xy, surface, 0, factors[0], factors[1], COARSE),
        "odd",
    )


def test_rotoscale_drops_the_colour_key():
    surface = surface_of(6, 6)
    for angle in (0.0, 30.0):
        assert larkspur.rotoscale(surface, 1.0, 1.0, angle).get_colorkey() is None
    surface.set_colorkey((1, 2, 3), pygame.RLEACCEL)
    for angle in (0.0, 30.0):
        result = larkspur.rotoscale(surface, 1.0, 1.0, angle)
        assert result.get_colorkey() is None
        assert not native.sdl_surface(result).flags & (SRCCOLORKEY | RLEACCELOK)


# ---- scale


@pytest.mark.parametrize(
    "x_scale, y_scale",
    [
        (1.0, 1.0),
        (2.0, 3.0),
        (0.5, 0.25),
        (-1.0, 1.0),
        (1.0, -2.0),
        (0.3, 1.7),
        (0.0, 0.0),
        (NAN, 2.0),
    ],
)
@pytest.mark.parametrize("masks", ALL_MASKS)
def test_scale_is_smooth(x_scale, y_scale, masks):
    surface = surface_of(12, 9, masks)
    factors = [ctypes.c_float(scale).value for scale in (x_scale, y_scale)]
    assert_same_picture(
        larkspur.scale(surface, x_scale, y_scale),
        by_library(zoom_surface, surface, factors[0], factors[1], SMOOTH),
        "smooth",
    )


def test_smoothing_shows():
    surface = surface_of(12, 9)
    coarse = by_library(zoom_surface, surface, 1.5, 1.5, COARSE)
    assert (words(larkspur.scale(surface, 1.5, 1.5)) != words(coarse)).any()


@pytest.mark.parametrize("depth", [16, 24, 32])
def test_scale_sets_no_colour_key_of_its_own(depth):
    surface = pygame.Surface((6, 6), 0, depth)
    assert larkspur.scale(surface, 1.5, 1.5).get_colorkey() is None


@pytest.mark.parametrize("depth", [8, 16, 24, 32])
def test_scale_hands_the_colour_key_on(depth):
    surface = pygame.Surface((6, 6), 0, depth)
    surface.set_colorkey((255, 0, 0))
    key = native.sdl_surface(surface).format.contents.colorkey
    result = larkspur.scale(surface, 1.5, 1.5)
    record = native.sdl_surface(result)
    assert record.flags & SRCCOLORKEY
    assert record.format.contents.colorkey == key


def test_a_size_that_sdl_refuses():
    surface = surface_of(10, 10)
    with pytest.raises(SystemError) as raised:
        larkspur.scale(surface, 1e4, 1.0)
    assert str(raised.value) == "error return without exception set"
    with pytest.raises(pygame.error):
        larkspur.rotoscale(surface, 1e4, 1.0, 0.0)


def test_a_size_at_the_end_of_the_integers_is_refused():
    # 32767 * 65538 is 2^31 - 2: with the two spare rows of SDL_gfx it would wrap to a negative one.
    surface = pygame.Surface((1, 32767), 0, 32)
    with pytest.raises(SystemError):
        larkspur.scale(surface, 1.0, 65538.0)
    with pytest.raises(pygame.error) as raised:
        larkspur.rotoscale(surface, 1.0, 65538.0, 0.0)
    assert str(raised.value) == "Width or height is too large"


# ---- both

CALLS = {
    "rotoscale": lambda surface, x, y: larkspur.rotoscale(surface, x, y, 30.0),
    "scale": larkspur.scale,
}


@pytest.fixture(params=sorted(CALLS))
def name(request):
    return request.param


@pytest.mark.parametrize("depth", [8, 16, 24, 32])
def test_the_source_stays_as_it_is(name, depth):
    surface = pygame.Surface((9, 7), 0, depth)
    surface.fill((255, 0, 0), (2, 2, 3, 3))
    before, record = pygame.image.tostring(surface, "RGB"), native.sdl_surface(surface)
    flags = record.flags
    result = CALLS[name](surface, 1.5, 2.5)
    assert type(result) is pygame.Surface
    assert pygame.image.tostring(surface, "RGB") == before
    assert (record.flags, record.locked) == (flags, 0)


def test_the_clip_rectangle_is_the_whole_result(name):
    for surface in (surface_of(9, 7), surface_of(9, 7, ARGB), pygame.Surface((9, 7), 0, 8)):
        for factor in (0.5, 1.0, 2.0):
            result = CALLS[name](surface, factor, factor)
            clip = native.sdl_surface(result).clip_rect
            assert (clip.x, clip.y, clip.w, clip.h) == (0, 0) + result.get_size()


def test_results_survive_encoding_and_decoding(name):
    surface = surface_of(30, 20)
    surface.set_colorkey((1, 2, 3), pygame.RLEACCEL)
    target = pygame.Surface((200, 200), 0, 32)
    for _ in range(20):
        result = CALLS[name](surface, 2.0, 2.0)
        result.set_colorkey((1, 2, 3), pygame.RLEACCEL)
        expected = words(result)
        target.blit(result, (0, 0))
        assert_encoded(result)
        visible = words(result) & 0xFFFFFF
        assert_same_words(visible, expected & 0xFFFFFF, "decoded")


def test_encoded_sources(name):
    encoded = encoded_surface(12, 9)
    plain = pygame.Surface((12, 9), 0, 32, XRGB)
    pygame.surfarray.blit_array(plain, pygame.surfarray.array2d(encoded_surface(12, 9)))
    plain.set_colorkey(0x010203)
    assert_same_words(
        words(CALLS[name](encoded, 1.5, 1.5)), words(CALLS[name](plain, 1.5, 1.5)), "encoded"
    )
    assert native.sdl_surface(encoded).locked == 0


def test_parts_of_surfaces(name):
    parent = surface_of(20, 12)
    part = parent.subsurface((3, 2, 7, 5))
    alone = pygame.Surface((7, 5), 0, 32, XRGB)
    pygame.surfarray.blit_array(alone, pygame.surfarray.array2d(part))
    assert_same_words(
        words(CALLS[name](part, 1.5, 1.5)), words(CALLS[name](alone, 1.5, 1.5)), "part"
    )


@pytest.mark.parametrize("size", [(0, 0), (0, 5), (5, 0)])
def test_surfaces_without_area_are_refused(name, size):
    with pytest.raises(ValueError) as raised:
        CALLS[name](pygame.Surface(size, 0, 32), 1.0, 1.0)
    assert str(raised.value).startswith(
        "%s() cannot scale a surface without width or height" % name
    )


@pytest.mark.parametrize("x_scale, y_scale", [(-1.0, 1.0), (1.0, -1.0), (-1.0, -1.0)])
def test_8_bit_surfaces_cannot_be_mirrored(name, x_scale, y_scale):
    with pytest.raises(ValueError) as raised:
        CALLS[name](pygame.Surface((5, 5), 0, 8), x_scale, y_scale)
    assert str(raised.value).startswith(
        "%s() cannot scale an 8-bit surface by a negative factor" % name
    )
    CALLS[name](pygame.Surface((5, 5), 0, 16), x_scale, y_scale)


@pytest.mark.parametrize(
    "bits, longest, too_long",
    [(bits, (1, 32767), (1, 32768)) for bits in (8, 16, 24, 32)] + [(8, (32767, 1), (32768, 1))],
)
def test_sides_of_more_than_32767_pixels_are_refused(name, bits, longest, too_long):
    CALLS[name](long_surface(longest, bits), 0.25, 0.25)
    with pytest.raises(ValueError) as raised:
        CALLS[name](long_surface(too_long, bits), 0.25, 0.25)
    assert str(raised.value).startswith(
        "%s() cannot scale a surface with a side of more than 32767 pixels" % name
    )


@pytest.mark.parametrize("bits", [15, 16, 24])
@pytest.mark.parametrize("angle", [0.0, 30.0])
def test_wide_surfaces_that_are_turned_through_a_copy_are_refused(bits, angle):
    """SDL_gfx would not notice that SDL makes no copy of 32 bits and more than 16383 columns."""
    assert larkspur.rotoscale(long_surface((16383, 1), bits), 0.5, 0.25, angle)
    for x_scale, y_scale in [(0.5, 0.5), (0.5, 0.25)]:
        with pytest.raises(ValueError) as raised:
            larkspur.rotoscale(long_surface((16384, 1), bits), x_scale, y_scale, angle)
        assert str(raised.value).startswith("rotoscale() cannot scale a surface of neither 8 nor")


def test_an_encoded_surface_that_is_locked_is_not_turned_through_a_copy():
    surface = locked_encoded_surface(16)
    if sdl.is_layer():  # which converts it all the same
        assert larkspur.rotoscale(surface, 1.0, 0.5, 30.0)
    else:
        with pytest.raises(pygame.error):
            larkspur.rotoscale(surface, 1.0, 0.5, 30.0)
    surface.unlock()
    assert larkspur.rotoscale(surface, 1.0, 0.5, 30.0)


@pytest.mark.parametrize("angle", [0.0, 30.0])
def test_a_colour_key_that_is_no_place_in_the_palette_is_refused(angle):
    """SDL_gfx would look it up behind the palette."""
    surface = pygame.Surface((8, 8), 0, 8)
    surface.set_colorkey(255)
    assert larkspur.rotoscale(surface, 1.0, 0.5, angle)
    for key in (256, 123456789, 0xFFFFFFFF):
        if not set_key_outside_palette(surface, key):
            assert larkspur.rotoscale(surface, 1.0, 0.5, angle)
            continue
        with pytest.raises(ValueError) as raised:
            larkspur.rotoscale(surface, 1.0, 0.5, angle)
        assert str(raised.value).startswith("rotoscale() cannot scale a surface whose colour key")
        assert larkspur.scale(surface, 1.0, 0.5)  # makes nothing of a key


def test_arguments(name):
    function = getattr(larkspur, name)
    surface = surface_of(3, 3)
    numbers = [1.0] * (3 if name == "rotoscale" else 2)
    assert isinstance(function(surface, *[1] * len(numbers)), pygame.Surface)  # integers will do
    for arguments in (
        [],
        [surface],
        [surface] + numbers[1:],
        [surface] + numbers + [1.0],
        [surface] + numbers[1:] + ["1"],
    ):
        with pytest.raises(TypeError):
            function(*arguments)
    for wrong in (None, 3, pygame.Surface):
        with pytest.raises(TypeError) as raised:
            function(wrong, *numbers)
        assert str(raised.value) == "%s() needs a pygame Surface, got %s" % (
            name,
            type(wrong).__name__,
        )


def test_colours_of_an_8_bit_surface_are_handed_on(name, display):
    surface = pygame.Surface((6, 6), 0, 8)
    surface.set_palette([(i, 255 - i, i // 2) for i in range(256)])
    assert CALLS[name](surface, 1.5, 1.5).get_palette() == surface.get_palette()


@pytest.mark.parametrize("depth", [16, 24, 32])
def test_pictures_without_alpha_still_ask_for_blending(name, depth):
    """As SDL_gfx leaves them."""
    surface = pygame.Surface((6, 6), 0, depth)
    assert CALLS[name](surface, 1.5, 1.5).get_flags() & pygame.SRCALPHA


@pytest.mark.parametrize(
    "bits, call",
    [
        (8, lambda surface: larkspur.rotoscale(surface, 2, 2, 30)),
        (32, lambda surface: larkspur.rotoscale(surface, 2, 1, 0)),
        (8, larkspur.flip_v),
        (32, larkspur.flip_v),
        (32, larkspur.flip_h),
        (32, larkspur.flip_vh),
    ],
)
def test_a_surface_without_pixels_is_told(bits, call):
    surface = pygame.Surface((5, 4), 0, bits)
    record = native.Surface.from_address(native.surface_address(surface))
    pixels, record.pixels = record.pixels, None
    try:
        if sdl.is_layer():
            assert call(surface)  # a lock finds them again
            return
        with pytest.raises(pygame.error) as raised:
            call(surface)
    finally:
        record.pixels = pixels
    assert str(raised.value) == "The surface has no pixels"


@pytest.mark.parametrize(
    "size, factors, expected",
    [((100, 100), (1.0, 400.0), (142, 142)), ((1, 1), (30000.0, 30000.0), (2, 2))],
)
def test_turned_size_is_counted_as_sdl_gfx_does(size, factors, expected):
    """It takes the x factor for both sides, and halves odd sides downwards before it turns them."""
    surface = pygame.Surface(size, 0, 32)
    assert larkspur.rotoscale(surface, factors[0], factors[1], 45.0).get_size() == expected


def test_the_surface_of_a_closed_display_is_refused(name, display):
    pygame.display.quit()
    with pytest.raises(RuntimeError) as raised:
        CALLS[name](display, 1.0, 1.0)
    assert str(raised.value).startswith("%s() got the Surface of a display that was closed" % name)


def test_no_reference_is_kept(name):
    surface = surface_of(3, 3)
    leaks.assert_counts_unchanged(lambda: CALLS[name](surface, 1.5, 2.0), surface, pygame.Surface)
    empty = pygame.Surface((0, 0), 0, 32)

    def fail():
        with pytest.raises(ValueError):
            CALLS[name](empty, 1.0, 1.0)

    leaks.assert_counts_unchanged(fail, empty)
