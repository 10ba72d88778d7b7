"""Vertical gradients stacked over what a surface shows."""

import itertools

import larkspur
import numpy
import pygame
import pytest
from models import gradient_model as model
from support import leaks, native
from support.pictures import assert_same_words, put_words, words
from support.surfaces import ABGR, ARGB, RGBA, XRGB, encode, surface_of

RED, GREEN, BLUE = 0x0000FF, 0x00FF00, 0xFF0000
WIDTH, HEIGHT = 37, 29

# Letters of the layers -> function and the values that follow the rectangle.
FUNCTIONS = {
    "vc": larkspur.fast_draw_gradients_vc,
    "vv": larkspur.fast_draw_gradients_vv,
    "vcv": larkspur.fast_draw_gradients_vcv,
    "vcvvc": larkspur.fast_draw_gradients_vcvvc,
}
COLOURS = (0x123456, 0xFEDCBA98, 0x00FF7F, 0xFFFFFFFF, 0xC0FFEE, 0x0180FF, 0x31415926)


def values_for(letters, opacities):
    colours = itertools.cycle(COLOURS)
    values = []
    for letter, opacity in zip(letters, opacities):
        values += [next(colours) for _ in range(2 if letter == "v" else 1)] + [opacity]
    return values


def check(surface, letters, rectangle, values, name="gradient"):
    """A call paints exactly what the model says."""
    picture = model.Picture.of(words(surface), surface)
    model.draw_layers(picture, letters, rectangle, values)
    assert FUNCTIONS[letters](surface, *(list(rectangle) + values)) is None
    assert_same_words(words(surface), picture.words(), name)


def check_alpha(surface, rectangle, top, bottom, alpha, name="gradient"):
    picture = model.Picture.of(words(surface), surface)
    model.draw_alpha(picture, rectangle, top, bottom, alpha)
    arguments = list(rectangle) + [top, bottom, alpha]
    assert larkspur.fast_draw_gradient_v(surface, *arguments) is None
    assert_same_words(words(surface), picture.words(), name)


# ---- by hand


