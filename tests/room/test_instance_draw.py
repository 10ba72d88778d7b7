"""How a view draws an instance, resolves its draw code, and draws a particle system."""

import ctypes
import types

import larkspur
import pytest
from support import leaks, native, pending, subprocess_python
from support.host import Instance, ParticleSystem, Plain, Raising, RaisingAttributes
from support.rooms import (
    SPRITE_ATTRIBUTES,
    compiled,
    make_instance,
    make_view_room,
    object_with_draw_events,
)


def draw(host, *drawn, **where):
    """(status, exception) of one view with these objects."""
    return pending.draw_view(make_view_room(), host.screen, where.get("view", 0), drawn)


def run(host, source, **attributes):
    """Draws an instance whose py_Draw is this code; (status, exception)."""
    return draw(host, make_instance(py_Draw=compiled(source), **attributes))


class Guarded(Plain):
    """An object on which some attributes can't be set, and others raise when they are read."""

    refused = ()
    unreadable = ()

    def __setattr__(self, name, value):
        if name in self.refused:
            raise ZeroDivisionError("setting " + name)
        Plain.__setattr__(self, name, value)

    def __getattribute__(self, name):
        if name in Plain.__getattribute__(self, "unreadable"):
            raise ZeroDivisionError("reading " + name)
        return Plain.__getattribute__(self, name)


class Looping(Plain):
    """Runs a loop, which would stop at a pending exception, whenever it is asked for something."""

    def __setattr__(self, name, value):
        for _ in (1, 2):
            pass
        Plain.__setattr__(self, name, value)

    def __getattribute__(self, name):
        for _ in (1, 2):
            pass
        return Plain.__getattribute__(self, name)


@pytest.fixture
def log(host):
    host.gmapi.log = []
    return host.gmapi.log


# --- Automatic drawing ---------------------------------------------------------------------------


@pytest.mark.parametrize("py_draw", [1, 2, -1, 12345])
def test_other_int_draws_with_the_nine_image_attributes(host, capfd, py_draw):
    instance = make_instance(py_Draw=py_draw)
    assert draw(host, instance) == (1, None)
    (arguments,) = host.named("draw_sprite_ext")
    assert len(arguments) == 9
    for got, name in zip(arguments, SPRITE_ATTRIBUTES):
        assert got is getattr(instance, name)
    assert capfd.readouterr()[1] == "" and instance.py_Draw == py_draw


def test_image_attributes_are_fetched_in_order(host):
    asked = []

    class Asked(Plain):
        def __getattribute__(self, name):
            asked.append(name)
            return Plain.__getattribute__(self, name)

    instance = Asked(**dict(make_instance().__dict__))
    del asked[:]
    draw(host, instance)
    assert [name for name in asked if name != "__dict__"] == ["py_Draw"] + list(SPRITE_ATTRIBUTES)


@pytest.mark.parametrize("missing", SPRITE_ATTRIBUTES)
def test_missing_image_attribute_fails(host, capfd, missing):
    instance = make_instance()
    delattr(instance, missing)
    status, error = draw(host, instance, make_instance())
    assert status == 0 and isinstance(error, AttributeError) and missing in str(error)
    assert len(host.named("draw_sprite_ext")) == 1
    assert capfd.readouterr()[1] == (
        "Error drawing instance\nError after GI 1\nError drawing instance\nAn error has occurred\n"
    )


def test_failing_sprite_drawing_fails(host, capfd):
    host.results["draw_sprite_ext"] = KeyError("sprite")
    status, error = draw(host, make_instance())
    assert status == 0 and isinstance(error, KeyError)
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


def test_result_of_sprite_drawing_does_not_matter(host):
    host.results["draw_sprite_ext"] = 0
    assert draw(host, make_instance()) == (1, None)


# --- Compiled draw code --------------------------------------------------------------------------


