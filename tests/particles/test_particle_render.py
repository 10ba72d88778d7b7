"""Drawing of particles: paths, keys, pictures and pixels, composed step by step by the side."""

import ctypes
import gc
import itertools
import resource
import sys

import larkspur
import numpy
import pygame
import pytest
from models import particle_model, pixel_model
from support import leaks, native, particles, pending, sdl
from support.pictures import assert_same_words, put_words, words
from support.surfaces import (
    ARGB,
    RGBA,
    XRGB,
    buffer_of,
    encoded_surface,
    locked_encoded_surface,
    printed,
    set_key_outside_palette,
    surface_of,
)

NAN, INFINITE = float("nan"), float("inf")
WHITE = 0xFFFFFF
CENTRE = (160, 120)

render_low = native.function(
    "particle_render_low",
    None,
    ctypes.POINTER(particles.ParticleRecord),
    ctypes.c_int,
    ctypes.c_int,
)
desired_alpha = native.function(
    "DesiredAlpha", ctypes.c_int32, ctypes.POINTER(particles.TypeRecord), ctypes.c_float
)


class Scene(object):
    """A particle type, the same as a model, and a screen on which the model is drawn.

    draw() draws a particle of the type on the display and, by composing single operations, on the
    own screen with an own cache; check() compares both.
    """

    def __init__(self, display, shape, **settings):
        self.display, self.shape = display, shape
        display.fill((40, 90, 10))
        self.screen = display.copy()
        self.handle, self.kind = larkspur.part_type_create(), particle_model.TypeModel()
        self.cache = {}
        if shape is not None:
            larkspur.part_type_shape(self.handle, shape)
        self.set(**settings)

    def set(self, **settings):
        for name, arguments in settings.items():
            values = arguments if isinstance(arguments, tuple) else (arguments,)
            getattr(larkspur, "part_type_" + name)(self.handle, *values)
            getattr(self.kind, "part_type_" + name)(*values)

    def particle(self, position=CENTRE, **fields):
        """A particle whose record has these values; by default a fresh one of 100 steps."""
        handle = larkspur.CParticle_new_size_color(self.handle, position[0], position[1], 1, WHITE)
        record = particles.particle_record(handle)
        record.ttl, record.life = 101, 101
        for name, value in fields.items():
            setattr(record, name, value)
        return handle

    def draw(self, particle, x_offset=0, y_offset=0):
        """One call; returns the model's look."""
        ttl = larkspur.CParticle_dec_ttl_and_render(particle, x_offset, y_offset)
        record = particles.particle_record(particle)
        assert ttl == record.ttl
        return self.draw_model(record, x_offset, y_offset)

    def draw_model(self, record, x_offset=0, y_offset=0):
        """Draws, on the own screen, what a particle of this record should look like."""
        model = ModelRecord(record)
        with numpy.errstate(all="ignore"):
            look = particle_model.Look(model, self.kind, self.shape.get_size(), x_offset, y_offset)
        if look.path == "plain":
            self.blit(self.shape, look)
        elif look.path == "tinted":
            if look.key in self.cache:
                self.blit(self.cache[look.key], look)
            else:
                picture = sdl.display_format_alpha(self.shape)
                apply_to_buffer(picture, pixel_model.tinted, look.colour)
                place = self.blit(picture, look)
                self.blit_at(picture, place)
                self.cache[look.key] = picture
        elif look.path is not None:
            if look.key not in self.cache:
                if look.path == "scaled" and len(self.cache) > 100:
                    self.cache.clear()
                picture = getattr(self, look.path)(look)
                if picture is None:
                    return look
                self.cache[look.key] = picture
            self.blit(self.cache[look.key], look)
        return look

    def scaled(self, look):
        picture = sdl.zoomed(
            self.shape,
            float(look.width) / self.shape.get_width(),
            float(look.height) / self.shape.get_height(),
        )
        if picture is None:
            return None
        if look.colour != WHITE:
            apply_to_buffer(picture, pixel_model.tinted, look.colour)
        if 0 <= look.alpha <= 254:
            if self.kind.blend:
                picture = sdl.converted(picture, self.screen, sdl.SDL_SRCALPHA)
            fade(picture, look.alpha, self.kind.blend)
        return sdl.rotozoomed(picture, look.angle, 1.0) if look.angle else picture

    def faded(self, look):
        picture = sdl.converted(self.shape, self.screen, sdl.SDL_SRCALPHA)
        if look.colour != WHITE:
            apply_to_buffer(picture, pixel_model.tinted, look.colour)
        fade(picture, look.alpha, self.kind.blend)
        return sdl.rotozoomed(picture, look.angle, 1.0) if look.angle else picture

    def blit(self, picture, look):
        width, height = picture.get_size()
        place = (
            particle_model.low_16_bits(look.x - width // 2),
            particle_model.low_16_bits(look.y - height // 2),
        )
        return self.blit_at(picture, place)

    def blit_at(self, picture, place):
        if self.kind.blend in (1, 128):
            put_words(self.screen, pixel_model.added(words(picture), words(self.screen), *place))
            return place
        return sdl.upper_blit(picture, self.screen, *place)

    def check(self):
        assert_same_words(words(self.display), words(self.screen), "particles")
        kept = particles.cache_of(self.handle)
        assert sorted(kept) == sorted(self.cache)
        for key in kept:
            assert type(kept[key]) is pygame.Surface
            assert all(type(number) is int for number in key)
            assert kept[key].get_clip() == kept[key].get_rect()
            assert kept[key].get_flags() == self.cache[key].get_flags()
            assert sdl.masks_of(kept[key]) == sdl.masks_of(self.cache[key])
            assert_same_words(words(kept[key]), words(self.cache[key]), "cached picture")

    def check_draw(self, particle, path, key, x_offset=0, y_offset=0):
        """Draws and compares; the path and the keys of the cache are given by hand."""
        look = self.draw(particle, x_offset, y_offset)
        self.check()
        assert look.path == path
        assert look.key == key
        if key is not None:
            assert key in particles.cache_of(self.handle)
        return look


class ModelRecord(object):
    """A particle's record in the model's types."""

    def __init__(self, record):
        for name, value in particles.values(record).items():
            setattr(self, name, particle_model.single(value) if isinstance(value, float) else value)


def apply_to_buffer(surface, change, value):
    """Puts change(bytes, value, masks) in place of a surface's whole buffer."""
    masks = sdl.masks_of(surface)
    result = change(buffer_of(surface), value, masks)
    record = native.sdl_surface(surface)
    ctypes.memmove(record.pixels, result.ctypes.data, len(result))


def fade(surface, alpha, blend):
    if blend:
        apply_to_buffer(
            surface, lambda buffer, value, _: pixel_model.subtracted(buffer, [value]), ~alpha & 255
        )
    else:
        apply_to_buffer(surface, pixel_model.faded, alpha & 255)


def soft_shape(width=16, height=16):
    return surface_of(width, height, ARGB, seed=3)


def part_of(surface):
    """A part of a larger surface with the pixels of `surface`."""
    width, height = surface.get_size()
    whole = pygame.Surface((width + 9, height + 7), surface.get_flags(), surface)
    part = whole.subsurface((5, 3, width, height))
    put_words(part, words(surface))
    return part


def key_coloured():
    surface = surface_of(12, 10, XRGB, seed=5)
    surface.set_colorkey(surface.get_at((3, 3)))
    return surface


SHAPES = [
    ("alpha", soft_shape),
    ("opaque", lambda: surface_of(15, 9, XRGB, seed=4)),
    ("other order", lambda: surface_of(7, 7, RGBA, seed=6)),
    ("colour key", key_coloured),
    ("encoded", lambda: encoded_surface(14, 11)),
    ("part", lambda: part_of(soft_shape())),
    ("one pixel", lambda: surface_of(1, 1, ARGB, seed=7)),
]


# ---- paths and keys


def test_docstring():
    assert (
        larkspur.CParticle_dec_ttl_and_render.__doc__
        == "Decrement the particle TTL and render if the particle still should exist."
    )


def test_plain_path_draws_the_shape_and_keeps_nothing(display):
    scene = Scene(display, soft_shape())
    scene.check_draw(scene.particle(orientation=37.9), "plain", None)
    assert particles.cache_of(scene.handle) == {}


def test_plain_path_ignores_the_orientation(display):
    scene = Scene(display, soft_shape(), orientation=(0, 360, 0, 0, 0))
    scene.check_draw(scene.particle(orientation=90), "plain", None)


def test_tinted_path_has_a_key_of_four_and_ignores_the_orientation(display):
    scene = Scene(display, soft_shape(), orientation=(0, 360, 0, 0, 0), color3=(0x8040C0,) * 3)
    particle = scene.particle(orientation=90, color1=0x8040C0, color2=0x8040C0, color3=0x8040C0)
    scene.check_draw(particle, "tinted", (16, 16, 0x8040C0, 255))


def test_faded_path_truncates_the_orientation(display):
    scene = Scene(display, soft_shape(), orientation=(-360, 360, 0, 0, 0), alpha3=(0.5, 0.5, 0.5))
    scene.check_draw(scene.particle(orientation=37.9), "faded", (16, 16, WHITE, 127, 37))
    scene.check_draw(scene.particle(orientation=-37.9), "faded", (16, 16, WHITE, 127, -37))
    scene.check_draw(scene.particle(orientation=0.9), "faded", (16, 16, WHITE, 127, 0))


@pytest.mark.parametrize(
    "orientation, angle",
    [
        (37.9, 32),
        (15.9, 0),
        (16, 16),
        (360, 352),
        (-5, 4080),
        (-0.9, 0),
        (-17, 4064),
        (4096, 0),
        (NAN, 0),
        (1e20, 0),
    ],
)
def test_scaled_path_quantises_the_orientation(display, orientation, angle):
    scene = Scene(display, soft_shape(), scale=(1.5, 0.5), orientation=(-1e30, 1e30, 0, 0, 0))
    scene.check_draw(scene.particle(orientation=orientation), "scaled", (24, 8, WHITE, 255, angle))


def test_a_size_wiggle_takes_the_scaled_path_at_natural_size(display):
    scene = Scene(display, soft_shape(), size=(1, 1 + 2.0**-23, 0, 0.5))
    scene.check_draw(scene.particle(), "scaled", (16, 16, WHITE, 255, 0))
    scene = Scene(display, soft_shape())
    record = particles.type_record(scene.handle)
    record.size_wiggle = scene.kind.size_wiggle = NAN
    render_low(particles.particle_record(scene.particle()), 0, 0)
    assert particles.cache_of(scene.handle).keys() == [(16, 16, WHITE, 255, 0)]


@pytest.mark.parametrize("width, height", [(17, 16), (16, 15)])
def test_either_size_alone_takes_the_scaled_path(display, width, height):
    scene = Scene(display, soft_shape(), scale=(width / 16.0, height / 16.0))
    scene.check_draw(scene.particle(), "scaled", (width, height, WHITE, 255, 0))


def test_factors_are_multiplied_in_single_precision_in_their_order(display):
    """Sizes and scales whose product is a whole number in one order and not in the other."""
    random = numpy.random.RandomState(1)
    single = particle_model.single
    found = 0
    while found < 5:
        scale = single(random.uniform(0.1, 3))
        size = single(random.randint(1, 30) / (10 * float(scale)))
        if int(single(10) * size * scale) == int(single(10) * scale * size):
            continue
        found += 1
        for wiggle in (0.0, 2.0**-20):
            scene = Scene(display, soft_shape(10, 10), scale=(float(scale), float(scale)))
            record = particles.type_record(scene.handle)
            record.size_wiggle = wiggle
            scene.kind.size_wiggle = single(wiggle)
            handle = scene.particle(size=float(size))
            render_low(particles.particle_record(handle), 0, 0)
            scene.draw_model(particles.particle_record(handle))
            scene.check()


def test_life_fraction_of_one_half_is_the_second_half(display):
    scene = Scene(display, soft_shape(), alpha3=(1.0, 0.5, 0.0), life=(10, 10))
    colours = dict(color1=0xFF0000, color2=0x00FF00, color3=0x0000FF)
    particle = scene.particle(ttl=6, life=10, **colours)
    scene.check_draw(particle, "faded", (16, 16, 0x00FF00, 127, 0))
    above = scene.particle(ttl=7, life=10, **colours)
    look = scene.draw(above)
    scene.check()
    # u = 2 * (0.6 - 0.5) in single precision is a little more than 0.2: 51 of 256 shares.
    assert look.key == (16, 16, 0x32CC00, 153, 0)


def test_life_fraction_of_one_half_takes_nothing_of_the_alpha_at_birth(display):
    scene = Scene(display, soft_shape(), alpha3=(INFINITE, 0.5, 0.0))
    scene.check_draw(scene.particle(ttl=6, life=10), "faded", (16, 16, WHITE, 127, 0))


def test_alpha_is_truncated(display):
    for alpha, kept in [(0.999, 254), (0.5, 127), (1 / 255.0, 1), (0.0039, 0)]:
        scene = Scene(display, soft_shape(), alpha3=(alpha,) * 3)
        scene.check_draw(scene.particle(), "faded", (16, 16, WHITE, kept, 0))


@pytest.mark.parametrize(
    "alphas, ttl, life, drawn, exact",
    [((0.2, 0.2, 0.2), 1, 20, 50, 51), ((1.0, 0.8, 0.0), 25, 30, 238, 237)],
)
def test_drawn_alpha_is_rounded_at_each_step_and_the_exported_curve_is_not(
    display, alphas, ttl, life, drawn, exact
):
    scene = Scene(display, soft_shape(), alpha3=alphas)
    scene.check_draw(scene.particle(ttl=ttl + 1, life=life), "faded", (16, 16, WHITE, drawn, 0))
    numbers = [float(particle_model.single(number)) for number in alphas + (ttl / float(life),)]
    assert pixel_model.desired_alpha(*numbers) == exact
    assert desired_alpha(particles.type_record(scene.handle), numbers[-1]) == exact


@pytest.mark.parametrize(
    "alpha, kept", [(-1.0, -255), (2.0, 510), (2.0**24, 255 * 2**24 - 2**32), (1e30, 0), (NAN, 0)]
)
def test_alpha_outside_its_range(display, alpha, kept):
    for blend, scale in itertools.product((0, 1), (1, 2)):
        scene = Scene(display, soft_shape(), alpha3=(alpha,) * 3, scale=(scale, scale), blend=blend)
        size = 16 * scale
        scene.check_draw(
            scene.particle(), "faded" if scale == 1 else "scaled", (size, size, WHITE, kept, 0)
        )


@pytest.mark.parametrize("width, height", [(0.05, 1), (1, 0.05), (0, 0), (-0.05, 1)])
def test_a_size_of_no_pixel_draws_nothing(display, width, height):
    scene = Scene(display, soft_shape(), scale=(width, height))
    before = words(display)
    scene.check_draw(scene.particle(), None, None)
    assert_same_words(words(display), before, "nothing drawn")


@pytest.mark.parametrize("scale", [(-1, 1), (1, -1.5), (-2, -0.5)])
def test_negative_sizes_mirror(display, scale):
    scene = Scene(display, soft_shape(), scale=scale)
    scene.check_draw(
        scene.particle(), "scaled", (int(16 * scale[0]), int(16 * scale[1]), WHITE, 255, 0)
    )


# ---- pictures and pixels


@pytest.mark.parametrize("name, make_shape", SHAPES)
@pytest.mark.parametrize("blend", [0, 1, 128])
def test_every_kind_of_picture(display, name, make_shape, blend):
    for scale, alpha, colour, turn in itertools.product(
        [(1, 1), (1.7, 0.6), (-1.25, 2)], [1.0, 0.4], [WHITE, 0x20C060], [0, 200]
    ):
        scene = Scene(
            display,
            make_shape(),
            scale=scale,
            alpha3=(alpha,) * 3,
            blend=blend,
            orientation=(turn, turn, 0, 0, 0),
        )
        colours = dict(color1=colour, color2=colour, color3=colour)
        for _ in range(3):  # made, and then found twice
            scene.draw(scene.particle(orientation=turn, **colours))
            scene.check()


@pytest.mark.parametrize("blend", [0, 1])
def test_pictures_for_a_screen_with_alpha(display, blend):
    """There fading reads the colours as tinting leaves them, so the order of both shows."""
    screen = pygame.Surface((320, 240), pygame.SRCALPHA, 32, ARGB)
    larkspur.set_SDL_screen(screen)
    for scale, turn in itertools.product((1, 2), (0, 50)):
        scene = Scene(
            screen,
            soft_shape(),
            scale=(scale, scale),
            alpha3=(0.4,) * 3,
            blend=blend,
            orientation=(turn, turn, 0, 0, 0),
        )
        for _ in range(2):
            scene.draw(scene.particle(orientation=turn, color1=0x20C060, color2=0x20C060))
            scene.check()


@pytest.mark.parametrize(
    "position",
    itertools.product([-3, 0, 5, 160, 311.5, 312.5, 317, 320, 330], [-3.5, 0, 5, 233, 238.9, 250]),
)
def test_edges_of_the_display(display, position):
    for blend, scale, colour in itertools.product((0, 1), (1, 2), (WHITE, 0x808080)):
        scene = Scene(display, soft_shape(), scale=(scale, scale), blend=blend)
        scene.draw(scene.particle(position, color1=colour, color2=colour, color3=colour))
        scene.check()


def test_offsets_are_added_in_single_precision_and_cut_to_sixteen_bits(display):
    for position, offset in [
        (-0.75, 0),
        (10.25, -11),
        (2.0**24, 1),
        (65536 + 50, 3),
        (-1e10, 7),
        (NAN, 20),
        (INFINITE, 5),
        (33000, 0),
        (-33000, 0),
        (3.5, 2**31 - 1),
    ]:
        for colour in (WHITE, 0x123456):
            scene = Scene(display, soft_shape())
            scene.draw(
                scene.particle((position, 100), color1=colour, color2=colour, color3=colour),
                offset,
                offset,
            )
            scene.check()


def test_centring_wraps_at_sixteen_bits(display):
    scene = Scene(display, soft_shape())
    scene.draw(scene.particle((-32765, 32767)))
    scene.check()


def test_first_tinted_appearance_is_drawn_twice(display):
    display.fill((0, 0, 0))
    shape = pygame.Surface((4, 4), pygame.SRCALPHA, 32, ARGB)
    shape.fill((255, 255, 255, 128))
    scene = Scene(display, shape)
    display.fill((0, 0, 0))
    colours = dict(color1=0x0000FF, color2=0x0000FF, color3=0x0000FF)
    larkspur.CParticle_dec_ttl_and_render(scene.particle((50, 50), **colours), 0, 0)
    twice = display.get_at((50, 50)).r
    larkspur.CParticle_dec_ttl_and_render(scene.particle((100, 50), **colours), 0, 0)
    once = display.get_at((100, 50)).r
    assert 120 < once < 135 and 185 < twice < 197


def test_second_blit_takes_the_rectangle_as_the_first_left_it(display):
    shape = pygame.Surface((8, 8), 0, 32, XRGB)
    shape.fill((255, 255, 255))
    scene = Scene(display, shape)
    display.fill((0, 0, 0))
    colours = dict(color1=0x0000FF, color2=0x0000FF, color3=0x0000FF)
    larkspur.CParticle_dec_ttl_and_render(scene.particle((1, 50), **colours), 0, 0)
    # The first blit starts at x = -3 and shows 5 columns; the second starts at its clipped x = 0.
    assert [display.get_at((x, 50)).r for x in (0, 4, 5, 7, 8)] == [255, 255, 255, 255, 0]


def test_unexpected_blend_mode_prints_its_line_and_blits(display, capfd):
    scene = Scene(display, soft_shape(), blend=2)
    scene.draw(scene.particle())
    scene.check()
    assert printed(capfd) == ("Error: Unexpected additive blend mode 2\n", "")


def test_white_is_the_literal_on_a_display_whose_white_differs(display):
    screen = pygame.Surface((64, 64), 0, 16, (0xF800, 0x7E0, 0x1F, 0))
    larkspur.set_SDL_screen(screen)
    handle = larkspur.part_type_create()
    larkspur.part_type_shape(handle, soft_shape())
    particle = larkspur.CParticle_new(handle, 30, 30)
    larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    assert particles.cache_of(handle).keys() == [(16, 16, 0xFFFF, 255)]
    assert screen.get_at((30, 30)).b == 0  # the tint's missing blue is taken away


@pytest.mark.parametrize(
    "settings",
    [
        dict(color3=(0xFF, 0xFF, 0xFF)),  # tinted, and added
        dict(alpha3=(0.5, 0.5, 0.5)),  # faded
        dict(alpha3=(0.5, 0.5, 0.5), scale=(2, 2)),  # scaled and faded
    ],
)
def test_pictures_can_not_be_added_on_a_display_of_16_bits(display, settings):
    larkspur.set_SDL_screen(pygame.display.set_mode((320, 240), 0, 16))
    scene = Scene(display, soft_shape(), blend=1, **settings)
    particle = scene.particle(color1=0xFF, color2=0xFF, color3=0xFF)
    with pytest.raises(ValueError) as raised:
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    assert "32 bits per pixel, got 16" in str(raised.value)
    assert particles.cache_of(scene.handle) == {}


@pytest.mark.parametrize("seed", range(12))
def test_whole_lives_of_many_particles(display, seed):
    random = numpy.random.RandomState(seed)
    make_shape = SHAPES[seed % len(SHAPES)][1]
    scene = Scene(
        display,
        make_shape(),
        blend=seed % 3 and 1,
        size=tuple(random.uniform(0.3, 2, 2)) + (0.05, (0, 0.1)[seed % 2]),
        alpha3=tuple(random.uniform(0, 1, 3)),
        orientation=(-90, 400, (0, 7)[seed % 2], (0, 9)[seed % 4 == 1], 0),
        speed=(-4, 4, 0, 0),
        direction=(0, 360, 0, 0),
        life=(1, 20),
        color3=tuple(int(value) for value in random.randint(0, 2**24, 3)),
    )
    if seed % 2 == 0:
        scene.set(size=(1, 1, 0, 0))
    living = [
        larkspur.CParticle_new(scene.handle, random.randint(320), random.randint(240))
        for _ in range(12)
    ]
    for _ in range(10):
        for particle in living:
            if larkspur.CParticle_dec_ttl_and_render(particle, 3, -2) > 0:
                scene.draw_model(particles.particle_record(particle), 3, -2)
        scene.check()


# ---- the call


def test_steps_as_step_does_and_draws_only_while_life_is_left(display):
    scene = Scene(display, soft_shape(), size=(1, 3, 0.1, 0.1), orientation=(0, 360, 10, 10, 0))
    particles.seed(4)
    stepped = scene.particle(ttl=3, vx=1, vy=2)
    particles.seed(5)
    for _ in range(4):
        larkspur.CParticle_step(stepped)
    particles.seed(4)
    drawn = scene.particle(ttl=3, vx=1, vy=2)
    particles.seed(5)
    remaining, changed = [], []
    for _ in range(4):
        before = words(display)
        remaining.append(larkspur.CParticle_dec_ttl_and_render(drawn, 0, 0))
        changed.append(bool((words(display) != before).any()))
    assert remaining == [2, 1, 0, -1] and changed == [True, True, False, False]
    assert type(remaining[0]) is int
    assert particles.values(particles.particle_record(drawn)) == particles.values(
        particles.particle_record(stepped)
    )


@pytest.mark.parametrize(
    "arguments", [(), (1,), (1, 2), (1, 2, 3, 4), (None, "x", 0), (None, 0, None), (None, 1.5, 0)]
)
def test_wrong_arguments(display, arguments):
    scene = Scene(display, soft_shape())
    particle = scene.particle()
    if arguments[:1] == (None,):
        arguments = (particle,) + arguments[1:]
    with pytest.raises(TypeError):
        larkspur.CParticle_dec_ttl_and_render(*arguments)
    assert particles.particle_record(particle).ttl == 101


def test_offsets_that_do_not_fit(display):
    particle = Scene(display, soft_shape()).particle()
    with pytest.raises(OverflowError):
        larkspur.CParticle_dec_ttl_and_render(particle, 2**31, 0)
    with pytest.raises(OverflowError):
        larkspur.CParticle_dec_ttl_and_render(particle, 0, -(2**40))
    assert larkspur.CParticle_dec_ttl_and_render(particle, long(2), True) == 100


@pytest.mark.parametrize(
    "wrong",
    [None, 5, larkspur.part_type_create(), particles.foreign_cobject(), larkspur.Beancounter()],
)
def test_what_is_no_particle_is_refused(display, wrong):
    with pytest.raises(TypeError) as failure:
        larkspur.CParticle_dec_ttl_and_render(wrong, 0, 0)
    assert str(failure.value).startswith("CParticle_dec_ttl_and_render() needs a particle, got ")


@pytest.mark.parametrize(
    "shape, name", [(None, "NoneType"), (5, "int"), (larkspur.GMSprite(), "larkspur.GMSprite")]
)
def test_a_shape_that_is_no_surface(display, shape, name):
    scene = Scene(display, soft_shape())
    larkspur.part_type_sprite(scene.handle, shape, 0, 0, 0)
    particle = scene.particle()
    before = words(display)
    with pytest.raises(TypeError) as failure:
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    assert str(failure.value) == (
        "CParticle_dec_ttl_and_render() needs a particle type whose shape is a pygame Surface, got "
        "%s; set one with part_type_shape()" % name
    )
    assert particles.particle_record(particle).ttl == 100  # the step has been made
    render_low(particles.particle_record(particle), 0, 0)
    assert_same_words(words(display), before, "nothing drawn")


def test_a_type_without_a_shape(display):
    particle = larkspur.CParticle_new(larkspur.part_type_create(), 0, 0)
    with pytest.raises(TypeError) as failure:
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    assert "got none; set one" in str(failure.value)
    render_low(particles.particle_record(particle), 0, 0)


def test_native_drawing_does_not_step(display):
    scene = Scene(display, soft_shape(), scale=(2, 2))
    record = particles.particle_record(scene.particle())
    before = particles.values(record)
    render_low(record, 5, -7)
    scene.draw_model(record, 5, -7)
    scene.check()
    assert particles.values(record) == before


@pytest.mark.parametrize("ttl", [1, 0, -1, -150])
def test_native_drawing_does_not_look_at_the_life_left(display, ttl):
    scene = Scene(display, soft_shape(), alpha3=(1, 0.7, 0.9))
    record = particles.particle_record(scene.particle(ttl=ttl, life=100))
    before = words(display)
    render_low(record, 0, 0)
    assert (words(display) != before).any()
    scene.draw_model(record)
    scene.check()


@pytest.mark.parametrize("colour, shown", [(0xFF, 0xFF0000), (0xFF00, 0xFF00), (0xFF0000, 0xFF)])
def test_colours_have_red_in_the_lowest_byte(display, colour, shown):
    white = pygame.Surface((4, 4), 0, 32)
    white.fill((255, 255, 255))
    handle = larkspur.part_type_create()
    larkspur.part_type_shape(handle, white)
    larkspur.part_type_color3(handle, colour, colour, colour)
    particle = larkspur.CParticle_new(handle, 160, 120)
    render_low(particles.particle_record(particle), 0, 0)
    assert words(display)[120, 160] & WHITE == shown


def test_nothing_outside_tells_a_type_from_a_particle(display):
    description = ctypes.pythonapi.PyCObject_GetDesc
    description.argtypes, description.restype = [ctypes.py_object], ctypes.c_void_p
    kind = larkspur.part_type_create()
    particle = larkspur.CParticle_new(kind, 0, 0)
    assert type(kind) is type(particle) and dir(kind) == dir(particle)
    assert description(kind) is description(particle) is None


# ---- the cache


def scaled_scene(display):
    return Scene(display, soft_shape(), scale=(2, 2))


def test_a_found_picture_is_drawn_as_it_is(display):
    scene = scaled_scene(display)
    picture = pygame.Surface((3, 3), 0, 32, XRGB)
    picture.fill((1, 2, 3))
    particles.cache_of(scene.handle)[32, 32, WHITE, 255, 0] = picture
    display.fill((0, 0, 0))
    larkspur.CParticle_dec_ttl_and_render(scene.particle((50, 60)), 0, 0)
    drawn = numpy.argwhere(words(display) != 0)
    assert drawn.min(axis=0).tolist() == [59, 49] and drawn.max(axis=0).tolist() == [61, 51]


@pytest.mark.parametrize(
    "key",
    [
        (32.0, 32, WHITE, 255, 0),
        (long(32), long(32), long(WHITE), long(255), long(0)),
        (32, 32, WHITE, 255, False),
    ],
)
def test_an_equal_key_is_found_whatever_its_types(display, key):
    scene = scaled_scene(display)
    picture = pygame.Surface((3, 3), 0, 32, XRGB)
    particles.cache_of(scene.handle)[key] = picture
    larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    assert particles.cache_of(scene.handle).values() == [picture]


class Key(object):
    """A key with the hash of another, equal to what is asked or not."""

    def __init__(self, like, equal=None, act=None):
        self.like, self.equal, self.act = like, equal, act

    def __hash__(self):
        return hash(self.like)

    def __eq__(self, other):
        if self.act is not None:
            self.act()
        return self.equal(other) if self.equal else False


def test_a_foreign_key_that_claims_to_be_equal_is_found(display):
    scene = scaled_scene(display)
    picture = pygame.Surface((3, 3), 0, 32, XRGB)
    wanted = (32, 32, WHITE, 255, 0)
    particles.cache_of(scene.handle)[Key(wanted, lambda other: other == wanted)] = picture
    larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    assert particles.cache_of(scene.handle).values() == [picture]


def test_a_foreign_key_of_the_same_hash_is_passed_over(display):
    scene = scaled_scene(display)
    wanted = (32, 32, WHITE, 255, 0)
    foreign = Key(wanted)
    particles.cache_of(scene.handle)[foreign] = "kept"
    for _ in range(3):
        scene.draw(scene.particle())
    kept = particles.cache_of(scene.handle)
    assert len(kept) == 2 and kept[foreign] == "kept" and type(kept[wanted]) is pygame.Surface
    assert_same_words(words(display), words(scene.screen), "particles")


@pytest.mark.parametrize(
    "make_key",
    [
        lambda equal: Key((32, 32, WHITE, 255, 0), equal),
        lambda equal: (Key(32, equal), 32, WHITE, 255, 0),
    ],
)
def test_a_foreign_key_before_ours_is_asked_each_time(display, make_key):
    scene = scaled_scene(display)
    wanted, claims = (32, 32, WHITE, 255, 0), []
    foreign_picture = pygame.Surface((3, 3), 0, 32, XRGB)
    foreign_picture.fill((1, 2, 3))
    cache = particles.cache_of(scene.handle)
    cache[make_key(lambda other: bool(claims))] = foreign_picture
    larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    assert len(cache) == 2
    claims.append(True)
    assert cache[wanted] is foreign_picture
    display.fill((0, 0, 0))
    larkspur.CParticle_dec_ttl_and_render(scene.particle((50, 60)), 0, 0)
    assert (words(display) != 0).sum() == 9


def test_keys_of_other_lengths_and_values_are_passed_over(display):
    scene = scaled_scene(display)
    cache = particles.cache_of(scene.handle)
    for key in [
        (),
        (32,),
        (32, 32, WHITE, 255),
        (32, 32, WHITE, 255, 16),
        (32, 32, WHITE, 254, 0),
        "text",
        None,
        32,
    ]:
        cache[key] = None
    particles.cache_of(scene.handle).pop("text")
    scene.draw(scene.particle())
    assert_same_words(words(display), words(scene.screen), "particles")
    assert type(cache[32, 32, WHITE, 255, 0]) is pygame.Surface


def test_looking_up_follows_every_collision(display):
    """Hundreds of keys, with removals between them, are each found again as the dictionary does."""
    scene = Scene(
        display, surface_of(2, 2, ARGB), alpha3=(0.5,) * 3, orientation=(-1000, 1000, 0, 0, 0)
    )
    cache = particles.cache_of(scene.handle)
    particle = scene.particle((10, 10))
    record = particles.particle_record(particle)
    for round_ in range(3):
        for angle in range(-300, 300):
            record.orientation = angle
            render_low(record, 0, 0)
        pictures = dict(cache)
        assert len(pictures) == 600
        for angle in range(-300, 300):
            record.orientation = angle
            render_low(record, 0, 0)
        assert all(cache[key] is pictures[key] for key in pictures) and len(cache) == 600
        for key in list(cache)[round_::3]:
            del cache[key]
    larkspur.CParticle_type_cache_clear(scene.handle)
    render_low(record, 0, 0)
    assert len(cache) == 1


def test_a_foreign_entry_that_is_no_surface(display):
    scene = scaled_scene(display)
    particles.cache_of(scene.handle)[32, 32, WHITE, 255, 0] = "picture"
    particle = scene.particle()
    with pytest.raises(TypeError):
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    render_low(particles.particle_record(particle), 0, 0)


def fill_cache(scene, count):
    for number in range(count):
        particles.cache_of(scene.handle)[number] = None
        scene.cache[number] = None


@pytest.mark.parametrize("entries, left", [(100, 101), (101, 1), (250, 1)])
def test_a_scaled_miss_empties_a_cache_of_more_than_a_hundred(display, entries, left):
    scene = scaled_scene(display)
    cache = particles.cache_of(scene.handle)
    fill_cache(scene, entries)
    scene.draw(scene.particle())
    assert len(cache) == len(scene.cache) == left
    assert particles.cache_of(scene.handle) is cache
    scene.draw(scene.particle())
    assert len(cache) == left


def test_a_scaled_hit_empties_nothing(display):
    scene = scaled_scene(display)
    scene.draw(scene.particle())
    fill_cache(scene, 150)
    scene.draw(scene.particle())
    assert len(particles.cache_of(scene.handle)) == 151


def test_faded_and_tinted_misses_never_empty_the_cache(display):
    scene = Scene(display, soft_shape(), alpha3=(0.5,) * 3)
    fill_cache(scene, 150)
    scene.draw(scene.particle())
    scene.set(alpha3=(1, 1, 1))
    scene.draw(scene.particle(color1=1, color2=1, color3=1))
    assert len(particles.cache_of(scene.handle)) == 152


def test_the_cache_keeps_the_only_reference(display):
    for settings in [dict(scale=(2, 2)), dict(alpha3=(0.5,) * 3), dict()]:
        scene = Scene(display, soft_shape(), **settings)
        particle = scene.particle(color1=1, color2=1, color3=1)
        for _ in range(3):
            larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
            ((key, picture),) = particles.cache_of(scene.handle).items()
            gc.collect()
            assert sys.getrefcount(picture) == 3  # the dictionary, the name and the argument
            assert sys.getrefcount(key) == 3
            del key, picture


def test_the_shape_does_not_change(display):
    for blend, scale, alpha, turn in itertools.product((0, 1), (1, 2), (1.0, 0.5), (0, 90)):
        shape = soft_shape()
        before, flags = words(shape), shape.get_flags()
        scene = Scene(
            display,
            shape,
            blend=blend,
            scale=(scale, scale),
            alpha3=(alpha,) * 3,
            orientation=(turn, turn, 0, 0, 0),
        )
        larkspur.CParticle_dec_ttl_and_render(scene.particle(color1=5, color2=5, color3=5), 0, 0)
        assert_same_words(words(shape), before, "shape")
        assert shape.get_flags() == flags


# ---- odd sizes, surfaces and displays


@pytest.mark.parametrize("size", [NAN, INFINITE, -INFINITE, 1e6, -1e6, 1e9, -1e9, 1e30])
def test_sizes_that_sdl_refuses_draw_and_keep_nothing(display, size):
    scene = scaled_scene(display)
    before = words(display)
    particle = scene.particle(size=size)
    assert larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) == 100
    kept = particles.cache_of(scene.handle)
    for key in kept:  # numbers that are no size come out of SDL_gfx as a single pixel
        assert key[:2] == (-(2**31), -(2**31)) and kept[key].get_size() == (1, 1)
    if not kept:
        assert_same_words(words(display), before, "nothing drawn")
    render_low(particles.particle_record(particle), 0, 0)


@pytest.mark.parametrize(
    "scale, turn",
    [((900, 900), 0), ((900, 900), 45), ((400, 400), 48), ((900, 4000), 0), ((0.1, 2000), 48)],
)
def test_absurdly_large_pictures_are_not_made(display, scale, turn):
    scene = Scene(display, soft_shape(), scale=scale, orientation=(turn, turn, 0, 0, 0))
    peak_kilobytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    assert larkspur.CParticle_dec_ttl_and_render(scene.particle(orientation=turn), 0, 0) == 100
    assert particles.cache_of(scene.handle) == {}
    grown = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak_kilobytes
    # On a layer over SDL 2 each picture is copied once, see zoom.cpp.
    assert grown < 300 * 1024 * (2 if sdl.is_layer() else 1)


@pytest.mark.parametrize("bits", [8, 16, 24])
def test_shapes_of_other_depths(display, bits):
    shape = pygame.Surface((6, 6), 0, bits)
    shape.fill((200, 100, 50))
    for settings in [
        dict(),
        dict(scale=(2, 2)),
        dict(scale=(-2, 2)),
        dict(alpha3=(0.5,) * 3),
        dict(blend=1),
        dict(blend=1, scale=(2, 2)),
        dict(blend=1, scale=(2, 2), alpha3=(0.5,) * 3),
    ]:
        for colour in (WHITE, 0x808080):
            scene = Scene(display, shape, **settings)
            particle = scene.particle(color1=colour, color2=colour, color3=colour)
            render_low(particles.particle_record(particle), 0, 0)
            try:
                larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
            except ValueError as failure:
                assert "CParticle_dec_ttl_and_render() " in str(failure)
                if settings.get("scale") == (-2, 2):
                    assert "cannot scale an 8-bit surface by a negative factor" in str(failure)
                else:
                    assert "needs a surface of 32 bits" in str(failure)
                assert bits == 8 or "blend" in settings


def assert_can_not_be_scaled(scene, capfd, text):
    """Drawing raises each time, and nothing is printed, drawn or kept; native drawing does the
    same without the exception."""
    before = words(scene.display)
    particle = scene.particle()
    for _ in range(2):
        with pytest.raises(ValueError) as raised:
            larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        assert str(raised.value).startswith("CParticle_dec_ttl_and_render() cannot scale " + text)
    assert particles.particle_record(particle).ttl == 99
    render_low(particles.particle_record(particle), 0, 0)
    assert printed(capfd) == ("", "")
    assert particles.cache_of(scene.handle) == {}
    assert_same_words(words(scene.display), before, "nothing drawn")


@pytest.mark.parametrize("scale", [(-1, 1), (1, -1), (-2, -2)])
def test_an_8_bit_shape_can_not_be_mirrored(display, capfd, scale):
    scene = Scene(display, pygame.Surface((6, 6), 0, 8), scale=scale)
    assert_can_not_be_scaled(scene, capfd, "an 8-bit surface by a negative factor")


@pytest.mark.parametrize("bits", [8, 16, 24, 32])
def test_a_shape_with_a_side_of_more_than_32767_pixels_can_not_be_scaled(display, capfd, bits):
    scene = Scene(display, pygame.Surface((1, 32768), 0, bits), scale=(1, 0.25))
    assert_can_not_be_scaled(scene, capfd, "a surface with a side of more than 32767 pixels")


def test_a_shape_with_a_side_of_more_than_32767_pixels_can_not_be_turned(display, capfd):
    shape = pygame.Surface((1, 32768), 0, 32)
    scene = Scene(display, shape, alpha3=(0.5,) * 3, orientation=(45, 45, 0, 0, 0))
    assert_can_not_be_scaled(scene, capfd, "a surface with a side of more than 32767 pixels")


@pytest.mark.parametrize("side", [1, 48, 49, 50, 98])
def test_a_size_that_is_no_number_draws_one_pixel_whatever_the_width(display, side):
    scene = Scene(display, soft_shape(side, side))
    particle = scene.particle(size=NAN)
    assert larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) == 100
    kept = particles.cache_of(scene.handle)
    assert [(key[:2], kept[key].get_size()) for key in kept] == [((-(2**31), -(2**31)), (1, 1))]


