"""The scenes whose instructions are counted: run by count.py, under callgrind.

    python bench/instructions/scenes.py

prints "NAME: VALUE" for everything that counts depend on beside the scenes and the module, then the
name of each scene as it is counted. Needs larkspur and counted.so (bench/instructions) on
PYTHONPATH. Each scene is called a few times first, so that what is done once (trials of own loops,
pictures and names that are kept, memory that is asked for) does not count. The host is the stand-in
engine of the examples.
"""

from __future__ import division, print_function

import ctypes
import gc
import os
import platform
import random
import sys
import sysconfig

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(ROOT, "examples", "host"))

import gm6  # noqa: E402  (the engine comes before larkspur, which it imports)
import larkspur  # noqa: E402
import pygame  # noqa: E402
from engine import resources  # noqa: E402
from larkspur import GMVar  # noqa: E402

SIZE = (640, 480)
WARM_UP_CALLS = 3
LONG_LIFE = 2**30


def picture(width, height, alpha=False):
    """Bands of colour; with alpha every third is clear and the others are half there."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA if alpha else 0, 32)
    for y in range(0, height, 4):
        opacity = (255, 0, 130)[y // 4 % 3] if alpha else 255
        surface.fill((y * 7 % 256, y * 3 % 256, y % 256, opacity), (0, y, width, 4))
    return surface


def repeat(count, function, *arguments):
    for _ in range(count):
        function(*arguments)


# --- Pixels --------------------------------------------------------------------------------------


def fills(screen):
    def scene():
        larkspur.fill_translucent(screen, 0, 0, 639, 479, 0x4080C0, 100)
        repeat(50, larkspur.fill_translucent, screen, 7, 9, 71, 72, 0x4080C0, 100)

    return scene


def gradients(screen):
    def draw(right, bottom):
        larkspur.fast_draw_gradients_vcv(
            screen, 0, 0, right, bottom, 0x102030, 0xF0E0D0, 0.6, 0x060814, 0.25, 0xFFFFFF, 0, 0.1
        )

    def scene():
        draw(640, 480)
        repeat(50, draw, 64, 64)
        larkspur.fast_draw_rectangle_color(0, 0, 640, 480, 255, 0xFF00, 0xFF00, 255, 1.0, 0)

    return scene


def zooms(screen):
    small, large = picture(64, 64, alpha=True), picture(320, 240)

    def scene():
        larkspur.scale(small, 2.5, 2.5)
        larkspur.scale(large, 0.5, 0.5)
        larkspur.rotoscale(small, 1.5, 1.5, 30)
        larkspur.rotoscale(small, 1.0, 1.0, 90)

    return scene


def flips(screen):
    small, large = picture(64, 64), picture(320, 240)

    def scene():
        for flip in (larkspur.flip_h, larkspur.flip_v, larkspur.flip_vh):
            flip(large)
            repeat(10, flip, small)

    return scene


def scale_cache(screen):
    add = ctypes.PyDLL(larkspur.__file__).sprite_scalecache_add
    add.restype = ctypes.py_object
    add.argtypes = [ctypes.py_object] * 2 + [ctypes.c_int] * 8
    sprite = larkspur.GMSprite()
    sprite.subimages = [picture(256, 256, alpha=True)]

    def scene():
        sprite.scalecache.clear()
        add(sprite, "faded", 0, 256, 256, 0, 0, 0xFFFFFF, 120, 0)
        add(sprite, "larger", 0, 300, 300, 0, 0, 0xFFFFFF, 255, 0)
        add(sprite, "turned", 0, 200, -200, 30, 0, 0x80C0FF, 200, 1)

    return scene


# --- Rooms ---------------------------------------------------------------------------------------


def room_of(tiles=(), placements=(), bg0=None):
    """A room of the screen's size that is entered; placements are (kind, x, y)."""
    room = resources.game.add_room("room_%d" % len(resources.game.rooms), *SIZE)
    room.tiles = list(tiles)
    room.instances = [resources.Placement(*placement) for placement in placements]
    room.bg0 = bg0
    gm6.goto_room(room)
    return room


