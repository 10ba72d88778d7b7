"""The reference of native names: complete, and with calls that hold."""

import os
import re
import sys

import larkspur
import pytest
from support import documents, elf

sys.path.insert(0, os.path.join(documents.DOCS, "make"))
import native_page

# What the module shows beside the names of its header: the interpreter finds it by this name.
OTHERS = {"initlarkspur"}
RECORDS = {"particle_type_record", "particle_record", "satusub_subtractor", "satusub_start"}
SECTIONS = native_page.sections()
NAMES = [name for section in SECTIONS for item in section.items for name in item.names]


def test_page_has_all_exported_names_once():
    exported = elf.defined_names(larkspur.__file__, elf.DYNSYM)
    shown = {name for name in exported if not name.startswith("_")} - OTHERS
    assert sorted(NAMES) == sorted(shown | RECORDS)


def test_each_declaration_has_a_comment():
    for section in SECTIONS:
        for item in section.items:
            assert len(item.comment.split()) > 1, item.names


@pytest.mark.parametrize("name", sorted(set(NAMES) - RECORDS))
def test_page_shows_declaration(name):
    page = documents.read(os.path.join("reference", "native.md"))
    declared = "".join(
        block.text
        for block in documents.blocks(page)
        if block.language == "c" and "CHECK(" not in block.text
    )
    assert re.search(r"^(?:extern )?[\w *]+\b%s[;(]" % name, declared, re.MULTILINE)
    assert "LARKSPUR_EXPORT" not in declared


def calls():
    return "".join(native_page.examples().values())


@pytest.mark.parametrize("section", SECTIONS, ids=lambda section: section.title)
def test_each_function_is_called_in_the_example_of_its_section(section):
    example = native_page.examples()[section.title]
    for item in section.items:
        for name in item.names:
            if re.search(r"\b%s\(" % name, item.code):
                assert re.search(r"\b%s\(" % name, example), name


@pytest.mark.parametrize("record", sorted(RECORDS))
def test_each_record_is_used_in_an_example(record):
    assert re.search(r"struct %s\b" % record, calls())


def test_each_group_of_variables_is_used_in_an_example():
    for section in SECTIONS:
        for item in section.items:
            if "extern " in item.code and "Always null" not in item.comment:
                assert any(re.search(r"\b%s\b" % name, calls()) for name in item.names), item.names
