import operator
import random
import struct

import larkspur
import pytest
from support import leaks, records

NAN, INFINITY = float("nan"), float("inf")
VALUES = [1.5, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0]
OPERATORS = [operator.add, operator.sub, operator.mul, operator.div]


def make_list(values=VALUES):
    floats = larkspur.Floatlist8()
    for i, value in enumerate(values):
        floats[i] = value
    return floats


def bits(values):
    """Doubles as they are in memory, so that NaN and -0.0 compare as well."""
    return [struct.pack("<d", value) for value in values]


class Convertible(object):
    """Something with a float conversion, which can run code on the way."""

    def __init__(self, value, action=lambda: None):
        self.value, self.action = value, action

    def __float__(self):
        self.action()
        return self.value


def unconvertible():
    raise ValueError("no float here")


# --- Items ---------------------------------------------------------------------------------------


def test_new_lists_hold_eight_zeros():
    assert list(larkspur.Floatlist8()) == [0.0] * 8
    assert len(larkspur.Floatlist8()) == 8


def test_items_are_doubles():
    floats = make_list()
    assert [floats[i] for i in range(8)] == VALUES
    assert [floats[i] for i in range(-8, 0)] == VALUES
    floats[7] = 0.1
    assert (floats[7], type(floats[7])) == (0.1, float)
    assert list(floats) == VALUES[:7] + [0.1]


@pytest.mark.parametrize(
    "value, stored",
    [
        (3, 3.0),
        (2**40, 2.0**40),
        (True, 1.0),
        ("2.5", 2.5),
        (Convertible(-4.25), -4.25),
        (make_list(), 1.5),
    ],
)
def test_assignment_converts_to_float(value, stored):
    floats = make_list()
    floats[-1] = value
    assert list(floats) == VALUES[:7] + [stored]


@pytest.mark.parametrize("i", [8, 9, 2**40, -9, -(2**40)])
def test_items_out_of_range_fail_without_an_exception_of_their_own(i):
    floats = make_list()
    with pytest.raises(SystemError) as reading:
        floats[i]
    with pytest.raises(SystemError) as writing:
        floats[i] = 1.0
    for failure in (reading, writing):
        assert str(failure.value) == "error return without exception set"
    assert list(floats) == VALUES


def test_assignment_out_of_range_does_not_convert():
    floats = make_list()
    with pytest.raises(SystemError):
        floats[8] = Convertible(0.0, unconvertible)


@pytest.mark.parametrize(
    "value, error",
    [
        (None, TypeError),
        ([], TypeError),
        ("text", ValueError),
        (10**400, OverflowError),
        (Convertible(0.0, unconvertible), ValueError),
    ],
)
def test_assignment_of_what_does_not_convert_changes_nothing(value, error):
    floats = make_list()
    with pytest.raises(error):
        floats[0] = value
    assert list(floats) == VALUES


def test_items_cannot_be_deleted():
    floats = make_list()
    with pytest.raises(SystemError) as failure:
        del floats[0]
    assert "null argument" in str(failure.value)  # a missing value does not convert
    assert list(floats) == VALUES


def test_slices_and_keys_are_refused():
    floats = make_list()
    for action in (lambda: floats[1:3], lambda: floats["0"]):
        with pytest.raises(TypeError):
            action()


# --- Arithmetic ----------------------------------------------------------------------------------


@pytest.mark.parametrize(
    "expression, first",
    [
        (lambda floats: floats + 1, 2.5),
        (lambda floats: 1 + floats, 2.5),
        (lambda floats: floats - 1, 0.5),
        (lambda floats: 1 - floats, 0.5),
        (lambda floats: floats * 4, 6.0),
        (lambda floats: 4 * floats, 6.0),
        (lambda floats: floats / 2, 0.75),
        (lambda floats: 2 / floats, 0.75),
        (lambda floats: floats * floats, 2.25),
        (lambda floats: floats + "2.5", 4.0),
        (lambda floats: floats + 2**70, 1.5 + 2.0**70),
        (lambda floats: floats / 0, INFINITY),
        (lambda floats: floats - INFINITY, -INFINITY),
    ],
)
def test_arithmetic_is_on_element_0_with_the_list_on_the_left(expression, first):
    floats = make_list()
    result = expression(floats)
    assert type(result) is larkspur.Floatlist8
    assert result is not floats
    assert list(result) == [first] + VALUES[1:]
    assert list(floats) == VALUES


def test_of_two_lists_the_left_one_gives_the_other_elements():
    other = make_list([0.5] + [9.0] * 7)
    assert list(make_list() - other) == [1.0] + VALUES[1:]
    assert list(other - make_list()) == [-1.0] + [9.0] * 7


