"""Room_Draw(): frames per second, rooms without views, and the choice of views."""

import json
import random

import larkspur
import pygame
import pytest
from support import leaks, native, pending, sdl, subprocess_python
from support.host import Plain, Raising, RaisingAttributes
from support.pictures import assert_same_picture
from support.rooms import (
    Drawable,
    compiled,
    make_background,
    make_instance,
    make_room,
    make_tile,
    make_view_room,
)


class HostRoom(object):
    """A room that is an object of the host's own instead of a GMRoom."""

    def __init__(self, **members):
        self.view_enabled = 0
        self.drawn_objects = []
        self.tiles = []
        self.background_calls = []
        self.__dict__.update(members)

    def DrawBackgrounds(self, *arguments):
        self.background_calls.append(arguments)


def patterned(size, seed, flags=0, depth=32):
    """A surface of random pixels."""
    surface = pygame.Surface(size, flags, depth)
    source = random.Random(seed)
    for y in range(size[1]):
        for x in range(size[0]):
            surface.set_at((x, y), [source.randrange(256) for _ in range(4)])
    return surface


def failure_of(room, surface):
    """The exception with which a frame fails; None for a failure without one."""
    outcome = pending.call(larkspur.Room_Draw, room, surface)
    assert not outcome.succeeded
    return outcome.exception


def draw_frame(room, surface):
    """Draws a frame that succeeds and leaves no exception."""
    assert pending.call(larkspur.Room_Draw, room, surface) == (True, None, None)


# --- Arguments -----------------------------------------------------------------------------------


@pytest.mark.parametrize("arguments", [(), (1,), (1, 2, 3)])
def test_takes_a_room_and_a_surface(host, arguments):
    with pytest.raises(TypeError):
        larkspur.Room_Draw(*arguments)


def test_returns_none(host):
    assert larkspur.Room_Draw(make_room(), host.screen) is None


@pytest.mark.parametrize("enabled", [0, 1])
@pytest.mark.parametrize("surface", [None, 7, "screen", Raising()])
def test_what_is_no_surface_is_refused(host, surface, enabled):
    log = []
    room = make_view_room(view_enabled=enabled, drawn_objects=[Drawable(log, "a")])
    error = failure_of(room, surface)
    assert isinstance(error, TypeError)
    assert "Room_Draw()" in str(error) and type(surface).__name__ in str(error)
    assert log == [] and host.calls == []


def test_surface_of_a_closed_display_is_refused(host):
    pygame.display.quit()
    error = failure_of(make_room(), host.screen)
    assert isinstance(error, RuntimeError) and "closed" in str(error)


def test_surface_other_than_the_display_is_drawn_on(host):
    surface = pygame.Surface((40, 40), 0, 32)
    host.game.backgrounds.append(make_background(patterned((16, 16), 1)))
    draw_frame(make_room(tiles=[make_tile(x=3, y=5)]), surface)
    expected = pygame.Surface((40, 40), 0, 32)
    expected.blit(host.game.backgrounds[0].surf, (3, 5))
    assert_same_picture(surface, expected, "room-surface")


# --- Frames per second ---------------------------------------------------------------------------

CLOCKED_FRAMES = """
import ctypes, json, sys
from support import host
gmapi = sys.modules["gmapi"] = host.RefusingModule("gmapi")
host.install_modules()
import larkspur, pygame
from support import native, pending, rooms
pygame.display.init()
screen = pygame.display.set_mode((32, 32), 0, 32)
host.set_up(larkspur, screen)
room = rooms.make_room()
clock = ctypes.c_long.in_dll(ctypes.CDLL(None), "clock_seconds")
second = native.variable(ctypes.c_int32, "this_second")
result = [["import", second.value, getattr(gmapi, "fps", None)]]

def frame(what, at, room=room):
    clock.value = at
    outcome = pending.call(larkspur.Room_Draw, room, screen)
    result.append([what, outcome.succeeded, type(outcome.exception).__name__,
                   second.value, getattr(gmapi, "fps", None)])

frame("first", 1000)
frame("same second", 1000)
frame("next second", 1001)
frame("frame that fails", 1001, object())
frame("after one of two failed", 1002)
gmapi.refused = ("fps",)
frame("fps refused", 1003)
gmapi.refused = ()
frame("refused second again", 1003)
frame("clock set back", 5)
frame("beyond 32 bits", 5 + 2 ** 32)
print json.dumps(result)
"""


