"""The sprite scale cache, as native callers fill it, composed step by step by the side."""

import ctypes
import itertools
import resource
import sys

import larkspur
import pygame
import pytest
from models import pixel_model
from support import leaks, native, pending, sdl, subprocess_python
from support.pictures import assert_same_words, put_words, words
from support.sprites import scale_cache_add, sprite_of
from support.surfaces import (
    ABGR,
    ARGB,
    XRGB,
    buffer_of,
    encoded_surface,
    locked_encoded_surface,
    long_surface,
    printed,
    set_key_outside_palette,
    surface_of,
)

WHITE = 0xFFFFFF
KEY = ("walk", 3)


def add(
    sprite,
    key=KEY,
    subimage=0,
    width=None,
    height=None,
    angle=0,
    colour=WHITE,
    alpha=255,
    rgba_copy=0,
):
    """The stored Surface, or None; sizes are the subimage's unless given."""
    if width is None or height is None:
        natural = sprite.subimages[subimage].get_size()
        width, height = (
            given if given is not None else size for given, size in zip((width, height), natural)
        )
    return scale_cache_add(
        sprite, key, subimage, width, height, angle, 12345, colour, alpha, rgba_copy
    )


def soft_image(width=32, height=32, seed=1):
    return surface_of(width, height, ARGB, seed)


def changed(surface, change, value):
    """A copy of a Surface with change(bytes, value, masks) for its buffer."""
    copy = surface.copy()
    result = change(buffer_of(copy), value, sdl.masks_of(copy))
    ctypes.memmove(native.sdl_surface(copy).pixels, result.ctypes.data, len(result))
    return copy


def flipped(surface, left_right, top_bottom):
    pixels = words(surface)
    if left_right and top_bottom:
        pixels = pixel_model.turned_one_row_low(pixels)
    elif left_right:
        pixels = pixel_model.mirrored(pixels)
    elif top_bottom:
        pixels = pixel_model.upside_down(pixels)
    result = sdl.created(surface.get_width(), surface.get_height(), 32, sdl.masks_of(surface))
    if surface.get_flags() & pygame.SRCALPHA:
        sdl.set_alpha(result, sdl.SDL_SRCALPHA, 255)
    put_words(result, pixels)
    return result


def expected(image, width, height, angle, colour, alpha, rgba_copy, screen):
    """What has to be stored for an image."""
    result = image
    if width < 0 or height < 0:
        result = flipped(image, width < 0, height < 0)
    width, height = abs(width), abs(height)
    x_ratio, y_ratio = (
        float(wanted) / size for wanted, size in zip((width, height), image.get_size())
    )
    if angle:
        if (width, height) == image.get_size():
            result = sdl.rotozoomed(result, angle, 1.0)
        elif x_ratio == y_ratio:
            result = sdl.rotozoomed(result, angle, x_ratio)
        else:
            result = sdl.rotozoomed(sdl.zoomed(result, x_ratio, y_ratio), angle, 1.0)
    elif (width, height) != image.get_size():
        result = sdl.zoomed(result, x_ratio, y_ratio)
    if colour != WHITE:
        result = result.copy() if result is image else result
        result.fill(colour)
    if rgba_copy:
        copy = sdl.created(result.get_width(), result.get_height(), 32, sdl.masks_of(result))
        sdl.upper_blit(result, copy, 0, 0)
        if alpha != 255:
            sdl.set_alpha(copy, sdl.SDL_SRCALPHA, alpha & 255)
            last = sdl.created(result.get_width(), result.get_height(), 32, sdl.masks_of(screen))
            sdl.upper_blit(copy, last, 0, 0)
            copy = last
        return copy
    if alpha != 255:
        result = changed(result, pixel_model.faded, alpha & 255)
        sdl.set_alpha(result, sdl.SDL_SRCALPHA, alpha & 255)
    return result


def assert_same_surface(actual, wanted):
    assert type(actual) is pygame.Surface
    assert actual.get_flags() == wanted.get_flags()
    assert sdl.masks_of(actual) == sdl.masks_of(wanted)
    assert actual.get_alpha() == wanted.get_alpha()
    assert actual.get_colorkey() == wanted.get_colorkey()
    assert actual.get_clip() == actual.get_rect()
    assert_same_words(words(actual), words(wanted), "scaled sprite")


# ---- the rules one by one


