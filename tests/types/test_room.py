import collections
import copy
import gc
import pickle
import sys

import larkspur
import pytest
from support import leaks, records, subprocess_python
from support.host import Plain

NAMES = [member.name for member in records.ROOM.members]
KINDS = dict((member.name, member.kind) for member in records.ROOM.members)
KEPT = ("creation_code_compiled", "view_visible", "initial_view_data")

# passed: how many of its own arguments a method hands on
# rule: "any" arguments are accepted and ignored, "none" are accepted, those after the "first" are
# ignored, or there have to be "exactly" as many
Method = collections.namedtuple("Method", "name rule passed")
METHODS = [
    Method(*row)
    for row in (
        ("Compile", "any", 0),
        ("Create", "any", 0),
        ("InitializeBackgrounds", "any", 0),
        ("AddInstance", "first", 1),
        ("AddDrawnInstance", "first", 1),
        ("ResortDrawnObjects", "any", 0),
        ("SetBackgroundIndex", "exactly", 2),
        ("StepAlarms", "none", 0),
        ("MoveInstances", "none", 0),
        ("HandleCollisions", "none", 0),
        ("StepAlarms", "none", 0),
        ("StepEvents", "none", 0),
        ("DrawBackgrounds", "exactly", 3),
        ("RenderBackground", "none", 0),
        ("Leave", "none", 0),
        ("MouseButtonDown", "exactly", 1),
        ("MouseButtonUp", "exactly", 1),
        ("HandleKeyrelease", "exactly", 1),
        ("HandleKeypress", "exactly", 1),
    )
]

every_method = pytest.mark.parametrize(
    "method", sorted(set(METHODS)), ids=lambda method: method.name
)


def picklable_value(name, number):
    return {"int": number, "float": 0.25 * number, "lenient": ["value", number]}[KINDS[name]]


def outlived(room):
    """The room, of which some members stay when it dies."""
    for name in KEPT:
        leaks.left_behind(getattr(room, name))
    return room


def make_room():
    room = larkspur.GMRoom()
    for number, name in enumerate(NAMES):
        setattr(room, name, picklable_value(name, number))
    return outlived(room)


def assert_is_full(room):
    for number, name in enumerate(NAMES):
        assert getattr(room, name) == picklable_value(name, number), name


# --- Pickling ------------------------------------------------------------------------------------


def test_state_holds_78_pairs_in_member_order():
    room = make_room()
    made, arguments, state = room.__reduce__()
    assert (made, arguments) == (larkspur.GMRoom, ())
    assert (type(state), len(state)) == (tuple, 78)
    assert state == tuple((name, getattr(room, name)) for name in NAMES)
    assert [name for name, _ in state[:3]] == ["id", "name", "room_width"]
    assert [name for name, _ in state[-3:]] == ["view_visible", "view_current", "initial_view_data"]


def test_state_of_a_new_room_holds_zeros_and_none():
    zero = {"int": 0, "float": 0.0, "lenient": None}
    state = larkspur.GMRoom().__reduce__("any", "arguments")[2]
    assert state == tuple((name, zero[KINDS[name]]) for name in NAMES)
    assert type(dict(state)["frame_duration"]) is float


@pytest.mark.parametrize("round_trip", records.ROUND_TRIPS)
def test_rooms_survive_pickling_and_copying(round_trip):
    room = make_room()
    restored = outlived(round_trip(room))
    assert type(restored) is larkspur.GMRoom and restored is not room
    assert_is_full(restored)


def test_copies_share_and_deep_copies_do_not():
    room = make_room()
    assert copy.copy(room).tiles is room.tiles
    assert outlived(copy.deepcopy(room)).tiles is not room.tiles


def test_a_room_is_pickled_with_its_views_and_tiles():
    room = larkspur.GMRoom()
    room.view_xview = larkspur.Floatlist8()
    room.view_xview[3] = 12.5
    room.tiles = [larkspur.RoomTileData()]
    room.tiles[0].id = 77
    restored = pickle.loads(pickle.dumps(room, 2))
    assert list(restored.view_xview) == [0, 0, 0, 12.5, 0, 0, 0, 0]
    assert [int(tile) for tile in restored.tiles] == [77]


@pytest.mark.parametrize("container", [tuple, list])
@pytest.mark.parametrize("pair", [tuple, list])
def test_setstate_assigns_every_pair(container, pair):
    room = larkspur.GMRoom()
    state = container(pair(item) for item in make_room().__reduce__()[2])
    assert room.__setstate__(state, "ignored") is None
    assert_is_full(room)


