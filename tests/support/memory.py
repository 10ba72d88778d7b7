"""Memory that was freed, made recognisable."""

import ctypes

_libc = ctypes.CDLL(None)
_libc.malloc.restype = ctypes.c_void_p
_libc.malloc.argtypes = [ctypes.c_size_t]
_libc.memset.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_size_t]
_libc.free.argtypes = [ctypes.c_void_p]

# Of the records of surfaces, of their formats and of what else belongs to them.
_SIZES = [size for size in range(24, 260, 16) for _ in range(12)]


def spoil_freed():
    """Writes over memory that was freed, as far as new blocks of its size get it: what is read from
    there is no address any more."""
    blocks = [_libc.malloc(size) for size in _SIZES]
    for block, size in zip(blocks, _SIZES):
        _libc.memset(block, 0xEE, size)
    for block in blocks:
        _libc.free(block)
