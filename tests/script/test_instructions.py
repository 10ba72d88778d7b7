"""What is said of counted instructions, given counts. Kept is 100,000 for each scene."""

import os
import sys

import pytest
from support.scripts import TREE, run, write_command

sys.path.insert(0, os.path.join(TREE, "bench", "instructions"))

import judging

KEPT = {"fills": 100000, "rooms": 100000}


def judged(**counts):
    """(faulty, output) of the scenes' counts."""
    faulty, lines = judging.judge(KEPT, sorted(counts.items()))
    return faulty, "\n".join(lines)


@pytest.mark.parametrize("count", [100000, 101000, 102900, 103000])
def test_growth_by_up_to_3_percent_passes(count):
    faulty, output = judged(fills=count, rooms=100000)
    assert not faulty
    assert "FAILED" not in output


@pytest.mark.parametrize("count", [103001, 103100, 250000])
def test_growth_by_more_fails_and_names_scene_counts_and_way_out(count):
    faulty, output = judged(fills=count, rooms=100000)
    (failure,) = [line for line in output.splitlines() if line.startswith("FAILED")]
    assert faulty
    assert "fills grew" in failure
    assert "from 100000 to %d " % count in failure
    assert "script/bench --instructions --keep" in failure


def test_one_scene_does_not_make_up_for_another():
    assert judged(fills=104000, rooms=50000)[0]


@pytest.mark.parametrize("count, told", [(96900, True), (97100, False)])
def test_fall_by_more_than_3_percent_is_told_and_passes(count, told):
    faulty, output = judged(fills=count, rooms=100000)
    assert not faulty
    assert ("fewer instructions in: fills; keep them" in output) == told


def test_scene_that_is_kept_and_not_counted_fails():
    faulty, output = judged(fills=100000)
    assert faulty
    assert "FAILED: rooms is kept and was not counted" in output


def test_scene_that_is_not_kept_fails():
    faulty, output = judged(fills=100000, rooms=100000, views=5)
    assert faulty
    assert "FAILED: views takes 5 and is kept nowhere" in output


def test_file_gives_back_what_it_was_made_of():
    surroundings = {"compiler": "GCC 12.2.0", "Python": "2.7.18, GCC 12: own"}
    counts = [("room of tiles", 1234567), ("fills", 89)]
    assert judging.read_kept(judging.text_of(surroundings, counts)) == (surroundings, counts)


def test_differing_surroundings_are_named():
    kept = {"compiler": "GCC 12", "level": "v3", "SDL": "1.2.15"}
    here = {"compiler": "GCC 13", "level": "v3", "Python": "2.7.18"}
    assert judging.differences(kept, here) == [
        "Python: none there, 2.7.18 here",
        "SDL: 1.2.15 there, none here",
        "compiler: GCC 12 there, GCC 13 here",
    ]
    assert judging.differences(here, here) == []


# --- script/bench --instructions -----------------------------------------------------------------

GIT = "git -c user.name=a -c user.email=a@b "


@pytest.fixture
def counting(tree):
    """Runs script/bench's functions on a tree in which counting ends with a status of choice; a
    module that was built elsewhere counts as good."""
    text = tree.join("script", "bench").read()
    assert text.endswith('\nmain "$@"\n')
    tree.join("script", "functions").write(text[: text.rindex("main")])
    write_command(tree.join("script", "setup"), "")
    write_command(
        tree.join(".venv", "bin", "python"),
        'echo "counting: ${*:2}"; [ "${2:-}" = --older ] || exit "$STATUS"',
    )

    def count(status, code="count_instructions"):
        prepared = ". script/functions; apt_install() { :; }; provide_revision() { echo of/$1; }; "
        return run(["/bin/bash", "-c", prepared + code], tree, STATUS=str(status))

    return count


@pytest.fixture
def history(tree):
    """A history in whose middle the counts were kept; gives that commit."""
    tree.ensure("bench", dir=True)
    commits = "".join(
        "echo %d >%s; %sadd -A; %scommit -qm %d; " % (number, path, GIT, GIT, number)
        for number, path in enumerate(("bench/instructions.txt",) * 2 + ("other",))
    )
    status, output = run(
        ["/bin/bash", "-ec", GIT + "init -q; " + commits + "git rev-parse HEAD~1"], tree
    )
    assert status == 0
    return output.split()[-1]


@pytest.mark.parametrize("status", [0, 1])
def test_judgement_by_kept_counts_is_the_end(counting, history, status):
    assert counting(status) == (status, "counting: \n")


def test_counts_kept_elsewhere_are_counted_here_of_the_commit_that_kept_them(counting, history):
    assert counting(3) == (0, "counting: \ncounting: --older of/%s\n" % history)


def test_counts_kept_elsewhere_fail_without_history(counting):
    status, output = counting(3)
    assert status == 1
    assert "nothing to judge by" in output


def test_counts_kept_elsewhere_fail_where_history_is_cut_off(counting, history, tree):
    cut = "git clone -q --depth 1 file://$PWD cut; cp -r cut/.git .; "
    status, output = counting(3, cut + "count_instructions")
    assert status == 1
    assert "nothing to judge by" in output
