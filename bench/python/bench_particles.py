"""How fast particles are stepped and drawn: tables on standard output.

    python bench/python/bench_particles.py [--rounds N]

needs the built module on PYTHONPATH and the build directory (with benches) in LARKSPUR_BUILD_DIR;
script/bench particles sees to both. First single calls, with pictures of 16 x 16 pixels with alpha:
against Surface.blit and against functions that only parse their arguments. Then frames in which
every particle is stepped, drawn in the colour and alpha of its age, and born again when its life is
over: by larkspur, by a plain Python class with a dictionary of pictures, and by the leanest Python
that draws the same. All three must draw the same picture. Ratios are of times taken in turns within
one process; each is a median with its quartiles.
"""

from __future__ import division, print_function

import argparse
import ctypes
import math
import os
import random
import sys
import types

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")

for host_module in ("gm6", "gmapi"):
    sys.modules[host_module] = types.ModuleType(host_module)

import larkspur  # noqa: E402
import measuring  # noqa: E402
import pygame  # noqa: E402

DISPLAY = (640, 480)
LIFE = 60
CALLS = 1000
FRAME_PARTICLES = 5000
COUNTS = (100, 1000, 5000, 20000, 50000)
COLOURS = (0xFFFFFF, 0x40A0F0, 0x2020C0)
ALPHAS = (1.0, 0.8, 0.1)


def load_empty_calls():
    directory = os.environ.get("LARKSPUR_BUILD_DIR")
    sys.path.append(os.path.join(directory or "", "bench", "particles"))
    try:
        import empty_calls
    except ImportError:
        sys.exit(
            "empty_calls.so is not there: set LARKSPUR_BUILD_DIR, and build with "
            "-DLARKSPUR_BENCH=ON"
        )
    return empty_calls


def soft_disc(size):
    disc = pygame.Surface((size, size), pygame.SRCALPHA, 32)
    middle = (size - 1) / 2
    for x in range(size):
        for y in range(size):
            distance = math.hypot(x - middle, y - middle) / (size / 2)
            disc.set_at((x, y), (255, 255, 255, int(255 * max(0, 1 - distance))))
    return disc


def make_type(shape, life, **settings):
    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, shape)
    larkspur.part_type_life(kind, life, life)
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(kind, *arguments)
    return kind


# ---- single calls


def repeated(function, *arguments):
    """An action of CALLS calls."""
    text = "def action():\n for _ in calls: function(%s)" % ", ".join(
        "a%d" % i for i in range(len(arguments))
    )
    names = dict(("a%d" % i, argument) for i, argument in enumerate(arguments))
    # Globals would cost more than the locals that a game's loop uses.
    defaults = ", ".join("%s=%s" % (name, name) for name in ["function", "calls"] + sorted(names))
    scope = dict(names, function=function, calls=range(CALLS))
    exec(text.replace("action()", "action(%s)" % defaults), scope)
    return scope["action"]


def single_calls(screen, rounds):
    empty = load_empty_calls()
    render, shape = larkspur.CParticle_dec_ttl_and_render, soft_disc(16)
    life = 2**30

    def particle(x, blend=0, **settings):
        kind = make_type(
            soft_disc(8) if "scale" in settings else shape, life, blend=(blend,), **settings
        )
        return larkspur.CParticle_new(kind, x, 100)

    found = particle(100, scale=(2, 2), color3=COLOURS)
    place = (92, 92)
    step, one, seven = larkspur.CParticle_step, empty.one_object, empty.seven_ints
    actions = {
        "hit": repeated(render, found, 0, 0),
        "blit": repeated(screen.blit, shape, place),
        "hit without blit": repeated(render, particle(-1000, scale=(2, 2)), 0, 0),
        "seven ints": repeated(seven, 1, 2, 3, 4, 5, 6, 7),
        "additive": repeated(render, particle(100, blend=1), 0, 0),
        "blit with BLEND_ADD": repeated(screen.blit, shape, place, None, pygame.BLEND_ADD),
        "step": repeated(step, found),
        "one object": repeated(one, found),
    }
    times = measuring.times_in_turns(actions, rounds)
    print("One call, nanoseconds")
    for name in (
        "hit",
        "blit",
        "hit without blit",
        "seven ints",
        "additive",
        "blit with BLEND_ADD",
        "step",
        "one object",
    ):
        nanoseconds = [seconds / CALLS * 1e9 for seconds in measuring.quartiles(times[name])]
        print("  %-38s %s" % (name, measuring.as_text(nanoseconds, "%.0f")))
    for title, above, below, wanted in [
        ("drawing, times one Surface.blit", "hit", "blit", "at most 1.15"),
        ("without its blit, times an empty call", "hit without blit", "seven ints", "at most 1.25"),
        (
            "additive, times faster than BLEND_ADD",
            "blit with BLEND_ADD",
            "additive",
            "at least 7.5",
        ),
        ("step, times an empty call", "step", "one object", "at most 1.30"),
    ]:
        print(
            "  %-38s %s, wanted: %s"
            % (title, measuring.as_text(measuring.ratios(times[above], times[below])), wanted)
        )


