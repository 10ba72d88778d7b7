"""Surfaces of every kind that occurs, down to their bytes."""

import ctypes

import numpy
import pygame
import pytest

from support import native, sdl
from support.pictures import put_words, random_words

# Red, green, blue and alpha masks.
XRGB = (0xFF0000, 0xFF00, 0xFF, 0)
ARGB = (0xFF0000, 0xFF00, 0xFF, 0xFF000000)
ABGR = (0xFF, 0xFF00, 0xFF0000, 0xFF000000)
RGBA = (0xFF000000, 0xFF0000, 0xFF00, 0xFF)
ARGB_MIDDLE = (0xFF000000, 0xFF, 0xFF00, 0xFF0000)  # alpha in the third byte
ALL_MASKS = (XRGB, ARGB, ABGR, RGBA, ARGB_MIDDLE)

_create_arguments = [ctypes.c_void_p] + [ctypes.c_int] * 4 + [ctypes.c_uint32] * 4
create_surface_from = native.function(
    "SDL_CreateRGBSurfaceFrom", ctypes.c_void_p, *_create_arguments
)
free_surface = native.function("SDL_FreeSurface", None, ctypes.c_void_p)
_wrap = native.function("PySurface_FromSurface", ctypes.c_void_p, ctypes.c_void_p)
_libc = ctypes.CDLL(None)
# What surfaces point to that do not hold it. Made once of each kind, as they may live on.
_pixels = {}  # number of bytes -> zeros
_targets = {}  # bits -> Surface

_UNREADABLE = 0x10  # on a page that no process has


def _give_masks(address, masks):
    """Has the record of a 32-bit surface say that its pixels have these masks."""
    form = native.Surface.from_address(address).format.contents
    for channel, mask in zip("RGBA", masks):
        bits = bin(mask)[2:]
        shift = len(bits) - len(bits.rstrip("0")) if mask else 0
        setattr(form, channel + "mask", mask)
        setattr(form, channel + "shift", shift)
        setattr(form, channel + "loss", 8 - bits.count("1"))


def make_surface_from(memory, width, height, pitch, masks):
    """Address of a 32-bit SDL surface around memory."""
    address = create_surface_from(memory, width, height, 32, pitch, *masks)
    if not address and sdl.is_layer():
        # SDL 2 knows few formats. larkspur reads nothing but the record, so that is made up here.
        address = create_surface_from(
            memory, width, height, 32, pitch, *(ARGB if masks[3] else XRGB)
        )
        _give_masks(address, masks)
    assert address
    return address


