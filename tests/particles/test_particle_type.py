"""Particle types: creation, every setting, handles and their end."""

import gc
import os
import subprocess
import sys
import weakref

import larkspur
import numpy
import pygame
import pytest
from models import particle_model
from support import leaks, native, particles

INT_MIN = -(2**31)
NAN, INFINITE = float("nan"), float("inf")

# Function, arguments behind the handle, and the fields that they leave, by hand.
SETTINGS = [
    (
        "part_type_size",
        (1.0, 3.0, 0.5, 0.25),
        dict(size_min=1.0, size_max=3.0, size_range=2.0, size_incr=1.0, size_wiggle=0.5),
    ),
    (
        "part_type_size",
        (2.5, 2.5, 4.0, 7.0),
        dict(size_min=2.5, size_max=2.5, size_range=0.0, size_incr=0.0, size_wiggle=0.0),
    ),
    (
        "part_type_size",
        (3.0, 1.0, 0.5, -1.0),
        dict(size_min=3.0, size_max=1.0, size_range=-2.0, size_incr=-1.0, size_wiggle=2.0),
    ),
    ("part_type_scale", (1.5, -0.25), dict(xscale=1.5, yscale=-0.25)),
    (
        "part_type_orientation",
        (10, 350, 2.5, 1.25, 1.7),
        dict(
            orient_min=10.0,
            orient_max=350.0,
            orient_incr=2.5,
            orient_wiggle=1.25,
            orient_relative=1.0,
        ),
    ),
    ("part_type_orientation", (0, 0, 0, 0, -1.7), dict(orient_relative=-1.0)),
    ("part_type_life", (10.9, 20.2), dict(life_min=10, life_max=20, life_range=10)),
    ("part_type_life", (-1.9, -7.2), dict(life_min=-1, life_max=-7, life_range=-6)),
    ("part_type_gravity", (0.5, 270), dict(gravity_amount=0.5, gravity_dir=270.0)),
    (
        "part_type_direction",
        (80, 100, 0.5, 3),
        dict(dir_min=80.0, dir_max=100.0, dir_range=20.0, dir_incr=0.5, dir_wiggle=3.0),
    ),
    ("part_type_color3", (0x123456, 0, -1), dict(color1=0x123456, color2=0, color3=-1)),
    ("part_type_blend", (1.9,), dict(blend=1)),
    ("part_type_blend", (-128.5,), dict(blend=-128)),
    ("part_type_alpha3", (1.0, 0.75, 0.5), dict(alpha_start=1.0, alpha_half=0.75, alpha_end=0.5)),
    ("part_type_alpha2", (1.0, 0.0), dict(alpha_start=1.0, alpha_half=0.5, alpha_end=0.0)),
    ("part_type_alpha2", (0.25, 1.25), dict(alpha_start=0.25, alpha_half=0.75, alpha_end=1.25)),
    (
        "part_type_speed",
        (1, 4, 0.5, 0.25),
        dict(speed_min=1.0, speed_max=4.0, speed_range=3.0, speed_incr=0.5, speed_wiggle=0.25),
    ),
    # Everything that goes from float to int becomes the smallest int when it does not fit.
    ("part_type_life", (NAN, 1e10), dict(life_min=INT_MIN, life_max=INT_MIN, life_range=0)),
    (
        "part_type_life",
        (-(2.0**31), 2.0**30),
        dict(life_min=INT_MIN, life_max=2**30, life_range=-(2**30)),
    ),
    ("part_type_blend", (INFINITE,), dict(blend=INT_MIN)),
    ("part_type_orientation", (0, 0, 0, 0, NAN), dict(orient_relative=-(2.0**31))),
]

NUMBERS = {
    "part_type_size": 4,
    "part_type_scale": 2,
    "part_type_orientation": 5,
    "part_type_life": 2,
    "part_type_gravity": 2,
    "part_type_direction": 4,
    "part_type_color3": 3,
    "part_type_blend": 1,
    "part_type_alpha3": 3,
    "part_type_alpha2": 2,
    "part_type_speed": 4,
    "CParticle_type_cache_clear": 0,
}

