"""Checks whether larkspur, pygame, SDL and the engine's modules fit together.

    python2.7 -m larkspur_check [--json] [MODULE]
    python2.7 -m larkspur_check --include

MODULE is the module of the engine whose import registers gm6 and gmapi, such as gm6 itself. Without
it only the environment is checked. The exit status is 0 when nothing is wrong (notes are not), 1
when something is, and 2 for wrong usage. --include prints the folder of larkspur.h instead.

--json prints one object:

    format   1; another number when a key here changes its meaning
    module   MODULE, or null
    passed   whether nothing is wrong
    checked  how many checks there are
    wrong    how many of them are wrong
    checks   a list of objects, in the order of the table, with these keys:
        name     "pygame", "gm6.Room_Create", ...
        status   "ok"; "note": worth knowing, and it works all the same; "WRONG"
        found    what was found, or null
        version  its version, or null
        file     its file, or null
        purpose  what it is for
        remedy   what to do; null when the status is "ok"

Whatever could crash runs in a process of its own, so a library that does not fit is one more
finding.
"""

from __future__ import print_function

import argparse
import collections
import csv
import glob
import json
import operator
import os
import signal
import sys
import tempfile
import time
import traceback
import types

OK, NOTE, WRONG = "ok", "note", "WRONG"

# A probe that takes longer is given up: an engine whose import starts the game never ends.
LIMIT_SECONDS = 120

PYGAME_VERSIONS = ("1.9.6", "2.0.3")  # what larkspur's tests run with
FIRST_LAYER_PATCH = 50  # SDL 1.2 itself ended with 1.2.15; the layer over SDL 2 counts from 1.2.50
DISPLAY_DEPTH = 32

ONE_SDL = "larkspur and pygame hand each other SDL's surfaces, so both must use the same SDL 1.2"

GET_LARKSPUR = (
    """\
in larkspur's source tree: %s -m pip install .
What building it needs:
Debian, Ubuntu: apt-get install cmake g++ make pkg-config libsdl1.2-dev libsdl-gfx1.2-dev
Fedora: dnf install cmake gcc-c++ make pkgconf-pkg-config SDL-devel SDL_gfx-devel
Arch: pacman -S cmake gcc make pkgconf sdl12-compat sdl_gfx"""
    % sys.executable
)

GET_PYGAME = (
    """\
%s -m pip install --force-reinstall --no-binary pygame pygame==1.9.6
builds pygame against the system's SDL 1.2 (its wheels bring an SDL of their own). It needs:
Debian, Ubuntu: apt-get install gcc libsdl1.2-dev libsdl-image1.2-dev libsdl-mixer1.2-dev \
libsdl-ttf2.0-dev libportmidi-dev libx11-dev libfreetype6-dev libjpeg-dev libpng-dev
Fedora: dnf install gcc SDL-devel SDL_image-devel SDL_mixer-devel SDL_ttf-devel portmidi-devel \
libX11-devel freetype-devel libjpeg-turbo-devel libpng-devel
Arch: pacman -S base-devel sdl12-compat sdl_image sdl_mixer sdl_ttf portmidi libx11 freetype2 \
libjpeg-turbo libpng
Where it fails with GCC 14 or on the SDL 1.2 that is a layer over SDL 2, script/setup in larkspur's
sources knows how."""
    % sys.executable
)

GET_HEADER = """\
larkspur.h was not found. `pip install` of larkspur puts it among the headers of the environment;
a module that was installed by CMake alone comes without it. It is include/larkspur.h in larkspur's
source tree and source package."""


# --- What larkspur looks for in gm6 and gmapi ----------------------------------------------------

# Text for people, and whether a value is of that kind, as strictly as the module itself asks.
Kind = collections.namedtuple("Kind", "text fits")
ANYTHING = Kind("any object", lambda value: True)
CALLABLE = Kind("something callable", callable)
CLASS = Kind("a class derived from object", lambda value: isinstance(value, type))
DICT = Kind("a dict", lambda value: isinstance(value, dict))
LIST = Kind("a list", lambda value: isinstance(value, list))
NUMBER = Kind("a number", lambda value: hasattr(value, "__float__"))
SEQUENCE = Kind("a list or another sequence", lambda value: operator.isSequenceType(value))
NAMESPACE = Kind("a module or a dict", lambda value: isinstance(value, (types.ModuleType, dict)))

