import larkspur
import pygame
import pytest
from support import leaks, records, sdl, subprocess_python
from support.surfaces import assert_encoded, locked_encoded_surface

# In storage order, which is the order of the pickled state.
INTEGERS = records.int_names(records.SPRITE)


def make_sprite():
    sprite = larkspur.GMSprite()
    for number, name in enumerate(INTEGERS):
        setattr(sprite, name, number + 1)
    sprite.name = "spr_tree"
    sprite.subimages = ["first", "second"]
    return sprite


# --- Creation and pickling -----------------------------------------------------------------------


def test_new_sprites_have_no_name_no_images_and_an_empty_cache():
    sprite, other = larkspur.GMSprite("any", arguments=1), larkspur.GMSprite()
    assert sprite.name is None
    assert (sprite.subimages, sprite.scalecache) == ([], {})
    assert (type(sprite.subimages), type(sprite.scalecache)) == (list, dict)
    assert sprite.subimages is not other.subimages
    assert sprite.scalecache is not other.scalecache
    assert [getattr(sprite, name) for name in INTEGERS] == [0] * 15


def test_state_holds_15_integers_the_name_and_the_number_of_subimages():
    expected = (larkspur.GMSprite, (), tuple(range(1, 16)) + ("spr_tree", 2))
    assert make_sprite().__reduce__() == expected
    assert make_sprite().__reduce__("any", "arguments") == expected
    assert larkspur.GMSprite().__reduce__()[2] == (0,) * 15 + (None, 0)
    assert INTEGERS[:8] == [
        "w",
        "h",
        "leftbound",
        "rightbound",
        "topbound",
        "bottombound",
        "xorigin",
        "yorigin",
    ]


def test_pickling_takes_the_scale_cache_away(host):
    sprite = make_sprite()
    subimages = sprite.subimages
    sprite.scalecache["key"] = "scaled"
    state = sprite.__reduce__()[2]
    with pytest.raises(AttributeError):
        sprite.scalecache  # noqa: B018
    assert sprite.subimages is subimages
    assert sprite.__reduce__()[2] == state
    sprite.__setstate__(state)
    assert sprite.scalecache == {}


def test_a_sprite_without_scale_cache_dies_and_is_cleared_like_others():
    sprite = make_sprite()
    sprite.__reduce__()
    assert records.clear(sprite) == 0
    sprite = make_sprite()
    sprite.__reduce__()
    del sprite


def test_subimages_may_be_of_a_type_derived_from_list():
    class Derived(list):
        pass

    sprite = make_sprite()
    sprite.subimages = Derived("abc")
    assert sprite.__reduce__()[2][16] == 3


@pytest.mark.parametrize("subimages", [None, ("a", "b"), 5, {}])
def test_pickling_needs_a_list_of_subimages(subimages):
    sprite = make_sprite()
    sprite.subimages = subimages
    with pytest.raises(TypeError) as failure:
        sprite.__reduce__()
    assert "GMSprite.__reduce__() needs a list in subimages" in str(failure.value)
    assert type(subimages).__name__ in str(failure.value)


def test_pickling_needs_subimages():
    sprite = make_sprite()
    del sprite.subimages
    with pytest.raises(AttributeError) as failure:
        sprite.__reduce__()
    assert str(failure.value) == "subimages"


@pytest.mark.parametrize(
    "spoil",
    [lambda sprite: delattr(sprite, "name"), lambda sprite: setattr(sprite, "subimages", None)],
)
def test_a_failing_pickling_has_taken_the_scale_cache_away_all_the_same(spoil):
    sprite = make_sprite()
    spoil(sprite)
    with pytest.raises((AttributeError, TypeError)):
        sprite.__reduce__()
    assert not hasattr(sprite, "scalecache")


def test_releasing_the_scale_cache_may_change_the_sprite():
    class Meddler(object):
        def __del__(self):
            sprite.name, sprite.w = "spr_changed", 100
            del sprite.subimages[1:]
            sprite.scalecache = {"made": "meanwhile"}

    sprite = make_sprite()
    sprite.scalecache = Meddler()
    state = sprite.__reduce__()[2]
    assert state == (100,) + tuple(range(2, 16)) + ("spr_changed", 1)
    assert sprite.scalecache == {"made": "meanwhile"}


