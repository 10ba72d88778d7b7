"""The command that checks whether larkspur, pygame, SDL and the engine fit together."""

import imp
import json
import os
import shutil
import subprocess
import sys
import types

import larkspur
import pygame.surface
import pytest
from support import native, subprocess_python

TREE = os.path.dirname(subprocess_python.TESTS)
CHECK = os.path.join(TREE, "python", "larkspur_check.py")
STAND_IN = os.path.join(TREE, "examples", "host")

larkspur_check = imp.load_source("larkspur_check", CHECK)


def command(arguments, cwd, before="", **variables):
    """python -m larkspur_check, after the code `before`; (status, stdout, stderr).

    Tests of what is missing take folders from sys.path in `before`.
    """
    code = (
        "import runpy, sys\nsys.path.insert(1, %r)\n" % os.path.dirname(CHECK)
        + before
        + "\nsys.argv = ['larkspur_check'] + %r\n" % (list(arguments),)
        + "runpy.run_module('larkspur_check', run_name='__main__', alter_sys=True)\n"
    )
    return subprocess_python.run(code, cwd=str(cwd), **variables)


def findings(arguments, cwd, **options):
    """The rows of --json by name, all of them; the status and the counts must agree with them."""
    status, out, err = command(["--json"] + list(arguments), cwd, **options)
    report = json.loads(out)
    wrong = [row for row in report["checks"] if row["status"] == "WRONG"]
    assert status == (1 if wrong else 0), err
    assert (report["passed"], report["wrong"]) == (not wrong, len(wrong))
    assert report["checked"] == len(report["checks"])
    assert report["module"] == (arguments[0] if arguments else None)
    return {row["name"]: row for row in report["checks"]}


def wrong(rows):
    return sorted(name for name, row in rows.items() if row["status"] == "WRONG")


def engine(folder, code, name="engine_module"):
    """Writes a module of the engine into `folder`, a py.path, beside the stand-in engine."""
    folder.join(name + ".py").write("import sys\nsys.path.append(%r)\n" % STAND_IN + code)
    return name


# --- Names of gm6 and gmapi ----------------------------------------------------------------------

