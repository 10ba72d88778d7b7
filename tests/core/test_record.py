"""What all record types have in common: members, garbage collection, creation."""

import ctypes
import gc
import sys
import threading
import weakref

import larkspur
import pytest
from support import leaks, records
from support.host import Plain
from support.leaks import left_behind


def named(record):
    return record.name


def with_members(kind, candidates=records.ALL):
    """Parametrises over all members of one kind: (record type, member name)."""
    return pytest.mark.parametrize(
        "record, name",
        [
            pytest.param(record, member.name, id="%s-%s" % (record.name, member.name))
            for record in candidates
            for member in record.members
            if member.kind == kind
        ],
    )


every_record = pytest.mark.parametrize("record", records.ALL, ids=named)
every_collected = pytest.mark.parametrize("record", records.COLLECTED, ids=named)

MEMBER_CODES = {"int": 1, "float": 3, "lenient": 6, "strict": 16}
WORDS = {
    "int": ctypes.c_int32,
    "float": ctypes.c_float,
    "lenient": ctypes.c_void_p,
    "strict": ctypes.c_void_p,
}
HEAD = [("refcount", ctypes.c_void_p), ("type", ctypes.c_void_p)]


@every_record
def test_type_has_its_name_docstring_and_place_on_the_module(record):
    module, attribute = record.name.split(".")
    assert (record.type.__module__, record.type.__name__) == (module, attribute)
    assert getattr(larkspur, attribute) is record.type
    assert record.type.__doc__ == record.doc


@every_record
def test_type_cannot_be_subclassed(record):
    with pytest.raises(TypeError):
        type("Derived", (record.type,), {})


@every_record
def test_creation_ignores_its_arguments(record):
    assert type(record.type(1, "two", three=3)) is record.type


@every_record
def test_flags(record):
    flags = record.type.__flags__
    assert bool(flags & records.HAVE_GC) == (record in records.COLLECTED)
    assert bool(flags & records.CHECK_TYPES) == (record is records.FLOAT_LIST)
    assert not flags & records.BASE_TYPE


@every_record
def test_member_table_order_kinds_and_docstrings(record):
    found = [(row.name, row.type, row.flags, row.doc) for row in records.member_table(record.type)]
    assert found == [
        (member.name, MEMBER_CODES[member.kind], 0, member.doc) for member in record.members
    ]


@pytest.mark.parametrize("record", [record for record in records.ALL if record.members], ids=named)
def test_fields_lie_in_storage_order_without_others_between(record):
    class Layout(ctypes.Structure):
        _fields_ = HEAD + [
            (member.name, WORDS[member.kind]) for member in records.storage_members(record)
        ]

    for row in records.member_table(record.type):
        assert row.offset == getattr(Layout, row.name).offset, row.name
    assert record.type.__basicsize__ == ctypes.sizeof(Layout)


@with_members("int")
def test_int_members_start_at_0_and_hold_32_bits(record, name):
    instance = record.type()
    assert getattr(instance, name) == 0
    for value in (2**31 - 1, -(2**31), 7):
        setattr(instance, name, value)
        assert getattr(instance, name) == value
    with pytest.raises(TypeError):
        setattr(instance, name, "text")
    with pytest.raises(TypeError):
        delattr(instance, name)
    assert getattr(instance, name) == 7


@with_members("float")
def test_float_members_start_at_0_and_are_single_precision(record, name):
    instance = record.type()
    assert getattr(instance, name) == 0.0
    setattr(instance, name, 0.1)
    assert getattr(instance, name) == ctypes.c_float(0.1).value
    with pytest.raises(TypeError):
        setattr(instance, name, "text")


@with_members("lenient")
def test_lenient_members_read_as_none_while_unset(record, name):
    instance = record.type()
    assert getattr(instance, name) is None
    value = object()
    setattr(instance, name, value)
    assert getattr(instance, name) is value
    delattr(instance, name)
    assert getattr(instance, name) is None


@with_members("strict")
def test_strict_members_raise_while_unset(record, name):
    instance = record.type()
    value = object()
    setattr(instance, name, value)
    assert getattr(instance, name) is value
    delattr(instance, name)
    with pytest.raises(AttributeError):
        getattr(instance, name)
    with pytest.raises(AttributeError):
        delattr(instance, name)
    setattr(instance, name, value)
    assert getattr(instance, name) is value


@every_record
def test_there_are_no_other_attributes(record):
    instance = record.type()
    with pytest.raises(AttributeError):
        instance.no_such_member  # noqa: B018
    with pytest.raises(AttributeError):
        instance.no_such_member = 1


@every_collected
def test_assigning_an_object_member_keeps_the_counts(record):
    values = [object(), object()]
    instance = record.type()

    def assign_all():
        for name in records.object_names(record):
            for value in values:
                setattr(instance, name, value)
            delattr(instance, name)

    leaks.assert_counts_unchanged(assign_all, *values)


@every_record
def test_creation_and_death_keep_the_counts(record):
    leaks.assert_counts_unchanged(record.type, record.type, None)
    assert leaks.object_growth(record.type) == 0


@every_collected
def test_death_releases_what_is_released_and_keeps_the_rest(record):
    values = dict((name, left_behind(Plain())) for name in records.object_names(record))
    instance = record.type()
    for name in values:
        setattr(instance, name, values[name])
    before = dict((name, sys.getrefcount(values[name])) for name in values)
    del instance
    released = [
        name
        for name in records.object_names(record)
        if sys.getrefcount(values[name]) == before[name] - 1
    ]
    assert sorted(released) == sorted(record.releases)


