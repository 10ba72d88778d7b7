"""Mirrored copies of surfaces, from Python and for native callers."""

import ctypes
import itertools
import mmap

import larkspur
import numpy
import pygame
import pytest
from models import pixel_model as model
from support import leaks, native, sdl
from support.guarded import GuardedMemory
from support.pictures import assert_same_words, words
from support.surfaces import (
    ALL_MASKS,
    ARGB,
    XRGB,
    ForeignSurface,
    assert_encoded,
    assert_same_bytes,
    buffer_of,
    create_surface_from,
    encoded_surface,
    free_surface,
    printed,
    surface_of,
)

RULES = {
    "flip_v": model.upside_down,
    "flip_h": model.mirrored,
    "flip_vh": model.turned_one_row_low,
}
MESSAGES = {
    "flip_h": "Cannot horizontally flip non-32-bit surfaces.\n",
    "flip_vh": "Error: non-32bit surfaces not yet flippable.\n",
}
NAMES = sorted(RULES)

NATIVE = {name: native.function(name, ctypes.c_void_p, ctypes.c_void_p) for name in NAMES}
clone_surface = native.function("clone_surface", ctypes.c_void_p, ctypes.c_void_p)


def flipped(name, surface):
    """In memory that has just held another picture."""
    function = getattr(larkspur, name)
    function(surface).fill((0xA5, 0xA5, 0xA5))
    return function(surface)


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("width, height", itertools.product([1, 2, 3, 16, 17, 33], [1, 2, 3, 8]))
def test_pixels_change_places(name, width, height):
    surface = surface_of(width, height)
    before = words(surface)
    result = flipped(name, surface)
    assert type(result) is pygame.Surface and result is not surface
    assert_same_words(words(result), RULES[name](before), name)
    assert_same_words(words(surface), before, name + "-source")


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("masks", ALL_MASKS)
def test_the_copy_has_the_source_s_format(name, masks):
    surface = surface_of(5, 4, masks)
    result = flipped(name, surface)
    assert (result.get_size(), result.get_bitsize()) == ((5, 4), 32)
    assert result.get_masks() == sdl.masks_of(sdl.created(5, 4, 32, masks))
    assert sdl.is_layer() or result.get_masks() == masks  # SDL 2 replaces some
    assert bool(result.get_flags() & pygame.SRCALPHA) == bool(masks[3])
    assert_same_words(words(result), RULES[name](words(surface)), name)


@pytest.mark.parametrize("name", NAMES)
def test_the_copy_has_no_colour_key(name):
    surface = surface_of(3, 3)
    surface.set_colorkey((1, 2, 3))
    assert flipped(name, surface).get_colorkey() is None


def test_flip_vh_of_one_row_is_blank():
    assert not words(larkspur.flip_vh(surface_of(6, 1))).any()


def test_flip_vh_by_hand():
    surface = surface_of(2, 3)
    (a, b), (c, d), (e, f) = words(surface)
    assert words(larkspur.flip_vh(surface)).tolist() == [[0, 0], [f, e], [d, c]]


# ---- depths


@pytest.mark.parametrize("depth", [8, 16, 24])
@pytest.mark.parametrize("width, height", [(1, 1), (5, 4), (7, 3)])
def test_flip_v_takes_every_depth_with_its_padding(depth, width, height):
    surface = pygame.Surface((width, height), 0, depth)
    record = native.sdl_surface(surface)
    numpy.ctypeslib.as_array(
        (ctypes.c_uint8 * (record.pitch * height)).from_address(record.pixels)
    )[...] = numpy.arange(record.pitch * height) % 251
    before = buffer_of(surface).reshape(height, record.pitch)
    result = larkspur.flip_v(surface)
    assert result.get_bitsize() == depth
    assert native.sdl_surface(result).pitch == record.pitch
    assert_same_bytes(buffer_of(result), before[::-1].reshape(-1))


@pytest.mark.parametrize("name", ["flip_h", "flip_vh"])
@pytest.mark.parametrize("depth", [8, 16, 24])
def test_mirroring_other_depths_is_reported(name, depth, capfd):
    surface = pygame.Surface((5, 4), 0, depth)
    printed(capfd)
    with pytest.raises(pygame.error) as raised:
        flipped(name, surface)
    assert str(raised.value) == (
        "%s() needs a surface of 32 bits per pixel, got %d; convert it with Surface.convert(32)"
        % (name, depth)
    )
    assert printed(capfd) == ("", MESSAGES[name])


