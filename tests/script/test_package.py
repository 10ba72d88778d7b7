"""The packages: what they carry beside their files, and the checks of script/package."""

import io
import os
import struct
import sys
import tarfile
import zipfile

import pytest
from support.scripts import TREE, copy_build, run, write_command

CHECK = os.path.join(TREE, "script", "package_check.py")

# 2001-09-09 01:46:40, and as a wheel writes it.
DATE = 1000000000
WHEEL_DATE = (2001, 9, 9, 1, 46, 40)

# Stands in for CMake and leaves a file where the module would be installed.
CMAKE = """
case $1 in
    --version) echo cmake version 3.18.0 ;;
    --install) mkdir -p "$4" && echo built >"$4/larkspur.so" ;;
esac
"""


@pytest.fixture
def sources(tmpdir):
    """A small tree that can be packaged, readable by its owner alone."""
    copy_build(tmpdir)
    write_command(tmpdir.join("bin", "cmake"), CMAKE)
    write_command(tmpdir.join("bin", "make"), "")
    tmpdir.join("include", "larkspur.h").write("/* the header */\n", ensure=True)
    tmpdir.join("script", "setup").write("#!/bin/bash\n", ensure=True)
    tmpdir.join("MANIFEST.in").write("include CMakeLists.txt\ngraft script\ngraft include\n")
    for path in tmpdir.visit(lambda path: path.isfile()):
        path.chmod(0o600)
        if os.getuid() == 0:
            os.chown(str(path), 1234, 1234)
    for path in (
        tmpdir.join("script", "setup"),
        tmpdir.join("bin", "cmake"),
        tmpdir.join("bin", "make"),
    ):
        path.chmod(0o700)
    return tmpdir


def package(tree, command, **variables):
    """Makes a package of the tree and gives its path."""
    variables.setdefault("PATH", "%s/bin:/usr/bin:/bin" % tree)
    variables.setdefault("SOURCE_DATE_EPOCH", str(DATE))
    status, output = run([sys.executable, "setup.py", "--quiet", command], tree, **variables)
    assert status == 0, output
    (made,) = tree.join("dist").listdir()
    return str(made)


def test_source_package_does_not_tell_who_made_it_and_when(sources):
    with tarfile.open(package(sources, "sdist")) as archive:
        told = set(
            (member.uid, member.gid, member.uname, member.gname, member.mtime) for member in archive
        )
        modes = {member.name.partition("/")[2]: member.mode for member in archive}
    assert told == set([(0, 0, "root", "root", DATE)])
    assert modes.pop("script/setup") == 0o755
    assert set(modes.values()) == set([0o644])


def test_source_package_is_in_order(sources):
    with tarfile.open(package(sources, "sdist")) as archive:
        names = archive.getnames()
    assert names == sorted(names)


def test_header_of_the_packing_holds_the_date_and_no_name(sources):
    with open(package(sources, "sdist"), "rb") as packed:
        magic, method, flags, date = struct.unpack("<HBBI", packed.read(8))
    assert (magic, method, flags, date) == (0x8B1F, 8, 0, DATE)


def test_other_kinds_of_source_package_are_refused(sources):
    status, output = run([sys.executable, "setup.py", "sdist", "--formats", "zip"], sources)
    assert status == 1
    assert "larkspur's source package is a gztar, not a zip" in output


def recorded_date(archive_path):
    with tarfile.open(archive_path) as archive:
        (name,) = [name for name in archive.getnames() if name.endswith("/SOURCE_DATE_EPOCH")]
        recorded = int(archive.extractfile(name).read())
        assert archive.getmember(name).mtime == recorded
    return recorded


def test_date_is_the_commits(sources):
    sources.mkdir(".git")
    write_command(
        sources.join("bin", "git"),
        '[ "$*" = "-c safe.directory=* log -1 --format=%ct" ] && echo 1234567890',
    )
    assert recorded_date(package(sources, "sdist", SOURCE_DATE_EPOCH=None)) == 1234567890


def test_commit_of_a_tree_around_is_not_ours(sources):
    write_command(sources.join("bin", "git"), "echo 1234567890")
    before = int(os.stat(str(sources.join("VERSION"))).st_mtime)
    assert recorded_date(package(sources, "sdist", SOURCE_DATE_EPOCH=None)) >= before


