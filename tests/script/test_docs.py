"""The script that makes the manual, with stand-ins for what makes its pages and its site."""

import re

import pytest
from support.scripts import copy_scripts, run, write_command

MAKERS = ("reference", "diagrams", "pixel_pictures", "tutorial")


@pytest.fixture
def tree(tmpdir):
    copy_scripts(tmpdir)
    write_command(tmpdir.join("script", "setup"), "echo set up")
    # Both interpreters tell which program they run, and with which arguments.
    stand_in = tmpdir.join("python")
    write_command(stand_in, '[ "$1" = -B ] && shift; echo "ran $*"; [ ! -e "$1.fails" ]')
    tmpdir.join(".venv", "bin", "python").ensure().remove()
    tmpdir.join(".venv", "bin", "python").mksymlinkto(stand_in)
    packages = re.search(r"site_packages=\((.*)\)", tmpdir.join("script", "docs").read()).group(1)
    site = tmpdir.join("build", "tools", "site")
    site.join("made-for").write(packages.replace("'", "") + "\n", ensure=True)
    write_command(
        site.join("bin", "mkdocs"),
        'echo "ran mkdocs $*"; mkdir -p build/site; touch build/site/index.html; '
        "[ ! -e mkdocs.fails ]",
    )
    tmpdir.join("docs", "make", "reference.py").write(
        "import os, sys\n"
        "print('ran docs/make/reference.py ' + ' '.join(sys.argv[1:]))\n"
        "sys.exit(os.path.exists(sys.argv[0] + '.fails'))\n",
        ensure=True,
    )
    return tmpdir


def docs(tree, *arguments):
    return run(["/bin/bash", "script/docs"] + list(arguments), tree)


def programs(output):
    """What ran, in order, without the folder."""
    return [
        line.split(None, 1)[1].replace("docs/make/", "")
        for line in output.splitlines()
        if line.startswith("ran ")
    ]


def test_all_is_made_and_then_the_site(tree):
    status, output = docs(tree)
    assert status == 0, output
    ran = [line.strip() for line in programs(output)]
    assert ran == [name + ".py" for name in MAKERS] + ["mkdocs build --quiet --strict"]
    assert "1 pages: %s/build/site/index.html" % tree in output


def test_check_reaches_each_program(tree):
    status, output = docs(tree, "--check")
    assert status == 0, output
    assert programs(output)[:-1] == [name + ".py --check" for name in MAKERS]


@pytest.mark.parametrize("name", MAKERS)
def test_stale_page_fails_the_run_and_hides_no_other(tree, name):
    tree.join("docs", "make", name + ".py.fails").ensure()
    status, output = docs(tree, "--check")
    assert status == 1
    assert len(programs(output)) == len(MAKERS) + 1
    assert "docs: the manual is not as it should be" in output


def test_dead_link_fails_the_run(tree):
    tree.join("mkdocs.fails").ensure()
    assert docs(tree)[0] == 1


@pytest.mark.parametrize("other", ["--demo", "--serve"])
def test_check_goes_with_nothing_that_makes(tree, other):
    status, output = docs(tree, "--check", other)
    assert status == 1
    assert "--check makes nothing" in output
    assert programs(output) == []
