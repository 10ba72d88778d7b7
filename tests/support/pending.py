"""Calls whose result and pending exception are both wanted."""

import collections
import ctypes

from support import native

_helper = ctypes.PyDLL(native.build_path("helpers/pending.so"))
_helper.call.restype = ctypes.py_object
_helper.call.argtypes = (ctypes.py_object, ctypes.py_object)
_helper.draw_view.restype = ctypes.py_object
_helper.draw_view.argtypes = (
    ctypes.c_void_p,
    ctypes.py_object,
    ctypes.py_object,
    ctypes.py_object,
    ctypes.c_int,
    ctypes.py_object,
)
_helper.color_as_int.restype = ctypes.py_object
_helper.color_as_int.argtypes = (ctypes.c_void_p, ctypes.py_object)
_helper.render_particle.restype = ctypes.py_object
_helper.render_particle.argtypes = (ctypes.c_void_p, ctypes.py_object, ctypes.py_object)
_helper.add_to_scale_cache.restype = ctypes.py_object
_helper.add_to_scale_cache.argtypes = (
    (ctypes.c_void_p,) + (ctypes.py_object,) * 3 + (ctypes.c_int,) * 3
)

# succeeded  whether the function returned an object at all
# exception  what was pending afterwards, also after a success; None when nothing was
Outcome = collections.namedtuple("Outcome", "succeeded result exception")


def call(function, *arguments):
    """The Outcome of a call."""
    succeeded, result, exception = _helper.call(function, arguments)
    return Outcome(bool(succeeded), result, exception)


def draw_view(room, surface, view, drawn, before=None):
    """(status, exception) of Room_DrawView(), called while the exception `before` is pending."""
    return _helper.draw_view(_address("Room_DrawView"), before, room, surface, view, drawn)


def color_as_int(colour):
    """(pixel value, exception) of color_as_int()."""
    return _helper.color_as_int(_address("color_as_int"), colour)


def render_particle(particle, before=None):
    """The exception of particle_render_low(), called while the exception `before` is pending."""
    return _helper.render_particle(_address("particle_render_low"), before, particle)


def add_to_scale_cache(sprite, key, width, height, colour, before=None):
    """(Surface, exception) of sprite_scalecache_add() for the first subimage, called while the
    exception `before` is pending."""
    return _helper.add_to_scale_cache(
        _address("sprite_scalecache_add"), before, sprite, key, width, height, colour
    )


def _address(name):
    return ctypes.cast(native.library[name], ctypes.c_void_p)
