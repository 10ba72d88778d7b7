"""Each text that larkspur writes or raises stands on the page of messages, and no other does.

Each line of the console is provoked in all the ways that its row tells apart: the stream, and what
becomes of the call, have to be what the row says.
"""

import ctypes
import os
import pickle
import re

import larkspur
import pygame
import pytest
from support import documents, native, pending, sdl, sprites
from support.host import ParticleSystem, Plain, RefusingModule
from support.rooms import compiled, make_instance, make_room, make_view_room, set_view

SOURCES = os.path.join(documents.TREE, "src")
PAGE = documents.read(os.path.join("reference", "messages.md"))

LITERALS = r'((?:"(?:[^"\\]|\\.)*"\s*)+)'
RAISED = re.compile(r"PyErr_(?:SetString|Format)\(\s*(PyExc_\w+),\s*(?:%s)?" % LITERALS)
# A literal with a line's end and nothing after it goes to the console, wherever it stands.
LITERAL = re.compile(LITERALS)
# Raised with a text that is no literal: the name of a member that is not set.
WITHOUT_TEXT = ["PyExc_AttributeError"]


def sources():
    for folder, _, names in sorted(os.walk(SOURCES)):
        for name in sorted(names):
            if name.endswith((".cpp", ".h")):
                with open(os.path.join(folder, name)) as source:
                    yield re.sub(r"//[^\n]*", "", source.read())


def plain(literals):
    """The text of adjacent literals, with ... for each conversion."""
    text = "".join(re.findall(r'"((?:[^"\\]|\\.)*)"', literals)).replace(r"\"", '"')
    text = text.replace("%d.%d.%d", "%s")  # a version
    return re.sub(r"%[.\d]*(?:[sdf]|l[df]|zd)", "...", text).replace(r"\n", "")


def console_lines(source):
    texts = [match for match in LITERAL.findall(source) if re.search(r'\\n"\s*$', match)]
    return [plain(text) for text in texts]


def raised_texts(source):
    return [plain(text) if text else None for _, text in RAISED.findall(source)]


def in_backticks(page):
    return re.findall(r"`([^`]+)`", page)


CONSOLE = sorted({line for source in sources() for line in console_lines(source)})
EXCEPTIONS = sorted({text for source in sources() for text in raised_texts(source) if text})


def test_sources_are_read():
    assert "Error after GI ..." in CONSOLE
    assert "breakable" in CONSOLE
    assert "... needs a pygame Surface, got ..." in EXCEPTIONS
    assert len(CONSOLE) > 40 and len(EXCEPTIONS) > 45


def test_what_is_raised_without_a_literal_is_known():
    found = [name for source in sources() for name, text in RAISED.findall(source) if not text]
    assert found == WITHOUT_TEXT


@pytest.mark.parametrize("line", CONSOLE)
def test_line_on_console_is_on_page(line):
    # What the native functions for logs write is told in a sentence; the table has the rest.
    assert line.rstrip(".") in [text.rstrip(".") for text in in_backticks(PAGE)]


@pytest.mark.parametrize("text", EXCEPTIONS)
def test_text_of_exception_is_on_page(text):
    assert text in in_backticks(PAGE)


def rows(heading):
    """The cells of all tables below a heading of the second level."""
    part = PAGE.split("\n## %s\n" % heading)[1].split("\n## ")[0]
    lines = [line for line in part.split("\n") if line.startswith("| ")]
    return [[cell.strip() for cell in line.strip("|").split(" | ")] for line in lines]


def test_page_has_no_line_that_is_never_written():
    written = [line.rstrip(".") for line in CONSOLE]
    for cells in rows("Lines on the console"):
        for line in in_backticks(cells[0]):
            assert line.rstrip(".") in written


def test_page_has_no_text_that_is_never_raised():
    for cells in rows("Texts of exceptions"):
        for text in in_backticks(cells[1]) if len(cells) > 1 else []:
            assert text in EXCEPTIONS


# --- Each line of the console, provoked ----------------------------------------------------------

# They come while larkspur is imported, and only when there is no memory for a type; that is tried
# with the import, in processes of their own.
NOT_PROVOKED = [
    "GMSprite_Type not ready.",
    "BackgroundData_Type not ready.",
    "RoomTileData_Type not ready.",
    "GMRoom_Type not ready.",
    "Floatlist8_Type not ready.",
    "Beancounter_Type not ready.",
]

HEADING = ["Line", "Stream", "When", "The call", "What follows, and what to do"]
LINE, STREAM, CALL = 0, 1, 3


def console_rows():
    found = [cells for cells in rows("Lines on the console") if len(cells) == len(HEADING)]
    return [cells for cells in found if cells != HEADING]