# ---- frames


def places(count):
    source = random.Random(count)
    return [
        (source.randrange(10, DISPLAY[0] - 10), source.randrange(10, DISPLAY[1] - LIFE - 10))
        for _ in range(count)
    ]


class LarkspurFrames(object):
    """Particles of a type that falls by a pixel per step; their ages are spread evenly."""

    def __init__(self, count):
        self.kind = make_type(
            soft_disc(8), LIFE, scale=(2, 2), color3=COLOURS, alpha3=ALPHAS, speed=(1, 1, 0, 0)
        )
        self.places = places(count)
        self.living = [self.born(i) for i in range(count)]
        for i, particle in enumerate(self.living):
            for _ in range(i % LIFE):
                larkspur.CParticle_step(particle)

    def born(self, i):
        return larkspur.CParticle_new(self.kind, *self.places[i])

    def frame(self):
        render, living = larkspur.CParticle_dec_ttl_and_render, self.living
        for i, particle in enumerate(living):
            if render(particle, 0, 0) <= 0:
                living[i] = self.born(i)

    def pictures(self):
        """Key -> picture of every age, as larkspur made them."""
        particle = self.born(0)
        while larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) > 0:
            pass
        as_void_ptr = ctypes.pythonapi.PyCObject_AsVoidPtr
        as_void_ptr.argtypes, as_void_ptr.restype = [ctypes.py_object], ctypes.c_void_p
        cache_field = as_void_ptr(self.kind) + 168  # the last field of the public record
        return dict(
            ctypes.cast(ctypes.c_void_p.from_address(cache_field).value, ctypes.py_object).value
        )


def blend(first, second, share):
    weight = int(256 * share)
    return sum(
        ((first >> place & 255) * weight + (second >> place & 255) * (256 - weight) >> 8) << place
        for place in (0, 8, 16)
    )


class Particle(object):
    """A particle as one writes it in Python first."""

    def __init__(self, screen, pictures, shape_size, x, y):
        self.screen, self.pictures, self.shape_size = screen, pictures, shape_size
        self.x, self.y, self.vx, self.vy = x, y, 0.0, 1.0
        self.ttl = self.life = LIFE
        self.size, self.orientation = 1.0, 0.0
        self.xscale = self.yscale = 2.0
        self.orient_min = self.orient_max = 0.0

    def step(self):
        self.x += self.vx
        self.y += self.vy
        self.ttl -= 1
        self.orientation = max(self.orient_min, min(self.orient_max, self.orientation))
        return self.ttl

    def render(self, x_offset, y_offset):
        fraction = self.ttl / self.life
        if fraction > 0.5:
            share = 2 * (fraction - 0.5)
            colour = blend(COLOURS[0], COLOURS[1], share)
            alpha = share * ALPHAS[0] + (1 - share) * ALPHAS[1]
        else:
            share = 2 * fraction
            colour = blend(COLOURS[1], COLOURS[2], share)
            alpha = share * ALPHAS[1] + (1 - share) * ALPHAS[2]
        width = int(self.shape_size * self.size * self.xscale)
        height = int(self.shape_size * self.size * self.yscale)
        picture = self.pictures[
            width, height, colour, int(alpha * 255), int(self.orientation) & 0xFF0
        ]
        self.screen.blit(
            picture,
            (
                int(self.x + x_offset) - picture.get_width() // 2,
                int(self.y + y_offset) - picture.get_height() // 2,
            ),
        )


