"""What is done again and again while garbage is collected wherever the interpreter may collect.

A scene is a function of the host that prepares what is needed and returns what is then done, as a
function without arguments. Nothing in it may depend on what earlier scenes left behind.
"""

import cPickle as pickle  # in Python itself it would have thousands of points of its own
import larkspur
import pygame
from support import leaks, pending
from support.host import Instance, ParticleSystem, Plain
from support.rooms import (
    VIEW_MEMBERS,
    compiled,
    make_background,
    make_instance,
    make_room,
    make_tile,
    make_view_room,
    object_with_draw_events,
    set_view,
)
from support.sprites import scale_cache_add, sprite_of
from support.surfaces import encode

SCENES = {}


def scene(prepare):
    SCENES[prepare.__name__] = prepare
    return prepare


def picture(size=(40, 30), flags=0):
    surface = pygame.Surface(size, flags, 32)
    surface.fill((200, 100, 50, 150))
    return surface


def subsurface(size=(24, 20), flags=0):
    """A subsurface of a subsurface of a picture."""
    return picture((60, 50), flags).subsurface((3, 4, 40, 40)).subsurface((5, 6) + size)


def encoded():
    surface = picture()
    encode(surface)
    return surface


def display_piece(host, size=(30, 30)):
    return host.screen.subsurface((9, 9) + size)


def surfaces_of(host):
    """A surface of each kind whose pixels can move or go."""
    return [subsurface(), display_piece(host), encoded(), host.screen]


# ---- rooms


def draw_frame(room, target):
    """A frame can fail without an exception, and succeed with one."""
    pending.call(larkspur.Room_Draw, room, target)


def tiles_scene(host, target, *images):
    host.game.backgrounds.extend(make_background(image) for image in images)
    room = make_room(
        tiles=[make_tile(x=20 * i, background_idx=i % len(images)) for i in range(2 * len(images))]
    )
    room.drawn_objects = [Plain(Draw=lambda: None)]
    host.drops.append(lambda: room.__setattr__("tiles", []))
    host.drops.extend(
        (lambda background: lambda: background.__delattr__("surf"))(background)
        for background in host.game.backgrounds
    )
    return lambda: draw_frame(room, target)


@scene
def tiles_of_subsurfaces(host):
    return tiles_scene(
        host, host.screen, subsurface(), picture(), subsurface(flags=pygame.SRCALPHA), encoded()
    )


@scene
def tiles_on_a_subsurface_of_the_display(host):
    target = display_piece(host, (200, 150))
    return tiles_scene(host, target, picture(), subsurface())


@scene
def tiles_of_the_display_on_itself(host):
    return tiles_scene(host, host.screen.subsurface((0, 0, 200, 150)), host.screen)


@scene
def tiles_of_a_subsurface_of_the_display(host):
    return tiles_scene(host, host.screen, display_piece(host))


def view_room(host):
    follows = Plain(instances=[make_instance(x=400, y=300)], children=[])
    host.game.objects.append(follows)
    room = make_view_room(views=2)
    set_view(room, 0, object=0, hborder=20, vborder=20)
    set_view(room, 1, xport=100, wview=160, wport=100, hport=90)
    host.gmapi.__dict__["log"] = []
    room.drawn_objects = [
        make_instance(),
        make_instance(py_Draw=compiled("log.append(self)")),
        make_instance(py_Draw=None, object_index=object_with_draw_events("log.append([self, {}])")),
        make_instance(py_Draw=None, object_index=object_with_draw_events()),
        ParticleSystem(py_automatic_draw=1, py_RealDraw=lambda x, y: [x, y]),
        make_instance(py_Draw=compiled("raise KeyError(self)")),
    ]
    host.drops.append(lambda: room.drawn_objects.__delslice__(0, 9))
    host.drops.extend(lambda name=name: room.__delattr__(name) for name in VIEW_MEMBERS)
    host.drops.append(lambda: room.__setattr__("view_visible", [1]))
    return room


@scene
def views(host):
    room = view_room(host)
    host.gm6.Room_DrawBackgrounds = lambda room, canvas, x, y: canvas.fill((1, 2, 3))
    host.register(larkspur)

    return lambda: draw_frame(room, host.screen)


@scene
def views_on_a_subsurface_of_the_display(host):
    room = view_room(host)
    target = display_piece(host, (200, 150))
    return lambda: draw_frame(room, target)


