"""pygame's native tables: where they are found, and Surfaces made and checked with them."""

import ctypes
import textwrap

import larkspur
import numpy
import pygame
import pytest
from support import leaks, native, pending, sdl, subprocess_python
from support.rooms import make_background, make_room, make_tile, make_view_room, set_view

WRAP = native.function("PySurface_FromSurface", ctypes.c_void_p, ctypes.c_void_p)
SDL = ctypes.CDLL("libSDL-1.2.so.0")
SDL.SDL_CreateRGBSurface.restype = ctypes.c_void_p

# pygame's own tables in another container; the real modules are replaced by ones with just that.
CONTAINERS = """
import ctypes, sys, types
import pygame
api = ctypes.pythonapi
api.PyCapsule_GetPointer.restype = api.PyCapsule_GetName.restype = ctypes.c_void_p
api.PyCapsule_GetPointer.argtypes = (ctypes.py_object, ctypes.c_void_p)
api.PyCapsule_GetName.argtypes = (ctypes.py_object,)
api.PyCObject_FromVoidPtr.restype = api.PyCapsule_New.restype = ctypes.py_object
api.PyCObject_FromVoidPtr.argtypes = (ctypes.c_void_p, ctypes.c_void_p)
api.PyCapsule_New.argtypes = (ctypes.c_void_p, ctypes.c_char_p, ctypes.c_void_p)

def pointer(name):
    entry = sys.modules[name]._PYGAME_C_API
    if type(entry).__name__ == "PyCObject":
        api.PyCObject_AsVoidPtr.restype = ctypes.c_void_p
        api.PyCObject_AsVoidPtr.argtypes = (ctypes.py_object,)
        return api.PyCObject_AsVoidPtr(entry)
    return api.PyCapsule_GetPointer(entry, api.PyCapsule_GetName(entry))

def put(name, make):
    replacement = types.ModuleType(name)
    make(replacement, pointer(name))
    sys.modules[name] = replacement

screen = pygame.display.set_mode((64, 48), 0, 32)

def use(name="set_SDL_screen"):
    try:
        print larkspur.set_SDL_screen(screen)
        part = pygame.Surface((64, 48), 0, 32).subsurface((1, 1, 9, 9))
        print larkspur.Room_Draw(rooms.make_room(), part)
        print larkspur.flip_v(part).get_size()
    except RuntimeError as error:
        print "RuntimeError", "pygame" in str(error)
"""

IMPORT = """
from support import host
host.install_modules()
import larkspur
from support import rooms
recording = host.RecordingHost(screen)
recording.register(larkspur)
use()
"""

MAKERS = {
    "CObject": "m._PYGAME_C_API = api.PyCObject_FromVoidPtr(p, None)",
    "capsule without a name": "m._PYGAME_C_API = api.PyCapsule_New(p, None, None)",
    "capsule with a name": "m._PYGAME_C_API = api.PyCapsule_New(p, 'any', None)",
    "number": "m._PYGAME_C_API = p",
    "none": "m._PYGAME_C_API = None",
    "no entry": "m.other = 1",
}


def use_tables(surface, surflock):
    """What becomes of using larkspur when these statements make the entries of both modules."""
    code = CONTAINERS
    for name, maker in (("surface", surface), ("surflock", surflock)):
        code += "def make(m, p):\n    %s\nput('pygame.%s', make)\n" % (MAKERS[maker], name)
    status, out, err = subprocess_python.run(code + IMPORT)
    assert status == 0, err
    return out.splitlines()[2:] if out.startswith("pygame") else out.splitlines()


@pytest.mark.parametrize("container", ["CObject", "capsule without a name", "capsule with a name"])
def test_tables_are_taken_from_both_kinds_of_containers(container):
    assert use_tables(container, container) == ["None", "None", "(9, 9)"]


@pytest.mark.parametrize("container", ["number", "none", "no entry"])
def test_without_a_surface_table_importing_works_and_using_does_not(container):
    assert use_tables(container, "CObject") == ["RuntimeError True"]


def test_each_table_is_found_by_itself():
    """Without the locking table whole Surfaces work; only parts of others need it."""
    assert use_tables("CObject", "no entry") == ["None", "None", "RuntimeError True"]


