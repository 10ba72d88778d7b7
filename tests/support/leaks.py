"""Counting references over many rounds."""

import ctypes
import gc
import sys

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
