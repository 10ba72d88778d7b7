"""The page of pixel operations names every one of them, and its pictures are what the module draws.

That its formulas hold is tried where the page's code runs, in test_snippets.
"""

import os
import re
import shutil
import subprocess
import sys
import types

import larkspur
import pygame
import pytest
from support import documents

sys.path.insert(0, os.path.join(documents.DOCS, "make"))
import native_page

PAGE = "pixels.md"
PICTURES = os.path.join(documents.DOCS, "pictures")
PROGRAM = os.path.join(documents.DOCS, "make", "pixel_pictures.py")
MOST_BYTES = 20000

# The beginnings of the names of functions that do something else than change or make pixels.
OTHERS = (
    "CParticle_",
    "GMSprite_from_surface",
    "RegisterInstancesDict",
    "Room_Draw",
    "breakable",
    "draw_sprite_ext",
    "init_subsystems",
    "part_type_",
    "set_SDL_screen",
)

PIXEL_FUNCTIONS = sorted(
    name
    for name, value in vars(larkspur).items()
    if isinstance(value, types.BuiltinFunctionType) and not name.startswith(OTHERS)
)


def prose(text):
    """A page without its code."""
    return re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)


def sections(text):
    """(title, text) of each heading, up to the next one."""
    parts = re.split(r"^#+ (.*)$", prose(text), flags=re.MULTILINE)
    return list(zip(parts[1::2], parts[2::2]))


def pictures_in(text):
    """(what is seen, file) of each picture."""
    return re.findall(r"!\[([^\]]*)\]\(pictures/([^)]*)\)", text)


def functions_without_picture(text, names):
    """Those that have no section of their own with a picture."""
    shown = set()
    for title, content in sections(text):
        if pictures_in(content):
            shown.update(re.findall(r"\w+", title))
    return [name for name in names if name not in shown]


def native_functions(*subjects):
    """The functions that the public header declares under the named subjects."""
    items = {section.title: section.items for section in native_page.sections()}
    return [
        name
        for subject in subjects
        for item in items[subject]
        for name in item.names
        if re.search(r"\b%s\(" % name, item.code)
    ]


def committed_pictures():
    return sorted(name for name in os.listdir(PICTURES) if name.startswith("pixels-"))


def run_program(*arguments):
    process = subprocess.Popen(
        [sys.executable, PROGRAM] + list(arguments),
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    )
    out, _ = process.communicate()
    return process.returncode, out


@pytest.fixture
def copies(tmpdir):
    """A folder with a copy of every picture."""
    for name in committed_pictures():
        shutil.copy(os.path.join(PICTURES, name), str(tmpdir))
    return tmpdir


def test_there_are_functions_to_look_for():
    assert "fill_translucent" in PIXEL_FUNCTIONS
    assert "blend" in native_functions("Colours")


def test_every_function_has_a_section_with_a_picture():
    assert functions_without_picture(documents.read(PAGE), PIXEL_FUNCTIONS) == []


def test_function_without_picture_is_noticed():
    page = "## draw_a, draw_b\n![seen](pictures/a.png)\n## draw_c\n```text\n![](pictures/c)\n```\n"
    assert functions_without_picture(page, ["draw_a", "draw_b", "draw_c"]) == ["draw_c"]


def test_every_native_function_is_named():
    named = re.findall(r"`(\w+)", prose(documents.read(PAGE)))
    titles = " ".join(title for title, _ in sections(documents.read(PAGE)))
    wanted = native_functions("Colours", "Pixels", "Sprite scale cache")
    assert [name for name in wanted if name not in named and name not in titles.split()] == []


def test_every_picture_is_used_once_and_is_there():
    used = sorted(name for _, name in pictures_in(documents.read(PAGE)))
    assert used == committed_pictures()


def test_every_picture_says_what_is_seen():
    for seen, name in pictures_in(documents.read(PAGE)):
        assert len(seen.split()) >= 5, name


def test_pictures_are_small():
    sizes = {name: os.path.getsize(os.path.join(PICTURES, name)) for name in committed_pictures()}
    assert [name for name, size in sizes.items() if size > MOST_BYTES] == []


def test_pictures_show_what_the_module_draws():
    assert run_program("--check") == (0, "")


def test_stale_pictures_are_named(copies):
    changed, missing = "pixels-flips.png", "pixels-scale.png"
    surface = pygame.image.load(str(copies.join(changed)))
    red, green, blue, _ = surface.get_at((20, 30))
    surface.set_at((20, 30), (red, green ^ 1, blue))
    pygame.image.save(surface, str(copies.join(changed)))
    copies.join(missing).remove()
    copies.join("pixels-nobodys.png").write("")
    status, out = run_program("--check", "--folder", str(copies))
    assert status == 1
    stale = re.findall(r"^(\S+) is stale", out, re.MULTILINE)
    assert stale == [changed, "pixels-nobodys.png", missing]


def test_other_packing_of_the_same_pixels_is_not_stale(copies):
    name = str(copies.join("pixels-flips.png"))
    packed = open(name, "rb").read()
    surface = pygame.image.load(name)
    twin = pygame.Surface(surface.get_size(), pygame.SRCALPHA, 32)  # has another kind of PNG
    twin.blit(surface, (0, 0))
    pygame.image.save(twin, name)
    assert open(name, "rb").read() != packed
    assert run_program("--check", "--folder", str(copies)) == (0, "")


def test_pictures_are_written(tmpdir):
    assert run_program("--folder", str(tmpdir)) == (0, "")
    assert sorted(entry.basename for entry in tmpdir.listdir()) == committed_pictures()
    assert run_program("--check", "--folder", str(tmpdir)) == (0, "")
