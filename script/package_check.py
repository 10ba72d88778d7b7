"""Checks of the packages that script/package makes; each ends with 1 when it finds something.

package_check.py files SOURCE_PACKAGE    it holds what git holds, and what packaging adds
package_check.py same FIRST SECOND       two packages are equal to the bit; names what differs
package_check.py wheel WHEEL             it brings licence, public header and stub
"""

from __future__ import print_function

import filecmp
import os
import subprocess
import sys
import tarfile
import zipfile

ADDED_TO_SOURCES = {
    "PKG-INFO",
    "SOURCE_DATE_EPOCH",
    "larkspur.egg-info/PKG-INFO",
    "larkspur.egg-info/SOURCES.txt",
    "larkspur.egg-info/dependency_links.txt",
    "larkspur.egg-info/not-zip-safe",
    "larkspur.egg-info/top_level.txt",
}


def fail(*lines):
    sys.exit("\n".join(lines))


def members(package):
    """[(name, attributes, content)] of a .tar.gz or a wheel, in the package's order."""
    if tarfile.is_tarfile(package):
        with tarfile.open(package) as archive:
            return [
                (
                    one.name,
                    "mode %o, date %d, type %s, owner %s %d, group %s %d"
                    % (one.mode, one.mtime, one.type, one.uname, one.uid, one.gname, one.gid),
                    archive.extractfile(one).read() if one.isfile() else b"",
                )
                for one in archive
            ]
    with zipfile.ZipFile(package) as archive:
        return [
            (
                one.filename,
                "mode %o, date %s, compression %d, made on %d"
                % (one.external_attr >> 16, one.date_time, one.compress_type, one.create_system),
                archive.read(one),
            )
            for one in archive.infolist()
        ]


def differences(first, second):
    """A line for each member in which two packages differ."""
    one = {name: (attributes, content) for name, attributes, content in members(first)}
    two = {name: (attributes, content) for name, attributes, content in members(second)}
    for name in sorted(set(one) | set(two)):
        if name not in two:
            yield "%s is in the first alone" % name
        elif name not in one:
            yield "%s is in the second alone" % name
        elif one[name][1] != two[name][1]:
            yield "%s differs in its content" % name
        elif one[name][0] != two[name][0]:
            yield "%s: %s against %s" % (name, one[name][0], two[name][0])


def check_same(first, second):
    if filecmp.cmp(first, second, shallow=False):
        return
    found = list(differences(first, second))
    if not found:
        found = ["all members are equal, so their order, the packing or the header is not"]
    fail("%s and %s differ:" % (first, second), *found)


def check_files(package):
    # A clone may belong to somebody else, such as its host's user inside of a container.
    command = ["git", "-c", "safe.directory=*", "ls-files", "-z"]
    try:
        if not os.path.exists(".git"):
            raise OSError("this is no clone")
        tracked = subprocess.check_output(command).decode("utf-8").split("\0")
    except OSError as error:
        print("what the source package holds is not compared with git's list: %s" % error)
        return
    expected = set(tracked[:-1]) | ADDED_TO_SOURCES
    packed = {name.split("/", 1)[1] for name, _, _ in members(package)}
    lines = ["%s is in git and not in the package" % name for name in sorted(expected - packed)]
    lines += ["%s is in the package and not in git" % name for name in sorted(packed - expected)]
    if lines:
        fail("%s holds something else than git (MANIFEST.in tells what):" % package, *lines)


def check_wheel(wheel):
    packed = {os.path.basename(name): content for name, _, content in members(wheel)}
    for path in ("LICENSE", "include/larkspur.h", "python/larkspur.pyi"):
        with open(path, "rb") as original:
            if packed.get(os.path.basename(path)) != original.read():
                fail("%s lacks %s of this tree" % (wheel, path))


def main():
    checks = {"files": check_files, "same": check_same, "wheel": check_wheel}
    checks[sys.argv[1]](*sys.argv[2:])


if __name__ == "__main__":
    main()