class PythonFrames(object):
    def __init__(self, screen, pictures, count):
        self.new = lambda i: Particle(screen, pictures, 8, *self.places[i])
        self.places = places(count)
        self.living = [self.new(i) for i in range(count)]
        for i, particle in enumerate(self.living):
            for _ in range(i % LIFE):
                particle.step()

    def frame(self):
        for i, particle in enumerate(self.living):
            if particle.step() > 0:
                particle.render(0, 0)
            else:
                self.living[i] = self.new(i)


class LeanFrames(object):
    """Lists instead of objects, and the picture of each age looked up once before."""

    def __init__(self, screen, picture_of_age, count):
        self.blit, self.pictures = screen.blit, picture_of_age
        self.places = [(x - 8, y - 8) for x, y in places(count)]
        self.living = [[x, y + i % LIFE, LIFE - i % LIFE] for i, (x, y) in enumerate(self.places)]

    def frame(self):
        blit, pictures, starts, living = self.blit, self.pictures, self.places, self.living
        for i, particle in enumerate(living):
            x, y, ttl = particle
            y += 1
            ttl -= 1
            if ttl:
                particle[1] = y
                particle[2] = ttl
                blit(pictures[ttl], (x, y))
            else:
                x, y = starts[i]
                living[i] = [x, y, LIFE]


def pictures_by_age(screen, pictures):
    """The picture that the plain Python class draws at each remaining life."""

    class Screen(object):
        @staticmethod
        def blit(picture, _):
            drawn.append(picture)

    drawn = [None]
    particle = Particle(Screen, pictures, 8, 0, 0)
    while particle.step() > 0:
        particle.render(0, 0)
    return drawn[:1] + drawn[:0:-1]


def frames(screen, rounds):
    own = LarkspurFrames(FRAME_PARTICLES)
    pictures = own.pictures()
    ways = {
        "larkspur": own,
        "plain Python": PythonFrames(screen, pictures, FRAME_PARTICLES),
        "leanest Python": LeanFrames(screen, pictures_by_age(screen, pictures), FRAME_PARTICLES),
    }
    for _ in range(LIFE + 1):
        drawn = set()
        for way in ways.values():
            screen.fill((0, 0, 0))
            way.frame()
            drawn.add(screen.get_buffer().raw)
        if len(drawn) != 1:
            sys.exit("the ways to draw the frame do not draw the same picture")
    times = measuring.times_in_turns(dict((name, way.frame) for name, way in ways.items()), rounds)
    print("A frame of %d particles" % FRAME_PARTICLES)
    for name in ("larkspur", "plain Python", "leanest Python"):
        milliseconds = [seconds * 1000 for seconds in measuring.quartiles(times[name])]
        print("  %-38s %s ms" % (name, measuring.as_text(milliseconds)))
    for name, wanted in (("plain Python", 6), ("leanest Python", 2)):
        print(
            "  %-38s %s, wanted: at least %d"
            % (
                "times faster than the " + name,
                measuring.as_text(measuring.ratios(times[name], times["larkspur"])),
                wanted,
            )
        )


def flatness(rounds):
    actions = dict((count, LarkspurFrames(count).frame) for count in COUNTS)
    times = measuring.times_in_turns(actions, rounds)
    print("Cost per particle, times the cost with %d" % FRAME_PARTICLES)
    for count in COUNTS:
        per_particle = [seconds / count for seconds in times[count]]
        reference = [seconds / FRAME_PARTICLES for seconds in times[FRAME_PARTICLES]]
        print(
            "  %-38d %s, wanted: 0.85 to 1.15"
            % (count, measuring.as_text(measuring.ratios(per_particle, reference)))
        )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--rounds", type=int, default=31, help="samples of each figure")
    options = parser.parse_args()

    pygame.display.init()
    screen = pygame.display.set_mode(DISPLAY, 0, 32)
    larkspur.set_SDL_screen(screen)
    single_calls(screen, options.rounds)
    frames(screen, options.rounds)
    flatness(options.rounds)


if __name__ == "__main__":
    main()