# What larkspur reads and calls: a value of a wrong type, or none where any will do; a word of what
# it is for; a word of what to do.
CALLABLES = {
    "gm6.SpriteData_load_images": ("unpickled", "def SpriteData_load_images(sprite, name, count)"),
    "gm6.BackgroundData_load_images": ("unpickled", "def BackgroundData_load_images(background)"),
    "gm6.Room_Compile": ("GMRoom.Compile()", "def Room_Compile(room)"),
    "gm6.Room_Create": ("GMRoom.Create()", "def Room_Create(room)"),
    "gm6.Room_InitializeBackgrounds": (
        "GMRoom.InitializeBackgrounds()",
        "def Room_InitializeBackgrounds(room)",
    ),
    "gm6.Room_AddInstance": ("GMRoom.AddInstance()", "def Room_AddInstance(room, instance)"),
    "gm6.Room_AddDrawnInstance": (
        "GMRoom.AddDrawnInstance()",
        "def Room_AddDrawnInstance(room, instance)",
    ),
    "gm6.Room_ResortDrawnObjects": (
        "GMRoom.ResortDrawnObjects()",
        "def Room_ResortDrawnObjects(room)",
    ),
    "gm6.Room_SetBackgroundIndex": (
        "GMRoom.SetBackgroundIndex()",
        "def Room_SetBackgroundIndex(room, slot, index)",
    ),
    "gm6.Room_StepAlarms": ("GMRoom.StepAlarms()", "def Room_StepAlarms(room)"),
    "gm6.Room_MoveInstances": ("GMRoom.MoveInstances()", "def Room_MoveInstances(room)"),
    "gm6.Room_HandleCollisions": ("GMRoom.HandleCollisions()", "def Room_HandleCollisions(room)"),
    "gm6.Room_StepEvents": ("GMRoom.StepEvents()", "def Room_StepEvents(room)"),
    "gm6.Room_DrawBackgrounds": (
        "Room_Draw()",
        "def Room_DrawBackgrounds(room, surface, xview, yview)",
    ),
    "gm6.Room_RenderBackground": ("GMRoom.RenderBackground()", "def Room_RenderBackground(room)"),
    "gm6.Room_Leave": ("GMRoom.Leave()", "def Room_Leave(room)"),
    "gm6.Room_MouseButtonDown": (
        "GMRoom.MouseButtonDown()",
        "def Room_MouseButtonDown(room, button)",
    ),
    "gm6.Room_MouseButtonUp": ("GMRoom.MouseButtonUp()", "def Room_MouseButtonUp(room, button)"),
    "gm6.Room_HandleKeyrelease": (
        "GMRoom.HandleKeyrelease()",
        "def Room_HandleKeyrelease(room, key)",
    ),
    "gm6.Room_HandleKeypress": ("GMRoom.HandleKeypress()", "def Room_HandleKeypress(room, key)"),
    "gmapi.draw_sprite_ext": ("without draw code|no draw code", "def draw_sprite_ext(sprite,"),
    "gmapi.__color_to_int": ("draw_rectangle()", "def __color_to_int(color)"),
    "gmapi.pygame.draw.rect": ("draw_rectangle()", "import pygame"),
}
OTHERS = {
    "gm6.game.sprites": ("()", "GMSprite", "a list"),
    "gm6.game.backgrounds": ("()", "BackgroundData", "a list"),
    "gm6.game.rooms": ("()", "GMRoom", "a list"),
    "gm6.game.objects": ("{}", "view_object", "a list"),
    "gmapi.__builtins__": ("5", "draw code", "import __builtin__"),
    "gmapi.game.backgrounds": ("{}", "tile", "gm6.game"),
    "gmapi.self": (None, "instance", "None"),
    "gmapi.py_self_stack": ("()", "`self`", "an empty list"),
    "gmapi.py_ParticleSystem": (
        "types.ClassType('Old', (), {})",
        "particle systems",
        "class py_ParticleSystem(object)",
    ),
    "gmapi.py_draw_props.alpha": ("'1.0'", "opaque", "float"),
    "gmapi.py_draw_props.color": (None, "colour", "colour"),
    "gmapi.pygame.Surface": ("5", "surfaces", "import pygame"),
}
# What hangs on these is missing with them.
PARENTS = {
    "gm6.game": ("resources", "an object with the lists"),
    "gmapi.game": ("tiles", "gm6.game"),
    "gmapi.py_draw_props": ("draw_rectangle()", "alpha and color"),
    "gmapi.pygame": ("RegisterInstancesDict()", "import pygame"),
}
# larkspur writes these, so it does without.
WRITTEN = {
    "gm6.view_xscale": ("'1'", "writes", "set it to 1"),
    "gm6.view_yscale": ("'1'", "writes", "set it to 1"),
    "gmapi.fps": ("'0'", "writes", "set it to 0"),
}
EXPECTED = {name: texts for table in (CALLABLES, PARENTS) for name, texts in table.items()}
EXPECTED.update({name: texts[1:] for table in (OTHERS, WRITTEN) for name, texts in table.items()})

WRONG_VALUES = {name: "5" for name in CALLABLES}
WRONG_VALUES.update(
    {
        name: texts[0]
        for table in (OTHERS, WRITTEN)
        for name, texts in table.items()
        if texts[0] is not None
    }
)

# Each round changes the stand-in engine, asks, and puts everything back.
ROUNDS = """
import gm6, gmapi, imp, json, sys, types
larkspur_check = imp.load_source("larkspur_check", %r)
modules = {"gm6": gm6, "gmapi": gmapi}
gmapi.game = type(gm6.game)()  # apart from gm6.game, so that each can be damaged alone
results = []
for changes in json.loads(%r):
    undo = []
    for name, value in changes:
        parts = str(name).split(".")
        parent = reduce(getattr, parts[1:-1], modules[parts[0]])
        undo.append((parent, parts[-1], getattr(parent, parts[-1])))
        if value is None:
            delattr(parent, parts[-1])
        else:
            setattr(parent, parts[-1], eval(value))
    results.append(larkspur_check.check_names(modules))
    for change in reversed(undo):
        setattr(*change)
print json.dumps(results)
"""


