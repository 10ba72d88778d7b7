"""Native access to the host's objects: lists, instances, self, calls and colours."""

import ctypes

import larkspur
import pygame
import pytest
from support import leaks, native, pending
from support.host import Instance, Plain, Raising

OBJECT = ctypes.py_object
INDEX = native.function("Game_Sequence_Index", ctypes.c_void_p, OBJECT, ctypes.c_char_p)
INDEX_F = native.function("Game_Sequence_Index_F", ctypes.c_void_p, OBJECT, ctypes.c_char_p)
INDEX_S = native.function("Game_Sequence_Index_S", ctypes.c_void_p, OBJECT, ctypes.c_char_p)
SEQI = native.function("seqi", ctypes.c_int32, OBJECT, ctypes.c_int32)
FIRST_INSTANCE = native.function("GetFirstInstance", ctypes.c_void_p, OBJECT)
PUSH_SELF = native.function("PushSelf", ctypes.c_int, OBJECT)
POP_SELF = native.function("PopSelf", ctypes.c_int)
INVOKE = native.function("invoke", ctypes.c_void_p, ctypes.c_void_p, OBJECT)
INVOKE_4 = native.function("invoke_4", ctypes.c_void_p, ctypes.c_void_p, *[OBJECT] * 4)
COLOR = native.function("color_as_int", ctypes.c_uint32, OBJECT)


class Equal(object):
    """Equal to everything."""

    def __eq__(self, other):
        return True


# --- Resource lists ------------------------------------------------------------------------------


@pytest.mark.parametrize("list_name", ["sprites", "backgrounds", "rooms", "objects"])
def test_index_is_the_position_in_the_named_list(host, list_name):
    resources = [object() for _ in range(3)]
    setattr(host.game, list_name, resources)
    for position, resource in enumerate(resources):
        for function, kind, expected in (
            (INDEX, int, position),
            (INDEX_F, float, position),
            (INDEX_S, str, "%d" % position),
        ):
            found = native.new_reference(function(resource, list_name))
            assert type(found) is kind and found == expected


def test_first_position_counts(host):
    twice = object()
    host.game.sprites = [object(), twice, twice]
    assert native.new_reference(INDEX(twice, "sprites")) == 1


def test_absent_object_has_no_index_and_no_exception(host):
    """Equal objects do not count."""
    host.game.sprites = [Equal(), 7]
    for absent in (Equal(), object(), None, 7.0):
        assert INDEX(absent, "sprites") is None
        assert INDEX_F(absent, "sprites") is None
        assert native.new_reference(INDEX_S(absent, "sprites")) == "-1"


@pytest.mark.parametrize("resources", [None, 7, (), "sprites", {}, Raising()])
def test_what_is_no_list_has_no_positions(host, resources):
    host.game.sprites = resources
    assert INDEX(resources, "sprites") is None
    assert INDEX_F(resources, "sprites") is None
    assert native.new_reference(INDEX_S(resources, "sprites")) == "-1"


def test_kind_of_list_has_positions(host):
    class Resources(list):
        def __getitem__(self, i):
            raise ZeroDivisionError

    wanted = object()
    host.game.sprites = Resources([None, wanted])
    assert native.new_reference(INDEX(wanted, "sprites")) == 1


@pytest.mark.parametrize("function", [INDEX, INDEX_F, INDEX_S])
def test_missing_list_or_game_raises(host, function):
    with pytest.raises(AttributeError) as raised:
        function(None, "no_such_list")
    assert "no_such_list" in str(raised.value)
    del host.gm6.game
    with pytest.raises(AttributeError) as raised:
        function(None, "sprites")
    assert "game" in str(raised.value)


def test_unbound_gm6_has_no_positions(host):
    bound = native.variable(ctypes.c_void_p, "gm6")
    saved, bound.value = bound.value, None
    try:
        for list_name in ("sprites", None):
            assert INDEX(None, list_name) is None
            for function in (INDEX_F, INDEX_S):
                with pytest.raises(RuntimeError) as raised:
                    function(None, list_name)
                assert "gm6" in str(raised.value)
    finally:
        bound.value = saved


class Looping(object):
    """Runs a loop, which would stop at a pending exception, whenever it is asked for something."""

    def __init__(self, **attributes):
        self.__dict__.update(attributes)

    def __getattribute__(self, name):
        for _ in (1, 2):
            pass
        return object.__getattribute__(self, name)


