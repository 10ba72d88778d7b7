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

for _name in ("find_in_list", "find_instance"):
    getattr(_helper, _name).restype = ctypes.py_object
_helper.find_in_list.argtypes = (ctypes.c_void_p,) + (ctypes.py_object,) * 2 + (ctypes.c_char_p,)
_helper.find_instance.argtypes = (ctypes.c_void_p,) + (ctypes.py_object,) * 2

# succeeded  whether the function returned an object at all
# exception  what was pending afterwards, also after a success; None when nothing was
Outcome = collections.namedtuple("Outcome", "succeeded result exception")


def call(function, *arguments):
    """The Outcome of a call."""
    return _outcome(_helper.call(function, arguments))


def find_in_list(function, item, list_name, before=None):
    """The Outcome of a function that is named, Game_Sequence_Index() or one of its kind, called
    while the exception `before` is pending."""
    return _outcome(_helper.find_in_list(_address(function), before, item, list_name))


def first_instance(resource, before=None):
    """The Outcome of GetFirstInstance(), called while the exception `before` is pending."""
    return _outcome(_helper.find_instance(_address("GetFirstInstance"), before, resource))


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
    outcome = _helper.add_to_scale_cache(
        _address("sprite_scalecache_add"), before, sprite, key, width, height, colour
    )
    return outcome[1:]


def _outcome(answer):
    succeeded, result, exception = answer
    return Outcome(bool(succeeded), result, exception)


def _address(name):
    return ctypes.cast(native.library[name], ctypes.c_void_p)
