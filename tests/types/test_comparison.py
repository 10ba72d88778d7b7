import ctypes
import operator

import larkspur
import pytest
from support import leaks

MESSAGE = "XXX need to set an exception.\n"
RULES = [
    (operator.lt, 0),
    (operator.le, 1),
    (operator.eq, 2),
    (operator.ne, 3),
    (operator.gt, 4),
    (operator.ge, 5),
]
every_rule = pytest.mark.parametrize("rule, op", RULES)


def make_tile(number):
    tile = larkspur.RoomTileData()
    tile.id = number
    return tile


class Game(object):
    """Five sprites, backgrounds and rooms, and tiles numbered like them."""

    def __init__(self, host):
        self.sprites = host.game.sprites = [larkspur.GMSprite() for _ in range(5)]
        self.backgrounds = host.game.backgrounds = [larkspur.BackgroundData() for _ in range(5)]
        self.rooms = host.game.rooms = [larkspur.GMRoom() for _ in range(5)]
        self.tiles = [make_tile(number) for number in range(5)]
        self.three_way = [self.backgrounds, self.rooms, self.tiles]


@pytest.fixture
def game(host):
    return Game(host)


class Convertible(object):
    """Something with an int conversion, which can run code on the way."""

    def __init__(self, value, action=lambda: None):
        self.value, self.action = value, action

    def __int__(self):
        self.action()
        return self.value


# --- Backgrounds, rooms and tiles ----------------------------------------------------------------


def test_any_two_compare_as_their_integers(game, capfd):
    for left in game.three_way:
        for right in game.three_way:
            for a in range(5):
                for b in range(5):
                    assert cmp(left[a], right[b]) == cmp(a, b)
                    for rule, _ in RULES:
                        assert rule(left[a], right[b]) is rule(a, b)
    assert capfd.readouterr() == ("", "")


def test_tiles_compare_by_their_number_alone():
    a, b = make_tile(7), make_tile(7)
    a.x, b.layer_depth = 100, 5
    assert cmp(a, b) == 0 and a == b and not a != b
    assert cmp(make_tile(-(2**31)), make_tile(2**31 - 1)) == -1


def test_sorting_and_searching_go_by_the_integer(game):
    mixed = [game.rooms[3], game.tiles[0], game.backgrounds[4], make_tile(-1), game.rooms[1]]
    assert [int(item) for item in sorted(mixed)] == [-1, 0, 1, 3, 4]
    assert int(max(mixed)) == 4 and int(min(mixed)) == -1
    assert game.tiles.index(game.rooms[2]) == 2
    assert game.backgrounds[3] in game.tiles and make_tile(9) not in game.rooms


def test_what_is_in_no_list_orders_before_anything_and_says_so(game, capfd):
    absent = larkspur.BackgroundData()
    for other in (game.backgrounds[0], game.rooms[0], make_tile(-5), larkspur.GMRoom(), absent):
        capfd.readouterr()
        assert absent < other
        assert not absent == other
        assert capfd.readouterr() == ("", MESSAGE * 2)
    assert game.tiles[0] < absent  # the second operand counts as well
    assert capfd.readouterr() == ("", MESSAGE)
    assert len(MESSAGE) == 30


def test_the_line_is_written_once_when_neither_converts(game, capfd):
    assert cmp(larkspur.BackgroundData(), larkspur.GMRoom()) == -1
    assert capfd.readouterr() == ("", MESSAGE)


def test_a_conversion_that_raises_raises_and_writes_its_line(host, game, capfd):
    del host.gm6.game
    with pytest.raises(AttributeError):
        game.backgrounds[0] == game.backgrounds[1]  # noqa: B015
    with pytest.raises(AttributeError):
        cmp(game.tiles[0], game.rooms[1])
    assert capfd.readouterr() == ("", MESSAGE * 2)


class ByCmp(object):
    def __cmp__(self, other):
        return 0


class ByRich(object):
    def __eq__(self, other):
        return "equal"


class OldStyle:
    def __cmp__(self, other):
        return 0


class OldStyleCoercing:
    def __coerce__(self, other):
        return 1, 1


@pytest.mark.parametrize(
    "foreign, equal",
    [
        (1, False),
        (long(1), False),
        (1.0, False),
        ("1", False),
        (None, False),
        ([1], False),
        (1j, False),
        (True, False),
        (Convertible(1), False),
        (ByCmp(), True),
        (ByRich(), "equal"),
        (OldStyle(), True),
        (OldStyleCoercing(), True),
    ],
)
def test_other_types_are_compared_the_interpreter_s_way(game, capfd, foreign, equal):
    for kind in game.three_way:
        assert (kind[1] == foreign) == equal
        assert (foreign == kind[1]) == equal
        cmp(kind[1], foreign), cmp(foreign, kind[1])
    assert capfd.readouterr() == ("", "")


# --- Sprites -------------------------------------------------------------------------------------


@every_rule
def test_sprites_compare_as_integers_with_anything_that_converts(game, rule, op):
    makers = [
        int,
        long,
        float,
        str,
        lambda n: n + 0.75,
        Convertible,
        make_tile,
        game.sprites.__getitem__,
        game.backgrounds.__getitem__,
        game.rooms.__getitem__,
    ]
    for a in range(5):
        for b in range(5):
            for make in makers:
                assert rule(game.sprites[a], make(b)) is rule(a, b), make(b)


@every_rule
def test_sprites_compare_from_the_right_as_well(game, rule, op):
    makers = [int, long, float, str, Convertible, make_tile, game.backgrounds.__getitem__]
    for a in range(5):
        for b in range(5):
            for make in makers:
                assert rule(make(a), game.sprites[b]) is rule(a, b), make(b)