def test_import_without_pygame():
    status, out, err = subprocess_python.run(
        "import sys\n"
        "sys.modules['pygame'] = None\n"
        "from support import host, pending\n"
        "host.install_modules()\n"
        "import larkspur\n"
        "for function, arguments in ((larkspur.set_SDL_screen, (1,)),\n"
        "                            (larkspur.scale, (1, 1.0, 1.0))):\n"
        "    outcome = pending.call(function, *arguments)\n"
        "    print type(outcome.exception).__name__, 'pygame' in str(outcome.exception)\n"
        "import ctypes\n"
        "wrap = ctypes.PyDLL(larkspur.__file__).PySurface_FromSurface\n"
        "wrap.restype = ctypes.c_void_p\n"
        "try:\n"
        "    wrap(None)\n"
        "except RuntimeError as error:\n"
        "    print 'RuntimeError', 'pygame' in str(error)\n"
        "particle = larkspur.CParticle_new(larkspur.part_type_create(), 1, 1)\n"
        "outcome = pending.call(larkspur.CParticle_dec_ttl_and_render, particle, 0, 0)\n"
        "print type(outcome.exception).__name__, 'pygame' in str(outcome.exception)\n"
        "print larkspur.breakable(), larkspur.GMRoom().id\n"
    )
    assert status == 0, err
    assert out.splitlines()[:4] == ["RuntimeError True"] * 4
    assert out.splitlines()[-1] == "None 0"


# --- The tables of room drawing ------------------------------------------------------------------

OWN_TABLE = (
    CONTAINERS
    + """
from support import host
host.install_modules()
import larkspur
from support import native, pending, rooms
host.set_up(larkspur, screen)

real = (ctypes.c_void_p * 3).from_address(pointer("pygame.surface"))
make_real = ctypes.PYFUNCTYPE(ctypes.py_object, ctypes.c_void_p)(real[1])
made = []
def make(surface):
    made.append(surface)
    return make_real(surface)
make_fake = ctypes.PYFUNCTYPE(ctypes.py_object, ctypes.c_void_p)(make)
table = (ctypes.c_void_p * 3)(real[0], ctypes.cast(make_fake, ctypes.c_void_p).value, real[2])
def replace(module, _):
    module._PYGAME_C_API = api.PyCObject_FromVoidPtr(ctypes.addressof(table), None)
put("pygame.surface", replace)
native.library.larkspur_init_rooms()

room = rooms.make_view_room()
rooms.set_view(room, 0, xport=1)
print pending.draw_view(room, screen, 0, ()), len(made)
flipped = larkspur.flip_v(pygame.Surface((4, 4), 0, 32))
print type(flipped).__name__, len(made)
"""
)


def test_room_drawing_reads_a_table_of_its_own():
    """Read again on demand, without a change for all others."""
    status, out, err = subprocess_python.run(OWN_TABLE)
    assert status == 0, err
    assert out.splitlines()[-2:] == ["(1, None) 1", "Surface 1"]


# The surface module has its table for the first that asks, and none for room drawing.
TABLE_FOR_ONE = (
    CONTAINERS
    + """
class ForOne(types.ModuleType):
    asked = 0
    def __getattribute__(self, name):
        if name == "_PYGAME_C_API":
            ForOne.asked += 1
            if ForOne.asked == 2:
                raise AttributeError(name)
        return types.ModuleType.__getattribute__(self, name)

replacement = ForOne("pygame.surface")
replacement.__dict__.update(vars(sys.modules["pygame.surface"]))
sys.modules["pygame.surface"] = replacement
from support import host
host.install_modules()
import larkspur
from support import pending, rooms
recording = host.RecordingHost(screen)
recording.register(larkspur)
larkspur.set_SDL_screen(screen)
room = rooms.make_view_room()
rooms.set_view(room, 0, xport=1)
status, error = pending.draw_view(room, screen, 0, ())
print status, type(error).__name__, "making a Surface needs pygame" in str(error)
"""
)


def test_scaled_view_without_the_table_of_room_drawing_fails():
    status, out, err = subprocess_python.run(TABLE_FOR_ONE)
    assert status == 0, err
    assert out.splitlines()[-1] == "0 RuntimeError True"