def test_an_8_bit_shape_scaled_and_tinted_raises_and_keeps_nothing(display):
    scene = Scene(display, pygame.Surface((6, 6), 0, 8), scale=(2, 2))
    particle = scene.particle(color1=5, color2=5, color3=5)
    with pytest.raises(ValueError):
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    render_low(particles.particle_record(particle), 0, 0)
    assert particles.cache_of(scene.handle) == {}


def test_a_failed_conversion_is_reported(display, capfd):
    """SDL refuses to convert to a palette without colours, which for SDL 2 is an all white one."""
    screen = pygame.Surface((32, 32), 0, 8)
    screen.set_palette([(255, 255, 255) if sdl.is_layer() else (0, 0, 0)] * 256)
    scene = Scene(display, soft_shape(), alpha3=(0.5,) * 3)
    larkspur.set_SDL_screen(screen)
    particle = scene.particle()
    expected = "Error reformatting shapesurf: Empty destination palette\n"
    assert larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) == 100
    assert capfd.readouterr() == ("", expected)
    render_low(particles.particle_record(particle), 0, 0)
    assert capfd.readouterr() == ("", expected)
    assert particles.cache_of(scene.handle) == {}


@pytest.mark.parametrize("settings", [dict(), dict(scale=(2, 2), blend=1)])
@pytest.mark.parametrize("key", [256, 0x7FFFFFF0])
def test_a_colour_key_that_is_no_place_in_the_palette_is_not_converted(display, settings, key):
    """SDL would look it up behind the palette."""
    shape = pygame.Surface((6, 6), 0, 8)
    is_keyed = set_key_outside_palette(shape, key)
    scene = Scene(display, shape, alpha3=(0.5,) * 3, **settings)
    before = words(display)
    particle = scene.particle()
    assert larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) == 100
    render_low(particles.particle_record(particle), 0, 0)
    assert bool(particles.cache_of(scene.handle)) is not is_keyed
    assert_same_words(words(display), before, "nothing drawn")


