"""Timing several ways to do the same thing, in turns, within one process."""

from __future__ import division

import ctypes
import gc
import random
import time


def quartiles(values):
    """Lower quartile, median and upper quartile, between neighbours where they fall."""
    values = sorted(values)

    def at(share):
        place = share * (len(values) - 1)
        low = int(place)
        high = min(low + 1, len(values) - 1)
        return values[low] + (values[high] - values[low]) * (place - low)

    return at(0.25), at(0.5), at(0.75)


def times_in_turns(actions, rounds, seconds_per_sample=0.02):
    """Seconds per call of each action, `rounds` samples each, taken in random order in each round.

    actions: name -> callable without arguments. Garbage collection rests meanwhile.
    """
    repeats = {}
    for name, action in actions.items():
        action()
        begin = time.time()
        action()
        repeats[name] = max(1, int(seconds_per_sample / max(time.time() - begin, 1e-7)))
    times = dict((name, []) for name in actions)
    names = sorted(actions)
    collecting = gc.isenabled()
    gc.disable()
    try:
        for _ in range(rounds):
            random.shuffle(names)
            for name in names:
                action, numbers = actions[name], range(repeats[name])
                begin = time.time()
                for _ in numbers:
                    action()
                times[name].append((time.time() - begin) / repeats[name])
    finally:
        if collecting:
            gc.enable()
    return times


def ratios(numerators, denominators):
    """Quartiles of the ratios of two actions' times, round by round."""
    return quartiles([above / below for above, below in zip(numerators, denominators)])


def as_text(low_median_high, form="%.2f"):
    """A median with its quartiles: "2.31 (2.25-2.40)"."""
    low, median, high = low_median_high
    return "%s (%s-%s)" % (form % median, form % low, form % high)


def surface_address(surface):
    """Of the SDL surface inside a pygame Surface, for native loops around it; it follows reference
    count and type. Valid while the Surface lives."""
    return ctypes.c_void_p.from_address(id(surface) + 2 * ctypes.sizeof(ctypes.c_void_p)).value
