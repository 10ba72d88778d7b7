"""pygame on another SDL than larkspur's is refused, when larkspur is imported and when it is given
its screen; nothing of larkspur can be used then, and nothing crashes."""

import ctypes
import os
import shutil
import sys

import pytest
from support import native, subprocess_python

OTHER_SDLS = {"other_sdl1": "1.2.99", "other_sdl2": "2.34.5"}

# A package pygame whose extension module "surface" is a stand-in.
STAND_IN = """
import sys, types
pygame = types.ModuleType("pygame")
pygame.__version__ = "7.8.9"
pygame.__path__ = [%r]
"""

USE_STAND_IN = """
sys.modules["pygame"] = pygame
"""

SHOW_IMPORT = """
try:
    import larkspur
    print "imported", larkspur.breakable.__doc__
except RuntimeError as error:
    print error, "larkspur" in sys.modules
"""


def stand_in(sdl):
    return STAND_IN % native.build_path("helpers/pygame_on_" + sdl)


def lines_of(code, **options):
    """What a process prints that runs this code."""
    status, out, err = subprocess_python.run(code, PYGAME_HIDE_SUPPORT_PROMPT="1", **options)
    assert status == 0, "exit status %d\n%s%s" % (status, out, err)
    return out.splitlines()


def our_sdl():
    """(version, file) of the SDL that larkspur is linked with."""
    library = ctypes.CDLL("libSDL-1.2.so.0")
    library.SDL_Linked_Version.restype = ctypes.POINTER(ctypes.c_uint8 * 3)
    with open("/proc/self/maps") as maps:
        files = set(line.split()[-1] for line in maps if "/libSDL-1.2.so" in line)
    assert len(files) == 1
    return ".".join(map(str, library.SDL_Linked_Version().contents)), os.path.realpath(files.pop())


def refusal(version, path, release="7.8.9"):
    """The whole message about a pygame on an SDL of this version, in this file."""
    return (
        "pygame %s uses SDL %s (%s), larkspur uses SDL %s (%s): they can't share surfaces. "
        "Build pygame against larkspur's SDL, with the development packages of SDL 1.2 "
        "installed: %s -m pip install --force-reinstall --no-binary pygame pygame==1.9.6. "
        "Where that fails on a newer system, script/setup in larkspur's sources knows how"
        % ((release, version, path) + our_sdl() + (sys.executable,))
    )


def refusal_of(sdl, release="7.8.9"):
    path = os.path.realpath(native.build_path("helpers/lib%s.so" % sdl))
    return refusal(OTHER_SDLS[sdl], path, release)


# --- At import -----------------------------------------------------------------------------------


@pytest.mark.parametrize("sdl", sorted(OTHER_SDLS))
def test_import_beside_another_sdl_is_refused_each_time(sdl):
    """And leaves no module behind, which a second import would take for a whole one."""
    lines = lines_of(stand_in(sdl) + USE_STAND_IN + 3 * SHOW_IMPORT)
    assert lines == [refusal_of(sdl) + " False"] * 3


def test_import_beside_larkspurs_sdl():
    assert lines_of(stand_in("our_sdl") + USE_STAND_IN + SHOW_IMPORT) == [
        "imported A hook for GDB."
    ]


def test_import_works_once_pygame_is_replaced():
    code = (
        stand_in("other_sdl2")
        + USE_STAND_IN
        + SHOW_IMPORT
        + "for name in [name for name in sys.modules if name.split('.')[0] == 'pygame']:\n"
        "    del sys.modules[name]\n"
        "import pygame\n" + SHOW_IMPORT + "screen = pygame.display.set_mode((8, 8), 0, 32)\n"
        "print larkspur.set_SDL_screen(screen), larkspur.flip_v(screen).get_size()\n"
    )
    assert lines_of(code) == [
        refusal_of("other_sdl2") + " False",
        "imported A hook for GDB.",
        "None (8, 8)",
    ]


