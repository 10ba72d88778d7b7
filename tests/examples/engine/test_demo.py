"""The demo game: its rooms, keys and panels."""
import demo
import gm6
import gmapi
import pygame
import pytest
from evening import art, checks, game as evening_game, garden, village


def painted_once(paint):
    """The same function, painting each picture only once for all tests."""
    pictures = {}

    def painted(*arguments):
        if arguments not in pictures:
            pictures[arguments] = paint(*arguments)
        return pictures[arguments]
    return painted


for name in ("sky", "moon", "clouds", "mountains", "hills", "ground", "pine", "house", "glow",
             "garden_tiles", "water", "star_frames"):
    setattr(art, name, painted_once(getattr(art, name)))


@pytest.fixture
def evening(game, monkeypatch):
    """The running game on a display of its size, started without its long warm-up."""
    monkeypatch.setattr(evening_game, "warm_up", lambda steps: None)
    gmapi.score = gmapi.GMVar(0)
    gm6.start(pygame.display.set_mode(evening_game.SIZE, 0, 32))
    return evening_game.Evening(pygame.display.get_surface())


def play(evening, frames, *keys):
    for key in keys:
        evening.press(key)
    for _ in range(frames):
        evening.frame()
    for key in keys:
        evening.release(key)


def hero():
    return gmapi.obj_hero.instances[0]


def test_hero_walks_and_the_view_follows(evening):
    play(evening, 2)
    start = hero().x
    play(evening, 200, gmapi.vk_right)
    assert hero().x > start + 300
    view = evening.village.view_xview[0]
    assert view > 0 and abs(hero().x - view - evening.village.view_hborder[0]) < 5


def test_hero_jumps_once_from_the_ground_and_lands(evening):
    play(evening, 3)
    assert hero().grounded and hero().y == village.GROUND
    play(evening, 10, gmapi.vk_space)
    height = hero().y
    assert height < village.GROUND - 60 and not hero().grounded
    evening.press(gmapi.vk_space)
    assert hero().vspeed > village.JUMP
    play(evening, 60)
    assert hero().y == village.GROUND and hero().grounded


def test_crates_stop_the_hero_and_carry_it(evening):
    crate = min(gmapi.obj_crate.instances, key=lambda crate: crate.x)
    hero().x = crate.x - 60
    play(evening, 60, gmapi.vk_right)
    assert crate.x - 22 - 10 - 4 <= hero().x <= crate.x - 22 - 10
    hero().x, hero().y = crate.x, crate.y - 80
    play(evening, 40)
    assert hero().y == crate.y - 44 and hero().grounded


def test_hero_stays_in_the_room(evening):
    hero().x = 60.0
    play(evening, 60, gmapi.vk_left)
    assert 20 < hero().x < 32


def test_star_goes_into_the_inventory(evening):
    play(evening, 1)
    star = gmapi.obj_star_5.instances[0]
    count = gmapi.instance_number(gmapi.obj_star)
    hero().x, hero().y = star.x, star.y + 20
    play(evening, 1)
    assert gmapi.instance_number(gmapi.obj_star) == count - 1 and not star.alive
    assert int(gmapi.inventory[1, 1]) == 1 and gmapi.score == 10
    assert hero().sparkle.count() == 36


def test_tab_leads_to_the_garden_and_back_to_the_same_village(evening):
    play(evening, 30, gmapi.vk_right)
    place = hero().x
    play(evening, 2, gmapi.vk_tab)
    assert evening.room is evening.garden and not evening.room.view_enabled
    play(evening, 2, gmapi.vk_tab)
    assert evening.room is evening.village and abs(hero().x - place) < 10


def test_walls_water_and_fountain_stop_the_walker(evening):
    evening.press(gmapi.vk_tab)
    walker = gmapi.obj_walker.instances[0]
    play(evening, 200, gmapi.vk_up)
    fountain = gmapi.obj_fountain.instances[0]
    assert walker.y > fountain.y and garden.walkable(walker.x, walker.y)
    play(evening, 300, gmapi.vk_left)
    assert walker.x > 32
    assert not garden.walkable(20 * 32 + 5, 5 * 32 + 5) and not garden.walkable(-5, 5)
    assert garden.walkable(15 * 32 + 5, 4 * 32)


