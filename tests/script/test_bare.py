"""The proof on a bare machine, with stand-ins for the demo, the tests and the tools of root."""

import re

import pytest
from support.scripts import run, write_command

# Stand in for Debian's tools, of which all is there, and for what needs root. What would run in the
# base system is only recorded, a line each; debootstrap fails where `broken` says so. The shell
# that mounts and enters it runs where commands in `entry` stand in for mount and chroot.
TOOLS = """
dpkg-query() { printf ' %s:installed ' "$@"; }
sudo() { "$@"; }
chown() { :; }
chroot() { [ "$2" != "${broken:-}" ]; }
apt-get() {
    [ "$1" != indextargets ] || printf "$keeper|$keeper|http://archive.example/x/\\n"
}
apt-config() { printf 'Acquire::Retries "7";\\nAcquire::IndexTargets::deb "x";\\n'; }
unshare() {
    printf '%s ' "$@" | tr '\\n' ' ' >>"$root/isolated"
    echo >>"$root/isolated"
    [[ " $* " != *" ${broken:-nothing} "* ]] || { echo "it is broken"; return 3; }
    case "$*" in
        *" debootstrap "*) mkdir -p "${@: -2:1}"/{etc/apt/apt.conf.d,etc/sudoers.d,home}
            ln -s "$root/host-file" "${@: -2:1}/etc/hosts"
            ;;
        *" -ec "*)
            if [ -d "$root/entry" ]; then
                while [ "$1" != -ec ]; do shift; done
                PATH=$root/entry:$PATH sh "$@"
            fi
            ;;
    esac
}
grep() {
    case "$*" in
        *" ${mounted:-nothing}  /proc/self/mounts") return 0 ;;
    esac
    command grep "$@"
}
export -f dpkg-query sudo chown chroot apt-get apt-config unshare grep
export root=$PWD
exec script/test-bare "$@"
"""


@pytest.fixture
def repository(tree):
    """A repository with the scripts, of which demo and test only show how they are called."""
    for name in ("demo", "test"):
        write_command(tree.join("script", name), 'echo "ran %s $*"\npwd\nenv\n' % name)
    commit(tree)
    return tree


def commit(tree):
    tree.join(".gitignore").write("/build/\n/entered\n/entry/\n/isolated\n")
    author = "-c user.name=x -c user.email=x@x.example"
    command = "git init -q && git add -A && git %s commit -q -m x" % author
    assert run(["/bin/bash", "-c", command], tree)[0] == 0


def bare(tree, *arguments, **variables):
    variables.setdefault("keeper", "Debian")
    return run(["/bin/bash", "-c", TOOLS, "test-bare"] + list(arguments), tree, **variables)


def isolated(tree):
    record = tree.join("isolated")
    return record.read().splitlines() if record.check() else []


@pytest.mark.parametrize(
    "arguments, reason",
    [
        (["--fast"], "got: --fast"),
        (["--release"], "--release takes a name such as trixie, got: nothing"),
        (["--release", "../.."], "--release takes a name such as trixie, got: ../.."),
        (["--release", "."], "--release takes a name such as trixie, got: ."),
        (["--release", ""], "--release takes a name such as trixie, got: nothing"),
        (["--python-only", "--release", "trixie"], "takes no --release"),
    ],
)
def test_arguments_that_make_no_sense_are_refused(repository, arguments, reason):
    status, output = bare(repository, *arguments)
    assert status == 1
    assert reason in output
    assert not repository.join("build", "bare").check()


def test_tree_without_history_is_refused(tree):
    write_command(tree.join("script", "demo"), "")
    status, output = bare(tree, "--python-only")
    assert status == 1
    assert "needs a clone with its history" in output


def test_path_with_blanks_is_refused(repository, tmpdir):
    spaced = tmpdir.join("in a path")
    repository.copy(spaced, mode=True)
    status, output = bare(spaced, "--python-only")
    assert status == 1
    assert "can't run in a path with blanks: %s" % spaced in output
    assert not spaced.join("build", "bare").check()


