"""What sprites, backgrounds and rooms share: an index, being loaded and published by the host."""

import collections
import ctypes
import gc
import sys

import larkspur
import pytest
from support import leaks, native, records, subprocess_python

# How the interpreter reports a failing type call without an exception.
NO_EXCEPTION = "NULL result without error in PyObject_Call"
LISTS = [
    (larkspur.GMSprite, "sprites"),
    (larkspur.BackgroundData, "backgrounds"),
    (larkspur.GMRoom, "rooms"),
]
every_list = pytest.mark.parametrize("made, list_name", LISTS, ids=[name for _, name in LISTS])

# integers  the integer fields of the state in order, with their positions
# name      position of the name
# count     position of the number of subimages, None when the state has none
# caches    what setting a state makes anew, in this order, and the type of what it makes
Loaded = collections.namedtuple("Loaded", "made loader integers name count caches")
SPRITE = Loaded(
    larkspur.GMSprite,
    "SpriteData_load_images",
    list(enumerate(records.int_names(records.SPRITE))),
    15,
    16,
    [("subimages", list), ("scalecache", dict)],
)
BACKGROUND = Loaded(
    larkspur.BackgroundData,
    "BackgroundData_load_images",
    [(1, "transparent")],
    0,
    None,
    [("scaled_data_cache", dict), ("surf", type(None))],
)
every_loaded = pytest.mark.parametrize(
    "kind", [SPRITE, BACKGROUND], ids=lambda kind: kind.made.__name__
)


def state_of(kind, name, count=2):
    """A state with the integers 1, 2, 3, ... in the order in which they are read."""
    positions = dict((position, number + 1) for number, (position, _) in enumerate(kind.integers))
    positions[kind.name] = name
    if kind.count is not None:
        positions[kind.count] = count
    return tuple(positions[position] for position in range(len(positions)))


def integers_of(kind, resource):
    return [getattr(resource, name) for _, name in kind.integers]


def with_item(state, position, item):
    return state[:position] + (item,) + state[position + 1 :]


# --- Index ---------------------------------------------------------------------------------------


class EqualToAll(object):
    """Equal to everything and integer 0, but not the same object."""

    def __eq__(self, other):
        return True

    def __cmp__(self, other):
        return 0

    def __int__(self):
        return 0


@every_list
def test_conversions_give_the_first_position_of_the_very_object(host, made, list_name):
    resource = made()
    getattr(host.game, list_name).extend([made(), EqualToAll(), None, resource, made(), resource])
    assert (int(resource), float(resource), str(resource)) == (3, 3.0, "3")
    assert (type(int(resource)), type(float(resource)), type(str(resource))) == (int, float, str)


@every_list
def test_position_is_found_in_a_subclass_of_list_and_in_no_other_sequence(host, made, list_name):
    class Derived(list):
        pass

    resource = made()
    setattr(host.game, list_name, Derived([None, resource]))
    assert int(resource) == 1
    setattr(host.game, list_name, (None, resource))
    with pytest.raises(SystemError):
        int(resource)


@every_list
@pytest.mark.parametrize("others", [0, 3])
def test_numbers_of_an_absent_resource_fail_without_an_exception(host, made, list_name, others):
    getattr(host.game, list_name).extend(made() for _ in range(others))
    for convert in (int, float):
        with pytest.raises(SystemError) as failure:
            convert(made())
        assert str(failure.value) == NO_EXCEPTION


@pytest.mark.parametrize("made, list_name", LISTS[1:])
def test_text_of_an_absent_background_or_room_is_minus_1(host, made, list_name):
    assert str(made()) == "-1"
    getattr(host.game, list_name).append(made())
    assert str(made()) == "-1"


@pytest.mark.parametrize("others", [0, 3])
def test_text_of_an_absent_sprite_fails_without_an_exception(host, others):
    host.game.sprites.extend(larkspur.GMSprite() for _ in range(others))
    with pytest.raises(SystemError) as failure:
        str(larkspur.GMSprite())
    assert str(failure.value) == NO_EXCEPTION


