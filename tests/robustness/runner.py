"""Makes the calls of the table, in child processes that may die of them.

    python -m robustness.runner [WORD...]

runs the rows whose names have one of the words; all without. A child makes some hundred cases one
after the other. Where it dies, the case that it died of is made again by itself, and the others go
on in a new child. LARKSPUR_ROBUSTNESS chooses: "each" has a child for each case; a number n is one
case in n, always the same ones.
"""

from __future__ import print_function

import collections
import json
import os
import signal
import sys
import traceback
import zlib

sys.path.insert(0, os.path.dirname(os.path.dirname(os.path.abspath(__file__))))

import __builtin__
from support import host as host_support

host_support.install_modules()

import pygame  # noqa: E402
from support import pending  # noqa: E402

from robustness import (  # noqa: E402
    function_rows,
    native_rows,
    order_rows,
    scene,
    table,
    type_rows,
    values,
)

# Seconds that a case may take; one under a sanitizer on a busy machine is still far below.
TIME_LIMIT = 20

# Cases in a child.
BATCH = 500

# With keywords, and without a frame of Python code that could meet a pending exception.
_apply = __builtin__.apply

# What the interpreter says where a function failed and set no exception.
_NO_EXCEPTION = (
    "NULL result without error in PyObject_Call",
    "error return without exception set",
)


def all_rows():
    """Every row of the table."""
    return (
        list(function_rows.rows_of_functions())
        + list(type_rows.rows_of_types())
        + list(native_rows.rows_of_native_functions())
        + list(order_rows.rows_of_situations())
    )


# ---- one case


def fresh_scene(situation=()):
    """Makes a scene where there is none or it was disturbed; gives it."""
    if scene.current is None or scene.current.disturbed:
        if scene.current is not None:
            scene.current.forget()
        scene.Scene(**dict(situation))
    return scene.current


def run_case(row, case):
    """(None for what was to come, else what came instead; the outcome)."""
    if row.situation and scene.current is not None:
        scene.current.disturbed = True
    fresh_scene(row.situation)
    outcome, text = outcome_of(case)
    if row.then is not None:
        scene.quietly(row.then, *scene.current.arguments)
    scene.current.call, scene.current.arguments = None, []
    scene.current.disturbed |= row.disturbs
    expected = case.expected
    if outcome in (expected if isinstance(expected, tuple) else (expected,)):
        return None, outcome
    return "%s, not %s %s" % (outcome, expected, text), outcome


def outcome_of(case):
    """(outcome, text) of a case: one of the table's, or what may not be."""
    function, arguments, keywords = case.make()
    scene.current.call, scene.current.arguments = function, arguments
    if keywords is None:
        succeeded, _, exception = pending.call(function, *arguments)
    else:
        succeeded, _, exception = pending.call(_apply, function, tuple(arguments), keywords)
    if exception is None:
        return table.OK, ""
    if succeeded:
        return table.PENDING, describe(exception)
    if not isinstance(exception, SystemError):
        return table.RAISES, describe(exception)
    silent = str(exception) in _NO_EXCEPTION
    return (table.SILENT if silent else "SystemError"), describe(exception)


def describe(exception):
    try:
        return "%s: %s" % (type(exception).__name__, str(exception)[:120])
    except Exception:
        return type(exception).__name__


# ---- many cases


class Report(object):
    """What came of cases.

    counts    name of the row -> outcome -> number of cases
    failures  (name of the row, label of the case, what came of it)
    """

    def __init__(self):
        self.counts = collections.defaultdict(collections.Counter)
        self.failures = []

    def add(self, row, case, outcome, what):
        self.counts[row.name][outcome] += 1
        if what:
            self.failures.append((row.name, case.label, what))

    def total(self):
        return sum(self.counts.values(), collections.Counter())


# What a child ends with in which the table itself failed. Sanitizers end one with 1.
EXCEPTION = 99


