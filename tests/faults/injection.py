"""Fails one allocation after another of a scene, each in a process of its own; run by test_faults.

The process that runs this has the library failing.so preloaded. It makes nothing of the scene
itself: for each point it forks, so what is made once in a process is made anew for each.
"""

import collections
import ctypes
import gc
import json
import os
import traceback

from support import build

# All that fails, as failing.c numbers it.
EVERY_KIND = 7

# How many times a scene is played to see whether something piles up; the first rounds fill caches.
ROUNDS = 6
SETTLED = 3

# result, exception: None where there is none; succeeded: there is a result; calls: that counted;
# place: where the last failed
Outcome = collections.namedtuple("Outcome", "result exception succeeded calls place")

_library = ctypes.PyDLL(build.path("tests", "native", "helpers", "failing.so"))
_library.failing_call.restype = ctypes.py_object
_library.failing_call.argtypes = (ctypes.py_object, ctypes.c_int, ctypes.c_long, ctypes.c_long)
_library.failing_live_blocks.restype = ctypes.c_long
_library.failing_live_surfaces.restype = ctypes.c_long


def call(function, n=None, failures=0):
    """Calls a function: from its n-th call that can fail on, so many do; without n none counts."""
    return Outcome(
        *_library.failing_call(function, 0 if n is None else EVERY_KIND, n or 0, failures)
    )


class Finding(Exception):
    """A failure that did harm."""


def in_fork(function, *arguments):
    """What a function returns in a process of its own; a Finding's text, or that it crashed, as a
    Finding."""
    reading, writing = os.pipe()
    child = os.fork()
    if child == 0:
        os.close(reading)
        try:
            answer = repr((True, function(*arguments)))
        except Finding as finding:
            answer = repr((False, str(finding)))
        except BaseException:
            answer = repr((False, traceback.format_exc()))
        try:
            os.write(writing, answer)
        finally:
            os._exit(0)
    os.close(writing)
    with os.fdopen(reading, "rb") as pipe:
        answer = pipe.read()
    status = os.waitpid(child, 0)[1]
    if status != 0 or not answer:
        raise Finding("ended with status %#x" % status)
    good, value = eval(answer)
    if not good:
        raise Finding(value)
    return value


def whole(scene, warm):
    """(number of calls that could fail, what there is to see afterwards, what piles up by intent or
    None where that is not watched), without a failure."""
    act, look = scene()
    outcome = call(act, 1, 0)
    if not outcome.succeeded or outcome.exception is not None:
        raise Finding("fails by itself: %s" % outcome.exception)
    call(act)
    usual = None
    if warm:
        kept = getattr(scene, "kept", (0, 0, 0))
        usual = [max(steps) + more for steps, more in zip(growth(scene, 0, 0), kept)]
    return outcome.calls, look(), usual


def act_once(scene, n, failures):
    act, _ = scene()
    call(act, n, failures)


def growth(scene, n, failures):
    """How many blocks, surfaces and objects each of the last rounds of a scene leaves behind."""
    counts = []
    for _ in range(ROUNDS):
        act_once(scene, n, failures)
        counts.append(alive())
    rounds = zip(counts[SETTLED - 1 :], counts[SETTLED:])
    return zip(*[[now - then for then, now in zip(*pair)] for pair in rounds])


def alive():
    gc.collect(1)  # run() has put what was there before out of its reach, which saves most of it
    return (
        _library.failing_live_blocks(),
        _library.failing_live_surfaces(),
        len(gc.get_objects()),
    )


def judge(outcome, scene):
    if outcome.exception is None:
        if not outcome.succeeded:
            raise Finding("failed without an exception")
    elif outcome.succeeded and not getattr(scene, "may_leave", False):
        raise Finding("succeeded, and left %s" % outcome.exception.__name__)
    elif not issubclass(outcome.exception, getattr(scene, "allowed", (MemoryError,))):
        raise Finding("raised %s" % outcome.exception.__name__)


def play(scene, n, failures, expected, usual):
    """Plays a scene once: (whether it came to the point where calls fail, the exception's name)."""
    act, look = scene()
    outcome = call(act, n, failures)
    try:
        judge(outcome, scene)
        again = call(act)
        if not again.succeeded or again.exception is not None:
            raise Finding("failed again afterwards: %s" % again.exception)
        differs = look() != expected
        if differs and not (outcome.exception is None and getattr(scene, "may_lack", False)):
            raise Finding("what shows afterwards differs")
    except Finding as finding:
        raise Finding("%s (failed in %s)" % (finding, outcome.place))
    del act, look, again
    left = growth(scene, n, failures) if usual is not None else []
    for what, steps, intended in zip(("blocks", "surfaces", "objects"), left, usual or []):
        if all(step > intended for step in steps):
            raise Finding(
                "leaves %s behind: %s, %d of them by intent" % (what, list(steps), intended)
            )
    return outcome.calls >= n, outcome.exception.__name__ if outcome.exception else None


def run(scene, points, warm):
    """Plays a scene with one call failing, and with all from one on, and prints what came of it.

    scene: returns what is to be done and what tells how it came out; its attribute `allowed` names
        the exceptions that a failure may raise, `may_lack` says that what absorbs one may come out
        with less, `may_leave` that it may leave an exception pending, and `kept` how many
        blocks, surfaces and objects a failure may keep for good.
    points: how many of the calls that can fail, spread evenly over them; 0 for all.
    warm: what is made once in a process, such as the trials of own loops against libraries, is
        made before, so that it has no points. What piles up is watched only then.
    """
    if warm:
        whole(scene, warm)
    gc.collect()
    calls, expected, usual = in_fork(whole, scene, warm)
    for failures in (1, calls):
        outcomes = collections.Counter()
        findings = []
        # An odd step, as many things take two calls; the first and the last points are among them.
        step = max(1, calls // points | 1) if points else 1
        for n in sorted(set(range(1, calls + 1, step)) | set([calls])):
            try:
                failed, exception = in_fork(play, scene, n, failures, expected, usual)
                outcomes[exception or ("absorbed" if failed else "not reached")] += 1
            except Finding as finding:
                findings.append("%s, point %d of %d: %s" % (scene.__name__, n, calls, finding))
        played = sum(outcomes.values()) + len(findings)
        counts = ["%d %s" % (count, kind) for kind, count in sorted(outcomes.items())]
        counts.append("%d findings" % len(findings))
        answer = {
            "findings": findings,
            "failed": played - outcomes["not reached"],
            "counts": "%s, %s from %d of %d points on: %s"
            % (scene.__name__, "one" if failures == 1 else "all", played, calls, ", ".join(counts)),
        }
        print(json.dumps(answer))
