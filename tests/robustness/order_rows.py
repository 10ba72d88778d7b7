"""Every good call where something that ought to be there is missing or wrong: calls that come too
early or too late, and hosts that lack names or have wrong ones."""

import ctypes
import functools

import larkspur
import pygame
from support import native
from support.host import LOADERS, ROOM_FUNCTIONS

from robustness import function_rows, hostile, native_rows, scene, type_rows, values
from robustness.table import EITHER, OK, PENDING, RAISES, Case, Row


def close_display(_):
    pygame.display.quit()


def set_screen_then_close(made):
    larkspur.set_SDL_screen(made.screen)
    pygame.display.quit()


def with_mode(bits):
    def set_mode(made):
        made.screen = pygame.display.set_mode(scene.DISPLAY_SIZE, 0, bits)
        larkspur.set_SDL_screen(made.screen)

    return set_mode


def another_screen(made):
    larkspur.set_SDL_screen(scene.tiny_surface(size=(40, 30)))


def unbind_host(_):
    for name in ("gm6", "gmapi", "gmapi__dict__"):
        native.variable(ctypes.c_void_p, name).value = None


def without_screen_variable(_):
    native.variable(ctypes.c_void_p, "g_screen").value = None


# What a situation lacks, and calls need.
SCREEN = "g_screen"
SCREEN_OBJECT = "the Surface that set_SDL_screen() was given, in good state"
DEPTH = "32 bits per pixel of the screen"
DISPLAY = "an open display"
REGISTERED = "what RegisterInstancesDict() fetches"
MODULES = "gm6 and gmapi"
NAMES = "names in gm6 and gmapi"
NO_SCREEN = {SCREEN, SCREEN_OBJECT}
CLOSED = {SCREEN, SCREEN_OBJECT, DISPLAY}

# Name -> what it lacks, and how its scene is made: which calls are left out, and what is done to it
# afterwards.
SITUATIONS = {
    "before set_SDL_screen": (NO_SCREEN, dict(screen_set=False)),
    "before RegisterInstancesDict": ({REGISTERED}, dict(registered=False)),
    "before both": (NO_SCREEN | {REGISTERED}, dict(screen_set=False, registered=False)),
    "before both, display closed": (
        CLOSED | {REGISTERED},
        dict(screen_set=False, registered=False, then=close_display),
    ),
    "display closed": (CLOSED, dict(then=close_display)),
    "display closed before registering": (
        CLOSED | {REGISTERED},
        dict(registered=False, then=close_display),
    ),
    "display set, closed at once": (CLOSED, dict(screen_set=False, then=set_screen_then_close)),
    "display replaced": (set(), dict(then=lambda made: made.replace())),
    "another surface as screen": (set(), dict(then=another_screen)),
    "host not bound": ({MODULES}, dict(then=unbind_host)),
    "host not bound, not registered": (
        {MODULES, REGISTERED},
        dict(registered=False, then=unbind_host),
    ),
    "screen taken away natively": ({SCREEN}, dict(then=without_screen_variable)),
    "emptied host": ({REGISTERED, NAMES}, dict(then=lambda made: made.swap())),
}
# None of 15 bits, for which SDL's dummy driver allocates half of the display.
SITUATIONS.update(
    ("display of %d bits" % bits, ({DEPTH}, dict(then=with_mode(bits)))) for bits in (8, 16, 24)
)

_MISSING = object()
WRONG = [
    values.Value("missing", lambda: _MISSING, missing=True),
    values.Value("None", lambda: None),
    values.Value("5", lambda: 5, number=True),
    values.Value("a text", lambda: "text"),
    values.Value("a list", lambda: [], list=True),
    values.Value("list of None", lambda: [None] * 9, list=True),
    values.Value("object", object),
] + [
    values.Value(
        "%s, %s" % (shape, deed),
        lambda shape=shape, deed=deed: hostile.make(shape, deed),
        hostile=deed,
        list=shape == "list",
    )
    for shape in ("object", "list")
    for deed in ("fail", "lie") + scene.ACTIONS
]

# What RegisterInstancesDict() fetches, and what is looked up when it is needed.
FETCHED = ["gm6." + name for name in ROOM_FUNCTIONS + LOADERS] + [
    "gmapi." + name
    for name in "draw_sprite_ext py_ParticleSystem py_draw_props py_self_stack pygame".split()
]
LOOKED_UP = (
    ["gm6.game", "gm6.view_xscale"]
    + ["gmapi." + name for name in "self game fps __builtins__ __color_to_int".split()]
    + ["game." + name for name in "sprites backgrounds rooms objects".split()]
    + ["py_draw_props.alpha", "py_draw_props.color"]
)


def with_host_name(name, make):
    def change(made):
        holder, attribute = name.split(".")
        holder = getattr(made.host, holder, None) or getattr(made.host.gmapi, holder)
        value = make()
        if value is _MISSING:
            holder.__dict__.pop(attribute, None)
        else:
            holder.__dict__[attribute] = value

    return change


def good_calls():
    """The good call of each function and method that looks at display or host."""
    rows = list(function_rows.rows_of_functions()) + list(native_rows.object_rows())
    rows += list(type_rows.forwarding_rows()) + list(type_rows.common_rows())
    rows += [row for row in type_rows.state_rows() if "item" not in row.name]
    rows += list(type_rows.instance_list_rows())
    for row in rows:
        if row.function is not None:
            yield row


