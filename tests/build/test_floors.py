"""The floors of the house: who may include whom, and which headers each floor can reach at all."""

import io
import json
import os
import re

import pytest
from support import build, subprocess_python

ROOT = os.path.dirname(subprocess_python.TESTS)
SOURCES = os.path.join(ROOT, "src")


def floors():
    """The folders of src, lowest first, as the build lists them."""
    with io.open(os.path.join(SOURCES, "CMakeLists.txt"), encoding="ascii") as listing:
        return re.findall(r"^add_subdirectory\((\S+)\)$", listing.read(), re.MULTILINE)


def units():
    """Every source and header of the module, by its path from src."""
    for folder, _, names in sorted(os.walk(SOURCES)):
        for name in sorted(names):
            if name.endswith((".cpp", ".h")):
                yield os.path.relpath(os.path.join(folder, name), SOURCES)


def included_by(text):
    """Paths from src that a unit includes: those with a folder, and between <> those of ours."""
    found = re.findall(r'^\s*#\s*include\s*(["<])([^">]*/[^">]*)[">]', text, re.MULTILINE)
    return [
        path
        for opening, path in found
        if opening == '"' or os.path.exists(os.path.join(SOURCES, path))
    ]


def upward_includes(unit, text):
    """What a unit includes from a floor above its own, or from none."""
    order = floors()
    height = order.index(os.path.dirname(unit))
    return [path for path in included_by(text) if os.path.dirname(path) not in order[: height + 1]]


def test_every_folder_with_units_is_a_floor():
    folders = set(os.path.dirname(unit) for unit in units())
    assert folders == set(floors()) | {""}
    assert len(floors()) == len(set(floors()))


def test_only_the_table_of_contents_stands_above_the_floors():
    assert [unit for unit in units() if os.path.dirname(unit) == ""] == ["module.cpp"]


@pytest.mark.parametrize("unit", [unit for unit in units() if os.path.dirname(unit)])
def test_unit_includes_nothing_from_above(unit):
    with io.open(os.path.join(SOURCES, unit), encoding="ascii") as source:
        assert upward_includes(unit, source.read()) == []


@pytest.mark.parametrize(
    "line, upward",
    [
        ('#include "room/view.h"', ["room/view.h"]),
        ('  #  include "room/view.h"  // why', ["room/view.h"]),
        ('#include"room/view.h"', ["room/view.h"]),
        ("#include <room/view.h>", ["room/view.h"]),
        ('#include "../room/view.h"', ["../room/view.h"]),
        ('#include "types/room.h"', ["types/room.h"]),
        ('#include "nowhere/room.h"', ["nowhere/room.h"]),
        ('#include "core/python.h"', []),
        ('#include "base/surface.h"', []),
        ('#include "larkspur.h"', []),
        ("#include <sys/types.h>", []),
    ],
)
def test_upward_include_is_noticed(line, upward):
    assert upward_includes("core/display.cpp", "#pragma once\n%s\n" % line) == upward


def header_folders(floor):
    """Every folder in which the compiler looks for a floor's headers beside its own, by unit."""
    with open(build.path("compile_commands.json")) as database:
        commands = json.load(database)
    here = os.path.join(SOURCES, floor)
    return {
        os.path.basename(entry["file"]): re.findall(r"-(?:I|isystem) *(\S+)", entry["command"])
        for entry in commands
        if os.path.dirname(entry["file"]) == here
    }


@pytest.mark.parametrize(
    "floor, is_without",
    [
        ("base", ("Python.h",)),
        ("pixel/kernels", ("Python.h", "SDL.h")),
        ("pixel/surface", ("Python.h",)),
    ],
)
def test_floor_is_compiled_without_headers_in_reach(floor, is_without):
    by_unit = header_folders(floor)
    assert len(by_unit) == len(
        [unit for unit in units() if os.path.dirname(unit) == floor and unit.endswith(".cpp")]
    )
    for folders in by_unit.values():
        assert SOURCES in folders
        for header in is_without:
            assert [name for name in folders if os.path.exists(os.path.join(name, header))] == []


def test_floor_that_uses_python_has_its_headers_in_reach():
    for folders in header_folders("core").values():
        assert [name for name in folders if os.path.exists(os.path.join(name, "Python.h"))]