def missing(*names):
    return [(name, None) for name in names]


SEVERAL = missing("gm6.Room_Leave", "gmapi.self", "gmapi.py_draw_props.alpha", "gmapi.fps") + [
    ("gm6.game.rooms", "5"),
    ("gmapi.draw_sprite_ext", "'text'"),
]
ALL_ROUNDS = {name: missing(name) for name in EXPECTED}
ALL_ROUNDS.update({(name, "wrong"): [(name, value)] for name, value in WRONG_VALUES.items()})
ALL_ROUNDS.update({"nothing": [], "several": SEVERAL})


@pytest.fixture(scope="module")
def rounds():
    """For each of ALL_ROUNDS the rows by name, from one process with the stand-in engine."""
    keys = list(ALL_ROUNDS)
    code = ROUNDS % (CHECK, json.dumps([ALL_ROUNDS[key] for key in keys]))
    status, out, err = subprocess_python.run(code, cwd=STAND_IN)
    assert status == 0, err
    answers = json.loads(out.splitlines()[-1])
    return {key: {row["name"]: row for row in rows} for key, rows in zip(keys, answers)}


def not_ok(rows):
    return {name for name, row in rows.items() if row["status"] != "ok"}


def assert_explained(row, found):
    purpose, remedy = EXPECTED[row["name"]]
    assert row["status"] == ("note" if row["name"] in WRITTEN else "WRONG")
    assert row["found"] == found
    assert any(word in row["purpose"] for word in purpose.split("|"))
    assert remedy in row["remedy"]


def test_every_name_is_looked_at_and_the_stand_in_engine_has_it(rounds):
    rows = rounds["nothing"]
    assert set(rows) == set(EXPECTED) | {"gmapi.__dict__"}
    assert not_ok(rows) == set()
    assert all(row["remedy"] is None for row in rows.values())


@pytest.mark.parametrize("name", sorted(EXPECTED))
def test_missing_name_is_told_with_purpose_and_remedy(rounds, name):
    rows = rounds[name]
    below = {other for other in EXPECTED if other.startswith(name + ".")}
    assert bool(below) == (name in PARENTS)
    assert not_ok(rows) == {name} | below
    assert_explained(rows[name], "missing")
    for other in below:
        assert_explained(rows[other], "missing, as %s is" % name)


@pytest.mark.parametrize("name", sorted(WRONG_VALUES))
def test_wrong_type_is_told_with_purpose_and_remedy(rounds, name):
    rows = rounds[name, "wrong"]
    assert not_ok(rows) == {name}
    kind = type(eval(WRONG_VALUES[name], {"types": types})).__name__
    article = "an" if kind[0] in "aeiou" else "a"
    assert rows[name]["found"].startswith("%s %s instead of " % (article, kind))
    assert_explained(rows[name], rows[name]["found"])


def test_several_mistakes_are_all_told(rounds):
    assert not_ok(rounds["several"]) == {name for name, _ in SEVERAL}


def test_module_whose_dict_is_no_dict():
    class Odd(types.ModuleType):
        __dict__ = property(lambda self: 5)

    rows = {row["name"]: row for row in larkspur_check.check_names({"gmapi": Odd("gmapi")})}
    assert rows["gmapi.__dict__"]["status"] == "WRONG"
    assert rows["gmapi.__dict__"]["found"] == "an int instead of a dict"
    assert "draw code" in rows["gmapi.__dict__"]["purpose"]
    assert "ordinary module" in rows["gmapi.__dict__"]["remedy"]


def test_engine_whose_module_hides_its_dict(tmpdir):
    name = engine(
        tmpdir,
        "import gm6, gmapi, sys, types\n"
        "class Odd(types.ModuleType):\n"
        "    __dict__ = property(lambda self: 5)\n"
        "odd = Odd('gmapi')\n"
        "for name, value in vars(gmapi).items():\n"
        "    setattr(odd, name, value)\n"
        "sys.modules['gmapi'] = odd\n"
        "sys.modules.pop('larkspur')\n",
    )
    assert wrong(findings([name], tmpdir)) == ["gmapi.__dict__"]


