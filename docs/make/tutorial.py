#!/usr/bin/env python2.7
"""Make the pictures of docs/tutorial.md, one of each step, by running the steps' scripts.

With --check nothing is written: the exit status is 1 if a picture is not what its step shows now,
pixel by pixel, or is missing, and each such picture is named.
"""

from __future__ import print_function

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

import pygame

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
SCRIPTS = os.path.join(TREE, "examples", "tutorial")
PICTURES = os.path.join(TREE, "docs", "pictures")

# Each step's script, and how many frames it has run in its picture.
STEPS = (
    ("step1_window.py", 1),
    ("step2_background.py", 1),
    ("step3_walk.py", 45),
    ("step4_tiles_and_view.py", 150),
    ("step5_particles.py", 150),
    ("step6_score.py", 200),
)


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="compare, and write nothing")
    parser.add_argument("--pictures", default=PICTURES, metavar="FOLDER", help="where they are")
    options = parser.parse_args(arguments)
    folder = tempfile.mkdtemp()
    try:
        stale = [name for name in render(folder) if not same(folder, options.pictures, name)]
        for name in stale:
            if options.check:
                print("{} is not what {} shows".format(name, script_of(name)), file=sys.stderr)
            else:
                shutil.copyfile(os.path.join(folder, name), os.path.join(options.pictures, name))
                print("{} is new".format(name))
    finally:
        shutil.rmtree(folder)
    return 1 if options.check and stale else 0


def picture_name(number):
    return "tutorial-{}.png".format(number)


def script_of(name):
    numbers = range(1, len(STEPS) + 1)
    return dict(zip(map(picture_name, numbers), STEPS))[name][0]


def render(folder):
    """Run every step and save its picture in a folder; the pictures' names."""
    names = []
    for number, (script, frames) in enumerate(STEPS, 1):
        names.append(picture_name(number))
        command = [sys.executable, os.path.join(SCRIPTS, script), "--frames", str(frames)]
        environment = dict(os.environ, PYGAME_HIDE_SUPPORT_PROMPT="1")
        subprocess.check_call(
            command + ["--picture", os.path.join(folder, names[-1])], env=environment
        )
    return names


def same(folder, other_folder, name):
    """Whether two folders have the same picture under a name."""
    paths = [os.path.join(each, name) for each in (folder, other_folder)]
    return os.path.exists(paths[1]) and len(set(map(content, paths))) == 1


def content(path):
    picture = pygame.image.load(path)
    return picture.get_size(), pygame.image.tostring(picture, "RGB")


if __name__ == "__main__":
    sys.exit(main())