@every_list
@pytest.mark.parametrize("convert", [int, float, str])
def test_a_game_without_the_list_raises(host, made, list_name, convert):
    delattr(host.game, list_name)
    with pytest.raises(AttributeError):
        convert(made())
    del host.gm6.game
    with pytest.raises(AttributeError):
        convert(made())


@every_list
def test_conversions_keep_the_counts(host, made, list_name):
    resource, absent = made(), made()
    resources = getattr(host.game, list_name)
    resources.append(resource)

    def convert():
        int(resource), float(resource), str(resource)
        for conversion in (int, float):
            with pytest.raises(SystemError):
                conversion(absent)

    leaks.assert_counts_unchanged(convert, resource, absent, resources, host.game)


# --- Setting a state -----------------------------------------------------------------------------


@every_loaded
@pytest.mark.parametrize("container", [tuple, list])
def test_setstate_restores_loads_and_publishes(host, kind, container):
    resource = kind.made()
    resource.w = resource.h = 99
    before = [getattr(resource, cache) for cache, _ in kind.caches]
    host.gmapi.res_tree = "an older resource of that name"
    state = container(state_of(kind, "res_tree"))
    assert resource.__setstate__(state, "ignored") is None
    assert integers_of(kind, resource) == list(range(1, len(kind.integers) + 1))
    assert resource.name == "res_tree"
    for (cache, made), old in zip(kind.caches, before):
        assert type(getattr(resource, cache)) is made
        assert not getattr(resource, cache)
        assert made is type(None) or getattr(resource, cache) is not old
    expected = (resource,) if kind is BACKGROUND else (resource, "res_tree", 2)
    assert host.calls == [(kind.loader, expected)]
    assert host.gmapi.res_tree is resource


@every_loaded
def test_the_host_loads_into_a_restored_resource_that_is_not_published_yet(host, kind):
    seen = []

    def load(resource, *rest):
        seen.append(
            (
                resource.name,
                integers_of(kind, resource),
                [bool(getattr(resource, cache)) for cache, _ in kind.caches],
                hasattr(host.gmapi, "res_tree"),
            )
        )
        setattr(resource, kind.caches[0][0], ["loaded"])

    setattr(host.gm6, kind.loader, load)
    host.register(larkspur)
    resource = kind.made()
    resource.__setstate__(state_of(kind, "res_tree"))
    assert seen == [("res_tree", list(range(1, len(kind.integers) + 1)), [False, False], False)]
    assert getattr(resource, kind.caches[0][0]) == ["loaded"]


@every_loaded
@pytest.mark.parametrize("round_trip", records.ROUND_TRIPS)
def test_resources_survive_pickling_and_copying(host, kind, round_trip):
    resource = kind.made()
    resource.name = "res_tree"
    for number, (_, name) in enumerate(kind.integers):
        setattr(resource, name, number - 3)
    restored = round_trip(resource)
    assert restored is not resource
    assert restored.name == "res_tree"
    leaks.lend_references(restored.name, -1)  # which it keeps for good
    assert integers_of(kind, restored) == integers_of(kind, resource)
    assert host.gmapi.res_tree is restored
    assert [name for name, _ in host.calls] == [kind.loader]


@every_loaded
def test_a_restored_name_keeps_one_reference_for_good(host, kind):
    name = "res_%s" % id(host)
    with leaks.count_restored(name):
        before = sys.getrefcount(name)
        resource = kind.made()
        state = state_of(kind, name)
        resource.__setstate__(state)
        del state, host.gmapi.__dict__[name], resource, host.calls[:]
        assert sys.getrefcount(name) == before + 1


@every_loaded
def test_setting_a_state_again_takes_one_reference_of_the_name_each_time(host, kind):
    setattr(host.gm6, kind.loader, lambda *arguments: None)
    host.register(larkspur)
    resource, name, result = kind.made(), "res_tree_%d" % id(host), object()
    setattr(host.gm6, kind.loader, lambda *arguments: result)
    host.register(larkspur)
    with leaks.count_restored(name):
        state = state_of(kind, name)
        changes = leaks.count_changes(
            lambda: resource.__setstate__(state), [name, resource, state, result]
        )
        resource.name = state = None
        del host.gmapi.__dict__[name]
    assert changes == [1.0, 0.0, 0.0, 0.0]


