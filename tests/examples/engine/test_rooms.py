"""Rooms: entering and leaving, backgrounds, tiles and views."""

import gm6
import gmapi
import larkspur
import pygame
import pytest
from engine import resources
from engine.resources import BackgroundSlot, Placement, set_view

RED, GREEN, BLUE = (255, 0, 0), (0, 255, 0), (0, 0, 255)


def at(surface, x, y):
    return tuple(surface.get_at((x, y)))[:3]


@pytest.fixture
def kind(game, picture):
    game.add_sprite("spr_dot", [picture(4, 4, GREEN)], (2, 2))
    return game.add_object("obj_dot", sprite=gmapi.spr_dot)


def plain(width, height, color):
    surface = pygame.Surface((width, height), 0, 32)
    surface.fill(color)
    return surface.convert()


def test_room_runs_its_creation_code_once_after_its_instances(game, kind):
    gmapi.made = []
    made = game.add_room("room_coded", 100, 100)
    made.creation_code = "made.append(instance_number(obj_dot))"
    made.instances = [Placement(kind, 1, 1), Placement(kind, 2, 2)]
    gm6.goto_room(made)
    assert gmapi.made == [2] and made.created == 1


def test_room_is_built_anew_unless_it_is_persistent(game, kind, room):
    gmapi.entered = []
    for persistent, same in ((0, False), (1, True)):
        made = game.add_room("room_again", 100, 100)
        made.creation_code = "entered.append(1)"
        made.room_persistent = persistent
        made.instances = [Placement(kind, 1, 1)]
        gm6.goto_room(made)
        first = made.all_objects[0]
        gm6.goto_room(room)
        assert first.alive == same
        gm6.goto_room(made)
        assert (made.all_objects[0] is first) == same and len(made.all_objects) == 1
    assert gmapi.entered == [1, 1, 1]


def test_room_entered_again_without_leaving_is_built_anew_only_if_it_does_not_persist(game, kind):
    for persistent, count in ((0, 1), (1, 1)):
        made = game.add_room("room_entered", 100, 100)
        made.room_persistent = persistent
        made.instances = [Placement(kind, 1, 1)]
        made.Create()
        first = made.all_objects[0]
        made.Create()
        assert len(made.all_objects) == count and (made.all_objects[0] is first) == persistent


def test_room_start_and_end_events_run(game, kind, room):
    gmapi.order = []
    kind.on(resources.EVENT_OTHER, "order.append('start')", key=resources.OTHER_ROOM_START)
    kind.on(resources.EVENT_OTHER, "order.append('end')", key=resources.OTHER_ROOM_END)
    made = game.add_room("room_events", 100, 100)
    made.instances = [Placement(kind, 1, 1)]
    gm6.goto_room(made)
    gm6.goto_room(room)
    assert gmapi.order == ["start", "end"]


def test_step_stops_when_the_room_changes(game, kind, room):
    """A persistent room that is left in the middle of a step keeps the rest of it for later."""
    gmapi.moves = []
    kind.on(resources.EVENT_ALARM, "room_goto(room_test)", key=0)
    kind.on(resources.EVENT_STEP, "moves.append(1)")
    made = game.add_room("room_leaving", 100, 100)
    made.room_persistent = 1
    made.instances = [Placement(kind, 5, 5)]
    gm6.goto_room(made)
    made.all_objects[0].alarm[0] = 1
    gm6.step()
    assert gm6.current_room is room and gmapi.moves == []


def test_room_goto_takes_numbers_and_variables(game, room):
    other = game.add_room("room_other", 10, 10)
    gmapi.room_goto(gmapi.GMVar(int(other)))
    assert gm6.current_room is other
    gmapi.room_goto(0)
    assert gm6.current_room is room


def test_background_colour_fills_a_room_without_views(screen, room):
    room.draw_bgcolor, room.bgcolor = 1, gmapi.make_color_rgb(10, 20, 30)
    gm6.draw()
    assert at(screen, 0, 0) == at(screen, 319, 239) == (10, 20, 30)


def test_tiled_background_covers_the_screen_from_any_start(screen, game):
    checker = plain(40, 30, RED)
    checker.fill(BLUE, (0, 0, 20, 30))
    game.add_background("bg_checker", checker)
    made = game.add_room("room_tiled", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_checker, x=-7, y=13, htiled=True, vtiled=True)
    gm6.goto_room(made)
    gm6.draw()
    wrong = [
        (x, y)
        for x in range(0, 320, 3)
        for y in range(0, 240, 7)
        if at(screen, x, y) != (BLUE if (x + 7) % 40 < 20 else RED)
    ]
    assert wrong == []


