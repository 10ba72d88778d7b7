"""A pytest plugin that runs each test again and again and looks whether the process grows.

Counted are the objects that the collector knows and the bytes that malloc() has handed out, which
with tests/native/helpers/plain_malloc.c preloaded are those of all objects too. A test is reported
when either grows with every round: what is kept once (a cache, an interned name) does not. At the
end stands what the resident size grew by in all rounds that were measured.
"""

from __future__ import print_function

import gc

import pytest
from _pytest import runner
from support import heap

WARM_ROUNDS = 2
ROUNDS = 4
CLOSE_ROUNDS = 6  # of a test after whose rounds there was more than before, counted one by one


def held():
    """(objects that the collector knows, bytes that malloc() has handed out)"""
    gc.collect()
    return len(gc.get_objects()), heap.allocated_bytes()


def run(item, nextitem):
    item._initrequest()  # the fixtures of the run before are gone
    return runner.runtestprotocol(item, nextitem=nextitem, log=False)


def is_leak(grown):
    """Whether objects or bytes grew each time."""
    return any(min(changes) > 0 for changes in grown)


class LeakHunt(object):
    def __init__(self):
        self.hunted = 0
        self.grown = []  # (test, objects of each round, bytes of each round)
        self.failed = set()
        self.resident_kib = 0

    @pytest.hookimpl(tryfirst=True)
    def pytest_runtest_protocol(self, item, nextitem):
        item.ihook.pytest_runtest_logstart(nodeid=item.nodeid, location=item.location)
        reports = run(item, nextitem)
        for report in reports:
            item.ihook.pytest_runtest_logreport(report=report)
        item.ihook.pytest_runtest_logfinish(nodeid=item.nodeid, location=item.location)
        if all(report.passed for report in reports):
            self.hunt(item, nextitem)
        return True

    def hunt(self, item, nextitem):
        self.hunted += 1
        resident = heap.resident_kib()
        grown = self.growth(item, nextitem, WARM_ROUNDS, [ROUNDS])
        if is_leak(grown):
            grown = self.growth(item, nextitem, 0, [1] * CLOSE_ROUNDS)
            if is_leak(grown):
                self.grown.append((item.nodeid, grown))
        self.resident_kib += heap.resident_kib() - resident

    def growth(self, item, nextitem, warm_rounds, measured):
        """How many objects and how many bytes each of the measured numbers of rounds adds."""
        self.repeat(item, nextitem, warm_rounds)
        counts = [held()]
        for rounds in measured:
            self.repeat(item, nextitem, rounds)
            counts.append(held())
        return [[after - before for before, after in zip(kind, kind[1:])] for kind in zip(*counts)]

    def repeat(self, item, nextitem, rounds):
        for _ in range(rounds):
            if any(report.failed for report in run(item, nextitem)):
                self.failed.add(item.nodeid)

    def pytest_sessionfinish(self, session):
        if (self.grown or self.failed) and session.exitstatus == 0:
            session.exitstatus = 1

    def pytest_terminal_summary(self, terminalreporter):
        line = terminalreporter.line
        for test, (objects, bytes_) in self.grown:
            line("{} grows: objects {}, bytes {}".format(test, objects, bytes_))
        for test in sorted(self.failed):
            line("{} fails when it is repeated".format(test))
        line(
            "leak hunt: {} tests; {} grow, {} fail when repeated; resident size {:+d} KiB".format(
                self.hunted, len(self.grown), len(self.failed), self.resident_kib
            )
        )


def pytest_configure(config):
    config.pluginmanager.register(LeakHunt())