WHEN_LOADED = "; if the engine does so when it loads a game, name a module that loads one"

# What is required has to be there; the rest larkspur writes, and creates when it is missing.
Name = collections.namedtuple("Name", "name kind required purpose remedy")


def _room_function(method, parameters, purpose):
    return Name(
        "gm6.Room_" + method,
        CALLABLE,
        True,
        "GMRoom.%s() calls it: %s" % (method, purpose),
        "define in gm6: def Room_%s(%s)" % (method, parameters),
    )


def _resource_list(name, kind):
    return Name(
        "gm6.game." + name,
        LIST,
        True,
        "the number of a %s (int, str, comparison) is its position in it" % kind,
        "make it a list, and append each " + kind,
    )


def _view_scale(axis, direction):
    return Name(
        "gm6.view_%sscale" % axis,
        NUMBER,
        False,
        "larkspur writes a view's %s scale into it" % direction,
        "set it to 1, for code that reads it before the first view is drawn",
    )


ENGINE_NAMES = (
    Name(
        "gm6.game",
        ANYTHING,
        True,
        "holds the lists of the game's resources",
        "set it to an object with the lists sprites, backgrounds, rooms and objects" + WHEN_LOADED,
    ),
    _resource_list("sprites", "GMSprite"),
    _resource_list("backgrounds", "BackgroundData"),
    _resource_list("rooms", "GMRoom"),
    Name(
        "gm6.game.objects",
        SEQUENCE,
        True,
        "a view follows the first instance of the object whose number is its view_object",
        "make it a list of the game's objects, each with the lists instances and children",
    ),
    Name(
        "gm6.SpriteData_load_images",
        CALLABLE,
        True,
        "loads the pictures of a GMSprite that is unpickled",
        "define in gm6: def SpriteData_load_images(sprite, name, count), which fills"
        " sprite.subimages",
    ),
    Name(
        "gm6.BackgroundData_load_images",
        CALLABLE,
        True,
        "loads the picture of a BackgroundData that is unpickled",
        "define in gm6: def BackgroundData_load_images(background), which sets its surf, w and h",
    ),
    _room_function("Compile", "room", "compile the room's creation code"),
    _room_function("Create", "room", "enter the room"),
    _room_function("InitializeBackgrounds", "room", "fill the lists of the background slots"),
    _room_function("AddInstance", "room, instance", "enter an instance in the room's lists"),
    _room_function("AddDrawnInstance", "room, instance", "enter it among what is drawn"),
    _room_function("ResortDrawnObjects", "room", "put what is drawn in order"),
    _room_function("SetBackgroundIndex", "room, slot, index", "show a background in a slot"),
    _room_function("StepAlarms", "room", "count the alarms of a step"),
    _room_function("MoveInstances", "room", "move the instances by a step"),
    _room_function("HandleCollisions", "room", "run the collision events of a step"),
    _room_function("StepEvents", "room", "run the step events"),
    _room_function(
        "DrawBackgrounds",
        "room, surface, xview, yview",
        "draw the backgrounds; Room_Draw() has it called first in each frame and view",
    ),
    _room_function("RenderBackground", "room", "prepare a picture of the backgrounds"),
    _room_function("Leave", "room", "leave the room"),
    _room_function("MouseButtonDown", "room, button", "a mouse button went down"),
    _room_function("MouseButtonUp", "room, button", "a mouse button went up"),
    _room_function("HandleKeyrelease", "room, key", "a key was released"),
    _room_function("HandleKeypress", "room, key", "a key was pressed"),
    _view_scale("x", "horizontal"),
    _view_scale("y", "vertical"),
    Name(
        "gmapi.__dict__",
        DICT,
        True,
        "compiled draw code runs in it; unpickled sprites and backgrounds are entered in it",
        "let gmapi be an ordinary module",
    ),
    Name(
        "gmapi.__builtins__",
        NAMESPACE,
        True,
        "draw code finds len, True and all other built-in names through it",
        "import __builtin__; gmapi.__builtins__ = __builtin__ (a gmapi that is imported from a"
        " file has it)",
    ),
    Name(
        "gmapi.game",
        ANYTHING,
        True,
        "Room_Draw() finds the pictures of tiles through it",
        "set gmapi.game = gm6.game" + WHEN_LOADED,
    ),
    Name(
        "gmapi.game.backgrounds",
        SEQUENCE,
        True,
        "a tile's picture is that of the background with its background_idx",
        "set gmapi.game = gm6.game, with a list of BackgroundData as backgrounds",
    ),
    Name(
        "gmapi.self",
        ANYTHING,
        True,
        "the instance whose code runs; larkspur saves it, sets it and puts it back",
        "set it to None until code of an instance runs" + WHEN_LOADED,
    ),
    Name(
        "gmapi.py_self_stack",
        LIST,
        True,
        "keeps the outer `self` while draw code runs",
        "set it to an empty list before RegisterInstancesDict() is called",
    ),
    Name(
        "gmapi.py_ParticleSystem",
        CLASS,
        True,
        "objects of exactly this class are drawn as particle systems, all others as instances",
        "define in gmapi: class py_ParticleSystem(object); its objects have py_automatic_draw and"
        " py_RealDraw",
    ),
    Name(
        "gmapi.draw_sprite_ext",
        CALLABLE,
        True,
        "draws an instance that has no draw code",
        "define in gmapi: def draw_sprite_ext(sprite, subimage, x, y, xscale, yscale, angle,"
        " color, alpha)",
    ),
    Name(
        "gmapi.py_draw_props",
        ANYTHING,
        True,
        "the drawing properties that draw_rectangle() draws with",
        "set it to an object with the attributes alpha and color",
    ),
    Name(
        "gmapi.py_draw_props.alpha",
        NUMBER,
        True,
        "how opaque draw_rectangle() draws",
        "set it to a float, 0.0 to 1.0",
    ),
    Name(
        "gmapi.py_draw_props.color",
        ANYTHING,
        True,
        "the colour that draw_rectangle() draws with",
        "set it to a colour that pygame's Surface.fill() takes",
    ),
    Name(
        "gmapi.__color_to_int",
        CALLABLE,
        True,
        "turns py_draw_props.color into a pixel value, for translucent draw_rectangle()",
        "define in gmapi: def __color_to_int(color), which returns an int",
    ),
    Name(
        "gmapi.pygame",
        ANYTHING,
        True,
        "RegisterInstancesDict() takes pygame from it",
        "import pygame in gmapi",
    ),
    Name(
        "gmapi.pygame.draw.rect",
        CALLABLE,
        True,
        "draws the outlines of draw_rectangle()",
        "import pygame in gmapi, and leave pygame.draw.rect as it is",
    ),
    Name(
        "gmapi.pygame.Surface",
        CLASS,
        True,
        "the class that native code knows surfaces by",
        "import pygame in gmapi, and leave pygame.Surface as it is",
    ),
    Name(
        "gmapi.fps",
        NUMBER,
        False,
        "larkspur writes the frames of the last second into it",
        "set it to 0, for code that reads it before the first frame is drawn",
    ),
)


