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
    Row,
    ValuesRow,
    always,
    anything,
    number,
)

MEMBER_INT = number(values.MEMBER_INT)
any_outcome = always(ANY)

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


def of_same_type(type_, good=EITHER):
    """The first argument of a method: an object of its type."""

    def kind(value):
        return good if value.own_type == name_of(type_) else RAISES

    return kind


def common_rows():
    for type_ in TYPES:
        name, good = name_of(type_), GOOD[type_]
        if type_ is GMVar:
            yield Row("GMVar()", GMVar, [lambda: 5], [anything], covers=["GMVar.__init__"])
            yield Row(
                "GMVar.__init__", GMVar.__init__, [good, lambda: 5], [nothing_else(GMVar), anything]
            )
        elif type_ is InstanceList:
            yield Row("InstanceList()", InstanceList, [list], [any_outcome], counts=[0, 1])
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


def nothing_else(type_):
    return of_same_type(type_, ANY)


def dying_row(name, good, dying, put, changes):
    """A row for changes of an object, made by `good`, that holds one that does a deed when it dies.

    dying    makes that one, of the deed
    put      puts it into the object
    changes  pairs of a label and a function of the object
    """

    def case(label, deed, change):
        act = functools.partial(_put_and_change, dying, put, change)
        return "%s, %s" % (label, deed), [good, lambda: deed], ANY, act

    cases = [case(label, deed, change) for deed in hostile.DEEDS for label, change in changes]
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


# ---- slots and methods by their descriptors

UNARY = "__int__ __float__ __str__ __abs__ __neg__ __pos__ __nonzero__ __len__ __hash__".split()
BINARY = "add radd sub rsub mul rmul div rdiv mod rmod and rand or ror xor rxor iadd isub".split()
BINARY = ["__%s__" % name for name in BINARY] + ["__coerce__", "__cmp__"]
BINARY += ["__%s__" % name for name in "eq ne lt le gt ge".split()]


# Deleting an element of a Floatlist8 fails through the float conversion of a value that is missing.
NULL_ARGUMENT = "SystemError"


def deletes(kind):
    def deleted(value):
        outcome = kind(value)
        return outcome + (NULL_ARGUMENT,) if outcome == ANY else outcome

    return deleted


def descriptor_rows():
    for type_ in TYPES:
        good, name = GOOD[type_], name_of(type_)
        for attribute, descriptor in sorted(type_.__dict__.items()):
            row_name = "%s.%s" % (name, attribute)
            if attribute in UNARY:
                yield Row(row_name, descriptor, [good], [nothing_else(type_)], good=ANY)
            elif attribute in BINARY:
                yield Row(
                    row_name,
                    descriptor,
                    [lending(good), lambda: 3],
                    [nothing_else(type_), any_outcome],
                    good=ANY,
                    values=LENT,
                    then=use,
                )
            elif attribute in ("__getitem__", "__delitem__", "__getattribute__", "__delattr__"):
                key = (lambda: 1) if "item" in attribute else (lambda: "real")
                yield Row(
                    row_name,
                    descriptor,
                    [good, key],
                    [deletes(nothing_else(type_)), deletes(any_outcome)],
                    good=ANY + (NULL_ARGUMENT,),
                    then=use,
                )
            elif attribute in ("__setitem__", "__setattr__"):
                key = (lambda: 1) if attribute == "__setitem__" else (lambda: "x")
                element = (lambda: scene.current.instance) if type_ is InstanceList else (lambda: 2)
                yield Row(
                    row_name,
                    descriptor,
                    [good, key, element],
                    [nothing_else(type_), any_outcome, any_outcome],
                    good=ANY,
                    then=use,
                )
            elif attribute == "__call__":
                yield ValuesRow(
                    row_name,
                    descriptor,
                    [good, lambda: 1],
                    [nothing_else(type_), any_outcome],
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
                ("delete twice", [good, lambda member=member: member.name], ANY, _delete_twice),
            ]
            if may_be_deleted:
                extra += [
                    (
                        "replace what does this when it dies: " + deed,
                        [good, lambda member=member: member.name, lambda deed=deed: deed],
                        ANY,
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
            [nothing_else(type_), any_outcome],
            counts=None,
            then=use,
        )
        length = len(state_length(record))
        for i in range(length):
            yield ValuesRow(
                "%s.__setstate__, item %d" % (name, i),
                functools.partial(_set_with_item, i),
                [good, state, lambda: 1],
                [None, None, any_outcome],
                good=ANY,
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
                ("%d items" % n, [good, functools.partial(_cut_state, good, n)], ANY)
                for n in list(range(length)) + [length + 1, length + 50]
            ],
        )
        yield Row(
            name + ".__reduce__",
            type_.__dict__["__reduce__"],
            [good],
            [nothing_else(type_)],
            counts=None,
        )
    yield Row(
        "InstanceList.__setstate__",
        InstanceList.__dict__["__setstate__"],
        [instance_list, lambda: (scene.current.instance,)],
        [nothing_else(InstanceList), anything],
        counts=None,
        then=use,
    )
    yield Row(
        "InstanceList.__reduce__",
        InstanceList.__dict__["__reduce__"],
        [instance_list],
        [nothing_else(InstanceList)],
        counts=None,
    )


