"""Game variables as native code sees them, and some that are hard to come by."""

import ctypes

from larkspur import GMVar

from support import records


class VariableRecord(ctypes.Structure):
    """A variable as native code sees it."""

    _fields_ = [
        ("refcount", ctypes.c_ssize_t),
        ("type", ctypes.c_void_p),
        ("magic", ctypes.c_uint32),
        ("width", ctypes.c_int32),
        ("height", ctypes.c_int32),
        ("items", ctypes.POINTER(ctypes.c_void_p)),
    ]


def native(variable):
    return VariableRecord.from_address(id(variable))


def size(variable):
    return native(variable).width, native(variable).height


def new_without_init():
    return GMVar.__new__(GMVar)


class Becoming(object):
    """Becomes what is inside the list that is added to it."""

    def __iadd__(self, items):
        return items[0]


def holding(inner):
    """A variable that holds a variable: what in-place addition gives is stored as it is."""
    variable = GMVar(Becoming())
    variable += [inner]
    return variable


def holding_itself():
    variable = GMVar(Becoming())
    variable += [variable]
    return variable


def mutations():
    """Functions that change a variable in ways an operation on it may not expect."""

    def grow(variable):
        variable[50, 50] = 1

    def replace(variable):
        variable[0] = 5
        variable[1] = 5

    def reset(variable):
        GMVar.__init__(variable, 5)

    def reset_and_grow(variable):
        reset(variable)
        grow(variable)

    return [grow, replace, reset, reset_and_grow, records.clear]