@pytest.mark.parametrize("name", ["flip_h", "flip_vh"])
def test_mirroring_other_depths_is_null_for_native_callers(name, capfd):
    surface = pygame.Surface((5, 4), 0, 16)
    printed(capfd)
    assert NATIVE[name](native.surface_address(surface)) is None
    assert printed(capfd) == ("", MESSAGES[name])


# ---- surfaces as they come


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("size", [(0, 0), (0, 3), (3, 0)])
def test_surfaces_without_area(name, size):
    assert flipped(name, pygame.Surface(size, 0, 32)).get_size() == size


@pytest.mark.parametrize("name", NAMES)
def test_parts_of_surfaces(name):
    part = surface_of(20, 12).subsurface((3, 2, 7, 5))
    result = flipped(name, part)
    assert native.sdl_surface(result).pitch == 4 * 7
    assert_same_words(words(result), RULES[name](words(part)), name)


@pytest.mark.parametrize("name", NAMES)
def test_encoded_surfaces(name):
    surface = encoded_surface(9, 6)
    expected = RULES[name](words(encoded_surface(9, 6)))
    assert_same_words(words(flipped(name, surface)), expected, name)
    assert native.sdl_surface(surface).locked == 0


@pytest.mark.parametrize("name", NAMES)
def test_parts_of_encoded_surfaces(name):
    parent = surface_of(9, 6)
    part = parent.subsurface((1, 1, 6, 4))
    expected = RULES[name](words(part))
    parent.set_colorkey(0x010203, pygame.RLEACCEL)
    pygame.Surface((9, 6), 0, 32, XRGB).blit(parent, (0, 0))
    assert_encoded(parent)
    result = flipped(name, part)
    # Decoding does not bring the unused byte back.
    assert_same_words(words(result) & 0xFFFFFF, expected & 0xFFFFFF, name)


@pytest.mark.parametrize("name", NAMES)
@pytest.mark.parametrize("padding", [0, 4, 12])
@pytest.mark.parametrize("offset", [0, 1, 4])
def test_foreign_memory_is_read_up_to_its_last_pixel(name, padding, offset):
    surface = ForeignSurface(5, 3, 20 + padding, ARGB, offset)
    before = surface.memory.copy()
    rows = before[surface.start : surface.start + 3 * surface.pitch].reshape(3, -1)
    pixels = numpy.ascontiguousarray(rows[:, :20]).view(numpy.uint32)
    address = NATIVE[name](surface.address)
    result = native.Surface.from_address(address)
    actual = numpy.frombuffer(ctypes.string_at(result.pixels, 60), numpy.uint32).reshape(3, 5)
    assert_same_words(actual, RULES[name](pixels), name)
    assert_same_bytes(surface.memory, before)
    free_surface(address)


@pytest.mark.parametrize("depth, width", [(8, 5), (16, 3), (24, 2)])
def test_flip_v_reads_no_padding_behind_the_last_row(depth, width):
    row_bytes = width * depth // 8
    memory = GuardedMemory(2 * 8 + row_bytes)  # reading on behind the last pixel ends the process
    memory.bytes[...] = numpy.arange(1, 17 + row_bytes)
    source = create_surface_from(memory.address, width, 3, depth, 8, 0, 0, 0, 0)
    for earlier in ["none", "another"]:  # picture in the copy's memory
        address = NATIVE["flip_v"](source)
        copy = native.Surface.from_address(address)
        assert copy.pitch == 8
        rows = bytearray(ctypes.string_at(copy.pixels, 24))
        last = range(17, 17 + row_bytes) + [0] * (8 - row_bytes)
        assert list(rows) == last + range(9, 17) + range(1, 9), earlier
        ctypes.memset(copy.pixels, 0xA5, 24)
        free_surface(address)
    free_surface(source)
    memory.free()


