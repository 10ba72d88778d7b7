import ctypes
import operator
import sys

import pytest

import larkspur
from support import leaks, native

MESSAGE = "XXX need to set an exception.\n"
RULES = [(operator.lt, 0), (operator.le, 1), (operator.eq, 2), (operator.ne, 3),
         (operator.gt, 4), (operator.ge, 5)]
every_rule = pytest.mark.parametrize("rule, op", RULES)


def make_tile(number):
    tile = larkspur.RoomTileData()
    tile.id = number
    return tile


class Game(object):
    """Five sprites, backgrounds and rooms, and tiles numbered like them."""

    def __init__(self, host):
        self.sprites = host.game.sprites = [larkspur.GMSprite() for _ in range(5)]
        self.backgrounds = host.game.backgrounds = [
            larkspur.BackgroundData() for _ in range(5)]
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
    assert cmp(make_tile(-2 ** 31), make_tile(2 ** 31 - 1)) == -1


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
        game.backgrounds[0] == game.backgrounds[1]
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


@pytest.mark.parametrize("foreign, equal", [
    (1, False), (1L, False), (1.0, False), ("1", False), (None, False), ([1], False), (1j, False),
    (True, False), (Convertible(1), False), (ByCmp(), True), (ByRich(), "equal"),
    (OldStyle(), True), (OldStyleCoercing(), True)])
def test_other_types_are_compared_the_interpreter_s_way(game, capfd, foreign, equal):
    for kind in game.three_way:
        assert (kind[1] == foreign) == equal
        assert (foreign == kind[1]) == equal
        cmp(kind[1], foreign), cmp(foreign, kind[1])
    assert capfd.readouterr() == ("", "")


# --- Sprites -------------------------------------------------------------------------------------

@every_rule
def test_sprites_compare_as_integers_with_anything_that_converts(game, rule, op):
    makers = [int, long, float, str, lambda n: n + 0.75, Convertible, make_tile,
              game.sprites.__getitem__, game.backgrounds.__getitem__, game.rooms.__getitem__]
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
    for number, cut in ((2 ** 32 + 2, 2), (2 ** 31, -2 ** 31), (-2 ** 32, 0), (2 ** 63 - 1, -1)):
        assert rule(game.sprites[1], number) is rule(1, cut)


@every_rule
@pytest.mark.parametrize("operand, error", [
    (None, TypeError), ([], TypeError), (1j, TypeError), ("text", ValueError),
    (float("nan"), ValueError), (2 ** 64, OverflowError)])
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
        sprite == 2


# --- Both ----------------------------------------------------------------------------------------

@pytest.mark.parametrize("made", [larkspur.GMSprite, larkspur.BackgroundData, larkspur.GMRoom,
                                  larkspur.RoomTileData])
def test_what_compares_by_a_number_that_can_change_cannot_be_hashed(made):
    with pytest.raises(TypeError):
        hash(made())


def test_comparing_keeps_the_counts(game):
    sprite, background, room, tile = (
        game.sprites[1], game.backgrounds[1], game.rooms[2], game.tiles[2])
    absent, number, text = larkspur.GMSprite(), 123456789, "text"

    def compare():
        background < room, tile == room, cmp(background, tile)
        sprite < number, sprite == background, sprite != sprite
        with pytest.raises(ValueError):
            sprite == text
        with pytest.raises(SystemError):
            absent == number
    leaks.assert_counts_unchanged(compare, sprite, background, room, tile, absent, number, text,
                                  True, False)


# --- The operations themselves, with operands that the interpreter does not hand to the module ---

class Probe(object):
    """The operations in a library of their own."""

    def __init__(self):
        library = ctypes.PyDLL(native.build_path("helpers/int_comparison.so"))
        self.compare = library.compare
        self.compare.argtypes = [ctypes.py_object] * 2
        self._richcompare = library.richcompare
        self._richcompare.argtypes = [ctypes.py_object, ctypes.py_object, ctypes.c_int]
        self._richcompare.restype = ctypes.c_void_p
        self._set_answer = library.set_answer
        self._set_answer.argtypes = [ctypes.c_int, ctypes.c_void_p]
        library.make_only_rich_type.restype = ctypes.py_object
        self.OnlyRich = library.make_only_rich_type()

    def richcompare(self, a, b, op):
        return native.new_reference(self._richcompare(a, b, op))

    def answer(self, **answers):
        """What OnlyRich answers to lt, eq and gt: an object, or FAIL."""
        del self.OnlyRich.calls[:]
        for op, name in enumerate(("lt", "le", "eq", "ne", "gt", "ge")):
            answer = answers.get(name, FAIL)
            self._set_answer(op, None if answer is FAIL else id(answer))


FAIL = object()


@pytest.fixture(scope="module")
def probe():
    return Probe()


class ReversedInt(int):
    def __cmp__(self, other):
        return int.__cmp__(other, int(self))


@pytest.mark.parametrize("a, b, order", [
    (1, 2, -1), (2, 2, 0), (3, 2, 1), (1L, 2L, -1), (2 ** 70, 2 ** 69, 1),
    (10, 2 ** 70, -1), (2 ** 70, 10, 1), (-10, -2 ** 70, 1), (5L, 5, 0), (-2 ** 70, -1, -1),
    (7.9, "7", 0),
    (Convertible(ReversedInt(1)), Convertible(ReversedInt(2)), 1),
    (Convertible(ReversedInt(1)), Convertible(ReversedInt(1)), 0)])
