"""Keeps what lives as long as the run out of the garbage collector's way.

pytest's items, hypothesis and numpy come to some 300,000 objects, and tests collect garbage some
600 times: most of the suite's time would go into visiting those objects each time anew.
"""

import ctypes
import gc


class Head(ctypes.Structure):
    """PyGC_Head: what stands before each object that can be collected, and at a list's start."""

    _fields_ = [
        ("next", ctypes.c_void_p),
        ("previous", ctypes.c_void_p),
        ("references", ctypes.c_ssize_t),
        ("padding", ctypes.c_ssize_t),
    ]


class Generation(ctypes.Structure):
    """gc_generation: one of the collector's three, the oldest one last."""

    _fields_ = [("head", Head), ("threshold", ctypes.c_int), ("count", ctypes.c_int)]


# The start of the list of what was set aside; it stays, as its members do.
aside = Head()


def set_aside():
    """Moves all objects that can be collected into a list that the collector does not know.

    They go on to live, keep what they own and die by their count. Only cycles of them are never
    found, and gc.get_objects() and gc.get_referrers() do not tell of them. Call it once. Where the
    interpreter keeps its generations in another way, as 2.7.15 did, nothing happens.
    """
    youngest = ctypes.c_void_p.in_dll(ctypes.pythonapi, "_PyGC_generation0").value
    generations = (3 * Generation).from_address(youngest)
    if tuple(generation.threshold for generation in generations) != gc.get_threshold():
        return
    gc.collect()  # what is left is in the oldest generation
    gc.disable()
    oldest = generations[2].head
    aside.next, aside.previous = oldest.next, oldest.previous
    Head.from_address(oldest.next).previous = ctypes.addressof(aside)
    Head.from_address(oldest.previous).next = ctypes.addressof(aside)
    oldest.next = oldest.previous = ctypes.addressof(oldest)
    gc.enable()
