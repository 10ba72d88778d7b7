"""Plays the demo by its script and keeps every fifth picture, at half its size, as PNG files.

    python2.7 docs/make/demo_frames.py FOLDER

moving_picture.py makes one of them. Needs larkspur and pygame.
"""

from __future__ import print_function

import os
import sys

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
os.environ["SDL_VIDEODRIVER"] = "dummy"
sys.path.insert(0, os.path.join(TREE, "examples"))
import demo  # noqa: E402

FRAMES = 480
KEPT = 5  # one of as many


def main():
    folder = sys.argv[1]
    pygame, game = demo.import_game()
    screen = demo.open_display(pygame, game.SIZE)
    evening = game.Evening(screen)
    for _ in evening.load():
        pass
    script = demo.script_of_keys(pygame, FRAMES)
    size = game.SIZE[0] // 2, game.SIZE[1] // 2
    for number in range(FRAMES):
        for down, key in script.get(number, ()):
            (evening.press if down else evening.release)(key)
        evening.frame()
        if number % KEPT == 0:
            small = pygame.transform.smoothscale(screen, size)
            pygame.image.save(small, os.path.join(folder, "%04d.png" % number))


if __name__ == "__main__":
    main()