def test_refused_imports_leave_nothing_behind():
    code = (
        stand_in("other_sdl1")
        + USE_STAND_IN
        + """
from support import leaks
import pygame.surface
def refused():
    try:
        import larkspur
    except RuntimeError:
        return
    raise AssertionError("imported")
print leaks.count_changes(refused, [
    pygame, pygame.surface, pygame.surface._PYGAME_C_API, pygame.surface.Surface,
    pygame.__version__, sys.executable, RuntimeError, None], rounds=200)
print leaks.object_growth(refused, rounds=200)
"""
    )
    assert lines_of(code) == [str([0.0] * 8), "0"]


@pytest.mark.parametrize(
    "release, shown",
    [
        ("del pygame.__version__", "of unknown version"),
        ("pygame.__version__ = 3", "of unknown version"),
        ("pygame.__version__ = '2.x'", "2.x"),
    ],
)
def test_pygames_release_is_told_when_it_is_known(release, shown):
    code = stand_in("other_sdl1") + release + "\n" + USE_STAND_IN + SHOW_IMPORT
    assert lines_of(code) == [refusal_of("other_sdl1", shown) + " False"]


def test_interpreter_without_a_name_is_called_python():
    code = stand_in("other_sdl1") + "sys.executable = ''\n" + USE_STAND_IN + SHOW_IMPORT
    expected = refusal_of("other_sdl1").replace(sys.executable + " -m", "python2.7 -m")
    assert lines_of(code) == [expected + " False"]


MADE_VISIBLE_LATER = [
    "import ctypes\nctypes.CDLL('libSDL-1.2.so.0', ctypes.RTLD_GLOBAL)\n",
    "sys.setdlopenflags(0x102)\n",  # RTLD_NOW | RTLD_GLOBAL, for larkspur and its libraries
]


@pytest.mark.parametrize("code", MADE_VISIBLE_LATER)
def test_sdl_that_all_see_after_pygame_was_loaded_is_not_pygames(code):
    lines = lines_of(
        stand_in("other_sdl1") + USE_STAND_IN + "import pygame.surface\n" + code + SHOW_IMPORT
    )
    assert lines == [refusal_of("other_sdl1") + " False"]


def test_pygame_is_imported_when_the_module_is_there():
    """What importing pygame runs may import larkspur again."""
    code = (
        stand_in("our_sdl")
        + USE_STAND_IN
        + """
class Hook(object):
    def find_module(self, name, path=None):
        if name == "pygame.surface":
            import larkspur
            print "import of pygame sees", len(vars(larkspur)) > 40
sys.meta_path.insert(0, Hook())
"""
        + SHOW_IMPORT
    )
    assert lines_of(code) == ["import of pygame sees True", "imported A hook for GDB."]


def test_preloaded_sdl_is_everyones():
    """It goes before the libraries that larkspur and pygame were linked with."""
    code = "import sys, pygame\n" + SHOW_IMPORT
    library = native.build_path("helpers/libother_sdl1.so")
    assert lines_of(code, preload=[library]) == ["imported A hook for GDB."]


WITHOUT_PACKAGE = """
import imp
del sys.modules["pygame"], sys.modules["pygame.surface"]
sys.modules["pygame.surface"] = imp.load_dynamic("surface", %r)
try:
    larkspur.set_SDL_screen(None)
except Exception as error:
    print "%%s: %%s" %% (type(error).__name__, error)
"""


# --- An SDL inside pygame ------------------------------------------------------------------------


@pytest.mark.parametrize("told", ["(2, 0, 7)", "(1, 2, 3)", "(1, 3, 15)", "(0, 2, 15)"])
def test_sdl_inside_pygame_is_known_by_its_version(told):
    code = (
        stand_in("no_sdl")
        + "pygame.get_sdl_version = lambda: %s\n" % told
        + USE_STAND_IN
        + SHOW_IMPORT
    )
    path = os.path.realpath(native.build_path("helpers/pygame_on_no_sdl/surface.so"))
    assert lines_of(code) == [refusal(".".join(map(str, eval(told))), path) + " False"]