def test_draw_code_runs_as_the_instance_in_the_hosts_module(host, log):
    host.gmapi.self = outer = Instance()
    instance = make_instance(
        py_Draw=compiled(
            "log.append(self); log.append(list(py_self_stack)); made = globals() is locals()"
        )
    )
    assert draw(host, instance) == (1, None)
    assert log == [instance, [outer]]
    assert host.gmapi.made is True
    assert host.gmapi.self is outer and host.gmapi.py_self_stack == []
    assert host.named("draw_sprite_ext") == []


def test_failing_draw_code_fails_and_gives_self_back(host, capfd):
    host.gmapi.self = outer = Instance()
    status, error = run(host, "1 / 0")
    assert status == 0 and isinstance(error, ZeroDivisionError)
    assert host.gmapi.self is outer and host.gmapi.py_self_stack == []
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


@pytest.mark.parametrize(
    "py_draw", [None, True, False, 0.0, "code", long(0), (), lambda: None, compiled]
)
def test_what_is_neither_int_nor_code_fails(host, capfd, py_draw):
    """Only exact ints are numbers here."""
    instance = make_instance(py_Draw=py_draw)
    if py_draw is None:
        instance.py_Draw = None
    host.gmapi.self = outer = Instance()
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, TypeError)
    assert type(py_draw).__name__ in str(error)
    assert host.gmapi.self is outer and host.gmapi.py_self_stack == []
    capfd.readouterr()


def test_code_with_free_variables_fails(host, capfd):
    outside = 1
    code = (lambda: outside).func_code
    status, error = draw(host, make_instance(py_Draw=code))
    assert status == 0 and isinstance(error, TypeError) and "free variables" in str(error)
    capfd.readouterr()


def test_code_of_a_function_with_parameters_fails(host, capfd):
    status, error = draw(host, make_instance(py_Draw=(lambda a: a).func_code))
    assert status == 0 and isinstance(error, TypeError)
    capfd.readouterr()


@pytest.mark.parametrize("globals_", [None, [], types.ModuleType("gmapi"), Raising()])
@pytest.mark.parametrize("resolved", [True, False])
def test_without_a_dictionary_no_code_runs(host, log, capfd, globals_, resolved):
    """Looking a name up in anything else would crash."""
    source = "log.append(1)"
    if resolved:
        instance = make_instance(py_Draw=compiled(source))
    else:
        instance = make_instance(py_Draw=0, object_index=object_with_draw_events(source))
    host.gmapi.self = outer = Instance()
    variable = native.variable(ctypes.c_void_p, "gmapi__dict__")
    bound, variable.value = variable.value, None if globals_ is None else id(globals_)
    try:
        status, error = draw(host, instance)
    finally:
        variable.value = bound
    assert status == 0 and isinstance(error, TypeError) and "gmapi.__dict__" in str(error)
    assert log == [] and host.gmapi.self is outer and host.gmapi.py_self_stack == []
    capfd.readouterr()


def test_a_kind_of_dictionary_will_do(host, log):
    class Globals(dict):
        pass

    globals_ = Globals(host.gmapi.__dict__)
    variable = native.variable(ctypes.c_void_p, "gmapi__dict__")
    bound, variable.value = variable.value, id(globals_)
    try:
        assert run(host, "log.append(1); made = 2") == (1, None)
    finally:
        variable.value = bound
    assert log == [1] and globals_["made"] == 2


def test_code_may_change_how_its_instance_is_drawn(host, log):
    instance = make_instance(py_Draw=compiled("log.append(1); self.py_Draw = 0; del self.py_Draw"))
    assert draw(host, instance) == (1, None)
    assert log == [1] and not hasattr(instance, "py_Draw")


def test_nested_views_nest_self(host, log):
    inner = make_instance(py_Draw=compiled("log.append(self)"))
    outer = make_instance(py_Draw=compiled("draw_inner(); log.append(self)"))
    host.gmapi.draw_inner = lambda: draw(host, inner)
    assert draw(host, outer) == (1, None)
    assert log == [inner, outer] and host.gmapi.py_self_stack == []


