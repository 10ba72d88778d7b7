"""The demo game: its rooms, keys and panels."""

import demo
import gm6
import gmapi
import pygame
import pytest
from evening import art, checks, garden, hud, loading, village
from evening import game as evening_game


def painted_once(paint):
    """The same function, painting each picture only once for all tests."""
    pictures = {}

    def painted(*arguments):
        if arguments not in pictures:
            pictures[arguments] = paint(*arguments)
        return pictures[arguments]

    return painted


for name in (
    "sky",
    "moon",
    "clouds",
    "mountains",
    "hills",
    "ground",
    "pine",
    "house",
    "glow",
    "garden_tiles",
    "water",
    "star_frames",
):
    setattr(art, name, painted_once(getattr(art, name)))


@pytest.fixture
def evening(game, monkeypatch):
    """The running game on a display of its size, started without its long warm-up."""
    monkeypatch.setattr(evening_game, "warm_up", lambda steps: None)
    gmapi.score = gmapi.GMVar(0)
    made = evening_game.Evening(pygame.display.set_mode(evening_game.SIZE, 0, 32))
    for _ in made.load():
        pass
    return made


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
    assert len(gmapi.particle_systems()) == systems + 1  # one snowman, one system
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


@pytest.fixture
def window(game, monkeypatch):
    """A display for demo.play(), with no warm-up."""
    monkeypatch.setattr(evening_game, "warm_up", lambda steps: None)
    return demo.open_display(pygame, evening_game.SIZE)


QUIT = pygame.event.Event(pygame.QUIT)
ESCAPE = pygame.event.Event(pygame.KEYDOWN, key=pygame.K_ESCAPE, mod=0, unicode=unicode())


def play_with_events(window, monkeypatch, events, share):
    """demo.play() where the events come when this share of loading is done."""
    load = evening_game.Evening.load

    def loading_with_events(self):
        for done, what in load(self):
            yield done, what
            if done == share:
                for event in events:
                    pygame.event.post(event)

    monkeypatch.setattr(evening_game.Evening, "load", loading_with_events)
    return demo.play(pygame, evening_game, window, None)


@pytest.mark.parametrize("event, reason", [(QUIT, "window closed"), (ESCAPE, "Escape")])
def test_game_is_left(window, capsys, monkeypatch, event, reason):
    keys = [
        pygame.event.Event(kind, key=pygame.K_RIGHT, mod=0, unicode=unicode())
        for kind in (pygame.KEYDOWN, pygame.KEYUP)
    ]
    assert play_with_events(window, monkeypatch, keys + [event], 1.0) == 0
    assert reason + ": 1 frames" in capsys.readouterr().out


@pytest.mark.parametrize("event, reason", [(QUIT, "window closed"), (ESCAPE, "Escape")])
def test_game_is_left_while_it_loads(window, capsys, monkeypatch, event, reason):
    rooms = len(gmapi.game.rooms)
    assert play_with_events(window, monkeypatch, [event], 0.0) == 0
    assert reason + ": left while loading" in capsys.readouterr().out
    assert len(gmapi.game.rooms) == rooms


def test_loading_rises_evenly_to_the_whole_and_says_what(window):
    evening = evening_game.Evening(window)
    steps = list(evening.load())
    shares = [share for share, _ in steps]
    assert shares == [number / float(len(steps) - 1) for number in range(len(steps))]
    for what in ("mountains", "the garden", "ready"):
        assert what in [text for _, text in steps]
    assert evening.room is evening.village


def test_loading_is_seen_in_the_window_from_its_start(window, monkeypatch):
    shown = []
    flip = pygame.display.flip

    def flip_and_look():
        bar = (window.get_width() - loading.BAR_WIDTH) // 2, window.get_height() // 3 + 72
        filled = sum(
            window.get_at((x, bar[1]))[:3] == loading.TITLE
            for x in range(bar[0], bar[0] + loading.BAR_WIDTH)
        )
        shown.append((filled, pygame.image.tostring(window, "RGB")))
        flip()

    monkeypatch.setattr(pygame.display, "flip", flip_and_look)
    evening = evening_game.Evening(window)
    started = []
    load = evening.load
    evening.load = lambda: (started.append(len(shown)) or step for step in load())
    assert demo.load_in_window(pygame, evening, window) is None
    assert started[:3] == [0, 1, 2]  # each step's picture is shown before the next step
    widths = [filled for filled, _ in shown]
    assert widths == [
        loading.BAR_WIDTH * number // (len(shown) - 1) for number in range(len(shown))
    ]
    assert len(set(picture for _, picture in shown)) == len(shown)


