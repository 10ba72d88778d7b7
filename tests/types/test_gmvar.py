"""GMVar as the value it holds: creation, numbers, comparison, attributes, calls, text, length."""

import copy
import ctypes
import functools
import gc
import operator
import pickle
import sys
import weakref

import larkspur
import pytest
from larkspur import GMVar
from support import records
from support.leaks import (
    SHARED_BY_INTERPRETER,
    assert_counts_unchanged,
    assert_shared_object_loses_nothing,
    count_changes,
    count_restored,
    left_behind,
    lend_references,
)
from support.variables import holding, mutations, native, new_without_init, size

ROUNDS = 1000

# Comparing variables releases references that were not taken, so values need more than they have.
LENT = 3 * ROUNDS


# The type.


def test_names_and_doc():
    assert ctypes.string_at(records.type_record(GMVar).name) == b"py_larkspur.GMVar"
    assert GMVar.__name__ == "GMVar" and GMVar.__module__ == "py_larkspur"
    assert GMVar.__doc__ == "GM-compatible magical variable"
    assert repr(GMVar(5)).startswith("<py_larkspur.GMVar object at 0x")


def test_flags():
    flags = GMVar.__flags__
    assert flags & records.HAVE_GC and flags & records.CHECK_TYPES
    assert not flags & records.BASE_TYPE
    with pytest.raises(TypeError):
        type("Derived", (GMVar,), {})
    assert gc.is_tracked(GMVar(5))


def test_there_are_no_slots_methods_or_members_but_the_stated_ones():
    stated = """__new__ __init__ __getattribute__ __setattr__ __delattr__ __hash__ __str__ __call__
        __lt__ __le__ __eq__ __ne__ __gt__ __ge__ __cmp__ __nonzero__ __len__ __getitem__
        __setitem__ __delitem__ __add__ __radd__ __sub__ __rsub__ __mul__ __rmul__ __div__ __rdiv__
        __mod__ __rmod__ __neg__ __pos__ __abs__ __and__ __rand__ __xor__ __rxor__ __or__ __ror__
        __coerce__ __int__ __float__ __iadd__ __doc__""".split()
    assert sorted(vars(GMVar)) == sorted(stated)


# Creation.


@pytest.mark.parametrize(
    "value", [5, 2.5, "text", unicode("text"), None, [1], (), {}, object(), len]
)
def test_holds_its_argument(value):
    variable = GMVar(value)
    assert variable[0] is value and variable[0, 0] is value
    assert GMVar(variable)[0] is value
    assert size(GMVar(variable)) == (1, 1)


def test_creation_leaks_nothing():
    value = object()
    variable = GMVar(value)
    assert_counts_unchanged(lambda: GMVar(value), value)
    assert_counts_unchanged(lambda: GMVar(variable), value, variable)


@pytest.mark.parametrize(
    "arguments, keywords, message",
    [
        ((), {}, "function takes exactly 1 argument (0 given)"),
        ((1, 2), {}, "function takes exactly 1 argument (2 given)"),
        ((), {"x": 1}, "GMVar() does not take keyword arguments"),
        ((1,), {"x": 1}, "GMVar() does not take keyword arguments"),
    ],
)
def test_takes_exactly_one_argument(arguments, keywords, message):
    with pytest.raises(TypeError) as caught:
        GMVar(*arguments, **keywords)
    assert str(caught.value) == message
    variable = GMVar(5)
    with pytest.raises(TypeError):
        GMVar.__init__(variable, *arguments, **keywords)
    assert variable == 5


def test_only_one_level_is_unwrapped():
    inner = GMVar(5)
    outer = holding(inner)
    assert GMVar(outer)[0] is inner
    variable = GMVar(0)
    variable[0] = outer
    assert variable[0] is inner
    assert outer + 1 == 6 and type(outer + 1) is int


def test_init_resets_and_keeps_the_references_of_the_old_array():
    value, cell = left_behind(Plain()), left_behind(Plain())

    def reset():
        variable = GMVar(value)
        variable[2, 1] = cell
        GMVar.__init__(variable, 7)
        assert size(variable) == (1, 1) and variable == 7

    assert count_changes(reset, [value, cell]) == [1.0, 1.0]


