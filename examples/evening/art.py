"""The demo's pictures, drawn by code: each function returns surfaces for the display.

Everything is painted four times as large and reduced, which smooths the edges.
"""

import math
import random

import pygame

OVERSIZE = 4

SNOW, SNOW_SHADE = (226, 232, 248), (172, 180, 214)
WOOD, WOOD_DARK, WOOD_LIGHT = (96, 64, 48), (62, 42, 38), (132, 92, 62)
PINE, PINE_DARK, PINE_LIGHT = (34, 66, 74), (24, 46, 60), (52, 92, 92)
WINDOW, WINDOW_EDGE = (255, 206, 112), (255, 240, 190)
STONE, STONE_DARK, STONE_LIGHT = (112, 110, 128), (78, 76, 98), (150, 148, 164)


class Canvas(object):
    """A transparent picture to paint on in its final coordinates (floats welcome).

    Where it stays transparent it has the colour `matte`, which keeps reduced edges clean.
    """

    def __init__(self, width, height, matte=(30, 28, 50)):
        self.size = width, height
        self.surface = pygame.Surface((width * OVERSIZE, height * OVERSIZE), pygame.SRCALPHA, 32)
        self.surface.fill(tuple(matte) + (0,))

    def polygon(self, color, points):
        pygame.draw.polygon(self.surface, color, [_grown(point) for point in points])

    def rect(self, color, x, y, width, height):
        self.surface.fill(color, pygame.Rect(_grown((x, y)), _grown((width, height))))

    def circle(self, color, x, y, radius):
        pygame.draw.circle(self.surface, color, _grown((x, y)), max(1, int(radius * OVERSIZE)))

    def ellipse(self, color, x, y, width, height):
        pygame.draw.ellipse(
            self.surface, color, pygame.Rect(_grown((x, y)), _grown((width, height)))
        )

    def line(self, color, start, end, width):
        """A thick line with round ends."""
        (x1, y1), (x2, y2) = start, end
        length = math.hypot(x2 - x1, y2 - y1) or 1.0
        dx, dy = (y1 - y2) / length * width / 2.0, (x2 - x1) / length * width / 2.0
        self.polygon(
            color, [(x1 + dx, y1 + dy), (x2 + dx, y2 + dy), (x2 - dx, y2 - dy), (x1 - dx, y1 - dy)]
        )
        self.circle(color, x1, y1, width / 2.0)
        self.circle(color, x2, y2, width / 2.0)

    def finish(self, opaque=False):
        """The reduced picture in the display's format, with alpha unless it is opaque."""
        small = pygame.transform.smoothscale(self.surface, self.size)
        return small.convert() if opaque else small.convert_alpha()


def _grown(point):
    return int(round(point[0] * OVERSIZE)), int(round(point[1] * OVERSIZE))


def mixed(first, second, share):
    """The colour `share` (0.0 to 1.0) of the way from first to second."""
    return (
        int(first[0] + (second[0] - first[0]) * share),
        int(first[1] + (second[1] - first[1]) * share),
        int(first[2] + (second[2] - first[2]) * share),
    )


def run_length_encoded(surface):
    """The same picture, blitted faster where it is transparent or solid over long runs."""
    surface.set_alpha(255, pygame.RLEACCEL)
    return surface


# --- The evening's backgrounds -------------------------------------------------------------------


def sky(width, height):
    """Night blue above, the last light at the horizon, stars between."""
    stops = (
        (0.0, (10, 12, 38)),
        (0.32, (36, 30, 82)),
        (0.54, (112, 62, 116)),
        (0.70, (222, 112, 98)),
        (0.82, (250, 178, 112)),
        (1.0, (255, 208, 150)),
    )
    surface = pygame.Surface((width, height), pygame.SRCALPHA, 32)
    for y in range(height):
        share = y / float(height - 1)
        for (low, first), (high, second) in zip(stops, stops[1:]):
            if share <= high:
                surface.fill(mixed(first, second, (share - low) / (high - low)), (0, y, width, 1))
                break
    rng = random.Random(4)
    for _ in range(130):
        x, y = rng.randrange(width), int(rng.random() ** 1.5 * height * 0.55)
        glow = rng.choice((70, 100, 150, 220))
        base = surface.get_at((x, y))
        surface.set_at((x, y), mixed(base[:3], (255, 250, 235), glow / 255.0))
        if glow > 200:
            for dx, dy in ((1, 0), (-1, 0), (0, 1), (0, -1)):
                surface.set_at(
                    ((x + dx) % width, max(0, y + dy)), mixed(base[:3], (255, 250, 235), 0.25)
                )
    return surface.convert()


