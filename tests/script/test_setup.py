"""Setting up and packaging: messages."""

import filecmp
import os
import shlex
import sys

import pytest
from support import sdl
from support.scripts import TREE, copy_build, copy_scripts, path_without_python, run, write_command


@pytest.mark.parametrize("name", ["setup", "test"])
@pytest.mark.parametrize(
    "arguments, shown", [(["2.1"], "2.1"), (["1.9"], "1.9"), ([""], "nothing"), ([], "nothing")]
)
def test_pygame_that_larkspur_is_not_tested_with_is_refused(tree, name, arguments, shown):
    status, output = run(["script/" + name, "--pygame"] + arguments, tree)
    assert status == 1
    assert output == (
        "%s: --pygame takes 1.9.6 or 2.0.3, got: %s; script/%s --help tells more\n"
        % (name, shown, name)
    )


@pytest.mark.parametrize(
    "arguments, version, environment",
    [
        ([], "1.9.6", ".venv"),
        (["--pygame", "1.9.6"], "1.9.6", ".venv"),
        (["--pygame", "2.0.3"], "2.0.3", "build/venv-pygame-2.0.3"),
    ],
)
def test_tests_run_in_the_environment_of_their_pygame(tree, arguments, version, environment):
    write_command(tree.join("script", "setup"), 'echo "setup $*"')
    write_command(tree.join(environment, "bin", "python"), 'echo "$*"')
    tree.ensure("build", "release", dir=True)
    status, output = run(["script/test", "-k", "one"] + arguments + ["tests/core"], tree)
    assert status == 0, output
    lines = output.splitlines()
    assert lines[0] == "setup --pygame " + version
    assert lines[-1].startswith("-m pytest ") and lines[-1].endswith(" -k one tests/core")


# Stand in for a system whose packages are all there, python2.7-dev not yet. What happens once
# Python 2.7 has been found is of no interest: the run ends there.
TOOLS = """
dpkg-query() { [ "${@: -1}" = python2.7-dev ] || printf ' %s:installed ' "$@"; }
apt-get() { case $* in *install*) echo "installs ${@: -1}" >&2 ;; esac; }
apt-cache() { [ $2 = "$known" ] && echo "Candidate: 2.7"; }
env() { shift; "$@"; }
sudo() { "$@"; }
python3() { return 1; }
export -f dpkg-query apt-get apt-cache env sudo python3
exec script/setup
"""
BUILD_PYTHON = """
echo "makes one"
mkdir -p build/python2.7/bin
printf '#!/bin/bash\\necho /made/python2.7\\n' >build/python2.7/bin/python2.7
chmod +x build/python2.7/bin/python2.7
"""


def find_python(tree, build_python=BUILD_PYTHON, **variables):
    write_command(tree.join("script", "build-python"), build_python)
    variables.setdefault("PATH", path_without_python(tree))
    return run(["/bin/bash", "-c", TOOLS], tree, **variables)[1]


def test_python_is_made_once_where_there_is_none(tree):
    output = find_python(tree)
    assert "makes one\n" in output
    assert "-- Python 2.7: /made/python2.7\n" in output
    output = find_python(tree)
    assert "makes one" not in output
    assert "-- Python 2.7: /made/python2.7\n" in output


def test_package_of_python_is_installed_where_apt_knows_it(tree):
    find_python(tree, known="python2.7-dev")
    assert tree.join("build", "tools", "apt-get.log").read() == "installs python2.7-dev\n"


def test_own_python_is_made_whatever_there_is(tree):
    write_command(tree.join("bin", "python2.7"), "echo /on/path")
    path = "%s/bin:/usr/bin:/bin" % tree
    output = find_python(tree, known="python2.7-dev", PATH=path, LARKSPUR_PYTHON="own")
    assert "makes one\n" in output
    assert "-- Python 2.7: /made/python2.7\n" in output
    assert not tree.join("build", "tools", "apt-get.log").check()


def test_failure_to_make_python_ends_the_run(tree):
    output = find_python(tree, build_python="echo no network; exit 1")
    assert output.endswith("no network\n")


