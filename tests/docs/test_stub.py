"""The stub python/larkspur.pyi says what the live module has, and says it completely."""

import json
import os
import re
import subprocess
import types

import larkspur
import pytest
from support.scripts import TREE

STUB = os.path.join(TREE, "python", "larkspur.pyi")
READER = os.path.join(TREE, "docs", "make", "stub.py")

# What every type has: how it is made, and what the interpreter fills in of a type's attributes and
# hash. The stub may name these, and all else in a type's dictionary it must.
GENERAL_NAMES = frozenset(
    [
        "__doc__",
        "__new__",
        "__init__",
        "__getattribute__",
        "__setattr__",
        "__delattr__",
        "__hash__",
    ]
)

# Its wrong arguments go unreported: tested apart.
SILENT = "RegisterInstancesDict"


def parse(path):
    """What docs/make/stub.py, which needs Python 3, reads in a stub: (status, entries or error)."""
    process = subprocess.Popen(
        ["/usr/bin/python3", READER, str(path)],
        env=dict(os.environ, LD_PRELOAD=""),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )
    out, err = process.communicate()
    return process.returncode, err if process.returncode else json.loads(out)


def parsed(text, tmpdir):
    """parse() of a stub with this text."""
    path = tmpdir.join("larkspur.pyi")
    path.write(text)
    return parse(path)


STATUS, ENTRIES = parse(STUB)
assert STATUS == 0, ENTRIES


def of_kind(kind):
    return [entry for entry in ENTRIES if entry["kind"] == kind]


FUNCTIONS = of_kind("function")
CLASSES = [entry for entry in of_kind("class") if entry["live"]]
METHODS = [
    (entry["name"], method)
    for entry in CLASSES
    for method in entry["methods"]
    if not method["name"].startswith("__")
]


def names(entries):
    return [str(entry["name"]) for entry in entries]


def in_module():
    """The public names of the module, and its version."""
    own = [name for name in vars(larkspur) if not name.startswith("__")]
    return sorted(own + ["__version__"])


# --- The same names ------------------------------------------------------------------------------


def test_stub_has_the_names_of_the_module():
    assert sorted(names(FUNCTIONS + CLASSES + of_kind("variable"))) == in_module()


def test_stub_names_nothing_twice():
    everything = names(ENTRIES)
    assert sorted(set(everything)) == sorted(everything)


def test_names_are_of_the_stated_kind():
    for name in names(FUNCTIONS):
        assert type(getattr(larkspur, name)) is types.BuiltinFunctionType, name
    for name in names(CLASSES):
        assert type(getattr(larkspur, name)) is type, name
    for entry in of_kind("variable"):
        assert type(getattr(larkspur, entry["name"])).__name__ == entry["type"]


def test_classes_for_type_checkers_alone_are_not_in_the_module():
    hidden = [entry["name"] for entry in of_kind("class") if not entry["live"]]
    assert hidden == ["particle_type_handle", "particle_handle"]
    assert not set(hidden) & set(vars(larkspur))


@pytest.mark.parametrize("entry", CLASSES, ids=names(CLASSES))
def test_class_has_the_names_of_the_type(entry):
    stated = names(entry["members"] + entry["methods"])
    assert sorted(set(stated)) == sorted(stated)
    live = set(vars(getattr(larkspur, entry["name"])))
    assert sorted(set(stated) - GENERAL_NAMES) == sorted(live - GENERAL_NAMES)


@pytest.mark.parametrize("entry", CLASSES, ids=names(CLASSES))
def test_class_has_the_bases_and_the_kinds_of_the_type(entry):
    live = getattr(larkspur, entry["name"])
    bases = [re.sub(r"\[.*\]$", "", base.lower()) for base in entry["bases"]] or ["object"]
    assert bases == [base.__name__ for base in live.__bases__]
    data = (types.MemberDescriptorType, types.GetSetDescriptorType)
    for member in names(entry["members"]):
        assert member in GENERAL_NAMES or isinstance(vars(live)[member], data), member
    for method in names(entry["methods"]):
        assert method in GENERAL_NAMES or not isinstance(vars(live)[method], data), method


