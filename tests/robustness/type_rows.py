"""The types: construction, members, methods, slots, pickling, garbage collection."""

import copy
import ctypes
import functools
import operator
import pickle
import sys
import weakref

import larkspur
from larkspur import BackgroundData, Beancounter, Floatlist8, GMRoom, GMSprite, GMVar, InstanceList
from larkspur import RoomTileData as Tile
from support import records, rooms, variables
from support.host import Instance

from robustness import function_rows, hostile, operations, scene, values
from robustness.table import (
    ANY,
    EITHER,
    OK,
    RAISES,
    SILENT,
    Row,
    ValuesRow,
    always,
    anything,
    number,
)

MEMBER_INT = number(values.MEMBER_INT)
any_outcome = always(ANY)

# A number like any other.
TWO = values.Value("2", lambda: 2)

TYPES = [GMVar, GMSprite, BackgroundData, Tile, InstanceList, GMRoom, Floatlist8, Beancounter]


def name_of(type_):
    return type_.__name__.split(".")[-1]


# ---- good objects of each type


def room():
    made = function_rows.ROOM()
    scene.current.resources["rooms"][:] = [made]
    return made


def sprite():
    made = GMSprite()
    made.name, made.subimages = "name", [scene.tiny_surface()]
    scene.current.resources["sprites"][:] = [made]
    return made


def background():
    made = rooms.make_background(scene.tiny_surface())
    scene.current.resources["backgrounds"][:] = [made]
    return made


def instance_list():
    made = InstanceList()
    list.extend(made, [scene.current.instance] * 3)
    return made


def variable():
    made = GMVar(5)
    made[2, 1] = "corner"
    return made


GOOD = {
    GMVar: variable,
    GMSprite: sprite,
    BackgroundData: background,
    Tile: rooms.make_tile,
    InstanceList: instance_list,
    GMRoom: room,
    Floatlist8: lambda: rooms.float_list([1.5, 2, 3]),
    Beancounter: Beancounter,
}


def lending(make):
    """Makes what can lose references that it does not have."""

    def made():
        thing = make()
        values.lend(thing)
        return thing

    return made


LENT = [
    values.Value(value.name, lending(value.make), value.surface, value.hostile, **value.facts)
    for value in values.ALL
]


def use(thing, *_):
    """What a program does with an object that has been through something."""
    if type(thing) is GMVar and variables.native(thing).items:
        values.lend(ctypes.cast(variables.native(thing).items[0], ctypes.py_object).value)
    actions = [
        lambda: repr(thing),
        lambda: str(thing),
        lambda: int(thing),
        lambda: float(thing),
        lambda: hash(thing),
        lambda: len(thing),
        lambda: thing == 1,
        lambda: thing[0],
        lambda: thing[1, 1],
        lambda: thing.__reduce__(),
        lambda: list(thing),
    ]
    if type(thing) is GMRoom:
        actions.append(lambda: larkspur.Room_Draw(thing, scene.current.screen))
    if type(thing) is Tile:
        flat = rooms.make_room(tiles=[thing])
        actions.append(lambda: larkspur.Room_Draw(flat, scene.current.screen))
    if type(thing) in (GMSprite, BackgroundData, GMRoom, GMVar):
        actions.append(lambda: records.traverse(thing, lambda visited: 0))
    for action in actions:
        scene.quietly(action)


# ---- what all types have


def of_same_type(type_, kind=anything):
    """The first argument of a method: an object of its type, of which it says what comes."""
    return lambda value: kind(value) if value.own_type == name_of(type_) else RAISES