def test_frames_of_the_last_second_are_published_when_the_second_changes():
    status, out, err = subprocess_python.run(
        CLOCKED_FRAMES, preload=[native.build_path("helpers/fixed_clock.so")]
    )
    assert status == 0, err
    assert json.loads(out.splitlines()[-1]) == [
        ["import", -1, None],
        ["first", True, "NoneType", 1000, 0],
        ["same second", True, "NoneType", 1000, 0],
        ["next second", True, "NoneType", 1001, 2],
        ["frame that fails", False, "AttributeError", 1001, 2],
        ["after one of two failed", True, "NoneType", 1002, 2],
        ["fps refused", False, "KeyError", 1002, 2],  # not counted, and nothing moved on
        ["refused second again", True, "NoneType", 1003, 1],
        ["clock set back", True, "NoneType", 5, 1],
        ["beyond 32 bits", True, "NoneType", 5, 1],
    ]


def test_native_callers_can_reset_the_second(host):
    second = native.variable(native.ctypes.c_int32, "this_second")
    second.value = 3
    draw_frame(make_room(), host.screen)
    assert type(host.gmapi.fps) is int
    assert second.value > 3


# --- What is read from the room ------------------------------------------------------------------


@pytest.mark.parametrize("missing", ["view_enabled", "drawn_objects", "tiles"])
def test_missing_attribute_fails_the_frame(host, missing):
    log = []
    room = HostRoom(drawn_objects=[Drawable(log, "a")])
    delattr(room, missing)
    error = failure_of(room, host.screen)
    assert isinstance(error, AttributeError) and missing in str(error)
    assert log == []


def test_missing_visibility_fails_the_frame(host):
    error = failure_of(HostRoom(view_enabled=1), host.screen)
    assert isinstance(error, AttributeError) and "view_visible" in str(error)


def test_view_enabled_without_a_truth_value_fails_the_frame(host):
    assert isinstance(failure_of(HostRoom(view_enabled=Raising()), host.screen), ZeroDivisionError)


@pytest.mark.parametrize(
    "objects, error", [(None, TypeError), (7, TypeError), (Raising(), ZeroDivisionError)]
)
def test_drawn_objects_must_make_a_tuple(host, capfd, objects, error):
    assert isinstance(failure_of(make_room(drawn_objects=objects), host.screen), error)
    assert capfd.readouterr()[1] == "Error making tuple from drawn_objects\n"
    assert host.calls == []


@pytest.mark.parametrize("room", [None, 7, "room", object(), Raising(), RaisingAttributes()])
def test_what_is_no_room_fails_the_frame(host, room):
    assert isinstance(failure_of(room, host.screen), (AttributeError, ZeroDivisionError))


def test_reading_a_room_stops_at_the_first_failure(host):
    """Its attributes are asked for in this order, and none after the one that fails."""
    asked = []

    class Asked(HostRoom):
        def __getattribute__(self, name):
            if not name.startswith("_"):
                asked.append(name)
            return HostRoom.__getattribute__(self, name)

    room = Asked()
    del asked[:]
    draw_frame(room, host.screen)
    assert asked[:3] == ["view_enabled", "drawn_objects", "DrawBackgrounds"]
    assert [name for name in asked[3:] if name != "background_calls"] == ["tiles"]


# --- Rooms without views: backgrounds ------------------------------------------------------------


def test_backgrounds_are_drawn_first_and_at_the_origin(host):
    room = make_room()
    room.drawn_objects = [Drawable(host.calls, "object")]
    draw_frame(room, host.screen)
    assert host.calls == [("Room_DrawBackgrounds", (room, host.screen, 0, 0)), "object"]
    _, (_, _, x, y) = host.calls[0]
    assert type(x) is int and x is y


def test_any_room_with_the_attributes_will_do(host):
    log = []
    room = HostRoom(drawn_objects=(Drawable(log, "a"),))
    draw_frame(room, host.screen)
    assert room.background_calls == [(host.screen, 0, 0)]
    assert log == ["a"] and room.view_current == 0


def test_failing_backgrounds_fail_the_frame(host, capfd):
    log = []
    host.results["Room_DrawBackgrounds"] = KeyError("no picture")
    error = failure_of(make_room(drawn_objects=[Drawable(log, "a")]), host.screen)
    assert isinstance(error, KeyError)
    assert capfd.readouterr()[1] == "Drawing backgrounds failed.\n"
    assert log == []


def test_backgrounds_that_leave_an_exception_fail_the_frame(host, capfd):
    """Registering succeeds though a callable is missing, and leaves that pending."""
    log = []
    del host.gm6.Room_Leave
    room = HostRoom(
        DrawBackgrounds=larkspur.RegisterInstancesDict, drawn_objects=[Drawable(log, "a")]
    )
    error = failure_of(room, host.screen)
    assert isinstance(error, AttributeError) and "Room_Leave" in str(error)
    assert capfd.readouterr()[1] == "" and log == []


