"""Random calls of the pixel routines on surfaces between untouchable pages, against the models.

LARKSPUR_FUZZ_EXAMPLES is the number of examples per test. A failing example is printed by
hypothesis with all its numbers.
"""

import contextlib
import ctypes
import os

import hypothesis
import larkspur
import numpy
import pytest
from hypothesis import strategies as some
from models import gradient_model, pixel_model
from support import host as host_support
from support import native, rooms
from support.guarded import GuardedSurface
from support.native import Rect
from support.pictures import assert_same_words, words
from support.surfaces import ALL_MASKS

fuzz = hypothesis.settings(
    max_examples=int(os.environ.get("LARKSPUR_FUZZ_EXAMPLES", "100")),
    deadline=None,
    suppress_health_check=hypothesis.HealthCheck.all(),
)

words32 = some.integers(0, 2**32 - 1)
signed32 = some.integers(-(2**31), 2**31 - 1)
near = some.integers(-12, 60)
first_corners = some.one_of(near, near, near, some.integers(-32768, 2**31 - 1))
second_corners = some.one_of(near, near, near, signed32)
shares = some.one_of(
    some.floats(0, 1),
    some.floats(0, 1),
    some.sampled_from([0.0, 0.25, 0.5, 1.0]),
    some.integers(0, 255).map(lambda byte: byte / 255.0),
    some.floats(),
)
rectangles = some.tuples(first_corners, first_corners, second_corners, second_corners)


@some.composite
def guarded_surfaces(draw, smallest=0, odd_pitches=True):
    """Arguments of a GuardedSurface."""
    width = draw(some.integers(smallest, 45))
    height = draw(some.integers(smallest, 25))
    pitch = 4 * width + draw(some.sampled_from([0, 0, 4, 12, 64] + [2, 5] * odd_pitches))
    return (
        width,
        height,
        pitch,
        draw(some.sampled_from(ALL_MASKS)),
        draw(some.integers(0, 2**32 - 1)),
        draw(some.booleans()),
    )


def layer_values(letters):
    """What follows the rectangle in a call."""
    parts = [
        (words32, words32, shares) if letter == "v" else (words32, shares) for letter in letters
    ]
    return some.tuples(*[strategy for part in parts for strategy in part])


LAYERS = ("vc", "vv", "vcv", "vcvvc")
layered_calls = some.one_of(
    [some.tuples(some.just(letters), layer_values(letters)) for letters in LAYERS]
)

colours4 = some.one_of(
    words32.map(lambda colour: (colour,) * 4),
    some.tuples(words32, words32).map(lambda pair: (pair[0], pair[0], pair[1], pair[1])),
    some.tuples(words32, words32, words32).map(lambda three: (three[0],) + three),
    some.tuples(words32, words32, words32, words32),
)


@contextlib.contextmanager
def guarded_surface(arguments):
    guarded = GuardedSurface(*arguments)
    try:
        yield guarded
    finally:
        guarded.free()


def check(arguments, expected_of, call):
    """call(surface) changes the pixels as expected_of(picture) does, and no other byte."""
    with guarded_surface(arguments) as guarded:
        picture = gradient_model.Picture.of(guarded.words(), guarded.surface)
        surroundings = guarded.surroundings()
        expected_of(picture)
        call(guarded.surface)
        assert_same_words(guarded.words(), picture.words(), "fuzz")
        assert (guarded.surroundings() == surroundings).all()


@fuzz
@hypothesis.given(guarded_surfaces(), rectangles, layered_calls)
def test_layers(arguments, rectangle, layers):
    letters, values = layers
    function = getattr(larkspur, "fast_draw_gradients_" + letters)
    check(
        arguments,
        lambda picture: gradient_model.draw_layers(picture, letters, rectangle, values),
        lambda surface: function(surface, *(rectangle + values)),
    )


@fuzz
@hypothesis.given(guarded_surfaces(), rectangles, words32, words32, signed32)
def test_gradient_with_an_alpha(arguments, rectangle, top, bottom, alpha):
    check(
        arguments,
        lambda picture: gradient_model.draw_alpha(picture, rectangle, top, bottom, alpha),
        lambda surface: larkspur.fast_draw_gradient_v(surface, *(rectangle + (top, bottom, alpha))),
    )


@fuzz
@hypothesis.given(guarded_surfaces(), rectangles, signed32, signed32)
def test_translucent_fill(arguments, rectangle, colour, alpha):
    check(
        arguments,
        lambda picture: gradient_model.fill_translucent(
            picture, *(rectangle + (colour % 2**32, alpha))
        ),
        lambda surface: larkspur.fill_translucent(surface, *(rectangle + (colour, alpha))),
    )


@pytest.fixture
def own_screen(display):
    """set_SDL_screen for a test's surfaces; the display is put back before they are freed."""
    yield larkspur.set_SDL_screen
    larkspur.set_SDL_screen(display)