@pytest.mark.parametrize(
    "tell",
    [
        "pass",
        "pygame.get_sdl_version = None",
        "pygame.get_sdl_version = lambda: 1 / 0",
        "pygame.get_sdl_version = lambda: 'xyz'",
        "pygame.get_sdl_version = lambda: (2, 0)",
        "pygame.get_sdl_version = lambda: (2, 0, -1)",
        "pygame.get_sdl_version = lambda: (2, 0, 256)",
        "pygame.get_sdl_version = lambda: %r" % (tuple(map(int, our_sdl()[0].split("."))),),
    ],
)
def test_pygame_is_taken_when_nothing_speaks_against_it(tell):
    code = stand_in("no_sdl") + tell + "\n" + USE_STAND_IN + SHOW_IMPORT + "print sys.exc_info()\n"
    assert lines_of(code) == ["imported A hook for GDB.", "(None, None, None)"]


def test_sdl_in_a_file_that_is_gone_is_told_as_it_was_loaded(tmpdir):
    path = str(tmpdir.join("surface.so"))
    shutil.copy(native.build_path("helpers/pygame_on_no_sdl/surface.so"), path)
    code = (
        STAND_IN % str(tmpdir)
        + "pygame.get_sdl_version = lambda: (2, 0, 7)\n"
        + USE_STAND_IN
        + "import os, pygame.surface\nos.remove(%r)\n" % path
        + SHOW_IMPORT
    )
    assert lines_of(code) == [refusal("2.0.7", path) + " False"]


# The table lies in the program itself, which no library is.
IN_THE_PROGRAM = """
import ctypes, os
import pygame.surface
with open("/proc/self/maps") as maps:
    start, program = [
        (int(line.split("-")[0], 16), line.split()[-1])
        for line in maps
        if line.split()[-1] == os.path.realpath(sys.executable)
    ][0]
from_pointer = ctypes.pythonapi.PyCObject_FromVoidPtr
from_pointer.restype = ctypes.py_object
from_pointer.argtypes = (ctypes.c_void_p, ctypes.c_void_p)
pygame.surface._PYGAME_C_API = from_pointer(start, None)
"""


def test_sdl_in_the_program_is_known_by_its_version():
    code = (
        stand_in("no_sdl")
        + "pygame.get_sdl_version = lambda: (2, 0, 7)\n"
        + USE_STAND_IN
        + IN_THE_PROGRAM
        + SHOW_IMPORT
    )
    assert lines_of(code) == [refusal("2.0.7", os.path.realpath(sys.executable)) + " False"]


def test_pygame_without_its_package_tells_nothing():
    """Its modules alone are left: nothing tells the version of an SDL inside them, or theirs."""
    for sdl, error in (("no_sdl", "TypeError"), ("other_sdl1", "RuntimeError")):
        lines = lines_of(
            stand_in("our_sdl" if sdl == "other_sdl1" else sdl)
            + USE_STAND_IN
            + SHOW_IMPORT
            + WITHOUT_PACKAGE % native.build_path("helpers/pygame_on_%s/surface.so" % sdl)
        )
        assert lines[0] == "imported A hook for GDB."
        assert lines[1].split(":")[0] == error
    assert lines[1] == "RuntimeError: " + refusal_of("other_sdl1", "of unknown version")


# --- pygame that came or changed later -----------------------------------------------------------

LATER = (
    """
sys.modules["pygame"] = None
"""
    + SHOW_IMPORT
    + """

"""
    + USE_STAND_IN
)