def room_of_tiles(sheet, size, count):
    """A scene that draws `count` square tiles, cut from random places of the sheet."""
    background = resources.game.add_background("bg_%d" % len(resources.game.backgrounds), sheet)
    source = random.Random(7)
    tiles = []
    for i in range(count):
        tile = larkspur.RoomTileData()
        tile.background_idx = int(background)
        tile.x, tile.y = i * size % SIZE[0], i * size // SIZE[0] * size % SIZE[1]
        tile.tilex, tile.tiley = (source.randrange(0, 256, size) for _ in range(2))
        tile.w = tile.h = size
        tiles.append(tile)
    room = room_of(tiles)
    return lambda: larkspur.Room_Draw(room, gm6.screen)


def alpha_tiles(screen):
    return room_of_tiles(picture(256, 256, alpha=True), 64, 150)


def keyed_tiles(screen):
    sheet = picture(256, 256)
    sheet.set_colorkey(sheet.get_at((0, 8)))
    return room_of_tiles(sheet, 16, 2000)


def opaque_tiles(screen):
    return room_of_tiles(picture(256, 256), 16, 2000)


def faded_tiles(screen):
    """Half of the tiles have a colour key too."""
    plain, keyed = picture(256, 256), picture(256, 256)
    keyed.set_colorkey(keyed.get_at((0, 8)))
    for sheet in (plain, keyed):
        sheet.set_alpha(100)
    halves = room_of_tiles(plain, 64, 75), room_of_tiles(keyed, 64, 75)

    def scene():
        for half in halves:
            half()

    return scene