def test_missing_background_method_fails_the_frame(host, capfd):
    error = failure_of(Plain(view_enabled=0, drawn_objects=[], tiles=[]), host.screen)
    assert isinstance(error, AttributeError) and "DrawBackgrounds" in str(error)
    assert capfd.readouterr()[1] == ""


def test_scales_and_offset_are_reset_without_views(host):
    scales = [
        native.variable(native.ctypes.c_double, "g_view_" + axis) for axis in ("xscale", "yscale")
    ]
    for scale in scales:
        scale.value = 3.5
    seen = []

    class Seeing(HostRoom):
        def DrawBackgrounds(self, *arguments):
            seen.extend(scale.value for scale in scales)

    draw_frame(Seeing(), host.screen)
    assert seen == [1.0, 1.0]


# --- Rooms without views: tiles ------------------------------------------------------------------


def draw_tiles_with_pygame(surface, tiles, backgrounds):
    """Each tile as pygame's blit draws it, with coordinates as 16 bits hold them."""

    def signed(value):
        return (value + 0x8000) % 0x10000 - 0x8000

    for tile in tiles:
        surface.blit(
            backgrounds[tile.background_idx].surf,
            (signed(tile.x), signed(tile.y)),
            (signed(tile.tilex), signed(tile.tiley), tile.w % 0x10000, tile.h % 0x10000),
        )


def check_tiles(host, tiles):
    expected = host.screen.copy()
    draw_tiles_with_pygame(expected, tiles, host.game.backgrounds)
    draw_frame(make_room(tiles=tiles), host.screen)
    assert_same_picture(host.screen, expected, "room-display")


SURFACES = {
    "plain": lambda: patterned((64, 48), 2),
    "alpha": lambda: patterned((64, 48), 3, pygame.SRCALPHA),
    "16 bits": lambda: patterned((64, 48), 4, depth=16),
    "24 bits": lambda: patterned((64, 48), 5, depth=24),
    "part": lambda: patterned((80, 80), 6).subsurface((9, 7, 64, 48)),
    "part of a part": lambda: (
        patterned((80, 80), 6).subsurface((9, 7, 66, 50)).subsurface((1, 1, 64, 48))
    ),
}


def with_key(flags=0):
    surface = patterned((64, 48), 7)
    surface.fill((1, 2, 3), (8, 8, 30, 9))
    surface.set_colorkey((1, 2, 3), flags)
    return surface


SURFACES["colour key"] = with_key
SURFACES["encoded"] = lambda: with_key(pygame.RLEACCEL)


@pytest.mark.parametrize("name", sorted(SURFACES))
def test_tiles_are_blits(host, name):
    host.game.backgrounds[:] = [make_background(SURFACES[name]())]
    source = random.Random(11)
    check_tiles(
        host,
        [
            make_tile(
                x=source.randint(-70, 330),
                y=source.randint(-50, 250),
                tilex=source.randint(-20, 70),
                tiley=source.randint(-20, 60),
                w=source.randint(0, 70),
                h=source.randint(0, 60),
            )
            for _ in range(300)
        ],
    )


def test_tile_of_a_background_without_an_area(host):
    """SDL 1.2 draws nothing. SDL 2 refuses the blit, which fails the frame as it fails pygame's."""
    host.game.backgrounds[:] = [make_background(pygame.Surface((0, 0), 0, 32))]
    before = host.screen.copy()
    outcome = pending.call(larkspur.Room_Draw, make_room(tiles=[make_tile()]), host.screen)
    assert outcome.succeeded is not sdl.is_layer()
    assert_same_picture(host.screen, before, "no-area")


def test_tiles_are_drawn_in_list_order_from_their_backgrounds(host):
    for shade in (60, 120, 180):
        surface = pygame.Surface((20, 20), 0, 32)
        surface.fill((shade, 0, 0))
        host.game.backgrounds.append(make_background(surface))
    tiles = [
        make_tile(x=0, background_idx=2),
        make_tile(x=8, background_idx=0),
        make_tile(x=4, background_idx=1),
    ]
    for depth, tile in enumerate(tiles):
        tile.layer_depth = -depth  # does not matter
    draw_frame(make_room(tiles=tiles), host.screen)
    assert [host.screen.get_at((x, 3))[0] for x in (0, 3, 4, 8, 19, 20, 23, 24)] == [
        180,
        180,
        120,
        120,
        120,
        60,
        60,
        0,
    ]


@pytest.mark.parametrize(
    "member, value",
    [
        ("x", 65536 + 5),
        ("y", -65536 + 5),
        ("x", 40000),
        ("tilex", 65536 + 3),
        ("tiley", -65536 - 3),
        ("w", 65536 + 7),
        ("h", 65536 + 7),
        ("w", -1),
        ("h", -65536),
        ("tilex", 32768),
        ("x", 2**31 - 1),
        ("y", -(2**31)),
    ],
)
def test_tile_coordinates_are_cut_to_16_bits(host, member, value):
    host.game.backgrounds.append(make_background(patterned((64, 48), 8)))
    tile = make_tile(x=10, y=11, tilex=5, tiley=6)
    setattr(tile, member, value)
    check_tiles(host, [tile])