def common_rows():
    for type_ in TYPES:
        name, good = name_of(type_), GOOD[type_]
        if type_ is GMVar:
            yield Row("GMVar()", GMVar, [lambda: 5], [anything], covers=["GMVar.__init__"])
            yield Row(
                "GMVar.__init__", GMVar.__init__, [good, lambda: 5], [of_same_type(GMVar), anything]
            )
        elif type_ is InstanceList:
            yield Row("InstanceList()", InstanceList, [list], [items], counts=[0, 1])
        else:
            # Arguments are passed over, and so are keywords.
            yield ValuesRow(name + "()", type_, [lambda: 1], [anything])
        yield ValuesRow(
            name + ".__new__",
            type_.__new__,
            [lambda type_=type_: type_],
            [lambda value, name=name: OK if value.name == name else RAISES],
        )
        yield ValuesRow(
            "subclass of " + name,
            lambda base: type("Subclass", (base,), {}),
            [lambda type_=type_: type_],
            [None],
            covers=[name],
            good=RAISES,
        )
        yield ValuesRow(
            name + " as an object",
            None,
            extra=[
                (label, [good], operations.as_object(type_, label), function)
                for label, function in sorted(as_objects().items())
            ],
        )
        for attribute in ("x", "__class__", "__dict__", "nothing"):
            # No attribute can be set that is no member.
            number_member = MEMBER_INT if (type_, attribute) == (Tile, "x") else always(RAISES)
            yield ValuesRow(
                "%s.%s of any value" % (name, attribute),
                setattr,
                [good, lambda attribute=attribute: attribute, lambda: 1],
                [None, None, number_member],
                good=OK if (type_, attribute) == (Tile, "x") else RAISES,
                then=use,
            )
        yield ValuesRow(
            "attribute of %s by any name" % name,
            getattr,
            [good, lambda: "__doc__"],
            [None, lambda value, type_=type_: OK if value.text in vars(type_) else RAISES],
        )
        if records.type_record(type_).traverse and type_ is not InstanceList:
            yield ValuesRow(
                name + " is cleared",
                records.clear,
                [good],
                [None],
                covers=[name + ".tp_clear"],
                then=use,
            )
            yield ValuesRow(
                name + " is traversed",
                lambda thing: records.traverse(thing, lambda visited: 0),
                [good],
                [None],
                covers=[name + ".tp_traverse"],
            )


def as_objects():
    """What can be done with any object."""
    actions = {
        "pickle %d" % protocol: functools.partial(_pickled, protocol=protocol)
        for protocol in range(3)
    }
    actions.update(
        {
            "copy": copy.copy,
            "deepcopy": copy.deepcopy,
            "weakref": weakref.ref,
            "repr": repr,
            "str": str,
            "unicode": unicode,
            "hash": hash,
            "int": int,
            "long": long,
            "float": float,
            "complex": complex,
            "oct": oct,
            "hex": hex,
            "index": operator.index,
            "bool": bool,
            "len": len,
            "iter": iter,
            "list": list,
            "reversed": reversed,
            "call": lambda thing: thing(),
            "dir": dir,
            "vars": vars,
            "getsizeof": sys.getsizeof,
            "neg": operator.neg,
            "pos": operator.pos,
            "abs": operator.abs,
            "invert": operator.invert,
            "sorted": lambda thing: sorted([thing, 3, None, thing, 2]),
            "in a set": lambda thing: set([thing, thing]),
            "in": lambda thing: 1 in thing,
            "delete class": lambda thing: delattr(thing, "__class__"),
            "buffer": buffer,
            "reduce_ex": lambda thing: thing.__reduce_ex__(2),
            "die": lambda thing: None,
        }
    )
    return actions


def _pickled(thing, protocol):
    return pickle.loads(pickle.dumps(thing, protocol))


def dying_row(name, good, dying, put, changes):
    """A row for changes of an object, made by `good`, that holds one that does a deed when it dies.

    dying    makes that one, of the deed
    put      puts it into the object
    changes  of each a label, a function of the object, and what comes of it if not success
    """

    def case(deed, label, change, expected=OK):
        act = functools.partial(_put_and_change, dying, put, change)
        return "%s, %s" % (label, deed), [good, lambda: deed], expected, act

    cases = [case(deed, *change) for deed in hostile.DEEDS for change in changes]
    return ValuesRow(name, None, extra=cases)


def _put_and_change(dying, put, change, thing, deed):
    held = dying(deed)  # no argument of the call, which would keep it alive until the end
    is_alive = weakref.ref(held)
    put(thing, held)
    del held
    change(thing)
    if is_alive():
        raise SystemError("what should have died is alive")  # which no case expects
    use(thing)


def converted_instance(absent):
    """What converts to an instance: one of a registered type, or what has an int, which may be no
    registered id. Of an int conversion that fails without an exception that stays."""

    def kind(value):
        inner = operations.innermost(value)
        if inner.instance or inner.name in ("Plain", "7"):
            return OK
        if inner.acts:
            return EITHER if absent == RAISES else ANY  # the registry can be another one then
        come = operations.as_int(inner)
        return absent if come == OK else come

    return kind


# ---- slots and methods by their descriptors

# Deleting an element of a Floatlist8 fails through the float conversion of a value that is missing.
NULL_ARGUMENT = "SystemError"


