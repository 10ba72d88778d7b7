"""script/test: which native tests go with pytest's arguments, what is shown, and what fails."""

import os
import sys

import pytest
from support.scripts import TREE, run, write_command

HELPER = os.path.join(TREE, "script", "native_tests.py")


@pytest.fixture
def native_tree(tree):
    """A tree with tests of two subjects, of which one has native ones, and stand-ins for tools.

    CTest's answer and status are in the files `native` and `native_status`, and so is pytest's
    status in `python_status`. Each writes down how it was called.
    """
    tree.ensure("tests", "pixel", "test_fade.py")
    tree.ensure("tests", "types", "cpython", "test_lists.py")
    tree.join("tests", "native", "pixel", "deep", "test_fade_rows.cpp").write(
        "TEST(Dim, Something) {\n}\nTEST_P(Darken, More) {\n}\n", ensure=True
    )
    tree.ensure("build", "release", dir=True)
    write_command(tree.join("script", "setup"), "")
    python = """
        case $1 in
            script/*) exec %s "$@" ;;
        esac
        echo "pytest: ${*:3}"
        exit "$(cat python_status)"
    """
    write_command(tree.join(".venv", "bin", "python"), python % sys.executable)
    tree.join("python_status").write("0")
    tree.join("native").write("100% tests passed, 0 tests failed out of 7\n")
    tree.join("native_status").write("0")
    return tree


CTEST = """
env() {
    if [ "$1" = -C ]; then
        echo "ctest: ${*: -2}" >>called
        cat native
        return "$(cat native_status)"
    fi
    command env "$@"
}
export -f env
exec script/test "$@"
"""


def run_tests(tree, *arguments):
    """Runs script/test; gives its status, its output and the expression that CTest was given."""
    status, output = run(["/bin/bash", "-c", CTEST, "test"] + list(arguments), tree)
    called = tree.join("called").read().splitlines()[-1] if tree.join("called").check() else ""
    return status, output, called[len("ctest: -R ") :] if " -R " in called else None


# pytest runs on all processors.
SPREAD = ["-n", "auto", "--dist", "loadfile"]

FADE = "[Ff][Aa][Dd][Ee]"
IN_FILE = "|^pixel.*[./]Darken[.]|^pixel.*[./]Dim[.]"


@pytest.mark.parametrize(
    "arguments, expression",
    [
        ([], None),
        (["tests"], None),
        (["-x", "--lf"], None),
        (["tests/pixel"], "^pixel"),
        (["./tests/pixel/"], "^pixel"),
        (["tests/types", "tests/pixel"], "^types|^pixel"),
        (["tests/types/cpython"], "^types"),
        (["tests/native/pixel/deep"], "^pixel"),
        (["tests/native"], None),
        (["tests/nowhere"], None),
        (["--ignore", "tests/types"], None),
        (["tests/pixel", "-k", "fade"], "^pixel.*[.].*" + FADE + IN_FILE),
        (["tests/pixel", "-kFADE"], "^pixel.*[.].*" + FADE + IN_FILE),
        (["tests/pixel/test_fade.py"], "^pixel.*[.].*" + FADE + IN_FILE),
        (["tests/pixel/test_fade.py::test_one"], "^pixel.*[.].*" + FADE + IN_FILE),
        (["tests/pixel/test_fade.py", "-k", "x_y"], "^pixel.*[.].*[Xx]_?[Yy]"),
        (["-k", "x"], "^.*[.].*[Xx]"),
        (["-k", "one and two"], None),
        (["tests/pixel", "-k", "not one"], "^pixel"),
    ],
)
def test_native_tests_go_with_what_pytest_is_asked_for(native_tree, arguments, expression):
    status, output, chosen = run_tests(native_tree, *arguments)
    assert status == 0, output
    assert chosen == expression
    assert "pytest: " + " ".join(SPREAD + arguments) in output.splitlines()


@pytest.mark.parametrize(
    "native, python, expected",
    [
        ("1", "0", "native tests"),
        ("0", "1", "tests through Python"),
        ("8", "2", "native tests, tests through Python"),
    ],
)
def test_both_runs_take_place_and_the_failing_one_is_named(native_tree, native, python, expected):
    native_tree.join("native_status").write(native)
    native_tree.join("python_status").write(python)
    status, output, _ = run_tests(native_tree)
    assert status == 1
    assert "pytest: " in output
    assert output.splitlines()[-1] == "test: failed: " + expected


@pytest.mark.parametrize(
    "native, expected",
    [("100% tests passed, 0 tests failed out of 3\n", 0), ("No tests were found!!!\n", 1)],
)
def test_no_test_through_python_is_enough_only_with_native_ones(native_tree, native, expected):
    native_tree.join("native").write(native)
    native_tree.join("python_status").write("5")
    assert run_tests(native_tree, "-k", "x")[0] == expected


