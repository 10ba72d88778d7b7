"""Making a Python 2.7, with stand-ins for its source and for the commands that fetch it."""

import hashlib
import re
import tarfile

import pytest
from support.scripts import copy_scripts, run

# Stand in for CPython: what is installed imports all but the modules that match a pattern.
CONFIGURE = """#!/bin/sh
for option; do
    case $option in --prefix=*) echo "${option#--prefix=}" >prefix ;; esac
done
"""
MAKEFILE = """
all:
\t%s
altinstall:
\tmkdir -p "$(DESTDIR)$$(cat prefix)/bin"
\tcp python "$(DESTDIR)$$(cat prefix)/bin/python2.7"
"""
PYTHON = "#!/bin/sh\ncase $2 in %s) exit 1;; esac\n"

# Stand in for Debian's tools and curl: all packages are there, and what is fetched comes from the
# folders "archive" and "site" of the tree, when these exist.
TOOLS = """
dpkg-query() { printf ' %s:installed ' "$@"; }
apt-get() {
    case "$*" in
        indextargets*) cat targets 2>/dev/null ;;
        *" source "*)
            echo "apt fetches" >&2
            cp "$root/build/python2.7-work/apt/sources.list" "$root/build/sources.list"
            cp "$root"/archive/* . ;;
    esac
}
curl() { echo "curl fetches ${@: -1}"; cp "$root"/site/* "$root/build/python2.7-work/download"; }
export -f dpkg-query apt-get curl
export root=$PWD
exec script/build-python
"""
DEBIAN = "Debian|Debian|http://archive.example/debian/\n"


def make_source(tree, where, compiles=True, broken="nothing"):
    """Puts a tarball at `where` and its sum in the script."""
    source = tree.mkdir("source")
    for name, text in (
        ("configure", CONFIGURE),
        ("Makefile", MAKEFILE % ("true" if compiles else "echo compiler error; false")),
        ("python", PYTHON % broken),
    ):
        source.join(name).write(text)
        source.join(name).chmod(0o755)
    path = tree.join(where)
    path.dirpath().ensure(dir=True)
    with tarfile.open(str(path), "w:gz") as archive:
        archive.add(str(source), "Python-2.7.18")
    source.remove()
    script = tree.join("script", "build-python")
    sha256 = hashlib.sha256(path.read_binary()).hexdigest()
    text, changed = re.subn("(?m)^tarball_sha256=.*$", "tarball_sha256=" + sha256, script.read())
    assert changed == 1
    script.write(text)
    return sha256


def build(tree, **variables):
    return run(["/bin/bash", "-c", TOOLS], tree, **variables)


def made(tree):
    return tree.join("build", "python2.7", "bin", "python2.7").check(file=1)


def test_source_at_hand_is_taken_without_fetching(tree):
    make_source(tree, "build/Python-2.7.18.tgz")
    tree.join("targets").write(DEBIAN)
    status, output = build(tree)
    assert status == 0
    assert made(tree)
    assert "fetch" not in output
    assert not tree.join("build", "python2.7-work").check()


SOURCES = [
    (DEBIAN, "debian", "http://archive.example/debian/ bullseye main"),
    (
        "Ubuntu|Ubuntu|http://archive.example/ubuntu/\n",
        "ubuntu",
        "http://archive.example/ubuntu/ jammy universe",
    ),
]


@pytest.mark.parametrize("targets, keys, source", SOURCES)
def test_apt_fetches_from_an_older_release_with_the_archives_keys(tree, targets, keys, source):
    make_source(tree, "archive/python2.7_2.7.18.orig.tar.gz")
    others = (
        "Debian|Debian-Security|http://archive.example/security/\n"
        "Debian Backports|Debian Backports|http://archive.example/debian/\n"
        "Someone|Someone|http://someone.example/\n"
    )
    tree.join("targets").write(others + targets + targets)
    status, output = build(tree)
    assert status == 0
    assert made(tree)
    assert "curl fetches" not in output
    assert tree.join("build", "sources.list").read() == (
        "deb-src [signed-by=/usr/share/keyrings/%s-archive-keyring.gpg] %s\n" % (keys, source)
    )


@pytest.mark.parametrize(
    "targets, archive, reason",
    [
        ("", "nothing", "apt is set up for no archive"),
        (DEBIAN, "nothing", "apt gave none"),
        (DEBIAN, "something else", "that is not the released file"),
    ],
)
def test_where_apt_fails_the_makers_site_is_asked(tree, targets, archive, reason):
    make_source(tree, "site/Python-2.7.18.tgz")
    tree.join("targets").write(targets)
    if archive != "nothing":
        tree.join("archive", "python2.7_2.7.18.orig.tar.gz").write(archive, ensure=True)
    status, output = build(tree)
    assert status == 0
    assert made(tree)
    assert reason in output
    assert output.index("curl fetches") > output.index(reason)


def test_no_source_is_told_with_the_ways_out(tree):
    sha256 = make_source(tree, "elsewhere/Python-2.7.18.tgz")
    tree.join("site", "Python-2.7.18.tgz").write("<html>log in first</html>", ensure=True)
    status, output = build(tree)
    assert status == 1
    assert not made(tree)
    assert "could not get the source of CPython 2.7.18" in output
    assert sha256 in output.split("Ways out")[1]
    assert str(tree.join("build", "Python-2.7.18.tgz")) in output
    assert "LARKSPUR_PYTHON=/path" in output
    assert "python2.7-dev" not in output


def test_damaged_source_is_fetched_anew(tree):
    make_source(tree, "archive/python2.7_2.7.18.orig.tar.gz")
    tree.join("build", "Python-2.7.18.tgz").write("half of it", ensure=True)
    tree.join("targets").write(DEBIAN)
    status, output = build(tree)
    assert status == 0
    assert made(tree)
    assert "is not the released file" in output


def test_missing_modules_are_named_and_nothing_is_left_installed(tree):
    make_source(tree, "build/Python-2.7.18.tgz", broken="*ssl|*readline")
    status, output = build(tree)
    assert status == 1
    assert not made(tree)
    assert "lacks readline ssl" in output
    assert "libssl-dev" in output


def test_failing_build_shows_its_reason_and_a_later_one_succeeds(tree):
    make_source(tree, "build/Python-2.7.18.tgz", compiles=False)
    status, output = build(tree)
    assert status == 1
    assert not made(tree)
    assert "compiler error" in output
    make_source(tree, "build/Python-2.7.18.tgz")
    assert build(tree)[0] == 0
    assert made(tree)


def test_path_with_blanks_is_refused(tmpdir):
    tree = tmpdir.mkdir("a tree")
    copy_scripts(tree)
    status, output = build(tree)
    assert status == 1
    assert "can't be built in a path with blanks" in output
