"""What `pip install` says last where something is missing that building needs."""

import os
import sys

import pytest
from support.scripts import TREE, copy_build, run, write_command

# Runs setup.py after code that changes what it finds.
RUN_SETUP = """
import runpy, sys
%s
sys.argv = ["setup.py", "build_ext"]
runpy.run_path("setup.py", run_name="__main__")
"""

NO_COMMAND = """
import subprocess
def no_command(*arguments, **options):
    raise OSError("no such command")
subprocess.check_output = no_command
"""

OLD_CMAKE_EVERYWHERE = """
import subprocess
subprocess.check_output = lambda *arguments, **options: b"cmake version 3.13.4"
"""

NO_HEADERS = """
import distutils.sysconfig
distutils.sysconfig.get_python_inc = lambda *arguments, **options: "/nonexistent"
"""

# CMake looks for programs in Debian's folders as well, whatever the path is.
CMAKE_WITHOUT_PKG_CONFIG = """
case $1 in
    --*) exec /usr/bin/cmake "$@" ;;
    *) exec /usr/bin/cmake "$@" -DPKG_CONFIG_EXECUTABLE=/nonexistent ;;
esac
"""

PACKAGES = {
    "Debian, Ubuntu:": "cmake g++ make pkg-config libsdl1.2-dev libsdl-gfx1.2-dev",
    "Fedora:": "cmake gcc-c++ make pkgconf-pkg-config SDL-devel SDL_gfx-devel",
    "Arch:": "cmake gcc make pkgconf sdl12-compat sdl_gfx",
}


@pytest.fixture
def build(tmpdir):
    """A tree to build, without sources: configuring it ends where the first would be read."""
    copy_build(tmpdir)
    return tmpdir


def reason(build, prelude="", **variables):
    """Why a build fails, by the last paragraph that it prints; the packages follow the reason."""
    variables.setdefault("PATH", "%s/bin:/usr/bin:/bin" % build)
    status, output = run([sys.executable, "-c", RUN_SETUP % prelude], build, **variables)
    assert status == 1
    text, told, packages = output.rpartition("What building larkspur needs")
    assert told
    by_system = {
        line.partition(":")[0].strip() + ":": line.split()[-len(PACKAGES[system].split()) :]
        for line in packages.splitlines()
        for system in PACKAGES
        if line.strip().startswith(system)
    }
    assert {system: " ".join(names) for system, names in by_system.items()} == PACKAGES
    last = text.strip().rpartition("larkspur was not built. ")
    assert last[1]
    return last[2]


@pytest.mark.parametrize("prelude", [NO_COMMAND, OLD_CMAKE_EVERYWHERE])
def test_cmake_that_is_missing_or_old(build, prelude):
    assert reason(build, prelude) == "It is built by CMake 3.18 or newer, and none was found."


def test_cmake_that_does_not_run_is_passed_over(build):
    write_command(build.join("bin", "cmake"), "exit 127")
    write_command(build.join("bin", "make"), "exit 127")
    write_command(build.join("bin", "ninja"), "exit 127")
    # It goes on to what comes after CMake.
    assert "make or ninja" in reason(build)


def test_neither_make_nor_ninja(build):
    write_command(build.join("bin", "cmake"), "echo cmake version 3.18.0")
    assert reason(build, PATH=str(build.join("bin"))) == (
        "It is built by make or ninja, and neither was found."
    )


@pytest.mark.parametrize("variable, language", [("CC", "C"), ("CXX", "C++")])
def test_no_compiler(build, variable, language):
    write_command(build.join("bin", "broken"), "exit 1")
    text = reason(build, **{variable: str(build.join("bin", "broken"))})
    assert text == "No working %s compiler was found (%s names one)." % (language, variable)


def test_compiler_without_cpp17(build):
    old = build.join("bin", "old")
    write_command(old, 'exec g++ -U__GNUC__ -D__GNUC__=4 -U__GNUC_MINOR__ -D__GNUC_MINOR__=9 "$@"')
    assert reason(build, CXX=str(old)).startswith("The C++ compiler %s (GNU 4.9." % old)


def test_no_python_headers(build):
    text = reason(build, NO_HEADERS)
    assert text.startswith("No Python 2.7 with its headers (Python.h) was found")
    for package in ("python2.7-dev", "python2.7 (Fedora)", "python2 (Arch"):
        assert package in text


def test_no_pkg_config(build):
    write_command(build.join("bin", "cmake"), CMAKE_WITHOUT_PKG_CONFIG)
    assert reason(build) == "pkg-config was not found. It tells where SDL is."


def test_no_sdl(build):
    text = reason(build, PKG_CONFIG_LIBDIR="/nonexistent")
    assert text == "SDL 1.2 with its headers was not found: pkg-config knows no module sdl."


def test_no_sdl_gfx(build):
    build.join("known", "sdl.pc").write(
        "Name: sdl\nDescription: a stand-in\nVersion: 1.2.15\n", ensure=True
    )
    text = reason(build, PKG_CONFIG_LIBDIR=str(build.join("known")))
    assert text == "SDL_gfx with its headers was not found: pkg-config knows no module SDL_gfx."


def test_any_other_failure_names_the_command(build):
    text = reason(build)
    assert text.startswith("This failed, and its messages are above: ")
    assert str(build) in text


def test_reason_of_an_earlier_build_is_forgotten(build):
    # Both builds use the same folder.
    assert reason(build, PKG_CONFIG_LIBDIR="/nonexistent").startswith("SDL")
    assert reason(build).startswith("This failed")


@pytest.mark.parametrize("path", ["docs/platforms.md", "python/larkspur_check.py"])
def test_packages_are_the_same_wherever_they_are_named(path):
    with open(os.path.join(TREE, "cmake", "packages.txt")) as packages:
        lines = packages.read().splitlines()[1:]
    with open(os.path.join(TREE, path)) as text:
        named = " ".join(text.read().split())
    for line in lines:
        assert " ".join(line.split()) in named
