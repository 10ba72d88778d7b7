"""The course of a particle's colour and alpha over its life."""

import ctypes
import random

import pytest
from models import pixel_model as model
from support import native
from support.particles import ParticleRecord, TypeRecord

desired_alpha = native.function(
    "DesiredAlpha", ctypes.c_int32, ctypes.POINTER(TypeRecord), ctypes.c_float
)
tint_of_type = native.function(
    "DesiredTint_type", ctypes.c_uint32, ctypes.POINTER(TypeRecord), ctypes.c_float
)
tint_of_particle = native.function(
    "DesiredTint_part_gm", ctypes.c_uint32, ctypes.POINTER(ParticleRecord), ctypes.c_float
)

NAN, INFINITE = float("nan"), float("inf")

# Two alphas and a life fraction whose alpha times 255 lies so close below a whole number that
# double precision rounds it up to that.
DOUBLE_ROUNDS_UP = (966536256.0, 696358016.0, 0.9729098677635193)


def single(value):
    return ctypes.c_float(value).value


def alphas(start, half, end):
    return TypeRecord(alpha_start=start, alpha_half=half, alpha_end=end)


def colours(record, values):
    for name, value in zip(("color1", "color2", "color3"), values):
        setattr(record, name, value)
    return record


def test_alpha_by_hand():
    record = alphas(1.0, 0.5, 0.0)
    assert [desired_alpha(record, t) for t in (1.0, 0.75, 0.5, 0.25, 0.0)] == [255, 191, 127, 63, 0]
    # The middle belongs to the second half.
    assert desired_alpha(alphas(1.0, 0.5, 0.0), 0.5) == 127
    assert desired_alpha(alphas(0.0, 0.2, 1.0), 0.5) == 51
    assert desired_alpha(alphas(1.0, 1.0, 1.0), 0.123) == 255


def test_half_life_takes_nothing_from_the_first_half():
    assert desired_alpha(alphas(INFINITE, 0.5, 0.0), 0.5) == 127
    assert desired_alpha(alphas(0.0, 0.5, INFINITE), 0.50001) == 127


def test_alpha_is_not_clamped():
    assert desired_alpha(alphas(2.0, 0.0, 0.0), 1.0) == 510
    assert desired_alpha(alphas(-1.0, 0.0, 0.0), 1.0) == -255
    assert desired_alpha(alphas(1.0, 0.0, 0.0), 2.0) == 3 * 255
    assert desired_alpha(alphas(1.0, 0.0, 1.0), -1.0) == 3 * 255
    assert desired_alpha(alphas(-0.003, 0.0, 0.0), 1.0) == 0


def test_alpha_keeps_the_low_32_bits_of_64():
    # 2^32 * 255 and 2^31 * 255: only bits 0 to 31 are left.
    assert desired_alpha(alphas(2.0**32, 0, 0), 1.0) == 0
    assert desired_alpha(alphas(2.0**31, 0, 0), 1.0) == -(2**31)
    for value in (NAN, INFINITE, -INFINITE, 1e30):  # the smallest 64-bit integer
        assert desired_alpha(alphas(value, 0.0, 0.0), 1.0) == 0


def test_alpha_of_a_fraction_that_is_no_number_is_of_the_second_half():
    assert desired_alpha(alphas(1.0, 1.0, 1.0), NAN) == 0  # NaN truncates to the smallest integer


@pytest.mark.parametrize("size", [1.0, 300.0, 1e9])
def test_alpha_is_exact_up_to_the_truncation(size):
    numbers = random.Random(3)
    for _ in range(5000):
        values = [single(size * numbers.uniform(0.5, 1.0)) for _ in range(3)]
        t = single(numbers.random())
        assert desired_alpha(alphas(*values), t) == model.desired_alpha(*values + [t])


def test_alpha_needs_more_than_double_precision():
    start, half, t = DOUBLE_ROUNDS_UP
    in_double = int((start * (2 * (t - 0.5)) + half * (1 - 2 * (t - 0.5))) * 255.0)
    exact = model.desired_alpha(start, half, 0.0, t)
    assert in_double % 2**32 != exact % 2**32
    assert desired_alpha(alphas(start, half, 0.0), t) == exact


@pytest.mark.parametrize(
    "function, record",
    [(tint_of_type, TypeRecord()), (tint_of_particle, ParticleRecord())],
    ids=["type", "particle"],
)
class TestTint(object):
    def test_by_hand(self, function, record):
        colours(record, (0x0000FF, 0x00FF00, 0xFF0000))
        assert [function(record, t) for t in (1.0, 0.75, 0.5, 0.25, 0.0)] == [
            0x0000FF,
            0x007F7F,
            0x00FF00,
            0x7F7F00,
            0xFF0000,
        ]
        assert function(record, NAN) == model.blend(0x00FF00, 0xFF0000, -(2**31))

    def test_follows_the_curve(self, function, record):
        numbers = random.Random(4)
        for _ in range(3000):
            values = [numbers.randrange(-(2**31), 2**31) for _ in range(3)]
            t = single(numbers.uniform(-0.5, 1.5))
            colours(record, values)
            assert function(record, t) == model.desired_tint(*values + [t])
