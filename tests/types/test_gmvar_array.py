"""GMVar as an array: reading, writing, references, growth, garbage collection."""

import ctypes
import gc
import operator
import random
import sys
import threading

import pytest
from larkspur import GMVar
from models.variable_model import ModelVariable, Refused
from support import records, subprocess_python
from support.host import Plain
from support.leaks import assert_counts_unchanged, count_changes, left_behind, object_growth
from support.variables import holding, native, size

GROWTH_STEPS = 100000


def test_layout():
    variable = GMVar("a")
    assert native(variable).magic == 0xC0FFEE55
    assert size(variable) == (1, 1)
    values = {}
    for i, j in [(0, 0), (3, 0), (1, 2), (4, 1), (4, 4)]:
        values[i, j] = object()
        variable[i, j] = values[i, j]
    assert size(variable) == (5, 5)
    for j in range(5):
        for i in range(5):
            expected = id(values[i, j]) if (i, j) in values else None
            assert native(variable).items[j * 5 + i] == expected


# Reading and writing.


def test_writing_beyond_the_width_adds_columns():
    variable = GMVar(1)
    variable[3] = "a"
    assert size(variable) == (4, 1)
    assert variable[3] == "a" and variable[0] == 1
    assert variable[1] == 0 and variable[2, 2] == 0 and variable[5] == 0
    assert native(variable).items[1] is None and native(variable).items[2] is None


def test_writing_a_cell_grows_both_ways():
    variable = GMVar(1)
    variable[2, 1] = 7
    assert size(variable) == (3, 2)
    assert variable[2, 1] == 7 and variable[0] == 1


def test_reading_a_cell_by_two_indices_stores_the_zero_it_reads():
    variable = GMVar(1)
    variable[1, 1] = 5
    assert native(variable).items[1] is None
    assert variable[1] == 0 and native(variable).items[1] is None
    zero = variable[1, 0]
    assert zero == 0 and type(zero) is int
    assert native(variable).items[1] == id(zero)
    for key in [(2, 0), (0, 2), (-1, 0), (0, -1)]:
        assert variable[key] == 0
    assert size(variable) == (2, 2)


def test_a_key_that_is_number_and_sequence_is_a_number():
    class Both(object):
        def __int__(self):
            return 1

        def __getitem__(self, i):
            return 2

    variable = GMVar("a")
    variable[Both()] = "b"
    assert size(variable) == (2, 1)
    assert variable[Both()] == "b"


def test_a_variables_value_is_taken_before_the_key_is_read():
    class Key(object):
        def __int__(self):
            source[0] = "later"
            return 1

    for key in (Key(), (Key(), 0), (0, Key())):
        source, variable = GMVar("first"), GMVar(0)
        variable[key] = source
        assert source == "later" and native(variable).items[1] == id("first")


KEYS = [1, long(1), True, 1.9, GMVar(1), GMVar(1.9)]


@pytest.mark.parametrize("key", KEYS)
def test_numbers_are_indices(key):
    variable = GMVar("a")
    variable[1] = "b"
    assert variable[key] == "b"
    variable[key] = "c"
    assert variable[1] == "c" and size(variable) == (2, 1)
    variable[key, key] = "d"
    assert variable[1, 1] == "d" == variable[key, key]
    variable[[key, key]] = "e"
    assert variable[1, 1] == "e" == variable[[key, key, "ignored"]]


@pytest.mark.parametrize(
    "key", [None, {}, object(), slice(1), "ab", ("a", 1), (1, "a"), (None, 0), (0, None), [[], 0]]
)
def test_other_keys_read_as_zero(key):
    variable = GMVar("a")
    result = variable[key]
    assert result == 0 and type(result) is int
    assert size(variable) == (1, 1)


@pytest.mark.parametrize("key", [-1, -long(1), -0.5 - 1, GMVar(-1), -sys.maxint])
def test_a_negative_index_fails_without_an_exception(key):
    variable = GMVar(5)
    with pytest.raises(SystemError):
        variable[key]
    with pytest.raises(SystemError):
        variable[key] = 1
    assert variable == 5 and size(variable) == (1, 1)


class Unconvertible(object):
    def __int__(self):
        raise ZeroDivisionError


