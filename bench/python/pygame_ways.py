"""How a game written with pygame does the jobs: WAYS, job -> function of a size, which returns a
dictionary of ways by their names. The fastest of them counts.

Runs with pygame 1.9.6 beside larkspur, and with pygame-ce in a process of its own.
"""

from __future__ import division

import pictures
import pygame
from pictures import ARGB, KEY, RGBA, picture, surface_of
from ways import drawing, drawing_with, making, processor_time

# ---- blits


def blits(source, flags=0):
    """Drawing at (0, 0), one call each, or many in one where there is a call for it."""
    target, twin = pictures.backdrop(source.get_size()), pictures.backdrop(source.get_size())
    ways = {"blit()": drawing(target, target.blit, source, (0, 0), None, flags)}
    if hasattr(twin, "fblits"):

        def seconds(calls):
            sequence = [(source, (0, 0))] * calls
            begin = processor_time()
            twin.fblits(sequence, flags)
            return processor_time() - begin

        ways["fblits()"] = drawing_with(twin, seconds)
    return ways


def keyed(size):
    source = pictures.sprite(size)
    source.set_colorkey(KEY)
    return source


def encoded(size):
    """Asks SDL to keep runs of pixels."""
    source = pictures.sprite(size)
    source.set_colorkey(KEY, pygame.RLEACCEL)
    return source


def faded(size):
    source = picture(size)
    source.set_alpha(100)
    return source


def keyed_and_faded(size):
    source = keyed(size)
    source.set_alpha(100)
    return source


def blits_of(make):
    return lambda size: blits(make(size))


def additive_blits(size):
    source, ways = pictures.noise(size), {}
    # Nobody sees the fourth byte of the target.
    for name in ("BLEND_RGB_ADD", "BLEND_RGBA_ADD"):
        for how, way in blits(source, getattr(pygame, name)).items():
            ways[how + " with " + name] = way
    return ways


# ---- zooms, turns and flips: a new Surface each


def scaled(function, factor):
    def ways(size):
        wanted = [int(length * factor) for length in size]
        return {
            "transform.%s()" % function: making(
                getattr(pygame.transform, function), picture(size), wanted
            )
        }

    return ways


def turned(angle):
    return lambda size: {
        "transform.rotate()": making(pygame.transform.rotate, picture(size), angle)
    }


def smooth_sprite(size):
    """From a sprite of 100 pixels."""
    return {
        "transform.smoothscale()": making(
            pygame.transform.smoothscale, pictures.soft_sprite((100, 100)), size
        )
    }


def flipped(across, down):
    return lambda size: {
        "transform.flip()": making(pygame.transform.flip, picture(size), across, down)
    }


# ---- fills and gradients


def fills(size):
    surface = pictures.backdrop(size)
    cover = surface_of(size)
    cover.fill((64, 128, 200))
    cover.set_alpha(100)

    def multiply_and_add():
        surface.fill((155, 155, 155), None, pygame.BLEND_RGB_MULT)
        surface.fill((25, 50, 78), None, pygame.BLEND_RGB_ADD)

    ways = {"fill() with BLEND_RGB_MULT, then ADD": drawing(surface, multiply_and_add)}
    for how, way in blits(cover).items():
        ways[how + " of a kept translucent Surface"] = way
    return ways


TOP, BOTTOM = (32, 255, 64), (128, 16, 255)  # of every gradient


def mixed_colours(first, second, count, share=1.0):
    return [
        tuple(
            int((near * (count - i) + far * i) / count * share) for near, far in zip(first, second)
        )
        for i in range(count)
    ]


def line(colours, upright):
    """A Surface one pixel thick in the given colours."""
    thin = pygame.Surface((1, len(colours)) if upright else (len(colours), 1), 0, 32)
    for i, colour in enumerate(colours):
        thin.set_at((0, i) if upright else (i, 0), colour)
    return thin


def layers(size, gradients, constants, keep):
    """Ways to lay gradients (an opacity each) and colours over a picture, from the colours on; none
    needs what an earlier call left."""
    width, height = size
    surface, twin, third = (pictures.backdrop(size) for _ in range(3))
    cover = surface_of(size)
    column_colours = mixed_colours(TOP, BOTTOM, height)
    sums = mixed_colours(TOP, BOTTOM, height, 1 - keep / 256)
    across = [(0, y, width, 1) for y in range(height)]

    def stretch_and_blit():
        for opacity in gradients:
            pygame.transform.scale(line(column_colours, True), size, cover)
            cover.set_alpha(opacity)
            surface.blit(cover, (0, 0))
        for opacity in constants:
            cover.fill(TOP)
            cover.set_alpha(opacity)
            surface.blit(cover, (0, 0))

    def multiply_and_add_rows():
        third.fill((keep, keep, keep), None, pygame.BLEND_RGB_MULT)
        for place, colour in zip(across, sums):
            third.fill(colour, place, pygame.BLEND_RGB_ADD)

    def row_blits():
        strip = pygame.Surface((width, 1), 0, 32)
        for opacity in gradients:
            strip.set_alpha(opacity)
            for place, colour in zip(across, column_colours):
                strip.fill(colour)
                twin.blit(strip, place)
        for opacity in constants:
            cover.fill(TOP)
            cover.set_alpha(opacity)
            twin.blit(cover, (0, 0))

    return {
        "column stretched, blitted with set_alpha()": drawing(surface, stretch_and_blit),
        "fill() with BLEND_RGB_MULT, ADD by rows": drawing(third, multiply_and_add_rows),
        "row filled, blitted with set_alpha()": drawing(twin, row_blits),
    }


