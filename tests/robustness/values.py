"""All values that take an argument's place.

Each is made anew for each case. `facts` says of a value what the expectations in the table go by;
how the interpreter's own parser takes it is not stated here but asked (see survey()).
"""

import ctypes
import operator
import sys

import larkspur
import pygame
from support import leaks, native, sdl, surfaces, variables
from support.host import Instance, Plain
from support.particles import foreign_cobject

from robustness import hostile, scene


class Value(object):
    """A kind of value: its name, how one is made, and facts about it.

    held     of a variable, the value of what it holds
    surface  bits per pixel of a pygame Surface in good state; 0 for what is none
    hostile  None, or the deed of a hostile object
    """

    def __init__(self, name, make, surface=0, hostile=None, **facts):
        self.name, self.make = name, make
        self.surface, self.hostile = surface, hostile
        self.facts = facts

    def __getattr__(self, name):
        if name.startswith("__"):
            raise AttributeError(name)
        return self.__dict__["facts"].get(name, False)

    @property
    def acts(self):
        """Whether it changes what else the call meets."""
        return self.hostile in scene.ACTIONS


def _same(objects):
    return [Value(repr(thing)[:40], lambda thing=thing: thing) for thing in objects]


def _numbers():
    small = [True, 0, 1, -1, 2, 7, 8, 255, 256]
    edges = [32767, 32768, 65535, 65536, -32768, -32769]
    huge = [2**31 - 1, 2**31, -(2**31), -(2**31) - 1, 2**32 - 1, 2**32, 2**63 - 1, -(2**63)]
    floats = [0.0, -0.0, 0.5, 1.0, 1.5, -1.0, 255.0, 3e9, -3e9, 1e308, 1e-320]
    for value in _same(small + edges + huge + floats + [2**63, 0 * 2**63, 1j]):
        yield value
    yield Value("10**400", lambda: 10**400)
    for name in ("nan", "inf", "-inf"):
        yield Value(name, lambda name=name: float(name))


def _texts():
    for text in ("", "x", "5", "a\0b", "name"):
        yield Value(repr(text), lambda text=text: text, text=text)
    yield Value("long str", lambda: "x" * 100000)
    yield Value("empty unicode", lambda: unicode(""))
    yield Value("unicode", lambda: unicode("\\u1234\\U0001f600", "unicode-escape"))
    yield Value("long unicode", lambda: unicode("\\u1234", "unicode-escape") * 100000)
    yield Value("bytearray", lambda: bytearray(b"12345678"))
    yield Value("buffer", lambda: buffer("12345678"))
    yield Value("memoryview", lambda: memoryview(b"12345678"))


def _containing_itself():
    items = []
    items.append(items)
    return items


def _deep_list():
    items = []
    for _ in range(3000):
        items = [items]
    return items


class _Classic:
    pass


def _objects():
    for value in _same([None, Ellipsis, NotImplemented, object, int, type, len, (), (1,)]):
        yield value
    yield Value("classic class", lambda: _Classic)
    yield Value("object()", object)
    yield Value("classic instance", _Classic)
    yield Value("module", lambda: sys)
    yield Value("function", lambda: lambda *arguments: None)
    yield Value("generator", lambda: (number for number in (1, 2)))
    yield Value("code", lambda: compile("1", "<draw code>", "exec"))
    yield Value("code with free variables", lambda: _closure().__code__)
    yield Value("[]", list, list=True)
    yield Value("[1]", lambda: [1], list=True)
    yield Value("list of 100", lambda: [0] * 100, list=True)
    yield Value("list in itself", _containing_itself, list=True)
    yield Value("deep list", _deep_list, list=True)
    yield Value("tuple of 8", lambda: (1,) * 8)
    yield Value("tuple of pairs", lambda: (("x", 1), ("y", 2)))
    yield Value("tuple of Nones", lambda: (None,) * 40)
    yield Value("{}", dict, dict=True)
    yield Value("dict", lambda: {1: 2, "x": None}, dict=True)
    yield Value("set", lambda: set([1]))
    yield Value("xrange", lambda: xrange(3))
    yield Value("iterator", lambda: iter([1, 2]))
    yield Value("slice", lambda: slice(None, 2))
    yield Value("backward slice", lambda: slice(10**30, -(10**30), -1))
    yield Value("exception", lambda: ValueError("an exception"))
    yield Value("rectangle", lambda: pygame.Rect(1, 2, 3, 4))
    yield Value("colour", lambda: pygame.Color(1, 2, 3, 4))
    yield Value("Plain", Plain)
    yield Value("Instance", lambda: scene.current.instance, instance=True)
    yield Value("other Instance", Instance, instance=True)
    yield Value("foreign CObject", foreign_cobject)
    yield Value("CObject of null", lambda: _cobject(None))
    yield Value("capsule", _capsule)


