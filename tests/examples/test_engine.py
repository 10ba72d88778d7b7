"""Runs the tests in engine/ in one interpreter of their own and reports each as a test here.

larkspur binds gm6 and gmapi once, when it is imported; in this interpreter they are the recording
host.
"""

import ast
import os
import subprocess
import sys
import xml.etree.ElementTree as ElementTree

import pytest

HERE = os.path.dirname(os.path.abspath(__file__))
ENGINE_TESTS = os.path.join(HERE, "engine")


def names():
    """(file stem, test name) of every test function in engine/."""
    found = []
    for file_name in sorted(os.listdir(ENGINE_TESTS)):
        if file_name.startswith("test_") and file_name.endswith(".py"):
            with open(os.path.join(ENGINE_TESTS, file_name)) as source:
                tree = ast.parse(source.read(), file_name)
            found += [
                (file_name[:-3], node.name)
                for node in tree.body
                if isinstance(node, ast.FunctionDef) and node.name.startswith("test_")
            ]
    return found


@pytest.fixture(scope="module")
def results(tmp_path_factory):
    """(file stem, test name) -> list of failure texts, and what the run printed."""
    report = str(tmp_path_factory.mktemp("engine") / "report.xml")
    process = subprocess.Popen(
        [
            sys.executable,
            "-m",
            "pytest",
            "-q",
            "-p",
            "no:cacheprovider",
            "--confcutdir",
            ENGINE_TESTS,
            "--junitxml",
            report,
            ENGINE_TESTS,
        ],
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
    )
    output = process.communicate()[0].decode("utf-8", "replace")
    outcomes = {}
    if os.path.exists(report):
        for case in ElementTree.parse(report).getroot().iter("testcase"):
            key = case.get("classname").split(".")[-1], case.get("name").split("[")[0]
            faults = [
                child.text or child.get("message")
                for child in case
                if child.tag in ("failure", "error", "skipped")
            ]
            outcomes.setdefault(key, []).extend(faults)
    return outcomes, output


@pytest.mark.parametrize("name", names(), ids=lambda name: "{}-{}".format(*name))
def test_in_engine(results, name):
    outcomes, output = results
    assert name in outcomes, "the test did not run:\n" + output[-3000:]
    assert not outcomes[name], "\n".join(outcomes[name])