def test_init_keeps_the_reference_of_a_single_old_value():
    value = left_behind(Plain())

    def reset():
        variable = GMVar(value)
        GMVar.__init__(variable, 7)
        assert size(variable) == (1, 1) and variable == 7

    assert count_changes(reset, [value]) == [1.0]


def test_init_with_itself_keeps_the_value():
    value = object()
    variable = GMVar(value)
    variable[5] = 1
    GMVar.__init__(variable, variable)
    assert variable[0] is value and size(variable) == (1, 1)


# A variable without a value.


def cleared():
    variable = GMVar(5)
    variable[2, 2] = 7
    assert records.clear(variable) == 0
    return variable


@pytest.mark.parametrize("make, dimensions", [(new_without_init, (1, 1)), (cleared, (0, 0))])
def test_empty_variable_behaves_as_zero(make, dimensions):
    variable = make()
    assert size(variable) == dimensions
    assert len(variable) == dimensions[0] * dimensions[1]
    assert bool(variable) is False
    assert variable + 1 == 1 and 1 - variable == 1 and variable * 3 == 0.0
    assert variable == 0 and variable < 1 and cmp(variable, 0) == 0
    assert str(variable) == "0" and hash(variable) == hash(0) and variable.real == 0
    assert int(variable) == 0 and float(variable) == 0.0 and -variable == 0
    assert variable[0] == 0 and variable[0, 0] == 0 and variable[4] == 0
    assert coerce(variable, 1.5) == (0.0, 1.5)
    assert gc.get_referents(variable) in ([], [0])
    with pytest.raises(TypeError):
        variable()
    assert GMVar(variable)[0] == 0
    other = make()
    other += 5
    assert type(other) is GMVar and other == 5 and size(other) == (1, 1)
    other = make()
    other[3] = 7
    assert size(other) == (4, 1) and other[3] == 7
    other = make()
    other[2, 1] = 7
    assert size(other) == (3, 2) and other[2, 1] == 7
    other = make()
    GMVar.__init__(other, 5)
    assert other == 5 and size(other) == (1, 1)


def test_reading_a_missing_value_by_one_index_stores_nothing():
    variable = new_without_init()
    assert variable[0] == 0
    assert native(variable).items[0] is None


# Numbers.


class Operand(object):
    """Answers every binary operation with its name and the other operand."""


for _name in "add sub div mod and xor or".split():
    for _form in ("__%s__", "__r%s__"):
        setattr(Operand, _form % _name, lambda self, other, name=_form % _name: (name, other))

FORWARDED = [
    operator.add,
    operator.sub,
    operator.div,
    operator.mod,
    operator.and_,
    operator.xor,
    operator.or_,
]
OPERANDS = [
    5,
    -3,
    0,
    sys.maxint,
    -sys.maxint - 1,
    2**70,
    2.5,
    1 + 2j,
    True,
    "%s",
    "x",
    unicode("u"),
    [1],
    (2,),
    set([1, 2]),
    None,
    Operand(),
]


def outcome(function, *arguments):
    """What a call comes to: type and value, or the exception's type and text."""
    try:
        result = function(*arguments)
    except Exception as error:
        return type(error), str(error)
    return type(result), result


def same(a, b):
    return a[0] is b[0] and (a[1] == b[1] or a[1] is b[1])


@pytest.mark.filterwarnings("ignore:complex divmod")
@pytest.mark.parametrize("function", FORWARDED, ids=lambda function: function.__name__)
def test_binary_operations_are_those_of_the_values(function):
    for a in OPERANDS:
        for b in OPERANDS:
            expected = outcome(function, a, b)
            assert same(outcome(function, GMVar(a), GMVar(b)), expected), (a, b)
            assert same(outcome(function, GMVar(a), b), expected), (a, b)
            if function is operator.mod and isinstance(a, basestring) or isinstance(a, Operand):
                continue  # these operations of theirs take any object, and get the variable
            assert same(outcome(function, a, GMVar(b)), expected), (a, b)


def test_formatting_shows_the_variable_as_its_value():
    assert "%s %d %.1f" % (GMVar(5), GMVar(5), GMVar(2.25)) == "5 5 2.2"
    assert "%s" % GMVar("text") == "text"
    assert GMVar("%s and %s") % ("a", "b") == "a and b"


