"""What native callers call with Python objects, and with the surfaces and records behind them.

Left out are pointers that only native code can get wrong (of freed memory, or to something else),
and what the header asks of the caller: a tuple for Room_DrawView() to draw.
"""

import ctypes

import larkspur
from support import native, rooms, sprites
from support.host import Plain
from support.native import Rect
from support.particles import ParticleRecord, TypeRecord, particle_record, type_record

from robustness import function_rows, scene, type_rows, values
from robustness.operations import as_wide, done_with_value
from robustness.table import EITHER, OK, RAISES, SILENT, ValuesRow, always, anything

OBJECT, TEXT, INT, WORD, POINTER, FLOAT = (
    ctypes.py_object,
    ctypes.c_char_p,
    ctypes.c_int,
    ctypes.c_uint32,
    ctypes.c_void_p,
    ctypes.c_float,
)


def function(name, result, *arguments):
    """An exported function; a reference that it returns is released."""
    found = native.function(name, POINTER if result is OBJECT else result, *arguments)
    if result is not OBJECT:
        return found
    return lambda *arguments: native.new_reference(found(*arguments))


def exported(name, types, base=(), kinds=(), **more):
    """A row for an exported function; types: of its result and its arguments."""
    return ValuesRow(name, function(name, *types), base, kinds, **more)


# Exported functions without a row, each with the reason.
LEFT_OUT = {
    "initlarkspur": "importing calls it, once",
    "debug_log": "writes a text to a file",
    "dump": "writes a text to a file",
    "debug": "prints a text",
    "crasher": "ends the process, which is what it is for",
    "multalpha": "takes numbers and gives one",
    "blend": "takes numbers and gives one",
    "interpolate_unformatted": "takes numbers and gives one",
    "blend_mode_flatten": "takes a number and gives one",
    "subtractor_for": "takes a number and gives two",
    "startptr_for": "takes a number and gives one",
    "satusub": "takes memory and its length, which are the caller's word",
    "satusub_head": "takes memory and its length, which are the caller's word",
    "satusub_body": "takes memory and its length, which are the caller's word",
}

SPRITE_COPY = [lambda: 0, lambda: 12, lambda: 5, lambda: 30, lambda: 0, lambda: 3, lambda: 99]


def asked(question):
    """What the interpreter can do with a value, other than with ours."""
    return lambda value: OK if not value.own_type and values.can(question, value) else RAISES


def printed(value):
    """What has a text of its own has that; ours have the interpreter's."""
    return OK if value.own_type or values.can("repr", value) else RAISES


def colour(value):
    """A number, or a sequence whose first three items are."""
    if value.own_type in ("InstanceList", "Floatlist8"):
        return OK
    if value.own_type:
        # A number that fails without an exception is -1 like any other.
        return OK if as_wide(value) == SILENT else as_wide(value)
    if value.hostile == "close":
        return EITHER
    return OK if values.can("colour", value) else RAISES


def tile_on(target):
    """Of pictures on a surface. A blit that SDL refuses fails without an exception."""

    def kind(value):
        if target.short or value.short or not value.surface:
            return EITHER if value.replaced else RAISES
        # What a subsurface is a share of is locked while it is drawn on or from.
        shared = value.display and target.display and value is not target
        refused = [thing.locked or thing.without_pixels for thing in (target, value)]
        return SILENT if shared or any(refused) else OK

    return kind


def particle_on(target):
    """Of shapes on a surface, in both blend modes, of which one takes 32 bits alone. What SDL can't
    convert draws nothing."""

    def kind(value):
        if value.short or not value.surface:
            return EITHER if value.replaced else RAISES
        if value.empty:
            return OK
        if value.wide or value.locked_encoded:
            return EITHER  # depending on both depths
        return OK if value.surface == target.surface == 32 and not target.short else RAISES

    return kind


def game_object():
    return Plain(instances=[scene.current.instance], children=[])