@pytest.mark.parametrize(
    "key, error",
    [
        (2**70, OverflowError),
        ((2**70, 0), OverflowError),
        ((0, 2**70), OverflowError),
        (Unconvertible(), ZeroDivisionError),
        ((Unconvertible(), 0), ZeroDivisionError),
        ((0, Unconvertible()), ZeroDivisionError),
        ((), IndexError),
        ((1,), IndexError),
        ("a", IndexError),
        ([], IndexError),
        (GMVar(()), TypeError),
        (float("nan"), Exception),
        (float("inf"), OverflowError),
    ],
)
def test_keys_that_fail_raise_their_own_exception(key, error):
    variable = GMVar(5)
    with pytest.raises(error):
        variable[key]
    with pytest.raises(error):
        variable[key] = 1
    assert variable == 5 and size(variable) == (1, 1)


@pytest.mark.parametrize("key", [None, {}, object(), "ab", ("a", 1), (1, "a"), (-1, 0), (0, -1)])
def test_refused_keys_fail_without_an_exception(key):
    variable = GMVar(5)
    value = object()
    with pytest.raises(SystemError):
        variable[key] = value
    assert variable == 5 and size(variable) == (1, 1)


def test_deleting_says_so_and_raises(capfd):
    variable = GMVar(5)
    for key in (0, (0, 0), None):
        with pytest.raises(TypeError):
            del variable[key]
        assert capfd.readouterr() == ("Assigning a blank val\n", "")
    assert variable == 5


# References of the array.


def test_elements_own_one_reference():
    value, other = object(), object()
    variable = GMVar(0)

    def write(key):
        variable[key] = value
        variable[key] = other
        assert variable[key] is other

    for key in (0, 5, (0, 0), (5, 5), [2, 2]):
        variable[key] = 0
        assert count_changes(lambda: write(key), [value]) == [0.0]
    wrapped = GMVar(value)
    assert_counts_unchanged(lambda: operator.setitem(variable, 3, wrapped), value, wrapped)
    first = int("70000")
    variable[first, 0] = 1
    assert_counts_unchanged(lambda: variable[first, first], first)


def test_refused_key_items_keep_a_reference():
    variable = GMVar(5)
    item, other = left_behind(Plain()), left_behind(Plain())
    value, negative = object(), int("-70000")
    zero = float("0.25")

    def refuse(*key):
        pytest.raises(SystemError, operator.setitem, variable, key, value)

    assert count_changes(lambda: refuse(item, other), [item, other, value]) == [1.0, 1.0, 0.0]
    assert count_changes(lambda: refuse(zero, other), [zero, other]) == [1.0, 1.0]
    assert count_changes(lambda: refuse(negative, zero), [negative, zero]) == [1.0, 1.0]
    assert count_changes(lambda: refuse(zero, negative), [negative, zero]) == [1.0, 1.0]
    # Keys whose items are used do not, nor do those that are too large or only read.
    large = 2**40
    assert_counts_unchanged(
        lambda: pytest.raises(MemoryError, operator.setitem, variable, (large, zero), value),
        large,
        zero,
        value,
    )
    assert_counts_unchanged(lambda: operator.getitem(variable, (item, other)), item, other)
    assert_counts_unchanged(lambda: operator.setitem(variable, (zero, zero), value), zero)


# Growth.


@pytest.mark.parametrize(
    "key",
    [
        2**31 - 1,
        2**31,
        2**40,
        sys.maxint,
        (2**31, 0),
        (0, 2**31),
        (2**30, 2**30),
        (2**31 - 2, 2**31 - 2),
        (sys.maxint, sys.maxint),
    ],
)
def test_sizes_that_cannot_be_raise_memory_error(key):
    variable = GMVar(5)
    variable[1, 1] = "kept"
    value = object()
    with pytest.raises(MemoryError):
        variable[key] = value
    assert size(variable) == (2, 2)
    assert variable == 5 and variable[1, 1] == "kept"
    assert_counts_unchanged(
        lambda: pytest.raises(MemoryError, operator.setitem, variable, key, value), value
    )


@pytest.mark.parametrize("key", [2**31 - 1, (2**31 - 1, 0), (0, 2**31 - 1)])
def test_no_side_is_as_long_as_2_to_the_31(key):
    variable = GMVar(5)
    with pytest.raises(MemoryError) as caught:
        variable[key] = 1
    assert "both indices must be below 2147483647" in str(caught.value)
    assert variable == 5 and size(variable) == (1, 1)