def test_room_drawing_keeps_its_table_when_there_is_no_other_one(host, capfd):
    """Reading anew leaves no exception, whatever it finds."""
    import sys

    saved = sys.modules["pygame.surface"]
    sys.modules["pygame.surface"] = None
    try:
        native.library.larkspur_init_rooms()
    finally:
        sys.modules["pygame.surface"] = saved
    room = make_view_room()
    set_view(room, 0, xport=1)
    assert pending.draw_view(room, host.screen, 0, ()) == (1, None)
    capfd.readouterr()


# --- Preparing parts -----------------------------------------------------------------------------

# pygame's prepare is replaced by a function prepare(part) of the test.
OWN_PREPARE = (
    CONTAINERS
    + """
real = (ctypes.c_void_p * 5).from_address(pointer("pygame.surflock"))
fake = ctypes.PYFUNCTYPE(None, ctypes.c_void_p)(lambda part: prepare(part))
table = (ctypes.c_void_p * 5)(*real)
table[1] = ctypes.cast(fake, ctypes.c_void_p).value
def replace(module, _):
    module._PYGAME_C_API = api.PyCObject_FromVoidPtr(ctypes.addressof(table), None)
put("pygame.surflock", replace)
from support import host
host.install_modules()
import larkspur
from support import pending, rooms
from support.collecting import CollectingEverywhere
recording = host.set_up(larkspur, screen)

def part():
    return pygame.Surface((64, 48), 0, 32).subsurface((1, 1, 9, 9))
"""
)

COUNTING_PREPARE = (
    OWN_PREPARE
    + """
class Kept(object):
    pass

kept = []
points = []
def prepare(part):
    points.append(collecting.points)
    kept.append(Kept())
    points.append(collecting.points)

drawn = part()
with CollectingEverywhere() as collecting:
    prepare(drawn)
    larkspur.flip_v(drawn)
print points[1] > points[0], points[3] == points[2]
"""
)


def test_no_collection_starts_while_a_part_is_prepared():
    """It could run code that closes the display whose surface pygame has just looked up."""
    status, out, err = subprocess_python.run(COUNTING_PREPARE)
    assert status == 0, err
    assert out.splitlines()[-1] == "True True"


def test_part_of_a_surface_whose_last_target_is_gone():
    """SDL has encoded the surface by the alpha of its pixels for that target, and would look at it
    again when pygame unlocks the surface."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, surfaces
        host.install_modules()
        import larkspur
        whole = pygame.Surface((30, 20), pygame.SRCALPHA, 32)
        whole.fill((10, 20, 30, 100))
        whole.fill((40, 50, 60, 255), (0, 0, 9, 9))
        part = whole.subsurface((5, 5, 20, 10))
        surfaces.encode_by_alpha(whole)
        flipped = larkspur.flip_v(part)
        print flipped.get_at((0, 9)), flipped.get_at((0, 0))
        """
    )
    assert out.splitlines()[-1] == "(40, 50, 60, 255) (10, 20, 30, 100)"


def test_part_of_a_surface_whose_last_target_is_gone_and_that_a_dead_part_has_locked():
    """pygame undoes the lock of the dead one with that of the other one. Whoever undoes the last
    lock has SDL look at the target."""
    out, err = subprocess_python.output(
        """
        import pygame
        from support import host, surfaces
        host.install_modules()
        import larkspur
        whole = pygame.Surface((30, 20), pygame.SRCALPHA, 32)
        whole.fill((10, 20, 30, 100))
        part = whole.subsurface((5, 5, 20, 10))
        other = whole.subsurface((0, 0, 9, 9))
        surfaces.encode_by_alpha(whole)
        other.lock()
        del other
        locked = whole.get_locked()
        flipped = larkspur.flip_v(part)
        print locked, whole.get_locked(), flipped.get_at((0, 9)), whole.get_at((29, 19))
        """
    )
    assert out.splitlines()[-1] == "True False (10, 20, 30, 100) (10, 20, 30, 100)"


