"""Instances, their events and lists."""

import sys

import gm6
import gmapi
import larkspur
import pytest
from engine import instances, resources
from engine.resources import Placement


@pytest.fixture
def kind(game, picture):
    game.add_sprite("spr_box", [picture(16, 16)], (8, 8))
    return game.add_object("obj_box", sprite=gmapi.spr_box)


def create(kind, x=50, y=60):
    return gmapi.instance_of(gmapi.instance_create(x, y, kind))


def test_created_instance_stands_in_registry_kind_and_room(room, kind):
    box = create(kind)
    assert instances.registry[box.id] is box
    assert list(kind.instances) == [box]
    assert list(room.all_objects) == [box] and list(room.drawn_objects) == [box]
    assert type(room.all_objects) is larkspur.InstanceList


def test_ids_are_never_used_twice(room, kind):
    first = gmapi.instance_create(0, 0, kind)
    gmapi.instance_destroy(first)
    assert gmapi.instance_create(0, 0, kind) > first


def test_destroyed_instance_leaves_every_list_after_its_event(room, kind):
    seen = []
    gmapi.witness = seen.append
    kind.on(resources.EVENT_DESTROY, "witness(self.id)")
    box = create(kind)
    gmapi.instance_destroy(box.id)
    gm6.destroy_instance(box)
    assert seen == [box.id] and not box.alive
    assert box.id not in instances.registry and not kind.instances
    assert not room.all_objects and not room.drawn_objects and not room.moving_objects


def test_instance_enters_the_lists_of_its_events_only(room, kind):
    kind.on(resources.EVENT_STEP, "pass")
    kind.on(resources.EVENT_ALARM, "pass", key=0)
    kind.on(resources.EVENT_MOUSE, "pass", key=resources.MOUSE_RIGHT_PRESS)
    box = create(kind)
    entered = [name for name in gm6._INSTANCE_LISTS if box in list(getattr(room, name))]
    assert sorted(entered) == sorted(
        [
            "all_objects",
            "drawn_objects",
            "stepped_objects",
            "alarmed_objects",
            "mouse_objects",
            "moving_objects",
            "mouse_rightpressed_objects",
            "animated_objects",
        ]
    )


def test_keyed_events_need_their_key(kind):
    with pytest.raises(ValueError):
        kind.on(resources.EVENT_ALARM, "pass")


def test_child_takes_over_events_and_may_replace_them(room, game):
    said = []
    gmapi.say = said.append
    parent = game.add_object("obj_parent")
    parent.on(resources.EVENT_CREATE, "say('parent')")
    parent.on(resources.EVENT_ALARM, "say('alarm')", key=1)
    child = game.add_object("obj_child", parent=parent)
    child.on(resources.EVENT_ALARM, "say('child alarm')", key=2)
    child.on(resources.EVENT_CREATE, "say('child')")
    created = create(child)
    create(parent)
    created.alarm[1] = 1
    room.StepAlarms()
    assert said == ["child", "parent", "alarm"]
    assert sorted(parent.py_objectdata.events[resources.EVENT_ALARM]) == [1]
    assert gmapi.instance_number(parent) == 2 and gmapi.instance_number(child) == 1


def test_event_code_sees_self_and_puts_it_back(room, kind):
    kind.on(resources.EVENT_CREATE, "self.marked = self.x + 1")
    gmapi.self = "before"
    box = create(kind, 5)
    assert box.marked == 6 and gmapi.self == "before" and gmapi.py_self_stack == []
    gmapi.self = None


def test_function_of_an_event_becomes_a_script(room, kind):
    def script_of_test(self):
        self.ran = True

    kind.on(resources.EVENT_CREATE, script_of_test)
    assert create(kind).ran and gmapi.script_of_test is script_of_test