def row_of(line):
    (row,) = [cells for cells in console_rows() if line in in_backticks(cells[LINE])]
    return row


def outcomes_of(cell):
    """What a row says of the call: a set of outcomes."""
    found = set()
    for way in cell.replace("`", "").split(", or "):
        raised = re.match("raises (.*?)( at the end of the view)?$", way)
        names = re.split(", | or ", raised.group(1)) if raised else []
        found |= {"raises %s%s" % (name, raised.group(2) or "") for name in names} or {way}
    return found


def fail(*arguments):
    raise ZeroDivisionError("made to fail")


class Refusing(Plain):
    """Takes no attribute later on."""

    def __setattr__(self, name, value):
        fail()


class Drawing(object):
    """The calls that draw frames, each with a witness that is drawn after all others."""

    def __init__(self, host):
        self.host = host
        self.undo = []  # functions that put back what the host's own fixture does not

    def plain(self, *drawn, **members):
        witness = Plain(Draw=lambda: self.host.answer("witness", ()))
        members.setdefault("drawn_objects", drawn + (witness,))
        return larkspur.Room_Draw, make_room(**members), self.host.screen

    def view(self, *drawn, **view):
        room = make_view_room(drawn_objects=drawn + (make_instance(x="witness"),))
        set_view(room, 0, **view)
        return larkspur.Room_Draw, room, self.host.screen

    def first_draw(self, events, kind=Plain):
        resource = Plain(py_objectdata=Plain(events=events))
        return self.view(kind(py_Draw=0, object_index=resource))

    def reached_the_end(self):
        sprites_drawn = self.host.named("draw_sprite_ext")
        in_view = any(arguments[2] == "witness" for arguments in sprites_drawn)
        return in_view or bool(self.host.named("witness"))


def without_self(frame):
    del frame.host.gmapi.self
    return frame.first_draw(event_of(compiled("len(())")))


def without_self_stack(frame):
    stack, frame.host.gmapi.py_self_stack = frame.host.gmapi.py_self_stack, None
    frame.host.register(larkspur)
    frame.host.gmapi.py_self_stack = stack
    return frame.first_draw(event_of(compiled("len(())")))


def event_of(code):
    return [[]] * 8 + [[Plain(python=code)]]


def backgrounds_fail(frame):
    frame.host.results["Room_DrawBackgrounds"] = ZeroDivisionError()


def follow_instance(frame, instance):
    frame.host.game.objects.append(Plain(instances=[instance], children=[]))
    return frame.view(object=0)


def plain_backgrounds(frame):
    backgrounds_fail(frame)
    return frame.plain()


def view_backgrounds(frame):
    backgrounds_fail(frame)
    return frame.view()


def follow_nothing(frame):
    return frame.view(object=7)


def refused_scale(frame):
    """gm6 is until the end of the test a module that takes no scale."""
    frame.refusing = RefusingModule("gm6")
    frame.refusing.refused = ("view_xscale",)
    bound = native.variable(ctypes.c_void_p, "gm6")
    before, bound.value = bound.value, id(frame.refusing)
    frame.undo.append(lambda: setattr(bound, "value", before))
    return frame.view()


def failing_code(frame):
    return frame.view(make_instance(compiled("1 // 0")))


def without_py_draw(frame):
    return frame.view(Plain(object_index=Plain(py_objectdata=Plain(events=[[]] * 9))))


def failing_system(frame):
    return frame.view(ParticleSystem(py_automatic_draw=1, py_RealDraw=fail))


def system_without_sign(frame):
    return frame.view(ParticleSystem())


class Unreadable(object):
    Draw = property(fail)


class EnginesSurface(pygame.Surface):
    pass


def particle_type():
    return larkspur.part_type_create()


def drawn_particle(**settings):
    """A call that draws a particle of a type with these settings, one 8 x 8 pixels large."""
    handle = particle_type()
    larkspur.part_type_shape(handle, pygame.Surface((8, 8), 0, 32))
    larkspur.part_type_life(handle, 9, 9)
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(handle, *arguments)
    return larkspur.CParticle_dec_ttl_and_render, larkspur.CParticle_new(handle, 20, 20), 0, 0


def refused_conversion(frame):
    screen = pygame.Surface((32, 32), 0, 8)
    # What neither SDL 1.2 nor the layer over SDL 2 takes for a palette.
    screen.set_palette([(255, 255, 255) if sdl.is_layer() else (0, 0, 0)] * 256)
    larkspur.set_SDL_screen(screen)
    return drawn_particle(alpha3=(0.5, 0.5, 0.5))


