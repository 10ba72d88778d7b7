"""Particle types, particles and their steps, computed one rule at a time.

Fields are numpy.float32, sums of a random draw are made in Python's doubles and rounded once when
they are stored, and the random numbers come from an own generator with drand48's recurrence.
"""

import math

import numpy

from models import pixel_model

single = numpy.float32


class Drand48(object):
    """The POSIX generator: 48 bits, X' = X * 0x5DEECE66D + 0xB, and a draw is X' / 2 ** 48."""

    def __init__(self, seed):
        self.state = ((seed & 0xFFFFFFFF) << 16) + 0x330E
        self.draws = 0

    def __call__(self):
        self.state = (self.state * 0x5DEECE66D + 0xB) % 2**48
        self.draws += 1
        return self.state / float(2**48)


class TypeModel(object):
    """A particle type; the methods are the settings, by the names of the module's functions."""

    def __init__(self, white=0xFFFFFF):
        for name in (
            "size_range size_incr size_wiggle speed_min speed_max speed_range speed_incr "
            "speed_wiggle dir_min dir_max dir_range dir_incr dir_wiggle gravity_amount "
            "gravity_dir orient_min orient_max orient_incr orient_wiggle "
            "orient_relative"
        ).split():
            setattr(self, name, single(0))
        for name in (
            "size_min size_max xscale yscale alpha_start alpha_half alpha_end reserved_float"
        ).split():
            setattr(self, name, single(1))
        self.blend = self.animate = self.stretch = self.reserved_int = self.life_range = 0
        self.life_min = self.life_max = 30
        self.color1 = self.color2 = self.color3 = white

    def part_type_size(self, low, high, incr, wiggle):
        self.size_min, self.size_max = single(low), single(high)
        self.size_range = self.size_max - self.size_min
        self.size_incr = single(incr) * self.size_range
        self.size_wiggle = single(wiggle) * self.size_range

    def part_type_scale(self, xscale, yscale):
        self.xscale, self.yscale = single(xscale), single(yscale)

    def part_type_orientation(self, low, high, incr, wiggle, relative):
        self.orient_min, self.orient_max = single(low), single(high)
        self.orient_incr, self.orient_wiggle = single(incr), single(wiggle)
        self.orient_relative = single(to_int(single(relative)))

    def part_type_life(self, low, high):
        self.life_min, self.life_max = to_int(single(low)), to_int(single(high))
        self.life_range = signed(self.life_max - self.life_min, 32)

    def part_type_gravity(self, amount, direction):
        self.gravity_amount, self.gravity_dir = single(amount), single(direction)

    def part_type_direction(self, low, high, incr, wiggle):
        self.dir_min, self.dir_max = single(low), single(high)
        self.dir_range = self.dir_max - self.dir_min
        self.dir_incr, self.dir_wiggle = single(incr), single(wiggle)

    def part_type_color3(self, first, second, third):
        self.color1, self.color2, self.color3 = first, second, third

    def part_type_blend(self, blend):
        self.blend = to_int(single(blend))

    def part_type_alpha3(self, start, half, end):
        self.alpha_start, self.alpha_half = single(start), single(half)
        self.alpha_end = single(end)

    def part_type_alpha2(self, start, end):
        self.alpha_start, self.alpha_end = single(start), single(end)
        self.alpha_half = (self.alpha_start + self.alpha_end) * single(0.5)

    def part_type_speed(self, low, high, incr, wiggle):
        self.speed_min, self.speed_max = single(low), single(high)
        self.speed_range = self.speed_max - self.speed_min
        self.speed_incr, self.speed_wiggle = single(incr), single(wiggle)


def _between(low, extent, random):
    return float(low) + random() * float(extent)


def _wiggled(value, amplitude, random):
    width = float(amplitude)
    return single(float(value) + (random() * (2 * width) - width))


