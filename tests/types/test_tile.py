import larkspur
import pytest
from support import leaks, records

# In storage order, which is the order of the pickled state.
FIELDS = records.TILE.storage
VALUES = (10, -20, 3, 64, 32, 16, 8, 1000000, 12, 1)


def make_tile(values=VALUES):
    tile = larkspur.RoomTileData()
    for name, value in zip(FIELDS, values):
        setattr(tile, name, value)
    return tile


def values_of(tile):
    return tuple(getattr(tile, name) for name in FIELDS)


def test_conversions_give_the_id():
    tile = make_tile()
    assert (int(tile), float(tile), str(tile)) == (12, 12.0, "12")
    assert (type(int(tile)), type(float(tile))) == (int, float)
    tile.id = -(2**31)
    assert (int(tile), float(tile), str(tile)) == (-(2**31), -(2.0**31), "-2147483648")


def test_state_holds_the_fields_in_storage_order():
    assert make_tile().__reduce__() == (larkspur.RoomTileData, (), VALUES)
    assert make_tile().__reduce__("any", "arguments") == (larkspur.RoomTileData, (), VALUES)


@pytest.mark.parametrize("container", [tuple, list])
def test_setstate_reads_tuples_and_lists(container):
    tile = larkspur.RoomTileData()
    assert tile.__setstate__(container(VALUES), "ignored") is None
    assert values_of(tile) == VALUES


def test_setstate_does_not_look_at_further_items():
    tile = larkspur.RoomTileData()
    tile.__setstate__(VALUES + ("more",))
    assert values_of(tile) == VALUES


def test_setstate_cuts_integers_to_32_bits():
    tile = larkspur.RoomTileData()
    tile.__setstate__((2**32 + 5, 2**31) + VALUES[2:])
    assert (tile.x, tile.y) == (5, -(2**31))


@pytest.mark.parametrize("round_trip", records.ROUND_TRIPS)
def test_tiles_survive_pickling_and_copying(round_trip):
    tile = make_tile()
    restored = round_trip(tile)
    assert restored is not tile
    assert values_of(restored) == VALUES


@pytest.mark.parametrize("position", range(10))
@pytest.mark.parametrize(
    "state, error",
    [
        (lambda position: VALUES[:position], IndexError),
        (lambda position: VALUES[:position] + ("text",) + VALUES[position + 1 :], TypeError),
        (lambda position: VALUES[:position] + (2**64,) + VALUES[position + 1 :], OverflowError),
    ],
)
def test_setstate_keeps_what_came_before_a_bad_item(position, state, error):
    before = tuple(range(100, 110))
    tile = make_tile(before)
    with pytest.raises(error):
        tile.__setstate__(state(position))
    assert values_of(tile) == VALUES[:position] + before[position:]


@pytest.mark.parametrize("arguments", records.NO_STATES)
def test_setstate_refuses_what_is_no_state(arguments):
    tile = make_tile()
    with pytest.raises(TypeError):
        tile.__setstate__(*arguments)
    assert values_of(tile) == VALUES


def test_converting_an_item_may_empty_the_state():
    class Emptying(object):
        def __int__(self):
            del state[:]
            return 7

    state = [1, Emptying(), 3, 4, 5, 6, 7, 8, 9, 10]
    tile = larkspur.RoomTileData()
    with pytest.raises(IndexError):
        tile.__setstate__(state)
    assert values_of(tile) == (1, 7) + (0,) * 8


def test_pickling_and_converting_keep_the_counts():
    tile = make_tile()
    state = tile.__reduce__()[2]
    big = 10**6

    def use():
        tile.__reduce__()
        tile.__setstate__(state)
        int(tile), float(tile), str(tile)
        with pytest.raises(IndexError):
            tile.__setstate__((big,))

    leaks.assert_counts_unchanged(use, tile, state, big, larkspur.RoomTileData)
    assert leaks.object_growth(use) == 0


def test_methods():
    assert [(row.name, row.doc) for row in records.method_table(larkspur.RoomTileData)] == [
        ("__reduce__", None),
        ("__setstate__", None),
    ]
