"""Builds and packages larkspur under Python 2.7.

CMake alone knows how the module is built; this hands it the interpreter and collects the result.
Both packages depend on the sources and the tools alone, to the bit, whoever makes them where and
when.
"""

from __future__ import print_function

import gzip
import multiprocessing
import os
import re
import subprocess
import sys
import tarfile
import time

if sys.version_info[:2] != (2, 7):
    sys.exit(
        "larkspur is an extension of Python 2.7; this is Python %d.%d (%s)."
        % (sys.version_info[0], sys.version_info[1], sys.executable)
    )

from distutils import log
from distutils.errors import DistutilsOptionError
from distutils.sysconfig import get_python_inc

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext
from setuptools.command.build_py import build_py
from setuptools.command.sdist import sdist

HERE = os.path.dirname(os.path.abspath(__file__))
OLDEST_CMAKE = (3, 18)
# Written into the source package, so that a wheel made from it has the commit's date as well.
DATE_FILE = "SOURCE_DATE_EPOCH"


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


class ModulesAndStub(build_py):
    """Also brings what editors and type checkers look for beside the module."""

    def stub(self):
        return os.path.join(self.build_lib, "larkspur.pyi")

    def run(self):
        build_py.run(self)
        self.copy_file(os.path.join(HERE, "python", "larkspur.pyi"), self.stub())

    def get_outputs(self, include_bytecode=1):
        return build_py.get_outputs(self, include_bytecode) + [self.stub()]


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
            [
                cmake,
                HERE,
                "-DCMAKE_BUILD_TYPE=Release",
                "-DLARKSPUR_TESTS=OFF",
                "-DPython2_EXECUTABLE=" + sys.executable,
                "-DPython2_INCLUDE_DIR=" + get_python_inc(),
            ]
            + generator_options(),
            [cmake, "--build", ".", "--parallel", str(multiprocessing.cpu_count())],
            [cmake, "--install", ".", "--prefix", target],
        )
        for command in commands:
            if subprocess.call(command, cwd=build) == 0:
                continue
            if os.path.exists(missing):
                give_up(read(missing))
            give_up("This failed, and its messages are above: %s" % " ".join(command))


def source_date():
    """The date that both packages and all in them carry, in seconds since 1970.

    It is SOURCE_DATE_EPOCH where that is set, or else the commit's.
    """
    named = os.environ.get("SOURCE_DATE_EPOCH")
    if named:
        return int(named)
    if os.path.exists(os.path.join(HERE, DATE_FILE)):
        return int(read(DATE_FILE))
    try:
        # Sources without a commit of their own may lie below those of something else.
        if not os.path.exists(os.path.join(HERE, ".git")):
            raise OSError("this is no clone")
        # A clone may belong to somebody else, such as its host's user inside of a container.
        return int(
            subprocess.check_output(
                ["git", "-c", "safe.directory=*", "log", "-1", "--format=%ct"], cwd=HERE
            )
        )
    except (OSError, subprocess.CalledProcessError) as error:
        log.warn("the package is dated today, for git tells no commit's date here: %s", error)
        return int(time.time())


def packaged_mode(path):
    """Permissions that do not depend on the umask under which the file was made."""
    return 0o755 if os.stat(path).st_mode & 0o100 else 0o644


def files_below(folder):
    """All files, in an order that does not depend on the file system."""
    found = []
    for where, _, names in os.walk(folder):
        found.extend(os.path.join(where, name) for name in names)
    return sorted(found)


class SourcePackage(sdist):
    def make_release_tree(self, base_dir, files):
        sdist.make_release_tree(self, base_dir, files)
        with open(os.path.join(base_dir, DATE_FILE), "w") as recorded:
            recorded.write("%d\n" % source_date())

    def make_archive(self, base_name, kind, root_dir=None, base_dir=None, **_):
        if kind != "gztar":
            raise DistutilsOptionError("larkspur's source package is a gztar, not a %s" % kind)
        date = source_date()
        name = base_name + ".tar.gz"
        self.mkpath(os.path.dirname(name))
        with open(name, "wb") as packed:
            # The header would hold the archive's name and the time of packing.
            unpacked = gzip.GzipFile("", "wb", 9, packed, date)
            archive = tarfile.open(fileobj=unpacked, mode="w", format=tarfile.USTAR_FORMAT)
            for path in files_below(base_dir):
                member = tarfile.TarInfo(path)
                member.size = os.path.getsize(path)
                member.mode = packaged_mode(path)
                member.mtime = date
                member.uname = member.gname = "root"
                with open(path, "rb") as content:
                    archive.addfile(member, content)
            archive.close()
            unpacked.close()
        return name


commands = {"build_ext": BuildWithCMake, "build_py": ModulesAndStub, "sdist": SourcePackage}

try:
    from wheel.bdist_wheel import bdist_wheel
except ImportError:
    pass  # pip installs without making a wheel where there is no `wheel`
else:

    class Wheel(bdist_wheel):
        def run(self):
            # The dates in a wheel are taken from there.
            os.environ["SOURCE_DATE_EPOCH"] = str(source_date())
            bdist_wheel.run(self)

        def write_wheelfile(self, *arguments, **options):
            # The last file is written, the archive comes next.
            bdist_wheel.write_wheelfile(self, *arguments, **options)
            for path in files_below(self.bdist_dir):
                os.chmod(path, packaged_mode(path))

    commands["bdist_wheel"] = Wheel


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
    cmdclass=commands,
    zip_safe=False,
    # Not in the folder of the Python modules, where it would be one more thing to ignore.
    options={"egg_info": {"egg_base": os.curdir}},
)