def test_clone_is_of_head_and_runs_where_no_other_python_is_seen(repository):
    repository.join("script", "demo").write("echo changed\n")
    status, output = bare(
        repository, "--python-only", PYENV_ROOT="/pyenv", LARKSPUR_PYTHON="/other", PIP_X="local"
    )
    assert status == 0
    assert "changes that are not committed are not in it" in output
    home = repository.join("build", "bare", "home")
    lines = [line.split(" s  ")[-1] for line in output.splitlines()]
    assert "ran demo --headless --frames 120 --check" in lines
    assert "ran test tests/types" in lines
    for line in (
        str(home.join("larkspur")),
        "HOME=%s" % home,
        "LARKSPUR_PYTHON=own",
        "PATH=/usr/bin:/bin",
        "PIP_X=local",
    ):
        assert lines.count(line) == 2
    assert "PYENV_ROOT" not in output
    assert isolated(repository) == []


def test_clone_of_somebody_else_is_taken(repository):
    """As git sees it where, say, a container's root runs what its host's user cloned."""
    status, output = bare(repository, "--python-only", GIT_TEST_ASSUME_DIFFERENT_OWNER="1")
    assert status == 0, output


def test_links_in_the_base_system_are_not_followed_to_this_machine(repository):
    assert bare(repository, "--release", "x")[0] == 0
    hosts = repository.join("build", "bare", "system-x", "etc", "hosts")
    with open("/etc/hosts") as expected:
        assert hosts.read() == expected.read()
    assert not hosts.islink() and not repository.join("host-file").check()


def test_settings_of_pip_come_along(repository):
    repository.join(".config", "pip", "pip.conf").write("[global]\n", ensure=True)
    assert bare(repository, "--python-only", "--demo-only")[0] == 0
    home = repository.join("build", "bare", "home")
    assert home.join(".config", "pip", "pip.conf").read() == "[global]\n"


def test_each_step_tells_its_time(repository):
    output = bare(repository, "--python-only")[1]
    summary = output.split("=== summary")[1].splitlines()
    assert [re.sub("[0-9]+", "N", line) for line in summary] == [
        ", N s in all",
        "demo: ok, N s",
        "test: ok, N s",
    ]
    assert re.search("^ +[0-9]+ s  ran demo", output, re.MULTILINE)


def test_nothing_runs_after_a_failing_demo(repository):
    write_command(repository.join("script", "demo"), "printf 'the reason'; exit 5")
    commit(repository)
    status, output = bare(repository, "--python-only")
    assert status == 5
    assert "the reason" in output
    assert "ran test" not in output
    assert "demo: FAILED with status 5" in output.split("=== summary")[1]


def test_failing_tests_fail_the_run(repository):
    write_command(repository.join("script", "test"), "exit 1")
    commit(repository)
    status, output = bare(repository, "--python-only")
    assert status == 1
    assert "test: FAILED with status 1" in output.split("=== summary")[1]


def test_only_the_demo_runs_where_asked_for(repository):
    status, output = bare(repository, "--python-only", "--demo-only")
    assert status == 0
    assert "ran test" not in output


ARCHIVES = [("Debian", "main", "debian"), ("Ubuntu", "main,universe", "ubuntu")]


@pytest.mark.parametrize("origin, components, keys", ARCHIVES)
def test_base_system_is_made_from_this_machines_archive(repository, origin, components, keys):
    status, output = bare(repository, "--release", "trixie", keeper=origin)
    assert status == 0
    base, demo, tests = isolated(repository)
    system = repository.join("build", "bare", "system-trixie")
    assert "--components=%s " % components in base
    assert "--keyring=/usr/share/keyrings/%s-archive-keyring.gpg " % keys in base
    assert base.rstrip().endswith("trixie %s http://archive.example/x/" % system)
    assert demo.rstrip().endswith("script/demo --headless --check")
    assert tests.rstrip().endswith("script/test")
    for line in (base, demo, tests):
        assert line.startswith("--mount --pid --fork --kill-child ")
    settings = system.join("etc", "apt", "apt.conf.d", "99this-machine").read()
    assert settings == 'Acquire::Retries "7";\n'
    assert system.join("home", "tester", "larkspur", "script", "demo").check()
    assert "NOPASSWD" in system.join("etc", "sudoers.d", "tester").read()


