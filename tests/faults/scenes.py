"""What is played while allocations fail. Each scene returns what is to be done, in which they
fail, and a function that tells what there is to see after it was done once more."""

import ctypes

import pygame
from support import host as host_support

host_support.install_modules()

import larkspur  # noqa: E402
from support import native, rooms, sprites  # noqa: E402
from support.host import Instance, ParticleSystem, Plain  # noqa: E402

SIZE = (48, 32)
_libc = ctypes.CDLL(None)


pygame.display.init()
DISPLAY = pygame.display.set_mode(SIZE, 0, 32)  # once, as it takes half a second


def stage():
    """A black display and a host, registered."""
    DISPLAY.fill((0, 0, 0))
    return DISPLAY, host_support.set_up(larkspur, DISPLAY)


def spots(size=(8, 8), flags=pygame.SRCALPHA):
    """A picture with something to see at any size."""
    surface = pygame.Surface(size, flags, 32)
    surface.fill((200, 120, 40, 180))
    surface.fill((10, 220, 90, 255), (1, 2, 3, 4))
    return surface


def seen(screen):
    return pygame.image.tostring(screen, "RGB")


# Particles of every kind of picture: (size, alpha, colour, orientation, blend).
LOOKS = [
    (1, 1, 0xFFFFFF, 0, 0),
    (1, 1, 0x80C0FF, 0, 0),
    (1, 0.6, 0x80C0FF, 30, 0),
    (1, 0.6, 0xFFFFFF, 0, 1),
    (1.5, 1, 0xFFFFFF, 0, 0),
    (2, 0.5, 0x4080FF, 48, 0),
    (2, 0.5, 0x4080FF, 48, 1),
    (-1.5, 0.5, 0x4080FF, 0, 0),
]


def draw_particles(x_offset, y_offset, shape):
    for i, (size, alpha, colour, orientation, blend) in enumerate(LOOKS):
        kind = larkspur.part_type_create()
        larkspur.part_type_shape(kind, shape)
        larkspur.part_type_alpha3(kind, alpha, alpha, alpha)
        larkspur.part_type_orientation(kind, orientation, orientation, 0, 0, 0)
        larkspur.part_type_blend(kind, blend)
        larkspur.part_type_size(kind, abs(size), abs(size), 0, 0)
        larkspur.part_type_scale(kind, size / abs(size), 1)
        counter = larkspur.Beancounter()
        particle = larkspur.CParticle_new_size_color(kind, 4 + 5 * i, 8 + 2 * i, abs(size), colour)
        larkspur.CParticle_attach_beancounter(particle, counter)
        for _ in range(2):
            larkspur.CParticle_dec_ttl_and_render(particle, x_offset, y_offset)
        larkspur.CParticle_type_cache_clear(kind)


def particles():
    screen, host = stage()
    shape = spots()

    def act():
        screen.fill((40, 60, 90))
        _libc.srand48(1)
        draw_particles(0, 0, shape)

    return act, lambda: seen(screen)


def make_tiled_room(host):
    host.game.backgrounds = [rooms.make_background(spots((16, 16), 0))]
    return [rooms.make_tile(x=x, y=8, tilex=2, w=12, h=12) for x in (0, 20, 40)]


def frame():
    screen, host = stage()
    drawn = [
        Plain(Draw=lambda: screen.fill((200, 10, 10), (5, 5, 9, 9))),
        Plain(Draw=lambda: larkspur.fill_translucent(screen, 1, 1, 20, 20, 0xFF00, 128)),
    ]
    room = rooms.make_room(tiles=make_tiled_room(host), drawn_objects=drawn)
    host.gm6.Room_DrawBackgrounds = lambda room, canvas, x, y: canvas.fill((20, 40, 60))
    host.register(larkspur)
    return lambda: larkspur.Room_Draw(room, screen), lambda: seen(screen)


def frame_with_views():
    screen, host = stage()
    shape = spots()
    system = ParticleSystem(
        py_automatic_draw=1, py_RealDraw=lambda x, y: draw_particles(x, y, shape)
    )
    host.gmapi.draw_sprite_ext = lambda *arguments: screen.blit(shape, (30, 3))
    host.gmapi.draw = lambda: screen.fill((1, 200, 30), (40, 20, 6, 6))
    host.gm6.Room_DrawBackgrounds = lambda room, canvas, x, y: canvas.blit(shape, (3 - x, 4 - y))
    host.register(larkspur)
    followed = Instance(x=20, y=10)
    host.game.objects = [Plain(instances=[], children=[Plain(instances=[followed])])]
    coded = rooms.make_instance(py_Draw=0, object_index=rooms.object_with_draw_events("draw()"))
    room = rooms.make_view_room(views=2, drawn_objects=[rooms.make_instance(), coded, system])
    rooms.set_view(room, 0, wview=SIZE[0], hview=SIZE[1])
    rooms.set_view(room, 1, object=0, wview=20, hview=10, xport=10, yport=8, wport=30, hport=20)

    def act():
        screen.fill((0, 0, 0))
        _libc.srand48(1)
        coded.py_Draw = 0
        rooms.set_view(room, 1, xview=0, yview=0)
        larkspur.Room_Draw(room, screen)

    return act, lambda: seen(screen)


