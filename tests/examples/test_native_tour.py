"""The calls of all exported functions, run as a reader runs them."""

import os
import subprocess
import sys

from support import build

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SECTIONS = [
    "the module",
    "shared variables",
    "host access",
    "particles",
    "colours",
    "pixels",
    "sprite scale cache",
    "room drawing",
    "diagnostics",
]


def test_the_calls_hold(tmpdir):
    folders = [build.path(), build.path("examples", "native")]
    environment = dict(os.environ, PYTHONPATH=os.pathsep.join(folders + sys.path))
    environment.pop("DISPLAY", None)
    environment["PYGAME_HIDE_SUPPORT_PROMPT"] = "1"
    program = os.path.join(ROOT, "examples", "native", "show_tour.py")
    output = subprocess.check_output(
        [sys.executable, program], cwd=str(tmpdir), env=environment, stderr=subprocess.STDOUT
    )
    shown = [line.split(":")[0] for line in output.splitlines() if ":" in line]
    assert shown == SECTIONS
    assert tmpdir.join("debug.log").read() == "larkspur: a line of its own\n"
    assert tmpdir.join("logfile.txt").read() == "just these bytes"