@scene
def room_methods(host):
    room = larkspur.GMRoom()
    host.registry[5] = Instance(number=5)

    def call():
        room.AddInstance(host.registry[5])
        room.AddDrawnInstance(host.registry[5])
        room.StepAlarms()
        room.DrawBackgrounds(host.screen, 0, 0)
        copy = pickle.loads(pickle.dumps(room, 2))
        copy.name, str(copy), cmp(copy, 7)

    return call


# ---- particles


def new_type(shape, **settings):
    handle = larkspur.part_type_create()
    larkspur.part_type_shape(handle, shape)
    for name, arguments in settings.items():
        getattr(larkspur, "part_type_" + name)(handle, *arguments)
    return handle


def particles_scene(host, shape, **common):
    kinds = [
        new_type(shape, **dict(common, **settings))
        for settings in (
            {},
            {"color3": (5, 6, 7)},
            {"alpha3": (0.5, 0.5, 0.5)},
            {"scale": (2, 1.5), "orientation": (30, 30, 0, 0, 0)},
        )
    ]

    host.drops.extend(lambda kind=kind: larkspur.CParticle_type_cache_clear(kind) for kind in kinds)
    host.drops.extend(
        lambda kind=kind: larkspur.part_type_sprite(kind, None, 0, 0, 0) for kind in kinds
    )

    def draw():
        for kind in list(kinds):
            particle = larkspur.CParticle_new(kind, 50, 60)
            larkspur.CParticle_attach_beancounter(particle, larkspur.Beancounter())
            for _ in range(2):
                larkspur.CParticle_dec_ttl_and_render(particle, 1, 2)

    return draw


@scene
def particles_of_a_subsurface(host):
    return particles_scene(host, subsurface())


@scene
def particles_of_a_subsurface_of_the_display(host):
    return particles_scene(host, display_piece(host))


@scene
def added_particles_of_a_subsurface(host):
    return particles_scene(host, subsurface(flags=pygame.SRCALPHA), blend=(1,))


@scene
def particles_on_a_subsurface_of_the_display(host):
    larkspur.set_SDL_screen(display_piece(host, (200, 150)))
    return particles_scene(host, picture())


@scene
def particles_of_the_display(host):
    return particles_scene(host, host.screen)


@scene
def particle_life(host):
    counter = larkspur.Beancounter()

    def live():
        kind = new_type(picture(), life=(2, 3), size=(1, 2, 0.1, 0.1))
        old = larkspur.CParticle_new(larkspur.GMVar(kind), 1, 2)
        new = larkspur.CParticle_new_size_color(kind, 1, 2, 1.5, 0xFFFFFF)
        for particle in (old, new):
            larkspur.CParticle_attach_beancounter(particle, counter)
            larkspur.CParticle_step(particle)
            larkspur.CParticle_dec_ttl(particle)
        larkspur.CParticle_dec_ttl_and_render(new, 0, 0)
        larkspur.part_type_sprite(kind, picture(), 0, 0, 0)
        larkspur.CParticle_type_cache_clear(kind)

    return live


# ---- pictures


@scene
def copies_of_subsurfaces(host):
    sources = surfaces_of(host)

    def transform():
        for source in sources:
            larkspur.flip_h(source), larkspur.flip_v(source), larkspur.flip_vh(source)
            larkspur.scale(source, 1.5, 0.5)
            larkspur.rotoscale(source, 1.5, 0.5, 30.0)
            larkspur.GMSprite_from_surface(source, "spr_part")

    return transform


@scene
def painting_on_subsurfaces(host):
    targets = surfaces_of(host)

    def paint():
        for target in targets:
            larkspur.fill_translucent(target, 1, 2, 9, 9, 5, 100)
            larkspur.fast_draw_gradient_v(target, 0, 0, 9, 9, 1, 2, 100)
            larkspur.fast_draw_gradients_vcvvc(
                target, 0, 0, 9, 9, 1, 2, 0.5, 3, 0.5, 4, 5, 0.5, 6, 7, 0.5, 8, 0.5
            )

    return paint