def test_code_that_empties_the_self_stack(host, capfd):
    status, error = run(host, "del py_self_stack[:]")
    assert (status, error) == (1, None)
    assert capfd.readouterr()[1] == "Error in PyList_GetItem -1\n"


def test_failing_code_that_empties_the_self_stack(host, capfd):
    """Its own failure is reported before that of giving self back."""
    instance = make_instance(
        py_Draw=0, object_index=object_with_draw_events("del py_self_stack[:]; 1 / 0")
    )
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, ZeroDivisionError)
    assert capfd.readouterr()[1] == (
        "Code eval failed\nError in PyList_GetItem -1\nError drawing instance\n"
        "An error has occurred\n"
    )


def test_without_a_self_stack_no_code_runs(host, log, capfd):
    """It would run as the wrong instance."""
    host.gmapi.py_self_stack = None
    host.register(larkspur)
    host.gmapi.self = outer = Instance()
    status, error = run(host, "log.append(1)")
    assert status == 0 and isinstance(error, RuntimeError) and "py_self_stack" in str(error)
    assert log == [] and host.gmapi.self is outer
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


def test_without_a_current_self_no_code_runs(host, log, capfd):
    del host.gmapi.self
    status, error = run(host, "log.append(1)")
    assert status == 0 and isinstance(error, AttributeError) and "self" in str(error)
    assert log == [] and host.gmapi.py_self_stack == []
    capfd.readouterr()


GUARDED_SELF = """
import sys, types
class Module(types.ModuleType):
    def __setattr__(self, name, value):
        for _ in (1, 2):  # a loop would stop at a pending exception
            pass
        if name == "self" and value is refused:
            raise KeyError("self")
        types.ModuleType.__setattr__(self, name, value)
refused = "nothing"
gmapi = sys.modules["gmapi"] = Module("gmapi")
from support import host, pending, rooms
host.install_modules()
import larkspur, pygame
screen = pygame.display.set_mode((32, 32), 0, 32)
host.set_up(larkspur, screen)
gmapi.self = outer = host.Instance()
gmapi.log = []
instance = rooms.make_instance(py_Draw=rooms.compiled("log.append(1); 1 / 0"))
for refused in (instance, "nothing"):
    status, error = pending.draw_view(rooms.make_view_room(), screen, 0, (instance,))
    print status, type(error).__name__, gmapi.log, gmapi.self is outer, gmapi.py_self_stack
"""


def test_self_that_can_not_be_set_keeps_code_from_running_and_is_given_back():
    """And it is given back as well when the code fails and setting it runs code."""
    status, out, err = subprocess_python.run(GUARDED_SELF)
    assert status == 0, err
    assert out.splitlines()[-2:] == ["0 KeyError [] True []", "0 ZeroDivisionError [1] True []"]


def test_unreadable_draw_attribute_resolves_the_draw_event(host, log, capfd):
    """As a missing one does; the failure stays pending and is reported, but does not count."""
    instance = Guarded(object_index=object_with_draw_events("log.append([i for i in range(3)])"))
    Guarded.unreadable = ("py_Draw",)
    try:
        status, error = draw(host, instance)
    finally:
        Guarded.unreadable = ()
    assert status == 1 and isinstance(error, ZeroDivisionError)
    assert log == [[0, 1, 2]]
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


@pytest.mark.parametrize("hostile", [RaisingAttributes(), Raising(), None, 7, "text"])
def test_any_object_at_all_fails_alone(host, capfd, hostile):
    status, error = draw(host, hostile, make_instance())
    assert status == 0 and isinstance(error, (ZeroDivisionError, AttributeError))
    assert len(host.named("draw_sprite_ext")) == 1
    capfd.readouterr()


# --- Resolving the draw event --------------------------------------------------------------------