def index_of_eight(inside, outside):
    def kind(value):
        if value.own_type or not values.can("index", value):
            return RAISES
        return inside if values.can("index of eight", value) else outside

    return kind


def not_silent(kind):
    """Of a slot that answers with a number: there the interpreter takes a failure without an
    exception for a success."""
    return lambda value: OK if kind(value) == SILENT else kind(value)


# Slots with keys: type and attribute -> what the good call comes to, its further arguments, and
# kinds of all arguments.
KEYED = {
    (GMVar, "__getattribute__"): (
        OK,
        [lambda: "real"],
        [operations.done_with_value("get"), always(RAISES)],
    ),
    (GMVar, "__delattr__"): (RAISES, [lambda: "real"], [always(RAISES)] * 2),
    (GMVar, "__setattr__"): (
        RAISES,
        [lambda: "x", lambda: 2],
        [operations.done_with_value("set"), always(RAISES), always(RAISES)],
    ),
    (GMVar, "__getitem__"): (OK, [lambda: 1], [anything, any_outcome]),
    (GMVar, "__delitem__"): (RAISES, [lambda: 1], [always(RAISES)] * 2),
    (GMVar, "__setitem__"): (OK, [lambda: 1, lambda: 2], [anything, always(EITHER), anything]),
    (Floatlist8, "__getitem__"): (OK, [lambda: 1], [anything, index_of_eight(OK, SILENT)]),
    (Floatlist8, "__delitem__"): (
        NULL_ARGUMENT,
        [lambda: 1],
        [always(NULL_ARGUMENT), index_of_eight(NULL_ARGUMENT, OK)],
    ),
    (Floatlist8, "__setitem__"): (
        OK,
        [lambda: 1, lambda: 2],
        [anything, index_of_eight(OK, OK), not_silent(operations.as_float)],
    ),
    (InstanceList, "__delitem__"): (OK, [lambda: 1], [always(RAISES), always(EITHER)]),
    (InstanceList, "__setitem__"): (
        OK,
        [lambda: 1, lambda: scene.current.instance],
        [anything, always(EITHER), not_silent(converted_instance(RAISES))],
    ),
}


def descriptor_rows():
    for type_ in TYPES:
        good, name = GOOD[type_], name_of(type_)
        for attribute, descriptor in sorted(type_.__dict__.items()):
            row_name = "%s.%s" % (name, attribute)
            if attribute in operations.UNARY:
                kind = operations.unary_slot(attribute)
                yield Row(row_name, descriptor, [good], [of_same_type(type_, kind)])
            elif attribute in operations.BINARY:
                of_self, of_other = operations.slot_kinds(type_, attribute)
                yield Row(
                    row_name,
                    descriptor,
                    [lending(good), lambda: 3],
                    [of_same_type(type_, of_self), of_other],
                    good=RAISES if attribute == "__cmp__" else OK,
                    values=LENT,
                    then=use,
                )
            elif (type_, attribute) in KEYED:
                come, further, kinds = KEYED[type_, attribute]
                kinds = [of_same_type(type_, kinds[0])] + kinds[1:]
                yield Row(row_name, descriptor, [good] + further, kinds, good=come, then=use)
            elif attribute == "__call__":
                yield ValuesRow(
                    row_name,
                    descriptor,
                    [good, lambda: 1],
                    [
                        of_same_type(type_, operations.done_with_value("call with 1")),
                        always(RAISES),
                    ],
                    good=RAISES,
                )


# ---- members


def member_rows():
    for record in records.ALL:
        good = GOOD[record.type]
        for member in record.members:
            name = "%s.%s" % (name_of(record.type), member.name)
            kind = {"int": MEMBER_INT, "float": number("f")}.get(member.kind, anything)
            may_be_deleted = member.kind in ("lenient", "strict")
            extra = [
                ("get", [good, lambda member=member: member.name], OK, getattr),
                (
                    "delete",
                    [good, lambda member=member: member.name],
                    OK if may_be_deleted else RAISES,
                    delattr,
                ),
                (
                    "delete twice",
                    [good, lambda member=member: member.name],
                    OK if member.kind == "lenient" else RAISES,
                    _delete_twice,
                ),
            ]
            if may_be_deleted:
                extra += [
                    (
                        "replace what does this when it dies: " + deed,
                        [good, lambda member=member: member.name, lambda deed=deed: deed],
                        OK,
                        _replace,
                    )
                    for deed in hostile.DEEDS
                ]
            yield Row(
                name,
                setattr,
                [good, lambda member=member: member.name, lambda: 1],
                [None, None, kind],
                then=use,
                extra=extra,
            )


