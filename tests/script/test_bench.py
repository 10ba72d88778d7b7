"""script/bench: what it refuses, how it judges, and the processes that it asks. How fast anything
is, is no test."""

import base64
import json
import os
import re
import subprocess
import sys

import pygame
import pytest
from support.scripts import TREE, run, write_command

BENCH = os.path.join(TREE, "bench", "python")
sys.path.insert(0, BENCH)
import jobs  # noqa: E402
import main  # noqa: E402
import measuring  # noqa: E402
import pygame_ways  # noqa: E402
import table  # noqa: E402
import workers  # noqa: E402

# --- Arguments -----------------------------------------------------------------------------------


@pytest.mark.parametrize("arguments, shown", [(["nowhere"], "nowhere"), ([], "nothing")])
def test_revision_that_git_does_not_know_is_refused(tree, arguments, shown):
    status, output = run(["script/bench", "--compare"] + arguments, tree)
    assert status == 1
    assert output == (
        "bench: --compare takes a revision that git knows, got: %s; script/bench --help tells "
        "more\n" % shown
    )
    assert not tree.join("build").check()


def test_missing_python3_is_told_before_anything_is_measured(tree):
    write_command(tree.join("script", "setup"), "")
    without_python3 = "python3() { return 1; }; export -f python3; exec script/bench --peers"
    status, output = run(["/bin/bash", "-c", without_python3], tree)
    assert status == 1
    assert output.splitlines()[-1] == (
        "bench: needs a Python 3 with venv and pip for pygame-ce==2.5.8, and there is none; "
        "Debian's package is python3-venv"
    )


def test_word_in_no_name_is_refused_and_the_names_are_told():
    with pytest.raises(SystemExit) as ended:
        main.chosen_jobs(["GMVar", "no such job"])
    lines = str(ended.value).splitlines()
    assert lines[0] == "bench: no job's name holds 'no such job'; there are:"
    assert lines[1:] == ["    " + job.name for job in jobs.JOBS]


def test_words_choose_jobs_by_their_names():
    assert main.chosen_jobs([]) == jobs.JOBS
    names = [job.name for job in main.chosen_jobs(["gmvar, v +", "int(sprite)"])]
    assert names == ["GMVar, v + 1", "GMVar, v += 1", "int(sprite)"]


# --- Figures -------------------------------------------------------------------------------------


def test_quartiles_lie_between_neighbours():
    assert measuring.quartiles([4, 1, 3, 2, 5]) == (2, 3, 4)
    assert measuring.quartiles([1, 2]) == (1.25, 1.5, 1.75)


def test_ratios_are_those_of_single_rounds():
    # The medians of both are 2.
    assert measuring.ratios([2, 1, 6], [1, 2, 2])[1] == 2
    assert measuring.ratios([2, 1, 6], [2, 4, 1])[1] == 1


def test_ways_are_timed_by_the_call_and_equally_often():
    timed = {"a": [], "b": []}

    def way(name, seconds):
        def run_way(calls):
            timed[name].append(calls)
            return calls * seconds

        return run_way

    ways = {"a": way("a", 0.5), "b": way("b", 0.125)}
    times = measuring.times_in_turns(ways, 3, 2.0)
    assert times == {"a": [0.5] * 3, "b": [0.125] * 3}
    # One call for what is made at the first, three to see how long they take.
    assert timed == {"a": [1, 3] + [4] * 3, "b": [1, 3] + [16] * 3}


def test_target_is_the_last_that_the_width_reaches():
    job = jobs.Job("x", [], {"SDL": [(16, 2), (64, 3), (640, None)], "pygame": []})
    sizes = [(8, 900), (16, 16), (63, 1), (64, 64), (640, 480)]
    assert [job.target("SDL", size) for size in sizes] == [None, 2, 2, 3, None]
    assert job.target("pygame", (64, 64)) is None
    assert jobs.Job("x", [], {"class": [(0, 5)]}).target("class", ()) == 5


@pytest.mark.parametrize(
    "target, ratio, expected",
    [
        (2, (1.5, 2.0, 2.5), "reached"),
        (2, (1.9, 1.99, 9.0), "SHORT"),
        (2, (0.1, 2.01, 9.0), "reached"),
        (None, (0.1, 0.2, 0.3), ""),
    ],
)
def test_median_decides_whether_a_target_is_reached(target, ratio, expected):
    assert table.verdict(target, ratio) == expected


