"""The work of script/mutate: chooses changes, makes them one by one, and notes who notices.

mutation.py TREE BUILD REPORT [--count N] [--seed N] [--files WORD] [--survivors] [--quick]
"""

from __future__ import print_function

import argparse
import collections
import hashlib
import io
import os
import random
import re
import resource
import subprocess
import sys
import time

# What stands for what. clang-format puts blanks around an operator of two operands, and none around
# what looks like one in a type.
OPERATORS = {
    " + ": " - ",
    " - ": " + ",
    " * ": " / ",
    " / ": " * ",
    " % ": " / ",
    " << ": " >> ",
    " >> ": " << ",
    " & ": " | ",
    " | ": " & ",
    " ^ ": " & ",
    " && ": " || ",
    " || ": " && ",
    " < ": " <= ",
    " <= ": " < ",
    " > ": " >= ",
    " >= ": " > ",
    " == ": " != ",
    " != ": " == ",
    " += ": " -= ",
    " -= ": " += ",
    " |= ": " &= ",
    " &= ": " |= ",
    "++": "--",
    "--": "++",
    "true": "false",
    "false": "true",
    "break;": "continue;",
    "continue;": "break;",
}
OPERATOR = re.compile(
    "|".join(
        r"\b%s\b" % text if text.isalpha() else re.escape(text)
        for text in sorted(OPERATORS, key=len, reverse=True)
    )
)
NUMBER = re.compile(r"(?<![\w.])(0x[0-9A-Fa-f]+|\d+\.\d+|\d+)(?=[uUlLfF]*\b)(?![\w.]*\.)")
CONDITION = re.compile(r"\b(if|while) \((.*)\) \{$")
CALL = re.compile(r"\b\w+\(([\w.*&>-]+(?:\[\w+\])?), ([\w.*&>-]+(?:\[\w+\])?)(?=[,)])")
CHOICE = re.compile(r" \? ([^?:]+?) : ([^?:;]+?)(?=[;)]|, )")
# A whole line that calls or assigns; a declaration has two words before its "=" or "(".
STATEMENT = re.compile(
    r"^\s+(?!return\b|using\b|case\b|delete\b|throw\b)[\w.:>*\[\]()-]+"
    r"(\(.*\)| [-+*/|&^%]?= .*);$"
)

# Lines that make no code, or none that could be another.
NO_CODE = re.compile(
    r"^\s*(#|//|/\*|\*|extern|namespace|using|template|static_assert|public:|private:|\})|noexcept;"
)

SECONDS_FOR_NATIVE_TESTS = 120
SECONDS_FOR_A_FILE = 180
SECONDS_FOR_ALL = 1200
BYTES_OF_MEMORY = 6 * 2**30

# What none of the code's changes can break, or what breaks for each change.
LEFT_OUT = ["tests/script", "tests/build", "tests/check", "tests/examples/test_demo.py"]

# The folders of tests that are asked in a quick run.
SUBJECTS = ["core", "particles", "pixel", "room", "types"]

Change = collections.namedtuple("Change", "path number column old new")


def described(change):
    return "%s:%d:%d  `%s` -> `%s`" % change


def sources(tree):
    """Paths of all sources below src, in order."""
    found = []
    for where, _, names in os.walk(os.path.join(tree, "src")):
        for name in names:
            if name.endswith((".cpp", ".h")):
                found.append(os.path.relpath(os.path.join(where, name), tree))
    return sorted(found)


def without_texts(line):
    """The line, of the same length, with neither comments nor the insides of string literals."""
    line = re.sub(r'"(\\.|[^"\\])*"', lambda text: '"' + " " * (len(text.group()) - 2) + '"', line)
    return re.sub("//.*", lambda text: " " * len(text.group()), line)


def changed_number(text):
    if text.startswith("0x"):
        return hex(int(text, 16) ^ 1).rstrip("L")
    if "." in text:
        return str(float(text) + 1)
    return "0" if text == "1" else str(int(text) + 1)