# A followed instance that can't be found leaves its exception, and does not fail the view.
frame_with_views.may_leave = True
# An instance whose draw code can't be read counts as one without, and is asked for its object,
# which the first one lacks. A view without memory for its intermediate surface has a size that
# can't be made.
frame_with_views.allowed = (MemoryError, AttributeError, ValueError)


def pictures():
    """Everything that makes surfaces of surfaces, or paints on one."""
    screen, host = stage()
    source = spots((7, 5))
    small = pygame.Surface((6, 6), 0, 8)
    keyed = spots((6, 6), 0)
    keyed.set_colorkey((10, 220, 90))
    made = []

    def act():
        del made[:]
        for surface in (source, keyed, small):
            made.append(larkspur.scale(surface, 2.0, 1.5))
            made.append(larkspur.rotoscale(surface, 30.0, 1.2, 0.8))
            made.append(larkspur.GMSprite_from_surface(surface, "name").subimages[0])
        for flip in (larkspur.flip_h, larkspur.flip_v, larkspur.flip_vh):
            made.append(flip(source))

    return act, lambda: [seen(picture) for picture in made]


# A surface that SDL refuses is pygame's to report, and scale() fails without an exception then.
pictures.allowed = (MemoryError, pygame.error, SystemError)


def use_resource(host, kind, resources):
    resource = kind()
    resource.name = "resource"
    setattr(host.game, resources, [resource])
    (int(resource), float(resource), str(resource), resource == 0)
    kind().__setstate__(resource.__reduce__()[2])


def backgrounds():
    screen, host = stage()
    return lambda: use_resource(host, larkspur.BackgroundData, "backgrounds"), lambda: None


# The background and the loader's arguments, where that fails.
backgrounds.kept = (1, 0, 2)


def records():
    screen, host = stage()

    def act():
        room = larkspur.GMRoom()
        room.name, room.tiles = "room", [larkspur.RoomTileData()]
        host.game.rooms = [room]
        (int(room), float(room), str(room), cmp(room, 0))
        again = larkspur.GMRoom()
        again.__setstate__(room.__reduce__()[2])
        tile = larkspur.RoomTileData()
        tile.__setstate__(tile.__reduce__()[2])
        (int(tile), str(tile), cmp(tile, room.tiles[0]))
        use_resource(host, larkspur.GMSprite, "sprites")
        floats = larkspur.Floatlist8()
        floats[3] = 2.5
        floats = floats + 1
        (str(floats), float(floats), int(floats), cmp(floats, 3))
        larkspur.Floatlist8().__setstate__(floats.__reduce__()[2])

    return act, lambda: None


def instance_lists():
    screen, host = stage()
    for number in range(300, 330):
        host.registry[number] = Instance(number=number)
    seen_numbers = []

    def act():
        instances = larkspur.InstanceList()
        for number in range(300, 330):
            instances.append(host.registry[number])
        for i in range(10):
            instances[i] = 300 + i
        instances.insert(3, host.registry[310])
        instances.remove(host.registry[310])
        again = larkspur.InstanceList()
        again.__setstate__(instances.__reduce__()[2])
        seen_numbers[:] = [instance.number for instance in again]

    return act, lambda: list(seen_numbers)


def variables():
    result = []

    def act():
        variable = larkspur.GMVar(1.5)
        variable[7] = "text"
        variable[3, 4] = 1000
        for i in range(10, 400, 60):
            variable[i, 2] = i
        variable += 2.25
        other = larkspur.GMVar(2**70)
        result[:] = [
            variable + other, variable * 3, -variable, variable - 1, variable / 2, variable % 2,
            str(variable), hash(variable), float(variable), int(other), variable < other,
            variable[3, 4], variable[70, 2], variable[9, 9], len(variable), larkspur.GMVar(5) & 4,
        ]  # fmt: skip
        larkspur.GMVar.__init__(other, 3)

    return act, lambda: list(result)


# The interpreter's int() of a long can't tell, without memory, that it met an OverflowError of its
# own.
variables.allowed = (MemoryError, OverflowError)


def scale_cache():
    screen, host = stage()
    sprite = larkspur.GMSprite_from_surface(spots(), "sprite")
    white = native.variable(ctypes.c_uint32, "COLOR_WHITE").value
    cases = [
        (12, 6, 0, white, 255, 0),
        (-12, 6, 30, white, 255, 0),
        (8, -8, 0, 0x123456, 128, 0),
        (-8, -8, 45, white, 128, 1),
    ]

    def act():
        sprite.scalecache.clear()
        for i, (width, height, angle, colour, alpha, rgba) in enumerate(cases):
            sprites.scale_cache_add(sprite, i, 0, width, height, angle, 0, colour, alpha, rgba)

    return act, lambda: [
        pygame.image.tostring(sprite.scalecache[i], "RGBA") for i in range(len(cases))
    ]
