"""The module: its functions and types, their order, and what importing it does."""

import ctypes
import os

import larkspur
import pytest
from support import native, subprocess_python

FUNCTIONS = [
    ("breakable", "A hook for GDB."),
    ("fast_draw_gradient_v", "Draw a vertical gradient, with alpha blending."),
    ("fast_draw_gradients_vc", "Draw a vertical translucent gradient, then fill translucently."),
    ("fast_draw_gradients_vv", "Draw two vertical translucent gradients."),
    (
        "fast_draw_gradients_vcv",
        "Draw a vertical gradient, a constant, and another vgrad, each alphablent.",
    ),
    ("fast_draw_gradients_vcvvc", "More complex gradients."),
    ("fast_draw_rectangle_color", "C core for draw_rectangle_color."),
    ("draw_rectangle", "Draw a rectangle."),
    ("fill_translucent", "Draw a rectangle, possibly with alpha blending."),
    ("init_subsystems", "Initialize the subsystem variables."),
    ("CParticle_new", "Create a new particle."),
    ("CParticle_new_size_color", "Create a new particle of a given size and color."),
    ("CParticle_step", "Per-particle step function."),
    ("CParticle_dec_ttl", "Decrement the particle TTL and return the new value."),
    (
        "CParticle_dec_ttl_and_render",
        "Decrement the particle TTL and render if the particle still should exist.",
    ),
    (
        "CParticle_attach_beancounter",
        "Attach a beancounter to the particle.  The beancounter will be increased.  Destroying the "
        "particle will decrease it.  If there is a preexisting beancounter, it will be decreased.",
    ),
    ("CParticle_type_cache_clear", "Remove cache of prerendered particle surfaces for this type."),
    ("flip_vh", "Flip a surface."),
    ("flip_v", "Flip a surface."),
    ("flip_h", "Flip a surface."),
    ("part_type_alpha2", "Set start and end alphas, linear interpolation."),
    ("part_type_alpha3", "Set start/half/end alphas."),
    ("part_type_blend", "Set particle blend mode flag."),
    ("part_type_color3", "Lowlevel color3 implementation.  Expects ints."),
    ("part_type_create", "C implementation of part_type_create."),
    ("part_type_direction", "Set the direction min/max/incr/wiggle."),
    ("part_type_gravity", "Set the gravity strength and angle."),
    ("part_type_life", "Set the particle minimum and maximum lifespan in frames."),
    (
        "part_type_orientation",
        "Set the orientation min/max/incr/wiggle/relativity for this particle type.",
    ),
    ("part_type_scale", "Set the x and y scale factors for the particle type."),
    ("part_type_shape", "Set the shape of a particle type."),
    ("part_type_size", "Set min/max/incr/wiggle for particle size."),
    ("part_type_speed", "Set min/max/incr/wiggle por particle speed."),
    ("part_type_sprite", "Set particle type to use a sprite/animated/stretched/random"),
    ("rotoscale", "Rotate and scale a Pygame surface; return a new Pygame surface."),
    ("scale", "Scale a Pygame surface."),
    ("set_SDL_screen", "Store the SDL screen in a C variable."),
    ("RegisterInstancesDict", "Store data for InstanceList."),
    ("GMSprite_from_surface", "Create a new GMSprite from a Pygame surface."),
    ("Room_Draw", "Draw the current room."),
    ("draw_sprite_ext", "Draw a sprite."),
]

# In the order in which they are readied: attribute, name, and the line for a failure.
TYPES = [
    ("GMVar", "py_larkspur.GMVar", ""),
    ("GMSprite", "larkspur.GMSprite", "GMSprite_Type not ready.\n"),
    ("BackgroundData", "larkspur.BackgroundData", "BackgroundData_Type not ready.\n"),
    ("RoomTileData", "larkspur.RoomTileData", "RoomTileData_Type not ready.\n"),
    ("InstanceList", "larkspur.InstanceList", ""),
    ("GMRoom", "larkspur.GMRoom", "GMRoom_Type not ready.\n"),
    ("Floatlist8", "larkspur.Floatlist8", "Floatlist8_Type not ready.\n"),
    ("Beancounter", "larkspur.Beancounter", "Beancounter_Type not ready.\n"),
]


