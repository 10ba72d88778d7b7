"""What script/test asks about the native tests.

native_tests.py pattern PYTEST_ARGUMENT...    which of them go with the arguments
native_tests.py summary LOG                   what CTest's output comes to

Names of native tests are PROGRAM.SUITE.TEST, and PROGRAM begins with the folder below tests that
has the tests of the same subject through Python.
"""

from __future__ import print_function

import collections
import os
import re
import sys

# Of failing tests, how many are shown with their output, and how many lines of it; and how many of
# the programs that a test failed in are named.
SHOWN_FAILURES = 2
SHOWN_LINES = 8
SHOWN_PROGRAMS = 3


def chosen(arguments):
    """The arguments' paths below tests, and the expression behind -k or an empty text."""
    paths = []
    expression = ""
    arguments = iter(arguments)
    for argument in arguments:
        path = os.path.relpath(argument.split("::")[0] or ".")
        if argument in ("--deselect", "--ignore"):
            next(arguments, None)
        elif argument == "-k":
            expression = next(arguments, "")
        elif argument.startswith("-k"):
            expression = argument[2:]
        elif path.startswith("tests") and os.path.exists(path):
            paths.append(path)
    return paths, expression


def suites_of_files(folder, word):
    """The suites of the native tests in files below the folder that have the word in their name."""
    for where, _, names in os.walk(os.path.join("tests", "native", folder)):
        for name in names:
            if name.endswith(".cpp") and word.lower() in name.lower():
                with open(os.path.join(where, name)) as source:
                    found = re.findall(r"^TEST(?:_F|_P)?\((\w+),", source.read(), re.MULTILINE)
                for suite in found:
                    yield suite


def in_any_case(word):
    """A regular expression of CTest for the word; an underscore may be missing: CamelCase."""
    return "".join(
        "_?" if letter == "_" else "[%s%s]" % (letter.upper(), letter.lower()) for letter in word
    )


def pattern(arguments):
    """CTest's regular expression for the native tests that go with pytest's arguments; empty where
    that is all of them."""
    paths, expression = chosen(arguments)
    alternatives = []
    for path in paths or ["tests"]:
        folders = path.split(os.sep)[1:]
        folder = ([name for name in folders if name != "native"] + [""])[0]
        word = re.sub(r"^test_|\.py$", "", os.path.basename(path)) if path.endswith(".py") else ""
        word = expression or word
        if not re.match(r"\w+$", word):
            alternatives.append("^" + folder)
            continue
        alternatives.append("^%s.*[.].*%s" % (folder, in_any_case(word)))
        for suite in sorted(set(suites_of_files(folder, word))):
            alternatives.append("^%s.*[./]%s[.]" % (folder, suite))
    return "" if "^" in alternatives else "|".join(alternatives)


def not_passed(log):
    """Two of {SUITE.TEST: [(program, lines of output)]}, in CTest's order: the tests that failed,
    and those that were skipped.

    The cases of a test with parameters, of which each has a name, count as the test. Of one that
    did not come to its end, CTest's word for that is the first line.
    """
    failed, skipped = collections.OrderedDict(), collections.OrderedDict()
    lines = None
    for line in log:
        ended = re.match(r" *\d+/\d+ Test +#\d+: ([^.]+)\.(\S+?\.[^/ ]+)", line)
        if ended:
            program, name = ended.groups()
            lines = None
            if not re.search(r" Passed +[\d.]+ sec$", line):
                result = re.search(r"(\w+(?: \w+)*)?[*]{3}([\w: ]+?):? +[\d.]+ sec$", line)
                words = [word for word in result.groups() if word] if result else []
                told = words not in ([], ["Failed"], ["Skipped"])
                lines = ["CTest: " + ", ".join(words)] if told else []
                found = skipped if words == ["Skipped"] else failed
                found.setdefault(name, []).append((program, lines))
        elif re.match(r"\d+% tests passed", line):
            break
        elif lines is not None and not re.match(r" +Start +\d+: ", line):
            lines.append(line.rstrip())
    return failed, skipped


def telling(lines):
    """The output without what GoogleTest says before a test begins and after it failed."""
    begin = end = None
    cut_short = [line for line in lines[:1] if line.startswith("CTest: ")]
    for i, line in enumerate(lines):
        if line.startswith("[ RUN "):
            begin = i + 1
        elif line.startswith("[  FAILED  ]") and end is None:
            end = i
    return cut_short + lines[begin:end]


def show_names(title, found):
    """Names the tests, and the programs that each is in."""
    if found:
        print("\n%s native tests:" % title)
    for name, runs in found.items():
        programs = sorted(set(program for program, _ in runs))
        more = len(programs) - SHOWN_PROGRAMS
        if more > 0:
            programs[SHOWN_PROGRAMS:] = ["%d more" % more]
        print("    %s in %s" % (name, ", ".join(programs)))


def summarise(path):
    with open(path) as log:
        text = log.read().splitlines()
    failed, skipped = not_passed(text)
    for name, runs in list(failed.items())[:SHOWN_FAILURES]:
        lines = telling(runs[0][1])
        print("\n%s in %s:" % (name, runs[0][0]))
        for line in lines[:SHOWN_LINES]:
            print("    " + line)
        if len(lines) > SHOWN_LINES:
            print("    ... %d lines more in %s" % (len(lines) - SHOWN_LINES, path))
    show_names("skipped", skipped)
    show_names("failed", failed)
    for line in text:
        if re.match(r"\d+% tests passed|No tests were found", line):
            print(line)
            return
    # CTest itself did not come to an end.
    print("\n".join(text[-SHOWN_LINES:]))


def main():
    if sys.argv[1] == "pattern":
        print(pattern(sys.argv[2:]))
    else:
        summarise(sys.argv[2])


if __name__ == "__main__":
    main()