def test_releasing_the_scale_cache_may_pickle_the_sprite_again():
    class Meddler(object):
        def __del__(self):
            states.append(sprite.__reduce__())

    states, sprite = [], make_sprite()
    sprite.scalecache = Meddler()
    states.append(sprite.__reduce__())
    assert states[0] == states[1]


def test_pickling_keeps_the_counts():
    sprite, nameless, listless = make_sprite(), make_sprite(), make_sprite()
    del nameless.name
    listless.subimages = None
    cache = {}

    def use():
        sprite.scalecache = cache
        sprite.__reduce__()
        with pytest.raises(AttributeError):
            nameless.__reduce__()
        with pytest.raises(TypeError):
            listless.__reduce__()

    leaks.assert_counts_unchanged(
        use, sprite, nameless, listless, cache, sprite.name, sprite.subimages, larkspur.GMSprite
    )
    assert leaks.object_growth(use) == 0


# --- GMSprite_from_surface -----------------------------------------------------------------------


def painted(size=(32, 16), flags=0, depth=32):
    surface = pygame.Surface(size, flags, depth)
    surface.fill((10, 200, 30))
    surface.set_at((0, 0), (255, 0, 0))
    return surface


def test_sprite_has_the_size_of_the_surface(display):
    sprite = larkspur.GMSprite_from_surface(painted((32, 16)), "spr_made")
    sizes = {"w": 32, "h": 16, "rightbound": 32, "bottombound": 16}
    assert dict((name, getattr(sprite, name)) for name in INTEGERS) == dict(
        (name, sizes.get(name, 0)) for name in INTEGERS
    )
    assert sprite.name == "spr_made"
    assert sprite.scalecache == {}
    assert type(sprite) is larkspur.GMSprite


@pytest.mark.parametrize("depth", [8, 16, 24, 32])
def test_its_subimage_is_a_copy_in_the_display_format(display, depth):
    surface = painted(depth=depth)
    sprite = larkspur.GMSprite_from_surface(surface, "spr_made")
    assert [type(subimage) for subimage in sprite.subimages] == [pygame.Surface]
    subimage = sprite.subimages[0]
    assert subimage is not surface
    assert subimage.get_masks() == display.get_masks()
    assert subimage.get_bitsize() == display.get_bitsize()
    loss = 7 if depth == 16 else 0  # SDL leaves the bits empty that 16-bit colours lack
    for point in ((0, 0), (5, 5), (31, 15)):
        for found, wanted in zip(subimage.get_at(point), surface.get_at(point)):
            assert abs(found - wanted) <= loss
    surface.fill((0, 0, 0))
    assert subimage.get_at((0, 0))[0] >= 255 - loss


def test_colour_key_and_alpha_of_the_surface_stay(display):
    surface = painted()
    surface.set_colorkey((255, 0, 0))
    surface.set_alpha(100)
    subimage = larkspur.GMSprite_from_surface(surface, "spr_made").subimages[0]
    assert subimage.get_colorkey() == (255, 0, 0, 255)
    assert subimage.get_alpha() == 100
    assert surface.get_colorkey() == (255, 0, 0, 255)
    assert surface.get_alpha() == 100


def test_a_colour_key_that_is_no_place_in_the_palette_is_refused(display):
    """SDL would look it up behind the palette."""
    surface = pygame.Surface((8, 8), 0, 8)
    surface.set_colorkey(255)
    assert larkspur.GMSprite_from_surface(surface, "spr_made")
    if sdl.is_layer():  # refuses such a key itself
        return
    for key in (256, 0x7FFFFFF0, 0xFFFFFFFF):
        surface.set_colorkey(key)
        with pytest.raises(pygame.error) as raised:
            larkspur.GMSprite_from_surface(surface, "spr_made")
        assert str(raised.value) == "The colour key is no place in the palette"


def test_an_encoded_surface_is_converted(display):
    surface = painted()
    surface.set_colorkey((0, 0, 255), pygame.RLEACCEL)
    display.blit(surface, (0, 0))  # the first blit encodes it
    assert_encoded(surface)
    subimage = larkspur.GMSprite_from_surface(surface, "spr_made").subimages[0]
    assert subimage.get_at((0, 0)) == (255, 0, 0, 255)
    assert subimage.get_at((31, 15)) == (10, 200, 30, 255)
    assert surface.get_at((31, 15)) == (10, 200, 30, 255)


