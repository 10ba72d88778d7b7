"""The sanitizers catch what they are there for: seen on a module with known faults."""

import os
import subprocess
import sys

FAULTY = os.path.join(os.environ["LARKSPUR_BUILD_DIR"], "tests", "sanitize")
HERE = os.path.dirname(os.path.abspath(__file__))


def run(code, tmpdir):
    """Runs `code` in an interpreter of its own; gives its exit status and the reports."""
    environment = dict(os.environ, PYTHONPATH=os.pathsep.join([FAULTY, HERE]))
    for name in ("ASAN_OPTIONS", "UBSAN_OPTIONS"):
        environment[name] += ":log_path=%s" % tmpdir.join("report")
    child = subprocess.Popen(
        [sys.executable, "-c", "import larkspur_faulty as faulty\n" + code],
        env=environment,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    )
    output = child.communicate()[0].decode("ascii", "replace")
    reports = [entry.read() for entry in tmpdir.listdir()]
    return child.returncode, output + "".join(reports)


CHECK = "import leak_check, sys; sys.exit(3 if leak_check.lost_memory() else 0)"


def test_lost_block_is_reported_with_its_stack(tmpdir):
    status, output = run("faulty.leak()\n" + CHECK, tmpdir)
    assert status == 3
    assert "123 byte(s) leaked" in output
    assert "faulty.cpp" in output


def test_each_lost_block_counts(tmpdir):
    status, output = run("for i in range(100): faulty.leak()\n" + CHECK, tmpdir)
    assert status == 3
    assert "12300 byte(s) leaked" in output


def test_block_kept_by_live_objects_is_no_leak(tmpdir):
    kept = "kept = [faulty.keep() for i in range(5000)]\n"
    assert run(kept + CHECK, tmpdir) == (0, "")


def test_block_of_a_dead_object_is_no_leak(tmpdir):
    kept = "for i in range(5000): faulty.keep()\n"
    assert run(kept + CHECK, tmpdir) == (0, "")


def test_read_past_the_end_ends_the_process(tmpdir):
    status, output = run("faulty.overflow()\nprint('went on')", tmpdir)
    assert status == 1
    assert "heap-buffer-overflow" in output
    assert "faulty.cpp" in output
    assert "went on" not in output


def test_undefined_behaviour_ends_the_process(tmpdir):
    status, output = run("faulty.undefined()\nprint('went on')", tmpdir)
    assert status == 1
    assert "signed integer overflow" in output
    assert "faulty.cpp" in output
    assert "went on" not in output


def test_module_under_test_is_the_sanitized_one():
    import larkspur

    expected = os.path.join(os.environ["LARKSPUR_BUILD_DIR"], "larkspur.so")
    assert os.path.samefile(larkspur.__file__, expected)
    with open(larkspur.__file__, "rb") as module:
        assert b"__asan_init" in module.read()
