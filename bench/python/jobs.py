"""What is measured, in which sizes, against whom, and how fast it has to be at least.

Each ratio is the other's time over ours, so that above 1 we lead. How a job is done stands
elsewhere: by larkspur, and by what runs beside it, in larkspur_*.py; by pygame in pygame_ways.py.
"""

from __future__ import division

# The commit that its targets compare with, and the key of these.
BASE = "89407d6"
# pygame on SDL 2, in a process and an environment of its own.
PEER = "pygame-ce"
# Rows that bench_pixel measures: the plain formula without vectors, and what the memory allows.
KERNEL_ROWS = ("scalar", "roof")

TILE, SMALL, MIDDLE, LARGE = (16, 16), (64, 64), (320, 240), (640, 480)
XGA, HD = (1024, 768), (1920, 1080)
BLITS = (TILE, SMALL, MIDDLE, LARGE)
FILLS = (SMALL, MIDDLE, LARGE, XGA, HD)
QUICK = (SMALL, LARGE)


class Job(object):
    """
    name     the function as users call it, and what it is measured with
    sizes    of the picture in pixels, or of what else is named
    against  whom it is compared with -> pairs of (least width, ratio): the last one that fits a
             size is its target. None for a ratio: no target from that width on. Without pairs the
             comparison is only shown
    kernel   its name in bench_pixel, for the comparisons in KERNEL_ROWS
    apart    how far pictures of different ways may be from each other: the mean difference of a
             channel; None where they are not to be compared
    """

    def __init__(self, name, sizes, against, kernel=None, apart=0):
        self.name, self.sizes, self.against = name, sizes, against
        self.kernel, self.apart = kernel, apart

    def target(self, who, size):
        width = size[0] if size else 0
        fitting = [ratio for least, ratio in self.against.get(who, ()) if width >= least]
        return fitting[-1] if fitting else None

    def quick_sizes(self):
        """Fewer of them, where there are many."""
        return [size for size in self.sizes if size in QUICK] or self.sizes[:1]


AS_FAST = [(0, 0.95)]
OPAQUE = [(0, 0.95), (640, 0.8)]
TWICE_FROM_64 = [(0, 0.95), (64, 2)]
# Where arithmetic is what costs: beyond these sizes memory is.
ARITHMETIC = [(64, 1.4), (320, 1.2), (1024, None)]
# Blends round in different ways, and the edges of what was turned fall differently.
BLENDED, RESAMPLED = 3, 12
# Ours leave out the last row and column.
WITHOUT_EDGE = 8

