"""CPython's own cases for numbers, hashes and comparisons, run against GMVar.

The names by which the cases make or use numbers stand for game variables: hash() hashes a variable
holding what it is given, Rat() makes a variable holding a Rat, and so on.
"""

import operator

import pytest
from larkspur import GMVar
from support import cpython_cases, leaks
from test import (
    test_binop,
    test_coercion,
    test_compare,
    test_float,
    test_hash,
    test_int,
    test_richcmp,
)


def hash_of_variable(value):
    return hash(GMVar(value))


def compare_variables(a, b):
    for value in (a, b):
        leaks.lend_references(value, 1)  # comparing variables takes one of each value
    return cmp(GMVar(a), GMVar(b))


def holding(make):
    """Makes what `make` makes, and wraps it."""
    return lambda *arguments: GMVar(make(*arguments))


class Converting(type):
    """A builtin type whose calls with one argument go through a variable. Classes derived from it
    are derived from the builtin."""

    def __new__(mcs, name, bases, members):
        if bases:
            return type(name, tuple(getattr(base, "builtin", base) for base in bases), members)
        return type.__new__(mcs, name, bases, members)

    def __call__(cls, *arguments):
        return cls.builtin(*(map(GMVar, arguments) if len(arguments) == 1 else arguments))

    def __getattr__(cls, name):
        return getattr(cls.builtin, name)

    def __instancecheck__(cls, value):
        return isinstance(value, cls.builtin)


def converting(builtin):
    return Converting(
        builtin.__name__, (), {"builtin": builtin, "__new__": staticmethod(builtin.__new__)}
    )


HASH = {"hash": hash_of_variable}

TestHashEquality = cpython_cases.adapted(
    "TestHashEquality", test_hash.HashEqualityTestCase, names=HASH
)
TestHashInheritance = cpython_cases.adapted(
    "TestHashInheritance", test_hash.HashInheritanceTestCase, names=HASH
)
TestHashBuiltins = cpython_cases.adapted(
    "TestHashBuiltins", test_hash.HashBuiltinsTestCase, names=HASH
)

_numbers = map(GMVar, test_compare.ComparisonTest.set1)
_others = map(GMVar, test_compare.ComparisonTest.set2)
TestComparison = cpython_cases.adapted(
    "TestComparison",
    test_compare.ComparisonTest,
    names={"cmp": compare_variables},
    set1=_numbers,
    set2=_others,
    candidates=_numbers + _others,
)

TestRichNumber = cpython_cases.adapted(
    "TestRichNumber", test_richcmp.NumberTest, names={"Number": holding(test_richcmp.Number)}
)
TestRichInt = cpython_cases.adapted("TestRichInt", test_richcmp.NumberTest, names={"Number": GMVar})
TestRichVector = cpython_cases.adapted(
    "TestRichVector", test_richcmp.VectorTest, names={"Vector": holding(test_richcmp.Vector)}
)

NO_SUCH_DIVISION = (TypeError, "a variable divides as GM does, with / and %")

TestRational = cpython_cases.adapted(
    "TestRational",
    test_binop.RatTestCase,
    {"test_floordiv": NO_SUCH_DIVISION, "test_future_div": NO_SUCH_DIVISION},
    names={"Rat": holding(test_binop.Rat)},
)

TestInt = cpython_cases.adapted("TestInt", test_int.IntTestCases, names={"int": converting(int)})
TestFloat = cpython_cases.adapted(
    "TestFloat",
    test_float.GeneralFloatCases,
    names={"float": converting(float)},
    test_float_with_comma=None,
)  # runs only under a locale that writes a comma


# The operators of CPython's table of mixed operands that variables forward as they are.
FORWARDED = {"+": operator.add, "-": operator.sub, "%": operator.mod, "/": operator.div}


@pytest.mark.filterwarnings("ignore:complex divmod")
def test_coercion_table():
    for (i, j), (results, _) in sorted(test_coercion.infix_results.items()):
        a, b = test_coercion.candidates[i], test_coercion.candidates[j]
        for symbol, expected in zip(test_coercion.infix_binops, results):
            if symbol not in FORWARDED:
                continue
            for x, y in [(GMVar(a), b), (a, GMVar(b)), (GMVar(a), GMVar(b))]:
                if expected is TypeError:
                    with pytest.raises(TypeError):
                        FORWARDED[symbol](x, y)
                else:
                    result = FORWARDED[symbol](x, y)
                    assert test_coercion.format_result(result) == test_coercion.format_result(
                        expected
                    ), (a, symbol, b)