def object_rows():
    sprite, key = type_rows.sprite, lambda: ("key", 1)
    for name in ("Game_Sequence_Index", "Game_Sequence_Index_F", "Game_Sequence_Index_S"):
        yield exported(name, [OBJECT, OBJECT, TEXT], [sprite, lambda: b"sprites"], [anything, None])
    yield exported(
        "seqi",
        [INT, OBJECT, INT],
        [lambda: (4, 5), lambda: 1],
        [asked("item 1"), None],
        extra=[
            ("index %d" % i, [lambda: [4, 5], lambda i=i: i], OK if i in (0, 1) else RAISES)
            for i in (0, 1, -1, 2, 2**31 - 1, -(2**31))
        ],
    )
    yield exported("GetFirstInstance", [OBJECT, OBJECT], [game_object], [always(RAISES)])
    yield exported(
        "PushSelf",
        [INT, OBJECT],
        [lambda: scene.current.instance],
        [anything],
        then=lambda _: function("PopSelf", INT)(),
    )
    yield exported("PopSelf", [INT])
    yield exported(
        "invoke", [OBJECT] * 3, [lambda: repr, lambda: 1], [done_with_value("call with 1"), printed]
    )
    yield exported(
        "invoke_4",
        [OBJECT] * 6,
        [lambda: lambda *arguments: repr(arguments)] + [lambda: 1] * 4,
        [done_with_value("call with 4")] + [printed] * 4,
    )
    yield exported("color_as_int", [WORD, OBJECT], [lambda: (1, 2, 3)], [colour])
    yield ValuesRow(
        "sprite_scalecache_add",
        sprites.scale_cache_add,
        [sprite, key] + SPRITE_COPY + [lambda: 0],
        [anything, anything] + [None] * 8,
    )
    for rgba_copy in (0, 1):
        yield ValuesRow(
            "sprite_scalecache_add of a subimage, copy %d" % rgba_copy,
            _add_copy_of,
            [scene.tiny_surface] + SPRITE_COPY + [lambda rgba_copy=rgba_copy: rgba_copy],
            [anything] + [None] * 8,
            extra=[
                (
                    "number %d is %d" % (i, number),
                    [scene.tiny_surface]
                    + SPRITE_COPY[:i]
                    + [lambda number=number: number]
                    + SPRITE_COPY[i + 1 :]
                    + [lambda rgba_copy=rgba_copy: rgba_copy],
                    OK,
                )
                for i in range(7)
                for number in (0, 1, -1, -7, 8, -8, 255, 256, 32767, -32768, 2**31 - 1, -(2**31))
            ],
        )
    yield exported(
        "Room_DrawView",
        [INT, OBJECT, OBJECT, INT, OBJECT],
        [type_rows.room, function_rows.SCREEN, lambda: 0, lambda: (scene.current.instance,)],
        # No value is a room with its lists.
        [always(RAISES), function_rows.target_of_view, None, None],
        extra=[
            (
                "view %d" % view,
                [type_rows.room, function_rows.SCREEN, lambda view=view: view, tuple],
                OK,
            )
            for view in range(8)
        ]
        + [
            (
                "drawn: " + value.name,
                [
                    type_rows.room,
                    function_rows.SCREEN,
                    lambda: 0,
                    lambda value=value: (value.make(), 1),
                ],
                RAISES,  # 1 can't be drawn in any case
            )
            for value in values.ALL
        ],
    )
    yield exported("larkspur_init_rooms", [None])
    yield exported("PySurface_FromSurface", [OBJECT, POINTER], [lambda: None], [None], good=RAISES)


def _add_copy_of(image, *arguments):
    return sprites.scale_cache_add(sprites.sprite_of(image), "key", *arguments)


