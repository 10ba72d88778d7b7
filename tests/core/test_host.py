"""RegisterInstancesDict() and draw_sprite_ext()."""

import ctypes
import json

import larkspur
import pygame
import pytest
from support import leaks, native, pending, rooms, subprocess_python
from support.host import LOADERS, ROOM_FUNCTIONS, Instance, ParticleSystem, Plain, RecordingHost

# Exported variable -> where its value comes from.
FETCHED = dict(("gm6_" + name, ("gm6", name)) for name in ROOM_FUNCTIONS)
FETCHED.update(
    ("gmapi_" + name, ("gmapi", name))
    for name in ("draw_sprite_ext", "py_ParticleSystem", "py_draw_props", "py_self_stack")
)


def held(name):
    """The object in an exported variable; None when it is empty."""
    address = native.variable(ctypes.c_void_p, name).value
    return ctypes.cast(address, ctypes.py_object).value if address else None


def test_returns_none(host):
    assert larkspur.RegisterInstancesDict({}, int, str, float) is None


@pytest.mark.parametrize("variable", sorted(FETCHED))
def test_callables_are_fetched_from_their_modules(host, variable):
    module, attribute = FETCHED[variable]
    value = object()
    setattr(getattr(host, module), attribute, value)
    host.register(larkspur)
    assert held(variable) is value


def test_pygames_own_are_fetched_through_gmapi(host):
    rect, surface = object(), object()
    host.gmapi.pygame = Plain(draw=Plain(rect=rect), Surface=surface)
    host.register(larkspur)
    assert held("pygame_draw_rect") is rect and held("pygame_Surface") is surface


def test_room_draw_view_stays_empty(host):
    host.gm6.Room_DrawView = object()
    host.register(larkspur)
    assert native.variable(ctypes.c_void_p, "gm6_Room_DrawView").value is None


ORDER = """
import json, sys, types
class Module(types.ModuleType):
    def __getattribute__(self, name):
        for _ in (1, 2):  # a loop would stop at a pending exception
            pass
        if not name.startswith("__"):
            asked.append(types.ModuleType.__getattribute__(self, "__name__") + "." + name)
        return types.ModuleType.__getattribute__(self, name)
asked = []
for name in ("gm6", "gmapi"):
    sys.modules[name] = Module(name)
import larkspur
from support import host, native, pending
gm6, gmapi = sys.modules["gm6"], sys.modules["gmapi"]
class Draw(object):
    @property
    def rect(self):
        asked.append("draw.rect")
        return 1
class Pygame(object):
    @property
    def draw(self):
        asked.append("pygame.draw")
        return Draw()
    @property
    def Surface(self):
        asked.append("pygame.Surface")
        return 2
vars(gmapi)["pygame"] = Pygame()
outcome = pending.call(larkspur.RegisterInstancesDict, {}, int, int, int)
print json.dumps([asked, outcome.succeeded, type(outcome.exception).__name__,
                  str(outcome.exception)])
"""


def test_attributes_are_fetched_in_order_though_some_are_missing():
    """Of several failures the last one stays pending, and no failure upsets the next lookup."""
    status, out, err = subprocess_python.run(ORDER)
    assert status == 0, err
    asked, succeeded, error, text = json.loads(out.splitlines()[-1])
    assert asked == ["gm6." + name for name in LOADERS + ROOM_FUNCTIONS] + [
        "gmapi.draw_sprite_ext",
        "gmapi.py_ParticleSystem",
        "gmapi.py_draw_props",
        "gmapi.py_self_stack",
        "gmapi.pygame",
        "pygame.draw",
        "draw.rect",
        "pygame.Surface",
    ]
    assert succeeded and error == "AttributeError" and "py_self_stack" in text


@pytest.mark.parametrize(
    "module, attribute, emptied",
    [
        ("gm6", "Room_Leave", ["gm6_Room_Leave"]),
        ("gmapi", "py_self_stack", ["gmapi_py_self_stack"]),
        ("gmapi", "pygame", ["pygame_draw_rect", "pygame_Surface"]),
    ],
)
def test_failed_fetch_empties_its_variable_and_leaves_its_exception(
    host, module, attribute, emptied
):
    delattr(getattr(host, module), attribute)
    outcome = pending.call(larkspur.RegisterInstancesDict, {}, int, str, float)
    assert outcome.succeeded and outcome.result is None
    assert isinstance(outcome.exception, AttributeError) and attribute in str(outcome.exception)
    for variable in sorted(FETCHED) + ["pygame_draw_rect", "pygame_Surface"]:
        assert (held(variable) is None) == (variable in emptied)


@pytest.mark.parametrize("arguments", [(), ({},), ({}, int, int), ({}, int, int, int, int)])
def test_bad_arguments_go_unreported_and_callables_are_fetched(host, arguments):
    host.gm6.Room_Leave = leave = object()
    outcome = pending.call(larkspur.RegisterInstancesDict, *arguments)
    assert outcome == (True, None, None)
    assert held("gm6_Room_Leave") is leave


class Registry(dict):
    """A dictionary that can be told apart and followed."""


