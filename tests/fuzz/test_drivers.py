"""The random drivers: a few steps of each, and what they say of a step that fails."""

import os
import subprocess
import sys

import pytest

FOLDER = os.path.dirname(os.path.abspath(__file__))
TESTS = os.path.dirname(FOLDER)


def run(program, *options):
    child = subprocess.Popen(
        [sys.executable, str(program)] + [str(option) for option in options],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        env=dict(
            os.environ,
            PYTHONPATH=os.pathsep.join([FOLDER, TESTS, os.environ.get("PYTHONPATH", "")]),
        ),
    )
    output = child.communicate()[0].decode("utf-8")
    return child.returncode, output


@pytest.mark.parametrize("name", ["driver", "states"])
def test_random_steps_succeed(name):
    status, output = run(os.path.join(FOLDER, name + ".py"), "--seed", 1, "--steps", 150)
    assert status == 0, output
    assert output.endswith("stat::number_of_executed_units: 150\n")


FAILING = """
import os

import chunks


class World(object):
    def __init__(self, random):
        self.steps = 0

    def step(self, note):
        note("step %%d" %% self.steps)
        if self.steps == 7:
            %s
        self.steps += 1


chunks.main(World, os.path.abspath(__file__))
"""


@pytest.mark.parametrize(
    "failure, reason",
    [("os.abort()", "status -6"), ("os._exit(0)", "status 0"), ("raise KeyError('k')", "status 1")],
)
def test_step_that_fails_is_named_with_its_seed(tmpdir, failure, reason):
    program = tmpdir.join("failing.py")
    program.write(FAILING % failure)
    status, output = run(program, "--seed", 40, "--steps", 20)
    assert status == 1
    assert "FAILED: %s in step 7 of seed 40: step 7\n" % reason in output
    assert "-- replay: script/fuzz --replay failing --seed 40 --steps 8\n" in output
    assert output.endswith("stat::number_of_executed_units: 7\n")


def test_each_child_has_a_seed_of_its_own(tmpdir):
    program = tmpdir.join("counting.py")
    program.write(FAILING.replace("chunks.main", "chunks.CHUNK = 3\nchunks.main") % "pass")
    status, output = run(program, "--seed", 1, "--steps", 8)
    assert status == 0
    assert output.splitlines()[1:] == ["#3", "#6", "#8", "stat::number_of_executed_units: 8"]


LEAVING = """
import os

import chunks
from support import host

host.install_modules()

import larkspur


class Leaving(chunks.Steps):
    def step_register(self):
        larkspur.RegisterInstancesDict({}, int, int, int)  # what it can't fetch, it leaves to say


chunks.main(Leaving, os.path.abspath(__file__))
"""


def test_step_that_leaves_an_exception_behind_fails(tmpdir):
    program = tmpdir.join("leaving.py")
    program.write(LEAVING)
    status, output = run(program, "--seed", 1, "--steps", 1)
    assert status == 1
    assert "AttributeError was left behind a result of register\n" in output