def record_rows():
    """Records behind handles, with numbers of every kind in them."""
    render = function("particle_render_low", None, ctypes.POINTER(ParticleRecord), INT, INT)
    actions = {
        "particle_render_low": lambda record, _: render(record, 1, 1),
        "CParticle_step_low": lambda record, _: function(
            "CParticle_step_low", None, ctypes.POINTER(ParticleRecord)
        )(record),
        "CParticle_reset_velocities": lambda record, _: function(
            "CParticle_reset_velocities", None, ctypes.POINTER(ParticleRecord)
        )(record),
        "DesiredTint_part_gm": lambda record, _: function(
            "DesiredTint_part_gm", WORD, ctypes.POINTER(ParticleRecord), FLOAT
        )(record, record.x),
        "DesiredTint_type": lambda record, type_: function(
            "DesiredTint_type", WORD, ctypes.POINTER(TypeRecord), FLOAT
        )(type_, record.x),
        "DesiredAlpha": lambda record, type_: function(
            "DesiredAlpha", INT, ctypes.POINTER(TypeRecord), FLOAT
        )(type_, record.x),
    }
    for name, action in sorted(actions.items()):
        yield ValuesRow(
            name,
            None,
            extra=[
                (
                    "%s = %r" % (field, number),
                    [values.particle, lambda field=field: field, lambda number=number: number],
                    OK,
                    _with_field(action),
                )
                for field, kind in ParticleRecord._fields_ + TypeRecord._fields_
                if kind is not POINTER
                for number in _numbers_for(field, kind)
            ],
        )
    for blend in (0, 1):
        yield ValuesRow(
            "particle of any shape, blend %d" % blend,
            lambda shape, blend=blend: _draw_shape(shape, blend, render),
            [scene.tiny_surface],
            [anything],
            values=[value for value in values.SURFACES if value.exact and not value.closes],
        )


# What these decide is the size of a picture: huge ones are refused, but large ones only take time.
SIZES = ("size", "xscale", "yscale")


def _numbers_for(field, kind):
    if kind is not FLOAT:
        return (0, 1, -1, 2, 128, 255, 2**31 - 1, -(2**31))
    large = () if field in SIZES else (255.0, 3e4)
    return (
        (0.0, -0.0, 0.5, 1.0, -1.0, 1e-30, 3e9, -3e9, 1e30, 1e38)
        + large
        + tuple(float(name) for name in ("nan", "inf", "-inf"))
    )


def _with_field(action):
    def act(particle, field, number):
        record = particle_record(particle)
        type_ = type_record(ctypes.cast(record.type_handle, ctypes.py_object).value)
        setattr(record if hasattr(record, field) else type_, field, number)
        action(record, type_)
        action(record, type_)

    return act


def _draw_shape(shape, blend, render):
    type_ = larkspur.part_type_create()
    larkspur.part_type_shape(type_, shape)
    larkspur.part_type_blend(type_, blend)
    larkspur.part_type_life(type_, 9, 9)
    for size in (1, 2, 0.3, -1):
        for angle in (0, 30):
            larkspur.part_type_size(type_, size, size, 0, 0)
            larkspur.part_type_orientation(type_, angle, angle, 0, 0, 0)
            particle = larkspur.CParticle_new(type_, 30, 30)
            for colour in (0xFFFFFF, 0x123456):
                particle_record(particle).color1 = colour
                render(particle_record(particle), 0, 0)


# ---- surfaces

# The pixels of a subsurface move when its owner is encoded, closed or replaced. Whoever passes the
# naked surface on has to have pygame find them again.
SURFACES = [
    value
    for value in values.SURFACES
    if not value.closes and not value.replaced and not value.moved
]
_free = native.function("SDL_FreeSurface", None, POINTER)


def on_surface(name, result, *numbers):
    """A function of one surface and numbers, for pygame Surfaces."""
    found = native.function(name, result, POINTER, *[kind for kind, _ in numbers])

    def call(surface):
        made = found(native.surface_address(surface), *[number for _, number in numbers])
        if result is POINTER and made:
            _free(made)

    return ValuesRow(
        name,
        call,
        [scene.tiny_surface],
        [anything],
        covers=["native " + name if hasattr(larkspur, name) else name],
        values=SURFACES,
    )