# --- Rows, and probes that run in a process of their own -----------------------------------------


def _text(value):
    """A value as it can go into JSON: names of files and messages may be bytes of any kind."""
    return value.decode("utf-8", "replace") if isinstance(value, bytes) else value


def _row(name, status, purpose, remedy=None, found=None, version=None, file=None):
    if file is not None:
        file = os.path.abspath(file)
        if file.endswith((".pyc", ".pyo")):
            file = file[:-1]  # the same whether the compiled file was there before or not
    row = {
        "name": name,
        "status": status,
        "purpose": purpose,
        "found": found,
        "version": version,
        "file": file,
        "remedy": None if status == OK else remedy,
    }
    return {key: _text(value) for key, value in row.items()}


def _about_to(name, purpose, remedy):
    """The row that stands for what comes next, should it end the process."""
    return _row(name, None, purpose, remedy)


def _error_text(error):
    return "%s: %s" % (type(error).__name__, error)


def _run_probe(probe, arguments, results):
    """The child's side: writes the probe's rows, then null. Never returns."""
    status = 1
    try:
        # What an engine prints does not belong in the report, and it has no one to ask.
        os.dup2(os.open(os.devnull, os.O_RDONLY), 0)
        os.dup2(2, 1)
        del sys.argv[1:]
        os.environ["PYGAME_HIDE_SUPPORT_PROMPT"] = "1"
        for row in probe(*arguments):
            results.write(json.dumps(row) + "\n")
            results.flush()
        results.write("null\n")
        results.flush()
        status = 0
    except BaseException:
        traceback.print_exc()
    finally:
        sys.stdout.flush()
        sys.stderr.flush()
        os._exit(status)


