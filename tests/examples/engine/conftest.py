"""The example engine on a display without a window, emptied for each test."""

import os
import sys

os.environ["SDL_VIDEODRIVER"] = "dummy"
HERE = os.path.dirname(os.path.abspath(__file__))
EXAMPLES = os.path.join(HERE, os.pardir, os.pardir, os.pardir, "examples")
sys.path[:0] = [os.path.join(EXAMPLES, "host"), EXAMPLES]

import gm6  # noqa: E402
import gmapi  # noqa: E402
import pygame  # noqa: E402
import pytest  # noqa: E402
from engine import instances  # noqa: E402

SIZE = 320, 240


@pytest.fixture
def screen():
    """A black display of 320 x 240 on which the engine has started."""
    pygame.display.init()
    surface = pygame.display.set_mode(SIZE, 0, 32)
    surface.fill((0, 0, 0))
    gm6.start(surface)
    yield surface
    surface.set_clip(None)


@pytest.fixture
def game(screen):
    """The engine's game, with nothing in it."""
    for resources in (
        gmapi.game.sprites,
        gmapi.game.backgrounds,
        gmapi.game.rooms,
        gmapi.game.objects,
    ):
        del resources[:]
    instances.registry.clear()
    gm6.current_room = None
    gm6.keys_held.clear()
    gmapi.draw_set_alpha(1)
    gmapi.draw_set_color(gmapi.c_white)
    return gmapi.game


@pytest.fixture
def room(game):
    """An empty room of 320 x 240 without views, entered."""
    made = game.add_room("room_test", *SIZE)
    gm6.goto_room(made)
    return made


def block(width, height, color=(255, 255, 255)):
    """A picture of one colour, with alpha."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA, 32)
    surface.fill(tuple(color) + (255,))
    return surface.convert_alpha()


@pytest.fixture
def picture():
    """block(width, height, color): a picture of one colour, with alpha."""
    return block