class LoudInt(int):
    """An int with arithmetic and comparisons of its own."""


class LoudFloat(float):
    """A float with arithmetic and comparisons of its own."""


for _name in "add radd iadd sub rsub lt le eq ne gt ge".split():
    for _loud in (LoudInt, LoudFloat):
        setattr(_loud, "__%s__" % _name, lambda self, other, name=_name: name)
LoudInt.__float__ = LoudFloat.__float__ = lambda self: 1234.5

# Where ints stop being doubles, sums stop being ints, and what floats hold beside numbers.
EDGES = [sign * (2**53 + step) for sign in (1, -1) for step in (-1, 0, 1, 2)]
NUMBERS = (
    [0, 1, -1, 5, 70000, sys.maxint, sys.maxint - 1, -sys.maxint, -sys.maxint - 1]
    + [0.0, -0.0, 0.1, -2.5, 1e308, 5e-324, float("inf"), float("-inf"), float("nan")]
    + EDGES
    + map(float, EDGES + [sys.maxint, -sys.maxint - 1])
    + [True, False, LoudInt(5), LoudFloat(2.5), long(5), 2**63, -(2**80)]
)


def added_in_place(a, b):
    a += b
    return a[0] if type(a) is GMVar else a


def multiplied_as_floats(a, b):
    return float(a) * float(b)


@pytest.mark.parametrize(
    "function, on_values",
    [
        (operator.add, operator.add),
        (operator.sub, operator.sub),
        (operator.mul, multiplied_as_floats),
        (added_in_place, added_in_place),
    ]
    + [(getattr(operator, name), getattr(operator, name)) for name in "lt le eq ne gt ge".split()],
    ids=lambda function: function.__name__,
)
def test_numbers_give_the_very_results_of_the_values(function, on_values):
    def shown(function, a, b):
        return repr(outcome(function, a, b))

    for a in NUMBERS:
        for b in NUMBERS:
            expected = shown(on_values, a, b)
            assert shown(function, GMVar(a), b) == expected, (a, b)
            assert shown(function, GMVar(a), GMVar(b)) == expected, (a, b)
            # Theirs take the variable as it is, and are asked in another order.
            if not {type(a), type(b)} & {LoudInt, LoudFloat}:
                assert shown(function, a, GMVar(b)) == expected, (a, b)


@pytest.mark.parametrize(
    "a, b, product",
    [
        (5, 2, 10.0),
        (2, 2.5, 5.0),
        ("2", "1.5", 3.0),
        (True, 3, 3.0),
        (2**53 + 1, 1, 2.0**53),
        (0, -1, -0.0),
    ],
)
def test_a_product_is_always_a_float(a, b, product):
    for x, y in [(GMVar(a), b), (a, GMVar(b)), (GMVar(a), GMVar(b))]:
        result = x * y
        assert type(result) is float and repr(result) == repr(product)


@pytest.mark.parametrize(
    "a, b, error",
    [
        ("x", 2, ValueError),
        (2, "x", ValueError),
        ([1], 2, TypeError),
        (2, [1], TypeError),
        (None, 2, TypeError),
        (2, None, TypeError),
        (10**400, 2, OverflowError),
    ],
)
def test_factors_that_are_no_numbers_raise(a, b, error):
    for x, y in [(GMVar(a), b), (a, GMVar(b)), (GMVar(a), GMVar(b))]:
        with pytest.raises(error):
            x * y


@pytest.mark.parametrize(
    "function",
    [operator.neg, operator.pos, operator.abs, int, float, bool, hash, str],
    ids=lambda function: function.__name__,
)
def test_unary_operations_are_those_of_the_value(function):
    more = ["12", " -3 ", "1.5", unichr(0xE9), float("nan"), float("inf"), -(2**80)]
    for value in OPERANDS + more:
        expected = outcome(function, value)
        actual = outcome(function, GMVar(value))
        assert same(actual, expected) or value != value, value  # noqa: PLR0124


def test_nonzero_reports_failures():
    class Failing(object):
        def __nonzero__(self):
            raise ZeroDivisionError

    with pytest.raises(ZeroDivisionError):
        bool(GMVar(Failing()))