def test_larkspur_without_a_file(tmpdir):
    name = engine(tmpdir, "import gm6, gmapi, larkspur\ndel larkspur.__file__\n")
    assert wrong(findings([name], tmpdir)) == []


def test_attribute_that_raises_is_told():
    class Raising(types.ModuleType):
        @property
        def Room_Leave(self):
            raise ZeroDivisionError("from a property")

    rows = {row["name"]: row for row in larkspur_check.check_names({"gm6": Raising("gm6")})}
    assert rows["gm6.Room_Leave"]["status"] == "WRONG"
    assert rows["gm6.Room_Leave"]["found"] == (
        "reading it raises ZeroDivisionError: from a property"
    )


def test_subclasses_callable_objects_and_other_sequences_are_right():
    class Callable(object):
        def __call__(self):
            pass

    class Sequence(object):
        def __getitem__(self, i):
            raise IndexError

    class List(list):
        pass

    game = types.ModuleType("game")
    game.sprites = game.backgrounds = game.rooms = List()
    game.objects = Sequence()
    gm6, gmapi = types.ModuleType("gm6"), types.ModuleType("gmapi")
    gm6.game = gmapi.game = game
    gm6.Room_Leave = Callable()
    gmapi.py_self_stack = List()
    gmapi.fps = larkspur.GMVar(30)
    rows = {
        row["name"]: row["status"]
        for row in larkspur_check.check_names({"gm6": gm6, "gmapi": gmapi})
    }
    for name in (
        "gm6.game.sprites",
        "gm6.game.backgrounds",
        "gm6.game.rooms",
        "gm6.game.objects",
        "gm6.Room_Leave",
        "gmapi.game.backgrounds",
        "gmapi.py_self_stack",
        "gmapi.fps",
    ):
        assert rows[name] == "ok", name


# --- The command ---------------------------------------------------------------------------------

ENVIRONMENT = [
    "Python",
    "pygame",
    "SDL of pygame",
    "SDL of larkspur",
    "one SDL",
    "SDL_gfx",
    "larkspur",
    "display",
]


@pytest.mark.parametrize("module", ["gm6", "gmapi"])
def test_stand_in_engine_passes(module):
    status, out, err = command([module], STAND_IN)
    assert (status, err) == (0, "")
    count = len(ENVIRONMENT) + 3 + len(EXPECTED) + 1
    assert out.splitlines()[-1] == "all %d checks passed" % count
    assert "WRONG" not in out and "note" not in out


def test_report_of_the_environment(tmpdir):
    rows = findings([], tmpdir)
    assert wrong(rows) == []
    assert sorted(rows) == sorted(ENVIRONMENT)
    assert rows["Python"]["version"] == "%d.%d.%d" % sys.version_info[:3]
    assert rows["Python"]["file"] == os.path.abspath(sys.executable)
    assert rows["pygame"]["version"] == pygame.version.ver
    assert rows["pygame"]["file"] == os.path.join(package_folder(pygame), "__init__.py")
    assert rows["larkspur"]["file"] == os.path.abspath(larkspur.__file__)
    assert rows["larkspur"]["version"] == getattr(larkspur, "__version__", None)
    linked = ".".join(map(str, pygame.get_sdl_version()))
    for name in ("SDL of pygame", "SDL of larkspur"):
        assert rows[name]["version"] == linked
        assert rows[name]["file"] == loaded_file("libSDL-1.2")
    layer = pygame.get_sdl_version()[2] >= 50
    assert rows["SDL of larkspur"]["found"] == (
        "SDL 1.2 as a layer over SDL 2" if layer else "SDL 1.2"
    )
    assert rows["SDL_gfx"]["file"] == loaded_file("libSDL_gfx")
    assert rows["display"]["found"] == "32 bits a pixel, tried without a window"


def package_folder(module):
    return os.path.dirname(os.path.abspath(module.__file__))


def loaded_file(name):
    with open("/proc/self/maps") as maps:
        return [line.split()[-1] for line in maps if "/" + name in line][0]


