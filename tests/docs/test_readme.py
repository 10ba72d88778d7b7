"""The pages outside of the manual: where their links lead, and the README's moving picture."""

import os
import re
import struct

import pytest
from support import documents

MOST_BYTES = 3 * 1024 * 1024
PAGES = ["README.md", "CONTRIBUTING.md", "SECURITY.md", "CHANGES.md", "examples/README.md"]


def read(name):
    with open(os.path.join(documents.TREE, name)) as page:
        return page.read()


def targets(page):
    """The files that a page's links and pictures name, relative to it."""
    return [target for target in re.findall(r"\]\(([^)#]*)[^)]*\)", read(page)) if target]


def test_links_are_found():
    assert "docs/tutorial.md" in targets("README.md")
    assert "docs/pictures/demo.gif" in targets("README.md")


@pytest.mark.parametrize("page", PAGES)
def test_links_lead_somewhere(page):
    folder = os.path.dirname(os.path.join(documents.TREE, page))
    for target in targets(page):
        assert os.path.exists(os.path.join(folder, target)), target


def test_readme_leads_to_each_page_of_the_manual():
    linked = set(targets("README.md")) | {
        os.path.join("docs", target) for target in targets("docs/performance.md")
    }
    assert linked >= {os.path.join("docs", page) for page in documents.pages()}


def test_readme_names_the_two_commands_and_the_one_that_measures():
    text = read("README.md")
    for command in ("script/demo", "script/test", "script/bench --peers"):
        assert command in text
        assert os.access(os.path.join(documents.TREE, command.split()[0]), os.X_OK)


def pictures_of_gif(data):
    """How many pictures a GIF shows, by walking over its blocks."""
    assert data[:6] == b"GIF89a"
    (flags,) = struct.unpack_from("<B", data, 10)
    place = 13 + (3 << (flags & 7) + 1 if flags & 0x80 else 0)
    pictures = 0
    while data[place : place + 1] != b"\x3b":
        if data[place : place + 1] == b"\x2c":
            pictures += 1
            (flags,) = struct.unpack_from("<B", data, place + 9)
            place += 11 + (3 << (flags & 7) + 1 if flags & 0x80 else 0)
        else:
            assert data[place : place + 1] == b"\x21"
            place += 2
        while data[place : place + 1] != b"\x00":
            place += 1 + struct.unpack_from("<B", data, place)[0]
        place += 1
    return pictures


def test_moving_picture_moves_and_is_small():
    with open(os.path.join(documents.DOCS, "pictures", "demo.gif"), "rb") as picture:
        data = picture.read()
    assert len(data) < MOST_BYTES
    assert pictures_of_gif(data) == 96  # eight seconds
    assert struct.unpack_from("<HH", data, 6) == (480, 270)