def test_flip_v_of_rows_without_padding_leaves_that_of_the_copy_blank():
    memory = numpy.arange(1, 31, dtype=numpy.uint8)
    source = create_surface_from(memory.ctypes.data, 5, 3, 16, 10, 0, 0, 0, 0)
    for earlier in ["none", "another"]:  # picture in the copy's memory
        address = NATIVE["flip_v"](source)
        copy = native.Surface.from_address(address)
        assert copy.pitch == 12
        rows = numpy.frombuffer(ctypes.string_at(copy.pixels, 36), numpy.uint8).reshape(3, 12)
        assert (rows[:, :10] == memory.reshape(3, 10)[::-1]).all(), earlier
        assert not rows[:, 10:].any(), earlier
        ctypes.memset(copy.pixels, 0xA5, 36)
        free_surface(address)
    free_surface(source)


# ---- the blank copy


@pytest.mark.parametrize("masks", ALL_MASKS)
def test_clone_surface_is_blank_and_of_the_same_format(masks):
    surface = surface_of(6, 5, masks)
    address = clone_surface(native.surface_address(surface))
    clone = native.Surface.from_address(address)
    assert (clone.w, clone.h, clone.pitch) == (6, 5, 24)
    assert clone.format.contents.BitsPerPixel == 32
    found = tuple(getattr(clone.format.contents, name + "mask") for name in "RGBA")
    assert found == sdl.masks_of(sdl.created(6, 5, 32, masks))
    assert sdl.is_layer() or found == masks  # SDL 2 replaces some
    assert ctypes.string_at(clone.pixels, 120) == "\0" * 120
    free_surface(address)


def test_clone_surface_knows_other_depths():
    surface = pygame.Surface((6, 5), 0, 8)
    address = clone_surface(native.surface_address(surface))
    assert native.Surface.from_address(address).format.contents.BitsPerPixel == 8
    free_surface(address)


def test_nothing_gives_null(capfd):
    for function in NATIVE.values() + [clone_surface]:
        assert function(None) is None


def test_a_copy_that_sdl_refuses_is_null():
    # SDL makes no surface that wide itself, but takes one around memory that is there.
    surface = ForeignSurface(16383, 1, 65532)
    surface_record = native.Surface.from_address(surface.address)
    surface_record.w = 16384
    for function in NATIVE.values() + [clone_surface]:
        assert function(surface.address) is None


def test_reason_is_sdls_where_it_has_no_memory_for_a_copy():
    memory = mmap.mmap(-1, 65532 * 32771)  # 2 GiB that nobody touches
    address = ctypes.addressof(ctypes.c_char.from_buffer(memory))
    source = create_surface_from(address, 16383, 32771, 32, 65532, 0, 0, 0, 0)
    clear_error = native.function("SDL_ClearError", None)
    get_error = native.function("SDL_GetError", ctypes.c_char_p)
    for function in NATIVE.values():
        clear_error()
        assert function(source) is None
        assert get_error() == "Out of memory"
    free_surface(source)


# ---- from Python


@pytest.mark.parametrize("name", NAMES)
def test_arguments(name):
    function = getattr(larkspur, name)
    for arguments in ((), (surface_of(2, 2), 1)):
        with pytest.raises(TypeError):
            function(*arguments)
    for wrong in (None, 3, "surface", pygame.Surface, pygame.Rect(0, 0, 1, 1)):
        with pytest.raises(TypeError) as raised:
            function(wrong)
        assert str(raised.value) == "%s() needs a pygame Surface, got %s" % (
            name,
            type(wrong).__name__ if type(wrong) is not pygame.Rect else "pygame.Rect",
        )


@pytest.mark.parametrize("name", NAMES)
def test_subclasses_of_surface_are_surfaces(name):
    class Picture(pygame.Surface):
        pass

    result = flipped(name, Picture((3, 2), 0, 32))
    assert type(result) is pygame.Surface


@pytest.mark.parametrize("name", NAMES)
def test_the_surface_of_a_closed_display_is_refused(name, display):
    pygame.display.quit()
    with pytest.raises(RuntimeError) as raised:
        flipped(name, display)
    assert str(raised.value).startswith("%s() got the Surface of a display that was closed" % name)


@pytest.mark.parametrize("name", NAMES)
def test_no_reference_is_kept(name):
    surface = surface_of(3, 3)
    leaks.assert_counts_unchanged(lambda: flipped(name, surface), surface, pygame.Surface)
    wrong = object()

    def fail():
        with pytest.raises(TypeError):
            flipped(name, wrong)

    leaks.assert_counts_unchanged(fail, wrong)
