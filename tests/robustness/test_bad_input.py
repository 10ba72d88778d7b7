"""Nothing that is passed in brings the module down: see robustness/__init__.py for the table."""

from __future__ import print_function

import os
import re

import larkspur
from support import build, elf, records, subprocess_python

from robustness import native_rows, type_rows

ROOT = os.path.dirname(subprocess_python.TESTS)

# One case in so many is tried by default, always the same ones; fewer under the sanitizers, where a
# child takes several times as long. "each" or 1 tries all.
IS_SANITIZED = os.path.basename(os.path.normpath(build.path())) == "sanitize"
DEFAULT = "100" if IS_SANITIZED else "25"


def test_every_call_comes_to_what_its_row_states(capsys):
    mode = os.environ.get("LARKSPUR_ROBUSTNESS", DEFAULT)
    status, out, err = subprocess_python.run(
        "import sys\nfrom robustness import runner\nsys.exit(runner.main([]))",
        LARKSPUR_ROBUSTNESS=mode,
        PYGAME_HIDE_SUPPORT_PROMPT="1",
    )
    lines = out.splitlines()
    failures = [line for line in lines if line.startswith("FAILED")]
    assert not failures, "%d failures, the first are\n%s" % (
        len(failures),
        "\n".join(failures[:40]),
    )
    assert status == 0, err
    with capsys.disabled():
        print("\nbad input:", lines[-1])
    assert int(lines[-1].split()[0]) > (5000 if IS_SANITIZED else 20000)


def covered():
    from robustness import runner

    return [name for row in runner.all_rows() for name in row.covers]


def shown_names():
    """Everything in the module and in the dictionaries of its types, and the slots for the
    collector, which are in none."""
    names = []
    for name, thing in vars(larkspur).items():
        if isinstance(thing, type):
            names += ["%s.%s" % (name, attribute) for attribute in vars(thing)]
            names.append(name)
        else:
            names.append(name)
    return names


# Names without a row, each with the reason.
LEFT_OUT = dict.fromkeys("__doc__ __file__ __name__ __package__ __version__".split(), "a text")
LEFT_OUT.update(("%s.__doc__" % type_rows.name_of(type_), "a text") for type_ in type_rows.TYPES)


def test_every_name_of_the_module_and_of_its_types_has_a_row():
    without_row = set(shown_names()) - set(covered())
    assert sorted(without_row) == sorted(LEFT_OUT)


def test_every_slot_for_the_collector_has_a_row():
    for type_ in type_rows.TYPES:
        if (
            records.type_record(type_).flags & records.HAVE_GC
            and type_ is not larkspur.InstanceList
        ):
            for slot in ("tp_clear", "tp_traverse"):
                assert "%s.%s" % (type_rows.name_of(type_), slot) in covered()


def exported_functions():
    """Names of the exported functions, as the header declares them and the library has them."""
    with open(os.path.join(ROOT, "include", "larkspur.h")) as header:
        text = re.sub(r"/\*.*?\*/", "", header.read(), flags=re.DOTALL)
    declared = re.findall(r"^LARKSPUR_EXPORT[^;(]*?(\w+)\s*\(", text, re.MULTILINE)
    exported = elf.defined_names(larkspur.__file__, elf.DYNSYM)
    return [name for name in declared + ["initlarkspur"] if name in exported]


def test_every_exported_function_has_a_row():
    names = set(covered())
    # Some go by the name of a function of the module; what is native of these has rows of its own.
    needed = set(
        "native " + name if name in vars(larkspur) else name
        for name in exported_functions()
        if name not in native_rows.LEFT_OUT
    )
    assert sorted(needed - names) == []
    assert sorted(set(native_rows.LEFT_OUT) - set(exported_functions())) == []