def test_background_tiled_one_way_stays_a_band(screen, game):
    game.add_background("bg_band", plain(32, 10, RED))
    made = game.add_room("room_band", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_band, x=5, y=100, htiled=True)
    gm6.goto_room(made)
    gm6.draw()
    assert at(screen, 0, 99) == at(screen, 0, 110) == (0, 0, 0)
    assert at(screen, 0, 100) == at(screen, 319, 109) == RED


def test_stretched_background_fills_the_room_and_is_made_once(screen, game):
    game.add_background("bg_small", plain(8, 6, GREEN))
    made = game.add_room("room_stretched", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_small, stretch=True)
    gm6.goto_room(made)
    gm6.draw()
    copies = dict(gmapi.bg_small.scaled_data_cache)
    gm6.draw()
    assert at(screen, 0, 0) == at(screen, 318, 238) == GREEN
    assert len(copies) == 1
    assert gmapi.bg_small.scaled_data_cache.values()[0] is copies.values()[0]


def test_scrolling_background_moves_with_each_step(screen, game):
    game.add_background("bg_mark", plain(10, 10, RED))
    made = game.add_room("room_scroll", 320, 240)
    made.bg3 = BackgroundSlot(gmapi.bg_mark, x=50, y=60, hspeed=2, vspeed=-1.5)
    gm6.goto_room(made)
    for _ in range(4):
        gm6.step()
    gm6.draw()
    assert (made.background_x[3], made.background_y[3]) == (58, 54)
    assert at(screen, 58, 54) == RED and at(screen, 57, 54) == (0, 0, 0)


def test_hidden_and_empty_slots_draw_nothing(screen, game):
    game.add_background("bg_hidden", plain(320, 240, RED))
    made = game.add_room("room_hidden", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_hidden)
    gm6.goto_room(made)
    made.background_visible[0] = False
    gm6.draw()
    assert at(screen, 5, 5) == (0, 0, 0)
    made.background_visible[0] = True
    made.SetBackgroundIndex(0, -1)
    gm6.draw()
    assert at(screen, 5, 5) == (0, 0, 0)
    made.SetBackgroundIndex(0, 0)
    gm6.draw()
    assert at(screen, 5, 5) == RED and made.background_width[0] == 320


def test_rendered_background_is_kept_until_it_changes(screen, game):
    game.add_background("bg_first", plain(320, 240, RED))
    game.add_background("bg_second", plain(320, 240, BLUE))
    made = game.add_room("room_rendered", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_first)
    gm6.goto_room(made)
    made.RenderBackground()
    gmapi.bg_first.surf.fill(GREEN)
    gm6.draw()
    assert at(screen, 9, 9) == RED
    made.SetBackgroundIndex(0, 1)
    gm6.draw()
    assert at(screen, 9, 9) == BLUE


def test_tiles_are_drawn_in_order_in_a_room_without_views(screen, game, room):
    strip = plain(32, 16, RED)
    strip.fill(BLUE, (16, 0, 16, 16))
    background = game.add_background("bg_strip", strip)
    for number, (x, tilex) in enumerate(((0, 0), (40, 16), (48, 0))):
        tile = larkspur.RoomTileData()
        tile.x, tile.y, tile.tilex, tile.w, tile.h = x, 20, tilex, 16, 16
        tile.background_idx, tile.id = int(background), number
        room.tiles.append(tile)
    gm6.draw()
    colors = [at(screen, x, 25) for x in (0, 15, 16, 40, 47, 48, 63, 64)]
    assert colors == [RED, RED, (0, 0, 0), BLUE, BLUE, RED, RED, (0, 0, 0)]


@pytest.fixture
def tiled(game):
    """A room of 1000 x 240 with tiles of 16 pixels, red and blue in turn, along y 32."""
    strip = plain(32, 16, RED)
    strip.fill(BLUE, (16, 0, 16, 16))
    background = game.add_background("bg_strip", strip)
    made = game.add_room("room_tiles_in_view", 1000, 240)
    for number in range(10):
        tile = larkspur.RoomTileData()
        tile.x, tile.y, tile.tilex, tile.w, tile.h = number * 16, 32, number % 2 * 16, 16, 16
        tile.background_idx, tile.id = int(background), number
        made.tiles.append(tile)
    return made


