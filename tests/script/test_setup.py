"""Setting up and packaging: messages and the check for a single SDL."""

import os
import shutil
import sys

import pytest
from support.scripts import TREE, run

ONE_SDL = os.path.join(TREE, "script", "one_sdl.py")


@pytest.mark.parametrize("name", ["setup", "lint", "package"])
def test_unknown_argument_is_refused(tree, name):
    status, output = run(["script/" + name, "--fast"], tree)
    assert status == 1
    assert "takes no arguments, got: --fast" in output


@pytest.fixture
def python_environment():
    """What the interpreter of this run needs to load larkspur."""
    names = ("PYTHONPATH", "LD_PRELOAD", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS")
    return {name: os.environ[name] for name in names if name in os.environ}


def test_pygame_and_larkspur_share_one_sdl(tmpdir, python_environment):
    status, output = run([sys.executable, ONE_SDL], tmpdir, **python_environment)
    assert status == 0
    assert "one SDL is loaded: /" in output


def test_second_sdl_is_detected(tmpdir, python_environment):
    # The loader takes libraries of one name for one, so the copy's own name is changed in it.
    copy = str(tmpdir.join("libSDL-1-0a1b2c.2.so.0"))
    with open("/proc/self/maps") as maps:
        loaded = [line.split()[-1] for line in maps if "/libSDL-1.2" in line][0]
    with open(loaded, "rb") as original, open(copy, "wb") as changed:
        changed.write(original.read().replace(b"libSDL-1.2.so.0", b"libSDL-1.9.so.0"))
    code = "import ctypes, runpy; ctypes.CDLL(%r); runpy.run_path(%r, run_name='__main__')"
    status, output = run(
        [sys.executable, "-c", code % (copy, ONE_SDL)], tmpdir, **python_environment
    )
    assert status == 1
    assert "must share one SDL, but 2 are loaded" in output
    assert copy in output


def copy_setup_py(folder):
    for name in ("setup.py", "VERSION", "README.md"):
        shutil.copy(os.path.join(TREE, name), str(folder))


def test_building_under_python3_is_refused(tmpdir):
    copy_setup_py(tmpdir)
    status, output = run(["/usr/bin/python3", "setup.py", "--version"], tmpdir)
    assert status == 1
    assert output.startswith("larkspur is an extension of Python 2.7; this is Python 3.")


def test_missing_cmake_is_told(tmpdir):
    copy_setup_py(tmpdir)
    code = (
        "import runpy, subprocess, sys\n"
        "def fail(*arguments, **options): raise OSError\n"
        "subprocess.check_output = fail\n"
        "sys.argv = ['setup.py', 'build_ext']\n"
        "runpy.run_path('setup.py', run_name='__main__')\n"
    )
    status, output = run([sys.executable, "-c", code], tmpdir)
    assert status == 1
    assert "built by CMake 3.18 or newer" in output
    assert "apt-get install cmake" in output


def test_version_is_that_of_the_file(tmpdir):
    copy_setup_py(tmpdir)
    tmpdir.join("VERSION").write("12.34.56\n")
    assert run([sys.executable, "setup.py", "--version"], tmpdir) == (0, "12.34.56\n")
