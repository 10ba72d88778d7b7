"""The run of all checks, with stand-ins for the scripts that it calls."""

import re

from support.scripts import run, write_command

STAGES = [
    "setup",
    "test",
    "pygame2",
    "sdl-compat",
    "sanitize",
    "fuzz",
    "lint",
    "docs",
    "instructions",
    "package",
    "demo",
    "bare",
]


def run_ci(tree, **failing):
    """Runs .ci/run on scripts that succeed; those in `failing` do what is given instead."""
    for name in ("setup", "test", "fuzz", "lint", "docs", "bench", "package", "demo", "test-bare"):
        write_command(tree.join("script", name), failing.get(name, 'echo "ran %s $*"' % name))
    return run(["/bin/bash", ".ci/run"], tree)


def test_stages_run_in_order(tree):
    status, output = run_ci(tree)
    assert status == 0
    headlines = [
        line.split()[1].rstrip(":") for line in output.splitlines() if line.startswith("=== ")
    ]
    started = [name for name in headlines if name in STAGES]
    assert started == [name for stage in STAGES for name in (stage, stage)]
    assert "ran test --pygame 2.0.3" in output
    assert "ran test --sdl-compat" in output
    assert "ran test --sanitize" in output
    assert "ran docs --check" in output
    assert "ran bench --instructions" in output
    assert "ran demo --headless --frames 120 --check" in output
    assert "ran test-bare --python-only" in output


def test_each_stage_tells_its_time(tree):
    output = run_ci(tree)[1]
    for name in STAGES:
        assert re.search("^%s: ok, [0-9]+ s$" % name, output, re.MULTILINE)


def test_failing_stage_is_named_and_its_end_repeated(tree):
    status, output = run_ci(tree, lint="echo the reason; exit 3")
    assert status == 1
    assert "lint: FAILED with status 3" in output
    assert output.count("the reason") == 2
    assert output.rindex("the reason") > output.index("ran demo")


def test_later_stages_run_after_a_failure(tree):
    output = run_ci(tree, test="exit 1")[1]
    assert "ran lint" in output
    assert "demo: ok" in output


def test_nothing_runs_after_a_failing_setup(tree):
    status, output = run_ci(tree, setup="echo no network; exit 1")
    assert status == 1
    assert output.count("no network") == 2
    assert "ran test" not in output


def test_scripts_know_that_it_is_ci_and_get_no_input(tree):
    output = run_ci(tree, test='echo "CI is $CI"; read -r line || echo no input')[1]
    assert "CI is true" in output
    assert "no input" in output


def test_runs_twice_in_a_row(tree):
    assert run_ci(tree)[0] == 0
    assert run_ci(tree)[0] == 0


def test_hanging_stage_is_killed_with_its_children(tree):
    run_all = tree.join(".ci", "run")
    text, changed = re.subn("(?m)^stage test [0-9]+ ", "stage test 0.005 ", run_all.read())
    assert changed == 1
    run_all.write(text)
    stuck = (
        "[ $# = 0 ] || exit 0; echo began; "
        "bash -c \"trap '' TERM; sleep 60; echo went on\"; echo went on"
    )
    status, output = run_ci(tree, test=stuck)
    assert status == 1
    assert "test was killed, after 0.005 minutes at the latest" in output
    assert "test: FAILED with status 137" in output
    assert "went on" not in output
    assert "demo: ok" in output