def _protected(probe, *arguments):
    """The rows of a probe, which runs in a child process.

    A probe is a generator of rows; before anything risky it gives an _about_to() row. When the
    process ends early, the last of these becomes the finding.
    """
    with tempfile.TemporaryFile("w+") as results:
        sys.stdout.flush()
        sys.stderr.flush()
        child = os.fork()
        if child == 0:
            _run_probe(probe, arguments, results)
        end = _end_of(child)
        results.seek(0)
        rows = [json.loads(line) for line in results]
    finished = bool(rows) and rows[-1] is None
    drafts = [row for row in rows if row is not None and row["status"] is None]
    kept = [row for row in rows if row is not None and row["status"] is not None]
    if not finished:
        kept.append(dict(drafts[-1], status=WRONG, found=end))
    return kept


def _end_of(child):
    """Waits for a child process to end, for as long as it may take; how it ended, as a text."""
    given_up = time.time() + LIMIT_SECONDS
    while True:
        ended, status = os.waitpid(child, os.WNOHANG)
        if ended:
            break
        if time.time() > given_up:
            os.kill(child, signal.SIGKILL)
            os.waitpid(child, 0)
            return "did not come to an end in %d seconds" % LIMIT_SECONDS
        time.sleep(0.01)
    if os.WIFSIGNALED(status):
        return "crashed: the process was killed by signal %d" % os.WTERMSIG(status)
    return "ended the process with status %d" % os.WEXITSTATUS(status)


# --- The environment -----------------------------------------------------------------------------


def _python_row():
    version = "%d.%d.%d" % sys.version_info[:3]
    status = OK if sys.version_info[:2] == (2, 7) else WRONG
    return _row(
        "Python",
        status,
        "larkspur is an extension of Python 2.7",
        "run this with the Python 2.7 of the engine: python2.7 -m larkspur_check",
        version=version,
        file=sys.executable,
    )


def _environment():
    os.environ["SDL_VIDEODRIVER"] = "dummy"  # a display of 32 bits without a window
    about = ("larkspur draws on pygame's Surfaces", GET_PYGAME)
    yield _about_to("pygame", *about)
    pygame = None
    try:
        import pygame
        import pygame.surface
    except Exception as error:
        path = getattr(pygame, "__file__", None)
        yield _row("pygame", WRONG, *about, found=_error_text(error), file=path)
        pygame = None
    else:
        yield _pygame_row(pygame)

    about = ("the module itself", GET_LARKSPUR)
    path = _find_larkspur()
    if path is None:
        yield _row("larkspur", WRONG, *about, found="not installed for this Python")
        return
    try:
        import ctypes
    except ImportError as error:
        yield _row(
            "one SDL",
            NOTE,
            ONE_SDL,
            "build this Python with libffi's headers",
            found="can't be looked at without ctypes (%s)" % error,
        )
    else:
        yield _about_to("larkspur", *about)
        try:
            library = ctypes.CDLL(path)
        except OSError as error:
            yield _row("larkspur", WRONG, *about, found=str(error), file=path)
            return
        yield _about_to("one SDL", ONE_SDL, GET_PYGAME)
        rows = _sdl_rows(ctypes, pygame, library)
        for row in rows:
            yield row
        if any(row["status"] == WRONG for row in rows):
            yield _row("larkspur", OK, about[0], file=path)
            return  # larkspur is not asked to work with this pygame

    yield _about_to("larkspur", *about)
    try:
        import larkspur
    except Exception as error:
        yield _row("larkspur", WRONG, *about, found=_error_text(error), file=path)
        return
    yield _row(
        "larkspur",
        OK,
        about[0],
        version=getattr(larkspur, "__version__", None),
        file=larkspur.__file__,
    )
    if pygame is None:
        return
    about = ("set_SDL_screen() takes a display of pygame's", GET_PYGAME)
    yield _about_to("display", *about)
    try:
        pygame.display.init()
        surface = pygame.display.set_mode((8, 8), 0, DISPLAY_DEPTH)
        larkspur.set_SDL_screen(surface)
    except Exception as error:
        yield _row("display", WRONG, *about, found=_error_text(error))
    else:
        yield _depth_row("display", surface, ", tried without a window")


