"""docs/engine.md names all that larkspur uses of an engine, and says what comes when it fails.

Its tables are read here. Each name is taken away, and then made to fail, in a scene in which
larkspur uses it; what comes has to be what the page says.
"""

import collections
import ctypes
import os
import pickle
import re

import larkspur
import larkspur_check
import pygame
import pytest
from support import documents, pending
from support.host import Instance, ParticleSystem, Plain
from support.rooms import (
    compiled,
    make_background,
    make_instance,
    make_room,
    make_tile,
    make_view_room,
    set_view,
)

PAGE = documents.read("engine.md")
SOURCES = os.path.join(documents.TREE, "src")


# --- The page's tables ---------------------------------------------------------------------------


def tables(text):
    """All tables of a page: lists of rows, each a dict from the column's heading to the cell."""
    found, heading = [], None
    for line in text.splitlines():
        if not line.startswith("|"):
            heading = None
            continue
        cells = [cell.strip() for cell in line.strip("|").split("|")]
        if heading is None:
            heading = cells
            found.append([])
        elif not re.match(r"^[-: ]+$", cells[0]):
            assert len(cells) == len(heading), line
            found[-1].append(dict(zip(heading, cells)))
    return found


NAME, USE, KIND = "Name", "Used by", "What it is"
MISSING, FAILING = "Missing", "Failing"

ROWS = [row for table in tables(PAGE) if table and NAME in table[0] for row in table]


def names_of(row):
    """The names of a row: code, as `room.view_xview`; several rows can be one."""
    names = re.findall(r"`([^`]+)`", row[NAME])
    assert names, row
    return names


PAGE_NAMES = [name for row in ROWS for name in names_of(row)]


# --- Completeness --------------------------------------------------------------------------------

# Every function of the interpreter that looks an attribute or a dictionary's item up by its name,
# and larkspur's own ones around them: none is used without a name that stands in the sources as
# text, except where it is known whose names they are.
LOOKUPS = re.compile(
    r"\b(_?PyObject_\w*Attr\w*|PyObject_CallMethod\w*|PyMapping_\w*String|PyDict_\w*ItemString"
    r"|PyImport_Import\w*|fetch|call_method|text_of)\("
)
NAMELESS = {
    ("core/attribute.h", "object, name"),  # an AttributeName
    ("core/attribute.h", "object, interned, value"),  # an AttributeName
    ("core/host.cpp", "PyObject* object, const char* attribute"),  # fetch() itself
    ("core/host.cpp", "object, attribute"),  # in fetch()
    ("core/host.cpp", "*row.module, row.attribute"),  # rows of kHostObjects
    ("core/py_ref.h", "PyImport_GetModuleDict(), name"),  # sys.modules
    ("core/pygame.cpp", "module_name"),  # "pygame.surface" and "pygame.surflock"
    (
        "core/sdl_identity.cpp",
        "const char* module_name, const char* attribute, const char* otherwise",
    ),
    ("core/sdl_identity.cpp", "module.get(), attribute"),  # in text_of()
    ("pixel/sprite_scale_cache.cpp", "PyObject* object, const char* name, PyRef arguments"),
    ("pixel/sprite_scale_cache.cpp", "object, name"),  # in call_method()
    ("types/gmvar.cpp", "value.get(), name"),  # whatever game code asks a variable for
    ("types/gmvar.cpp", "value.get(), name, attribute"),
    ("types/room.cpp", "self, name"),  # a GMRoom's own members, for pickling
    ("types/room.cpp", "self, text.get(), value.get()"),
}
# What is written of AttributeName beside objects that have a text.
ATTRIBUTE_NAME_TYPE = re.compile(r"AttributeName\b(?:&| \{|\(const char\* text\)| \w+\[\])")
ATTRIBUTE_NAME_TEXT = re.compile(r'AttributeName\b(?: \w+)?\("(\w+)"\)')


def sources():
    """(path below src/, text without comments) of every source."""
    for folder, _, files in os.walk(SOURCES):
        for file in sorted(files):
            if file.endswith((".cpp", ".h")):
                yield _source(os.path.join(folder, file))


def _source(file):
    with open(file) as opened:
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", opened.read(), flags=re.DOTALL)
    return os.path.relpath(file, SOURCES), text


def arguments_after(text, start):
    """The text between a bracket that was just opened and its end."""
    depth, i = 1, start
    while depth:
        depth += {"(": 1, ")": -1}.get(text[i], 0)
        i += 1
    return " ".join(text[start : i - 1].split())