@fuzz
@hypothesis.given(
    arguments=guarded_surfaces(smallest=1),
    rectangle=rectangles,
    colours=colours4,
    alpha=some.one_of(some.just(1.0), shares),
    outline=some.integers(-1, 1),
)
def test_rectangle_in_four_colours(
    own_screen, display, arguments, rectangle, colours, alpha, outline
):
    x1, y1, x2, y2 = rectangle
    hypothesis.assume(min(x1, x2) >= -32768 and min(y1, y2) >= -32768)
    values = rectangle + colours + (alpha, outline)

    def call(surface):
        own_screen(surface)
        try:
            larkspur.fast_draw_rectangle_color(*values)
        finally:
            own_screen(display)

    check(arguments, lambda picture: gradient_model.draw_rectangle_color(picture, *values), call)


@fuzz
@hypothesis.given(
    arguments=guarded_surfaces(smallest=1),
    rectangle=some.tuples(*[some.floats(-100, 100)] * 4),
    colour=words32,
    alpha=shares,
    xscale=some.floats(-4, 4),
    yscale=some.floats(-4, 4),
)
def test_translucent_rectangle_in_a_view(
    host, own_screen, display, arguments, rectangle, colour, alpha, xscale, yscale
):
    hypothesis.assume(alpha != 1.0)
    host.gmapi.py_draw_props = host_support.Plain(alpha=alpha, color=None)
    host.gmapi.__dict__["__color_to_int"] = lambda _: colour
    host.register(larkspur)
    larkspur.Room_Draw(rooms.make_room(), display)  # no view, so no offset
    scales = [native.variable(ctypes.c_double, name) for name in ("g_view_xscale", "g_view_yscale")]

    def expected(picture):
        x1, y1, x2, y2 = [
            int(round(float(gradient_model.single(number)) * scale))  # halves away from zero
            for number, scale in zip(rectangle, (xscale, yscale) * 2)
        ]
        gradient_model.fill_translucent(
            picture, x1, y1, x2, y2, colour, gradient_model.truncated(alpha * 255.0)
        )

    def call(surface):
        own_screen(surface)
        scales[0].value, scales[1].value = xscale, yscale
        try:
            larkspur.draw_rectangle(*rectangle)
        finally:
            own_screen(display)

    check(arguments, expected, call)


# ---- whole surfaces

translucentify = native.function("Translucentify", None, ctypes.c_void_p, ctypes.c_uint8)
tint_surface = native.function("Tint_Surface", None, ctypes.c_void_p, ctypes.c_uint32)
flagged_blit = native.function(
    "flagged_blit", None, ctypes.c_void_p, ctypes.c_void_p, ctypes.POINTER(Rect), ctypes.c_int
)


def check_buffer(arguments, rule, call):
    """call(address) changes the buffer as rule(buffer) does, as far as its last pixel."""
    with guarded_surface(arguments) as guarded:
        memory = guarded.memory
        pitch, height = arguments[2], arguments[1]
        whole = numpy.zeros(pitch * height if arguments[0] else 0, numpy.uint8)
        whole[: len(memory.bytes)] = memory.bytes
        expected = memory.everything.copy()
        start = memory.address - memory.everything.ctypes.data
        expected[start : start + len(memory.bytes)] = rule(whole)[: len(memory.bytes)]
        call(native.surface_address(guarded.surface))
        differing = numpy.nonzero(memory.everything != expected)[0]
        assert not len(differing), "byte %d differs" % (differing[0] - start)


@fuzz
@hypothesis.given(guarded_surfaces(odd_pitches=False), some.integers(0, 255))
def test_fading(arguments, alpha):
    check_buffer(
        arguments,
        lambda buffer: pixel_model.faded(buffer, alpha, arguments[3]),
        lambda address: translucentify(address, alpha),
    )


@fuzz
@hypothesis.given(guarded_surfaces(odd_pitches=False), words32)
def test_tinting(arguments, tint):
    check_buffer(
        arguments,
        lambda buffer: pixel_model.tinted(buffer, tint, arguments[3]),
        lambda address: tint_surface(address, tint),
    )


@fuzz
@hypothesis.given(
    guarded_surfaces(smallest=1, odd_pitches=False),
    some.sampled_from(
        [
            ("flip_v", pixel_model.upside_down),
            ("flip_h", pixel_model.mirrored),
            ("flip_vh", pixel_model.turned_one_row_low),
        ]
    ),
)
def test_flips(arguments, flip):
    name, rule = flip
    with guarded_surface(arguments) as guarded:
        before = guarded.memory.everything.copy()
        expected = rule(guarded.words())
        assert_same_words(words(getattr(larkspur, name)(guarded.surface)), expected, name)
        assert (guarded.memory.everything == before).all()


@fuzz
@hypothesis.given(
    guarded_surfaces(smallest=1, odd_pitches=False),
    guarded_surfaces(smallest=1, odd_pitches=False),
    some.integers(-60, 60),
    some.integers(-40, 40),
    some.sampled_from([1, 128]),
)
def test_additive_blit(source_arguments, target_arguments, x, y, mode):
    with guarded_surface(source_arguments) as source, guarded_surface(target_arguments) as target:
        expected = pixel_model.added(source.words(), target.words(), x, y)
        surroundings = target.surroundings()
        flagged_blit(
            native.surface_address(source.surface),
            native.surface_address(target.surface),
            Rect(x, y, 0, 0),
            mode,
        )
        assert_same_words(target.words(), expected, "added")
        assert (target.surroundings() == surroundings).all()