def row(who, ratio, size=(64, 64)):
    job = jobs.Job("draw()", [size], {"SDL": [(0, 4)], "pygame": [], jobs.PEER: [(0, 1)]})
    return table.Row(job, size, who, (ratio, ratio, ratio), "blit()", 2e-6)


def test_line_tells_size_time_target_ratio_and_verdict():
    words = table.line(row("SDL", 3.5)).split()
    assert words == "64 x 64 2.00 us SDL 4.00 3.50 (3.50-3.50) SHORT blit()".split()
    assert table.line(row("pygame", 3.5)).split()[5:] == "pygame 3.50 (3.50-3.50) blit()".split()


def test_summary_counts_and_names_what_is_short_or_was_not_measured():
    rows = [row("SDL", 3.5), row("SDL", 4), row("pygame", 0.1)]
    assert table.summary(rows, [rows[0].job], compared=False, peers=False) == [
        "1 of 2 targets reached",
        "    short: draw(), 64 x 64 against SDL: 3.50 of 4.00",
        "targets against pygame-ce are measured with --peers",
    ]
    assert len(table.summary(rows, [rows[0].job], compared=False, peers=True)) == 2


def test_fastest_way_of_a_rival_counts_and_ratios_are_its_time_over_ours():
    job = jobs.Job("draw()", [(64, 64)], {"pygame": []})
    times = {
        "larkspur": [2, 2, 2],
        "pygame: blit()": [9, 9, 9],
        "pygame: blits()": [6, 8, 20],
        "abc1234": [3, 3, 3],
        "roof": [1, 1, 1],
    }
    rows = main.rows_of(job, (64, 64), times)
    assert [(each.who, each.how, each.ratio[1], each.seconds) for each in rows] == [
        ("abc1234", "", 1.5, 2),
        ("pygame", "blits()", 4, 2),
    ]
    assert main.rows_of(job, (64, 64), {}) == []


# --- Pictures ------------------------------------------------------------------------------------


class FakeWorker(object):
    """Shows a picture of one colour for each way."""

    def __init__(self, **colours):
        self.colours = colours

    def ask(self, **request):
        if "prepare" in request:
            return {"ways": sorted(self.colours)}
        rgba = base64.b64encode(bytearray(self.colours[request["show"]]) * 6).decode("ascii")
        return {"size": [3, 2], "rgba": rgba}


@pytest.mark.parametrize("apart, ends", [(0, True), (0.74, True), (0.75, False), (None, False)])
def test_ways_that_draw_other_pictures_end_the_run(apart, ends):
    worker = FakeWorker(larkspur=(1, 2, 3, 4), SDL=(1, 2, 3, 7))
    job = jobs.Job("draw()", [(3, 2)], {"SDL": []}, apart=apart)
    measured = workers.Workers(worker)
    found = measured.prepared_ways(job, (3, 2))
    assert sorted(found) == ["SDL", "larkspur"]
    if ends:
        with pytest.raises(SystemExit) as ended:
            measured.check_pictures(job, (3, 2), found)
        assert "draw() at 3 x 2" in str(ended.value) and "SDL differ by 0.75" in str(ended.value)
    else:
        measured.check_pictures(job, (3, 2), found)


def test_older_revision_has_to_draw_the_same_to_the_bit():
    own, older = FakeWorker(larkspur=(1, 2, 3, 4)), FakeWorker(larkspur=(1, 2, 3, 5))
    job = jobs.Job("draw()", [(3, 2)], {}, apart=9)
    measured = workers.Workers(own, older, "abc1234")
    with pytest.raises(SystemExit):
        measured.check_pictures(job, (3, 2), measured.prepared_ways(job, (3, 2)))


# --- Workers -------------------------------------------------------------------------------------


class RealWorker(object):
    """A worker and what it answers."""

    def __init__(self, kind):
        self.process = subprocess.Popen(
            [sys.executable, "-B", os.path.join(BENCH, "worker.py"), kind],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
        )
        self.hello = self.read()

    def read(self):
        return json.loads(self.process.stdout.readline().decode("ascii"))

    def ask(self, **request):
        self.process.stdin.write((json.dumps(request) + "\n").encode("ascii"))
        self.process.stdin.flush()
        return self.read()

    def end(self):
        self.process.stdin.close()
        return self.process.wait()


