"""Fading, tinting and subtracting on whole buffers, as native callers reach them."""

import ctypes

import numpy
import pygame
import pytest
from models import pixel_model as model
from support import native
from support.pictures import assert_same_words, words
from support.surfaces import (
    ALL_MASKS,
    ARGB,
    RGBA,
    XRGB,
    ForeignSurface,
    assert_same_bytes,
    buffer_of,
    encoded_surface,
    free_surface,
    surface_of,
)

word, integer, pointer = ctypes.c_uint32, ctypes.c_int, ctypes.c_void_p

translucentify = native.function("Translucentify", None, pointer, ctypes.c_uint8)
tint_surface = native.function("Tint_Surface", None, pointer, word)
satusub = native.function("satusub", None, pointer, integer, word)
satusub_head = native.function("satusub_head", None, pointer, word, word, integer)
satusub_body = native.function("satusub_body", None, pointer, word, word, integer)
rgba_copy = native.function("RGBA_copy", pointer, pointer)
sub_uint = native.function("SDL_imageFilterSubUint", integer, pointer, pointer, ctypes.c_uint, word)

TINTS = (0xFFFFFF, 0, 0x0000FF, 0x00FF00, 0xFF0000, 0x123456, 0xAB80FF01)

# A native operation on a surface, and what it makes of a whole buffer.
OPERATIONS = {
    "fade": (
        lambda address: translucentify(address, 77),
        lambda buffer, masks: model.faded(buffer, 77, masks),
    ),
    "tint": (
        lambda address: tint_surface(address, 0x80C123),
        lambda buffer, masks: model.tinted(buffer, 0x80C123, masks),
    ),
}


@pytest.fixture(params=sorted(OPERATIONS))
def operation(request):
    return OPERATIONS[request.param]


@pytest.mark.parametrize("masks", ALL_MASKS)
@pytest.mark.parametrize("alpha", [0, 1, 127, 128, 254, 255])
def test_fading_scales_the_alpha_and_keeps_the_colour(masks, alpha):
    surface = surface_of(13, 7, masks)
    before = buffer_of(surface)
    translucentify(native.surface_address(surface), alpha)
    assert_same_bytes(buffer_of(surface), model.faded(before, alpha, masks))


def one_pixel_faded(pixel, alpha, masks):
    surface = surface_of(1, 1, masks)
    pygame.surfarray.pixels2d(surface)[0, 0] = pixel
    translucentify(native.surface_address(surface), alpha)
    return words(surface)[0, 0]


def test_fading_by_hand():
    assert one_pixel_faded(0xFF000000, 255, ARGB) == 0xFE000000
    assert one_pixel_faded(0xFF123456, 0, ARGB) == 0x00123456
    # The channels below the alpha carry into it: 0x01FFFF * 255 = 0x01FDFF01.
    assert one_pixel_faded(0x01FFFFFF, 255, ARGB) == 0x01FFFFFF
    assert one_pixel_faded(0x01000000, 255, ARGB) == 0x00000000
    # Alpha in the low byte is scaled alone: 255 * 255 / 256.
    assert one_pixel_faded(0xFFFFFFFF, 255, RGBA) == 0xFFFFFFFE
    # No alpha: what is no colour becomes 0.
    assert one_pixel_faded(0xAB123456, 200, XRGB) == 0x00123456


@pytest.mark.parametrize("masks", ALL_MASKS)
@pytest.mark.parametrize("tint", TINTS)
def test_tinting_lowers_each_channel_by_what_the_tint_lacks(masks, tint):
    surface = surface_of(12, 7, masks)
    before = buffer_of(surface)
    tint_surface(native.surface_address(surface), tint)
    assert_same_bytes(buffer_of(surface), model.tinted(before, tint, masks))


