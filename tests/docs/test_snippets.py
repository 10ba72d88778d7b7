"""All code on the manual's pages runs as it stands there."""

import re

import pytest
from support import documents, subprocess_python


def run(text, folder):
    """Runs a page's code in an empty folder, as its reader would; (status, stdout, stderr)."""
    folder.join("page.txt").write(text)
    work = folder.ensure("work", dir=True)
    return subprocess_python.run(
        "import sys; sys.path.insert(0, '');"
        "from support import documents; documents.run(open('../page.txt').read(), 'page')",
        cwd=str(work),
        PYGAME_HIDE_SUPPORT_PROMPT="1",
    )


PAGES_WITH_CODE = [
    page
    for page in documents.pages()
    if any(
        block.language in ("python", "pycon") for block in documents.blocks(documents.read(page))
    )
]


# Pages with excerpts and signatures, which other tests compare with their sources.
WITH_EXCERPTS = {"tutorial.md", "reference/functions.md", "reference/types.md"}
NEVER_RUN = {"c", "console", "text"}


def test_pages_with_code_are_found():
    assert {"embedding.md", "pixels.md", "reference/types.md"} <= set(PAGES_WITH_CODE)


@pytest.mark.parametrize("page", documents.pages())
def test_no_code_of_a_page_is_passed_over(page):
    text = documents.read(page)
    blocks = documents.blocks(text)
    assert len(blocks) * 2 == len(re.findall(r"^ *```", text, re.MULTILINE))
    known = {"python", "pycon"} | NEVER_RUN | ({"py"} if page in WITH_EXCERPTS else set())
    assert {block.language for block in blocks} <= known


@pytest.mark.parametrize("page", PAGES_WITH_CODE)
def test_code_of_page_runs(page, tmpdir):
    status, out, err = run(documents.read(page), tmpdir)
    assert status == 0, out + err


def page_of(*blocks):
    return "".join("text\n\n```%s\n%s```\n\n" % block for block in blocks)


def test_block_that_raises_is_noticed(tmpdir):
    status, _, err = run(page_of(("python", "good = 1\n"), ("python", "bad\n")), tmpdir)
    assert status == 1
    assert 'File "page", line 10' in err
    assert "NameError: name 'bad' is not defined" in err


def test_session_with_other_output_is_noticed(tmpdir):
    status, _, err = run(page_of(("pycon", ">>> 1 + 1\n3\n")), tmpdir)
    assert status == 1
    assert "Got:\n    2" in err


def test_session_that_raises_is_noticed(tmpdir):
    status, _, err = run(page_of(("pycon", ">>> bad\n1\n")), tmpdir)
    assert status == 1
    assert "NameError" in err


def test_blocks_share_one_namespace(tmpdir):
    page = page_of(
        ("python", "number = 6\n"),
        ("pycon", ">>> number += 1\n"),
        ("python", "assert number == 7\n"),
    )
    assert run(page, tmpdir) == (0, "", "")


def test_block_with_title_becomes_a_module(tmpdir):
    page = page_of(
        ('python title="thing.py"', "size = 3\n"), ("pycon", ">>> import thing; thing.size\n3\n")
    )
    assert run(page, tmpdir) == (0, "", "")


def test_other_languages_are_left_alone(tmpdir):
    page = page_of(("console", "$ bad\n"), ("c", "bad\n"), ("py", "bad\n"))
    assert run(page, tmpdir) == (0, "", "")
