"""What native callers see: these names and no others, and nothing that stands in for them."""

import json
import os
import re
import subprocess

import larkspur
from support import build, elf, native, subprocess_python
from support.host import ROOM_FUNCTIONS

ROOT = os.path.dirname(subprocess_python.TESTS)

VARIABLES = (
    "gm6 gmapi gmapi__dict__ g_screen COLOR_WHITE g_view_xscale g_view_yscale this_second "
    "gm6_Room_DrawView gmapi_draw_sprite_ext gmapi_py_ParticleSystem gmapi_py_draw_props "
    "gmapi_py_self_stack pygame_draw_rect pygame_Surface"
).split()
VARIABLES += ["gm6_" + name for name in ROOM_FUNCTIONS]

FUNCTIONS = (
    # Initialisation
    "initlarkspur larkspur_init_rooms PySurface_FromSurface "
    # Host access
    "Game_Sequence_Index Game_Sequence_Index_F Game_Sequence_Index_S seqi GetFirstInstance "
    "PushSelf PopSelf invoke invoke_4 color_as_int "
    # Diagnostics
    "debug_log debug dump crasher "
    # Room drawing
    "Room_DrawView "
    # Particles
    "CParticle_step_low CParticle_reset_velocities particle_render_low "
    # Colours
    "multalpha blend interpolate_unformatted interpolate_fmt color_for_format blend_mode_flatten "
    "DesiredAlpha DesiredTint_type DesiredTint_part_gm "
    # Surfaces
    "Translucentify Tint_Surface flagged_blit additive_blit flip_v flip_h flip_vh clone_surface "
    "RGBA_copy satusub satusub_head satusub_body subtractor_for startptr_for "
    # Sprites
    "sprite_scalecache_add"
).split()


def exported_names(path):
    """Names of the functions and variables that a library defines for others.

    Names that begin with an underscore are the toolchain's.
    """
    return set(name for name in elf.defined_names(path, elf.DYNSYM) if not name.startswith("_"))


def test_module_exports_these_names_and_no_others():
    assert sorted(exported_names(larkspur.__file__)) == sorted(VARIABLES + FUNCTIONS)


def test_public_header_declares_what_is_exported():
    with open(os.path.join(ROOT, "include", "larkspur.h")) as header:
        text = re.sub(r"/\*.*?\*/", "", header.read(), flags=re.DOTALL)
    declarations = re.findall(r"^(?:extern )?LARKSPUR_EXPORT\s+([^;]*);", text, re.MULTILINE)
    # The name stands before the parameters, or at the end of a variable's declaration.
    names = [re.search(r"(\w+)\s*(\(|$)", declaration).group(1) for declaration in declarations]
    assert sorted(names + ["initlarkspur"]) == sorted(VARIABLES + FUNCTIONS)


FOREIGN_NAMES = """
import ctypes
everyone = ctypes.CDLL(None)         # the preloaded one comes first for the whole process
foreign = dict((name, kind.in_dll(everyone, name)) for name, kind in (
    ("gm6", ctypes.c_void_p), ("g_screen", ctypes.c_void_p), ("g_view_xscale", ctypes.c_double),
    ("this_second", ctypes.c_int)))
before = dict((name, variable.value) for name, variable in foreign.items())
assert before == {"gm6": None, "g_screen": None, "g_view_xscale": -1, "this_second": -2}
import pygame
from support import host, native, rooms
import larkspur
screen = pygame.display.set_mode((32, 32), 0, 32)
host.set_up(larkspur, screen)
larkspur.Room_Draw(rooms.make_view_room(), screen)
for name, variable in foreign.items():
    assert variable.value == before[name], name
    assert native.variable(type(variable), name).value != before[name], name
"""


def test_own_variables_are_used_though_others_have_their_names():
    status, _, err = subprocess_python.run(
        FOREIGN_NAMES, preload=[native.build_path("helpers/common_names.so")]
    )
    assert status == 0, err


def module_objects():
    """(source, object file) of each unit of the module; tests compile some once more."""
    sources = os.path.join(ROOT, "src") + os.sep
    with open(build.path("compile_commands.json")) as database:
        for entry in json.load(database):
            output = re.search(r" -o (\S+)", entry["command"]).group(1)
            if entry["file"].startswith(sources) and output.startswith("src" + os.sep):
                yield entry["file"], os.path.join(entry["directory"], output)


def names_in_use(path):
    """The symbols that the code and data of an object file refer to, its own exported ones too."""
    listing = subprocess.check_output(["readelf", "--wide", "--relocs", path])
    names = set()
    for section in listing.split("Relocation section '")[1:]:
        if section.startswith((".rela.text", ".rela.data")):
            names.update(re.findall(r"^[0-9a-f]+ .* (\S+) [+-] [0-9a-f]+$", section, re.MULTILINE))
    return names


def test_only_the_unit_that_has_an_exported_name_uses_it():
    objects = list(module_objects())
    assert len(objects) > 40
    for source, path in objects:
        used = names_in_use(path)
        assert sorted(used & set(FUNCTIONS)) == [], source
        own = elf.defined_names(path, elf.SYMTAB)
        assert sorted(used & set(VARIABLES) - set(own)) == [], source


def exported_definitions():
    """(source, text from there on, body) of each exported function but the interpreter's own."""
    for folder, _, names in os.walk(os.path.join(ROOT, "src")):
        for name in sorted(names):
            if name.endswith(".cpp") and name != "module.cpp":
                with open(os.path.join(folder, name)) as source:
                    text = source.read()
                for found in re.finditer(
                    r"^(?:extern \"C\" )?[^\s/][^;{}]*\b(\w+)\(", text, re.MULTILINE
                ):
                    if found.group(1) in FUNCTIONS and in_extern_c(text, found):
                        begin = text.index("{\n", found.end()) + 2
                        yield found.group(1), text[begin : text.index("\n}", begin)], text[begin:]


def in_extern_c(text, found):
    return 'extern "C"' in found.group() or (
        text.rfind('extern "C" {', 0, found.start()) > text.rfind("}  // ", 0, found.start())
    )


def test_exported_functions_are_one_statement_at_the_end_of_their_unit():
    names = []
    for name, body, rest in exported_definitions():
        names.append(name)
        assert body.count(";") == 1, name
        assert "namespace larkspur" not in rest, name
    assert sorted(names) == sorted(set(FUNCTIONS) - {"initlarkspur"})
