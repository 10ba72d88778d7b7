"""GMVars that are changed while they are worked on, and one that holds itself."""

import ctypes
import operator

import pytest
from larkspur import GMVar
from support import records
from support.leaks import left_behind, lend_references
from support.variables import holding_itself, mutations, native, size

# A variable that holds itself.


@pytest.mark.parametrize(
    "function",
    [
        lambda v: v + 1,
        lambda v: 1 + v,
        lambda v: v * 2,
        lambda v: -v,
        abs,
        int,
        float,
        bool,
        len,
        str,
        hash,
        lambda v: v.name,
        lambda v: setattr(v, "name", 1),
        lambda v: v(),
        lambda v: v == 1,
        lambda v: v < 1,
        lambda v: cmp(v, GMVar(v)),
        lambda v: cmp(v, GMVar(5)),
        lambda v: coerce(v, 1),
        lambda v: operator.iadd(v, 1),
        lambda v: operator.getitem(GMVar(5), v),
    ],
)
def test_a_variable_that_holds_itself_raises(function):
    variable = holding_itself()
    assert variable[0] is variable
    for _ in range(2):
        if function is len:
            assert len(variable) == 1
            continue
        with pytest.raises(RuntimeError):
            function(variable)
    variable[0] = 0  # ends the cycle


# Code that changes the variable while it is worked on.


class Meddling(object):
    """A value all of whose operations first change the variable that holds it."""

    def __init__(self, act):
        self.__dict__["act"] = act


def _meddling(name, result):
    def method(self, *arguments):
        self.__dict__["act"]()
        return result

    method.__name__ = name
    setattr(Meddling, name, method)


for _name in (
    "add sub mul div mod and xor or radd rsub rmul rdiv rmod rand rxor ror neg pos abs "
    "iadd eq ne lt le gt ge call"
).split():
    _meddling("__%s__" % _name, 7)
for _name, _result in [
    ("int", 1),
    ("float", 1.5),
    ("nonzero", True),
    ("len", 3),
    ("str", "text"),
    ("hash", 9),
    ("index", 1),
    ("getitem", 1),
    ("cmp", 1),
    ("getattr", 3),
    ("setattr", None),
    ("coerce", (1, 2)),
]:
    _meddling("__%s__" % _name, _result)


USES = [
    lambda v: v + 1,
    lambda v: 1 + v,
    lambda v: v - 1,
    lambda v: v * 2,
    lambda v: 2 * v,
    lambda v: v / 2,
    lambda v: v % 2,
    lambda v: v & 1,
    lambda v: v ^ 1,
    lambda v: v | 1,
    lambda v: -v,
    lambda v: +v,
    abs,
    int,
    float,
    bool,
    len,
    str,
    hash,
    lambda v: v.name,
    lambda v: setattr(v, "name", 1),
    lambda v: v(),
    lambda v: v == 1,
    lambda v: v < v[0],
    lambda v: cmp(v, 1),
    lambda v: cmp(v, GMVar(v)),
    lambda v: coerce(v, 1),
    lambda v: operator.iadd(v, 1),
    lambda v: operator.iadd(v, v),
    lambda v: v[v],
    lambda v: v[v, v],
    lambda v: v[v[0]],
    lambda v: v[v[0], v[0]],
    lambda v: operator.setitem(v, v[0], "new"),
    lambda v: operator.setitem(v, (v[0], 0), "new"),
    lambda v: operator.setitem(v, (0, v[0]), v),
    lambda v: operator.setitem(v, v, v),
]


@pytest.mark.parametrize("use", range(len(USES)))
def test_values_may_change_the_variable_during_any_operation(use):
    for act in mutations():
        variable = GMVar(0)
        variable[1, 1] = "other"
        value = Meddling(lambda: act(variable))
        lend_references(value, 4)  # comparing variables takes some
        variable[0] = value
        del value
        try:
            USES[use](variable)
        except (TypeError, SystemError, RuntimeError):
            pass
        width, height = size(variable)
        for k in range(width * height):
            address = native(variable).items[k]
            assert address is None or ctypes.c_ssize_t.from_address(address).value > 0
        variable[3, 3] = "still"
        assert variable[3, 3] == "still"


RELEASES = [
    lambda v: operator.setitem(v, 0, 1),
    lambda v: operator.setitem(v, (0, 0), 1),
    lambda v: operator.setitem(v, (9, 9), 1),
    lambda v: operator.iadd(v, 1),
    records.clear,
]


@pytest.mark.parametrize("release", RELEASES)
def test_destructors_may_change_the_variable_during_any_release(release):
    for act in mutations():

        class Dying(object):
            def __iadd__(self, other):
                return other

            def __del__(self):
                act(holder["variable"])

        # Where __init__() of a variable takes their place, they stay for good.
        holder = {"variable": GMVar(left_behind(Dying()))}
        holder["variable"][2, 2] = left_behind(Dying())
        release(holder["variable"])
        holder["variable"][3, 3] = "still"
        assert holder["variable"][3, 3] == "still"
        holder["variable"] = GMVar(0)  # as a cycle of what has __del__() would stay


class MeddlingKey(object):
    """A key, or a part of one, that changes the variable when it is read."""

    def __init__(self, act, parts=(1, 1)):
        self.act, self.parts = act, parts

    def __getitem__(self, i):
        self.act()
        return self.parts[i]

    def __len__(self):
        self.act()
        return 2


def test_keys_may_change_the_variable():
    for act in mutations():
        variable = GMVar("value")
        key = MeddlingKey(lambda: act(variable))
        GMVar.__getitem__(variable, key)
        variable[key] = "new"
        assert variable[1, 1] == "new"