def opaque_gradients(upright):
    """The colours are worked out before."""

    def ways(size):
        width, height = size
        twin, third = pictures.backdrop(size), pictures.backdrop(size)
        colours = mixed_colours(TOP, BOTTOM, height if upright else width)
        places = [(0, i, width, 1) if upright else (i, 0, 1, height) for i in range(len(colours))]

        def fill_lines():
            for place, colour in zip(places, colours):
                twin.fill(colour, place)

        def stretch():
            pygame.transform.scale(line(colours, upright), size, third)

        return {
            "fill() by lines": drawing(twin, fill_lines),
            "line stretched": drawing(third, stretch),
        }

    return ways


def filled(colour, flag, *surface):
    """One fill() of a picture with a blend flag."""

    def ways(size):
        target = picture(size, *surface)
        return {
            "fill() with " + flag: drawing(target, target.fill, colour, None, getattr(pygame, flag))
        }

    return ways


# ---- frames


class Tiles(object):
    """A frame of tiles, each cut from a random place of a sheet."""

    DISPLAY, SIDE, COUNT = (800, 640), 16, 2000

    def __init__(self, colour_key):
        self.sheet = self.make_sheet(colour_key)
        columns, random = self.DISPLAY[0] // self.SIDE, pictures.Random(7).random
        # (x, y) on the display and in the sheet
        self.tiles = [
            (
                (i % columns * self.SIDE, i // columns * self.SIDE),
                (int(random() * 16) * self.SIDE, int(random() * 16) * self.SIDE),
            )
            for i in range(self.COUNT)
        ]

    def make_sheet(self, colour_key):
        """256 tiles, each of one colour: discs on the key, or squares where there is none."""
        side = self.SIDE
        sheet = surface_of((16 * side, 16 * side))
        for place in range(256):
            area = (place % 16 * side, place // 16 * side, side, side)
            sheet.fill((place, place * 7 % 256, place * 3 % 256), area)
            if colour_key:
                pictures.leave_disc(sheet.subsurface(area))
        if colour_key:
            sheet.set_colorkey(KEY)
        return sheet


def frames_of_tiles(colour_key):
    """For a game whose tiles stand still: what can be kept from frame to frame is."""

    def ways(_):
        frame, side = Tiles(colour_key), Tiles.SIDE
        screen = surface_of(Tiles.DISPLAY)
        cut = [(frame.sheet, to, start + (side, side)) for to, start in frame.tiles]
        alone = {start: frame.sheet.subsurface(start + (side, side)) for _, start in frame.tiles}
        whole = [(alone[start], to) for to, start in frame.tiles]

        def by_blit():
            blit = screen.blit
            for source, to, area in cut:
                blit(source, to, area)

        ways = {"blit()": drawing(screen, by_blit)}
        if hasattr(screen, "blits"):
            ways["blits()"] = drawing(screen, screen.blits, cut, False)
        if hasattr(screen, "fblits"):
            ways["fblits() of subsurfaces"] = drawing(screen, screen.fblits, whole)
        return ways

    return ways


def view_on_display(draw_background):
    """A view whose canvas lies in the display, so that nothing has to be copied there.

    draw_background: size -> name -> function that draws a background, scaled to it, on a canvas
    """

    def ways(size):
        screen, background = surface_of(size), picture([length // 2 for length in size])
        canvas = screen.subsurface(screen.get_rect())
        return {
            name: drawing(screen, draw, background, size, canvas)
            for name, draw in draw_background(size).items()
        }

    return ways


def scaled_and_blitted(size):
    """As an engine draws any number of backgrounds, anywhere."""
    smoothscale, kept = pygame.transform.smoothscale, surface_of(size)

    def draw(background, size, canvas):
        canvas.blit(smoothscale(background, size), (0, 0))

    def draw_by_kept(background, size, canvas):
        canvas.blit(smoothscale(background, size, kept), (0, 0))

    return {"smoothscale(), blit()": draw, "smoothscale() to a kept Surface, blit()": draw_by_kept}


def scaled_in_place(size):
    """The one background that covers all of the view, and no more than it."""
    return {"smoothscale() onto the display": pygame.transform.smoothscale}


class Ageing(object):
    """Particles that fall by a pixel per frame in the colour and alpha of their age, each a disc of
    16 pixels, and are born again when their life is over; their ages are spread evenly."""

    DISPLAY, LIFE, COUNT = (640, 480), 60, 5000
    COLOURS = (0xFFFFFF, 0x40A0F0, 0x2020C0)  # red is the lowest byte
    ALPHAS = (1.0, 0.8, 0.1)

    @classmethod
    def births(cls):
        random = pictures.Random(cls.COUNT).random
        width, height = cls.DISPLAY[0] - 20, cls.DISPLAY[1] - cls.LIFE - 20
        return [(10 + int(random() * width), 10 + int(random() * height)) for _ in range(cls.COUNT)]


def blend(first, second, share):
    weight = int(256 * share)
    return sum(
        ((first >> place & 255) * weight + (second >> place & 255) * (256 - weight) >> 8) << place
        for place in (0, 8, 16)
    )


class Particle(object):
    """A particle as one writes it in Python first."""

    def __init__(self, kept, shape_size, x, y):
        self.pictures, self.shape_size = kept, shape_size
        self.x, self.y, self.vx, self.vy = x, y, 0.0, 1.0
        self.ttl = self.life = Ageing.LIFE
        self.size, self.orientation = 1.0, 0.0
        self.xscale = self.yscale = 2.0
        self.orient_min = self.orient_max = 0.0

    def step(self):
        self.x += self.vx
        self.y += self.vy
        self.ttl -= 1
        self.orientation = max(self.orient_min, min(self.orient_max, self.orientation))
        return self.ttl

    def look(self):
        """Its picture and where to draw it."""
        fraction, colours, alphas = self.ttl / self.life, Ageing.COLOURS, Ageing.ALPHAS
        if fraction > 0.5:
            share = 2 * (fraction - 0.5)
            colour = blend(colours[0], colours[1], share)
            alpha = share * alphas[0] + (1 - share) * alphas[1]
        else:
            share = 2 * fraction
            colour = blend(colours[1], colours[2], share)
            alpha = share * alphas[1] + (1 - share) * alphas[2]
        width = int(self.shape_size * self.size * self.xscale)
        height = int(self.shape_size * self.size * self.yscale)
        kept = self.pictures[width, height, colour, int(alpha * 255), int(self.orientation) & 0xFF0]
        place = int(self.x) - kept.get_width() // 2, int(self.y) - kept.get_height() // 2
        return kept, place


class MadeOnce(dict):
    """Keeps the picture of each look once it was asked for."""

    def __missing__(self, key):
        width, height, colour, alpha, _ = key
        disc = pygame.transform.scale(pictures.soft_disc(8), (width, height))
        channels = colour & 255, colour >> 8 & 255, colour >> 16, alpha
        disc.fill(channels, None, pygame.BLEND_RGBA_MULT)
        self[key] = disc
        return disc


def single_particles(angle, anew):
    """A disc of twice its shape's size, turned, at (100, 100)."""

    def ways(size):
        screen, shape = surface_of((640, 480)), pictures.soft_disc(size[0] // 2)

        def look():
            return pygame.transform.rotate(pygame.transform.scale(shape, size), angle)

        kept = look()
        place = 100 - kept.get_width() // 2, 100 - kept.get_height() // 2
        if not anew:
            return {"blit()": drawing(screen, screen.blit, kept, place)}

        def make_and_blit():
            drawn = look() if angle else pygame.transform.scale(shape, size)
            screen.blit(drawn, place)

        return {"transform.scale(), rotate(), blit()": drawing(screen, make_and_blit)}

    return ways


class ClassFrames(object):
    """A frame of objects that do for each particle what larkspur does."""

    def __init__(self, screen, kept):
        self.screen, self.places = screen, Ageing.births()
        self.new = lambda i: Particle(kept, 8, *self.places[i])
        self.living = [self.new(i) for i in range(Ageing.COUNT)]
        for i, one in enumerate(self.living):
            for _ in range(i % Ageing.LIFE):
                one.step()

    def moved(self):
        """Steps all; what is to be drawn, one after the other."""
        for i, one in enumerate(self.living):
            if one.step() > 0:
                yield one.look()
            else:
                self.living[i] = self.new(i)

    def frame_by_blit(self):
        for kept, place in self.moved():
            self.screen.blit(kept, place)

    def frame_by_fblits(self):
        self.screen.fblits(self.moved())


class LeanFrames(object):
    """A frame of lists that hold nothing but what it needs; the picture of each age was looked up
    before."""

    def __init__(self, screen, kept):
        self.screen, self.pictures = screen, pictures_by_age(kept)
        self.places = [(x - 8, y - 8) for x, y in Ageing.births()]
        self.living = [
            [x, y + i % Ageing.LIFE, Ageing.LIFE - i % Ageing.LIFE]
            for i, (x, y) in enumerate(self.places)
        ]

    def frame_by_blit(self):
        blit, kept, starts, living = self.screen.blit, self.pictures, self.places, self.living
        for i, particle in enumerate(living):
            x, y, ttl = particle
            y += 1
            ttl -= 1
            if ttl:
                particle[1] = y
                particle[2] = ttl
                blit(kept[ttl], (x, y))
            else:
                x, y = starts[i]
                living[i] = [x, y, Ageing.LIFE]

    # The same once more: any call in between would make one of the two slower than it can be.
    def frame_by_fblits(self):
        drawn, kept, starts, living = [], self.pictures, self.places, self.living
        append = drawn.append
        for i, particle in enumerate(living):
            x, y, ttl = particle
            y += 1
            ttl -= 1
            if ttl:
                particle[1] = y
                particle[2] = ttl
                append((kept[ttl], (x, y)))
            else:
                x, y = starts[i]
                living[i] = [x, y, Ageing.LIFE]
        self.screen.fblits(drawn)


def pictures_by_age(kept):
    """The picture that Particle draws at each remaining life."""
    drawn = [None]
    one = Particle(kept, 8, 0, 0)
    while one.step() > 0:
        drawn.append(one.look()[0])
    return drawn[:1] + drawn[:0:-1]


def frames_of_particles(kind):
    def ways(_):
        found = {}
        for how in ("blit", "fblits"):
            screen = surface_of(Ageing.DISPLAY)
            if hasattr(screen, how):
                frames = kind(screen, MadeOnce())
                found[how + "()"] = drawing(screen, getattr(frames, "frame_by_" + how))
        return found

    return ways


WAYS = {
    "flagged_blit(), opaque": blits_of(pictures.sprite),
    "flagged_blit(), opaque, made by rotoscale()": blits_of(pictures.sprite),
    "flagged_blit(), colour key": blits_of(keyed),
    "flagged_blit(), colour key, run-length encoded": blits_of(encoded),
    "flagged_blit(), surface alpha": blits_of(faded),
    "flagged_blit(), colour key and surface alpha": blits_of(keyed_and_faded),
    "flagged_blit(), pixel alpha": blits_of(pictures.soft_sprite),
    "flagged_blit(), added": additive_blits,
    "scale(), 1.5 times": scaled("smoothscale", 1.5),
    "scale(), halved": scaled("smoothscale", 0.5),
    "rotoscale(), enlarged 2 times": scaled("scale", 2),
    "rotoscale(), halved": scaled("scale", 0.5),
    "rotoscale(), turned by 30 degrees": turned(30),
    "rotoscale(), turned by 90 degrees": turned(90),
    "sprite_scalecache_add()": smooth_sprite,
    "flip_h()": flipped(True, False),
    "flip_vh()": flipped(True, True),
    "flip_v()": flipped(False, True),
    "fill_translucent()": fills,
    "fast_draw_gradient_v()": lambda size: layers(size, [100], [], 155),
    "fast_draw_gradients_vcvvc()": lambda size: layers(size, [50, 50, 25], [25, 25], 106),
    "fast_draw_rectangle_color(), downwards": opaque_gradients(True),
    "fast_draw_rectangle_color(), across": opaque_gradients(False),
    "Translucentify(), alpha in the top byte": filled(
        (255, 255, 255, 200), "BLEND_RGBA_MULT", pygame.SRCALPHA, ARGB
    ),
    "Translucentify(), alpha in the low byte": filled(
        (255, 255, 255, 200), "BLEND_RGBA_MULT", pygame.SRCALPHA, RGBA
    ),
    "Tint_Surface()": filled((63, 15, 31), "BLEND_RGB_SUB"),
    "satusub()": filled((32, 32, 32, 32), "BLEND_RGBA_SUB", pygame.SRCALPHA, ARGB),
    "Room_Draw(), 2,000 opaque tiles": frames_of_tiles(False),
    "Room_Draw(), 2,000 colour-keyed tiles": frames_of_tiles(True),
    "Room_Draw(), a view with a scaled background": view_on_display(scaled_and_blitted),
    "Room_Draw(), against scaling onto the display": view_on_display(scaled_in_place),
    "particle drawn from its cache, turned": single_particles(30, anew=False),
    "particle, picture made anew": single_particles(0, anew=True),
    "particle, picture made anew, turned": single_particles(30, anew=True),
    "5,000 particles, against a class": frames_of_particles(ClassFrames),
    "5,000 particles, against bare lists": frames_of_particles(LeanFrames),
}
