"""What the process holds, by the allocator and by the system."""

import ctypes
import os

_PAGE_BYTES = os.sysconf("SC_PAGESIZE")


class _MallInfo(ctypes.Structure):
    _fields_ = [
        (name, ctypes.c_size_t)
        for name in (
            "arena ordblks smblks hblks hblkhd usmblks fsmblks uordblks fordblks keepcost".split()
        )
    ]


_mallinfo2 = ctypes.CDLL(None).mallinfo2
_mallinfo2.restype = _MallInfo


def allocated_bytes():
    """The bytes that malloc() has handed out; those of all objects too where
    tests/native/helpers/plain_malloc.c is preloaded."""
    info = _mallinfo2()
    return info.uordblks + info.hblkhd


def resident_kib():
    with open("/proc/self/statm") as source:
        return int(source.read().split()[1]) * _PAGE_BYTES // 1024
