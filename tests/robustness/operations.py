"""What operators, comparisons and built-in functions lead to with objects of each type.

A GMVar forwards most to its value, so that what comes of them is what the interpreter makes of the
value itself, which values.can() knows.
"""

import operator

from larkspur import BackgroundData, Beancounter, Floatlist8, GMRoom, GMSprite, GMVar, InstanceList
from larkspur import RoomTileData as Tile

from robustness.table import EITHER, OK, RAISES, SILENT, always
from robustness.values import can

# ---- facts about values


def fails(value):
    """Whether its special methods raise."""
    return value.hostile in ("fail", "fail_attribute", "fail_index")


def answers(value):
    """Of what none of our types has: only a hostile value, which has all, answers, on either side.
    With what a classic instance's __coerce__ gives when it lies the interpreter can't go on."""
    if not value.hostile or value.own_type or fails(value):
        return RAISES
    return RAISES if (value.shape, value.hostile) == ("classic", "lie") else OK


def innermost(value):
    """What a variable holds, at whatever depth; other values themselves."""
    while value.held:
        value = value.held
    return value


def in_itself(value):
    return value.name == "GMVar in itself"


# The types that are found in a list of the game: none of the values is in one.
RESOURCES = ("GMSprite", "BackgroundData", "GMRoom")


def converted(question):
    """float() or int(), or "wide" for an int that fits a long."""

    def kind(value):
        value = innermost(value)
        if value.own_type in RESOURCES:
            return SILENT
        if value.own_type:
            numbers = ("RoomTileData", "Floatlist8") + ("Beancounter",) * (question != "float")
            return OK if value.own_type in numbers else RAISES
        return OK if can(question, value) else RAISES

    return kind


def compared(value):
    """By the interpreter's general comparison, which orders any two objects."""
    if value.own_type == "GMSprite":
        return SILENT  # compares by its own number, which it has none of
    return RAISES if fails(value) or in_itself(value) else OK


# ---- operators

# Those that GMVar forwards, with which floats it multiplies, and what Floatlist8 has.
BITWISE = [operator.mod, operator.and_, operator.or_, operator.xor]
ADDITIVE = [operator.add, operator.sub, operator.div, operator.iadd, operator.isub]
PRODUCTS = [operator.mul, operator.imul]
OF_NO_TYPE = [operator.floordiv, operator.truediv, operator.lshift, divmod, pow]
RICH = [operator.eq, operator.ne, operator.lt, operator.le, operator.gt, operator.ge]
OPERATORS = (
    BITWISE
    + ADDITIVE
    + PRODUCTS
    + OF_NO_TYPE
    + RICH
    + [cmp, coerce, operator.contains, operator.concat]
)

HAVE_FLOAT = (GMVar, GMSprite, BackgroundData, Tile, GMRoom, Floatlist8)


def forwarded(operation, side):
    """What comes of an operation with a GMVar, for a value on this side of it."""

    def kind(value):
        # To be coerced a value that is held always comes first.
        where = "left" if value.held and operation is coerce else side
        question = "%s %s" % (operation.__name__, where)
        inner = innermost(value)
        is_first = side == "left" and not value.held  # so that its own slot goes before
        if operation in PRODUCTS:
            return answers(value) if value.hostile and is_first else as_float(value)
        if inner.own_type == "Floatlist8" and operation in ADDITIVE:
            return OK
        if inner.own_type and (operation in RICH or operation is cmp):
            return outcome_of(operation, compared(inner))
        if inner.own_type:
            return RAISES
        if operation is coerce and value.acts:
            return EITHER  # by what the variable holds afterwards
        if operation is operator.mod and is_first and can("mod list left", value):
            return OK  # a text takes what has items for its arguments
        return OK if can(question, inner) else RAISES

    return kind


def by_slot(operation, side):
    """As forwarded(), where GMVar's own slot is called, whatever stands on the left."""
    kind = forwarded(operation, side)

    def by_slot_kind(value):
        if operation in PRODUCTS:
            return as_float(value)
        if operation is operator.mod:
            inner = innermost(value)
            works = not inner.own_type and can("mod " + side, inner)
            return OK if works else RAISES
        return kind(value)

    return by_slot_kind


def outcome_of(operation, comparison):
    """cmp() takes a failure without an exception for an order."""
    return OK if operation is cmp and comparison == SILENT else comparison


as_float = converted("float")
as_int = converted("int")
as_wide = converted("wide")


