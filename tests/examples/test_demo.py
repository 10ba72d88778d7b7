"""The demo as a command."""

import os
import subprocess
import sys

import pytest

EXAMPLES = os.path.join(
    os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, "examples"
)


DISPLAY_SETTINGS = "DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"


def run(*arguments, **environment):
    """(exit status, output, error output) of demo.py, which is told of no display but in
    `environment`. `before` there is code to run before its main(), with pygame and demo."""
    before = environment.pop("before", "")
    settings = dict(os.environ, TERM="xterm")
    for name in DISPLAY_SETTINGS:
        settings.pop(name, None)
    settings.update(environment)
    command = [
        "-c",
        "import sys; sys.path.insert(0, {!r}); import demo, pygame\n{}\n"
        "sys.exit(demo.main(sys.argv[1:]))".format(EXAMPLES, before),
    ]
    process = subprocess.Popen(
        [sys.executable]
        + (command if before else [os.path.join(EXAMPLES, "demo.py")])
        + list(arguments),
        stdin=open(os.devnull),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        env=settings,
    )
    output, errors = process.communicate()
    return process.returncode, output.decode("utf-8"), errors.decode("utf-8")


def first_on_path(folder):
    return os.pathsep.join([str(folder)] + os.environ.get("PYTHONPATH", "").split(os.pathsep))


def test_check_writes_right_pictures(tmpdir):
    status, output, errors = run("--check", "--frames", "40", "--output", str(tmpdir))
    assert status == 0, output + errors
    files = sorted(path.basename for path in tmpdir.listdir())
    assert files[0] == "contact_sheet.png" and len(files) == 9
    for text in (
        "100 %  40 of 40 frames",
        "room_village:",
        "room_garden:",
        "frames per second",
        "ms of processor time",
        str(tmpdir),
        "check: all 8 pictures show what they should",
    ):
        assert text in output


def test_without_a_window_it_renders(tmpdir):
    status, output, errors = run(
        "--frames", "8", "--output", str(tmpdir.join("new", "folder")), DISPLAY=":987"
    )
    assert status == 0, output + errors
    assert "8 of 8 frames" in output and len(tmpdir.join("new", "folder").listdir()) == 9
    assert "No window can be opened" in output
    assert len(output + errors) < 4000 and "\x1b" not in output + errors


# Stands in for the rendering, which takes seconds, and tells what it would have drawn on.
TELL_RENDERING = """
import os
def render(pygame, game, screen, frames, folder):
    assert os.environ["SDL_VIDEODRIVER"] == "dummy" and screen is pygame.display.get_surface()
    assert screen.get_size() == game.SIZE and screen.get_bitsize() == 32
    sys.stdout.write("%d frames in %s" % (frames, folder))
demo.render = render
"""


def test_in_a_window_it_plays():
    status, output, errors = run(
        "--frames", "8", SDL_VIDEODRIVER="dummy", before="pygame.display.get_driver = lambda: 'x11'"
    )
    assert status == 0, output + errors
    assert "arrow keys" in output and "all frames drawn: 8 frames" in output
    assert "100 %  loading: ready" in output


@pytest.mark.parametrize(
    "environment, reason",
    [
        ({"DISPLAY": ":987"}, "DISPLAY=:987; x11: "),
        ({"DISPLAY": "nonsense"}, "DISPLAY=nonsense; x11: "),
        ({}, "there is no DISPLAY"),
        ({"DISPLAY": ""}, "there is no DISPLAY"),
        ({"DISPLAY": ":987", "SDL_VIDEODRIVER": "x11"}, "DISPLAY=:987; SDL_VIDEODRIVER=x11; x11: "),
        ({"DISPLAY": ":987", "SDL_VIDEODRIVER": ""}, "DISPLAY=:987; x11: "),
        ({"SDL_VIDEODRIVER": "nonsense"}, "SDL_VIDEODRIVER=nonsense; nonsense: "),
        ({"SDL_VIDEODRIVER": "dummy"}, "dummy: this driver shows nothing"),
        ({"WAYLAND_DISPLAY": "none-987"}, "WAYLAND_DISPLAY=none-987; wayland: "),
        ({"DISPLAY": ":987", "WAYLAND_DISPLAY": "none-987"}, "; wayland: "),
        (
            {
                "SDL_VIDEODRIVER": "dummy",
                "before": "depths = [32, 16]; real = pygame.display.set_mode\n"
                "pygame.display.get_driver = lambda: 'x11'\n"
                "pygame.display.set_mode = lambda size, flags, _: real(size, flags, depths.pop())",
            },
            "x11: 16 bits a pixel, not 32",
        ),
    ],
    ids=str,
)
def test_without_a_window_it_says_why_and_renders(tmpdir, environment, reason):
    settings = dict(environment, before=environment.get("before", "") + TELL_RENDERING)
    status, output, errors = run("--frames", "8", "--output", str(tmpdir), **settings)
    assert status == 0, output + errors
    lines = [line for line in output.splitlines() if "No window can be opened" in line]
    assert len(lines) == 1 and reason in lines[0] and "rendering pictures instead" in lines[0]
    assert output.endswith("8 frames in " + str(tmpdir))
    assert len(output + errors) < 4000 and "\x1b" not in output + errors
    assert "Traceback" not in errors


def test_missing_module_is_named_with_a_way_out(tmpdir):
    for name in ("larkspur", "pygame"):
        folder = tmpdir.mkdir(name + " alone")  # where no compiled copy of the other one is left
        folder.join(name + ".py").write("raise ImportError('No module named " + name + "')")
        status, _, errors = run("--headless", PYTHONPATH=first_on_path(folder))
        assert status == 1 and "No module named " + name in errors and "script/demo" in errors
        assert "Traceback" not in errors


def test_pygame_that_does_not_fit_is_told(tmpdir):
    tmpdir.join("larkspur.py").write("raise RuntimeError('pygame uses another SDL')")
    status, _, errors = run("--headless", PYTHONPATH=first_on_path(tmpdir))
    assert status == 1 and "pygame uses another SDL" in errors and "Traceback" not in errors


@pytest.mark.parametrize("arguments", [("--frames", "3"), ("--frames", "many"), ("--unknown",)])
def test_wrong_arguments_are_refused(arguments):
    status, _, errors = run(*arguments)
    assert status == 2 and "usage:" in errors
