"""Garbage that is collected wherever the interpreter may collect, with code that runs there."""

import gc
import weakref

# Every count is above it, so that each new object that the collector knows starts a collection.
# (0 would mean that none ever starts.)
EVERY_ALLOCATION = -1
NEVER = 2**31 - 1


class _Cycle(object):
    pass


class CollectingEverywhere(object):
    """A scope in which a collection runs each time that the interpreter may start one, and finds
    garbage. At one of these points, from 1 on, it calls `act`.

    points   how many there were so far
    """

    def __init__(self, act=None, at=0):
        self._act, self._at = act, at
        self.points = 0

    def __enter__(self):
        self._thresholds = gc.get_threshold()
        gc.disable()
        self._leave_garbage()
        # The youngest objects alone: there all garbage of ours is.
        gc.set_threshold(EVERY_ALLOCATION, NEVER, NEVER)
        gc.enable()
        return self

    def __exit__(self, *exception):
        gc.disable()
        gc.set_threshold(*self._thresholds)
        self._reference = None

    def _leave_garbage(self):
        cycle = _Cycle()
        cycle.itself = cycle
        self._reference = weakref.ref(cycle, self._collected)

    def _collected(self, _):
        self.points += 1
        if self.points == self._at:
            self._act()
        self._leave_garbage()
