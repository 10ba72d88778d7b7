"""A pytest plugin: the first failures in full, others by name, as one mistake may fail hundreds."""

import collections

import pytest

# Of the files with failing tests, how many have their first one shown in full.
SHOWN_FAILURES = 3


@pytest.hookimpl(hookwrapper=True, tryfirst=True)
def pytest_terminal_summary(terminalreporter):
    stats = terminalreporter.stats
    kinds = {kind: stats[kind] for kind in ("failed", "error") if kind in stats}
    cases = collections.OrderedDict()
    first_of_files = collections.OrderedDict()
    for report in stats.get("error", []) + stats.get("failed", []):
        cases.setdefault(report.nodeid.split("[")[0], []).append(report)
        first_of_files.setdefault(report.nodeid.split("::")[0], report)
    shown = list(first_of_files.values())[:SHOWN_FAILURES]
    for kind, reports in kinds.items():
        stats[kind] = [report for report in reports if report in shown]
    yield
    # The counts in the last line are of all.
    stats.update(kinds)
    if sum(map(len, cases.values())) > len(shown):
        terminalreporter.section("all that failed")
        for name, reports in cases.items():
            count = "" if len(reports) == 1 else ": %d cases" % len(reports)
            terminalreporter.write_line(name + count)
