"""The tutorial's page fits its scripts: excerpts, pictures, and what goes wrong where."""

import imp
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


def test_page_names_each_step_with_its_frames():
    tutorial = imp.load_source("make_tutorial", MAKER)
    rows = re.findall(r"^\| \[\d\]\(#.*?\) \| `(.*?)` \| (\d+) \|", PAGE, re.MULTILINE)
    assert [(script, int(frames)) for script, frames in rows] == list(tutorial.STEPS)


@pytest.mark.parametrize("number", range(1, 7))
def test_excerpts_are_in_the_script(number):
    assert blocks(number, "py")
    assert stale_excerpts(number, source(number)) == []


@pytest.mark.parametrize("number", range(1, 7))
def test_page_shows_what_is_new_in_the_script(number):
    """Every line that a step adds to the one before stands in an excerpt, but for the script's
    first lines and lines that are moved."""
    before = source(number - 1).splitlines() if number > 1 else []
    added = [line for line in source(number).splitlines() if line not in before]
    shown = "".join(block.text for block in blocks(number, "py")).splitlines()
    missing = [line for line in added if line not in shown and not re.match(r'(#!|""")', line)]
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


@pytest.fixture
def changed(tmpdir):
    """changed(number, old, new): the path of a step's script with a change, and one for a picture
    of it."""
    for helper in ("art.py", "common.py"):
        shutil.copy(os.path.join(SCRIPTS, helper), str(tmpdir.ensure("tutorial", dir=True)))
    os.symlink(os.path.join(TREE, "examples", "host"), str(tmpdir.join("host")))

    def change(number, old, new):
        assert source(number).count(old) == 1
        script = tmpdir.join("tutorial", "changed.py")
        script.write(source(number).replace(old, new))
        return str(script), str(tmpdir.join("picture.png"))

    return change


@pytest.mark.parametrize("number, right, wrong", MISTAKES)
def test_mistake_has_the_message_of_the_page(changed, number, right, wrong):
    script, _ = changed(number, right, wrong)
    status, _, errors = run([script, "--frames", "30"])
    assert status == 1
    (block,) = blocks(number, "text")
    told = [line for line in errors.splitlines() if line in block.text.splitlines()]
    assert told == block.text.splitlines(), errors
    assert errors.splitlines()[-1] == told[-1]


# What the page proposes to try: its words, a change to the step's script that does it, and whether
# the picture is then another.
PROPOSALS = [
    (1, "`room.draw_bgcolor = 0`", "room.draw_bgcolor = 1", "room.draw_bgcolor = 0", True),
    (
        2,
        "`hspeed=-0.5` in the second slot",
        "280, htiled=True)",
        "280, htiled=True, hspeed=-0.5)",
        True,
    ),
    (2, "`stretch=True` instead", "280, htiled=True)", "280, stretch=True)", True),
    (
        3,
        "A second `resources.Placement(fox, 300, GROUND)`",
        "80, GROUND)]",
        "80, GROUND), resources.Placement(fox, 300, GROUND)]",
        True,
    ),
    (3, "`depth=1000`", "sprite=fox_sprite", "sprite=fox_sprite, depth=1000", False),
    (4, "`border=(WIDTH / 4, 0)`", "WIDTH / 2, 0", "WIDTH / 4, 0", True),
    (
        4,
        "`(160, 96, 320, 192)`",
        "everything, everything,",
        "everything, (160, 96, 320, 192),",
        True,
    ),
    (4, "No `resources.set_view`", "resources.set_view", "#", True),
    (
        5,
        "`gmapi.part_type_color3(firefly, gmapi.c_aqua, gmapi.c_lime, gmapi.c_blue)`",
        "gmapi.part_type_life",
        "gmapi.part_type_color3(firefly, gmapi.c_aqua, gmapi.c_lime, gmapi.c_blue)\n"
        "gmapi.part_type_life",
        True,
    ),
    (5, "`gmapi.part_type_blend(firefly, 0)`", "blend(firefly, 1)", "blend(firefly, 0)", True),
    (
        6,
        "`gmapi.score = gmapi.score + 10`",
        "gmapi.score += 10",
        "gmapi.score = gmapi.score + 10; assert type(gmapi.score) is int",
        False,
    ),
    (
        6,
        "`found[star.number, 1] = gmapi.score`",
        "found[star.number] = 1",
        "found[star.number] = 1; found[star.number, 1] = gmapi.score; "
        "assert found[star.number, 1] == gmapi.score == 10 * (star.number + 1)",
        False,
    ),
]


@pytest.mark.parametrize("number, words, old, new, another", PROPOSALS)
def test_proposal_does_what_the_page_says(changed, number, words, old, new, another):
    assert words in " ".join(section(number).split())
    contents = []
    for text in (old, new):
        script, path = changed(number, old, text)
        assert run([script, "--frames", "130", "--picture", path]) == (0, "", "")
        contents.append(pygame.image.tostring(pygame.image.load(path), "RGB"))
    assert (contents[0] != contents[1]) == another


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