def ctest_output(failing):
    """CTest's output for {name: lines that the test prints; None where it passes}."""
    lines = ["Test project /x", "      Start  1: a"]
    for number, (name, printed) in enumerate(failing, 1):
        result = "***Failed" if printed else "  Passed"
        lines.append(" %d/9 Test  #%d: %s ....%s    0.01 sec" % (number, number, name, result))
        if printed:
            test = name.split(".", 1)[1]
            lines += ["Running main()", "[ RUN      ] " + test] + printed
            lines += ["[  FAILED  ] " + test, " 1 FAILED TEST"]
    return "\n".join(lines + ["", "44% tests passed, 5 tests failed out of 9", "", "Total"])


def summary(tmpdir, failing):
    log = tmpdir.join("log")
    log.write(ctest_output(failing))
    status, output = run([sys.executable, HELPER, "summary", str(log)], tmpdir)
    assert status == 0
    return output.splitlines()


def test_passing_tests_are_counted_alone(tmpdir):
    assert summary(tmpdir, [("p.A.B", None)]) == ["44% tests passed, 5 tests failed out of 9"]


def test_failing_test_is_shown_without_what_the_framework_says(tmpdir):
    lines = summary(tmpdir, [("p.A.B", ["it was 2", "not 1"]), ("p.A.C", None)])
    assert lines == [
        "",
        "A.B in p:",
        "    it was 2",
        "    not 1",
        "",
        "failed native tests:",
        "    A.B in p",
        "44% tests passed, 5 tests failed out of 9",
    ]


def test_skipped_tests_are_not_called_failed(tmpdir):
    text = ctest_output([("p.A.B", ["[  SKIPPED ] A.B"]), ("p.A.C", None)])
    tmpdir.join("log").write(text.replace("***Failed", "***Skipped"))
    output = run([sys.executable, HELPER, "summary", str(tmpdir.join("log"))], tmpdir)[1]
    assert output.splitlines() == [
        "",
        "skipped native tests:",
        "    A.B in p",
        "44% tests passed, 5 tests failed out of 9",
    ]


def test_failure_of_many_lines_in_many_programs_is_a_page(tmpdir):
    failing = [
        ("p_%d.S%d.T%s" % (program, test, case), ["line %d" % i for i in range(1000)])
        for program in range(5)
        for test in range(6)
        for case in ("", "/1  # GetParam() = x")
    ]
    lines = summary(tmpdir, failing)
    assert len(lines) < 40
    assert "    ... 992 lines more in %s" % tmpdir.join("log") in lines
    assert lines.count("    S5.T in p_0, p_1, p_2, 2 more") == 1


@pytest.mark.parametrize(
    "result, told",
    [
        ("***Exception: SegFault", "Exception: SegFault"),
        ("Subprocess aborted***Exception:", "Subprocess aborted, Exception"),
        ("***Timeout", "Timeout"),
    ],
)
def test_a_test_that_was_cut_short_says_how(tmpdir, result, told):
    text = ctest_output([("p.A.B", ["it began"])]).replace("***Failed", result)
    text = text.replace("[  FAILED  ] A.B\n 1 FAILED TEST", "      Start  7: p.C.D")
    tmpdir.join("log").write(text)
    output = run([sys.executable, HELPER, "summary", str(tmpdir.join("log"))], tmpdir)[1]
    assert output.splitlines()[1:5] == ["A.B in p:", "    CTest: " + told, "    it began", "    "]
    assert "Start" not in output


def test_crash_is_shown_to_its_end(tmpdir):
    lines = summary(tmpdir, [("p.A.B", ["==1==ERROR: AddressSanitizer"])])
    assert "    ==1==ERROR: AddressSanitizer" in lines


def test_end_of_what_ctest_says_is_shown_where_it_gave_up(tmpdir):
    tmpdir.join("log").write("ctest: no such option\n")
    output = run([sys.executable, HELPER, "summary", str(tmpdir.join("log"))], tmpdir)[1]
    assert output == "ctest: no such option\n"


MANY_FAILURES = """
import pytest

@pytest.mark.parametrize("n", range(40))
def test_cases(n):
    print("said")
    assert n < 0

def test_other():
    assert False

@pytest.fixture
def broken():
    raise ValueError

def test_broken(broken):
    pass
"""


def test_first_failures_of_pytest_are_shown_and_the_others_named(tmpdir):
    for number in range(5):
        tmpdir.join("test_%d.py" % number).write(MANY_FAILURES)
    command = [sys.executable, "-m", "pytest", "--tb=short", "-p", "support.first_failures"]
    status, output = run(command, tmpdir, PYTHONPATH=os.path.join(TREE, "tests"))
    assert status == 1
    assert output.count("\nE  ") == 3
    assert len(output.splitlines()) < 100
    assert "test_4.py::test_cases: 40 cases\n" in output
    assert "test_4.py::test_other\n" in output and "test_4.py::test_broken\n" in output
    assert "205 failed, 5 error" in output
