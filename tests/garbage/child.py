"""What is done in the process where garbage is collected: scenes, with an act at one point each."""

import gc
import itertools
import os
import sys

from support import host as host_support

host_support.install_modules()

import larkspur  # noqa: E402
import pygame  # noqa: E402
from support import memory  # noqa: E402
from support.collecting import CollectingEverywhere  # noqa: E402
from support.rooms import make_room, make_view_room  # noqa: E402

from garbage import scenes  # noqa: E402


def close(host):
    pygame.display.quit()
    memory.spoil_freed()


def replace(host):
    pygame.display.set_mode((64, 48), 0, 16)
    memory.spoil_freed()


def redraw(host):
    """What is under way is done once more, and rooms are drawn."""
    host.again()
    larkspur.Room_Draw(make_room(), host.screen)
    larkspur.Room_Draw(make_view_room(), host.screen)


def drop(host):
    """What the scene works on is let go."""
    for let_go in host.drops:
        let_go()
    host.registry.clear()
    for resources in vars(host.game).values():
        del resources[:]
    memory.spoil_freed()


ACTS = {"close": close, "replace": replace, "redraw": redraw, "drop": drop}


def fresh_host():
    pygame.display.init()
    host = host_support.set_up(larkspur, pygame.display.set_mode((320, 240), 0, 32))
    host.drops = []
    return host


def run(prepare, act, at):
    """Does a scene once; (points, exception)."""
    gc.disable()
    host = fresh_host()
    host.again = prepare(host)
    host.again()  # so that what is made once is there
    failure = None
    with CollectingEverywhere(lambda: act(host), at) as collecting:
        try:
            host.again()
        except Exception as exception:
            failure = exception
    host.forget()
    host.__dict__.clear()  # it is in cycles
    return collecting.points, failure


def try_points(name, act, step, log):
    """Tries every step-th point of a scene; how many these were."""
    prepare = scenes.SCENES[name]
    tried = 0
    for at in itertools.count(1, step):
        os.lseek(log, 0, os.SEEK_SET)
        os.write(log, ("%s, point %d" % (name, at)).ljust(80))
        points, failure = run(prepare, act, at)
        if points < at:
            break
        tried += 1
    if failure is not None:
        raise failure  # although nothing was done
    return tried


def main(act, step, log_path, names):
    """Does each scene again and again, each time with another of its points of collection at which
    the act is done, and prints "tried SCENE POINTS" for each. When the process crashes, the log
    tells where."""
    log = os.open(log_path, os.O_WRONLY)
    for name in names:
        print("tried %s %d" % (name, try_points(name, ACTS[act], step, log)))
        sys.stdout.flush()
