"""Pickled states and records with made-up contents: __reduce__, __setstate__, loads, copies,
constructors of every type, and the native records behind the handles of particles.

chunks.py says how it is called.
"""

import copy
import ctypes
import gc
import operator
import os
import sys

import cPickle
import StringIO

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

from support import host as host_support

host_support.install_modules()

import chunks  # noqa: E402
import larkspur  # noqa: E402
import pygame  # noqa: E402
from hostile import (  # noqa: E402
    NAN,
    NUMBERS,
    WRONG,
    Mischief,
    Number,
    assert_nothing_left_behind,
)
from support import particles, records, rooms  # noqa: E402

TYPES = [larkspur.InstanceList, larkspur.GMVar] + [record.type for record in records.ALL]

# What a state that holds nonsense may raise: the failures of its conversions.
REFUSALS = (
    TypeError,
    IndexError,
    ValueError,
    OverflowError,
    AttributeError,
    KeyError,
    SystemError,  # where a failure is stated to set no exception
    Mischief,
)
# And what a stream of bytes may.
REFUSALS_OF_BYTES = REFUSALS + (cPickle.UnpicklingError, EOFError, ImportError, MemoryError)


class TupleOfSorts(tuple):
    pass


class ListOfSorts(list):
    """Is shorter each time that it is asked."""

    def __len__(self):
        if list.__len__(self):
            del self[:1]
        return list.__len__(self)