def test_tiles_move_with_the_view(screen, tiled):
    set_view(tiled, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    gm6.goto_room(tiled)
    for xview, yview in ((0, 0), (37, 20), (100.5, 0)):
        tiled.view_xview[0], tiled.view_yview[0] = xview, yview
        screen.fill((0, 0, 0))
        gm6.draw()
        y = 32 - yview
        colors = [at(screen, x, y + 15) for x in range(0, 200, 9)]
        places = [x + int(xview) for x in range(0, 200, 9)]
        assert colors == [(0, 0, 0) if x >= 160 else BLUE if x // 16 % 2 else RED for x in places]
        assert at(screen, 0, y - 1) == at(screen, 0, y + 16) == (0, 0, 0)


def test_tiles_of_a_scaled_view_lie_close_and_keep_their_own_colours(screen, tiled):
    set_view(tiled, 0, (0, 0, 320, 240), (40, 30, 96, 72))
    gm6.goto_room(tiled)
    gm6.draw()
    copies = len(gmapi.bg_strip.scaled_data_cache)
    gm6.draw()
    assert 2 <= copies == len(gmapi.bg_strip.scaled_data_cache) <= 4
    for x in range(96):
        column = [at(screen, 40 + x, 30 + y) for y in range(72)]
        if x < 48:
            number = sum(int(edge * 4.8) <= x for edge in range(1, 10))
            own = BLUE if number % 2 else RED
            top = 9  # 32 pixels of the room at 0.3
            assert column[top : top + 5] == [own] * 5, x
            assert set(column[:top] + column[top + 5 :]) == {(0, 0, 0)}
        else:
            assert set(column) == {(0, 0, 0)}, x


def test_tiles_lie_over_the_backgrounds_and_under_the_instances(screen, game, tiled, kind):
    game.add_background("bg_below", plain(320, 240, (9, 9, 9)))
    tiled.bg0 = BackgroundSlot(gmapi.bg_below)
    set_view(tiled, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    tiled.instances = [Placement(kind, 8, 40)]
    gm6.goto_room(tiled)
    gm6.draw()
    gm6.draw()
    assert at(screen, 8, 40) == GREEN and at(screen, 1, 40) == RED
    assert at(screen, 8, 60) == (9, 9, 9)


def test_tile_outside_of_its_background_draws_nothing(screen, tiled):
    for tile in tiled.tiles:
        tile.tilex = 500
    for port in ((0, 0, 320, 240), (10, 10, 96, 72)):
        set_view(tiled, 0, (0, 0, 320, 240), port)
        gm6.goto_room(tiled)
        gm6.draw()
        assert not [x for x in range(320) for y in (12, 22, 40) if any(at(screen, x, y))]


def test_instances_are_drawn_deepest_first(screen, game, room, picture):
    for name, color, depth in (("near", RED, -5), ("far", BLUE, 5), ("middle", GREEN, 0)):
        game.add_sprite("spr_" + name, [picture(20, 20, color)])
        kind = game.add_object("obj_" + name, sprite=getattr(gmapi, "spr_" + name), depth=depth)
        gmapi.instance_create(dict(near=0, far=0, middle=10)[name], 0, kind)
    gm6.draw()
    gm6.draw()
    assert at(screen, 5, 5) == RED and at(screen, 15, 5) == RED and at(screen, 25, 5) == GREEN


def test_room_is_sorted_when_it_is_entered(game, kind):
    near = game.add_object("obj_nearer", sprite=gmapi.spr_dot, depth=-5)
    made = game.add_room("room_sorted", 100, 100)
    made.instances = [Placement(near, 1, 1), Placement(kind, 1, 1)]
    gm6.goto_room(made)
    assert [drawn.object_index for drawn in made.drawn_objects] == [kind, near]


def test_invisible_kinds_are_not_drawn(game, kind):
    hidden = game.add_object("obj_hidden", sprite=gmapi.spr_dot, visible=False)
    made = game.add_room("room_unseen", 100, 100)
    made.instances = [Placement(hidden, 1, 1), Placement(kind, 1, 1)]
    gm6.goto_room(made)
    assert [drawn.object_index for drawn in made.drawn_objects] == [kind]


def test_main_view_follows_its_instance_inside_the_room(screen, game, kind):
    made = game.add_room("room_wide", 1000, 240)
    set_view(made, 0, (0, 0, 320, 240), (0, 0, 320, 240), kind, (100, 120))
    made.instances = [Placement(kind, 50, 120)]
    gm6.goto_room(made)
    dot = made.all_objects[0]
    gm6.draw()  # resolves how the dot is drawn
    positions = []
    for x in (50, 250, 900):
        dot.x = float(x)
        screen.fill((0, 0, 0))
        gm6.draw()
        positions.append(made.view_xview[0])
        assert at(screen, int(x - made.view_xview[0]), 120) == GREEN
    assert positions == [0, 150, 680]


def test_map_view_draws_everything_scaled_into_its_port(screen, game, kind):
    game.add_background("bg_sky", plain(64, 480, BLUE))
    made = game.add_room("room_mapped", 1280, 480)
    made.bg0 = BackgroundSlot(gmapi.bg_sky, htiled=True)
    set_view(made, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    set_view(made, 1, (0, 0, 1280, 480), (100, 20, 160, 60))
    game.add_sprite("spr_large", [pygame.Surface((80, 80)).convert_alpha()], (40, 40))
    gmapi.spr_large.subimages[0].fill(RED + (255,))
    large = game.add_object("obj_large", sprite=gmapi.spr_large)
    made.instances = [Placement(large, 640, 240)]
    gm6.goto_room(made)
    made.draw_bgcolor = 1
    made.bgcolor = gmapi.make_color_rgb(9, 9, 9)
    gm6.draw()
    gm6.draw()
    assert at(screen, 100, 20) == at(screen, 259, 79) == BLUE
    assert at(screen, 180, 50) == RED
    reds = [(x, y) for x in range(100, 260) for y in range(20, 80) if at(screen, x, y) == RED]
    assert min(reds) == (175, 45) and max(reds) == (184, 54)


def test_unscaled_view_at_another_place_of_the_screen(screen, game, kind):
    """Ports that do not start in the corner are composed apart, and everything lands in them."""
    game.add_background("bg_edge", plain(160, 120, BLUE))
    made = game.add_room("room_shifted", 320, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_edge, x=20, y=10)
    set_view(made, 0, (20, 10, 160, 120), (100, 60, 160, 120))
    made.instances = [Placement(kind, 40, 30)]
    gm6.goto_room(made)
    gm6.draw()
    gm6.draw()
    assert at(screen, 100, 60) == at(screen, 259, 179) == BLUE
    assert at(screen, 99, 60) == at(screen, 260, 179) == (0, 0, 0)
    assert at(screen, 120, 80) == GREEN and at(screen, 123, 80) == BLUE


def test_drawing_in_a_view_stays_inside_its_port(screen, game, kind):
    made = game.add_room("room_ports", 320, 240)
    set_view(made, 0, (0, 0, 320, 240), (200, 100, 80, 60))
    game.add_sprite("spr_huge", [pygame.Surface((800, 800)).convert_alpha()], (400, 400))
    gmapi.spr_huge.subimages[0].fill(RED + (255,))
    made.instances = [Placement(game.add_object("obj_huge", sprite=gmapi.spr_huge), 0, 0)]
    gm6.goto_room(made)
    gm6.draw()
    gm6.draw()
    outside = [
        (x, y)
        for x in range(0, 320, 2)
        for y in range(0, 240, 2)
        if at(screen, x, y) == RED and not (200 <= x < 280 and 100 <= y < 160)
    ]
    assert outside == [] and at(screen, 200, 100) == RED
    assert screen.get_clip() == screen.get_rect()


def test_parallax_background_keeps_its_share_of_the_way(screen, game, kind):
    game.add_background("bg_far", plain(10, 10, RED))
    made = game.add_room("room_far", 2000, 240)
    made.bg0 = BackgroundSlot(gmapi.bg_far, x=100, y=50, parallax=0.75)
    set_view(made, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    gm6.goto_room(made)
    made.view_xview[0] = 200
    gm6.draw()
    assert at(screen, 50, 55) == RED and at(screen, 49, 55) == (0, 0, 0)


def test_own_draw_code_runs_with_self_in_each_view(screen, game, kind):
    gmapi.drawn = []
    kind.on(resources.EVENT_DRAW, "drawn.append((self.id, view.number))")
    made = game.add_room("room_code", 320, 240)
    set_view(made, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    set_view(made, 1, (0, 0, 320, 240), (0, 0, 32, 24))
    made.instances = [Placement(kind, 5, 5)]
    gm6.goto_room(made)
    gm6.draw()
    number = made.all_objects[0].id
    assert gmapi.drawn == [(number, 0), (number, 1)] and gmapi.self is None


def test_error_in_draw_code_is_raised_and_others_are_drawn(screen, game, kind):
    kind.on(resources.EVENT_DRAW, "1 / 0")
    gmapi.drawn = []
    fine = game.add_object("obj_fine", depth=-1)
    fine.on(resources.EVENT_DRAW, "drawn.append(self.id)")
    made = game.add_room("room_fault", 320, 240)
    set_view(made, 0, (0, 0, 320, 240), (0, 0, 320, 240))
    made.instances = [Placement(kind, 5, 5), Placement(fine, 5, 5)]
    gm6.goto_room(made)
    with pytest.raises(ZeroDivisionError):
        gm6.draw()
    assert len(gmapi.drawn) == 1
    assert screen.get_clip() == screen.get_rect()


def test_frames_are_counted_in_gmapi(room):
    gm6.draw()
    assert type(gmapi.fps) is int and gmapi.fps >= 0
