"""The plugin of script/leak-hunt, on tests that leak and on tests that do not."""

import json
import os
import subprocess
import sys

from support import native, scripts

BEGINNING = """
import ctypes, gc, subprocess, sys

import pytest

from support import host, leaks

kept = []
times = []
"""

CLEAN = """
@pytest.fixture(scope="module")
def longer():
    return []


class TestFixturesOfALongerLife(object):
    @pytest.fixture(scope="class")
    def of_class(self, longer):
        return []

    def test_a(self, longer, of_class):
        pass


class Value(object):
    pass


def test_lends():
    value = Value()
    value.itself = value
    leaks.lend_references(value, 500)
    leaks.left_behind(value)


def test_frees():
    [bytearray(1000) for _ in range(1000)]


def test_leaves_a_cycle():
    cycle = []
    cycle.append(cycle)


def test_keeps_one():
    kept[:] = [bytearray(100000)]


def test_fills_free_lists():
    dict(a=1), set([1]), list((1, 2))


def test_starts_a_process():
    subprocess.check_call(["true"])
    kept.append([])
"""

GROWING = """
def test_object():
    kept.append([])


def test_object_without_collector():
    leaks.lend_references(bytearray(999), 1)


def test_memory():
    ctypes.CDLL(None).malloc(600)


class Module(object):
    def RegisterInstancesDict(self, *arguments):
        kept.append([])


@pytest.mark.parametrize("name", ["Room_Leave", "py_draw_props", "rect"])
def test_registers(name):
    recording = host.RecordingHost(None)
    recording.recorder("rect")
    for module in (recording.gm6, recording.gmapi):
        setattr(module, name, lambda: None)
    recording.register(Module())
    recording.forget()
"""

FAILING = """
def test_at_once():
    times.append(0)
    assert len(times) > 1


def test_later(tmpdir):
    times.append(0)
    assert len(times) < 4
"""


def hunt(tmpdir, tests):
    """(exit status, lines that name tests, summary) of the hunt in a file with these tests."""
    tmpdir.join("test_it.py").write(BEGINNING + tests)
    folders = [os.path.join(scripts.TREE, *names) for names in (("tests", "memory"), ("tests",))]
    environment = dict(
        os.environ,
        PYTHONPATH=os.pathsep.join(folders + [os.environ.get("PYTHONPATH", "")]),
        LD_PRELOAD=native.build_path("helpers/plain_malloc.so"),
        GLIBC_TUNABLES="glibc.malloc.tcache_count=0:glibc.malloc.mxfast=0",
    )
    process = subprocess.Popen(
        [sys.executable, "-m", "pytest", "-q", "-p", "leak_hunt", "-p", "no:cacheprovider", "."],
        cwd=str(tmpdir),
        env=environment,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    )
    lines = process.communicate()[0].decode().splitlines()
    told = [line for line in lines if line.startswith("test_it.py::")]
    (summary,) = [line for line in lines if line.startswith("leak hunt: ")]
    return process.returncode, told, summary


def test_what_keeps_nothing_more_each_time_is_clean(tmpdir):
    status, told, summary = hunt(tmpdir, CLEAN)
    assert (status, told) == (0, [])
    assert summary.startswith("leak hunt: 6 tests; 0 grow, 0 fail when repeated; resident size ")
    assert summary.endswith(" KiB; 0 more keep what they registered, 1 more start processes")


def test_what_grows_with_each_run_is_named_with_its_growth(tmpdir):
    """But for tests that register what is kept; what is not looked for does not count."""
    status, told, summary = hunt(tmpdir, GROWING)
    assert status == 1
    assert summary.startswith("leak hunt: 6 tests; 4 grow, 0 fail when repeated; ")
    assert summary.endswith("; 2 more keep what they registered, 0 more start processes")
    names = ["object", "object_without_collector", "memory", "registers[rect]"]
    for line, name, objects in zip(told, names, [1, 0, 0, 1]):
        assert line.startswith("test_it.py::test_%s grows: objects [" % name)
        growth = [json.loads(steps) for steps in line.split("objects ")[1].split(", bytes ")]
        assert growth[0][1:] == [objects] * 9
        assert len(growth[1]) == 10 and (objects > 0 or min(growth[1]) > 0)


def test_what_fails_when_it_is_repeated_is_named_and_what_fails_at_once_not_hunted(tmpdir):
    status, told, summary = hunt(tmpdir, FAILING)
    assert status == 1
    assert told == ["test_it.py::test_later fails when it is repeated"]
    assert summary.startswith("leak hunt: 1 tests; 0 grow, 1 fail when repeated; ")