@every_loaded
def test_a_failing_loader_leaves_its_exception_and_the_restored_fields(host, kind, capfd):
    class Refusal(Exception):
        pass

    host.results[kind.loader] = refusal = Refusal()
    resource = kind.made()
    with pytest.raises(Refusal) as failure:
        resource.__setstate__(state_of(kind, "res_tree"))
    assert failure.value is refusal
    assert capfd.readouterr() == ("", "An exception occurred!\n")
    assert resource.name == "res_tree"
    assert integers_of(kind, resource) == list(range(1, len(kind.integers) + 1))
    assert not hasattr(host.gmapi, "res_tree")
    del failure, host.calls[:]
    sys.exc_clear()
    kept = [holder for holder in gc.get_referrers(resource) if type(holder) is tuple]
    assert kept == ([(resource,)] if kind is BACKGROUND else [])  # the arguments of the loader
    for arguments in kept:
        leaks.left_behind(arguments)


@every_loaded
def test_a_failing_load_keeps_a_background_alive_and_no_sprite(host, kind):
    def fail(*arguments):
        raise ValueError("no image")

    setattr(host.gm6, kind.loader, fail)
    host.register(larkspur)
    resource = kind.made()
    state = state_of(kind, "res_tree")

    def restore():
        try:
            resource.__setstate__(state)
        except ValueError:
            sys.exc_clear()

    expected = [1.0, 0.0] if kind is BACKGROUND else [0.0, 0.0]
    assert leaks.count_changes(restore, [resource, state]) == expected


@every_loaded
@pytest.mark.parametrize("name", [[], {}])
def test_a_name_that_is_no_key_fails_the_store(host, kind, name, capfd):
    resource = kind.made()
    with pytest.raises(TypeError):
        resource.__setstate__(state_of(kind, name))
    assert capfd.readouterr() == ("Retnull\n", "")
    assert resource.name is name
    assert [called for called, _ in host.calls] == [kind.loader]


@every_loaded
def test_a_name_that_cannot_be_hashed_leaves_its_exception(host, kind, capfd):
    class Name(object):
        def __hash__(self):
            raise ArithmeticError("no hash")

    resource, name = leaks.left_behind(kind.made()), leaks.left_behind(Name())
    with pytest.raises(ArithmeticError):
        resource.__setstate__(state_of(kind, name))
    assert capfd.readouterr() == ("Retnull\n", "")


@every_loaded
def test_without_the_game_code_s_globals_the_store_fails(host, kind, capfd):
    game_globals = native.variable(ctypes.c_void_p, "gmapi__dict__")
    bound, game_globals.value = game_globals.value, None
    try:
        with pytest.raises(SystemError):
            kind.made().__setstate__(state_of(kind, "res_tree"))
    finally:
        game_globals.value = bound
    assert capfd.readouterr() == ("Retnull\n", "")


@every_loaded
def test_hashing_the_name_may_rename_the_resource(host, kind):
    class Name(object):
        def __hash__(self):
            resource.name = "renamed"
            return 5

    resource, name = leaks.left_behind(kind.made()), leaks.left_behind(Name())
    resource.__setstate__(state_of(kind, name))
    assert resource.name == "renamed"
    assert host.gmapi.__dict__.pop(name) is resource


@every_loaded
def test_the_name_lives_until_the_resource_is_stored(host, kind):
    class Name(object):
        def __hash__(self):
            resource.name = "renamed"  # nothing else held the name
            return 5

        def __del__(self):
            died.append(len(host.gmapi.__dict__))

    def load(resource, *rest):
        resource.name = Name()

    setattr(host.gm6, kind.loader, load)
    host.register(larkspur)
    resource, died, size = kind.made(), [], len(host.gmapi.__dict__)
    resource.__setstate__(state_of(kind, "res_tree"))
    assert (died, len(host.gmapi.__dict__)) == ([], size + 1)
    (key,) = [key for key in host.gmapi.__dict__ if type(key) is Name]
    assert host.gmapi.__dict__.pop(key) is resource


