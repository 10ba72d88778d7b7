"""What a soak's samples may not exceed."""

from __future__ import division

WARM_SHARE = 0.2  # of a run, in which caches fill
# Key of the samples -> what it is, and by how much it may grow from there on. What is handed out
# depends on the pictures that just live; what is resident also on the gaps between them, which
# malloc() keeps: these come to rest late.
MOST_GROWTH_KIB = {
    "allocated_kib": ("memory handed out", 1024),
    "resident_kib": ("resident memory", 3072),
}
# Key of the samples -> whose pictures, and how many it holds at most: the miss that finds more than
# 100 scaled pictures in a particle type's cache empties it first; the engine does so with a
# sprite's when it holds CACHE_LIMIT (engine/drawing.py).
MOST_PICTURES = {
    "scaled_pictures": ("a particle type's cache", 101),
    "sprite_pictures": ("a sprite's cache", 400),
}


def growth_kib(samples, key):
    """By how much the median of the last fifth is above that of the second one."""
    fifth = max(1, int(len(samples) * WARM_SHARE))
    values = [held[key] for held in samples]
    return _median(values[-fifth:]) - _median(values[fifth : 2 * fifth])


def faults(samples, may_grow):
    """What is wrong with a run, in words; `may_grow`: its memory does not count."""
    found = []
    for key, (what, most) in sorted(MOST_GROWTH_KIB.items()):
        grown = growth_kib(samples, key)
        if grown > most and not may_grow:
            found.append("{} grew by {} KiB".format(what, grown))
    for key, (whose, most) in sorted(MOST_PICTURES.items()):
        held = max(held[key] for held in samples)
        if held > most:
            found.append("{} held {} pictures, more than {}".format(whose, held, most))
    return found


def _median(values):
    return sorted(values)[len(values) // 2]
