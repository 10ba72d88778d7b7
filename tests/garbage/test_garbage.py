"""Garbage collected wherever the interpreter may collect, its weak references' callbacks closing or
replacing the display, drawing once more or letting go what is in use.

A process of its own does each of these acts at some points of every scene; a crash of it is a
failure that names scene and point. LARKSPUR_GARBAGE_STEP sets at which: at every point for 1.
"""

import os

import pytest
from support import build, subprocess_python

from garbage import scenes

# A prime, so that loops in scenes are met at all their points.
STEP = int(os.environ.get("LARKSPUR_GARBAGE_STEP", "13"))

ACTS = ("close", "replace", "redraw", "drop")


@pytest.mark.parametrize("act", ACTS)
def test_nothing_that_a_collection_does_brings_it_down(act, tmpdir):
    log = tmpdir.join("last-point")
    log.write("")
    names = sorted(scenes.SCENES)
    status, out, err = subprocess_python.run(
        "from garbage import child; child.main(%r, %d, %r, %r)" % (act, STEP, str(log), names),
        preload=[build.path("tests/native/helpers/free_list_allocations.so")],
    )
    assert status == 0, "%s, %s:\n%s" % (act, log.read().strip(), err[-2000:])
    tried = dict(line.split()[1:] for line in out.splitlines() if line.startswith("tried "))
    assert sorted(tried) == names
    points = [int(count) for count in tried.values()]
    print("%s at %d points of %d scenes" % (act, sum(points), len(names)))
    assert min(points) >= 1