class MethodDefinition(ctypes.Structure):
    _fields_ = [
        ("name", ctypes.c_char_p),
        ("function", ctypes.c_void_p),
        ("flags", ctypes.c_int),
        ("doc", ctypes.c_char_p),
    ]


def method_table():
    """The module's method table, read from memory: its entries up to the end marker."""
    # A built-in function's definition follows its object head.
    head = 2 * ctypes.sizeof(ctypes.c_void_p)
    address = ctypes.c_void_p.from_address(id(larkspur.breakable) + head).value
    entries = []
    while True:
        entry = MethodDefinition.from_address(address)
        if entry.name is None:
            return entries
        entries.append(entry)
        address += ctypes.sizeof(MethodDefinition)


def test_functions_stand_in_their_order_with_their_texts():
    assert [(entry.name, entry.doc) for entry in method_table()] == FUNCTIONS


def test_functions_take_positional_arguments():
    assert set(entry.flags for entry in method_table()) == {1}


def test_module_holds_its_functions_types_and_version_and_nothing_else():
    of_every_module = set(["__doc__", "__file__", "__name__", "__package__"])
    assert set(vars(larkspur)) - of_every_module == set(
        [name for name, _ in FUNCTIONS] + [name for name, _, _ in TYPES] + ["__version__"]
    )


def test_version_is_that_of_the_tree():
    with open(os.path.join(os.path.dirname(__file__), "..", "..", "VERSION")) as version:
        assert larkspur.__version__ == version.read().strip()
    assert type(larkspur.__version__) is str


def test_module_has_no_text_of_its_own():
    assert larkspur.__doc__ is None


@pytest.mark.parametrize("attribute, name, message", TYPES)
def test_types_have_their_names(attribute, name, message):
    assert (
        ctypes.c_char_p.from_address(id(getattr(larkspur, attribute)) + 24).value == name
    )  # tp_name, after the variable head


REFUSED_TYPE = """
import ctypes, sys
from support import host
host.install_modules()
sys.path.insert(0, %r)
import larkspur
library = ctypes.CDLL(larkspur.__file__)
print
print ctypes.c_char_p(ctypes.addressof(ctypes.c_char.in_dll(library, "readied_types"))).value
print " ".join(sorted(name for name in vars(larkspur) if type(getattr(larkspur, name)) is type))
print larkspur.breakable.__doc__, sys.exc_info()[0]
print larkspur.gm6 if hasattr(larkspur, "gm6") else ctypes.c_void_p.in_dll(library, "gm6").value
"""


def import_with_refused_type(name):
    """(readied types, types of the module, standard error) of an import where a type is refused."""
    directory = os.path.dirname(native.build_path("helpers/refusing/larkspur.so"))
    os.environ["LARKSPUR_REFUSED_TYPE"] = name
    try:
        status, out, err = subprocess_python.run(REFUSED_TYPE % directory)
    finally:
        del os.environ["LARKSPUR_REFUSED_TYPE"]
    assert status == 0, err
    readied, added, function, gm6 = out.splitlines()[-4:]
    # Importing went on to its end all the same.
    assert function == "A hook for GDB. None" and int(gm6) != 0
    return readied.split(), added.split(), err


def test_all_types_are_readied_in_order():
    readied, added, err = import_with_refused_type("none of them")
    assert readied == [name for _, name, _ in TYPES]
    assert added == sorted(attribute for attribute, _, _ in TYPES)
    assert err == ""


@pytest.mark.parametrize("position", range(len(TYPES)))
def test_type_that_can_not_be_readied_ends_the_types_and_not_the_import(position):
    _, refused, message = TYPES[position]
    readied, added, err = import_with_refused_type(refused)
    assert readied == [name for _, name, _ in TYPES[: position + 1]]
    assert added == sorted(attribute for attribute, _, _ in TYPES[:position])
    assert err == message


def test_import_makes_missing_host_modules():
    """And binds them: what the host puts into them later is found."""
    status, out, err = subprocess_python.run(
        "import sys, ctypes\n"
        "import larkspur, pygame\n"
        "library = ctypes.PyDLL(larkspur.__file__)\n"
        "for name in ('gm6', 'gmapi'):\n"
        "    bound = ctypes.py_object.in_dll(library, name).value\n"
        "    print bound is sys.modules[name], sorted(vars(bound))\n"
        "dictionary = ctypes.py_object.in_dll(library, 'gmapi__dict__').value\n"
        "print dictionary is vars(sys.modules['gmapi'])\n"
    )
    assert status == 0, err
    assert out.splitlines()[-3:] == ["True ['__doc__', '__name__', '__package__']"] * 2 + ["True"]