def scaled_view(screen):
    """The background is scaled afresh in each frame."""
    kind = resources.game.add_object("obj_plain", sprite=plain_sprite("spr_plain"))
    landscape = resources.game.add_background("bg_landscape", picture(320, 240))
    room = room_of(
        placements=[(kind, 16 * i % 320, 40 * i // 320 * 7) for i in range(60)],
        bg0=resources.BackgroundSlot(landscape),
    )
    resources.set_view(room, 0, (10, 10, 320, 240), (0, 0, 640, 480), kind, (100, 100))

    def scene():
        landscape.scaled_data_cache.clear()
        larkspur.Room_Draw(room, screen)

    return scene


def plain_sprite(name):
    return resources.game.add_sprite(name, [picture(24, 24, alpha=True)])


def scripted_instances(screen):
    """Half of the instances have a draw event, half are left to the host's draw_sprite_ext."""
    sprite = plain_sprite("spr_scripted")
    silent = resources.game.add_object("obj_scripted", sprite=sprite)
    silent.on(resources.EVENT_DRAW, "self.turn = self.x + score")
    plain = resources.game.add_object("obj_sprite", sprite=sprite)
    room = room_of(placements=[((silent, plain)[i % 2], i, i % 400) for i in range(400)])
    resources.set_view(room, 0, (0, 0) + SIZE, (0, 0) + SIZE)
    return lambda: larkspur.Room_Draw(room, screen)


# --- Particles -----------------------------------------------------------------------------------


def particles_of(kind, count):
    """Particles that stay where they are."""
    return [larkspur.CParticle_new(kind, 20 + i * 13 % 600, 20 + i * 7 % 440) for i in range(count)]


def particle_type(shape, **settings):
    kind = larkspur.part_type_create()
    larkspur.part_type_shape(kind, shape)
    larkspur.part_type_life(kind, LONG_LIFE, LONG_LIFE)
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(kind, *arguments)
    return kind


def drawing(particles):
    render = larkspur.CParticle_dec_ttl_and_render

    def scene():
        for particle in particles:
            render(particle, 0, 0)

    return scene


def added_particles(screen):
    return drawing(particles_of(particle_type(picture(16, 16, alpha=True), blend=(1,)), 1000))


def kept_particles(screen):
    kind = particle_type(
        picture(8, 8, alpha=True), scale=(2, 2), color3=(0xFFFFFF, 0x40A0F0, 0x2020C0)
    )
    return drawing(particles_of(kind, 1000))


def new_particle_pictures(screen):
    """No picture is found: each particle throws away what was kept before it is drawn."""
    kinds = [
        particle_type(
            picture(size, size, alpha=True),
            scale=(1.5, 1.5),
            orientation=(30, 30, 0, 0, 0),
            color3=(0x80C0FF,) * 3,
            alpha3=(0.7,) * 3,
        )
        for size in (16, 64)
    ]
    clear = larkspur.CParticle_type_cache_clear
    drawings = [(kind, drawing(particles_of(kind, 1))) for kind in kinds]

    def scene():
        for kind, draw in drawings * 20:
            clear(kind)
            draw()

    return scene


# --- Variables -----------------------------------------------------------------------------------


def variables(screen):
    kept_number, kept_sum, kept_grid = GMVar(5), GMVar(2.5), GMVar(0)
    kept_grid[7, 7] = 1
    rounds = range(1000)

    def scene():
        number, total, grid, results = kept_number, kept_sum, kept_grid, None
        for _ in rounds:
            results = number * 2, number - 1, number + total, number == 5, number < 3
            grid[3, 4] = 5
            results = grid[3, 4], GMVar(7)
            total += 0.5
        return results

    return scene


def numbers_and_lists(screen):
    """Numbers of resources, and instances by their ids."""
    sprite = plain_sprite("spr_number")
    background = resources.game.add_background("bg_number", picture(8, 8))
    kind = resources.game.add_object("obj_listed")
    room = room_of(placements=[(kind, 0, 0)] * 100)
    members = list(room.all_objects)
    ids = [int(member) for member in members]

    def scene():
        found = larkspur.InstanceList()
        found.extend(ids)
        for place in range(len(found)):
            found[place] = found[place]
        for member in members:
            found.remove(member)
        for _ in range(1000):
            int(sprite)
            int(background)

    return scene


SCENES = (
    ("translucent fills", fills),
    ("gradients", gradients),
    ("zooms and turns", zooms),
    ("flips", flips),
    ("sprite scale cache", scale_cache),
    ("room of alpha tiles", alpha_tiles),
    ("room of keyed tiles", keyed_tiles),
    ("room of opaque tiles", opaque_tiles),
    ("rooms of faded tiles", faded_tiles),
    ("scaled view", scaled_view),
    ("scripted instances", scripted_instances),
    ("additive particles", added_particles),
    ("particles with kept pictures", kept_particles),
    ("particles with new pictures", new_particle_pictures),
    ("variables", variables),
    ("numbers and instance lists", numbers_and_lists),
)


def surroundings(counted):
    """What counts depend on beside the scenes and the module: pairs of name and value."""
    libc_version = ctypes.CDLL(None).gnu_get_libc_version
    libc_version.restype = ctypes.c_char_p
    return (
        ("compiler", counted.compiler),
        ("dispatch level", counted.level()),
        ("C library", "glibc " + libc_version().decode("ascii")),
        ("Python", "%s, %s" % (platform.python_version(), platform.python_compiler())),
        ("Python's flags", sysconfig.get_config_var("OPT")),
        ("pygame", pygame.version.ver),
        ("SDL", ".".join(str(number) for number in pygame.get_sdl_version())),
    )


def main():
    import counted

    for name_and_value in surroundings(counted):
        print("%s: %s" % name_and_value)
    pygame.display.init()
    screen = pygame.display.set_mode(SIZE, 0, 32)
    gm6.start(screen)
    # The module takes its random numbers from here.
    ctypes.CDLL(None).srand48(1)
    gc.disable()
    for name, make in SCENES:
        scene = make(screen)
        repeat(WARM_UP_CALLS, scene)
        print(name)
        counted.count(scene)


if __name__ == "__main__":
    main()
