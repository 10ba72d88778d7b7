"""A pytest plugin that looks for lost native memory when a run under LeakSanitizer is over.

The check is made while the interpreter is whole. At its end, memory that live objects hold can't
be told from memory that was lost, as the interpreter gives up many objects without freeing them.
The stacks of what was lost go where ASAN_OPTIONS' log_path says.
"""

from __future__ import print_function

import ctypes
import gc

import pytest


def lost_memory():
    """True when native memory was allocated that nothing points to any more. Call it once."""
    gc.collect()
    process = ctypes.CDLL(None)
    process.register_arena_roots()
    return process.__lsan_do_recoverable_leak_check() != 0


@pytest.hookimpl(trylast=True)
def pytest_sessionfinish(session):
    config = session.config
    config.lost_memory = lost_memory() or getattr(config, "lost_memory", False)
    if hasattr(config, "workeroutput"):
        config.workeroutput["lost_memory"] = config.lost_memory
    if config.lost_memory and session.exitstatus == 0:
        session.exitstatus = 1


@pytest.hookimpl(optionalhook=True)
def pytest_testnodedown(node):
    """One of the processes that tests are spread over has ended."""
    if getattr(node, "workeroutput", {}).get("lost_memory"):
        node.config.lost_memory = True


def pytest_terminal_summary(terminalreporter, config):
    if getattr(config, "lost_memory", False):
        terminalreporter.section("native memory was lost", red=True)
        terminalreporter.line("The stacks of the allocations are in the sanitizer's report.")