def test_setstate_takes_any_selection_in_any_order_and_the_last_word():
    room = larkspur.GMRoom()
    assert room.__setstate__(()) is None
    room.__setstate__((("room_width", 5), ("id", 9), ("room_width", 6), ("id", 10, "more")))
    assert (room.id, room.room_width, room.room_height) == (10, 6, 0)


class Unprintable(object):
    def __str__(self):
        raise ValueError("no name")


@pytest.mark.parametrize(
    "bad",
    [
        ("no_such_member", 1),
        ("__class__", 1),
        ("id", "text"),
        ("id", None),
        ("", 1),
        (5, 1),
        (None, 1),
        (unichr(0xFC) + "ber", 1),
        (Unprintable(), 1),
        ("frame_duration", []),
        ("StepEvents", 1),
    ],
)
def test_a_pair_that_cannot_be_assigned_is_passed_over(bad):
    room = larkspur.GMRoom()
    room.id = 42
    assert room.__setstate__((("room_width", 1), bad, ("room_height", 2))) is None
    assert (room.room_width, room.room_height, room.id) == (1, 2, 42)
    assert sys.exc_info() == (None, None, None)


def test_names_are_converted_to_strings():
    class Named(object):
        def __str__(self):
            return "snapx"

    room = larkspur.GMRoom()
    room.__setstate__(((Named(), 3), (unicode("snapy"), 4)))
    assert (room.snapx, room.snapy) == (3, 4)


@pytest.mark.parametrize("arguments", records.NO_STATES)
def test_setstate_refuses_what_is_no_state(arguments):
    room = make_room()
    with pytest.raises(TypeError) as failure:
        room.__setstate__(*arguments)
    assert "GMRoom.__setstate__()" in str(failure.value)
    assert_is_full(room)


@pytest.mark.parametrize("no_pair", [(), ("id",), 5, None, "id", {"id": 1}])
def test_what_is_no_pair_raises_and_keeps_what_came_before(no_pair):
    room = larkspur.GMRoom()
    with pytest.raises(TypeError) as failure:
        room.__setstate__((("room_width", 1), no_pair, ("room_height", 2)))
    assert "pairs of a name and a value" in str(failure.value)
    assert (room.room_width, room.room_height) == (1, 0)


def test_assigning_may_change_the_state():
    class Meddler(object):
        def __del__(self):
            del state[2:]

    room = larkspur.GMRoom()
    room.name = Meddler()
    state = [("id", 1), ("name", "new"), ("room_width", 3), ("room_height", 4)]
    assert room.__setstate__(state) is None
    assert (room.id, room.name, room.room_width, room.room_height) == (1, "new", 0, 0)


def test_assigning_may_empty_a_pair():
    class Meddler(object):
        def __str__(self):
            del pair[:]
            return "name"

    pair = [Meddler(), ["the value"]]
    room = larkspur.GMRoom()
    room.__setstate__([pair])
    assert room.name == ["the value"]


def test_assigning_may_restore_the_room_again():
    class Meddler(object):
        def __del__(self):
            room.__setstate__((("name", "inner"), ("id", 7)))

    room = larkspur.GMRoom()
    room.name = Meddler()
    room.__setstate__((("name", "outer"), ("room_width", 3)))
    assert (room.name, room.id, room.room_width) == ("inner", 7, 3)


# --- Forwarding ----------------------------------------------------------------------------------


def test_method_table_order():
    rows = records.method_table(larkspur.GMRoom)
    assert [row.name for row in rows] == (
        ["__reduce__", "__setstate__"] + [method.name for method in METHODS]
    )
    assert [row.doc for row in rows] == [None] * 21
    takes_none = 4  # the interpreter's flag for methods without arguments
    assert [row.flags for row in rows[2:]] == [
        takes_none if method.rule == "none" else 1 for method in METHODS
    ]


@every_method
def test_methods_hand_the_room_and_their_arguments_to_the_host(host, method):
    room, given = larkspur.GMRoom(), [object() for _ in range(method.passed)]
    host.results["Room_" + method.name] = result = object()
    assert getattr(room, method.name)(*given) is result
    assert host.calls == [("Room_" + method.name, tuple([room] + given))]


@every_method
def test_methods_pass_on_what_the_host_raises(host, method):
    class Refusal(Exception):
        pass

    host.results["Room_" + method.name] = refusal = Refusal()
    with pytest.raises(Refusal) as failure:
        getattr(larkspur.GMRoom(), method.name)(*[None] * method.passed)
    assert failure.value is refusal


