# shellcheck shell=bash
# What the scripts share: where things are, how to talk, how to find tools and how to build.
# Sourced first by each of them; it moves into the root of the tree.

set -euo pipefail

# Where the caller stands; read by script/demo.
# shellcheck disable=SC2034
caller_directory=$PWD
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd -P)
cd "$root"

venv=$root/.venv
# The pygame in it.
default_pygame=1.9.6
# Read by script/setup and by the tests of these scripts.
# shellcheck disable=SC2034
python2_release=2.7.18
# The one that script/build-python makes.
own_python=$root/build/python2.7/bin/python2.7

# Debian's own tools go before all others, so that a version manager's shim which answers
# "not installed" is never taken for the tool. Python 2.7 is looked for on the path of the caller,
# also by a script that another one calls.
export caller_path=${caller_path:-$PATH}
PATH=/usr/local/sbin:/usr/sbin:/sbin:/usr/bin:/bin:$PATH

script_path=$(cd "$caller_directory" && realpath "$0")

# Prints the comment at the head of the running script.
show_help() {
    sed -n '2,/^$/s/^#\( \|$\)//p' "$script_path"
}

# What every script answers to as its first argument.
if [ "${1:-}" = --help ]; then
    show_help
    exit 0
fi

# What a developer's shell happens to hold must change neither what is built nor what is tested.
unset LARKSPUR_BUILD_DIR VIRTUAL_ENV CDPATH DESTDIR
unset PYTHONPATH PYTHONHOME PYTHONSTARTUP PYTHONOPTIMIZE PYTHONWARNINGS PYTHONINSPECT PYTHONDEBUG
unset PYTEST_ADDOPTS PYTEST_PLUGINS PIP_USER PIP_TARGET PIP_PREFIX PIP_REQUIRE_VIRTUALENV
unset CC CXX CFLAGS CXXFLAGS CPPFLAGS LDFLAGS CMAKE_BUILD_TYPE CMAKE_GENERATOR
unset LD_PRELOAD ASAN_OPTIONS LSAN_OPTIONS UBSAN_OPTIONS GTEST_FILTER
export LC_ALL=C.UTF-8
# virtualenv would keep its data in the home of the user.
export VIRTUALENV_OVERRIDE_APP_DATA=$root/build/tools/virtualenv-data
export PIP_DISABLE_PIP_VERSION_CHECK=1 PIP_NO_INPUT=1 PIP_NO_PYTHON_VERSION_WARNING=1
export PYGAME_HIDE_SUPPORT_PROMPT=1

# Compiler cache, pip and others keep things under HOME; some accounts have none.
if [ ! -d "${HOME:-}" ] || [ ! -w "${HOME:-}" ]; then
    export HOME=$root/build/home
    mkdir -p "$HOME"
fi

# environment_with VERSION: prints where the environment with this pygame is; fails for a version
# that larkspur is not tested with.
environment_with() {
    case $1 in
        "$default_pygame") printf '%s\n' "$venv" ;;
        2.0.3) printf '%s\n' "$root/build/venv-pygame-$1" ;;
        *) refuse "--pygame takes $default_pygame or 2.0.3, got: ${1:-nothing}" ;;
    esac
}

say() {
    printf -- '-- %s\n' "$*"
}

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# refuse TEXT...: ends the run because of arguments that make no sense.
refuse() {
    fail "$*; ${script_path#"$root/"} --help tells more"
}

# take_no_arguments ARGUMENT...: refuses them.
take_no_arguments() {
    if [ $# -gt 0 ]; then
        refuse "takes no arguments, got: $*"
    fi
}

# retry COMMAND...: up to three times, for steps that reach over a network.
retry() {
    local attempt
    for attempt in 1 2 3; do
        if "$@"; then
            return 0
        fi
        if [ "$attempt" -lt 3 ]; then
            say "attempt $attempt of 3 failed: $*"
            sleep "${LARKSPUR_RETRY_PAUSE:-10}"
        fi
    done
    return 1
}

# quietly LOG COMMAND...: keeps the output in LOG and shows it only when the command fails.
quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        fail "this command failed, its output is above: $*"
    fi
}

can_become_root() {
    [ "$(id -u)" = 0 ] || command -v sudo >/dev/null
}

