"""Python code in an interpreter of its own."""
import os
import subprocess
import sys
import textwrap

TESTS = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def run(code, **environment):
    """Runs code that can import larkspur and the tests' support package, and has to succeed.

    Returns what it wrote on standard output and on standard error.
    """
    status, out, error = attempt(code, **environment)
    assert status == 0, "exit status %d\n%s%s" % (status, out, error)
    return out, error


def attempt(code, **environment):
    """As run(), whatever becomes of it: also returns the exit status, negative for a signal."""
    variables = dict(os.environ, SDL_VIDEODRIVER="dummy", PYGAME_HIDE_SUPPORT_PROMPT="1")
    variables["PYTHONPATH"] = os.pathsep.join([path for path in sys.path if path] + [TESTS])
    variables.update(environment)
    process = subprocess.Popen([sys.executable, "-c", textwrap.dedent(code)], env=variables,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    out, error = process.communicate()
    return process.returncode, out, error