# Offsets and sizes in radii.
MOON_SPOTS = (
    (-0.35, -0.25, 0.42),
    (0.25, -0.42, 0.30),
    (0.05, 0.28, 0.46),
    (-0.45, 0.4, 0.25),
    (0.55, 0.2, 0.28),
)


def moon(diameter):
    """A full moon in its haze."""
    surface = pygame.Surface((diameter, diameter), pygame.SRCALPHA, 32)
    middle, disk = diameter / 2.0, diameter * 0.2
    for y in range(diameter):
        for x in range(diameter):
            distance = math.hypot(x - middle + 0.5, y - middle + 0.5)
            haze = max(0.0, 1.0 - distance / middle) ** 2.4 * 0.55
            solid = min(1.0, max(0.0, disk - distance + 0.5))
            color = mixed((255, 226, 190), (255, 248, 232), solid)
            if solid:
                dark = sum(
                    max(
                        0.0,
                        1.0
                        - math.hypot(x - middle - dx * disk, y - middle - dy * disk)
                        / (size * disk),
                    )
                    for dx, dy, size in MOON_SPOTS
                )
                color = mixed(color, (206, 188, 178), min(1.0, dark) * 0.6)
            surface.set_at((x, y), color + (int(255 * max(haze, solid)),))
    return surface.convert_alpha()


