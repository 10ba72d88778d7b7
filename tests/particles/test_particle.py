"""Particles: creation, steps, remaining life and end, against the model in single precision."""

import math
import resource
import sys

import larkspur
import numpy
import pytest
from models import particle_model
from support import leaks, particles

INT_MIN = -(2**31)
NAN, INFINITE = float("nan"), float("inf")

DOCSTRINGS = {
    "CParticle_new": "Create a new particle.",
    "CParticle_new_size_color": "Create a new particle of a given size and color.",
    "CParticle_step": "Per-particle step function.",
    "CParticle_dec_ttl": "Decrement the particle TTL and return the new value.",
    "CParticle_attach_beancounter": (
        "Attach a beancounter to the particle.  The beancounter will be increased.  Destroying "
        "the particle will decrease it.  If there is a preexisting beancounter, it will be "
        "decreased."
    ),
}


def make_type(**settings):
    """A type's handle and its model, with the same settings: short name -> arguments."""
    handle, model = larkspur.part_type_create(), particle_model.TypeModel()
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(handle, *arguments)
        getattr(model, "part_type_" + name)(*arguments)
    return handle, model


def random_type(number):
    """A type whose particles use every draw; some settings are left out at random."""
    random = numpy.random.RandomState(number)

    def between(low, high, count):
        return [float(value) for value in random.uniform(low, high, count)]

    settings = {
        "size": between(-1, 4, 2) + between(-0.5, 0.5, 2),
        "speed": between(-3, 9, 4),
        "direction": between(-400, 400, 4),
        "life": between(-5, 90, 2),
        "orientation": between(-100, 500, 2) + between(-60, 60, 2) + [1],
        "color3": [int(value) for value in random.randint(-(2**31), 2**31, 3)],
    }
    return make_type(
        **{name: arguments for name, arguments in settings.items() if random.randint(4)}
    )


def fields(handle):
    return particles.values(particles.particle_record(handle))


def same(actual, expected):
    """Equal dictionaries of numbers, to the bit: NaN equals NaN, 0.0 is not -0.0."""
    return {name: repr(number) for name, number in actual.items()} == {
        name: repr(number) for name, number in expected.items()
    }


@pytest.mark.parametrize("name", sorted(DOCSTRINGS))
def test_docstring(name):
    assert getattr(larkspur, name).__doc__ == DOCSTRINGS[name]


@pytest.mark.parametrize("number", range(40))
def test_life_of_a_particle_follows_the_model(number):
    handle, kind = random_type(number)
    particles.seed(number)
    random = particle_model.Drand48(number)
    particle = larkspur.CParticle_new(handle, number - 0.1, -3.7)
    model = particle_model.ParticleModel(kind, number - 0.1, -3.7, random)
    assert random.draws == 5
    assert same(fields(particle), particles.values_of_model(model))
    for _ in range(60):
        assert larkspur.CParticle_step(particle) == model.step(kind, random)
        assert same(fields(particle), particles.values_of_model(model))
    assert particles.next_draw() == random()


@pytest.mark.parametrize("number", range(40))
def test_life_of_a_particle_of_given_size_and_colour_follows_the_model(number):
    handle, kind = random_type(number)
    particles.seed(number)
    random = particle_model.Drand48(number)
    particle = larkspur.CParticle_new_size_color(handle, 1e7, number / 3.0, 1.7, -number)
    model = particle_model.ParticleModel(kind, 1e7, number / 3.0, random, 1.7, -number)
    assert random.draws == 4
    assert same(fields(particle), particles.values_of_model(model))
    record = particles.particle_record(particle)
    for _ in range(60):
        model.step(kind, random)
        particles.step_low(record)
        assert same(fields(particle), particles.values_of_model(model))
    assert particles.next_draw() == random()


