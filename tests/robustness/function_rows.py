"""The module's functions."""

import larkspur
from support import rooms
from support.host import Plain

from robustness import scene, values
from robustness.table import (
    ANY,
    EITHER,
    FLOAT,
    I32,
    OK,
    RAISES,
    SILENT,
    U32,
    Row,
    anything,
    fact,
    number,
    paintable,
    usable,
)

surface = scene.tiny_surface
RECTANGLE = [lambda: 1, lambda: 1, lambda: 6, lambda: 4]
COLOUR = lambda: 0x336699  # noqa: E731
SHARE = lambda: 0.5  # noqa: E731
ONE = lambda: 1  # noqa: E731


def coordinate(value):
    """A coordinate, of which some are refused as too far outside."""
    return EITHER if I32(value) == OK else I32(value)


def module_row(name, base=(), kinds=(), **more):
    """A row for the module's function of this name."""
    return Row(name, getattr(larkspur, name), base, kinds, **more)


def gradient(name, letters):
    """A row for a gradient function: letters I, i, f of what follows surface and rectangle."""
    makers = {"I": COLOUR, "i": lambda: 100, "f": SHARE}
    kinds = {"I": U32, "i": I32, "f": FLOAT}
    return module_row(
        name,
        [surface] + RECTANGLE + [makers[letter] for letter in letters],
        [paintable] + [coordinate] * 4 + [kinds[letter] for letter in letters],
        values=values.ALL + [values.NULL],
    )


def drawing_rows():
    yield gradient("fast_draw_gradient_v", "IIi")
    yield gradient("fast_draw_gradients_vc", "IIfIf")
    yield gradient("fast_draw_gradients_vv", "IIfIIf")
    yield gradient("fast_draw_gradients_vcv", "IIfIfIIf")
    yield gradient("fast_draw_gradients_vcvvc", "IIfIfIIfIIfIf")
    yield module_row(
        "fast_draw_rectangle_color",
        RECTANGLE + [COLOUR] * 2 + [lambda: 0x99AABB] * 2 + [lambda: 1.0, lambda: 0],
        [coordinate] * 4 + [U32] * 4 + [FLOAT, I32],
    )
    yield module_row(
        "fill_translucent",
        [surface] + RECTANGLE + [COLOUR, lambda: 100],
        [paintable] + [coordinate] * 4 + [I32] * 2,
        values=values.ALL + [values.NULL],
    )
    yield module_row(
        "draw_rectangle",
        RECTANGLE + [lambda: 0.0],
        # pygame's fill() and rect() refuse sides that no int holds.
        [lambda value: EITHER if FLOAT(value) == OK else FLOAT(value)] * 5,
        counts=[4, 5],
    )
    for name in ("flip_v", "flip_h", "flip_vh"):
        yield module_row(
            name, [surface], [flippable(name == "flip_v")], values=values.ALL + [values.NULL]
        )
    # scale() fails without an exception when SDL refuses the result.
    for name, floats, refused in (("scale", 2, SILENT), ("rotoscale", 3, RAISES)):
        yield module_row(
            name,
            [surface] + [SHARE] * floats,
            [scalable(name == "rotoscale")] + [scaled_to(refused)] * floats,
        )


def flippable(every_depth):
    def kind(value):
        if value.short or value.wide:
            return RAISES  # SDL refuses copies of more than 16383 columns
        if value.replaced:
            return EITHER
        return OK if value.surface == 32 or (every_depth and value.surface) else RAISES

    return kind


def scalable(turned):
    def kind(value):
        if not value.surface or value.empty or value.long or value.short:
            return EITHER if value.replaced else RAISES
        if turned and (value.key_astray or (value.locked_encoded and value.surface == 16)):
            return RAISES
        return ANY if value.wide else OK

    return kind


def scaled_to(refused):
    """A factor, with which SDL may refuse the result."""

    def kind(value):
        if FLOAT(value) == RAISES:
            return RAISES
        return (OK, refused, RAISES) if value.acts else (OK, refused)

    return kind


def particle_type_rows():
    formats = {
        "part_type_alpha2": "ff",
        "part_type_alpha3": "fff",
        "part_type_blend": "f",
        "part_type_color3": "iii",
        "part_type_direction": "ffff",
        "part_type_gravity": "ff",
        "part_type_life": "ff",
        "part_type_orientation": "fffff",
        "part_type_scale": "ff",
        "part_type_size": "ffff",
        "part_type_speed": "ffff",
        "CParticle_type_cache_clear": "",
    }
    for name, letters in sorted(formats.items()):
        otherwise = RAISES if name == "part_type_speed" else SILENT
        yield module_row(
            name,
            [values.particle_type] + [ONE] * len(letters),
            [fact("particle_type", otherwise)] + [number(letter) for letter in letters],
            then=draw_particles,
        )
    yield module_row(
        "part_type_shape",
        [values.particle_type, surface],
        [fact("particle_type", SILENT), exact_surface],
        then=draw_particles,
    )
    yield module_row(
        "part_type_sprite",
        [values.particle_type, surface] + [ONE] * 3,
        [fact("particle_type"), anything] + [FLOAT] * 3,
        then=draw_particles,
    )
    yield module_row("part_type_create", counts=None)