def _pygame_row(pygame):
    version = pygame.version.ver
    return _row(
        "pygame",
        OK if version in PYGAME_VERSIONS else NOTE,
        "larkspur draws on pygame's Surfaces",
        "larkspur is tested with pygame %s" % " and ".join(PYGAME_VERSIONS),
        version=version,
        file=pygame.__file__,
    )


def _find_larkspur():
    """The module's file; None when there is none. It is not imported."""
    import imp  # newer interpreters than ours have none

    try:
        return os.path.abspath(imp.find_module("larkspur")[1])
    except ImportError:
        return None


def _depth_row(name, surface, remark=""):
    depth = surface.get_bitsize()
    return _row(
        name,
        OK if depth == DISPLAY_DEPTH else WRONG,
        "larkspur's pixel routines work on %d bits a pixel" % DISPLAY_DEPTH,
        "open it with pygame.display.set_mode(size, 0, %d)" % DISPLAY_DEPTH,
        found="%d bits a pixel%s" % (depth, remark),
    )


# --- SDL: which one a library uses ---------------------------------------------------------------

# version, kind: texts; place: where the library lies in memory; file: its path
Sdl = collections.namedtuple("Sdl", "version kind place file")


def _find_symbol(ctypes, library, name):
    """A symbol as the loader binds it for `library`: whole process first, then what it links."""
    for scope in (ctypes.CDLL(None), library):
        try:
            return getattr(scope, name)
        except AttributeError:
            pass
    return None


def _place_and_file(ctypes, symbol):
    """Address and path of the library in which a symbol lies."""

    class Info(ctypes.Structure):
        _fields_ = [
            ("path", ctypes.c_char_p),
            ("base", ctypes.c_void_p),
            ("symbol_name", ctypes.c_char_p),
            ("symbol", ctypes.c_void_p),
        ]

    info = Info()
    ctypes.CDLL(None).dladdr(ctypes.cast(symbol, ctypes.c_void_p), ctypes.byref(info))
    return info.base, os.path.realpath(info.path)


def _sdl_of(ctypes, library):
    """The SDL that a library uses; None when it uses no shared one."""

    class Version(ctypes.Structure):
        _fields_ = [(name, ctypes.c_uint8) for name in ("major", "minor", "patch")]

    symbol = _find_symbol(ctypes, library, "SDL_Linked_Version")
    if symbol is not None:
        symbol.restype = ctypes.POINTER(Version)
        version = symbol().contents
    else:
        symbol = _find_symbol(ctypes, library, "SDL_GetVersion")  # SDL 2
        if symbol is None:
            return None
        version = Version()
        symbol(ctypes.byref(version))
    if version.major >= 2:
        kind = "SDL %d" % version.major
    elif version.patch >= FIRST_LAYER_PATCH:
        kind = "SDL 1.2 as a layer over SDL 2"
    else:
        kind = "SDL 1.2"
    number = "%d.%d.%d" % (version.major, version.minor, version.patch)
    return Sdl(number, kind, *_place_and_file(ctypes, symbol))


def _sdl_text(sdl, library):
    if sdl is None:
        return "one inside itself (%s)" % library
    return "%s %s (%s)" % (sdl.kind, sdl.version, sdl.file)


def _sdl_rows(ctypes, pygame, library):
    """Which SDL pygame (when it is there) and larkspur use, and whether it is one."""
    rows = []

    def look(name, native):
        sdl = _sdl_of(ctypes, native)
        if sdl is not None:
            rows.append(
                _row(
                    name,
                    OK,
                    "opens the display and draws",
                    found=sdl.kind,
                    version=sdl.version,
                    file=sdl.file,
                )
            )
        return sdl

    if pygame is None:
        look("SDL of larkspur", library)
    else:
        surface_library = ctypes.CDLL(os.path.abspath(pygame.surface.__file__))
        of_pygame = look("SDL of pygame", surface_library)
        of_larkspur = look("SDL of larkspur", library)
        one = None not in (of_pygame, of_larkspur) and of_pygame.place == of_larkspur.place
        found = (
            "yes"
            if one
            else "no: pygame uses %s, larkspur uses %s"
            % (_sdl_text(of_pygame, surface_library._name), _sdl_text(of_larkspur, library._name))
        )
        rows.append(_row("one SDL", OK if one else WRONG, ONE_SDL, GET_PYGAME, found=found))
    zoom = _find_symbol(ctypes, library, "zoomSurface")
    if zoom is not None:
        rows.append(
            _row("SDL_gfx", OK, "scales and rotates", file=_place_and_file(ctypes, zoom)[1])
        )
    return rows