@pytest.mark.parametrize("alpha", [False, True])
@pytest.mark.parametrize(
    "settings", [dict(alpha3=(0.5,) * 3), dict(alpha3=(0.5,) * 3, blend=1), dict(color3=(5,) * 3)]
)
def test_an_encoded_shape_that_is_locked_is_not_converted(display, settings, alpha):
    """It is decoded then, and SDL would decode it again."""
    shape = locked_encoded_surface(alpha=alpha)
    scene = Scene(display, shape, **settings)
    colours = {name: 5 for name in ("color1", "color2", "color3") if "color3" in settings}
    particle = scene.particle(**colours)
    for _ in range(2):
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        render_low(particles.particle_record(particle), 0, 0)
    assert sdl.is_layer() or particles.cache_of(scene.handle) == {}
    shape.unlock()
    larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    assert len(particles.cache_of(scene.handle)) >= 1


def all_paths(display):
    """A particle on each path, its picture not yet made."""
    for settings, colour in [
        (dict(), WHITE),
        (dict(), 5),
        (dict(scale=(2, 2)), WHITE),
        (dict(alpha3=(0.5,) * 3), WHITE),
    ]:
        scene = Scene(display, soft_shape(), **settings)
        yield scene, scene.particle(color1=colour, color2=colour, color3=colour)