@pytest.mark.parametrize(
    "function",
    [
        lambda v: v**2,
        lambda v: 2**v,
        lambda v: v << 1,
        lambda v: v >> 1,
        lambda v: ~v,
        lambda v: v // 2,
        lambda v: operator.truediv(v, 2),
        lambda v: divmod(v, 2),
        oct,
        hex,
        operator.index,
        iter,
        lambda v: 5 in v,
        lambda v: range(9)[v],
        lambda v: v[0:1][0][0],
    ],
)
def test_other_operations_do_not_exist(function):
    for value in (5, 2.5):
        with pytest.raises(TypeError):
            function(GMVar(value))


@pytest.mark.parametrize("a, b", [(1, 2), (1, 2.5), (2.5, 1), (1, long(2)), (1, 1j)])
def test_coercion_is_that_of_the_values(a, b):
    expected = coerce(a, b)
    for x, y in [(GMVar(a), b), (a, GMVar(b)), (GMVar(a), GMVar(b))]:
        result = coerce(x, y)
        assert result == expected
        assert map(type, result) == map(type, expected)


def test_failing_coercion_raises_and_leaks_nothing():
    value, other = object(), float("1.5")
    variable = GMVar(value)
    assert_counts_unchanged(
        lambda: pytest.raises(TypeError, coerce, variable, other), variable, value, other
    )
    other = float("2.5")
    variable = GMVar(int("70000"))
    assert_counts_unchanged(lambda: coerce(variable, other), variable, variable[0], other)


def test_failing_coercion_leaves_the_callers_pair():
    left, right = GMVar(object()), GMVar(1.5)
    pair = [ctypes.c_void_p(id(left)), ctypes.c_void_p(id(right))]
    slots = ctypes.cast(records.type_record(GMVar).as_number, ctypes.POINTER(ctypes.c_void_p))
    nb_coerce = ctypes.PYFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.c_void_p)(slots[17])
    with pytest.raises(TypeError):
        nb_coerce(ctypes.byref(pair[0]), ctypes.byref(pair[1]))
    assert [operand.value for operand in pair] == [id(left), id(right)]


def test_operations_leak_nothing():
    value, other = float("2.5"), float("1.5")
    a, b = GMVar(value), GMVar(other)
    for function in FORWARDED + [operator.mul, operator.eq, operator.lt]:
        assert_counts_unchanged(lambda: outcome(function, a, b), a, b, value, other)
    for function in (operator.neg, operator.pos, abs, int, float, bool, hash, str, len):
        assert_counts_unchanged(lambda: outcome(function, a), a, value)


# In-place addition.


def test_inplace_addition_keeps_the_variable():
    variable = same_variable = GMVar(5)
    variable[1, 1] = 9
    variable += 1
    assert variable is same_variable and variable == 6 and type(variable[0]) is int
    variable += GMVar(2.5)
    assert variable is same_variable and variable == 8.5
    assert size(variable) == (2, 2) and variable[1, 1] == 9
    variable += variable
    assert variable is same_variable and variable == 17.0


def test_inplace_addition_is_the_values_own():
    items = [1]
    variable = GMVar(items)
    variable += [2]
    assert variable[0] is items and items == [1, 2]
    text = GMVar("a")
    text += unicode("b")
    assert text[0] == "ab" and type(text[0]) is unicode


def test_failing_inplace_addition_changes_nothing():
    value = object()
    variable = GMVar(value)

    def fail():
        v = variable
        with pytest.raises(TypeError):
            v += 1

    assert_counts_unchanged(fail, variable, value)
    assert variable[0] is value


def test_inplace_addition_counts():
    result, value = object(), float("2.5")

    class Adding(object):
        def __iadd__(self, other):
            return result

    old = Adding()

    def add():
        v = GMVar(old)
        v += value

    assert_counts_unchanged(add, old, result, value)


def test_other_inplace_operations_give_plain_values():
    for function in (operator.isub, operator.imul, operator.idiv, operator.imod):
        assert type(function(GMVar(5), 2)) in (int, float)


def test_inplace_addition_ends_with_the_sum_whatever_a_destructor_does():
    for act in mutations():
        variable = GMVar(0)

        class Dying(object):
            def __iadd__(self, other):
                return other

            def __del__(self):
                seen.append(variable[0])
                act(variable)

        seen = []
        variable[0] = Dying()
        v = variable
        v += "sum"
        assert v is variable and v[0] == "sum"
        assert seen == [0]