CLOSING_PREPARE = (
    OWN_PREPARE
    + """
def prepare(part):
    pygame.display.quit()

kind = larkspur.part_type_create()
larkspur.part_type_shape(kind, part())
larkspur.part_type_%(setting)s
particle = larkspur.CParticle_new(kind, 9, 9)
recording.game.backgrounds.append(rooms.make_background(part()))
room = rooms.make_room(tiles=[rooms.make_tile()])
use = {
    "tile": lambda: larkspur.Room_Draw(room, screen),
    "part": lambda: larkspur.flip_v(screen.subsurface((1, 1, 9, 9))),
    "particle": lambda: larkspur.CParticle_dec_ttl_and_render(particle, 0, 0),
}[%(name)r]
outcome = pending.call(use)
print type(outcome.exception).__name__, "closed" in str(outcome.exception)
"""
)


@pytest.mark.parametrize(
    "name, setting",
    [
        ("tile", "alpha2(kind, 1, 1)"),
        ("part", "alpha2(kind, 1, 1)"),
        ("particle", "alpha2(kind, 1, 1)"),
        ("particle", "scale(kind, 2, 2)"),
    ],
)
def test_display_that_goes_while_a_part_is_prepared_is_noticed(name, setting):
    """Whatever looked at it before looks again."""
    code = CLOSING_PREPARE % dict(name=name, setting=setting)
    status, out, err = subprocess_python.run(code)
    assert status == 0, err
    assert out.splitlines()[-1] == "RuntimeError True"


# A part in the middle of a larger surface, whose pixels all differ from those around it.
LEFT_ALONE = (
    OWN_PREPARE
    + """
prepares = real[1] and ctypes.PYFUNCTYPE(None, ctypes.c_void_p)(real[1])
drawn = part()
drawn.fill((9, 8, 7))
from support import native
record = native.sdl_surface(drawn)

def prepare(address):
    prepares(address)
    %s

try:
    print larkspur.flip_v(drawn).get_at((0, 0))[:3]
except pygame.error as error:
    print error
"""
)


def test_part_without_pixels_is_told():
    status, out, err = subprocess_python.run(LEFT_ALONE % "record.pixels = None")
    assert status == 0, err
    expected = "(9, 8, 7)" if sdl.is_layer() else "The surface has no pixels"
    assert out.splitlines()[-1] == expected  # where a layer's lock finds them again


def test_part_that_each_lock_moves_is_left_to_the_lock():
    """SDL 1.2 adds the offset of a surface to its pixels while it is locked; a layer has none."""
    move = "record.offset, record.pixels = 4, record.pixels - 4"
    status, out, err = subprocess_python.run(LEFT_ALONE % move)
    assert status == 0, err
    assert sdl.is_layer() or out.splitlines()[-1] == "(9, 8, 7)"


def test_part_without_a_release_in_the_table_is_used_all_the_same():
    release = "table[1] = ctypes.cast(fake, ctypes.c_void_p).value"
    assert release in OWN_PREPARE
    code = OWN_PREPARE.replace(release, "table[2] = None")
    status, out, err = subprocess_python.run(code + "print larkspur.flip_v(part()).get_size()\n")
    assert status == 0, err
    assert out.splitlines()[-1] == "(9, 9)"


# --- Other locks ---------------------------------------------------------------------------------

OTHER_LOCKS = """
    import ctypes
    import pygame
    from support import host, native, pending, surfaces
    host.install_modules()
    import larkspur
    screen = pygame.display.set_mode((64, 48), 0, 32)
    larkspur.set_SDL_screen(screen)
    locks = ctypes.CDLL(%r)
    refuses = ctypes.c_int.in_dll(locks, "refuses_locks")
    remembered = ctypes.c_void_p.in_dll(locks, "remembered_pixels")

    def outcome_of(function, *arguments):
        outcome = pending.call(function, *arguments)
        print("%%s: %%s" %% (type(outcome.exception).__name__, outcome.exception))
"""


def outcomes_with_other_locks(code):
    library = native.build_path("helpers/other_locks.so")
    code = textwrap.dedent(OTHER_LOCKS % library + code)
    status, out, err = subprocess_python.run(
        code, preload=[library], PYGAME_HIDE_SUPPORT_PROMPT="1"
    )
    assert status == 0, err
    return out.splitlines()


