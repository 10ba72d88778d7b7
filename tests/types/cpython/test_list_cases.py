"""CPython's own sequence and list cases, run against InstanceList.

The registry maps every small int to itself, so that a list of ints stays one whatever is appended.
"""

import larkspur
import pytest
from support import cpython_cases, leaks
from test import test_list

SUBCLASS = (TypeError, "the case derives a class from the list, and InstanceList has no subclasses")

DIFFERING = {
    "test_addmul": SUBCLASS,
    "test_free_after_iterating": SUBCLASS,
    "test_getitemoverwriteiter": SUBCLASS,
    "test_remove": (
        SystemError,
        "an item that is not there fails without an exception; items are "
        "found by identity and never compared",
    ),
    "test_setitem": (
        AssertionError,
        "an index past the end fails without an exception, which a.__setitem__() does not notice",
    ),
}


INTS = range(-300, 4000)


@pytest.fixture(autouse=True)
def ints_are_instances(host):
    for value in INTS:
        host.registry[value] = value
        leaks.lend_references(value, 1000)  # adding by id releases references it did not take
    # A list inside a list, as some cases have it, is stored as it is.
    larkspur.RegisterInstancesDict(host.registry, larkspur.InstanceList, type(host), type(None))


TestList = cpython_cases.adapted(
    "TestList", test_list.ListTest, DIFFERING, type2test=larkspur.InstanceList
)