def test_nothing_to_change_stores_the_subimage_itself(display, capfd):
    image = soft_image()
    sprite = sprite_of(soft_image(5, 5), image)
    assert add(sprite, subimage=1) is image
    assert sprite.scalecache == {KEY: image}
    assert printed(capfd) == ("", "")


@pytest.mark.parametrize("width, height", [(-32, 20), (32, -20), (-32, -20)])
def test_negative_sizes_mirror_at_natural_size(display, width, height):
    image = soft_image(32, 20)
    sprite = sprite_of(image)
    result = add(sprite, width=width, height=height)
    pixels = {
        (-32, 20): pixel_model.mirrored,
        (32, -20): pixel_model.upside_down,
        (-32, -20): pixel_model.turned_one_row_low,
    }[width, height](words(image))
    assert_same_words(words(result), pixels, "mirrored")
    assert sprite.scalecache[KEY] is result


@pytest.mark.parametrize(
    "width, height, angle, compose",
    [
        (64, 64, 45, lambda image: sdl.rotozoomed(image, 45, 2.0)),
        (32, 32, 45, lambda image: sdl.rotozoomed(image, 45, 1.0)),
        (64, 32, 45, lambda image: sdl.rotozoomed(sdl.zoomed(image, 2.0, 1.0), 45, 1.0)),
        (64, 16, 0, lambda image: sdl.zoomed(image, 2.0, 0.5)),
        (20, 20, -30, lambda image: sdl.rotozoomed(image, -30, 0.625)),
        (32, 32, 360, lambda image: sdl.rotozoomed(image, 360, 1.0)),
    ],
)
def test_scaling_and_turning(display, width, height, angle, compose):
    image = soft_image()
    assert_same_surface(
        add(sprite_of(image), width=width, height=height, angle=angle), compose(image)
    )


def test_colour_fills_a_copy(display):
    image = soft_image()
    before = words(image)
    sprite = sprite_of(image)
    result = add(sprite, colour=0x123456)
    assert result is not image
    wanted = image.copy()
    wanted.fill(0x123456)
    assert_same_surface(result, wanted)
    assert (words(result) == 0x123456).all()
    assert_same_words(words(image), before, "the sprite's own")


def test_colour_fills_a_transformed_copy_in_place(display):
    result = add(sprite_of(soft_image()), width=8, height=8, colour=0x00FF00)
    assert (words(result) == 0x00FF00).all()


def test_no_colour_is_the_displays_white(display):
    white = native.variable(ctypes.c_uint32, "COLOR_WHITE")
    image = soft_image()
    larkspur.set_SDL_screen(pygame.Surface((4, 4), 0, 16, (0xF800, 0x7E0, 0x1F, 0)))
    try:
        assert white.value == 0xFFFF
        assert add(sprite_of(image), colour=0xFFFF) is image
        assert (words(add(sprite_of(image), colour=WHITE)) == WHITE).all()
    finally:
        larkspur.set_SDL_screen(display)


def test_alpha_fades_a_copy(display):
    image = soft_image()
    before = words(image)
    result = add(sprite_of(image), alpha=128)
    assert_same_words(words(image), before, "the sprite's own")
    assert image.get_alpha() == 255
    wanted = changed(image, pixel_model.faded, 128)
    assert_same_words(words(result), words(wanted), "faded")
    # Where pixels have an alpha each, that of the whole surface counts nowhere; SDL 2 drops it.
    assert native.sdl_surface(result).format.contents.alpha == (255 if sdl.is_layer() else 128)


@pytest.mark.parametrize("alpha, byte", [(0, 0), (256, 0), (-1, 255), (511, 255), (0x1234, 0x34)])
def test_alpha_counts_as_a_byte(display, alpha, byte):
    for rgba_copy in (0, 1):
        image = soft_image()
        result = add(sprite_of(image), alpha=alpha, rgba_copy=rgba_copy)
        assert_same_surface(result, expected(image, 32, 32, 0, WHITE, alpha, rgba_copy, display))
        if not rgba_copy:
            assert_same_words(words(result), words(changed(image, pixel_model.faded, byte)), "byte")


def test_rgba_copy_is_a_fresh_surface_of_the_images_masks(display):
    image = surface_of(9, 5, ABGR)
    result = add(sprite_of(image), rgba_copy=7)
    assert result is not image and sdl.masks_of(result) == ABGR
    wanted = sdl.created(9, 5, 32, ABGR)
    sdl.upper_blit(image, wanted, 0, 0)
    assert_same_surface(result, wanted)