def _closure():
    free = 1
    return lambda: free


def _cobject(pointer):
    make = ctypes.pythonapi.PyCObject_FromVoidPtr
    make.argtypes, make.restype = [ctypes.c_void_p, ctypes.c_void_p], ctypes.py_object
    return make(pointer, None)


def _capsule():
    make = ctypes.pythonapi.PyCapsule_New
    make.argtypes, make.restype = [ctypes.c_void_p] * 3, ctypes.py_object
    return make(1, None, None)


# ---- larkspur's own


def lend(thing):
    """Gives a thing references that no one owns: comparing variables, and inserting into lists,
    release what they are given, or hold. More than a case can use up."""
    leaks.lend_references(thing, 100)


def variable_of(value):
    lend(value)
    return larkspur.GMVar(value)


def _particle_type(shape=None):
    handle = larkspur.part_type_create()
    if shape is not None:
        larkspur.part_type_shape(handle, shape)
    return handle


def particle_type():
    """A particle type whose particles are drawn and live for long."""
    handle = _particle_type(scene.tiny_surface())
    larkspur.part_type_life(handle, 100, 100)
    return handle


def particle():
    return larkspur.CParticle_new(particle_type(), 20, 20)


def held(value):
    """A variable that holds a value."""
    return Value(
        "GMVar(%s)" % value.name,
        lambda: variable_of(value.make()),
        hostile=value.hostile,
        held=value,
        own_type="GMVar",
        instance=value.instance,
        particle_type=value.particle_type,
        closes=value.closes,
    )


def _variables():
    for thing in (0, 1.5, None, "x", [1, 2], 7):
        yield held(_same([thing])[0])
    yield held(Value("instance", lambda: scene.current.instance, instance=True))
    yield Value("GMVar of an array", lambda: _array(), held=_FIVE)
    yield Value("GMVar without init", lambda: larkspur.GMVar.__new__(larkspur.GMVar), held=_ZERO)
    yield Value("GMVar in itself", variables.holding_itself)
    yield held(Value("particle type", particle_type, particle_type=True))
    yield held(Value("Surface", scene.tiny_surface))
    for deed in hostile.DEEDS:
        yield held(_hostile_value("object", deed))


_ZERO, _FIVE = _same([0, 5])


def _own():
    for value in _variables():
        value.facts["own_type"] = "GMVar"
        yield value
    for name in "GMVar GMSprite BackgroundData RoomTileData GMRoom Floatlist8 Beancounter".split():
        yield Value(name, lambda name=name: getattr(larkspur, name))
    yield Value("GMSprite()", larkspur.GMSprite, own_type="GMSprite")
    yield Value("BackgroundData()", larkspur.BackgroundData, own_type="BackgroundData")
    yield Value("RoomTileData()", larkspur.RoomTileData, own_type="RoomTileData")
    yield Value("InstanceList()", larkspur.InstanceList, own_type="InstanceList", list=True)
    yield Value("GMRoom()", larkspur.GMRoom, own_type="GMRoom")
    yield Value("Floatlist8()", larkspur.Floatlist8, own_type="Floatlist8")
    yield Value("Beancounter()", larkspur.Beancounter, own_type="Beancounter", beancounter=True)
    yield Value("method of a room", lambda: larkspur.GMRoom().Leave)
    yield Value("member of a room", lambda: larkspur.GMRoom.__dict__["tiles"])
    yield Value("particle type", particle_type, particle_type=True)
    yield Value("particle type without shape", _particle_type, particle_type=True)
    yield Value("particle", particle, particle=True)


def _array():
    variable = variable_of(5)
    variable[3, 2] = "corner"
    return variable


# ---- surfaces


def _surface(bits=32, size=(8, 6), flags=0):
    return lambda: scene.tiny_surface(bits, size, flags)


def _part(of, rectangle=(2, 1, 4, 3)):
    return lambda: of().subsurface(rectangle)


def _keyed(bits, flags=0, key=(1, 2, 3)):
    def make():
        surface = scene.tiny_surface(bits)
        surface.set_colorkey(key, flags)
        return surface

    return make


def _blitted(make):
    """What asks for run-length encoding has it after a blit. SDL remembers the target, which is
    gone."""

    def encoded():
        surface = make()
        scene.tiny_surface(surface.get_bitsize()).blit(surface, (0, 0))
        surfaces.forget_target(surface)
        return surface

    return encoded