def _delete_twice(thing, name):
    delattr(thing, name)
    delattr(thing, name)


def _replace(thing, name, deed):
    _put_and_change(
        hostile.Dying,
        lambda thing, dying: setattr(thing, name, dying),
        lambda thing: setattr(thing, name, 1),
        thing,
        deed,
    )


# ---- pickled states


def state_rows():
    for record in records.ALL:
        type_, good = record.type, GOOD[record.type]
        name = name_of(type_)
        state = functools.partial(_state_of, good)
        yield Row(
            name + ".__setstate__",
            type_.__dict__["__setstate__"],
            [good, state],
            [of_same_type(type_), STATES[type_]],
            counts=None,
            then=use,
        )
        length = state_length(record)
        for i in range(length):
            yield ValuesRow(
                "%s.__setstate__, item %d" % (name, i),
                functools.partial(_set_with_item, i),
                [good, state, lambda: 1],
                [None, None, item_of_state(type_, i)],
                then=use,
                disturbs=True,
            )
        yield Row(
            name + ".__setstate__ of other lengths",
            type_.__dict__["__setstate__"],
            [good, state],
            [None, None],
            counts=None,
            extra=[
                (
                    "%d items" % n,
                    [good, functools.partial(_cut_state, good, n)],
                    # A room takes the pairs that there are, but nothing else.
                    OK if (n < length) == (type_ is GMRoom) else RAISES,
                )
                for n in list(range(length)) + [length + 1, length + 50]
            ],
        )
        yield Row(
            name + ".__reduce__",
            type_.__dict__["__reduce__"],
            [good],
            [of_same_type(type_)],
            counts=None,
        )
    yield Row(
        "InstanceList.__setstate__",
        InstanceList.__dict__["__setstate__"],
        [instance_list, lambda: (scene.current.instance,)],
        [of_same_type(InstanceList), anything],
        counts=None,
        then=use,
    )
    yield Row(
        "InstanceList.__reduce__",
        InstanceList.__dict__["__reduce__"],
        [instance_list],
        [of_same_type(InstanceList)],
        counts=None,
    )


def state_length(record):
    return {"GMSprite": 17, "BackgroundData": 2, "Floatlist8": 8}.get(
        name_of(record.type), len(record.members)
    )


def state_that(question):
    """A tuple or list with which the interpreter can do this; ours is empty."""
    return lambda value: OK if not value.own_type and values.can(question, value) else RAISES


def items(value):
    """What a list can be made of, or extended by."""
    if value.own_type:
        return OK if value.own_type in ("InstanceList", "Floatlist8") else RAISES
    return OK if values.can("items", value) else RAISES


def state_of_pairs(value):
    return OK if value.own_type == "InstanceList" else state_that("pairs")(value)


def state_of_name_and_int(value):
    """Its first item is asked for as of any sequence."""
    if operations.fails(value):
        return RAISES
    return (
        EITHER if value.acts and state_that("item 1")(value) == OK else state_that("item 1")(value)
    )


# Type -> which values are a state of it.
STATES = {
    GMRoom: state_of_pairs,
    Tile: state_that("ten ints"),
    GMSprite: state_that("17 ints"),
    BackgroundData: state_of_name_and_int,
    Floatlist8: state_that("item 7"),
}


def item_of_state(type_, i):
    """The kind of an item: most are ints, and names can be hashed. What a value does meanwhile can
    take away the other items, or the host."""

    def kind(value):
        if value.acts:
            return EITHER
        if (type_, i) in ((GMSprite, 15), (BackgroundData, 0)):
            return operations.done_with_value("hash")(value)
        return OK if type_ is Floatlist8 else MEMBER_INT(value)

    return anything if type_ is GMRoom else kind


def _state_of(good):
    return good().__reduce__()[2]


def _cut_state(good, length):
    return (_state_of(good) + (1,) * 100)[:length]


def _set_with_item(i, thing, state, item):
    """Sets a state of which an item was replaced; of a pair of name and value, the value."""
    items = list(state)
    items[i] = (items[i][0], item) if isinstance(items[i], tuple) else item
    scene.current.arguments.append(items)  # for hostile items to change meanwhile
    type(thing).__setstate__(thing, items)


