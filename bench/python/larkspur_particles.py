"""Particles by larkspur and by Python code: WAYS, job -> function of a size, which returns a
dictionary of ways by their names.
"""

from __future__ import division

import ctypes
import sys

import host
import larkspur
import pictures
import pygame
from pictures import surface_of
from pygame_ways import Ageing, ClassFrames, LeanFrames
from ways import build_path, calling, drawing

LONG_LIFE = 2**30
render = larkspur.CParticle_dec_ttl_and_render


def make_type(shape, life, **settings):
    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, shape)
    larkspur.part_type_life(kind, life, life)
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(kind, *arguments)
    return kind


def particle(size, x=100, blend=0, **settings):
    """One whose picture has this size, before it is turned, and its screen."""
    screen = host.screen((640, 480))
    shape = pictures.soft_disc(size[0] // (2 if settings else 1))
    settings.setdefault("scale", (2, 2) if settings else (1, 1))
    kind = make_type(shape, LONG_LIFE, blend=(blend,), **settings)
    return larkspur.CParticle_new(kind, x, 100), screen, kind


def empty_calls():
    sys.path.append(build_path("bench", "particles"))
    import empty_calls

    return empty_calls


def blits(size, flag, name):
    screen, shape = surface_of((640, 480)), pictures.soft_disc(size[0])
    place = 100 - size[0] // 2, 100 - size[1] // 2
    if flag:
        return {name: drawing(screen, screen.blit, shape, place, None, flag)}
    return {name: drawing(screen, screen.blit, shape, place)}


def drawn_from_cache(size):
    found, _, _ = particle(size, color3=Ageing.COLOURS)
    return dict(blits(size, 0, "Surface.blit()"), larkspur=calling(render, found, 0, 0))


TURNED = {"color3": Ageing.COLOURS, "orientation": (30, 30, 0, 0, 0)}


def turned_from_cache(size):
    found, screen, _ = particle(size, **TURNED)
    return {"larkspur": drawing(screen, render, found, 0, 0)}


def outside(size):
    found, _, _ = particle(size, x=-1000, color3=Ageing.COLOURS)
    return {
        "larkspur": calling(render, found, 0, 0),
        "call with 7 ints": calling(empty_calls().seven_ints, 1, 2, 3, 4, 5, 6, 7),
    }


def added(size):
    found, _, _ = particle(size, blend=1)
    name = "Surface.blit() with BLEND_ADD"
    return dict(blits(size, pygame.BLEND_ADD, name), larkspur=calling(render, found, 0, 0))


def steps(size):
    found, _, _ = particle(size)
    return {
        "larkspur": calling(larkspur.CParticle_step, found),
        "call with an object": calling(empty_calls().one_object, found),
    }


def made_anew(**settings):
    def ways(size):
        found, screen, kind = particle(size, **settings)

        def draw():
            larkspur.CParticle_type_cache_clear(kind)
            render(found, 0, 0)

        return {"larkspur": drawing(screen, draw)}

    return ways


# ---- frames


class Frames(object):
    """The particles of Ageing."""

    def __init__(self):
        self.kind = make_type(
            pictures.soft_disc(8),
            Ageing.LIFE,
            scale=(2, 2),
            color3=Ageing.COLOURS,
            alpha3=Ageing.ALPHAS,
            speed=(1, 1, 0, 0),
        )
        self.places = Ageing.births()
        self.living = [self.born(i) for i in range(Ageing.COUNT)]
        for i, one in enumerate(self.living):
            for _ in range(i % Ageing.LIFE):
                larkspur.CParticle_step(one)

    def born(self, i):
        return larkspur.CParticle_new(self.kind, *self.places[i])

    def frame(self):
        living = self.living
        for i, one in enumerate(living):
            if render(one, 0, 0) <= 0:
                living[i] = self.born(i)

    def pictures(self):
        """Key -> picture of every age, as larkspur made them."""
        one = self.born(0)
        while render(one, 0, 0) > 0:
            pass
        as_void_ptr = ctypes.pythonapi.PyCObject_AsVoidPtr
        as_void_ptr.argtypes, as_void_ptr.restype = [ctypes.py_object], ctypes.c_void_p
        cache_field = as_void_ptr(self.kind) + 168  # the last field of the public record
        return dict(
            ctypes.cast(ctypes.c_void_p.from_address(cache_field).value, ctypes.py_object).value
        )


def frames_of_particles(kind, name):
    def ways(_):
        twin, screen = surface_of(Ageing.DISPLAY), host.screen(Ageing.DISPLAY)
        own = Frames()
        theirs = kind(twin, own.pictures())
        screen.fill((0, 0, 0))
        return {
            "larkspur": drawing(screen, own.frame),
            name: drawing(twin, theirs.frame_by_blit),
        }

    return ways


WAYS = {
    "particle drawn from its cache": drawn_from_cache,
    "particle drawn from its cache, turned": turned_from_cache,
    "particle outside of the display": outside,
    "particle added": added,
    "CParticle_step()": steps,
    "particle, picture made anew": made_anew(color3=Ageing.COLOURS),
    "particle, picture made anew, turned": made_anew(**TURNED),
    "5,000 particles, against a class": frames_of_particles(ClassFrames, "pygame"),
    "5,000 particles, against bare lists": frames_of_particles(LeanFrames, "pygame"),
}