def test_compare_gives_the_order_of_the_integers(probe, capfd, a, b, order):
    assert probe.compare(a, b) == order
    assert capfd.readouterr() == ("", "")


@pytest.mark.parametrize("a, b", [(None, 1), (1, None), (None, None)])
def test_compare_answers_minus_1_and_writes_its_line_when_an_operand_does_not_convert(
        probe, capfd, a, b):
    with pytest.raises(TypeError):
        probe.compare(a, b)  # the answer is -1; ctypes raises what is pending
    assert capfd.readouterr() == ("", MESSAGE)


@pytest.mark.parametrize("values, converted", [((1, 2), "ab"), ((None, 2), "a"), ((1, None), "ab")])
def test_the_first_operand_is_converted_first_and_a_failure_ends_it(
        probe, capfd, values, converted):
    log = []
    a, b = [Convertible(value, lambda name=name: log.append(name))
            for value, name in zip(values, "ab")]
    for operation in (lambda: probe.compare(a, b), lambda: probe.richcompare(a, b, 0)):
        del log[:]
        try:
            operation()
        except TypeError:
            assert None in values
        assert "".join(log) == converted


@pytest.mark.parametrize("lt, gt, order, asked", [
    (True, FAIL, -1, [2, 0]), (False, True, 1, [2, 0, 4]), (False, False, 0, [2, 0, 4]),
    ("true", FAIL, -1, [2, 0]), (0, [1], 1, [2, 0, 4])])
def test_integers_without_three_way_comparison_are_asked_for_less_and_greater(
        probe, lt, gt, order, asked):
    probe.answer(eq=False, lt=lt, gt=gt)
    a, b = probe.OnlyRich(), probe.OnlyRich()
    assert probe.compare(Convertible(a), Convertible(b)) == order
    assert [op for _, _, op in probe.OnlyRich.calls] == asked
    assert all(x is a and y is b for x, y, _ in probe.OnlyRich.calls)


def test_whether_they_are_equal_is_not_consulted_and_its_answer_keeps_a_reference(probe):
    equal, less = object(), object()
    probe.answer(eq=equal, lt=less)
    a, b = Convertible(probe.OnlyRich()), Convertible(probe.OnlyRich())
    assert probe.compare(a, b) == -1

    def compare():
        probe.compare(a, b)
        del probe.OnlyRich.calls[:]
    assert leaks.count_changes(compare, [equal, less, a.value, b.value]) == [1.0, 0.0, 0.0, 0.0]


@pytest.mark.parametrize("answers, asked", [
    ({}, [2]), ({"eq": True}, [2, 0]), ({"eq": True, "lt": False}, [2, 0, 4])])
def test_a_failing_rich_comparison_ends_the_search_with_its_exception(probe, answers, asked):
    probe.answer(**answers)
    with pytest.raises(ArithmeticError):
        probe.compare(Convertible(probe.OnlyRich()), Convertible(probe.OnlyRich()))
    assert [op for _, _, op in probe.OnlyRich.calls] == asked


def test_an_integer_without_three_way_comparison_meets_another_type(probe):
    probe.answer(eq=False, lt=NotImplemented, gt=NotImplemented)
    assert probe.compare(Convertible(probe.OnlyRich(3)), 2) in (-1, 0, 1)


@every_rule
def test_richcompare_of_ordinary_integers(probe, rule, op):
    for a, b in ((1, 2), (2, 2), (3L, 2), (2 ** 32 + 1, 1), (-1, 2 ** 31)):
        cut = [(number + 2 ** 31) % 2 ** 32 - 2 ** 31 for number in (a, b)]
        assert probe.richcompare(a, b, op) is rule(*cut)


@pytest.mark.parametrize("op", [6, 7, -1, 2 ** 31 - 1, -2 ** 31])
def test_richcompare_fails_without_an_exception_for_an_unknown_operator(probe, op):
    assert probe.richcompare(1, 2, op) is None


def test_richcompare_by_the_integer_s_own_rich_comparison_gets_the_operands_as_they_are(probe):
    class Converting(object):
        __hash__ = None

        def __init__(self, value):
            self.value = value

        def __int__(self):
            return self.value

        def __eq__(self, other):
            return "decided by the operand"
    probe.answer(eq="decided by the integer")
    assert probe.richcompare(
        Converting(probe.OnlyRich()), Converting(probe.OnlyRich()), 2) == "decided by the operand"
    assert probe.OnlyRich.calls == []  # it can take neither


@pytest.mark.parametrize("result", ["unchanged", NotImplemented, False])
def test_richcompare_returns_unchanged_what_the_integer_s_own_rich_comparison_returns(
        probe, result):
    class OwnRich(int):
        def __int__(self):
            return self

        def __eq__(self, other):
            return result
    assert probe.richcompare(OwnRich(1), OwnRich(2), 2) is result


@pytest.mark.parametrize("a, b", [(None, 1), (1, None)])
def test_richcompare_passes_on_a_failing_conversion(probe, capfd, a, b):
    with pytest.raises(TypeError):
        probe.richcompare(a, b, 2)
    assert capfd.readouterr() == ("", "")


def test_the_operations_keep_the_counts(probe):
    a, b = 123456789, 987654321L
    bad = object()

    def use():
        probe.compare(a, b), probe.richcompare(a, b, 0)
        for operands in ((a, bad), (bad, a)):
            for action in (lambda: probe.compare(*operands),
                           lambda: probe.richcompare(operands[0], operands[1], 2)):
                try:
                    action()
                except TypeError:
                    sys.exc_clear()
    leaks.assert_counts_unchanged(use, a, b, bad)
