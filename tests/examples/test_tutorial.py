"""The tutorial's six steps: each runs by itself, and its picture shows what it is about."""

import os
import subprocess
import sys

import pygame
import pytest

TUTORIAL = os.path.join(
    os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, "examples", "tutorial"
)
SCRIPTS = {
    int(name[len("step")]): name
    for name in os.listdir(TUTORIAL)
    if name.startswith("step") and name.endswith(".py")
}

WIDTH, HEIGHT = 640, 384
GROUND = 320
FOX_START, FOX_SPEED, FOX_SIZE = 80, 3, (88, 60)

NIGHT, LEAF, CREAM = (40, 32, 76), (126, 172, 100), (255, 243, 212)
SUN = 640 * 68 // 100, 160
POINT = 4

# What one number of the score is drawn with; enough of them for what is found here.
DIGITS = {
    "0": ("ccc", "c.c", "c.c", "c.c", "sss"),
    "1": (".c.", "cc.", ".c.", ".c.", "sss"),
    "2": ("ccc", "..c", "ccc", "c..", "sss"),
    "3": ("ccc", "..c", "ccc", "..c", "sss"),
}
STAR_X = range(420, 1800, 200)
STAR_WIDTH = 36


def run(step, *arguments, **environment):
    """(exit status, output, error output) of a step's script."""
    settings = dict(os.environ, PYGAME_HIDE_SUPPORT_PROMPT="1")
    settings.update(environment)
    process = subprocess.Popen(
        [sys.executable, os.path.join(TUTORIAL, SCRIPTS[step])] + list(arguments),
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        env=settings,
    )
    output, errors = process.communicate()
    return process.returncode, output.decode("utf-8"), errors.decode("utf-8")


class Picture(object):
    """The last picture of some frames of a step."""

    def __init__(self, path):
        surface = pygame.image.load(path)
        assert surface.get_size() == (WIDTH, HEIGHT)
        self._rows = [
            bytearray(pygame.image.tostring(surface.subsurface((0, y, WIDTH, 1)), "RGB"))
            for y in range(HEIGHT)
        ]

    def at(self, x, y):
        return tuple(self._rows[y][3 * x : 3 * x + 3])

    def row(self, y, left=0, right=WIDTH):
        return [self.at(x, y) for x in range(left, right)]

    def rows(self, top, bottom, left=0, right=WIDTH):
        return [self.row(y, left, right) for y in range(top, bottom)]

    def places_other_than_in(self, other):
        return [
            (x, y)
            for y in range(HEIGHT)
            if self._rows[y] != other._rows[y]
            for x in range(WIDTH)
            if self.at(x, y) != other.at(x, y)
        ]


@pytest.fixture(scope="module")
def picture(tmpdir_factory):
    """picture(step, frames, hold): the Picture, made once for all tests."""
    folder = tmpdir_factory.mktemp("pictures")
    made = {}

    def get(step, frames, hold="right"):
        key = step, frames, hold
        if key not in made:
            path = str(folder.join("%d-%d-%s.png" % key))
            outcome = run(step, "--frames", str(frames), "--picture", path, "--hold", hold)
            assert outcome == (0, "", "")
            made[key] = Picture(path)
        return made[key]

    return get


def box_of(places):
    """(left, top, right, bottom) around places, the last two behind the last of them."""
    across, down = zip(*places)
    return min(across), min(down), max(across) + 1, max(down) + 1


def number_drawn(seen, left, top):
    """The digits that start at a place of the picture, as far as there are any."""
    text = ""
    while True:
        rows = tuple(
            "".join(
                {CREAM: "c", (250, 204, 134): "s"}.get(
                    seen.at(left + POINT * (x + 4 * len(text)), top + POINT * y), "."
                )
                for x in range(3)
            )
            for y in range(5)
        )
        digit = [digit for digit, its_rows in DIGITS.items() if its_rows == rows]
        if not digit:
            return text
        text += digit[0]


def test_there_are_six_steps():
    assert sorted(SCRIPTS) == [1, 2, 3, 4, 5, 6]