def test_every_letter_of_the_plan_has_a_tile(evening):
    letters = sum(len(row.replace("~", "")) for row in garden.PLAN)
    assert len(evening.garden.tiles) == letters
    assert all(len(row) == 30 for row in garden.PLAN)


def test_keys_fold_inventory_and_map(evening):
    evening.press(pygame.K_m)
    assert not evening.village.view_visible[1]
    evening.press(pygame.K_m)
    evening.press(pygame.K_i)
    play(evening, 2)
    assert evening.village.view_visible[1]
    assert not any(hud.open for hud in gmapi.obj_hud.instances)


def test_tickled_snowman_sparkles(evening, monkeypatch):
    snowman = gmapi.obj_snowman.instances[0]
    systems = len(gmapi.particle_systems())
    x, y = snowman.x - gmapi.mouse_x(), snowman.y - 30 - gmapi.mouse_y()
    at = pygame.mouse.get_pos()
    monkeypatch.setattr(pygame.mouse, "get_pos", lambda: (at[0] + x, at[1] + y))
    evening.room.MouseButtonDown(1)
    evening.room.MouseButtonDown(1)
    assert len(gmapi.particle_systems()) == systems + 1     # one snowman, one system
    assert snowman.sparkle.count() == 80


def test_particles_settle_at_a_steady_number(evening):
    """Snow that is born equals snow that melts: no growth over the lives of several clouds."""
    for _ in range(400):
        gm6.step()
    first = evening_game.living_particles()
    for _ in range(300):
        gm6.step()
    assert 2000 <= first <= 6000
    assert abs(evening_game.living_particles() - first) < first * 0.1


def test_every_event_of_every_kind_is_compiled(evening):
    for kind in gmapi.game.objects:
        for event in kind.py_objectdata.events:
            actions = sum(event.values(), []) if isinstance(event, dict) else event
            assert all(hasattr(action.python, "co_code") for action in actions)


def test_window_closed_ends_the_game(game, capsys, monkeypatch):
    monkeypatch.setattr(evening_game, "warm_up", lambda steps: None)
    screen = demo.open_display(pygame, evening_game.SIZE)
    pygame.event.post(pygame.event.Event(pygame.QUIT))
    assert demo.play(pygame, evening_game, screen, None) == 0
    assert "window closed: 1 frames" in capsys.readouterr().out


def test_escape_ends_the_game(game, capsys, monkeypatch):
    monkeypatch.setattr(evening_game, "warm_up", lambda steps: None)
    screen = demo.open_display(pygame, evening_game.SIZE)
    for kind, key in ((pygame.KEYDOWN, pygame.K_RIGHT), (pygame.KEYUP, pygame.K_RIGHT),
                      (pygame.KEYDOWN, pygame.K_ESCAPE)):
        pygame.event.post(pygame.event.Event(kind, key=key, mod=0, unicode=u""))
    assert demo.play(pygame, evening_game, screen, None) == 0
    assert "Escape: 1 frames" in capsys.readouterr().out


def test_check_finds_fault_with_empty_pictures(evening, tmpdir):
    path = str(tmpdir.join("black.png"))
    pygame.image.save(pygame.Surface(evening_game.SIZE), path)
    small = str(tmpdir.join("small.png"))
    pygame.image.save(pygame.Surface((10, 10)), small)
    found = "\n".join(checks.faults(pygame, [(path, "room_village"), (path, "room_village"),
                                             (small, "room_village")], 3))
    for text in ("pictures of both rooms are wanted", "3 particles lived at once",
                 "there are too few colours", "the map has no frame", "nothing burns",
                 "there is no night sky", "the size is 10 x 10"):
        assert (text in found) == (text != "there is no night sky"), text
    garden_faults = checks.faults(pygame, [(path, "room_garden")], 5000)
    assert any("grass" in fault for fault in garden_faults)
    assert any("water" in fault for fault in garden_faults)
