"""No collection starts by itself while pygame's own functions run for larkspur."""

import gc

import larkspur
import pygame
import pytest


class Canvas(pygame.Surface):
    """A screen whose fill() notes the thresholds in force, and may set others."""

    def fill(self, *arguments):
        self.seen = gc.get_threshold()
        if self.sets is not None:
            gc.set_threshold(self.sets)


@pytest.fixture
def canvas(host):
    thresholds = gc.get_threshold()
    canvas = Canvas((64, 48), 0, 32)
    canvas.sets = None
    larkspur.set_SDL_screen(canvas)
    yield canvas
    gc.set_threshold(*thresholds)


@pytest.mark.parametrize("before", [700, 0, -1])
def test_none_starts_and_the_threshold_comes_back(canvas, before):
    gc.set_threshold(before, 11, 12)
    larkspur.draw_rectangle(1, 2, 3, 4)
    assert canvas.seen == (0, 11, 12)
    assert gc.get_threshold() == (before, 11, 12)


def test_a_threshold_that_the_host_sets_meanwhile_stays(canvas):
    canvas.sets = 555
    larkspur.draw_rectangle(1, 2, 3, 4)
    assert gc.get_threshold()[0] == 555


def test_the_threshold_comes_back_after_a_failure(canvas):
    canvas.sets = "no number"
    before = gc.get_threshold()
    with pytest.raises(TypeError):
        larkspur.draw_rectangle(1, 2, 3, 4)
    assert gc.get_threshold() == before