def changes_of_line(line):
    """(column, old text, new text) of each change that the line can take."""
    code = without_texts(line)
    if NO_CODE.search(code):
        return
    for found in OPERATOR.finditer(code):
        yield found.start(), found.group(), OPERATORS[found.group()]
    for found in NUMBER.finditer(code):
        yield found.start(), found.group(), changed_number(found.group())
    found = CONDITION.search(code)
    if found and ";" not in found.group(2):
        start, end = found.span(2)
        yield start, line[start:end], "!(" + line[start:end] + ")"
    for found in CALL.finditer(code):
        first, second = found.groups()
        if first != second:
            yield found.start(1), first + ", " + second, second + ", " + first
    for found in CHOICE.finditer(code):
        first, second = (line[slice(*found.span(i))] for i in (1, 2))
        yield found.start(1), first + " : " + second, second + " : " + first
    if STATEMENT.match(code):
        start = len(line) - len(line.lstrip())
        yield start, line.strip(), ";"


def read(path):
    with io.open(path, encoding="ascii") as source:
        return source.read()


def write(path, text):
    with open(path, "wb") as target:
        target.write(text.encode("ascii"))


def all_changes(tree, word):
    found = []
    for path in sources(tree):
        if word not in path:
            continue
        inside_comment = False
        for number, line in enumerate(read(os.path.join(tree, path)).split("\n"), 1):
            inside_comment = inside_comment or line.lstrip().startswith("/*")
            if not inside_comment:
                found += [Change(path, number, *change) for change in changes_of_line(line)]
            inside_comment = inside_comment and "*/" not in line
    return found


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (BYTES_OF_MEMORY, BYTES_OF_MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def run(seconds, command, cwd, log, **variables):
    """The command's status, 137 where it took longer than that and was killed with its children."""
    with open(log, "w") as output, open(os.devnull) as nothing:
        return (
            subprocess.call(
                ["timeout", "--signal=KILL", str(seconds)] + command,
                cwd=cwd,
                env=dict(os.environ, **variables),
                stdin=nothing,
                stdout=output,
                stderr=subprocess.STDOUT,
                preexec_fn=limit_memory,
            )
            % 256
        )


class Trial(object):
    """Builds the tree as it stands and runs the tests on it."""

    def __init__(self, tree, build, quick):
        self.tree = tree
        self.quick = quick
        self.build = build
        self.log = os.path.join(os.path.dirname(build), "last.log")

    def build_target(self, *targets):
        return 0 == run(
            900, ["ninja", "-C", self.build, "-j", "1"] + list(targets), self.tree, self.log
        )

    def digest(self):
        with open(os.path.join(self.build, "larkspur.so"), "rb") as module:
            return hashlib.sha256(module.read()).hexdigest()

    def native_tests(self, path):
        """(name, path of the program) of the native tests that a source's folder has."""
        folder = os.path.dirname(path)[len("src/") :]
        name = {
            "base": "base",
            "pixel/kernels": "pixel_kernels",
            "pixel/surface": "pixel_surfaces",
        }.get(folder)
        return (name, os.path.join(self.build, "tests", "native", folder, name)) if name else None

    def pytest(self, seconds, arguments):
        """What noticed, or None."""
        status = run(
            seconds,
            [sys.executable, "-m", "pytest", "-x", "-q", "-p", "no:cacheprovider"]
            + arguments
            + ["--ignore=" + path for path in LEFT_OUT],
            self.tree,
            self.log,
            PYTHONPATH=self.build,
            LARKSPUR_BUILD_DIR=self.build,
        )
        if status in (0, 5):
            return None
        failed = re.search(r"^(tests/\S+\.py)[:\s]", read_log(self.log), re.MULTILINE)
        return (failed.group(1) if failed else arguments[0]) + ending(status)

    def noticed_by(self, change):
        """Which tests notice the change that was made, the cheapest asked first; None for none."""
        native = self.native_tests(change.path)
        if native:
            if not self.build_target(native[0]):
                return "the build of " + native[0]
            status = run(SECONDS_FOR_NATIVE_TESTS, [native[1]], self.tree, self.log)
            if status:
                return native[0] + ending(status)
        stem = os.path.splitext(change.path)[0][len("src/") :]
        folder, name = os.path.split(stem)
        mirror = os.path.join("tests", folder, "test_" + name + ".py")
        if os.path.exists(os.path.join(self.tree, mirror)):
            noticed = self.pytest(SECONDS_FOR_A_FILE, [mirror])
            if noticed:
                return noticed
        steps = [] if self.quick else ["tests"]
        # What stands on the lowest floor shows in the work with pixels.
        subject = folder.split("/")[0].replace("base", "pixel")
        steps.insert(0, os.path.join("tests", subject))
        for tests in steps:
            noticed = self.pytest(SECONDS_FOR_ALL, [tests])
            if noticed:
                return noticed
        return None


def read_log(path):
    with io.open(path, encoding="utf-8", errors="replace") as log:
        return log.read()


def ending(status):
    """How a program ended that did not just say that a test failed."""
    if status == 137:
        return " (endless)"
    return "" if status in (1, 2) else " (status %d)" % status


SURVIVED = "SURVIVED"
SAME = "same code"
NOT_BUILT = "does not compile"


def outcome(trial, change, original_digest):
    """What became of one change; the source is put back."""
    path = os.path.join(trial.tree, change.path)
    original = read(path)
    lines = original.split("\n")
    line = lines[change.number - 1]
    assert line[change.column :].startswith(change.old), described(change)
    lines[change.number - 1] = (
        line[: change.column] + change.new + line[change.column + len(change.old) :]
    )
    write(path, "\n".join(lines))
    try:
        if not trial.build_target("larkspur"):
            return NOT_BUILT
        if trial.digest() == original_digest:
            return SAME
        noticed = trial.noticed_by(change)
        return "noticed by " + noticed if noticed else SURVIVED
    finally:
        write(path, original)


def earlier_outcomes(report):
    """{description: outcome} of a report."""
    found = collections.OrderedDict()
    if os.path.exists(report):
        for line in read(report).splitlines():
            description, told, became = line.rpartition("  => ")
            if told:
                found[description] = became
    return found


def score(outcomes):
    count = collections.Counter(
        became if became in (SURVIVED, SAME, NOT_BUILT) else "noticed" for became in outcomes
    )
    other = count["noticed"] + count[SURVIVED]
    return "%d changes: %d noticed, %d survived, %d same code, %d do not compile; score %.1f %%" % (
        sum(count.values()),
        count["noticed"],
        count[SURVIVED],
        count[SAME],
        count[NOT_BUILT],
        100.0 * count["noticed"] / other if other else 100,
    )


def write_report(report, title, outcomes):
    lines = ["%s  => %s" % pair for pair in outcomes.items()]
    write(report, "\n".join([title] + lines + [score(outcomes.values()), ""]))


def parse(arguments):
    parser = argparse.ArgumentParser()
    parser.add_argument("tree")
    parser.add_argument("build")
    parser.add_argument("report")
    parser.add_argument("--count", type=int, default=250)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--files", default="")
    parser.add_argument("--survivors", action="store_true")
    parser.add_argument("--quick", action="store_true")
    return parser.parse_args(arguments)


def chosen_changes(options, earlier):
    changes = all_changes(options.tree, options.files)
    if options.survivors:
        return [change for change in changes if earlier.get(described(change)) == SURVIVED]
    # A list of its own for each seed, of which a larger count takes more.
    random.Random(options.seed).shuffle(changes)
    return changes[: options.count]


def digest_of_sources(tree):
    texts = [read(os.path.join(tree, path)) for path in sources(tree)]
    return hashlib.sha256("".join(texts).encode("ascii")).hexdigest()[:16]


def main():
    options = parse(sys.argv[1:])
    trial = Trial(options.tree, options.build, options.quick)
    title = "sources %s, seed %d, files %r" % (
        digest_of_sources(options.tree),
        options.seed,
        options.files,
    )
    outcomes = earlier_outcomes(options.report)
    same_run = os.path.exists(options.report) and read(options.report).startswith(title + "\n")
    changes = chosen_changes(options, outcomes)
    if options.survivors:
        title = read(options.report).split("\n", 1)[0]
    elif not same_run:
        outcomes.clear()
    if not trial.build_target("all"):
        sys.exit("mutate: the unchanged sources do not build, see " + trial.log)
    original = trial.digest()
    asked = [os.path.join("tests", subject) for subject in SUBJECTS] if options.quick else ["tests"]
    noticed = trial.pytest(SECONDS_FOR_ALL, asked)
    if noticed:
        sys.exit("mutate: tests fail on the unchanged sources: %s, see %s" % (noticed, trial.log))
    print("-- %d changes" % len(changes))
    for number, change in enumerate(changes, 1):
        name = described(change)
        if name in outcomes and not options.survivors:
            continue
        start = time.time()
        outcomes[name] = outcome(trial, change, original)
        write_report(options.report, title, outcomes)
        seconds = time.time() - start
        print(
            "-- %d of %d, %.0f s: %s  => %s" % (number, len(changes), seconds, name, outcomes[name])
        )
        sys.stdout.flush()
    print(score(outcomes.values()))


if __name__ == "__main__":
    main()