INDEX_FUNCTIONS = ["Game_Sequence_Index", "Game_Sequence_Index_F", "Game_Sequence_Index_S"]


@pytest.mark.parametrize("function, position", zip(INDEX_FUNCTIONS, [2, 2.0, "2"]))
def test_an_older_exception_does_not_disturb_a_lookup(host, function, position):
    wanted, older = object(), KeyError("older")
    host.gm6.game = Looping(sprites=[None, None, wanted])
    assert pending.find_in_list(function, wanted, "sprites", older) == (True, position, older)
    nowhere = pending.find_in_list(function, object(), "sprites", older)
    assert nowhere.result == ("-1" if position == "2" else None) and nowhere.exception is older
    failed = pending.find_in_list(function, wanted, "no_such_list", older)
    assert not failed.succeeded and isinstance(failed.exception, AttributeError)


@pytest.mark.parametrize("function", INDEX_FUNCTIONS)
def test_a_list_without_a_name_raises(host, function):
    outcome = pending.find_in_list(function, host, None)
    assert not outcome.succeeded and isinstance(outcome.exception, TypeError)
    assert "name" in str(outcome.exception)


def test_lists_come_from_gm6_and_not_from_gmapi(host):
    wanted = object()
    host.gmapi.game = Plain(sprites=[wanted])
    assert INDEX(wanted, "sprites") is None


@pytest.mark.parametrize("function", [INDEX, INDEX_F, INDEX_S])
def test_lookups_keep_no_references(host, function):
    wanted = object()
    host.game.sprites = [None, wanted]
    leaks.assert_counts_unchanged(
        lambda: native.new_reference(function(wanted, "sprites")),
        wanted,
        host.game,
        host.game.sprites,
    )
    leaks.assert_counts_unchanged(
        lambda: native.new_reference(function(host, "sprites")), host, host.game, host.game.sprites
    )


@pytest.mark.parametrize("function", [INDEX, INDEX_F, INDEX_S])
def test_a_native_callers_list_name_is_not_kept(host, function):
    name = intern("a_list_that_nobody_else_names")
    setattr(host.game, name, [])
    leaks.assert_counts_unchanged(lambda: native.new_reference(function(host, name)), name)


# --- seqi ----------------------------------------------------------------------------------------


@pytest.mark.parametrize(
    "kind", [list, tuple, type("Kind", (list,), {}), type("TupleKind", (tuple,), {})]
)
def test_seqi_reads_lists_and_tuples(kind):
    values = kind([5, -7, 3.9, long(8), True, 2**31 - 1, -(2**31)])
    assert [SEQI(values, i) for i in range(7)] == [5, -7, 3, 8, 1, 2**31 - 1, -(2**31)]


def test_seqi_takes_magical_variables():
    variable = larkspur.GMVar(12)
    assert SEQI((variable,), 0) == 12


@pytest.mark.parametrize(
    "sequence, i, error",
    [
        ((), 0, IndexError),
        ([1], 1, IndexError),
        ([1], -1, IndexError),
        ((1,), -1, IndexError),
        (None, 0, TypeError),
        ("12", 0, TypeError),
        ({0: 1}, 0, TypeError),
        (["x"], 0, TypeError),
        ([Raising()], 0, ZeroDivisionError),
        ([2**70], 0, OverflowError),
    ],
)
def test_seqi_raises_on_what_it_can_not_read(sequence, i, error):
    with pytest.raises(error):
        SEQI(sequence, i)


def test_seqi_survives_an_element_that_empties_its_list():
    class Emptying(object):
        def __int__(self):
            del values[:]
            return 4

    values = [Emptying()]
    assert SEQI(values, 0) == 4


# --- First instance ------------------------------------------------------------------------------


def resource(instances=(), *children):
    return Plain(instances=list(instances), children=list(children))


def first(found):
    return native.new_reference(FIRST_INSTANCE(found))


class Unreadable(object):
    """Has a length, and no item that could be had."""

    def __len__(self):
        return 1

    def __getitem__(self, i):
        raise ZeroDivisionError("an item")


def test_own_instance_comes_before_the_childrens(host):
    mine, childs = Instance(), Instance()
    assert first(resource([mine, Instance()], resource([childs]))) is mine


