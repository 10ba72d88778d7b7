"""Room_DrawView(): where a view is, its scale, its backgrounds, and the lines that it writes."""

import ctypes
import itertools
import json
import math
import weakref

import larkspur
import pygame
import pytest
from support import leaks, native, pending, sdl, subprocess_python
from support.host import Instance, ParticleSystem, Plain
from support.pictures import assert_same_picture
from support.rooms import (
    VIEW_MEMBERS,
    compiled,
    float_list,
    make_instance,
    make_room,
    make_view_room,
    set_view,
)

G_XSCALE = native.variable(ctypes.c_double, "g_view_xscale")
G_YSCALE = native.variable(ctypes.c_double, "g_view_yscale")


def draw(host, room, view=0, drawn=(), before=None):
    """(status, exception) of a view drawn on the display."""
    return pending.draw_view(room, host.screen, view, tuple(drawn), before)


def draw_well(host, room, view=0, drawn=()):
    assert draw(host, room, view, drawn) == (1, None)


def position(room, view=0):
    return room.view_xview[view], room.view_yview[view]


def follow_object(host, room, instance, view=0, number=0):
    """Makes a view follow the first instance of object `number`."""
    while len(host.game.objects) <= number:
        host.game.objects.append(Plain(instances=[], children=[]))
    host.game.objects[number].instances = [instance]
    room.view_object[view] = number


# --- Arguments -----------------------------------------------------------------------------------


@pytest.mark.parametrize("room", [None, 7, Plain(view_xview=None)])
def test_needs_a_room(host, room):
    status, error = draw(host, room)
    assert status == 0 and isinstance(error, TypeError)
    assert "GMRoom" in str(error) and type(room).__name__ in str(error)


@pytest.mark.parametrize("view", [-1, 8, 2**31 - 1, -(2**31)])
def test_needs_a_view_from_0_to_7(host, view):
    status, error = draw(host, make_view_room(), view)
    assert status == 0 and isinstance(error, ValueError)
    assert "from 0 to 7, got %d" % view in str(error)


@pytest.mark.parametrize("drawn", [None, [], 7])
def test_needs_a_tuple_of_objects(host, drawn):
    status, error = pending.draw_view(make_view_room(), host.screen, 0, drawn)
    assert status == 0 and isinstance(error, TypeError) and "tuple" in str(error)


@pytest.mark.parametrize("surface", [None, 7, object()])
def test_needs_a_surface(host, surface):
    status, error = pending.draw_view(make_view_room(), surface, 0, ())
    assert status == 0 and isinstance(error, TypeError)
    assert "Surface" in str(error) and type(surface).__name__ in str(error)


def test_needs_an_open_display(host):
    pygame.display.quit()
    status, error = draw(host, make_view_room())
    assert status == 0 and isinstance(error, RuntimeError)


@pytest.mark.parametrize("member", VIEW_MEMBERS)
@pytest.mark.parametrize("value", [None, 7, [0.0] * 8, "unset"])
def test_view_members_must_be_float_lists(host, capfd, member, value):
    """The exception names the member; nothing is drawn or written, and the room stays as it was."""
    room = make_view_room(view_current=5)
    follow_object(host, room, Plain(x=400, y=400))
    if value == "unset":
        delattr(room, member)
    else:
        setattr(room, member, value)
    host.gmapi.log = log = []
    drawn = [make_instance(py_Draw=compiled("log.append(1)")), make_instance()]
    status, error = draw(host, room, 2, drawn)
    assert status == 0 and isinstance(error, TypeError)
    assert member in str(error) and "Floatlist8" in str(error)
    assert room.view_current == 5 and host.calls == [] and log == []
    for name in ("view_xview", "view_yview"):
        if name != member:
            assert list(getattr(room, name)) == [0.0] * 8
    assert capfd.readouterr() == ("", "")


# --- Following -----------------------------------------------------------------------------------


def followed_axis(target, border, view_length, room_length):
    """Border pixels before the target, kept inside the room on the far side."""
    start = target - border
    if start < 0:
        return 0.0
    return room_length - view_length if start + view_length > room_length else start


@pytest.mark.parametrize(
    "x, y, hborder, vborder, wview, hview",
    [
        (10, 10, 32, 32, 320, 240),
        (1000, 1000, 32, 32, 320, 240),
        (400, 300, 32, 32, 320, 240),
        (512, 392, 32, 32, 320, 240),
        (512.5, 392.25, 32, 32, 320, 240),
        (32, 32, 32, 32, 320, 240),
        (31.5, 31.75, 32, 32, 320, 240),
        (-5, 900, 0, 0, 320, 240),
        (-1.0, 300, -100, 32, 320, 240),
        (300, -1.0, 32, -100, 320, 240),
        (5, 5, 0, 0, 1000, 700),
        (-5, 5, 0, 0, 1000, 700),
        (100, 100, -50, -70, 320, 240),
    ],
)
def test_view_keeps_borders_before_its_instance(host, x, y, hborder, vborder, wview, hview):
    room = make_view_room()
    set_view(room, 3, hborder=hborder, vborder=vborder, wview=wview, hview=hview)
    follow_object(host, room, Plain(x=x, y=y), view=3)
    draw_well(host, room, 3)
    assert position(room, 3) == (
        followed_axis(x, hborder, wview, 800),
        followed_axis(y, vborder, hview, 600),
    )
    assert position(room, 2) == position(room, 4) == (0.0, 0.0)


