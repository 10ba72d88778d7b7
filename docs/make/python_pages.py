"""The reference of the module's functions and types, from python/larkspur.pyi."""

import os
import re
import textwrap

import stub

FUNCTIONS = "functions.md"
TYPES = "types.md"
PIXELS = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "pixels.md")
SIGNATURE_WIDTH = 90

BEFORE_EXAMPLES = """\
The examples of this page run one after the other, as in one session. It begins with an engine that
has everything and does nothing; [Embedding larkspur](../embedding.md) builds a real one.

"""

TYPES_TEXT = """\
The module's types. Each begins with a table of its members and methods: the members of a group
stand together in a table further down, and each method has a heading of its own.

"""


def _joined(text):
    """A text in one line, fit for a table's cell."""
    return " ".join(text.split()).replace("|", "\\|")


def _shown_type(text):
    """A type without what holds for all: a variable may stand for a number or a particle type."""
    return text.replace(" | GMVar", "")


def _code(text):
    """Types, or a default. A bar would end a table's cell."""
    return " or ".join("`%s`" % one for one in text.split(" | "))


def _anchor(heading):
    """What the site and code hosts make of a heading of words and names."""
    return "#" + re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-")


def _link(text, heading):
    return "[%s](%s)" % (text, _anchor(heading))


def _table(heads, rows):
    lines = [heads, ["---"] * len(heads)] + rows
    return "".join("| %s |\n" % " | ".join(line) for line in lines) + "\n"


def _example(session):
    """A session, with the sentences in it as text between blocks of code."""
    parts = session.split("\n\n")
    return "".join(
        "```pycon\n%s\n```\n\n" % part if part.startswith(">>>") else part + "\n\n"
        for part in parts
    )


def _arguments(entry, content):
    types = {one["name"]: one for one in entry.get("parameters", [])}
    rows = []
    for name, text in content:
        if name == "ignored":
            continue  # the signature says it
        one = types.get(name, {"type": "", "default": ""})
        default = _code(one["default"]) if one["default"] else ""
        rows.append(
            [
                "`%s`" % name,
                _code(_shown_type(one["type"])) if one["type"] else "",
                default,
                _joined(text),
            ]
        )
    if not rows:
        return ""
    heads = ["argument", "type", "default", "meaning"]
    shown = [i for i in range(len(heads)) if any(row[i] for row in rows)]
    return _table([heads[i] for i in shown], [[row[i] for i in shown] for row in rows])


def _section(entry, title, content):
    if title == "Args":
        return _arguments(entry, content)
    if title == "Returns":
        return "**Returns** %s\n\n" % content
    if title == "Raises":
        rows = [
            "- %s\n" % (("`%s`: " % name if name else "") + _joined(text)) for name, text in content
        ]
        return "**Raises**\n\n%s\n" % "".join(rows)
    if title == "Writes":
        rows = ["- `%s`: %s\n" % (line, _joined(text)) for line, text in content]
        return "**Writes**\n\n%s\n" % "".join(rows)
    return _example(content)


def _doc(entry):
    """An entry's text with its sections."""
    doc = entry["doc"]
    if doc is None:
        return ""
    text = "\n\n".join(part for part in (doc["summary"], doc["text"]) if part) + "\n\n"
    return text + "".join(_section(entry, *section) for section in doc["sections"])


def _signature(text):
    """A signature in lines that fit on a page."""
    return textwrap.fill(
        _shown_type(text),
        SIGNATURE_WIDTH,
        subsequent_indent="    ",
        break_long_words=False,
        break_on_hyphens=False,
    )


def _pixel_headings():
    """From a function's name to the heading of pixels.md that has it."""
    with open(PIXELS) as page:
        headings = re.findall(r"^##+ (.*)$", page.read(), re.MULTILINE)
    return {name: heading for heading in headings for name in re.split(r", | and ", heading)}


