#!/usr/bin/env python2.7
"""An evening in a village: the demo game of larkspur.

With a display it opens a window. With --headless, or where no window can be opened, it plays a
fixed number of frames by itself and leaves pictures of them.
"""

from __future__ import division, print_function

import argparse
import os
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "host"), HERE]
PICTURES = os.path.join(os.path.dirname(HERE), "build", "demo")

FRAMES_PER_SECOND = 60
SHOTS = 8
SHEET_COLUMNS = 4

# SDL's video drivers for what a variable of the environment says is there, in order of preference.
# Left to choose for itself, SDL would go on to drivers that fill the terminal with characters.
WINDOW_DRIVERS = (("DISPLAY", "x11"), ("WAYLAND_DISPLAY", "wayland"))
DRIVERS_WITHOUT_WINDOW = "dummy", "offscreen", "evdev"


def main(arguments=None):
    """Run the demo; returns the exit status."""
    options = parse(arguments)
    try:
        pygame, game = import_game()
    except (ImportError, RuntimeError) as error:  # also a pygame that does not fit larkspur
        print(
            "demo: {}.\nRun script/demo, which builds what is missing, or put the folder of the "
            "built larkspur.so on PYTHONPATH.".format(error),
            file=sys.stderr,
        )
        return 1
    try:
        if not options.headless and not options.check:
            screen, obstacle = open_window(pygame, game.SIZE)
            if screen is not None:
                return play(pygame, game, screen, options.frames)
            print("No window can be opened ({}): rendering pictures instead.".format(obstacle))
        os.environ["SDL_VIDEODRIVER"] = "dummy"
        screen = open_display(pygame, game.SIZE)
        run = render(pygame, game, screen, options.frames or 600, options.output)
        return check(pygame, run) if options.check else 0
    finally:
        pygame.display.quit()


def parse(arguments):
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument(
        "--headless", action="store_true", help="open no window; write pictures instead"
    )
    parser.add_argument(
        "--frames",
        type=positive,
        metavar="N",
        help="stop after N frames (default: 600 headless, no end in a window)",
    )
    parser.add_argument(
        "--check",
        action="store_true",
        help="as --headless, then look whether the pictures show what they should",
    )
    parser.add_argument(
        "--output",
        default=PICTURES,
        metavar="FOLDER",
        help="where the pictures go (default: build/demo)",
    )
    return parser.parse_args(arguments)


def positive(text):
    value = int(text)
    if value < SHOTS:
        raise argparse.ArgumentTypeError("at least {} frames".format(SHOTS))
    return value


def import_game():
    """Import pygame, larkspur and the game; an ImportError says which is missing."""
    import gm6  # noqa: F401  (the engine comes before larkspur, which it imports)
    import pygame
    from evening import game

    return pygame, game


def window_drivers(environment):
    """The video drivers to try for a window: the user's own choice, or what there seems to be."""
    chosen = environment.get("SDL_VIDEODRIVER")
    if chosen:
        return [chosen]
    return [driver for variable, driver in WINDOW_DRIVERS if environment.get(variable)]


def open_window(pygame, size):
    """(the window's surface, None), or (None, why there can't be a window)."""
    obstacles = [
        "{}={}".format(variable, os.environ[variable])
        for variable in ("DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER")
        if os.environ.get(variable)
    ]
    for wanted in window_drivers(os.environ):
        driver = os.environ["SDL_VIDEODRIVER"] = wanted
        try:
            screen = open_display(pygame, size)
            driver = pygame.display.get_driver()
            if driver in DRIVERS_WITHOUT_WINDOW:
                raise pygame.error("this driver shows nothing")
            if screen.get_bitsize() != 32:
                raise pygame.error("{} bits a pixel, not 32".format(screen.get_bitsize()))
            return screen, None
        except pygame.error as error:
            obstacles.append("{}: {}".format(driver, error))
            pygame.display.quit()
    return None, "; ".join(obstacles) or "there is no DISPLAY"