def test_error_in_event_code_restores_self(room, kind):
    kind.on(resources.EVENT_STEP, "undefined_name")
    create(kind)
    with pytest.raises(NameError):
        room.StepEvents()
    assert gmapi.self is None and gmapi.py_self_stack == []


def test_alarm_rings_once_after_its_steps(room, kind):
    kind.on(resources.EVENT_CREATE, "self.rings = 0")
    kind.on(resources.EVENT_ALARM, "self.rings += 1", key=3)
    box = create(kind)
    box.alarm[3] = 3
    counted = []
    for _ in range(5):
        room.StepAlarms()
        counted.append(box.rings)
    assert counted == [0, 0, 1, 1, 1] and box.alarm[3] == -1


def test_movement_adds_gravity_then_speed(room, kind):
    box = create(kind, 10, 20)
    box.hspeed, box.vspeed, box.gravity = 2, 1, 0.5
    room.MoveInstances()
    room.MoveInstances()
    assert (box.x, box.y, box.vspeed) == (14.0, 20 + 1.5 + 2.0, 2.0)
    assert (box.xprevious, box.yprevious) == (12.0, 21.5)


def test_animation_runs_round(room, game, picture):
    game.add_sprite("spr_blink", [picture(4, 4), picture(4, 4), picture(4, 4)])
    blink = create(game.add_object("obj_blink", sprite=gmapi.spr_blink))
    blink.image_speed = 0.75
    for _ in range(5):
        room.StepEvents()
    assert blink.image_index == 0.75


def test_keys_reach_press_hold_and_release_events(room, kind):
    for name in ("pressed", "held", "released"):
        setattr(gmapi, name, [])
    kind.on(resources.EVENT_KEYPRESS, "pressed.append(1)", key=gmapi.vk_space)
    kind.on(resources.EVENT_KEYBOARD, "held.append(1)", key=gmapi.vk_space)
    kind.on(resources.EVENT_KEYRELEASE, "released.append(1)", key=gmapi.vk_space)
    create(kind)
    room.HandleKeypress(gmapi.vk_left)
    room.HandleKeypress(gmapi.vk_space)
    assert gmapi.keyboard_check(gmapi.vk_space)
    room.StepEvents()
    room.StepEvents()
    room.HandleKeyrelease(gmapi.vk_space)
    room.StepEvents()
    assert (gmapi.pressed, gmapi.held, gmapi.released) == ([1], [1, 1], [1])
    assert not gmapi.keyboard_check(gmapi.vk_space)


def test_mouse_reaches_what_is_under_it(room, kind, monkeypatch):
    gmapi.clicks = []
    kind.on(
        resources.EVENT_MOUSE, "clicks.append(('down', self.id))", key=resources.MOUSE_LEFT_PRESS
    )
    kind.on(
        resources.EVENT_MOUSE, "clicks.append(('up', self.id))", key=resources.MOUSE_LEFT_RELEASE
    )
    under, _ = create(kind, 50, 60), create(kind, 150, 60)
    monkeypatch.setattr(gmapi.pygame.mouse, "get_pos", lambda: (57, 60))
    room.MouseButtonDown(1)
    room.MouseButtonDown(2)
    room.MouseButtonDown(3)
    room.MouseButtonUp(1)
    assert gmapi.clicks == [("down", under.id), ("up", under.id)]


def test_collision_event_runs_for_each_touching_instance(room, game, kind, picture):
    gmapi.hits = []
    hunter = game.add_object("obj_hunter", sprite=gmapi.spr_box)
    hunter.on(resources.EVENT_COLLISION, "hits.append(other.id)", key="obj_box")
    create(hunter, 100, 100)
    touching = [create(kind, 100 + dx, 100).id for dx in (-15, 0, 15)]
    create(kind, 116, 100)  # only the edges meet
    create(kind, 100, 130)
    room.HandleCollisions()
    assert gmapi.hits == touching and gmapi.other is None