def test_first_action_of_the_draw_event_becomes_the_draw_code(host, log, capfd):
    instance = make_instance(
        py_Draw=0,
        object_index=object_with_draw_events("log.append(('first', self))", "log.append('second')"),
    )
    assert draw(host, instance) == (1, None)
    assert log == [("first", instance)]
    code = instance.object_index.py_objectdata.events[8][0].python
    assert instance.py_Draw is code
    instance.object_index = None  # not needed any more
    assert draw(host, instance) == (1, None)
    assert log == [("first", instance)] * 2
    assert host.calls and host.named("draw_sprite_ext") == []
    assert host.gmapi.py_self_stack == [] and capfd.readouterr()[1] == ""


def test_missing_draw_attribute_resolves_likewise_and_is_reported(host, log, capfd):
    """The missing attribute stays pending, does not count, and does not disturb the code."""
    instance = make_instance(
        py_Draw=None, object_index=object_with_draw_events("log.append([i for i in range(3)])")
    )
    status, error = draw(host, instance)
    assert status == 1 and isinstance(error, AttributeError) and "py_Draw" in str(error)
    assert log == [[0, 1, 2]]
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"
    assert draw(host, instance) == (1, None)
    assert log == [[0, 1, 2]] * 2


@pytest.mark.parametrize(
    "object_index, error",
    [
        (object_with_draw_events("log.append(1)"), "py_Draw"),
        (object_with_draw_events(), "py_Draw"),
        (Plain(py_objectdata=Plain(name="o")), "events"),
    ],
)
def test_missing_attributes_do_not_disturb_the_instances_own_code(
    host, log, capfd, object_index, error
):
    instance = Looping(object_index=object_index)
    status, exception = draw(host, instance)
    assert status == 1 and isinstance(exception, AttributeError) and error in str(exception)
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


def test_without_a_draw_action_the_sprite_is_drawn_from_the_next_frame_on(host, capfd):
    instance = make_instance(py_Draw=0, object_index=object_with_draw_events())
    assert draw(host, instance) == (1, None)
    assert instance.py_Draw == 1 and type(instance.py_Draw) is int
    assert host.named("draw_sprite_ext") == []
    assert draw(host, instance) == (1, None)
    assert len(host.named("draw_sprite_ext")) == 1
    assert capfd.readouterr()[1] == ""


def test_object_without_events_is_drawn_with_its_sprite(host, capfd):
    instance = make_instance(py_Draw=0, object_index=Plain(py_objectdata=Plain(name="o")))
    status, error = draw(host, instance)
    assert status == 1 and isinstance(error, AttributeError) and "events" in str(error)
    assert instance.py_Draw == 1
    assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


@pytest.mark.parametrize(
    "events, error", [([], None), ([[]] * 8, None), ((), None), (7, TypeError), (None, TypeError)]
)
def test_too_few_events_fail_once(host, capfd, events, error):
    instance = make_instance(
        py_Draw=0, object_index=Plain(py_objectdata=Plain(events=events, name="o"))
    )
    status, exception = draw(host, instance)
    assert status == 0
    assert exception is None if error is None else isinstance(exception, error)
    assert instance.py_Draw == 1
    lines = "Events too small!\n"
    if error is not None:
        lines += "Error drawing instance\nAn error has occurred\n"
    assert capfd.readouterr()[1] == lines
    assert draw(host, instance) == (1, None)
    assert len(host.named("draw_sprite_ext")) == 1


def events_with(entry):
    return Plain(py_objectdata=Plain(events=[[]] * 8 + [entry], name="o"))


class RaisingSequence(object):
    def __init__(self, length=None):
        self.length = length

    def __len__(self):
        if self.length is None:
            raise ZeroDivisionError("length")
        return self.length

    def __getitem__(self, i):
        raise ZeroDivisionError("item")