def test_draw_order_of_new():
    handle, _ = make_type(
        direction=(0, 1, 0, 0),
        speed=(0, 1, 0, 0),
        size=(0, 1, 0, 0),
        life=(0, 2**24),
        orientation=(0, 1, 0, 0, 0),
    )
    particles.seed(7)
    draws = [particles.next_draw() for _ in range(5)]
    particles.seed(7)
    made = fields(larkspur.CParticle_new(handle, 0, 0))
    taken = [made[name] for name in ("direction", "speed", "size")]
    assert taken == [numpy.float32(draw) for draw in draws[:3]]
    assert made["ttl"] == int(draws[3] * 2**24)
    assert made["orientation"] == numpy.float32(draws[4])


def test_draw_order_of_new_size_color():
    handle, _ = make_type(
        direction=(0, 1, 0, 0), speed=(0, 1, 0, 0), life=(0, 2**24), orientation=(0, 1, 0, 0, 0)
    )
    particles.seed(8)
    draws = [particles.next_draw() for _ in range(4)]
    particles.seed(8)
    made = fields(larkspur.CParticle_new_size_color(handle, 0, 0, 5, 6))
    taken = [made[name] for name in ("direction", "speed", "orientation")]
    assert taken == [numpy.float32(draw) for draw in draws[:3]]
    assert made["ttl"] == int(draws[3] * 2**24)
    assert (made["size"], made["color1"], made["color2"], made["color3"]) == (5.0, 6, 6, 6)


def test_default_type():
    made = fields(larkspur.CParticle_new(larkspur.part_type_create(), 3.5, -2))
    assert made["ttl"] == 30 and made["life"] == 30.0 and made["size"] == 1.0
    assert (made["x"], made["y"], made["orientation"]) == (3.5, -2.0, 0.0)
    assert (made["speed"], made["vx"], made["vy"]) == (0.0, 0.0, 0.0)


@pytest.mark.parametrize(
    "direction, vx, vy",
    [
        (0, 2 * math.cos(math.pi / 2), 2.0),
        (90, -2.0, 2 * math.sin(math.pi)),
        (180, 2 * math.cos(3 * math.pi / 2), -2.0),
    ],
)
def test_direction_zero_moves_down_and_ninety_left(direction, vx, vy):
    handle, _ = make_type(speed=(2, 2, 0, 0), direction=(direction, direction, 0, 0))
    made = fields(larkspur.CParticle_new(handle, 0, 0))
    assert (made["vx"], made["vy"]) == (numpy.float32(vx), numpy.float32(vy))


def test_reset_velocities():
    particle = larkspur.CParticle_new(larkspur.part_type_create(), 0, 0)
    record = particles.particle_record(particle)
    record.direction, record.speed = 33.3, 4.4
    expected = fields(particle)
    particles.reset_velocities(record)
    angle = float(numpy.float32(33.3)) * (math.pi / 180) + math.pi / 2
    expected["vx"] = float(numpy.float32(float(numpy.float32(4.4)) * math.cos(angle)))
    expected["vy"] = float(numpy.float32(float(numpy.float32(4.4)) * math.sin(angle)))
    assert fields(particle) == expected


@pytest.mark.parametrize(
    "bounds, incr, start, expected",
    [
        ((0, 360), 10, 355, [5, 15]),  # 365 wraps once
        ((0, 360), 10, 350, [360, 10]),  # exactly 360 stays
        ((0, 360), -10, 5, [355, 345]),  # below 0 a full turn is added
        ((0, 360), 800, 0, [360, 360]),  # one turn is taken off, and then the bound holds
        ((0, 90), 10, 85, [90, 90]),
        ((-90, 90), -10, 0, [90, 80]),  # -10 becomes 350 before the bounds are looked at
        ((0, 0), 10, 0, [0, 0]),  # the default range holds every orientation at 0
        ((50, 20), 1, 30, [20, 20]),  # reversed: above the upper bound comes first
        ((50, 20), 1, 10, [50, 20]),
    ],
)
def test_orientation_wraps_and_then_keeps_its_bounds(bounds, incr, start, expected):
    handle, _ = make_type(orientation=bounds + (incr, 0, 0))
    particle = larkspur.CParticle_new(handle, 0, 0)
    record = particles.particle_record(particle)
    record.orientation = start
    taken = []
    for _ in expected:
        larkspur.CParticle_step(particle)
        taken.append(record.orientation)
    assert taken == expected


