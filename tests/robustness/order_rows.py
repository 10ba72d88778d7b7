"""Every good call where something that ought to be there is missing or wrong: calls that come too
early or too late, and hosts that lack names or have wrong ones."""

import ctypes

import larkspur
import pygame
from support import native
from support.host import LOADERS, ROOM_FUNCTIONS

from robustness import function_rows, hostile, native_rows, scene, type_rows
from robustness.table import ANY, PENDING, Case, Row


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


# Name -> how a scene is made: which calls are left out, and what is done to it afterwards.
SITUATIONS = {
    "before set_SDL_screen": dict(screen_set=False),
    "before RegisterInstancesDict": dict(registered=False),
    "before both": dict(screen_set=False, registered=False),
    "before both, display closed": dict(screen_set=False, registered=False, then=close_display),
    "display closed": dict(then=close_display),
    "display closed before registering": dict(registered=False, then=close_display),
    "display set, closed at once": dict(screen_set=False, then=set_screen_then_close),
    "display replaced": dict(then=lambda made: made.replace()),
    "another surface as screen": dict(then=another_screen),
    "host not bound": dict(then=unbind_host),
    "host not bound, not registered": dict(registered=False, then=unbind_host),
    "screen taken away natively": dict(then=without_screen_variable),
    "emptied host": dict(then=lambda made: made.swap()),
}
# None of 15 bits, for which SDL's dummy driver allocates half of the display.
SITUATIONS.update(("display of %d bits" % bits, dict(then=with_mode(bits))) for bits in (8, 16, 24))

_MISSING = object()
WRONG = [
    ("missing", lambda: _MISSING),
    ("None", lambda: None),
    ("5", lambda: 5),
    ("a text", lambda: "text"),
    ("a list", lambda: []),
    ("list of None", lambda: [None] * 9),
    ("object", object),
] + [
    ("%s, %s" % (shape, deed), lambda shape=shape, deed=deed: hostile.make(shape, deed))
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


class SituationRow(Row):
    """All good calls in one situation; what each needs of it is its own matter."""

    def __init__(self, name, situation):
        Row.__init__(self, name, None, disturbs=True)
        self.situation = situation
        # What was set once can't be taken back.
        self.alone = name in SITUATIONS

    def cases(self):
        for row in good_calls():
            yield Case(
                row.name, next(row.cases()).make, ANY + ALSO.get(row.name.split(" of ")[0], ())
            )


# What else may come: of a call that leaves the exception of what it could not fetch, and of storing
# in the dictionary of a module that is not bound.
ALSO = {
    "RegisterInstancesDict": (PENDING,),
    "GMSprite.__setstate__": (type_rows.NULL_ARGUMENT,),
    "BackgroundData.__setstate__": (type_rows.NULL_ARGUMENT,),
}


def rows_of_situations():
    for name, situation in sorted(SITUATIONS.items()):
        yield SituationRow(name, situation)
    for name in FETCHED + LOOKED_UP:
        for label, make in WRONG:
            when = "before" if name in FETCHED else "then"
            yield SituationRow("%s is %s" % (name, label), {when: with_host_name(name, make)})
