"""Sprites, rectangles, gradients and text."""

import gm6
import gmapi
import larkspur
import pygame
import pytest
from engine import drawing

RED, GREEN, BLUE, BLACK = (255, 0, 0), (0, 255, 0), (0, 0, 255), (0, 0, 0)


def at(surface, x, y):
    return tuple(surface.get_at((x, y)))[:3]


def painted(surface):
    """The (left, top, right, bottom) of all that is not black; right and bottom outside it."""
    hits = [
        (x, y)
        for x in range(surface.get_width())
        for y in range(surface.get_height())
        if at(surface, x, y) != BLACK
    ]
    xs, ys = [x for x, _ in hits], [y for _, y in hits]
    return (min(xs), min(ys), max(xs) + 1, max(ys) + 1) if hits else None


@pytest.fixture
def canvas(screen, room):
    """The black screen, ready for drawing in a room without views."""
    gm6.draw()
    return screen


def test_upside_down_sprite_shows_its_last_row_first(canvas, game, picture):
    image = picture(6, 6, RED)
    image.fill(BLUE + (255,), (0, 4, 6, 2))
    draw(game.add_sprite("spr_flag", [image]), yscale=-1.0)
    assert at(canvas, 102, 74) == at(canvas, 102, 75) == BLUE and at(canvas, 102, 79) == RED


@pytest.fixture
def half(game, picture):
    """A sprite of 8 x 6, red in its left and green in its right half, origin (2, 1)."""
    image = picture(8, 6, RED)
    image.fill(GREEN + (255,), (4, 0, 4, 6))
    return game.add_sprite("spr_half", [image, picture(8, 6, BLUE)], (2, 1))


def draw(
    sprite, subimage=0, x=100, y=80, xscale=1.0, yscale=1.0, angle=0, color=0xFFFFFF, alpha=1.0
):
    gmapi.draw_sprite_ext(sprite, subimage, x, y, xscale, yscale, angle, color, alpha)


def test_sprite_stands_with_its_origin_at_the_point(canvas, half):
    draw(half)
    assert painted(canvas) == (98, 79, 106, 85)
    assert at(canvas, 98, 79) == RED and at(canvas, 105, 84) == GREEN
    assert half.scalecache == {}


def test_sprite_is_taken_by_number_variable_and_subimage_modulo(canvas, half):
    draw(int(half), 3)
    assert at(canvas, 99, 80) == BLUE
    draw(gmapi.GMVar(int(half)), 2.9, x=200)
    assert at(canvas, 199, 80) == RED


def test_sprite_minus_one_draws_nothing(canvas):
    draw(-1)
    assert painted(canvas) is None


def test_mirrored_sprite_turns_about_its_origin(canvas, half):
    draw(half, xscale=-1.0, yscale=-1.0)
    assert painted(canvas) == (94, 75, 102, 81)
    assert at(canvas, 95, 77) == GREEN and at(canvas, 101, 77) == RED


def test_scaled_sprite_keeps_its_origin_at_the_point(canvas, half):
    draw(half, xscale=2.0, yscale=3.0)
    left, top, right, bottom = painted(canvas)
    assert (left, top) == (96, 77) and right in (111, 112) and bottom in (94, 95)


def test_turned_sprite_moves_counter_clockwise_about_its_origin(canvas, game, picture):
    """A long bar that points right points up after a quarter turn."""
    game.add_sprite("spr_bar", [picture(40, 4, RED)], (0, 2))
    draw(gmapi.spr_bar, angle=90)
    left, top, right, bottom = painted(canvas)
    assert bottom - top >= 38 and right - left <= 7
    assert abs(bottom - 80) <= 2 and abs((left + right) / 2.0 - 100) <= 2


def test_tint_and_fade_multiply_the_picture(canvas, game, picture):
    game.add_sprite("spr_white", [picture(4, 4)])
    draw(gmapi.spr_white, color=gmapi.make_color_rgb(200, 100, 50))
    assert max(abs(a - b) for a, b in zip(at(canvas, 101, 81), (200, 100, 50))) <= 3
    draw(gmapi.spr_white, x=120, alpha=0.5)
    assert all(124 <= part <= 129 for part in at(canvas, 121, 81))
    assert at(gmapi.spr_white.subimages[0], 1, 1) == (255, 255, 255)


def test_wholly_clear_sprite_draws_nothing(canvas, half):
    draw(half, alpha=0.0)
    draw(half, xscale=0.0)
    assert painted(canvas) is None


