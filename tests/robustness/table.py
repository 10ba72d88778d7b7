"""What is called, with which good arguments, and what is to come of bad ones.

A row is a callable with a good call. Its cases are that call with each argument replaced in turn by
every value there is, with too few and too many arguments, and with a keyword. A kind says for each
argument what a value in its place leads to:

OK      the call succeeds
RAISES  it raises an exception
SILENT  it fails without one, as this function is stated to do; the interpreter makes a SystemError
        of that

PENDING succeeds and leaves an exception, as RegisterInstancesDict is stated to do

or, where what the value does meanwhile decides, a tuple of these.
"""

from robustness import values

OK, RAISES, SILENT = "ok", "raises", "silent"
PENDING = "left an exception pending"
EITHER = (OK, RAISES)
ANY = (OK, RAISES, SILENT)


class Case(object):
    """One call: make() gives the function, its arguments and its keywords; expected is one of the
    outcomes above, or several."""

    def __init__(self, label, make, expected):
        self.label, self.make, self.expected = label, make, expected


class Row(object):
    """A callable and its good call.

    covers     names of what the module shows that this row calls, such as "GMVar.__add__"; its own
               name, which may be none of these, unless others are given
    base       functions that make the good arguments
    kinds      what replaces each; None where nothing does
    counts     the numbers of arguments that it takes; None where it takes any
    keywords   whether it takes keywords
    good       what comes of the good call, and of fewer arguments where it takes these; or a
               function that says so
    then       called with the arguments of each case afterwards; whatever that raises
    extra      more cases: (label, functions that make the arguments, expected, and
               optionally another function)
    situation  arguments of the scene in which the calls are made
    alone      whether each case needs a process of its own
    disturbs   whether each case needs a scene of its own
    """

    def __init__(self, name, function, base=(), kinds=(), covers=None, **more):
        self.name, self.function, self.base, self.kinds = name, function, base, kinds
        self.covers = [name] if covers is None else covers
        self.counts = more.pop("counts", [len(base)])
        self.keywords = more.pop("keywords", False)
        self.good = more.pop("good", OK)
        self.then = more.pop("then", None)
        self.extra = more.pop("extra", ())
        self.situation, self.alone = {}, False
        self.disturbs = more.pop("disturbs", False)
        self.values = more.pop("values", values.ALL)
        assert not more, more
        assert len(kinds) == len(base), name

    def cases(self):
        good = self.good() if callable(self.good) else self.good
        if self.function is not None:
            yield self._case("good", self.base, good)
        for i, kind in enumerate(self.kinds):
            if kind is not None:
                for value in self.values:
                    replaced = list(self.base)
                    replaced[i] = value.make
                    label = "argument %d: %s" % (i, value.name)
                    yield self._case(label, replaced, kind(value), last=i)
        if self.counts is not None:
            for count in list(range(len(self.base))) + [len(self.base) + 1, len(self.base) + 9]:
                arguments = list(self.base[:count])
                arguments += [lambda: None] * (count - len(arguments))
                expected = good if count in self.counts else RAISES
                yield self._case("%d arguments" % count, arguments, expected)
        if not self.keywords:
            yield self._case("a keyword", self.base, RAISES, keywords={"keyword": 1})
        for extra in self.extra:
            yield self._case(*extra)

    def _case(self, label, makers, expected, function=None, keywords=None, last=None):
        """The case of a call; `last` is the argument that is made last, as some close the display
        that others are made of."""
        function = function or self.function

        def make():
            arguments = [None if i == last else maker() for i, maker in enumerate(makers)]
            if last is not None:
                arguments[last] = makers[last]()
            return function, arguments, keywords

        return Case(label, make, expected)


class ValuesRow(Row):
    """A row that tries values alone: its function takes any number of arguments, and keywords, or
    is called by way of one that is not larkspur's, and takes what that takes. None for a function
    leaves the extra cases."""

    def __init__(self, name, function, base=(), kinds=(), **more):
        Row.__init__(self, name, function, base, kinds, counts=None, keywords=True, **more)


# ---- kinds


def always(outcome):
    return lambda value: outcome


def anything(value):
    """All that there is, but that some close the display while they are made."""
    return EITHER if value.closes else OK


def number(letter):
    """A number that the interpreter's parser takes for this letter."""

    def kind(value):
        if (value.name, letter) not in values.parsed:
            return RAISES
        return EITHER if value.acts else OK

    return kind


I32, U32, FLOAT = number("i"), number("I"), number("f")


def usable(value):
    """A Surface in good state, of any depth."""
    return OK if value.surface else EITHER if value.replaced else RAISES


def paintable(value):
    """A Surface of 32 bits whose rows do not overlap."""
    if value.surface == 32 and not value.short:
        return OK
    return EITHER if value.replaced else RAISES


def fact(name, otherwise=RAISES):
    """A value with this fact."""

    def kind(value):
        return OK if getattr(value, name) else otherwise

    return kind