def test_without_a_module_it_says_that_the_engine_was_not_checked(tmpdir):
    status, out, _ = command([], tmpdir)
    assert status == 0
    assert "gm6 and gmapi were not checked" in out
    assert "python2.7 -m larkspur_check gm6" in out
    assert out.splitlines()[-1] == "all %d checks passed" % len(ENVIRONMENT)


def test_rows_of_the_report_have_the_documented_keys(tmpdir):
    status, out, _ = command(["--json", "no_such_module"], tmpdir)
    report = json.loads(out)
    assert sorted(report) == ["checked", "checks", "format", "module", "passed", "wrong"]
    assert report["format"] == 1
    for row in report["checks"]:
        assert sorted(row) == ["file", "found", "name", "purpose", "remedy", "status", "version"]


def test_every_mistake_of_an_engine_is_in_the_table(tmpdir):
    module = engine(
        tmpdir,
        """
import gm6, gmapi
print "what the engine prints"
del gm6.Room_Leave
gmapi.py_self_stack = {}
del gmapi.fps
""",
    )
    status, out, err = command([module], tmpdir)
    lines = [" ".join(line.split()) for line in out.splitlines()]
    assert status == 1
    assert "what the engine prints" in err and "what the engine prints" not in out
    for expected in (
        "WRONG gm6.Room_Leave missing",
        "for: GMRoom.Leave() calls it: leave the room",
        "do: define in gm6: def Room_Leave(room)",
        "WRONG gmapi.py_self_stack a dict instead of a list",
        "for: keeps the outer `self` while draw code runs",
        "do: set it to an empty list before RegisterInstancesDict() is called",
        "note gmapi.fps missing",
        "do: set it to 0, for code that reads it before the first frame is drawn",
    ):
        assert expected in lines
    assert lines[-1].startswith("2 of ") and lines[-1].endswith(" wrong")


@pytest.mark.parametrize(
    "arguments", [["gm6", "gmapi"], ["--fast"], ["--include", "gm6"], ["--include", "--json"]]
)
def test_wrong_usage(tmpdir, arguments):
    status, out, err = command(arguments, tmpdir)
    assert (status, out) == (2, "")
    assert "usage: larkspur_check" in err


def test_another_python_is_told():
    process = subprocess.Popen(
        ["/usr/bin/python3", CHECK], stdout=subprocess.PIPE, env=dict(os.environ, LD_PRELOAD="")
    )
    out = process.communicate()[0]
    assert process.returncode == 1
    assert "WRONG  Python  3." in out
    assert "python2.7 -m larkspur_check" in out
    assert out.splitlines()[-1] == "1 of 1 wrong"


# --- Importing the engine ------------------------------------------------------------------------


@pytest.mark.parametrize(
    "code,found",
    [
        ("import gm6\nraise ValueError('broken here')", "ValueError: broken here"),
        ("import nowhere_to_be_found", "ImportError: No module named nowhere_to_be_found"),
        ("raise SystemExit(3)", "SystemExit: 3"),
        ("import os; os._exit(0)", "ended the process with status 0"),
        ("import os; os.kill(os.getpid(), 9)", "crashed: the process was killed by signal 9"),
        ("raise ValueError('\\xff')", "ValueError: " + unichr(0xFFFD)),
    ],
)
def test_failing_import_is_a_finding(tmpdir, code, found):
    name = engine(tmpdir, code)
    rows = findings([name], tmpdir)
    assert wrong(rows) == ["import " + name]
    row = rows["import " + name]
    assert row["found"].splitlines()[-1] == found
    assert "gm6" in row["purpose"]
    assert "only imports the engine" in row["remedy"]


def test_import_that_never_ends_is_given_up(tmpdir):
    name = engine(tmpdir, "import time\nwhile True: time.sleep(1)")
    status, out, err = subprocess_python.run(
        "import imp, sys\ncheck = imp.load_source('larkspur_check', %r)\n"
        "check.LIMIT_SECONDS = 2\ncheck._environment = lambda: iter(())\n"
        "sys.exit(check.main([%r]))" % (CHECK, name),
        cwd=str(tmpdir),
    )
    assert status == 1, err
    assert "did not come to an end in 2 seconds" in out


