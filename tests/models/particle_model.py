"""Particle types, particles and their steps, computed one rule at a time.

Fields are numpy.float32, sums of a random draw are made in Python's doubles and rounded once when
they are stored, and the random numbers come from an own generator with drand48's recurrence.
"""
import math

import numpy

single = numpy.float32


class Drand48(object):
    """The POSIX generator: 48 bits, X' = X * 0x5DEECE66D + 0xB, and a draw is X' / 2 ** 48."""

    def __init__(self, seed):
        self.state = ((seed & 0xFFFFFFFF) << 16) + 0x330E
        self.draws = 0

    def __call__(self):
        self.state = (self.state * 0x5DEECE66D + 0xB) % 2 ** 48
        self.draws += 1
        return self.state / float(2 ** 48)


class TypeModel(object):
    """A particle type; the methods are the settings, by the names of the module's functions."""

    def __init__(self, white=0xFFFFFF):
        for name in ("size_range size_incr size_wiggle speed_min speed_max speed_range speed_incr "
                     "speed_wiggle dir_min dir_max dir_range dir_incr dir_wiggle gravity_amount "
                     "gravity_dir orient_min orient_max orient_incr orient_wiggle "
                     "orient_relative").split():
            setattr(self, name, single(0))
        for name in ("size_min size_max xscale yscale alpha_start alpha_half alpha_end "
                     "reserved_float").split():
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
        self.orient_relative = single(int(relative))

    def part_type_life(self, low, high):
        self.life_min, self.life_max = int(single(low)), int(single(high))
        self.life_range = self.life_max - self.life_min

    def part_type_gravity(self, amount, direction):
        self.gravity_amount, self.gravity_dir = single(amount), single(direction)

    def part_type_direction(self, low, high, incr, wiggle):
        self.dir_min, self.dir_max = single(low), single(high)
        self.dir_range = self.dir_max - self.dir_min
        self.dir_incr, self.dir_wiggle = single(incr), single(wiggle)

    def part_type_color3(self, first, second, third):
        self.color1, self.color2, self.color3 = first, second, third

    def part_type_blend(self, blend):
        self.blend = int(single(blend))

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
        self.ttl = int(_between(kind.life_min, kind.life_range, random))
        self.life = single(self.ttl)

    def _draw_orientation(self, kind, random):
        extent = float(kind.orient_max) - float(kind.orient_min)
        self.orientation = single(_between(kind.orient_min, extent, random))

    def reset_velocities(self):
        angle = float(self.direction) * (math.pi / 180) + math.pi / 2
        self.vx = single(float(self.speed) * math.cos(angle))
        self.vy = single(float(self.speed) * math.sin(angle))

    def step(self, kind, random):
        self.x, self.y = self.x + self.vx, self.y + self.vy
        self.ttl -= 1
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
