"""How fast game variables and instance lists are: a table on standard output.

    python bench/python/bench_variables.py [--rounds N]

needs the built module on PYTHONPATH; script/bench variables sees to it. Every line compares one
operation, in a loop of bytecode that does nothing else, with the same operation on a
straightforward Python class (with __slots__ and a flat list; a list subclass for instance lists) or
on plain values. Ratios are of times taken in turns within one process; each is a median with its
quartiles. Ends with status 1 when a median misses its target.
"""

from __future__ import division, print_function

import argparse
import ctypes
import os
import sys
import types

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")

gm6 = sys.modules["gm6"] = types.ModuleType("gm6")
gmapi = sys.modules["gmapi"] = types.ModuleType("gmapi")

import larkspur  # noqa: E402
import measuring  # noqa: E402
from larkspur import GMVar  # noqa: E402

STEPS = 2000
GROWTH_STEPS = 10000
LEAST_RATIO_TO_CLASS = 5.0
MOST_RATIO_TO_PLAIN = 2.2


class Variable(object):
    """A game variable in straightforward Python."""

    __slots__ = ("width", "height", "items")

    def __init__(self, value):
        self.width = self.height = 1
        self.items = [value.items[0] if type(value) is Variable else value]

    def __add__(self, other):
        return self.items[0] + (other.items[0] if type(other) is Variable else other)

    def __lt__(self, other):
        return self.items[0] < (other.items[0] if type(other) is Variable else other)

    def __iadd__(self, other):
        self.items[0] += other.items[0] if type(other) is Variable else other
        return self

    def __getitem__(self, key):
        if isinstance(key, tuple):
            i, j = key
            if 0 <= i < self.width and 0 <= j < self.height:
                return self.items[j * self.width + i]
        elif 0 <= key < self.width:
            return self.items[key]
        return 0

    def __setitem__(self, key, value):
        if type(value) is Variable:
            value = value.items[0]
        i, j = key if isinstance(key, tuple) else (key, 0)
        if i >= self.width or j >= self.height:
            self.grow(max(self.width, i + 1), max(self.height, j + 1))
        self.items[j * self.width + i] = value

    def grow(self, width, height):
        items = [0] * (width * height)
        for j in range(self.height):
            items[j * width : j * width + self.width] = self.items[
                j * self.width : (j + 1) * self.width
            ]
        self.width, self.height, self.items = width, height, items


class Instance(object):
    pass


INSTANCES = {7: Instance()}


class ConvertingList(list):
    """An instance list in straightforward Python."""

    def append(self, value):
        if type(value) is Variable:
            value = value.items[0]
        if type(value) not in (Instance, Variable, types.ModuleType):
            value = INSTANCES[int(value)]
        list.append(self, value)


def grid(variable):
    """A variable with 8 x 8 elements."""
    for j in range(8):
        for i in range(8):
            variable[i, j] = i
    return variable


def loop(operation, **names):
    """A function that does one operation STEPS times, in a loop of bytecode."""
    code = "def run(%s):\n    for _ in numbers:\n        %s\n" % (
        ", ".join("%s=%s" % (name, name) for name in ["numbers"] + sorted(names)),
        operation,
    )
    names["numbers"] = range(STEPS)
    exec(code, names)
    return names["run"]


def filling(make, value):
    """A function that makes a list and appends STEPS values to it."""

    def run(numbers=range(STEPS)):
        append = make().append
        for _ in numbers:
            append(value)

    return run


def growing(make):
    """A function that makes a variable and grows it by GROWTH_STEPS single columns."""

    def run(numbers=range(GROWTH_STEPS)):
        variable = make(0)
        for i in numbers:
            variable[i] = i

    return run


def actions():
    """name -> (loop on ours, loop to compare with, least ratio or None, most ratio or None)."""
    table = []
    for operation in ("v + 1", "v < 3", "v[3]", "v[3, 4]", "v[3, 4] = 5", "v += 1"):
        table.append(
            (
                operation + ", class / GMVar",
                loop(operation, v=grid(Variable(5))),
                loop(operation, v=grid(GMVar(5))),
                LEAST_RATIO_TO_CLASS,
                None,
            )
        )
    for operation in ("v + 1", "v < 3", "v += 1"):
        most = MOST_RATIO_TO_PLAIN if operation == "v + 1" else None
        table.append(
            (
                operation + ", GMVar / int",
                loop(operation, v=GMVar(5)),
                loop(operation, v=5),
                None,
                most,
            )
        )
    for name, value in (("id", 7), ("instance", INSTANCES[7])):
        table.append(
            (
                "append(%s), list subclass / InstanceList" % name,
                filling(ConvertingList, value),
                filling(larkspur.InstanceList, value),
                LEAST_RATIO_TO_CLASS if name == "id" else None,
                None,
            )
        )
    return table


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--rounds", type=int, default=400)
    rounds = parser.parse_args().rounds

    # Appending by id releases a reference that it did not take, so the instance gets plenty.
    ctypes.c_ssize_t.from_address(id(INSTANCES[7])).value += 1 << 40
    try:
        larkspur.RegisterInstancesDict(INSTANCES, Instance, Variable, types.ModuleType)
        hasattr(gm6, "")  # the host's callables are missing here, and so is their exception then
    except AttributeError:
        pass

    table = actions()
    timed = {}
    for name, above, below, _, _ in table:
        timed[name, 0], timed[name, 1] = above, below
    growth = growing(GMVar)
    timed["growth"] = growth
    # One call is a sample, short enough to pass undisturbed on a busy machine.
    times = measuring.times_in_turns(timed, rounds, seconds_per_sample=0.0)

    missed = False
    print("%-44s %-20s %-22s %s" % ("", "ratio", "ns a step", "target"))
    for name, _, _, least, most in table:
        low, median, high = quartiles = measuring.ratios(times[name, 0], times[name, 1])
        ours = times[name, 0] if name.endswith("/ int") else times[name, 1]
        target = "at least %.1f" % least if least else "at most %.1f" % most if most else ""
        fails = (least and median < least) or (most and median > most)
        missed = missed or fails
        print(
            "%-44s %-20s %-22s %s%s"
            % (
                name,
                measuring.as_text(quartiles),
                measuring.as_text(
                    [value * 1e9 / STEPS for value in measuring.quartiles(ours)], "%.0f"
                ),
                target,
                " *" if fails else "",
            )
        )
    print(
        "%-44s %-20s %s"
        % (
            "growth by one column",
            "",
            measuring.as_text(
                [value * 1e9 / GROWTH_STEPS for value in measuring.quartiles(times["growth"])],
                "%.0f",
            ),
        )
    )
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
