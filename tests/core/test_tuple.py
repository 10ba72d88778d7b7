"""Tuples that larkspur makes: all items are there when host code first can see them."""

import larkspur
from support import pending, subprocess_python
from support.collecting import tuples_with_holes
from support.host import Plain
from support.rooms import Drawable, make_instance, make_room, make_view_room

INSTANCE_ARGUMENTS = 9


class Looking(Plain):
    """Looks for tuples with holes whenever it is asked for an attribute."""

    seen = []

    def __getattribute__(self, name):
        self_class = Plain.__getattribute__(self, "__class__")
        self_class.seen.append(tuples_with_holes())
        return Plain.__getattribute__(self, name)


def test_no_hole_shows_while_an_instances_attributes_are_fetched(host):
    instance = Looking(**make_instance().__dict__)
    del Looking.seen[:]
    assert pending.draw_view(make_view_room(), host.screen, 0, (instance,)) == (1, None)
    assert len(Looking.seen) > INSTANCE_ARGUMENTS and not any(Looking.seen)
    assert len(host.named("draw_sprite_ext")) == 1


def test_no_hole_shows_while_drawn_objects_are_taken(host):
    log, seen = [], []

    def drawn_objects():
        for name in "abc":
            seen.append(tuples_with_holes())
            yield Drawable(log, name)
        seen.append(tuples_with_holes())

    larkspur.Room_Draw(make_room(drawn_objects=drawn_objects()), host.screen)
    assert log == ["a", "b", "c"]
    assert len(seen) == 4 and not any(seen)


# In a process of its own few objects have to be looked at, and nothing else fills the free lists.
LOOKING = """
from support import host
host.install_modules()
import gc
import larkspur
from support.collecting import CollectingEverywhere, empty_free_lists, tuples_with_holes
held = []
"""

STATES = (
    LOOKING
    + """
for kind in (larkspur.GMRoom, larkspur.GMSprite, larkspur.RoomTileData, larkspur.InstanceList):
    record = kind()
    seen = []
    held.append(empty_free_lists())
    with CollectingEverywhere(lambda: seen.append(tuples_with_holes())) as collections:
        state = record.__reduce__()
    print kind.__name__, collections.points > 0, sum(seen), len(state)
"""
)


def test_no_hole_shows_while_a_state_is_made():
    out, _ = subprocess_python.output(STATES)
    assert out.splitlines() == [
        "GMRoom True 0 3",
        "GMSprite True 0 3",
        "RoomTileData True 0 3",
        "InstanceList True 0 3",
    ]


RECORDS = (
    LOOKING
    + """
for kind in (larkspur.GMSprite, larkspur.BackgroundData):
    members = [name for name in dir(kind) if not name.startswith("__")]
    seen = []
    def look():
        shown = gc.get_objects()
        for record in shown:
            if type(record) is kind:
                seen.append(all([hasattr(record, name) for name in members]))
        del shown[:]
        held.append(shown)  # or its memory would serve for the record's list
    made = [kind()]
    held.append(empty_free_lists())
    with CollectingEverywhere(look) as collections:
        for i in range(20):
            made.append(kind())
            held.append([[] for _ in range(i % 3)])
    print kind.__name__, collections.points > 20, len(seen) > 20, all(seen)
"""
)


def test_no_record_shows_before_it_has_its_fields():
    out, _ = subprocess_python.output(RECORDS)
    assert out.splitlines() == ["GMSprite True True True", "BackgroundData True True True"]


CUT_LIST = """
from support import host, rooms
from support.collecting import CollectingEverywhere
host.install_modules()
import larkspur, pygame
screen = pygame.display.set_mode((32, 32), 0, 32)
host.set_up(larkspur, screen)
log = []
for left in (0, 3, 5000):
    drawn = [rooms.Drawable(log, i) for i in range(1000)]
    def change():
        del drawn[left:]
        drawn.extend([None] * (left - len(drawn)))
    room = rooms.make_room(drawn_objects=drawn)
    del log[:]
    with CollectingEverywhere(change) as collections:
        try:
            larkspur.Room_Draw(room, screen)
        except AttributeError:
            pass
    assert collections.points > 0
    instances = larkspur.InstanceList(range(1000))
    def cut():
        del instances[left:]
    with CollectingEverywhere(cut):
        state = instances.__reduce__()
    print log == range(len(log)), len(log), state[2] == tuple(range(len(state[2]))), len(state[2])
"""


def test_a_list_that_is_cut_while_its_tuple_is_made_gives_what_is_left():
    """Or what it had at first, where it has grown."""
    status, out, err = subprocess_python.run(CUT_LIST)
    assert status == 0, err
    assert out.splitlines()[-3:] == [
        "True 0 True 0",
        "True 3 True 3",
        "True 1000 True 1000",
    ]