def test_faded_rgba_copy_has_the_displays_masks(display):
    image = surface_of(9, 5, ABGR)
    result = add(sprite_of(image), rgba_copy=1, alpha=100)
    assert sdl.masks_of(result) == sdl.masks_of(display)
    assert_same_surface(result, expected(image, 9, 5, 0, WHITE, 100, 1, display))


def images():
    keyed = surface_of(12, 10, XRGB, seed=5)
    keyed.set_colorkey(keyed.get_at((3, 3)))
    whole = surface_of(40, 30, ARGB, seed=6)
    return [
        ("alpha", soft_image(13, 9)),
        ("opaque", surface_of(8, 8, XRGB)),
        ("keyed", keyed),
        ("encoded", encoded_surface(14, 11)),
        ("part", whole.subsurface((5, 3, 20, 10))),
    ]


@pytest.mark.parametrize("name", [name for name, _ in images()])
def test_every_combination(display, name):
    image = dict(images())[name]
    width, height = image.get_size()
    for sizes, angle, colour, alpha, rgba_copy in itertools.product(
        [
            (width, height),
            (-width, height),
            (width + 7, height),
            (-2 * width, -2 * height),
            (3, -height),
        ],
        (0, 30),
        (WHITE, 0x8000),
        (255, 60),
        (0, 1),
    ):
        if name == "encoded" and sizes[0] < 0 and (angle or rgba_copy):
            continue  # a mirrored copy asks SDL to encode it; the plain cases show it
        result = add(
            sprite_of(image),
            width=sizes[0],
            height=sizes[1],
            angle=angle,
            colour=colour,
            alpha=alpha,
            rgba_copy=rgba_copy,
        )
        wanted = expected(image, sizes[0], sizes[1], angle, colour, alpha, rgba_copy, display)
        assert_same_words(words(result), words(wanted), "scaled sprite")
        assert sdl.masks_of(result) == sdl.masks_of(wanted)


def test_an_entry_of_the_same_key_is_replaced_and_no_other(display):
    sprite = sprite_of(soft_image())
    sprite.scalecache["other"] = 1
    first = add(sprite, width=8)
    second = add(sprite, width=9)
    assert sprite.scalecache == {"other": 1, KEY: second} and second is not first


@pytest.mark.parametrize("key", ["text", 5, None, (1, (2, "x")), 2.5, frozenset([1])])
def test_any_hashable_key(display, key):
    sprite = sprite_of(soft_image())
    result = add(sprite, key=key, width=5)
    assert sprite.scalecache == {key: result}


def test_subimages_may_be_any_sequence_counted_from_either_end(display):
    first, last = soft_image(seed=1), soft_image(seed=2)
    sprite = sprite_of(first, last)
    assert scale_cache_add(sprite, KEY, -1, 32, 32, 0, 0, WHITE, 255, 0) is last
    sprite.subimages = (first, last)
    assert add(sprite, subimage=1) is last


# ---- failures


def assert_fails(capfd, sprite, message, key=KEY, **arguments):
    before = dict(sprite.scalecache) if isinstance(sprite.scalecache, dict) else None
    assert add(sprite, key=key, **arguments) is None
    error = printed(capfd)
    assert error.out == "" and error.err.splitlines(True)[-1:] == [message]
    if before is not None:
        assert sprite.scalecache == before


@pytest.mark.parametrize("index", [1, 100, -2, 2**31 - 1, -(2**31)])
def test_a_subimage_that_is_not_there(display, capfd, index):
    assert_fails(
        capfd, sprite_of(soft_image()), "sequence error.\n", subimage=index, width=1, height=1
    )


@pytest.mark.parametrize("subimages", [5, None, {}, set()])
def test_subimages_that_are_no_sequence(display, capfd, subimages):
    sprite = larkspur.GMSprite()
    sprite.subimages = subimages
    assert_fails(capfd, sprite, "sequence error.\n", width=1, height=1)


def test_a_sprite_without_subimages(display, capfd):
    sprite = larkspur.GMSprite()
    del sprite.subimages
    assert_fails(capfd, sprite, "sequence error.\n", width=1, height=1)


