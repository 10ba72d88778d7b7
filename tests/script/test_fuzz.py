"""script/fuzz: what it refuses, and how kept inputs are packed."""

import os
import sys

from support.scripts import TREE, run

CORPUS = os.path.join(TREE, "script", "fuzz_corpus.py")


def test_unknown_target_is_refused(tree):
    status, output = run(["script/fuzz", "kernel"], tree)
    assert status == 1
    assert "knows no target kernel" in output


def test_seconds_must_be_a_number(tree):
    status, output = run(["script/fuzz", "--seconds", "ten"], tree)
    assert status == 1
    assert "--seconds takes a number, got: ten" in output


def test_kept_inputs_are_packed_and_unpacked(tmpdir):
    contents = [b"", b"\x00\xff", b"\n", b"input"]
    found = tmpdir.ensure("found", dir=True)
    for number, content in enumerate(contents):
        found.join("input%d" % number).write_binary(content)
    kept = str(tmpdir.join("kept.txt"))
    unpacked = tmpdir.ensure("unpacked", dir=True)
    assert run([sys.executable, CORPUS, "pack", kept, str(found)], tmpdir)[0] == 0
    assert run([sys.executable, CORPUS, "unpack", kept, str(unpacked)], tmpdir)[0] == 0
    assert sorted(path.read_binary() for path in unpacked.listdir()) == sorted(contents)
    assert open(kept).read() == "\n00ff\n0a\n696e707574\n"