def state_length(record):
    return range(
        {"GMSprite": 17, "BackgroundData": 2, "Floatlist8": 8}.get(
            name_of(record.type), len(record.members)
        )
    )


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
                    good=ANY,
                    values=LENT,
                )


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
                good=ANY,
                values=held_values,
            )
    for label, function, base, kinds in (
        (
            "GMVar[i, j]",
            _get_pair,
            [variable, lambda: 1, lambda: 1],
            [None, any_outcome, any_outcome],
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
            [None, any_outcome, any_outcome],
        ),
        (
            "GMVar[i:j] = x",
            operator.setslice,
            [variable, lambda: 1, lambda: 2, lambda: 1],
            [None, any_outcome, any_outcome, any_outcome],
        ),
        ("attribute of a GMVar's value", getattr, [variable, lambda: "real"], [any_outcome, None]),
        (
            "attribute of a GMVar's value is set",
            setattr,
            [variable, lambda: "x", lambda: 1],
            [any_outcome, None, None],
        ),
        (
            "attribute of a GMVar's value is deleted",
            delattr,
            [variable, lambda: "x"],
            [any_outcome, None],
        ),
    ):
        yield ValuesRow(
            label,
            function,
            base,
            kinds,
            good=ANY,
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
            ("iadd", lambda thing: operator.iadd(thing, 1)),
        ],
    )


def _get_pair(thing, i, j):
    return thing[i, j]


def _set_pair(thing, i, j, value):
    thing[i, j] = value


# ---- lists of instances


def item_of_list(value):
    """What an InstanceList takes: an instance, or what converts to the id of one."""
    return OK if value.instance else ANY


def instance_list_rows():
    new = lambda: scene.current.instance  # noqa: E731
    for name, kind in (("append", item_of_list), ("remove", any_outcome)):
        yield Row(
            "InstanceList." + name,
            InstanceList.__dict__[name],
            [instance_list, new],
            [nothing_else(InstanceList), kind],
            then=use,
        )
    yield Row(
        "InstanceList.insert",
        InstanceList.__dict__["insert"],
        [instance_list, lambda: 1, new],
        [nothing_else(InstanceList), any_outcome, item_of_list],
        values=LENT,
        then=use,
    )
    yield Row(
        "InstanceList[i:j] = x",
        operator.setslice,
        [instance_list, lambda: 0, lambda: 1, list],
        [None, any_outcome, any_outcome, any_outcome],
        counts=None,
        then=use,
    )
    yield Row(
        "InstanceList[slice] = x",
        operator.setitem,
        [instance_list, lambda: slice(0, 3, 2), lambda: [1, 2]],
        [None, any_outcome, any_outcome],
        counts=None,
        then=use,
        extra=[
            (
                "%s that does this: %s" % (bound, deed),
                [instance_list, functools.partial(_slice_with, bound, deed), lambda: [1, 2]],
                ANY,
            )
            for bound in ("start", "stop", "step")
            for deed in hostile.DEEDS
        ],
    )
    for name in (
        "extend",
        "pop",
        "index",
        "count",
        "__iadd__",
        "__contains__",
        "__init__",
        "__add__",
    ):
        yield Row(
            "InstanceList.%s, the list's own" % name,
            getattr(list, name),
            [instance_list, lambda: 0],
            [None, any_outcome],
            counts=None,
            good=ANY,
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
            ("remove", lambda things: things.remove(things[0])),
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
            [nothing_else(GMRoom)] + [anything] * count,
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