# ---- operators


def operator_rows():
    """Both orders of the operands, for operands of every type."""
    for type_ in TYPES:
        name, good = name_of(type_), GOOD[type_]
        for operation in operations.OPERATORS:
            kind = functools.partial(operations.kind_for, type_, operation)
            for side, base, kinds in (
                ("left", [lending(good), lambda: 3], [None, kind("right")]),
                ("right", [lambda: 3, lending(good)], [kind("left"), None]),
            ):
                yield ValuesRow(
                    "%s(), %s on the %s" % (operation.__name__, name, side),
                    operation,
                    base,
                    kinds,
                    good=functools.partial(kinds[0] or kinds[1], TWO),
                    values=LENT,
                )


# What good calls come to that do not succeed: the value is an int, and a slice is no index.
GOOD_OF_VARIABLES = {
    "GMVar[i:j] = x": SILENT,
    "attribute of a GMVar's value is set": RAISES,
    "attribute of a GMVar's value is deleted": RAISES,
}


def variable_rows():
    """What a variable holds decides what can be done with it."""
    held_values = [values.held(value) for value in values.ALL]
    for label, action in sorted(as_objects().items()):
        yield ValuesRow(
            label + " of a GMVar",
            action,
            [variable],
            [operations.held_as_object(label)],
            good=operations.as_object(GMVar, label),
            values=held_values,
        )
    for operation in operations.OPERATORS:
        for side, base, position in (
            ("left", [variable, lambda: 3], 0),
            ("right", [lambda: 3, variable], 1),
        ):
            kinds = [None, None]
            kinds[position] = operations.held_kind(operation, side)
            yield ValuesRow(
                "%s() of a held value on the %s" % (operation.__name__, side),
                operation,
                base,
                kinds,
                good=functools.partial(kinds[position], values.held(TWO)),
                values=held_values,
            )
    for label, function, base, kinds in (
        (
            "GMVar[i, j]",
            _get_pair,
            [variable, lambda: 1, lambda: 1],
            [None, always(EITHER), always(EITHER)],
        ),
        (
            "GMVar[i, j] = x",
            _set_pair,
            [variable, lambda: 1, lambda: 1, lambda: 1],
            [None, any_outcome, any_outcome, anything],
        ),
        (
            "GMVar[i:j]",
            operator.getslice,
            [variable, lambda: 1, lambda: 2],
            [None, always(EITHER), always(EITHER)],
        ),
        (
            "GMVar[i:j] = x",
            operator.setslice,
            [variable, lambda: 1, lambda: 2, lambda: 1],
            [None, always((RAISES, SILENT)), always((RAISES, SILENT)), always(SILENT)],
        ),
        (
            "attribute of a GMVar's value",
            getattr,
            [variable, lambda: "real"],
            [operations.done_with_value("get"), None],
        ),
        (
            "attribute of a GMVar's value is set",
            setattr,
            [variable, lambda: "x", lambda: 1],
            [always(EITHER), None, None],
        ),
        (
            "attribute of a GMVar's value is deleted",
            delattr,
            [variable, lambda: "x"],
            [always(EITHER), None],
        ),
    ):
        yield ValuesRow(
            label,
            function,
            base,
            kinds,
            good=GOOD_OF_VARIABLES.get(label, OK),
            values=held_values if "value" in label else values.ALL,
            then=use,
        )
    yield dying_row(
        "elements of a GMVar that do things when they die",
        variable,
        hostile.Dying,
        lambda thing, dying: operator.setitem(thing, 0, dying),
        [
            ("item", lambda thing: operator.setitem(thing, 0, 1)),
            ("cell", lambda thing: operator.setitem(thing, (0, 0), 1)),
            ("clear", records.clear),
            ("iadd", lambda thing: operator.iadd(thing, 1), RAISES),
        ],
    )


def _get_pair(thing, i, j):
    return thing[i, j]


def _set_pair(thing, i, j, value):
    thing[i, j] = value


# ---- lists of instances


def removed_instance(value):
    """What is not in the list fails without an exception."""
    inner = operations.innermost(value)
    if inner.name in ("Plain", "other Instance"):
        return SILENT
    return converted_instance(RAISES)(value)