@pytest.mark.parametrize(
    "seconds, known",
    [
        ((), False),
        ((10.9,), False),
        ((10.0, 11.99), False),
        ((10.9, 12.0), True),
        ((10.0, 10.5, 14.0), True),
    ],
)
def test_frame_rate_is_known_after_a_whole_second(game, monkeypatch, seconds, known):
    monkeypatch.setattr(gmapi, "fps", 57)
    rate = hud.FrameRate()
    for now in seconds:
        rate.frame_shown(now)
    assert rate.get() == (57 if known else None)


def test_counter_has_no_rate_before_it_is_known():
    assert hud.counter_text(3216, None) == "3216 particles"
    assert hud.counter_text(3216, 57) == "3216 particles   57 frames/s"


class Clock(object):
    """Stands in for the module `time`."""

    now = 0.0

    def time(self):
        return self.now


def counter_texts(evening, monkeypatch, frames, show):
    """The texts of the counter in a number of frames, a quarter of a second of the clock each."""
    texts = []
    write = hud.counter_text
    monkeypatch.setattr(
        hud, "counter_text", lambda *arguments: texts.append(write(*arguments)) or texts[-1]
    )
    clock = Clock()
    monkeypatch.setattr(evening_game, "time", clock)
    for number in range(frames):
        clock.now = 1000.5 + number / 4.0
        evening.frame()
        if show:
            evening.shown()
    return texts


def test_rate_appears_with_shown_frames(evening, monkeypatch):
    texts = counter_texts(evening, monkeypatch, 10, show=True)
    # The first frame is shown at 1000.5, the one that is shown at 1002.0 ends a whole second.
    assert [("frames/s" in text) for text in texts] == [False] * 7 + [True] * 3


def test_pictures_that_are_not_shown_have_no_rate(evening, monkeypatch):
    texts = counter_texts(evening, monkeypatch, 20, show=False)
    assert len(texts) == 20 and not any("frames/s" in text for text in texts)


def test_flames_keep_their_shades(evening):
    """From yellow through orange to red: not one flat colour, which is green at its fullest."""
    fire = gmapi.obj_campfire.instances[0]
    hero().x = fire.x - 200
    play(evening, 120)
    left = int(fire.x - evening.village.view_xview[0])
    bottom = int(fire.y - evening.village.view_yview[0])
    colors = [
        pygame.display.get_surface().get_at((x, y))
        for x in range(left - 20, left + 20)
        for y in range(bottom - 90, bottom - 30)
    ]
    green = [color[1] for color in colors if color[0] > 240]
    assert len(green) > 500
    assert sum(value == 255 for value in green) < 0.4 * len(green)
    assert sum(110 < value < 240 for value in green) > 0.4 * len(green)


def test_check_finds_fault_with_empty_pictures(evening, tmpdir):
    path = str(tmpdir.join("black.png"))
    pygame.image.save(pygame.Surface(evening_game.SIZE), path)
    small = str(tmpdir.join("small.png"))
    pygame.image.save(pygame.Surface((10, 10)), small)
    found = "\n".join(
        checks.faults(
            pygame, [(path, "room_village"), (path, "room_village"), (small, "room_village")], 3
        )
    )
    for text in (
        "pictures of both rooms are wanted",
        "3 particles lived at once",
        "there are too few colours",
        "the map has no frame",
        "nothing burns",
        "there is no night sky",
        "the size is 10 x 10",
    ):
        assert (text in found) == (text != "there is no night sky"), text
    garden_faults = checks.faults(pygame, [(path, "room_garden")], 5000)
    assert any("grass" in fault for fault in garden_faults)
    assert any("water" in fault for fault in garden_faults)


@pytest.mark.parametrize("room", ["room_village", "room_garden"])
@pytest.mark.parametrize(
    "color, fault", [((255, 255, 90), True), ((255, 200, 90), False), ((255, 255, 250), False)]
)
def test_check_finds_fault_with_flat_flames(tmpdir, room, color, fault):
    picture = pygame.Surface(evening_game.SIZE)
    picture.fill(color, (400, 300, 40, 40))
    path = str(tmpdir.join("fire.png"))
    pygame.image.save(picture, path)
    found = "\n".join(checks.faults(pygame, [(path, room)], 5000))
    assert ("the flames are one flat yellow" in found) == fault
