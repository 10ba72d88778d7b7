"""Runs the tree's scripts, or parts of them, on a copy in a folder of the test's own."""

import os
import shutil
import subprocess

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))


def copy_scripts(folder):
    """Copies script/ and .ci/ below `folder`, a py.path, so that a script takes it for the tree."""
    for name in ("script", ".ci"):
        shutil.copytree(os.path.join(TREE, name), str(folder.join(name)))


def copy_build(folder):
    """Copies what building reads before the first source below `folder`, a py.path."""
    for name in ("setup.py", "setup.cfg", "VERSION", "README.md", "LICENSE", "CMakeLists.txt"):
        shutil.copy(os.path.join(TREE, name), str(folder))
    for name in ("cmake", "python"):
        shutil.copytree(os.path.join(TREE, name), str(folder.join(name)))


def write_command(path, text):
    """Makes `path`, a py.path, a shell command."""
    path.write("#!/bin/bash\n" + text, ensure=True)
    path.chmod(0o755)


def path_without_python(folder):
    """A PATH with what scripts need before they set their own, and no Python of the system's."""
    tools = folder.ensure("tools", dir=True)
    for name in ("bash", "dirname"):
        if not tools.join(name).check():
            tools.join(name).mksymlinkto("/usr/bin/" + name)
    return str(tools)


def run(command, folder, **variables):
    """Runs a command in `folder` with a bare environment; gives its status and its output."""
    environment = {"PATH": "/usr/bin:/bin", "HOME": str(folder), "LARKSPUR_RETRY_PAUSE": "0"}
    environment.update(variables)
    environment = {name: value for name, value in environment.items() if value is not None}
    with open(os.devnull) as nothing:
        child = subprocess.Popen(
            command,
            cwd=str(folder),
            env=environment,
            stdin=nothing,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
        )
        output = child.communicate()[0].decode("utf-8")
    return child.returncode, output


def run_lib(code, folder, **variables):
    """Runs shell code after script/lib.sh."""
    return run(["/bin/bash", "-c", ". script/lib.sh\n" + code], folder, **variables)