@pytest.mark.parametrize(
    "object_index, error",
    [
        (None, AttributeError),
        (Plain(), AttributeError),
        (Plain(py_objectdata=Plain(events=RaisingSequence(9))), ZeroDivisionError),
        (events_with(7), TypeError),
        (events_with(RaisingSequence()), ZeroDivisionError),
        (events_with(RaisingSequence(1)), ZeroDivisionError),
        (events_with([Plain()]), AttributeError),
    ],
)
def test_event_that_can_not_be_found_out_fails_and_is_tried_again(host, capfd, object_index, error):
    instance = make_instance(py_Draw=0, object_index=object_index)
    for _ in range(2):
        status, exception = draw(host, instance)
        assert status == 0 and isinstance(exception, error)
        assert instance.py_Draw == 0
        assert capfd.readouterr()[1] == "Error drawing instance\nAn error has occurred\n"


def test_instance_without_an_object_fails(host, capfd):
    status, error = draw(host, make_instance(py_Draw=0))
    assert status == 0 and isinstance(error, AttributeError) and "object_index" in str(error)
    capfd.readouterr()


def test_failing_code_fails_and_stays_the_draw_code(host, capfd):
    host.gmapi.self = outer = Instance()
    instance = make_instance(py_Draw=0, object_index=object_with_draw_events("1 / 0"))
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, ZeroDivisionError)
    assert instance.py_Draw is instance.object_index.py_objectdata.events[8][0].python
    assert host.gmapi.self is outer and host.gmapi.py_self_stack == []
    assert capfd.readouterr()[1] == (
        "Code eval failed\nError drawing instance\nAn error has occurred\n"
    )


@pytest.mark.parametrize("python", [None, "source", 1])
def test_action_without_compiled_code_fails(host, capfd, python):
    instance = make_instance(py_Draw=0, object_index=events_with([Plain(python=python)]))
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, TypeError)
    assert type(python).__name__ in str(error)
    assert capfd.readouterr()[1] == (
        "Code eval failed\nError drawing instance\nAn error has occurred\n"
    )


def test_code_that_can_not_be_stored_is_run_but_fails(host, log, capfd):
    instance = Guarded(
        py_Draw=0, object_index=object_with_draw_events("log.append([i for i in range(3)])")
    )
    instance.__dict__["refused"] = ("py_Draw",)
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, ZeroDivisionError)
    assert log == [[0, 1, 2]]
    assert capfd.readouterr()[1] == (
        "Error setting attribute string to code.\nError drawing instance\nAn error has occurred\n"
    )


def test_both_failures_of_code_are_reported(host, capfd):
    instance = Guarded(py_Draw=0, object_index=object_with_draw_events("raise KeyError(1)"))
    instance.__dict__["refused"] = ("py_Draw",)
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, KeyError)
    assert capfd.readouterr()[1] == (
        "Error setting attribute string to code.\nCode eval failed\nError drawing instance\n"
        "An error has occurred\n"
    )


def test_number_that_can_not_be_stored_fails(host, capfd):
    instance = Guarded(py_Draw=0, object_index=object_with_draw_events())
    instance.__dict__["refused"] = ("py_Draw",)
    status, error = draw(host, instance)
    assert status == 0 and isinstance(error, ZeroDivisionError)
    assert capfd.readouterr()[1] == (
        "Error setting attribute string to number.\nError drawing instance\nAn error has occurred\n"
    )


# --- Particle systems ----------------------------------------------------------------------------


def make_system(log, automatic=1, **attributes):
    def draw(*arguments):
        log.append(arguments)

    return ParticleSystem(py_automatic_draw=automatic, py_RealDraw=draw, **attributes)


@pytest.mark.parametrize("x, y", [(0, 0), (10.9, 20.9), (-10.9, -20.9), (800, 2.0**40)])
def test_particle_system_is_drawn_at_the_views_offset(host, log, capfd, x, y):
    room = make_view_room()
    room.view_xview[0], room.view_yview[0] = x, y
    system = make_system(log)
    assert pending.draw_view(room, host.screen, 0, (system,)) == (1, None)
    (offset,) = log
    assert offset == (int(-x), int(-y) if y < 2**31 else -(2**31))
    assert [type(part) for part in offset] == [int, int]
    assert capfd.readouterr()[1] == ""