def test_first_row_is_the_top_colour_and_the_last_one_step_short_of_the_bottom():
    surface = pygame.Surface((4, 20), 0, 32, XRGB)
    # Alpha 255 weighs 255/256; t = 1.0, 0.9, ... 0.1 make weights trunc(255 t) of the top colour.
    # The seventh is 101, not 102: 0.4 has become 0.40000007 - 0.00000009 by then.
    larkspur.fast_draw_gradient_v(surface, 1, 5, 3, 15, 0xFF, 0, 255)
    weights = [255, 229, 203, 178, 152, 127, 101, 76, 50, 25]
    reds = [255 * weight // 256 * 255 // 256 for weight in weights]
    t = numpy.float32(1)
    for row, weight in enumerate(weights):
        assert weight == int(numpy.float32(255) * t), row
        t -= numpy.float32(0.1)
    pixels = words(surface)
    assert [int(word) for word in pixels[5:15, 1]] == [red << 16 for red in reds]
    assert not pixels[:5].any() and not pixels[15:].any()
    assert not pixels[:, 0].any() and not pixels[:, 3].any()


def test_alpha_weighs_the_layer_and_its_complement_the_old_pixel():
    surface = pygame.Surface((3, 3), 0, 32, XRGB)
    put_words(surface, numpy.full((3, 3), 0x204060, numpy.uint32))
    larkspur.fast_draw_gradient_v(surface, 0, 0, 1, 1, 0xFF, 0xFF, 64)
    # 255 * 64 // 256 = 63 of red; 191 256ths of 0x20, 0x40, 0x60 are 23, 47, 71.
    assert words(surface)[0, 0] == ((63 + 23) << 16 | 47 << 8 | 71)


def test_shares_are_composed_from_the_last_layer_down():
    # Constant over gradient: share 0.5, and half of the other half; a quarter is kept.
    surface = pygame.Surface((3, 3), 0, 32, XRGB)
    put_words(surface, numpy.full((3, 3), 0x0000C0, numpy.uint32))
    larkspur.fast_draw_gradients_vc(surface, 0, 0, 1, 1, 0xFF, 0xFF, 0.5, 0x008000, 0.5)
    assert words(surface)[0, 0] == (255 * 64 // 256) << 16 | (0x80 * 128 // 256) << 8 | 0xC0 // 4


def test_constant_is_a_pixel_value_and_gradient_a_gm_colour():
    surface = pygame.Surface((3, 3), 0, 32, XRGB)
    larkspur.fast_draw_gradients_vc(surface, 0, 0, 1, 1, 0, 0, 0.0, 0xFF, 0.5)
    assert words(surface)[0, 0] == 0xFF // 2  # blue in this format
    larkspur.fast_draw_gradients_vc(surface, 1, 0, 2, 1, 0xFF, 0xFF, 0.5, 0, 0.0)
    assert words(surface)[0, 1] == (0xFF // 2) << 16  # red


def test_opaque_constant_wraps_every_weight_to_zero():
    surface = surface_of(WIDTH, HEIGHT)
    larkspur.fast_draw_gradients_vc(surface, 0, 0, 9, 9, RED, BLUE, 0.5, 0xFFFFFF, 1.0)
    assert not words(surface)[:9, :9].any()


def test_constants_are_added_without_a_limit():
    # Shares from the last layer down: 1.75, weight 448 - 256; then 0.25 * -0.75, weight -48 + 256.
    surface = pygame.Surface((3, 3), 0, 32, XRGB)
    larkspur.fast_draw_gradients_vcvvc(
        surface, 0, 0, 1, 1, 0, 0, 0.0, 0xFFFFFF, 0.25, 0, 0, 0.0, 0, 0, 0.0, 0xFFFFFF, 1.75
    )
    assert words(surface)[0, 0] == (255 * 192 // 256 + 255 * 208 // 256) * 0x10101


@pytest.mark.parametrize("letters", ["vc", "vv", "vcvvc"])
def test_no_opacity_at_all_turns_the_rectangle_black(letters):
    surface = surface_of(WIDTH, HEIGHT)
    FUNCTIONS[letters](surface, 2, 3, 9, 9, *values_for(letters, [0.0] * 5))
    assert not words(surface)[3:9, 2:9].any()


def test_no_opacity_at_all_keeps_255_256ths_in_vcv():
    surface = surface_of(WIDTH, HEIGHT)
    before = words(surface)
    larkspur.fast_draw_gradients_vcv(surface, 2, 3, 9, 9, *values_for("vcv", [0.0] * 3))
    expected = before.copy()
    for y in range(3, 9):
        for x in range(2, 9):
            expected[y, x] = model.multalpha(int(before[y, x]), 255)
    assert_same_words(words(surface), expected, "vcv-transparent")


def test_vcv_scales_its_shares_by_255():
    # Last 0.5: 127. Middle 0.5 of the other half: trunc(63.75) = 63. First nothing.
    # Keep is 255 - trunc(0.75 * 255) = 64.
    surface = pygame.Surface((3, 3), 0, 32, XRGB)
    put_words(surface, numpy.full((3, 3), 0x000080, numpy.uint32))
    larkspur.fast_draw_gradients_vcv(surface, 0, 0, 1, 1, 0, 0, 0.0, 0x008000, 0.5, 0xFF, 0xFF, 0.5)
    red, green, blue = 255 * 127 // 256, 0x80 * 63 // 256, 0x80 * 64 // 256
    assert words(surface)[0, 0] == red << 16 | green << 8 | blue


def test_painted_pixels_lose_their_top_byte():
    surface = surface_of(WIDTH, HEIGHT, ARGB)
    before = words(surface)
    assert (before[:-1, :-1] >> 24).any()
    larkspur.fast_draw_gradient_v(surface, 0, 0, WIDTH, HEIGHT, 0xFFFFFF, 0, 100)
    after = words(surface)
    assert not (after[:-1, :-1] >> 24).any()
    assert (after[-1] == before[-1]).all() and (after[:, -1] == before[:, -1]).all()


def test_last_column_and_row_are_never_painted():
    surface = pygame.Surface((8, 8), 0, 32, XRGB)
    surface.fill((255, 255, 255))
    larkspur.fast_draw_gradient_v(surface, 0, 0, 8, 8, 0, 0, 255)
    pixels = words(surface)
    assert not pixels[:7, :7].any()
    assert (pixels[7] == 0xFFFFFF).all() and (pixels[:, 7] == 0xFFFFFF).all()


def test_step_comes_from_the_unclamped_bottom():
    # 100 rows asked for, 9 drawn: the last is at t = 0.92.
    surface = pygame.Surface((3, 10), 0, 32, XRGB)
    larkspur.fast_draw_gradient_v(surface, 0, 0, 2, 100, 0xFF, 0, 255)
    assert words(surface)[8, 0] >> 16 == 255 * int(255 * 0.92) // 256 * 255 // 256


# ---- against the model


@pytest.mark.parametrize("masks", [XRGB, ARGB, RGBA, ABGR], ids=["XRGB", "ARGB", "RGBA", "ABGR"])
@pytest.mark.parametrize("letters", sorted(FUNCTIONS))
def test_every_format_and_function(letters, masks):
    check(
        surface_of(WIDTH, HEIGHT, masks),
        letters,
        (3, 2, 30, 27),
        values_for(letters, (0.3, 0.55, 0.21, 0.8, 0.4)),
    )


@pytest.mark.parametrize("masks", [XRGB, ARGB, RGBA, ABGR], ids=["XRGB", "ARGB", "RGBA", "ABGR"])
def test_every_format_with_an_alpha(masks):
    check_alpha(surface_of(WIDTH, HEIGHT, masks), (3, 2, 30, 27), COLOURS[0], COLOURS[1], 77)


OPACITIES = (
    0.0,
    0.001953125,
    0.1,
    1 / 3.0,
    0.5,
    0.7,
    0.99,
    1.0,
    1.5,
    -0.25,
    1e30,
    -1e30,
    float("inf"),
    float("nan"),
)


@pytest.mark.parametrize("letters", ["vc", "vv"])
def test_every_pair_of_opacities(letters):
    for opacities in itertools.product(OPACITIES, repeat=2):
        check(
            surface_of(5, 6),
            letters,
            (0, 0, 5, 6),
            values_for(letters, opacities),
            "%s-opacities" % letters,
        )


@pytest.mark.parametrize("letters", ["vcv", "vcvvc"])
def test_many_opacities_of_more_layers(letters):
    generator = numpy.random.RandomState(5)
    for _ in range(150):
        opacities = [OPACITIES[i] for i in generator.randint(0, len(OPACITIES), len(letters))]
        check(
            surface_of(5, 6),
            letters,
            (0, 0, 5, 6),
            values_for(letters, opacities),
            "%s-opacities" % letters,
        )


# Opacities whose weights come out one different when the shares are rounded in another way: when
# what remains is multiplied down instead of subtracted from, or the two forms are exchanged.
@pytest.mark.parametrize(
    "letters, opacities",
    [
        ("vv", (0.85, 0.375)),
        ("vv", (0.375, 0.8)),
        ("vc", (0.85, 0.375)),
        ("vc", (0.375, 0.8)),
        ("vcvvc", (0.59, 0.02, 0.39, 0.15, 0.25)),
        ("vcvvc", (0.99, 0.33, 0.1, 0.21, 0.18)),
        ("vcvvc", (0.75, 0.69921875, 0.6953125, 0.05859375, 0.3359375)),
        ("vcv", (1.0, 0.2, 0.75)),
        ("vcv", (0.0, 0.2, 0.0)),
        ("vcv", (0.337, 0.165, 0.345)),
        ("vcv", (0.6666667, 0.33333334, 0.25882354)),
    ],
)
def test_rounding_of_every_share(letters, opacities):
    surface = surface_of(300, 5)
    ramp = numpy.arange(300, dtype=numpy.uint32) % 256 * 0x10101
    put_words(surface, numpy.tile(ramp, (5, 1)))
    values = values_for(letters, opacities)
    white = [0xFFFFFF if isinstance(value, int) else value for value in values]
    check(surface, letters, (0, 0, 300, 5), white, "share")
    check(surface_of(WIDTH, HEIGHT), letters, (0, 0, WIDTH, HEIGHT), values, "share")


@pytest.mark.parametrize("alpha", [0, 1, 127, 128, 254, 255, 256, 511, -1, -256, 2**31 - 1])
def test_alpha_counts_by_its_low_byte(alpha):
    check_alpha(surface_of(WIDTH, HEIGHT), (1, 1, 30, 20), COLOURS[0], COLOURS[3], alpha)


@pytest.mark.parametrize("length", [1, 2, 3, 7, 28, 51, 85, 255, 1000, 16777217, 2**31 - 1])
def test_fraction_is_stepped_in_single_precision(length):
    surface = surface_of(3, 300)
    check_alpha(surface, (0, 0, 3, length), 0xFFFFFF, 0, 255, "length-%d" % length)


RECTANGLES = [
    (0, 0, WIDTH, HEIGHT),
    (0, 0, WIDTH - 1, HEIGHT - 1),
    (-5, -7, 20, 20),
    (-5, 3, 50, 9),
    (4, -32768, 20, 20),
    (-32768, 4, 20, 20),
    (-32769, 4, 20, 20),
    (-(2**31), -32768, 2**31 - 1, 2**31 - 1),
    (10, 10, 10, 20),
    (10, 10, 20, 10),
    (20, 20, 10, 10),
    (10, 20, 20, 10),
    (20, 10, 10, 20),
    (WIDTH - 1, 0, WIDTH, HEIGHT),
    (0, HEIGHT - 1, WIDTH, HEIGHT),
    (WIDTH, 0, WIDTH + 9, HEIGHT),
    (0, HEIGHT, WIDTH, HEIGHT + 9),
    (2**31 - 1, 2**31 - 1, 2**31 - 1, 2**31 - 1),
    (0, 0, -(2**31), -(2**31)),
    (0, 0, -5, 10),
    (0, 0, 10, -5),
    (0, 5, 10, 2**31 - 1),
    (-20, -20, -10, -10),
    (-1, -1, 1, 1),
    (0, 0, 1, 1),
]


@pytest.mark.parametrize("rectangle", RECTANGLES)
def test_every_place_of_the_rectangle(rectangle):
    check_alpha(surface_of(WIDTH, HEIGHT), rectangle, COLOURS[0], COLOURS[1], 99, "place")
    for letters in sorted(FUNCTIONS):
        check(
            surface_of(WIDTH, HEIGHT),
            letters,
            rectangle,
            values_for(letters, (0.2, 0.3, 0.4, 0.5, 0.6)),
            "place-%s" % letters,
        )


@pytest.mark.parametrize("size", [(0, 0), (0, 5), (5, 0)])
def test_surfaces_without_area(size):
    whole = surface_of(9, 9)
    before = words(whole)
    part = whole.subsurface((2, 2) + size)
    larkspur.fast_draw_gradient_v(part, 0, 0, 9, 9, RED, BLUE, 99)
    assert_same_words(words(whole), before, "without-area")


@pytest.mark.parametrize("size", [(1, 1), (1, 5), (5, 1), (2, 2)])
def test_small_surfaces(size):
    check_alpha(surface_of(*size), (0, 0, 9, 9), RED, BLUE, 99)


# ---- surfaces as they come


def test_part_of_a_surface_is_painted_in_its_place():
    parent = surface_of(WIDTH, HEIGHT)
    before = words(parent)
    check(parent.subsurface((5, 6, 20, 10)), "vv", (-2, -3, 30, 30), values_for("vv", (0.4, 0.6)))
    outside = numpy.ones((HEIGHT, WIDTH), bool)
    outside[6:16, 5:25] = False
    assert (words(parent)[outside] == before[outside]).all()


def test_encoded_surface_is_decoded_painted_and_encoded_again():
    surface = surface_of(WIDTH, HEIGHT)
    encode(surface)
    check(surface, "vcv", (0, 0, 30, 20), values_for("vcv", (0.4, 0.6, 0.2)))
    check_alpha(surface, (0, 0, 30, 20), RED, BLUE, 80)
    assert surface.get_locks() == () and native.sdl_surface(surface).locked == 0
    encode(surface)


def test_part_of_an_encoded_surface():
    parent = surface_of(WIDTH, HEIGHT)
    part = parent.subsurface((5, 6, 20, 10))
    encode(parent)
    check_alpha(part, (0, 0, 30, 20), RED, BLUE, 80)
    assert parent.get_locks() == () and part.get_locks() == ()
    encode(parent)


def test_locks_of_the_caller_stay(display):
    surface = surface_of(WIDTH, HEIGHT)
    surface.lock()
    check_alpha(surface, (0, 0, 30, 20), RED, BLUE, 80)
    assert surface.get_locked()
    surface.unlock()


def test_surface_subclass_is_a_surface():
    class Canvas(pygame.Surface):
        pass

    surface = Canvas((4, 4), 0, 32, XRGB)
    larkspur.fast_draw_gradient_v(surface, 0, 0, 3, 3, 0xFF, 0xFF, 255)
    assert words(surface)[0, 0] == (255 * 255 // 256) << 16


def test_surface_on_any_address():
    memory = numpy.zeros(4 * 8 * 6 + 1, numpy.uint8)
    surface = pygame.image.frombuffer(buffer(memory, 1), (8, 6), "RGBX")
    assert native.sdl_surface(surface).pixels % 4
    larkspur.fast_draw_gradient_v(surface, 0, 0, 8, 6, 0xFF, 0xFF, 255)
    assert memory[1] == 254 and memory[0] == 0


# ---- bad input

ALL = [("fast_draw_gradient_v", [RED, BLUE, 50])] + [
    ("fast_draw_gradients_" + letters, values_for(letters, [0.5] * 5))
    for letters in sorted(FUNCTIONS)
]


@pytest.mark.parametrize("name, values", ALL, ids=[name for name, _ in ALL])
class TestBadInput(object):
    def test_other_depths(self, name, values):
        for depth in (8, 16, 24):
            surface = pygame.Surface((9, 9), 0, depth)
            before = surface.get_buffer().raw
            with pytest.raises(ValueError) as raised:
                getattr(larkspur, name)(surface, 0, 0, 9, 9, *values)
            assert name in str(raised.value) and str(depth) in str(raised.value)
            assert surface.get_buffer().raw == before

    def test_no_surface(self, name, values):
        for wrong in (None, 5, "surface", pygame.Rect(0, 0, 1, 1), pygame.Surface):
            with pytest.raises(TypeError) as raised:
                getattr(larkspur, name)(wrong, 0, 0, 9, 9, *values)
            assert name in str(raised.value) and type(wrong).__name__ in str(raised.value)

    def test_corner_below_the_range(self, name, values):
        surface = surface_of(WIDTH, HEIGHT)
        before = words(surface)
        for y1 in (-32769, -(2**31)):
            with pytest.raises(ValueError) as raised:
                getattr(larkspur, name)(surface, 0, y1, 9, 9, *values)
            assert name in str(raised.value) and str(y1) in str(raised.value)
        assert (words(surface) == before).all()

    def test_wrong_number_of_arguments(self, name, values):
        surface = surface_of(WIDTH, HEIGHT)
        for arguments in (
            [],
            [surface, 0, 0, 9, 9] + values[:-1],
            [surface, 0, 0, 9, 9] + values + [1],
        ):
            with pytest.raises(TypeError):
                getattr(larkspur, name)(*arguments)

    def test_every_argument_of_a_wrong_type(self, name, values):
        surface = surface_of(WIDTH, HEIGHT)
        before = words(surface)
        good = [surface, 0, 0, 9, 9] + values
        for i in range(1, len(good)):
            with pytest.raises(TypeError):
                getattr(larkspur, name)(*(good[:i] + ["x"] + good[i + 1 :]))
        assert (words(surface) == before).all()

    def test_closed_display(self, name, values, display):
        part = display.subsurface((0, 0, 9, 9))
        pygame.display.quit()
        for surface in (display, part):
            with pytest.raises(RuntimeError) as raised:
                getattr(larkspur, name)(surface, 0, 0, 9, 9, *values)
            assert name in str(raised.value)

    def test_counts_stay(self, name, values):
        surface = surface_of(WIDTH, HEIGHT)
        function = getattr(larkspur, name)
        arguments = [surface, 0, 0, 9, 9] + values
        changes = leaks.count_changes(lambda: function(*arguments), [surface, None])
        assert changes[0] == 0 and abs(changes[1]) < 0.1  # None changes on its own, too

        def refused():
            with pytest.raises(ValueError):
                function(surface, 0, -40000, 9, 9, *values)

        leaks.assert_counts_unchanged(refused, surface)


@pytest.mark.parametrize(
    "name, docstring",
    [
        ("fast_draw_gradient_v", "Draw a vertical gradient, with alpha blending."),
        (
            "fast_draw_gradients_vc",
            "Draw a vertical translucent gradient, then fill translucently.",
        ),
        ("fast_draw_gradients_vv", "Draw two vertical translucent gradients."),
        (
            "fast_draw_gradients_vcv",
            "Draw a vertical gradient, a constant, and another vgrad, each alphablent.",
        ),
        ("fast_draw_gradients_vcvvc", "More complex gradients."),
    ],
)
def test_docstrings(name, docstring):
    assert getattr(larkspur, name).__doc__ == docstring


def test_arguments_that_run_code_are_read_before_the_surface(display):
    class Closing(object):
        def __int__(self):
            pygame.display.quit()
            return 9

    with pytest.raises(RuntimeError):
        larkspur.fast_draw_gradient_v(display, 0, 0, 9, Closing(), RED, BLUE, 50)