# Calls that reach a Surface, and after them every function with whatever arguments.
EVERY_FUNCTION = """
import pygame.surface
from support import pending
surface = pygame.surface.Surface()
room = larkspur.GMRoom()
room.drawn_objects = ()
handle = larkspur.part_type_create()
for name, arguments in (
        ("set_SDL_screen", (surface,)), ("flip_v", (surface,)), ("flip_h", (surface,)),
        ("flip_vh", (surface,)), ("scale", (surface, 2.0, 2.0)),
        ("rotoscale", (surface, 2.0, 2.0, 45.0)), ("GMSprite_from_surface", (surface,)),
        ("part_type_shape", (handle, surface)), ("Room_Draw", (room, surface)),
        ("fast_draw_gradient_v", (surface,) + (1,) * 7),
        ("fast_draw_gradients_vc", (surface,) + (1,) * 9),
        ("fast_draw_gradients_vv", (surface,) + (1,) * 10),
        ("fast_draw_gradients_vcv", (surface,) + (1,) * 12),
        ("fast_draw_gradients_vcvvc", (surface,) + (1,) * 17),
        ("fill_translucent", (surface,) + (1,) * 6)):
    outcome = pending.call(getattr(larkspur, name), *arguments)
    print outcome.exception, outcome.succeeded, name
for name in sorted(set(vars(larkspur)) - set(["breakable", "draw_sprite_ext"])):
    for count in range(22):
        for first in (surface, handle, room, 0):
            if callable(getattr(larkspur, name)):
                pending.call(getattr(larkspur, name), *((first, surface) + (1,) * 20)[:count])
print "alive"
"""


@pytest.mark.parametrize("sdl", sorted(OTHER_SDLS))
def test_surfaces_of_a_pygame_that_came_later_are_refused(sdl):
    """By each function, with the same message; and none of them reads such a Surface."""
    lines = lines_of(stand_in(sdl) + LATER + EVERY_FUNCTION)
    assert lines[0] == "imported A hook for GDB." and lines[-1] == "alive"
    shown = [line.rsplit(" ", 1)[0] for line in lines[1:16]]
    assert shown == [refusal_of(sdl) + " False"] * 15


CHANGED = """
import ctypes, imp, sys
import pygame
from support import host
host.install_modules()
import larkspur
from support import native, pending, rooms
screen = pygame.display.set_mode((64, 48), 0, 32)
recording = host.set_up(larkspur, screen)
kept = native.variable(ctypes.c_void_p, "g_screen")
before = kept.value
other = pygame.display.set_mode((64, 48), 0, 32)
real = sys.modules.pop(%r)
stand_in = imp.load_dynamic(%r, %r)
"""


@pytest.mark.parametrize("module", ["pygame.surface", "pygame.display"])
def test_pygame_that_changed_is_refused_with_the_screen(module):
    """The screen that was set stays."""
    path = native.build_path("helpers/pygame_on_other_sdl2/surface.so")
    lines = lines_of(
        CHANGED % (module, module, path)
        + """
for surface in (other, stand_in.Surface(), None):
    try:
        larkspur.set_SDL_screen(surface)
    except RuntimeError as error:
        print error, kept.value == before
sys.modules[%r] = real
print larkspur.set_SDL_screen(other)
"""
        % module
    )
    release = lines_of("import pygame; print pygame.__version__")[0]
    assert lines == [refusal_of("other_sdl2", release) + " True"] * 3 + ["None"]


def test_room_drawing_takes_no_tables_of_a_pygame_that_changed():
    """It goes on with those that it has, and leaves no exception."""
    path = native.build_path("helpers/pygame_on_other_sdl1/surface.so")
    lines = lines_of(
        CHANGED % ("pygame.surface", "pygame.surface", path)
        + """
native.library.larkspur_init_rooms()
seen = []
recording.gm6.Room_DrawBackgrounds = lambda room, surface, x, y: seen.append(surface)
recording.register(larkspur)
room = rooms.make_view_room()
rooms.set_view(room, 0, xport=2)
print pending.draw_view(room, screen, 0, ()), type(seen[0]) is pygame.Surface
"""
    )
    assert lines == ["(1, None) True"]