def test_engine_imported_after_larkspur(tmpdir):
    name = engine(tmpdir, "import larkspur\nimport gm6, gmapi")
    rows = findings([name], tmpdir)
    assert wrong(rows) == ["gm6", "gmapi"]
    for host in ("gm6", "gmapi"):
        assert "it was not registered when larkspur was imported" in rows[host]["found"]
        assert rows[host]["remedy"] == "import gm6 and gmapi before larkspur"
    assert "gm6.game" not in rows


def test_engine_that_fills_the_modules_larkspur_made(tmpdir):
    name = engine(tmpdir, "import larkspur\nimport gm6, gmapi\ngm6.game = gmapi.game = None")
    rows = findings([name], tmpdir)
    assert rows["gm6"]["status"] == rows["gmapi"]["status"] == "ok"
    assert "gm6.Room_Create" in wrong(rows)


def test_module_replaced_after_larkspur_took_it(tmpdir):
    name = engine(
        tmpdir,
        "import gm6, gmapi, types\n"
        "copy = types.ModuleType('gm6')\nvars(copy).update(vars(gm6))\n"
        "sys.modules['gm6'] = copy",
    )
    rows = findings([name], tmpdir)
    assert wrong(rows) == ["gm6"]
    assert "another module than the one" in rows["gm6"]["found"]


def test_module_without_the_engine(tmpdir):
    name = engine(tmpdir, "")
    rows = findings([name], tmpdir)
    assert wrong(rows) == ["gm6", "gmapi"]
    assert rows["gm6"]["found"] == "not registered by importing engine_module"
    assert "import it, before larkspur" in rows["gm6"]["remedy"]


def test_engine_that_is_no_module(tmpdir):
    name = engine(tmpdir, "sys.modules['gm6'] = 5\nsys.modules['gmapi'] = object()")
    rows = findings([name], tmpdir)
    assert wrong(rows) == ["gm6", "gmapi"]
    assert "larkspur puts an empty module in its place" in rows["gm6"]["found"]


@pytest.mark.parametrize("depth,status", [(16, "WRONG"), (32, "ok")])
def test_depth_of_the_display_that_the_engine_opened(tmpdir, depth, status):
    name = engine(
        tmpdir,
        "import gm6, pygame\npygame.display.init()\npygame.display.set_mode((8, 8), 0, %d)" % depth,
    )
    row = findings([name], tmpdir)["display of the engine"]
    assert row["status"] == status
    assert row["found"] == "%d bits a pixel" % depth
    if status == "WRONG":
        assert "set_mode(size, 0, 32)" in row["remedy"]


# --- Libraries that are missing or do not fit ----------------------------------------------------

# Takes folders that hold one of the names from the path.
HIDE = """
import os
for folder in sys.path[:]:
    if any(os.path.exists(os.path.join(folder or ".", name)) for name in %r):
        sys.path.remove(folder)
sys.path += %r
"""
REBUILD = "-m pip install --force-reinstall --no-binary pygame pygame==1.9.6"


def hide(names, instead=()):
    return HIDE % (list(names), [str(folder) for folder in instead])


def copy_larkspur(folder):
    shutil.copy(larkspur.__file__, str(folder))


def test_missing_pygame(tmpdir):
    copy_larkspur(tmpdir)
    rows = findings([], tmpdir, before=hide(["pygame"]))
    assert wrong(rows) == ["pygame"]
    assert rows["pygame"]["found"] == "ImportError: No module named pygame"
    assert REBUILD in rows["pygame"]["remedy"]
    for package in ("libsdl1.2-dev", "SDL-devel", "sdl12-compat"):
        assert package in rows["pygame"]["remedy"]
    assert rows["larkspur"]["status"] == rows["SDL of larkspur"]["status"] == "ok"


def test_missing_larkspur_and_pygame_at_once(tmpdir):
    rows = findings([], tmpdir, before=hide(["pygame", "larkspur.so"]))
    assert wrong(rows) == ["larkspur", "pygame"]
    assert rows["larkspur"]["found"] == "not installed for this Python"
    assert "pip install ." in rows["larkspur"]["remedy"]


