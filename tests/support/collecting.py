"""Collections wherever the interpreter may start one, during which code looks at what is there, or
changes it."""

import ctypes
import gc
import weakref

# Every count is above it, so that each new object that the collector knows starts a collection.
# (0 would mean that none ever starts.)
EVERY_ALLOCATION = -1
NEVER = 2**31 - 1


class _Cycle(object):
    __slots__ = ("itself", "__weakref__")  # a dictionary would serve again when it dies


class CollectingEverywhere(object):
    """A scope in which a collection runs each time that the interpreter may start one, and finds
    garbage. At each of these points it calls `act`, or only at the one that is named, from 1 on.

    points   how many there were so far
    """

    def __init__(self, act=lambda: None, at=None):
        self._act, self._at = act, at
        self.points = 0

    def __enter__(self):
        self._thresholds, self._enabled = gc.get_threshold(), gc.isenabled()
        gc.disable()
        self._leave_garbage()
        # The youngest objects alone: there all garbage of ours is.
        gc.set_threshold(EVERY_ALLOCATION, NEVER, NEVER)
        gc.enable()
        return self

    def __exit__(self, *exception):
        gc.disable()
        self._reference = None
        gc.set_threshold(*self._thresholds)
        if self._enabled:
            gc.enable()

    def _leave_garbage(self):
        cycle = _Cycle()
        cycle.itself = cycle
        self._reference = weakref.ref(cycle, self._collected)

    def _collected(self, _):
        self.points += 1
        self._leave_garbage()
        if self._at in (None, self.points):
            self._act()


def tuples_with_holes():
    """How many tuples the collector shows that have an item missing; reading it would crash."""
    return sum(
        type(shown) is tuple and None in _item_addresses(shown) for shown in gc.get_objects()
    )


def _item_addresses(items):
    return list((ctypes.c_void_p * len(items)).from_address(id(items) + type(items).__basicsize__))


def empty_free_lists():
    """Objects to hold so that new tuples, lists and dictionaries are allocated: the interpreter
    keeps some 2,000 tuples of each length, and 80 lists and dictionaries, to use them again."""
    tuples = [tuple([None] * length) for length in range(1, 20) for _ in range(2100)]
    return tuples, [[] for _ in range(200)], [{} for _ in range(200)]