def coloured(*colours_alpha_outline):
    return (larkspur.fast_draw_rectangle_color, 2, 2, 9, 9) + colours_alpha_outline


def rectangle(frame, outline, alpha=1.0, color=(1, 2, 3), draw_rect=None):
    frame.host.gmapi.py_draw_props.color = color
    frame.host.gmapi.py_draw_props.alpha = alpha
    if draw_rect is not None:
        frame.host.gmapi.pygame = Plain(Surface=pygame.Surface, draw=Plain(rect=draw_rect))
        frame.host.register(larkspur)
    return larkspur.draw_rectangle, 1, 1, 8, 8, outline


def scaled(subimage, width=4, height=4, key="key", spoil=None):
    sprite = sprites.sprite_of(subimage)
    if spoil is not None:
        spoil(sprite)
    return pending.add_to_scale_cache, sprite, key, width, height, 0xFFFFFF


def on_closed_display(frame):
    call = rectangle(frame, 0.0)
    pygame.display.quit()
    return call


def grey(bits, width=6, height=6):
    return pygame.Surface((width, height), 0, bits)


def unpickled(resource, name="name"):
    resource.name = name
    return pickle.loads, pickle.dumps(resource, 2)


def loader(frame, function):
    frame.host.gm6.BackgroundData_load_images = function
    frame.host.register(larkspur)


def failing_loader(frame):
    loader(frame, fail)
    return unpickled(larkspur.BackgroundData())


def missing_loader(frame):
    function = frame.host.gm6.__dict__.pop("SpriteData_load_images")
    pending.call(frame.host.register, larkspur)
    frame.host.gm6.SpriteData_load_images = function
    return unpickled(larkspur.GMSprite())


def nameless(frame):
    loader(frame, lambda background: delattr(background, "name"))
    return unpickled(larkspur.BackgroundData())


def without_game(frame):
    del frame.host.gm6.game
    return cmp, larkspur.BackgroundData(), larkspur.BackgroundData()


def delete_element():
    del larkspur.GMVar(1)[0]


RETURNS = "returns"
LATER = "returns, exception later"
ITS_OWN = "raises its own"
ITS_OWN_AT_END = "raises its own at the end of the view"
NULL = "gives null"