@pytest.mark.parametrize("alpha", [False, True])
def test_an_encoded_surface_that_is_locked_is_refused(display, alpha):
    """It is decoded then, and SDL would decode it again."""
    surface = locked_encoded_surface(alpha=alpha)
    if not sdl.is_layer():
        with pytest.raises(pygame.error) as raised:
            larkspur.GMSprite_from_surface(surface, "spr_made")
        assert str(raised.value) == "Surfaces must not be locked during blit"
    surface.unlock()
    assert larkspur.GMSprite_from_surface(surface, "spr_made")


def test_a_part_of_an_encoded_surface_is_converted(display):
    surface = painted((64, 64))
    part = surface.subsurface((0, 0, 8, 8))
    surface.set_colorkey((0, 0, 255), pygame.RLEACCEL)
    display.blit(surface, (0, 0))
    subimage = larkspur.GMSprite_from_surface(part, "spr_made").subimages[0]
    assert subimage.get_size() == (8, 8)
    assert subimage.get_at((0, 0)) == (255, 0, 0, 255)
    assert subimage.get_at((7, 7)) == (10, 200, 30, 255)


def test_a_derived_surface_and_one_without_area_are_converted(display):
    class Derived(pygame.Surface):
        pass

    sprite = larkspur.GMSprite_from_surface(Derived((4, 5)), None)
    assert (sprite.name, sprite.w, sprite.h) == (None, 4, 5)
    sprite = larkspur.GMSprite_from_surface(pygame.Surface((0, 5), 0, 32), "spr_made")
    assert (sprite.w, sprite.h, sprite.subimages[0].get_size()) == (0, 5, (0, 5))


def test_without_a_name_the_sprite_has_none(display):
    assert larkspur.GMSprite_from_surface(painted()).name is None


def test_the_caller_keeps_its_objects_and_none_gains_a_reference_by_each_name(display):
    surface, name = painted(), "spr_%d" % id(painted)

    def named():
        larkspur.GMSprite_from_surface(surface, name)

    def nameless():
        larkspur.GMSprite_from_surface(surface)

    assert leaks.count_changes(named, [surface, name, None]) == [0.0, 0.0, 1.0]
    assert leaks.count_changes(nameless, [surface, None]) == [0.0, 0.0]
    assert leaks.object_growth(named) == 0


@pytest.mark.parametrize(
    "arguments, message",
    [
        ((), "function takes at least 1 argument (0 given)"),
        ((None,), "GMSprite_from_surface() needs a pygame Surface, got NoneType"),
        ((5, "spr"), "GMSprite_from_surface() needs a pygame Surface, got int"),
        (("text", "spr"), "GMSprite_from_surface() needs a pygame Surface, got str"),
        ((painted(), "spr", "more"), "function takes at most 2 arguments (3 given)"),
    ],
)
def test_anything_but_a_surface_and_a_name_raises(display, arguments, message):
    with pytest.raises(TypeError) as failure:
        larkspur.GMSprite_from_surface(*arguments)
    assert str(failure.value) == message


def test_failures_keep_the_counts(display):
    name = "spr_%d" % id(painted)

    def fail():
        with pytest.raises(TypeError):
            larkspur.GMSprite_from_surface(name, name)

    leaks.assert_counts_unchanged(fail, name, larkspur.GMSprite, None)
    assert leaks.object_growth(fail) == 0


def test_without_a_display_it_raises():
    out, _ = subprocess_python.output("""
        import larkspur, pygame

        def close_display():
            larkspur.set_SDL_screen(pygame.display.set_mode((8, 8), 0, 32))
            pygame.display.quit()

        for prepare in (lambda: None, pygame.display.init, close_display):
            prepare()
            try:
                larkspur.GMSprite_from_surface(pygame.Surface((4, 4), 0, 32), "spr")
            except RuntimeError as error:
                print "GMSprite_from_surface()" in str(error)
        """)
    assert out == "True\nTrue\nTrue\n"


def test_the_surface_of_a_closed_display_raises():
    out, _ = subprocess_python.output("""
        import larkspur, pygame
        pygame.display.init()
        closed = pygame.display.set_mode((8, 8), 0, 32)
        pygame.display.quit()
        try:
            larkspur.GMSprite_from_surface(closed, "spr")
        except RuntimeError as error:
            print "closed" in str(error)
        """)
    assert out == "True\n"
