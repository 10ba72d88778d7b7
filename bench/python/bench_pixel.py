"""How fast the pixel operations are: a table on standard output and as a picture.

    python bench/python/bench_pixel.py [--quick] [--rounds N] [--picture PATH]

needs the built module on PYTHONPATH and the build directory (with benches) in LARKSPUR_BUILD_DIR;
script/bench pixel sees to both. Figures are ratios of processor times, so that other work on the
machine counts little, taken in turns within one process:

    x scalar  the plain formula built at -O2 without vectors, by the kernel
    roof      an in-place XOR of the buffer (memcpy for flips, memset for opaque fills), by the
              kernel: the share of what the machine's memory allows
    x pygame  the best that pygame offers for the same picture, by the call
    x gfx     the bare SDL_gfx function, by the call that wraps it

Each is a median with its quartiles; a target stands behind the row's name, and a star where a
median falls short of it.
"""

from __future__ import division, print_function

import argparse
import ctypes
import json
import os
import random
import subprocess
import sys
import time

os.environ.setdefault("SDL_VIDEODRIVER", "dummy")

import larkspur
import measuring
import numpy
import pygame
from measuring import surface_address

SIZES = [(64, 64), (320, 240), (640, 480), (1024, 768), (1920, 1080), (2048, 1536)]
SECONDS_PER_SAMPLE = 0.015
ANGLE = 30.0

library = ctypes.PyDLL(larkspur.__file__)


class Row(object):
    """A line of the table.

    name     of the operation; of the kernel in bench_pixel where there is no `kernel`
    scalar, roof, pygame, gfx
             targets: pairs of (least width, ratio), of which the last that fits counts; None for
             no target
    calls    makes from (width, height) our call and the others to compare it with: a function
             that takes a number of rounds and returns seconds, and a dictionary of such
    """

    def __init__(
        self, name, kernel=None, scalar=None, roof=None, pygame=None, gfx=None, calls=None
    ):
        self.name = name
        self.kernel = kernel or name
        self.targets = {"x scalar": scalar, "roof": roof, "x pygame": pygame, "x gfx": gfx}
        self.calls = calls
        self.others = "x gfx" if gfx else "x pygame"


def target_at(targets, width):
    fitting = [ratio for least, ratio in targets or () if width >= least]
    return fitting[-1] if fitting else None


# ---- calls


def in_python(function, *arguments):
    """A Python call, looped in Python."""

    def seconds(rounds):
        numbers = range(rounds)
        begin = time.clock()
        for _ in numbers:
            function(*arguments)
        return time.clock() - begin

    return seconds


def build_path(*parts):
    directory = os.environ.get("LARKSPUR_BUILD_DIR")
    if not directory:
        sys.exit("LARKSPUR_BUILD_DIR must name the build directory; script/bench sets it")
    path = os.path.join(directory, *parts)
    if not os.path.exists(path):
        sys.exit("%s is not there: build with -DLARKSPUR_BENCH=ON" % path)
    return path


class NativeLoops(object):
    """The timing loops around native functions, from bench/pixel/calls.cpp."""

    def __init__(self):
        self.loops = ctypes.PyDLL(build_path("bench", "pixel", "bench_calls.so"))

    def __call__(self, loop, kinds, *arguments):
        function = getattr(self.loops, loop)
        function.restype = ctypes.c_double
        function.argtypes = kinds + [ctypes.c_long]
        return lambda rounds: function(*(arguments + (rounds,)))


in_native = NativeLoops()
POINTER, WORD, NUMBER, INTEGER = (ctypes.c_void_p, ctypes.c_uint32, ctypes.c_double, ctypes.c_int)


def exported(name):
    return ctypes.cast(getattr(library, name), ctypes.c_void_p)


XRGB = (0xFF0000, 0xFF00, 0xFF, 0)
ARGB = (0xFF0000, 0xFF00, 0xFF, 0xFF000000)
RGBA = (0xFF000000, 0xFF0000, 0xFF00, 0xFF)