def test_refused_locks_are_told():
    """A surface that has to be locked, as SDL has encoded it: whatever works on it says so."""
    lines = outcomes_with_other_locks(
        """
    encoded = pygame.Surface((8, 8), 0, 32)
    surfaces.encode(encoded)
    native.sdl_surface(encoded).pixels = None
    refuses.value = 1
    for function in (larkspur.flip_v, larkspur.flip_h, larkspur.flip_vh):
        outcome_of(function, encoded)
    outcome_of(larkspur.rotoscale, encoded, 1.5, 1.5, 30)
    outcome_of(larkspur.fill_translucent, encoded, 0, 0, 5, 5, 0xFF, 100)
    outcome_of(larkspur.fast_draw_gradient_v, encoded, 0, 0, 5, 5, 1, 2, 255)
        """
    )
    told = "can't lock the surface to reach its pixels: The surface can't be locked"
    assert lines == ["error: The surface can't be locked"] * 4 + [
        "RuntimeError: fill_translucent() " + told,
        "RuntimeError: fast_draw_gradient_v() " + told,
    ]


PART = """
    parent = pygame.Surface((64, 48), 0, 32)
    parent.fill((9, 8, 7))
    part = parent.subsurface((1, 1, 9, 9))
    ctypes.c_uint.in_dll(locks, "other_flags").value = 0x01000000  # in memory that is another's
"""


def test_part_whose_lock_is_refused_is_used_as_far_as_it_needs_none():
    lines = outcomes_with_other_locks(
        PART
        + """
    refuses.value = 1
    flipped = larkspur.flip_v(part)
    refuses.value = 0
    print(flipped.get_at((0, 0))[:3])
        """
    )
    assert lines == ["(9, 8, 7)"]


def test_part_that_sdl_finds_elsewhere_is_refused():
    """As a layer does that remembers where the display was when the subsurface was made."""
    lines = outcomes_with_other_locks(
        PART
        + """
    elsewhere = ctypes.create_string_buffer(64 * 48 * 4)
    remembered.value = ctypes.addressof(elsewhere)
    outcome_of(larkspur.flip_v, part)
    remembered.value = None
    print(part.get_locks(), int(native.sdl_surface(part).locked))
    outcome_of(larkspur.flip_v, part)
        """
    )
    assert lines[0].startswith("RuntimeError: flip_v() got a subsurface of a display that was set")
    assert lines[1:] == ["((), 0)", "NoneType: None"]


# --- Wrapping ------------------------------------------------------------------------------------


def sdl_surface(size=(7, 5)):
    return SDL.SDL_CreateRGBSurface(0, size[0], size[1], 32, 0xFF0000, 0xFF00, 0xFF, 0)


def test_wrapped_surface_is_the_one_that_was_given(display):
    address = sdl_surface()
    surface = native.new_reference(WRAP(address))
    assert type(surface) is pygame.Surface and surface.get_size() == (7, 5)
    assert native.surface_address(surface) == address


def test_wrapped_surface_is_owned_by_its_object(display):
    """A thousand large ones would not fit into memory otherwise."""
    for _ in range(1000):
        assert native.new_reference(WRAP(sdl_surface((2000, 2000)))) is not None


def test_no_surface_can_not_be_wrapped(display):
    with pytest.raises(pygame.error):
        WRAP(None)


def test_wrapping_keeps_no_references(display):
    leaks.assert_counts_unchanged(lambda: native.new_reference(WRAP(sdl_surface())), pygame.Surface)


# --- Checking ------------------------------------------------------------------------------------


def surface_of_wrapped_rows(width, height=3):
    """A Surface so wide that SDL's 16 bits don't hold the distance of its rows, and its memory."""
    memory = numpy.arange(4 * width * height, dtype=numpy.uint32).astype(numpy.uint8)
    if sdl.is_layer():  # which makes none so wide; the record is what is looked at
        surface = pygame.image.frombuffer(buffer(memory)[: 4 * 64 * height], (64, height), "RGBX")
        record = native.sdl_surface(surface)
        record.w, record.pitch = width, 4 * width % 65536
    else:
        surface = pygame.image.frombuffer(buffer(memory), (width, height), "RGBX")
    assert native.sdl_surface(surface).pitch == 4 * width % 65536
    return surface, memory


