"""Running Python code in a process of its own, where things can be preloaded or end the process."""
import os
import subprocess
import sys

TESTS = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def run(code, preload=(), cwd=None):
    """Runs code with larkspur and the test helpers importable; (status, stdout, stderr).

    preload: libraries put before all others; what is preloaded already (a sanitizer) stays first.
    """
    environment = dict(os.environ)
    environment["PYTHONPATH"] = os.pathsep.join(
        [TESTS] + [path for path in [os.environ.get("PYTHONPATH")] if path])
    environment["LD_PRELOAD"] = " ".join(
        [path for path in [os.environ.get("LD_PRELOAD")] if path] + list(preload))
    process = subprocess.Popen([sys.executable, "-c", code], env=environment, cwd=cwd,
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    out, err = process.communicate()
    return process.returncode, out, err
