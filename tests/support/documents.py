"""The fenced blocks of Markdown pages, and how a page's code is run.

    ```python                   runs
    ```python title="gm6.py"    becomes a file of that name, which later blocks can import
    ```pycon                    is an interpreter's session, whose output has to come as it stands

All blocks of a page run in their order in one namespace.
"""

import collections
import doctest
import os
import re

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
DOCS = os.path.join(TREE, "docs")

# `language` and `title` are texts, empty where there is none; `line` is that of the block's first.
Block = collections.namedtuple("Block", "language title text line")


def pages():
    """The paths of all pages below docs/, relative to it, in order."""
    found = []
    for folder, folders, names in os.walk(DOCS):
        folders.sort()
        found += [os.path.join(folder, name) for name in names if name.endswith(".md")]
    return sorted(os.path.relpath(path, DOCS) for path in found)


def read(page):
    """The text of a page below docs/."""
    with open(os.path.join(DOCS, page)) as text:
        return text.read()


def blocks(text):
    """The fenced blocks of a page's text, in order; those in lists or quotes are not looked for."""
    found = []
    for match in re.finditer(r"^```([^\n`]+)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
        language, _, options = match.group(1).strip().partition(" ")
        title = re.search(r'title="([^"]+)"', options)
        line = text.count("\n", 0, match.start(2)) + 1
        found.append(Block(language, title.group(1) if title else "", match.group(2), line))
    return found


def run(text, name):
    """Runs a page's code in the current directory; the first block that fails ends it.

    Raises what the block raises, or AssertionError with what a session printed instead.
    """
    namespace = {"__name__": "__main__"}
    for block in blocks(text):
        # So that a traceback names the page's line.
        padding = "\n" * (block.line - 1)
        if block.language == "python" and block.title:
            with open(block.title, "w") as module:
                module.write(block.text)
        elif block.language == "python":
            exec(compile(padding + block.text, name, "exec"), namespace)
        elif block.language == "pycon":
            _run_session(block, name, namespace)


def _run_session(block, name, namespace):
    session = doctest.DocTestParser().get_doctest(block.text, namespace, name, name, block.line - 1)
    session.globs = namespace  # not the copy that it has made: later blocks see what this one does
    told = []
    runner = doctest.DocTestRunner(verbose=False, optionflags=doctest.ELLIPSIS)
    runner.run(session, out=told.append, clear_globs=False)
    assert not told, "".join(told)
