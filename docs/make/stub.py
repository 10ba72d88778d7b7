"""Reads python/larkspur.pyi; needs Python 3.9 and nothing else.

    python3 docs/make/stub.py [FILE]    prints what read() gives as JSON

read() gives a list of entries, in the order of the file. Each is a dictionary:

    kind       "module" (the first entry), "variable", "function" or "class"
    name       as in the module; "larkspur" for the module itself
    line       where it begins
    group      what the comment line before it says, in a line of its own; None before the first
    live       False for a class that only type checkers know
    doc        its docstring, see below; None where there is none

A variable, and a member of a class, has its annotation as well:

    type       text
    writable   False for a property without a setter; of members only

A function or method has

    signatures  a text for each: several where it is overloaded
    parameters  of the first signature, without self: {"name", "type", "default", "star"} each, the
                last two "" where there is none, "*" or "**" for a parameter that takes all others
    required    how many arguments it needs at least, without self
    most        how many it takes at most; None where it takes any number

and a class `bases` (texts), `members` and `methods`, lists of entries. Annotations are given with
the stub's private names (`_Int`) replaced by what they stand for.

A docstring has `summary` (its first line), `text` (what follows up to the first section) and
`sections`: a list of [title, content] in the order of the docstring. Content is a text for Returns
and Example, otherwise a list of [name, text]: the parameters of Args, the exceptions of Raises (""
for a sentence that belongs to none), the lines of Writes without their quotes.
"""

from __future__ import print_function

import ast
import inspect
import json
import os
import re
import sys

STUB = os.path.join(
    os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))),
    "python",
    "larkspur.pyi",
)

LISTS = ("Args", "Raises", "Writes")
TEXTS = ("Returns", "Example")
TITLE = re.compile(r"^(%s):$" % "|".join(LISTS + TEXTS))
INDENT = "    "


class StubError(Exception):
    """Something in the stub that its readers could not make sense of."""


# --- Docstrings ----------------------------------------------------------------------------------


def dedented(lines):
    return inspect.cleandoc("\n" + "\n".join(lines)).rstrip()


def parse_item(where, text):
    """[name, text] of an item of a list; what is raised may be a sentence of its own."""
    pattern = r'"(.*?)": (.*)$' if text.startswith('"') else r"([\w.]+): (.*)$"
    match = re.match(pattern, text)
    if match:
        return list(match.groups())
    if where.endswith("Raises"):
        return ["", text]
    raise StubError("%s: no 'name: text' in %r" % (where, text))


def parse_list(where, lines):
    """[[name, text]]: an item begins one level in, and goes on further in."""
    items = []
    for line in lines:
        if not line.strip():
            continue
        depth = len(line) - len(line.lstrip())
        if depth == len(INDENT):
            items.append(line.strip())
        elif depth > len(INDENT) and items:
            items[-1] += " " + line.strip()
        else:
            raise StubError("%s: wrong indentation of %r" % (where, line))
    return [parse_item(where, item) for item in items]


def parse_doc(where, docstring):
    if docstring is None:
        return None
    blocks = [("", [])]
    for line in inspect.cleandoc(docstring).splitlines():
        title = TITLE.match(line)
        if title:
            blocks.append((title.group(1), []))
        else:
            blocks[-1][1].append(line)
    before = blocks[0][1]
    sections = []
    for title, lines in blocks[1:]:
        place = "%s, %s" % (where, title)
        if any(line and not line.startswith(INDENT) for line in lines):
            raise StubError("%s: a section goes on to the next one, indented" % place)
        content = parse_list(place, lines) if title in LISTS else dedented(lines)
        sections.append([title, content])
    return {"summary": before[0], "text": dedented(before[1:]), "sections": sections}


# --- Code ----------------------------------------------------------------------------------------


class Aliases(ast.NodeTransformer):
    """Replaces the stub's private names by what they stand for."""

    def __init__(self):
        self.known = {}

    def visit_Name(self, node):
        return self.known.get(node.id, node)

    def text(self, node):
        # A copy: the tree is read again for the next signature.
        return ast.unparse(self.visit(ast.parse(ast.unparse(node), mode="eval").body))


def is_private(name):
    return name.startswith("_") and not name.startswith("__")


def decorators(node):
    return [ast.unparse(decorator) for decorator in node.decorator_list]