def surface_rows():
    for name in ("flip_v", "flip_h", "flip_vh", "clone_surface", "RGBA_copy"):
        yield on_surface(name, POINTER)
    yield on_surface("Translucentify", None, (ctypes.c_uint8, 100))
    yield on_surface("Tint_Surface", None, (WORD, 0x336699))
    for name in ("color_for_format", "interpolate_fmt"):
        yield ValuesRow(
            name,
            _mapped(name),
            [scene.tiny_surface],
            [anything],
            values=[value for value in SURFACES if value.surface],
        )
    blit = native.function("flagged_blit", None, POINTER, POINTER, ctypes.POINTER(Rect), INT)
    add = native.function("additive_blit", None, POINTER, POINTER, *[INT] * 4)

    def draw_in_all_modes(source, target):
        source, target = native.surface_address(source), native.surface_address(target)
        for mode in (0, 1, 128, 7, -1):
            for x, y in ((0, 0), (-3, -2), (3, 4), (-32768, 32767)):
                blit(source, target, Rect(x, y), mode)
        for source_offset, target_offset, rows, row_bytes in (
            (0, 0, 3, 8),
            (4, 8, 100, 32),
            (-4, 0, 3, 8),
            (0, -4, 3, 8),
            (0, 0, 2**31 - 1, 2**31 - 1),
            (2**31 - 1, 2**31 - 1, 1, 1),
            (0, 0, -1, -1),
        ):
            add(source, target, source_offset, target_offset, rows, row_bytes)

    for target in SURFACES:
        yield ValuesRow(
            "blits to: " + target.name,
            draw_in_all_modes,
            [scene.tiny_surface, target.make],
            [anything, None],
            covers=["flagged_blit", "additive_blit"],
            values=SURFACES,
        )
    yield ValuesRow(
        "blits of a surface onto itself",
        lambda surface: draw_in_all_modes(surface, surface),
        [scene.tiny_surface],
        [anything],
        values=SURFACES,
    )


def _mapped(name):
    numbers = (1, 2, 0.5) if name == "interpolate_fmt" else (1,)
    kinds = (WORD, WORD, FLOAT)[: len(numbers)]
    found = native.function(name, WORD, *(kinds + (POINTER,)))

    def call(surface):
        record = native.sdl_surface(surface)
        found(*(numbers + (ctypes.addressof(record.format.contents),)))

    return call


_GOOD = values.Value("good", scene.tiny_surface, 32)


def pair_rows():
    """Tiles and particles of each kind of surface on each kind of surface. A blit that SDL refuses
    fails without an exception."""
    for target in values.SURFACES:
        if target.surface:
            yield ValuesRow(
                "tiles on: " + target.name,
                _draw_tile,
                [scene.tiny_surface, target.make],
                [tile_on(target), None],
                values=values.SURFACES,
                good=tile_on(target)(_GOOD),
            )
            yield ValuesRow(
                "particles on: " + target.name,
                _draw_on,
                [scene.tiny_surface, target.make],
                [particle_on(target), None],
                good=particle_on(target)(_GOOD),
                disturbs=True,
                values=[value for value in values.SURFACES if value.exact],
            )
    yield ValuesRow(
        "a tile of the surface itself",
        lambda surface: _draw_tile(surface, surface),
        [scene.tiny_surface],
        # One that asks for run-length encoding draws nothing.
        [lambda value: OK if value.locked_encoded else tile_on(value)(value)],
        values=values.SURFACES,
    )
    yield ValuesRow(
        "everything on the screen",
        _draw_all_on,
        [scene.tiny_surface],
        [function_rows.screen],
        disturbs=True,
    )


def _draw_tile(source, target):
    scene.current.resources["backgrounds"][:] = [rooms.make_background(source)]
    room = rooms.make_room(
        tiles=[rooms.make_tile(), rooms.make_tile(x=-3, y=2, w=5), rooms.make_tile(tilex=-2)]
    )
    larkspur.Room_Draw(room, target)


def _draw_on(shape, target):
    larkspur.set_SDL_screen(target)
    type_ = larkspur.part_type_create()
    larkspur.part_type_shape(type_, shape)
    larkspur.part_type_life(type_, 9, 9)
    for blend in (0, 1):
        larkspur.part_type_blend(type_, blend)
        particle = larkspur.CParticle_new(type_, 3, 3)
        larkspur.CParticle_dec_ttl_and_render(particle, 0, 0)
        larkspur.CParticle_dec_ttl_and_render(particle, -3, 0)


def _draw_all_on(screen):
    larkspur.set_SDL_screen(screen)
    function_rows.draw_frames()


def rows_of_native_functions():
    for rows in (object_rows, record_rows, surface_rows, pair_rows):
        for row in rows():
            yield row