def _function(entry, mark, inside="", headings=()):
    name = inside + entry["name"]
    signatures = "\n".join(_signature(signature) for signature in entry["signatures"])
    text = "%s `%s`\n\n```py\n%s\n```\n\n" % (mark, name, signatures)
    if entry["name"] in headings:
        heading = headings[entry["name"]]
        text += "[Exactly, with pictures](../pixels.md%s)\n\n" % _anchor(heading)
    return text + _doc(entry)


def _grouped(entries):
    """[(group, entries)] in the order of the stub."""
    groups = []
    for entry in entries:
        if not groups or groups[-1][0] != entry["group"]:
            groups.append((entry["group"], []))
        groups[-1][1].append(entry)
    return groups


def _index(entries):
    rows = [
        [_link("`%s`" % entry["name"], entry["name"]), _joined(entry["doc"]["summary"])]
        for entry in entries
    ]
    return _table(["name", "what it is"], rows)


def _setup(entries):
    return BEFORE_EXAMPLES + _example(stub.section(entries[0]["doc"], "Example"))


def functions_page(entries):
    module = entries[0]["doc"]
    shown = [entry for entry in entries[1:] if entry["kind"] == "function" or not entry["live"]]
    variables = [entry for entry in entries if entry["kind"] == "variable"]
    text = ["# Functions\n\n", module["summary"] + "\n\n", module["text"] + "\n\n", _index(shown)]
    text += ["## Before the examples\n\n", _setup(entries)]
    headings = _pixel_headings()
    for variable in variables:
        text += ["## `%s`\n\n" % variable["name"], _doc(variable)]
    for group, members in _grouped(shown):
        text.append("## %s\n\n" % (group or "Handles"))
        for entry in members:
            if entry["kind"] == "function":
                text.append(_function(entry, "###", headings=headings))
            else:
                text.append("### `%s`\n\n%s" % (entry["name"], _doc(entry)))
    return _ended(text)


def _members(entry):
    text = []
    for group, members in _grouped(entry["members"]):
        if group:
            text.append("#### %s\n\n" % group)
        rows = []
        for member in members:
            doc = member["doc"] or {"summary": "", "text": ""}
            kind = _code(member["type"]) + ("" if member["writable"] else ", read only")
            rows.append(
                ["`%s`" % member["name"], kind, _joined(doc["summary"] + " " + doc["text"])]
            )
        text.append(_table(["member", "type", "meaning"], rows))
    return "".join(text)


def _methods(entry):
    return "".join(_function(method, "####", entry["name"] + ".") for method in entry["methods"])


def _contents(entry):
    """A type's members and methods by groups, with the way to each table and each method."""
    all_members = "Members of " + entry["name"]
    rows = [
        [
            _link(group or "Members", group or all_members),
            ", ".join("`%s`" % member["name"] for member in members),
        ]
        for group, members in _grouped(entry["members"])
    ]
    for group, methods in _grouped(entry["methods"]):
        links = [
            _link("`%s`" % one["name"], "%s.%s" % (entry["name"], one["name"])) for one in methods
        ]
        rows.append([group or "Methods", ", ".join(links)])
    return _table(["in `%s`" % entry["name"], ""], rows)


def types_page(entries):
    shown = [entry for entry in entries if entry["kind"] == "class" and entry["live"]]
    text = ["# Types\n\n", TYPES_TEXT, _index(shown)]
    text += ["## Before the examples\n\n", _setup(entries)]
    for entry in shown:
        text += ["## `%s`\n\n" % entry["name"], entry["doc"]["summary"] + "\n\n"]
        text += [_contents(entry), _doc(dict(entry, doc=dict(entry["doc"], summary="")))]
        if entry["members"]:
            text += ["### Members of `%s`\n\n" % entry["name"], _members(entry)]
        if entry["methods"]:
            text += ["### Methods of `%s`\n\n" % entry["name"], _methods(entry)]
    return _ended(text)


def _ended(text):
    return "".join(text).rstrip("\n") + "\n"