def test_transformed_copies_are_made_once(canvas, half):
    draw(half, xscale=2.0)
    copy = half.scalecache.values()[0]
    draw(half, xscale=2.0, x=30)
    assert half.scalecache.values() == [copy] and half.scalecache.values()[0] is copy
    draw(half, 1, xscale=2.0)
    assert len(half.scalecache) == 2


def test_cache_of_copies_is_bounded(canvas, half, monkeypatch):
    monkeypatch.setattr(drawing, "CACHE_LIMIT", 5)
    for number in range(1, 20):
        draw(half, xscale=1.0 + number)
        assert len(half.scalecache) <= 5
    assert len(half.scalecache) == 4  # 19 sizes: emptied at every fifth


def test_sprite_that_was_pickled_is_drawn_transformed_again(canvas, half):
    half.__reduce__()
    draw(half, xscale=2.0)
    assert painted(canvas) is not None and len(half.scalecache) == 1


def test_sprite_outside_the_view_costs_no_copy(canvas, half):
    draw(half, x=900, xscale=2.0)
    assert half.scalecache == {} and painted(canvas) is None


def test_sprite_from_the_screen_holds_what_was_there(canvas):
    canvas.fill(RED, (10, 10, 5, 5))
    sprite = gmapi.sprite_create_from_screen(8, 8, 12, 10, 2, 1)
    assert (sprite.w, sprite.h, sprite.xorigin, sprite.name) == (12, 10, 2, "screen")
    canvas.fill(BLACK)
    draw(sprite, x=52, y=41)
    assert painted(canvas) == (52, 42, 57, 47)


def test_opaque_rectangle_has_its_exact_size(canvas):
    gmapi.draw_set_color(gmapi.c_red)
    gmapi.draw_rectangle(20, 30, 60, 40)
    assert painted(canvas) == (20, 30, 60, 40) and at(canvas, 20, 30) == RED


def test_corners_of_a_rectangle_may_be_swapped(canvas):
    gmapi.draw_rectangle(60, 40, 20, 30)
    assert painted(canvas) == (20, 30, 60, 40)


def test_translucent_rectangle_blends_over_the_same_pixels(canvas):
    canvas.fill((100, 100, 100))
    gmapi.draw_set_color(gmapi.c_white)
    gmapi.draw_set_alpha(0.5)
    gmapi.draw_rectangle(20, 30, 60, 40)
    # 255 * 127 / 256 + 100 * 128 / 256, each cut
    assert at(canvas, 20, 30) == at(canvas, 59, 39) == (126 + 50,) * 3
    for x, y in ((19, 30), (60, 35), (20, 29), (20, 40)):
        assert at(canvas, x, y) == (100, 100, 100)


def test_outlines_leave_the_inside(canvas):
    for alpha in (1.0, 0.5):
        canvas.fill(BLACK)
        gmapi.draw_set_alpha(alpha)
        gmapi.draw_rectangle(20, 30, 60, 44, 1)
        assert at(canvas, 40, 37) == BLACK
        assert BLACK not in (at(canvas, 20, 30), at(canvas, 58, 30), at(canvas, 20, 42))


def test_rectangle_is_placed_and_cut_by_the_view(screen, game):
    from engine.resources import set_view

    made = game.add_room("room_scaled", 640, 480)
    set_view(made, 0, (100, 0, 640, 480), (40, 20, 160, 120))
    gm6.goto_room(made)
    gm6.draw()
    drawing.begin_pass(made)
    gmapi.draw_rectangle(140, 40, 180, 80)
    assert painted(screen) == (50, 30, 60, 40)
    screen.fill(BLACK)
    gmapi.draw_set_alpha(0.5)
    gmapi.draw_rectangle(-1000, -1000, 3000, 3000)
    assert painted(screen) == (40, 20, 200, 140)


def test_vertical_gradient_runs_from_top_to_bottom(canvas):
    red, blue = gmapi.c_red, gmapi.c_blue
    gmapi.draw_rectangle_color(10, 10, 30, 60, red, red, blue, blue)
    column = [at(canvas, 20, y) for y in range(10, 60)]
    assert column[0][0] > 250 and column[-1][2] > 240
    assert all(a[0] >= b[0] and a[2] <= b[2] for a, b in zip(column, column[1:]))


def test_horizontal_gradients_run_left_to_right_at_any_alpha(canvas):
    red, blue = gmapi.c_red, gmapi.c_blue
    for alpha in (1.0, 0.6):
        canvas.fill(BLACK)
        gmapi.draw_set_alpha(alpha)
        gmapi.draw_rectangle_color(10, 10, 110, 30, red, blue, blue, red)
        row = [at(canvas, x, 20) for x in range(10, 110)]
        assert row[0][0] > 240 * alpha and row[-1][2] > 225 * alpha
        assert all(a[0] >= b[0] and a[2] <= b[2] for a, b in zip(row, row[1:]))