JOBS = [
    # Blits.
    Job("flagged_blit(), opaque", BLITS, {"SDL": [], PEER: OPAQUE}),
    Job("flagged_blit(), opaque, made by rotoscale()", BLITS, {"SDL": [], PEER: OPAQUE}),
    Job("flagged_blit(), opaque tile and the next pass", [(320, 64)], {"SDL": [(0, 3)]}),
    Job("flagged_blit(), colour key", BLITS, {"SDL": [(0, 12)], PEER: TWICE_FROM_64}),
    # SDL's own affair, there as here.
    Job("flagged_blit(), colour key, run-length encoded", BLITS, {"SDL": [], PEER: []}),
    Job(
        "flagged_blit(), surface alpha",
        BLITS,
        {"SDL": [(0, 4)], PEER: TWICE_FROM_64},
        apart=BLENDED,
    ),
    Job(
        "flagged_blit(), colour key and surface alpha",
        BLITS,
        {"SDL": [(0, 10)], PEER: TWICE_FROM_64},
        apart=BLENDED,
    ),
    Job("flagged_blit(), pixel alpha", BLITS, {"SDL": [], PEER: AS_FAST}, apart=BLENDED),
    Job(
        "flagged_blit(), added",
        FILLS,
        {
            "SDL_gfx": [(64, 3.4), (320, 2.2), (640, None)],
            "XOR of the same bytes": [(640, 0.95)],
            "scalar": [(64, 9)],
            "pygame": [(64, 36), (320, 40)],
            PEER: AS_FAST,
        },
        kernel="additive blit",
    ),
    # Zooms, turns and flips.
    Job(
        "scale(), 1.5 times",
        BLITS,
        {"SDL_gfx": [(0, 4), (64, 10)], PEER: TWICE_FROM_64},
        apart=RESAMPLED,
    ),
    Job("scale(), halved", BLITS, {"SDL_gfx": [(320, 4)], PEER: TWICE_FROM_64}, apart=RESAMPLED),
    Job(
        "rotoscale(), enlarged 2 times",
        BLITS,
        {"SDL_gfx": [(64, 3.5)], PEER: TWICE_FROM_64},
        apart=RESAMPLED,
    ),
    Job(
        "rotoscale(), halved",
        BLITS,
        {"SDL_gfx": [(64, 1.8)], PEER: [(0, 0.95), (64, 1.0), (320, 2)]},
        apart=RESAMPLED,
    ),
    Job(
        "rotoscale(), turned by 30 degrees",
        BLITS,
        {"SDL_gfx": [(0, 1.5), (64, 5)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job(
        "rotoscale(), turned by 90 degrees",
        BLITS,
        {"SDL_gfx": [(0, 1.5), (64, 3.5)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job("sprite_scalecache_add()", [(256, 256)], {BASE: [(0, 3)], PEER: AS_FAST}, apart=RESAMPLED),
    Job(
        "flip_h()",
        FILLS,
        {
            "scalar": [(64, 2.8), (320, 2.4)],
            "roof": [(640, 0.72)],
            "pygame": [(64, 2.2)],
            PEER: AS_FAST,
        },
        kernel="flip_h",
    ),
    Job(
        "flip_vh()",
        FILLS,
        {
            "scalar": [(64, 2.8), (320, 2.4)],
            "roof": [(640, 0.72)],
            "pygame": [(64, 2.2)],
            PEER: AS_FAST,
        },
        kernel="flip_vh",
        apart=None,  # ours is a row too low
    ),
    Job(
        "flip_v()",
        FILLS,
        {"roof": [(640, 0.85)], "pygame": [(64, 0.95)], PEER: AS_FAST},
        kernel="flip_v",
    ),
    # Fills and gradients.
    Job(
        "fill_translucent()",
        FILLS,
        {
            BASE: ARITHMETIC,
            "scalar": [(64, 5), (320, 8)],
            "roof": [(640, 0.55)],
            "pygame": [(64, 6), (320, 11)],
            PEER: AS_FAST,
        },
        kernel="translucent fill",
        apart=BLENDED,
    ),
    Job(
        "fast_draw_gradient_v()",
        FILLS,
        {
            BASE: ARITHMETIC,
            "scalar": [(64, 4), (320, 7.5)],
            "roof": [(640, 0.53)],
            "pygame": [(64, 13), (320, 20)],
            PEER: AS_FAST,
        },
        kernel="gradient_v",
        apart=BLENDED,
    ),
    Job(
        "fast_draw_gradients_vcvvc()",
        FILLS,
        {
            BASE: ARITHMETIC,
            "scalar": [(64, 2.8), (320, 6.5)],
            "roof": [(640, 0.47)],
            "pygame": [(64, 30), (320, 80)],
            PEER: AS_FAST,
        },
        kernel="vcvvc",
        apart=None,  # the layers are laid over each other there, here they are summed
    ),
    Job(
        "fast_draw_rectangle_color(), downwards",
        FILLS,
        {
            "scalar": [(64, 2.6), (320, 4.2)],
            "roof": [(640, 0.9)],
            "pygame": [(64, 16), (320, 11), (1920, 5)],
            PEER: AS_FAST,
        },
        kernel="opaque vertical gradient",
        apart=WITHOUT_EDGE,
    ),
    Job(
        "fast_draw_rectangle_color(), across",
        FILLS,
        {
            "scalar": [(320, 8), (640, 25)],
            "roof": [(640, 0.8)],
            "pygame": [(64, 15), (320, 22)],
            PEER: AS_FAST,
        },
        kernel="horizontal gradient",
        apart=WITHOUT_EDGE,
    ),
    Job(
        "Translucentify(), alpha in the top byte",
        FILLS,
        {
            "scalar": [(64, 7), (320, 6)],
            "roof": [(640, 0.75)],
            "pygame": [(64, 70)],
            PEER: AS_FAST,
        },
        kernel="Translucentify, top byte",
        apart=BLENDED,
    ),
    Job(
        "Translucentify(), alpha in the low byte",
        FILLS,
        {"scalar": [(64, 7), (320, 6)], "roof": [(640, 0.75)], "pygame": [(64, 70)]},
        kernel="Translucentify, low byte",
        apart=BLENDED,
    ),
    Job(
        "Tint_Surface()",
        FILLS,
        {
            "scalar": [(64, 25), (320, 17)],
            "roof": [(640, 0.88)],
            "pygame": [(64, 50)],
            PEER: AS_FAST,
        },
        kernel="Tint_Surface",
    ),
    Job(
        "satusub()",
        FILLS,
        {
            "scalar": [(64, 9)],
            "roof": [(640, 0.45)],
            "pygame": [(64, 36), (320, 40)],
            PEER: AS_FAST,
        },
        kernel="satusub",
    ),
    # Frames.
    Job("Room_Draw(), 2,000 opaque tiles", [TILE], {"bare SDL loop": [], PEER: AS_FAST}),
    Job(
        "Room_Draw(), 2,000 colour-keyed tiles",
        [TILE],
        {"bare SDL loop": [(0, 8)], PEER: [(0, 2)]},
    ),
    Job(
        "Room_Draw(), 2,000 opaque tiles and 500 objects",
        [TILE],
        {"bare SDL loop": [(0, 1 / 1.1)], "pygame": [(0, 2.2)]},
    ),
    Job(
        "Room_Draw(), a view with a scaled background",
        [LARGE],
        {BASE: [(0, 7)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job(
        "Room_Draw(), against scaling onto the display",
        [LARGE],
        {PEER: []},
        apart=RESAMPLED,
    ),
    Job("Room_Draw(), 500 scripted instances", [TILE], {BASE: [(0, 1.5)]}),
    # Particles.
    Job(
        "particle drawn from its cache",
        [TILE],
        {"Surface.blit()": [(0, 1 / 1.15)]},
    ),
    Job(
        "particle drawn from its cache, turned",
        [TILE, SMALL],
        {BASE: [(0, 1.8)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job("particle outside of the display", [TILE], {"call with 7 ints": [(0, 1 / 1.25)]}),
    Job("particle added", [TILE], {"Surface.blit() with BLEND_ADD": [(0, 7.5)]}),
    Job("CParticle_step()", [TILE], {"call with an object": [(0, 1 / 1.3)]}),
    Job(
        "particle, picture made anew",
        [SMALL],
        {BASE: [(0, 3)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job(
        "particle, picture made anew, turned",
        [TILE, SMALL],
        {BASE: [(0, 1.6), (64, 3)], PEER: AS_FAST},
        apart=RESAMPLED,
    ),
    Job(
        "5,000 particles, against a class",
        [TILE],
        {"pygame": [(0, 6)], PEER: [(0, 2.5)]},
        apart=BLENDED,
    ),
    Job(
        "5,000 particles, against bare lists", [TILE], {"pygame": [(0, 2)], PEER: []}, apart=BLENDED
    ),
    # Variables and records.
    Job("GMVar, v + 1", [()], {"plain class": [(0, 5)], "int": [(0, 1 / 2.2)]}),
    Job("GMVar, v - 1", [()], {BASE: [(0, 1.25)], "plain class": [], "int": []}),
    Job("GMVar, v * 2", [()], {BASE: [(0, 2.3)], "plain class": [], "int": []}),
    Job("GMVar, v == 5", [()], {BASE: [(0, 1.35)], "plain class": [], "int": []}),
    Job("GMVar, v < 3", [()], {"plain class": [(0, 5)], "int": []}),
    Job("GMVar, v += 1", [()], {"plain class": [(0, 5)], "int": []}),
    Job("GMVar, v[3]", [()], {"plain class": [(0, 5)]}),
    Job("GMVar, v[3, 4]", [()], {"plain class": [(0, 5)]}),
    Job("GMVar, v[3, 4] = 5", [()], {"plain class": [(0, 5)]}),
    Job("GMVar, make(5)", [()], {BASE: [(0, 1.3)], "plain class": []}),
    Job("InstanceList.append(), by id", [()], {"list subclass": [(0, 5)]}),
    Job("InstanceList.append(), an instance", [()], {"list subclass": []}),
    Job("int(background)", [()], {BASE: [(0, 1.2)]}),
    Job("int(sprite)", [()], {BASE: [(0, 1.5)]}),
]