# As root where apt wants it.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif can_become_root; then
        sudo "$@"
    else
        fail "needs root to run: $* (no sudo here; run it as root yourself, then try again)"
    fi
}

# missing_packages NAME[|NAME...]...: prints the arguments of which no name is installed.
missing_packages() {
    local alternatives name installed
    # It complains about those that it has never heard of.
    # shellcheck disable=SC2016,SC2048,SC2086
    installed=$(dpkg-query -W -f ' ${Package}:${db:Status-Status} ' ${*//|/ } 2>/dev/null || true)
    for alternatives in "$@"; do
        for name in ${alternatives//|/ }; do
            [[ $installed == *" $name:installed "* ]] && continue 2
        done
        printf '%s\n' "$alternatives"
    done
}

# "fresh" or "old" once they were asked for, also by a script that calls this one.
export apt_lists=${apt_lists:-unknown}

refresh_apt_lists() {
    if [ "$apt_lists" = unknown ] && ! can_become_root; then
        apt_lists=old
    elif [ "$apt_lists" = unknown ]; then
        say "apt-get update"
        # An old list is often good enough, so a refusal is told and not fatal. Without the mode,
        # apt-get counts servers that can't be reached as a success.
        if retry as_root apt-get -q -o DPkg::Lock::Timeout=600 -o APT::Update::Error-Mode=any \
            -o Acquire::Retries=1 update </dev/null; then
            apt_lists=fresh
        else
            say "apt-get update failed three times; going on with the lists that are here"
            apt_lists=old
        fi
    fi
}

# apt_knows NAME: whether this Debian release has an installable package of that name.
apt_knows() {
    [[ $(apt-cache policy "$1" 2>/dev/null) == *"Candidate: "[!\(]* ]]
}

# Prints "ORIGIN URI" for each archive that apt is set up for, ORIGIN being Debian, Ubuntu or
# another in one word. Archives of security updates and backports go by other labels.
apt_archives() {
    # The names in brackets are apt's.
    # shellcheck disable=SC2016
    apt-get indextargets --format '$(ORIGIN)|$(LABEL)|$(REPO_URI)' 'Created-By: Packages' |
        sed -nE 's/^([^| ]+)[|]\1[|](.*)$/\1 \2/p' | sort -u
}

# archive_keyring ORIGIN: prints where Debian and Ubuntu keep the keys that sign their archives.
archive_keyring() {
    printf '/usr/share/keyrings/%s-archive-keyring.gpg\n' "${1,,}"
}

# known_name NAME[|NAME...]: prints the first of these names that apt knows; where it knows none,
# the first of all, which apt will then complain about.
known_name() {
    local name
    for name in ${1//|/ }; do
        if apt_knows "$name"; then
            printf '%s\n' "$name"
            return
        fi
    done
    printf '%s\n' "${1%%|*}"
}

# apt_install NAME[|NAME...]...: installs what is missing of these packages; nothing when all is
# there. Of names with | between them one is enough, the first that this release has.
apt_install() {
    local missing names=() alternatives again=(retry) options=()
    mapfile -t missing < <(missing_packages "$@")
    if [ "${#missing[@]}" = 0 ]; then
        return
    fi
    say "packages to install: ${missing[*]}"
    refresh_apt_lists
    for alternatives in "${missing[@]}"; do
        names+=("$(known_name "$alternatives")")
    done
    if ! can_become_root; then
        fail "needs root, and there is no sudo here. As root: apt-get install ${names[*]}
Then run this again."
    fi
    if [ "$apt_lists" = old ]; then
        # No network, most likely: what is not in apt's cache won't come by waiting.
        again=()
        options=(-o Acquire::Retries=0)
    fi
    say "apt-get install"
    (quietly build/tools/apt-get.log "${again[@]}" as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y -o DPkg::Lock::Timeout=600 "${options[@]}" \
        install --no-install-recommends "${names[@]}") ||
        fail "apt-get could not install what is missing: ${names[*]}
Make this machine reach its package archive (apt-get update shows whether it does), or install these
packages in another way, and run this again."
}

# provide_sdl_layer: unpacks the SDL 1.2 that is a layer over SDL 2 below build/, never over the
# system's own, and prints the directory of its library.
provide_sdl_layer() {
    local package=libsdl1.2-compat directory=$root/build/sdl-compat library
    if [ ! -d "$directory/unpacked" ]; then
        apt_knows "$package" || refresh_apt_lists >&2
        apt_knows "$package" ||
            fail "no layer over SDL 2 to test on: this release has no package $package"
        say "unpacking $package in build/sdl-compat" >&2
        rm -rf "$directory"
        mkdir -p "$directory"
        (cd "$directory" && quietly "$directory/apt-get.log" retry apt-get -q download "$package")
        quietly "$directory/dpkg-deb.log" dpkg-deb -x "$directory/$package"_*.deb "$directory/new"
        mv "$directory/new" "$directory/unpacked"
    fi
    # Loaded by the layer when it starts; an ordinary library beside the others.
    apt_install libsdl2-2.0-0 >&2
    library=$(find "$directory/unpacked" -name libSDL-1.2.so.0 -print -quit)
    [ -e "$library" ] || fail "$package brings no library of its own: $directory/unpacked"
    dirname "$library"
}

# What draws plots, with Python 3 in build/plots; for the scripts that do.
# shellcheck disable=SC2034
plot_package='matplotlib<4'

# provide_python3 DIRECTORY PACKAGE...: makes an environment of Python 3 with these packages.
provide_python3() {
    local directory=$1
    shift
    if [ "$(cat "$directory/made-for" 2>/dev/null)" = "$*" ]; then
        return
    fi
    say "making $directory: $*"
    rm -rf "$directory"
    python3 -m venv "$directory" >/dev/null 2>&1 ||
        fail "needs a Python 3 with venv and pip for $*, and there is none;" \
            "Debian's package is python3-venv"
    quietly build/tools/pip.log retry "$directory/bin/python" -m pip install "$@"
    printf '%s\n' "$*" >"$directory/made-for"
}

# python27_with_headers CANDIDATE: prints the path of the interpreter behind CANDIDATE; fails
# unless it runs, is Python 2.7 and has its headers.
python27_with_headers() {
    "$1" -c '
import os, sys
from distutils.sysconfig import get_python_inc
header = os.path.join(get_python_inc(), "Python.h")
if sys.version_info[:2] != (2, 7) or not os.path.isfile(header):
    sys.exit(1)
print(os.path.abspath(sys.executable))
' 2>/dev/null </dev/null
}

# Prints pyenv's command, when there is one.
find_pyenv() {
    PATH=$caller_path command -v pyenv || {
        local candidate=${PYENV_ROOT:-$HOME/.pyenv}/bin/pyenv
        [ -x "$candidate" ] && printf '%s\n' "$candidate"
    }
}

# Prints the newest Python 2.7 with headers that pyenv holds.
find_pyenv_python27() {
    local pyenv pyenv_root candidate
    pyenv=$(find_pyenv) || return 1
    pyenv_root=$("$pyenv" root 2>/dev/null) || return 1
    while IFS= read -r candidate; do
        if python27_with_headers "$candidate"; then
            return 0
        fi
    done < <(printf '%s\n' "$pyenv_root"/versions/2.7*/bin/python2.7 | sort -rV)
    return 1
}

# find_python27: prints a Python 2.7 with headers that is on this machine already.
find_python27() {
    local candidate
    if [ "${LARKSPUR_PYTHON:-}" = own ]; then
        python27_with_headers "$own_python"
        return
    fi
    if [ -n "${LARKSPUR_PYTHON:-}" ]; then
        python27_with_headers "$LARKSPUR_PYTHON" ||
            fail "LARKSPUR_PYTHON is $LARKSPUR_PYTHON, which is no Python 2.7 with headers"
        return
    fi
    while IFS= read -r candidate; do
        if python27_with_headers "$candidate"; then
            return 0
        fi
    done < <(PATH=$caller_path type -ap python2.7)
    find_pyenv_python27 || python27_with_headers "$own_python"
}

has_cpython_cases() {
    "$1" -c 'import test.list_tests' 2>/dev/null </dev/null
}

# provide_cpython_cases PYTHON: our tests also run CPython's own cases, which some systems package
# apart. Says so where they can't be had.
provide_cpython_cases() {
    local package=libpython2.7-testsuite
    has_cpython_cases "$1" && return
    if command -v apt-get >/dev/null; then
        refresh_apt_lists
        if apt_knows "$package"; then
            apt_install "$package"
        fi
    fi
    has_cpython_cases "$1" ||
        say "$1 comes without its standard package 'test', which the tests in tests/types/cpython" \
            "run: install it (Debian: $package)"
}

# configure_tree DIRECTORY TYPE [CMAKE OPTION...]: does nothing where that was done before.
configure_tree() {
    local directory=$1 type=$2 cmake_version settings
    shift 2
    set -- "-DCMAKE_BUILD_TYPE=$type" "-DPython2_EXECUTABLE=$venv/bin/python" "$@"
    if [ -n "${CI:-}" ]; then
        set -- "$@" -DLARKSPUR_WERROR=ON
    else
        set -- "$@" -DLARKSPUR_WERROR=OFF
    fi
    # A cache made in another place, by another CMake or for another interpreter is of no use.
    cmake_version=$(cmake --version)
    settings="$root $(cat "$venv/made-for") ${cmake_version%%$'\n'*} $*"
    if [ "$settings" != "$(cat "$directory/configured" 2>/dev/null)" ]; then
        say "configuring $directory ($type)"
        rm -rf "$directory/CMakeCache.txt" "$directory/CMakeFiles" "$directory/configured"
        quietly "$directory/configure.log" \
            cmake -S . -B "$directory" -G Ninja -DCMAKE_MAKE_PROGRAM="$(command -v ninja)" "$@"
        printf '%s\n' "$settings" >"$directory/configured"
    fi
}

# build_tree DIRECTORY TYPE [CMAKE OPTION...]: configures and builds; quick when nothing changed.
build_tree() {
    local directory=$1
    configure_tree "$@"
    say "building $directory"
    quietly "$directory/build.log" ninja -C "$directory" -j "$(nproc)"
}

# Lists of leaks that are not ours to mend.
leak_suppressions=(tests/sanitize/lsan.supp)

# Builds what runs under the sanitizers and sets, for the caller, where it is (`build`), where
# reports go (`reports`), and what the environment of native tests and of the interpreter needs.
# shellcheck disable=SC2034
prepare_sanitizers() {
    local common=allocator_may_return_null=1 log
    build=$root/build/sanitize
    reports=$build/reports
    log=log_path=$reports/report
    case $root in
        *[[:space:]:]*) fail "the loader can preload no sanitizer from a path with blanks: $root" ;;
    esac
    build_tree build/sanitize Sanitize
    rm -rf "$reports"
    mkdir -p "$reports"
    cat "${leak_suppressions[@]}" >"$build/lsan.supp"
    export LSAN_OPTIONS=suppressions=$build/lsan.supp:print_suppressions=0
    # Add fast_unwind_on_malloc=0 to see stacks beyond libraries without frame pointers; with it the
    # tests take four times as long.
    export UBSAN_OPTIONS=print_stacktrace=1
    native_settings=("ASAN_OPTIONS=$common:detect_leaks=1")
    # The interpreter is not instrumented: the sanitizer's library must be loaded before it, and
    # the C++ library with it so that exceptions are followed. Leaks are looked for once, at the
    # end of the run (tests/sanitize/leak_check.py); reports go to files because pytest holds
    # back what a dying test prints.
    python_settings=(
        PYTHONPATH="$build:$root/tests/sanitize"
        LARKSPUR_FUZZ_EXAMPLES="${LARKSPUR_FUZZ_EXAMPLES:-30}"
        ASAN_OPTIONS="$common:detect_leaks=1:leak_check_at_exit=0:$log"
        UBSAN_OPTIONS="$UBSAN_OPTIONS:$log"
        LD_PRELOAD="$(g++ -print-file-name=libasan.so) $(g++ -print-file-name=libstdc++.so.6) \
$build/tests/sanitize/libarena_roots.so"
    )
}

# show_sanitizer_reports DIRECTORY: shows them and fails when there are any. Among the files are
# mere warnings, when a test asked for more memory than there is.
show_sanitizer_reports() {
    local report found=0
    for report in "$1"/*; do
        if [ -f "$report" ] && grep -qE 'ERROR: |runtime error: ' "$report"; then
            say "sanitizer report $report:"
            cat "$report"
            found=1
        fi
    done
    return $found
}
