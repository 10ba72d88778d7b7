"""What a soak's samples are judged by."""

import os
import sys

import pytest
from support.scripts import TREE

sys.path.insert(0, os.path.join(TREE, "tests", "soak"))

import bounds


def samples(resident_kib, **held):
    found = dict({"scaled_pictures": 0, "sprite_pictures": 0}, **held)
    return [dict(found, resident_kib=kib) for kib in resident_kib]


def test_memory_that_fills_caches_at_first_is_flat():
    assert bounds.faults(samples([1000, 90000] + [100000] * 8), False) == []


def test_growth_is_that_of_the_last_fifth_over_the_second_one():
    growing = samples([0, 0, 10, 20, 30, 40, 50, 60, 5000, 6000])
    assert bounds.growth_kib(growing) == 6000 - 20
    assert bounds.faults(growing, False) == ["resident memory grew by 5980 KiB"]


def test_growth_of_a_mebibyte_is_noise():
    assert bounds.faults(samples([0] * 8 + [1024] * 2), False) == []
    assert len(bounds.faults(samples([0] * 8 + [1025] * 2), False)) == 1


def test_memory_may_grow_where_freed_memory_is_kept():
    assert bounds.faults(samples([0] * 8 + [9999] * 2), True) == []


@pytest.mark.parametrize("key, most", [("scaled_pictures", 101), ("sprite_pictures", 400)])
def test_caches_stay_within_their_bounds(key, most):
    assert bounds.faults(samples([0] * 10, **{key: most}), True) == []
    (fault,) = bounds.faults(samples([0] * 10, **{key: most + 1}), True)
    assert "held {} pictures, more than {}".format(most + 1, most) in fault