def test_tiles_stay_inside_the_clip_rectangle(host):
    host.game.backgrounds.append(make_background(patterned((64, 48), 8)))
    host.screen.set_clip((20, 10, 31, 17))
    try:
        check_tiles(host, [make_tile(x=x, y=y) for x in range(0, 80, 16) for y in range(0, 48, 16)])
    finally:
        host.screen.set_clip(None)


def test_tiles_on_an_encoded_surface(host):
    """Its pixels are no plain memory once it was blitted from."""
    surfaces = []
    for _ in range(2):
        surface = with_key(pygame.RLEACCEL)
        host.screen.blit(surface, (0, 0))
        surfaces.append(surface)
    ours, expected = surfaces
    host.game.backgrounds.append(make_background(patterned((64, 48), 8)))
    tiles = [make_tile(x=5, y=6), make_tile(x=50, y=-3)]
    draw_tiles_with_pygame(expected, tiles, host.game.backgrounds)
    draw_frame(make_room(tiles=tiles), ours)
    for surface in surfaces:
        surface.set_colorkey(None)
    assert_same_picture(ours, expected, "room-encoded")


def test_tiles_on_a_surface_whose_last_target_is_gone(host):
    """SDL has encoded it by the alpha of its pixels for that target, and would look at it again."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, memory
        host.install_modules()
        import larkspur
        from support.rooms import make_background, make_room, make_tile
        recording = host.RecordingHost(pygame.display.set_mode((64, 48), 0, 32))
        recording.register(larkspur)
        image = pygame.Surface((16, 16), 0, 32)
        image.fill((1, 2, 3))
        recording.game.backgrounds.append(make_background(image))
        target = pygame.Surface((30, 20), pygame.SRCALPHA, 32)
        target.fill((10, 20, 30, 100))
        target.set_alpha(255, pygame.RLEACCEL)
        pygame.Surface((30, 20), 0, 32).blit(target, (0, 0))
        memory.spoil_freed()
        larkspur.Room_Draw(make_room(tiles=[make_tile()]), target)
        target.set_alpha(None)
        print target.get_at((0, 0))[:3], target.get_at((20, 9))
        """
    )
    assert out.splitlines()[-1] == "(1, 2, 3) (10, 20, 30, 100)"


@pytest.mark.parametrize("encoded", [False, True])
def test_tiles_of_a_surface_on_itself_that_asks_for_encoding_draw_nothing(host, encoded):
    surface = with_key(pygame.RLEACCEL)
    expected = surface.copy()
    expected.set_colorkey(None)
    if encoded:
        host.screen.blit(surface, (0, 0))
    host.game.backgrounds.append(make_background(surface))
    draw_frame(make_room(tiles=[make_tile(x=5, y=6), make_tile()]), surface)
    surface.set_colorkey(None)
    if not sdl.is_layer():  # SDL 2 encodes nothing that shows, and draws
        assert_same_picture(surface, expected, "room-itself")


def test_tiles_on_a_part_of_the_display(host):
    host.game.backgrounds.append(make_background(patterned((64, 48), 8)))
    part = host.screen.subsurface((100, 50, 60, 40))
    expected = host.screen.copy()
    tiles = [make_tile(x=x, y=-3) for x in (-5, 20, 50)]
    draw_tiles_with_pygame(expected.subsurface((100, 50, 60, 40)), tiles, host.game.backgrounds)
    draw_frame(make_room(tiles=tiles), part)
    assert_same_picture(host.screen, expected, "room-display")


def test_backgrounds_come_from_gmapi(host):
    host.gmapi.game = Plain(backgrounds=[make_background(patterned((16, 16), 9))])
    host.gm6.game = None
    draw_frame(make_room(tiles=[make_tile()]), host.screen)
    assert host.screen.get_at((0, 0)) == host.gmapi.game.backgrounds[0].surf.get_at((0, 0))


def test_backgrounds_may_be_any_sequence(host):
    host.game.backgrounds = (make_background(patterned((16, 16), 9)),)
    check_tiles(host, [make_tile(x=3)])


def test_without_tiles_no_backgrounds_are_looked_for(host):
    del host.gmapi.game
    draw_frame(make_room(), host.screen)
    error = failure_of(make_room(tiles=[make_tile()]), host.screen)
    assert isinstance(error, AttributeError) and "game" in str(error)