class Witness(object):
    """Writes down, when it is released, its name and what the record still shows under it."""

    def __init__(self, name, log, instance=None):
        self.name, self.log, self.instance = name, log, instance

    def __del__(self):
        seen = None if self.instance is None else records.read(self.instance, self.name)
        self.log.append((self.name, seen))


@every_collected
def test_clear_unsets_each_member_before_its_release_in_order(record):
    log = []
    instance = record.type()
    for name in record.releases:
        setattr(instance, name, Witness(name, log, instance))
    assert records.clear(instance) == 0
    assert log == [(name, records.UNSET) for name in record.releases]


@every_collected
def test_clear_leaves_what_is_kept_and_the_numbers(record):
    instance = record.type()
    kept = [
        member.name
        for member in record.members
        if member.kind in ("lenient", "strict") and not member.released
    ]
    values = dict((name, left_behind(Plain())) for name in kept)
    for name in kept:
        setattr(instance, name, values[name])
    numbers = records.int_names(record)
    for number, name in enumerate(numbers):
        setattr(instance, name, number + 1)
    assert records.clear(instance) == 0
    assert [getattr(instance, name) for name in kept] == [values[name] for name in kept]
    assert [getattr(instance, name) for name in numbers] == list(range(1, len(numbers) + 1))


@every_collected
def test_clear_of_a_cleared_record_does_nothing(record):
    instance = record.type()
    assert records.clear(instance) == 0
    assert records.clear(instance) == 0


@every_collected
def test_death_releases_in_the_order_of_clear(record):
    log = []
    instance = record.type()
    for name in record.releases:
        setattr(instance, name, Witness(name, log))
    del instance
    assert [name for name, _ in log] == record.releases


@every_collected
def test_garbage_collection_visits_in_storage_order(record):
    visited = [member.name for member in records.storage_members(record) if member.visited]
    instance = record.type()
    values = {}
    for name in records.object_names(record):
        values[name] = left_behind(Plain(name=name))
        setattr(instance, name, values[name])
    seen = []

    def visit(value):
        seen.append(value.name)
        return 0

    assert records.traverse(instance, visit) == 0
    assert seen == visited
    assert gc.get_referents(instance) == [values[name] for name in visited]


def test_garbage_collection_visits_33_members_of_a_room_and_clears_54():
    room = larkspur.GMRoom()
    names = records.object_names(records.ROOM)
    for name in names:
        setattr(room, name, left_behind(Plain()))
    assert len(gc.get_referents(room)) == 33
    assert records.clear(room) == 0
    assert len([name for name in names if getattr(room, name) is None]) == 54


@every_collected
def test_traverse_skips_unset_members(record):
    instance = record.type()
    for name in records.object_names(record):
        setattr(instance, name, Plain())
        delattr(instance, name)
    assert gc.get_referents(instance) == []


@every_collected
def test_traverse_stops_at_the_first_refusal_and_returns_it(record):
    visited = [member.name for member in records.storage_members(record) if member.visited]
    instance = record.type()
    for number, name in enumerate(visited):
        setattr(instance, name, Plain(number=number))
    for last in range(len(visited)):
        seen = []

        def visit(value):
            seen.append(value.number)
            return 40 + last if value.number == last else 0

        assert records.traverse(instance, visit) == 40 + last
        assert seen == list(range(last + 1))


def tie_cycle(record, name):
    """A record in a cycle with a weakly referenced object; returns the weak reference."""
    partner = Plain(instance=record.type())
    setattr(partner.instance, name, partner)
    return weakref.ref(partner)


@pytest.mark.parametrize(
    "record, name",
    [
        pytest.param(record, member.name, id="%s-%s" % (record.name, member.name))
        for record in records.COLLECTED
        for member in record.members
        if member.visited
    ],
)
def test_cycles_through_visited_members_are_collected(record, name):
    partner = tie_cycle(record, name)
    gc.collect()
    assert partner() is None


@pytest.mark.parametrize(
    "name",
    [
        member.name
        for member in records.ROOM.members
        if member.kind == "lenient" and not member.visited
    ],
)
def test_cycles_through_other_members_are_not(name):
    partner = tie_cycle(records.ROOM, name)
    gc.collect()
    assert partner() is not None
    setattr(partner().instance, name, None)  # untie it by hand


@every_collected
def test_garbage_collection_may_run_while_a_record_dies(record):
    class Collecting(object):
        def __del__(self):
            collected.append(gc.collect())

    collected = []
    instance = record.type()
    for name in record.releases:
        setattr(instance, name, Collecting())
    gc.collect()  # what earlier tests left
    del instance
    assert collected == [0] * len(record.releases)


def test_records_that_hold_no_objects_are_not_tracked():
    assert not gc.is_tracked(larkspur.RoomTileData())
    assert not gc.is_tracked(larkspur.Floatlist8())
    assert gc.is_tracked(larkspur.GMRoom())


@every_collected
def test_a_long_chain_of_records_dies_without_deep_recursion(record):
    name = record.releases[0]

    def make_and_drop():
        chain = None
        for _ in range(100000):
            link = record.type()
            setattr(link, name, chain)
            chain = link
        done.append(True)

    done = []
    usual_size = threading.stack_size(256 * 1024)
    try:
        thread = threading.Thread(target=make_and_drop)
        thread.start()
        thread.join()
    finally:
        threading.stack_size(usual_size)
    assert done == [True]


@every_collected
def test_a_replaced_object_may_look_at_and_change_the_record(record):
    name = record.releases[0]
    instance = record.type()

    class Meddler(object):
        def __del__(self):
            seen.append(getattr(instance, name))
            setattr(instance, name, "from the destructor")

    seen = []
    setattr(instance, name, Meddler())
    setattr(instance, name, "new")
    assert seen == ["new"]
    assert getattr(instance, name) == "from the destructor"
