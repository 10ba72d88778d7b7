"""SDL's and SDL_gfx's own operations on pygame Surfaces, to compose expected pictures from."""
import ctypes

from support import native
from support.native import Rect

SDL_SRCALPHA = 0x10000

_pointer, _integer, _double = ctypes.c_void_p, ctypes.c_int, ctypes.c_double
_zoom = native.function("zoomSurface", _pointer, _pointer, _double, _double, _integer)
_rotozoom = native.function("rotozoomSurface", _pointer, _pointer, _double, _double, _integer)
_convert = native.function("SDL_ConvertSurface", _pointer, _pointer, _pointer, ctypes.c_uint32)
_display_format_alpha = native.function("SDL_DisplayFormatAlpha", _pointer, _pointer)
_create = native.function("SDL_CreateRGBSurface", _pointer, ctypes.c_uint32,
                          *[_integer] * 3 + [ctypes.c_uint32] * 4)
_set_alpha = native.function("SDL_SetAlpha", _integer, _pointer, ctypes.c_uint32, ctypes.c_uint8)
_upper_blit = native.function("SDL_UpperBlit", _integer, _pointer, _pointer, _pointer,
                              ctypes.POINTER(Rect))
_set_clip_rect = native.function("SDL_SetClipRect", _integer, _pointer, _pointer)
_wrap = native.function("PySurface_FromSurface", _pointer, _pointer)


def _wrapped(address):
    return native.new_reference(_wrap(address)) if address else None


def _transformed(address):
    # SDL_gfx leaves the clip rectangle two rows taller than the picture.
    if address:
        _set_clip_rect(address, None)
    return _wrapped(address)


def zoomed(surface, x_factor, y_factor):
    return _transformed(_zoom(native.surface_address(surface), x_factor, y_factor, 0))


def rotozoomed(surface, angle, factor):
    return _transformed(_rotozoom(native.surface_address(surface), angle, factor, 0))


def converted(surface, like, flags):
    """A copy in the pixel format of the Surface `like`."""
    record = native.sdl_surface(like)
    return _wrapped(_convert(native.surface_address(surface),
                             ctypes.addressof(record.format.contents), flags))


def display_format_alpha(surface):
    return _wrapped(_display_format_alpha(native.surface_address(surface)))


def created(width, height, bits, masks):
    return _wrapped(_create(0, width, height, bits, *masks))


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