def test_registry_and_types_are_kept_until_the_next_call(host):
    objects = [Registry(), type("A", (), {}), type("B", (), {}), type("C", (), {})]
    before = leaks.counts(objects)
    larkspur.RegisterInstancesDict(*objects)
    assert leaks.growth(objects, before) == [1] * 4
    larkspur.RegisterInstancesDict(*objects)
    assert leaks.growth(objects, before) == [1] * 4
    larkspur.RegisterInstancesDict({}, int, str, float)
    assert leaks.growth(objects, before) == [0] * 4


def test_registry_and_types_are_released_though_the_new_arguments_are_bad(host):
    objects = [Registry(), type("A", (), {}), type("B", (), {}), type("C", (), {})]
    before = leaks.counts(objects)
    larkspur.RegisterInstancesDict(*objects)
    larkspur.RegisterInstancesDict()
    assert leaks.growth(objects, before) == [0] * 4


def test_each_call_takes_one_reference_on_every_callable_and_gives_none_back(host):
    """Running code may still use what an earlier call fetched."""
    host.gm6.Room_Leave = leave = object()
    host.gmapi.py_draw_props = properties = object()
    host.gmapi.pygame = Plain(draw=Plain(rect=object()), Surface=object())
    owners = (host.gmapi.pygame, host.gmapi.pygame.draw)
    counted = (leave, properties, owners[1].rect, owners[0].Surface) + owners
    changes = leaks.count_changes(lambda: host.register(larkspur), counted, rounds=50)
    assert changes == [1.0] * 4 + [0.0] * 2


@pytest.mark.parametrize("place", range(4))
def test_registering_may_register(host, place):
    """What runs when an old object goes is no harm; the outer call has the last word."""

    class Dying(object):
        def __del__(self):
            larkspur.RegisterInstancesDict(*inner)

    inner, outer = [[Registry(), object(), object(), object()] for _ in range(2)]
    before = leaks.counts(inner + outer)
    larkspur.RegisterInstancesDict(*[Dying() if i == place else object() for i in range(4)])
    larkspur.RegisterInstancesDict(*outer)
    assert leaks.growth(inner + outer, before) == [0] * 4 + [1] * 4


@pytest.fixture
def store():
    """Stores an object in an exported variable, as native callers may; put back afterwards."""
    stored = []

    def store(name, value):
        variable = native.variable(ctypes.c_void_p, name)
        stored.append((variable, variable.value, value))
        variable.value = id(value)

    yield store
    for variable, before, _ in reversed(stored):
        variable.value = before


def test_what_a_native_caller_stores_counts_from_the_next_use(host, store):
    room, sprite, calls, game_globals = larkspur.GMRoom(), larkspur.GMSprite(), [], {}
    room.Leave()
    store("gm6_Room_Leave", calls.append)
    room.Leave()
    assert len(calls) == 1 and calls[0] is room

    host.game.rooms = [room]
    assert int(room) == 0
    store("gm6", Plain(game=Plain(rooms=[None, room])))
    assert int(room) == 1

    sprite.__setstate__([0] * 15 + ["first", 0])
    store("gmapi__dict__", game_globals)
    sprite.__setstate__([0] * 15 + ["second", 0])
    assert host.gmapi.first is sprite and game_globals.keys() == ["second"]

    push_self = native.function("PushSelf", ctypes.c_int, ctypes.py_object)
    push_self("first")
    other = Plain()
    other.self = None
    store("gmapi", other)
    push_self("second")
    assert host.gmapi.self == "first" and other.self == "second"


@pytest.mark.parametrize(
    "module, call",
    [
        ("gmapi", lambda screen: larkspur.Room_Draw(rooms.make_room(), screen)),
        ("gm6", lambda screen: larkspur.Room_Draw(rooms.make_view_room(), screen)),
        ("gmapi", lambda screen: larkspur.draw_rectangle(1, 1, 5, 5)),
        ("gmapi", lambda screen: native.function("PopSelf", ctypes.c_int)()),
    ],
)
def test_host_module_that_is_not_bound_is_told(host, display, module, call):
    host.gmapi.py_draw_props.alpha = 0.5
    host.gmapi.py_self_stack.append("saved")
    native.variable(ctypes.c_int32, "this_second").value = -1  # a frame stores gmapi.fps
    variable = native.variable(ctypes.c_void_p, module)
    bound = variable.value
    variable.value = None
    try:
        exception = pending.call(call, display).exception
    finally:
        variable.value = bound
    assert isinstance(exception, RuntimeError)
    assert "gm6 and gmapi are not bound" in str(exception)


def test_recording_host_offers_all_that_is_fetched(host):
    outcome = pending.call(larkspur.RegisterInstancesDict, {}, Instance, ParticleSystem, Plain)
    assert outcome == (True, None, None)
    assert held("pygame_draw_rect") == pygame.draw.rect and held("pygame_Surface") is pygame.Surface
    assert isinstance(host, RecordingHost)


@pytest.mark.parametrize("arguments", [(), (1, 2, 3), tuple(range(9))])
def test_draw_sprite_ext_says_that_it_is_not_the_way(capfd, arguments):
    outcome = pending.call(larkspur.draw_sprite_ext, *arguments)
    assert not outcome.succeeded
    assert type(outcome.exception) is SystemError  # the interpreter's, when a failure has none
    assert capfd.readouterr() == (
        "",
        (
            "This does not behave properly on Mac, and does not provide the desired speed boost on "
            "Linux.\n"
        ),
    )