def test_tinting_by_hand():
    white = pygame.Surface((2, 1), pygame.SRCALPHA, 32, ARGB)
    white.fill((255, 255, 255, 100))
    tint_surface(native.surface_address(white), 0x0000FF)
    assert white.get_at((0, 0)) == (255, 0, 0, 100)
    grey = pygame.Surface((2, 1), 0, 32, XRGB)
    grey.fill((200, 100, 10))
    tint_surface(native.surface_address(grey), 0x80F0A0)  # blue 128, green 240, red 160
    assert grey.get_at((0, 0))[:3] == (200 - 95, 100 - 15, 0)


def test_the_last_four_bytes_are_tinted_in_reverse_order():
    surface = pygame.Surface((3, 1), 0, 32, XRGB)  # 12 bytes: one step of eight, and four more
    surface.fill((255, 255, 255))
    tint_surface(native.surface_address(surface), 0x0000FF)  # takes 0x00FFFF from XRGB words
    # The word's bytes in memory are B G R X = FF FF FF 00 and lose FF FF 00 00; the last lose
    # 00 00 FF FF.
    assert list(words(surface)[0]) == [0xFF0000, 0xFF0000, 0x00FFFF]


def test_padding_of_rows_is_part_of_the_buffer(operation):
    change, rule = operation
    surface = surface_of(8, 5, ARGB)
    before = buffer_of(surface)
    native.sdl_surface(surface).w = 6  # two pixels of padding behind each row
    change(native.surface_address(surface))
    assert_same_bytes(buffer_of(surface), rule(before, ARGB))


@pytest.mark.parametrize("width", [1, 2, 3, 5])
@pytest.mark.parametrize("height", [1, 2, 3])
@pytest.mark.parametrize("padding", [0, 4, 8, 20])
@pytest.mark.parametrize("offset", [0, 4, 1])
def test_foreign_memory_ends_at_the_last_pixel(operation, width, height, padding, offset):
    change, rule = operation
    surface = ForeignSurface(width, height, 4 * width + padding, ARGB, offset)
    before = surface.memory.copy()
    # The whole buffer by the rule, of which all behind the last pixel is left out.
    whole = rule(before[surface.start : surface.start + height * surface.pitch], ARGB)
    expected = before.copy()
    expected[surface.start : surface.end()] = whole[: surface.end() - surface.start]
    change(surface.address)
    assert_same_bytes(surface.memory, expected)


def test_an_encoded_surface_is_decoded_for_the_change(operation):
    change, rule = operation
    surface = encoded_surface(9, 8)
    twin = encoded_surface(9, 8)
    before = words(twin)
    change(native.surface_address(surface))
    assert native.sdl_surface(surface).locked == 0
    expected = rule(before.reshape(-1).view(numpy.uint8), XRGB).view(numpy.uint32)
    assert_same_words(words(surface), expected.reshape(before.shape), "encoded")


@pytest.mark.parametrize("depth", [8, 16, 24])
def test_other_depths_stay_as_they_are(operation, depth):
    surface = pygame.Surface((8, 4), 0, depth)
    surface.fill((200, 100, 50))
    before = buffer_of(surface)
    operation[0](native.surface_address(surface))
    assert_same_bytes(buffer_of(surface), before)


def test_no_surface_and_no_area_are_nothing(operation):
    operation[0](None)
    for width, height in ((0, 5), (5, 0), (0, 0)):
        surface = ForeignSurface(width, height, 20)
        before = surface.memory.copy()
        operation[0](surface.address)
        assert_same_bytes(surface.memory, before)


# ---- buffers


def guarded(length, seed=2):
    return numpy.random.RandomState(seed).randint(0, 256, length + 64).astype(numpy.uint8)