@pytest.mark.parametrize("made_before", [False, True])
def test_a_closed_display(display, made_before):
    made = list(all_paths(display))
    for _, particle in made if made_before else []:
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
    kept = [dict(particles.cache_of(scene.handle)) for scene, _ in made]
    pygame.display.quit()
    for _, particle in made:
        with pytest.raises(RuntimeError):
            larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        render_low(particles.particle_record(particle), 0, 0)
    assert [particles.cache_of(scene.handle) for scene, _ in made] == kept


def test_a_replaced_display(display):
    made = list(all_paths(display))
    replaced = pygame.display.set_mode((100, 80), 0, 32)
    for _, particle in made:
        replaced.fill((0, 0, 0))
        larkspur.CParticle_dec_ttl_and_render(particle, -120, -80)
        assert words(replaced).any()


def test_the_display_as_shape_when_it_is_closed(display):
    scene = Scene(display, display)
    larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    pygame.display.quit()
    with pytest.raises(RuntimeError):
        larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    render_low(particles.particle_record(scene.particle()), 0, 0)


def test_a_part_whose_surface_is_gone(display):
    for settings in [dict(), dict(scale=(2, 2)), dict(alpha3=(0.5,) * 3)]:
        pygame.display.init()
        screen = pygame.display.set_mode((320, 240), 0, 32)
        larkspur.set_SDL_screen(pygame.Surface((320, 240), 0, 32, XRGB))
        scene = Scene(screen, screen.subsurface((0, 200, 16, 16)), **settings)
        pygame.display.set_mode((50, 50), 0, 32)
        particle = scene.particle()
        with pytest.raises(RuntimeError):
            larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        render_low(particles.particle_record(particle), 0, 0)