# --- The same arguments --------------------------------------------------------------------------


def refuses(function, count):
    """Whether a function refuses this number of arguments, by the words of its TypeError."""
    try:
        function(*[None] * count)
    except TypeError as error:
        return "(%d given)" % count in str(error) or (count == 0 and "no argument" in str(error))
    except Exception:
        return False  # it has looked at the arguments
    return False


def check_counts(function, entry):
    most = entry["most"]
    taken = range(entry["required"], (entry["required"] + 3 if most is None else most) + 1)
    assert [count for count in taken if refuses(function, count)] == []
    refused = [count for count in [taken[0] - 1] if count >= 0]
    refused += [] if most is None else [most + 1]
    assert [count for count in refused if not refuses(function, count)] == []


CHECKED = [entry for entry in FUNCTIONS if entry["name"] != SILENT]


@pytest.mark.parametrize("entry", CHECKED, ids=names(CHECKED))
def test_function_takes_as_many_arguments_as_stated(entry, host):
    check_counts(getattr(larkspur, entry["name"]), entry)


def test_silent_function_takes_as_many_arguments_as_stated(host):
    (entry,) = [entry for entry in FUNCTIONS if entry["name"] == SILENT]
    function = getattr(larkspur, SILENT)
    found = larkspur.InstanceList()

    def is_registered(count):
        function(*[{7: "seven"}] + [int] * (count - 1) if count else [])
        try:
            found.append("7")
        except RuntimeError:
            return False
        return True

    assert entry["required"] == entry["most"]
    counts = range(entry["required"] - 1, entry["most"] + 2)
    assert [count for count in counts if is_registered(count)] == [entry["required"]]


@pytest.mark.parametrize(
    "owner, entry",
    METHODS,
    ids=["%s.%s" % (owner, entry["name"]) for owner, entry in METHODS],
)
def test_method_takes_as_many_arguments_as_stated(owner, entry, host):
    make = getattr(larkspur, owner)
    check_counts(getattr(make(0) if owner == "GMVar" else make(), entry["name"]), entry)


@pytest.mark.parametrize("entry", FUNCTIONS, ids=names(FUNCTIONS))
def test_function_takes_no_keywords_as_stated(entry):
    stars = [one["star"] for one in entry["parameters"]]
    assert "**" not in stars
    assert stars == ["*"] or all(", /)" in signature for signature in entry["signatures"])
    with pytest.raises(TypeError, match="takes no keyword arguments"):
        getattr(larkspur, entry["name"])(**{str(entry["parameters"][0]["name"]): None})


# --- All that a reader needs ---------------------------------------------------------------------


def faults_of(entry, needs_example):
    """What a docstring lacks, in words."""
    doc = entry["doc"]
    if not doc:
        return ["no docstring"]
    sections = dict(doc["sections"])
    titles = [title for title, _ in doc["sections"]]
    order = ["Args", "Returns", "Raises", "Writes", "Example"]
    found = []
    if titles != [title for title in order if title in titles]:
        found.append("sections are %s, in order they are %s" % (titles, order))
    if not doc["summary"].endswith("."):
        found.append("the summary is no sentence")
    if entry["kind"] == "function":
        stated = [name for name, _ in sections.get("Args", [])]
        expected = [one["name"] for one in entry["parameters"]]
        if stated != expected:
            found.append("Args are %s, the parameters %s" % (stated, expected))
        returns = [signature.rpartition(" -> ")[2] for signature in entry["signatures"]]
        if (returns == ["None"]) == ("Returns" in sections):
            found.append("Returns does not fit %s" % returns)
    if needs_example and ">>> " not in sections.get("Example", ""):
        found.append("no example")
    return found


@pytest.mark.parametrize("entry", FUNCTIONS, ids=names(FUNCTIONS))
def test_function_is_described(entry):
    assert faults_of(entry, True) == []
    assert entry["group"]


@pytest.mark.parametrize("entry", of_kind("class"), ids=names(of_kind("class")))
def test_class_is_described(entry):
    assert faults_of(entry, True) == []