def test_null_pointers_store_nothing(display, capfd):
    pointers = [ctypes.c_void_p] * 2 + [ctypes.c_int] * 8
    add_pointers = native.function("sprite_scalecache_add", ctypes.c_void_p, *pointers)
    sprite, key = sprite_of(soft_image()), KEY
    assert add_pointers(None, id(key), 0, 1, 1, 0, 0, WHITE, 255, 0) is None
    assert printed(capfd) == ("", "sequence error.\n")
    assert add_pointers(id(sprite), None, 0, 1, 1, 0, 0, WHITE, 255, 0) is None
    assert printed(capfd) == ("", "Error storing item in scalecache.\n")
    assert sprite.scalecache == {}


@pytest.mark.parametrize("wrong", [5, None, object(), larkspur.BackgroundData()])
def test_what_is_no_sprite(display, capfd, wrong):
    assert scale_cache_add(wrong, KEY, 0, 1, 1, 0, 0, WHITE, 255, 0) is None
    assert printed(capfd) == ("", "sequence error.\n")


@pytest.mark.parametrize("subimage", [5, None, "image"])
def test_a_subimage_that_is_no_surface(display, capfd, subimage):
    for arguments in [{}, {"colour": 5}, {"alpha": 5}, {"rgba_copy": 1}, {"angle": 5}]:
        assert_fails(capfd, sprite_of(subimage), "No source?\n", width=4, height=4, **arguments)


def test_transforms_that_yield_nothing(display, capfd):
    assert_fails(capfd, sprite_of(soft_image()), "No source?\n", width=20000, height=32)
    assert_fails(capfd, sprite_of(soft_image()), "No source?\n", width=32, height=2**31 - 1)
    assert_fails(capfd, sprite_of(soft_image()), "No source?\n", width=-(2**31) + 1, height=32)
    assert_fails(
        capfd, sprite_of(soft_image()), "No source?\n", width=2**31 - 1, height=2**31 - 1, angle=45
    )
    assert_fails(capfd, sprite_of(pygame.Surface((0, 5), 0, 32)), "No source?\n", width=4, height=4)
    assert_fails(capfd, sprite_of(pygame.Surface((6, 6), 0, 8)), "No source?\n", width=-6)
    assert_fails(
        capfd, sprite_of(pygame.Surface((6, 6), 0, 8)), "No source?\n", width=-6, height=-6
    )


def test_a_subsurface_of_a_closed_display_is_not_copied():
    """pygame's copy() would end the process."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, pending
        host.install_modules()
        import larkspur
        screen = pygame.display.set_mode((64, 48), 0, 32)
        larkspur.set_SDL_screen(screen)
        sprite = larkspur.GMSprite()
        sprite.subimages = [screen.subsurface((4, 5, 20, 10))]
        pygame.display.quit()
        print pending.add_to_scale_cache(sprite, "key", 20, 10, 5)
        """
    )
    assert out.splitlines()[-1] == "(None, None)" and err == "No source?\n"


def test_mirroring_an_8_bit_image_says_why(display, capfd):
    add(sprite_of(pygame.Surface((6, 6), 0, 8)), width=-6)
    assert printed(capfd).err == "Cannot horizontally flip non-32-bit surfaces.\nNo source?\n"


def test_long_images_are_not_scaled_and_say_why(display, capfd):
    """Nor turned, for which images of 16 bits need a copy."""
    line = "larkspur: cannot scale a surface %s.\nNo source?\n"
    long_side = line % "with a side of more than 32767 pixels"
    no_copy = line % "of neither 8 nor 32 bits that has more than 16383 columns"
    for size, bits, arguments, expected_lines in [
        ((1, 40000), 32, {"height": 10}, long_side),
        ((1, 40000), 8, {"height": 10}, long_side),
        ((16384, 1), 16, {"angle": 90}, no_copy),
    ]:
        assert add(sprite_of(long_surface(size, bits)), **arguments) is None
        assert printed(capfd).err == expected_lines


def test_absurdly_large_copies_are_not_made(display, capfd):
    peak_kilobytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    for width, height, angle in [
        (14000, 14000, 0),
        (14000, 14000, 30),
        (14000, 60000, 5),
        (16000, -16000, 0),
    ]:
        assert_fails(
            capfd, sprite_of(soft_image()), "No source?\n", width=width, height=height, angle=angle
        )
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak_kilobytes < 16 * 1024


@pytest.mark.parametrize("size", [(0, 0), (0, 32), (32, 0)])
def test_sizes_of_nothing_come_out_as_one_pixel(display, size):
    image = soft_image()
    result = add(sprite_of(image), width=size[0], height=size[1])
    width, height = (max(side, 1) for side in size)
    assert_same_words(words(result), words(image)[:height, :width], "not mirrored")


