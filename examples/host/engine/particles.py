"""Particle systems on larkspur's particles: emitters, built-in shapes, automatic drawing."""

import random

import gm6
import larkspur
import pygame

# Shapes made for this engine. Bright on black with no transparency: for additive types.
# Soft-edged with alpha: for ordinary ones.
(
    pt_shape_pixel,
    pt_shape_disk,
    pt_shape_flare,
    pt_shape_spark,
    pt_shape_smoke,
    pt_shape_snow,
    pt_shape_ember,
) = range(7)

ps_distr_linear, ps_distr_gaussian = 0, 1


class Emitter(object):
    """A place where particles appear: a rectangle of the room and how they spread over it."""

    def __init__(self):
        self.xmin = self.xmax = self.ymin = self.ymax = 0.0
        self.distribution = ps_distr_linear
        self.stream_type = None
        self.stream_number = 0.0  # per step; a fraction is carried on to the next step
        self.stream_size = None
        self._owed = 0.0

    def region(self, xmin, xmax, ymin, ymax, distribution=ps_distr_linear):
        self.xmin, self.xmax, self.ymin, self.ymax = xmin, xmax, ymin, ymax
        self.distribution = distribution

    def place(self):
        if self.distribution == ps_distr_linear:
            return random.uniform(self.xmin, self.xmax), random.uniform(self.ymin, self.ymax)
        return (_bell(self.xmin, self.xmax), _bell(self.ymin, self.ymax))

    def due(self):
        """How many particles this step of the stream brings."""
        self._owed += self.stream_number
        count = int(self._owed)
        self._owed -= count
        return count


def _bell(low, high):
    middle, spread = (low + high) / 2.0, (high - low) / 6.0
    return max(low, min(high, random.gauss(middle, spread))) if spread else middle


class py_ParticleSystem(object):
    """Particles that are stepped and drawn together, at one depth of the room.

    Drawing moves the particles on (one call does both), so a system is drawn at most once for
    each step. What is not drawn in a step is moved on by the next: step() sees to that.
    """

    def __init__(self, depth=0):
        self.depth = depth
        self.py_automatic_draw = 1
        self.particles = []
        self.emitters = []
        self.counter = larkspur.Beancounter()
        self._moved = True

    def count(self):
        """How many of the system's particles live."""
        return int(self.counter)

    def create(self, x, y, particle_type, number=1, size=None, color=0xFFFFFF):
        """Make particles at a point of the room.

        With a size, all have that size and the given colour instead of what their type says.
        """
        for _ in range(number):
            if size is None:
                particle = larkspur.CParticle_new(particle_type, x, y)
            else:
                particle = larkspur.CParticle_new_size_color(particle_type, x, y, size, color)
            larkspur.CParticle_attach_beancounter(particle, self.counter)
            self.particles.append(particle)

    def emitter(self):
        """A new emitter of this system."""
        emitter = Emitter()
        self.emitters.append(emitter)
        return emitter

    def burst(self, emitter, particle_type, number, size=None):
        """Let an emitter make a number of particles at once."""
        for _ in range(number):
            x, y = emitter.place()
            self.create(x, y, particle_type, 1, size)

    def stream(self, emitter, particle_type, number, size=None):
        """Let an emitter make a number of particles in every step from now on; 0 stops it."""
        emitter.stream_type = particle_type
        emitter.stream_number = number
        emitter.stream_size = size

    def step(self):
        """Let the streams flow, and move on what the last frame did not draw."""
        if not self._moved:
            self._move_undrawn()
        self._moved = False
        for emitter in self.emitters:
            if emitter.stream_number > 0:
                self.burst(emitter, emitter.stream_type, emitter.due(), emitter.stream_size)

    def _move_undrawn(self):
        move = larkspur.CParticle_step
        self.particles = [particle for particle in self.particles if move(particle) > 0]

    def py_RealDraw(self, xoffset, yoffset):
        """Move every particle on and draw it, (xoffset, yoffset) away from its room position."""
        render = larkspur.CParticle_dec_ttl_and_render
        self.particles = [
            particle for particle in self.particles if render(particle, xoffset, yoffset) > 0
        ]
        self._moved = True

    def Draw(self):
        """Draw in a room without views."""
        if self.py_automatic_draw:
            self.py_RealDraw(0, 0)

    def clear(self):
        """Drop all particles; the emitters stay."""
        self.particles = []


# --- Shapes --------------------------------------------------------------------------------------

_shapes = {}


def shape(number):
    """The surface of a built-in shape, made on first use; the display must be there."""
    if number not in _shapes:
        _shapes[number] = _SHAPE_MAKERS[number]()
    return _shapes[number]


def soft_disk(diameter, power, color=(255, 255, 255), light=False):
    """A round spot that fades to its rim; the higher the power, the smaller its bright middle.

    As light, it is that colour on black without transparency; else it is faded by its alpha.
    """
    surface = pygame.Surface((diameter, diameter), pygame.SRCALPHA, 32)
    middle = (diameter - 1) / 2.0
    for y in range(diameter):
        for x in range(diameter):
            distance = ((x - middle) ** 2 + (y - middle) ** 2) ** 0.5 / (diameter / 2.0)
            strength = max(0.0, 1.0 - distance) ** power
            if light:
                pixel = tuple(int(part * strength) for part in color) + (255,)
            else:
                pixel = tuple(color) + (int(255 * strength),)
            surface.set_at((x, y), pixel)
    return surface.convert(gm6.screen) if light else surface.convert_alpha()


def _spark():
    surface = pygame.Surface((11, 3), pygame.SRCALPHA, 32)
    for x in range(11):
        glow = 255 * (x + 1) // 11
        surface.set_at((x, 1), (glow, glow, glow, 255))
        surface.set_at((x, 0), (glow // 4, glow // 4, glow // 4, 255))
        surface.set_at((x, 2), (glow // 4, glow // 4, glow // 4, 255))
    return surface.convert_alpha()


def _pixel():
    surface = pygame.Surface((2, 2), pygame.SRCALPHA, 32)
    surface.fill((255, 255, 255, 255))
    return surface.convert_alpha()


_SHAPE_MAKERS = {
    pt_shape_pixel: _pixel,
    pt_shape_disk: lambda: soft_disk(9, 0.35),
    pt_shape_flare: lambda: soft_disk(20, 1.6, light=True),
    pt_shape_spark: _spark,
    pt_shape_smoke: lambda: soft_disk(32, 1.3),
    pt_shape_snow: lambda: soft_disk(5, 0.8),
    pt_shape_ember: lambda: soft_disk(5, 0.7, light=True),
}
