"""Runs clang-tidy over our units, on all cores, and remembers which were clean.

clang_tidy.py BUILD_DIRECTORY

A unit is checked again only when it, something it includes, its compile command, the checks or
clang-tidy itself changed. Exits with 1 when there is a finding.
"""

from __future__ import print_function

import hashlib
import json
import multiprocessing.pool
import os
import shlex
import subprocess
import sys

CONFIGURATIONS = (".clang-tidy", "tests/native/.clang-tidy")

# Compiler arguments that clang does not know.
GCC_ONLY = ("-fno-tree-loop-distribute-patterns",)


def output_of(command, directory="."):
    return subprocess.check_output(command, cwd=directory)


def units(build):
    """The compile database's entries, one for each source file of ours.

    A file that is compiled several times, once for each kind of processor, is checked once.
    """
    with open(os.path.join(build, "compile_commands.json")) as database:
        entries = json.load(database)
    here = os.getcwd() + os.sep
    generated = os.path.abspath(build) + os.sep
    by_file = {}
    for entry in entries:
        if entry["file"].startswith(here) and not entry["file"].startswith(generated):
            for argument in GCC_ONLY:
                entry["command"] = entry["command"].replace(" %s " % argument, " ")
            by_file.setdefault(entry["file"], entry)
    return [by_file[name] for name in sorted(by_file)]


def included_files(entry):
    """Every file that the unit is compiled from, the system's among them."""
    command = shlex.split(str(entry["command"]))
    target = command.index("-o")
    del command[target : target + 2]
    rule = output_of(command + ["-M"], entry["directory"]).decode("utf-8")
    names = rule.replace("\\\n", " ").split(": ", 1)[1].split()
    return sorted(os.path.join(entry["directory"], name) for name in names)


def fingerprint(entry, common):
    digest = hashlib.sha256(common)
    digest.update(entry["command"].encode("utf-8"))
    for name in included_files(entry):
        digest.update(name.encode("utf-8"))
        with open(name, "rb") as included:
            digest.update(hashlib.sha256(included.read()).digest())
    return digest.hexdigest()


def check(entry, directory, common):
    """Gives the unit's name, whether clang-tidy ran, and its findings as text."""
    name = os.path.relpath(entry["file"])
    mark = os.path.join(directory, fingerprint(entry, common))
    if os.path.exists(mark):
        return name, False, ""
    tidy = subprocess.Popen(
        ["clang-tidy", "-p", directory, "--quiet", name],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )
    findings, complaints = tidy.communicate()
    if tidy.returncode == 0:
        open(mark, "w").close()
        return name, True, ""
    return name, True, (findings + complaints).decode("utf-8", "replace")


def main():
    build = sys.argv[1]
    common = output_of(["clang-tidy", "--version"])
    for configuration in CONFIGURATIONS:
        with open(configuration, "rb") as checks:
            common += checks.read()
    directory = os.path.join(build, "clang-tidy")
    if not os.path.isdir(directory):
        os.makedirs(directory)
    entries = units(build)
    with open(os.path.join(directory, "compile_commands.json"), "w") as database:
        json.dump(entries, database)

    pool = multiprocessing.pool.ThreadPool(multiprocessing.cpu_count())
    checked = failed = total = 0
    for name, ran, findings in pool.imap_unordered(
        lambda entry: check(entry, directory, common), entries
    ):
        total += 1
        checked += ran
        if findings:
            failed += 1
            print("%s:\n%s" % (name, findings))
    print("%d units, %d of them checked anew, %d with findings" % (total, checked, failed))
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
