"""Blits with a blend mode, as native callers reach them."""

import ctypes
import itertools

import numpy
import pygame
import pytest
from models import pixel_model as model
from support import native
from support.native import Rect
from support.pictures import assert_same_words, words
from support.surfaces import (
    ALL_MASKS,
    ARGB,
    ForeignSurface,
    assert_same_bytes,
    buffer_of,
    encoded_surface,
    printed,
    surface_of,
)

integer, pointer = ctypes.c_int, ctypes.c_void_p

_flagged_blit = native.function(
    "flagged_blit", None, pointer, pointer, ctypes.POINTER(Rect), integer
)
_additive_blit = native.function("additive_blit", None, pointer, pointer, *[integer] * 4)

WIDTH, HEIGHT = 20, 12


def flagged_blit(source, target, x, y, mode):
    """Draws, and returns the rectangle as the blit left it."""
    rect = Rect(x, y, 77, 88)
    _flagged_blit(native.surface_address(source), native.surface_address(target), rect, mode)
    return rect.x, rect.y, rect.w, rect.h


def additive_blit(source, target, *numbers):
    _additive_blit(native.surface_address(source), native.surface_address(target), *numbers)


def check_added(source, target, x, y, mode=1):
    expected = model.added(words(source), words(target), x, y)
    assert flagged_blit(source, target, x, y, mode) == (x, y, 77, 88)
    assert_same_words(words(target), expected, "added")


# ---- mode 0


def test_mode_0_is_the_ordinary_blit():
    source, target, twin = (
        surface_of(5, 4),
        surface_of(WIDTH, HEIGHT, seed=2),
        surface_of(WIDTH, HEIGHT, seed=2),
    )
    assert flagged_blit(source, target, 17, 10, 0) == (17, 10, 3, 2)  # clipped, as SDL reports
    twin.blit(source, (17, 10))
    assert_same_words(words(target), words(twin), "ordinary")


def test_mode_0_clips_at_the_top():
    source, target = surface_of(5, 4), surface_of(WIDTH, HEIGHT, seed=2)
    expected = words(target) & 0xFFFFFF
    expected[0, 3:8] = words(source)[3] & 0xFFFFFF
    assert flagged_blit(source, target, 3, -3, 0) == (3, 0, 5, 1)
    assert_same_words(words(target) & 0xFFFFFF, expected, "clipped-at-the-top")


# ---- adding


@pytest.mark.parametrize("mode", [1, 128])
@pytest.mark.parametrize("masks", ALL_MASKS)
def test_both_additive_modes_add_every_byte(mode, masks):
    check_added(surface_of(7, 5, masks), surface_of(WIDTH, HEIGHT, masks, 2), 4, 3, mode)


def test_adding_by_hand():
    source, target = (pygame.Surface((n, 1), pygame.SRCALPHA, 32, ARGB) for n in (1, 3))
    source.fill((200, 10, 0, 100))
    target.fill((100, 20, 3, 200))
    flagged_blit(source, target, 1, 0, 1)
    assert target.get_at((1, 0)) == (255, 30, 3, 255)
    assert target.get_at((0, 0)) == target.get_at((2, 0)) == (100, 20, 3, 200)


@pytest.mark.parametrize(
    "x, y",
    itertools.product(
        [
            -40,
            -8,
            -7,
            -6,
            -3,
            -1,
            0,
            1,
            5,
            WIDTH - 9,
            WIDTH - 8,
            WIDTH - 7,
            WIDTH - 6,
            WIDTH,
            WIDTH + 5,
            -(2**15),
            2**15 - 1,
        ],
        [
            -40,
            -5,
            -1,
            0,
            1,
            HEIGHT - 6,
            HEIGHT - 5,
            HEIGHT - 1,
            HEIGHT,
            HEIGHT + 3,
            -(2**15),
            2**15 - 1,
        ],
    ),
)
def test_placing_of_a_small_source(x, y):
    check_added(surface_of(7, 5), surface_of(WIDTH, HEIGHT, seed=2), x, y)