def test_orientation_is_bounded_without_increment_and_wiggle():
    handle, _ = make_type(orientation=(10, 20, 0, 0, 0))
    particle = larkspur.CParticle_new(handle, 0, 0)
    record = particles.particle_record(particle)
    for start, expected in [(30, 20), (0, 10), (15, 15)]:
        record.orientation = start
        larkspur.CParticle_step(particle)
        assert record.orientation == expected


def test_size_is_bounded_only_while_it_changes():
    handle, _ = make_type(size=(1, 2, 0, 0))
    particle = larkspur.CParticle_new_size_color(handle, 0, 0, 9, 0)
    record = particles.particle_record(particle)
    larkspur.CParticle_step(particle)
    assert record.size == 9.0
    larkspur.part_type_size(handle, 1, 2, 0.25, 0)
    larkspur.CParticle_step(particle)
    assert record.size == 2.0
    larkspur.part_type_size(handle, 2, 1, 0.25, 0)  # reversed: below the lower bound comes first
    record.size = 1.75
    larkspur.CParticle_step(particle)
    assert record.size == 2.0
    larkspur.CParticle_step(particle)
    assert record.size == 2.0


def test_steps_draw_only_for_wiggles():
    for settings, draws in [
        ({}, 0),
        ({"orientation": (0, 90, 5, 0, 0), "size": (1, 2, 1, 0)}, 0),
        ({"orientation": (0, 90, 0, 5, 0)}, 1),
        ({"size": (1, 2, 0, 1)}, 1),
        ({"orientation": (0, 90, 0, 5, 0), "size": (1, 2, 0, 1)}, 2),
        ({"orientation": (0, 90, 0, NAN, 0), "size": (1, 2, 0, NAN)}, 2),
    ]:
        handle = larkspur.part_type_create()
        for name, arguments in settings.items():
            getattr(larkspur, "part_type_" + name)(handle, *arguments)
        particle = larkspur.CParticle_new(handle, 0, 0)
        particles.seed(5)
        expected = [particles.next_draw() for _ in range(draws + 1)][-1]
        particles.seed(5)
        larkspur.CParticle_step(particle)
        assert particles.next_draw() == expected


def test_orientation_draws_before_size():
    handle, kind = make_type(orientation=(0, 90, 0, 5, 0), size=(1, 9, 0, 1))
    random = particle_model.Drand48(3)
    particles.seed(3)
    particle = larkspur.CParticle_new_size_color(handle, 0, 0, 5, 0)
    model = particle_model.ParticleModel(kind, 0, 0, random, 5, 0)
    larkspur.CParticle_step(particle)
    model.step(kind, random)
    assert same(fields(particle), particles.values_of_model(model))


def test_type_changes_reach_living_particles_where_they_are_read_at_each_step():
    handle, _ = make_type(speed=(1, 1, 0, 0))
    particle = larkspur.CParticle_new(handle, 0, 0)
    before = fields(particle)
    for name, arguments in [
        ("speed", (9, 9, 9, 9)),
        ("direction", (90, 90, 9, 9)),
        ("gravity", (9, 9)),
        ("life", (99, 99)),
        ("color3", (1, 2, 3)),
        ("size", (7, 7, 1, 1)),
        ("alpha3", (0, 0, 0)),
    ]:
        getattr(larkspur, "part_type_" + name)(handle, *arguments)
    larkspur.CParticle_step(particle)
    expected = dict(before, ttl=29, x=before["x"] + before["vx"], y=before["y"] + before["vy"])
    assert fields(particle) == expected
    larkspur.part_type_orientation(handle, 45, 50, 1, 0, 0)
    larkspur.CParticle_step(particle)
    assert fields(particle)["orientation"] == 45.0


