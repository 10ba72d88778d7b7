"""Pixel work by larkspur, SDL and SDL_gfx: WAYS, job -> function of a size, which returns a
dictionary of ways by their names.
"""

import ctypes

import host
import larkspur
import pictures
import pygame
import pygame_ways
from jobs import LARGE
from pictures import ARGB, RGBA, picture, surface_of
from ways import INTEGER, NUMBER, WORD, Way, drawing, drawing_with, making, native_loop

library = ctypes.PyDLL(larkspur.__file__)


def exported(name):
    return ctypes.cast(getattr(library, name), ctypes.c_void_p)


# ---- blits


def blits(make):
    def ways(size):
        source, target, twin = make(size), pictures.backdrop(size), pictures.backdrop(size)
        return {
            "larkspur": drawing_with(
                target,
                native_loop("time_blitting", exported("flagged_blit"), source, target, INTEGER(0)),
            ),
            "SDL: SDL_UpperBlit()": drawing_with(
                twin, native_loop("time_sdl_blitting", source, twin)
            ),
        }

    return ways


def zoomed_sprite(size):
    """The same pixels, flagged for the alpha of a surface that has none."""
    return larkspur.rotoscale(pictures.sprite(size), 1.0, 1.0, 0.0)


def tile_and_pass(size):
    """The next pass reads and writes what was drawn: the frame around is larger than it."""
    tile, target, twin = picture(size), pictures.backdrop(LARGE), pictures.backdrop(LARGE)
    return {
        "larkspur": drawing_with(
            target,
            native_loop(
                "time_blitting_and_pass", exported("flagged_blit"), tile, target, INTEGER(0)
            ),
        ),
        "SDL: SDL_UpperBlit()": drawing_with(
            twin, native_loop("time_sdl_blitting_and_pass", tile, twin)
        ),
    }


def additive_blits(size):
    source = pictures.noise(size)
    # A source that touches the right edge is not drawn.
    wider = size[0] + 1, size[1]
    target, twin, third = (pictures.backdrop(wider) for _ in range(3))
    return {
        "larkspur": drawing_with(
            target.subsurface((0, 0) + size),
            native_loop("time_blitting", exported("flagged_blit"), source, target, INTEGER(1)),
        ),
        "SDL_gfx: SDL_imageFilterAdd()": drawing_with(
            twin.subsurface((0, 0) + size), native_loop("time_gfx_adding", source, twin)
        ),
        "XOR of the same bytes": Way(native_loop("time_xor_blitting", source, third)),
    }


# ---- zooms, turns and flips


def smooth_zooms(factor):
    def ways(size):
        source = picture(size)
        return {
            "larkspur": making(larkspur.scale, source, factor, factor),
            "SDL_gfx: zoomSurface(), smooth": Way(
                native_loop("time_zoom", source, NUMBER(factor), NUMBER(factor), INTEGER(1))
            ),
        }

    return ways


def turns(angle, factor):
    def ways(size):
        source = picture(size)
        return {
            "larkspur": making(larkspur.rotoscale, source, factor, factor, angle),
            "SDL_gfx: rotozoomSurface()": Way(
                native_loop("time_rotozoom", source, NUMBER(angle), NUMBER(factor))
            ),
        }

    return ways


def scaled_sprite(size):
    """From a sprite of 100 pixels, one picture after the other under one key."""
    function = library.sprite_scalecache_add
    function.restype = ctypes.py_object
    function.argtypes = [ctypes.py_object] * 2 + [ctypes.c_int] * 8
    image = surface_of((100, 100), pygame.SRCALPHA, ARGB)
    image.blit(pictures.soft_sprite((100, 100)), (0, 0))
    sprite = larkspur.GMSprite()
    sprite.subimages = [image]
    white, opaque = 0xFFFFFF, 255
    arguments = (sprite, "key", 0) + size + (0, 0, white, opaque, 0)
    return {"larkspur": making(function, *arguments)}


