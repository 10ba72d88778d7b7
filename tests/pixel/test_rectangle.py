"""Rectangles: filled, translucent, in up to four colours, and with the host's properties."""

import ctypes
import itertools

import larkspur
import numpy
import pygame
import pytest
from models import gradient_model as model
from support import host as host_support
from support import leaks, native, rooms, subprocess_python
from support.guarded import GuardedSurface
from support.pictures import assert_same_words, put_words, random_words, words
from support.surfaces import ALL_MASKS, assert_encoded, encode, surface_of

RED, GREEN, BLUE, GREY = 0x0000FF, 0x00FF00, 0xFF0000, 0x808080
WIDTH, HEIGHT = 41, 31

RECTANGLES = [
    (0, 0, WIDTH, HEIGHT),
    (0, 0, WIDTH - 1, HEIGHT - 1),
    (3, 4, 20, 12),
    (20, 12, 3, 4),
    (20, 4, 3, 12),
    (3, 12, 20, 4),
    (-5, -7, 20, 20),
    (-5, 3, 50, 9),
    (30, 20, 99, 99),
    (4, -32768, 20, 20),
    (-32768, 4, 20, 20),
    (5, 5, 5, 5),
    (5, 5, 5, 20),
    (5, 5, 20, 5),
    (-5, -5, -1, -1),
    (-5, 5, -1, 9),
    (5, -5, 9, -1),
    (WIDTH, 0, WIDTH + 9, HEIGHT),
    (0, HEIGHT, WIDTH, HEIGHT + 9),
    (WIDTH - 1, 3, WIDTH, 9),
    (3, HEIGHT - 1, 9, HEIGHT),
    (-32768, -32768, 2**31 - 1, 2**31 - 1),
    (0, 0, 2**31 - 1, 5),
    (0, 0, 5, 2**31 - 1),
    (2**31 - 1, 2**31 - 1, 2**31 - 1, 2**31 - 1),
    (0, 0, 0, 0),
    (-1, -1, 1, 1),
]


@pytest.fixture
def screen():
    """A display with pixels of its own, given to set_SDL_screen()."""
    pygame.display.init()
    surface = pygame.display.set_mode((WIDTH, HEIGHT), 0, 32)
    put_words(surface, random_words(WIDTH, HEIGHT, 7))
    larkspur.set_SDL_screen(surface)
    return surface


def picture_of(surface):
    return model.Picture.of(words(surface), surface)


# ---- fill_translucent


@pytest.mark.parametrize(
    "rectangle", RECTANGLES + [(-32769, 4, 20, 20), (4, -32769, 20, 20), (-(2**31),) * 2 + (9, 9)]
)
def test_fill_paints_last_row_but_not_last_column(rectangle):
    surface = surface_of(WIDTH, HEIGHT)
    picture = picture_of(surface)
    arguments = rectangle + (0x7F123456, 90)
    model.fill_translucent(picture, *arguments)
    assert larkspur.fill_translucent(surface, *arguments) is None
    assert_same_words(words(surface), picture.words(), "fill")


def test_fill_by_hand():
    surface = pygame.Surface((4, 3), 0, 32)
    put_words(surface, numpy.full((3, 4), 0x804020, numpy.uint32))
    larkspur.fill_translucent(surface, 1, 0, 3, 1, 0x00FF00, 128)
    # 127 256ths of the old bytes 0x80, 0x40, 0x20 are 63, 31, 15; half of 0xFF is 127.
    new, old = 63 << 16 | (31 + 127) << 8 | 15, 0x804020
    assert words(surface).tolist() == [[old, new, new, old], [old, new, new, old], [old] * 4]


@pytest.mark.parametrize("alpha", [0, 1, 128, 254, 255, 256, 300, -1, -(2**31)])
def test_fill_counts_alpha_by_its_low_byte(alpha):
    surface = pygame.Surface((9, 9), pygame.SRCALPHA, 32)
    put_words(surface, random_words(9, 9, 3))
    picture = picture_of(surface)
    model.fill_translucent(picture, 0, 0, 9, 9, 0xABCDEF, alpha)
    larkspur.fill_translucent(surface, 0, 0, 9, 9, 0xABCDEF, alpha)
    assert_same_words(words(surface), picture.words(), "fill-alpha")


def test_fill_takes_a_negative_colour_as_its_word():
    surface = pygame.Surface((3, 3), 0, 32)
    larkspur.fill_translucent(surface, 0, 0, 2, 2, -1, 255)
    assert words(surface)[0, 0] == 0xFEFEFE


def test_fill_of_a_part_and_of_an_encoded_surface():
    parent = surface_of(WIDTH, HEIGHT)
    before = words(parent)
    part = parent.subsurface((4, 5, 20, 10))
    encode(parent)
    picture = model.Picture.of(before[5:15, 4:24], parent)
    model.fill_translucent(picture, -3, 2, 18, 30, 0xABCDEF, 77)
    larkspur.fill_translucent(part, -3, 2, 18, 30, 0xABCDEF, 77)
    before[5:15, 4:24] = picture.words()
    assert_same_words(words(parent), before, "fill-part")


def test_fill_refuses_what_it_cannot_paint(display):
    for depth in (8, 16, 24):
        with pytest.raises(ValueError) as raised:
            larkspur.fill_translucent(pygame.Surface((9, 9), 0, depth), 0, 0, 9, 9, 0, 9)
        assert "fill_translucent()" in str(raised.value) and str(depth) in str(raised.value)
    with pytest.raises(TypeError) as raised:
        larkspur.fill_translucent("paper", 0, 0, 9, 9, 0, 9)
    assert "fill_translucent()" in str(raised.value) and "str" in str(raised.value)
    surface = pygame.Surface((9, 9), 0, 32)
    with pytest.raises(TypeError):
        larkspur.fill_translucent(surface, 0, 0, 9, 9, 0)
    with pytest.raises(OverflowError):
        larkspur.fill_translucent(surface, 0, 0, 9, 9, 2**31, 9)
    pygame.display.quit()
    with pytest.raises(RuntimeError):
        larkspur.fill_translucent(display, 0, 0, 9, 9, 0, 9)


