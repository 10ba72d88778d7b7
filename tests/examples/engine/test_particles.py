"""Particle systems, emitters and shapes."""

import gm6
import gmapi
import larkspur
import pytest
from engine import particles
from engine.resources import set_view

BLACK = (0, 0, 0)


def at(surface, x, y):
    return tuple(surface.get_at((x, y)))[:3]


def lit(surface, area):
    """How many pixels of (left, top, right, bottom) are not black."""
    return sum(
        at(surface, x, y) != BLACK for x in range(area[0], area[2]) for y in range(area[1], area[3])
    )


@pytest.fixture
def dust():
    """White points of 2 x 2 that stay where they are for 10 steps."""
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, gmapi.pt_shape_pixel)
    gmapi.part_type_life(made, 10, 10)
    return made


@pytest.fixture
def system(room):
    return gmapi.part_system_create(3)


def test_system_is_drawn_with_its_room_by_depth(room, system):
    assert list(room.drawn_objects) == [system] and system.depth == 3
    nearer = gmapi.part_system_create(-3)
    assert list(room.drawn_objects) == [system, nearer]
    assert gmapi.particle_systems() == [system, nearer]


def test_particles_live_their_steps_and_are_counted(system, dust):
    system.create(50, 60, dust, 7)
    counts = []
    for _ in range(11):
        counts.append(system.count())
        gm6.step()
        gm6.draw()
    assert counts == [7] * 10 + [0] and system.particles == []


def test_particles_are_drawn_in_a_room_without_views(screen, system, dust):
    system.create(50, 60, dust)
    gm6.step()
    gm6.draw()
    assert lit(screen, (0, 0, 100, 100)) == 4 and at(screen, 49, 59) == (255, 255, 255)


def test_particles_are_moved_by_the_main_view_and_drawn_once(screen, game, dust):
    made = game.add_room("room_views", 640, 480)
    set_view(made, 0, (100, 50, 320, 240), (0, 0, 320, 240))
    set_view(made, 1, (0, 0, 640, 480), (0, 0, 64, 48))
    gm6.goto_room(made)
    system = gmapi.part_system_create()
    system.create(200, 150, dust)
    gm6.step()
    gm6.draw()
    assert lit(screen, (98, 98, 103, 103)) == 4
    assert sum(larkspur.CParticle_dec_ttl(particle) for particle in system.particles) == 8


def test_system_without_automatic_draw_only_moves_on(screen, system, dust):
    system.py_automatic_draw = 0
    system.create(50, 60, dust)
    for _ in range(5):
        gm6.step()
        gm6.draw()
    assert lit(screen, (40, 50, 60, 70)) == 0 and system.count() == 1
    for _ in range(7):
        gm6.step()
        gm6.draw()
    assert system.count() == 0


def test_burst_stays_in_its_region(screen, system, dust):
    emitter = system.emitter()
    emitter.region(100, 120, 80, 90)
    system.burst(emitter, dust, 200)
    assert system.count() == 200
    gm6.draw()
    assert lit(screen, (99, 79, 121, 91)) > 100
    assert lit(screen, (0, 0, 320, 240)) == lit(screen, (99, 79, 121, 91))


def test_gaussian_emitter_crowds_in_the_middle(system):
    emitter = system.emitter()
    emitter.region(0, 90, 0, 90, gmapi.ps_distr_gaussian)
    places = [emitter.place() for _ in range(600)]
    assert all(0 <= x <= 90 and 0 <= y <= 90 for x, y in places)
    assert sum(30 <= x < 60 for x, _ in places) > 300


def test_stream_carries_its_fraction_on(system, dust):
    emitter = system.emitter()
    system.stream(emitter, dust, 0.75)
    for _ in range(4):
        gm6.step()
    assert system.count() == 3
    system.stream(emitter, dust, 0)
    gm6.step()
    assert system.count() == 3


def test_given_size_and_colour_replace_the_types(screen, system):
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, gmapi.pt_shape_pixel)
    system.create(50, 60, made, size=5.0, color=gmapi.c_red)
    gm6.draw()
    assert lit(screen, (40, 50, 60, 70)) == 100
    assert at(screen, 50, 60)[0] > 240 and at(screen, 50, 60)[1] < 12


def test_additive_particles_add_their_light(screen, room, system):
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, gmapi.pt_shape_flare)
    gmapi.part_type_blend(made, 1)
    room.draw_bgcolor, room.bgcolor = 1, gmapi.make_color_rgb(40, 0, 0)
    system.create(100, 100, made)
    gm6.draw()
    assert at(screen, 100, 100)[1] > 200 and at(screen, 91, 91) == (40, 0, 0)


def test_new_shape_forgets_pictures_of_the_old(screen, system):
    made = gmapi.part_type_create()
    gmapi.part_type_color3(made, gmapi.c_red, gmapi.c_red, gmapi.c_red)
    gmapi.part_type_shape(made, gmapi.pt_shape_pixel)
    system.create(50, 60, made)
    gm6.draw()
    assert lit(screen, (40, 50, 60, 70)) == 4
    half = gmapi.pygame.Surface((2, 2)).convert_alpha()  # as large as the first
    half.fill((255, 255, 255, 0))
    half.fill((255, 255, 255, 255), (0, 0, 2, 1))
    gmapi.part_type_shape(made, half)
    screen.fill(BLACK)
    gm6.draw()
    assert lit(screen, (40, 50, 60, 70)) == 2


def test_destroyed_system_frees_its_particles(room, system, dust):
    system.create(5, 5, dust, 50)
    gmapi.part_system_destroy(system)
    assert system.count() == 0 and not room.drawn_objects


def test_types_are_taken_from_game_variables(system, dust):
    system.create(5, 5, gmapi.GMVar(dust), 2)
    assert system.count() == 2


def test_every_shape_has_a_picture(screen):
    for number in particles._SHAPE_MAKERS:
        surface = gmapi.shape(number)
        assert surface is gmapi.shape(number) and surface.get_bitsize() == 32


def test_additive_shapes_are_black_where_they_end(screen):
    for number in (gmapi.pt_shape_flare, gmapi.pt_shape_ember):
        surface = gmapi.shape(number)
        assert at(surface, 0, 0) == BLACK
        assert at(surface, surface.get_width() // 2, surface.get_height() // 2)[0] > 180
