"""The world in which a call is made, and what hostile objects do to it."""

import gc
import weakref

import larkspur
import pygame
from support import host as host_support
from support import leaks, pending, rooms
from support.host import Instance, Plain

DISPLAY_SIZE = (64, 48)

# The scene of the running case, for hostile objects.
current = None


def tiny_surface(bits=32, size=(8, 6), flags=0):
    return pygame.Surface(size, flags, bits)


class Scene(object):
    """A display, a registered host and what is in a game of few things.

    resources        name -> list of the game's resources
    call, arguments  what is being called and with what; hostile objects call and change them
    disturbed        whether anything happened after which a new scene has to be made
    """

    def __init__(self, screen_set=True, registered=True, before=None, then=None):
        """before(scene) is called before the host is registered, then(scene) at the end."""
        global current
        current = self  # before the host's names are fetched, which can run code of hostile ones
        self.call, self.arguments = None, []
        self.disturbed = False
        self._acting = False
        pygame.display.init()
        self.screen = pygame.display.set_mode(DISPLAY_SIZE, 0, 32)
        if screen_set:
            larkspur.set_SDL_screen(self.screen)
        self.host = host_support.RecordingHost(self.screen)
        self.host.gm6.__dict__.setdefault("view_xscale", 1.0)
        self.host.gmapi.__dict__["__color_to_int"] = lambda colour: 0x123456
        self.instance = Instance(**dict.fromkeys(rooms.SPRITE_ATTRIBUTES, 1))
        self.instance.py_Draw = 1
        self.instance.Draw = lambda: None
        self.host.registry[7] = self.instance
        leaks.lend_references(self.instance, 10**6)  # what converts an id releases its instance
        # The lists themselves: a situation may take them from the host.
        self.resources = vars(self.host.game).copy()
        self.host.game.backgrounds.append(rooms.make_background(tiny_surface(size=(16, 16))))
        self.host.game.sprites.append(larkspur.GMSprite())
        self.host.game.objects.append(Plain(instances=[self.instance], children=[]))
        if before is not None:
            before(self)
        if registered:
            pending.call(self.host.register, larkspur)  # which may leave an exception
        if then is not None:
            then(self)

    def forget(self):
        """Puts the host's modules back as they were."""
        self.host.forget()

    # ---- what hostile objects do

    def act(self, action):
        """Does one of the things below, unless one is being done already."""
        if self._acting:
            return
        self._acting = self.disturbed = True
        try:
            getattr(self, action)()
        finally:
            self._acting = False

    def mutate(self):
        """Changes every argument of the call as far as it can be changed."""
        for argument in list(self.arguments):
            mutate(argument)
        mutate(self.host.game.backgrounds)
        mutate(self.host.game.objects)

    def reenter(self):
        """Makes the same call once more, and some others."""
        quietly(self.call, *self.arguments)
        quietly(larkspur.Room_Draw, rooms.make_room(drawn_objects=[self.instance]), self.screen)
        quietly(larkspur.draw_rectangle, 1, 1, 5, 5)

    def collect(self):
        """Collects garbage whose weak references change the arguments and replace the display."""
        cycle = Plain()
        cycle.itself = cycle
        self.reference = weakref.ref(cycle, lambda _: (self.mutate(), self.replace()))
        del cycle
        gc.collect(1)

    def close(self):
        pygame.display.quit()

    def replace(self):
        self.screen = pygame.display.set_mode((40, 56), 0, 32)

    def swap(self):
        """Gives larkspur another display and another host while it works with these."""
        quietly(larkspur.set_SDL_screen, tiny_surface(size=(3, 3)))
        self.host.gm6.__dict__.clear()
        self.host.gmapi.__dict__.clear()
        quietly(larkspur.RegisterInstancesDict, {}, int, int, int)


ACTIONS = ("mutate", "reenter", "collect", "close", "replace", "swap")


def quietly(function, *arguments):
    """Calls a function whatever comes of it; exceptions that it leaves pending go, too."""
    pending.call(function, *arguments)


def mutate(thing):
    """Changes one object as far as it can be changed."""
    if isinstance(thing, larkspur.GMRoom):
        for name in rooms.VIEW_MEMBERS + ("tiles", "drawn_objects", "view_visible"):
            quietly(setattr, thing, name, None)
    elif isinstance(thing, larkspur.GMVar):
        quietly(larkspur.GMVar.__init__, thing, "mutated")
    elif isinstance(thing, larkspur.GMSprite):
        thing.subimages, thing.scalecache, thing.name = [], None, None
    elif isinstance(thing, larkspur.BackgroundData):
        thing.surf = None
    elif isinstance(thing, list):
        quietly(list.__delslice__, thing, 0, len(thing))
    elif isinstance(thing, dict):
        quietly(dict.clear, thing)
    elif isinstance(thing, pygame.Surface):
        quietly(thing.set_colorkey, 0, pygame.RLEACCEL)
    elif isinstance(thing, Plain):
        thing.__dict__.clear()
    elif type(thing) is type(HANDLE):
        quietly(larkspur.part_type_shape, thing, tiny_surface(8))
        quietly(larkspur.CParticle_type_cache_clear, thing)


HANDLE = larkspur.part_type_create()
