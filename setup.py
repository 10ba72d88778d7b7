"""Builds and packages larkspur under Python 2.7.

CMake alone knows how the module is built; this hands it the interpreter and collects the result.
"""

from __future__ import print_function

import multiprocessing
import os
import re
import subprocess
import sys

if sys.version_info[:2] != (2, 7):
    sys.exit(
        "larkspur is an extension of Python 2.7; this is Python %d.%d (%s)."
        % (sys.version_info[0], sys.version_info[1], sys.executable)
    )

from distutils.sysconfig import get_python_inc  # noqa: E402

from setuptools import Extension, setup  # noqa: E402
from setuptools.command.build_ext import build_ext  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
OLDEST_CMAKE = (3, 18)


def read(*names):
    with open(os.path.join(HERE, *names)) as text:
        return text.read()


def give_up(reason):
    """Ends the build. pip shows the end of what a build prints, so the reason comes last."""
    sys.exit("larkspur was not built. %s\n%s" % (reason.strip(), read("cmake", "packages.txt")))


def version_text(command):
    """What `command --version` answers; None where it does not run, as a version manager's shim."""
    try:
        answer = subprocess.check_output([command, "--version"], stderr=subprocess.STDOUT)
    except (OSError, subprocess.CalledProcessError):
        return None
    return answer.decode("utf-8", "replace")


def find_cmake():
    """The first CMake that runs and is new enough."""
    for candidate in ("cmake", "/usr/bin/cmake", "/usr/local/bin/cmake"):
        version = re.search(r"version (\d+)\.(\d+)", version_text(candidate) or "")
        if version and tuple(map(int, version.groups())) >= OLDEST_CMAKE:
            return candidate
    give_up("It is built by CMake %d.%d or newer, and none was found." % OLDEST_CMAKE)


def generator_options():
    """CMake's options that choose make or Ninja, whichever is there."""
    if os.environ.get("CMAKE_GENERATOR"):
        return []
    for tool, generator in (("make", "Unix Makefiles"), ("ninja", "Ninja")):
        if version_text(tool):
            return ["-G", generator]
    give_up("It is built by make or ninja, and neither was found.")


class BuildWithCMake(build_ext):
    def build_extension(self, ext):
        cmake = find_cmake()
        build = os.path.abspath(os.path.join(self.build_temp, "cmake"))
        target = os.path.dirname(os.path.abspath(self.get_ext_fullpath(ext.name)))
        if not os.path.isdir(build):
            os.makedirs(build)
        missing = os.path.join(build, "missing.txt")
        if os.path.exists(missing):
            os.remove(missing)
        commands = (
            [cmake, HERE, "-DCMAKE_BUILD_TYPE=Release", "-DLARKSPUR_TESTS=OFF",
             "-DPython2_EXECUTABLE=" + sys.executable,
             "-DPython2_INCLUDE_DIR=" + get_python_inc()] + generator_options(),
            [cmake, "--build", ".", "--parallel", str(multiprocessing.cpu_count())],
            [cmake, "--install", ".", "--prefix", target],
        )
        for command in commands:
            if subprocess.call(command, cwd=build) == 0:
                continue
            if os.path.exists(missing):
                give_up(read(missing))
            give_up("This failed, and its messages are above: %s" % " ".join(command))


setup(
    name="larkspur",
    version=read("VERSION").strip(),
    description="Native room drawing, pixel work, particles and data types for a pygame engine",
    long_description=read("README.md"),
    long_description_content_type="text/markdown",
    author="the larkspur authors",
    license="MIT",
    platforms=["Linux"],
    python_requires=">=2.7,<2.8",
    classifiers=[
        "License :: OSI Approved :: MIT License",
        "Operating System :: POSIX :: Linux",
        "Programming Language :: C++",
        "Programming Language :: Python :: 2.7",
        "Topic :: Games/Entertainment",
    ],
    package_dir={"": "python"},
    py_modules=["larkspur_check"],
    ext_modules=[Extension("larkspur", [])],
    headers=["include/larkspur.h"],
    cmdclass={"build_ext": BuildWithCMake},
    zip_safe=False,
)