@every_rule
def test_both_integers_are_cut_to_32_bits(game, rule, op):
    for number, cut in ((2**32 + 2, 2), (2**31, -(2**31)), (-(2**32), 0), (2**63 - 1, -1)):
        assert rule(game.sprites[1], number) is rule(1, cut)


@every_rule
@pytest.mark.parametrize(
    "operand, error",
    [
        (None, TypeError),
        ([], TypeError),
        (1j, TypeError),
        ("text", ValueError),
        (float("nan"), ValueError),
        (2**64, OverflowError),
    ],
)
def test_an_operand_that_does_not_convert_raises(game, capfd, rule, op, operand, error):
    for arguments in ((game.sprites[0], operand), (operand, game.sprites[0])):
        with pytest.raises(error):
            rule(*arguments)
    assert capfd.readouterr() == ("", "")


@every_rule
def test_a_sprite_in_no_list_fails_without_an_exception(game, capfd, rule, op):
    absent = larkspur.GMSprite()
    for arguments in ((absent, 0), (0, absent), (absent, absent), (game.sprites[0], absent)):
        with pytest.raises(SystemError):
            rule(*arguments)
    assert capfd.readouterr() == ("", "")


def test_sorting_searching_and_cmp_of_sprites(game):
    shuffled = [game.sprites[i] for i in (3, 0, 4, 1, 2)]
    assert [int(sprite) for sprite in sorted(shuffled)] == [0, 1, 2, 3, 4]
    assert shuffled.index(4) == 2
    assert 3 in shuffled and 5 not in shuffled
    assert [cmp(game.sprites[2], other) for other in (1, 2, 3)] == [1, 0, -1]


def test_the_left_operand_is_converted_first(game):
    def empty():
        del game.sprites[:]

    sprite = game.sprites[2]
    assert sprite == Convertible(2, empty)
    with pytest.raises(SystemError):
        sprite == 2  # noqa: B015


# --- Both ----------------------------------------------------------------------------------------


@pytest.mark.parametrize(
    "made", [larkspur.GMSprite, larkspur.BackgroundData, larkspur.GMRoom, larkspur.RoomTileData]
)
def test_what_compares_by_a_number_that_can_change_cannot_be_hashed(made):
    with pytest.raises(TypeError):
        hash(made())


def test_comparing_keeps_the_counts(game):
    sprite, background, room, tile = (
        game.sprites[1],
        game.backgrounds[1],
        game.rooms[2],
        game.tiles[2],
    )
    absent, number, text = larkspur.GMSprite(), 123456789, "text"

    def compare():
        answers = [background < room, tile == room, cmp(background, tile)]
        answers += [sprite < number, sprite == background, sprite != sprite]  # noqa: PLR0124
        with pytest.raises(ValueError):
            sprite == text  # noqa: B015
        with pytest.raises(SystemError):
            absent == number  # noqa: B015

    leaks.assert_counts_unchanged(
        compare, sprite, background, room, tile, absent, number, text, True, False
    )


# --- Right operands of any type, which variables and native code hand to the slots ---------------


class ReversedInt(int):
    def __cmp__(self, other):
        return int.__cmp__(other, int(self))


def compare(left, right):
    """The order of two variables, which the left value's own comparison finds out."""
    for operand in (left, right):
        leaks.lend_references(operand, 1)  # the comparison releases one
    return cmp(larkspur.GMVar(left), larkspur.GMVar(right))


@pytest.mark.parametrize(
    "number, other, order",
    [
        (1, 2, -1),
        (2, 2, 0),
        (3, 2, 1),
        (10, 2**70, -1),
        (-10, -(2**70), 1),
        (5, long(5), 0),
        (5, long(4), 1),
        (7, "7", 0),
        (7, 7.9, 0),
        (-(2**31), True, -1),
        (1, Convertible(2), -1),
        (1, ReversedInt(2), -1),  # its int() is a plain one,
        (1, Convertible(ReversedInt(2)), 1),  # and this one is not
        (1, Convertible(ReversedInt(1)), 0),
    ],
)
def test_a_tile_has_an_order_with_anything_that_converts(capfd, number, other, order):
    assert compare(make_tile(number), other) == order
    assert capfd.readouterr() == ("", "")


def test_a_right_operand_that_does_not_convert_writes_the_line_and_raises(capfd):
    with pytest.raises(TypeError):
        compare(make_tile(1), None)
    assert capfd.readouterr() == ("", MESSAGE)


def test_a_left_operand_that_does_not_convert_ends_the_comparison(game, capfd):
    converted = []
    other = Convertible(1, lambda: converted.append(1))
    assert compare(larkspur.BackgroundData(), other) == -1
    assert capfd.readouterr() == ("", MESSAGE)
    with pytest.raises(SystemError):
        larkspur.GMSprite() == other  # noqa: B015
    assert converted == []
    assert game.sprites[1] == other and compare(game.tiles[1], other) == 0
    assert converted == [1, 1]


def test_comparing_releases_what_the_conversions_gave():
    tile, number = make_tile(1), 2**70
    other = Convertible(number)
    assert leaks.count_changes(lambda: compare(tile, other), [tile, other, number]) == [0.0] * 3


@pytest.mark.parametrize("op", [6, 7, -1, 2**31 - 1, -(2**31)])
def test_an_unknown_operator_fails_without_an_exception(game, op):
    rich_compare = ctypes.pythonapi["PyObject_RichCompare"]
    rich_compare.argtypes = [ctypes.py_object, ctypes.py_object, ctypes.c_int]
    rich_compare.restype = ctypes.c_void_p
    for other in (1, 2, game.sprites[1]):
        assert rich_compare(game.sprites[1], other, op) is None
