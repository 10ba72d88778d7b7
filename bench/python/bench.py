"""Measures the jobs of jobs.py and prints one table; see script/bench, which calls it.

A worker process (worker.py) does larkspur's jobs and what is measured beside it; with --compare
another one does them with an older module, and with --peers one has pygame-ce. All ways to do a job
are timed in turns, in random order in each round, so that other work on the machine, which slows
all of them, counts little.
"""

from __future__ import division, print_function

import argparse
import base64
import json
import os
import subprocess
import sys

import table
from jobs import JOBS, KERNEL_ROWS, PEER
from measuring import quartiles, ratios, times_in_turns

HERE = os.path.dirname(os.path.abspath(__file__))
ROUNDS, SECONDS_PER_SAMPLE = 11, 0.015
QUICK_ROUNDS, QUICK_SECONDS = 5, 0.002


class WorkerProcess(object):
    def __init__(self, python, kind, module_directory=None):
        environment = dict(os.environ)
        if module_directory:
            environment["PYTHONPATH"] = module_directory
        self.process = subprocess.Popen(
            [python, os.path.join(HERE, "worker.py"), kind],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            universal_newlines=True,
            env=environment,
        )
        self.versions = self.read()["versions"]

    def read(self):
        line = self.process.stdout.readline()
        if not line:
            sys.exit("bench: a worker has ended; what it said is above")
        answer = json.loads(line)
        if "error" in answer:
            sys.exit("bench: a worker has failed:\n%s" % answer["error"])
        return answer

    def ask(self, **request):
        self.process.stdin.write(json.dumps(request) + "\n")
        self.process.stdin.flush()
        return self.read()

    def way(self, name):
        return lambda calls: self.ask(time=name, calls=calls)["seconds"]

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def pixels_apart(one, other):
    """Mean difference of a channel of two pictures; of what they both have where one is a few
    pixels larger. None where they can't be compared."""
    import numpy

    if any(abs(a - b) > 3 for a, b in zip(one["size"], other["size"])):
        return None
    width, height = (min(pair) for pair in zip(one["size"], other["size"]))

    def channels(picture):
        columns, rows = picture["size"]
        flat = numpy.frombuffer(base64.b64decode(picture["rgba"]), numpy.uint8)
        return flat.reshape(rows, columns, 4)[:height, :width].astype(int)

    return abs(channels(one) - channels(other)).mean()


class Bench(object):
    """
    own, older, peer  the workers; the last two are None where nobody asked for them
    revision          name of the older one
    """

    def __init__(self, own, older=None, revision=None, peer=None):
        self.own, self.older, self.revision, self.peer = own, older, revision, peer

    def prepared_ways(self, job, size):
        """Name -> (worker, its name there) of all ways to do a job that are to be timed."""
        requests = [(self.own, ["larkspur"] + sorted(job.against), "")]
        if self.older:
            requests.append((self.older, ["larkspur"], self.revision))
        if self.peer and PEER in job.against:
            requests.append((self.peer, [PEER], ""))
        found = {}
        for worker, who, shown_as in requests:
            for name in worker.ask(prepare=job.name, size=size, who=who)["ways"]:
                found[shown_as or name] = worker, name
        return found

    def check_pictures(self, job, size, found):
        """Ends the run when ways that should make the same picture do not."""
        pictures = {name: worker.ask(show=way) for name, (worker, way) in found.items()}
        own = pictures["larkspur"]
        for name, picture in sorted(pictures.items()):
            most = 0 if name == self.revision else job.apart
            if not picture or not own or most is None:
                continue
            apart = pixels_apart(own, picture)
            if apart is None or apart > most:
                sys.exit(
                    "bench: %s at %s: the pictures of larkspur and %s differ by %s, and may by %s"
                    % (job.name, table.size_text(size), name, apart, most)
                )

    def rows(self, job, size, rounds, seconds_per_sample):
        """Rows of the table for one job in one size; none where nobody is there to compare with."""
        found = self.prepared_ways(job, size)
        if len(found) < 2:
            return []
        if size == job.sizes[0]:
            self.check_pictures(job, size, found)
        times = times_in_turns(
            {name: worker.way(way) for name, (worker, way) in found.items()},
            rounds,
            seconds_per_sample,
        )
        own = times.pop("larkspur")
        best = {}
        for name in times:
            who = name.partition(": ")[0]
            if who not in best or quartiles(times[name])[1] < quartiles(times[best[who]])[1]:
                best[who] = name
        return [
            table.Row(
                job,
                size,
                who,
                ratios(times[name], own),
                name.partition(": ")[2],
                quartiles(own)[1],
            )
            for who, name in sorted(best.items())
        ]


