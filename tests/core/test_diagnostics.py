"""Log files, the debugger's hook and the deliberate exit."""

import ctypes
import os
import stat

import larkspur
import pytest
from support import native, subprocess_python


@pytest.fixture
def directory(tmpdir):
    """An empty current directory."""
    with tmpdir.as_cwd():
        yield tmpdir


def logger(name):
    return native.function(name, ctypes.c_int, ctypes.c_char_p)


def test_debug_log_appends_lines(directory):
    directory.join("debug.log").write("older\n")
    assert logger("debug_log")("first") == 0
    assert logger("debug_log")("50% of %s") == 0
    assert directory.join("debug.log").read() == "older\nlarkspur: first\nlarkspur: 50% of %s\n"


def test_debug_log_closes_its_file(directory):
    open_files = len(os.listdir("/proc/self/fd"))
    for _ in range(50):
        logger("debug_log")("again")
    assert len(os.listdir("/proc/self/fd")) == open_files


def test_debug_log_that_can_not_be_opened_is_lost(directory):
    directory.mkdir("debug.log")
    assert logger("debug_log")("lost") == -1


def test_dump_appends_the_bytes_alone(directory):
    assert logger("dump")("x") == 0
    assert logger("dump")("y\n") == 0
    assert logger("dump")("") == 0
    assert directory.join("logfile.txt").read() == "xy\n"


def test_dump_makes_a_file_that_others_may_read(directory):
    saved = os.umask(0)
    try:
        logger("dump")("x")
    finally:
        os.umask(saved)
    assert stat.S_IMODE(os.stat("logfile.txt").st_mode) == 420


def test_dump_opens_its_file_for_reading_too(directory):
    """Else opening a pipe that nobody reads would wait for a reader."""
    os.mkfifo("logfile.txt")
    status, _, err = subprocess_python.run(
        "import signal\n"
        "from support import host, native\n"
        "signal.signal(signal.SIGALRM, signal.SIG_DFL)  # it may have been ignored by a parent\n"
        "signal.alarm(20)\n"
        "assert native.library.dump('x') == 0\n",
        cwd=str(directory),
    )
    assert status == 0, err


def test_dump_closes_its_file(directory):
    open_files = len(os.listdir("/proc/self/fd"))
    for _ in range(50):
        logger("dump")("again")
    assert len(os.listdir("/proc/self/fd")) == open_files


def test_dump_that_can_not_be_opened_is_lost(directory):
    directory.mkdir("logfile.txt")
    assert logger("dump")("lost") == -1


def test_debug_prints_a_format_without_arguments(capfd):
    assert logger("debug")("100%% of it\n") == 0
    assert capfd.readouterr() == ("100% of it\n", "")


@pytest.mark.parametrize("arguments", [(), (1,), (None, "x", [])])
def test_breakable_prints_its_name_whatever_it_is_given(capfd, arguments):
    assert larkspur.breakable(*arguments) is None
    assert capfd.readouterr() == ("breakable\n", "")


def test_crasher_dumps_and_ends_the_process_well(directory):
    status, out, err = subprocess_python.run(
        "from support import host, native\n"
        "print 'before'\n"
        "import sys; sys.stdout.flush()\n"
        "native.library.crasher()\n"
        "print 'after'\n",
        cwd=str(directory),
    )
    assert status == 0 and out.splitlines()[-1] == "before", err
    assert directory.join("logfile.txt").read() == "crasher called.\n"
