"""The tutorial's page fits its scripts: excerpts, pictures, and what goes wrong where."""

import os
import re
import shutil
import subprocess
import sys

import pygame
import pytest
from support import documents

TREE = documents.TREE
SCRIPTS = os.path.join(TREE, "examples", "tutorial")
MAKER = os.path.join(TREE, "docs", "make", "tutorial.py")
PICTURES = os.path.join(TREE, "docs", "pictures")
STEPS = sorted(name for name in os.listdir(SCRIPTS) if re.match(r"step\d_\w+\.py$", name))
PAGE = documents.read("tutorial.md")


def section(number):
    """What the page says about a step."""
    start = PAGE.index("\n## Step %d: " % number)
    return PAGE[start : PAGE.index("\n## ", start + 1)]


def blocks(number, language):
    return [block for block in documents.blocks(section(number)) if block.language == language]


def source(number):
    with open(os.path.join(SCRIPTS, STEPS[number - 1])) as script:
        return script.read()


def run(command):
    """(exit status, output, error output) of a Python script with its arguments."""
    process = subprocess.Popen(
        [sys.executable] + command,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        env=dict(os.environ, PYGAME_HIDE_SUPPORT_PROMPT="1"),
    )
    output, errors = process.communicate()
    return process.returncode, output.decode("utf-8"), errors.decode("utf-8")


def stale_excerpts(number, script):
    """The excerpts of a step's section that are not whole lines of a script, one after the other,
    in the script's order."""
    stale, found_until = [], 0
    for block in blocks(number, "py"):
        place = ("\n" + script).find("\n" + block.text, found_until)
        if place < 0:
            stale.append(block.text)
        else:
            found_until = place + len(block.text)
    return stale


def test_page_tells_of_every_step_in_order():
    assert len(STEPS) == 6
    titles = re.findall(r"^## Step (\d): ", PAGE, re.MULTILINE)
    assert titles == ["1", "2", "3", "4", "5", "6"]
    for number in range(1, 7):
        assert "`%s`" % STEPS[number - 1] in PAGE
        assert "(pictures/tutorial-%d.png)" % number in section(number)
        for heading in ("**What larkspur does.**", "**Try.**", "**When it is wrong.**"):
            assert section(number).count(heading) == 1


@pytest.mark.parametrize("number", range(1, 7))
def test_excerpts_are_in_the_script(number):
    assert blocks(number, "py")
    assert stale_excerpts(number, source(number)) == []


@pytest.mark.parametrize("number", range(1, 7))
def test_page_shows_what_is_new_in_the_script(number):
    """Every line that a step adds to the one before stands in an excerpt, but for imports, the
    script's first lines and lines that are moved."""
    before = source(number - 1).splitlines() if number > 1 else []
    added = [line for line in source(number).splitlines() if line not in before]
    shown = "".join(block.text for block in blocks(number, "py")).splitlines()
    missing = [
        line
        for line in added
        if line not in shown and not re.match(r'(#!|"""|import |from |GROUND = )', line)
    ]
    assert [line for line in missing if line] == []


def test_excerpt_that_is_not_in_the_script_is_noticed():
    script = source(3)
    assert stale_excerpts(3, script.replace("3 * direction", "4 * direction")) != []
    assert stale_excerpts(3, script.replace("fox_sprite", "sprite")) != []


# A change to each step's script that makes the mistake of which its section tells.
MISTAKES = [
    (1, "gm6.start(screen)", "gm6.screen = screen"),
    (2, "gm6.goto_room(room)\n", "gm6.goto_room(room)\nroom.background_index[1] = 5\n"),
    (3, "sprite=fox_sprite", 'sprite="spr_fox"'),
    (4, "everything = ", "room.view_xview = [0] * 8\neverything = "),
    (5, "gmapi.part_type_shape(firefly, art.glow())\n", ""),
    (6, "found = gmapi.GMVar(0)", "found = [0]"),
]


@pytest.mark.parametrize("number, right, wrong", MISTAKES)
def test_mistake_has_the_message_of_the_page(tmpdir, number, right, wrong):
    assert source(number).count(right) == 1
    for helper in ("art.py", "common.py"):
        shutil.copy(os.path.join(SCRIPTS, helper), str(tmpdir.ensure("tutorial", dir=True)))
    os.symlink(os.path.join(TREE, "examples", "host"), str(tmpdir.join("host")))
    script = tmpdir.join("tutorial", "mistake.py")
    script.write(source(number).replace(right, wrong))
    status, _, errors = run([str(script), "--frames", "30"])
    assert status == 1
    (block,) = blocks(number, "text")
    told = [line for line in errors.splitlines() if line in block.text.splitlines()]
    assert told == block.text.splitlines(), errors
    assert errors.splitlines()[-1] == told[-1]


@pytest.mark.parametrize("hint", re.findall(r"`([a-z]+)=([^`]+)`", PAGE))
def test_named_arguments_are_those_of_the_engine(hint):
    """A hint like `stretch=True` names what some call of the scripts or the engine takes."""
    name = hint[0]
    engine = ""
    for folder, _, names in os.walk(os.path.join(TREE, "examples", "host")):
        for file_name in names:
            if file_name.endswith(".py"):
                with open(os.path.join(folder, file_name)) as module:
                    engine += module.read()
    assert re.search(r"\b%s=" % name, engine)


def test_pictures_are_those_of_the_scripts():
    assert run([MAKER, "--check"]) == (0, "", "")


def test_pictures_are_small():
    for number in range(1, 7):
        assert os.path.getsize(os.path.join(PICTURES, "tutorial-%d.png" % number)) < 20000


def test_stale_and_missing_pictures_are_named(tmpdir):
    for number in range(1, 6):
        shutil.copy(os.path.join(PICTURES, "tutorial-%d.png" % number), str(tmpdir))
    path = str(tmpdir.join("tutorial-3.png"))
    picture = pygame.image.load(path)
    red, green, blue, _ = picture.get_at((300, 200))
    picture.set_at((300, 200), (red, green, blue ^ 1))
    pygame.image.save(picture, path)
    status, output, errors = run([MAKER, "--check", "--pictures", str(tmpdir)])
    assert (status, output) == (1, "")
    assert errors.splitlines() == [
        "tutorial-3.png is not what step3_walk.py shows",
        "tutorial-6.png is not what step6_score.py shows",
    ]
    assert not tmpdir.join("tutorial-6.png").exists()