def test_collisions_reach_children_of_the_kind(room, game, kind):
    gmapi.hits = []
    child = game.add_object("obj_small_box", sprite=gmapi.spr_box, parent=kind)
    hunter = game.add_object("obj_hunter", sprite=gmapi.spr_box)
    hunter.on(resources.EVENT_COLLISION, "hits.append(other.id)", key="obj_box")
    create(hunter, 100, 100)
    hit = create(child, 104, 100)
    room.HandleCollisions()
    assert gmapi.hits == [hit.id]


def test_destroyed_in_one_collision_is_left_out_of_the_next(room, game, kind):
    gmapi.hits = []
    hunter = game.add_object("obj_hunter", sprite=gmapi.spr_box)
    hunter.on(
        resources.EVENT_COLLISION, "hits.append(other.id); instance_destroy(other)", key="obj_box"
    )
    create(hunter, 100, 100)
    create(hunter, 100, 100)
    hit = create(kind, 100, 100)
    room.HandleCollisions()
    assert gmapi.hits == [hit.id]


def test_two_hits_of_which_the_first_destroys_the_second(room, game, kind):
    gmapi.hits = []
    hunter = game.add_object("obj_hunter", sprite=gmapi.spr_box)
    hunter.on(
        resources.EVENT_COLLISION, "hits.append(other.id); instance_destroy(later)", key="obj_box"
    )
    create(hunter, 100, 100)
    first, gmapi.later = create(kind, 100, 100), create(kind, 104, 100)
    room.HandleCollisions()
    assert gmapi.hits == [first.id]


def test_collision_list_is_an_instance_list(room, kind):
    box = create(kind, 50, 50)
    found = gmapi.collision_list((40, 40, 60, 60), kind)
    assert type(found) is larkspur.InstanceList and found[0] is box and len(found) == 1
    assert len(gmapi.collision_list((58, 40, 60, 60), kind)) == 0


def test_bounding_box_follows_scale_and_origin(room, kind):
    box = create(kind, 50, 60)
    assert box.box() == (42, 52, 58, 68)
    box.image_xscale, box.image_yscale = -2.0, 0.5
    assert box.box() == (34, 56, 66, 64)
    box.sprite_index = -1
    assert box.box() is None
    box.sprite_index = int(gmapi.spr_box)
    assert box.box() == (34, 56, 66, 64)


def test_place_free_asks_for_solid_things_only(room, game, kind):
    wall = game.add_object("obj_wall_test", sprite=gmapi.spr_box, solid=True)
    create(wall, 100, 100)
    create(kind, 140, 100)
    gmapi.self = create(kind, 0, 0)
    assert not gmapi.place_free(90, 100) and gmapi.place_free(84, 100)
    assert gmapi.place_free(140, 100) and gmapi.place_meeting(140, 100, kind)
    assert not gmapi.place_meeting(0, 0, kind)  # itself does not count
    wall.instances[0].solid = False
    assert gmapi.place_free(90, 100)
    gmapi.self = None


def test_nearest_instance_is_given_by_id(room, kind):
    create(kind, 10, 10)
    near = create(kind, 90, 90)
    assert gmapi.instance_nearest(100, 100, kind) == near.id
    gmapi.instance_destroy(near)
    gmapi.instance_destroy(gmapi.instance_nearest(0, 0, kind))
    assert gmapi.instance_nearest(0, 0, kind) == -1


def test_deactivated_instance_rests_until_activated(room, kind):
    gmapi.steps = []
    kind.on(resources.EVENT_STEP, "steps.append(self.id)")
    box = create(kind)
    gmapi.instance_deactivate(box.id)
    room.StepEvents()
    assert gmapi.steps == [] and list(room.deactivated_objects) == [box]
    assert gmapi.instance_number(kind) == 0 and not room.drawn_objects
    gmapi.instance_activate(box)
    room.StepEvents()
    assert gmapi.steps == [box.id] and list(room.drawn_objects) == [box]