def test_local_wheels_of_pip_are_seen_inside(repository):
    index = repository.mkdir("index")
    wheels = repository.mkdir("wheels")
    conf = "[global]\nextra-index-url = https://far.example/simple file://%s\n" % (
        index.mkdir("simple")
    )
    repository.join(".config", "pip", "pip.conf").write(conf, ensure=True)
    assert bare(repository, "--release", "x", "--demo-only", PIP_FIND_LINKS=str(wheels))[0] == 0
    demo = isolated(repository)[-1]
    # Folders come between the base system and the user; pages of an index link to its neighbours.
    system = repository.join("build", "bare", "system-x")
    folders = demo.split("%s " % system, 1)[1].split("1000:1000")[0]
    assert folders.split() == [str(index), str(wheels)]
    assert "PIP_FIND_LINKS=%s " % wheels in demo


@pytest.mark.parametrize("names", [[], ["wheels"], ["wheels", "index"]])
def test_folders_of_pip_are_mounted_read_only(repository, names):
    folders = sorted(str(repository.mkdir(name)) for name in names)
    for command in ("mount", "chroot"):
        write_command(repository.join("entry", command), 'echo "%s $*" >>"$root/entered"' % command)
    arguments = "--release", "x", "--demo-only"
    assert bare(repository, *arguments, PIP_FIND_LINKS=" ".join(folders))[0] == 0
    system = repository.join("build", "bare", "system-x")
    lines = repository.join("entered").read().splitlines()
    assert lines[0] == "mount -t proc proc %s/proc" % system
    assert lines[1] == "mount --rbind /dev %s/dev" % system
    assert lines[2:-1] == ["mount --bind -o ro %s %s%s" % (name, system, name) for name in folders]
    assert lines[-1].startswith("chroot --userspec=1000:1000 %s " % system)


def test_nothing_runs_without_a_base_system(repository):
    status, output = bare(repository, "--release", "x", broken="debootstrap")
    assert status == 1
    assert "it is broken" in output
    assert len(isolated(repository)) == 1
    assert "base system x: FAILED" in output.split("=== summary")[1]


def test_base_system_without_its_user_is_none(repository):
    status, output = bare(repository, "--release", "x", broken="useradd")
    assert status == 1
    assert len(isolated(repository)) == 1
    assert "base system x: FAILED" in output.split("=== summary")[1]


def test_machine_without_an_archive_is_told(repository):
    status, output = bare(repository, "--release", "x", keeper="Someone")
    assert status == 1
    assert "no archive of Debian or Ubuntu" in output
    assert isolated(repository) == []


FOLDERS = [(["--python-only"], "home"), (["--release", "x"], "system-x")]


@pytest.mark.parametrize("arguments, name", FOLDERS)
def test_nothing_is_removed_through_a_mount(repository, arguments, name):
    folder = repository.join("build", "bare", name)
    folder.join("precious").write("", ensure=True)
    status, output = bare(repository, *arguments, mounted=str(folder))
    assert status == 1
    assert "something is mounted at or below %s" % folder in output
    assert folder.join("precious").check()


@pytest.mark.parametrize("arguments, name", FOLDERS)
def test_second_run_starts_afresh(repository, arguments, name):
    left_over = repository.join("build", "bare", name, "left-over")
    left_over.write("", ensure=True)
    assert bare(repository, *arguments)[0] == 0
    assert not left_over.check()
