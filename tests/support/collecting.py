"""Collections during which host code looks at what is there, or changes it."""

import ctypes
import gc
import weakref


class _Cycle(object):
    __slots__ = ("itself", "__weakref__")  # a dictionary would serve again when it dies


class AtEachCollection(object):
    """Calls `action` in every collection that starts inside a `with` block, where the interpreter
    starts one as often as it ever does. `count` says how many there were."""

    def __init__(self, action):
        self.action = action
        self.count = 0

    def __enter__(self):
        self._threshold = gc.get_threshold()
        gc.collect()
        self._leave_garbage()
        gc.set_threshold(1)
        return self

    def __exit__(self, *exception):
        gc.set_threshold(*self._threshold)
        self._reference = None

    def _leave_garbage(self):
        cycle = _Cycle()
        cycle.itself = cycle
        self._reference = weakref.ref(cycle, self._collected)

    def _collected(self, reference):
        self.count += 1
        self._leave_garbage()
        self.action()


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