# Comparison.


@pytest.mark.parametrize(
    "function",
    [operator.lt, operator.le, operator.eq, operator.ne, operator.gt, operator.ge],
    ids=lambda function: function.__name__,
)
def test_rich_comparison_is_that_of_the_values(function):
    values = [1, 2, 2.0, long(2), "2", None, [1], (2,), 1j, float("nan")]
    for a in values:
        for b in values:
            expected = outcome(function, a, b)
            for x, y in [(GMVar(a), b), (a, GMVar(b)), (GMVar(a), GMVar(b))]:
                assert same(outcome(function, x, y), expected), (a, b)


class Counted(int):
    """An int whose references can be counted; compares three-way, by the interpreter's int."""


class Rich(float):
    """A float whose references can be counted; compares richly only."""


def lent(value):
    lend_references(value, LENT)
    return value


def copied(value):
    """An object of its own with this value, which no code's constants hold."""
    return eval(repr(value))


def compared(a, b):
    """cmp() of two variables, with the references it takes from their values made good."""
    lend_references(a, 1)
    lend_references(b, 1)
    return cmp(GMVar(a), GMVar(b))


def test_three_way_comparison_of_values():
    pairs = [
        (1, 2, -1),
        (2, 1, 1),
        (2, 2, 0),
        (1.5, 2.5, -1),
        (2.5, 1.5, 1),
        (2.5, 2.5, 0),
        ("a", "b", -1),
        ("b", "a", 1),
        ("a", "a", 0),
        (1, 2.5, -1),
        (3, 2.5, 1),
        (2, 2.0, 0),
        (long(2), 1, 1),
        ((1, 2), (1, 3), -1),
        ([2], [1], 1),
        (None, None, 0),
        (None, 1, -1),
        (1, None, 1),
    ]
    for a, b, expected in pairs:
        assert compared(a, b) == expected, (a, b)


def test_a_rich_comparison_that_declines_counts_as_less():
    """The type's own slot is asked, and its NotImplemented is true."""
    assert compared("a", 1.5) == -1
    assert compared(1.5, "a") == -1


def test_three_way_slots_only_get_operands_they_take():
    class Compared(object):
        def __init__(self, result):
            self.result = result

        def __cmp__(self, other):
            return self.result

    class Classic:
        pass

    class ClassicCompared:
        def __cmp__(self, other):
            return 1

    assert compared(Compared(1), 5) == 1
    assert compared(5, Compared(1)) == -1
    assert compared(Compared(-1), Compared(1)) == -1
    assert compared(ClassicCompared(), 5) == 1
    a, b = Classic(), Classic()
    assert compared(a, b) == cmp(a, b) and compared(b, a) == cmp(b, a)
    for x, y in [(slice(1), 5), (5, slice(1)), (5, unicode("x")), (5, "x"), (object(), object())]:
        assert compared(x, y) == cmp(x, y)


def test_our_own_slots_convert_what_they_get():
    tile = larkspur.RoomTileData()
    tile.id = 5
    numbers = larkspur.Floatlist8()
    numbers[0] = 5.5
    for value, below, equal, above in [(tile, 4, 5, 6), (numbers, 5, 5.5, 6)]:
        assert compared(value, above) == -1
        assert compared(value, equal) == 0
        assert compared(value, below) == 1


@pytest.mark.parametrize(
    "a, b",
    [
        (Counted(1), Counted(2)),  # by the slot of both
        (Counted(1), Rich(2.5)),  # by the interpreter
        (Rich(1.5), Rich(2.5)),  # by rich comparison: less
        (Rich(3.5), Rich(2.5)),  # greater
        (Rich(2.5), Rich(2.5)),  # equal
        (object(), object()),  # a type without any comparison
    ],
)
def test_three_way_comparison_releases_one_reference_of_each(a, b):
    x, y = GMVar(lent(a)), GMVar(lent(b))
    assert count_changes(lambda: cmp(x, y), [a, b, x, y]) == [-1.0, -1.0, 0.0, 0.0]