def with_plain(type_, operation, value):
    """An arithmetic operator that the type does not have, but what is on the other side may."""
    if value.own_type == "Floatlist8" and operation in ADDITIVE + PRODUCTS:
        return OK if type_ in HAVE_FLOAT else RAISES
    if not value.held or operation not in PRODUCTS:
        return answers(innermost(value))
    if type_ not in HAVE_FLOAT:
        return RAISES
    # What the value does first can take our object out of the game's list.
    return (OK, RAISES, SILENT) if value.acts else as_float(value)


def with_float_list(operation, side, value):
    """Element 0 and the other operand's float, which only a value on the left can forestall."""
    inner = innermost(value)
    is_first = side == "left" and inner.hostile and not (value.held and operation in PRODUCTS)
    return answers(inner) if operation in BITWISE or is_first else as_float(value)


def with_list(operation, side):
    """An InstanceList is a list."""

    def kind(value):
        if value.held and operation in PRODUCTS:
            return RAISES  # it multiplies floats
        inner = innermost(value)
        if inner.own_type == "InstanceList":
            return OK if operation in (operator.add, operator.iadd) else RAISES
        if operation not in [operator.add, operator.iadd, operator.mod] + PRODUCTS:
            return answers(inner)
        # A variable adds where a list would take any items.
        done = operator.add if value.held and operation is operator.iadd else operation
        question = "%s list %s" % (done.__name__, side)
        return OK if not inner.own_type and can(question, inner) else RAISES

    return kind


def with_sprite(operation, side, value):
    """Both operands' integers, unless a value on the left has an answer of its own."""
    inner = innermost(value)
    if in_itself(value):
        return RAISES
    if operation is cmp and value.acts:
        return EITHER  # which asks several times
    if side == "left" and inner.hostile:
        return RAISES if fails(inner) else OK
    return as_wide(value)


def comparison(type_, operation, side):
    def kind(value):
        if type_ is GMSprite:
            return outcome_of(operation, with_sprite(operation, side, value))
        if type_ is InstanceList and value.shape == "list" and side == "right":
            return OK  # a list compares itself with one by the items
        return outcome_of(operation, compared(value))

    return kind


def membership(type_, side):
    """Whether the value is in the object, or on the left, the object in the value."""
    if side == "right":
        return compared if type_ in (Floatlist8, InstanceList) else always(RAISES)
    question = "in" if type_ in (GMVar, Beancounter) else "in, unhashable"

    def kind(value):
        if value.own_type:
            return OK if value.own_type in ("InstanceList", "Floatlist8") else RAISES
        if not can(question, value):
            return RAISES
        return EITHER if type_ is GMSprite else OK  # which not all items can be compared with

    return kind


def coercion(type_):
    # Where operands are taken uncoerced, not even two of the same type are coerced.
    def kind(value):
        is_same = value.own_type == type_.__name__.split(".")[-1]
        return OK if is_same and type_ is not Floatlist8 else RAISES

    return kind


def concatenation(type_, side):
    if type_ is InstanceList and side == "right":
        return lambda value: OK if value.list else RAISES
    # Two sequences are added where the left one can't be concatenated.
    return always(EITHER if type_ in (InstanceList, Floatlist8) else RAISES)


def kind_for(type_, operation, side):
    """The kind of a value on this side of an operation, a good object of the type on the other."""
    if operation in OF_NO_TYPE:
        return answers
    if operation is operator.contains:
        return membership(type_, side)
    if operation is operator.concat:
        return concatenation(type_, side)
    if type_ is GMVar:
        return forwarded(operation, side)
    if operation is coerce:
        return coercion(type_)
    if operation in RICH or operation is cmp:
        return comparison(type_, operation, side)
    if type_ is Floatlist8:
        return lambda value: with_float_list(operation, side, value)
    if type_ is InstanceList:
        return with_list(operation, side)
    return lambda value: with_plain(type_, operation, value)


def held_kind(operation, side):
    """The kind of a held value, whose variable is on this side of an operation with a number."""
    if operation in OF_NO_TYPE + [operator.contains, operator.concat]:
        return always(RAISES)
    return forwarded(operation, side)


# ---- built-in functions