# The line as on the page, what becomes of the call, and what provokes it: a function of a Drawing
# that returns the call. Of each row each outcome is tried.
PROVOKED = [
    (
        "Error making tuple from drawn_objects",
        "raises TypeError",
        lambda frame: frame.plain(drawn_objects=5),
    ),
    (
        "Error making tuple from drawn_objects",
        ITS_OWN,
        lambda frame: frame.plain(drawn_objects=(fail() for _ in (1,))),
    ),
    (
        "Error making tuple from drawn_objects",
        "raises TypeError",
        lambda frame: (larkspur.Room_Draw, make_view_room(drawn_objects=5), frame.host.screen),
    ),
    ("Drawing backgrounds failed.", ITS_OWN, plain_backgrounds),
    ("ERror!", "raises AttributeError", lambda frame: frame.plain(Plain())),
    ("ERror!", ITS_OWN, lambda frame: frame.plain(Unreadable())),
    ("Error!", ITS_OWN, lambda frame: frame.plain(Plain(Draw=fail))),
    ("An error has occurred 615", LATER, follow_nothing),
    ("An error has occurred 615", LATER, lambda frame: follow_instance(frame, Plain(x=5))),
    ("An error has occurred 615", LATER, lambda frame: follow_instance(frame, Plain(x="5", y="5"))),
    ("An error has occurred 638", LATER, follow_nothing),
    ("An error has occurred 638", LATER, refused_scale),
    ("660", ITS_OWN_AT_END, view_backgrounds),
    ("660", LATER, follow_nothing),
    ("660 a", ITS_OWN_AT_END, view_backgrounds),
    ("660 a", LATER, follow_nothing),
    ("An error has occurred 661", ITS_OWN_AT_END, view_backgrounds),
    ("An error has occurred 661", LATER, follow_nothing),
    ("Error after GI ...", ITS_OWN_AT_END, failing_code),
    ("Error after GI ...", LATER, without_py_draw),
    (
        "Error setting attribute string to number.",
        ITS_OWN_AT_END,
        lambda frame: frame.first_draw([[]] * 9, Refusing),
    ),
    (
        "Error setting attribute string to code.",
        ITS_OWN_AT_END,
        lambda frame: frame.first_draw(event_of(compiled("len(())")), Refusing),
    ),
    (
        "Code eval failed",
        ITS_OWN_AT_END,
        lambda frame: frame.first_draw(event_of(compiled("1 // 0"))),
    ),
    (
        "Code eval failed",
        "raises TypeError at the end of the view",
        lambda frame: frame.first_draw(event_of(5)),
    ),
    ("Code eval failed", "raises AttributeError at the end of the view", without_self),
    ("Code eval failed", "raises RuntimeError at the end of the view", without_self_stack),
    (
        "Events too small!",
        "raises SystemError at the end of the view",
        lambda frame: frame.first_draw([[]] * 8),
    ),
    (
        "Events too small!",
        "raises TypeError at the end of the view",
        lambda frame: frame.first_draw(5),
    ),
    (
        "Error in PyList_GetItem ...",
        RETURNS,
        lambda frame: frame.view(make_instance(compiled("del py_self_stack[:]"))),
    ),
    ("Error drawing instance", ITS_OWN_AT_END, failing_code),
    ("Error drawing instance", LATER, without_py_draw),
    ("Error drawing PS", ITS_OWN_AT_END, failing_system),
    ("Error drawing PS", LATER, system_without_sign),
    ("An error has occurred", ITS_OWN_AT_END, failing_code),
    ("An error has occurred", LATER, follow_nothing),
    ("Returning NULL!", "raises SystemError", lambda frame: (larkspur.part_type_life, 5, 1, 2)),
    ("Returning NULL!", "raises SystemError", lambda frame: (larkspur.CParticle_new, 5, 1, 2)),
    (
        "Returning NULL!",
        "raises TypeError",
        lambda frame: (larkspur.part_type_speed, 5, 1, 2, 3, 4),
    ),
    (
        "Returning NULL!",
        "raises TypeError",
        lambda frame: (larkspur.part_type_sprite, 5, larkspur.GMSprite(), 0, 0, 1),
    ),
    (
        "part_type_shape: A pygame Surface is required.",
        "raises SystemError",
        lambda frame: (larkspur.part_type_shape, particle_type(), "shape"),
    ),
    (
        "part_type_shape: A pygame Surface is required.",
        "raises SystemError",
        lambda frame: (larkspur.part_type_shape, particle_type(), EnginesSurface((4, 4))),
    ),
    (
        "XXX need to select a random subimage.",
        RETURNS,
        lambda frame: (larkspur.part_type_sprite, particle_type(), larkspur.GMSprite(), 0, 0, 1),
    ),
    ("Error reformatting shapesurf: ...", RETURNS, refused_conversion),
    (
        "Error: Unexpected additive blend mode ...",
        RETURNS,
        lambda frame: drawn_particle(blend=(2,)),
    ),
    ("BUG: should actually fill.", RETURNS, lambda frame: coloured(5, 5, 5, 5, 1.0, 0)),
    ("BUG: should actually fill.", RETURNS, lambda frame: coloured(5, 5, 5, 5, 2.0, 1)),
    (
        "BUG: need to draw translucent outline vgrad.",
        RETURNS,
        lambda frame: coloured(5, 5, 6, 6, 0.5, 1),
    ),
    (
        "BUG: need to draw translucent outline vgrad.",
        RETURNS,
        lambda frame: coloured(5, 5, 6, 6, 2.0, 1),
    ),
    (
        "Horizontal gradient, complex gradient, or no gradient. .../...",
        RETURNS,
        lambda frame: coloured(5, 6, 6, 5, 1.0, 1),
    ),
    (
        "Horizontal gradient, complex gradient, or no gradient. .../...",
        RETURNS,
        lambda frame: coloured(5, 6, 7, 8, 0.5, 0),
    ),
    (
        "Can't do alphablending on outline rectangles yet.",
        "raises SystemError",
        lambda frame: rectangle(frame, 1.0, alpha=0.5),
    ),
    (
        "An error occurred filling surface.",
        "raises TypeError",
        lambda frame: rectangle(frame, 0.0, color="none"),
    ),
    ("An error occurred filling surface.", "raises pygame.error", on_closed_display),
    (
        "An error occurred calling pygame.draw.rect(screen,color,...,...,...,...,1).",
        "raises TypeError",
        lambda frame: rectangle(frame, 1.0, color="none"),
    ),
    (
        "An error occurred calling pygame.draw.rect(screen,color,...,...,...,...,1).",
        ITS_OWN,
        lambda frame: rectangle(frame, 1.0, draw_rect=fail),
    ),
    (
        "Cannot horizontally flip non-32-bit surfaces.",
        "raises pygame.error",
        lambda frame: (larkspur.flip_h, grey(8)),
    ),
    (
        "Cannot horizontally flip non-32-bit surfaces.",
        NULL,
        lambda frame: scaled(grey(24), width=-6),
    ),
    (
        "Error: non-32bit surfaces not yet flippable.",
        "raises pygame.error",
        lambda frame: (larkspur.flip_vh, grey(16)),
    ),
    (
        "Error: non-32bit surfaces not yet flippable.",
        NULL,
        lambda frame: scaled(grey(24), width=-6, height=-6),
    ),
    ("larkspur: cannot scale ....", NULL, lambda frame: scaled(grey(32, 0, 5))),
    ("larkspur: cannot scale ....", NULL, lambda frame: scaled(grey(8, 1, 40000))),
    (
        "sequence error.",
        NULL,
        lambda frame: scaled(None, spoil=lambda s: setattr(s, "subimages", [])),
    ),
    ("No source?", NULL, lambda frame: scaled("picture")),
    ("No source?", NULL, lambda frame: scaled(grey(32), width=20000)),
    ("Error storing item in scalecache.", NULL, lambda frame: scaled(grey(32), key=[])),
    (
        "Error storing item in scalecache.",
        NULL,
        lambda frame: scaled(grey(32), spoil=lambda sprite: sprite.__reduce__()),
    ),
    ("An exception occurred!", ITS_OWN, failing_loader),
    ("An exception occurred!", "raises RuntimeError", missing_loader),
    ("Retnull", "raises AttributeError", nameless),
    ("Retnull", "raises TypeError", lambda frame: unpickled(larkspur.GMSprite(), name=[])),
    (
        "XXX need to set an exception.",
        RETURNS,
        lambda frame: (cmp, larkspur.BackgroundData(), larkspur.BackgroundData()),
    ),
    (
        "XXX need to set an exception.",
        RETURNS,
        lambda frame: (cmp, make_room(), larkspur.RoomTileData()),
    ),
    ("XXX need to set an exception.", "raises AttributeError", without_game),
    ("Assigning a blank val", "raises TypeError", lambda frame: (delete_element,)),
    (
        "This does not behave properly on Mac, and does not provide the desired speed boost on "
        "Linux.",
        "raises SystemError",
        lambda frame: (larkspur.draw_sprite_ext,),
    ),
    ("breakable", RETURNS, lambda frame: (larkspur.breakable,)),
]