def test_an_unhashable_key(display, capfd):
    assert_fails(capfd, sprite_of(soft_image()), "Error storing item in scalecache.\n", key=[])


@pytest.mark.parametrize("cache", [None, 5, []])
def test_a_cache_that_is_no_dictionary(display, capfd, cache):
    sprite = sprite_of(soft_image())
    sprite.scalecache = cache
    assert_fails(capfd, sprite, "Error storing item in scalecache.\n")


def test_a_pickled_sprite_has_no_cache(display, capfd):
    sprite = sprite_of(soft_image())
    sprite.__reduce__()
    assert add(sprite) is None
    assert printed(capfd).err == "Error storing item in scalecache.\n"
    with pytest.raises(AttributeError):
        sprite.scalecache  # noqa: B018


def test_a_closed_display(display, capfd):
    sprite = sprite_of(soft_image())
    pygame.display.quit()
    assert_fails(capfd, sprite, "No source?\n", rgba_copy=1, alpha=5)
    assert add(sprite, width=5).get_size() == (5, 32)


def test_exceptions_are_left_as_they_were(display, capfd):
    sprite = sprite_of(soft_image())
    for arguments in [dict(key=[]), dict(subimage=9, width=1, height=1), dict(width=30000)]:
        defaults = [("key", KEY), ("subimage", 0), ("width", 32), ("height", 32)]
        values = [arguments.get(name, default) for name, default in defaults]
        outcome = pending.call(add, sprite, *values)
        assert outcome.succeeded and outcome.result is None and outcome.exception is None
    printed(capfd)


def test_a_pending_exception_is_kept_and_the_copy_made(display, capfd):
    sprite = sprite_of(soft_image())
    before = ValueError("pending")
    for size, colour in [(32, 0x8000), (16, WHITE), (-32, WHITE)]:
        result, exception = pending.add_to_scale_cache(sprite, KEY, size, 32, colour, before)
        assert sprite.scalecache == {KEY: result} and exception is before
    for key, width in [([], 32), (KEY, 30000)]:
        assert pending.add_to_scale_cache(sprite, key, width, 32, WHITE, before) == (None, before)
    printed(capfd)


# ---- code that runs in between


class Image(pygame.Surface):
    """A subimage whose methods are Python code."""

    act = None

    def copy(self):
        if self.act:
            return self.act()
        return pygame.Surface.copy(self)


@pytest.mark.parametrize("arguments", [dict(colour=5), dict(alpha=5), dict(colour=5, rgba_copy=1)])
@pytest.mark.parametrize("copy", [None, 5, "copy"])
def test_a_copy_that_is_no_surface(display, capfd, arguments, copy):
    image = Image((4, 4), pygame.SRCALPHA, 32)
    image.act = lambda: copy
    if arguments == dict(colour=5):
        # Nothing of a Surface is asked of the copy any more, so it is stored as it is.
        assert add(sprite_of(image), **arguments) is copy
    else:
        assert_fails(capfd, sprite_of(image), "No source?\n", **arguments)


def test_a_failing_copy(display, capfd):
    image = Image((4, 4), pygame.SRCALPHA, 32)

    def fail():
        raise KeyError("copy")

    image.act = fail
    assert_fails(capfd, sprite_of(image), "No source?\n", colour=5)
    assert_fails(capfd, sprite_of(image), "No source?\n", alpha=5)


@pytest.mark.parametrize("arguments", [dict(colour=5), dict(alpha=5)])
def test_no_copy_of_a_colour_key_that_is_no_place_in_the_palette(display, capfd, arguments):
    """SDL would look it up behind the palette."""
    image = pygame.Surface((4, 4), 0, 8)
    if set_key_outside_palette(image, 0x7FFFFFF0):
        assert_fails(capfd, sprite_of(image), "No source?\n", **arguments)
    else:
        assert add(sprite_of(image), **arguments).get_size() == (4, 4)


@pytest.mark.parametrize("alpha", [False, True])
@pytest.mark.parametrize("arguments", [dict(colour=5), dict(alpha=5)])
def test_no_copy_of_an_encoded_subimage_that_is_locked(display, capfd, arguments, alpha):
    image = locked_encoded_surface(alpha=alpha)
    if sdl.is_layer():  # which converts it all the same
        assert add(sprite_of(image), **arguments).get_size() == (8, 6)
    else:
        assert_fails(capfd, sprite_of(image), "No source?\n", **arguments)