def picture(width, height, flags=0, masks=XRGB):
    surface = pygame.Surface((width, height), flags, 32, masks)
    for y in range(0, height, 8):
        surface.fill((y * 7 % 256, y * 3 % 256, y % 256, 200), (0, y, width - y % width // 2, 5))
    return surface


def fill_calls(width, height):
    surface, twin, third = (picture(width, height) for _ in range(3))
    cover = pygame.Surface((width, height), 0, 32)
    cover.fill((64, 128, 200))
    cover.set_alpha(100)

    def multiply_and_add():
        third.fill((155, 155, 155), None, pygame.BLEND_RGB_MULT)
        third.fill((25, 50, 78), None, pygame.BLEND_RGB_ADD)

    return (
        in_python(larkspur.fill_translucent, surface, 0, 0, width, height, 0x4080C8, 100),
        {
            "blit of a kept translucent Surface": in_python(twin.blit, cover, (0, 0)),
            "fill with BLEND_RGB_MULT, then ADD": in_python(multiply_and_add),
        },
    )


TOP, BOTTOM = (32, 255, 64), (128, 16, 255)  # of every gradient


def gm_colour(colour):
    return colour[0] | colour[1] << 8 | colour[2] << 16


def mixed_colours(first, second, count, share=1.0):
    return [
        tuple(
            int((near * (count - i) + far * i) / count * share) for near, far in zip(first, second)
        )
        for i in range(count)
    ]


def line(colours, upright):
    """A Surface one pixel thick in the given colours."""
    thin = pygame.Surface((1, len(colours)) if upright else (len(colours), 1), 0, 32)
    for i, colour in enumerate(colours):
        thin.set_at((0, i) if upright else (i, 0), colour)
    return thin


def layered_rivals(width, height, gradients, constants, keep):
    """pygame's ways to lay gradients (an opacity each) and colours over a picture, from the colours
    on; none needs what an earlier call left."""
    surface, twin, third = (picture(width, height) for _ in range(3))
    cover = pygame.Surface((width, height), 0, 32)
    column_colours = mixed_colours(TOP, BOTTOM, height)
    sums = mixed_colours(TOP, BOTTOM, height, 1 - keep / 256)
    across = [(0, y, width, 1) for y in range(height)]

    def stretch_and_blit():
        for opacity in gradients:
            pygame.transform.scale(line(column_colours, True), (width, height), cover)
            cover.set_alpha(opacity)
            surface.blit(cover, (0, 0))
        for opacity in constants:
            cover.fill(TOP)
            cover.set_alpha(opacity)
            surface.blit(cover, (0, 0))

    def multiply_and_add_rows():
        third.fill((keep, keep, keep), None, pygame.BLEND_RGB_MULT)
        for place, colour in zip(across, sums):
            third.fill(colour, place, pygame.BLEND_RGB_ADD)

    def row_blits():
        strip = pygame.Surface((width, 1), 0, 32)
        for opacity in gradients:
            strip.set_alpha(opacity)
            for place, colour in zip(across, column_colours):
                strip.fill(colour)
                twin.blit(strip, place)
        for opacity in constants:
            cover.fill(TOP)
            cover.set_alpha(opacity)
            twin.blit(cover, (0, 0))

    return {
        "column stretched, blitted with set_alpha": in_python(stretch_and_blit),
        "fill with BLEND_RGB_MULT, ADD by rows": in_python(multiply_and_add_rows),
        "row filled, blitted with set_alpha": in_python(row_blits),
    }


def gradient_calls(width, height):
    surface = picture(width, height)
    return (
        in_python(
            larkspur.fast_draw_gradient_v,
            surface,
            0,
            0,
            width,
            height,
            gm_colour(TOP),
            gm_colour(BOTTOM),
            100,
        ),
        layered_rivals(width, height, [100], [], 155),
    )


def layers_calls(width, height):
    surface = picture(width, height)
    top, bottom = gm_colour(TOP), gm_colour(BOTTOM)
    return (
        in_python(
            larkspur.fast_draw_gradients_vcvvc,
            surface,
            0,
            0,
            width,
            height,
            top,
            bottom,
            0.2,
            0x203040,
            0.1,
            bottom,
            top,
            0.2,
            top,
            bottom,
            0.1,
            0x402010,
            0.1,
        ),
        layered_rivals(width, height, [50, 50, 25], [25, 25], 106),
    )


def opaque_calls(upright):
    """An opaque gradient over the display; pygame gets the colours worked out."""

    def calls(width, height):
        display, twin, third = (picture(width, height) for _ in range(3))
        larkspur.set_SDL_screen(display)
        first, last = gm_colour(TOP), gm_colour(BOTTOM)
        corners = (first, first, last, last) if upright else (first, last, last, first)
        colours = mixed_colours(TOP, BOTTOM, height if upright else width)
        places = [(0, i, width, 1) if upright else (i, 0, 1, height) for i in range(len(colours))]

        def fill_lines():
            for place, colour in zip(places, colours):
                twin.fill(colour, place)

        def stretch():
            pygame.transform.scale(line(colours, upright), (width, height), third)

        return (
            in_python(
                larkspur.fast_draw_rectangle_color, 0, 0, width, height, *(corners + (1.0, 0))
            ),
            {"fill by lines": in_python(fill_lines), "line stretched": in_python(stretch)},
        )

    return calls


def fading_calls(masks):
    def calls(width, height):
        surface, twin = (picture(width, height, pygame.SRCALPHA, masks) for _ in range(2))
        keep = surface
        loop = in_native(
            "time_fading",
            [POINTER, POINTER, ctypes.c_uint8],
            exported("Translucentify"),
            surface_address(surface),
            200,
        )
        return (
            lambda rounds, keep=keep: loop(rounds),
            {
                "fill with BLEND_RGBA_MULT": in_python(
                    twin.fill, (255, 255, 255, 200), None, pygame.BLEND_RGBA_MULT
                )
            },
        )

    return calls


def tint_calls(width, height):
    surface, twin = (picture(width, height) for _ in range(2))
    loop = in_native(
        "time_tinting",
        [POINTER, POINTER, WORD],
        exported("Tint_Surface"),
        surface_address(surface),
        0xE0F0C0,
    )
    return (
        lambda rounds, keep=surface: loop(rounds),
        {"fill with BLEND_RGB_SUB": in_python(twin.fill, (63, 15, 31), None, pygame.BLEND_RGB_SUB)},
    )


def satusub_calls(width, height):
    surface, twin = (picture(width, height, pygame.SRCALPHA, ARGB) for _ in range(2))
    loop = in_native(
        "time_subtracting",
        [POINTER, POINTER, WORD],
        exported("satusub"),
        surface_address(surface),
        0x20202020,
    )
    return (
        lambda rounds, keep=surface: loop(rounds),
        {
            "fill with BLEND_RGBA_SUB": in_python(
                twin.fill, (32, 32, 32, 32), None, pygame.BLEND_RGBA_SUB
            )
        },
    )


def additive_calls(target_flags, target_masks):
    """A picture with alpha, as a particle is, added to a target of the given format."""

    def calls(width, height):
        source = picture(width, height, pygame.SRCALPHA, ARGB)
        # Bytes of 0 and 255 in no order: whether a sum is cut off stays as unforeseeable in the
        # thousandth call as it is in the first.
        switches = numpy.random.RandomState(1).randint(0, 2, 4 * width * height)
        source.get_buffer().write((switches * 255).astype(numpy.uint8).tostring(), 0)
        # A source that touches the right edge is not drawn.
        surface, twin = (picture(width + 1, height, target_flags, target_masks) for _ in range(2))
        loop = in_native(
            "time_blitting",
            [POINTER, POINTER, POINTER, INTEGER],
            exported("flagged_blit"),
            surface_address(source),
            surface_address(surface),
            1,
        )
        others = {"blit with BLEND_RGBA_ADD": pygame.BLEND_RGBA_ADD}
        if not target_masks[3]:  # nobody sees the fourth byte
            others["blit with BLEND_RGB_ADD"] = pygame.BLEND_RGB_ADD
        return (
            lambda rounds, keep=(source, surface): loop(rounds),
            {
                name: in_python(twin.blit, source, (0, 0), None, flag)
                for name, flag in others.items()
            },
        )

    return calls


def flip_calls(name, across, down):
    def calls(width, height):
        surface = picture(width, height)
        return (
            in_python(getattr(larkspur, name), surface),
            {"transform.flip": in_python(pygame.transform.flip, surface, across, down)},
        )

    return calls


def scale_calls(width, height):
    surface = picture(width, height)
    loop = in_native("time_zoom", [POINTER, NUMBER, NUMBER], surface_address(surface), 1.5, 0.75)
    return (
        in_python(larkspur.scale, surface, 1.5, 0.75),
        {"zoomSurface": lambda rounds, keep=surface: loop(rounds)},
    )


def rotoscale_calls(width, height):
    surface = picture(width, height)
    loop = in_native(
        "time_rotozoom", [POINTER, NUMBER, NUMBER], surface_address(surface), ANGLE, 1.0
    )
    return (
        in_python(larkspur.rotoscale, surface, 1.0, 1.0, ANGLE),
        {"rotozoomSurface": lambda rounds, keep=surface: loop(rounds)},
    )


ROWS = [
    Row(
        "translucent fill",
        scalar=[(64, 5), (320, 8)],
        roof=[(640, 0.55)],
        pygame=[(64, 6), (320, 11)],
        calls=fill_calls,
    ),
    Row(
        "gradient_v",
        scalar=[(64, 4), (320, 7.5)],
        roof=[(640, 0.53)],
        pygame=[(64, 13), (320, 20)],
        calls=gradient_calls,
    ),
    Row(
        "vcvvc",
        scalar=[(64, 2.8), (320, 6.5)],
        roof=[(640, 0.47)],
        pygame=[(64, 30), (320, 80)],
        calls=layers_calls,
    ),
    Row(
        "opaque vertical gradient",
        scalar=[(64, 2.6), (320, 4.2)],
        roof=[(640, 0.9)],
        pygame=[(64, 16), (320, 11), (1920, 5)],
        calls=opaque_calls(True),
    ),
    Row(
        "horizontal gradient",
        scalar=[(320, 8), (640, 25)],
        roof=[(640, 0.8)],
        pygame=[(64, 15), (320, 22)],
        calls=opaque_calls(False),
    ),
    Row(
        "Translucentify, top byte",
        scalar=[(64, 7), (320, 6)],
        roof=[(640, 0.75)],
        pygame=[(64, 70)],
        calls=fading_calls(ARGB),
    ),
    Row(
        "Translucentify, low byte",
        scalar=[(64, 7), (320, 6)],
        roof=[(640, 0.75)],
        pygame=[(64, 70)],
        calls=fading_calls(RGBA),
    ),
    Row(
        "Tint_Surface",
        scalar=[(64, 25), (320, 17)],
        roof=[(640, 0.88)],
        pygame=[(64, 50)],
        calls=tint_calls,
    ),
    Row(
        "satusub",
        scalar=[(64, 9)],
        roof=[(640, 0.45)],
        pygame=[(64, 36), (320, 40)],
        calls=satusub_calls,
    ),
    Row(
        "additive blit",
        scalar=[(64, 9)],
        roof=[(640, 0.45)],
        pygame=[(64, 36), (320, 40)],
        calls=additive_calls(0, XRGB),
    ),
    # pygame has a loop of its own for two formats that are the same.
    Row("additive blit, one format", calls=additive_calls(pygame.SRCALPHA, ARGB)),
    Row(
        "flip_h",
        scalar=[(64, 2.8), (320, 2.4)],
        roof=[(640, 0.72)],
        pygame=[(64, 2.2)],
        calls=flip_calls("flip_h", True, False),
    ),
    Row(
        "flip_vh",
        scalar=[(64, 2.8), (320, 2.4)],
        roof=[(640, 0.72)],
        pygame=[(64, 2.2)],
        calls=flip_calls("flip_vh", True, True),
    ),
    Row("flip_v", roof=[(640, 0.85)], pygame=[(64, 0.95)], calls=flip_calls("flip_v", False, True)),
    Row("flip_v at stalling distance"),
    Row("rotoscale", gfx=[(64, 1 / 1.05)], calls=rotoscale_calls),
    Row("scale", gfx=[(64, 1 / 1.05)], calls=scale_calls),
]


# ---- measuring


def measured_calls(row, size, rounds):
    """Ratio of the best other call to ours, and that call's name; (None, None) without any."""
    ours, others = row.calls(*size)
    runs = [("", ours)] + sorted(others.items())
    repeats = {}
    for name, run in runs:
        run(1)
        repeats[name] = max(1, int(SECONDS_PER_SAMPLE / max(run(3) / 3, 1e-6)))
    times = {name: [] for name, _ in runs}
    for _ in range(rounds):
        random.shuffle(runs)
        for name, run in runs:
            times[name].append(run(repeats[name]) / repeats[name])
    own = times.pop("")
    best = min(times, key=lambda name: measuring.quartiles(times[name])[1])
    return measuring.ratios(times[best], own), best


def measured_kernels(rounds):
    """Times of all kernels: {(kernel, kind, "WxH"): [seconds, ...]}."""
    output = subprocess.check_output(
        [
            build_path("bench", "pixel", "bench_pixel"),
            "--benchmark_format=json",
            "--benchmark_min_time=%g" % SECONDS_PER_SAMPLE,
            "--benchmark_repetitions=%d" % rounds,
            "--benchmark_enable_random_interleaving=true",
        ],
        stderr=open(os.devnull, "w"),
    )
    times = {}
    for run in json.loads(output.decode("ascii"))["benchmarks"]:
        if run["run_type"] == "iteration":
            key = tuple(run["run_name"].split("/"))
            times.setdefault(key, []).append((run["repetition_index"], run["cpu_time"]))
    return {key: [seconds for _, seconds in sorted(runs)] for key, runs in times.items()}


def measured_table(sizes, rounds):
    """Lines of (row, kind, {size: (quartiles)}), and the best calls of pygame by row."""
    print("measuring the kernels ...", file=sys.stderr)
    kernels = measured_kernels(rounds)
    lines, rivals = [], {}
    for row in ROWS:
        by_kind = {"x scalar": {}, "roof": {}, row.others: {}}
        for size in sizes:
            at = "%dx%d" % size
            ours = kernels.get((row.kernel, "ours", at))
            if ours:
                for column, kind in (("x scalar", "scalar"), ("roof", "roof")):
                    by_kind[column][size] = measuring.ratios(kernels[row.kernel, kind, at], ours)
            if row.calls:
                print("measuring %s at %s ..." % (row.name, at), file=sys.stderr)
                by_kind[row.others][size], best = measured_calls(row, size, rounds)
                rivals.setdefault(row.name, {})[size] = best
        for kind in ("x scalar", "roof", row.others):
            if by_kind[kind]:
                lines.append((row, kind, by_kind[kind]))
    return lines, rivals


# ---- showing


def wanted(row, kind):
    """A row's targets as text: "9", or "5/8" with the least width's first."""
    ratios = [ratio for _, ratio in row.targets[kind] or ()]
    return "/".join("%.3g" % ratio for ratio in ratios)


def falls_short(row, kind, size, median):
    target = target_at(row.targets[kind], size[0])
    return target is not None and median < target


def figure(value):
    return "%.2f" % value if value < 10 else "%.1f" % value if value < 100 else "%.0f" % value


def print_table(lines, rivals, sizes):
    head = ["%-27s %-9s %-10s" % ("", "", "target")] + [
        "%21s" % ("%d x %d" % size) for size in sizes
    ]
    print(" ".join(head))
    for row, kind, ratios in lines:
        cells = []
        for size in sizes:
            if size not in ratios:
                cells.append("")
                continue
            low, median, high = ratios[size]
            cells.append(
                "%s%s (%s-%s)"
                % (
                    "*" if falls_short(row, kind, size, median) else "",
                    figure(median),
                    figure(low),
                    figure(high),
                )
            )
        print(
            " ".join(
                ["%-27s %-9s %-10s" % (row.name, kind, wanted(row, kind))]
                + ["%21s" % cell for cell in cells]
            )
        )
    print("\nThe best calls of pygame, by size:")
    for row, _, _ in [line for line in lines if line[1] == "x pygame"]:
        names = [rivals[row.name][size] for size in sizes]
        for name in sorted(set(names)):
            places = ["%dx%d" % size for size, best in zip(sizes, names) if best == name]
            print("  %-26s %s: %s" % (row.name, name, ", ".join(places)))


INK, PAPER, FAINT = (30, 30, 40), (255, 255, 255), (225, 225, 230)
GOOD, SHORT, PLAIN = (70, 140, 90), (200, 90, 60), (110, 130, 170)
LINE_PIXELS, NAME_PIXELS, BAR_PIXELS, PAD = 34, 330, 150, 10


def draw_table(lines, sizes, path):
    """Bars of the medians; each line's scale ends at its largest figure."""
    pygame.font.init()
    font = pygame.font.Font(None, 20)
    width = NAME_PIXELS + len(sizes) * (BAR_PIXELS + PAD)
    canvas = pygame.Surface((width, LINE_PIXELS * (len(lines) + 1) + PAD), 0, 32)
    canvas.fill(PAPER)

    def write(text, x, y):
        canvas.blit(font.render(text, True, INK), (x, y))

    write("median ratios; mark: target", PAD, PAD)
    for column, size in enumerate(sizes):
        write("%d x %d" % size, NAME_PIXELS + column * (BAR_PIXELS + PAD), PAD)
    for index, (row, kind, ratios) in enumerate(lines):
        top = LINE_PIXELS * (index + 1) + PAD
        write("%s, %s" % (row.name, kind), PAD, top + 6)
        marks = [target_at(row.targets[kind], size[0]) or 0 for size in sizes]
        full = max([ratios[size][1] for size in ratios] + marks)
        for column, (size, mark) in enumerate(zip(sizes, marks)):
            if size not in ratios:
                continue
            left = NAME_PIXELS + column * (BAR_PIXELS + PAD)
            median = ratios[size][1]
            colour = PLAIN if not mark else SHORT if median < mark else GOOD
            canvas.fill(FAINT, (left, top, BAR_PIXELS, LINE_PIXELS - 8))
            canvas.fill(colour, (left, top, int(BAR_PIXELS * median / full), LINE_PIXELS - 8))
            if mark:
                canvas.fill(
                    INK, (left + int((BAR_PIXELS - 2) * mark / full), top - 2, 2, LINE_PIXELS - 4)
                )
            write(figure(median), left + 4, top + 6)
    directory = os.path.dirname(path)
    if not os.path.isdir(directory):
        os.makedirs(directory)
    pygame.image.save(canvas, path)


def keep_freed_memory():
    """Lets the allocator keep what is freed: results of transforms are as large as pictures, and
    whether their pages are returned and fetched anew would depend on what else was allocated."""
    trim_threshold, mmap_threshold, plenty = -1, -3, 1 << 30
    libc = ctypes.CDLL(None)
    for option in (trim_threshold, mmap_threshold):
        libc.mallopt(option, plenty)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--quick", action="store_true", help="two sizes, few rounds")
    parser.add_argument("--rounds", type=int, default=11, help="samples of each figure")
    parser.add_argument(
        "--picture",
        help="where the picture goes (default: build/bench/pixel.png beside the sources)",
    )
    options = parser.parse_args()
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    path = options.picture or os.path.join(root, "build", "bench", "pixel.png")
    sizes, rounds = (SIZES[1:3], 3) if options.quick else (SIZES, options.rounds)

    keep_freed_memory()
    pygame.display.init()
    larkspur.set_SDL_screen(pygame.display.set_mode((640, 480), 0, 32))
    lines, rivals = measured_table(sizes, rounds)
    print_table(lines, rivals, sizes)
    draw_table(lines, sizes, path)
    print("\npicture: %s" % path)


if __name__ == "__main__":
    main()