def test_particle_system_moves_with_a_following_view(host, log):
    room = make_view_room()
    host.game.objects.append(Plain(instances=[Plain(x=100.75, y=50)], children=[]))
    room.view_object[0] = 0
    assert pending.draw_view(room, host.screen, 0, (make_system(log),)) == (1, None)
    assert log == [(-100, -50)]


def test_particle_systems_show_in_view_0_only(host, log, capfd):
    bad = ParticleSystem()
    for view in range(1, 8):
        assert draw(host, make_system(log), bad, view=view) == (1, None)
    assert log == [] and capfd.readouterr()[1] == ""
    assert draw(host, make_system(log)) == (1, None)
    assert len(log) == 1


@pytest.mark.parametrize("automatic", [0, None, "", 0.0])
def test_particle_system_that_is_not_automatic_is_left_out(host, log, automatic):
    assert draw(host, make_system(log, automatic)) == (1, None)
    assert log == []


def test_particle_system_without_the_flag_is_left_out_and_reported(host, log, capfd):
    system = make_system(log)
    del system.py_automatic_draw
    status, error = draw(host, system)
    assert status == 1 and isinstance(error, AttributeError)
    assert "py_automatic_draw" in str(error)
    assert log == [] and capfd.readouterr()[1] == "Error drawing PS\nAn error has occurred\n"


class NoTruth(object):
    def __nonzero__(self):
        raise ZeroDivisionError("truth")


def failing_draw(*arguments):
    raise KeyError("particles")


@pytest.mark.parametrize(
    "attributes, error",
    [
        ({"py_automatic_draw": NoTruth()}, ZeroDivisionError),
        ({"py_RealDraw": failing_draw}, KeyError),
        ({"py_RealDraw": 7}, TypeError),
        ({"py_RealDraw": lambda: None}, TypeError),
    ],
)
def test_failing_particle_system_fails(host, log, capfd, attributes, error):
    system = make_system(log)
    system.__dict__.update(attributes)
    status, exception = draw(host, system)
    assert status == 0 and isinstance(exception, error)
    assert log == [] and capfd.readouterr()[1] == "Error drawing PS\nAn error has occurred\n"


def test_particle_system_without_a_draw_method_fails(host, log, capfd):
    system = make_system(log)
    del system.py_RealDraw
    status, error = draw(host, system)
    assert status == 0 and isinstance(error, AttributeError) and "py_RealDraw" in str(error)
    capfd.readouterr()


def test_subclass_of_particle_systems_is_an_instance(host, log):
    class Other(ParticleSystem):
        pass

    other = Other(py_automatic_draw=1, py_RealDraw=lambda *arguments: log.append(arguments))
    other.__dict__.update(make_instance().__dict__)
    assert draw(host, other) == (1, None)
    assert log == [] and len(host.named("draw_sprite_ext")) == 1


def test_objects_are_drawn_in_the_tuples_order(host, log):
    host.gmapi.draw_sprite_ext = lambda *arguments: log.append("sprite")
    host.register(larkspur)
    coded = make_instance(py_Draw=compiled("log.append('code')"))
    system = make_system(log)
    assert draw(host, coded, system, make_instance(), coded) == (1, None)
    assert log == ["code", (0, 0), "sprite", "code"]


# --- References ----------------------------------------------------------------------------------


def test_resolving_keeps_no_references(host, log, capfd):
    with_code = object_with_draw_events("1")
    code = with_code.py_objectdata.events[8][0].python
    without_code = object_with_draw_events()
    failing = object_with_draw_events("1 / 0")
    instances = [make_instance(object_index=index) for index in (with_code, without_code, failing)]

    def resolve():
        for instance in instances:
            instance.py_Draw = 0
        draw(host, *instances)

    counted = instances + [
        with_code,
        code,
        without_code,
        failing,
        with_code.py_objectdata,
        with_code.py_objectdata.events,
    ]
    changes = leaks.count_changes(resolve, counted, rounds=200)
    assert changes == [0.0] * len(counted)
    capfd.readouterr()