def open_display(pygame, size):
    pygame.display.init()
    screen = pygame.display.set_mode(size, 0, 32)
    pygame.display.set_caption("larkspur: an evening")
    return screen


class Progress(object):
    """How far something is: on a terminal a line that is written over, elsewhere one line for each
    tenth."""

    WIDTH = 60

    def __init__(self):
        self._tenth = 0
        self._line_is_open = False

    def show(self, share, text):
        """`share` of it is done, from 0.0 to 1.0, which ends the line."""
        line = "{:3d} %  {}".format(int(round(100 * share)), text)
        if sys.stdout.isatty():
            sys.stdout.write("\r" + line.ljust(self.WIDTH))
            self._line_is_open = True
            if share >= 1:
                self.end()
        elif int(10 * share) > self._tenth:
            self._tenth = int(10 * share)
            print(line)
        sys.stdout.flush()

    def end(self):
        """Nothing more comes, done or not."""
        if self._line_is_open:
            self._line_is_open = False
            print()


# --- In a window ---------------------------------------------------------------------------------


def play(pygame, game, screen, frames):
    """Play until Escape, a closed window or the given number of frames."""
    print(game.KEYS)
    evening = game.Evening(screen)
    reason = load_in_window(pygame, evening, screen)
    if reason is not None:
        print("{}: left while loading.".format(reason))
        return 0
    clock = pygame.time.Clock()
    started, processor, count = time.time(), time.clock(), 0
    while reason is None and (frames is None or count < frames):
        for event in pygame.event.get():
            reason = reason or reason_to_leave(pygame, event)
            if event.type == pygame.KEYDOWN:
                evening.press(event.key)
            elif event.type == pygame.KEYUP:
                evening.release(event.key)
            elif event.type == pygame.MOUSEBUTTONDOWN:
                evening.room.MouseButtonDown(event.button)
            elif event.type == pygame.MOUSEBUTTONUP:
                evening.room.MouseButtonUp(event.button)
        evening.frame()
        pygame.display.flip()
        evening.shown()
        clock.tick(FRAMES_PER_SECOND)
        count += 1
    print(
        "{}: {} frames, {:.1f} a second, {:.1f} ms of processor time each.".format(
            reason or "all frames drawn",
            count,
            count / (time.time() - started),
            1000 * (time.clock() - processor) / count,
        )
    )
    return 0


def load_in_window(pygame, evening, screen):
    """Make the game while window and terminal say how far that is.

    None, or why the user left before it was done.
    """
    from evening.loading import LoadingPicture

    picture = LoadingPicture(screen)
    progress = Progress()
    for share, what in evening.load():
        for event in pygame.event.get():
            reason = reason_to_leave(pygame, event)
            if reason is not None:
                progress.end()
                return reason
        picture.draw(share, what)
        pygame.display.flip()
        progress.show(share, "loading: " + what)
    return None


def reason_to_leave(pygame, event):
    """Why an event ends the game; None when it does not."""
    if event.type == pygame.QUIT:
        return "window closed"
    if event.type == pygame.KEYDOWN and event.key == pygame.K_ESCAPE:
        return "Escape"
    return None


# --- Without one ---------------------------------------------------------------------------------


class Run(object):
    """What a run without a window leaves: (path, room name) of each picture."""

    def __init__(self):
        self.pictures = []
        self.most_particles = 0