def _faded(flags, surface_flags=0):
    def make():
        surface = scene.tiny_surface(flags=surface_flags)
        surface.set_alpha(100, flags)
        return surface

    return make


def _part_of_encoded():
    # Made first: it would lock the encoded one, and SDL does not survive that.
    whole = scene.tiny_surface(flags=pygame.SRCALPHA)
    share = whole.subsurface((2, 1, 4, 3))
    whole.set_alpha(100, pygame.RLEACCEL)
    _blitted(lambda: whole)()
    return share


def _locked(bits):
    def make():
        surface = scene.tiny_surface(bits)
        surface.lock()
        return surface

    return make


def _on_display():
    return scene.current.screen


def _closed_display():
    surface = scene.current.screen
    scene.current.disturbed = True
    pygame.display.quit()
    return surface


def _part_of_closed_display():
    share = scene.current.screen.subsurface((2, 1, 4, 3))
    _closed_display()
    return share


def _part_of_replaced_display():
    share = scene.current.screen.subsurface((40, 30, 4, 3))
    scene.current.act("replace")
    return share


class _Subclass(pygame.Surface):
    pass


def _without_init(subclass):
    return lambda: subclass.__new__(subclass)


def _from_text(width, height, form, bytes_per_pixel, offset=0):
    """Foreign memory of exactly the size that the picture is said to have."""

    def make():
        text = "\x05" * (width * height * bytes_per_pixel + offset)
        return pygame.image.frombuffer(buffer(text, offset), (width, height), form)

    return make


_wrap = native.function("PySurface_FromSurface", ctypes.c_void_p, ctypes.c_void_p)


def _foreign(width, height, pitch, pixels=True):
    """Foreign memory that ends behind the last row; pixels=False: a null pointer."""

    def make():
        # Lives as long as the process of the case.
        memory = ctypes.create_string_buffer(height * pitch + 4 * width) if pixels else None
        _kept.append(memory)
        address = ctypes.addressof(memory) if pixels else None
        surface = surfaces.create_surface_from(address, width, height, 32, pitch, *surfaces.XRGB)
        return native.new_reference(_wrap(surface))

    return make


_kept = []


# Without pixels a layer over SDL 2 refuses to blit.
EMPTY = dict(exact=True, empty=True, without_pixels=sdl.is_layer())


