"""What the scripts share."""

import os
import re
import sys

import pytest
from support.scripts import path_without_python, run_lib, write_command

LEAKING = (
    "LARKSPUR_BUILD_DIR PYTHONPATH PYTHONHOME PYTHONOPTIMIZE PYTEST_ADDOPTS CXXFLAGS "
    "VIRTUAL_ENV ASAN_OPTIONS"
).split()


@pytest.mark.parametrize("name", LEAKING)
def test_developers_environment_does_not_leak_in(tree, name):
    assert run_lib('echo "${%s-unset}"' % name, tree, **{name: "/nowhere"}) == (0, "unset\n")


def test_runs_in_the_root_of_the_tree(tree):
    tree.mkdir("below")
    status, output = run_lib("cd below; . ../script/lib.sh; pwd", tree)
    assert (status, output) == (0, "%s\n" % tree)


@pytest.mark.parametrize("home", [None, "", "/nonexistent"])
def test_account_without_home_gets_one(tree, home):
    expected = "%s\n" % tree.join("build", "home")
    assert run_lib('echo "$HOME"', tree, HOME=home) == (0, expected)
    assert tree.join("build", "home").isdir()


def test_usable_home_is_kept(tree):
    assert run_lib('echo "$HOME"', tree) == (0, "%s\n" % tree)


def test_virtualenv_keeps_its_data_out_of_home(tree):
    expected = "%s\n" % tree.join("build", "tools", "virtualenv-data")
    assert run_lib("env | sed -n s/^VIRTUALENV_OVERRIDE_APP_DATA=//p", tree) == (0, expected)


def test_debians_tools_go_before_a_shim(tree):
    write_command(tree.join("shims", "cmake"), "exit 127")
    status, output = run_lib("command -v cmake", tree, PATH="%s/shims:/usr/bin:/bin" % tree)
    assert (status, output) == (0, "/usr/bin/cmake\n")


def test_path_of_the_caller_is_known_to_a_script_that_another_calls(tree):
    write_command(tree.join("script", "second"), '. script/lib.sh\necho "$caller_path"\n')
    path = "/usr/bin:/bin:/own"
    assert run_lib("script/second", tree, PATH=path) == (0, path + "\n")


def attempts(tree, successful):
    """Runs a command that succeeds at the given attempt; gives status and number of attempts."""
    code = "n=0; try() { n=$((n + 1)); [ $n -ge %d ]; }; retry try || echo failed; echo $n"
    status, output = run_lib(code % successful, tree)
    assert status == 0
    return output.splitlines()[-2:]


def test_retry_stops_at_the_first_success(tree):
    assert attempts(tree, 1) == ["1"]
    assert attempts(tree, 3)[-1] == "3"


def test_retry_gives_up_after_three(tree):
    assert attempts(tree, 4) == ["failed", "3"]


def test_quietly_shows_nothing_of_a_success(tree):
    assert run_lib("quietly build/log echo hello", tree) == (0, "")
    assert tree.join("build", "log").read() == "hello\n"


def test_quietly_shows_all_of_a_failure(tree):
    status, output = run_lib("quietly build/log bash -c 'echo out; echo err >&2; exit 5'", tree)
    assert status == 1
    assert output.startswith("out\nerr\n")
    assert "this command failed" in output


# Stand-ins for Debian's tools. "there" is installed, "lost" is not.
APT = """
dpkg-query() { [[ " $* " != *" there "* ]] || printf ' there:installed '; }
apt-get() { echo "apt-get $*"; }
env() { shift; "$@"; }
quietly() { shift; "$@"; }
id() { echo %s; }
"""


def test_nothing_is_installed_when_all_is_there(tree):
    assert run_lib(APT % 0 + "apt_install there there", tree) == (0, "")


def test_lists_are_refreshed_and_only_the_missing_is_installed(tree):
    status, output = run_lib(APT % 0 + "apt_install there lost; apt_install lost", tree)
    called = [line for line in output.splitlines() if line.startswith("apt-get")]
    assert status == 0
    assert [line.split()[-1] for line in called] == ["update", "lost", "lost"]
    assert "there" not in output


