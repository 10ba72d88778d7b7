"""A host that records every call larkspur makes to it."""

import sys
import types

import __builtin__

ROOM_FUNCTIONS = (
    "Room_Compile",
    "Room_Create",
    "Room_InitializeBackgrounds",
    "Room_AddInstance",
    "Room_AddDrawnInstance",
    "Room_ResortDrawnObjects",
    "Room_SetBackgroundIndex",
    "Room_StepAlarms",
    "Room_MoveInstances",
    "Room_HandleCollisions",
    "Room_StepEvents",
    "Room_DrawBackgrounds",
    "Room_RenderBackground",
    "Room_Leave",
    "Room_MouseButtonDown",
    "Room_MouseButtonUp",
    "Room_HandleKeyrelease",
    "Room_HandleKeypress",
)

LOADERS = ("SpriteData_load_images", "BackgroundData_load_images")

# Of gm6 and of gmapi what larkspur calls and holds from then on.
CALLABLES = ROOM_FUNCTIONS + LOADERS + ("draw_sprite_ext",)


def install_modules():
    """Registers empty modules gm6 and gmapi where there are none; returns both."""
    return tuple(sys.modules.setdefault(name, types.ModuleType(name)) for name in ("gm6", "gmapi"))


class Plain(object):
    """An object with whatever attributes it is given."""

    def __init__(self, **attributes):
        self.__dict__.update(attributes)


class Raising(object):
    """Raises ZeroDivisionError from every special method that asks it for something."""

    def _fail(self, *arguments):
        raise ZeroDivisionError("from a special method")

    __call__ = __cmp__ = __float__ = __getitem__ = __hash__ = __index__ = __int__ = __iter__ = _fail
    __len__ = __nonzero__ = __repr__ = __str__ = _fail


class RaisingAttributes(Raising):
    """Raises from special methods and from every attribute, read or set."""

    def __getattribute__(self, name):
        raise ZeroDivisionError("reading " + name)

    def __setattr__(self, name, value):
        raise ZeroDivisionError("setting " + name)


class RefusingModule(types.ModuleType):
    """A module on which the attributes named in `refused` can't be set. Setting one runs a loop,
    which would stop at a pending exception."""

    refused = ()

    def __setattr__(self, name, value):
        for _ in (1, 2):
            pass
        if name in self.refused:
            raise KeyError(name)
        types.ModuleType.__setattr__(self, name, value)


class Instance(Plain):
    """A game instance of a type that instance lists take as it is."""


class ParticleSystem(Plain):
    """Objects of exactly this type are particle systems."""


class RecordingHost(object):
    """gm6 and gmapi with all that larkspur looks for. Of several hosts the newest is called.

    calls     list of (name, arguments) in the order in which larkspur made them
    results   name -> what the host function returns (default None), or an exception it raises
    game      the game object with its lists sprites, backgrounds, rooms and objects
    registry  instance id -> instance, as given to RegisterInstancesDict()
    """

    _newest = None
    # Made once, as larkspur gives back none of its references to them.
    _recorders = {}  # name -> function
    _draw_props = Plain()
    _self_stack = []

    def __init__(self, screen):
        import pygame

        self.gm6, self.gmapi = install_modules()
        self.calls = []
        self.results = {}
        self.registry = {}
        self.screen = screen
        self.game = Plain(sprites=[], backgrounds=[], rooms=[], objects=[])
        self._saved = dict(self.gm6.__dict__), dict(self.gmapi.__dict__)
        RecordingHost._newest = self
        self.gm6.game = self.gmapi.game = self.game
        for name in ROOM_FUNCTIONS + LOADERS:
            setattr(self.gm6, name, self.recorder(name))
        self.gmapi.draw_sprite_ext = self.recorder("draw_sprite_ext")
        self.gmapi.py_ParticleSystem = ParticleSystem
        self.gmapi.py_draw_props = self._draw_props
        self._draw_props.__dict__ = {"color": (255, 255, 255), "alpha": 1.0}
        self.gmapi.py_self_stack = self._self_stack
        del self._self_stack[:]
        self.gmapi.self = None
        self.gmapi.pygame = pygame
        self.gmapi.__builtins__ = __builtin__  # as every module imported from a file has them

    @classmethod
    def recorder(cls, name):
        """A function that has the newest host record its call under `name` and answer it."""

        def record(*arguments):
            return cls._newest.answer(name, arguments)

        record.__name__ = name
        return cls._recorders.setdefault(name, record)

    def answer(self, name, arguments):
        self.calls.append((name, arguments))
        result = self.results.get(name)
        if isinstance(result, BaseException):
            raise result
        return result

    def register(self, larkspur):
        """Hands registry and callables to larkspur; again whenever the callables change."""
        larkspur.RegisterInstancesDict(self.registry, Instance, ParticleSystem, Plain)

    def has_own_objects(self):
        """Whether larkspur finds other objects to keep than those that are made once."""
        found = dict(self.gmapi.__dict__, **self.gm6.__dict__)
        made = dict((name, self.recorder(name)) for name in CALLABLES)
        made.update(py_draw_props=self._draw_props, py_self_stack=self._self_stack)
        return any(found.get(name) is not made[name] for name in made)

    def named(self, name):
        """The arguments of every recorded call of one host function."""
        return [arguments for called, arguments in self.calls if called == name]

    def forget(self):
        """Puts gm6 and gmapi back as they were; larkspur keeps what it fetched."""
        for module, saved in zip((self.gm6, self.gmapi), self._saved):
            module.__dict__.clear()
            module.__dict__.update(saved)


def set_up(larkspur, screen):
    """Gives larkspur a screen and a fresh host; the host."""
    larkspur.set_SDL_screen(screen)
    recording = RecordingHost(screen)
    recording.register(larkspur)
    return recording