def test_stated_positions(host):
    """An instance at 10 with a border of 32 puts the view at 0, one at 1000 at the room's end."""
    room = make_view_room()
    set_view(room, 0, hborder=32, vborder=32)
    instance = Plain(x=10, y=10)
    follow_object(host, room, instance)
    draw_well(host, room)
    assert position(room) == (0.0, 0.0)
    instance.x = 1000
    draw_well(host, room)
    assert position(room) == (480.0, 0.0)


def test_room_smaller_than_the_view_gives_a_negative_position(host):
    room = make_view_room(room_width=200, room_height=100)
    follow_object(host, room, Plain(x=50, y=50))
    draw_well(host, room)
    assert position(room) == (200 - 320, 100 - 240)


@pytest.mark.parametrize("number", [-1, -1.5, -(2.0**40), float("nan"), float("-inf")])
def test_negative_object_leaves_the_view_where_it_is(host, number):
    host.game.objects.append(Plain(instances=[Plain(x=400, y=400)], children=[]))
    room = make_view_room()
    set_view(room, 0, object=number, xview=33, yview=44)
    draw_well(host, room)
    assert position(room) == (33.0, 44.0)


@pytest.mark.parametrize("number, followed", [(-0.75, 0), (0.9, 0), (1.99, 1), (2, 2)])
def test_followed_object_is_truncated(host, number, followed):
    for i in range(3):
        host.game.objects.append(Plain(instances=[Plain(x=100 + i, y=50)], children=[]))
    room = make_view_room()
    set_view(room, 0, object=number)
    draw_well(host, room)
    assert position(room) == (100.0 + followed, 50.0)


def test_instance_of_a_child_is_followed(host):
    room = make_view_room()
    follow_object(host, room, None)
    host.game.objects[0] = Plain(
        instances=[],
        children=[
            Plain(instances=[], children=[]),
            Plain(instances=[Plain(x=200, y=100)], children=[]),
        ],
    )
    draw_well(host, room)
    assert position(room) == (200.0, 100.0)


def test_object_without_instances_leaves_the_view_where_it_is(host):
    room = make_view_room()
    host.game.objects.append(Plain(instances=[], children=[]))
    set_view(room, 0, object=0, xview=33, yview=44)
    draw_well(host, room)
    assert position(room) == (33.0, 44.0)


class RaisingCoordinate(object):
    y = 50

    @property
    def x(self):
        raise ZeroDivisionError("x")


FAILING_SEARCHES = [
    (lambda host: host.game.objects.append(None), AttributeError),
    (lambda host: None, IndexError),
    (lambda host: delattr(host.game, "objects"), AttributeError),
    (lambda host: delattr(host.gm6, "game"), AttributeError),
    (lambda host: setattr(host.game, "objects", 7), TypeError),
    (lambda host: host.game.objects.append(Plain(instances=[Plain(y=1)])), AttributeError),
    (lambda host: host.game.objects.append(Plain(instances=[Plain(x=1)])), AttributeError),
    (lambda host: host.game.objects.append(Plain(instances=[Plain(x="a", y=1)])), TypeError),
    (lambda host: host.game.objects.append(Plain(instances=[Plain(x=1, y=None)])), TypeError),
    (
        lambda host: host.game.objects.append(Plain(instances=[RaisingCoordinate()])),
        ZeroDivisionError,
    ),
]


@pytest.mark.parametrize("spoil, error", FAILING_SEARCHES)
def test_failing_search_is_reported_at_every_check_point_but_counts_not(host, capfd, spoil, error):
    spoil(host)
    room = make_view_room(view_current=5)
    set_view(room, 2, object=0, xview=33, yview=44)
    drawn = [make_instance(), make_instance(py_Draw=compiled("drawn = [i for i in range(3)]"))]
    status, exception = draw(host, room, 2, drawn)
    assert status == 1 and isinstance(exception, error)
    assert position(room, 2) == (33.0, 44.0) and room.view_current == 2
    assert capfd.readouterr()[1] == (
        "An error has occurred 615\nAn error has occurred 638\n660\n660 a\n"
        "An error has occurred 661\nError after GI 0\nError drawing instance\n"
        "Error after GI 1\nError drawing instance\nAn error has occurred\n"
    )
    # Nothing was kept from being drawn.
    assert [name for name, _ in host.calls] == ["Room_DrawBackgrounds", "draw_sprite_ext"]
    assert host.gmapi.drawn == [0, 1, 2]


def test_view_that_draws_well_writes_nothing(host, capfd):
    room = make_view_room()
    draw_well(host, room, 0, [make_instance(), make_instance(py_Draw=compiled("1"))])
    set_view(room, 0, xport=1)
    draw_well(host, room, 0, [make_instance()])
    assert capfd.readouterr() == ("", "")


def test_coordinates_of_the_instance_may_change_the_room(host):
    """Borders and sizes are those that hold once the instance said where it is."""

    class Moving(object):
        y = 300

        @property
        def x(self):
            room.view_hborder = float_list([100])
            room.view_wview[0] = 200
            return 300

    room = make_view_room()
    follow_object(host, room, Moving())
    draw_well(host, room)
    assert position(room) == (200.0, 300.0)