@every_loaded
def test_a_resource_is_published_under_the_name_that_the_host_left(host, kind, capfd):
    def rename(resource, *rest):
        resource.name = "res_other"

    def forget(resource, *rest):
        del resource.name

    setattr(host.gm6, kind.loader, rename)
    host.register(larkspur)
    resource = kind.made()
    resource.__setstate__(state_of(kind, "res_tree"))
    assert host.gmapi.res_other is resource and not hasattr(host.gmapi, "res_tree")
    setattr(host.gm6, kind.loader, forget)
    host.register(larkspur)
    with pytest.raises(AttributeError) as failure:
        resource.__setstate__(state_of(kind, "res_tree"))
    assert str(failure.value) == "name"
    assert capfd.readouterr() == ("Retnull\n", "")


# --- Bad states ----------------------------------------------------------------------------------


@every_loaded
@pytest.mark.parametrize("arguments", records.NO_STATES)
def test_setstate_refuses_what_is_no_state(host, kind, arguments):
    resource = kind.made()
    resource.name = "kept"
    with pytest.raises(TypeError):
        resource.__setstate__(*arguments)
    assert resource.name == "kept"
    assert integers_of(kind, resource) == [0] * len(kind.integers)
    assert host.calls == []


@every_loaded
@pytest.mark.parametrize("item, error", [("text", TypeError), (2**64, OverflowError)])
def test_an_integer_that_does_not_convert_keeps_what_came_before(host, kind, item, error):
    for number, (position, _) in enumerate(kind.integers):
        resource = kind.made()
        resource.name = "kept"
        with pytest.raises(error):
            resource.__setstate__(with_item(state_of(kind, "res_tree"), position, item))
        read = list(range(1, number + 1))
        assert integers_of(kind, resource) == read + [0] * (len(kind.integers) - number)
        assert resource.name == "kept"
    assert host.calls == []


@every_loaded
def test_a_short_state_raises_and_keeps_what_came_before(host, kind):
    state = state_of(kind, "res_tree")
    for length in range(len(state)):
        resource = kind.made()
        resource.name = "kept"
        with pytest.raises(IndexError):
            resource.__setstate__(state[:length])
        assert resource.name == ("res_tree" if kind is SPRITE and length == 16 else "kept")
        for cache, _ in kind.caches:
            getattr(resource, cache)  # still set
    assert host.calls == []


@pytest.mark.parametrize(
    "state, error",
    [
        (state_of(SPRITE, "res_tree", "two"), TypeError),
        (state_of(SPRITE, "res_tree")[:16], IndexError),
    ],
)
def test_a_sprite_state_without_a_count_stands_as_far_as_it_was_read(host, state, error):
    sprite = larkspur.GMSprite()
    sprite.subimages, sprite.scalecache = ["old"], {"old": "scaled"}
    with pytest.raises(error):
        sprite.__setstate__(state)
    assert (sprite.name, sprite.subimages) == ("res_tree", [])
    assert sprite.scalecache == {"old": "scaled"}
    assert host.calls == []


@every_loaded
def test_integers_are_cut_to_32_bits(host, kind):
    resource = kind.made()
    position, name = kind.integers[0]
    resource.__setstate__(with_item(state_of(kind, "res_tree"), position, 2**32 + 5))
    assert getattr(resource, name) == 5
    resource.__setstate__(with_item(state_of(kind, "res_tree"), position, -1))
    assert getattr(resource, name) == -1


@every_loaded
def test_failed_states_keep_the_counts(host, kind):
    resource = kind.made()
    big = 10**6
    states = [
        with_item(state_of(kind, "res_tree"), position, "text") for position, _ in kind.integers
    ]
    states += [(), (big,), "text"]

    def restore():
        for state in states:
            with pytest.raises((TypeError, IndexError)):
                resource.__setstate__(state)

    leaks.assert_counts_unchanged(restore, resource, big, *states)


