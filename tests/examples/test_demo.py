"""The demo as a command."""
import os
import subprocess
import sys

import pytest

EXAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir,
                        "examples")


def run(*arguments, **environment):
    """(exit status, output, error output) of demo.py in this environment, without a display."""
    settings = dict(os.environ, **environment)
    if "DISPLAY" not in environment:
        settings.pop("DISPLAY", None)
    process = subprocess.Popen([sys.executable, os.path.join(EXAMPLES, "demo.py")] +
                               list(arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               env=settings)
    output, errors = process.communicate()
    return process.returncode, output.decode("utf-8"), errors.decode("utf-8")


def first_on_path(folder):
    return os.pathsep.join([str(folder)] + os.environ.get("PYTHONPATH", "").split(os.pathsep))


def test_check_writes_right_pictures(tmpdir):
    status, output, errors = run("--check", "--frames", "40", "--output", str(tmpdir))
    assert status == 0, output + errors
    files = sorted(path.basename for path in tmpdir.listdir())
    assert files[0] == "contact_sheet.png" and len(files) == 9
    for text in ("100 %  40 of 40 frames", "room_village:", "room_garden:", "frames per second",
                 "ms of processor time",
                 str(tmpdir), "check: all 8 pictures show what they should"):
        assert text in output


def test_without_a_display_it_renders(tmpdir):
    status, output, errors = run("--frames", "8", "--output", str(tmpdir.join("new", "folder")))
    assert status == 0, output + errors
    assert "no DISPLAY" in output and tmpdir.join("new", "folder").check(dir=1)


def test_with_a_display_it_plays(tmpdir):
    status, output, errors = run("--frames", "8", DISPLAY=":0", SDL_VIDEODRIVER="dummy")
    assert status == 0, output + errors
    assert "arrow keys" in output and "all frames drawn: 8 frames" in output


def test_missing_module_is_named_with_a_way_out(tmpdir):
    for name in ("larkspur", "pygame"):
        tmpdir.join(name + ".py").write("raise ImportError('No module named " + name + "')")
        status, _, errors = run("--headless", PYTHONPATH=first_on_path(tmpdir))
        assert status == 1 and "No module named " + name in errors and "script/demo" in errors
        assert "Traceback" not in errors
        tmpdir.join(name + ".py").remove()


def test_window_that_cannot_be_opened_is_explained():
    status, _, errors = run(DISPLAY=":987", SDL_VIDEODRIVER="x11")
    assert status == 1 and "no window could be opened" in errors and "--headless" in errors
    assert "Traceback" not in errors


@pytest.mark.parametrize("arguments", [("--frames", "3"), ("--frames", "many"), ("--unknown",)])
def test_wrong_arguments_are_refused(arguments):
    status, _, errors = run(*arguments)
    assert status == 2 and "usage:" in errors
