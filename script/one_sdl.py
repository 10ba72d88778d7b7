"""Fails unless larkspur and pygame run in one process on one and the same SDL."""

from __future__ import print_function

import os
import sys


def mapped_libraries(prefix):
    with open("/proc/self/maps") as maps:
        paths = [line.split(None, 5)[5].strip() for line in maps if "/" in line]
    return sorted({path for path in paths if os.path.basename(path).startswith(prefix)})


def main():
    os.environ["SDL_VIDEODRIVER"] = "dummy"
    import larkspur
    import pygame

    pygame.display.init()
    pygame.display.set_mode((8, 8))
    # A wheel's own copy is renamed, such as libSDL-1-0a1b2c3d.2.so.0.
    found = mapped_libraries("libSDL-1")
    if len(found) != 1:
        sys.exit(
            "larkspur (%s) and pygame (%s) must share one SDL, but %d are loaded: %s.\n"
            "pygame must be built from source against the system's SDL: remove .venv and run "
            "script/setup again."
            % (larkspur.__file__, pygame.__file__, len(found), ", ".join(found) or "none")
        )
    print("one SDL is loaded: %s" % found[0])


if __name__ == "__main__":
    main()