def test_remaining_life_falls_below_zero():
    handle, _ = make_type(life=(2, 2))
    particle = larkspur.CParticle_new(handle, 0, 0)
    assert [larkspur.CParticle_step(particle) for _ in range(4)] == [1, 0, -1, -2]
    assert [larkspur.CParticle_dec_ttl(particle) for _ in range(2)] == [-3, -4]
    assert type(larkspur.CParticle_step(particle)) is int
    assert type(larkspur.CParticle_dec_ttl(particle)) is int


def test_dec_ttl_changes_nothing_else():
    handle, _ = make_type(
        speed=(1, 2, 0, 0), orientation=(0, 360, 10, 10, 0), size=(1, 2, 0.1, 0.1)
    )
    particle = larkspur.CParticle_new(handle, 0, 0)
    before = fields(particle)
    assert larkspur.CParticle_dec_ttl(particle) == 29
    assert fields(particle) == dict(before, ttl=29)


def test_smallest_remaining_life_wraps():
    particle = larkspur.CParticle_new(larkspur.part_type_create(), 0, 0)
    record = particles.particle_record(particle)
    record.ttl = INT_MIN
    assert larkspur.CParticle_step(particle) == 2**31 - 1
    record.ttl = INT_MIN
    assert larkspur.CParticle_dec_ttl(particle) == 2**31 - 1


@pytest.mark.parametrize("low, high", [(2e9, -2e9), (-2e9, 2e9), (NAN, 30), (1e30, -1e30)])
def test_lives_that_do_not_fit(low, high):
    handle, kind = make_type(life=(low, high))
    particles.seed(11)
    particle = larkspur.CParticle_new(handle, 0, 0)
    model = particle_model.ParticleModel(kind, 0, 0, particle_model.Drand48(11))
    assert same(fields(particle), particles.values_of_model(model))


@pytest.mark.parametrize("number", [NAN, INFINITE, -INFINITE, 3e38, -3e38, 1e-45])
def test_extreme_settings_follow_the_model(number):
    with numpy.errstate(all="ignore"):
        handle, kind = make_type(
            **{
                name: [number] * count
                for name, count in [
                    ("size", 4),
                    ("speed", 4),
                    ("direction", 4),
                    ("orientation", 5),
                    ("life", 2),
                ]
            }
        )
        random = particle_model.Drand48(4)
        particles.seed(4)
        for size_and_colour in [(), (number, 0)]:
            make = larkspur.CParticle_new_size_color if size_and_colour else larkspur.CParticle_new
            particle = make(handle, number, number, *size_and_colour)
            model = particle_model.ParticleModel(kind, number, number, random, *size_and_colour)
            for _ in range(4):
                assert same(fields(particle), particles.values_of_model(model))
                assert larkspur.CParticle_step(particle) == model.step(kind, random)


def test_variable_stands_for_its_type():
    handle = larkspur.part_type_create()
    variable = larkspur.GMVar(handle)
    for particle in [
        larkspur.CParticle_new(variable, 0, 0),
        larkspur.CParticle_new_size_color(variable, 0, 0, 1, 1),
    ]:
        assert particles.particle_record(particle).type_handle == id(handle)
        variable[0] = 0  # the particle keeps the type, whatever becomes of the variable
        assert larkspur.CParticle_step(particle) == 29
        variable[0] = handle


@pytest.mark.parametrize(
    "wrong",
    [
        None,
        5,
        "type",
        particles.foreign_cobject(),
        larkspur.CParticle_new(larkspur.part_type_create(), 0, 0),
        larkspur.GMVar(5),
        larkspur.GMVar(None),
        larkspur.GMVar(particles.foreign_cobject()),
        larkspur.GMVar.__new__(larkspur.GMVar),
    ],
)
def test_what_is_no_type_makes_no_particle(wrong, capfd):
    with pytest.raises(SystemError):
        larkspur.CParticle_new(wrong, 0, 0)
    with pytest.raises(SystemError):
        larkspur.CParticle_new_size_color(wrong, 0, 0, 1, 1)
    # A variable's value takes its place before the search, so it is reported like any object.
    assert capfd.readouterr() == ("Returning NULL!\n" * 2, "")
    leaks.assert_counts_unchanged(
        lambda: pytest.raises(SystemError, larkspur.CParticle_new, wrong, 0, 0), wrong
    )