def test_missing_backgrounds_fail_the_frame(host):
    del host.game.backgrounds
    error = failure_of(make_room(tiles=[make_tile()]), host.screen)
    assert isinstance(error, AttributeError) and "backgrounds" in str(error)


@pytest.mark.parametrize("tiles", [None, (), 7, {}, "tiles", Raising()])
def test_tiles_must_be_a_list(host, tiles):
    log = []
    error = failure_of(make_room(tiles=tiles, drawn_objects=[Drawable(log, "a")]), host.screen)
    assert isinstance(error, TypeError)
    assert "tiles" in str(error) and type(tiles).__name__ in str(error)
    assert log == []


def test_tiles_may_be_a_kind_of_list(host):
    class Tiles(list):
        pass

    host.game.backgrounds.append(make_background(patterned((16, 16), 9)))
    check_tiles(host, Tiles([make_tile(x=5)]))


@pytest.mark.parametrize("tile", [None, 7, (1, 2), Raising(), RaisingAttributes(), Plain(x=0, y=0)])
def test_what_is_no_tile_fails_the_frame(host, tile):
    """After the tiles before it were drawn, and before the objects."""
    log = []
    host.game.backgrounds.append(make_background(patterned((16, 16), 9)))
    room = make_room(
        tiles=[make_tile(), tile, make_tile(x=50)],
        view_current=5,
        drawn_objects=[Drawable(log, "a")],
    )
    error = failure_of(room, host.screen)
    assert isinstance(error, TypeError)
    assert "RoomTileData" in str(error) and type(tile).__name__ in str(error)
    assert host.screen.get_at((0, 0)) == host.game.backgrounds[0].surf.get_at((0, 0))
    assert host.screen.get_at((50, 0)) == (0, 0, 0, 255)
    assert log == [] and room.view_current == 5


@pytest.mark.parametrize("number", [-1, 1, 2**31 - 1, -(2**31)])
def test_background_index_out_of_range_fails_the_frame(host, number):
    host.game.backgrounds.append(make_background(patterned((16, 16), 9)))
    error = failure_of(make_room(tiles=[make_tile(background_idx=number)]), host.screen)
    assert isinstance(error, IndexError)
    assert "background_idx %d " % number in str(error)


@pytest.mark.parametrize(
    "backgrounds, error",
    [
        (None, TypeError),
        (7, TypeError),
        (Raising(), ZeroDivisionError),
        ([None], TypeError),
        ([Plain(surf=None)], TypeError),
    ],
)
def test_bad_backgrounds_fail_the_frame(host, backgrounds, error):
    host.game.backgrounds = backgrounds
    assert isinstance(failure_of(make_room(tiles=[make_tile()]), host.screen), error)


@pytest.mark.parametrize("surf", [None, 7, Raising()])
def test_background_without_a_picture_fails_the_frame(host, surf):
    host.game.backgrounds = [make_background(surf)]
    error = failure_of(make_room(tiles=[make_tile()]), host.screen)
    assert isinstance(error, TypeError)
    assert "Surface" in str(error) and "background" in str(error)


def test_background_whose_picture_was_deleted_fails_the_frame(host):
    background = larkspur.BackgroundData()
    del background.surf
    host.game.backgrounds = [background]
    assert isinstance(failure_of(make_room(tiles=[make_tile()]), host.screen), TypeError)


def is_refused(target, source):
    try:
        target.blit(source, (0, 0))
    except pygame.error:
        return True
    return False


@pytest.mark.parametrize("lock_target", [False, True])
def test_refused_blit_fails_the_frame_without_an_exception(host, capfd, lock_target):
    log = []
    picture = patterned((16, 16), 9)
    host.game.backgrounds.append(make_background(picture))
    room = make_room(tiles=[make_tile()], drawn_objects=[Drawable(log, "a")])
    locked = host.screen if lock_target else picture
    locked.lock()
    try:
        refused = is_refused(host.screen, picture)
        outcome = pending.call(larkspur.Room_Draw, room, host.screen)
    finally:
        locked.unlock()
    if not refused:
        # Newer layers over SDL 2 let blits pass to a locked display.
        assert sdl.is_layer() and lock_target and outcome.succeeded and log
        return
    assert not outcome.succeeded
    assert type(outcome.exception) is SystemError  # the interpreter's, when a failure has none
    assert capfd.readouterr()[1] == "" and log == []


def test_backgrounds_that_shorten_the_tiles_fail_the_frame(host):
    class Backgrounds(object):
        def __getitem__(self, i):
            del room.tiles[1:]
            return picture

        def __len__(self):
            return 1

    picture = make_background(patterned((16, 16), 9))
    host.game.backgrounds = Backgrounds()
    room = make_room(tiles=[make_tile(), make_tile(x=50)])
    assert isinstance(failure_of(room, host.screen), IndexError)