def test_who_is_not_root_uses_sudo(tree):
    sudo = 'sudo() { echo "sudo $1"; "$@"; }\n'
    status, output = run_lib(APT % 1000 + sudo + "apt_install lost", tree)
    assert status == 0
    assert output.count("sudo apt-get") == 1
    assert output.count("sudo env") == 1


def test_who_is_not_root_and_has_no_sudo_is_told(tree):
    no_sudo = 'command() { [ "$2" != sudo ]; }\n'
    status, output = run_lib(APT % 1000 + no_sudo + "apt_install lost; echo went on", tree)
    assert status == 1
    # Nothing else is to be done by hand, whatever state apt's lists are in.
    assert "As root: apt-get install lost\n" in output
    assert "update" not in output and "went on" not in output


def test_stale_lists_are_used_when_no_new_ones_can_be_had(tree):
    failing = 'apt-get() { echo "apt-get $*"; [ "${@: -1}" != update ]; }\n'
    status, output = run_lib(APT % 0 + failing + "apt_install lost", tree)
    assert status == 0
    calls = [line for line in output.splitlines() if line.startswith("apt-get")]
    assert [line.endswith(" update") for line in calls] == [True, True, True, False]
    assert output.splitlines()[-1].startswith("apt-get")
    assert output.splitlines()[-1].endswith("lost")


def test_packages_that_cannot_be_installed_end_the_run(tree):
    failing = "apt-get() { echo no such package; return 100; }\n"
    status, output = run_lib(APT % 0 + failing + "apt_install there lost; echo went on", tree)
    assert status == 1
    assert "no such package" in output
    assert "apt-get could not install what is missing: lost\n" in output
    assert "went on" not in output


@pytest.mark.parametrize("refusing, attempts", [("install", 3), ("update install", 1)])
def test_install_is_tried_again_only_where_the_lists_came(tree, refusing, attempts):
    failing = """
        apt-get() {
            [[ " $* " =~ \\ (update|install)\\  ]]
            echo "calls ${BASH_REMATCH[1]}"
            [[ "%s" != *${BASH_REMATCH[1]}* ]]
        }
    """
    status, output = run_lib(APT % 0 + failing % refusing + "apt_install lost", tree)
    assert status == 1
    assert output.count("calls install") == attempts


@pytest.mark.parametrize(
    "packages, installed",
    [
        ("there|lost", None),
        ("lost|there", None),
        ("known|lost", "known"),
        ("lost|known", "known"),
        ("lost|gone", "lost"),
    ],
)
def test_first_known_of_alternative_packages_is_installed(tree, packages, installed):
    known = "apt_knows() { [ $1 = known ]; }\n"
    status, output = run_lib(APT % 0 + known + "apt_install there '%s'" % packages, tree)
    assert status == 0
    if installed:
        assert output.endswith(" --no-install-recommends %s\n" % installed)
    else:
        assert output == ""


@pytest.mark.parametrize("name", ["script/second", "( . script/lib.sh; refresh_apt_lists )"])
def test_lists_are_refreshed_once_for_all_scripts(tree, name):
    tools = APT % 0 + "export -f apt-get id\n"
    write_command(tree.join("script", "second"), ". script/lib.sh\nrefresh_apt_lists\n")
    status, output = run_lib(tools + "refresh_apt_lists; " + name, tree)
    assert status == 0
    assert len(re.findall("(?m)^apt-get .* update$", output)) == 1


def test_archives_of_the_distribution_are_told_from_others(tree):
    targets = [
        "Debian|Debian|http://one/debian/",
        "Debian|Debian|http://two/debian/",
        "Debian|Debian|http://one/debian/",
        "Debian|Debian-Security|http://one/debian-security/",
        "Debian Backports|Debian Backports|http://one/debian/",
        "$(ORIGIN)|$(LABEL)|http://not/fetched/yet/",
    ]
    code = "apt-get() { printf '%%s\\n' '%s'; }; apt_archives" % "' '".join(targets)
    assert run_lib(code, tree) == (0, "Debian http://one/debian/\nDebian http://two/debian/\n")


POLICIES = [
    ("printf 'it:\\n  Installed: (none)\\n  Candidate: 1:14.0\\n'", "yes"),
    ("printf 'it:\\n  Candidate: 2\\n'; sleep 0.2; printf 'much\\nmore\\n'", "yes"),
    ("printf 'it:\\n  Installed: (none)\\n  Candidate: (none)\\n'", "no"),
    ("printf ''", "no"),
]


