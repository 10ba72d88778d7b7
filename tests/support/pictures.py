"""Pixels of pygame Surfaces as numpy words, and comparing them."""

import os
import tempfile

import numpy
import pygame


def words(surface):
    """A copy of a 32-bit Surface's pixels, uint32 [y][x]; encoded surfaces are decoded for it."""
    return pygame.surfarray.pixels2d(surface).T.copy()


def put_words(surface, pixels):
    """Stores uint32 words [y][x] as a 32-bit Surface's pixels."""
    pygame.surfarray.pixels2d(surface)[...] = pixels.T


def random_words(width, height, seed):
    """uint32 words [y][x], the same for the same seed."""
    return (
        numpy.random.RandomState(seed)
        .randint(0, 2**32, size=(height, width), dtype=numpy.uint64)
        .astype(numpy.uint32)
    )


def assert_same_words(actual, expected, name):
    """Compares words [y][x]; when they differ, names the first differing pixel and saves expected,
    actual and difference as pictures called `name`."""
    assert actual.shape == expected.shape
    differing = numpy.argwhere(actual != expected)
    if not len(differing):
        return
    build = os.environ.get("LARKSPUR_BUILD_DIR", tempfile.gettempdir())
    directory = os.path.join(build, "pictures")
    if not os.path.isdir(directory):
        os.makedirs(directory)
    pictures = (
        ("expected", expected),
        ("actual", actual),
        ("difference", numpy.where(actual != expected, 0xFFFFFF, 0)),
    )
    for kind, pixels in pictures:
        rgb = numpy.stack([pixels >> shift & 255 for shift in (16, 8, 0)], axis=-1)
        picture = pygame.surfarray.make_surface(rgb.swapaxes(0, 1).astype(numpy.uint8))
        pygame.image.save(picture, os.path.join(directory, "%s-%s.png" % (name, kind)))
    y, x = differing[0]
    raise AssertionError(
        "%s: %d pixels differ, the first at (%d, %d): 0x%08X, expected 0x%08X; pictures in %s"
        % (name, len(differing), x, y, actual[y, x], expected[y, x], directory)
    )


def assert_same_picture(actual, expected, name):
    """As assert_same_words(), of two 32-bit Surfaces."""
    assert_same_words(words(actual), words(expected), name)