def test_children_are_searched_depth_first_in_order(host):
    grandchild, second = Instance(), Instance()
    tree = resource(
        [], resource(), resource([], resource(), resource([grandchild])), resource([second])
    )
    assert first(tree) is grandchild


def test_object_without_instances_gives_none_without_an_exception(host):
    assert first(resource()) is None
    assert first(resource([], resource(), resource([], resource()))) is None


def test_children_of_an_object_with_instances_are_not_asked_for(host):
    instance = Instance()
    assert first(Plain(instances=[instance])) is instance


def test_any_sequences_will_do(host):
    instance = Instance()
    assert first(Plain(instances=(), children=(resource([instance]),))) is instance


@pytest.mark.parametrize(
    "bad, error",
    [
        (None, AttributeError),
        (Plain(), AttributeError),
        (Plain(instances=[]), AttributeError),
        (Plain(instances=None, children=[]), TypeError),
        (Plain(instances=[], children=7), TypeError),
        (Plain(instances=Raising(), children=[]), ZeroDivisionError),
        (Plain(instances=[], children=Raising()), ZeroDivisionError),
        (Plain(instances=[], children=Unreadable()), ZeroDivisionError),
        (resource([], Plain()), AttributeError),
    ],
)
def test_failing_search_gives_its_exception(host, bad, error):
    with pytest.raises(error):
        FIRST_INSTANCE(bad)


def test_failing_instances_keep_children_from_being_searched(host):
    with pytest.raises(AttributeError):
        FIRST_INSTANCE(Plain(children=[resource([Instance()])]))


def test_failing_child_ends_the_search(host):
    with pytest.raises(AttributeError):
        FIRST_INSTANCE(resource([], Plain(), resource([Instance()])))


def test_object_that_is_its_own_child_raises(host):
    circle = resource()
    circle.children.append(circle)
    with pytest.raises(RuntimeError) as raised:
        FIRST_INSTANCE(circle)
    assert "recursion" in str(raised.value)


def test_deep_but_finite_children_are_searched(host):
    instance = Instance()
    tree = resource([instance])
    for _ in range(500):
        tree = resource([], tree)
    assert first(tree) is instance


def test_children_that_vanish_while_they_are_searched(host):
    class Vanishing(object):
        children = []

        @property
        def instances(self):
            del parent.children[:]
            return []

    parent = resource([], Vanishing(), resource([Instance()]))
    assert first(parent) is None


def test_an_older_exception_does_not_disturb_the_search(host):
    instance, older = Instance(), KeyError("older")
    tree = Looping(
        instances=[],
        children=[Looping(instances=[], children=[]), Looping(instances=[instance])],
    )
    assert pending.first_instance(tree, older) == (True, instance, older)
    assert pending.first_instance(resource(), older) == (False, None, older)
    failed = pending.first_instance(Plain(), older)
    assert not failed.succeeded and isinstance(failed.exception, AttributeError)


def test_search_keeps_no_references(host):
    instance, child = Instance(), resource()
    tree = resource([], child, resource([instance]))
    leaks.assert_counts_unchanged(lambda: first(tree), instance, child, tree, tree.children)


# --- self ----------------------------------------------------------------------------------------


def test_push_saves_self_and_pop_puts_it_back(host):
    outer, inner, innermost = Instance(), Instance(), Instance()
    host.gmapi.self = outer
    stack = host.gmapi.py_self_stack
    assert PUSH_SELF(inner) == 0
    assert host.gmapi.self is inner and stack == [outer]
    assert PUSH_SELF(innermost) == 0
    assert host.gmapi.self is innermost and stack == [outer, inner]
    assert POP_SELF() == 0
    assert host.gmapi.self is inner and stack == [outer]
    assert POP_SELF() == 0
    assert host.gmapi.self is outer and stack == []


def test_pop_of_an_empty_stack_says_so_and_changes_nothing(host, capfd):
    host.gmapi.self = current = Instance()
    assert POP_SELF() == -1
    assert capfd.readouterr() == ("", "Error in PyList_GetItem -1\n")
    assert host.gmapi.self is current and host.gmapi.py_self_stack == []


def test_pop_without_a_stack_says_the_same(host, capfd):
    host.gmapi.py_self_stack = None
    host.register(larkspur)
    assert POP_SELF() == -1
    assert capfd.readouterr() == ("", "Error in PyList_GetItem -1\n")