def names_looked_up(path, text):
    """The attributes that a source looks up. Fails for a lookup whose names it can't see."""
    names = set(ATTRIBUTE_NAME_TEXT.findall(text))
    rest = ATTRIBUTE_NAME_TYPE.sub("", ATTRIBUTE_NAME_TEXT.sub("", text))
    assert "AttributeName" not in rest, path + ": an AttributeName without a text"
    for call in LOOKUPS.finditer(text):
        arguments = arguments_after(text, call.end())
        literals = re.findall(r'"([^"]*)"', arguments)
        if call.group(1) == "text_of" and literals:
            literals = literals[1:2]  # the module, then the attribute
        if literals:
            names.add(literals[0])
        else:
            assert (path, arguments) in NAMELESS, "%s: %s" % (path, arguments)
    return names


def host_objects(text):
    """The names in core/host.cpp's table, as dotted as on the page."""
    return [
        "%s.%s" % row for row in re.findall(r'\{HostObject::\w+, &(\w+), "(\w+)",\s+&\w+\}', text)
    ]


def record_fields():
    """The fields of larkspur's own records, which it reads without a lookup."""
    fields = set()
    for _, text in sources():
        fields |= set(re.findall(r'(?<!\w)(?:\w+_field|\w+_object|background_\w+)\("(\w+)",', text))
    return fields


SOURCE_TEXTS = dict(sources())
LAST_PARTS = {name.split(".")[-1] for name in PAGE_NAMES}
PARTS = {part for name in PAGE_NAMES for part in name.split(".")}


def test_page_names_all_that_sources_look_up():
    for path, text in SOURCE_TEXTS.items():
        missing = names_looked_up(path, text) - PARTS
        assert not missing, "%s: %s" % (path, sorted(missing))


def test_lookup_without_a_text_is_noticed():
    for line in (
        'PyObject_GetAttrString(object, name_of("x").text)',
        "PyObject_GetAttr(object, other)",
        "AttributeName other(text);",
        "fetch(gm6, attribute)",
    ):
        if '"' in line:
            assert names_looked_up("new.cpp", line) == {"x"}
            continue
        with pytest.raises(AssertionError):
            names_looked_up("new.cpp", line)


def test_page_names_all_that_is_fetched():
    text = SOURCE_TEXTS["core/host.cpp"]
    fetched = host_objects(text)
    enumeration = re.search(
        r"enum class HostObject.*?\{(.*?)\}", SOURCE_TEXTS["core/host.h"], re.DOTALL
    )
    assert len(fetched) == len(re.findall(r"\bk\w+", enumeration.group(1)))
    assert set(fetched) <= set(PAGE_NAMES)


def test_page_names_what_is_read_of_records():
    fields = record_fields()
    assert {"view_xview", "surf", "background_idx", "subimages", "room_width"} <= fields
    for path, text in SOURCE_TEXTS.items():
        if '#include "types/' in text and not path.startswith("types/"):
            used = set(re.findall(r"(?:\.|->|::)(\w+)\b(?!\()", text)) & fields
            assert used <= LAST_PARTS, "%s: %s" % (path, sorted(used - LAST_PARTS))


def test_page_names_all_that_larkspur_check_asks_for():
    assert {name.name for name in larkspur_check.ENGINE_NAMES} <= set(PAGE_NAMES)


def test_page_names_nothing_else():
    known = record_fields() | {"__builtins__", "pygame"}
    known |= {name.name.split(".")[-1] for name in larkspur_check.ENGINE_NAMES}
    for path, text in SOURCE_TEXTS.items():
        known |= names_looked_up(path, text)
    assert LAST_PARTS <= known, sorted(LAST_PARTS - known)


def test_page_names_each_once():
    uses = collections.Counter((name, row.get(USE)) for row in ROWS for name in names_of(row))
    assert [use for use, count in uses.items() if count > 1] == []


# --- Scenes in which larkspur uses a name --------------------------------------------------------


def boom(*arguments):
    raise ZeroDivisionError("made to fail")


class HostRoom(Plain):
    """A room of the host's own."""


