"""larkspur as a native caller sees it, and SDL's records, through ctypes."""

import ctypes

import larkspur

from support import build

# With the interpreter's lock held and pending exceptions raised: the functions use Python objects.
library = ctypes.PyDLL(larkspur.__file__)


class Rect(ctypes.Structure):
    _fields_ = [
        ("x", ctypes.c_int16),
        ("y", ctypes.c_int16),
        ("w", ctypes.c_uint16),
        ("h", ctypes.c_uint16),
    ]


class PixelFormat(ctypes.Structure):
    _fields_ = (
        [("palette", ctypes.c_void_p)]
        + [
            (name, ctypes.c_uint8)
            for name in (
                "BitsPerPixel",
                "BytesPerPixel",
                "Rloss",
                "Gloss",
                "Bloss",
                "Aloss",
                "Rshift",
                "Gshift",
                "Bshift",
                "Ashift",
            )
        ]
        + [(name, ctypes.c_uint32) for name in ("Rmask", "Gmask", "Bmask", "Amask", "colorkey")]
        + [("alpha", ctypes.c_uint8)]
    )


class Surface(ctypes.Structure):
    _fields_ = [
        ("flags", ctypes.c_uint32),
        ("format", ctypes.POINTER(PixelFormat)),
        ("w", ctypes.c_int),
        ("h", ctypes.c_int),
        ("pitch", ctypes.c_uint16),
        ("pixels", ctypes.c_void_p),
        ("offset", ctypes.c_int),
        ("hwdata", ctypes.c_void_p),
        ("clip_rect", Rect),
        ("unused1", ctypes.c_uint32),
        ("locked", ctypes.c_uint32),
        ("map", ctypes.c_void_p),
        ("format_version", ctypes.c_uint),
        ("refcount", ctypes.c_int),
    ]


_OBJECT_HEAD_BYTES = 2 * ctypes.sizeof(ctypes.c_void_p)


def surface_address(surface):
    """Address of the SDL surface inside a pygame Surface; None when its display was closed."""
    return ctypes.c_void_p.from_address(id(surface) + _OBJECT_HEAD_BYTES).value


def sdl_surface(surface):
    """The SDL surface inside a pygame Surface as a record; valid while the Surface lives."""
    return Surface.from_address(surface_address(surface))


def function(name, result, *arguments):
    """An exported function. Give c_void_p for objects that may be null: ctypes crashes on a null
    py_object result and drops a result while an exception is pending."""
    found = library[name]  # an object of its own; an attribute's would be shared
    found.restype = result
    found.argtypes = arguments
    return found


def variable(ctype, name):
    """An exported variable; read and write its .value."""
    return ctype.in_dll(library, name)


def new_reference(address):
    """The object behind a new reference that a native function returned; None for null."""
    if not address:
        return None
    result = ctypes.cast(address, ctypes.py_object).value
    ctypes.pythonapi.Py_DecRef(ctypes.py_object(result))
    return result


def build_path(name):
    """Path of a native test helper that CMake built."""
    return build.path("tests", "native", name)