def copy_patched(source, target, changes):
    """Copies a library with texts in it changed, each for one of the same length."""
    with open(str(source), "rb") as original:
        content = original.read()
    for old, new in changes:
        assert old in content and len(old) == len(new)
        content = content.replace(old, new)
    with open(str(target), "wb") as changed:
        changed.write(content)


def test_missing_sdl(tmpdir):
    copy_patched(
        larkspur.__file__, tmpdir.join("larkspur.so"), [(b"libSDL-1.2.so.0", b"libSDL-0.0.so.0")]
    )
    rows = findings([], tmpdir)
    assert wrong(rows) == ["larkspur"]
    assert "libSDL-0.0.so.0: cannot open shared object file" in rows["larkspur"]["found"]
    assert rows["larkspur"]["file"] == str(tmpdir.join("larkspur.so"))
    for package in ("libsdl-gfx1.2-dev", "SDL_gfx-devel", "sdl_gfx"):
        assert package in rows["larkspur"]["remedy"]


def assert_two_sdls(rows, *told):
    assert wrong(rows) == ["one SDL"]
    row = rows["one SDL"]
    assert row["found"].startswith("no: pygame uses ")
    assert loaded_file("libSDL-1.2") in row["found"]
    for text in told:
        assert text in row["found"]
    assert REBUILD in row["remedy"]
    assert rows["larkspur"]["status"] == "ok"  # and it was not asked to draw


def test_pygame_with_another_sdl_of_the_same_version(tmpdir):
    # As in pygame's own wheels. The loader takes libraries of one name for one, so the copy's name
    # is changed in it and in those that use it.
    site, libraries = tmpdir.mkdir("site"), tmpdir.mkdir("libraries")
    rename = [(b"libSDL-1.2.so.0", b"libSDL-1.9.so.0")]
    copy = libraries.join("libSDL-1.9.so.0")
    copy_patched(loaded_file("libSDL-1.2"), copy, rename)
    source = os.path.dirname(pygame.__file__)
    site.mkdir("pygame")
    for name in os.listdir(source):
        path = os.path.join(source, name)
        if name.endswith(".py"):
            shutil.copy(path, str(site.join("pygame", name)))
        elif name.endswith(".so"):
            with open(path, "rb") as library:
                uses_sdl = rename[0][0] in library.read()
            copy_patched(path, site.join("pygame", name), rename if uses_sdl else [])
    copy_larkspur(site)
    path = os.pathsep.join([str(libraries), os.environ.get("LD_LIBRARY_PATH", "")])
    rows = findings([], tmpdir, before=hide(["pygame"], [site]), LD_LIBRARY_PATH=path)
    assert_two_sdls(rows, str(copy))
    assert rows["SDL of pygame"]["file"] == str(copy)
    assert rows["SDL of pygame"]["version"] == rows["SDL of larkspur"]["version"]


def foreign_pygame(tmpdir, sdl, version="2.0.3"):
    """A folder with a pygame of which surface.so alone is native, and with larkspur."""
    site = tmpdir.mkdir("site")
    package = site.mkdir("pygame")
    package.join("__init__.py").write("import version")
    package.join("version.py").write("ver = %r" % version)
    shutil.copy(native.build_path("helpers/pygame_on_%s/surface.so" % sdl), str(package))
    copy_larkspur(site)
    return site


def test_pygame_on_sdl2(tmpdir):
    site = foreign_pygame(tmpdir, "other_sdl2")
    rows = findings([], tmpdir, before=hide(["pygame"], [site]))
    assert_two_sdls(rows, "SDL 2 2.34.5 (", "libother_sdl2.so")
    assert rows["SDL of pygame"]["version"] == "2.34.5"
    assert rows["SDL of pygame"]["found"] == "SDL 2"


def test_pygame_with_an_sdl_inside(tmpdir):
    site = foreign_pygame(tmpdir, "no_sdl")
    rows = findings([], tmpdir, before=hide(["pygame"], [site]))
    assert_two_sdls(rows, "one inside itself (%s)" % site.join("pygame", "surface.so"))
    assert "SDL of pygame" not in rows