def _surfaces():
    for bits in (8, 15, 16, 24, 32):
        yield Value("Surface of %d bits" % bits, _surface(bits), bits, exact=True)
    yield Value("Surface with alpha", _surface(flags=pygame.SRCALPHA), 32, exact=True)
    yield Value(
        "Surface of 16 bits with alpha", _surface(16, flags=pygame.SRCALPHA), 16, exact=True
    )
    for size in ((0, 0), (0, 5), (5, 0)):
        yield Value("Surface %dx%d" % size, _surface(size=size), 32, **EMPTY)
    yield Value("empty Surface of 8 bits", _surface(8, (0, 0)), 8, **EMPTY)
    yield Value("Surface 1x1", _surface(size=(1, 1)), 32, exact=True)
    for bits in (8, 16, 24, 32):
        yield Value("subsurface of %d bits" % bits, _part(_surface(bits)), bits, exact=True)
    yield Value("empty subsurface", _part(_surface(), (8, 6, 0, 0)), 32, exact=True, empty=True)
    yield Value("subsurface of all", _part(_surface(), (0, 0, 8, 6)), 32, exact=True)
    yield Value(
        "subsurface of a subsurface", _part(_part(_surface()), (1, 1, 2, 2)), 32, exact=True
    )
    yield Value(
        "subsurface of an encoded one",
        _part(_blitted(_keyed(32, pygame.RLEACCEL))),
        32,
        exact=True,
        moved=True,
    )
    yield Value("subsurface of the display", _part(_on_display), 32, exact=True, display=True)
    yield Value("subsurface of a closed display", _part_of_closed_display, closes=True, exact=True)
    yield Value(
        "subsurface of a replaced display", _part_of_replaced_display, replaced=True, exact=True
    )
    yield Value("the display", _on_display, 32, exact=True, display=True)
    yield Value("a closed display", _closed_display, closes=True, exact=True)
    for bits in (8, 16, 24, 32):
        yield Value("Surface with a key, %d bits" % bits, _keyed(bits), bits, exact=True)
        asks = _keyed(bits, pygame.RLEACCEL)
        yield Value("Surface that asks for RLE, %d bits" % bits, asks, bits, exact=True)
        yield Value("encoded Surface of %d bits" % bits, _blitted(asks), bits, exact=True)
    if not sdl.is_layer():  # which refuses such a key itself
        yield Value(
            "Surface with a key outside its palette",
            _keyed(8, key=0x7FFFFFF0),
            8,
            exact=True,
            key_astray=True,
        )
    yield Value("faded Surface", _faded(0), 32, exact=True)
    yield Value("encoded faded Surface", _blitted(_faded(pygame.RLEACCEL)), 32, exact=True)
    encoded_with_alpha = _blitted(_faded(pygame.RLEACCEL, pygame.SRCALPHA))
    yield Value("encoded Surface with alpha", encoded_with_alpha, 32, exact=True)
    yield Value("subsurface of one with alpha", _part_of_encoded, 32, exact=True, moved=True)
    for bits in (8, 32):
        yield Value(
            "locked Surface of %d bits" % bits, _locked(bits), bits, exact=True, locked=True
        )
    for bits in (8, 16, 32):
        yield Value(
            "locked Surface of %d bits that was encoded" % bits,
            lambda bits=bits: surfaces.locked_encoded_surface(bits),
            bits,
            exact=True,
            locked=True,
            locked_encoded=not sdl.is_layer(),
        )
    yield Value("Surface of a subclass", lambda: _Subclass((8, 6), 0, 32), 32)
    yield Value("Surface without init", _without_init(pygame.Surface), exact=True)
    yield Value("Surface of a subclass without init", _without_init(_Subclass))
    yield Value("foreign bytes", _from_text(8, 6, "RGBX", 4), 32, exact=True)
    yield Value("foreign bytes at an odd address", _from_text(8, 6, "RGBX", 4, 1), 32, exact=True)
    yield Value("foreign bytes, 24 bits", _from_text(7, 6, "RGB", 3, 1), 24, exact=True)
    yield Value("foreign bytes, 8 bits", _from_text(7, 6, "P", 1), 8, exact=True)
    yield Value("foreign bytes, odd pitch", _foreign(8, 6, 34), 32, exact=True)
    yield Value("foreign bytes, short pitch", _foreign(8, 6, 20), 32, exact=True, short=True)
    yield Value("foreign bytes, pitch 0", _foreign(8, 6, 0), 32, exact=True, short=True)
    yield Value(
        "foreign bytes, wrapped pitch", _from_text(16385, 3, "RGBX", 4), 32, short=True, exact=True
    )
    for length in (32767, 32768, 65535):
        is_long = length > 32767
        for bits in (8, 16, 24, 32):
            yield Value(
                "%d bits, 1x%d" % (bits, length),
                _surface(bits, (1, length)),
                bits,
                exact=True,
                long=is_long,
            )
        yield Value(
            "8 bits, %dx1" % length,
            _from_text(length, 1, "P", 1),
            8,
            exact=True,
            long=is_long,
            wide=True,
        )
        yield Value(
            "32 bits, %dx1" % length,
            _from_text(length, 1, "RGBX", 4),
            32,
            exact=True,
            long=is_long,
            short=True,
        )


def _hostile_value(shape, deed):
    return Value(
        "%s, %s" % (shape, deed),
        lambda: hostile.make(shape, deed),
        surface=32 if shape == "Surface" else 0,
        hostile=deed,
        list=shape == "list",
        dict=shape == "dict",
        shape=shape,
    )


def _hostile():
    for shape in hostile.SHAPES:
        for deed in hostile.DEEDS:
            yield _hostile_value(shape, deed)


# A surface without pixels, which no Python code can make. What paints refuses it; SDL's own blits
# and conversions would read through its null pointer, whoever calls them.
NULL = Value("foreign null", _foreign(8, 6, 32, False))

NUMBERS = list(_numbers())
# A layer over SDL 2 takes no memory with rows that overlap, or of more than 16383 columns.
SURFACES = [value for value in _surfaces() if not (sdl.is_layer() and (value.short or value.wide))]
OTHERS = list(_texts()) + list(_objects()) + list(_own())
HOSTILE = list(_hostile())
ALL = NUMBERS + OTHERS + SURFACES + HOSTILE

_parse = ctypes.pythonapi.PyArg_ParseTuple
_as_long = ctypes.pythonapi.PyInt_AsLong
_sequence_size = ctypes.pythonapi.PySequence_Size