@pytest.mark.parametrize("length", range(0, 40) + [4096 + 3])
@pytest.mark.parametrize(
    "group, subtract, pattern",
    [
        (
            4,
            lambda at, length: satusub_head(at, 0x01807F10, 0xDEADBEEF, length),
            [0x10, 0x7F, 0x80, 0x01],
        ),
        (
            8,
            lambda at, length: satusub_body(at, 0x01807F10, 0xF00520FF, length),
            [0x10, 0x7F, 0x80, 0x01, 0xFF, 0x20, 0x05, 0xF0],
        ),
    ],
    ids=["head", "body"],
)
def test_subtracting_takes_whole_groups(length, group, subtract, pattern):
    memory = guarded(length)
    end = -(-length // group) * group  # a group that begins inside the length is done whole
    expected = memory.copy()
    expected[:end] = model.subtracted(memory[:end], pattern)
    subtract(memory.ctypes.data, length)
    assert_same_bytes(memory, expected)


def test_satusub_head_by_hand():
    memory = numpy.array([10, 10, 10, 10], numpy.uint8)
    satusub_head(memory.ctypes.data, 0x0F05FF01, 0, 4)
    assert list(memory) == [9, 0, 5, 0]


@pytest.mark.parametrize("length", list(range(0, 40)) + [4096 + 3])
def test_satusub_takes_a_repeated_byte_from_every_byte(length):
    memory = guarded(length)
    expected = memory.copy()
    expected[:length] = model.subtracted(memory[:length], [0x9C])
    satusub(memory.ctypes.data, length, 0x9C9C9C9C)
    assert_same_bytes(memory, expected)


@pytest.mark.parametrize("length", [4, 8, 9, 24, 61])
def test_satusub_has_the_byte_order_of_sdl_gfx(length):
    memory, expected = guarded(length), guarded(length)
    sub_uint(expected.ctypes.data, expected.ctypes.data, length, 0x0102F380)
    satusub(memory.ctypes.data, length, 0x0102F380)
    assert_same_bytes(memory, expected)


def test_subtracting_nothing_or_from_nothing():
    memory = guarded(8)
    before = memory.copy()
    for length in (0, -1, -(2**31)):
        satusub(memory.ctypes.data, length, 0xFFFFFFFF)
        satusub_head(memory.ctypes.data, 0xFFFFFFFF, 0, length)
        satusub_body(memory.ctypes.data, 0xFFFFFFFF, 0xFFFFFFFF, length)
    satusub(None, 8, 1)
    satusub_head(None, 1, 0, 8)
    satusub_body(None, 1, 1, 8)
    assert_same_bytes(memory, before)


class Subtractor(ctypes.Structure):
    _fields_ = [("low", word), ("high", word)]


class Start(ctypes.Structure):
    _fields_ = [("value", word)]


def test_the_words_for_subtracting_are_copies_of_the_value():
    subtractor = native.function("subtractor_for", Subtractor, word)(0x89ABCDEF)
    assert (subtractor.low, subtractor.high) == (0x89ABCDEF, 0x89ABCDEF)
    assert native.function("startptr_for", Start, word)(0x89ABCDEF).value == 0x89ABCDEF


# ---- copies with alpha


def test_rgba_copy_has_the_display_format_with_alpha(display):
    source = pygame.Surface((6, 4), 0, 16)
    source.fill((255, 0, 0))
    address = rgba_copy(native.surface_address(source))
    copy = native.Surface.from_address(address)
    form = copy.format.contents
    display_format = native.sdl_surface(display).format.contents
    assert (copy.w, copy.h, form.BitsPerPixel, form.Amask) == (6, 4, 32, 0xFF000000)
    assert (form.Rmask, form.Gmask, form.Bmask) == (
        display_format.Rmask,
        display_format.Gmask,
        display_format.Bmask,
    )
    assert ctypes.c_uint32.from_address(copy.pixels).value == 0xFFFF0000
    free_surface(address)


def test_rgba_copy_is_null_without_a_display(display):
    source = pygame.Surface((6, 4), 0, 32)
    pygame.display.quit()
    assert rgba_copy(native.surface_address(source)) is None


def test_rgba_copy_of_nothing_is_null(display):
    assert rgba_copy(None) is None