DOCSTRINGS = {
    "part_type_create": "C implementation of part_type_create.",
    "part_type_shape": "Set the shape of a particle type.",
    "part_type_size": "Set min/max/incr/wiggle for particle size.",
    "part_type_scale": "Set the x and y scale factors for the particle type.",
    "part_type_orientation": (
        "Set the orientation min/max/incr/wiggle/relativity for this particle type."
    ),
    "part_type_life": "Set the particle minimum and maximum lifespan in frames.",
    "part_type_gravity": "Set the gravity strength and angle.",
    "part_type_direction": "Set the direction min/max/incr/wiggle.",
    "part_type_color3": "Lowlevel color3 implementation.  Expects ints.",
    "part_type_blend": "Set particle blend mode flag.",
    "part_type_alpha3": "Set start/half/end alphas.",
    "part_type_alpha2": "Set start and end alphas, linear interpolation.",
    "part_type_speed": "Set min/max/incr/wiggle por particle speed.",
    "part_type_sprite": "Set particle type to use a sprite/animated/stretched/random",
    "CParticle_type_cache_clear": "Remove cache of prerendered particle surfaces for this type.",
}


def all_calls():
    """Every setter with arguments that it takes, the handle left out."""
    calls = [(name, (1,) * count) for name, count in sorted(NUMBERS.items())]
    return calls + [
        ("part_type_shape", (pygame.Surface((1, 1)),)),
        ("part_type_sprite", (object(), 0, 0, 0)),
    ]


class SurfaceSubclass(pygame.Surface):
    """Surfaces of a type of their own, with weak references."""


@pytest.mark.parametrize("name", sorted(DOCSTRINGS))
def test_docstring(name):
    assert getattr(larkspur, name).__doc__ == DOCSTRINGS[name]


def test_fresh_type(display):
    handle = larkspur.part_type_create()
    record = particles.type_record(handle)
    assert particles.values(record) == particles.values_of_model(particle_model.TypeModel())
    assert (record.shape, record.shape_surface) == (None, None)
    assert particles.cache_of(handle) == {} and type(particles.cache_of(handle)) is dict


def test_create_ignores_its_arguments(display):
    assert type(larkspur.part_type_create(1, "two", [])) is type(particles.foreign_cobject())


def test_fresh_colours_are_white_of_the_display(display):
    white = native.variable(particles.ctypes.c_uint32, "COLOR_WHITE")
    assert white.value == 0xFFFFFF
    larkspur.set_SDL_screen(pygame.Surface((4, 4), 0, 16, (0xF800, 0x7E0, 0x1F, 0)))
    try:
        record = particles.type_record(larkspur.part_type_create())
        assert [record.color1, record.color2, record.color3] == [0xFFFF] * 3
    finally:
        larkspur.set_SDL_screen(display)


def test_fresh_colours_on_a_palette_display_whose_white_is_0(display):
    size = display.get_size()
    larkspur.set_SDL_screen(pygame.display.set_mode(size, 0, 8))
    try:
        record = particles.type_record(larkspur.part_type_create())
        assert [record.color1, record.color2, record.color3] == [0] * 3
    finally:
        larkspur.set_SDL_screen(pygame.display.set_mode(size, 0, 32))


def test_fresh_colours_without_a_display():
    script = (
        "import sys; sys.path.insert(0, 'tests')\n"
        "from support import host; host.install_modules()\n"
        "import larkspur\n"
        "from support import particles\n"
        "record = particles.type_record(larkspur.part_type_create())\n"
        "print hex(record.color1), hex(record.color2), hex(record.color3)"
    )
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    output = subprocess.check_output([sys.executable, "-c", script], cwd=root)
    assert output.splitlines()[-1] == "0xffffff 0xffffff 0xffffff"


@pytest.mark.parametrize("name, arguments, fields", SETTINGS)
def test_setting_changes_its_fields_and_no_others(name, arguments, fields):
    handle = larkspur.part_type_create()
    expected = dict(particles.values(particles.type_record(handle)), **fields)
    assert getattr(larkspur, name)(handle, *arguments) is None
    assert particles.values(particles.type_record(handle)) == expected