def test_arithmetic_is_in_double_precision():
    rule = {
        operator.add: lambda a, b: a + b,
        operator.sub: lambda a, b: a - b,
        operator.mul: lambda a, b: a * b,
        operator.div: lambda a, b: a / b,
    }
    source = random.Random(20260)
    for _ in range(500):
        a, b = [source.uniform(-1, 1) * 10.0 ** source.randint(-30, 30) for _ in range(2)]
        for apply in OPERATORS:
            floats = make_list([a] + VALUES[1:])
            expected = bits([rule[apply](a, b)] + VALUES[1:])
            assert bits(apply(floats, b)) == expected
            assert bits(apply(b, floats)) == expected


def test_elements_are_copied_bit_for_bit():
    odd = [0.0, NAN, -0.0, INFINITY, -INFINITY, 5e-324, 1.7e308, -NAN]
    assert bits(make_list(odd) + 0.0) == bits(odd)


@pytest.mark.parametrize("apply", OPERATORS)
@pytest.mark.parametrize(
    "value, error",
    [
        (None, TypeError),
        ([1], TypeError),
        ("text", ValueError),
        (1j, TypeError),
        (Convertible(0.0, unconvertible), ValueError),
    ],
)
def test_operands_that_do_not_convert_raise(apply, value, error):
    floats = make_list()
    for left, right in ((floats, value), (value, floats)):
        with pytest.raises(error):
            apply(left, right)
    with pytest.raises(error):
        floats -= value
    assert list(floats) == VALUES


def test_the_list_is_read_after_the_operand_was_converted():
    floats = make_list()

    def change():
        floats[0], floats[3] = 100.0, 40.0

    assert list(floats + Convertible(1.0, change)) == [101.0, 2.0, 3.0, 40.0, 5.0, 6.0, 7.0, 8.0]


def test_in_place_subtraction_changes_the_list_itself():
    floats = same = make_list()
    floats -= 0.5
    assert floats is same
    assert list(floats) == [1.0] + VALUES[1:]
    floats -= floats
    assert floats is same
    assert list(floats) == [0.0] + VALUES[1:]


def test_in_place_subtraction_starts_from_what_the_conversion_left():
    floats = same = make_list()
    floats -= Convertible(1.0, lambda: same.__setitem__(0, 100.0))
    assert list(floats) == [99.0] + VALUES[1:]


@pytest.mark.parametrize(
    "apply, first", [(operator.iadd, 3.5), (operator.imul, 3.0), (operator.idiv, 0.75)]
)
def test_other_in_place_operations_make_new_lists(apply, first):
    floats = make_list()
    result = apply(floats, 2)
    assert result is not floats
    assert list(result) == [first] + VALUES[1:]
    assert list(floats) == VALUES


@pytest.mark.parametrize(
    "action",
    [
        lambda floats: floats % 2,
        lambda floats: floats // 2,
        lambda floats: floats**2,
        lambda floats: -floats,
        abs,
        lambda floats: operator.truediv(floats, 2),
    ],
)
def test_there_is_no_other_arithmetic(action):
    with pytest.raises(TypeError):
        action(make_list())


# --- Conversions and comparison ------------------------------------------------------------------


@pytest.mark.parametrize(
    "value, integer",
    [
        (0.0, 0),
        (-0.9, 0),
        (2.999, 2),
        (-2.7, -2),
        (2.0**31 - 1, 2**31 - 1),
        (-(2.0**31), -(2**31)),
        (2.0**31, -(2**31)),
        (-(2.0**31) - 1, -(2**31)),
        (1e300, -(2**31)),
        (INFINITY, -(2**31)),
        (-INFINITY, -(2**31)),
        (NAN, -(2**31)),
    ],
)
def test_int_truncates_element_0_to_32_bits(value, integer):
    assert int(make_list([value])) == integer


def test_float_is_element_0():
    assert float(make_list()) == 1.5
    assert bits([float(make_list([-0.0]))]) == bits([-0.0])


@pytest.mark.parametrize(
    "value, text",
    [
        (3.0, "3"),
        (-2.0, "-2"),
        (-0.0, "0"),
        (2.5, "%f"),
        (NAN, "%f"),
        (-0.5, "%f"),
        (2147483647.0, "2147483647"),
        (2147483648.0, "-2147483648"),
        (-3e9, "-2147483648"),
        (INFINITY, "-2147483648"),
        (-INFINITY, "-2147483648"),
    ],
)
def test_text_of_whole_numbers_and_of_others(value, text):
    assert str(make_list([value])) == text


