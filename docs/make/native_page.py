"""Makes the reference of native names from larkspur.h and from the calls in examples/native/tour.c.

python3 docs/make/native_page.py           # prints the page
python3 docs/make/native_page.py --names   # prints the names that the header declares
"""

import collections
import os
import re

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
HEADER = os.path.join(TREE, "include", "larkspur.h")
TOUR = os.path.join(TREE, "examples", "native", "tour.c")
SPARKS = os.path.join(TREE, "examples", "native", "sparks.c")

# `prose` is a list of texts, `items` a list of Items.
Section = collections.namedtuple("Section", "title prose items")
# One comment and the declarations below it; `names` are those that they declare.
Item = collections.namedtuple("Item", "comment code names")

MOST_IN_HEADING = 6

BANNER = re.compile(r"/\* ---- (.+?) -+ \*/\n")
# A comment that starts a line, and the lines up to the next such one or to an empty line.
COMMENT = re.compile(r"^/\*((?:.|\n)*?)\*/\n((?:(?!/\*).+\n)*)", re.MULTILINE)
# What stands before a declaration in the header alone; lines that go on are indented by it.
EXPORT = "LARKSPUR_EXPORT "

INTRODUCTION = """\
# Native functions, variables and records

What larkspur exports to code in C and C++. `include/larkspur.h` declares all of it and is installed
with the module; this page is made from that header, and its examples from
`examples/native/tour.c`, which the tests run.

Compile with the folder that `larkspur_check` prints:

```console
$ cc -shared -fPIC -I "$(python2.7 -m larkspur_check --include)" \\
    -I "$(python2.7 -c 'from distutils import sysconfig; print(sysconfig.get_python_inc())')" \\
    -o sparks.so sparks.c
```

There are two ways to reach the names. `examples/native/sparks.c` looks up each with `dlsym` in the
module's file, which the interpreter has loaded; that is the way for an engine, as nobody else sees
the names. The examples below are from `examples/native/tour.c` and call them as they are declared;
whoever loads that (`show_tour.py`) makes the module's names visible to all before, which is short,
but `blend`, `debug` and `dump` are then also what other libraries may find under these names.

"""

LOOKING_UP = """\
## Looking the names up

How `sparks.c` finds larkspur's functions, and its loop of a frame over particles whose handles it
holds:

"""


def read(path):
    with open(path) as text:
        return text.read()


def _comment_text(comment):
    """A comment's text without its frame, as Markdown."""
    lines = [re.sub(r"^ \*?( |$)", "", line.rstrip()) for line in comment.split("\n")]
    text = "\n".join(lines).strip().replace("<", "\\<")
    # Lists are not indented, and have an empty line before and after.
    text = re.sub(r"^  (?=- |  )", "", text, flags=re.MULTILINE)
    text = re.sub(r"^(?!- |  )(.+)\n(?=- )", r"\1\n\n", text, flags=re.MULTILINE)
    text = re.sub(r"^((?:- |  ).+)\n(?!- |  |\n)", r"\1\n\n", text, flags=re.MULTILINE)
    return "\n\n".join(_with_table(paragraph) for paragraph in text.split("\n\n"))


def _with_table(paragraph):
    """A paragraph of `name  meaning` lines as a table, any other as it is."""
    rows = [re.match(r"(\w+) {2,}(\S.*)$", line) for line in paragraph.split("\n")]
    if not all(rows):
        return paragraph
    table = ["| argument | meaning |", "|---|---|"]
    return "\n".join(table + ["| `%s` | %s |" % row.groups() for row in rows])


def _names(code):
    """The names that declarations declare, in their order."""
    found = re.findall(r"^struct (\w+) \{", code, re.MULTILINE)
    code = re.sub(r"^struct \w+ \{.*?^\};", "", code, flags=re.MULTILINE | re.DOTALL)
    for declaration in code.split(";"):
        match = re.search(r"LARKSPUR_EXPORT\s[^(]*?(\w+)\s*(\(|$)", declaration)
        if match:
            found.append(match.group(1))
    return found


def sections():
    """What the header declares, section by section."""
    parts = BANNER.split(read(HEADER).split("#ifdef __cplusplus\n}")[0])
    found = []
    for title, text in zip(parts[1::2], parts[2::2]):
        section = Section(title, [], [])
        for comment, code in COMMENT.findall(text):
            if code:
                section.items.append(Item(_comment_text(comment), code, _names(code)))
            else:
                section.prose.append(_comment_text(comment))
        found.append(section)
    return found


def examples():
    """The calls of tour.c: from a section's title to the code."""
    parts = BANNER.split(read(TOUR))
    return {title: text.strip("\n") for title, text in zip(parts[1::2], parts[2::2])}


def looking_up():
    """What of sparks.c shows how names are looked up and used."""
    text = read(SPARKS)
    found = [re.search(r"/\* larkspur's functions, .*?(?=\n\n)", text, re.DOTALL).group()]
    for name in ("find", "load_larkspur", "sparks_frame"):
        function = r"(?:^/\*[^/]*?\*/\n)?^static \w+\*? ?%s\(.*?^\}" % name
        found.append(re.search(function, text, re.DOTALL | re.MULTILINE).group())
    return "\n\n".join(found)


def _declarations(code):
    """Declarations without what only the header needs, their later lines moved along."""

    def moved(match):
        return match.group(1).replace("\n" + " " * len(EXPORT), "\n")

    return re.sub(EXPORT + r"([^;]*;)", moved, code).rstrip("\n")


def _heading(names):
    if len(names) > MOST_IN_HEADING:
        return "`%s` to `%s`" % (names[0], names[-1])
    return ", ".join("`%s`" % name for name in names)


def page():
    """The whole page as Markdown."""
    calls = examples()
    opening, _ = COMMENT.search(read(HEADER)).groups()
    text = [INTRODUCTION, "## What holds for all of them\n\n"]
    text.append(_comment_text(opening).split("\n\n", 1)[1] + "\n\n")
    text.append(LOOKING_UP + "```c\n%s\n```\n\n" % looking_up())
    for section in sections():
        text.append("## %s\n\n" % section.title)
        text += [prose + "\n\n" for prose in section.prose]
        for item in section.items:
            text.append("### %s\n\n" % _heading(item.names))
            text.append("%s\n\n```c\n%s\n```\n\n" % (item.comment, _declarations(item.code)))
        text.append("### Example: %s\n\n" % section.title.lower())
        text.append("```c\n%s\n```\n\n" % calls[section.title])
    return "".join(text).rstrip("\n") + "\n"
