"""Surfaces in memory that must not be left: between pages that can't be touched at all."""

import ctypes
import mmap

import numpy

from support import native
from support.surfaces import make_surface_from

_libc = ctypes.CDLL(None, use_errno=True)
_libc.mmap.restype = ctypes.c_void_p
_libc.mmap.argtypes = (
    ctypes.c_void_p,
    ctypes.c_size_t,
    ctypes.c_int,
    ctypes.c_int,
    ctypes.c_int,
    ctypes.c_long,
)
_libc.munmap.argtypes = (ctypes.c_void_p, ctypes.c_size_t)
_libc.mprotect.argtypes = (ctypes.c_void_p, ctypes.c_size_t, ctypes.c_int)
_PROT_NONE = 0

_wrap = native.function("PySurface_FromSurface", ctypes.c_void_p, ctypes.c_void_p)


class GuardedMemory(object):
    """`size` bytes that end where an untouchable page begins, or begin where one ends.

    Reading or writing across that edge ends the process; on the other side lie the rest of a page
    and then another untouchable one.
    """

    def __init__(self, size, at_start=False):
        page = mmap.PAGESIZE
        pages = max(1, (size + page - 1) // page)
        self._bytes = (pages + 2) * page
        self._base = _libc.mmap(
            None, self._bytes, _PROT_NONE, mmap.MAP_PRIVATE | mmap.MAP_ANONYMOUS, -1, 0
        )
        assert self._base not in (None, ctypes.c_void_p(-1).value)
        inner = self._base + page
        assert _libc.mprotect(inner, pages * page, mmap.PROT_READ | mmap.PROT_WRITE) == 0
        self.address = inner if at_start else inner + pages * page - size
        self.everything = numpy.frombuffer(
            (ctypes.c_uint8 * (pages * page)).from_address(inner), numpy.uint8
        )
        start = self.address - inner
        self.bytes = self.everything[start : start + size]

    def free(self):
        self.everything = self.bytes = None
        _libc.munmap(self._base, self._bytes)


class GuardedSurface(object):
    """A 32-bit pygame Surface in guarded memory that ends with its last pixel.

    surface       the pygame Surface
    memory        its bytes and all touchable ones around them
    words()       a copy of its pixels, uint32 [y][x]
    surroundings  a copy of every touchable byte that is no pixel
    """

    def __init__(self, width, height, pitch_bytes, masks, seed, at_start=False):
        self.width, self.height = width, height
        # A pitch may have a rest that is no whole pixel; rows are counted in whole ones.
        self._step = pitch_bytes // 4 * 4
        size = (height - 1) * pitch_bytes + 4 * width if width and height else 0
        self.memory = GuardedMemory(size, at_start)
        self.memory.everything[...] = numpy.random.RandomState(seed).randint(
            0, 256, len(self.memory.everything)
        )
        address = make_surface_from(self.memory.address, width, height, pitch_bytes, masks)
        self.surface = native.new_reference(_wrap(address))

    def _pixel_bytes(self, array):
        start = self.memory.address - self.memory.everything.ctypes.data
        return numpy.lib.stride_tricks.as_strided(
            array[start:], (self.height, 4 * self.width), (self._step, 1)
        )

    def words(self):
        """A copy of the pixels, which outlives the memory: pytest shows values of failed tests."""
        return self._pixel_bytes(self.memory.everything).copy().view(numpy.uint32)

    def surroundings(self):
        copy = self.memory.everything.copy()
        self._pixel_bytes(copy)[...] = 0
        return copy

    def free(self):
        """Frees the memory; the Surface and all parts of it must not be used any more."""
        self.surface = None
        self.memory.free()
