"""The example of a native caller, run as its users run it."""

import ctypes
import imp
import os
import subprocess
import sys

import larkspur
import numpy
import pygame
import pytest
from support import leaks, particles

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.environ.get("LARKSPUR_BUILD_DIR", "")


def run(*arguments):
    folders = [BUILD, os.path.join(BUILD, "examples", "native")]
    environment = dict(os.environ, PYTHONPATH=os.pathsep.join(folders + sys.path))
    environment.pop("DISPLAY", None)
    command = [sys.executable, os.path.join(ROOT, "examples", "native", "fountain.py")]
    return subprocess.check_output(
        command + list(arguments), env=environment, stderr=subprocess.STDOUT
    )


@pytest.fixture(scope="module")
def picture(tmpdir_factory):
    """Red, green and blue [y][x] of a frame in which most sparks burn."""
    path = str(tmpdir_factory.mktemp("sparks").join("sparks.png"))
    output = run("--frames", "100", "--picture", path)
    assert output.splitlines()[-1] == "100 frames, at most 320 sparks, 0 at the end, 1 kept picture"
    return pygame.surfarray.array3d(pygame.image.load(path)).swapaxes(0, 1).astype(int)


def test_sparks_rise_over_the_fountain(picture):
    lit = numpy.argwhere((picture != (8, 8, 24)).any(axis=2))
    glow = (lit[:, 0] >= 168) & (lit[:, 0] < 232) & (lit[:, 1] >= 128) & (lit[:, 1] < 192)
    sparks = lit[~glow]
    assert len(sparks) > 300
    assert sparks[:, 0].min() < 190  # they rise, and spread to both sides of the middle
    assert sparks[:, 1].min() < 128 and sparks[:, 1].max() > 192


def test_the_stamped_picture_glows_at_the_bottom(picture):
    glow = picture[168:232, 128:192].sum(axis=2)
    middle, edge = glow[24:40, 24:40].mean(), glow[56:].mean()
    assert middle > 2 * edge and edge > 8 + 8 + 24


def test_no_frames_at_all_is_no_trouble():
    assert "at most 20 sparks" in run("--frames", "1")


class Key(object):
    """Found where a key of a picture is looked up, as it has the same hash; then it acts."""

    def __init__(self, key, act):
        self._hash, self._act = hash(key), act

    def __hash__(self):
        return self._hash

    def __eq__(self, other):
        self._act()
        return False


@pytest.fixture
def burning(display, monkeypatch):
    """burning(): the module, with three sparks lit and drawn once, by the same random numbers each
    time, and the cache of pictures of their type."""
    sparks = imp.load_dynamic("sparks", os.path.join(BUILD, "examples", "native", "sparks.so"))
    types, create = [], larkspur.part_type_create

    def part_type_create():
        types.append(create())
        return types[-1]

    monkeypatch.setattr(larkspur, "part_type_create", part_type_create)

    def light():
        ctypes.CDLL(None).srand48(1)
        sparks.light(pygame.Surface((4, 4), pygame.SRCALPHA, 32), 20, 20, 3)
        assert sparks.frame(0, 0) == 3
        return sparks, particles.cache_of(types[-1])

    return light


def burn_out(sparks):
    while sparks.frame(0, 0):
        pass


def test_a_frame_within_a_frame_is_refused(burning):
    refused = []

    def draw_again():
        with pytest.raises(RuntimeError, match=r"sparks.frame\(\) is running"):
            sparks.frame(0, 0)
        refused.append(True)

    sparks, cache = burning()
    first = set(cache)
    sparks.frame(0, 0)
    second = set(cache) - first
    burn_out(sparks)
    sparks, cache = burning()
    cache.update((Key(key, draw_again), None) for key in second)
    assert sparks.frame(0, 0) == 3
    assert refused
    cache.clear()
    burn_out(sparks)


def test_a_stamp_is_made_once_and_then_found(display):
    sparks = imp.load_dynamic("sparks", os.path.join(BUILD, "examples", "native", "sparks.so"))
    sprite = larkspur.GMSprite()
    sprite.subimages = [pygame.Surface((4, 4), pygame.SRCALPHA, 32)]
    made = sparks.stamp(sprite, 8, 8, 0)
    assert made.get_size() == (8, 8) and sprite.scalecache.values() == [made]
    assert sparks.stamp(sprite, 8, 8, 0) is made
    assert sparks.stamp(sprite, 4, 8, 0) is not made
    leaks.assert_counts_unchanged(lambda: sparks.stamp(sprite, 8, 8, 0), sprite, made)
    with pytest.raises(ValueError):
        sparks.stamp(larkspur.GMSprite(), 8, 8, 0)
