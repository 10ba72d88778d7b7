"""The demo's particle types. Colours are given from birth over half life to death."""

import gmapi
from gmapi import make_color_rgb as rgb

from evening import art

types = {}


def make_types():
    """Create all particle types; the display must be there, for their shapes."""
    types.update(
        fire=_fire(),
        torch_fire=_torch_fire(),
        smoke=_smoke(),
        spark=_spark(),
        snow=_snow(gmapi.pt_shape_snow, 1.9, 3.1),
        drift=_snow(art.far_flake(), 1.0, 2.0),
        twinkle=_twinkle(),
        spray=_spray(),
        firefly=_firefly(),
        petal=_petal(),
    )


def _additive(shape, colors, alphas, life, speed, direction):
    """A type that adds its light to the picture. Direction 0 is down, 180 is up."""
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, shape)
    gmapi.part_type_blend(made, 1)
    gmapi.part_type_color3(made, *colors)
    gmapi.part_type_alpha3(made, *alphas)
    gmapi.part_type_life(made, *life)
    gmapi.part_type_speed(made, speed[0], speed[1], 0, 0)
    gmapi.part_type_direction(made, direction[0], direction[1], 0, 0)
    return made


def _fire():
    return _flame(28, (36, 16, 6), (0.97, 1.0, 0.9), (20, 52), (0.8, 2.5), (171, 189))


def _torch_fire():
    return _flame(16, (64, 28, 9), (0.96, 1.0, 0.85), (12, 30), (0.5, 1.4), (168, 192))


def _flame(diameter, light, alphas, life, speed, direction):
    """Faint light, of which a dozen layers make the core: red is full there, green nearly, blue
    hardly, so that how thick the flame is shows as red, orange or yellow. With more light the sum
    would be full in red and green all over the core, one flat yellow with a hard edge.

    Fading takes the same from every channel. That is little light, so a little less alpha is
    enough, and what is left of it as it cools is red.
    """
    return _additive(
        gmapi.soft_disk(diameter, 1.2, light, light=True),
        (gmapi.c_white,) * 3,
        alphas,
        life,
        speed,
        direction,
    )


def _smoke():
    """Grows and fades. The trace of size wiggle keeps it on the path that keeps its soft edge."""
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, gmapi.pt_shape_smoke)
    gmapi.part_type_size(made, 0.3, 1.7, 0.0115, 0.0001)
    gmapi.part_type_alpha3(made, 0.42, 0.26, 0.0)
    gmapi.part_type_life(made, 90, 90)
    gmapi.part_type_speed(made, 0.5, 1.0, 0, 0)
    gmapi.part_type_direction(made, 188, 214, 0, 0)
    return made


def _spark():
    """A short streak, turned every way; drawn larger than its shape, so that it is turned."""
    made = _additive(
        gmapi.pt_shape_spark,
        (rgb(255, 250, 220), rgb(255, 190, 80), rgb(220, 70, 30)),
        (1.0, 0.9, 0.0),
        (20, 44),
        (1.2, 4.2),
        (130, 230),
    )
    gmapi.part_type_scale(made, 1.3, 1.0)
    gmapi.part_type_orientation(made, 0, 360, 9, 0, 0)
    return made


def _snow(shape, slowest, fastest):
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, shape)
    gmapi.part_type_life(made, 190, 290)
    gmapi.part_type_speed(made, slowest, fastest, 0, 0)
    gmapi.part_type_direction(made, 2, 26, 0, 0)
    return made


def _twinkle():
    return _additive(
        gmapi.pt_shape_ember,
        (rgb(255, 255, 255), rgb(255, 226, 130), rgb(255, 140, 80)),
        (1.0, 0.9, 0.0),
        (18, 36),
        (0.8, 3.2),
        (0, 360),
    )


def _spray():
    return _additive(
        gmapi.pt_shape_ember,
        (rgb(210, 240, 255), rgb(120, 190, 240), rgb(60, 120, 200)),
        (0.8, 0.6, 0.0),
        (20, 30),
        (0.7, 1.6),
        (0, 360),
    )


def _firefly():
    return _additive(
        gmapi.pt_shape_ember,
        (rgb(70, 110, 20), rgb(230, 255, 120), rgb(40, 70, 10)),
        (0.3, 1.0, 0.0),
        (90, 190),
        (0.1, 0.6),
        (0, 360),
    )


def _petal():
    """A petal turning as it sinks."""
    made = gmapi.part_type_create()
    gmapi.part_type_shape(made, gmapi.pt_shape_disk)
    gmapi.part_type_color3(made, rgb(255, 196, 214), rgb(255, 176, 200), rgb(250, 190, 205))
    gmapi.part_type_scale(made, 1.0, 0.5)
    gmapi.part_type_orientation(made, 0, 360, 3, 0, 0)
    gmapi.part_type_life(made, 180, 320)
    gmapi.part_type_speed(made, 0.4, 1.0, 0, 0)
    gmapi.part_type_direction(made, 20, 60, 0, 0)
    return made