# --- Code that runs in between -------------------------------------------------------------------


@every_loaded
def test_converting_an_item_may_empty_the_state(host, kind):
    class Emptying(object):
        def __int__(self):
            del state[:]
            return 7

    resource = kind.made()
    position, name = kind.integers[-1]
    state = list(with_item(state_of(kind, "res_tree"), position, Emptying()))
    with pytest.raises(IndexError):
        resource.__setstate__(state)
    assert getattr(resource, name) == 7


@every_loaded
def test_converting_an_item_may_set_another_state(host, kind):
    class Reentering(object):
        def __int__(self):
            resource.__setstate__(state_of(kind, "inner"))
            return 7

    resource = kind.made()
    position, name = kind.integers[0]
    resource.__setstate__(with_item(state_of(kind, "outer"), position, Reentering()))
    assert resource.name == "outer"
    assert getattr(resource, name) == 7
    assert integers_of(kind, resource)[1:] == list(range(2, len(kind.integers) + 1))
    assert host.gmapi.inner is resource and host.gmapi.outer is resource


@every_loaded
def test_what_a_state_replaces_is_released_in_order_after_the_new_value_stands(host, kind):
    class Witness(object):
        def __init__(self, member):
            self.member = member

        def __del__(self):
            seen.append((self.member, type(getattr(resource, self.member))))

    resource, seen = kind.made(), []
    for member in ["name"] + [cache for cache, _ in kind.caches]:
        setattr(resource, member, Witness(member))
    resource.__setstate__(state_of(kind, "res_tree"))
    assert seen == [("name", str)] + kind.caches


@every_loaded
def test_a_released_cache_may_restore_the_resource_again(host, kind):
    class Meddler(object):
        def __del__(self):
            log.append(None)
            resource.__setstate__(state_of(kind, "inner"))

    log, resource = [], kind.made()
    for cache, _ in kind.caches:
        setattr(resource, cache, Meddler())
    resource.__setstate__(state_of(kind, "outer"))
    assert len(log) == len(kind.caches)
    assert resource.name == "inner"  # set last
    assert host.gmapi.inner is resource and not hasattr(host.gmapi, "outer")
    for cache, made in kind.caches:
        assert type(getattr(resource, cache)) is made


@every_loaded
def test_a_released_cache_may_delete_the_name(host, kind, capfd):
    class Meddler(object):
        def __del__(self):
            del resource.name

    resource = kind.made()
    setattr(resource, kind.caches[-1][0], Meddler())
    with pytest.raises(AttributeError):
        resource.__setstate__(state_of(kind, "res_tree"))
    assert not hasattr(host.gmapi, "res_tree")


@every_loaded
def test_the_host_may_forget_the_resource_while_loading(host, kind):
    resources = [kind.made()]

    def load(resource, *rest):
        del resources[:]

    setattr(host.gm6, kind.loader, load)
    host.register(larkspur)
    assert resources[0].__setstate__(state_of(kind, "res_tree")) is None
    assert host.gmapi.res_tree.name == "res_tree"


@every_loaded
def test_pickling_needs_a_name(kind):
    resource = kind.made()
    del resource.name
    with pytest.raises(AttributeError) as failure:
        resource.__reduce__()
    assert str(failure.value) == "name"


@every_loaded
def test_methods(kind):
    assert [(row.name, row.doc) for row in records.method_table(kind.made)] == [
        ("__reduce__", None),
        ("__setstate__", "Unpickler"),
    ]


@every_loaded
def test_loading_without_a_registered_host_raises(kind):
    out, error = subprocess_python.output(
        """
        import larkspur
        try:
            larkspur.%s().__setstate__(%r)
        except RuntimeError as error:
            print error
        """
        % (kind.made.__name__, state_of(kind, "res_tree"))
    )
    assert "RegisterInstancesDict()" in out
    assert error == "An exception occurred!\n"