def test_no_fading_of_an_encoded_copy_that_is_locked(display, capfd):
    image = Image((8, 6), pygame.SRCALPHA, 32)
    image.act = lambda: locked_encoded_surface(alpha=True)
    if sdl.is_layer():
        assert add(sprite_of(image), alpha=5).get_size() == (8, 6)
    else:
        assert_fails(capfd, sprite_of(image), "No source?\n", alpha=5)


def test_a_failing_fill_is_not_checked(display):
    class Unfilled(pygame.Surface):
        def copy(self):
            return Unfilled(self.get_size(), pygame.SRCALPHA, 32)

        def fill(self, colour):
            raise ValueError(colour)

    result = add(sprite_of(Unfilled((4, 4), pygame.SRCALPHA, 32)), colour=5)
    assert type(result) is Unfilled and (words(result) == 0).all()


def test_a_copy_encoded_for_a_target_that_is_gone():
    """SDL would look at that target again when pygame unlocks what it has filled."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, sprites, surfaces
        host.install_modules()
        import larkspur
        larkspur.set_SDL_screen(pygame.display.set_mode((64, 48), 0, 32))
        class Image(pygame.Surface):
            def copy(self):
                image = pygame.Surface((6, 5), pygame.SRCALPHA, 32)
                surfaces.encode_by_alpha(image)
                return image
        sprite = sprites.sprite_of(Image((4, 4), pygame.SRCALPHA, 32))
        image = sprites.scale_cache_add(sprite, "key", 0, 4, 4, 0, 0, 0x10203, 255, 0)
        print image.get_size(), image.get_at((5, 4))
        """
    )
    assert out.splitlines()[-1] == "(6, 5) (1, 2, 3, 0)"


def test_a_copy_that_takes_everything_away(display):
    image = Image((4, 4), pygame.SRCALPHA, 32)
    sprite = sprite_of(image)

    def take_away():
        sprite.subimages = sprite.scalecache = None
        sprite.scalecache = {}
        return pygame.Surface((4, 4), pygame.SRCALPHA, 32)

    image.act = take_away
    del image
    result = add(sprite, colour=7)
    assert sprite.scalecache == {KEY: result}


def test_a_key_whose_code_takes_the_cache_away(display):
    class Key(object):
        def __hash__(self):
            sprite.scalecache = {}
            sprite.subimages = []
            return 1

    sprite = sprite_of(soft_image())
    key = Key()
    result = scale_cache_add(sprite, key, 0, 16, 16, 0, 0, WHITE, 255, 0)
    assert result.get_size() == (16, 16) and sprite.scalecache == {}


# ---- references


@pytest.mark.parametrize(
    "arguments",
    [
        {},
        dict(width=8),
        dict(width=-32),
        dict(width=-8, height=-8, angle=30),
        dict(colour=5),
        dict(alpha=5),
        dict(rgba_copy=1),
        dict(rgba_copy=1, alpha=9, colour=3, width=5),
    ],
)
def test_the_caller_and_the_cache_own_a_reference_each(display, arguments):
    image = soft_image()
    sprite = sprite_of(image)
    result = add(sprite, **arguments)
    own = 2 if result is image else 0  # the name `image` and the list
    assert sys.getrefcount(result) == 3 + own
    sprite.scalecache.clear()
    assert sys.getrefcount(result) == 2 + own
    del result
    leaks.assert_counts_unchanged(lambda: add(sprite, **arguments), sprite, sprite.subimages)


def test_failures_do_not_leak(display, capfd):
    image = soft_image()
    sprite, unhashable = sprite_of(image), []
    for arguments in [
        dict(key=unhashable),
        dict(key=unhashable, width=5, alpha=3, rgba_copy=1),
        dict(width=30000, height=1),
        dict(subimage=9, width=1, height=1),
    ]:
        leaks.assert_counts_unchanged(
            lambda: add(sprite, **arguments), sprite, image, unhashable, KEY
        )
    printed(capfd)


def test_a_hundred_thousand_copies_leave_nothing_behind(display):
    sprite = sprite_of(soft_image(4, 4))

    def run(count):
        for number in xrange(count):
            scale_cache_add(
                sprite,
                KEY,
                0,
                -5,
                6,
                number % 3 * 30,
                0,
                number % 2 or WHITE,
                255 - number % 5,
                number % 7 == 0,
            )

    run(5000)
    peak_kilobytes = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    run(100000)
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss - peak_kilobytes < 1024