class Reader(object):
    def __init__(self, source):
        self.lines = source.splitlines()
        self.tree = ast.parse(source)
        self.aliases = Aliases()
        for node in self.tree.body:
            if isinstance(node, ast.AnnAssign) and is_private(node.target.id):
                value = node.value
                if isinstance(value, ast.Constant):
                    value = ast.parse(value.value, mode="eval").body
                self.aliases.known[node.target.id] = value

    def group(self, line):
        """The text of the comment in a line of its own that stands last before a line, as deep."""
        text = self.lines[line - 1]
        indent = text[: len(text) - len(text.lstrip())]
        for text in reversed(self.lines[: line - 1]):
            if text.startswith(indent + "# "):
                return text.strip("# -")
            if indent and text.startswith(indent[: -len(INDENT)] + "class "):
                break
        return None

    def entry(self, kind, node, name, **more):
        first = min([node.lineno] + [d.lineno for d in getattr(node, "decorator_list", [])])
        found = {"kind": kind, "name": name, "line": node.lineno, "group": self.group(first)}
        found.update(live=True, doc=None)
        found.update(more)
        return found

    def documented(self, entry, node, where):
        entry["doc"] = parse_doc(where, ast.get_docstring(node))
        return entry

    def parameters(self, arguments):
        positional = arguments.posonlyargs + arguments.args
        defaults = [""] * (len(positional) - len(arguments.defaults))
        defaults += [ast.unparse(value) for value in arguments.defaults]
        rows = [(one, default, "") for one, default in zip(positional, defaults)]
        rows += [(one, "", "*") for one in [arguments.vararg] if one]
        rows += [(one, "", "") for one in arguments.kwonlyargs]
        rows += [(one, "", "**") for one in [arguments.kwarg] if one]
        return [
            {
                "name": one.arg,
                "type": self.aliases.text(one.annotation) if one.annotation else "",
                "default": default,
                "star": star,
            }
            for one, default, star in rows
        ]

    def signature(self, node, parameters):
        shown = []
        last = node.args.posonlyargs[-1].arg if node.args.posonlyargs else None
        for one in parameters:
            text = one["star"] + one["name"]
            if one["type"]:
                text += ": " + one["type"]
            if one["default"]:
                text += (" = " if one["type"] else "=") + one["default"]
            shown += [text, "/"] if one["name"] == last else [text]
        result = " -> " + self.aliases.text(node.returns) if node.returns else ""
        return "%s(%s)%s" % (node.name, ", ".join(shown), result)

    def function(self, node, inside=""):
        parameters = self.parameters(node.args)
        if inside and "staticmethod" not in decorators(node):
            parameters = parameters[1:]
        plain = [one for one in parameters if not one["star"]]
        entry = self.entry("function", node, node.name)
        entry["signatures"] = [self.signature(node, parameters)]
        entry["parameters"] = parameters
        entry["required"] = len([one for one in plain if not one["default"]])
        entry["most"] = len(plain) if plain == parameters else None
        return self.documented(entry, node, inside + node.name)

    def variable(self, body, i, inside=""):
        """An annotated name; a text behind it is its docstring."""
        node = body[i]
        entry = self.entry("variable", node, node.target.id)
        entry["type"] = self.aliases.text(node.annotation)
        entry["writable"] = True
        after = body[i + 1] if i + 1 < len(body) else None
        if isinstance(after, ast.Expr) and isinstance(after.value, ast.Constant):
            if isinstance(after.value.value, str):
                entry["doc"] = parse_doc(inside + entry["name"], after.value.value)
        return entry

    def class_entry(self, node):
        entry = self.entry("class", node, node.name, live="type_check_only" not in decorators(node))
        entry["bases"] = [self.aliases.text(base) for base in node.bases]
        entry["members"] = []
        entry["methods"] = []
        inside = node.name + "."
        for i, item in enumerate(node.body):
            if isinstance(item, ast.AnnAssign):
                entry["members"].append(self.variable(node.body, i, inside))
            elif isinstance(item, ast.Assign):
                # __hash__ = None and the like: a name that is there.
                found = self.entry("variable", item, item.targets[0].id)
                entry["members"].append(dict(found, type=ast.unparse(item.value), writable=False))
            elif isinstance(item, ast.FunctionDef):
                self.add_method(entry, item, inside)
        return self.documented(entry, node, node.name)

    def add_method(self, entry, node, inside):
        wanted = decorators(node)
        setter = [one for one in wanted if one.endswith((".setter", ".deleter"))]
        if setter:
            for member in entry["members"]:
                if member["name"] == node.name and setter[0].endswith(".setter"):
                    member["writable"] = True
            return
        if "property" in wanted:
            member = self.entry("variable", node, node.name, writable=False)
            member["type"] = self.aliases.text(node.returns)
            entry["members"].append(self.documented(member, node, inside + node.name))
            return
        found = self.function(node, inside)
        earlier = [one for one in entry["methods"] if one["name"] == node.name]
        add_overload(entry["methods"], earlier, found)

    def entries(self):
        module = {"kind": "module", "name": "larkspur", "line": 1, "group": None, "live": True}
        found = [self.documented(module, self.tree, "larkspur")]
        for i, node in enumerate(self.tree.body):
            if isinstance(node, ast.AnnAssign) and not is_private(node.target.id):
                found.append(self.variable(self.tree.body, i))
            elif isinstance(node, ast.FunctionDef):
                earlier = [one for one in found if one["name"] == node.name]
                add_overload(found, earlier, self.function(node))
            elif isinstance(node, ast.ClassDef) and not is_private(node.name):
                found.append(self.class_entry(node))
        return found


def add_overload(entries, earlier, found):
    """Adds a function, or what one more overload says to the entry that is there."""
    if not earlier:
        entries.append(found)
        return
    known = earlier[0]
    known["signatures"] += found["signatures"]
    known["required"] = min(known["required"], found["required"])
    if None in (known["most"], found["most"]):
        known["most"] = None
    else:
        known["most"] = max(known["most"], found["most"])
    known["doc"] = known["doc"] or found["doc"]


def section(doc, title):
    """The content of a docstring's section; None where it has none."""
    for name, content in doc["sections"] if doc else []:
        if name == title:
            return content
    return None


def read(path=STUB):
    with open(path) as stub:
        return Reader(stub.read()).entries()


if __name__ == "__main__":
    json.dump(read(*sys.argv[1:2]), sys.stdout, indent=1)
    print()
