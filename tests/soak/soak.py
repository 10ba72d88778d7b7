"""Plays the demo for hours of game time, as fast as it goes, and watches what it holds.

    python soak.py [--frames N] [--minutes N] [--seed N] [--only-bounds] RESULTS

script/soak calls it. While it plays, keys and mouse buttons go down and up, rooms are changed,
views switched, instances, and particle types with their particles, made and dropped, pictures
scaled, turned, mirrored and painted on, states of rooms and tiles copied, and the display is closed
and opened again. Every so often it notes the bytes that malloc() has handed out, the resident
memory, the objects that the collector knows and the pictures that caches hold; RESULTS is all of
that as JSON.

It ends with status 1 where memory grew after the first fifth, in which caches fill, or where a
cache left its bounds. With --only-bounds memory may grow: sanitizers keep what is freed.
"""

from __future__ import division, print_function

import argparse
import collections
import gc
import json
import os
import pickle
import random
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
TREE = os.path.dirname(os.path.dirname(HERE))
EXAMPLES = os.path.join(TREE, "examples")
sys.path[:0] = [os.path.join(EXAMPLES, "host"), EXAMPLES, os.path.join(TREE, "tests")]

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")
os.environ.setdefault("SDL_AUDIODRIVER", "dummy")

import bounds  # noqa: E402
import demo  # noqa: E402
import gm6  # noqa: E402  (the engine comes before larkspur, which it imports)
import gmapi  # noqa: E402
import larkspur  # noqa: E402
import pygame  # noqa: E402
from evening import game  # noqa: E402
from support import heap, particles  # noqa: E402

# What is done to the game, and between how many frames on average.
ACTIONS = (
    ("press_keys", 20),
    ("change_room", 150),
    ("make_particles", 40),
    ("make_pictures", 10),
    ("make_instance", 60),
    ("copy_states", 400),
    ("open_display", 3000),
)
KEPT_FRAMES = 240  # for which what was made is kept
HELD_KEYS = (pygame.K_LEFT, pygame.K_RIGHT, pygame.K_UP, pygame.K_SPACE)
PRESSED_KEYS = (pygame.K_TAB, pygame.K_m, pygame.K_i)
SHAPES = (
    gmapi.pt_shape_pixel,
    gmapi.pt_shape_disk,
    gmapi.pt_shape_flare,
    gmapi.pt_shape_spark,
    gmapi.pt_shape_smoke,
    gmapi.pt_shape_snow,
)
KINDS = "obj_pine_0 obj_lamp obj_crate obj_snowman obj_star_0 obj_crow".split()

SAMPLES = 720  # of a whole run