def test_coordinates_that_spoil_the_room_fail_the_view(host, capfd):
    class Spoiling(object):
        y = 300

        @property
        def x(self):
            room.view_xview = None
            return 300

    room = make_view_room(view_current=5)
    follow_object(host, room, Spoiling())
    status, error = draw(host, room)
    assert status == 0 and isinstance(error, TypeError) and "view_xview" in str(error)
    assert host.calls == []
    capfd.readouterr()


@pytest.mark.parametrize(
    "spoil, error, told",
    [
        (lambda room: setattr(room, "view_xview", None), TypeError, "view_xview"),
        (lambda room: pygame.display.quit(), RuntimeError, "closed"),
    ],
)
def test_search_without_an_instance_that_spoils_view_or_display_fails(
    host, capfd, spoil, error, told
):
    class Spoiling(object):
        children = []

        @property
        def instances(self):
            spoil(room)
            return []

    room = make_view_room()
    host.game.objects.append(Spoiling())
    set_view(room, 0, object=0)
    status, exception = draw(host, room)
    assert status == 0 and isinstance(exception, error) and told in str(exception)
    assert host.calls == []
    capfd.readouterr()


def test_view_current_changes_after_following(host):
    seen = []

    class Looking(object):
        y = 0

        @property
        def x(self):
            seen.append(room.view_current)
            return 0

    room = make_view_room(view_current=5)
    follow_object(host, room, Looking(), view=3)
    draw_well(host, room, 3)
    assert seen == [5] and room.view_current == 3


def test_view_current_is_stored_directly(host):
    room = make_view_room(view_current=0)
    for view in range(8):
        draw_well(host, room, view)
        assert room.view_current == view


# --- Scale ---------------------------------------------------------------------------------------


def test_view_of_the_targets_size_is_direct(host):
    draw_well(host, make_view_room())
    assert type(host.gm6.view_xscale) is int and host.gm6.view_xscale == 1
    assert host.gm6.view_yscale is host.gm6.view_xscale
    assert (G_XSCALE.value, G_YSCALE.value) == (1.0, 1.0)
    ((_, surface, _, _),) = host.named("Room_DrawBackgrounds")
    assert surface is host.screen


def test_direct_is_decided_by_the_target_and_not_by_the_port(host):
    room = make_view_room()
    set_view(room, 0, wport=7, hport=-3)
    draw_well(host, room)
    assert host.gm6.view_xscale == 1 and G_XSCALE.value == 1.0
    surface = pygame.Surface((100, 50), 0, 32)
    set_view(room, 0, wview=100, hview=50)
    assert pending.draw_view(room, surface, 0, ()) == (1, None)
    assert host.named("Room_DrawBackgrounds")[-1][1] is surface


@pytest.mark.parametrize(
    "changes", [{"xport": 1}, {"yport": 1}, {"wview": 319}, {"hview": 241}, {"xport": 0.25}]
)
def test_any_difference_makes_a_scaled_view(host, changes):
    room = make_view_room()
    set_view(room, 0, **changes)
    draw_well(host, room)
    ((_, surface, _, _),) = host.named("Room_DrawBackgrounds")
    assert surface is not host.screen
    assert type(host.gm6.view_xscale) is float and type(host.gm6.view_yscale) is float


@pytest.mark.parametrize(
    "wview, hview, wport, hport",
    [
        (320, 240, 640, 480),
        (200, 100, 50, 300),
        (3, 7, 100, 100),
        (320, 240, 10.9, 10.9),
        (0.5, 0.25, 16, 16),
    ],
)
def test_scale_is_port_over_view(host, wview, hview, wport, hport):
    room = make_view_room()
    set_view(room, 0, xport=1, wview=wview, hview=hview, wport=wport, hport=hport)
    draw_well(host, room)
    assert host.gm6.view_xscale == G_XSCALE.value == wport / float(wview)
    assert host.gm6.view_yscale == G_YSCALE.value == hport / float(hview)


def test_scale_of_a_view_without_a_size_is_infinite(host):
    room = make_view_room()
    set_view(room, 0, wview=0, hview=-0.0)
    draw_well(host, room)
    assert host.gm6.view_xscale == G_XSCALE.value == float("inf")
    assert host.gm6.view_yscale == G_YSCALE.value == float("-inf")
    set_view(room, 0, wport=0, hport=0)
    draw_well(host, room)
    assert math.isnan(G_XSCALE.value) and math.isnan(host.gm6.view_yscale)


def test_scale_is_there_while_backgrounds_and_objects_are_drawn(host):
    seen = []
    host.gm6.Room_DrawBackgrounds = lambda *arguments: seen.append(
        (host.gm6.view_xscale, host.gm6.view_yscale, G_XSCALE.value, G_YSCALE.value)
    )
    host.gmapi.draw_sprite_ext = host.gm6.Room_DrawBackgrounds
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=100, hview=60, wport=200, hport=30)
    draw_well(host, room, 0, [make_instance()])
    assert seen == [(2.0, 0.5, 2.0, 0.5)] * 2