def test_backgrounds_that_close_the_display_fail_the_frame(host):
    class Backgrounds(object):
        def __getitem__(self, i):
            pygame.display.quit()
            return picture

        def __len__(self):
            return 1

    picture = make_background(patterned((16, 16), 9))
    host.game.backgrounds = Backgrounds()
    assert isinstance(failure_of(make_room(tiles=[make_tile()]), host.screen), RuntimeError)


def test_backgrounds_that_drop_everything_are_no_harm(host):
    class Backgrounds(object):
        def __getitem__(self, i):
            room.tiles = None
            host.gmapi.game.backgrounds = None
            del tiles[:]
            return make_background(patterned((16, 16), 9))

        def __len__(self):
            return 1

    host.game.backgrounds = Backgrounds()
    tiles = [make_tile(x=3)]
    room = make_room(tiles=tiles)
    draw_frame(room, host.screen)
    assert host.screen.get_at((3, 0)) == patterned((16, 16), 9).get_at((0, 0))


# --- Rooms without views: objects ----------------------------------------------------------------


def test_objects_are_drawn_in_order_after_view_current_is_set(host):
    log = []
    room = make_room(view_current=5)
    room.drawn_objects = [
        Drawable(log, name, lambda: log.append(room.view_current)) for name in "abc"
    ]
    draw_frame(room, host.screen)
    assert log == ["a", 0, "b", 0, "c", 0]


def test_view_current_that_can_not_be_set_is_ignored(host):
    class Stubborn(HostRoom):
        view_current = property(lambda self: 3)

    log = []
    draw_frame(Stubborn(drawn_objects=[Drawable(log, "a")]), host.screen)
    assert log == ["a"]


def test_object_without_draw_method_fails_the_frame(host, capfd):
    log = []
    room = make_room(drawn_objects=[Drawable(log, "a"), object(), Drawable(log, "b")])
    error = failure_of(room, host.screen)
    assert isinstance(error, AttributeError) and "Draw" in str(error)
    assert capfd.readouterr()[1] == "ERror!\n"
    assert log == ["a"]


def test_object_that_raises_from_everything_fails_the_frame(host, capfd):
    error = failure_of(make_room(drawn_objects=[RaisingAttributes()]), host.screen)
    assert isinstance(error, ZeroDivisionError)
    assert capfd.readouterr()[1] == "ERror!\n"


@pytest.mark.parametrize(
    "method, error",
    [(Raising(), ZeroDivisionError), (7, TypeError), (lambda needed: None, TypeError)],
)
def test_failing_draw_method_fails_the_frame(host, capfd, method, error):
    log = []
    room = make_room(drawn_objects=[Drawable(log, "a"), Plain(Draw=method), Drawable(log, "b")])
    assert isinstance(failure_of(room, host.screen), error)
    assert capfd.readouterr()[1] == "Error!\n"
    assert log == ["a"]


def test_draw_method_gets_no_arguments(host):
    seen = []
    room = make_room(
        drawn_objects=[Plain(Draw=lambda *args, **kwargs: seen.append((args, kwargs)))]
    )
    draw_frame(room, host.screen)
    assert seen == [((), {})]


def test_frame_draws_a_snapshot_of_the_objects(host):
    log = []
    room = make_room()

    def change():
        room.drawn_objects[:] = [Drawable(log, "new")]

    room.drawn_objects = [Drawable(log, "a", change), Drawable(log, "b"), Drawable(log, "c")]
    draw_frame(room, host.screen)
    assert log == ["a", "b", "c"]
    draw_frame(room, host.screen)
    assert log == ["a", "b", "c", "new"]


def test_objects_may_come_from_an_iterator(host):
    log = []
    draw_frame(HostRoom(drawn_objects=(Drawable(log, name) for name in "ab")), host.screen)
    assert log == ["a", "b"]


def test_room_may_be_dropped_while_it_is_drawn(host):
    log, rooms = [], []

    def drop():
        rooms[0].drawn_objects = rooms[0].tiles = None
        del rooms[:]

    rooms.append(make_room(drawn_objects=[Drawable(log, "a", drop), Drawable(log, "b")]))
    assert pending.call(larkspur.Room_Draw, rooms[0], host.screen).succeeded
    assert log == ["a", "b"]


def test_frame_may_draw_another_frame(host):
    log = []
    inner = make_room(drawn_objects=[Drawable(log, "inner")])
    room = make_room(
        drawn_objects=[
            Drawable(log, "a", lambda: larkspur.Room_Draw(inner, host.screen)),
            Drawable(log, "b"),
        ]
    )
    draw_frame(room, host.screen)
    assert log == ["a", "inner", "b"]