# What works with a good object of any type.
ANY_TYPE = "bool copy deepcopy die dir getsizeof reduce_ex repr str unicode".split()
# What works with one of some types, and all else with none. Good rooms and lists hold an instance
# that can't be pickled, and the older protocols know no object without a method for it.
PICKLED = (GMSprite, BackgroundData, Tile, Floatlist8)
SOME_TYPES = {
    "abs": (GMVar,),
    "neg": (GMVar,),
    "pos": (GMVar,),
    "long": (GMVar,),
    "complex": HAVE_FLOAT,
    "float": HAVE_FLOAT,
    "int": HAVE_FLOAT + (Beancounter,),
    "hash": (GMVar, Beancounter),
    "in a set": (GMVar, Beancounter),
    "len": (GMVar, Floatlist8, InstanceList),
    "sorted": (GMVar, BackgroundData, Tile, GMRoom, Floatlist8, Beancounter, InstanceList),
    "pickle 0": PICKLED,
    "pickle 1": PICKLED,
    "pickle 2": PICKLED + (GMVar, Beancounter),
}
for _label in ("in", "iter", "list", "reversed"):
    SOME_TYPES[_label] = (Floatlist8, InstanceList)


def as_object(type_, label):
    """What comes of a built-in function with a good object of a type."""
    if label in SOME_TYPES:
        return OK if type_ in SOME_TYPES[label] else RAISES
    return OK if label in ANY_TYPE else RAISES


# What a variable answers from its value: label -> what the interpreter is asked.
OF_THE_VALUE = {
    name: name for name in "str hash int float bool len call neg pos abs sorted".split()
}
OF_THE_VALUE.update({"unicode": "str", "in a set": "hash", "complex": "float"})
# What looks for attributes, which are the value's.
BY_ATTRIBUTES = ["pickle 0", "pickle 1", "pickle 2"] + "copy deepcopy reduce_ex vars long".split()


def held_as_object(label):
    """The kind of a held value, for a built-in function with its variable."""
    if label in BY_ATTRIBUTES:
        return always(EITHER)
    if label not in OF_THE_VALUE:
        works = label in ("die", "dir", "getsizeof", "repr")
        return always(OK if works else RAISES)
    return done_with_value(OF_THE_VALUE[label])


def done_with_value(question):
    def kind(value):
        inner = innermost(value)
        if question in ("int", "float"):
            return converted(question)(inner)
        if not inner.own_type:
            return OK if can(question, inner) else RAISES
        if in_itself(inner):
            return OK if question == "len" else RAISES
        if question == "sorted":
            return compared(inner)
        if question == "str" and inner.own_type == "GMSprite":
            return SILENT
        if question == "hash":
            return OK if inner.own_type == "Beancounter" else RAISES
        if question == "len" and inner.own_type in RESOURCES + ("RoomTileData", "Beancounter"):
            return OK if value.held else RAISES  # what has no length has its variable's
        return OK if question in ("str", "bool", "len", "repr") else RAISES

    return kind


# ---- slots

UNARY = {
    "__int__": "int",
    "__float__": "float",
    "__str__": "str",
    "__abs__": "abs",
    "__neg__": "neg",
    "__pos__": "pos",
    "__nonzero__": "bool",
    "__len__": "len",
    "__hash__": "hash",
}


def unary_slot(attribute):
    """The kind of the object itself."""
    of_function = done_with_value(UNARY[attribute])
    if attribute != "__str__":
        return of_function
    # The slot passes on what is no text, too.
    return lambda value: OK if value.hostile == "lie" else of_function(value)


BINARY = {"__coerce__": coerce, "__cmp__": cmp}
for _name in "add sub mul div mod and or xor iadd isub eq ne lt le gt ge".split():
    _operation = getattr(operator, _name + "_" * (_name in ("and", "or")))
    BINARY["__%s__" % _name] = _operation
    BINARY["__r%s__" % _name] = _operation


# Types that share a slot for comparing, which the interpreter calls only with what has the same.
COMPARED_AS_INT = ("BackgroundData", "RoomTileData", "GMRoom")


def slot_kinds(type_, attribute):
    """Of both arguments of a binary slot: a new object of the type with 3, and a value with a good
    object."""
    operation = BINARY[attribute]
    side = "left" if attribute.startswith("__r") else "right"
    name = type_.__name__.split(".")[-1]
    if operation is cmp:
        same = COMPARED_AS_INT if name in COMPARED_AS_INT else (name,)

        def other(value):
            if value.own_type not in same:
                return RAISES
            return forwarded(cmp, "right")(value) if type_ is GMVar else OK

        return always(RAISES), other
    if type_ is GMVar:
        turned = "right" if side == "left" else "left"
        return by_slot(operation, turned), by_slot(operation, side)
    if type_ is Floatlist8:
        return always(OK), as_float
    return as_wide, as_wide