REFUSED_SCALE = """
import json, sys
from support import host
gm6 = sys.modules["gm6"] = host.RefusingModule("gm6")
host.install_modules()
import larkspur, pygame
from support import pending, rooms
screen = pygame.display.set_mode((320, 240), 0, 32)
host.set_up(larkspur, screen)
for xport in (0, 1):
    for refused in (("view_xscale",), ("view_yscale",), ("view_xscale", "view_yscale")):
        gm6.__dict__.update(view_xscale="old", view_yscale="old", refused=refused)
        room = rooms.make_view_room()
        rooms.set_view(room, 0, xport=xport, wport=640, hport=480)
        status, error = pending.draw_view(room, screen, 0, ())
        print json.dumps([status, repr(error), gm6.view_xscale, gm6.view_yscale])
"""


def test_scale_that_can_not_be_stored_is_reported_from_there_on_but_counts_not():
    status, out, err = subprocess_python.run(REFUSED_SCALE)
    assert status == 0, err
    assert [json.loads(line) for line in out.splitlines()[-6:]] == [
        [
            1,
            "KeyError('view_%sscale',)" % last,
            "old" if "x" in refused else scale,
            "old" if "y" in refused else scale,
        ]
        for scale in (1, 2.0)
        for refused, last in (("x", "x"), ("y", "y"), ("xy", "y"))
    ]
    assert (
        err
        == (
            "An error has occurred 638\n660\n660 a\nAn error has occurred 661\n"
            "An error has occurred\n"
        )
        * 6
    )


# --- Position for rectangles ---------------------------------------------------------------------


def offset_for_rectangles(host):
    """The view position that draw_rectangle() takes its scale from: at a scale of 2 it draws what
    is at 100 in the room at 200 - position."""
    G_XSCALE.value = G_YSCALE.value = 2.0
    host.screen.fill((0, 0, 0))
    larkspur.draw_rectangle(100, 100, 101, 101)
    (place,) = pygame.mask.from_threshold(
        host.screen, (255, 255, 255), (1, 1, 1, 255)
    ).get_bounding_rects()
    return 200 - place.x, 200 - place.y


def test_rectangles_lie_in_the_view_drawn_last(host):
    room = make_view_room()
    set_view(room, 0, xview=12, yview=34)
    set_view(room, 1, xview=56, yview=78)
    draw_well(host, room, 0)
    assert offset_for_rectangles(host) == (12, 34)
    draw_well(host, room, 1)
    assert offset_for_rectangles(host) == (56, 78)


def test_rectangles_lie_in_the_view_after_it_followed(host):
    seen = []
    host.gm6.Room_DrawBackgrounds = lambda *arguments: seen.append(offset_for_rectangles(host))
    host.register(larkspur)
    room = make_view_room()
    follow_object(host, room, Plain(x=30, y=20))
    draw_well(host, room)
    assert seen == [(30, 20)]


def test_rectangles_lie_in_the_room_without_views(host):
    room = make_view_room()
    set_view(room, 0, xview=12, yview=34)
    draw_well(host, room)
    seen = []
    larkspur.Room_Draw(
        make_room(drawn_objects=[Plain(Draw=lambda: seen.append(offset_for_rectangles(host)))]),
        host.screen,
    )
    assert seen == [(0, 0)]


# --- Backgrounds ---------------------------------------------------------------------------------


def test_backgrounds_get_the_position_from_before_following(host):
    room = make_view_room()
    set_view(room, 0, xview=12.5, yview=-3)
    follow_object(host, room, Plain(x=400, y=300))
    draw_well(host, room)
    ((got_room, surface, x, y),) = host.named("Room_DrawBackgrounds")
    assert got_room is room and surface is host.screen
    assert (x, y) == (12.5, -3.0) and type(x) is type(y) is float
    assert position(room) == (400.0, 300.0)
    draw_well(host, room)
    assert host.named("Room_DrawBackgrounds")[-1][2:] == (400.0, 300.0)


def paint(colour):
    """A background drawing that paints a pattern of half transparent stripes."""

    def draw_backgrounds(room, surface, x, y):
        for stripe in range(0, surface.get_width(), 4):
            surface.fill(colour + (stripe * 3 % 256,), (stripe, 0, 3, surface.get_height() - 2))

    return draw_backgrounds


def make_canvas(size, display):
    """A surface in a display's masks, with its own alpha only where the display has some."""
    flags = pygame.SRCALPHA if display.get_masks()[3] else 0
    return pygame.Surface(size, flags, 32, display.get_masks())


@pytest.mark.parametrize("with_alpha", [False, True])
@pytest.mark.parametrize(
    "xport, yport",
    [(0, 0), (10, 20), (-5, -7), (300.9, 230.2), (-0.9, 65536 + 3), (70000, 0), (5, -65530)],
)
def test_scaled_backgrounds_appear_at_the_port(host, xport, yport, with_alpha):
    """Translucent parts blend when the display's format has alpha."""

    def signed(value):
        return (int(value) + 0x8000) % 0x10000 - 0x8000

    host.screen.fill((10, 60, 110))
    expected = host.screen.copy()
    host.gm6.Room_DrawBackgrounds = paint((200, 100, 50))
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=50, hview=50, wport=60, hport=40, xport=xport, yport=yport)
    display = pygame.Surface((320, 240), pygame.SRCALPHA, 32) if with_alpha else host.screen
    larkspur.set_SDL_screen(display)
    draw_well(host, room)
    canvas = make_canvas((60, 40), display)
    paint((200, 100, 50))(room, canvas, 0, 0)
    expected.blit(canvas, (signed(xport), signed(yport)))
    assert_same_picture(host.screen, expected, "scaled-backgrounds")