def kernel_rows(chosen, sizes_of, rounds, seconds_per_sample):
    """Rows of what bench_pixel measures: kernels against their plain formulas and the memory."""
    chosen = [job for job in chosen if job.kernel]
    sizes = sorted({"%dx%d" % size for job in chosen for size in sizes_of(job)})
    if not chosen:
        return []
    output = subprocess.check_output(
        [
            os.path.join(os.environ["LARKSPUR_BUILD_DIR"], "bench", "pixel", "bench_pixel"),
            "--benchmark_format=json",
            "--benchmark_filter=^(%s)/.*/(%s)$"
            % ("|".join(job.kernel for job in chosen), "|".join(sizes)),
            "--benchmark_min_time=%g" % seconds_per_sample,
            "--benchmark_repetitions=%d" % rounds,
            "--benchmark_enable_random_interleaving=true",
        ],
        stderr=open(os.devnull, "w"),
    )
    times = {}
    for run in json.loads(output.decode("ascii"))["benchmarks"]:
        if run["run_type"] == "iteration":
            key = tuple(run["run_name"].split("/"))
            times.setdefault(key, {})[run["repetition_index"]] = run["cpu_time"]
    rows = []
    for job in chosen:
        for size in sizes_of(job):
            ours, scalar, roof = (
                [seconds for _, seconds in sorted(times[job.kernel, kind, "%dx%d" % size].items())]
                for kind in ("ours",) + KERNEL_ROWS
            )
            for who, theirs in zip(KERNEL_ROWS, (scalar, roof)):
                if who in job.against:
                    median = quartiles(ours)[1] * 1e-9
                    rows.append(table.Row(job, size, who, ratios(theirs, ours), "", median))
    return rows


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


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("words", nargs="*")
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--revision", help="name of the older module, and where it was built")
    parser.add_argument("--older")
    parser.add_argument("--peer", help="a Python with pygame-ce")
    parser.add_argument("--results", help="file for the results, to make plots of")
    options = parser.parse_args()

    chosen = chosen_jobs(options.words)
    rounds, seconds = (
        (QUICK_ROUNDS, QUICK_SECONDS)
        if options.quick
        else (
            ROUNDS,
            SECONDS_PER_SAMPLE,
        )
    )

    def sizes_of(job):
        return job.quick_sizes() if options.quick else job.sizes

    own = WorkerProcess(sys.executable, "larkspur", os.environ["LARKSPUR_BUILD_DIR"])
    older = options.older and WorkerProcess(sys.executable, "larkspur", options.older)
    peer = options.peer and WorkerProcess(options.peer, PEER)
    bench = Bench(own, older, options.revision, peer)
    kernels = kernel_rows(chosen, sizes_of, rounds, seconds)
    rows = []
    for job in chosen:
        rows += [row for row in kernels if row.job is job]
        for size in sizes_of(job):
            show_progress("measuring %s, %s" % (job.name, table.size_text(size)))
            rows += bench.rows(job, size, rounds, seconds)
    show_progress("")
    table.print_table(rows, chosen, bench)
    if options.results:
        with open(options.results, "w") as results:
            json.dump(table.as_results(rows, bench, rounds), results, indent=1, sort_keys=True)
    for worker in (own, older, peer):
        if worker:
            worker.end()


if __name__ == "__main__":
    main()
