"""The demo game as a whole: its two rooms, its keys, and how a frame of it is made."""

from __future__ import division

import time

import gm6
import gmapi

from evening import effects, garden, hud, village

SIZE = village.VIEW_WIDTH, village.VIEW_HEIGHT
KEYS = (
    "arrow keys: walk   space: jump   Tab: village / walled garden   "
    "i: inventory   m: map   mouse: tickle a snowman   Escape: quit"
)

WARM_UP_STEPS = 150  # of each room
WARM_UP_PART = 30  # of them at a time
PIECES = 25  # that loading consists of


class Evening(object):
    """The running game. The display must have been set; it draws on that surface.

    There is nothing in it until load() has come to its end.
    """

    def __init__(self, screen):
        gm6.start(screen)
        self.village = self.garden = None

    def load(self):
        """Make everything. A generator of (share, what): before each piece of work the share that
        is done, and what comes next in words; at the end 1.0."""
        done = 0
        for what in self._make_all():
            yield done / PIECES, what
            done += 1
        yield done / PIECES, "ready"

    def _make_all(self):
        yield "sparks, smoke and snow"
        effects.make_types()
        hud.build()
        for build in (village.build, garden.build):
            for what in build():
                yield what
        self.village, self.garden = gmapi.room_village, gmapi.room_garden
        for room, what in (
            (self.garden, "fireflies in the garden"),
            (self.village, "snow in the air"),
        ):
            yield what
            gm6.goto_room(room)
            for _ in range(WARM_UP_STEPS // WARM_UP_PART):
                yield what
                warm_up(WARM_UP_PART)

    @property
    def room(self):
        return gm6.current_room

    def press(self, key):
        """A key goes down."""
        if key == gmapi.vk_tab:
            gm6.goto_room(self.garden if self.room is self.village else self.village)
        elif key == gmapi.pygame.K_m:
            self.village.view_visible[1] = not self.village.view_visible[1]
        elif key == gmapi.pygame.K_i:
            for panel in gmapi.obj_hud.instances:
                panel.open = not panel.open
        else:
            self.room.HandleKeypress(key)

    def release(self, key):
        """A key comes up."""
        self.room.HandleKeyrelease(key)

    def frame(self):
        """One step and one picture; showing the picture is the caller's, who then says shown()."""
        gm6.step()
        gm6.draw()

    def shown(self):
        """The picture is in the window. Where pictures are only kept there is no frame rate."""
        hud.rate.frame_shown(time.time())


def warm_up(steps):
    """Let the current room live for a while unseen, so that fires burn and snow falls."""
    for _ in range(steps):
        gm6.step()


def living_particles():
    """How many particles live in the current room."""
    return sum(system.count() for system in gmapi.particle_systems())