def test_endless_frames_within_frames_end_in_an_exception(host, capfd):
    room = make_room()
    room.drawn_objects = [Plain(Draw=lambda: larkspur.Room_Draw(room, host.screen))]
    error = failure_of(room, host.screen)
    assert isinstance(error, RuntimeError) and "recursion" in str(error)
    capfd.readouterr()


def test_display_may_be_closed_while_objects_are_drawn(host):
    log = []
    room = make_room(drawn_objects=[Drawable(log, "a", pygame.display.quit), Drawable(log, "b")])
    draw_frame(room, host.screen)
    assert log == ["a", "b"]


# --- Rooms with views ----------------------------------------------------------------------------


def drawn_views(host, room):
    """Draws a frame; the numbers of the views whose backgrounds were drawn."""
    seen = []

    def record(room, surface, x, y):
        seen.append(room.view_current)

    host.gm6.Room_DrawBackgrounds = record
    host.register(larkspur)
    draw_frame(room, host.screen)
    return seen


@pytest.mark.parametrize(
    "visible, views",
    [
        ([1] * 8, range(8)),
        ([0, 1, 0, "yes", [], [0]], [1, 3, 5]),
        ([1, 1, 1], [0, 1, 2]),
        ([], []),
        ((0, 1), [1]),
        ([0] * 8, []),
        ([1] * 12, range(8)),
        ("abc", [0, 1, 2]),
    ],
)
def test_visible_views_are_drawn_in_order(host, visible, views):
    assert drawn_views(host, make_view_room(view_visible=visible)) == list(views)


def test_without_a_visible_view_nothing_is_drawn(host):
    log = []
    host.game.backgrounds.append(make_background(patterned((16, 16), 9)))
    room = make_view_room(views=0, drawn_objects=[Drawable(log, "a")], tiles=[make_tile()])
    before = host.screen.copy()
    draw_frame(room, host.screen)
    assert host.calls == [] and log == []
    assert_same_picture(host.screen, before, "no-visible-view")


def test_views_draw_no_tiles_and_call_no_draw_method(host):
    log = []
    host.game.backgrounds.append(make_background(patterned((16, 16), 9)))
    instance = make_instance(Draw=lambda: log.append("Draw"))
    room = make_view_room(tiles=[make_tile()], drawn_objects=[instance])
    draw_frame(room, host.screen)
    assert host.screen.get_at((0, 0)) == (0, 0, 0, 255) and log == []
    assert [name for name, _ in host.calls] == ["Room_DrawBackgrounds", "draw_sprite_ext"]


class Visibility(object):
    """Visibility whose element 1 raises, once per kind of trouble."""

    def __init__(self, error):
        self.error = error

    def __len__(self):
        return 8

    def __getitem__(self, view):
        if view == 1:
            raise self.error
        return 1


def test_index_error_ends_the_views_well(host):
    assert drawn_views(host, make_view_room(view_visible=Visibility(IndexError("end")))) == [0]


@pytest.mark.parametrize(
    "visible, error",
    [
        (Visibility(KeyError("no")), KeyError),
        ([1, Raising()], ZeroDivisionError),
        (7, TypeError),
        (Raising(), ZeroDivisionError),
        (None, TypeError),
    ],
)
def test_failing_visibility_fails_the_frame(host, visible, error):
    assert isinstance(failure_of(make_view_room(view_visible=visible), host.screen), error)


def test_unset_visibility_fails_the_frame(host):
    room = larkspur.GMRoom()
    room.view_enabled = 1
    room.drawn_objects = []
    assert isinstance(failure_of(room, host.screen), TypeError)


def test_failing_view_ends_the_frame(host, capfd):
    def fail(room, surface, x, y):
        seen.append(room.view_current)
        if room.view_current == 1:
            raise KeyError("background")

    seen = []
    host.gm6.Room_DrawBackgrounds = fail
    host.register(larkspur)
    assert isinstance(failure_of(make_view_room(views=3), host.screen), KeyError)
    assert seen == [0, 1]
    capfd.readouterr()


def test_view_that_failed_without_an_exception_fails_the_frame_likewise(host, capfd):
    instance = make_instance(
        py_Draw=0, object_index=Plain(py_objectdata=Plain(events=[], name="o"))
    )
    outcome = pending.call(
        larkspur.Room_Draw, make_view_room(views=2, drawn_objects=[instance]), host.screen
    )
    assert not outcome.succeeded
    assert type(outcome.exception) is SystemError  # the interpreter's, when a failure has none
    assert len(host.named("Room_DrawBackgrounds")) == 1
    assert capfd.readouterr()[1] == "Events too small!\n"