@pytest.mark.parametrize("step", range(1, 6))
def test_each_step_shows_something_new(picture, step):
    assert picture(step, 30).places_other_than_in(picture(step + 1, 30))


@pytest.mark.parametrize("step", range(1, 7))
def test_step_plays_in_a_window(step):
    """With a display it runs until the window is closed."""
    leave = (
        "import runpy, sys; sys.path.insert(0, {0!r}); import pygame\n"
        "frames = []\n"
        "def flip():\n"
        "    frames.append(1)\n"
        "    assert len(frames) < 9\n"
        "    if len(frames) == 5: pygame.event.post(pygame.event.Event({1}))\n"
        "pygame.display.flip = flip\n"
        "sys.argv = [{2!r}]\n"
        "runpy.run_path({3!r}, run_name='__main__')\n"
        "assert len(frames) == 5"
    )
    events = "pygame.QUIT", "pygame.KEYDOWN, key=pygame.K_ESCAPE"
    path = os.path.join(TUTORIAL, SCRIPTS[step])
    process = subprocess.Popen(
        [sys.executable, "-c", leave.format(TUTORIAL, events[step % 2], SCRIPTS[step], path)],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        env=dict(os.environ, SDL_VIDEODRIVER="dummy", PYGAME_HIDE_SUPPORT_PROMPT="1"),
    )
    assert process.communicate() == (b"", b"") and process.returncode == 0


def test_without_a_display_a_window_is_refused_and_the_way_out_told():
    status, _, errors = run(1, DISPLAY="", WAYLAND_DISPLAY="", SDL_VIDEODRIVER="")
    assert status == 2 and "--frames" in errors and "Traceback" not in errors


def test_window_has_the_colour_of_the_room(picture):
    assert set(sum(picture(1, 3).rows(0, HEIGHT), [])) == {NIGHT}


def test_backgrounds_lie_over_each_other(picture):
    seen = picture(2, 1)
    assert seen.at(*SUN) == CREAM
    above = [sum(seen.at(100, y)) for y in range(2, 180, 16)]
    assert above == sorted(above) and above[0] < above[-1]  # lighter towards the horizon
    assert set(seen.row(GROUND)) == {LEAF}
    hills, wood = (92, 48, 106), (46, 44, 82)
    assert hills in [seen.at(600, y) for y in range(HEIGHT)]
    assert set(seen.row(GROUND - 1)) == {wood}


@pytest.mark.parametrize(
    "hold, frames, x",
    [
        ("none", 30, FOX_START),
        ("right", 40, FOX_START + 40 * FOX_SPEED),
        ("right", 140, FOX_START + 140 * FOX_SPEED),
        ("left", 30, 41),  # the edge of the room stops it after thirteen steps
    ],
)
def test_fox_walks(picture, hold, frames, x):
    left, top, right, bottom = box_of(
        picture(3, frames, hold).places_other_than_in(picture(2, frames, hold))
    )
    middle, half = (left + right) / 2.0, FOX_SIZE[0] / 2
    assert x - half <= left and right <= x + half and abs(middle - x) <= POINT
    assert GROUND - FOX_SIZE[1] == top and bottom == GROUND


def test_fox_looks_where_it_goes(picture):
    """The white tip of its tail is behind it."""
    for hold, x, behind in (("right", FOX_START + 3 * FOX_SPEED, -1), ("left", 71, 1)):
        seen = picture(3, 3, hold)
        tail = x + behind * 32
        assert CREAM in [seen.at(tail, y) for y in range(GROUND - 60, GROUND - 30)]
        assert CREAM not in [seen.at(2 * x - tail, y) for y in range(GROUND - 60, GROUND - 44)]


def test_fox_lifts_its_feet(picture):
    """Its legs, the last eight rows, change while it walks and rest where it stands."""

    def legs(frames, hold, x):
        return picture(3, frames, hold).rows(GROUND - 8, GROUND, x - 44, x + 44)

    walking = [legs(frames, "right", FOX_START + FOX_SPEED * frames) for frames in range(1, 21, 4)]
    assert len(set(map(repr, walking))) > 2
    resting = [legs(frames, "none", FOX_START) for frames in (1, 12)]
    assert len(set(map(repr, resting))) == 1