@pytest.mark.parametrize(
    "key",
    [lambda n: n, lambda n: (n, 0), lambda n: (0, n), lambda n: (n % 3, n)],
    ids=["index", "column", "row", "three columns"],
)
def test_growing_by_single_steps_seldom_moves_the_array(key):
    """An array that grows by a share of its size moves as often as a logarithm; one that grows by
    what is asked for moves at nearly every step, which costs quadratic time."""
    variable = GMVar(0)
    record = native(variable)
    moves, place = 0, None
    for n in range(GROWTH_STEPS):
        variable[key(n)] = n
        now = ctypes.cast(record.items, ctypes.c_void_p).value
        moves += now != place
        place = now
    assert moves < 50
    assert variable[key(GROWTH_STEPS // 2)] == GROWTH_STEPS // 2


def test_growing_works_without_room_for_a_reserve():
    """Growing asks for more than it needs, and takes what it needs when there is no more."""
    out, _ = subprocess_python.output("""
        import resource
        from support import host
        host.install_modules()
        import larkspur

        count = 32 * 2 ** 20
        variable = larkspur.GMVar("first")
        variable[count - 1] = "last"
        used = int(open("/proc/self/statm").read().split()[0]) * resource.getpagesize()
        allowed = used + 8 * count * 7 // 5
        resource.setrlimit(resource.RLIMIT_AS, (allowed, allowed))
        variable[count] = "more"
        print variable[0], variable[count - 1], variable[count]
        try:
            variable[2 * count] = "too much"
        except MemoryError as error:
            print error
        print variable[0], variable[count - 1], variable[count], variable[2 * count]
    """)
    assert out == (
        "first last more\nno memory for a GMVar of 67108865 x 1 elements\nfirst last more 0\n"
    )


INDEX_KINDS = [int, long, float, GMVar, str]
# Made once, as those in a refused key are kept.
INDICES = dict(((kind, i), kind(i)) for kind in INDEX_KINDS for i in range(-2, 12))


def test_random_accesses_match_the_model():
    seed = 20260412
    generator = random.Random(seed)

    def index():
        number = generator.randrange(-2, generator.choice([3, 6, 12]))
        return INDICES[generator.choice(INDEX_KINDS + [int, int]), number]

    def plain(key):
        if type(key) is GMVar:
            return key[0]
        return type(key)(map(plain, key)) if isinstance(key, (tuple, list)) else key

    for round_number in range(60):
        variable, model = GMVar("first"), ModelVariable("first")
        for step in range(300):
            key = generator.choice(
                [index, lambda: (index(), index()), lambda: [index(), index()], lambda: None]
            )()
            context = (seed, round_number, step, plain(key))
            reading = generator.random() < 0.4
            value = object()
            try:
                expected = model.read(plain(key)) if reading else model.write(plain(key), value)
            except Refused:
                expected = SystemError
            except IndexError:
                expected = IndexError
            try:
                actual = variable[key] if reading else operator.setitem(variable, key, value)
            except (SystemError, IndexError) as error:
                actual = type(error)
            assert actual is expected or actual == expected, context
            assert size(variable) == (model.width, model.height), context
        stored = [native(variable).items[k] for k in range(model.width * model.height)]
        assert [address or id(0) for address in stored] == map(id, model.flat())


# Garbage collection.


def test_elements_are_visited_from_the_last_to_the_first():
    values = [object() for _ in range(4)]
    variable = GMVar(values[0])
    variable[2], variable[1, 1], variable[2, 2] = values[1:]
    assert gc.get_referents(variable) == values[::-1]
    seen = []

    def stop(value):
        seen.append(value)
        return 7 if value is values[2] else 0

    assert records.traverse(variable, stop) == 7
    assert seen == values[:1:-1]


def test_clear_releases_everything_from_the_last_to_the_first():
    order = []

    class Dying(object):
        def __init__(self, name):
            self.name = name

        def __del__(self):
            order.append(self.name)

    variable = GMVar(Dying("first"))
    variable[1] = Dying("second")
    variable[1, 1] = Dying("third")
    assert records.clear(variable) == 0
    assert order == ["third", "second", "first"]
    assert size(variable) == (0, 0) and not native(variable).items
    assert records.clear(variable) == 0
    variable = GMVar(Dying("first"))
    variable[2, 2] = Dying("second")
    del order[:], variable
    assert order == ["second", "first"]


def test_cycles_are_collected():
    def make_cycle():
        variable = GMVar([])
        variable[0].append(variable)
        variable[2, 2] = [variable]

    assert object_growth(make_cycle, 100) == 0


def test_long_chains_are_freed_without_recursion():
    chain = [GMVar(0)]
    for _ in range(50000):
        chain[0] = holding(chain[0])
    assert type(chain[0][0]) is GMVar
    # In a thread with so small a stack a recursion of that depth would end the process.
    usual = threading.stack_size(512 * 1024)
    try:
        thread = threading.Thread(target=chain.pop)
        thread.start()
        thread.join()
    finally:
        threading.stack_size(usual)
    assert chain == []
