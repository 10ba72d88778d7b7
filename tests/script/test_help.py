"""What every script answers to --help and to arguments that it does not take."""

import os

import pytest
from support.scripts import TREE, run, write_command


def commands():
    """The scripts that are called by hand, as paths below the tree."""
    paths = [os.path.join("script", name) for name in os.listdir(os.path.join(TREE, "script"))]
    paths.append(os.path.join(".ci", "run"))
    return sorted(
        path
        for path in paths
        if os.path.isfile(os.path.join(TREE, path)) and os.access(os.path.join(TREE, path), os.X_OK)
    )


# Their other arguments go to programs that know them.
PASSING_ARGUMENTS_ON = [
    os.path.join("script", name) for name in ("demo", "leak-hunt", "memcheck", "test")
]


def test_scripts_are_found():
    assert {"script/demo", "script/test", ".ci/run"} <= set(commands())


@pytest.mark.parametrize("path", commands())
def test_help_is_the_comment_at_the_head_of_the_script(tree, path):
    # Nothing is set up for it.
    write_command(tree.join("elsewhere", "nothing"), "")
    status, output = run([str(tree.join(path)), "--help"], tree.join("elsewhere"))
    head = tree.join(path).read().split("\n\n")[0].splitlines()
    assert status == 0
    assert output.splitlines() == [line[2:] for line in head[1:]]
    assert any(line.startswith(path) for line in output.splitlines()), "says how it is called"
    assert not tree.join("build").check()


@pytest.mark.parametrize("path", [path for path in commands() if path not in PASSING_ARGUMENTS_ON])
def test_unknown_argument_is_refused_and_help_is_named(tree, path):
    status, output = run([path, "--no-such-argument"], tree)
    assert status == 1
    assert len(output.splitlines()) == 1
    assert "--no-such-argument" in output
    assert output.endswith("; %s --help tells more\n" % path)
    assert not tree.join("build").check()
