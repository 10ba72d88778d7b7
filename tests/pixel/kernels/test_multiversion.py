"""Kernels are in the module once for each dispatch level."""

import os
import re

import larkspur
from support import build, elf, subprocess_python

ROOT = os.path.dirname(subprocess_python.TESTS)
MARK = "LARKSPUR_MULTIVERSION"

# Dispatch levels as the compiler's names of variants have them.
LEVELS = ["default", "arch_x86_64_v2", "arch_x86_64_v3", "arch_x86_64_v4"]


def declared_kernels():
    """The functions that the kernels' headers declare; inline ones are compiled where they go."""
    directory = os.path.join(ROOT, "src", "pixel", "kernels")
    functions = []
    for name in os.listdir(directory):
        if name.endswith("_kernels.h"):
            with open(os.path.join(directory, name)) as header:
                functions += re.findall(
                    r"^(?!inline|constexpr)[\w:]+[ *&]+(\w+)\(", header.read(), re.MULTILINE
                )
    return functions


def marked_kernels():
    """(unit, function) of each kernel that the sources ask variants of."""
    kernels = []
    for directory, _, names in os.walk(os.path.join(ROOT, "src")):
        for name in names:
            path = os.path.join(directory, name)
            with open(path) as source:
                text = source.read()
            marks = re.findall(r"^ *%s\b" % MARK, text, re.MULTILINE)
            functions = re.findall(r"^ *%s\s[^(){};]*?(\w+)\(" % MARK, text, re.MULTILINE)
            assert len(functions) == len(marks), path
            kernels += [(os.path.relpath(path, ROOT), function) for function in functions]
    return kernels


def function_name(symbol):
    """The last name in a mangled symbol, without namespaces: "f" of "_ZN1a1fEi"; else None."""
    rest, name = re.match("(?:_ZN?)?(.*)", symbol).group(1), None
    while True:
        length = re.match(r"L?(\d+)", rest)
        if not length:
            return name
        name = rest[length.end() :][: int(length.group(1))]
        rest = rest[length.end() + len(name) :]


def variants():
    """(function, level) of all variants in the module."""
    symbols = [symbol.split(".") for symbol in elf.defined_names(larkspur.__file__, elf.SYMTAB)]
    return [
        (function_name(parts[0]), parts[1])
        for parts in symbols
        if len(parts) == 2 and parts[1] in LEVELS
    ]


def compiler_makes_variants(macros):
    """GCC from 12 on, for x86-64. With a sanitizer the loader would ask for a variant too early."""
    return (
        "__x86_64__" in macros
        and "__clang__" not in macros
        and int(macros["__GNUC__"]) >= 12
        and "__SANITIZE_ADDRESS__" not in macros
    )


def test_every_kernel_is_marked():
    assert sorted(function for _, function in marked_kernels()) == sorted(declared_kernels())


def test_module_has_a_variant_of_each_marked_kernel_for_each_level():
    kernels = marked_kernels()
    assert kernels
    levels = LEVELS if compiler_makes_variants(build.predefined_macros(kernels[0][0])) else []
    expected = [(function, level) for _, function in kernels for level in levels]
    assert sorted(variants()) == sorted(expected)


def test_levels_without_a_native_test_are_named():
    with open(build.path("compile_commands.json")) as database:
        commands = database.read()
    left_out = [
        level
        for level in ("x86-64", "x86-64-v2", "x86-64-v3", "x86-64-v4")
        if "-march=%s " % level not in commands
    ]
    assert build.untested_levels() == left_out
