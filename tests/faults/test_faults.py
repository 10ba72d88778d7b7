"""Allocations fail one after another: each time an exception or the stated failure, no crash, no
leak, and what is drawn next is right.

LARKSPUR_FAULT_POINTS is how many points of each scene are played, 0 for all of them: each by
itself, and once more with all that come after it failing as well. What is made once in a process
has more than a thousand, mostly those of trying own loops against the libraries.
"""

import json
import os
import sys

import pygame
from support import build, subprocess_python

# pygame 2 writes into a Surface that it had no memory to make, whoever asks for one: its scenes
# would all end there.
MAKING_SURFACES = [] if pygame.version.vernum >= (2,) else ["particles", "pictures", "scale_cache"]

POINTS = int(os.environ.get("LARKSPUR_FAULT_POINTS", "3"))

FOLDER = os.path.dirname(os.path.abspath(__file__))

CODE = """
import os, sys
os.environ["LD_PRELOAD"] = %(preload)r  # processes that are started from here fail nowhere
sys.path.insert(0, %(folder)r)
import injection, %(module)s
for scene in %(scenes)r:
    injection.run(getattr(%(module)s, scene), %(points)d, %(warm)r)
"""


def play(module, scenes, warm):
    code = CODE % dict(
        preload=os.environ.get("LD_PRELOAD", ""),
        folder=FOLDER,
        module=module,
        scenes=scenes,
        points=POINTS,
        warm=warm,
    )
    library = build.path("tests", "native", "helpers", "failing.so")
    # Bound at once: to look a function up at its first call takes memory as well.
    status, out, err = subprocess_python.run(
        code, preload=[library], PYGAME_HIDE_SUPPORT_PROMPT="1", LD_BIND_NOW="1"
    )
    assert status == 0, err
    answers = [json.loads(line) for line in out.splitlines() if line.startswith("{")]
    for answer in answers:
        sys.stderr.write("%s\n" % answer["counts"])
    assert [finding for answer in answers for finding in answer["findings"]] == []
    assert len(answers) == 2 * len(scenes) and all(answer["failed"] for answer in answers)


def test_a_failing_allocation_does_no_harm():
    scenes = ["frame", "frame_with_views", "records", "backgrounds", "instance_lists", "variables"]
    play("scenes", scenes + MAKING_SURFACES, warm=True)


def test_what_is_made_once_may_fail_at_first():
    """Such as the trials of own loops, which then leave the work to the libraries."""
    play("scenes", ["frame_with_views"] + MAKING_SURFACES, warm=False)


def test_importing_fails_whole_or_goes_on():
    play("import_scene", ["importing"], warm=False)