@pytest.mark.parametrize(
    "wrong",
    [None, 5, larkspur.part_type_create(), particles.foreign_cobject(), larkspur.Beancounter()],
)
def test_what_is_no_particle_is_refused(wrong):
    counter = larkspur.Beancounter()
    for name, arguments in [
        ("CParticle_step", ()),
        ("CParticle_dec_ttl", ()),
        ("CParticle_attach_beancounter", (counter,)),
    ]:
        with pytest.raises(TypeError) as failure:
            getattr(larkspur, name)(wrong, *arguments)
        assert str(failure.value).startswith(name + "() needs a particle, got ")
    assert int(counter) == 0


def test_a_type_is_named_where_a_particle_is_wanted():
    with pytest.raises(TypeError) as failure:
        larkspur.CParticle_step(larkspur.part_type_create())
    assert str(failure.value) == (
        "CParticle_step() needs a particle, got a particle type; pass what CParticle_new() returned"
    )


@pytest.mark.parametrize(
    "name, arguments",
    [
        ("CParticle_new", ()),
        ("CParticle_new", (1, 2)),
        ("CParticle_new", (1, 2, 3, 4)),
        ("CParticle_new", (1, "x", 3)),
        ("CParticle_new_size_color", (1, 2, 3, 4)),
        ("CParticle_new_size_color", (1, 2, 3, 4, 5.5)),
        ("CParticle_step", ()),
        ("CParticle_step", (1, 2)),
        ("CParticle_dec_ttl", ()),
        ("CParticle_dec_ttl", (1, 2)),
        ("CParticle_attach_beancounter", (1,)),
    ],
)
def test_wrong_arguments(name, arguments):
    with pytest.raises(TypeError):
        getattr(larkspur, name)(*arguments)


def test_particle_keeps_its_type_alive_and_lets_it_go():
    handle = larkspur.part_type_create()
    before = sys.getrefcount(handle)
    living = [
        larkspur.CParticle_new(handle, 0, 0),
        larkspur.CParticle_new_size_color(handle, 0, 0, 1, 1),
    ]
    assert sys.getrefcount(handle) == before + 2
    del living[:]
    assert sys.getrefcount(handle) == before
    particle = larkspur.CParticle_new(handle, 0, 0)
    del handle
    assert larkspur.CParticle_step(particle) == 29


def test_argument_conversion_may_run_code():
    class Number(object):
        def __float__(self):
            variable[0] = 0  # the type's last reference goes while the arguments are parsed
            return 1.0

    for function, rest in [
        (larkspur.CParticle_new, (Number(), 0)),
        (larkspur.part_type_scale, (1, Number())),
    ]:
        variable = larkspur.GMVar(larkspur.part_type_create())
        with pytest.raises(SystemError):
            function(variable, *rest)


def test_a_hundred_thousand_lives_leave_nothing_behind():
    handle, _ = make_type(life=(3, 3), size=(1, 2, 0.1, 0.1), orientation=(0, 360, 5, 5, 0))
    counter = larkspur.Beancounter()

    def lives(count):
        for _ in xrange(count):
            particle = larkspur.CParticle_new(handle, 0, 0)
            larkspur.CParticle_attach_beancounter(particle, counter)
            while larkspur.CParticle_step(particle) > 0:
                pass
            larkspur.CParticle_new_size_color(handle, 0, 0, 1, 1)

    lives(1000)
    counts = sys.getrefcount(handle), sys.getrefcount(counter), int(counter)
    peak_kilobytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    lives(100000)
    assert (sys.getrefcount(handle), sys.getrefcount(counter), int(counter)) == counts
    assert int(counter) == 0
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak_kilobytes < 512
