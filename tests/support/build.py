"""What the build directory tells of how the module and the native tests were made."""

import json
import os
import re
import shlex
import subprocess


def path(*names):
    """Path of something below the build directory."""
    directory = os.environ.get("LARKSPUR_BUILD_DIR")
    assert directory, "LARKSPUR_BUILD_DIR must name the build directory; script/test sets it"
    return os.path.join(directory, *names)


def untested_levels():
    """Dispatch levels of the kernels that native tests leave out: CMake found that what is built
    for them does not run here."""
    with open(path("CMakeCache.txt")) as cache:
        found = re.search("^LARKSPUR_UNTESTED_LEVELS:INTERNAL=(.*)$", cache.read(), re.MULTILINE)
    return [level for level in found.group(1).split(";") if level]


def predefined_macros(unit):
    """The macros that the compiler has from the start, with their values, where it compiles a unit
    of the module, such as "src/pixel/surface/blit.cpp"."""
    with open(path("compile_commands.json")) as database:
        commands = [
            entry["command"] for entry in json.load(database) if entry["file"].endswith("/" + unit)
        ]
    command = shlex.split(str(commands[0]))
    output = subprocess.check_output(
        command[: command.index("-o")] + ["-dM", "-E", "-x", "c++", os.devnull],
        env=dict(os.environ, LD_PRELOAD=""),
    )  # a sanitizer is for the module
    return dict(re.findall(r"^#define (\w+) (.*)$", output, re.MULTILINE))