class Soak(object):
    """The running game, and what is done to it. How often it was is counted in `done`."""

    def __init__(self, seed):
        self.source = random.Random(seed)
        random.seed(seed)
        self.held = set()
        self.kept = collections.deque()  # of (frame in which it is dropped, what drops it)
        self.done = collections.Counter()
        self.most_scaled_pictures = 0
        self.open_display()
        self.evening = game.Evening(gm6.screen)
        for _ in self.evening.load():
            pass

    def frame(self, number):
        """Perhaps does something to the game, then plays one frame of it."""
        for action, every in ACTIONS:
            if self.source.random() * every < 1:
                getattr(self, action)(number)
        while self.kept and self.kept[0][0] <= number:
            self.kept.popleft()[1]()
        self.evening.frame()
        self.evening.shown()

    def keep(self, number, drop):
        """Has `drop` called when what was made in frame `number` has been kept for its time."""
        self.kept.append((number + KEPT_FRAMES, drop))

    def open_display(self, _=None):
        pygame.display.quit()
        pygame.display.init()
        gm6.start(pygame.display.set_mode(game.SIZE, 0, 32))
        self.done["displays opened"] += 1

    def press_keys(self, _):
        key = self.source.choice(HELD_KEYS)
        if key in self.held:
            self.held.discard(key)
            self.evening.release(key)
        else:
            self.held.add(key)
            self.evening.press(key)
        button = self.source.choice((1, 3))
        self.evening.room.MouseButtonDown(button)
        self.evening.room.MouseButtonUp(button)
        self.done["keys and buttons"] += 1

    def change_room(self, _):
        """Goes to the other room, shows or hides the map, opens or closes the inventory."""
        before = self.evening.room
        self.evening.press(self.source.choice(PRESSED_KEYS))
        self.done["rooms changed"] += self.evening.room is not before

    def make_particles(self, number):
        """A type with its particles; both go while most of the particles live."""
        source, made = self.source, gmapi.part_type_create()
        gmapi.part_type_shape(made, source.choice(SHAPES))
        gmapi.part_type_blend(made, source.randrange(2))
        # Never drawn at the size of its shape: only pictures that are scaled have a bound.
        gmapi.part_type_scale(made, source.uniform(2.6, 4), source.uniform(2.6, 4))
        gmapi.part_type_size(made, 0.5, 1, source.uniform(0, 0.01), 0)
        gmapi.part_type_color3(made, *[source.randrange(1 << 24) for _ in range(3)])
        gmapi.part_type_alpha3(made, *[source.random() for _ in range(3)])
        gmapi.part_type_life(made, 60, 2 * KEPT_FRAMES)
        gmapi.part_type_speed(made, 0, 4, 0, 0)
        gmapi.part_type_direction(made, 0, 360, 0, 0)
        gmapi.part_type_orientation(made, 0, 360, 7, 0, 0)
        room, system = self.evening.room, gmapi.py_ParticleSystem(-50)
        place = system.emitter()
        left = room.view_xview[0] if room.view_enabled else 0
        place.region(left, left + game.SIZE[0], 0, game.SIZE[1])
        system.burst(place, made, source.randrange(10, 60))
        room.AddDrawnInstance(system)
        room.ResortDrawnObjects()
        self.done["particles made"] += len(system.particles)

        def drop():
            pictures = len(particles.cache_of(made))
            self.most_scaled_pictures = max(self.most_scaled_pictures, pictures)
            if any(drawn is system for drawn in room.drawn_objects):
                room.drawn_objects.remove(system)

        self.keep(number, drop)

    def make_pictures(self, number):
        """Scales, turns and mirrors a sprite's picture, paints on the results and makes sprites of
        them."""
        source = self.source
        picture = source.choice(source.choice(gm6.game.sprites).subimages)
        made = [
            larkspur.scale(picture, source.uniform(0.2, 2), source.uniform(0.2, 2)),
            larkspur.rotoscale(picture, source.uniform(0.2, 2), 1, source.uniform(0, 360)),
            larkspur.flip_h(picture),
            larkspur.flip_v(picture),
            larkspur.flip_vh(picture),
        ]
        for painted in made:
            width, height = painted.get_size()
            larkspur.fill_translucent(painted, 0, 0, width, height // 2, 0x3070B0, 90)
            larkspur.fast_draw_gradient_v(painted, 0, 0, width, height, 0xFFFFFF, 0, 120)
        made += [larkspur.GMSprite_from_surface(painted, "painted") for painted in made]
        self.done["pictures made"] += len(made)
        self.keep(number, lambda: del_all(made))

    def make_instance(self, number):
        room, kind = self.evening.room, getattr(gmapi, self.source.choice(KINDS))
        x, y = self.source.randrange(room.room_width), self.source.randrange(room.room_height)
        made = gm6.create_instance(room, kind, x, y)
        room.ResortDrawnObjects()
        self.done["instances made"] += 1
        self.keep(number, lambda: gm6.destroy_instance(made))

    def copy_states(self, number):
        """Another room and other tiles, of the states that pickling takes; and a variable."""
        for room in (gmapi.room_village, gmapi.room_garden):
            made = [larkspur.GMRoom()]
            made[0].__setstate__(room.__reduce__()[2])
            made += pickle.loads(pickle.dumps(list(room.tiles or [])[:50], 2))
            made.append(larkspur.GMVar(number))
            made[-1][self.source.randrange(100)] = "kept"
            self.done["states copied"] += len(made)
            self.keep(number, lambda made=made: del_all(made))


def del_all(made):
    del made[:]


def sample(soak, frame, seconds):
    """What the game holds now."""
    gc.collect()
    return {
        "frame": frame,
        "seconds": seconds,
        "allocated_kib": heap.allocated_bytes() // 1024,
        "resident_kib": heap.resident_kib(),
        "objects": len(gc.get_objects()),
        "particles": game.living_particles(),
        "sprite_pictures": max(len(sprite.scalecache) for sprite in gm6.game.sprites),
        "scaled_pictures": soak.most_scaled_pictures,
    }


def play(soak, frames, minutes):
    """Plays until all frames are drawn or the time is over; returns the samples."""
    progress, samples, started = demo.Progress(), [], time.time()
    next_sample = 0.0
    number, share = 0, 0.0
    while share < 1:
        soak.frame(number)
        number += 1
        seconds = time.time() - started
        share = max(number / frames, seconds / (60 * minutes) if minutes else 0)
        if share >= next_sample:
            next_sample += 1 / SAMPLES
            samples.append(sample(soak, number, seconds))
            told = "{} frames, {:.1f} MiB".format(number, samples[-1]["resident_kib"] / 1024)
            progress.show(min(1.0, share), told)
    return samples


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--frames", type=int, default=216000)
    parser.add_argument("--minutes", type=float)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--only-bounds", action="store_true")
    parser.add_argument("results")
    options = parser.parse_args()
    soak = Soak(options.seed)
    samples = play(soak, options.frames, options.minutes)
    found = bounds.faults(samples, options.only_bounds)
    with open(options.results, "w") as results:
        json.dump({"samples": samples, "done": soak.done, "seed": options.seed}, results)
    for what, count in sorted(soak.done.items()):
        print("{:>9} {}".format(count, what))
    for key, (what, _) in sorted(bounds.MOST_GROWTH_KIB.items()):
        grown = bounds.growth_kib(samples, key)
        print("{}, last fifth over the second one: {:+d} KiB".format(what, grown))
    for fault in found:
        print("soak: " + fault, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