def test_an_exception_left_by_one_object_does_not_disturb_the_next(host):
    """Without views, too: it is pending again afterwards, unless a newer one is."""
    del host.gm6.Room_Create
    leaving = Plain(Draw=larkspur.RegisterInstancesDict)  # succeeds, and leaves its AttributeError
    log = []

    class Counting(Drawable):
        def Draw(self):
            self.log.append([i for i in range(3)])  # a loop would stop at a pending exception
            Drawable.Draw(self)

    drawn = [leaving, Counting(log, "a"), Counting(log, "b")]
    outcome = pending.call(larkspur.Room_Draw, make_room(drawn_objects=drawn), host.screen)
    assert log == [[0, 1, 2], "a", [0, 1, 2], "b"]
    assert outcome.succeeded and isinstance(outcome.exception, AttributeError)
    assert "Room_Create" in str(outcome.exception)

    drawn = [leaving, Drawable(log, "c", lambda: {}["newer"]), Drawable(log, "d")]
    outcome = pending.call(larkspur.Room_Draw, make_room(drawn_objects=drawn), host.screen)
    assert not outcome.succeeded and isinstance(outcome.exception, KeyError)
    assert log[4:] == ["c"]


def test_failure_that_does_not_count_stays_pending_through_the_other_views(host, capfd):
    """The followed object does not exist: each view says so, and code of the host runs unharmed."""

    class Flag(object):
        def __nonzero__(self):
            return sum(1 for _ in (1, 2, 3)) == 3  # a loop would stop at a pending exception

    visible = leaks.left_behind([Flag(), Flag(), Flag(), 0])  # as every room's
    room = make_view_room(views=2, view_visible=visible)
    room.view_object[0] = 99
    outcome = pending.call(larkspur.Room_Draw, room, host.screen)
    assert outcome.succeeded and outcome.result is None
    assert isinstance(outcome.exception, IndexError)
    assert len(host.named("Room_DrawBackgrounds")) == 3
    assert capfd.readouterr()[1].count("An error has occurred\n") == 3


def test_views_need_a_room_of_the_modules_own(host):
    room = HostRoom(view_enabled=1, view_visible=[1])
    error = failure_of(room, host.screen)
    assert isinstance(error, TypeError)
    assert "GMRoom" in str(error) and "HostRoom" in str(error)


def test_changes_to_the_objects_do_not_reach_later_views(host):
    room = make_view_room(views=2)
    host.gmapi.__dict__["log"] = log = []
    host.gmapi.__dict__["room"] = room
    change = make_instance(py_Draw=compiled("log.append('a'); room.drawn_objects[:] = []"))
    room.drawn_objects = [change, make_instance(py_Draw=compiled("log.append('b')"))]
    draw_frame(room, host.screen)
    assert log == ["a", "b", "a", "b"]


# --- References ----------------------------------------------------------------------------------


def test_frames_keep_no_references(host):
    picture = patterned((16, 16), 9)
    background = make_background(picture)
    host.game.backgrounds.append(background)
    tile, drawable = make_tile(), Drawable([], "a")
    drawable.Draw = draw = lambda: None
    room = make_room(tiles=[tile], drawn_objects=[drawable])
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: None
    host.register(larkspur)

    def frame():
        larkspur.Room_Draw(room, host.screen)

    leaks.assert_counts_unchanged(
        frame,
        room,
        host.screen,
        room.tiles,
        tile,
        drawable,
        draw,
        background,
        picture,
        room.drawn_objects,
        None,
    )
    # A new second publishes a number of frames, which may become or cease to be one of these.
    assert all(abs(change) < 0.1 for change in leaks.count_changes(frame, [0, 1]))


@pytest.mark.parametrize(
    "spoil",
    [
        lambda room, host: setattr(room, "drawn_objects", None),
        lambda room, host: setattr(room, "tiles", None),
        lambda room, host: room.tiles.append(None),
        lambda room, host: room.tiles.append(make_tile(background_idx=9)),
        lambda room, host: room.drawn_objects.append(7),
        lambda room, host: room.drawn_objects.append(Plain(Draw=Raising())),
        lambda room, host: host.game.backgrounds.insert(0, make_background(None)),
    ],
)
def test_failing_frames_keep_no_references(host, capfd, spoil):
    picture = patterned((16, 16), 9)
    host.game.backgrounds.append(make_background(picture))
    tile = make_tile()
    room = make_room(tiles=[tile], drawn_objects=[Plain(Draw=lambda: None)])
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: None
    host.register(larkspur)
    spoil(room, host)

    def frame():
        with pytest.raises(Exception):  # noqa: B017
            larkspur.Room_Draw(room, host.screen)

    changes = leaks.count_changes(
        frame, (room, host.screen, tile, picture, room.drawn_objects), rounds=100
    )
    assert changes == [0.0] * 5
    capfd.readouterr()
