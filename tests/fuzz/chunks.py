"""Runs steps in child processes, so that one that ends the process names its seed and step.

A program gives main() a function new(random) that makes an object with

    step(note)  does one step, made of the numbers of `random`, and checks what came of it; before,
                it tells note() as a text what it is about to do

such as Steps, and is then called as

    PROGRAM [--seconds N] [--steps M] [--seed S]

Each child does CHUNK steps of a seed of its own; without a number of steps or seconds this goes on
for ever. What failed is written with the command that repeats it up to the failing step; the number
of steps ends the output as libFuzzer's does.
"""

from __future__ import print_function

import argparse
import mmap
import os
import random
import struct
import subprocess
import sys
import tempfile
import time
import traceback

from hostile import assert_nothing_left_behind

CHUNK = 5000
_STEP = struct.Struct("<q")
_DOING_BYTES = 200
_ENDED = "ended"


class Steps(object):
    """Does its own methods step_...(), one of them a step; none may leave an exception behind."""

    def __init__(self, random):
        self.random = random
        names = sorted(name for name in dir(self) if name.startswith("step_"))
        self._steps = [(name[len("step_") :], getattr(self, name)) for name in names]

    def step(self, note):
        name, action = self.random.choice(self._steps)
        note(name)
        action()
        assert_nothing_left_behind("a result of " + name)
        sys.exc_clear()


def _run_chunk(new, seed, steps, end, progress):
    """Does the steps of a seed, or as many as it can until the time `end`; the file `progress`
    always tells how many are done, and what the next one is."""
    with open(progress, "r+b") as memory:
        shared = mmap.mmap(memory.fileno(), 4096)
    note = shared_text(shared)
    world = new(random.Random(seed))
    done = 0
    while done < steps and time.time() < end:
        try:
            world.step(note)
        except Exception:
            traceback.print_exc()
            return 1
        done += 1
        shared[: _STEP.size] = _STEP.pack(done)
    note(_ENDED)
    return 0


def shared_text(shared):
    """A function that notes in shared memory what a step is about to do."""

    def note(text):
        text = text.encode("ascii", "replace")[:_DOING_BYTES]
        shared[_STEP.size : _STEP.size + _DOING_BYTES] = text.ljust(_DOING_BYTES)

    return note


def _told(progress):
    """How many steps a child has done, and what it was about to do."""
    with open(progress, "rb") as memory:
        content = memory.read()
    (step,) = _STEP.unpack(content[: _STEP.size])
    return step, content[_STEP.size :][:_DOING_BYTES].decode("ascii").strip()


def _chunk_in_child(program, seed, steps, end, progress):
    """Whether a child does the steps, or what it can until `end`; says why it did not."""
    with open(progress, "wb") as memory:
        memory.write(b"\0" * 4096)
    with tempfile.TemporaryFile() as output:
        command = [sys.executable, program, "--child", progress, "--seed", str(seed)]
        status = subprocess.call(
            command + ["--steps", str(steps), "--end", repr(end)],
            stdout=output,
            stderr=subprocess.STDOUT,
        )
        step, doing = _told(progress)
        if status == 0 and doing == _ENDED:
            return True
        output.seek(0)
        sys.stdout.write(output.read().decode("utf-8", "replace")[-6000:].encode("utf-8"))
    print("FAILED: status %d in step %d of seed %d: %s" % (status, step, seed, doing))
    name = os.path.splitext(os.path.basename(program))[0]
    print("-- replay: script/fuzz --replay %s --seed %d --steps %d" % (name, seed, step + 1))
    return False


def main(new, program):
    parser = argparse.ArgumentParser()
    parser.add_argument("--seconds", type=float)
    parser.add_argument("--steps", type=int)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--child")
    parser.add_argument("--end", type=float, default=float("inf"))
    arguments = parser.parse_args()
    seed = arguments.seed
    if seed is None:
        seed = random.SystemRandom().randrange(1, 2**31)
    if arguments.child:
        sys.exit(_run_chunk(new, seed, arguments.steps, arguments.end, arguments.child))

    handle, progress = tempfile.mkstemp()
    os.close(handle)
    end = time.time() + arguments.seconds if arguments.seconds else arguments.end
    most = arguments.steps or sys.maxint
    done = 0
    succeeded = True
    print("seeds from %d on" % seed)
    while succeeded and done < most and time.time() < end:
        steps = min(CHUNK, most - done)
        succeeded = _chunk_in_child(program, seed, steps, end, progress)
        done += _told(progress)[0]
        seed += 1
        print("#%d" % done)
        sys.stdout.flush()
    os.remove(progress)
    print("stat::number_of_executed_units: %d" % done)
    sys.exit(0 if succeeded else 1)
