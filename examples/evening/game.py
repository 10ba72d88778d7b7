"""The demo game as a whole: its two rooms, its keys, and how a frame of it is made."""

import gm6
import gmapi
from evening import effects, garden, hud, village

SIZE = village.VIEW_WIDTH, village.VIEW_HEIGHT
KEYS = ("arrow keys: walk   space: jump   Tab: village / walled garden   "
        "i: inventory   m: map   mouse: tickle a snowman   Escape: quit")


class Evening(object):
    """The running game. The display must have been set; it draws on that surface."""

    def __init__(self, screen):
        gm6.start(screen)
        effects.make_types()
        hud.build()
        self.village = village.build()
        self.garden = garden.build()
        self.running = True
        for room in (self.garden, self.village):
            gm6.goto_room(room)
            warm_up(150)

    @property
    def room(self):
        return gm6.current_room

    def press(self, key):
        """A key goes down."""
        if key == gmapi.vk_escape:
            self.running = False
        elif key == gmapi.vk_tab:
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
        """One step and one picture; showing the picture is the caller's."""
        gm6.step()
        gm6.draw()


def warm_up(steps):
    """Let the current room live for a while unseen, so that fires burn and snow falls."""
    for _ in range(steps):
        gm6.step()


def living_particles():
    """How many particles live in the current room."""
    return sum(system.count() for system in gmapi.particle_systems())
