"""Resources: numbers, names, saving and loading again."""

import pickle

import gm6
import gmapi
import larkspur
import pygame
import pytest


def test_resources_are_published_and_numbered(game, picture):
    first = game.add_sprite("spr_first", [picture(4, 4)])
    second = game.add_sprite("spr_second", [picture(6, 8)], (3, 4))
    assert gmapi.spr_second is second and (int(first), int(second)) == (0, 1)
    assert second == 1 and first < second
    assert (second.w, second.h, second.rightbound, second.yorigin) == (6, 8, 6, 4)
    assert str(game.add_background("bg_one", picture(3, 3))) == "0"
    assert int(game.add_room("room_one", 10, 20)) == 0
    assert int(game.add_object("obj_one")) == 0


def test_new_room_has_its_views_off(game):
    made = game.add_room("room_new", 10, 20)
    assert not made.view_enabled and not any(made.view_visible)
    assert all(
        type(getattr(made, name)) is larkspur.Floatlist8 for name in gmapi.resources.VIEW_MEMBERS
    )
    assert [made.view_object[view] for view in range(8)] == [-1.0] * 8


@pytest.mark.parametrize("protocol", [0, 1, 2])
def test_pickled_sprite_loads_its_pictures_again(game, picture, tmpdir, monkeypatch, protocol):
    sprite = game.add_sprite("spr_saved", [picture(5, 7), picture(5, 7, (255, 0, 0))], (2, 3))
    sprite.transparent = 1
    for number, image in enumerate(sprite.subimages):
        pygame.image.save(image, str(tmpdir.join("spr_saved_%d.png" % number)))
    monkeypatch.setattr(gm6, "image_directory", str(tmpdir))
    loaded = pickle.loads(pickle.dumps(sprite, protocol))
    assert loaded is not sprite and gmapi.spr_saved is loaded
    assert (loaded.name, loaded.w, loaded.h, loaded.xorigin) == ("spr_saved", 5, 7, 2)
    assert len(loaded.subimages) == 2 and loaded.transparent == 1
    assert tuple(loaded.subimages[1].get_at((0, 0))) == (255, 0, 0, 255)
    assert loaded.scalecache == {}


def test_pickled_background_loads_its_picture_again(game, picture, tmpdir, monkeypatch):
    background = game.add_background("bg_saved", picture(9, 4, (0, 0, 255)))
    pygame.image.save(background.surf, str(tmpdir.join("bg_saved.png")))
    monkeypatch.setattr(gm6, "image_directory", str(tmpdir))
    loaded = pickle.loads(pickle.dumps(background))
    assert (loaded.w, loaded.h, gmapi.bg_saved is loaded) == (9, 4, True)
    assert tuple(loaded.surf.get_at((8, 3))) == (0, 0, 255, 255)


def test_missing_picture_is_reported(game, picture, tmpdir, monkeypatch):
    """With pygame's own exception: pygame 2 says which file operation failed."""
    background = game.add_background("bg_lost", picture(9, 4))
    monkeypatch.setattr(gm6, "image_directory", str(tmpdir))
    with pytest.raises(pygame.error if pygame.version.vernum < (2,) else IOError):
        pickle.loads(pickle.dumps(background))


def test_draw_event_lies_where_the_renderer_looks(game):
    kind = game.add_object("obj_drawn")
    kind.on(gmapi.resources.EVENT_DRAW, "drawn = 1")
    events = kind.py_objectdata.events
    assert len(events) == 11 and len(events[8]) == 1
    assert type(events[8][0].python) is type((lambda: 0).__code__)
