"""The packages: what they carry beside the module."""

import os
import sys
import zipfile

import pytest
from support.scripts import copy_build, run, write_command

# Stands in for CMake and leaves a file where the module would be installed.
CMAKE = """
case $1 in
    --version) echo cmake version 3.18.0 ;;
    --install) mkdir -p "$4" && echo built >"$4/larkspur.so" ;;
esac
"""


@pytest.fixture
def sources(tmpdir):
    """A small tree that can be packaged."""
    copy_build(tmpdir)
    write_command(tmpdir.join("bin", "cmake"), CMAKE)
    write_command(tmpdir.join("bin", "make"), "")
    tmpdir.join("include", "larkspur.h").write("/* the header */\n", ensure=True)
    return tmpdir


def package(tree, command, **variables):
    """Makes a package of the tree and gives its path."""
    variables.setdefault("PATH", "%s/bin:/usr/bin:/bin" % tree)
    status, output = run([sys.executable, "setup.py", "--quiet", command], tree, **variables)
    assert status == 0, output
    made, = tree.join("dist").listdir()
    return str(made)


def test_wheel_brings_header_licence_and_metadata(sources):
    with zipfile.ZipFile(package(sources, "bdist_wheel")) as wheel:
        names = set(wheel.namelist())
        metadata, = [name for name in names if name.endswith(".dist-info/METADATA")]
        lines = wheel.read(metadata).splitlines()
    folder, version = os.path.dirname(metadata), sources.join("VERSION").read().strip()
    assert folder == "larkspur-%s.dist-info" % version
    assert set(["larkspur.so", "larkspur-%s.data/headers/larkspur.h" % version,
                folder + "/LICENSE"]) <= names
    assert "Author: the larkspur authors" in lines
    assert "License: MIT" in lines