def surface_of(width, height, masks=XRGB, seed=1):
    """A 32-bit pygame Surface of random words."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA if masks[3] else 0, 32, masks)
    if surface.get_masks() != masks:  # unknown to SDL 2, see above
        assert sdl.is_layer()
        _give_masks(native.surface_address(surface), masks)
    put_words(surface, random_words(width, height, seed))
    return surface


def long_surface(size, bits):
    """A black pygame Surface of any number of columns, of which SDL itself gives one 16383 at most.
    Others of its size have the same pixels."""
    pitch = (size[0] * ((bits + 7) // 8) + 3) // 4 * 4
    memory = _pixels.setdefault(pitch * size[1], numpy.zeros(pitch * size[1], numpy.uint8))
    address = create_surface_from(memory.ctypes.data, size[0], size[1], bits, pitch, 0, 0, 0, 0)
    if not address and sdl.is_layer():
        # A layer over SDL 2 takes none either, so it gets a record that says otherwise.
        address = create_surface_from(memory.ctypes.data, 1, size[1], bits, pitch, 0, 0, 0, 0)
        native.Surface.from_address(address).w = size[0]
    return native.new_reference(_wrap(address))


def encode(surface):
    """Has SDL run-length encode a 32-bit pygame Surface, 0x010203 being its colour key from now
    on: it has no pixels until it is locked."""
    surface.set_colorkey(0x010203, pygame.RLEACCEL)
    pygame.Surface(surface.get_size(), 0, 32, XRGB).blit(surface, (0, 0))
    assert_encoded(surface)


def encode_by_alpha(surface):
    """Has SDL run-length encode a 32-bit pygame Surface by the alpha of its pixels, for a target
    that is gone."""
    surface.set_alpha(255, pygame.RLEACCEL)
    pygame.Surface(surface.get_size(), 0, 32, XRGB).blit(surface, (0, 0))
    forget_target(surface)
    assert_encoded(surface)


def forget_target(surface):
    """Whoever looks at the target of a surface's last blit, which is gone, ends the process: SDL
    1.2 remembers where it was, and its memory may serve others or have been returned."""
    if not sdl.is_layer():
        target = ctypes.c_void_p.from_address(native.sdl_surface(surface).map)
        if target.value is not None:
            target.value = _UNREADABLE


def locked_encoded_surface(bits=32, alpha=False):
    """A surface that was encoded, by colour key or alpha, and is locked since: decoded again, it
    still says that it is encoded."""
    surface = pygame.Surface((8, 6), pygame.SRCALPHA if alpha else 0, bits)
    if alpha:
        surface.set_alpha(100, pygame.RLEACCEL)
    else:
        surface.set_colorkey(0x1F, pygame.RLEACCEL)
    if bits not in _targets:
        _targets[bits] = pygame.Surface((8, 6), 0, bits)
    _targets[bits].blit(surface, (0, 0))  # for which SDL encodes it anew when it is unlocked
    surface.lock()
    return surface


def set_key_outside_palette(surface, key):
    """Gives an 8-bit surface a colour key that is no place in its palette; returns whether SDL took
    it. SDL 1.2 takes every one, a layer over SDL 2 refuses it and changes nothing."""
    if not sdl.is_layer():
        surface.set_colorkey(key)
        return True
    with pytest.raises(pygame.error):
        surface.set_colorkey(key)
    return False


def assert_encoded(surface):
    """SDL 1.2 takes the pixels of a surface away when it encodes it. SDL 2, if it encodes at all,
    hides that behind the layer."""
    assert (native.sdl_surface(surface).pixels is None) is not sdl.is_layer()


def encoded_surface(width, height, seed=1):
    """A pygame Surface of random opaque pixels, every third of them the colour key, that SDL has
    run-length encoded."""
    surface = pygame.Surface((width, height), 0, 32, XRGB)
    pixels = random_words(width, height, seed) & 0xFFFFFF
    pixels.reshape(-1)[::3] = 0x010203
    put_words(surface, pixels)
    encode(surface)
    return surface


def buffer_of(surface):
    """A copy of a pygame Surface's whole buffer, pitch * height bytes, as uint8."""
    record = native.sdl_surface(surface)
    return numpy.frombuffer(ctypes.string_at(record.pixels, record.pitch * record.h), numpy.uint8)


class ForeignSurface(object):
    """A 32-bit SDL surface around memory of ours, as a part of another surface is: rows `pitch`
    bytes apart, guard bytes before and behind, everything random at first.

    address     of the SDL surface
    memory      all bytes, uint8; those of pixel (x, y) begin at start + y * pitch + 4 * x
    """

    GUARD_BYTES = 256

    def __init__(self, width, height, pitch, masks=XRGB, offset=0, seed=1):
        self.width, self.height, self.pitch = width, height, pitch
        self.start = self.GUARD_BYTES + offset
        self.memory = (
            numpy.random.RandomState(seed)
            .randint(0, 256, self.start + height * pitch + self.GUARD_BYTES)
            .astype(numpy.uint8)
        )
        self.address = make_surface_from(
            self.memory.ctypes.data + self.start, width, height, pitch, masks
        )

    def __del__(self):
        free_surface(self.address)

    def end(self):
        """Index of the first byte behind the last pixel."""
        if not self.width or not self.height:
            return self.start
        return self.start + (self.height - 1) * self.pitch + 4 * self.width


def assert_same_bytes(actual, expected):
    differing = numpy.nonzero(actual != expected)[0]
    assert len(actual) == len(expected)
    assert not len(differing), "%d bytes differ, the first at %d: %d, expected %d" % (
        len(differing),
        differing[0],
        actual[differing[0]],
        expected[differing[0]],
    )


def printed(capfd):
    """What was written to standard output and error since the last call, native writes too."""
    # Not all streams at once: that would wait for one that another thread reads from.
    for name in ("stdout", "stderr"):
        _libc.fflush(ctypes.c_void_p.in_dll(_libc, name))
    return capfd.readouterr()
