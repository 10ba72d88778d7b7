"""Sprites, and copies of their subimages in the scale cache."""

import ctypes

import larkspur

from support import native

_arguments = [ctypes.py_object] * 2 + [ctypes.c_int] * 8
_add = native.function("sprite_scalecache_add", ctypes.c_void_p, *_arguments)


def sprite_of(*subimages):
    sprite = larkspur.GMSprite()
    sprite.subimages = list(subimages)
    return sprite


def scale_cache_add(*arguments):
    """The Surface that sprite_scalecache_add() stores, or None; arguments: sprite, key, subimage,
    width, height, angle, one that is ignored, colour, alpha, whether a copy has alpha."""
    return native.new_reference(_add(*arguments))