WRAPPED_ROWS = {
    "scale": lambda surface: larkspur.scale(surface, 0.01, 1.0),
    "rotoscale": lambda surface: larkspur.rotoscale(surface, 0.01, 1.0, 0.0),
    "flip_h": larkspur.flip_h,
    "flip_v": larkspur.flip_v,
    "flip_vh": larkspur.flip_vh,
    "fill_translucent": lambda surface: larkspur.fill_translucent(surface, 0, 0, 9, 9, 5, 5),
    "fast_draw_gradient_v": lambda surface: larkspur.fast_draw_gradient_v(
        surface, 0, 0, 20000, 3, 1, 2, 255
    ),
    "GMSprite_from_surface": larkspur.GMSprite_from_surface,
}


@pytest.mark.parametrize("width", [16384, 20000, 32768])
@pytest.mark.parametrize("name", sorted(WRAPPED_ROWS))
def test_surface_whose_rows_overlap_is_refused(display, name, width):
    surface, memory = surface_of_wrapped_rows(width)
    before = memory.copy()
    with pytest.raises(ValueError) as raised:
        WRAPPED_ROWS[name](surface)
    assert str(raised.value).startswith(name + "() can't use a surface with rows of %d" % width)
    assert (memory == before).all()


def test_tiles_from_and_to_a_surface_whose_rows_overlap_fail_the_frame(host):
    wrapped, memory = surface_of_wrapped_rows(20000)
    before = memory.copy()
    host.game.backgrounds.append(make_background(wrapped))
    for target in (host.screen, wrapped):
        outcome = pending.call(larkspur.Room_Draw, make_room(tiles=[make_tile()]), target)
        assert isinstance(outcome.exception, ValueError)
        assert "Room_Draw()" in str(outcome.exception)
    assert (memory == before).all()


def test_display_whose_rows_overlap_is_not_drawn_on(display):
    wrapped, memory = surface_of_wrapped_rows(20000)
    before = memory.copy()
    larkspur.set_SDL_screen(wrapped)
    for draw in (
        lambda: larkspur.fast_draw_rectangle_color(0, 0, 9, 2, 1, 2, 2, 1, 1.0, 0),
        lambda: larkspur.fast_draw_rectangle_color(0, 0, 9, 2, 1, 1, 2, 2, 1.0, 0),
    ):
        with pytest.raises(RuntimeError):
            draw()
    assert (memory == before).all()


def test_native_work_on_a_surface_whose_rows_overlap_does_nothing(display):
    wrapped, memory = surface_of_wrapped_rows(20000)
    before = memory.copy()
    address = native.surface_address(wrapped)
    for name in ("flip_v", "flip_h", "flip_vh"):
        assert native.function(name, ctypes.c_void_p, ctypes.c_void_p)(address) is None
    native.function("Tint_Surface", None, ctypes.c_void_p, ctypes.c_uint32)(address, 0x102030)
    native.function("Translucentify", None, ctypes.c_void_p, ctypes.c_uint8)(address, 7)
    white = pygame.Surface((9, 9), 0, 32)
    white.fill((255, 255, 255))
    add = native.function("additive_blit", None, *[ctypes.c_void_p] * 2 + [ctypes.c_int] * 4)
    add(native.surface_address(white), address, 0, 0, 3, 36)
    assert (memory == before).all()


@pytest.mark.parametrize("bits", [1, 4, 8, 16, 24, 32])
def test_rows_side_by_side_do_not_overlap(display, bits):
    """Rows of pixels that are less than a byte take fewer bytes than pixels."""
    assert larkspur.flip_v(
        native.new_reference(WRAP(SDL.SDL_CreateRGBSurface(0, 64, 3, bits, 0, 0, 0, 0)))
    ).get_size() == (64, 3)


def test_part_of_a_display_that_was_closed_is_refused(host):
    part = host.screen.subsurface((10, 10, 20, 20))
    pygame.display.quit()
    outcome = pending.call(larkspur.Room_Draw, make_view_room(), part)
    assert isinstance(outcome.exception, RuntimeError)
    outcome = pending.call(larkspur.flip_v, part)
    assert not outcome.succeeded and isinstance(outcome.exception, RuntimeError)
    assert "closed" in str(outcome.exception)