def rectangles_scene(host):
    host.gmapi.__dict__["__color_to_int"] = lambda colour: int(len([colour]))

    def draw():
        for alpha, outline in ((1.0, 0), (1.0, 1), (0.5, 0)):
            host.gmapi.py_draw_props.alpha = alpha
            larkspur.draw_rectangle(1, 2, 30, 40, outline)
        for corners in ((5, 5, 5, 5), (5, 5, 6, 6), (5, 6, 6, 5)):
            for outline in (0, 1):
                larkspur.fast_draw_rectangle_color(*(1, 2, 30, 40) + corners + (0.5, outline))
                larkspur.fast_draw_rectangle_color(*(1, 2, 30, 40) + corners + (1.0, outline))

    return draw


@scene
def rectangles(host):
    return rectangles_scene(host)


@scene
def rectangles_on_a_subsurface_of_the_display(host):
    larkspur.set_SDL_screen(display_piece(host, (200, 150)))
    return rectangles_scene(host)


@scene
def scale_cache(host):
    images = [subsurface(flags=pygame.SRCALPHA), picture(), display_piece(host)]
    sprite = larkspur.GMSprite()
    host.drops.append(lambda: sprite.__delattr__("subimages"))
    host.drops.append(lambda: sprite.__setattr__("scalecache", {}))

    def add():
        sprite.subimages = list(images)
        for width, height, colour in ((20, 20, 0xFFFFFF), (-30, 12, 0xFFFFFF), (50, -60, 7)):
            pending.add_to_scale_cache(sprite, (width, height), width, height, colour)
            for i, image in enumerate(images):
                pending.add_to_scale_cache(sprite_of(image), i, *image.get_size() + (7,))
                scale_cache_add(sprite, (i, [].append), i, width, height, 30, 0, 7, 100, i % 2)

    return add


# ---- records


@scene
def resources(host):
    sprite, background = larkspur.GMSprite(), larkspur.BackgroundData()
    sprite.name, background.name = "spr_one", "bg_one"
    host.game.sprites.append(sprite)
    host.game.backgrounds.append(background)

    def load(resource, *_):
        resource.__setattr__("subimages" if type(resource) is larkspur.GMSprite else "surf", [{}])

    host.gm6.SpriteData_load_images = host.gm6.BackgroundData_load_images = load
    host.register(larkspur)
    host.drops.append(lambda: background.__setattr__("name", None))
    host.drops.append(lambda: sprite.__setattr__("name", "spr_other"))

    def use():
        for resource in (sprite, background, make_tile(x=4)):
            pickle.loads(pickle.dumps(resource, 2))
            if type(resource) is not larkspur.RoomTileData:
                str(resource), int(resource), cmp(resource, 1), resource == 0
        larkspur.GMSprite_from_surface(picture(), "spr_two")
        floats = larkspur.Floatlist8()
        for i in range(8):
            floats[i] = i + 0.5
        pickle.loads(pickle.dumps(floats, 2))
        str(floats), floats == 3, floats + 1, list(floats)

    return use


@scene
def instance_lists(host):
    for number in range(5, 10):
        host.registry[number] = Instance(number=number)
        leaks.lend_references(host.registry[number], 1000)

    def use():
        instances = larkspur.InstanceList(host.registry[number] for number in (5, 6))
        instances.append(7)
        instances.append(host.registry[8])
        instances.insert(0, 9)
        instances[1] = 8
        instances[0:2] = [host.registry[6]] * 3
        instances.remove(6)
        instances.extend([host.registry[9]])
        9 in instances, instances.count(6), instances.index(host.registry[9])
        pickle.dumps([len(instances), sorted(map(id, instances))])
        del instances[0], instances[:1]

    return use


@scene
def variables(host):
    # Comparing variables releases references that were not taken.
    thousand, list_of_one, text = 1000, [1], "some text"
    for value in (thousand, list_of_one, text):
        leaks.lend_references(value, 10**6)

    def use():
        variable = larkspur.GMVar([{}])
        variable[3] = [larkspur.GMVar((text, {}))]
        variable[2, 4] = larkspur.GMVar(text)
        for other in (larkspur.GMVar(thousand), larkspur.GMVar(text), thousand, list_of_one):
            cmp(larkspur.GMVar(list_of_one), other), str(larkspur.GMVar(text)), variable == other
        number = larkspur.GMVar(5)
        number += 3.5
        -number, abs(number), int(number), float(number), len(variable), bool(number)
        number + larkspur.GMVar(2), number * 3, 7 - number
        larkspur.GMVar(len)(list_of_one), larkspur.GMVar(Plain(x=[])).x
        variable[2, 4], variable[0], variable[9]

    return use
