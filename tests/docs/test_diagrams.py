"""The manual's diagrams are what their texts give, and say what larkspur does."""

import imp
import os

import larkspur
import pytest
from support import documents
from support.host import Plain
from support.rooms import make_view_room, set_view

diagrams = imp.load_source("diagrams", os.path.join(documents.DOCS, "make", "diagrams.py"))
FOLLOWING = os.path.join(documents.DOCS, "make", "diagrams", "following.txt")


def test_pictures_are_current():
    assert diagrams.main(["--check"]) == 0


def test_picture_that_is_not_current_is_noticed(tmpdir, monkeypatch, capsys):
    monkeypatch.setattr(diagrams, "PICTURES", str(tmpdir))
    assert diagrams.main([]) == 0
    assert diagrams.main(["--check"]) == 0
    tmpdir.join("following.svg").write("other")
    tmpdir.join("frame-with-views.svg").remove()
    assert diagrams.main(["--check"]) == 1
    err = capsys.readouterr()[1]
    assert "following.svg" in err and "frame-with-views.svg" in err and "without" not in err


def test_line_that_is_not_understood_is_refused():
    with pytest.raises(ValueError):
        diagrams.picture_of("sequence title\nlane a: A\na => a: text\n")


def panels():
    with open(FOLLOWING) as text:
        return diagrams.parse_following(diagrams.content_lines(text.read())[1:])


@pytest.mark.parametrize("place", [place for place, _ in panels()[1]])
def test_view_follows_as_in_the_picture(host, place):
    sizes = panels()[0]
    (room_width, room_height), (width, height) = sizes["room"], sizes["view"]
    host.game.objects.append(Plain(instances=[Plain(x=place[0], y=place[1])], children=[]))
    room = make_view_room(room_width=room_width, room_height=room_height)
    border = sizes["border"]
    set_view(room, 0, object=0, wview=width, hview=height, hborder=border[0], vborder=border[1])
    larkspur.Room_Draw(room, host.screen)
    assert (room.view_xview[0], room.view_yview[0]) == tuple(
        diagrams.followed_position(
            place[axis], border[axis], sizes["view"][axis], sizes["room"][axis]
        )
        for axis in (0, 1)
    )
