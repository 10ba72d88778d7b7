"""Counts the instructions of fixed scenes and judges them by the counts that are kept.

    python bench/instructions/count.py [--keep | --older DIRECTORY]

script/bench --instructions calls it. A scene that takes over 3 % more instructions than is kept in
bench/instructions.txt fails. Counts hold for one compiler, processor and set of libraries: where
those differ from what the file names, it ends with status 3, and is called again with the directory
of a module of the commit that kept the counts. What that takes here is judged by then.
"""

from __future__ import division, print_function

import argparse
import os
import re
import shutil
import subprocess
import sys

import judging

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
KEPT = os.path.join(ROOT, "bench", "instructions.txt")
BUILD = os.path.join(ROOT, "build", "release")
WORK = os.path.join(ROOT, "build", "instructions")
KEPT_ELSEWHERE = 3  # the status that script/bench waits for
COUNTED = "larkspur_counted_scene"  # in counted.c


def run(command, log, **settings):
    """Runs a command; its output goes to a file and is shown where the command fails."""
    with open(log, "w") as output:
        status = subprocess.call(command, stdout=output, stderr=subprocess.STDOUT, **settings)
    if status != 0:
        with open(log) as output:
            sys.stderr.write(output.read())
        sys.exit("this command failed, its output is above: %s" % " ".join(command))


def count(module_directory):
    """(surroundings, counts) of the module in a directory, as judging.read_kept() gives them."""
    folder = os.path.join(WORK, "counts")
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    log = os.path.join(folder, "log")
    # Nothing else of the environment: its length moves the stack.
    environment = {
        # Where the C library repeats one instruction, callgrind counts each byte as one.
        "GLIBC_TUNABLES": "glibc.cpu.x86_rep_movsb_threshold=1000000000:"
        "glibc.cpu.x86_rep_stosb_threshold=1000000000",
        "LC_ALL": "C",
        "LD_BIND_NOW": "1",  # no symbol is looked up within a scene
        "PATH": "/usr/bin:/bin",
        "PYGAME_HIDE_SUPPORT_PROMPT": "1",
        "PYTHONDONTWRITEBYTECODE": "1",
        "PYTHONHASHSEED": "0",
        "PYTHONPATH": os.pathsep.join(
            [module_directory, os.path.join(BUILD, "bench", "instructions")]
        ),
        "SDL_AUDIODRIVER": "dummy",
        "SDL_VIDEODRIVER": "dummy",
    }
    valgrind = [
        "valgrind",
        "--tool=callgrind",
        "--quiet",
        "--callgrind-out-file=" + os.path.join(folder, "counts"),
        "--collect-atstart=no",
        "--toggle-collect=" + COUNTED,
        "--dump-after=" + COUNTED,
    ]
    run(valgrind + [sys.executable, os.path.join(HERE, "scenes.py")], log, env=environment)
    with open(log) as output:
        lines = output.read().splitlines()
    surroundings = dict(line.split(": ", 1) for line in lines if ": " in line)
    surroundings["valgrind"] = subprocess.check_output(["valgrind", "--version"]).decode().strip()
    names = [line for line in lines if ": " not in line]
    # callgrind numbers what it writes from 1; the rest of the run follows in one more file.
    counts = [
        (name, total_of(os.path.join(folder, "counts.%d" % number)))
        for number, name in enumerate(names, 1)
    ]
    return surroundings, counts


def total_of(path):
    with open(path) as dump:
        return int(re.search("^totals: ([0-9]+)", dump.read(), re.MULTILINE).group(1))


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--keep", action="store_true", help="write the counts into the file anew")
    parser.add_argument("--older", metavar="DIRECTORY", help="judge by the module there")
    options = parser.parse_args()

    surroundings, counts = count(BUILD)
    if options.keep:
        with open(KEPT, "w") as kept:
            kept.write(judging.text_of(surroundings, counts))
        print("-- kept in %s" % KEPT)
        return 0
    if options.older:
        kept_counts = count(options.older)[1]
    else:
        with open(KEPT) as kept:
            kept_surroundings, kept_counts = judging.read_kept(kept.read())
        differences = judging.differences(kept_surroundings, surroundings)
        if differences:
            print("-- counts were kept elsewhere; the commit that kept them is counted here:")
            print("\n".join("   " + difference for difference in differences))
            return KEPT_ELSEWHERE
    faults, lines = judging.judge(dict(kept_counts), counts)
    print("\n".join(lines))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
