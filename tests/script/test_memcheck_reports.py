"""What is read in memcheck's logs."""

import os
import subprocess
import sys

import pytest
from support.scripts import TREE

HEAD = """==7== Memcheck, a memory error detector
==7== Command: python2.7 -m pytest
==7==
"""
REPORT = """==7== Invalid read of size 4
==7==    at 0x4838B6F: {}
==7==    by 0x10916A: PyEval_EvalFrameEx (in /usr/lib/libpython2.7.so.1.0)
==7==  Address 0x4a5e040 is 0 bytes inside a block of size 8 free'd
==7==    at 0x48399AB: free (in /usr/libexec/valgrind/vgpreload_memcheck-amd64-linux.so)
==7==
"""
OURS = REPORT.format("flip_v (in /tree/.venv/lib/python2.7/site-packages/larkspur.so)")
OTHERS = REPORT.format("SDL_VideoQuit (in /usr/lib/libSDL-1.2.so.0.11.4)")
END = """==7== HEAP SUMMARY:
==7==     in use at exit: 5,012 bytes in 99 blocks of larkspur.so
==7==
==7== ERROR SUMMARY: 2 errors from 2 contexts (suppressed: 0 from 0)
"""


def read(tmpdir, *logs):
    """(exit status, what is printed) for these logs."""
    for number, log in enumerate(logs):
        tmpdir.join("report.%d" % number).write(log)
    reader = subprocess.Popen(
        [sys.executable, os.path.join(TREE, "tests", "memory", "reports.py"), str(tmpdir)],
        stdout=subprocess.PIPE,
    )
    output = reader.communicate()[0]
    return reader.returncode, output


def test_log_without_reports_is_clean(tmpdir):
    status, output = read(tmpdir, HEAD + END)
    assert status == 0
    assert "0 reports with larkspur" in output


def test_report_with_code_of_larkspur_fails_and_is_shown_whole(tmpdir):
    status, output = read(tmpdir, HEAD + END, HEAD + OTHERS + OURS + END)
    assert status == 1
    assert "1 reports with larkspur" in output
    assert "report.1:\nInvalid read of size 4\n   at 0x4838B6F: flip_v" in output
    assert "free'd" in output


@pytest.mark.parametrize("place", ["(src/room/view.cpp:20)", "(include/larkspur.h:9)"])
def test_code_of_larkspur_is_known_by_its_source_too(tmpdir, place):
    assert read(tmpdir, HEAD + REPORT.format("draw_view " + place) + END)[0] == 1


def test_reports_of_others_are_counted_by_place(tmpdir):
    status, output = read(tmpdir, HEAD + OTHERS + OTHERS + END)
    assert status == 0
    assert "2 without larkspur: Invalid read of size 4 in SDL_VideoQuit" in output