class Scene(object):
    """A host with something of everything.

    holders  from the first part of a name on the page to the object that has the rest
    seen     what was drawn behind the object that the name is about
    """

    def __init__(self, host):
        self.host = host
        self.seen = seen = []
        self.drawn = Plain(Draw=lambda: None)
        self.action = Plain(python=compiled("len(())"))
        data = Plain(events=[[] for _ in range(8)] + [[self.action]])
        self.kind = Plain(py_objectdata=data, instances=[], children=[])
        self.instance = make_instance(x=5, y=6, object_index=self.kind)
        self.kind.instances.append(self.instance)
        self.system = ParticleSystem(py_automatic_draw=1, py_RealDraw=lambda x, y: None)
        self.background = make_background(pygame.Surface((4, 4), 0, 32))
        self.background.name = "background"
        self.sprite = larkspur.GMSprite()
        self.sprite.name = "sprite"
        self.tile = make_tile()
        host.game.sprites.append(self.sprite)
        host.game.backgrounds.append(self.background)
        host.game.objects.append(self.kind)
        host.gmapi.fps = 0
        host.gm6.view_xscale = host.gm6.view_yscale = 1
        setattr(host.gmapi, "__color_to_int", lambda color: 255)
        host.gmapi.log = seen
        self.after = [
            make_instance(py_Draw=compiled("log.append('code')"), Draw=lambda: seen.append("Draw")),
            Instance(Draw=lambda: seen.append("Draw"), **make_instance(x="witness").__dict__),
            ParticleSystem(
                py_automatic_draw=1,
                py_RealDraw=lambda x, y: seen.append("system"),
                Draw=lambda: seen.append("Draw"),
            ),
        ]
        self.room = None
        self.holders = {
            "gm6": host.gm6,
            "gmapi": host.gmapi,
            "drawn": self.drawn,
            "action": self.action,
            "object": self.kind,
            "instance": self.instance,
            "system": self.system,
            "tile": self.tile,
            "background": self.background,
            "sprite": self.sprite,
        }

    def use_room(self, room, first=None):
        room.drawn_objects = ([] if first is None else [first]) + self.after
        self.room = self.holders["room"] = room
        return larkspur.Room_Draw, room, self.host.screen

    def witnesses(self):
        """How much was drawn behind the first object."""
        sprites = [call for call in self.host.named("draw_sprite_ext") if call[2] == "witness"]
        return len(self.seen) + len(sprites)


def frame_without_views(scene):
    room = HostRoom(
        view_enabled=0, tiles=[scene.tile], DrawBackgrounds=lambda *a: None, view_current=0
    )
    return scene.use_room(room, scene.drawn)


def frame_with_views(scene):
    return scene.use_room(make_view_room(), scene.system)


def sprite_in_a_view(scene):
    return scene.use_room(make_view_room(), scene.instance)


def first_draw(scene):
    scene.instance.py_Draw = 0
    return scene.use_room(make_view_room(), scene.instance)


def draw_code(scene):
    scene.instance.py_Draw = compiled("len(())")
    return scene.use_room(make_view_room(), scene.instance)


def following_view(scene):
    room = make_view_room()
    set_view(room, 0, object=0)
    return scene.use_room(room)


def scene_child(scene):
    scene.kind.instances = []
    return following_view(scene)


def number_of(resource):
    def use(scene):
        return int, getattr(scene, resource)

    return use


def number_of_room(scene):
    room = make_room()
    scene.host.game.rooms.append(room)
    return int, room


def unpickled(resource):
    def use(scene):
        return (lambda: pickle.loads(pickle.dumps(getattr(scene, resource), 2)),)

    return use


def rectangle(*outline):
    def use(scene):
        return (larkspur.draw_rectangle, 1, 1, 8, 8) + outline

    return use


def translucent_rectangle(scene):
    scene.host.gmapi.py_draw_props.alpha = 0.5
    return larkspur.draw_rectangle, 1, 1, 8, 8


def method(name, *arguments):
    def use(scene):
        return (getattr(make_room(), name),) + arguments

    return use


def kept_by_native_code(scene):
    return (lambda: None,)


def native_copy(scene):
    scene.sprite.subimages = [pygame.Surface((4, 4), 0, 32)]
    return pending.add_to_scale_cache, scene.sprite, "key", 0, 8, 8


def new_second(scene):
    library = ctypes.CDLL(larkspur.__file__)
    ctypes.c_int32.in_dll(library, "this_second").value = -1
    return frame_without_views(scene)


SCENES = {
    "a frame without views": frame_without_views,
    "a frame's first call in a second": new_second,
    "a frame with views": frame_with_views,
    "a view that follows": following_view,
    "a view that follows, no instances": scene_child,
    "an instance's first draw": first_draw,
    "draw code": draw_code,
    "a sprite in a view": sprite_in_a_view,
    "`int(sprite)`": number_of("sprite"),
    "`int(background)`": number_of("background"),
    "`int(room)`": number_of_room,
    "unpickling a sprite": unpickled("sprite"),
    "unpickling a background": unpickled("background"),
    "`draw_rectangle()`": rectangle(),
    "`draw_rectangle()`, outline": rectangle(1.0),
    "`draw_rectangle()`, translucent": translucent_rectangle,
    "native code only": kept_by_native_code,
    "`sprite_scalecache_add()`": native_copy,
}
for _name, _arguments in (
    ("Compile", ()),
    ("Create", ()),
    ("InitializeBackgrounds", ()),
    ("AddInstance", (1,)),
    ("AddDrawnInstance", (1,)),
    ("ResortDrawnObjects", ()),
    ("SetBackgroundIndex", (0, 1)),
    ("StepAlarms", ()),
    ("MoveInstances", ()),
    ("HandleCollisions", ()),
    ("StepEvents", ()),
    ("DrawBackgrounds", (1, 2, 3)),
    ("RenderBackground", ()),
    ("Leave", ()),
    ("MouseButtonDown", (1,)),
    ("MouseButtonUp", (1,)),
    ("HandleKeyrelease", (1,)),
    ("HandleKeypress", (1,)),
):
    SCENES["`room.%s()`" % _name] = method(_name, *_arguments)


