"""Game variables and records by larkspur, and what they stand in for: WAYS, job -> function of a
size that counts for nothing, which returns a dictionary of ways by their names.
"""

import ctypes
import types

import larkspur
from host import INSTANCES, Instance, gmapi
from larkspur import GMVar
from ways import Way, processor_time


class Variable(object):
    """A game variable in straightforward Python."""

    __slots__ = ("width", "height", "items")

    def __init__(self, value):
        self.width = self.height = 1
        self.items = [value.items[0] if type(value) is Variable else value]

    def __add__(self, other):
        return self.items[0] + (other.items[0] if type(other) is Variable else other)

    def __sub__(self, other):
        return self.items[0] - (other.items[0] if type(other) is Variable else other)

    def __mul__(self, other):
        return self.items[0] * (other.items[0] if type(other) is Variable else other)

    def __eq__(self, other):
        return self.items[0] == (other.items[0] if type(other) is Variable else other)

    __hash__ = None

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
    """An operation in a loop of bytecode that does nothing else."""
    # Globals would cost more than the locals that code of a game uses.
    defaults = ", ".join("%s=%s" % (name, name) for name in sorted(names))
    names["processor_time"] = processor_time
    code = """
def seconds(calls, %s):
    numbers = range(calls)
    begin = processor_time()
    for _ in numbers:
        %s
    return processor_time() - begin
"""
    exec(code % (defaults, operation), names)
    return Way(names["seconds"])


def operations(operation, number=None):
    """On variables of 8 x 8 elements and, where plain numbers know it as well, on such."""

    def ways(_):
        found = {
            "larkspur": loop(operation, v=grid(GMVar(5))),
            "plain class": loop(operation, v=grid(Variable(5))),
        }
        if number is not None:
            found["int"] = loop(operation, v=number)
        return found

    return ways


def creation(_):
    return {
        "larkspur": loop("make(5)", make=GMVar),
        "plain class": loop("make(5)", make=Variable),
    }


def appends(value):
    """To a list that is made anew before it is long."""

    def filling(make):
        def seconds(calls):
            begin = processor_time()
            for start in range(0, calls, 2000):
                append = make().append
                for _ in range(min(2000, calls - start)):
                    append(value)
            return processor_time() - begin

        return Way(seconds)

    def ways(_):
        # Appending by id releases a reference that it did not take, so the instance gets plenty.
        ctypes.c_ssize_t.from_address(id(INSTANCES[7])).value += 1 << 40
        return {
            "larkspur": filling(larkspur.InstanceList),
            "list subclass": filling(ConvertingList),
        }

    return ways


def numbers_of(make, list_name):
    """int() of a resource, which is its place in the game's list, here the first."""

    def ways(_):
        resources = [make() for _ in range(20)]
        setattr(gmapi.game, list_name, resources)
        return {"larkspur": loop("int(v)", v=resources[0])}

    return ways


WAYS = {
    "GMVar, v + 1": operations("v + 1", 5),
    "GMVar, v - 1": operations("v - 1", 5),
    "GMVar, v * 2": operations("v * 2", 5),
    "GMVar, v == 5": operations("v == 5", 5),
    "GMVar, v < 3": operations("v < 3", 5),
    "GMVar, v += 1": operations("v += 1", 5),
    "GMVar, v[3]": operations("v[3]"),
    "GMVar, v[3, 4]": operations("v[3, 4]"),
    "GMVar, v[3, 4] = 5": operations("v[3, 4] = 5"),
    "GMVar, make(5)": creation,
    "InstanceList.append(), by id": appends(7),
    "InstanceList.append(), an instance": appends(INSTANCES[7]),
    "int(background)": numbers_of(larkspur.BackgroundData, "backgrounds"),
    "int(sprite)": numbers_of(larkspur.GMSprite, "sprites"),
}