# --- The engine ----------------------------------------------------------------------------------


def _engine(module):
    name = "import " + module
    about = (
        "registers gm6 and gmapi",
        "name a module that only imports the engine, and run this"
        " where the engine runs; what is wrong above comes first",
    )
    yield _about_to(name, *about)
    try:
        __import__(module)
    except BaseException:  # the engine may also end itself
        lines = traceback.format_exc().rstrip().splitlines()[-8:]
        yield _row(name, WRONG, *about, found="fails:\n" + "\n".join(lines))
        return
    yield _row(name, OK, about[0], file=getattr(sys.modules[module], "__file__", None))
    yield _about_to(
        "gm6 and gmapi",
        "larkspur reads their attributes",
        "read the names in ENGINE_NAMES of larkspur_check.py one by one to see which it is",
    )
    modules = {}
    for host in ("gm6", "gmapi"):
        row = _module_row(host, module)
        yield row
        if row["status"] == OK:
            modules[host] = sys.modules[host]
    for row in check_names(modules):
        yield row
    pygame = sys.modules.get("pygame")
    surface = pygame.display.get_surface() if pygame is not None else None
    if surface is not None:
        yield _depth_row("display of the engine", surface)


def _module_row(name, importer):
    """Whether a module of the engine is there, and is the one that larkspur took."""
    module = sys.modules.get(name)
    larkspur = sys.modules.get("larkspur")
    remedy = "import gm6 and gmapi before larkspur"
    if module is None:
        found = "not registered by importing %s" % importer
        remedy = "have %s import it, before larkspur" % importer
    elif not isinstance(module, types.ModuleType):
        found = "registered as %s; larkspur puts an empty module in its place" % _type_text(module)
        remedy = "register a module in sys.modules (a class of its own may derive from ModuleType)"
    elif larkspur is not None and set(_namespace(module)) <= {"__name__", "__doc__", "__package__"}:
        found = "empty: it was not registered when larkspur was imported, so larkspur made it"
    elif larkspur is not None and not _is_bound(larkspur, name, module):
        found = "another module than the one that larkspur was imported with"
        remedy = "leave it in sys.modules as it was when larkspur was imported"
    else:
        return _row(name, OK, "a module of the engine", file=getattr(module, "__file__", None))
    return _row(
        name,
        WRONG,
        "a module of the engine; larkspur takes it from sys.modules when it is imported",
        remedy,
        found=found,
    )


def _namespace(module):
    """The dict in which a module's names lie, whatever its class makes of `__dict__`."""
    return types.ModuleType.__dict__["__dict__"].__get__(module)


def _is_bound(larkspur, name, module):
    """Whether the variable of that name that larkspur exports is the module."""
    try:
        import ctypes

        library = ctypes.CDLL(os.path.abspath(larkspur.__file__))
        return ctypes.c_void_p.in_dll(library, name).value == id(module)
    except (ImportError, OSError, AttributeError, TypeError, ValueError):
        return True  # it can't be seen


def _type_text(value):
    return "%s %s" % ("an" if type(value).__name__[0] in "aeiou" else "a", type(value).__name__)


def check_names(modules):
    """Rows for all of ENGINE_NAMES that belong to `modules`, a dict from name to module."""
    return [_name_row(name, modules) for name in ENGINE_NAMES if name.name.split(".")[0] in modules]


def _name_row(name, modules):
    value, failure = _look_up(name.name.split("."), modules)
    if failure is None:
        found = _type_text(value)
        if name.kind.fits(value):
            return _row(name.name, OK, name.purpose, found=found)
        failure = "%s instead of %s" % (found, name.kind.text)
    return _row(
        name.name, WRONG if name.required else NOTE, name.purpose, name.remedy, found=failure
    )