def test_one_colour_in_all_corners_is_a_plain_rectangle(canvas):
    gmapi.draw_set_color(gmapi.c_blue)
    gmapi.draw_rectangle_color(10, 10, 20, 20, *[gmapi.c_red] * 4)
    assert at(canvas, 15, 15) == RED and painted(canvas) == (10, 10, 20, 20)
    assert gmapi.draw_get_color() == gmapi.c_blue


def test_four_corners_differ_as_given(canvas):
    corners = gmapi.c_red, gmapi.c_lime, gmapi.c_blue, gmapi.c_white
    gmapi.draw_rectangle_color(10, 10, 90, 90, *corners)
    near = [at(canvas, x, y) for x, y in ((10, 10), (88, 10), (88, 88), (10, 88))]
    for got, wanted in zip(near, (RED, GREEN, BLUE, (255, 255, 255))):
        assert max(abs(a - b) for a, b in zip(got, wanted)) < 24


def test_gradient_outline_is_drawn_opaque(canvas):
    red, blue = gmapi.c_red, gmapi.c_blue
    gmapi.draw_rectangle_color(10, 10, 40, 40, red, red, blue, blue, 1)
    assert at(canvas, 20, 10) == RED and at(canvas, 25, 25) == BLACK


def test_panel_lets_the_picture_through(canvas):
    canvas.fill((200, 200, 200))
    gmapi.draw_panel(10, 10, 100, 50, gmapi.c_blue, gmapi.c_black, 0.5)
    top, bottom = at(canvas, 50, 14), at(canvas, 50, 55)
    assert top[2] > top[0] > 40 and sum(top) > sum(bottom)
    assert at(canvas, 9, 30) == at(canvas, 112, 30) == at(canvas, 50, 62) == (200, 200, 200)


def test_text_is_written_in_colour_and_aligned(canvas):
    gmapi.draw_set_font(gmapi.text_font(20))
    gmapi.draw_set_color(gmapi.c_red)
    gmapi.draw_text(100, 50, "larkspur")
    left, top, right, _ = painted(canvas)
    assert 98 <= left <= 104 and top >= 50 and at(canvas, left + 1, top + 2)[1] == 0
    width = right - left
    canvas.fill(BLACK)
    gmapi.draw_set_halign(1)
    gmapi.draw_text(100, 50, "larkspur")
    gmapi.draw_set_halign(0)
    assert abs(painted(canvas)[0] - (100 - width // 2)) <= 4


def test_colours_are_blue_green_red():
    assert gmapi.make_color_rgb(1, 2, 3) == 0x030201
    assert gmapi.color_to_rgb(0x030201) == (1, 2, 3)
    assert gmapi.merge_color(0, 0xFF, 0.5) == 127


def test_colour_of_the_draw_properties_becomes_a_pixel(canvas):
    convert = getattr(gmapi, "__color_to_int")
    assert convert((255, 128, 1)) == convert(gmapi.make_color_rgb(255, 128, 1)) == 0xFF8001
    assert convert(pygame.Color(1, 2, 3, 4)) == 0x010203


def test_larkspur_draws_with_the_same_properties(canvas):
    gmapi.draw_set_color(gmapi.c_lime)
    larkspur.draw_rectangle(5, 5, 9, 9)
    assert at(canvas, 6, 6) == GREEN


def test_scaled_picture_that_is_run_length_encoded(canvas, game, picture):
    """Encoded by its first blit, a picture is still transformed right."""
    image = picture(20, 20, RED)
    image.set_alpha(255, pygame.RLEACCEL)
    sprite = game.add_sprite("spr_encoded", [image])
    draw(sprite)
    draw(sprite, x=150, xscale=2.0, yscale=2.0)
    draw(sprite, x=200, xscale=-1.0)
    assert at(canvas, 105, 85) == at(canvas, 160, 90) == at(canvas, 190, 85) == RED


def test_draw_properties_are_read_back():
    gmapi.draw_set_alpha(0.25)
    gmapi.draw_set_color(gmapi.c_orange)
    assert gmapi.draw_get_alpha() == 0.25 and gmapi.draw_get_color() == gmapi.c_orange
    gmapi.draw_set_alpha(1)


def test_directions_turn_counter_clockwise_on_a_screen_that_grows_downward():
    for direction, x, y in ((0, 10, 0), (90, 0, -10), (180, -10, 0), (270, 0, 10)):
        assert abs(gmapi.lengthdir_x(10, direction) - x) < 1e-9
        assert abs(gmapi.lengthdir_y(10, direction) - y) < 1e-9