@pytest.mark.parametrize("with_alpha", [False, True])
def test_surface_of_scaled_backgrounds(host, with_alpha):
    """32 bits in the display's masks, empty, of the port's size; gone after the pass."""
    display = pygame.Surface((9, 9), pygame.SRCALPHA, 32) if with_alpha else host.screen
    larkspur.set_SDL_screen(display)
    seen = []

    def look(room, surface, x, y):
        seen.append(
            (
                surface.get_size(),
                surface.get_bitsize(),
                surface.get_flags(),
                surface.get_masks(),
                set(surface.get_buffer().raw),
            )
        )
        surfaces.append(weakref.ref(surface))

    surfaces = []
    host.gm6.Room_DrawBackgrounds = look
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=100, wport=50.9, hport=30.2)
    draw_well(host, room)
    # SDL asks no surface to blend that has no alpha; some layers do, to no effect.
    like = sdl.created(50, 30, 32, display.get_masks(), pygame.SRCALPHA)
    assert with_alpha or sdl.is_layer() or like.get_flags() == 0
    assert seen == [((50, 30), 32, like.get_flags(), display.get_masks(), set("\0"))]
    assert surfaces[0]() is None


def test_surface_that_the_host_keeps_lives_on(host):
    kept = []
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: kept.append(surface)
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=100, wport=50, hport=30)
    draw_well(host, room)
    kept[0].fill((1, 2, 3))
    assert kept[0].get_at((49, 29))[:3] == (1, 2, 3)


def test_objects_are_drawn_over_the_scaled_backgrounds(host):
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: surface.fill((255, 0, 0, 255))
    host.gmapi.draw_sprite_ext = lambda *arguments: host.screen.set_at((5, 5), (0, 255, 0))
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=100, wport=50, hport=30)
    draw_well(host, room, 0, [make_instance()])
    assert host.screen.get_at((5, 5))[:3] == (0, 255, 0)
    assert host.screen.get_at((6, 6))[:3] == (255, 0, 0)
    assert host.screen.get_at((50, 5))[:3] == (0, 0, 0)


def test_port_is_read_after_the_backgrounds_were_drawn(host):
    def move(room, surface, x, y):
        surface.fill((255, 0, 0, 255))
        set_view(room, 0, xport=100)

    host.gm6.Room_DrawBackgrounds = move
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wview=100, wport=50, hport=30)
    draw_well(host, room)
    assert host.screen.get_at((0, 0))[:3] == (0, 0, 0)
    assert host.screen.get_at((100, 0))[:3] == (255, 0, 0)


@pytest.mark.parametrize("scaled", [False, True])
def test_failing_backgrounds_fail_the_view_but_objects_are_drawn(host, capfd, scaled):
    host.results["Room_DrawBackgrounds"] = KeyError("background")
    room = make_view_room()
    set_view(room, 0, xport=int(scaled))
    drawn = [make_instance(py_Draw=compiled("drawn = [i for i in range(3)]"))]
    status, error = draw(host, room, 0, drawn)
    assert status == 0 and isinstance(error, KeyError)
    assert host.gmapi.drawn == [0, 1, 2]
    assert capfd.readouterr()[1] == (
        "660\n660 a\nAn error has occurred 661\nError after GI 0\nError drawing instance\n"
        "An error has occurred\n"
    )


def test_scaled_backgrounds_are_shown_as_far_as_they_came(host, capfd):
    def draw_half(room, surface, x, y):
        surface.fill((255, 0, 0, 255))
        raise KeyError("rest")

    host.gm6.Room_DrawBackgrounds = draw_half
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, xport=8)
    assert draw(host, room)[0] == 0
    assert host.screen.get_at((8, 0))[:3] == (255, 0, 0)
    capfd.readouterr()


def test_missing_background_function_fails_the_view(host, capfd):
    function = native.variable(ctypes.c_void_p, "gm6_Room_DrawBackgrounds")
    saved, function.value = function.value, None
    try:
        status, error = draw(host, make_view_room())
    finally:
        function.value = saved
    assert status == 0 and isinstance(error, RuntimeError)
    assert "RegisterInstancesDict" in str(error)
    capfd.readouterr()


@pytest.mark.parametrize(
    "wport, hport",
    [
        (20000, 10),
        (10, 70000),
        (-1, 10),
        (10, -1),
        (-5, -5),
        (2.0**40, 5),
        (float("nan"), 5),
        (16000, 60000),
    ],
)
def test_port_of_an_impossible_size_fails_the_view(host, capfd, wport, hport):
    room = make_view_room()
    set_view(room, 0, wport=wport, hport=hport, xport=1)
    status, error = draw(host, room, 0, [make_instance()])
    assert status == 0 and isinstance(error, ValueError) and "view_wport" in str(error)
    assert host.calls == []
    capfd.readouterr()