@pytest.mark.parametrize(
    "owner, entry",
    METHODS,
    ids=["%s.%s" % (owner, entry["name"]) for owner, entry in METHODS],
)
def test_method_is_described(owner, entry):
    assert faults_of(entry, False) == []


@pytest.mark.parametrize("entry", CLASSES, ids=names(CLASSES))
def test_members_are_described(entry):
    lacking = {member["name"]: faults_of(member, False) for member in entry["members"]}
    assert {name: faults for name, faults in lacking.items() if faults} == {}


def test_module_sets_the_examples_up():
    (module,) = of_kind("module")
    example = dict(module["doc"]["sections"])["Example"]
    assert ">>> import larkspur\n" in example


def test_stub_is_plain_text_of_our_width():
    with open(STUB) as stub:
        lines = stub.read().splitlines()
    assert [line for line in lines if len(line) > 100 or line != line.rstrip()] == []


# --- The reader ----------------------------------------------------------------------------------

SMALL = '''"""A module.

More of it.

Example:
    >>> import larkspur
"""

from typing import Any, TypeAlias, overload

_Int: TypeAlias = "int | GMVar"
_Names: TypeAlias = List[str]

# Things

@overload
def change(value: _Int, /, *others: Any) -> None:
    """Changes it.

    Args:
        value: A number,
            or two.
        others: None.

    Raises:
        ValueError: Always.

    Writes:
        "a: b": on
            standard output.
    """

@overload
def change(value: _Int, name: _Names = "x", /) -> int: ...

class GMVar(List[int]):
    # --- The members

    width: _Int
    """Pixels."""

    def __int__(self) -> int: ...
    @property
    def size(self) -> int: ...
'''


def test_reader_gives_what_the_stub_says(tmpdir):
    status, entries = parsed(SMALL, tmpdir)
    assert status == 0, entries
    module, change, variable = entries
    assert module["doc"] == {
        "summary": "A module.",
        "text": "More of it.",
        "sections": [["Example", ">>> import larkspur"]],
    }
    assert change["signatures"] == [
        "change(value: int | GMVar, /, *others: Any) -> None",
        "change(value: int | GMVar, name: List[str] = 'x', /) -> int",
    ]
    assert (change["group"], change["required"], change["most"]) == ("Things", 1, None)
    assert change["doc"]["sections"] == [
        ["Args", [["value", "A number, or two."], ["others", "None."]]],
        ["Raises", [["ValueError", "Always."]]],
        ["Writes", [["a: b", "on standard output."]]],
    ]
    assert (variable["bases"], names(variable["methods"])) == (["List[int]"], ["__int__"])
    width, size = variable["members"]
    assert (width["type"], width["writable"], width["group"]) == (
        "int | GMVar",
        True,
        "The members",
    )
    assert width["doc"]["summary"] == "Pixels."
    assert (size["type"], size["writable"], size["doc"]) == ("int", False, None)


@pytest.mark.parametrize(
    "docstring, told",
    [
        ("It.\n\n    Args:\n        value A number.\n", "f, Args: no 'name: text'"),
        ("It.\n\n    Args:\n          value: A number.\n", "f, Args: wrong indentation"),
        ("It.\n\n    Example:\n    >>> f()\n", "f, Example: a section goes on"),
    ],
)
def test_reader_refuses_what_it_does_not_understand(docstring, told, tmpdir):
    status, error = parsed('def f(value, /):\n    """%s    """\n' % docstring, tmpdir)
    assert status == 1
    assert told in error


def test_faults_are_found(tmpdir):
    text = 'def f(a: int, b: int, /) -> int:\n    """Does it\n\n    Args:\n        b: B.\n    """\n'
    status, (module, function) = parsed(text, tmpdir)
    assert faults_of(module, True) == ["no docstring"]
    assert [fault.replace("u'", "'") for fault in faults_of(function, True)] == [
        "the summary is no sentence",
        "Args are ['b'], the parameters ['a', 'b']",
        "Returns does not fit ['int']",
        "no example",
    ]