# ---- code that runs in between


def test_a_key_that_closes_the_display(display):
    scene = scaled_scene(display)
    cache = particles.cache_of(scene.handle)
    cache[Key((32, 32, WHITE, 255, 0), act=pygame.display.quit)] = None
    with pytest.raises(RuntimeError):
        larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)


def test_a_key_that_drops_everything(display):
    for native_call in (False, True):
        scene = scaled_scene(display)
        particle = scene.particle()
        cache = particles.cache_of(scene.handle)
        handles = [scene.handle]
        scene.handle = scene.shape = None

        def drop(handles=handles):
            if handles:
                larkspur.part_type_sprite(handles[0], None, 0, 0, 0)
                handles.pop()
                cache.clear()

        cache[Key((32, 32, WHITE, 255, 0), act=drop)] = None
        if native_call:
            render_low(particles.particle_record(particle), 0, 0)
        else:
            larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        assert handles == []


def test_emptying_may_run_code(display):
    scene = scaled_scene(display)
    fill_cache(scene, 101)

    class Value(object):
        def __del__(self):
            larkspur.part_type_sprite(scene.handle, None, 0, 0, 0)
            particles.cache_of(scene.handle)["late"] = None

    particles.cache_of(scene.handle)["value"] = Value()
    scene.cache.clear()
    larkspur.CParticle_dec_ttl_and_render(scene.particle(), 0, 0)
    assert len(particles.cache_of(scene.handle)) == 2


