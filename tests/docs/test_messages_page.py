"""Each text that larkspur writes or raises stands on the page of messages, and no other does."""

import os
import re

import pytest
from support import documents

SOURCES = os.path.join(documents.TREE, "src")
PAGE = documents.read(os.path.join("reference", "messages.md"))

LITERALS = r'((?:"(?:[^"\\]|\\.)*"\s*)+)'
RAISED = re.compile(r"PyErr_(?:SetString|Format)\(\s*(PyExc_\w+),\s*(?:%s)?" % LITERALS)
# A literal with a line's end and nothing after it goes to the console, wherever it stands.
LITERAL = re.compile(LITERALS)
# Raised with a text that is no literal: the name of a member that is not set.
WITHOUT_TEXT = ["PyExc_AttributeError"]


def sources():
    for folder, _, names in sorted(os.walk(SOURCES)):
        for name in sorted(names):
            if name.endswith((".cpp", ".h")):
                with open(os.path.join(folder, name)) as source:
                    yield re.sub(r"//[^\n]*", "", source.read())


def plain(literals):
    """The text of adjacent literals, with ... for each conversion."""
    text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals)).replace(r"\"", '"')
    text = text.replace("%d.%d.%d", "%s")  # a version
    return re.sub(r"%[.\d]*(?:[sdf]|l[df]|zd)", "...", text).replace(r"\n", "")


def console_lines(source):
    texts = [match for match in LITERAL.findall(source) if re.search(r'\\n"\s*$', match)]
    return [plain(text) for text in texts]


def raised_texts(source):
    return [plain(text) if text else None for _, text in RAISED.findall(source)]


def in_backticks(page):
    return re.findall(r"`([^`]+)`", page)


CONSOLE = sorted({line for source in sources() for line in console_lines(source)})
EXCEPTIONS = sorted({text for source in sources() for text in raised_texts(source) if text})


def test_sources_are_read():
    assert "Error after GI ..." in CONSOLE
    assert "breakable" in CONSOLE
    assert "... needs a pygame Surface, got ..." in EXCEPTIONS
    assert len(CONSOLE) > 40 and len(EXCEPTIONS) > 45


def test_what_is_raised_without_a_literal_is_known():
    found = [name for source in sources() for name, text in RAISED.findall(source) if not text]
    assert found == WITHOUT_TEXT


@pytest.mark.parametrize("line", CONSOLE)
def test_line_on_console_is_on_page(line):
    # What the native functions for logs write is told in a sentence; the table has the rest.
    assert line.rstrip(".") in [text.rstrip(".") for text in in_backticks(PAGE)]


@pytest.mark.parametrize("text", EXCEPTIONS)
def test_text_of_exception_is_on_page(text):
    assert text in in_backticks(PAGE)


def rows(heading):
    """The cells of all tables below a heading of the second level."""
    part = PAGE.split("\n## %s\n" % heading)[1].split("\n## ")[0]
    lines = [line for line in part.split("\n") if line.startswith("| ")]
    return [[cell.strip() for cell in line.strip("|").split(" | ")] for line in lines]


def test_page_has_no_line_that_is_never_written():
    written = [line.rstrip(".") for line in CONSOLE]
    for cells in rows("Lines on the console"):
        for line in in_backticks(cells[0]):
            assert line.rstrip(".") in written


def test_page_has_no_text_that_is_never_raised():
    for cells in rows("Texts of exceptions"):
        for text in in_backticks(cells[1]) if len(cells) > 1 else []:
            assert text in EXCEPTIONS