class ParticleModel(object):
    """A particle of a TypeModel; `random` is called for each draw, in the fixed order."""

    def __init__(self, kind, x, y, random, size=None, color=None):
        self.x, self.y = single(x), single(y)
        self.direction = single(_between(kind.dir_min, kind.dir_range, random))
        self.speed = single(_between(kind.speed_min, kind.speed_range, random))
        if color is None:
            self.size = single(_between(kind.size_min, kind.size_range, random))
            self._draw_life(kind, random)
            self._draw_orientation(kind, random)
            self.color1, self.color2, self.color3 = kind.color1, kind.color2, kind.color3
        else:
            self.size = single(size)
            self._draw_orientation(kind, random)
            self._draw_life(kind, random)
            self.color1 = self.color2 = self.color3 = color
        self.reset_velocities()

    def _draw_life(self, kind, random):
        self.ttl = to_int(_between(kind.life_min, kind.life_range, random))
        self.life = single(self.ttl)

    def _draw_orientation(self, kind, random):
        extent = float(kind.orient_max) - float(kind.orient_min)
        self.orientation = single(_between(kind.orient_min, extent, random))

    def reset_velocities(self):
        angle = float(self.direction) * (math.pi / 180) + math.pi / 2
        # Python raises for an infinite angle, which has no direction.
        cosine, sine = (
            (float("nan"),) * 2 if math.isinf(angle) else (math.cos(angle), math.sin(angle))
        )
        self.vx, self.vy = single(float(self.speed) * cosine), single(float(self.speed) * sine)

    def step(self, kind, random):
        self.x, self.y = self.x + self.vx, self.y + self.vy
        self.ttl = signed(self.ttl - 1, 32)
        if kind.orient_wiggle != 0:
            self.orientation = _wiggled(self.orientation, kind.orient_wiggle, random)
        if kind.orient_incr != 0:
            self.orientation = self.orientation + kind.orient_incr
            if self.orientation < 0:
                self.orientation = self.orientation + single(360)
            elif self.orientation > 360:
                self.orientation = self.orientation - single(360)
        if self.orientation > kind.orient_max:
            self.orientation = kind.orient_max
        elif self.orientation < kind.orient_min:
            self.orientation = kind.orient_min
        changes_size = False
        if kind.size_wiggle != 0:
            self.size = _wiggled(self.size, kind.size_wiggle, random)
            changes_size = True
        if kind.size_incr != 0:
            self.size = self.size + kind.size_incr
            changes_size = True
        if changes_size:
            if self.size < kind.size_min:
                self.size = kind.size_min
            elif self.size > kind.size_max:
                self.size = kind.size_max
        return self.ttl


class Look(object):
    """Where and how a particle is drawn with a shape of some size: path (None when nothing is),
    width, height, colour, alpha, angle, and the cache's key (None without one)."""

    def __init__(self, particle, kind, shape_size, x_offset, y_offset):
        shape_width, shape_height = shape_size
        factors = ((single(shape_width), kind.xscale), (single(shape_height), kind.yscale))
        if kind.size_wiggle != 0:
            sizes = [shape * particle.size * scale for shape, scale in factors]
        else:
            sizes = [shape * scale * particle.size for shape, scale in factors]
        self.width, self.height = [to_int(size) for size in sizes]
        self.x = low_16_bits(to_int(single(x_offset) + particle.x))
        self.y = low_16_bits(to_int(single(y_offset) + particle.y))
        self._colour_and_alpha(particle, kind)

        scaled = kind.size_wiggle != 0 or (self.width, self.height) != tuple(shape_size)
        turn = to_int(particle.orientation)
        self.angle = 0
        key = (self.width, self.height, self.colour, self.alpha)
        if not self.width or not self.height:
            self.path, self.key = None, None
        elif scaled:
            self.path, self.angle = "scaled", turn & 0xFF0
            self.key = key + (self.angle,)
        elif self.alpha != 255:
            self.path, self.angle = "faded", turn
            self.key = key + (self.angle,)
        elif self.colour == 0xFFFFFF:
            self.path, self.key = "plain", None
        else:
            self.path, self.key = "tinted", key

    def _colour_and_alpha(self, particle, kind):
        fraction = single(particle.ttl) / single(particle.life)
        if fraction > single(0.5):
            u = single(2) * (fraction - single(0.5))
            colours = particle.color1, particle.color2
            alpha = u * kind.alpha_start + (single(1) - u) * kind.alpha_half
        else:
            u = single(2) * fraction
            colours = particle.color2, particle.color3
            alpha = u * kind.alpha_half + (single(1) - u) * kind.alpha_end
        self.colour = pixel_model.blend(
            colours[0] % 2**32, colours[1] % 2**32, to_int(256.0 * float(u))
        )
        self.alpha = signed(to_int(alpha * single(255), 64), 32)


def signed(number, bits):
    """The low bits of a number as a signed integer."""
    return (int(number) + 2 ** (bits - 1)) % 2**bits - 2 ** (bits - 1)


def low_16_bits(number):
    return signed(number, 16)


def to_int(number, bits=32):
    """Truncated; what does not fit is the smallest integer, as the processor has it."""
    value = float(number)
    if not -(2.0 ** (bits - 1)) <= value < 2.0 ** (bits - 1):
        return -(2 ** (bits - 1))
    return int(value)
