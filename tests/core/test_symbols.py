"""What native callers see: these names and no others, and nothing that stands in for them."""

import os
import re

import larkspur
from support import elf, native, subprocess_python
from support.host import ROOM_FUNCTIONS

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
    root = os.path.dirname(subprocess_python.TESTS)
    with open(os.path.join(root, "include", "larkspur.h")) as header:
        text = re.sub(r"/\*.*?\*/", "", header.read(), flags=re.DOTALL)
    declarations = re.findall(r"^(?:extern )?LARKSPUR_EXPORT\s+([^;]*);", text, re.MULTILINE)
    # The name stands before the parameters, or at the end of a variable's declaration.
    names = [re.search(r"(\w+)\s*(\(|$)", declaration).group(1) for declaration in declarations]
    assert sorted(names + ["initlarkspur"]) == sorted(VARIABLES + FUNCTIONS)


FOREIGN_NAMES = """
import ctypes, sys
everyone = ctypes.CDLL(None)
assert everyone.debug("x") == 0  # the preloaded one comes first for the whole process
foreign = ctypes.c_int.in_dll(everyone, "foreign_calls")
assert foreign.value == 1
import pygame
from support import host, native, rooms
import larkspur
larkspur.breakable()                 # calls debug()
screen = pygame.display.set_mode((32, 32), 0, 32)
larkspur.set_SDL_screen(screen)
recording = host.RecordingHost(screen)
recording.register(larkspur)
larkspur.Room_Draw(rooms.make_view_room(), screen)
print foreign.value
sys.stdout.flush()
native.library.crasher()             # calls dump()
"""


def test_own_functions_are_called_though_others_have_their_names(tmpdir):
    status, out, err = subprocess_python.run(
        FOREIGN_NAMES, preload=[native.build_path("helpers/common_names.so")], cwd=str(tmpdir)
    )
    assert status == 0, err
    assert out.splitlines()[-2:] == ["breakable", "1"]
    assert tmpdir.join("logfile.txt").read() == "crasher called.\n"
