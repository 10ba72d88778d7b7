"""Objects whose special methods misbehave.

A shape is what the object is otherwise: a new-style object, a classic instance, or an instance of
a subclass of a type that larkspur knows. All special methods of an object do the same deed, and
then answer as one that stands for 1 would: "obey" does nothing before, "lie" answers with an object
of a wrong type, the ones named "fail" raise, and the others do to the scene what scene.ACTIONS has.
"""

import types

import pygame

from robustness import scene

_ANSWERS = {
    "__int__": lambda: 1,
    "__long__": lambda: 1,
    "__float__": lambda: 1.0,
    "__complex__": lambda: 1j,
    "__index__": lambda: 1,
    "__oct__": lambda: "1",
    "__hex__": lambda: "1",
    "__len__": lambda: 3,  # as a colour has
    "__nonzero__": lambda: True,
    "__hash__": lambda: 1,
    "__str__": lambda: "1",
    "__repr__": lambda: "1",
    "__unicode__": lambda: unicode("1"),
    "__cmp__": lambda: 0,
    "__contains__": lambda: True,
    "__iter__": lambda: iter((1, 1)),
    "__call__": lambda: None,
    "__coerce__": lambda: NotImplemented,
    "__setitem__": lambda: None,
    "__delitem__": lambda: None,
}
for _name in "eq ne lt le gt ge".split():
    _ANSWERS["__%s__" % _name] = lambda: True
for _name in "add sub mul div mod floordiv truediv and or xor pow lshift rshift divmod".split():
    for _prefix in ("", "r", "i"):
        _ANSWERS["__%s%s__" % (_prefix, _name)] = lambda: 1
for _name in "neg pos abs invert".split():
    _ANSWERS["__%s__" % _name] = lambda: 1

_RAISED = {"fail": ZeroDivisionError, "fail_index": IndexError, "fail_attribute": AttributeError}
DEEDS = ("obey", "lie") + tuple(sorted(_RAISED)) + scene.ACTIONS


class _Wrong(object):
    """Of a type that no special method may answer with."""


def do(deed, answer):
    """Does a deed, then answers."""
    if deed in _RAISED:
        raise _RAISED[deed]("from a special method")
    if deed == "lie":
        return _Wrong()
    if deed != "obey":
        scene.current.act(deed)
    return answer()


def _special_methods(deed):
    def method_with(answer):
        return lambda *arguments: do(deed, answer)

    def get_item(self, index):
        if isinstance(index, int) and index >= 12:
            raise IndexError(index)  # the end of a loop over the items
        return do(deed, lambda: 1)

    def get_attribute(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        return do(deed, lambda: 1)

    methods = {name: method_with(answer) for name, answer in _ANSWERS.items()}
    methods["__getitem__"] = get_item
    methods["__getattr__"] = get_attribute
    methods["__setattr__"] = method_with(lambda: None)
    return methods


# Shape -> base and its arguments; the classic instance has neither.
_BASES = {
    "object": (object,),
    "classic": (),
    "int": (int, 5),
    "float": (float, 1.5),
    "str": (str, "5"),
    "unicode": (unicode, unicode("5")),
    "list": (list, [1, 2, 3, 4]),
    "tuple": (tuple, (1, 2, 3, 4)),
    "dict": (dict, {7: 1}),
    "Surface": (pygame.Surface, (8, 6), 0, 32),
}
SHAPES = tuple(sorted(_BASES))


def _class(shape, deed):
    if shape == "classic":
        return types.ClassType("Hostile", (), _special_methods(deed))
    return type("Hostile", _BASES[shape][:1], _special_methods(deed))


_CLASSES = {(shape, deed): _class(shape, deed) for shape in SHAPES for deed in DEEDS}


def make(shape, deed):
    """A new object of this shape that does this deed."""
    return _CLASSES[shape, deed](*_BASES[shape][1:])


class Dying(object):
    """Does a deed when it dies."""

    def __init__(self, deed):
        self.deed = deed

    def __del__(self):
        do(self.deed, lambda: None)