# --- What comes ----------------------------------------------------------------------------------

# exception  name of its type, "its own" for the one that the name itself raised, None
# when       "at once", "at the end", "later", None without an exception
# line       the first that came on standard error, None
Outcome = collections.namedtuple("Outcome", "exception when line")

CELL = re.compile(
    r"^(?:nothing|(?:`(?P<type>\w+)`|(?P<own>its own))(?: (?P<when>at the end|later))?)"
    r"(?:, line `(?P<line>[^`]+)`)?$"
)
CANNOT = "can't be"


def promised(cell):
    match = CELL.match(cell)
    assert match, "not understood: " + cell
    exception = match.group("type") or match.group("own")
    when = (match.group("when") or "at once") if exception else None
    return Outcome(exception, when, match.group("line"))


def outcome_of(scene, call, capfd):
    capfd.readouterr()
    scene.host.calls[:] = []
    del scene.seen[:]
    answer = pending.call(*call)
    _, err = capfd.readouterr()
    lines = err.splitlines()
    is_frame = call[0] is larkspur.Room_Draw
    if answer.exception is not None:
        own = type(answer.exception) is ZeroDivisionError
        exception = "its own" if own else type(answer.exception).__name__
    else:
        exception = None if answer.succeeded else "SystemError"
    if exception is None:
        when = None
    elif answer.succeeded:
        when = "later"
    else:
        when = "at the end" if is_frame and scene.witnesses() else "at once"
    if is_frame and when != "at once":
        assert scene.witnesses() >= 1
    return Outcome(exception, when, lines[0] if lines else None)


def holder_of(scene, name):
    parts = name.split(".")
    holder = scene.holders[parts[0]]
    for part in parts[1:-1]:
        holder = getattr(holder, part)
    return holder, parts[-1]


TRIED = [(name, row) for row in ROWS if MISSING in row for name in names_of(row)]
IDS = ["%s, %s" % (name, row[USE]) for name, row in TRIED]
FETCHED = set(host_objects(SOURCE_TEXTS["core/host.cpp"])) | {
    "gmapi.pygame",
    "gmapi.pygame.draw.rect",
    "gmapi.pygame.Surface",
}


@pytest.fixture
def scene(host):
    return Scene(host)


@pytest.fixture
def registered_again(host):
    yield
    host.register(larkspur)


@pytest.mark.parametrize("name, row", TRIED, ids=IDS)
def test_nothing_comes_when_all_is_there(name, row, scene, capfd):
    call = SCENES[row[USE]](scene)
    assert outcome_of(scene, call, capfd) == Outcome(None, None, None)


@pytest.mark.parametrize("name, row", TRIED, ids=IDS)
def test_missing_one_does_as_page_says(name, row, scene, registered_again, monkeypatch, capfd):
    call = SCENES[row[USE]](scene)
    holder, attribute = holder_of(scene, name)
    if row[MISSING] == CANNOT:
        with pytest.raises((TypeError, AttributeError)):
            delattr(holder, attribute)
        return
    take_away(monkeypatch, holder, attribute)
    if name in FETCHED:
        registered = pending.call(scene.host.register, larkspur)
        assert registered.succeeded and isinstance(registered.exception, AttributeError)
    assert outcome_of(scene, call, capfd) == promised(row[MISSING])


@pytest.mark.parametrize("name, row", TRIED, ids=IDS)
def test_failing_one_does_as_page_says(name, row, scene, registered_again, monkeypatch, capfd):
    call = SCENES[row[USE]](scene)
    holder, attribute = holder_of(scene, name)
    failing = boom if row[KIND].startswith("callable") else None
    if row[FAILING] == CANNOT:
        with pytest.raises((TypeError, AttributeError)):
            setattr(holder, attribute, failing)
        return
    if isinstance(holder, type(os)):
        monkeypatch.setattr(holder, attribute, failing, raising=False)
    else:
        setattr(holder, attribute, failing)
    if name in FETCHED:
        pending.call(scene.host.register, larkspur)
    assert outcome_of(scene, call, capfd) == promised(row[FAILING])


def take_away(monkeypatch, holder, attribute):
    if isinstance(holder, type(os)):
        monkeypatch.delattr(holder, attribute)
    else:
        delattr(holder, attribute)