def _look_up(parts, modules):
    """(value, None) of a dotted name, or (None, why it can't be had)."""
    value = modules[parts[0]]
    for i in range(1, len(parts)):
        try:
            value = getattr(value, parts[i])
        except AttributeError:
            missing = ".".join(parts[: i + 1])
            return None, "missing" if i + 1 == len(parts) else "missing, as %s is" % missing
        except Exception as error:
            return None, "reading it raises " + _error_text(error)
    return value, None


# --- The header ----------------------------------------------------------------------------------


def _header_candidates():
    """Where larkspur.h may lie: what the installed package lists, then the usual places."""
    for folder in sys.path:
        for record in glob.glob(os.path.join(folder, "larkspur-*.dist-info", "RECORD")):
            with open(record) as rows:
                for row in csv.reader(rows):
                    if row:
                        yield os.path.join(folder, row[0])
        for listing in glob.glob(
            os.path.join(folder, "larkspur-*.egg-info", "installed-files.txt")
        ):
            with open(listing) as lines:
                for line in lines:
                    yield os.path.join(os.path.dirname(listing), line.strip())
    import site
    from distutils import sysconfig

    version = "python%d.%d" % sys.version_info[:2]
    for folder in (
        os.path.join(sys.prefix, "include", "site", version),
        os.path.join(sys.prefix, "local", "include", version),
        os.path.join(getattr(site, "USER_BASE", None) or sys.prefix, "include", version),
        sysconfig.get_python_inc(),
    ):
        yield os.path.join(folder, "larkspur", "larkspur.h")


def find_include_directory():
    """The folder of the installed larkspur.h; None when it is not installed."""
    for path in _header_candidates():
        if os.path.basename(path) == "larkspur.h" and os.path.isfile(path):
            return os.path.dirname(os.path.abspath(path))
    return None


# --- The command ---------------------------------------------------------------------------------


def check(module=None):
    """All rows; see the top of this file."""
    rows = [_python_row()]
    if rows[0]["status"] == OK:
        rows += _protected(_environment)
        if module is not None:
            rows += _protected(_engine, module)
    return rows


def _table(rows):
    width = max(len(row["name"]) for row in rows)
    lines = []
    for row in rows:
        found = "  ".join(row[key] for key in ("version", "found", "file") if row[key])
        lines.append("%-5s  %-*s  %s" % (row["status"], width, row["name"], _indented(found)))
        if row["status"] != OK:
            lines.append("       for: " + row["purpose"])
            lines.append("       do:  " + _indented(row["remedy"]))
    return "\n".join(line.rstrip() for line in lines)


def _indented(text):
    return text.replace("\n", "\n            ")


def _summary(rows, module, wrong):
    result = (
        "%d of %d wrong" % (wrong, len(rows)) if wrong else ("all %d checks passed" % len(rows))
    )
    if module is None:
        result = (
            "gm6 and gmapi were not checked: name the module of the engine that imports them,"
            " as in\n    python2.7 -m larkspur_check gm6\n"
        ) + result
    return result


def _print(text):
    """Prints as UTF-8 where there is no knowing what standard output takes."""
    print(text.encode("utf-8") if str is bytes else text)


def main(arguments=None):
    parser = argparse.ArgumentParser(
        prog="larkspur_check",
        description="Check whether larkspur, pygame, SDL and the engine's modules fit together.",
    )
    parser.add_argument(
        "module",
        nargs="?",
        metavar="MODULE",
        help="the module of the engine that imports gm6 and gmapi; without it only"
        " the environment is checked",
    )
    parser.add_argument("--json", action="store_true", help="print one JSON object, no table")
    parser.add_argument(
        "--include",
        action="store_true",
        help="print the folder of the installed larkspur.h, and check nothing",
    )
    options = parser.parse_args(arguments)
    if options.include:
        if options.json or options.module:
            parser.error("--include goes alone")
        folder = find_include_directory()
        if folder is None:
            print(GET_HEADER, file=sys.stderr)
            return 1
        print(folder)
        return 0

    rows = check(options.module)
    wrong = sum(row["status"] == WRONG for row in rows)
    if options.json:
        print(
            json.dumps(
                {
                    "format": 1,
                    "module": _text(options.module),
                    "passed": wrong == 0,
                    "checked": len(rows),
                    "wrong": wrong,
                    "checks": rows,
                },
                indent=2,
                sort_keys=True,
            )
        )
    else:
        _print(_table(rows) + "\n\n" + _summary(rows, options.module, wrong))
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
