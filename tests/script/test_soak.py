"""What a soak's samples are judged by."""

import os
import sys

import pytest
from support.scripts import TREE

sys.path.insert(0, os.path.join(TREE, "tests", "soak"))

import bounds

MEMORY = [("allocated_kib", "memory handed out", 1024), ("resident_kib", "resident memory", 3072)]


def samples(key, values):
    """As many as values, with these below key and nothing held otherwise."""
    kinds = "allocated_kib resident_kib scaled_pictures sprite_pictures".split()
    return [dict(dict.fromkeys(kinds, 0), **{key: value}) for value in values]


@pytest.mark.parametrize("key, what, most", MEMORY)
def test_memory_that_fills_caches_at_first_is_flat(key, what, most):
    assert bounds.faults(samples(key, [1000, 90000] + [100000] * 8), False) == []


@pytest.mark.parametrize("key, what, most", MEMORY)
def test_growth_is_that_of_the_last_fifth_over_the_second_one(key, what, most):
    growing = samples(key, [0, 0, 10, 20, 30, 40, 50, 60, 5000, 6000])
    assert bounds.growth_kib(growing, key) == 6000 - 20
    assert bounds.faults(growing, False) == [what + " grew by 5980 KiB"]


@pytest.mark.parametrize("key, what, most", MEMORY)
def test_some_growth_is_noise(key, what, most):
    assert bounds.faults(samples(key, [0] * 8 + [most] * 2), False) == []
    assert len(bounds.faults(samples(key, [0] * 8 + [most + 1] * 2), False)) == 1


@pytest.mark.parametrize("key, what, most", MEMORY)
def test_memory_may_grow_where_freed_memory_is_kept(key, what, most):
    assert bounds.faults(samples(key, [0] * 8 + [9999] * 2), True) == []


@pytest.mark.parametrize("key, most", [("scaled_pictures", 101), ("sprite_pictures", 400)])
def test_caches_stay_within_their_bounds(key, most):
    assert bounds.faults(samples(key, [most] * 10), True) == []
    (fault,) = bounds.faults(samples(key, [0] * 9 + [most + 1]), True)
    assert "held {} pictures, more than {}".format(most + 1, most) in fault