@every_method
def test_methods_accept_their_number_of_arguments_only(host, method):
    room = larkspur.GMRoom()
    for count in range(5):
        accepted = {
            "any": True,
            "none": count == 0,
            "first": count >= 1,
            "exactly": count == method.passed,
        }[method.rule]
        del host.calls[:]
        given = [object() for _ in range(count)]
        if accepted:
            getattr(room, method.name)(*given)
            assert host.calls == [("Room_" + method.name, tuple([room] + given[: method.passed]))]
        else:
            with pytest.raises(TypeError) as failure:
                getattr(room, method.name)(*given)
            assert (
                str(failure.value)
                == {
                    "none": "%s() takes no arguments (%d given)" % (method.name, count),
                    "first": "GMRoom.%s() needs an instance, and got no argument" % method.name,
                    "exactly": "function takes exactly %d argument%s (%d given)"
                    % (method.passed, "s"[method.passed == 1 :], count),
                }[method.rule]
            )
            assert host.calls == []
    with pytest.raises(TypeError):
        getattr(room, method.name)(keyword=1)


@every_method
def test_methods_keep_the_counts(host, method):
    room, given = larkspur.GMRoom(), [object() for _ in range(method.passed)]
    result = object()
    setattr(host.gm6, "Room_" + method.name, lambda *arguments: result)

    def fail(*arguments):
        raise ValueError("host")

    host.register(larkspur)
    call = getattr(room, method.name)
    leaks.assert_counts_unchanged(lambda: call(*given), room, result, *given)
    setattr(host.gm6, "Room_" + method.name, fail)
    host.register(larkspur)

    def failing_call():
        try:
            call(*given)
        except ValueError:
            sys.exc_clear()

    leaks.assert_counts_unchanged(failing_call, room, *given)


def test_the_host_gets_a_tuple_of_its_own(host):
    seen = []
    host.gm6.Room_MouseButtonDown = lambda *arguments: seen.append(arguments)
    host.register(larkspur)
    room = larkspur.GMRoom()
    room.MouseButtonDown(1)
    room.MouseButtonDown(1)
    assert seen[0] == seen[1] == (room, 1)
    assert seen[0] is not seen[1]


def test_methods_keep_what_was_registered(host):
    host.gm6.Room_Create = lambda room: "unregistered"
    assert larkspur.GMRoom().Create() is None
    host.register(larkspur)
    assert larkspur.GMRoom().Create() == "unregistered"


def test_the_host_may_register_again_and_forget_the_room_inside_a_call(host):
    room = larkspur.GMRoom()
    rooms = [larkspur.GMRoom()]

    def create(created):
        host.gm6.Room_Create = lambda created: "second"
        host.register(larkspur)
        del rooms[:]
        gc.collect()
        created.name = "still there"
        return created.name

    host.gm6.Room_Create = create
    host.register(larkspur)
    assert rooms[0].Create() == "still there"
    assert room.Create() == "second"


def test_methods_without_a_registered_host_raise():
    out, _ = subprocess_python.output(
        """
        import larkspur
        room = larkspur.GMRoom()
        for name, arguments in %r:
            try:
                getattr(room, name)(*arguments)
            except RuntimeError as error:
                assert "RegisterInstancesDict()" in str(error), error
            else:
                raise AssertionError(name)
        print "refused"
        """
        % [(method.name, (None,) * method.passed) for method in METHODS]
    )
    assert out == "refused\n"


def test_a_missing_host_function_raises(host):
    del host.gm6.Room_Leave
    with pytest.raises(AttributeError):
        host.register(larkspur)  # returns with the exception pending
        for _ in ():  # where the interpreter looks for one
            pass
    with pytest.raises(RuntimeError):
        larkspur.GMRoom().Leave()
    assert larkspur.GMRoom().Create() is None


# --- Life ----------------------------------------------------------------------------------------


@pytest.mark.parametrize("name", KEPT)
def test_three_objects_outlive_their_room(name):
    room, value = larkspur.GMRoom(), leaks.left_behind(Plain())
    before = sys.getrefcount(value)
    setattr(room, name, value)
    del room
    gc.collect()
    assert sys.getrefcount(value) == before + 1


def test_pickling_keeps_the_counts():
    room = make_room()
    state = room.__reduce__()[2]
    values = [getattr(room, name) for name in records.object_names(records.ROOM)]

    def use():
        room.__reduce__()
        room.__setstate__(state)
        room.__setstate__((("no_such_member", values[0]), ("id", "text")))
        with pytest.raises(TypeError):
            room.__setstate__((("name", values[0]), 5))

    leaks.assert_counts_unchanged(use, room, state, larkspur.GMRoom, *values)
    assert_is_full(room)
    assert leaks.object_growth(use) == 0