@pytest.mark.parametrize(
    "a, b, order",
    [
        (1.0, 2.0, -1),
        (2.0, 1.0, 1),
        (2.0, 2.0, 0),
        (0.0, -0.0, 0),
        (-INFINITY, INFINITY, -1),
        (NAN, 1.0, 0),
        (1.0, NAN, 0),
        (NAN, NAN, 0),
    ],
)
def test_comparison_is_of_element_0_and_nan_equals_everything(a, b, order):
    left, right = make_list([a, 1.0]), make_list([b, 2.0])
    assert cmp(left, right) == order
    assert (left < right, left == right, left > right) == (order < 0, order == 0, order > 0)
    assert (left <= right, left != right, left >= right) == (order <= 0, order != 0, order >= 0)


def test_sorting_orders_by_element_0():
    lists = [make_list([value]) for value in (3.0, -1.0, 2.0)]
    assert [floats[0] for floats in sorted(lists)] == [-1.0, 2.0, 3.0]


def test_lists_are_not_compared_with_numbers():
    assert make_list() != 1.5
    assert not make_list() == 1.5


def test_lists_cannot_be_hashed():
    with pytest.raises(TypeError):
        hash(make_list())


# --- Pickling ------------------------------------------------------------------------------------


def test_state_holds_the_eight_elements():
    floats = make_list()
    assert floats.__reduce__() == (larkspur.Floatlist8, (), tuple(VALUES))
    assert floats.__reduce__("any", "arguments") == (larkspur.Floatlist8, (), tuple(VALUES))


@pytest.mark.parametrize("round_trip", records.ROUND_TRIPS)
def test_lists_survive_pickling_and_copying_bit_for_bit(round_trip):
    odd = [NAN, INFINITY, -0.0, 0.1, 5e-324, -1e300, 1.0 / 3, 2.0]
    assert bits(round_trip(make_list(odd))) == bits(odd)


@pytest.mark.parametrize("container", [tuple, list])
def test_setstate_converts_eight_items_of_a_tuple_or_list(container):
    floats = make_list()
    state = container([1, 2**40, True, Convertible(0.25), 5.5, -1, -1.0, 8, "more"])
    assert floats.__setstate__(state, "ignored") is None
    assert list(floats) == [1.0, 2.0**40, 1.0, 0.25, 5.5, -1.0, -1.0, 8.0]


@pytest.mark.parametrize("item", [None, "2.5", [], 10**400, Convertible(0.0, unconvertible)])
def test_setstate_stores_minus_1_for_what_does_not_convert(item):
    floats = larkspur.Floatlist8()
    assert floats.__setstate__((1, 2, item, 4, 5, 6, 7, 8)) is None
    assert list(floats) == [1.0, 2.0, -1.0, 4.0, 5.0, 6.0, 7.0, 8.0]


@pytest.mark.parametrize("length", range(8))
def test_a_short_state_raises_and_keeps_what_was_there(length):
    floats = make_list()
    with pytest.raises(IndexError):
        floats.__setstate__(tuple([9.0] * length))
    assert list(floats) == [9.0] * length + VALUES[length:]


@pytest.mark.parametrize("arguments", records.NO_STATES)
def test_setstate_refuses_what_is_no_state(arguments):
    floats = make_list()
    with pytest.raises(TypeError):
        floats.__setstate__(*arguments)
    assert list(floats) == VALUES


def test_converting_an_item_may_empty_the_state():
    state = [1.0, Convertible(2.0, lambda: state.__delslice__(0, 9))] + [0.0] * 6
    floats = make_list()
    with pytest.raises(IndexError):
        floats.__setstate__(state)
    assert list(floats) == [1.0, 2.0] + VALUES[2:]


# --- Counts --------------------------------------------------------------------------------------


def test_nothing_leaks():
    floats, other, state = make_list(), make_list(), tuple(VALUES)
    number, refusal, text = 12345.678, Convertible(0.0, unconvertible), "text"

    def use():
        shared = floats
        for apply in OPERATORS:
            apply(floats, number), apply(number, floats), apply(floats, other)
        shared -= number
        floats[3] = number
        floats[3], int(floats), float(floats), str(floats)
        floats == other, cmp(floats, other)
        floats.__reduce__()
        floats.__setstate__(state)
        for action in (
            lambda: floats + refusal,
            lambda: refusal - floats,
            lambda: floats.__setitem__(0, refusal),
            lambda: floats.__setitem__(0, text),
        ):
            with pytest.raises(ValueError):
                action()
        floats.__setstate__((refusal,) * 8)

    leaks.assert_counts_unchanged(
        use, floats, other, state, number, refusal, text, larkspur.Floatlist8
    )


def test_methods():
    assert [(row.name, row.doc) for row in records.method_table(larkspur.Floatlist8)] == [
        ("__reduce__", None),
        ("__setstate__", None),
    ]