def outcome_of(frame, function, arguments):
    """What becomes of a call, in the words of the page."""
    if function is pending.add_to_scale_cache:
        picture, exception = function(*arguments)
        return "returns" if picture is not None or exception is not None else "gives null"
    answer = pending.call(function, *arguments)
    exception = answer.exception
    if answer.succeeded:
        assert function is not larkspur.Room_Draw or frame.reached_the_end()
        return "returns" if exception is None else "returns, exception later"
    if type(exception) is ZeroDivisionError:
        name = "raises its own"
    elif type(exception) is pygame.error:
        name = "raises pygame.error"
    else:
        name = "raises " + (type(exception).__name__ if exception else "SystemError")
    return name + (" at the end of the view" if frame.reached_the_end() else "")


def written_by(frame, provoke, capfd):
    """(standard output, standard error, what became of the call), the first two in lines."""
    call = provoke(frame)
    capfd.readouterr()
    outcome = outcome_of(frame, call[0], call[1:])
    out, err = capfd.readouterr()
    return out.splitlines(), err.splitlines(), outcome


def is_line(text):
    """A function that tells whether a line is the one that stands on the page as this text."""
    parts = [re.escape(part) for part in text.split("...")]
    return re.compile("^%s$" % ".+".join(parts)).match


@pytest.fixture
def frame(host):
    drawing = Drawing(host)
    yield drawing
    for function in drawing.undo:
        function()
    host.register(larkspur)


@pytest.mark.parametrize("line, outcome, provoke", PROVOKED, ids=[row[0] for row in PROVOKED])
def test_line_comes_on_its_stream_with_its_outcome(line, outcome, provoke, frame, capfd):
    out, err, came = written_by(frame, provoke, capfd)
    there, elsewhere = {"output": (out, err), "error": (err, out)}[row_of(line)[STREAM]]
    assert [text for text in there if is_line(line)(text)]
    assert not [text for text in elsewhere if is_line(line)(text)]
    assert came == outcome


@pytest.mark.parametrize("row", console_rows(), ids=[cells[LINE] for cells in console_rows()])
def test_outcomes_on_page_are_those_that_are_provoked(row):
    for text in in_backticks(row[LINE]):
        if text in NOT_PROVOKED:
            assert text not in [line for line, _, _ in PROVOKED]
        else:
            outcomes = {outcome for line, outcome, _ in PROVOKED if line == text}
            assert outcomes == outcomes_of(row[CALL])