@pytest.mark.parametrize("wport, hport", [(0, 10), (10, 0), (0.9, 0.9)])
def test_port_without_an_area_shows_no_backgrounds(host, wport, hport):
    room = make_view_room()
    set_view(room, 0, wport=wport, hport=hport, xport=1)
    draw_well(host, room, 0, [make_instance()])
    ((_, surface, _, _),) = host.named("Room_DrawBackgrounds")
    assert surface.get_size() == (int(wport), int(hport))
    assert len(host.named("draw_sprite_ext")) == 1


def test_blit_that_is_refused_is_no_failure(host):
    """The host left the display locked: the backgrounds are lost, the objects are not."""
    room = make_view_room()
    set_view(room, 0, xport=1)
    host.screen.lock()
    try:
        draw_well(host, room, 0, [make_instance()])
    finally:
        host.screen.unlock()
    assert len(host.named("draw_sprite_ext")) == 1


@pytest.mark.parametrize("spoil", ["close the display", "unset a member"])
def test_backgrounds_that_spoil_the_view_fail_it(host, capfd, spoil):
    def spoil_view(room, surface, x, y):
        if spoil == "close the display":
            pygame.display.quit()
        else:
            room.view_hport = None

    host.gm6.Room_DrawBackgrounds = spoil_view
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, xport=1)
    status, error = draw(host, room, 0, [make_instance()])
    assert status == 0 and isinstance(error, (RuntimeError, TypeError))
    assert len(host.named("draw_sprite_ext")) == 1
    capfd.readouterr()


def test_background_drawing_that_loses_the_pixels_of_its_surface(host):
    """A failed second __init__ leaves a Surface of pygame without a surface of SDL."""

    def lose_pixels(room, surface, x, y):
        with pytest.raises(ValueError):
            surface.__init__((3, 3), 0, 17)
        with pytest.raises(pygame.error):
            surface.get_size()

    host.gm6.Room_DrawBackgrounds = lose_pixels
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, xport=1)
    before = host.screen.copy()
    draw_well(host, room)
    assert_same_picture(host.screen, before, "lost-canvas")


def test_view_on_a_part_of_the_display(host):
    host.gm6.Room_DrawBackgrounds = paint((200, 100, 50))
    host.register(larkspur)
    room = make_view_room()
    set_view(room, 0, wport=60, hport=40, xport=-3, yport=4)
    part = host.screen.subsurface((100, 50, 80, 60))
    expected = host.screen.copy()
    canvas = make_canvas((60, 40), host.screen)
    paint((200, 100, 50))(room, canvas, 0, 0)
    expected.subsurface((100, 50, 80, 60)).blit(canvas, (-3, 4))
    assert pending.draw_view(room, part, 0, ()) == (1, None)
    assert_same_picture(host.screen, expected, "view-on-part")


# --- The surface of scaled backgrounds, from pass to pass -----------------------------------------

# What tells a surface from a new one, beside its pixels.
RECORD = "flags w h pitch offset locked".split()
FORMAT = "Rmask Gmask Bmask Amask Rshift Gshift Bshift Ashift colorkey alpha".split()


def state_of(surface):
    record = native.sdl_surface(surface)
    clip = record.clip_rect
    return (
        [getattr(record, name) for name in RECORD]
        + [getattr(record.format.contents, name) for name in FORMAT]
        + [clip.x, clip.y, clip.w, clip.h]
    )


class Canvases(object):
    """Draws backgrounds that show in every pixel. Of each surface that it gets, in turn:

    states      its state
    blank       whether all its pixels were 0
    identities  what SDL 1.2 gives no other surface
    """

    def __init__(self, host, sizes=((50, 30),)):
        """Gives a room whose views have ports of these sizes, and are scaled."""
        self.states, self.blank, self.identities = [], [], []
        self.actions = []
        host.gm6.Room_DrawBackgrounds = self.draw
        host.register(larkspur)
        self.room = make_view_room()
        for view, (width, height) in enumerate(sizes):
            set_view(self.room, view, wview=100, wport=width, hport=height)

    def draw(self, room, surface, x, y):
        self.states.append(state_of(surface))
        self.blank.append(set(surface.get_buffer().raw) == set("\0"))
        self.identities.append(native.sdl_surface(surface).format_version)
        surface.fill((200, 100, 50, 25))
        if self.actions:
            self.actions.pop(0)(surface)


def test_surface_of_scaled_backgrounds_is_used_again(host):
    """Where SDL does not show locks there is always a new one."""
    canvases = Canvases(host, [(50, 30), (60, 40), (50, 30)])
    for _ in range(3):
        for view in range(3):
            draw_well(host, canvases.room, view)
    assert all(canvases.blank)
    assert canvases.states == [canvases.states[view % 2] for view in range(3)] * 3
    if not sdl.is_layer():
        first, second, third = canvases.identities[:3]
        assert first == third != second
        assert canvases.identities == [first, second, third] * 3


def share_natively(surface):
    """SDL's own way to hold a surface."""
    address = native.surface_address(surface)
    native.Surface.from_address(address).refcount += 1
    return address


