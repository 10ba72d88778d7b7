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

from setuptools import Extension, setup  # noqa: E402
from setuptools.command.build_ext import build_ext  # noqa: E402

HERE = os.path.dirname(os.path.abspath(__file__))
OLDEST_CMAKE = (3, 18)


def read(name):
    with open(os.path.join(HERE, name)) as text:
        return text.read()


def find_cmake():
    """The first CMake that runs and is new enough; a version manager's shim may not run."""
    for candidate in ("cmake", "/usr/bin/cmake", "/usr/local/bin/cmake"):
        try:
            answer = subprocess.check_output([candidate, "--version"], stderr=subprocess.STDOUT)
        except (OSError, subprocess.CalledProcessError):
            continue
        version = re.search(r"version (\d+)\.(\d+)", answer.decode("utf-8", "replace"))
        if version and tuple(map(int, version.groups())) >= OLDEST_CMAKE:
            return candidate
    sys.exit(
        "larkspur is built by CMake %d.%d or newer, and none was found.\n"
        "Install it (apt-get install cmake), or run script/setup in larkspur's source tree."
        % OLDEST_CMAKE
    )


class BuildWithCMake(build_ext):
    def build_extension(self, ext):
        cmake = find_cmake()
        build = os.path.abspath(os.path.join(self.build_temp, "cmake"))
        target = os.path.dirname(os.path.abspath(self.get_ext_fullpath(ext.name)))
        if not os.path.isdir(build):
            os.makedirs(build)
        commands = (
            [cmake, HERE, "-DCMAKE_BUILD_TYPE=Release", "-DLARKSPUR_TESTS=OFF",
             "-DPython2_EXECUTABLE=" + sys.executable],
            [cmake, "--build", ".", "--parallel", str(multiprocessing.cpu_count())],
            [cmake, "--install", ".", "--prefix", target],
        )
        for command in commands:
            if subprocess.call(command, cwd=build) != 0:
                sys.exit("larkspur was not built: the messages above say why.")


setup(
    name="larkspur",
    version=read("VERSION").strip(),
    description="Native room drawing, pixel work, particles and data types for a pygame engine",
    long_description=read("README.md"),
    long_description_content_type="text/markdown",
    platforms=["Linux"],
    python_requires=">=2.7,<2.8",
    classifiers=[
        "Operating System :: POSIX :: Linux",
        "Programming Language :: C++",
        "Programming Language :: Python :: 2.7",
        "Topic :: Games/Entertainment",
    ],
    package_dir={"": "python"},
    py_modules=["larkspur_check"],
    ext_modules=[Extension("larkspur", [])],
    cmdclass={"build_ext": BuildWithCMake},
    zip_safe=False,
)
