"""Values that host code should not pass, and calls that tell what became of them."""

NAN, INFINITE = float("nan"), float("inf")
NUMBERS = [0.0, -0.0, 1.0, -1.0, 0.5, 7.25, 300.0, -300.0, 1e9, -1e9, 1e30, NAN, INFINITE]
NUMBERS.append(-INFINITE)
WRONG = [None, "text", (), {}, 1j, object, 2**80]


class Mischief(Exception):
    """Raised by host code."""


class Number(object):
    """Converts to a number, after it did something."""

    def __init__(self, number, act):
        self.number = number
        self.act = act

    def __int__(self):
        self.act()
        return self.number

    def __float__(self):
        self.act()
        return float(self.number)

    __index__ = __int__


class Key(object):
    """A key of dictionaries that does something when it is looked up."""

    def __init__(self, act):
        self.act = act

    def __hash__(self):
        self.act()
        return 7

    def __eq__(self, other):
        self.act()
        return self is other


def outcome(action, *arguments):
    """What an action returns, or the type of what it raises."""
    try:
        result = action(*arguments)
    except Exception as error:
        return type(error)
    assert_nothing_left_behind("a result")
    return result


def assert_nothing_left_behind(what):
    left = left_behind()
    if left is not None:
        raise AssertionError("%s was left behind %s" % (left.__name__, what))


def left_behind():
    """The type of an exception that is pending although nothing was raised; pending no more."""
    try:
        for _ in ():  # the end of a loop asks; that over a str would set and clear its own
            pass
    except Exception as error:
        return type(error)
    return None
