"""Counting references over many rounds."""

import collections
import contextlib
import ctypes
import gc
import sys
import weakref

TRIES = 3  # until another thread may be supposed to have kept still


def count_changes(action, objects, rounds=1000):
    """How much the reference count of each object changes per call of `action`, over many calls.

    One unmeasured call comes first, so that caches and interned names do not count. A change that
    is not the same in each call may be another thread's, such as that of the one that tells
    pytest-xdist's workers what to run: it is measured again, a few times if need be.
    """

    def measured():
        gc.collect()
        before = counts(objects)
        for _ in range(rounds):
            action()
        gc.collect()
        return growth(objects, before)

    action()
    for _ in range(TRIES):
        changes = measured()
        if not any(change % rounds for change in changes):
            break
    return [float(change) / rounds for change in changes]


def counts(objects):
    """The reference counts of some objects, for comparing with later ones."""
    return [sys.getrefcount(counted) for counted in objects]


def growth(objects, before):
    """How much each count grew since `before`, a result of counts()."""
    return [now - then for now, then in zip(counts(objects), before)]


def assert_counts_unchanged(action, *objects):
    """`action`, called a thousand times, leaves the reference counts of `objects` as they were."""
    assert count_changes(action, objects) == [0.0] * len(objects)


def object_growth(action, rounds=1000):
    """How many collectable objects a thousand calls of `action` leave behind.

    Another thread may make or drop some meanwhile, as for count_changes(). What the action leaves
    behind it leaves each time: of a few tries that counts which is nearest to none.
    """

    def measured():
        gc.collect()
        before = len(gc.get_objects())
        for _ in range(rounds):
            action()
        gc.collect()
        return len(gc.get_objects()) - before

    action()
    return min((measured() for _ in range(TRIES)), key=abs)


class _AClass(object):
    pass


# One or more of each kind of object that the interpreter hands out again and again.
SHARED_BY_INTERPRETER = [
    None,
    NotImplemented,
    Ellipsis,
    True,
    False,
    -5,
    0,
    256,
    (),
    frozenset(),
    "",
    "a",
    "b".upper(),  # one character that is not interned
    intern("a name that the interpreter keeps"),
    unicode(),
    unicode("a"),
    int,
    _AClass,
]


def assert_shared_object_loses_nothing(action, shared):
    """`action`, called a thousand times, takes no references from one of SHARED_BY_INTERPRETER,
    whose count others may change as well meanwhile."""
    lend_references(shared, 10000)  # so that where it does the process survives to tell
    (change,) = count_changes(action, [shared])
    assert -0.1 < change


def lend_references(counted, references):
    """Gives an object references that nobody owns, for operations that release what they never
    took: without them its count would end below the number of its owners."""
    ctypes.c_ssize_t.from_address(id(counted)).value += references
    left_behind(counted)


@contextlib.contextmanager
def count_restored(counted, lent=0):
    """Lends an object of any kind references for what is done inside. At its end the object has as
    many as before, when nothing more may hold it than did before."""
    before = sys.getrefcount(counted)
    ctypes.c_ssize_t.from_address(id(counted)).value += lent
    yield
    ctypes.c_ssize_t.from_address(id(counted)).value += before - sys.getrefcount(counted)


_left_behind = None  # functions that return the values, once note_left_behind() was called


def note_left_behind():
    """Has what tests tell left_behind() from now on be kept for free_left_behind()."""
    global _left_behind
    _left_behind = []


def left_behind(value):
    """Tells that references to the value are left which nobody owns, as it has to be; returns it.
    A hunt for leaks takes them away, so that it sees what else is left."""
    if _left_behind is not None and gc.is_tracked(value) and not _has_unknown_holders(value):
        try:
            _left_behind.append(weakref.ref(value))
        except TypeError:
            _left_behind.append(lambda: value)
    return value


def _has_unknown_holders(value):
    """Whether native code may hold it, or objects that do not tell the collector so: a type's."""
    return isinstance(value, type) or any(value is shared for shared in SHARED_BY_INTERPRETER)


def free_left_behind():
    """Takes the references that nobody owns from what left_behind() was told of.

    The collector knows all that holds one of the objects that it knows, if no native code does at
    the moment. So this works for those alone, and while no test runs. What has been there from the
    start was set aside, see long_lived.
    """
    if not _left_behind:
        return
    gc.collect()
    known = set(id(value) for value in gc.get_objects())
    values = dict((id(noted()), noted()) for noted in _left_behind if id(noted()) in known)
    del _left_behind[:]
    held = collections.Counter()  # address -> references by objects, one of them `values`
    for holder in gc.get_objects():
        held.update(address for address in map(id, gc.get_referents(holder)) if address in values)
    del holder
    for address in values:
        ctypes.c_ssize_t.from_address(address).value = held[address]