def test_deactivated_instance_may_be_hidden_or_destroyed(room, kind):
    box, other = create(kind), create(kind)
    for resting in (box, other):
        gmapi.instance_deactivate(resting)
    box.visible = False
    gmapi.instance_destroy(box)
    gmapi.instance_destroy(other.id)
    assert not room.deactivated_objects and not kind.instances
    assert box.id not in instances.registry and other.id not in instances.registry


def test_room_is_left_with_resting_instances(game, room, kind):
    gmapi.instance_deactivate(create(kind))
    gm6.goto_room(game.add_room("room_next", 10, 10))
    assert not instances.registry and not room.deactivated_objects


def test_instance_destroyed_by_its_event_gets_no_further_one(room, kind):
    gmapi.pressed = []
    kind.on(
        resources.EVENT_KEYPRESS,
        "pressed.append(self.id); instance_destroy(rival(self))",
        key=gmapi.vk_space,
    )
    first, second = create(kind), create(kind)
    gmapi.rival = lambda self: second if self is first else first
    room.HandleKeypress(gmapi.vk_space)
    assert gmapi.pressed == [first.id] and not second.alive


def test_hiding_and_showing_changes_what_is_drawn(room, kind):
    box = create(kind)
    box.visible = False
    assert not room.drawn_objects and list(room.all_objects) == [box]
    box.visible = True
    assert list(room.drawn_objects) == [box]


def test_change_of_depth_sorts_what_is_drawn(room, kind):
    first, second = create(kind), create(kind)
    assert list(room.drawn_objects) == [first, second]
    first.depth = -1
    assert list(room.drawn_objects) == [second, first]
    second.depth = -2
    assert list(room.drawn_objects) == [first, second]


def test_lists_by_id_keep_the_references_balanced(room, kind):
    box = create(kind)
    before = sys.getrefcount(box)
    for _ in range(1000):
        found = gmapi.instance_list([box.id, larkspur.GMVar(box.id), box.id])
        assert len(found) == 3 and found[0] is found[1] is found[2] is box
    del found
    assert sys.getrefcount(box) == before
    for _ in range(1000):
        gmapi.collision_list((0, 0, 300, 300), kind)
        gmapi.instance_deactivate(box.id)
        gmapi.instance_activate(box.id)
    assert sys.getrefcount(box) == before


def test_instances_are_found_by_id_and_variable(room, kind):
    box = create(kind)
    before = sys.getrefcount(box)
    variable = gmapi.GMVar(box)
    for _ in range(100):
        for which in (box, box.id, gmapi.GMVar(box.id), variable):
            assert gmapi.instance_of(which) is box
    del which, variable
    assert sys.getrefcount(box) == before
    with pytest.raises(KeyError):
        gmapi.instance_of(5)


def test_destroyed_instance_is_really_gone(room, kind):
    gone = []

    class Witness(object):
        def __del__(self):
            gone.append(1)

    box = create(kind)
    box.witness = Witness()
    gmapi.instance_destroy(box)
    del box
    assert gone == [1]


def test_settings_of_a_placement_come_before_the_create_event(game, kind):
    kind.on(resources.EVENT_CREATE, "self.seen = self.image_xscale")
    made = game.add_room("room_placed", 100, 100)
    made.instances = [Placement(kind, 3, 4, image_xscale=2.5)]
    gm6.goto_room(made)
    box = made.all_objects[0]
    assert (box.x, box.y, box.seen) == (3.0, 4.0, 2.5)


def test_game_variables_hold_grids_and_numbers(room):
    grid = gmapi.GMVar(0)
    grid[3, 1] = 0
    grid[2, 1] = grid[2, 1] + 1
    gmapi.score = gmapi.GMVar(5)
    kept = gmapi.score
    gmapi.score += 10
    assert int(grid[2, 1]) == 1 and grid[1, 0] == 0 and kept is gmapi.score and kept == 15