def exact_surface(value):
    """Any Surface of that very type, closed ones too."""
    return OK if value.exact else SILENT


def draw_particles(particle_type, *_):
    """What a particle of a changed type looks like, twice: made, then out of the cache."""
    particle = larkspur.CParticle_new(particle_type, 20, 20)
    for _ in (1, 2):
        larkspur.CParticle_dec_ttl_and_render(particle, 1, 1)


def particle_rows():
    for name, letters in (("CParticle_new", "ff"), ("CParticle_new_size_color", "fffi")):
        yield module_row(
            name,
            [values.particle_type] + [ONE] * len(letters),
            [fact("particle_type", SILENT)] + [number(letter) for letter in letters],
        )
    for name in ("CParticle_step", "CParticle_dec_ttl"):
        yield module_row(name, [values.particle], [fact("particle")])
    yield module_row(
        "CParticle_dec_ttl_and_render", [values.particle, ONE, ONE], [fact("particle"), I32, I32]
    )
    yield module_row(
        "CParticle_attach_beancounter",
        [values.particle, larkspur.Beancounter],
        [fact("particle"), fact("beancounter")],
    )


def ROOM():
    return rooms.make_view_room(
        drawn_objects=[scene.current.instance], tiles=[rooms.make_tile(), rooms.make_tile(x=3)]
    )


def FLAT_ROOM():
    return rooms.make_room(
        drawn_objects=[scene.current.instance], tiles=[rooms.make_tile(), rooms.make_tile(x=3)]
    )


def SCREEN():
    return scene.current.screen


def target(value):
    """What can be drawn on. A blit that SDL refuses fails without an exception."""
    if value.short or not value.surface:
        return EITHER if value.replaced else RAISES
    return SILENT if value.locked or value.without_pixels else OK


def target_of_view(value):
    """What a view can be drawn on; where SDL refuses its blit, it counts as drawn."""
    return RAISES if value.short else usable(value)


def screen(value):
    """As usable(); that the display around a subsurface was closed shows when it is drawn on."""
    return EITHER if value.closes else usable(value)


def only_hostile(value):
    """Nothing is good but what stands for anything."""
    return EITHER if value.hostile else RAISES


def convertible(value):
    if value.short or value.key_astray or value.locked_encoded:
        return RAISES
    return EITHER if value.long or value.wide else usable(value)


def host_rows():
    yield module_row("breakable", counts=None)
    yield module_row("init_subsystems", counts=None)
    yield module_row("draw_sprite_ext", counts=None, good=SILENT)
    yield module_row(
        "set_SDL_screen", [SCREEN], [screen], then=lambda _: draw_frames(), disturbs=True
    )
    yield module_row(
        "RegisterInstancesDict",
        [lambda: scene.current.host.registry] + [lambda: Plain] * 3,
        [anything] * 4,
        counts=None,  # bad arguments are passed over
        then=lambda *_: draw_frames(),
        disturbs=True,
    )
    yield module_row(
        "GMSprite_from_surface",
        [surface, lambda: "name"],
        [convertible, anything],
        counts=[1, 2],
    )
    for name, room, kind in (
        ("Room_Draw", FLAT_ROOM, target),
        ("Room_Draw with views", ROOM, target_of_view),
    ):
        yield Row(
            name,
            larkspur.Room_Draw,
            [room, SCREEN],
            [only_hostile, kind],
            covers=["Room_Draw"],
            disturbs=True,
        )


def draw_frames():
    """A frame of each kind, and what draws on the display."""
    list_ = larkspur.InstanceList()
    for action in (
        lambda: larkspur.Room_Draw(ROOM(), scene.current.screen),
        lambda: larkspur.Room_Draw(FLAT_ROOM(), scene.current.screen),
        lambda: larkspur.draw_rectangle(1, 1, 5, 5),
        lambda: larkspur.draw_rectangle(1, 1, 5, 5, 1),
        lambda: larkspur.fast_draw_rectangle_color(1, 1, 6, 4, 1, 1, 5, 5, 1.0, 0),
        lambda: draw_particles(values.particle_type()),
        lambda: list_.append(7),
        lambda: larkspur.GMSprite_from_surface(surface()),
    ):
        scene.quietly(action)


def rows_of_functions():
    for rows in (drawing_rows, particle_type_rows, particle_rows, host_rows):
        for row in rows():
            yield row