HOLDERS = [
    lambda surface: surface,
    lambda surface: surface.subsurface((1, 2, 3, 4)),
    lambda surface: surface.get_buffer(),
    lambda surface: surface.get_view("2"),
    pygame.surfarray.pixels2d,
    pygame.surfarray.pixels_red,
    pygame.PixelArray,
    share_natively,
]


@pytest.mark.parametrize("hold", HOLDERS)
def test_surface_that_something_holds_is_left_alone(host, hold):
    canvases = Canvases(host)
    held = []

    def keep(surface):
        held.append(hold(surface))
        record = native.sdl_surface(surface)
        memory.extend([record.pixels, record.pitch * record.h])
        pixels.append(ctypes.string_at(*memory))

    memory, pixels = [], []
    canvases.actions = [keep, lambda surface: surface.fill((1, 2, 3, 4))]
    draw_well(host, canvases.room)
    draw_well(host, canvases.room)
    assert canvases.blank == [True, True] and canvases.states[0] == canvases.states[1]
    assert ctypes.string_at(*memory) == pixels[0] and set(pixels[0]) != set("\0")
    if hold is share_natively:
        native.function("SDL_FreeSurface", None, ctypes.c_void_p)(held[0])


def test_surface_that_the_host_has_dropped_again_is_used_again(host):
    canvases = Canvases(host)
    held = []
    canvases.actions = [held.append]
    draw_well(host, canvases.room)
    del held[:]
    draw_well(host, canvases.room)
    assert all(canvases.blank)
    assert sdl.is_layer() or len(set(canvases.identities)) == 1


def test_pygames_surface_ends_with_the_pass(host):
    canvases = Canvases(host)
    ended = []
    for _ in range(2):
        canvases.actions = [lambda surface: ended.append(weakref.ref(surface))]
        draw_well(host, canvases.room)
    assert [reference() for reference in ended] == [None, None]


def with_item(values, i, value):
    return values[:i] + (value,) + values[i + 1 :]


CHANGES = (
    [
        lambda surface: surface.lock(),
        lambda surface: surface.set_colorkey((200, 100, 50)),
        lambda surface: surface.set_colorkey((200, 100, 50), pygame.RLEACCEL),
        lambda surface: surface.set_alpha(100),
        lambda surface: surface.set_alpha(None),
        lambda surface: surface.set_alpha(255, pygame.RLEACCEL),
    ]
    + [lambda surface, i=i: surface.set_clip(with_item((0, 0, 50, 30), i, 7)) for i in range(4)]
    + [
        lambda surface, i=i: surface.set_masks(with_item(surface.get_masks(), i, 0x70))
        for i in range(4)
    ]
    + [
        lambda surface, i=i: surface.set_shifts(with_item(surface.get_shifts(), i, 4))
        for i in range(4)
    ]
)


@pytest.mark.parametrize("with_alpha", [False, True])
@pytest.mark.parametrize("change", CHANGES)
def test_nothing_that_the_host_changes_outlives_the_pass(host, change, with_alpha):
    display = pygame.Surface((9, 9), pygame.SRCALPHA, 32) if with_alpha else host.screen
    larkspur.set_SDL_screen(display)
    canvases = Canvases(host)
    draw_well(host, canvases.room)
    host.screen.fill((0, 0, 0))
    draw_well(host, canvases.room)
    expected = host.screen.copy()
    canvases.actions = [change]
    draw_well(host, canvases.room)
    host.screen.fill((0, 0, 0))
    draw_well(host, canvases.room)
    assert all(canvases.blank) and canvases.states == canvases.states[:1] * 4
    assert_same_picture(host.screen, expected, "after-changed-canvas")


def test_surface_follows_the_size_of_the_port(host):
    canvases = Canvases(host)
    for width, height in [(50, 30), (51, 30), (51, 31), (30, 51)]:
        set_view(canvases.room, 0, wport=width, hport=height)
        draw_well(host, canvases.room)
        assert canvases.states[-1][1:3] == [width, height]
    assert all(canvases.blank)


@pytest.mark.parametrize("given_before", [False, True])
@pytest.mark.parametrize("i", range(4))
def test_surface_follows_the_masks_of_the_display(host, i, given_before):
    """Also where the host had given the surface the very masks that come next."""
    displays = [pygame.Surface((9, 9), pygame.SRCALPHA, 32) for _ in range(3)]
    masks = displays[0].get_masks()
    displays[1].set_masks(with_item(masks, i, masks[i] & masks[i] << 4))
    displays[2].set_masks(with_item(masks, 3, 0))
    canvases = Canvases(host)
    for display in (displays[0], displays[1], displays[0], displays[2]):
        if given_before:
            canvases.actions = [lambda surface: surface.set_masks(display.get_masks())]
        draw_well(host, canvases.room)
        larkspur.set_SDL_screen(display)
        draw_well(host, canvases.room)
        like = sdl.created(50, 30, 32, display.get_masks(), pygame.SRCALPHA)
        assert canvases.states[-1] == state_of(like)


def test_view_drawn_while_it_is_drawn_has_a_surface_of_its_own(host):
    canvases = Canvases(host)

    def draw_again(surface):
        surface.fill((255, 0, 0, 255))
        draw_well(host, canvases.room)
        colours.append(surface.get_at((5, 5)))

    colours = []
    canvases.actions = [draw_again, lambda surface: surface.fill((0, 255, 0, 255))]
    draw_well(host, canvases.room)
    assert colours == [(255, 0, 0, 255)] and all(canvases.blank)
    assert host.screen.get_at((5, 5))[:3] == (255, 0, 0)