def test_fill_of_nothing():
    whole = surface_of(9, 9)
    before = words(whole)
    for size in ((0, 0), (0, 5), (5, 0), (1, 1)):
        part = whole.subsurface((2, 2) + size)
        assert larkspur.fill_translucent(part, 0, 0, 9, 9, 0, 9) is None
    assert_same_words(words(whole), before, "nothing-filled")


# ---- fast_draw_rectangle_color


def check_colours(screen, capfd, arguments, name="rectangle"):
    """A call paints and prints exactly what the model says."""
    picture = picture_of(screen)
    printed = model.draw_rectangle_color(picture, *arguments)
    capfd.readouterr()
    assert larkspur.fast_draw_rectangle_color(*arguments) is None
    assert capfd.readouterr() == (printed, "")
    assert_same_words(words(screen), picture.words(), name)
    return printed


KINDS = {
    "one-colour": (GREY, GREY, GREY, GREY),
    "vertical": (RED, RED, 0xFE8040, 0xFE8040),
    "horizontal": (RED, BLUE, BLUE, RED),
    "four": (RED, GREEN, BLUE, GREY),
    "upper-two-alike": (RED, RED, BLUE, GREY),
    "lower-two-alike": (RED, GREEN, BLUE, BLUE),
}


@pytest.mark.parametrize("rectangle", RECTANGLES)
@pytest.mark.parametrize("kind", sorted(KINDS))
def test_every_place_of_the_rectangle(screen, capfd, kind, rectangle):
    for alpha, outline in itertools.product((1.0, 0.4), (0, 1)):
        check_colours(screen, capfd, rectangle + KINDS[kind] + (alpha, outline), kind)


def test_opaque_single_colour_only_prints(screen, capfd):
    before = words(screen)
    for alpha in (1.0, 1.5):
        for outline in (0, 1):
            assert (
                check_colours(screen, capfd, (0, 0, 9, 9) + KINDS["one-colour"] + (alpha, outline))
                == "BUG: should actually fill.\n"
            )
    assert (words(screen) == before).all()