def test_second_setup_waits_for_the_first(tree):
    # With stand-ins that end setup as soon as it begins its work.
    tree.ensure("build", dir=True)
    first = (
        "PATH=/usr/bin:/bin; exec 9>build/setup.lock; flock 9\n"
        "(sleep 1; echo first ends) &\nexec 9>&-; PATH=%s\n" % path_without_python(tree)
    )
    write_command(tree.join("script", "build-python"), "echo second works; exit 1")
    output = run(["/bin/bash", "-c", first + TOOLS], tree)[1]
    assert output.index("waiting for another script/setup") < output.index("first ends")
    assert output.index("first ends") < output.index("second works")


def test_layers_window_type_does_not_meet_pygames_variable(tmpdir):
    header = "typedef struct SDL_Window SDL_Window;\nint of_the_layer(SDL_Window *window);\n"
    tmpdir.join("SDL_syswm.h").write(header)
    unit = "#include <SDL_syswm.h>\nstatic int SDL_Window;\n"
    tmpdir.join("unit.c").write(unit + "int main(void) { return SDL_Window + !of_the_layer; }\n")
    headers = os.path.join(TREE, "script", "pygame_headers")
    compiler = ["gcc", "-fsyntax-only", "-I", headers, "-I", str(tmpdir), "unit.c"]
    assert run(compiler, tmpdir) == (0, "")


PYTHON = """
case $* in
    *distutils*) echo /found/python2.7 ;;
    *"--python"*) mkdir -p "${@: -1}/bin" && cp "$0" "${@: -1}/bin/python" ;;
    *"install --no-binary"*) printf '%s' "$CPPFLAGS" >"$flags"; exit 1 ;;
esac
"""


def test_pygame_is_built_in_a_path_with_blanks(tmpdir):
    spaced = tmpdir.mkdir("in a path")
    copy_scripts(spaced)
    for path in (("named",), ("build", "tools", "virtualenv", "bin", "python")):
        write_command(spaced.join(*path), PYTHON)
    flags = tmpdir.join("flags")
    run(
        ["/bin/bash", "-c", TOOLS.replace('env() { shift; "$@"; }', "").replace(" env ", " ")],
        spaced,
        LARKSPUR_PYTHON=str(spaced.join("named")),
        flags=str(flags),
    )
    # distutils takes the variable apart as a shell would.
    assert "-I%s" % spaced.join("script", "pygame_headers") in shlex.split(flags.read())


def run_check(tmpdir, *arguments):
    # What the interpreter of this run needs to load larkspur.
    names = (
        "PYTHONPATH",
        "LD_LIBRARY_PATH",
        "LD_PRELOAD",
        "ASAN_OPTIONS",
        "UBSAN_OPTIONS",
        "LSAN_OPTIONS",
    )
    environment = {name: os.environ[name] for name in names if name in os.environ}
    return run([sys.executable, "-m", "larkspur_check"] + list(arguments), tmpdir, **environment)


def test_check_is_installed_with_the_module(tmpdir):
    status, output = run_check(tmpdir)
    assert status == 0
    assert output.splitlines()[-1] == "all 8 checks passed"


def test_header_is_installed_with_the_module(tmpdir):
    status, output = run_check(tmpdir, "--include")
    assert status == 0, output
    assert filecmp.cmp(
        os.path.join(output.strip(), "larkspur.h"),
        os.path.join(TREE, "include", "larkspur.h"),
        shallow=False,
    )


def test_check_tells_the_layer_over_sdl_2_from_sdl_1_2(tmpdir):
    kind = "SDL 1.2 as a layer over SDL 2" if sdl.is_layer() else "SDL 1.2"
    rows = [line for line in run_check(tmpdir)[1].splitlines() if "SDL of larkspur" in line]
    assert ["  %d.%d.%d  %s  /" % (sdl.linked_version() + (kind,)) in row for row in rows] == [True]


def test_building_under_python3_is_refused(tmpdir):
    copy_build(tmpdir)
    status, output = run(["/usr/bin/python3", "setup.py", "--version"], tmpdir)
    assert status == 1
    assert output.startswith("larkspur is an extension of Python 2.7; this is Python 3.")


def test_version_is_that_of_the_file(tmpdir):
    copy_build(tmpdir)
    tmpdir.join("VERSION").write("12.34.56\n")
    assert run([sys.executable, "setup.py", "--version"], tmpdir) == (0, "12.34.56\n")