def flips(name):
    return lambda size: {"larkspur": making(getattr(larkspur, name), picture(size))}


# ---- fills and gradients


def gm_colour(colour):
    return colour[0] | colour[1] << 8 | colour[2] << 16


TOP, BOTTOM = gm_colour(pygame_ways.TOP), gm_colour(pygame_ways.BOTTOM)


def painting(function, *arguments):
    """A function that paints a rectangle, here all of the target."""

    def ways(size):
        target = pictures.backdrop(size)
        return {"larkspur": drawing(target, function, target, 0, 0, *(size + arguments))}

    return ways


def opaque_gradients(*corners):
    def ways(size):
        target = host.screen(size)
        arguments = (0, 0) + size + corners + (1.0, 0)
        return {"larkspur": drawing(target, larkspur.fast_draw_rectangle_color, *arguments)}

    return ways


def buffers(loop, function, argument, *surface):
    """An exported function that works on all of a surface's memory."""

    def ways(size):
        target = picture(size, *surface)
        return {
            "larkspur": drawing_with(
                target, native_loop(loop, exported(function), target, argument)
            )
        }

    return ways


LAYERS = (TOP, BOTTOM, 0.2, 0x203040, 0.1, BOTTOM, TOP, 0.2, TOP, BOTTOM, 0.1, 0x402010, 0.1)

WAYS = {
    "flagged_blit(), opaque": blits(pictures.sprite),
    "flagged_blit(), opaque, made by rotoscale()": blits(zoomed_sprite),
    "flagged_blit(), opaque tile and the next pass": tile_and_pass,
    "flagged_blit(), colour key": blits(pygame_ways.keyed),
    "flagged_blit(), colour key, run-length encoded": blits(pygame_ways.encoded),
    "flagged_blit(), surface alpha": blits(pygame_ways.faded),
    "flagged_blit(), colour key and surface alpha": blits(pygame_ways.keyed_and_faded),
    "flagged_blit(), pixel alpha": blits(pictures.soft_sprite),
    "flagged_blit(), added": additive_blits,
    "scale(), 1.5 times": smooth_zooms(1.5),
    "scale(), halved": smooth_zooms(0.5),
    "rotoscale(), enlarged 2 times": turns(0.0, 2.0),
    "rotoscale(), halved": turns(0.0, 0.5),
    "rotoscale(), turned by 30 degrees": turns(30.0, 1.0),
    "rotoscale(), turned by 90 degrees": turns(90.0, 1.0),
    "sprite_scalecache_add()": scaled_sprite,
    "flip_h()": flips("flip_h"),
    "flip_vh()": flips("flip_vh"),
    "flip_v()": flips("flip_v"),
    "fill_translucent()": painting(larkspur.fill_translucent, 0x4080C8, 100),
    "fast_draw_gradient_v()": painting(larkspur.fast_draw_gradient_v, TOP, BOTTOM, 100),
    "fast_draw_gradients_vcvvc()": painting(larkspur.fast_draw_gradients_vcvvc, *LAYERS),
    "fast_draw_rectangle_color(), downwards": opaque_gradients(TOP, TOP, BOTTOM, BOTTOM),
    "fast_draw_rectangle_color(), across": opaque_gradients(TOP, BOTTOM, BOTTOM, TOP),
    "Translucentify(), alpha in the top byte": buffers(
        "time_fading", "Translucentify", ctypes.c_uint8(200), pygame.SRCALPHA, ARGB
    ),
    "Translucentify(), alpha in the low byte": buffers(
        "time_fading", "Translucentify", ctypes.c_uint8(200), pygame.SRCALPHA, RGBA
    ),
    "Tint_Surface()": buffers("time_tinting", "Tint_Surface", WORD(0xE0F0C0)),
    "satusub()": buffers("time_subtracting", "satusub", WORD(0x20202020), pygame.SRCALPHA, ARGB),
}