def _takes(letter, value):
    place = ctypes.create_string_buffer(16)
    try:
        if letter == MEMBER_INT:
            _as_long(ctypes.py_object(value))
        else:
            _parse(ctypes.py_object((value,)), letter, place)
    except Exception:
        return False
    return True


# How int members take a value, beside letters of the parser's formats.
MEMBER_INT = "member int"
LETTERS = ("i", "I", "f", MEMBER_INT)


def _own_items(thing):
    """The items of a list or tuple as they are stored, whatever a subclass says."""
    return (list if isinstance(thing, list) else tuple).__getslice__(thing, 0, 1000)


def _channels(thing):
    """What color_as_int() converts: nothing of a short sequence, three items of a longer one, or
    the thing itself."""
    if not operator.isSequenceType(thing):
        return [thing]
    is_short = _sequence_size(ctypes.py_object(thing)) <= 2
    return [] if is_short else [thing[i] for i in range(3)]


# Name -> what the interpreter is asked to do with a value, which is on the given side of an
# operation or alone. Its answers say what has to come of the same done with a variable of that
# value.
QUESTIONS = {
    "float": float,
    "int": int,
    "wide": lambda thing: _as_long(ctypes.py_object(int(thing))),  # an int that fits a long
    "str": str,
    "hash": hash,
    "bool": bool,
    "len": lambda thing: operator.isSequenceType(thing) and _sequence_size(ctypes.py_object(thing)),
    "call": lambda thing: thing(),
    "call with 1": lambda thing: thing(1),
    "call with 4": lambda thing: thing(1, 1, 1, 1),
    "repr": repr,
    "item 1": lambda thing: _as_long(ctypes.py_object(_own_items(thing)[1])),
    "index": lambda thing: _as_long(ctypes.py_object(operator.index(thing))),
    "index of eight": lambda thing: range(8)[operator.index(thing)],
    "item 7": lambda thing: _own_items(thing)[7],
    "ten ints": lambda thing: [_as_long(ctypes.py_object(_own_items(thing)[i])) for i in range(10)],
    "17 ints": lambda thing: [_as_long(ctypes.py_object(_own_items(thing)[i])) for i in range(17)],
    "pairs": lambda thing: [(name + "", value) for name, value in _own_items(thing)],
    "items": lambda thing: list(thing),
    "colour": lambda thing: [_as_long(ctypes.py_object(channel)) for channel in _channels(thing)],
    "in": lambda thing: object() in thing,
    "in, unhashable": lambda thing: [] in thing,
    "get": lambda thing: thing.real,
    "set": lambda thing: setattr(thing, "x", 1),
    "sorted": lambda thing: sorted([thing, 3, None, thing, 2]),
}
for _operation in (operator.neg, operator.pos, operator.abs):
    QUESTIONS[_operation.__name__] = _operation
FORWARDED = [getattr(operator, name) for name in "add sub div mod and_ or_ xor iadd isub".split()]
FORWARDED += [getattr(operator, name) for name in "eq ne lt le gt ge".split()] + [cmp, coerce]
for _operation in FORWARDED:
    QUESTIONS[_operation.__name__ + " left"] = lambda thing, do=_operation: do(thing, 3)
    QUESTIONS[_operation.__name__ + " right"] = lambda thing, do=_operation: do(3, thing)
for _name in "add iadd mul imul mod".split():
    _operation = getattr(operator, _name)
    QUESTIONS[_name + " list left"] = lambda thing, do=_operation: do(thing, [None] * 3)
    QUESTIONS[_name + " list right"] = lambda thing, do=_operation: do([None] * 3, thing)


def _can(question, value):
    thing = value.make()
    lend(thing)
    try:
        QUESTIONS[question](thing)
    except Exception:
        return False
    return True


def survey(fresh_scene):
    """Which values the interpreter's own parser takes for which of LETTERS, and with which it can
    do what is asked in QUESTIONS: a list of [name of the value, letter or question]. Hostile values
    do what they do; those that do something to the scene are not asked."""
    taken = []
    for value in ALL + [value.held for value in ALL if value.held]:
        for letter in LETTERS:
            if fresh_scene() and _takes(letter, value.make()):
                taken.append([value.name, letter])
        if not value.own_type and not value.acts:
            taken += [
                [value.name, asked]
                for asked in sorted(QUESTIONS)
                if fresh_scene() and _can(asked, value)
            ]
    return taken


# What survey() gave, as a set of pairs.
parsed = set()


def can(question, value):
    """Whether the interpreter can do it. Values that do something first then answer as those that
    obey."""
    name = "%s, obey" % value.shape if value.acts else value.name
    return (name, question) in parsed