@pytest.mark.parametrize("stack", [None, (), 7])
def test_push_needs_a_stack(host, stack):
    host.gmapi.py_self_stack = stack
    host.gmapi.self = current = Instance()
    host.register(larkspur)
    with pytest.raises(RuntimeError) as raised:
        PUSH_SELF(Instance())
    assert "py_self_stack" in str(raised.value) and host.gmapi.self is current


def test_push_needs_a_current_self(host):
    del host.gmapi.self
    with pytest.raises(AttributeError):
        PUSH_SELF(Instance())
    assert host.gmapi.py_self_stack == []


def test_stack_stays_the_one_that_was_registered(host):
    registered = host.gmapi.py_self_stack
    host.gmapi.py_self_stack = []
    assert PUSH_SELF(Instance()) == 0
    assert len(registered) == 1 and host.gmapi.py_self_stack == []
    POP_SELF()


def test_push_and_pop_keep_no_references(host):
    host.gmapi.self = outer = Instance()
    inner = Instance()

    def round_trip():
        PUSH_SELF(inner)
        POP_SELF()

    leaks.assert_counts_unchanged(round_trip, outer, inner, host.gmapi.py_self_stack)


def test_saved_self_lives_until_it_is_current_again(host):
    """Dropping the inner self runs code that looks at the stack: the saved one is still on it."""
    seen = []

    class Dropped(object):
        def __del__(self):
            seen.append((host.gmapi.self is outer, list(host.gmapi.py_self_stack)))

    host.gmapi.self = outer = Instance()
    PUSH_SELF(Dropped())
    assert POP_SELF() == 0
    assert seen == [(True, [outer])] and host.gmapi.py_self_stack == []


def test_pop_whose_store_runs_code_that_empties_the_stack(host):
    class Dropped(object):
        def __del__(self):
            del host.gmapi.py_self_stack[:]

    host.gmapi.self = outer = Instance()
    PUSH_SELF(Dropped())
    assert POP_SELF() == 0
    assert host.gmapi.self is outer and host.gmapi.py_self_stack == []


def test_pop_whose_store_runs_code_that_registers_another_stack(host):
    class Dropped(object):
        def __del__(self):
            host.gmapi.py_self_stack = None
            host.register(larkspur)

    host.gmapi.self = outer = Instance()
    stack = host.gmapi.py_self_stack
    PUSH_SELF(Dropped())
    assert POP_SELF() == 0
    assert host.gmapi.self is outer and stack == []


# --- Calls ---------------------------------------------------------------------------------------


def test_invoke_passes_its_arguments(host):
    seen = []

    def record(*arguments):
        seen.append(arguments)
        return arguments[-1]

    one, four = object(), [object() for _ in range(4)]
    assert native.new_reference(INVOKE(id(record), one)) is one
    assert native.new_reference(INVOKE_4(id(record), *four)) is four[3]
    assert seen == [(one,), tuple(four)]


def test_invoke_passes_a_tuple_as_one_argument(host):
    seen = []
    append = seen.append
    native.new_reference(INVOKE(id(append), (1, 2)))
    assert seen == [(1, 2)]


@pytest.mark.parametrize(
    "callee, error", [(Raising(), ZeroDivisionError), (7, TypeError), (lambda: None, TypeError)]
)
def test_failing_call_gives_its_exception(host, callee, error):
    with pytest.raises(error):
        INVOKE(id(callee), None)
    with pytest.raises(error):
        INVOKE_4(id(callee), 1, 2, 3, 4)


def test_call_of_nothing_says_what_to_do(host):
    for call in (lambda: INVOKE(None, 1), lambda: INVOKE_4(None, 1, 2, 3, 4)):
        with pytest.raises(RuntimeError) as raised:
            call()
        assert "RegisterInstancesDict" in str(raised.value)


def test_calls_keep_no_references(host):
    result, argument = object(), object()

    def answer(*arguments):
        return result

    leaks.assert_counts_unchanged(
        lambda: (
            native.new_reference(INVOKE(id(answer), argument)),
            native.new_reference(INVOKE_4(id(answer), *[argument] * 4)),
        ),
        answer,
        argument,
        result,
    )


