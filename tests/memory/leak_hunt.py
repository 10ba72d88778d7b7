"""A pytest plugin that runs each test again and again and looks whether the process grows.

Counted are the objects that the collector knows and the bytes that malloc() has handed out, which
with tests/native/helpers/plain_malloc.c preloaded are those of all objects too. A test is reported
when either grows with every round: what is kept once (a cache, an interned name) does not. What
tests lend, and what they say is left behind, is taken back after each round, see support/leaks.py.
Tests that register callables or properties of their own may grow, as larkspur gives back none of
its references to them, and tests that start processes run once; both are counted. At the end
stands what the resident size grew by in all rounds that were measured.
"""

from __future__ import print_function

import array
import gc
import resource

import pygame
import pytest
from _pytest import runner
from support import heap, leaks
from support.host import RecordingHost

WARM_ROUNDS = 2
ROUNDS = 4
CLOSE_ROUNDS = 10  # of a test after whose rounds there was more than before, counted one by one
FREE_LIST_LENGTH = 80  # PyDict_MAXFREELIST and its like of lists and sets
STARTED_BYTES = 128  # pygame keeps 64 or 80 for each start of the display


def fill_free_lists():
    """Has the interpreter hold as many freed objects as it ever does, where no collection empties
    what it holds: a call such as dict() makes a new one all the same, and it would grow."""
    filling = [kind() for kind in (dict, list, set) for _ in range(FREE_LIST_LENGTH)]
    del filling


def run(item, nextitem):
    """One round. What pytest itself would keep of it goes: a fixture that lives longer and what has
    it, such as a class of tests, note what is to be done first at their end for each user that it
    has had, an item what each run printed."""
    fixtures = item.session._fixturemanager._arg2fixturedefs
    ends = [fixture._finalizers for named in fixtures.values() for fixture in named]
    ends += item.session._setupstate._finalizers.values()
    counts = [len(noted) for noted in ends]
    item._initrequest()  # the fixtures of the run before are gone
    reports = runner.runtestprotocol(item, nextitem=nextitem, log=False)
    for noted, count in zip(ends, counts):
        del noted[count:]
    del item._report_sections[:]
    leaks.free_left_behind()
    return reports


def children():
    """Changes when a process of this one has ended."""
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_minflt, used.ru_utime, used.ru_stime


def is_leak(grown):
    """Whether objects or bytes grew each time."""
    return any(min(changes) > 0 for changes in grown)


class LeakHunt(object):
    def __init__(self):
        self.running = None  # the test that is run
        self.hunted = 0
        self.elsewhere = 0  # tests that started processes, whose memory went with them
        self.keeping = 0  # tests of which larkspur keeps what they registered
        self.grown = []  # (test, objects of each round, bytes of each round)
        self.failed = set()
        self.own_objects = set()  # tests that registered some
        self.starts = 0  # of the display
        self.resident_kib = 0

    @pytest.hookimpl(tryfirst=True)
    def pytest_runtest_protocol(self, item, nextitem):
        item.ihook.pytest_runtest_logstart(nodeid=item.nodeid, location=item.location)
        processes = children()
        self.running = item.nodeid
        reports = run(item, nextitem)
        for report in reports:
            item.ihook.pytest_runtest_logreport(report=report)
        item.ihook.pytest_runtest_logfinish(nodeid=item.nodeid, location=item.location)
        if children() != processes:
            self.elsewhere += 1
        elif all(report.passed for report in reports):
            self.hunt(item, nextitem)
        return True

    def hunt(self, item, nextitem):
        self.hunted += 1
        resident = heap.resident_kib()
        grown = self.growth(item, nextitem, WARM_ROUNDS, [ROUNDS])
        if is_leak(grown):
            grown = self.growth(item, nextitem, 0, [1] * CLOSE_ROUNDS)
            if is_leak(grown):
                self.report(item, grown)
        self.resident_kib += heap.resident_kib() - resident

    def report(self, item, grown):
        if item.nodeid in self.own_objects:
            self.keeping += 1
        else:
            self.grown.append((item.nodeid, grown))

    def growth(self, item, nextitem, warm_rounds, measured):
        """How many objects and how many bytes each of the measured numbers of rounds adds."""
        self.repeat(item, nextitem, warm_rounds)
        # Places made beforehand: what is noted between two rounds would count as growth.
        counts = objects, bytes_ = [array.array("l", [0] * (1 + len(measured))) for _ in (1, 2)]
        for place, rounds in enumerate([0] + measured):
            self.repeat(item, nextitem, rounds)
            gc.collect()
            fill_free_lists()
            objects[place] = len(gc.get_objects())
            bytes_[place] = heap.allocated_bytes() - STARTED_BYTES * self.starts
        return [[after - before for before, after in zip(kind, kind[1:])] for kind in counts]

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
            "leak hunt: {} tests; {} grow, {} fail when repeated; resident size {:+d} KiB; "
            "{} more keep what they registered, {} more start processes".format(
                self.hunted,
                len(self.grown),
                len(self.failed),
                self.resident_kib,
                self.keeping,
                self.elsewhere,
            )
        )


def watch_display(hunt):
    """Counts the starts of the display, and takes away those of one that has been started, which
    do nothing but keep some bytes."""
    start = pygame.display.init

    def watched():
        if not pygame.display.get_init():
            hunt.starts += 1
            start()

    pygame.display.init = watched


def watch_registering(hunt):
    """Notes the tests that register a host with objects that are not made once."""
    register = RecordingHost.register

    def watched(host, larkspur):
        if host.has_own_objects():
            hunt.own_objects.add(hunt.running)
        register(host, larkspur)

    RecordingHost.register = watched


def pytest_configure(config):
    leaks.note_left_behind()
    hunt = LeakHunt()
    watch_display(hunt)
    watch_registering(hunt)
    config.pluginmanager.register(hunt)
