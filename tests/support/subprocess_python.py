"""Running Python code in a process of its own, where things can be preloaded or end the process."""

import os
import subprocess
import sys
import textwrap

TESTS = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def run(code, preload=(), cwd=None, **variables):
    """Runs code with larkspur and the test helpers importable; (status, stdout, stderr).

    preload: libraries put before all others; what is preloaded already (a sanitizer) stays first.
    variables: of the environment, beside those of this process.
    """
    environment = dict(os.environ, **variables)
    environment["PYTHONPATH"] = os.pathsep.join(
        [TESTS] + [path for path in [os.environ.get("PYTHONPATH")] if path]
    )
    environment["LD_PRELOAD"] = " ".join(
        [path for path in [os.environ.get("LD_PRELOAD")] if path] + list(preload)
    )
    process = subprocess.Popen(
        [sys.executable, "-c", code],
        env=environment,
        cwd=cwd,
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
    )
    out, err = process.communicate()
    return process.returncode, out, err


def output(code):
    """Runs code, which may be indented and has to succeed, without pygame's greeting; (stdout,
    stderr)."""
    status, out, err = run(textwrap.dedent(code), PYGAME_HIDE_SUPPORT_PROMPT="1")
    assert status == 0, "exit status %d\n%s%s" % (status, out, err)
    return out, err