@pytest.mark.parametrize("policy, expected", POLICIES)
def test_package_is_known_when_it_has_a_candidate(tree, policy, expected):
    code = "apt-cache() { %s; }; apt_knows it && echo yes || echo no" % policy
    assert run_lib(code, tree) == (0, expected + "\n")


def fake_python(path, answer=None):
    """A command that passes for a Python 2.7 with headers at `answer`, or for none."""
    write_command(path, "echo %s" % answer if answer else "exit 1")
    return path


def test_this_interpreter_passes(tree):
    status, output = run_lib('python27_with_headers "%s"' % sys.executable, tree)
    assert (status, output) == (0, sys.executable + "\n")


def test_python3_does_not_pass(tree):
    assert run_lib("python27_with_headers /usr/bin/python3 || echo no", tree) == (0, "no\n")


def test_named_python_goes_first(tree):
    named = fake_python(tree.join("named"), "/named")
    fake_python(tree.join("bin", "python2.7"), "/on/path")
    path = "%s/bin:/usr/bin:/bin" % tree
    assert run_lib("find_python27", tree, LARKSPUR_PYTHON=str(named), PATH=path) == (0, "/named\n")


def test_named_python_that_does_not_do_is_an_error(tree):
    fake_python(tree.join("bin", "python2.7"), "/on/path")
    path = "%s/bin:/usr/bin:/bin" % tree
    status, output = run_lib("find_python27", tree, LARKSPUR_PYTHON="/nowhere", PATH=path)
    assert status == 1
    assert "LARKSPUR_PYTHON is /nowhere" in output
    assert "/on/path" not in output


def test_first_working_python_on_the_path_is_taken(tree):
    fake_python(tree.join("shim", "python2.7"))
    fake_python(tree.join("bin", "python2.7"), "/on/path")
    fake_python(tree.join("pyenv", "versions", "2.7.18", "bin", "python2.7"), "/of/pyenv")
    path = "{0}/shim:{0}/bin:/usr/bin:/bin".format(tree)
    assert run_lib("find_python27", tree, PATH=path) == (0, "/on/path\n")


def test_newest_python27_of_pyenv_comes_next(tree):
    fake_python(tree.join("shim", "python2.7"))
    write_command(tree.join("shim", "pyenv"), "echo %s/pyenv" % tree)
    for version in ("2.7.9", "2.7.18"):
        fake_python(tree.join("pyenv", "versions", version, "bin", "python2.7"), "/" + version)
    path = "%s/shim:%s" % (tree, path_without_python(tree))
    assert run_lib("find_python27", tree, PATH=path) == (0, "/2.7.18\n")


def test_pyenv_is_found_at_its_usual_place(tree):
    write_command(tree.join(".pyenv", "bin", "pyenv"), "echo %s/.pyenv" % tree)
    fake_python(tree.join(".pyenv", "versions", "2.7.18", "bin", "python2.7"), "/of/pyenv")
    path = path_without_python(tree)
    assert run_lib("find_python27", tree, PATH=path) == (0, "/of/pyenv\n")


def test_our_own_python_comes_last(tree):
    fake_python(tree.join("build", "python2.7", "bin", "python2.7"), "/own")
    path = path_without_python(tree)
    assert run_lib("find_python27", tree, PATH=path) == (0, "/own\n")
    fake_python(tree.join(".pyenv", "versions", "2.7.18", "bin", "python2.7"), "/of/pyenv")
    write_command(tree.join(".pyenv", "bin", "pyenv"), "echo %s/.pyenv" % tree)
    assert run_lib("find_python27", tree, PATH=path) == (0, "/of/pyenv\n")


def test_our_own_python_goes_first_where_asked_for(tree):
    fake_python(tree.join("bin", "python2.7"), "/on/path")
    find = ("find_python27 || echo none", tree)
    path = "%s/bin:/usr/bin:/bin" % tree
    assert run_lib(*find, LARKSPUR_PYTHON="own", PATH=path) == (0, "none\n")
    fake_python(tree.join("build", "python2.7", "bin", "python2.7"), "/own")
    assert run_lib(*find, LARKSPUR_PYTHON="own", PATH=path) == (0, "/own\n")