def test_larkspur_that_can_not_be_imported(tmpdir):
    shutil.copy(
        native.build_path("helpers/pygame_on_no_sdl/surface.so"), str(tmpdir.join("larkspur.so"))
    )
    rows = findings([], tmpdir, before=hide(["pygame"]))
    assert wrong(rows) == ["larkspur", "pygame"]
    assert rows["larkspur"]["found"].startswith("ImportError: dynamic module does not define init")
    assert rows["larkspur"]["file"] == str(tmpdir.join("larkspur.so"))


def test_display_that_can_not_be_opened(tmpdir):
    rows = findings(
        [],
        tmpdir,
        before="import pygame; pygame.display.set_mode = None",
        PYGAME_HIDE_SUPPORT_PROMPT="1",
    )
    assert wrong(rows) == ["display"]
    assert rows["display"]["found"] == "TypeError: 'NoneType' object is not callable"
    assert REBUILD in rows["display"]["remedy"]


def test_library_that_crashes_is_a_finding(tmpdir):
    site = foreign_pygame(tmpdir, "other_sdl2")
    site.join("pygame", "__init__.py").write("import os; os.kill(os.getpid(), 9)")
    rows = findings(["no_such_module"], tmpdir, before=hide(["pygame"], [site]))
    assert wrong(rows) == ["import no_such_module", "pygame"]
    assert rows["pygame"]["found"] == "crashed: the process was killed by signal 9"
    assert REBUILD in rows["pygame"]["remedy"]


def test_untried_version_of_pygame_is_a_note(tmpdir):
    site = foreign_pygame(tmpdir, "no_sdl", version="1.8.1")
    row = findings([], tmpdir, before=hide(["pygame"], [site]))["pygame"]
    assert (row["status"], row["version"]) == ("note", "1.8.1")
    assert "1.9.6 and 2.0.3" in row["remedy"]


def test_python_without_ctypes(tmpdir):
    rows = findings(["gm6"], STAND_IN, before="sys.modules['ctypes'] = None")
    assert wrong(rows) == []
    assert rows["one SDL"]["status"] == "note"
    assert "ctypes" in rows["one SDL"]["found"]
    assert rows["gm6"]["status"] == rows["display"]["status"] == "ok"


# --- The header ----------------------------------------------------------------------------------


def header(folder):
    """Writes a larkspur.h into `folder`, a py.path."""
    path = folder.join("larkspur.h")
    path.write("", ensure=True)
    return path


@pytest.mark.parametrize(
    "listing,text",
    [
        (
            "larkspur-9.9.dist-info/RECORD",
            'larkspur.so,sha256=x,1\n"../odd, place/larkspur/larkspur.h",sha256=x,1\n',
        ),
        (
            "larkspur-9.9-py2.7.egg-info/installed-files.txt",
            "../larkspur.so\n../../odd, place/larkspur/larkspur.h\nPKG-INFO\n",
        ),
    ],
)
def test_include_is_the_folder_that_the_package_lists(tmpdir, listing, text):
    path = header(tmpdir.join("odd, place", "larkspur"))
    tmpdir.join("site", listing).write(text, ensure=True)
    tmpdir.join("site", "larkspur.so").write("")
    status, out, err = command(["--include"], tmpdir, before=hide([], [tmpdir.join("site")]))
    assert (status, out, err) == (0, path.dirname + "\n", "")


@pytest.mark.parametrize("place", ["include/site/python2.7", "local/include/python2.7"])
def test_include_is_looked_for_in_the_usual_places(tmpdir, place):
    path = header(tmpdir.join(place, "larkspur"))
    status, out, _ = command(["--include"], tmpdir, before="sys.prefix = %r" % str(tmpdir))
    assert (status, out) == (0, path.dirname + "\n")


def test_missing_header_is_told(tmpdir):
    status, out, err = command(
        ["--include"],
        tmpdir,
        before="sys.prefix = %r\nsys.path[2:] = [p for p in sys.path[2:]"
        " if 'site-packages' not in p]" % str(tmpdir),
    )
    assert (status, out) == (1, "")
    assert "include/larkspur.h in larkspur's\nsource tree" in err