@pytest.mark.parametrize(
    "rectangle, new_size",
    [
        pytest.param((200, 100, 50, 50), (320, 60), id="past the new end"),
        pytest.param((5, 6, 20, 20), (640, 480), id="rows of another length"),
        pytest.param((5, 6, 20, 20), (640, 240, 16), id="rows of as many bytes and more pixels"),
    ],
)
def test_part_whose_pixels_are_elsewhere_on_a_new_display_is_refused(display, rectangle, new_size):
    part = display.subsurface(rectangle)
    pygame.display.set_mode(new_size[:2], 0, new_size[2] if len(new_size) > 2 else 32)
    outcome = pending.call(larkspur.flip_v, part)
    assert not outcome.succeeded and isinstance(outcome.exception, RuntimeError)
    assert "inside" in str(outcome.exception)


def test_part_of_a_display_that_was_replaced_is_found_again(host):
    """SDL 2 looks for its pixels where they were; to blit from or to it there would crash."""
    part = host.screen.subsurface((5, 6, 20, 20))
    before = native.sdl_surface(host.screen).pixels
    kept = [pygame.Surface((320, 240), 0, 32) for _ in range(9)]  # fills holes of that size
    pygame.display.set_mode((320, 480), 0, 32)
    del kept
    host.screen.set_at((5, 6), (1, 2, 3))
    if sdl.is_layer() and native.sdl_surface(host.screen).pixels != before:
        for outcome in (
            pending.call(larkspur.flip_v, part),
            pending.call(larkspur.Room_Draw, make_view_room(), part),
        ):
            assert not outcome.succeeded and isinstance(outcome.exception, RuntimeError)
            assert "make it again" in str(outcome.exception)
        assert part.get_locks() == ()
        part = host.screen.subsurface((5, 6, 20, 20))
    assert larkspur.flip_v(part).get_at((0, 19))[:3] == (1, 2, 3)
    assert pending.call(larkspur.Room_Draw, make_view_room(), part).succeeded


def test_part_of_an_encoded_surface_is_found_again(display):
    """Encoding frees the pixels, and others take their place."""
    parent = pygame.Surface((64, 48), 0, 32)
    parent.fill((50, 60, 70))
    parent.set_colorkey((1, 2, 3), pygame.RLEACCEL)
    part = parent.subsurface((5, 6, 20, 20))
    display.blit(parent, (0, 0))
    others = [pygame.Surface((64, 48), 0, 32) for _ in range(16)]
    for other in others:
        other.fill((9, 9, 9))
    flipped = larkspur.flip_v(part)
    assert [flipped.get_at(place)[:3] for place in ((0, 0), (19, 19))] == [(50, 60, 70)] * 2


def test_display_that_could_not_be_set_anew_is_refused():
    """SDL has freed its pixels, and pygame's Surface goes on pointing to them."""
    out, _ = subprocess_python.output("""
        import os, sys
        from support import host
        host.install_modules()
        import larkspur, pygame
        recording = host.RecordingHost(None)
        recording.register(larkspur)
        pygame.display.init()
        display = pygame.display.set_mode((64, 48), 0, 32)
        part = display.subsurface((8, 8, 16, 16))
        other = pygame.Surface((8, 8), 0, 32)
        larkspur.set_SDL_screen(display)
        try:
            pygame.display.set_mode((64, 48), pygame.OPENGL, 32)
        except pygame.error:
            print("no OpenGL without a window")
        particle_type = larkspur.part_type_create()
        larkspur.part_type_shape(particle_type, display)
        particle = larkspur.CParticle_new(particle_type, 3, 3)
        for call in (
            lambda: larkspur.fill_translucent(display, 0, 0, 9, 9, 1, 2),
            lambda: larkspur.fill_translucent(part, 0, 0, 9, 9, 1, 2),
            lambda: larkspur.flip_v(part),
            lambda: larkspur.scale(display, 2, 2),
            lambda: larkspur.draw_rectangle(0, 0, 9, 9),
            lambda: larkspur.draw_rectangle(0, 0, 9, 9, 1),
            lambda: larkspur.CParticle_dec_ttl_and_render(particle, 0, 0),
        ):
            try:
                call()
                print("done")
            except RuntimeError as error:
                print(error)
        larkspur.fill_translucent(other, 0, 0, 9, 9, 1, 2)
        larkspur.flip_v(other)
        sys.stdout.flush()
        os._exit(0)  # SDL would free them again
    """)
    lines = out.decode().splitlines()
    assert lines[0] == "no OpenGL without a window" and len(lines) == 8
    assert all(" got the Surface of a display that was lost " in line for line in lines[1:])
