"""Timing several ways to do the same thing in turns, and what comes of it.

A way is a function that does something a number of times and returns the seconds of processor time
that this took. Ways of one process and of several are timed alike.
"""

from __future__ import division

import random


def quartiles(values):
    """Lower quartile, median and upper quartile, between neighbours where they fall."""
    values = sorted(values)

    def at(share):
        place = share * (len(values) - 1)
        low = int(place)
        high = min(low + 1, len(values) - 1)
        return values[low] + (values[high] - values[low]) * (place - low)

    return at(0.25), at(0.5), at(0.75)


def calls_for(way, seconds):
    """How many calls take about so long; a first call, which may prepare something, is left out."""
    way(1)
    return max(1, int(seconds / max(way(3) / 3, 1e-7)))


def times_in_turns(ways, rounds, seconds_per_sample):
    """Seconds per call of each way, `rounds` samples each, taken in random order in each round.

    ways: name -> way
    """
    calls = {name: calls_for(way, seconds_per_sample) for name, way in ways.items()}
    times = {name: [] for name in ways}
    names = sorted(ways)
    for _ in range(rounds):
        random.shuffle(names)
        for name in names:
            times[name].append(ways[name](calls[name]) / calls[name])
    return times


def ratios(numerators, denominators):
    """Quartiles of the ratios of two ways' times, round by round."""
    return quartiles([above / below for above, below in zip(numerators, denominators)])