def test_view_follows_the_fox(picture):
    """The fox stays in the middle, and the ground moves by as much as the fox has passed it."""
    resting, moved = picture(4, 1, "none"), picture(4, 150)
    view = FOX_START + 150 * FOX_SPEED - WIDTH // 2
    assert view % 32  # else ground that stood still would look the same
    assert [
        y
        for y in range(GROUND, HEIGHT)
        if moved.row(y, 0, WIDTH - view) != resting.row(y, view, WIDTH)
    ] == []
    # The sky stays.
    assert [y for y in range(180) if moved.row(y) != resting.row(y)] == []
    fence = 5 * 32 - view, 9 * 32 - view  # of GROUND_PLAN
    assert fence[0] == -50 and fence[1] == 78
    rail = moved.row(GROUND - 32 + 3 * POINT, 0, 320)
    assert [color == (250, 204, 134) for color in rail] == 78 * [1] + 242 * [0]


def test_view_ends_with_the_room(picture):
    """The room's last screen shows, and the fox in it, some steps apart."""
    early, late = picture(4, 540), picture(4, 640)
    left, top, right, bottom = box_of(early.places_other_than_in(late))
    view = 3 * WIDTH - WIDTH
    assert left >= FOX_START + 540 * FOX_SPEED - view - FOX_SIZE[0] // 2
    assert WIDTH - 40 < right and (top, bottom) == (GROUND - FOX_SIZE[1], GROUND)
    fence = 52 * 32 - view, 55 * 32 - view  # of GROUND_PLAN
    rail = late.row(GROUND - 32 + 3 * POINT, fence[0] - 32, fence[1] + 32)
    assert [color == (250, 204, 134) for color in rail] == 32 * [0] + 96 * [1] + 32 * [0]


def test_nothing_but_light_is_added_by_the_fireflies(picture):
    dark, lit = picture(4, 150), picture(5, 150)
    places = lit.places_other_than_in(dark)
    assert len(places) > 1000
    assert all(
        after >= before for x, y in places for before, after in zip(dark.at(x, y), lit.at(x, y))
    )
    left, top, right, bottom = box_of(places)
    assert left < 100 and right > WIDTH - 200
    assert top > GROUND - 100 - 150 and bottom < GROUND + 40


def test_fireflies_fly(picture):
    first, later = picture(5, 20, "none"), picture(5, 21, "none")
    assert first.places_other_than_in(later)


def test_run_without_a_window_is_the_same_each_time(picture, tmpdir):
    path = str(tmpdir.join("again.png"))
    assert run(5, "--frames", "150", "--picture", path) == (0, "", "")
    assert Picture(path).places_other_than_in(picture(5, 150)) == []


@pytest.mark.parametrize("frames", [50, 100, 200, 250])
def test_score_counts_the_stars_that_the_fox_has_reached(picture, frames):
    fox = FOX_START + FOX_SPEED * frames
    reached = [x for x in STAR_X if x - STAR_WIDTH / 2 < fox + FOX_SIZE[0] / 2]
    seen = picture(6, frames)
    assert number_drawn(seen, 324, 34) == str(10 * len(reached))
    bright = [seen.at(44 + 40 * number, 44) == (250, 204, 134) for number in range(len(STAR_X))]
    assert bright == [True] * len(reached) + [False] * (len(STAR_X) - len(reached))


def test_star_that_was_found_is_gone_and_the_others_wait(picture):
    """After 200 frames the third star, 820 in the room, is ahead; the second was where 620 is."""
    seen = picture(6, 200)
    view = FOX_START + 200 * FOX_SPEED - WIDTH // 2
    assert seen.at(820 - view, GROUND - 30) == (250, 204, 134)
    assert number_drawn(seen, 324, 34) == "20"
    before = picture(6, 80)
    assert before.at(420, GROUND - 30) == (250, 204, 134)