@pytest.fixture
def worker(request):
    started = RealWorker(request.param)
    yield started
    assert started.end() == 0


@pytest.mark.parametrize("worker", ["pygame"], indirect=True)
def test_worker_prepares_shows_and_times(worker):
    assert worker.hello["versions"]["pygame"] == pygame.version.ver
    asked = {"prepare": "flagged_blit(), colour key", "size": [16, 16]}
    assert worker.ask(who=["SDL"], **asked) == {"ways": []}
    assert worker.ask(who=["SDL", "pygame"], **asked) == {"ways": ["pygame: blit()"]}
    picture = worker.ask(show="pygame: blit()")
    assert picture["size"] == [16, 16] and len(base64.b64decode(picture["rgba"])) == 16 * 16 * 4
    assert 0 < worker.ask(time="pygame: blit()", calls=2000)["seconds"] < 1


@pytest.mark.parametrize("worker", ["pygame"], indirect=True)
def test_worker_tells_an_error_and_goes_on(worker):
    assert "KeyError" in worker.ask(time="nothing", calls=1)["error"]
    assert worker.ask(prepare="int(sprite)", size=[], who=["pygame"]) == {"ways": []}


@pytest.mark.parametrize("worker", ["larkspur"], indirect=True)
def test_all_that_is_compared_has_a_way(worker):
    for job in jobs.JOBS:
        measured_elsewhere = jobs.KERNEL_ROWS + (jobs.BASE, jobs.PEER)
        wanted = set(job.against) - set(measured_elsewhere) | {"larkspur"}
        answer = worker.ask(prepare=job.name, size=job.sizes[0], who=sorted(wanted))
        assert {name.partition(": ")[0] for name in answer["ways"]} == wanted, job.name


def test_pygame_ce_has_a_way_wherever_it_is_compared():
    assert {job.name for job in jobs.JOBS if jobs.PEER in job.against} <= set(pygame_ways.WAYS)


def test_run_tells_of_every_comparison(tmpdir):
    results, build = tmpdir.join("results"), os.environ["LARKSPUR_BUILD_DIR"]
    arguments = ["--quick", "--older", build, "--revision", "abc1234", "--results", str(results)]
    command = [sys.executable, "-B", os.path.join(BENCH, "main.py")] + arguments
    status, output = run(command + ["v[3]"], tmpdir, LARKSPUR_BUILD_DIR=build)
    assert status == 0, output
    lines = output.splitlines()
    at = lines.index("GMVar, v[3]")
    assert [line.split()[2] for line in lines[at + 1 : at + 3]] == ["abc1234", "plain"]
    assert "reached" in lines[at + 2] or "SHORT" in lines[at + 2]
    assert lines[at + 4][1:] == " of 1 targets reached"
    assert len(json.loads(results.read())["rows"]) == 2


# --- Plots ---------------------------------------------------------------------------------------


def test_plots_are_of_all_jobs(tree):
    status, output = run(["script/bench", "--plots", "GMVar"], tree)
    assert status == 1
    assert output.startswith("bench: --plots draws all jobs, not only those with GMVar;")


def test_results_tell_with_what_and_how_often_they_were_measured():
    worker = FakeWorker()
    worker.versions = {"pygame": "1.9.6", "larkspur": "/somewhere/larkspur.so"}
    results = table.as_results([row("SDL", 3.5)], workers.Workers(worker), 11)
    assert results["told"].endswith("; pygame 1.9.6; medians and quartiles of 11 samples")
    (only,) = json.loads(json.dumps(results))["rows"]
    assert (only["who"], only["median"], only["target"]) == ("SDL", 3.5, 4)
    assert (only["verdict"], only["size"]) == ("SHORT", [64, 64])


def test_page_on_speed_shows_all_its_pictures():
    docs = os.path.join(TREE, "docs")
    with open(os.path.join(docs, "speed.md")) as page:
        shown = re.findall(r"\((speed-[a-z-]+)\.png\)", page.read())
    drawn = [name for name in os.listdir(docs) if name.startswith("speed-")]
    assert sorted(name + kind for name in shown for kind in (".png", ".svg")) == sorted(drawn)