def test_date_in_the_environment_goes_first(sources):
    sources.join("SOURCE_DATE_EPOCH").write("1234567890\n")
    assert recorded_date(package(sources, "sdist")) == DATE


def test_date_of_the_source_package_goes_before_a_commits(sources):
    sources.join("SOURCE_DATE_EPOCH").write("%d\n" % DATE)
    sources.mkdir(".git")
    write_command(sources.join("bin", "git"), "echo 1234567890")
    assert recorded_date(package(sources, "sdist", SOURCE_DATE_EPOCH=None)) == DATE


def test_unknown_date_is_told(sources):
    status, output = run([sys.executable, "setup.py", "--quiet", "sdist"], sources)
    assert status == 0
    assert "the package is dated today" in output


def test_wheel_does_not_tell_who_made_it_and_when(sources):
    sources.join("SOURCE_DATE_EPOCH").write("%d\n" % DATE)
    with zipfile.ZipFile(package(sources, "bdist_wheel", SOURCE_DATE_EPOCH=None)) as wheel:
        told = set(
            (member.date_time, member.external_attr >> 16)
            for member in wheel.infolist()
            if not member.filename.endswith("/RECORD")
        )
    assert told == set([(WHEEL_DATE, 0o100644)])


def test_wheel_brings_stub_header_licence_and_metadata(sources):
    with zipfile.ZipFile(package(sources, "bdist_wheel")) as wheel:
        names = set(wheel.namelist())
        (metadata,) = [name for name in names if name.endswith(".dist-info/METADATA")]
        lines = wheel.read(metadata).splitlines()
    folder, version = os.path.dirname(metadata), sources.join("VERSION").read().strip()
    assert folder == "larkspur-%s.dist-info" % version
    assert (
        set(
            [
                "larkspur.so",
                "larkspur.pyi",
                "larkspur-%s.data/headers/larkspur.h" % version,
                folder + "/LICENSE",
            ]
        )
        <= names
    )
    assert "Author: the larkspur authors" in lines
    assert "License: MIT" in lines


def test_install_without_a_wheel_knows_the_stub(sources):
    """pip installs so where there is no `wheel`, and removes what was recorded."""
    command = [sys.executable, "setup.py", "--quiet", "install", "--root", "installed"]
    command += ["--single-version-externally-managed", "--record", "record"]
    status, output = run(command, sources, PATH="%s/bin:/usr/bin:/bin" % sources)
    assert status == 0, output
    (recorded,) = [line for line in sources.join("record").readlines() if ".pyi" in line]
    installed = sources.join("installed").join(recorded.strip())
    assert os.path.basename(recorded.strip()) == "larkspur.pyi"
    assert installed.read() == sources.join("python", "larkspur.pyi").read()


# --- script/package_check.py ---------------------------------------------------------------------


def check(folder, *arguments, **variables):
    return run([sys.executable, CHECK] + list(arguments), folder, **variables)


def write_tar(path, entries, **attributes):
    """A .tar.gz of {name: content}; attributes are those of every member."""
    archive = tarfile.open(str(path), "w:gz")
    for name, content in entries:
        member = tarfile.TarInfo(name)
        member.size = len(content)
        for attribute, value in attributes.items():
            setattr(member, attribute, value)
        archive.addfile(member, io.BytesIO(content))
    archive.close()
    return str(path)


def write_zip(path, entries, mode=0o644):
    with zipfile.ZipFile(str(path), "w") as archive:
        for name, content in entries:
            member = zipfile.ZipInfo(name, WHEEL_DATE)
            member.external_attr = mode << 16
            archive.writestr(member, content)
    return str(path)


