#!/usr/bin/env python2.7
"""Shows the fountain of sparks that sparks.c draws.

Needs the built modules larkspur and sparks on PYTHONPATH: the build puts them into its top folder
and into examples/native. Without a display it runs as fast as it can; --picture saves frame 30, or
the last one where there are fewer.
"""

from __future__ import print_function

import argparse
import os
import sys
import types

SIZE = WIDTH, HEIGHT = 320, 240
BURST_FRAMES, SPARKS_PER_BURST = 16, 20
PICTURE_FRAME = 30
FRAMES_PER_SECOND = 60


def soft_dot(pygame, size):
    """A white disc that fades towards its edge."""
    dot = pygame.Surface((size, size), pygame.SRCALPHA, 32)
    middle = (size - 1) / 2.0
    for x in range(size):
        for y in range(size):
            distance = ((x - middle) ** 2 + (y - middle) ** 2) ** 0.5 / (size / 2.0)
            dot.set_at((x, y), (255, 255, 255, int(255 * max(0.0, 1 - distance))))
    return dot


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--frames", type=int, default=120)
    parser.add_argument("--picture", help="where to save frame %d" % PICTURE_FRAME)
    options = parser.parse_args()

    headless = not os.environ.get("DISPLAY")
    if headless:
        os.environ["SDL_VIDEODRIVER"] = "dummy"
    for name in ("gm6", "gmapi"):  # larkspur looks for its host's modules when it is imported
        sys.modules[name] = types.ModuleType(name)
    import larkspur
    import pygame
    import sparks

    screen = pygame.display.set_mode(SIZE, 0, 32)
    larkspur.set_SDL_screen(screen)
    dot = soft_dot(pygame, 8)
    ember = pygame.Surface(dot.get_size(), 0, 32)  # bright on black, as additive pictures are
    ember.blit(dot, (0, 0))
    sprite = larkspur.GMSprite()
    sprite.subimages = [dot]

    clock, most = pygame.time.Clock(), 0
    for frame in range(options.frames):
        screen.fill((8, 8, 24))
        glow = sparks.stamp(sprite, 64, 64, 0)
        screen.blit(glow, (WIDTH // 2 - 32, HEIGHT - 72))
        if frame < BURST_FRAMES:
            sparks.light(ember, WIDTH / 2.0, HEIGHT - 40.0, SPARKS_PER_BURST)
        burning = sparks.frame(0, 0)
        most = max(most, burning)
        if options.picture and frame == min(PICTURE_FRAME, options.frames - 1):
            pygame.image.save(screen, options.picture)
        pygame.display.flip()
        if not headless:
            clock.tick(FRAMES_PER_SECOND)
    print(
        "%d frames, at most %d sparks, %d at the end, %d kept picture"
        % (options.frames, most, burning, len(sprite.scalecache))
    )


if __name__ == "__main__":
    main()