def test_comparing_a_value_with_itself_releases_two_references():
    value = lent(Counted(1))
    x, y = GMVar(value), GMVar(value)
    assert count_changes(lambda: cmp(x, y), [value], rounds=900) == [-2.0]


def test_only_the_innermost_comparison_releases():
    def nested(value):
        inner = GMVar(value)
        lend_references(inner, LENT)
        return inner, holding(inner)

    a, b = lent(Rich(1.5)), lent(Rich(2.5))
    (x, outer_x), (y, outer_y) = nested(a), nested(b)
    assert cmp(outer_x, outer_y) == -1
    assert count_changes(lambda: cmp(outer_x, outer_y), [a, b, x, y]) == [-1.0, -1.0, 0.0, 0.0]
    plain = GMVar(b)
    assert count_changes(lambda: cmp(outer_x, plain), [a, b, x, plain]) == [-1.0, -1.0, 0.0, 0.0]


def test_the_left_values_type_leads_at_every_level():
    """A variable on the left unwraps both sides; one on the right alone is a value like others."""
    assert cmp(holding(GMVar(lent("a"))), GMVar(lent(Rich(1.5)))) == -1
    a, b = lent(Rich(1.5)), GMVar(lent(Rich(2.5)))
    lend_references(b, LENT)
    x, outer = GMVar(a), holding(b)
    assert cmp(x, outer) == -1
    assert count_changes(lambda: cmp(x, outer), [a, b, b[0], x]) == [-1.0, -1.0, 0.0, 0.0]


def test_a_variable_compared_with_itself_is_equal_and_costs_nothing():
    value = Counted(1)
    variable = GMVar(value)
    assert_counts_unchanged(lambda: cmp(variable, variable), value)


def test_answers_of_rich_comparison():
    """Less and greater are released; the answer to equal keeps its reference."""
    answers = {"eq": left_behind(Plain()), "lt": [], "gt": Plain()}

    class Value(object):
        def __eq__(self, other):
            return answers["eq"]

        def __lt__(self, other):
            return answers["lt"]

        def __gt__(self, other):
            return answers["gt"]

    x, y = GMVar(lent(Value())), GMVar(lent(Value()))
    counted = [answers["eq"], answers["lt"], answers["gt"]]
    assert cmp(x, y) == 1
    assert count_changes(lambda: cmp(x, y), counted) == [1.0, 0.0, 0.0]
    answers["lt"].append(1)
    assert cmp(x, y) == -1


class Plain(object):
    pass


@pytest.mark.filterwarnings("error")
@pytest.mark.parametrize(
    "failing, asked",
    [
        ("__eq__", ["__eq__"]),
        ("__lt__", ["__eq__", "__lt__"]),
        ("__gt__", ["__eq__", "__lt__", "__gt__"]),
        ("__nonzero__", ["__eq__", "__lt__"]),
    ],
)
def test_failing_comparison_raises_at_once(failing, asked):
    calls = []

    class Answer(object):
        def __nonzero__(self):
            return 1 // (failing != "__nonzero__") == 0

    answer = left_behind(Answer())  # which is kept where it says that they are equal

    class Value(object):
        pass

    def add(name):
        def method(self, other):
            calls.append(name)
            return answer if failing != name else 1 // 0

        setattr(Value, name, method)

    for name in ("__eq__", "__lt__", "__gt__"):
        add(name)
    a, b = lent(Value()), lent(Value())
    x, y = GMVar(a), GMVar(b)

    def fail():
        del calls[:]
        pytest.raises(ZeroDivisionError, cmp, x, y)
        assert calls == asked
        sys.exc_clear()

    assert count_changes(fail, [a, b]) == [-1.0, -1.0]


def test_the_last_reference_is_never_given_away():
    value = Plain()
    alive = weakref.ref(value)
    x, y = GMVar(value), GMVar(Rich(2.5))
    del value
    for _ in range(10):
        cmp(x, y)
    assert alive() is x[0]
    assert y == 2.5


def test_the_last_reference_of_a_value_compared_with_itself_is_not_given_away():
    value = Plain()
    alive = weakref.ref(value)
    x, y = GMVar(value), GMVar(value)
    del value
    cmp(x, y)
    assert alive() is not None
    lend_references(x[0], 1)  # for the second of its two owners


