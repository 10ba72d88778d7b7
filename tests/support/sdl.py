"""SDL's and SDL_gfx's own operations on pygame Surfaces, to compose expected pictures from."""

import ctypes

import pygame

from support import native
from support.native import Rect

SDL_SRCALPHA = 0x10000


def linked_version():
    """Version of the loaded SDL, such as (1, 2, 15)."""
    numbers = native.function("SDL_Linked_Version", ctypes.POINTER(ctypes.c_uint8))()
    return tuple(numbers[0:3])


def is_layer():
    """Whether SDL 1.2 is a layer over SDL 2. It numbers its patches from 50 on."""
    return linked_version() >= (1, 2, 50)


_pointer, _integer, _double = ctypes.c_void_p, ctypes.c_int, ctypes.c_double
_zoom = native.function("zoomSurface", _pointer, _pointer, _double, _double, _integer)
_rotozoom = native.function("rotozoomSurface", _pointer, _pointer, _double, _double, _integer)
_convert = native.function("SDL_ConvertSurface", _pointer, _pointer, _pointer, ctypes.c_uint32)
_display_format_alpha = native.function("SDL_DisplayFormatAlpha", _pointer, _pointer)
_create = native.function(
    "SDL_CreateRGBSurface", _pointer, ctypes.c_uint32, *[_integer] * 3 + [ctypes.c_uint32] * 4
)
_set_alpha = native.function("SDL_SetAlpha", _integer, _pointer, ctypes.c_uint32, ctypes.c_uint8)
_upper_blit = native.function(
    "SDL_UpperBlit", _integer, _pointer, _pointer, _pointer, ctypes.POINTER(Rect)
)
_set_clip_rect = native.function("SDL_SetClipRect", _integer, _pointer, _pointer)
_wrap = native.function("PySurface_FromSurface", _pointer, _pointer)


def _wrapped(address):
    return native.new_reference(_wrap(address)) if address else None


def _transformed(address):
    """A picture by SDL_gfx without the two spare rows below it."""
    if not address:
        return None
    # SDL 1.2 goes by the height that SDL_gfx wrote, and only the clip rectangle is too high.
    _set_clip_rect(address, None)
    picture = _wrapped(address)
    if not is_layer():
        return picture
    # SDL 2 would draw both rows: a surface of the right height from the start, with all the rest.
    copy = created(
        picture.get_width(),
        picture.get_height(),
        picture.get_bitsize(),
        masks_of(picture),
        picture.get_flags(),
    )
    if picture.get_bitsize() == 8:
        copy.set_palette(picture.get_palette())
    if picture.get_flags() & pygame.SRCCOLORKEY:
        copy.set_colorkey(native.sdl_surface(picture).format.contents.colorkey)
    set_alpha(
        copy, picture.get_flags() & SDL_SRCALPHA, native.sdl_surface(picture).format.contents.alpha
    )
    copy.get_buffer().write(picture.get_buffer().raw, 0)
    return copy


def zoomed(surface, x_factor, y_factor):
    return _transformed(_zoom(native.surface_address(surface), x_factor, y_factor, 0))


def rotozoomed(surface, angle, factor):
    return _transformed(_rotozoom(native.surface_address(surface), angle, factor, 0))


def converted(surface, like, flags):
    """A copy in the pixel format of the Surface `like`."""
    record = native.sdl_surface(like)
    if not masks_of(like)[3]:
        # SDL 1.2 keeps these anyway, SDL 2 only where it is asked.
        flags |= surface.get_flags() & (pygame.SRCCOLORKEY | SDL_SRCALPHA)
    return _wrapped(
        _convert(native.surface_address(surface), ctypes.addressof(record.format.contents), flags)
    )


def display_format_alpha(surface):
    return _wrapped(_display_format_alpha(native.surface_address(surface)))


def created(width, height, bits, masks, flags=0):
    return _wrapped(_create(flags, width, height, bits, *masks))


def set_alpha(surface, flags, alpha):
    assert _set_alpha(native.surface_address(surface), flags, alpha) == 0


def upper_blit(source, target, x, y):
    """Blits the whole source; (x, y) of the rectangle afterwards, which SDL clips."""
    rect = Rect(x, y)
    _upper_blit(native.surface_address(source), None, native.surface_address(target), rect)
    return rect.x, rect.y


def masks_of(surface):
    pixel_format = native.sdl_surface(surface).format.contents
    return (pixel_format.Rmask, pixel_format.Gmask, pixel_format.Bmask, pixel_format.Amask)