def instance_list_rows():
    new = lambda: scene.current.instance  # noqa: E731
    for name, kind in (("append", converted_instance(SILENT)), ("remove", removed_instance)):
        yield Row(
            "InstanceList." + name,
            InstanceList.__dict__[name],
            [instance_list, new],
            # Nothing can be removed from an empty list.
            [of_same_type(InstanceList, always(SILENT if name == "remove" else OK)), kind],
            then=use,
        )
    yield Row(
        "InstanceList.insert",
        InstanceList.__dict__["insert"],
        [instance_list, lambda: 1, new],
        [of_same_type(InstanceList), number("i"), converted_instance(RAISES)],
        values=LENT,
        then=use,
    )
    yield Row(
        "InstanceList[i:j] = x",
        operator.setslice,
        [instance_list, lambda: 0, lambda: 1, list],
        [None, always(EITHER), always(EITHER), items],
        counts=None,
        then=use,
    )
    yield Row(
        "InstanceList[slice] = x",
        operator.setitem,
        [instance_list, lambda: slice(0, 3, 2), lambda: [1, 2]],
        # An index past the end fails without an exception.
        [None, any_outcome, always(EITHER)],
        counts=None,
        then=use,
        extra=[
            (
                "%s that does this: %s" % (bound, deed),
                [instance_list, functools.partial(_slice_with, bound, deed), lambda: [1, 2]],
                EITHER,  # by what is in the list then
            )
            for bound in ("start", "stop", "step")
            for deed in hostile.DEEDS
        ],
    )
    for name, good, kind in (
        ("extend", RAISES, items),
        ("pop", OK, always(EITHER)),
        ("index", RAISES, any_outcome),
        ("count", OK, operations.compared),
        ("__iadd__", RAISES, items),
        ("__contains__", OK, not_silent(operations.compared)),
        ("__init__", RAISES, items),
        ("__add__", RAISES, lambda value: OK if value.list else RAISES),
    ):
        yield Row(
            "InstanceList.%s, the list's own" % name,
            getattr(list, name),
            [instance_list, lambda: 0],
            [None, kind],
            counts=None,
            good=good,
            then=use,
        )
    yield dying_row(
        "items of an InstanceList that do things when they die",
        instance_list,
        _DyingInstance,
        lambda things, dying: list.insert(things, 0, dying),
        [
            ("assign", lambda things: operator.setitem(things, 0, scene.current.instance)),
            ("assign an id", lambda things: operator.setitem(things, 0, 7)),
            ("delete", lambda things: operator.delitem(things, 0)),
            ("remove", lambda things: things.remove(things[0]), RAISES),
            ("slice", lambda things: operator.setslice(things, 0, 9, [])),
            ("state", lambda things: things.__setstate__(())),
        ],
    )


def _slice_with(bound, deed):
    bounds = {"start": 0, "stop": 3, "step": 2}
    bounds[bound] = hostile.make("object", deed)
    return slice(bounds["start"], bounds["stop"], bounds["step"])


class _DyingInstance(Instance):
    def __init__(self, deed):
        Instance.__init__(self, deed=deed)

    def __del__(self):
        hostile.do(self.deed, lambda: None)


# ---- methods of rooms

FORWARDED = {
    "Compile": 0,
    "Create": 0,
    "InitializeBackgrounds": 0,
    "AddInstance": 1,
    "AddDrawnInstance": 1,
    "ResortDrawnObjects": 0,
    "SetBackgroundIndex": 2,
    "StepAlarms": 0,
    "MoveInstances": 0,
    "HandleCollisions": 0,
    "StepEvents": 0,
    "DrawBackgrounds": 3,
    "RenderBackground": 0,
    "Leave": 0,
    "MouseButtonDown": 1,
    "MouseButtonUp": 1,
    "HandleKeyrelease": 1,
    "HandleKeypress": 1,
}
PASSED_OVER = ("Compile", "Create", "InitializeBackgrounds", "ResortDrawnObjects")


def forwarding_rows():
    for name, count in sorted(FORWARDED.items()):
        yield Row(
            "GMRoom." + name,
            GMRoom.__dict__[name],
            [room] + [lambda: 1] * count,
            [of_same_type(GMRoom)] + [anything] * count,
            counts=None if name in PASSED_OVER or name.startswith("Add") else [1 + count],
        )


def rows_of_types():
    for rows in (
        common_rows,
        descriptor_rows,
        member_rows,
        state_rows,
        operator_rows,
        variable_rows,
        instance_list_rows,
        forwarding_rows,
    ):
        for row in rows():
            yield row
