"""script/mutation.py: which changes are made to the sources, and what is counted."""

import imp
import os

import pytest
from support.scripts import TREE

mutation = imp.load_source("mutation", os.path.join(TREE, "script", "mutation.py"))


def changed(line):
    """What the line becomes by each of its changes."""
    return [
        line[:column] + new + line[column + len(old) :]
        for column, old, new in mutation.changes_of_line(line)
    ]


@pytest.mark.parametrize(
    "line, expected",
    [
        ("    return a + b;", ["    return a - b;"]),
        ("    return a <= b;", ["    return a < b;"]),
        ("    const int n = 7;", ["    const int n = 8;"]),
        ("    const int n = 1;", ["    const int n = 0;"]),
        ("    return 0x10U;", ["    return 0x11U;"]),
        ("    if (is_empty()) {", ["    if (!(is_empty())) {"]),
        ("    return first ? a : b;", ["    return first ? b : a;"]),
        ("    return at(x, y);", ["    return at(y, x);"]),
        ("    clear(surface);", ["    ;"]),
        ("    count = other;", ["    ;"]),
        ("    return static_cast<int>(*p);", []),
        ("    std::vector<Line> lines;", []),
        ("    // a + b", []),
        ('    say("a + b");', ["    ;"]),
        ("#define ONE 1", []),
        ("int f(int a) noexcept;", []),
    ],
)
def test_changes_of_a_line(line, expected):
    assert changed(line) == expected


def test_same_seed_chooses_the_same_changes(tmpdir):
    tmpdir.join("src", "unit.cpp").write("a = b + c;\n" * 50, ensure=True)

    def chosen(*arguments):
        options = mutation.parse([str(tmpdir), "", ""] + list(arguments))
        return mutation.chosen_changes(options, {})

    assert chosen("--count", "9") == chosen("--count", "9") == chosen("--count", "12")[:9]
    assert chosen("--count", "9") != chosen("--count", "9", "--seed", "2")


def test_score_leaves_out_what_changes_nothing():
    outcomes = ["noticed by a"] * 3 + [mutation.SURVIVED, mutation.SAME, mutation.NOT_BUILT]
    assert mutation.score(outcomes).endswith("score 75.0 %")


def test_report_is_read_again(tmpdir):
    report = str(tmpdir.join("report"))
    outcomes = {"src/a.cpp:1:2  `a => b` -> `c`": mutation.SURVIVED}
    mutation.write_report(report, "title", outcomes)
    assert mutation.earlier_outcomes(report) == outcomes