def test_import_leaves_missing_callables_to_registration():
    status, out, err = subprocess_python.run(
        "import larkspur\n"
        "from support import pending\n"
        "outcome = pending.call(larkspur.RegisterInstancesDict, {}, int, int, int)\n"
        "print outcome.succeeded, outcome.result, type(outcome.exception).__name__\n"
        "print outcome.exception\n"
    )
    assert status == 0, err
    assert out.splitlines()[-2] == "True None AttributeError"


def test_variables_begin_empty():
    """Before a display is set, a frame is drawn and callables are registered."""
    status, out, err = subprocess_python.run(
        "import ctypes\n"
        "from support import host\n"
        "host.install_modules()\n"
        "import larkspur\n"
        "library = ctypes.PyDLL(larkspur.__file__)\n"
        "print [kind.in_dll(library, name).value for kind, name in (\n"
        "    (ctypes.c_uint32, 'COLOR_WHITE'), (ctypes.c_double, 'g_view_xscale'),\n"
        "    (ctypes.c_double, 'g_view_yscale'), (ctypes.c_int32, 'this_second'))]\n"
        "names = ['g_screen', 'gm6_Room_DrawView', 'gmapi_draw_sprite_ext', 'pygame_Surface',\n"
        "         'gmapi_py_ParticleSystem', 'gmapi_py_draw_props', 'gmapi_py_self_stack',\n"
        "         'pygame_draw_rect'] + ['gm6_' + name for name in host.ROOM_FUNCTIONS]\n"
        "print set(ctypes.c_void_p.in_dll(library, name).value for name in names)\n"
    )
    assert status == 0, err
    assert out.splitlines()[-2:] == ["[0L, 0.0, 0.0, -1]", "set([None])"]


def test_import_keeps_its_references_to_the_host():
    """One on gm6, two on gmapi and one on its dictionary."""
    status, out, err = subprocess_python.run(
        "from support import host, leaks\n"
        "gm6, gmapi = host.install_modules()\n"
        "kept = (gm6, gmapi, vars(gmapi))\n"
        "before = leaks.counts(kept)\n"
        "import larkspur\n"
        "print leaks.growth(kept, before)\n"
    )
    assert status == 0, err
    assert out.splitlines()[-1] == "[1, 2, 1]"


# --- The random seed -----------------------------------------------------------------------------

SEEDED = """
import ctypes, json, random
probe = ctypes.CDLL(None)
settings = %r
for name, value in settings.items():
    ctypes.c_int.in_dll(probe, name).value = value
import larkspur
print json.dumps([ctypes.c_int.in_dll(probe, "seed_calls").value,
                  ctypes.c_long.in_dll(probe, "seed_value").value,
                  ctypes.c_int.in_dll(probe, "open_sources").value])
"""


def seed_of(**settings):
    """(calls of srand48, its argument) during an import under these circumstances."""
    status, out, err = subprocess_python.run(
        SEEDED % settings, preload=[native.build_path("helpers/seed_probe.so")]
    )
    assert status == 0, err
    calls, seed, left_open = eval(out.splitlines()[-1])
    assert left_open == 0
    return calls, seed


def signed(value):
    return (value + 2**31) % 2**32 - 2**31


@pytest.mark.parametrize(
    "entropy, process, parent",
    [(0x12345678, 4242, 17), (-1, 4242, 4241), (1, 99999, 70000), (-(2**31), 1, 0x12345)],
)
def test_seed_mixes_entropy_and_processes(entropy, process, parent):
    calls, seed = seed_of(fake_entropy=entropy, fake_process=process, fake_parent=parent)
    assert calls == 1
    assert signed(seed) == signed((entropy ^ process) ^ (parent << 16))


def test_seed_without_entropy_is_made_of_the_processes():
    calls, seed = seed_of(refuses_urandom=1, fake_process=4242, fake_parent=17)
    assert calls == 1 and signed(seed) == signed(4242 ^ (17 << 16))


def test_two_imports_have_different_seeds():
    assert seed_of() != seed_of()