@pytest.mark.parametrize("x, y", itertools.product([-25, -11, -10, -9, 0], [-30, -7, -5, 0, 3]))
@pytest.mark.parametrize(
    "width, height",
    [(WIDTH + 10, HEIGHT), (5, HEIGHT + 10), (WIDTH + 10, HEIGHT + 10), (WIDTH, HEIGHT)],
)
def test_placing_of_a_large_source(x, y, width, height):
    check_added(surface_of(width, height), surface_of(WIDTH, HEIGHT, seed=2), x, y)


def drawn_columns(x, y=0, width=10):
    """Columns and rows of a black target that a white source changes."""
    source, target = pygame.Surface((width, 4), 0, 32), pygame.Surface((WIDTH, HEIGHT), 0, 32)
    source.fill((255, 255, 255))
    flagged_blit(source, target, x, y, 1)
    changed = words(target) != 0
    return list(numpy.nonzero(changed.any(0))[0]), list(numpy.nonzero(changed.any(1))[0])


def test_a_source_at_the_right_edge_is_not_drawn():
    assert drawn_columns(WIDTH - 10) == ([], [])
    assert drawn_columns(WIDTH - 11)[0] == range(WIDTH - 11, WIDTH - 1)


def test_a_negative_y_draws_the_whole_source_from_the_first_row():
    assert drawn_columns(0, -3) == (range(10), range(4))


def test_a_negative_x_leaves_out_the_first_columns():
    assert drawn_columns(-3)[0] == range(7)
    assert drawn_columns(-10)[0] == []


def test_rows_below_the_target_are_left_out():
    assert drawn_columns(0, HEIGHT - 2)[1] == [HEIGHT - 2, HEIGHT - 1]
    assert drawn_columns(0, HEIGHT)[1] == []


@pytest.mark.parametrize("y", [-15, -1, 0, 5])
def test_adding_stays_inside_foreign_memory(y):
    source = ForeignSurface(5, HEIGHT + 4, 28)
    target = ForeignSurface(WIDTH, HEIGHT, 4 * WIDTH + 12, seed=3)
    before = source.memory.copy()
    expected = target.memory.copy()
    rows = min(HEIGHT + 4, HEIGHT - max(y, 0))
    for row in range(rows):
        start = target.start + (max(y, 0) + row) * target.pitch + 8
        place = expected[start : start + 20]
        pixels = before[source.start + row * 28 :][:20]
        place[...] = numpy.minimum(place.astype(int) + pixels, 255)
    _flagged_blit(source.address, target.address, Rect(2, y, 0, 0), 1)
    assert_same_bytes(target.memory, expected)
    assert_same_bytes(source.memory, before)


def test_adding_a_surface_to_itself_doubles_it():
    surface = surface_of(WIDTH, HEIGHT)
    before = words(surface).copy()
    part = surface.subsurface((0, 0, WIDTH - 1, HEIGHT))
    flagged_blit(part, surface, 0, 0, 1)
    expected = model.added(before[:, :-1], before, 0, 0)
    assert_same_words(words(surface), expected, "doubled")


def test_adding_between_encoded_surfaces():
    source, target = encoded_surface(6, 5), encoded_surface(WIDTH, HEIGHT, 2)
    expected = model.added(
        words(encoded_surface(6, 5)), words(encoded_surface(WIDTH, HEIGHT, 2)), 3, 2
    )
    flagged_blit(source, target, 3, 2, 1)
    assert native.sdl_surface(source).locked == native.sdl_surface(target).locked == 0
    assert_same_words(words(target), expected, "encoded")


@pytest.mark.parametrize(
    "source_depth, target_depth",
    [(8, 32), (16, 32), (24, 32), (32, 8), (32, 16), (32, 24), (16, 16)],
)
def test_adding_needs_32_bits(source_depth, target_depth):
    source = pygame.Surface((5, 4), 0, source_depth)
    target = pygame.Surface((WIDTH, HEIGHT), 0, target_depth)
    source.fill((255, 255, 255))
    before = buffer_of(target)
    flagged_blit(source, target, 1, 1, 1)
    assert_same_bytes(buffer_of(target), before)