ENTRIES = [("a/one", b"1"), ("a/two", b"2")]
DIFFERENCES = [
    (write_tar, ENTRIES[:1], {}, "a/two is in the first alone"),
    (write_tar, ENTRIES + [("b", b"")], {}, "b is in the second alone"),
    (write_tar, [ENTRIES[0], ("a/two", b"3")], {}, "a/two differs in its content"),
    (write_tar, ENTRIES, {"mode": 0o600}, "a/one: mode 644, date 0"),
    (
        write_tar,
        ENTRIES,
        {"mtime": 7},
        "date 0, type 0, owner  0, group  0 against mode 644, date 7",
    ),
    (write_tar, ENTRIES, {"uid": 7}, "owner  7"),
    (write_tar, ENTRIES, {"gname": "users"}, "group users 0"),
    (write_tar, ENTRIES[::-1], {}, "all members are equal"),
    (write_zip, [ENTRIES[0], ("a/two", b"3")], {}, "a/two differs in its content"),
    (write_zip, ENTRIES, {"mode": 0o600}, "a/one: mode 644"),
    (write_zip, ENTRIES[::-1], {}, "all members are equal"),
]


@pytest.mark.parametrize("write, entries, attributes, line", DIFFERENCES)
def test_difference_of_two_packages_is_named(tmpdir, write, entries, attributes, line):
    first = write(tmpdir.join("first"), ENTRIES)
    second = write(tmpdir.join("second"), entries, **attributes)
    status, output = check(tmpdir, "same", first, second)
    assert status == 1
    assert output.startswith("%s and %s differ:" % (first, second))
    assert line in output


def test_equal_packages_pass(tmpdir):
    first = write_zip(tmpdir.join("first"), ENTRIES)
    assert check(tmpdir, "same", first, write_zip(tmpdir.join("second"), ENTRIES)) == (0, "")


ADDED = [
    "PKG-INFO",
    "SOURCE_DATE_EPOCH",
    "larkspur.egg-info/PKG-INFO",
    "larkspur.egg-info/SOURCES.txt",
    "larkspur.egg-info/dependency_links.txt",
    "larkspur.egg-info/not-zip-safe",
    "larkspur.egg-info/top_level.txt",
]


@pytest.mark.parametrize(
    "packed, line",
    [
        (["one", "two"], None),
        (["one"], "two is in git and not in the package"),
        (["one", "two", "three"], "three is in the package and not in git"),
    ],
)
def test_source_package_holds_what_git_holds(tmpdir, packed, line):
    tmpdir.mkdir(".git")
    write_command(
        tmpdir.join("bin", "git"),
        '[ "$*" = "-c safe.directory=* ls-files -z" ] && printf \'one\\0two\\0\'',
    )
    archive = write_tar(
        tmpdir.join("package"), [("larkspur-1/" + name, b"") for name in ADDED + packed]
    )
    status, output = check(tmpdir, "files", archive, PATH="%s/bin:/usr/bin:/bin" % tmpdir)
    assert status == (1 if line else 0)
    assert (line or "") in output


@pytest.mark.parametrize("missing", ["clone", "git"])
def test_files_that_can_not_be_compared_are_told(tmpdir, missing):
    archive = write_tar(tmpdir.join("package"), ENTRIES)
    if missing == "git":
        tmpdir.mkdir(".git")
    status, output = check(tmpdir, "files", archive, PATH=str(tmpdir))
    assert status == 0
    assert output.startswith("what the source package holds is not compared with git's list: ")
    assert ("no clone" in output) == (missing == "clone")


LICENSE, HEADER, STUB = ("x/LICENSE", b"MIT"), ("x/larkspur.h", b"int"), ("larkspur.pyi", b"x: int")


@pytest.mark.parametrize(
    "entries, missing",
    [
        ([LICENSE, HEADER, STUB], None),
        ([HEADER, STUB], "LICENSE"),
        ([LICENSE, STUB], "include/larkspur.h"),
        ([LICENSE, ("x/larkspur.h", b"old"), STUB], "include/larkspur.h"),
        ([LICENSE, HEADER], "python/larkspur.pyi"),
        ([LICENSE, HEADER, ("larkspur.pyi", b"old")], "python/larkspur.pyi"),
    ],
)
def test_wheel_without_licence_header_or_stub_is_refused(tmpdir, entries, missing):
    tmpdir.join("LICENSE").write("MIT")
    tmpdir.join("include", "larkspur.h").write("int", ensure=True)
    tmpdir.join("python", "larkspur.pyi").write("x: int", ensure=True)
    wheel = write_zip(tmpdir.join("wheel"), entries)
    expected = (1, "%s lacks %s of this tree\n" % (wheel, missing)) if missing else (0, "")
    assert check(tmpdir, "wheel", wheel) == expected