class States(chunks.Steps):
    def __init__(self, random):
        chunks.Steps.__init__(self, random)
        pygame.display.init()
        host = host_support.set_up(larkspur, pygame.display.set_mode((64, 48), 0, 32))
        self.registry = host.registry
        for number in range(8):
            self.registry[number] = host_support.Instance(number=number)

    # --- Contents --------------------------------------------------------------------------------

    def act(self):
        kind = self.random.randrange(4)
        if kind == 0:
            raise Mischief
        if kind == 1:
            gc.collect()

    def value(self, depth=0):
        kind = self.random.randrange(12)
        if kind < 4:
            return self.random.randrange(-300, 300)
        if kind == 4:
            return self.random.choice(NUMBERS)
        if kind == 5:
            return self.random.choice(WRONG)
        if kind == 6:
            return Number(self.random.randrange(-5, 9), self.act)
        if kind == 7:
            return pygame.Surface((3, 2), 0, self.random.choice([8, 16, 24, 32]))
        if kind == 8:
            return rooms.float_list([1.5, 2.5])
        if kind == 9:
            return self.random.choice([2**31, -(2**31) - 1, 2**63, -(2**63) - 1, True])
        if kind == 10 or depth > 2:
            return "text" * self.random.randrange(9)
        return self.sequence([self.value(depth + 1) for _ in range(self.random.randrange(20))])

    def sequence(self, items):
        return self.random.choice([tuple, list, list, TupleOfSorts, ListOfSorts])(items)

    def record(self, kinds=records.ALL):
        """A record of one of these types, most of whose members hold something."""
        kind = self.random.choice(kinds)
        if kind is records.FLOAT_LIST:
            return rooms.float_list([self.random.choice(NUMBERS) for _ in range(8)])
        record = kind.type()
        for member in kind.members:
            if self.random.randrange(8):
                value = self.random.randrange(-300, 300)
                if member.kind in ("lenient", "strict"):
                    value = self.random.choice([value, "name", [1, 2], rooms.float_list([3.0])])
                setattr(record, member.name, value)
        return record

    def state_of(self, record):
        try:
            return list(record.__reduce__()[2])
        except (AttributeError, TypeError):
            return [self.value() for _ in range(20)]

    def mutated(self, state):
        for _ in range(self.random.randrange(4)):
            kind = self.random.randrange(4)
            place = self.random.randrange(len(state) + 1)
            if kind == 0:
                state[place : place + 1] = [self.value()]
            elif kind == 1:
                del state[place:]
            elif kind == 2:
                state[place:place] = [self.value() for _ in range(3)]
            else:
                state = state[place:] + state[:place]
        return self.sequence(state)

    # --- Steps -----------------------------------------------------------------------------------

    def attempt(self, action, refusals=REFUSALS):
        try:
            return action()
        except refusals:
            return None

    def step_state(self):
        """A record takes what may be a state, and can be read, copied and compared afterwards."""
        record = self.record()
        state = self.mutated(self.state_of(self.record()))
        self.attempt(lambda: record.__setstate__(state))
        assert_nothing_left_behind("a state")
        self.use(record)

    def use(self, record):
        self.attempt(lambda: repr(record))
        self.attempt(lambda: copy.copy(record))
        for name in dir(record):
            self.attempt(lambda: getattr(record, name))
        self.attempt(lambda: cmp(record, self.value()))
        self.attempt(lambda: record == 3)
        self.attempt(lambda: list(record))

    def step_round_trip(self):
        """A record's own state makes an equal one, where no host loads images for it."""
        record = self.record([records.ROOM, records.TILE, records.FLOAT_LIST])
        try:
            state = record.__reduce__()[2]
        except AttributeError:  # of a member that is not set
            return
        copied = self.random.choice(records.ROUND_TRIPS)(record)
        expected, actual = self.plain(state), self.plain(copied.__reduce__()[2])
        if repr(actual) != repr(expected):
            raise AssertionError("%r became %r" % (expected, actual))

    def plain(self, item):
        """A state's content without the identity of its float lists."""
        if isinstance(item, tuple):
            return [self.plain(inner) for inner in item]
        return list(item) if isinstance(item, larkspur.Floatlist8) else item

    def step_instance_list_state(self):
        instances = larkspur.InstanceList()
        state = self.mutated([self.random.choice(self.registry.values()) for _ in range(5)])
        self.attempt(lambda: instances.__setstate__(state))
        self.use(instances)

    def step_bytes(self):
        """A pickle with a few wrong bytes. No more can be loaded by name than our types."""
        protocol = self.random.randrange(3)
        try:
            pickled = bytearray(cPickle.dumps(self.record(), protocol))
        except (AttributeError, cPickle.PicklingError, TypeError):
            return
        for _ in range(self.random.randrange(5)):
            place = self.random.randrange(len(pickled))
            kind = self.random.randrange(3)
            if kind == 0:
                pickled[place] = self.random.randrange(256)
            elif kind == 1:
                del pickled[place : place + self.random.randrange(4)]
            else:
                pickled[place:place] = pickled[: self.random.randrange(12)]
            if not pickled:
                return
        unpickler = cPickle.Unpickler(StringIO.StringIO(bytes(pickled)))
        unpickler.find_global = self.find_global
        record = self.attempt(unpickler.load, REFUSALS_OF_BYTES)
        if type(record) in TYPES:
            self.use(record)

    def find_global(self, module, name):
        found = {
            "__builtin__ object": object,
            "copy_reg _reconstructor": __import__("copy_reg")._reconstructor,
        }.get("%s %s" % (module, name), getattr(larkspur, name, None))
        if found is None:
            raise cPickle.UnpicklingError(name)
        return found

    def step_make(self):
        kind = self.random.choice(TYPES)
        arguments = [self.value() for _ in range(self.random.randrange(4))]
        made = self.attempt(lambda: kind(*arguments))
        if made is not None and kind is not larkspur.GMVar:
            self.use(made)

    def step_variable(self):
        variable = larkspur.GMVar(self.random.randrange(300))
        for _ in range(4):
            key, value = self.index(), self.value()
            if self.random.randrange(2):
                key = self.sequence([self.index(), self.index()])
            self.attempt(lambda: operator.setitem(variable, key, value), REFUSALS + (MemoryError,))
            self.attempt(lambda: variable[key])
        self.attempt(lambda: larkspur.GMVar.__reduce__(variable))

    def index(self):
        """An index that makes no array too large for the test, or one that no array can have."""
        return self.random.choice(
            [
                self.random.randrange(-2, 9),
                self.random.randrange(9),
                self.random.choice([1.5, -0.5, NAN, 2**31, 2**63, -(2**40), None, "ab", (), True]),
                larkspur.GMVar(3),
                Number(2, self.act),
            ]
        )

    def step_native_records(self):
        """Particle types and particles with any numbers in their records, stepped and drawn."""
        handle = larkspur.part_type_create()
        larkspur.part_type_shape(handle, pygame.Surface((5, 4), 0, self.random.choice([8, 16, 32])))
        self.scramble(particles.type_record(handle))
        particle = self.attempt(lambda: larkspur.CParticle_new(handle, 3, 4))
        if particle is None:
            return
        record = particles.particle_record(particle)
        for _ in range(3):
            self.scramble(record)
            # A picture of the largest size that is allowed takes a second.
            record.size = self.random.choice([0.0, NAN, -1.0, self.random.uniform(-3, 20)])
            self.attempt(lambda: larkspur.CParticle_step(particle))
            record.size = self.random.choice([0.0, NAN, 1.0, self.random.uniform(-3, 20)])
            kind = particles.type_record(handle)
            kind.xscale, kind.yscale = self.random.uniform(-2, 3), self.random.uniform(-2, 3)
            self.attempt(
                lambda: larkspur.CParticle_dec_ttl_and_render(particle, 1, 1),
                REFUSALS + (pygame.error,),
            )

    def scramble(self, record):
        for name, kind in record._fields_:
            if kind is ctypes.c_void_p or self.random.randrange(3):
                continue
            if kind is ctypes.c_float:
                value = self.random.choice(NUMBERS + [self.random.uniform(-9, 9)])
            else:
                value = self.random.choice(
                    [0, 1, 128, -1, 2**31 - 1, -(2**31), self.random.randrange(2**31)]
                )
            setattr(record, name, value)


if __name__ == "__main__":
    chunks.main(States, os.path.abspath(__file__))
