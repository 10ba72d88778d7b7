"""What a soak's samples may not exceed."""

from __future__ import division

WARM_SHARE = 0.2  # of a run, in which caches fill
MOST_GROWTH_KIB = 1024  # from there on: the noise of an allocator that serves a game
# Key of the samples -> whose pictures, and how many it holds at most: the miss that finds more than
# 100 scaled pictures in a particle type's cache empties it first; the engine does so with a
# sprite's when it holds CACHE_LIMIT (engine/drawing.py).
MOST_PICTURES = {
    "scaled_pictures": ("a particle type's cache", 101),
    "sprite_pictures": ("a sprite's cache", 400),
}


def growth_kib(samples):
    """By how much the resident memory of the last fifth is above that of the second one."""
    fifth = max(1, int(len(samples) * WARM_SHARE))
    resident = [held["resident_kib"] for held in samples]
    return _median(resident[-fifth:]) - _median(resident[fifth : 2 * fifth])


def faults(samples, may_grow):
    """What is wrong with a run, in words; `may_grow`: its memory does not count."""
    found = []
    grown = growth_kib(samples)
    if grown > MOST_GROWTH_KIB and not may_grow:
        found.append("resident memory grew by {} KiB".format(grown))
    for key, (whose, most) in sorted(MOST_PICTURES.items()):
        held = max(held[key] for held in samples)
        if held > most:
            found.append("{} held {} pictures, more than {}".format(whose, held, most))
    return found


def _median(values):
    return sorted(values)[len(values) // 2]