def test_surfaces_without_area():
    empty, full = pygame.Surface((0, 0), 0, 32), surface_of(5, 4)
    before = words(full)
    for x, y, mode in itertools.product((-2, 0, 2), (-2, 0, 2), (0, 1, 2)):
        flagged_blit(empty, full, x, y, mode)
        flagged_blit(full, empty, x, y, mode)
    assert_same_words(words(full), before, "untouched")


def test_no_surface_or_rectangle_is_nothing():
    surface, other = surface_of(3, 3), surface_of(5, 5, seed=2)
    before = words(surface), words(other)
    full, larger = native.surface_address(surface), native.surface_address(other)
    for mode in (0, 1, 2):
        _flagged_blit(None, larger, Rect(), mode)
        _flagged_blit(full, None, Rect(), mode)
        _flagged_blit(full, larger, None, mode)
    _additive_blit(None, larger, 0, 0, 1, 4)
    _additive_blit(full, None, 0, 0, 1, 4)
    assert_same_words(words(surface), before[0], "source")
    assert_same_words(words(other), before[1], "target")


# ---- other modes


@pytest.mark.parametrize("mode", [2, -1, 127, 129, 2**31 - 1])
def test_an_unexpected_mode_is_reported_and_drawn_plainly(mode, capfd):
    source, target, twin = (
        surface_of(5, 4),
        surface_of(WIDTH, HEIGHT, seed=2),
        surface_of(WIDTH, HEIGHT, seed=2),
    )
    printed(capfd)
    assert flagged_blit(source, target, 3, -1, mode) == (3, 0, 5, 3)
    # Written at once, not when a buffer is full.
    assert capfd.readouterr() == ("Error: Unexpected additive blend mode %d\n" % mode, "")
    twin.blit(source, (3, -1))
    assert_same_words(words(target), words(twin), "unexpected")


@pytest.mark.parametrize("x, y", [(WIDTH - 5, 0), (WIDTH, 0), (-5, 0), (0, HEIGHT)])
def test_an_unexpected_mode_is_placed_first(x, y, capfd):
    source, target = surface_of(5, 4), surface_of(WIDTH, HEIGHT, seed=2)
    before = words(target)
    printed(capfd)
    flagged_blit(source, target, x, y, 2)
    assert printed(capfd) == ("", "")
    assert_same_words(words(target), before, "untouched")


# ---- the adding itself


def test_additive_blit_takes_byte_offsets():
    source, target = surface_of(6, 5, ARGB), surface_of(WIDTH, HEIGHT, ARGB, 2)
    expected = words(target)
    expected[4:7, 3:5] = model.added(
        words(source)[1:4, 2:4], numpy.pad(expected[4:7, 3:5], ((0, 0), (0, 1)), "constant"), 0, 0
    )[:, :2]
    additive_blit(source, target, 24 + 8, 4 * (4 * WIDTH + 3), 3, 8)
    assert_same_words(words(target), expected, "offsets")


@pytest.mark.parametrize(
    "numbers",
    [
        (0, 0, 0, 20),
        (0, 0, -1, 20),
        (0, 0, 1, 0),
        (0, 0, 1, -4),
        (-4, 0, 1, 4),
        (0, -4, 1, 4),
        (120, 0, 1, 4),
        (0, 4 * WIDTH * HEIGHT, 1, 4),
        (0, 0, 1, 124),
        (2**31 - 1, 0, 1, 2**31 - 1),
    ],
)
def test_additive_blit_outside_the_buffers_draws_nothing(numbers):
    source, target = surface_of(6, 5), surface_of(WIDTH, HEIGHT, seed=2)
    before = words(target)
    additive_blit(source, target, *numbers)
    assert_same_words(words(target), before, "outside")


def test_additive_blit_ends_at_the_last_row_inside():
    source, target = surface_of(6, 5), surface_of(WIDTH, HEIGHT, seed=2)
    expected = model.added(words(source)[:2], words(target), 0, HEIGHT - 2)
    additive_blit(source, target, 0, (HEIGHT - 2) * 4 * WIDTH, 2**31 - 1, 24)
    assert_same_words(words(target), expected, "last rows")
