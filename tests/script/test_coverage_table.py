"""script/coverage_table.py: what of the counts is told."""

import imp
import os

import pytest
from support.scripts import TREE

coverage_table = imp.load_source(
    "coverage_table", os.path.join(TREE, "script", "coverage_table.py")
)


def counted(path, lines, all_lines, branches, all_branches):
    return {
        "filename": path,
        "line_covered": lines,
        "line_total": all_lines,
        "branch_covered": branches,
        "branch_total": all_branches,
    }


def test_folders_are_summed_and_all_come_last():
    rows = coverage_table.table(
        [
            counted("src/room/view.cpp", 3, 4, 1, 2),
            counted("src/room/draw.cpp", 5, 6, 2, 2),
            counted("src/base/console.cpp", 1, 2, 0, 0),
        ]
    )
    assert [row[:3] + row[4:6] for row in rows] == [
        ["src/base", 1, 2, 0, 0],
        ["src/room", 8, 10, 3, 4],
        ["all", 9, 12, 3, 4],
    ]
    assert [row[3] for row in rows] == [50.0, 80.0, 75.0]
    assert [row[6] for row in rows] == [100.0, pytest.approx(75.0), 75.0]
