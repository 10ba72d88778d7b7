"""Running CPython's own test cases against our types.

The interpreter's package `test` is part of its standard library, but some systems install it apart.
"""

import sys
import types
import unittest

try:
    from test import test_support  # noqa: F401
except ImportError:
    raise ImportError(
        "the tests of our types also run CPython's own cases, and this Python %d.%d comes without "
        "its package 'test'; install it (Debian calls it libpython2.7-testsuite)"
        % sys.version_info[:2]
    )


def _rebound(function, names):
    """A copy of a function that sees other values for some of its global names."""
    return types.FunctionType(
        function.func_code,
        dict(function.func_globals, **names),
        function.func_name,
        function.func_defaults,
        function.func_closure,
    )


def _differing(function, error, reason):
    def case(self):
        try:
            function(self)
        except error:
            return
        self.fail("%s passes now, though it is listed as differing: %s" % (self.id(), reason))

    return case


def adapted(name, case, differing=None, names=None, **attributes):
    """A class with the cases of a unittest.TestCase class of CPython's.

    differing   case -> (exception, reason): the case has to fail with that exception
    names       global names that its functions see with other values
    attributes  class attributes to replace
    """
    members = {"__module__": sys._getframe(1).f_globals["__name__"]}
    if names:
        for base in reversed(case.__mro__):
            if base not in unittest.TestCase.__mro__:
                members.update(
                    (key, _rebound(value, names))
                    for key, value in vars(base).items()
                    if isinstance(value, types.FunctionType)
                )
    for key, (error, reason) in (differing or {}).items():
        members[key] = _differing(members.get(key) or getattr(case, key).im_func, error, reason)
    members.update(attributes)
    return type(name, (case,), members)