def test_translucent_single_colour_is_filled_even_as_an_outline(screen):
    screen.fill((0, 0, 0))
    larkspur.fast_draw_rectangle_color(2, 3, 5, 6, 0xFF, 0xFF, 0xFF, 0xFF, 0.5, 1)
    pixels = words(screen)
    # A pixel value as it came, so blue here; alpha 127.
    assert (pixels[3:7, 2:5] == 0xFF * 127 // 256).all()
    pixels[3:7, 2:5] = 0
    assert not pixels.any()


def test_colours_are_compared_with_their_top_bytes(screen, capfd):
    # The same three channels: still two colours, so a vertical gradient.
    assert (
        check_colours(screen, capfd, (0, 0, 9, 9, 0x010000FF, 0x010000FF, 0xFF, 0xFF, 1.0, 0)) == ""
    )
    assert (
        check_colours(screen, capfd, (0, 0, 9, 9, 0x010000FF, 0xFF, 0xFF, 0xFF, 1.0, 1))
        == "Horizontal gradient, complex gradient, or no gradient. 255/1\n"
    )


def test_opaque_vertical_gradient(screen):
    screen.fill((0, 0, 0))
    larkspur.fast_draw_rectangle_color(2, 4, 6, 8, RED, RED, BLUE, BLUE, 1.0, 0)
    pixels = words(screen)
    for row, weight in enumerate((255, 191, 127, 63)):
        word = (255 * weight // 256) << 16 | 255 * (256 - weight) // 256
        assert (pixels[4 + row, 2:6] == word).all()
    pixels[4:8, 2:6] = 0
    assert not pixels.any()


def test_opaque_horizontal_gradient_takes_the_upper_two_colours(screen):
    screen.fill((0, 0, 0))
    larkspur.fast_draw_rectangle_color(4, 2, 8, 6, RED, BLUE, GREEN, GREY, 1.0, 0)
    pixels = words(screen)
    for column, weight in enumerate((255, 191, 127, 63)):
        word = (255 * weight // 256) << 16 | 255 * (256 - weight) // 256
        assert (pixels[2:7, 4 + column] == word).all()  # the last row included
    pixels[2:7, 4:8] = 0
    assert not pixels.any()


def test_step_of_a_horizontal_gradient_comes_from_the_clamped_right(screen):
    screen.fill((0, 0, 0))
    larkspur.fast_draw_rectangle_color(WIDTH - 5, 0, 1000, 0, 0xFF, 0, 0, 0xFF, 1.0, 0)
    assert [int(word) >> 16 for word in words(screen)[0, -5:]] == [
        255 * weight // 256 for weight in (255, 191, 127, 63)
    ] + [0]


def test_step_of_a_vertical_gradient_comes_from_the_unclamped_bottom(screen):
    larkspur.fast_draw_rectangle_color(0, HEIGHT - 3, 2, HEIGHT + 5, 0xFF, 0xFF, 0, 0, 1.0, 0)
    assert [int(word) >> 16 for word in words(screen)[-3:-1, 0]] == [
        255 * weight // 256 for weight in (255, int(255 * 7 / 8.0))
    ]


def test_outline_of_an_opaque_vertical_gradient(screen):
    screen.fill((0, 0, 0))
    larkspur.fast_draw_rectangle_color(2, 3, 6, 7, 0xFF, 0xFF, 0xFF00, 0xFF00, 1.0, 1)
    mixed = [
        (255 * weight // 256) << 16 | (255 * (256 - weight) // 256) << 8
        for weight in (255, 191, 127, 63)
    ]
    expected = numpy.zeros((HEIGHT, WIDTH), numpy.uint32)
    expected[3, 2:6] = 0xFF0000
    expected[7, 2:6] = 0x00FF00
    for row, word in zip((4, 5, 6, 7), mixed):
        expected[row, 2] = expected[row, 6] = word
    assert_same_words(words(screen), expected, "outline")


def test_outline_clamps_its_right_side_and_its_bottom(screen, capfd):
    check_colours(screen, capfd, (30, 20, 999, 999) + KINDS["vertical"] + (1.0, 1))
    assert words(screen)[-1, 31] == model.Picture.of(words(screen), screen).mapped(0xFE8040)


def test_translucent_vertical_outline_only_prints(screen, capfd):
    assert (
        check_colours(screen, capfd, (0, 0, 9, 9) + KINDS["vertical"] + (0.5, 1))
        == "BUG: need to draw translucent outline vgrad.\n"
    )


def test_other_gradients_only_print(screen, capfd):
    for kind in ("horizontal", "four", "upper-two-alike", "lower-two-alike"):
        for alpha, outline, numbers in ((0.5, 0, "127/0"), (1.0, 1, "255/1"), (0.0, -7, "0/-7")):
            assert (
                check_colours(screen, capfd, (0, 0, 9, 9) + KINDS[kind] + (alpha, outline))
                == "Horizontal gradient, complex gradient, or no gradient. %s\n" % numbers
            )


# The eighth comes to 257 - 2^-23, which a single float rounds to 257.
ALPHAS = (
    0.0,
    0.1,
    0.25,
    0.5,
    0.996,
    1 - 2.0**-24,
    1.0,
    (257 * 2**23 - 1) / 255 / 2.0**23,
    1.002,
    1.5,
    2.0,
    -0.5,
    -3.0,
    1e9,
    1e30,
    float("inf"),
    float("-inf"),
    float("nan"),
)


@pytest.mark.parametrize("kind", sorted(KINDS))
def test_every_alpha(screen, capfd, kind):
    for alpha, outline in itertools.product(ALPHAS, (0, 1, -1)):
        check_colours(screen, capfd, (3, 2, 33, 22) + KINDS[kind] + (alpha, outline), "alpha")


@pytest.mark.parametrize("length", [1, 2, 3, 7, 13, 26, 39])
def test_every_length_of_a_horizontal_gradient(screen, capfd, length):
    for x1 in (0, 1, -1, -39, -1000):
        check_colours(screen, capfd, (x1, 3, x1 + length, 5) + KINDS["four"] + (1.0, 0))


# Which coordinate steps the gradient, 0 for x and 1 for y; None where there is no gradient.
STEPPED = [
    ("one-colour", 0.5, 0, None),
    ("vertical", 1.0, 0, 1),
    ("vertical", 1.0, 1, 1),
    ("vertical", 0.5, 0, 1),
    ("horizontal", 1.0, 0, 0),
]


@pytest.mark.parametrize("kind, alpha, outline, stepped", STEPPED)
@pytest.mark.parametrize("first", [-32769, -(2**31)])
def test_gradients_are_stepped_from_32768_pixels_before_at_most(
    screen, capfd, kind, alpha, outline, stepped, first
):
    before = words(screen)
    style = KINDS[kind] + (alpha, outline)
    if stepped is not None:
        corner = [2, 3]
        corner[stepped] = first
        for corners in (tuple(corner) + (9, 9), (9, 9) + tuple(corner)):
            with pytest.raises(ValueError) as raised:
                larkspur.fast_draw_rectangle_color(*(corners + style))
            assert "fast_draw_rectangle_color()" in str(raised.value)
            assert str(first) in str(raised.value)
        assert (words(screen) == before).all()
    for axis in {0, 1} - {stepped}:
        corner = [2, 3]
        corner[axis] = first
        check_colours(screen, capfd, tuple(corner) + (9, 9) + style, "far")
    assert (words(screen) != before).any()


def test_single_opaque_colour_takes_any_corner(screen, capfd):
    for corner in ((-32769, 0), (0, -(2**31))):
        check_colours(screen, capfd, corner + (9, 9) + KINDS["one-colour"] + (1.0, 0))


def test_display_of_another_depth_is_refused():
    pygame.display.init()
    for depth in (8, 16, 24):
        surface = pygame.display.set_mode((20, 20), 0, depth)
        larkspur.set_SDL_screen(surface)
        with pytest.raises(ValueError) as raised:
            larkspur.fast_draw_rectangle_color(0, 0, 9, 9, RED, RED, BLUE, BLUE, 1.0, 0)
        assert "fast_draw_rectangle_color()" in str(raised.value)


def test_closed_display_is_refused(screen, capfd):
    pygame.display.quit()
    for kind, alpha in (
        ("one-colour", 0.5),
        ("vertical", 1.0),
        ("vertical", 0.5),
        ("horizontal", 1.0),
    ):
        with pytest.raises(RuntimeError) as raised:
            larkspur.fast_draw_rectangle_color(*((0, 0, 9, 9) + KINDS[kind] + (alpha, 0)))
        assert "fast_draw_rectangle_color()" in str(raised.value)
    assert (
        larkspur.fast_draw_rectangle_color(*((0, 0, 9, 9) + KINDS["one-colour"] + (1.0, 0))) is None
    )
    assert capfd.readouterr() == ("BUG: should actually fill.\n", "")


def test_part_of_a_surface_as_the_display(screen, capfd):
    parent = surface_of(WIDTH, HEIGHT)
    part = parent.subsurface((5, 6, 20, 10))
    larkspur.set_SDL_screen(part)
    encode(parent)
    check_colours(part, capfd, (-2, -2, 15, 99) + KINDS["vertical"] + (0.5, 0))
    check_colours(part, capfd, (-2, -2, 15, 99) + KINDS["vertical"] + (1.0, 1))
    check_colours(part, capfd, (-2, -2, 15, 99) + KINDS["four"] + (1.0, 0))
    check_colours(part, capfd, (-2, -2, 15, 99) + KINDS["one-colour"] + (0.3, 0))
    assert parent.get_locks() == () and part.get_locks() == ()


def test_encoded_surface_as_the_display(screen, capfd):
    surface = surface_of(WIDTH, HEIGHT)
    larkspur.set_SDL_screen(surface)
    for kind, alpha, outline in (
        ("vertical", 0.5, 0),
        ("vertical", 1.0, 1),
        ("vertical", 1.0, 0),
        ("four", 1.0, 0),
        ("one-colour", 0.3, 0),
    ):
        picture = picture_of(surface)
        encode(surface)
        arguments = (-2, -2, 15, 99) + KINDS[kind] + (alpha, outline)
        model.draw_rectangle_color(picture, *arguments)
        larkspur.fast_draw_rectangle_color(*arguments)
        assert_encoded(surface)  # again
        assert_same_words(words(surface), picture.words(), "encoded-" + kind)


MAP_RGB = native.function(
    "SDL_MapRGB", ctypes.c_uint32, ctypes.POINTER(native.PixelFormat), *[ctypes.c_uint8] * 3
)


@pytest.mark.parametrize(
    "masks",
    ALL_MASKS
    + (
        (0xF800, 0x7E0, 0x1F, 0),
        (0xF000, 0xF00, 0xF0, 0xF),
        (0x3FF00000, 0xFFC00, 0x3FF, 0),
        (0xFF, 0, 0, 0),
    ),
)
def test_colours_are_mapped_as_sdl_maps_them(screen, masks):
    guarded = GuardedSurface(301, 301, 301 * 4, masks, 1)
    larkspur.set_SDL_screen(guarded.surface)
    form = native.sdl_surface(guarded.surface).format
    expected = []
    for t in itertools.islice(model.fractions(300), 300):
        mixed = model.between(0xFE8040, 0x1234FF, int(255.0 * t))
        expected.append(MAP_RGB(form, mixed & 255, mixed >> 8 & 255, mixed >> 16))
    larkspur.fast_draw_rectangle_color(
        0, 0, 300, 300, 0xFE8040, 0xFE8040, 0x1234FF, 0x1234FF, 1.0, 0
    )
    assert guarded.words()[:-1, 0].tolist() == expected
    larkspur.fast_draw_rectangle_color(0, 0, 300, 300, 0xFE8040, 0x1234FF, 0, 0xFF, 1.0, 0)
    assert guarded.words()[0, :-1].tolist() == expected
    larkspur.set_SDL_screen(screen)
    guarded.free()


def test_arguments_of_a_rectangle(screen):
    good = [0, 0, 9, 9, RED, RED, BLUE, BLUE, 1.0, 0]
    for i in range(len(good)):
        with pytest.raises(TypeError):
            larkspur.fast_draw_rectangle_color(*(good[:i] + ["x"] + good[i + 1 :]))
    with pytest.raises(TypeError):
        larkspur.fast_draw_rectangle_color(*good[:-1])
    larkspur.fast_draw_rectangle_color(*(good[:4] + [2**32 + RED, RED, BLUE, BLUE, 1.0, 0]))


# ---- draw_rectangle


def set_view(xscale, yscale):
    native.variable(ctypes.c_double, "g_view_xscale").value = xscale
    native.variable(ctypes.c_double, "g_view_yscale").value = yscale


class RecordingScreen(pygame.Surface):
    """A Surface that keeps the arguments of fill() and can refuse them."""

    error = None

    def fill(self, *arguments):
        self.filled = arguments
        if self.error is not None:
            raise self.error


@pytest.fixture
def props(host, display):
    """The host's drawing properties, with a display behind them that shows a room without views."""
    larkspur.Room_Draw(rooms.make_room(), display)
    display.fill((0, 0, 0))
    host.gmapi.__dict__["__color_to_int"] = host.recorder("__color_to_int")
    host.results["__color_to_int"] = 0x123456
    host.register(larkspur)
    return host.gmapi.py_draw_props


@pytest.fixture
def recording_screen(props):
    screen = RecordingScreen((320, 240), 0, 32)
    larkspur.set_SDL_screen(screen)
    return screen


def test_opaque_rectangle_is_the_screens_fill(props, display):
    props.color = (10, 20, 30)
    assert larkspur.draw_rectangle(5, 6, 25, 16) is None
    expected = numpy.zeros((240, 320), numpy.uint32)
    expected[6:16, 5:25] = 0x0A141E
    assert_same_words(words(display), expected, "opaque")


def test_fill_gets_colour_and_rectangle(props, recording_screen):
    props.color = colour = (1, 2, 3)
    larkspur.draw_rectangle(5.25, 6.5, 25, 17)
    assert recording_screen.filled == ((1, 2, 3), (5.0, 7.0, 20.0, 10.0))
    assert recording_screen.filled[0] is colour
    assert [type(number) for number in recording_screen.filled[1]] == [float] * 4


@pytest.mark.parametrize(
    "given, rounded",
    [
        (0.5, 1.0),
        (-0.5, -1.0),
        (1.5, 2.0),
        (2.5, 3.0),
        (-2.5, -3.0),
        (0.49, 0.0),
        (-0.49, 0.0),
        (7.0, 7.0),
        (1e6, 1e6),
    ],
)
def test_coordinates_round_halves_away_from_zero(props, recording_screen, given, rounded):
    larkspur.draw_rectangle(given, 0, given, 0)
    assert recording_screen.filled[1] == (rounded, 0.0, 0.0, 0.0)
    larkspur.draw_rectangle(0, given, 0, given)
    assert recording_screen.filled[1] == (0.0, rounded, 0.0, 0.0)


def test_coordinates_are_scaled_by_the_axis(props, recording_screen):
    set_view(2.0, 0.5)
    larkspur.draw_rectangle(3, 5, 10, 16)
    assert recording_screen.filled[1] == (6.0, 3.0, 14.0, 5.0)  # 2.5 and 8 rounded


def test_no_view_yet_draws_at_the_corner(props, recording_screen):
    set_view(0.0, 0.0)
    larkspur.draw_rectangle(3, 5, 10, 16)
    assert recording_screen.filled[1] == (0.0, 0.0, 0.0, 0.0)


@pytest.mark.parametrize("outline", [0, 0.0, 0.49, -0.49, float("nan"), 1e-9])
def test_flag_below_one_half_fills(props, recording_screen, host, outline):
    draw_rect(host)
    larkspur.draw_rectangle(1, 2, 4, 6, outline)
    assert recording_screen.filled[1] == (1.0, 2.0, 3.0, 4.0)
    assert host.named("rect") == []


def draw_rect(host):
    """Puts a recorder in the place of pygame.draw.rect."""
    host.gmapi.pygame = host_support.Plain(
        draw=host_support.Plain(rect=host.recorder("rect")), Surface=pygame.Surface
    )
    host.register(larkspur)


@pytest.mark.parametrize("outline", [0.5, -0.5, 1, -3.0, float("inf")])
def test_flag_of_one_half_or_more_outlines(props, recording_screen, host, outline):
    draw_rect(host)
    assert larkspur.draw_rectangle(1, 2, 4, 6, outline) is None
    assert not hasattr(recording_screen, "filled")
    (arguments,) = host.named("rect")
    assert arguments[0] is recording_screen and arguments[1] is props.color
    assert arguments[2:] == ((1.0, 2.0, 3.0, 4.0), 1) and type(arguments[3]) is int


def test_outline_is_pygames(props, display):
    larkspur.draw_rectangle(5, 6, 9, 12, 1)
    expected = numpy.zeros((240, 320), numpy.uint32)
    expected[6:12, 5:9] = 0xFFFFFF
    expected[7:11, 6:8] = 0
    assert_same_words(words(display), expected, "outline")


def test_failing_fill_writes_a_line_and_keeps_the_exception(props, recording_screen, capfd):
    recording_screen.error = KeyError("no paint")
    with pytest.raises(KeyError) as raised:
        larkspur.draw_rectangle(1, 2, 4, 6)
    assert raised.value is recording_screen.error
    assert capfd.readouterr() == ("", "An error occurred filling surface.\n")


def test_failing_outline_writes_its_numbers(props, recording_screen, host, capfd):
    draw_rect(host)
    host.results["rect"] = error = KeyError("no pen")
    with pytest.raises(KeyError) as raised:
        larkspur.draw_rectangle(1.5, -2, 4, 6.25, 1)
    assert raised.value is error
    assert capfd.readouterr() == (
        "",
        "An error occurred calling pygame.draw.rect(screen,color,"
        "2.000000,-2.000000,2.000000,8.000000,1).\n",
    )


@pytest.mark.parametrize(
    "alpha",
    [
        0.5,
        0.0,
        0.999,
        1.0 + 2.0**-52,
        1.0 - 2.0**-53,
        2.0,
        -1.0,
        -0.25,
        1e300,
        float("inf"),
        float("nan"),
    ],
)
def test_translucent_rectangle_is_blended(props, display, host, alpha):
    put_words(display, random_words(320, 240, 4))
    props.alpha = alpha
    props.color = colour = (9, 8, 7)
    picture = picture_of(display)
    byte = model.truncated(alpha * 255.0) & 255
    model.fill_translucent(picture, 3, -4, 50, 20, 0x123456, byte)
    assert larkspur.draw_rectangle(2.5, -4, 50, 20) is None
    assert_same_words(words(display), picture.words(), "blended")
    assert host.named("__color_to_int") == [(colour,)]
    assert host.named("__color_to_int")[0][0] is colour


def test_alpha_is_a_double(props, recording_screen, host):
    props.alpha = 1.0 - 2.0**-40  # a single float would make it 1.0
    larkspur.draw_rectangle(0, 0, 9, 9)
    assert not hasattr(recording_screen, "filled") and host.named("__color_to_int")
    # So close below a whole byte that single floats, of the alpha or of the product, reach it.
    host.results["__color_to_int"] = 0xFFFFFF
    for byte in (13, 22, 45, 62):
        put_words(recording_screen, numpy.zeros((240, 320), numpy.uint32))
        props.alpha = byte / 255.0 - 1e-9
        assert int(numpy.float32(props.alpha) * numpy.float32(255)) == byte
        larkspur.draw_rectangle(0, 0, 9, 9)
        assert words(recording_screen)[0, 0] & 255 == 255 * (byte - 1) // 256


def test_alpha_is_whatever_has_a_float_value(props, display, host):
    class Half(object):
        def __float__(self):
            return 0.5

    props.alpha = Half()
    host.results["__color_to_int"] = 0xFF
    larkspur.draw_rectangle(0, 0, 2, 2)
    assert words(display)[0, 0] == 0xFF * 127 // 256
    props.alpha = 1
    larkspur.draw_rectangle(0, 0, 2, 2)
    assert words(display)[0, 0] == 0xFFFFFF


@pytest.mark.parametrize(
    "result, word",
    [
        (0x00ABCDEF, 0xABCDEF),
        (0xFFABCDEF, 0xABCDEF),
        (-1, 0xFFFFFF),
        (2**40 + 5, 5),
        (2**70 + 6, 6),
        (12.9, 12),
        (True, 1),
    ],
)
def test_colour_of_the_host_becomes_an_integer(props, display, host, result, word):
    props.alpha = 0.5
    host.results["__color_to_int"] = result
    larkspur.draw_rectangle(0, 0, 2, 2)
    assert words(display)[0, 0] == model.multalpha(word, 127)


def test_translucent_outline_fails_without_an_exception(props, display, host, capfd):
    props.alpha = 0.5
    for outline in (1, 0.25, -0.1, 1e-30, float("nan")):
        with pytest.raises(SystemError):
            larkspur.draw_rectangle(0, 0, 9, 9, outline)
        assert capfd.readouterr() == ("", "Can't do alphablending on outline rectangles yet.\n")
    assert not words(display).any() and host.named("__color_to_int") == []


def test_flag_too_small_for_a_single_float_is_not_set(props, display, host):
    props.alpha = 0.5
    assert larkspur.draw_rectangle(0, 0, 9, 9, 1e-60) is None


def test_coordinates_are_not_swapped(props, display, host):
    props.alpha = 0.5
    larkspur.draw_rectangle(9, 9, 0, 0)
    assert not words(display).any()


@pytest.mark.parametrize(
    "rectangle, filled",
    [
        ((-32769, 0, 9, 9), (0, 0, 9, 9)),
        ((0, -1e9, 9, 9), (0, 0, 9, 9)),
        # What is no number, and what no integer holds, is the smallest of all.
        ((float("nan"), 0, 9, 9), (0, 0, 9, 9)),
        ((0, 1e30, 9, 9), (0, 0, 9, 9)),
        ((0, 0, 1e30, 9), (0, 0, 0, 0)),
    ],
)
def test_translucent_fill_takes_any_corner(props, display, host, rectangle, filled):
    props.alpha = 0.5
    picture = picture_of(display)
    model.fill_translucent(picture, *(filled + (0x123456, 127)))
    larkspur.draw_rectangle(*rectangle)
    assert_same_words(words(display), picture.words(), "any-corner")


def test_view_position_is_the_offset(props, recording_screen):
    """(c - o) * s is rounded and o added, so that the result may leave whole pixels."""
    room = rooms.make_view_room()
    rooms.set_view(room, 0, xview=100, yview=40.5, wview=160, hview=120, wport=320, hport=360)
    larkspur.Room_Draw(room, recording_screen)
    larkspur.draw_rectangle(110, 50.5, 130.25, 60.5)
    # Scales 2 and 3: 100 + 20, 40.5 + 30, 100 + round(60.5), 40.5 + 60.
    assert recording_screen.filled[1] == (120.0, 70.5, 41.0, 30.0)
    larkspur.Room_Draw(rooms.make_room(), recording_screen)
    larkspur.draw_rectangle(110, 50.5, 130.25, 60.5)
    assert recording_screen.filled[1] == (110.0, 51.0, 20.0, 10.0)


def test_offset_is_truncated_with_the_coordinate(props, recording_screen, host):
    """Translucent: whole pixels are taken from the sum, not from its parts."""
    props.alpha = 0.5
    room = rooms.make_view_room()
    rooms.set_view(room, 0, xview=2.75, yview=-1.5)
    larkspur.Room_Draw(room, recording_screen)
    put_words(recording_screen, random_words(320, 240, 5))
    picture = picture_of(recording_screen)
    # x: round(7.25) + 2.75 = 9.75; round(17.25) + 2.75 = 19.75. y: round(6.5) - 1.5 = 5.5;
    # round(11.5) - 1.5 = 10.5.
    model.fill_translucent(picture, 9, 5, 19, 10, 0x123456, 127)
    larkspur.draw_rectangle(10, 5, 20, 10)
    assert_same_words(words(recording_screen), picture.words(), "offset")


# ---- hosts that fail, mutate and re-enter


def raising(error):
    def get(self):
        raise error

    return property(get)


@pytest.mark.parametrize("name", ["alpha", "color"])
@pytest.mark.parametrize("alpha", [1.0, 0.5])
def test_failing_property(props, display, host, capfd, name, alpha):
    error = KeyError(name)
    host.gmapi.py_draw_props = type(
        "Props", (object,), {"alpha": alpha, "color": (1, 2, 3), name: raising(error)}
    )()
    host.register(larkspur)
    with pytest.raises(KeyError) as raised:
        larkspur.draw_rectangle(0, 0, 9, 9)
    assert raised.value is error
    assert capfd.readouterr() == ("", "") and not words(display).any()


def test_missing_properties(props, display, host):
    host.gmapi.py_draw_props = object()
    host.register(larkspur)
    with pytest.raises(AttributeError):
        larkspur.draw_rectangle(0, 0, 9, 9)


def test_what_drawing_needs_is_named_where_it_was_never_given():
    out, _ = subprocess_python.output("""
        from support import host
        host.install_modules()
        import larkspur, pygame
        def draw(*flag):
            try:
                larkspur.draw_rectangle(0, 0, 9, 9, *flag)
            except RuntimeError as error:
                print(error)
        draw()
        recording = host.RecordingHost(None)
        recording.gmapi.pygame = None
        try:
            recording.register(larkspur)
            for _ in (1,):  # raises what registering left
                pass
        except AttributeError:
            pass
        draw()
        draw(1)
        recording.gmapi.py_draw_props.alpha = 0.5
        recording.gmapi.__dict__["__color_to_int"] = lambda colour: 5
        draw()
        recording.gmapi.py_draw_props.alpha = 1.0
        larkspur.set_SDL_screen(pygame.Surface((9, 9), 0, 32))
        draw(1)
    """)
    assert [line.split(" needs ")[1].split(":")[0] for line in out.decode().splitlines()] == [
        "gmapi.py_draw_props",
        "a display",
        "a display",
        "a display",
        "pygame.draw.rect",
    ]


def test_alpha_without_a_float_value(props, display):
    props.alpha = "much"
    with pytest.raises(TypeError):
        larkspur.draw_rectangle(0, 0, 9, 9)


def test_failing_colour_conversion(props, display, host):
    props.alpha = 0.5
    host.results["__color_to_int"] = error = KeyError("colour")
    with pytest.raises(KeyError) as raised:
        larkspur.draw_rectangle(0, 0, 9, 9)
    assert raised.value is error
    host.results["__color_to_int"] = None
    with pytest.raises(TypeError):
        larkspur.draw_rectangle(0, 0, 9, 9)
    del host.gmapi.__dict__["__color_to_int"]
    with pytest.raises(AttributeError):
        larkspur.draw_rectangle(0, 0, 9, 9)
    assert not words(display).any()


def closing(value):
    def get(self):
        pygame.display.quit()
        return value

    return property(get)


@pytest.mark.parametrize("outline", [0, 1])
@pytest.mark.parametrize("alpha", [1.0, 0.5])
@pytest.mark.parametrize("name", ["alpha", "color"])
def test_property_that_closes_the_display(props, display, host, name, alpha, outline):
    values = {"alpha": alpha, "color": (1, 2, 3)}
    values[name] = closing(values[name])
    host.gmapi.py_draw_props = type("Props", (object,), values)()
    host.register(larkspur)
    with pytest.raises((RuntimeError, pygame.error, SystemError)):
        larkspur.draw_rectangle(0, 0, 9, 9, outline)


class Colour(object):
    """A sequence, or list, or tuple of channels that acts each time it is asked."""

    def __init__(self, act, channels=(1, 2, 3)):
        self.act, self.channels = act, channels

    def __len__(self):
        return len(self.channels)

    def __getitem__(self, index):
        self.act()
        return self.channels[index]


class Channel(object):
    """A number that acts when it is asked."""

    def __init__(self, act, value=1):
        self.act, self.value = act, value

    def __int__(self):
        self.act()
        return self.value

    __long__ = __int__


ACTING_COLOURS = [
    Colour,
    lambda act: (Channel(act), 2, 3),
    lambda act: [1, 2, 3, Channel(act, 255)],
    lambda act: (Colour(act),),
    lambda act: larkspur.InstanceList((Channel(act), 2, 3)),
]


@pytest.mark.parametrize("outline", [0, 1])
@pytest.mark.parametrize("make", ACTING_COLOURS)
def test_colour_that_closes_the_display_when_it_is_read(props, display, make, outline):
    """pygame has the display's surface in hand while it reads a colour."""
    props.color = make(pygame.display.quit)
    with pytest.raises((RuntimeError, pygame.error)):
        larkspur.draw_rectangle(0, 0, 9, 9, outline)


@pytest.mark.parametrize("outline", [0, 1])
@pytest.mark.parametrize("make", ACTING_COLOURS)
def test_colours_of_every_kind_of_sequence(props, display, make, outline):
    props.color = make(lambda: None)
    larkspur.draw_rectangle(0, 0, 9, 9, outline)
    assert words(display)[0, 0] == 0x010203


@pytest.mark.parametrize(
    "colour",
    [5, 2**32, True, (1, 2, 3), [1, 2.0, 3], pygame.Color(1, 2, 3, 4), "red", (), (1, 2, 3, 4, 5)],
)
def test_colours_that_run_no_code_are_passed_on_as_they_are(props, recording_screen, host, colour):
    props.color = colour
    larkspur.draw_rectangle(0, 0, 9, 9)
    assert recording_screen.filled[0] is colour
    draw_rect(host)
    larkspur.draw_rectangle(0, 0, 9, 9, 1)
    assert host.named("rect")[0][1] is colour


@pytest.mark.parametrize("outline", [0, 1])
@pytest.mark.parametrize(
    "colour",
    [
        None,
        object(),
        (1, 2),
        Colour(lambda: None, (1, 2)),
        Colour(lambda: None, (1, 2, 256)),
        Colour(lambda: None, (1, 2, -1)),
        Colour(lambda: None, (1, 2, "x")),
        Colour(lambda: 1 // 0),
        (Channel(lambda: 1 // 0), 2, 3),
        (5,),
    ],
)
def test_what_is_no_colour_is_refused_by_pygame(props, display, colour, outline):
    props.color = colour
    with pytest.raises((TypeError, ValueError)) as raised:
        larkspur.draw_rectangle(0, 0, 9, 9, outline)
    assert str(raised.value) == "invalid color argument"
    assert not words(display).any()


def test_screen_that_shrinks_when_its_fill_is_fetched(props):
    """Its part is looked at after that."""

    class Owner(pygame.Surface):
        def __getattribute__(self, name):
            if name == "fill":
                owner.__init__((1, 1), 0, 32)
            return pygame.Surface.__getattribute__(self, name)

    owner = Owner((64, 64), 0, 32)
    larkspur.set_SDL_screen(owner.subsurface((8, 8, 40, 40)))
    with pytest.raises(RuntimeError):
        larkspur.draw_rectangle(0, 0, 40, 40)


def test_colour_conversion_that_closes_the_display(props, display, host):
    props.alpha = 0.5

    def convert(colour):
        pygame.display.quit()
        return 5

    host.gmapi.__dict__["__color_to_int"] = convert
    with pytest.raises(RuntimeError) as raised:
        larkspur.draw_rectangle(0, 0, 9, 9)
    assert "draw_rectangle()" in str(raised.value)


def test_colour_conversion_that_replaces_everything(props, display, host):
    """Screen, properties and the converter itself are dropped while they are in use."""
    props.alpha = 0.5
    other = pygame.Surface((20, 20), 0, 32)

    def convert(colour):
        del host.gmapi.__dict__["__color_to_int"]
        host.gmapi.py_draw_props = host_support.Plain(color=(0, 0, 0), alpha=1.0)
        host.register(larkspur)
        larkspur.set_SDL_screen(other)
        return 0xFFFFFF

    host.gmapi.__dict__["__color_to_int"] = convert
    larkspur.draw_rectangle(0, 0, 9, 9)
    assert words(other)[0, 0] == model.multalpha(0xFFFFFF, 127)
    assert not words(display).any()


def test_colour_getter_that_replaces_the_screen(props, display, host):
    other = RecordingScreen((20, 20), 0, 32)

    class Props(object):
        alpha = 1.0

        @property
        def color(self):
            larkspur.set_SDL_screen(other)
            return (1, 2, 3)

    host.gmapi.py_draw_props = Props()
    host.register(larkspur)
    larkspur.draw_rectangle(0, 0, 9, 9)
    assert other.filled == ((1, 2, 3), (0.0, 0.0, 9.0, 9.0))


def test_reentrant_fill(props, display):
    class Nested(RecordingScreen):
        depth = 0

        def fill(self, *arguments):
            self.depth += 1
            if self.depth < 5:
                larkspur.draw_rectangle(self.depth, 0, 9, 9)

    screen = Nested((20, 20), 0, 32)
    larkspur.set_SDL_screen(screen)
    assert larkspur.draw_rectangle(0, 0, 9, 9) is None
    assert screen.depth == 5


@pytest.mark.parametrize("outline", [0, 1])
def test_subsurface_of_a_closed_display(outline):
    """pygame's own functions would end the process."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, pending
        host.install_modules()
        import larkspur
        screen = pygame.display.set_mode((64, 48), 0, 32)
        host.RecordingHost(screen).register(larkspur)
        larkspur.set_SDL_screen(screen.subsurface((4, 5, 20, 10)))
        pygame.display.quit()
        print repr(pending.call(larkspur.draw_rectangle, 1, 2, 9, 8, %d).exception)
        """
        % outline
    )
    assert out.splitlines()[-1].startswith("RuntimeError('draw_rectangle() got a subsurface of")


@pytest.mark.parametrize("outline", [0, 1])
def test_screen_encoded_for_a_target_that_is_gone(outline):
    """SDL would look at that target again when pygame unlocks the screen."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, rooms, surfaces
        host.install_modules()
        import larkspur
        screen = pygame.Surface((30, 20), pygame.SRCALPHA, 32)
        host.RecordingHost(screen).register(larkspur)
        larkspur.Room_Draw(rooms.make_room(), screen)  # one to one
        larkspur.set_SDL_screen(screen)
        screen.fill((0, 0, 0, 0))
        surfaces.encode_by_alpha(screen)
        larkspur.draw_rectangle(5, 6, 25, 16, %d)
        print screen.get_at((5, 6)), screen.get_at((15, 11)), screen.get_at((4, 6))
        """
        % outline
    )
    inside = "(0, 0, 0, 0)" if outline else "(255, 255, 255, 255)"
    assert out.splitlines()[-1] == "(255, 255, 255, 255) %s (0, 0, 0, 0)" % inside


@pytest.mark.parametrize("outline", [0, 1])
def test_closed_display(props, display, outline):
    pygame.display.quit()
    with pytest.raises((RuntimeError, pygame.error)):
        larkspur.draw_rectangle(0, 0, 9, 9, outline)


@pytest.mark.parametrize(
    "outline, line",
    [
        (0, "An error occurred filling surface.\n"),
        (1, "An error occurred calling pygame.draw.rect(screen,color,"),
    ],
)
@pytest.mark.parametrize(
    "rectangle",
    [
        (float("nan"),) * 4,
        (float("inf"),) * 4,
        (float("-inf"), 0, float("inf"), 9),
        (-1e30, -1e30, 1e30, 1e30),
        (1e30, 0, -1e30, 9),
    ],
)
def test_coordinates_that_no_int_holds(props, display, capfd, rectangle, outline, line):
    """pygame 1.9 refuses them; pygame 2 casts them, which leaves a rectangle without an area."""
    if pygame.version.vernum < (2,):
        with pytest.raises((TypeError, ValueError)):
            larkspur.draw_rectangle(*(rectangle + (outline,)))
        printed, written = capfd.readouterr()
        assert printed == "" and written.startswith(line)
    else:
        assert larkspur.draw_rectangle(*(rectangle + (outline,))) is None
        assert capfd.readouterr() == ("", "")
    assert not words(display).any()


@pytest.mark.parametrize("outline", [0, 1])
def test_coordinates_far_outside_the_display(props, display, outline):
    for far in (40000, 1e6, 1e9):
        assert larkspur.draw_rectangle(-far, -far, far, far, outline) is None
        assert larkspur.draw_rectangle(far, far, -far, -far, outline) is None


def test_display_of_another_depth(props, host):
    surface = pygame.display.set_mode((20, 20), 0, 16)
    larkspur.set_SDL_screen(surface)
    assert larkspur.draw_rectangle(0, 0, 9, 9) is None  # pygame fills any depth
    props.alpha = 0.5
    with pytest.raises(ValueError) as raised:
        larkspur.draw_rectangle(0, 0, 9, 9)
    assert "draw_rectangle()" in str(raised.value)


def test_arguments_of_draw_rectangle(props):
    for arguments in ((), (1, 2, 3), (1, 2, 3, 4, 5, 6), ("x", 2, 3, 4), (1, 2, 3, 4, "x")):
        with pytest.raises(TypeError):
            larkspur.draw_rectangle(*arguments)


# ---- references


def assert_counts_stay(action, *objects):
    changes = leaks.count_changes(action, objects + (None,))
    assert changes[:-1] == [0] * len(objects)
    assert abs(changes[-1]) < 0.1  # None changes on its own, too


def test_counts_stay(props, display, host):
    surface = pygame.Surface((9, 9), 0, 32)
    assert_counts_stay(lambda: larkspur.fill_translucent(surface, 0, 0, 9, 9, 5, 5), surface)
    for kind, outline in (("vertical", 0), ("vertical", 1), ("four", 0), ("four", 1)):
        arguments = (0, 0, 9, 9) + KINDS[kind] + (1.0, outline)
        assert_counts_stay(lambda: larkspur.fast_draw_rectangle_color(*arguments), display)
    props.color = colour = (1, 2, 3)
    props.alpha = alpha = float("0.5")
    host.gmapi.__dict__["__color_to_int"] = convert = lambda colour: 5
    watched = (display, props, colour, alpha, convert)
    assert_counts_stay(lambda: larkspur.draw_rectangle(0, 0, 9, 9), *watched)
    props.alpha = alpha = float("1.0")
    for outline in (0, 1):
        assert_counts_stay(lambda: larkspur.draw_rectangle(0, 0, 9, 9, outline), *watched)


def test_counts_stay_when_calls_fail(props, recording_screen, host, capfd):
    recording_screen.error = error = KeyError("no paint")
    draw_rect(host)
    host.results["rect"] = error
    props.color = colour = (1, 2, 3)

    def fail(outline):
        del host.calls[:]
        with pytest.raises(KeyError):
            larkspur.draw_rectangle(0, 0, 9, 9, outline)
        recording_screen.filled = None

    for outline in (0, 1):
        leaks.assert_counts_unchanged(lambda: fail(outline), recording_screen, props, colour)
    capfd.readouterr()


@pytest.mark.parametrize(
    "name, docstring",
    [
        ("fill_translucent", "Draw a rectangle, possibly with alpha blending."),
        ("fast_draw_rectangle_color", "C core for draw_rectangle_color."),
        ("draw_rectangle", "Draw a rectangle."),
    ],
)
def test_docstrings(name, docstring):
    assert getattr(larkspur, name).__doc__ == docstring