@pytest.mark.parametrize("shared", SHARED_BY_INTERPRETER, ids=repr)
def test_what_the_interpreter_shares_loses_no_reference(shared):
    x, other = GMVar(shared), GMVar(lent(Plain()))

    def compare():
        cmp(x, other)
        cmp(other, x)
        try:
            cmp(x, GMVar(shared))
        except TypeError:
            assert type(shared) is frozenset

    assert_shared_object_loses_nothing(compare, shared)


def test_the_zero_of_empty_slots_loses_no_reference():
    x, y = new_without_init(), new_without_init()
    assert_shared_object_loses_nothing(lambda: cmp(x, y), 0)


@pytest.mark.parametrize(
    "value", [-6, 257, "two letters", unicode("two"), (1,), frozenset([1]), 2.5]
)
def test_all_other_objects_lose_theirs(value):
    value = copied(value)
    x, y = GMVar(value), GMVar(lent(Plain()))
    with count_restored(value, LENT):
        assert count_changes(lambda: cmp(x, y), [value]) == [-1.0]


# Attributes, calls, text.


def test_attributes_are_those_of_the_value():
    value = Plain()
    variable = GMVar(value)
    variable.name = "a"
    assert value.name == "a" and variable.name == "a"
    del variable.name
    for function in (
        lambda: variable.name,
        lambda: delattr(variable, "name"),
        lambda: setattr(GMVar(5), "name", 1),
    ):
        with pytest.raises(AttributeError):
            function()
    assert variable.__class__ is Plain and type(variable) is GMVar
    assert GMVar("text").upper() == "TEXT"
    marker = object()
    assert_counts_unchanged(lambda: setattr(variable, "name", marker), variable, value, marker)
    assert_counts_unchanged(lambda: variable.name, variable, value, marker)


def test_calls_go_to_the_value():
    def called(*arguments, **keywords):
        return arguments, keywords

    assert GMVar(called)(1, 2, x=3) == ((1, 2), {"x": 3})
    for value in (5, None):
        with pytest.raises(TypeError):
            GMVar(value)()


def test_the_value_survives_its_own_replacement_during_a_call():
    def replace():
        variable[0] = 5
        return alive() is not None

    variable = GMVar(functools.partial(replace))  # which holds nothing of itself while it is called
    alive = weakref.ref(variable[0])
    assert variable() is True
    assert alive() is None and variable == 5


def test_text():
    class Text(object):
        def __str__(self):
            return "text"

    assert str(GMVar(Text())) == "text" and unicode(GMVar(5)) == "5"
    assert str(GMVar(unicode("ascii"))) == "ascii"
    for convert in (str, unicode):
        with pytest.raises(UnicodeEncodeError):
            convert(GMVar(unichr(0xE9)))

    class Accented(object):
        def __str__(self):
            return unichr(0xE9)

    assert unicode(GMVar(Accented())) == unichr(0xE9)
    with pytest.raises(UnicodeEncodeError):
        str(GMVar(Accented()))


def test_hashes():
    for value in (5, 2.5, "text", (1, 2), None):
        assert hash(GMVar(value)) == hash(value)
        assert {value: "found"}[GMVar(value)] == "found"
    with pytest.raises(TypeError):
        hash(GMVar([]))


def test_copies_and_pickles_are_those_of_the_value():
    assert copy.copy(GMVar(5)) == 5
    assert pickle.loads(pickle.dumps(GMVar(5), 2)) == 5


# Length.


@pytest.mark.parametrize(
    "value, length",
    [("text", 4), (unicode(), 0), ([1, 2], 2), ((), 0), (5, 6), (None, 6), ({1: 2}, 6), (2.5, 6)],
)
def test_length_is_that_of_a_sequence_or_the_number_of_elements(value, length):
    variable = GMVar(value)
    assert len(variable) == (length if length != 6 else 1)
    variable[2, 1] = 0
    assert len(variable) == length


def test_length_of_classic_instances_and_failures():
    class Sequence:
        def __getitem__(self, i):
            return i

        def __len__(self):
            return 9

    class Unsized(object):
        def __getitem__(self, i):
            return i

    class Neither:
        pass

    assert len(GMVar(Sequence())) == 9
    assert len(GMVar(Neither())) == 1
    with pytest.raises(TypeError):
        len(GMVar(Unsized()))