@pytest.mark.parametrize("seed", range(20))
def test_settings_follow_the_model_in_single_precision(seed):
    random = numpy.random.RandomState(seed)
    handle, model = larkspur.part_type_create(), particle_model.TypeModel()
    for name, count in sorted(NUMBERS.items()):
        if name in ("CParticle_type_cache_clear", "part_type_color3"):
            continue
        arguments = [float(number) for number in random.uniform(-300, 300, count)]
        getattr(larkspur, name)(handle, *arguments)
        getattr(model, name)(*arguments)
        assert particles.values(particles.type_record(handle)) == particles.values_of_model(model)


@pytest.mark.parametrize(
    "arguments, output, animate, stretch",
    [
        ((0.0, 1.0, 1.0), "XXX need to select a random subimage.\n", 0, 0),
        ((0.0, 2.9, 0.0), "", 0, 0),
        ((0.0, 2.9, NAN), "XXX need to select a random subimage.\n", 0, 0),
        ((1.0, 2.9, 1.0), "", 1, 2),
        ((-0.5, -2.9, 0.0), "", 1, -2),
        ((NAN, NAN, 1.0), "", 1, INT_MIN),
    ],
)
def test_sprite(arguments, output, animate, stretch, capfd):
    handle, sprite = larkspur.part_type_create(), object()
    larkspur.part_type_sprite(handle, object(), 1, 7, 0)
    assert larkspur.part_type_sprite(handle, sprite, *arguments) is None
    record = particles.type_record(handle)
    assert (record.shape, record.shape_surface) == (id(sprite), None)
    assert (record.animate, record.stretch) == (animate, stretch)
    assert capfd.readouterr() == (output, "")


def test_shape_keeps_the_surface_and_its_sdl_surface():
    handle, surface = larkspur.part_type_create(), pygame.Surface((3, 2))
    before = sys.getrefcount(surface)
    assert larkspur.part_type_shape(handle, surface) is None
    record = particles.type_record(handle)
    assert (record.shape, record.shape_surface) == (id(surface), native.surface_address(surface))
    assert sys.getrefcount(surface) == before + 1
    larkspur.part_type_sprite(handle, None, 0, 0, 0)
    assert sys.getrefcount(surface) == before
    assert record.shape_surface == native.surface_address(surface)


@pytest.mark.parametrize("shape", [None, 1, "surface", pygame.Surface, SurfaceSubclass((1, 1))])
@pytest.mark.parametrize("handle", [larkspur.part_type_create(), "no handle"])
def test_shape_that_is_not_exactly_a_surface(shape, handle, capfd):
    with pytest.raises(SystemError):
        larkspur.part_type_shape(handle, shape)
    # The shape is looked at first, so nothing is said about the handle.
    assert capfd.readouterr() == ("", "part_type_shape: A pygame Surface is required.\n")
    if handle != "no handle":
        assert particles.type_record(handle).shape is None


@pytest.mark.parametrize(
    "wrong",
    [
        None,
        1,
        "text",
        object(),
        larkspur.Beancounter(),
        particles.foreign_cobject(),
        larkspur.CParticle_new(larkspur.part_type_create(), 0, 0),
    ],
)
def test_what_is_no_type_is_reported(wrong, capfd):
    for name, arguments in all_calls():
        if name in ("part_type_speed", "part_type_sprite"):
            with pytest.raises(TypeError) as failure:
                getattr(larkspur, name)(wrong, *arguments)
            assert str(failure.value).startswith(name + "() needs a particle type, got ")
            assert type(wrong).__name__ in str(failure.value)
        else:
            with pytest.raises(SystemError):
                getattr(larkspur, name)(wrong, *arguments)
        assert capfd.readouterr() == ("Returning NULL!\n", "")


def test_variable_holding_a_type_is_accepted():
    handle = larkspur.part_type_create()
    variable = larkspur.GMVar(handle)
    for name, arguments in all_calls():
        assert getattr(larkspur, name)(variable, *arguments) is None
    assert particles.type_record(handle).life_max == 1


@pytest.mark.parametrize(
    "value",
    [
        0,
        "text",
        particles.foreign_cobject(),
        larkspur.CParticle_new(larkspur.part_type_create(), 0, 0),
    ],
)
def test_variable_holding_anything_else_is_refused_silently(value, capfd):
    for name, arguments in all_calls():
        with pytest.raises((SystemError, TypeError)) as failure:
            getattr(larkspur, name)(larkspur.GMVar(value), *arguments)
        expected = TypeError if name in ("part_type_speed", "part_type_sprite") else SystemError
        assert failure.type is expected
        assert capfd.readouterr() == ("", "")