# --- Colours -------------------------------------------------------------------------------------


@pytest.mark.parametrize(
    "colour, value",
    [
        ((255, 0, 0), 0xFF0000),
        ((0, 255, 0), 0xFF00),
        ((0, 0, 255), 0xFF),
        ([1, 2, 3], 0x010203),
        ((1, 2, 3, 255), 0x010203),
        ((1, 2, 3, 4, 5), 0x010203),
        ((1, 2), 0xFFFFFF),
        ((), 0xFFFFFF),
        ("a", 0xFFFFFF),
        (123, 123),
        (0xFFFFFFFF, 0xFFFFFFFF),
        (-1, 0xFFFFFFFF),
        (5.9, 5),
        # Channels are shifted and added as they are, without a mask.
        ((256, 0, 0), 0x1000000),
        ((0, 256, 0), 0x10000),
        ((1, 256, -1), 0x1FFFF),
        ((1.9, 2.9, 3.9), 0x010203),
    ],
)
def test_colours_as_pixel_values(host, colour, value):
    assert COLOR(colour) == value


def test_colours_follow_the_displays_shifts(host):
    swapped = pygame.Surface((4, 4), 0, 32, (0xFF, 0xFF00, 0xFF0000, 0))
    larkspur.set_SDL_screen(swapped)
    assert COLOR((1, 2, 3)) == 0x030201
    small = pygame.Surface((4, 4), 0, 16, (0xF800, 0x7E0, 0x1F, 0))
    larkspur.set_SDL_screen(small)
    assert COLOR((31, 63, 31)) == 0xFFFF  # the format's losses do not matter
    assert COLOR((1,)) == 0xFFFF


def test_shifts_count_modulo_32(host):
    """A host can set greater ones, which the language leaves undefined."""
    screen = pygame.Surface((4, 4), 0, 32)
    larkspur.set_SDL_screen(screen)
    screen.set_shifts((32 + 16, 224 + 8, 64, 0))
    assert COLOR((1, 2, 3)) == 0x010203


@pytest.mark.parametrize(
    "colour, error, parts",
    [
        (("x", 2, 3), TypeError, 3),
        ((1, None, 3), TypeError, 3),
        ((1, 2, Raising()), ZeroDivisionError, 3),
        (Raising(), ZeroDivisionError, 0),
        (None, TypeError, 0),
        ((2**70, 0, 0), OverflowError, 3),
    ],
)
def test_colour_that_does_not_convert_gives_its_exception(host, colour, error, parts):
    with pytest.raises(error):
        COLOR(colour)


def test_parts_that_do_not_convert_count_as_minus_one(host):
    """And do not disturb the conversion of the others; the last failure stays pending."""

    class Looping(object):
        def __int__(self):
            return sum(1 for _ in (1, 2))  # a loop would stop at a pending exception

    def colour_of(*parts):
        return pending.color_as_int(parts)

    value, error = colour_of("x", Looping(), 3)
    assert value == (-0x10000 + 0x0203) % 2**32 and isinstance(error, TypeError)
    value, error = colour_of(Raising(), 0, "x")
    assert value == (-0x10000 - 1) % 2**32 and isinstance(error, TypeError)
    assert colour_of(1, Looping(), 3) == (0x010203, None)


def test_parts_that_can_not_be_had_count_as_minus_one(host):
    class Unreadable(object):
        def __len__(self):
            return 3

        def __getitem__(self, i):
            return {0: 1, 2: 3}[i]

    value, error = pending.color_as_int(Unreadable())
    assert value == (0x010003 - 0x100) % 2**32 and isinstance(error, KeyError)


def test_magical_variable_as_colour_is_its_first_cell(host):
    assert COLOR(larkspur.GMVar(0x123456)) == 0x123456
    assert COLOR([larkspur.GMVar(1), 2, larkspur.GMVar(3)]) == 0x010203


def test_colour_needs_a_display_only_for_its_shifts(host):
    pygame.display.quit()
    with pytest.raises(RuntimeError) as raised:
        COLOR((1, 2, 3))
    assert "display" in str(raised.value)
    assert COLOR(77) == 77


def test_colour_whose_parts_close_the_display(host):
    class Closing(object):
        def __int__(self):
            pygame.display.quit()
            return 7

    assert COLOR((Closing(), 2, 3)) == 0x070203