def script_of_keys(pygame, frames):
    """{frame: [(down, key), ...]}: right over the crates, into the garden, around, and back."""
    moments = (
        (0.02, 1, pygame.K_RIGHT),
        (0.12, 1, pygame.K_SPACE),
        (0.14, 0, pygame.K_SPACE),
        (0.24, 1, pygame.K_SPACE),
        (0.26, 0, pygame.K_SPACE),
        (0.36, 1, pygame.K_SPACE),
        (0.38, 0, pygame.K_SPACE),
        (0.46, 1, pygame.K_SPACE),
        (0.48, 0, pygame.K_SPACE),
        (0.56, 0, pygame.K_RIGHT),
        (0.58, 1, pygame.K_TAB),
        (0.60, 1, pygame.K_UP),
        (0.70, 0, pygame.K_UP),
        (0.70, 1, pygame.K_LEFT),
        (0.80, 0, pygame.K_LEFT),
        (0.84, 1, pygame.K_TAB),
        (0.86, 1, pygame.K_LEFT),
        (0.96, 0, pygame.K_LEFT),
    )
    script = {}
    for share, down, key in moments:
        script.setdefault(int(share * frames), []).append((down, key))
    return script


def render(pygame, game, screen, frames, folder):
    """Play by the script, write pictures and a contact sheet, and print what was reached."""
    if not os.path.isdir(folder):
        os.makedirs(folder)
    print("Rendering {} frames of {} x {}.".format(frames, *game.SIZE))
    evening = game.Evening(screen)
    progress = Progress()
    for share, what in evening.load():
        progress.show(share, "loading: " + what)
    script = script_of_keys(pygame, frames)
    shots = set(frames * (2 * number + 1) // (2 * SHOTS) for number in range(SHOTS))
    run = Run()
    progress = Progress()
    spent = {"room_village": [0, 0.0, 0.0], "room_garden": [0, 0.0, 0.0]}
    for number in range(frames):
        for down, key in script.get(number, ()):
            (evening.press if down else evening.release)(key)
        started, processor = time.time(), time.clock()
        evening.frame()
        record = spent[evening.room.name]
        record[0] += 1
        record[1] += time.time() - started
        record[2] += time.clock() - processor
        run.most_particles = max(run.most_particles, game.living_particles())
        if number in shots:
            path = os.path.join(folder, "frame_{:05d}.png".format(number))
            pygame.image.save(screen, path)
            run.pictures.append((path, evening.room.name))
        progress.show((number + 1) / frames, "{} of {} frames".format(number + 1, frames))
    sheet = os.path.join(folder, "contact_sheet.png")
    pygame.image.save(contact_sheet(pygame, [path for path, _ in run.pictures], game.SIZE), sheet)
    for name, (count, seconds, processor) in sorted(spent.items(), reverse=True):
        if count:
            print(
                "{}: {} frames, {:.1f} frames per second, {:.1f} ms of processor time each".format(
                    name, count, count / seconds, 1000 * processor / count
                )
            )
    print("Most living particles: {}".format(run.most_particles))
    print(
        "{} pictures and {} are in {}".format(
            len(run.pictures), os.path.basename(sheet), os.path.abspath(folder)
        )
    )
    return run


def contact_sheet(pygame, paths, size):
    """All pictures at half their size on one."""
    width, height, gap = size[0] // 2, size[1] // 2, 6
    rows = -(-len(paths) // SHEET_COLUMNS)
    sheet = pygame.Surface(
        (SHEET_COLUMNS * (width + gap) + gap, rows * (height + gap) + gap), 0, 32
    )
    sheet.fill((20, 20, 28))
    for number, path in enumerate(paths):
        small = pygame.transform.smoothscale(pygame.image.load(path).convert(), (width, height))
        sheet.blit(
            small,
            (
                gap + number % SHEET_COLUMNS * (width + gap),
                gap + number // SHEET_COLUMNS * (height + gap),
            ),
        )
    return sheet


# --- Looking at what came out --------------------------------------------------------------------


def check(pygame, run):
    """Look for what every picture must show; prints what is wrong and returns the exit status."""
    from evening import checks

    faults = checks.faults(pygame, run.pictures, run.most_particles)
    for fault in faults:
        print("check: " + fault, file=sys.stderr)
    if not faults:
        print("check: all {} pictures show what they should".format(len(run.pictures)))
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
