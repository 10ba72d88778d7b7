"""The reference's pages are what their sources give, and a page that is not is named."""

import os
import shutil

import pytest
from support import documents, scripts

SOURCES = ("docs/make", "docs/reference", "include", "python", "examples/native")


def check(tree):
    return scripts.run(["python3", "docs/make/reference.py", "--check"], tree)


@pytest.fixture
def tree(tmpdir):
    for name in SOURCES:
        shutil.copytree(os.path.join(documents.TREE, name), str(tmpdir.join(name)))
    shutil.copy(os.path.join(documents.DOCS, "pixels.md"), str(tmpdir.join("docs")))
    return tmpdir


def test_pages_are_current(tree):
    assert check(tree) == (0, "")


@pytest.mark.parametrize(
    "source, page",
    [
        ("python/larkspur.pyi", "functions.md"),
        ("python/larkspur.pyi", "types.md"),
        ("include/larkspur.h", "native.md"),
        ("examples/native/tour.c", "native.md"),
    ],
)
def test_page_with_a_changed_source_is_named(tree, source, page):
    words = {
        "functions.md": ("Blends one colour over a rectangle.", "Blends a colour."),
        "types.md": ("One room of the game", "A room of the game"),
    }
    old, new = words.get(page, ("Dumps", "Writes") if "include" in source else ("0xFF804020", "0"))
    path = tree.join(source)
    text = path.read()
    assert old in text
    path.write(text.replace(old, new))
    assert check(tree) == (1, "docs/reference/%s is not current: run script/docs\n" % page)


def test_page_changed_by_hand_is_named(tree):
    tree.join("docs/reference/types.md").write("more\n", mode="a")
    assert check(tree) == (1, "docs/reference/types.md is not current: run script/docs\n")