@pytest.mark.parametrize("named", [None, "own"])
def test_no_python_is_a_failure_without_words(tree, named):
    variables = {"PATH": path_without_python(tree), "LARKSPUR_PYTHON": named}
    assert run_lib("find_python27 || echo none", tree, **variables) == (0, "none\n")


REPORTS = [
    ("==1==ERROR: AddressSanitizer: heap-use-after-free", 1),
    ("==1==ERROR: LeakSanitizer: detected memory leaks", 1),
    ("a.cpp:3:5: runtime error: signed integer overflow", 1),
    ("==1==WARNING: AddressSanitizer failed to allocate 0x10000 bytes", 0),
]


@pytest.mark.parametrize("text, expected", REPORTS)
def test_report_makes_a_run_fail_and_a_warning_does_not(tree, text, expected):
    tree.join("reports", "report.1").write(text, ensure=True)
    status, output = run_lib("show_sanitizer_reports reports", tree)
    assert status == expected
    assert (text in output) == bool(expected)


def test_no_report_is_no_failure(tree):
    os.mkdir(str(tree.join("reports")))
    assert run_lib("show_sanitizer_reports reports", tree) == (0, "")


@pytest.mark.parametrize(
    "has_cases, told, expected",
    [
        ("true", "", ""),
        ("false", "yes", "installs libpython2.7-testsuite\n-- python comes without"),
        ("false", "", "-- python comes without its standard package 'test'"),
    ],
)
def test_cpythons_cases_are_installed_or_asked_for(tree, has_cases, told, expected):
    code = """
        apt-get() { :; }
        refresh_apt_lists() { :; }
        apt_knows() { [ -n "%s" ]; }
        apt_install() { echo "installs $*"; }
        python() { %s; }
        provide_cpython_cases python
    """
    status, output = run_lib(code % (told, has_cases), tree)
    assert status == 0
    assert output.startswith(expected) and bool(output) == bool(expected)


# Stand-ins for what fetches and unpacks the layer over SDL 2.
LAYER = """
apt_knows() { true; }
apt_install() { echo "installs $*"; }
apt-get() { echo "apt-get $*"; echo 1 >>"$root/fetched"; touch libsdl1.2-compat_1.2.60_amd64.deb; }
dpkg-deb() { [ -e "$2" ] && mkdir -p "$3/usr/lib/there" && touch "$3/usr/lib/there/%s"; }
"""
PROVIDE = 'echo "in $(provide_sdl_layer)"'


def test_layer_over_sdl_2_is_unpacked_below_build_once(tree):
    status, output = run_lib(LAYER % "libSDL-1.2.so.0" + PROVIDE + "\n" + PROVIDE, tree)
    assert status == 0
    lines = output.splitlines()
    unpacked = "in %s/build/sdl-compat/unpacked/usr/lib/there" % tree
    assert lines == [
        "-- unpacking libsdl1.2-compat in build/sdl-compat",
        "installs libsdl2-2.0-0",
        unpacked,
        "installs libsdl2-2.0-0",
        unpacked,
    ]
    assert tree.join("fetched").read() == "1\n"


def test_layer_over_sdl_2_without_a_library_is_refused(tree):
    status, output = run_lib(LAYER % "README" + "provide_sdl_layer", tree)
    assert status == 1
    assert "brings no library of its own" in output


def test_release_without_the_layer_over_sdl_2(tree):
    missing = "apt_knows() { false; }\nrefresh_apt_lists() { echo refreshes; }\n"
    status, output = run_lib(LAYER % "" + missing + "provide_sdl_layer", tree)
    assert status == 1
    assert output.startswith("refreshes\n")
    assert "this release has no package libsdl1.2-compat" in output
    assert not tree.join("build", "sdl-compat").check()


def test_failed_unpacking_is_tried_again(tree):
    failing = "\ndpkg-deb() { false; }\nprovide_sdl_layer"
    assert run_lib(LAYER % "" + failing, tree)[0] == 1
    status, output = run_lib(LAYER % "libSDL-1.2.so.0" + PROVIDE, tree)
    assert status == 0
    assert tree.join("fetched").read() == "1\n1\n"