def clouds(width, height):
    """Thin evening clouds that join their own other end."""
    rng = random.Random(11)
    surface = pygame.Surface((width, height), pygame.SRCALPHA, 32)
    surface.fill((236, 170, 160, 0))
    for _ in range(15):
        cx, cy = rng.randrange(width), rng.randrange(30, height - 30)
        for _ in range(22):
            x, y = cx + rng.gauss(0, 70), cy + rng.gauss(0, 5)
            w, h = rng.randrange(60, 150), rng.randrange(5, 13)
            puff = pygame.Surface((w, h), pygame.SRCALPHA, 32)
            puff.fill((236, 170, 160, 0))
            pygame.draw.ellipse(
                puff,
                mixed((190, 130, 160), (255, 206, 176), rng.random()) + (rng.randrange(14, 34),),
                puff.get_rect(),
            )
            for shift in (-width, 0, width):
                surface.blit(puff, (int(x - w / 2) + shift, int(y - h / 2)))
    # A round trip through half the size melts the edges.
    small = pygame.transform.smoothscale(surface, (width // 3, height // 3))
    return pygame.transform.smoothscale(small, (width, height)).convert_alpha()


def _ridge(width, height, seed, waves, base):
    """Heights of a ridge for x from 0 to width, the same at both ends."""
    rng = random.Random(seed)
    parts = [(n, rng.uniform(0.4, 1.0) / n**0.9, rng.uniform(0, 6.28)) for n in waves]
    values = [
        sum(a * math.sin(2 * math.pi * n * x / width + p) for n, a, p in parts)
        for x in range(width + 1)
    ]
    low, high = min(values), max(values)
    return [height - base - (value - low) / (high - low) * (height - base) for value in values]


def mountains(width, height):
    """Far peaks with snow on their sunset side."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA, 32)
    surface.fill((118, 96, 146, 0))
    ridge = _ridge(width, height - 6, 21, (2, 3, 5, 8, 13, 21, 55), 70)
    bodies = {}
    for x in range(width):
        top = int(ridge[x])
        if top not in bodies:
            bodies[top] = _mountain_body(height - top)
        surface.blit(bodies[top], (x, top))
        slope = ridge[min(x + 3, width)] - ridge[max(x - 3, 0)]
        lit = (226, 190, 204) if slope > 0 else (160, 146, 196)
        cap = int(12 + 26 * max(0.0, 1.0 - top / (height * 0.6)) + 4 * math.sin(x * 0.31))
        for y in range(top, min(top + cap, height)):
            body = surface.get_at((x, y))[:3]
            surface.set_at((x, y), mixed(lit, body, (y - top) / float(cap)))
        cover = 1.0 - (ridge[x] - top)
        surface.set_at((x, top), surface.get_at((x, top))[:3] + (int(255 * cover),))
    return run_length_encoded(surface.convert_alpha())


def _mountain_body(height):
    """A column of rock, one pixel wide and opaque."""
    column = pygame.Surface((1, height), 0, 32)
    for y in range(height):
        column.set_at((0, y), mixed((92, 80, 136), (168, 116, 148), y / float(height)))
    return column


def hills(width, height, seed, near):
    """Wooded hills; the nearer ones are darker and their trees larger."""
    top, foot = ((40, 40, 78), (58, 56, 98)) if near else ((72, 62, 112), (112, 88, 132))
    canvas = Canvas(width, height, top)
    ridge = [y + 24 for y in _ridge(width, height - 24, seed, (1, 2, 3, 5), 60)]
    canvas.polygon(
        mixed(top, foot, 0.5),
        [(0, height)] + [(x, ridge[x] + 22) for x in range(0, width + 1, 4)] + [(width, height)],
    )
    rng = random.Random(seed)
    step = 9 if near else 6
    for x in range(0, width, step):
        size = rng.uniform(22, 46) if near else rng.uniform(12, 24)
        color = mixed(top, foot, rng.random() * 0.6)
        for shift in (-width, 0, width):
            _tree_shape(canvas, color, x + shift, ridge[x] + 26 + rng.uniform(0, 8), size)
    for row in range(4):
        band = (
            [(0, height)]
            + [
                (x, ridge[x] + 44 + row * 26 + 6 * math.sin(x * 0.02 + row))
                for x in range(0, width + 1, 4)
            ]
            + [(width, height)]
        )
        canvas.polygon(mixed(mixed(top, foot, 0.7), (150, 140, 186), 0.10 * (row + 1)), band)
    return run_length_encoded(canvas.finish())


def _tree_shape(canvas, color, x, bottom, size):
    for tier in range(3):
        half, y = size * (0.16 + 0.09 * tier), bottom - size + size * 0.27 * tier
        canvas.polygon(color, [(x - half, y + size * 0.46), (x, y), (x + half, y + size * 0.46)])


def ground(width, height):
    """Trodden snow that joins its own other end."""
    canvas = Canvas(width, height, SNOW)
    rng = random.Random(8)
    crest = [
        5
        + 2.4 * math.sin(2 * math.pi * 3 * x / width)
        + 1.6 * math.sin(2 * math.pi * 7 * x / width + 1)
        for x in range(width + 1)
    ]
    for band, color in (
        (0, SNOW),
        (7, (208, 214, 238)),
        (20, (182, 188, 222)),
        (38, (148, 152, 196)),
        (60, (112, 114, 164)),
    ):
        canvas.polygon(
            color,
            [(0, height)]
            + [
                (x, crest[x] + band * (1 + 0.12 * math.sin(2 * math.pi * 2 * x / width + band)))
                for x in range(0, width + 1, 4)
            ]
            + [(width, height)],
        )
    for _ in range(60):
        x, y = rng.randrange(10, width - 20), rng.randrange(12, height - 6)
        canvas.ellipse(
            mixed(SNOW_SHADE, (104, 106, 158), y / float(height)), x, y, rng.randrange(5, 14), 2.2
        )
    for _ in range(50):
        x, y = rng.randrange(4, width - 4), rng.randrange(8, 30)
        canvas.circle((248, 250, 255), x, y, 0.7)
    return run_length_encoded(canvas.finish())


# --- The evening's things ------------------------------------------------------------------------


def pine(seed):
    """A snow-laden tree, 110 x 170."""
    rng = random.Random(seed)
    canvas = Canvas(110, 170, PINE_DARK)
    canvas.rect(WOOD_DARK, 50, 140, 10, 30)
    canvas.rect(WOOD, 50, 140, 4, 30)
    for tier in range(5):
        top, bottom = 6 + tier * 27, 46 + tier * 28
        half = 15 + tier * 9.2
        canvas.polygon(
            PINE_DARK,
            [
                (55 - half, bottom),
                (55, top),
                (55 + half, bottom),
                (55 + half * 0.5, bottom - 5),
                (55, bottom + 3),
                (55 - half * 0.5, bottom - 5),
            ],
        )
        canvas.polygon(PINE, [(55 - half, bottom), (55, top), (55 + half * 0.25, bottom - 2)])
        canvas.polygon(
            PINE_LIGHT, [(55 - half, bottom), (55 - 2, top + 8), (55 - half * 0.45, bottom - 6)]
        )
        snow = [(55 - half * 0.72, bottom - 11), (55, top), (55 + half * 0.66, bottom - 12)]
        teeth = [
            (55 + half * share, bottom - 12 - rng.uniform(4, 13) * (1 - abs(share)))
            for share in (0.4, 0.15, -0.1, -0.4)
        ]
        canvas.polygon(SNOW_SHADE, snow + teeth)
        canvas.polygon(SNOW, [snow[0], (55, top)] + [(x - 3, y - 2) for x, y in teeth[1:]])
    return canvas.finish()


def house(seed, wall):
    """A cottage with lit windows, 230 x 180; its chimney's mouth is at (168, 14)."""
    rng = random.Random(seed)
    canvas = Canvas(230, 180, WOOD_DARK)
    dark, light = mixed(wall, (20, 16, 40), 0.45), mixed(wall, (255, 220, 190), 0.18)
    canvas.rect(STONE_DARK, 154, 18, 28, 60)
    canvas.rect(STONE, 154, 18, 18, 60)
    for row in range(5):
        canvas.rect(STONE_DARK, 154 + (row % 2) * 8, 26 + row * 10, 10, 1.4)
    canvas.rect(SNOW, 151, 13, 34, 7)
    canvas.rect(wall, 28, 86, 174, 94)
    canvas.rect(dark, 28, 86, 174, 12)
    for plank in range(9):
        canvas.rect(mixed(wall, dark, 0.5), 28, 104 + plank * 9, 174, 1.4)
        canvas.rect(light, 28, 105.4 + plank * 9, 174, 0.8)
    canvas.rect(dark, 190, 86, 12, 94)
    canvas.polygon(dark, [(8, 98), (60, 34), (170, 34), (222, 98)])
    canvas.polygon(
        SNOW_SHADE,
        [
            (4, 98),
            (58, 28),
            (172, 28),
            (226, 98),
            (212, 100),
            (190, 92),
            (166, 99),
            (140, 92),
            (110, 99),
            (80, 92),
            (52, 99),
            (26, 93),
        ],
    )
    canvas.polygon(
        SNOW, [(4, 96), (58, 26), (172, 26), (204, 66), (170, 58), (120, 66), (80, 58), (44, 70)]
    )
    canvas.rect(WOOD_DARK, 100, 122, 34, 58)
    canvas.rect(WOOD, 103, 125, 28, 55)
    canvas.rect(WOOD_LIGHT, 106, 128, 9, 50)
    canvas.circle((236, 190, 96), 127, 154, 2)
    for x in (44, 152):
        canvas.rect(WOOD_DARK, x - 3, 117, 38, 36)
        canvas.rect(WINDOW, x, 120, 32, 30)
        canvas.rect(WINDOW_EDGE, x + 3, 123, 12, 11)
        canvas.rect(WOOD_DARK, x + 15, 120, 2.4, 30)
        canvas.rect(WOOD_DARK, x, 134, 32, 2.4)
        canvas.rect(SNOW, x - 4, 150, 40, 4)
    for x in range(20, 212, 12):
        canvas.polygon(SNOW, [(x, 95), (x + 3, 97 + rng.uniform(6, 13)), (x + 6, 95)])
    canvas.ellipse(SNOW, 12, 168, 206, 20)
    return canvas.finish()


def lamp():
    """A street lamp, 30 x 124; its light is at (15, 20)."""
    canvas = Canvas(30, 124, WOOD_DARK)
    canvas.rect((38, 38, 58), 13, 34, 4.5, 88)
    canvas.rect((70, 70, 98), 13, 34, 1.5, 88)
    canvas.rect((38, 38, 58), 9, 114, 12, 8)
    canvas.polygon((38, 38, 58), [(6, 12), (24, 12), (21, 35), (9, 35)])
    canvas.polygon(WINDOW, [(8.5, 14), (21.5, 14), (19, 32), (11, 32)])
    canvas.polygon(WINDOW_EDGE, [(12, 17), (18, 17), (17, 29), (13, 29)])
    canvas.polygon(SNOW, [(4, 13), (15, 3), (26, 13)])
    canvas.ellipse(SNOW, 4, 116, 22, 8)
    return canvas.finish()


def torch():
    """A torch on a post, 16 x 64; it burns at (8, 4)."""
    canvas = Canvas(16, 64, WOOD_DARK)
    canvas.polygon(WOOD, [(6, 8), (10, 8), (9.4, 64), (6.6, 64)])
    canvas.polygon(WOOD_LIGHT, [(6, 8), (7.4, 8), (7.4, 64), (6.6, 64)])
    canvas.polygon((54, 48, 62), [(3, 3), (13, 3), (11, 14), (5, 14)])
    canvas.polygon((90, 84, 100), [(3, 3), (6, 3), (6.5, 14), (5, 14)])
    return canvas.finish()


def campfire():
    """Logs in a ring of stones, 76 x 30."""
    canvas = Canvas(76, 30, WOOD_DARK)
    for start, end in (((14, 24), (56, 8)), ((62, 24), (20, 8)), ((24, 26), (40, 4))):
        canvas.line(WOOD_DARK, start, end, 8)
        canvas.line(WOOD, (start[0], start[1] - 1), (end[0], end[1] - 1), 5)
    for x, size in ((2, 14), (14, 12), (26, 13), (39, 12), (50, 13), (61, 14)):
        canvas.ellipse(STONE_DARK, x, 18, size, 12)
        canvas.ellipse(STONE, x + 1, 18, size - 3, 8)
        canvas.ellipse(STONE_LIGHT, x + 2, 18, size - 7, 4)
    return canvas.finish()


def crate():
    """A wooden box, 44 x 44."""
    canvas = Canvas(44, 44, WOOD_DARK)
    canvas.rect(WOOD_DARK, 0, 0, 44, 44)
    canvas.rect(WOOD, 2, 2, 40, 40)
    for row in range(4):
        canvas.rect(WOOD_DARK, 2, 11 + row * 10, 40, 1.2)
    canvas.line(WOOD_LIGHT, (7, 37), (37, 7), 6)
    for x, y, width, height in ((2, 2, 40, 6), (2, 36, 40, 6), (2, 2, 6, 40), (36, 2, 6, 40)):
        canvas.rect(WOOD_LIGHT, x, y, width, height)
    canvas.rect(SNOW, 0, 0, 44, 4)
    canvas.ellipse(SNOW, 4, -2, 20, 9)
    return canvas.finish()


def ledge():
    """A footbridge plank to stand on, 140 x 22."""
    canvas = Canvas(140, 22, WOOD_DARK)
    canvas.rect(WOOD_DARK, 0, 4, 140, 16)
    canvas.rect(WOOD, 0, 6, 140, 8)
    for x in range(0, 140, 20):
        canvas.rect(WOOD_DARK, x, 4, 1.6, 16)
        canvas.rect(WOOD_LIGHT, x + 2, 7, 14, 1.4)
    canvas.rect(SNOW, 0, 2, 140, 4)
    for x in range(0, 136, 14):
        canvas.ellipse(SNOW, x, 0, 18, 8)
    return canvas.finish()


def snowman():
    """A snowman, 50 x 84."""
    canvas = Canvas(50, 84, SNOW_SHADE)
    for y, radius in ((62, 21), (36, 15)):
        canvas.circle(SNOW_SHADE, 25, y, radius)
        canvas.circle(SNOW, 23, y - 1.5, radius - 2.5)
    canvas.circle(SNOW_SHADE, 25, 19, 10)
    canvas.circle(SNOW, 24, 18, 8.5)
    canvas.rect((40, 36, 56), 15, 9, 20, 3)
    canvas.rect((40, 36, 56), 18, 0, 14, 10)
    canvas.rect((178, 60, 64), 18, 7, 14, 2.6)
    canvas.circle((30, 28, 44), 21, 17, 1.3)
    canvas.circle((30, 28, 44), 28, 17, 1.3)
    canvas.polygon((240, 132, 52), [(24.5, 19), (35, 21.5), (24.5, 22)])
    canvas.rect((178, 60, 64), 16, 26, 18, 4)
    canvas.rect((178, 60, 64), 29, 28, 5, 12)
    for y in (38, 45, 60):
        canvas.circle((30, 28, 44), 25, y, 1.4)
    canvas.line(WOOD_DARK, (11, 38), (1, 28), 1.8)
    canvas.line(WOOD_DARK, (39, 38), (49, 30), 1.8)
    return canvas.finish()


def gate():
    """The archway to the garden, 96 x 128."""
    canvas = Canvas(96, 128, STONE_DARK)
    canvas.rect(STONE_DARK, 4, 36, 88, 92)
    canvas.circle(STONE_DARK, 48, 48, 44)
    rng = random.Random(3)
    for row in range(14):
        for column in range(7):
            x, y = 6 + column * 13 - (row % 2) * 6, 8 + row * 9
            if math.hypot(x + 6 - 48, min(0, y + 4 - 48)) < 41 and 2 < x < 84:
                canvas.rect(mixed(STONE_DARK, STONE_LIGHT, rng.random() * 0.8), x, y, 11.4, 7.6)
    canvas.circle((26, 44, 40), 48, 58, 28)
    canvas.rect((26, 44, 40), 20, 58, 56, 70)
    canvas.circle((54, 104, 66), 48, 64, 22)
    canvas.rect((54, 104, 66), 26, 64, 44, 64)
    canvas.polygon((198, 176, 130), [(40, 84), (56, 84), (66, 128), (30, 128)])
    for x, y in ((30, 74), (64, 70), (34, 92), (63, 96), (28, 110), (68, 114)):
        canvas.circle((240, 120, 150), x, y, 2.4)
    for x in range(14, 86, 7):
        lift = math.sqrt(max(0.0, 44**2 - (x - 48) ** 2))
        canvas.circle(SNOW, x, 49 - lift, 5)
    return canvas.finish()


def fence():
    """Two lengths of fence, 80 x 36."""
    canvas = Canvas(80, 36, WOOD_DARK)
    for y in (12, 24):
        canvas.rect(WOOD_DARK, 0, y, 80, 4)
        canvas.rect(WOOD, 0, y, 80, 2)
        canvas.rect(SNOW, 0, y - 1.6, 80, 1.8)
    for x in (6, 26, 46, 66):
        canvas.rect(WOOD_DARK, x, 4, 7, 32)
        canvas.rect(WOOD, x, 4, 4, 32)
        canvas.ellipse(SNOW, x - 1.5, 0, 10, 7)
    return canvas.finish()


def hero_frames():
    """The hero walking to the right, 40 x 56: six steps, then one in the air."""
    return [_hero(step / 6.0 * 2 * math.pi) for step in range(6)] + [_hero(None)]


def _hero(phase):
    canvas = Canvas(40, 56, (40, 24, 40))
    coat, coat_light, boots = (170, 46, 58), (208, 78, 78), (48, 36, 48)
    swing = 0.9 if phase is None else math.sin(phase)
    bob = 0.0 if phase is None else abs(math.cos(phase)) * 1.6
    hip = 40 - bob
    for direction, color in ((-1, (44, 40, 66)), (1, (58, 54, 86))):
        foot = 19 + direction * swing * 7
        lift = 3.0 if phase is None else max(0.0, direction * math.cos(phase)) * 4
        canvas.line(color, (19, hip), ((19 + foot) / 2 + 1, 46 - lift), 5.4)
        canvas.line(color, ((19 + foot) / 2 + 1, 46 - lift), (foot, 52 - lift), 5)
        canvas.ellipse(boots, foot - 4, 50 - lift, 11, 6)
    canvas.line(mixed(coat, boots, 0.4), (17, 26 - bob), (12 - swing * 4, 36 - bob), 5)
    canvas.polygon(coat, [(12, 22 - bob), (26, 22 - bob), (28, 43 - bob), (10, 43 - bob)])
    canvas.polygon(coat_light, [(20, 22 - bob), (26, 22 - bob), (28, 43 - bob), (22, 43 - bob)])
    canvas.rect((236, 226, 226), 10, 40 - bob, 18, 3.4)
    canvas.line(coat_light, (21, 27 - bob), (29, 33 - bob), 5)
    canvas.circle((240, 200, 168), 30, 33.5 - bob, 2.6)
    canvas.circle((246, 206, 176), 20, 14.5 - bob, 8)
    canvas.circle((52, 40, 48), 24, 14 - bob, 1.3)
    canvas.circle((230, 150, 134), 26, 17 - bob, 1.7)
    canvas.polygon((62, 116, 150), [(11, 12 - bob), (14, 4 - bob), (26, 4 - bob), (29, 12 - bob)])
    canvas.rect((226, 232, 240), 10.5, 10 - bob, 19, 3.6)
    canvas.circle((226, 232, 240), 19, 3.4 - bob, 3.2)
    canvas.rect((242, 196, 84), 12, 20 - bob, 15, 4.6)
    canvas.line((242, 196, 84), (13, 22 - bob), (5 - swing * 2, 27 + swing * 2 - bob), 4)
    canvas.line((60, 56, 70), (30, 34 - bob), (31, 38 - bob), 1.2)
    canvas.rect((60, 56, 70), 28, 38 - bob, 7, 9)
    canvas.rect(WINDOW_EDGE, 29.2, 39.6 - bob, 4.6, 6)
    return canvas.finish()


STAR_COLORS = (
    (255, 206, 84),
    (120, 208, 255),
    (255, 132, 160),
    (150, 236, 150),
    (206, 160, 255),
    (255, 160, 84),
    (240, 240, 255),
    (110, 236, 214),
)


def star_frames(color):
    """A star turning about its upright axis, 28 x 28, eight pictures."""
    frames = []
    for step in range(8):
        canvas = Canvas(28, 28, color)
        width = math.cos(step / 8.0 * math.pi)
        for radius, shade in ((13, mixed(color, (30, 20, 50), 0.45)), (11, color)):
            points = []
            for corner in range(10):
                length = radius if corner % 2 == 0 else radius * 0.46
                angle = math.pi * corner / 5
                points.append(
                    (14 + math.sin(angle) * length * width, 14 - math.cos(angle) * length)
                )
            canvas.polygon(shade, points)
        canvas.circle(mixed(color, (255, 255, 255), 0.75), 14 - 2 * width, 11, 2.2)
        frames.append(canvas.finish())
    return frames


def crow_frames():
    """A crow flying to the right, 40 x 28, four pictures."""
    frames = []
    for step in range(4):
        canvas = Canvas(40, 28, (22, 20, 34))
        lift = math.sin(step / 4.0 * 2 * math.pi) * 11
        body, wing = (30, 28, 46), (44, 42, 66)
        canvas.polygon(body, [(4, 15), (0, 20), (10, 18)])
        canvas.ellipse(body, 7, 11, 22, 8)
        canvas.circle(body, 29, 13, 4.2)
        canvas.polygon((190, 150, 80), [(32, 12), (38, 14), (32, 15)])
        canvas.polygon(wing, [(13, 13), (23, 13), (15, 13 - lift)])
        frames.append(canvas.finish())
    return frames


def glow(diameter, color):
    """A halo of light: the colour, fading from a half-clear middle to nothing."""
    surface = pygame.Surface((diameter, diameter), pygame.SRCALPHA, 32)
    middle = diameter / 2.0
    for y in range(diameter):
        for x in range(diameter):
            distance = math.hypot(x - middle + 0.5, y - middle + 0.5) / middle
            surface.set_at((x, y), color + (int(150 * max(0.0, 1.0 - distance) ** 2),))
    return surface.convert_alpha()


def far_flake():
    """A flake of snow far away, 3 x 3."""
    surface = pygame.Surface((3, 3), pygame.SRCALPHA, 32)
    for y, row in enumerate(((20, 70, 20), (70, 150, 70), (20, 70, 20))):
        for x, alpha in enumerate(row):
            surface.set_at((x, y), (236, 240, 255, alpha))
    return surface.convert_alpha()


# --- The garden ----------------------------------------------------------------------------------

TILE = 32
# Tile numbers; each is a column of the tile picture.
(
    GRASS,
    GRASS_TUFT,
    GRASS_CLOVER,
    PATH,
    WALL_TOP,
    WALL_FRONT,
    HEDGE,
    FLOWERS_ROSE,
    FLOWERS_BLUE,
    FLOWERS_GOLD,
    POND_NW,
    POND_NE,
    POND_SW,
    POND_SE,
    LILY,
    STEPS,
) = range(16)


def garden_tiles():
    """The garden's tiles, 16 in a row of 32 x 32 each, with alpha where water shows through."""
    strip = pygame.Surface((16 * TILE, TILE), pygame.SRCALPHA, 32)
    for number, paint in enumerate(
        (
            _grass(1, 0),
            _grass(2, 9),
            _grass(3, 5),
            _path,
            _wall_top,
            _wall_front,
            _hedge,
            _flowers((232, 96, 128)),
            _flowers((118, 146, 244)),
            _flowers((250, 204, 84)),
            _pond(1, 1),
            _pond(0, 1),
            _pond(1, 0),
            _pond(0, 0),
            _lily,
            _steps,
        )
    ):
        canvas = Canvas(TILE, TILE, (70, 112, 64))
        paint(canvas)
        strip.blit(_opaque_copy(canvas.finish()), (number * TILE, 0))
    return strip.convert_alpha()


def _opaque_copy(picture):
    """Blitting with alpha onto an empty surface would lose it: copy the pixels as they are."""
    picture.set_alpha(None)
    return picture


def _grass(seed, tufts):
    def paint(canvas):
        rng = random.Random(seed)
        canvas.rect((86, 134, 72), 0, 0, TILE, TILE)
        for _ in range(26):
            x, y = rng.uniform(1, 30), rng.uniform(3, 31)
            shade = rng.choice(((78, 124, 66), (96, 146, 78), (92, 140, 80)))
            canvas.line(shade, (x, y), (x + rng.uniform(-1.5, 1.5), y - 3), 1.1)
        for _ in range(tufts):
            x, y = rng.uniform(4, 28), rng.uniform(6, 29)
            canvas.line((122, 172, 92), (x, y), (x - 2, y - 4), 1.0)
            canvas.line((122, 172, 92), (x, y), (x + 2, y - 4), 1.0)

    return paint


def _path(canvas):
    rng = random.Random(6)
    canvas.rect((176, 156, 120), 0, 0, TILE, TILE)
    for x, y, width, height in (
        (1, 1, 14, 9),
        (17, 1, 14, 13),
        (1, 12, 9, 10),
        (12, 16, 10, 15),
        (24, 16, 7, 8),
        (1, 24, 9, 7),
        (24, 26, 7, 5),
    ):
        canvas.rect(mixed((200, 182, 146), (160, 142, 112), rng.random()), x, y, width, height)


def _wall_top(canvas):
    canvas.rect(STONE_DARK, 0, 0, TILE, TILE)
    for x, y in ((1, 1), (17, 1), (1, 17), (17, 17)):
        canvas.rect(STONE, x, y, 14, 14)
        canvas.rect(STONE_LIGHT, x, y, 12, 3)


def _wall_front(canvas):
    rng = random.Random(9)
    canvas.rect((58, 54, 76), 0, 0, TILE, TILE)
    for row in range(4):
        for column in range(-1, 3):
            canvas.rect(
                mixed(STONE_DARK, STONE, rng.random()),
                column * 12 + (row % 2) * 6,
                row * 8 + 1,
                11,
                6.6,
            )
    canvas.rect((40, 36, 56), 0, 29, TILE, 3)


def _hedge(canvas):
    rng = random.Random(12)
    canvas.rect((86, 134, 72), 0, 0, TILE, TILE)
    canvas.ellipse((40, 74, 50), 0, 4, 32, 28)
    for _ in range(46):
        x, y = rng.gauss(16, 6.5), rng.gauss(15, 5.5)
        canvas.circle(mixed((44, 88, 54), (84, 142, 76), rng.random()), x, y, 2.4)


def _flowers(color):
    def paint(canvas):
        _grass(4, 4)(canvas)
        for x, y in ((7, 8), (22, 6), (14, 17), (26, 20), (6, 25), (19, 27)):
            canvas.line((60, 112, 60), (x, y + 5), (x, y), 1.2)
            for dx, dy in ((-2, 0), (2, 0), (0, -2), (0, 2)):
                canvas.circle(color, x + dx, y + dy, 1.9)
            canvas.circle((255, 240, 190), x, y, 1.4)

    return paint


def _pond(right, bottom):
    """A corner of the pond: the water lies to the given sides, open (transparent) there."""

    def paint(canvas):
        _grass(5, 2)(canvas)
        center = right * TILE, bottom * TILE
        canvas.circle((132, 124, 110), center[0], center[1], 30)
        pygame.draw.circle(canvas.surface, (60, 110, 150, 0), _grown(center), 26 * OVERSIZE)

    return paint


def _lily(canvas):
    canvas.surface.fill((60, 120, 80, 0))
    for x, y, radius in ((10, 12, 6.5), (22, 21, 5)):
        canvas.circle((52, 112, 70), x, y, radius)
        canvas.polygon((52, 112, 70, 0), [(x, y), (x + radius, y - 4), (x + radius, y + 1)])
    for dx, dy in ((-2.4, 0), (2.4, 0), (0, -2.4), (0, 2.4)):
        canvas.circle((250, 190, 214), 10 + dx, 11 + dy, 2.2)
    canvas.circle((255, 236, 150), 10, 11, 1.6)


def _steps(canvas):
    canvas.rect((92, 88, 104), 0, 0, TILE, TILE)
    for row in range(4):
        canvas.rect(mixed(STONE_DARK, STONE_LIGHT, row / 3.0), 0, row * 8, TILE, 7)


def water(size):
    """Ripples that join at all edges, size x size, opaque."""
    surface = pygame.Surface((size, size), pygame.SRCALPHA, 32)
    turn = 2 * math.pi / size
    for y in range(size):
        for x in range(size):
            wave = (
                math.sin(turn * (2 * x + y))
                + math.sin(turn * (3 * y - x) + 1.3)
                + 0.7 * math.sin(turn * (5 * x + 4 * y))
            )
            surface.set_at(
                (x, y), mixed((42, 92, 132), (92, 160, 190), max(0.0, min(1.0, 0.35 + wave * 0.22)))
            )
    return surface.convert()


def evening_wash(width, height):
    """The colour beyond the garden, small: it is stretched over the whole room."""
    surface = pygame.Surface((width, height), pygame.SRCALPHA, 32)
    for y in range(height):
        surface.fill(mixed((24, 30, 62), (58, 70, 96), y / float(height)), (0, y, width, 1))
    return surface.convert()


def fountain():
    """A stone basin with a column, 84 x 76; the water leaves at (42, 8)."""
    canvas = Canvas(84, 76, STONE_DARK)
    canvas.ellipse(STONE_DARK, 0, 36, 84, 40)
    canvas.ellipse(STONE_LIGHT, 1, 33, 82, 38)
    canvas.ellipse((70, 134, 170), 8, 37, 68, 28)
    canvas.ellipse((118, 182, 208), 14, 40, 40, 12)
    canvas.rect(STONE, 37, 14, 10, 40)
    canvas.rect(STONE_LIGHT, 37, 14, 4, 40)
    canvas.ellipse(STONE_DARK, 26, 12, 32, 11)
    canvas.ellipse(STONE_LIGHT, 26, 10, 32, 10)
    canvas.ellipse((118, 182, 208), 30, 11, 24, 6)
    return canvas.finish()


def brazier():
    """An iron fire basket, 40 x 52; it burns at (20, 12)."""
    canvas = Canvas(40, 52, (36, 34, 48))
    for foot in (8, 32):
        canvas.line((40, 38, 54), (20, 26), (foot, 50), 3)
    canvas.line((54, 52, 72), (20, 26), (20, 51), 3)
    canvas.polygon((44, 42, 60), [(4, 10), (36, 10), (29, 29), (11, 29)])
    canvas.polygon((74, 72, 94), [(4, 10), (14, 10), (16, 29), (11, 29)])
    canvas.ellipse((255, 170, 80), 5, 7, 30, 8)
    return canvas.finish()