# ---- what each call needs

# Call -> what it raises without. All others need none of these.
NEEDS = {
    "fast_draw_rectangle_color": {SCREEN, DEPTH},
    "draw_rectangle": {SCREEN_OBJECT, REGISTERED},
    "set_SDL_screen": {DISPLAY},
    "CParticle_dec_ttl_and_render": {SCREEN},
    "GMSprite_from_surface": {SCREEN},
    "color_as_int": {SCREEN},
    "Room_Draw": {DISPLAY, REGISTERED, MODULES},
    "Room_Draw with views": {SCREEN, DISPLAY, REGISTERED, MODULES},
    "Room_DrawView": {SCREEN, DISPLAY, REGISTERED, MODULES},
    "PushSelf": {REGISTERED, MODULES},
    "Game_Sequence_Index": {NAMES},  # where gm6 is not bound it finds nothing
    "Game_Sequence_Index_F": {NAMES, MODULES},
    "Game_Sequence_Index_S": {NAMES, MODULES},
    "GMSprite.__setstate__": {REGISTERED},
    "BackgroundData.__setstate__": {REGISTERED},
}
NEEDS.update(("GMRoom." + name, {REGISTERED}) for name in type_rows.FORWARDED)
# Of an instance whose type is not registered they would need a number.
NEEDS.update(("InstanceList." + name, {REGISTERED}) for name in ("append", "insert", "remove"))


def call_name(row):
    return row.name.replace(" of other lengths", "")


def outcome_without(lacking, row):
    """What comes of a row's good call where this is lacking."""
    name = call_name(row)
    if name == "RegisterInstancesDict" and NAMES in lacking:
        return PENDING
    if NEEDS.get(name, set()) & lacking:
        return RAISES
    if MODULES in lacking and name in ("GMSprite.__setstate__", "BackgroundData.__setstate__"):
        return type_rows.NULL_ARGUMENT  # from storing in a dictionary that is not there
    return row.good


# What comes of it where a name that the call uses has a wrong value. Values that do something to
# the display or the host meanwhile may well have a later step fail.


def called(value):
    """The result is passed on, or not looked at."""
    return OK if value.acts or value.hostile == "lie" else RAISES


def called_in_a_frame(value):
    return EITHER if value.acts else called(value)


def has_attributes(value):
    return EITHER if value.acts else RAISES


def game_with_a_list(value):
    """What is no list has no positions."""
    return called(value)


def has_backgrounds(value):
    """No wrong value has a BackgroundData."""
    return RAISES


def is_number(value):
    return OK if value.number else EITHER if value.acts else RAISES


def is_list(value):
    return OK if value.list else RAISES


def is_there(value):
    return RAISES if value.missing else OK


# Call -> name of the host that it uses -> what comes of a wrong value there.
USES = {
    "draw_rectangle": {
        "gmapi.py_draw_props": has_attributes,
        "py_draw_props.alpha": is_number,
        "py_draw_props.color": is_number,
    },
    "PushSelf": {"gmapi.py_self_stack": is_list, "gmapi.self": is_there},
    "Room_Draw": {
        "gm6.Room_DrawBackgrounds": called_in_a_frame,
        "gmapi.game": has_backgrounds,
        "game.backgrounds": has_backgrounds,
    },
    "GMSprite.__setstate__": {"gm6.SpriteData_load_images": called},
    "BackgroundData.__setstate__": {"gm6.BackgroundData_load_images": called},
}
for _name in ("Room_Draw with views", "Room_DrawView"):
    USES[_name] = {
        "gm6.Room_DrawBackgrounds": called_in_a_frame,
        "gmapi.draw_sprite_ext": called_in_a_frame,
    }
for _name in ("Game_Sequence_Index", "Game_Sequence_Index_F", "Game_Sequence_Index_S"):
    USES[_name] = {"gm6.game": game_with_a_list, "game.sprites": is_there}
for _name in type_rows.FORWARDED:
    USES["GMRoom." + _name] = {"gm6.Room_" + _name: called}


def outcome_with(name, value, row):
    """What comes of a row's good call with a wrong value for a name of the host."""
    call = call_name(row)
    if call == "RegisterInstancesDict":
        return PENDING if name in FETCHED and (value.missing or name == "gmapi.pygame") else OK
    if name == "gmapi.pygame":
        # The value does its deed when it is fetched from.
        return EITHER if value.acts and call in NEEDS else row.good
    kind = USES.get(call, {}).get(name)
    return row.good if kind is None else kind(value)


class SituationRow(Row):
    """All good calls in one situation; expected(row) is what comes of the good call of a row."""

    def __init__(self, name, situation, expected, alone=False):
        Row.__init__(self, name, None, disturbs=True)
        self.situation, self.expected, self.alone = situation, expected, alone

    def cases(self):
        for row in good_calls():
            yield Case(row.name, next(row.cases()).make, self.expected(row))


def rows_of_situations():
    for name, (lacking, situation) in sorted(SITUATIONS.items()):
        # Alone, as what was set once can't be taken back.
        expected = functools.partial(outcome_without, lacking)
        yield SituationRow(name, situation, expected, alone=True)
    for name in FETCHED + LOOKED_UP:
        for value in WRONG:
            when = "before" if name in FETCHED else "then"
            yield SituationRow(
                "%s is %s" % (name, value.name),
                {when: with_host_name(name, value.make)},
                functools.partial(outcome_with, name, value),
            )