# --- Pending exceptions --------------------------------------------------------------------------


def test_exception_that_was_pending_stays_and_is_reported(host, capfd):
    room = make_view_room()
    before = KeyError("before")
    drawn = [
        make_instance(py_Draw=compiled("drawn = [i for i in range(3)]")),
        ParticleSystem(py_automatic_draw=0),
    ]
    status, after = draw(host, room, 0, drawn, before)
    assert status == 1 and after is before
    assert host.gmapi.drawn == [0, 1, 2]
    assert capfd.readouterr()[1] == (
        "An error has occurred 615\nAn error has occurred 638\n660\n660 a\n"
        "An error has occurred 661\nError after GI 0\nError drawing instance\n"
        "Error after GI 1\nError drawing PS\nAn error has occurred\n"
    )


def test_exception_that_was_pending_does_not_disturb_the_search(host, capfd):
    class Looping(object):
        y = 50

        @property
        def x(self):
            return sum(100 for _ in (1, 2))  # a loop would stop at a pending exception

    room = make_view_room()
    follow_object(host, room, Looping())
    before = KeyError("before")
    status, after = draw(host, room, before=before)
    assert status == 1 and after is before
    assert position(room) == (200.0, 50.0)
    capfd.readouterr()


def test_newer_exception_replaces_the_older(host, capfd):
    drawn = [
        make_instance(py_Draw=compiled("raise KeyError('first')")),
        make_instance(),
        make_instance(py_Draw=compiled("raise ValueError('second')")),
        make_instance(),
    ]
    status, error = draw(host, make_view_room(), 0, drawn, TypeError("before"))
    assert status == 0 and isinstance(error, ValueError)
    assert len(host.named("draw_sprite_ext")) == 2
    capfd.readouterr()


@pytest.mark.parametrize("good", list(itertools.product([False, True], repeat=3)))
def test_every_object_is_drawn_and_the_status_is_their_and(host, capfd, good):
    drawn = [
        make_instance(py_Draw=compiled("log.append(%d)%s" % (i, "" if well else "; 1 / 0")))
        for i, well in enumerate(good)
    ]
    host.gmapi.log = log = []
    status, error = draw(host, make_view_room(), 0, drawn)
    assert status == int(all(good)) and log == [0, 1, 2]
    assert (error is None) == all(good)
    # From the first failure on, every check point repeats it.
    expected, failed = [], False
    for i, well in enumerate(good):
        if failed:
            expected.append("Error after GI %d\n" % i)
        failed = failed or not well
        if failed:
            expected.append("Error drawing instance\n")
    if failed:
        expected.append("An error has occurred\n")
    assert capfd.readouterr()[1] == "".join(expected)


# --- References ----------------------------------------------------------------------------------


def set_up_everything(host):
    """A room whose view follows an instance, is scaled, and draws one object of each kind."""
    room = make_view_room()
    set_view(room, 0, xport=1, wport=50, hport=40)
    followed = Plain(x=400, y=300)
    follow_object(host, room, followed)
    sprite, code = make_instance(), compiled("1")
    coded = make_instance(py_Draw=code)
    system = ParticleSystem(py_automatic_draw=1, py_RealDraw=lambda x, y: None)
    host.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: None
    host.gmapi.draw_sprite_ext = lambda *arguments: None
    host.gmapi.self = Instance()
    host.register(larkspur)
    return room, followed, sprite, code, coded, system


def test_views_keep_no_references(host):
    room, followed, sprite, code, coded, system = set_up_everything(host)
    drawn = (sprite, coded, system)

    def action():
        draw_well(host, room, 0, drawn)

    leaks.assert_counts_unchanged(
        action,
        room,
        followed,
        sprite,
        code,
        coded,
        system,
        drawn,
        host.screen,
        sprite.x,
        host.gm6.Room_DrawBackgrounds,
        host.gmapi.draw_sprite_ext,
        host.gmapi.self,
        host.gmapi.__dict__,
        host.gmapi.py_self_stack,
        room.view_xview,
        None,
        1,
    )
    assert leaks.object_growth(action) == 0


def test_failing_views_keep_no_references(host, capfd):
    room, followed, sprite, code, coded, system = set_up_everything(host)
    error = KeyError("failure")

    def fail(*arguments):
        raise error

    host.gm6.Room_DrawBackgrounds = host.gmapi.draw_sprite_ext = system.py_RealDraw = fail
    host.register(larkspur)
    followed.x = "nowhere"
    coded.py_Draw = code = compiled("raise KeyError(1)")
    host.gmapi.self = current = Instance()
    drawn = (sprite, coded, system, make_instance(py_Draw=None), make_instance(py_Draw=7.5))
    counted = (room, followed, sprite, code, coded, system, drawn, host.screen, fail, current)
    changes = leaks.count_changes(lambda: draw(host, room, 0, drawn), counted, rounds=100)
    assert changes == [0.0] * len(counted)
    assert host.gmapi.py_self_stack == [] and host.gmapi.self is current
    capfd.readouterr()