def in_child(action):
    """Has a child do action(tell), which tells one line after the other; (what was told, how the
    child ended). What it prints is lost."""
    reading, writing = os.pipe()
    child = os.fork()
    if child == 0:
        status = EXCEPTION
        try:
            os.close(reading)
            nowhere = os.open(os.devnull, os.O_RDWR)
            for standard in (0, 1, 2):
                os.dup2(nowhere, standard)
            # pygame would catch the signals that say how a child died.
            for number in (signal.SIGALRM, signal.SIGSEGV, signal.SIGFPE, signal.SIGBUS):
                signal.signal(number, signal.SIG_DFL)
            action(lambda line: os.write(writing, json.dumps(line, encoding="latin-1") + "\n"))
            status = 0
        except BaseException:
            os.write(writing, json.dumps(traceback.format_exc()) + "\n")
        finally:
            os._exit(status)
    os.close(writing)
    with os.fdopen(reading, "rb") as pipe:
        told = [json.loads(line) for line in pipe.read().splitlines()]
    return told, os.waitpid(child, 0)[1]


def survey():
    """Learns what the interpreter's own parser takes."""
    (taken,), status = in_child(lambda tell: tell(values.survey(fresh_scene)))
    assert status == 0, taken
    values.parsed.update((name, letter) for name, letter in taken)


def run_in_child(cases):
    """Makes cases, (row, case) each, in a child; (what came of each that came to an end, as
    run_case() gives it; how the child ended)."""

    def make_all(tell):
        for row, case in cases:
            signal.setitimer(signal.ITIMER_REAL, TIME_LIMIT)
            tell(run_case(row, case))

    told, status = in_child(make_all)
    if os.WIFEXITED(status) and os.WEXITSTATUS(status) == EXCEPTION:
        print(told.pop(), file=sys.stderr)
    return told, status


def run_batch(cases, report):
    """Makes cases in one child as long as none ends it; the others in the next one."""
    while cases:
        told, status = run_in_child(cases)
        for (row, case), (what, outcome) in zip(cases, told):
            report.add(row, case, outcome, what)
        cases = cases[len(told) :]
        if status != 0 and cases:
            alone = run_in_child(cases[:1])[1]
            what = ended(alone) if alone else "%s, but not by itself" % ended(status)
            report.add(cases[0][0], cases[0][1], "crashed", what)
            cases = cases[1:]


def ended(status):
    if os.WIFSIGNALED(status):
        number = os.WTERMSIG(status)
        return "hung" if number == signal.SIGALRM else "crashed with signal %d" % number
    return "ended with status %d" % os.WEXITSTATUS(status)


def chosen(row, one_in):
    """One in so many cases of a row, always the same ones, and its good call."""
    for case in row.cases():
        if case.label == "good" or zlib.crc32(row.name + case.label) % one_in == 0:
            yield case


def batches(rows, mode):
    """The cases of rows, (row, case) each, in lists for one child each."""
    one_in = int(mode) if mode.isdigit() else 1
    batch = []
    for row in rows:
        for case in chosen(row, one_in):
            if row.alone or mode == "each":
                yield [(row, case)]
                continue
            batch.append((row, case))
            if len(batch) == BATCH:
                yield batch
                batch = []
    yield batch


def run(rows, mode=""):
    """The Report of rows."""
    pygame.display.init()
    pygame.display.set_mode((8, 8))  # what it loads for the first display, no child has to load
    pygame.display.quit()
    survey()
    report = Report()
    for batch in batches(rows, mode):
        run_batch(batch, report)
    return report


def main(words):
    rows = [row for row in all_rows() if not words or any(word in row.name for word in words)]
    report = run(rows, os.environ.get("LARKSPUR_ROBUSTNESS", ""))
    for row in rows:
        counts = sorted(report.counts[row.name].items())
        print("%-50s %s" % (row.name, ", ".join("%d %s" % (n, what) for what, n in counts)))
    for failure in report.failures:
        print("FAILED %s: %s: %s" % failure)
    total = report.total()
    print("%d cases: %s" % (sum(total.values()), dict(total)))
    return 1 if report.failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