def test_native_drawing_leaves_no_exception(display):
    failures = []

    def fail():
        failures.append(KeyError("from a key"))
        raise failures[-1]

    scene = scaled_scene(display)
    particles.cache_of(scene.handle)[Key((32, 32, WHITE, 255, 0), act=fail)] = None
    render_low(particles.particle_record(scene.particle()), 0, 0)  # ctypes would raise it
    assert failures


def test_native_drawing_keeps_a_pending_exception_and_draws(display):
    for scene, particle in all_paths(display):
        for _ in range(2):  # the picture is made, and then found
            before = ValueError("pending")
            assert pending.render_particle(particle, before) is before
            scene.draw_model(particles.particle_record(particle))
            scene.check()
        larkspur.part_type_sprite(scene.handle, None, 0, 0, 0)
        assert pending.render_particle(particle, before) is before
        assert pending.render_particle(particle) is None


# ---- nothing grows


def test_a_hundred_thousand_drawn_lives_leave_nothing_behind(display):
    scene = Scene(
        display,
        surface_of(3, 3, ARGB),
        life=(2, 2),
        size=(0.5, 2, 0.25, 0.25),
        alpha2=(1, 0),
        orientation=(0, 360, 0, 40, 0),
    )

    def lives(count):
        for _ in xrange(count):
            particle = larkspur.CParticle_new(scene.handle, 50, 50)
            while larkspur.CParticle_dec_ttl_and_render(particle, 0, 0) > 0:
                pass

    lives(2000)
    gc.collect()
    counts = [sys.getrefcount(counted) for counted in (scene.handle, scene.shape, display)]
    peak_kilobytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    lives(100000)
    gc.collect()
    assert [sys.getrefcount(counted) for counted in (scene.handle, scene.shape, display)] == counts
    assert len(particles.cache_of(scene.handle)) <= 102
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak_kilobytes < 1024


def test_failed_draws_do_not_leak(display):
    scene = scaled_scene(display)
    particles.cache_of(scene.handle)[32, 32, WHITE, 255, 0] = wrong = object()
    particle = scene.particle(ttl=10**6, life=10**6)
    leaks.assert_counts_unchanged(
        lambda: pytest.raises(TypeError, larkspur.CParticle_dec_ttl_and_render, particle, 0, 0),
        particle,
        scene.handle,
        scene.shape,
        wrong,
        display,
    )