def test_variable_without_a_value(capfd):
    for name, arguments in all_calls():
        with pytest.raises((SystemError, TypeError)):
            getattr(larkspur, name)(larkspur.GMVar.__new__(larkspur.GMVar), *arguments)
    assert capfd.readouterr() == ("", "")


def test_wrong_counts_of_arguments_are_the_parsers_error():
    handle = larkspur.part_type_create()
    before = particles.values(particles.type_record(handle))
    for name, arguments in all_calls():
        function = getattr(larkspur, name)
        for wrong in [(), (handle,) + arguments + (1,), (handle,) + arguments[:-1]]:
            if len(wrong) == 1 + len(arguments):
                continue
            with pytest.raises(TypeError) as failure:
                function(*wrong)
            count = 1 + len(arguments)
            assert str(failure.value) == "function takes exactly %d argument%s (%d given)" % (
                count,
                "s"[count == 1 :],
                len(wrong),
            )
        if name in NUMBERS and arguments:
            with pytest.raises(TypeError):
                function(handle, *(arguments[:-1] + ("text",)))
    with pytest.raises(OverflowError):
        larkspur.part_type_color3(handle, 2**31, 0, 0)
    with pytest.raises(TypeError):
        larkspur.part_type_color3(handle, 1.5, 0, 0)
    assert particles.values(particles.type_record(handle)) == before


def test_cache_clear_keeps_the_dictionary():
    handle = larkspur.part_type_create()
    cache = particles.cache_of(handle)
    cache[1, 2, 3] = surface = SurfaceSubclass((1, 1))
    seen = []
    ended = weakref.ref(surface, lambda _: seen.append(len(cache)))
    del surface
    assert larkspur.CParticle_type_cache_clear(handle) is None
    assert particles.cache_of(handle) is cache and cache == {} and ended() is None
    assert seen == [0]


def test_cache_clear_survives_code_that_drops_the_type():
    variable = larkspur.GMVar(larkspur.part_type_create())
    surface = SurfaceSubclass((1, 1))
    particles.cache_of(variable[0])["key"] = surface

    def drop_type(_):
        variable[0] = 0

    ended = weakref.ref(surface, drop_type)
    del surface
    larkspur.CParticle_type_cache_clear(variable)
    gc.collect()
    assert ended() is None and variable == 0


def test_end_of_a_type_releases_shape_and_cache():
    shape, cached = pygame.Surface((1, 1)), pygame.Surface((1, 1))
    before = sys.getrefcount(shape), sys.getrefcount(cached)
    handle = larkspur.part_type_create()
    larkspur.part_type_shape(handle, shape)
    cache = particles.cache_of(handle)
    cache["key"] = cached
    assert sys.getrefcount(cache) == 3
    del handle
    assert sys.getrefcount(cache) == 2
    del cache
    assert (sys.getrefcount(shape), sys.getrefcount(cached)) == before


def test_long_chains_are_freed_without_recursion():
    """Types whose shapes are types, or particles of types, and so on."""
    shape = SurfaceSubclass((1, 1))
    innermost = weakref.ref(shape)
    for i in range(200000):
        handle = larkspur.part_type_create()
        larkspur.part_type_sprite(handle, shape, 0, 0, 0)
        shape = larkspur.CParticle_new(handle, 0, 0) if i % 3 == 0 else handle
    del shape, handle
    assert innermost() is None


def test_settings_do_not_leak():
    handle = larkspur.part_type_create()
    surface, sprite = pygame.Surface((1, 1)), object()
    larkspur.part_type_shape(handle, surface)

    def use():
        larkspur.part_type_sprite(handle, sprite, 0, 0, 0)
        larkspur.part_type_shape(handle, surface)
        for name, arguments in all_calls():
            if name != "part_type_shape" and name != "part_type_sprite":
                getattr(larkspur, name)(handle, *arguments)
        larkspur.part_type_create()

    leaks.assert_counts_unchanged(use, handle, surface, sprite, None)
    assert leaks.object_growth(use) == 0
