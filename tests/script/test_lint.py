"""What script/lint checks and how often: units by clang-tidy, examples by mypy, with stand-ins."""

import os
import shutil

import pytest
from support.scripts import TREE, copy_scripts, run, run_lib, write_command

CMAKE_LISTS = """
cmake_minimum_required(VERSION 3.18)
project(linted LANGUAGES CXX)
list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_SOURCE_DIR}/cmake)
include(LarkspurLint)
add_library(units OBJECT src/one.cpp src/two.cpp)
add_library(again OBJECT src/one.cpp)
set_target_properties(again PROPERTIES CXX_CLANG_TIDY "")
"""

# Finds fault with what holds the word, also in a header, and writes down what it was called for.
CLANG_TIDY = """
[ "$1" != --version ] || { cat "$0.version"; exit; }
while [ $# -gt 0 ]; do
    case $1 in
        *.cpp) unit=$1 ;;
    esac
    shift
done
basename "$unit" >>"$0.checked"
if cat "$unit" "${unit%/*}/common.h" | grep -q faulty; then
    echo "$unit:1:1: error: a fault [checks]"
    exit 1
fi
"""


@pytest.fixture
def linted(tmpdir):
    """Checks a tree; gives its status and the units that were checked."""
    shutil.copytree(os.path.join(TREE, "cmake"), str(tmpdir.join("cmake")))
    tmpdir.join("CMakeLists.txt").write(CMAKE_LISTS)
    tmpdir.join(".clang-tidy").write("Checks: one\n")
    tmpdir.join("src", "common.h").write("// fine\n", ensure=True)
    tmpdir.join("src", "one.cpp").write('#include "common.h"\n')
    tmpdir.join("src", "two.cpp").write('#include "common.h"\n')
    write_command(tmpdir.join("clang-tidy"), CLANG_TIDY)
    tmpdir.join("clang-tidy.version").write("14\n")
    configure = ["cmake", "-S", ".", "-B", "build", "-G", "Ninja", "-DLARKSPUR_LINT=ON"]
    configure.append("-DLARKSPUR_CLANG_TIDY=%s" % tmpdir.join("clang-tidy"))
    status, output = run(configure, tmpdir)
    assert status == 0, output

    def check():
        record = tmpdir.join("clang-tidy.checked")
        record.write("")
        status, output = run(["ninja", "-C", "build", "-k", "0"], tmpdir)
        assert (status == 0) == ("error: a fault" not in output), output
        return status, sorted(record.read().split())

    return check


BOTH = ["one.cpp", "two.cpp"]


def test_each_unit_is_checked_once(linted):
    assert linted() == (0, BOTH)
    assert linted() == (0, [])


def test_unit_with_a_finding_is_checked_until_it_is_mended(linted, tmpdir):
    assert linted() == (0, BOTH)
    tmpdir.join("src", "two.cpp").write('#include "common.h"\n// faulty\n')
    assert linted() == (1, ["two.cpp"])
    assert linted() == (1, ["two.cpp"])
    tmpdir.join("src", "two.cpp").write('#include "common.h"\n')
    assert linted() == (0, ["two.cpp"])


def test_finding_in_a_header_is_one_of_all_units_that_include_it(linted, tmpdir):
    tmpdir.join("src", "common.h").write("// faulty\n")
    assert linted() == (1, BOTH)
    tmpdir.join("src", "common.h").write("// fine\n")
    assert linted() == (0, BOTH)
    tmpdir.join("src", "common.h").write("// faulty again\n")
    assert linted() == (1, BOTH)


def test_other_checks_or_another_clang_tidy_check_all_again(linted, tmpdir):
    assert linted() == (0, BOTH)
    tmpdir.join(".clang-tidy").write("Checks: two\n")
    assert linted() == (0, BOTH)
    tmpdir.join("clang-tidy.version").write("15\n")
    tmpdir.join("clang-tidy").write(tmpdir.join("clang-tidy").read())
    assert linted() == (0, BOTH)


# --- mypy ----------------------------------------------------------------------------------------

# Finds fault with what holds the word "dynamic", and with the stub at hand "wrong"; breaks down at
# "fatal". Writes down what it was called for.
MYPY = """
file=${@: -1}
echo "$file" >>"$0.checked"
! grep -q fatal "$file" || { echo "broken down" >&2; exit 2; }
! grep -E "dynamic${MYPYPATH:+|wrong}" "$file"
"""


@pytest.fixture
def check_types(tmpdir):
    """Checks the stub and examples; gives the status and what mypy was called for."""
    copy_scripts(tmpdir)
    write_command(tmpdir.join("mypy"), MYPY)
    tmpdir.join("python", "larkspur.pyi").write("x: int\n", ensure=True)
    for name, text in (
        ("one/gm6.py", "import larkspur\n"),
        ("two/gm6.py", "if True:\n    from larkspur import GMVar\n"),
        ("two/other.py", "import larkspur_check\nimport gm6  # and larkspur\n"),
        ("two/README.md", "import larkspur\n"),
    ):
        tmpdir.join("examples", name).write(text, ensure=True)

    def check():
        record = tmpdir.join("mypy.checked")
        record.write("")
        code = """
            eval "$(sed -n '/^check_types()/,/^}/p' script/lint)"
            mypy=./mypy
            check_types
        """
        status, output = run_lib(code, tmpdir)
        return status, sorted(set(record.read().splitlines())), output

    return check


STUB_AND_EXAMPLES = ["examples/one/gm6.py", "examples/two/gm6.py", "python/larkspur.pyi"]


def test_each_example_that_imports_larkspur_is_checked_by_itself(check_types):
    assert check_types() == (0, STUB_AND_EXAMPLES, "-- mypy\n")


@pytest.mark.parametrize(
    "name, line, status",
    [
        ("examples/one/gm6.py", "wrong", 1),
        ("examples/two/gm6.py", "wrong", 1),
        ("examples/two/other.py", "wrong", 0),
        ("examples/one/gm6.py", "dynamic", 0),  # found without the stub as well
        ("examples/one/gm6.py", "dynamic\nwrong", 1),
        ("examples/one/gm6.py", "fatal", 1),
        ("python/larkspur.pyi", "dynamic", 1),
    ],
)
def test_finding_that_is_the_stubs_fails(check_types, tmpdir, name, line, status):
    with open(str(tmpdir.join(name)), "a") as example:
        example.write("# %s\n" % line.replace("\n", "\n# "))
    shown = {"fatal": "broken down\n"}.get(line, "# %s\n" % line.split("\n")[-1])
    assert check_types() == (status, STUB_AND_EXAMPLES, "-- mypy\n" + shown * status)
