"""Measures the jobs of jobs.py and prints one table; see script/bench, which calls it.

All ways to do a job are timed in turns, in random order in each round, so that other work on the
machine, which slows all of them, counts little. The processes that do them (workers.py) are started
anew for each of several sittings: where the system places a process in memory can make the same
code a fifth faster or slower for as long as it lives.
"""

from __future__ import division, print_function

import argparse
import json
import os
import subprocess
import sys

import table
from jobs import JOBS, KERNEL_ROWS, PEER
from measuring import quartiles, ratios
from workers import WorkerProcess, Workers


class Effort(object):
    """
    sittings  how often all processes are started
    rounds    in each sitting: a sample of each way
    """

    def __init__(self, sittings, rounds, seconds_per_sample):
        self.sittings, self.rounds = sittings, rounds
        self.samples, self.seconds_per_sample = sittings * rounds, seconds_per_sample


FULL, QUICK = Effort(7, 3, 0.006), Effort(2, 3, 0.0015)


def kernel_times(jobs_and_sizes, effort):
    """(job, size) -> name -> samples of what bench_pixel measures: kernels, their plain formulas
    and the memory."""
    wanted = [(job, size, "%dx%d" % size) for job, size in jobs_and_sizes if job.kernel]
    if not wanted:
        return {}
    output = subprocess.check_output(
        [
            os.path.join(os.environ["LARKSPUR_BUILD_DIR"], "bench", "pixel", "bench_pixel"),
            "--benchmark_format=json",
            "--benchmark_filter=^(%s)$"
            % "|".join("%s/.*/%s" % (job.kernel, at) for job, _, at in wanted),
            "--benchmark_min_time=%g" % effort.seconds_per_sample,
            "--benchmark_repetitions=%d" % effort.rounds,
            "--benchmark_enable_random_interleaving=true",
        ],
        stderr=open(os.devnull, "w"),
    )
    found = {}
    for run in json.loads(output.decode("ascii"))["benchmarks"]:
        if run["run_type"] == "iteration":
            samples = found.setdefault(run["run_name"], {})
            samples[run["repetition_index"]] = run["cpu_time"] * 1e-9
    return {
        (job, size): {
            name: [
                seconds for _, seconds in sorted(found["%s/%s/%s" % (job.kernel, kind, at)].items())
            ]
            for name, kind in [("larkspur", "ours")] + [(kind, kind) for kind in KERNEL_ROWS]
        }
        for job, size, at in wanted
    }


def add_samples(to, times):
    for name, samples in times.items():
        to.setdefault(name, []).extend(samples)


def rows_of(job, size, times):
    """Rows of the table from the samples of all ways; of a rival's ways the fastest one counts."""
    best = {}
    for name in sorted(times):
        who = name.partition(": ")[0]
        if who not in best or quartiles(times[name])[1] < quartiles(times[best[who]])[1]:
            best[who] = name
    own = times.get("larkspur")
    return [
        table.Row(
            job, size, who, ratios(times[name], own), name.partition(": ")[2], quartiles(own)[1]
        )
        for who, name in sorted(best.items())
        if who != "larkspur" and who not in set(KERNEL_ROWS).difference(job.against)
    ]


def chosen_jobs(words):
    """The jobs whose names hold one of the words; all without words."""
    for word in words:
        if not any(word.lower() in job.name.lower() for job in JOBS):
            names = "\n    ".join(job.name for job in JOBS)
            sys.exit("bench: no job's name holds %r; there are:\n    %s" % (word, names))
    return [
        job for job in JOBS if not words or any(word.lower() in job.name.lower() for word in words)
    ]


def show_progress(text):
    """In one line, for those who look on."""
    if sys.stderr.isatty():
        sys.stderr.write("\r%-78s\r%s" % ("", text))


def start_workers(options):
    python = sys.executable
    return Workers(
        WorkerProcess(python, "larkspur", os.environ["LARKSPUR_BUILD_DIR"]),
        options.older and WorkerProcess(python, "larkspur", options.older),
        options.revision,
        options.peer and WorkerProcess(options.peer, PEER),
    )


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("words", nargs="*")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--older", help="where an older module was built")
    parser.add_argument("--revision", help="its name")
    parser.add_argument("--peer", help="a Python with pygame-ce")
    parser.add_argument("--results", help="file for the results, to make plots of")
    options = parser.parse_args()

    chosen = chosen_jobs(options.words)
    effort = QUICK if options.quick else FULL
    jobs_and_sizes = [
        (job, size)
        for job in chosen
        for size in (job.quick_sizes() if options.quick else job.sizes)
    ]
    # Kernels by themselves are measured in another process than the functions that use them.
    kernels = {each: {} for each in jobs_and_sizes}
    functions = {each: {} for each in jobs_and_sizes}
    for sitting in range(effort.sittings):
        progress = "sitting %d of %d: " % (sitting + 1, effort.sittings)
        show_progress(progress + "kernels")
        for each, times in kernel_times(jobs_and_sizes, effort).items():
            add_samples(kernels[each], times)
        workers = start_workers(options)
        for job, size in jobs_and_sizes:
            show_progress(progress + "%s, %s" % (job.name, table.size_text(size)))
            add_samples(functions[job, size], workers.times(job, size, effort))
        workers.end()
    show_progress("")
    rows = [
        row
        for job, size in jobs_and_sizes
        for times in (kernels, functions)
        for row in rows_of(job, size, times[job, size])
    ]
    table.print_table(rows, chosen, workers)
    if options.results:
        with open(options.results, "w") as results:
            told = table.as_results(rows, workers, effort.samples)
            json.dump(told, results, indent=1, sort_keys=True)


if __name__ == "__main__":
    main()
