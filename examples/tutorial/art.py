"""The pictures of the tutorial's game, drawn by code with a small palette.

They are painted small and then enlarged: each point becomes a square of POINT x POINT pixels.
"""

import math

import common  # noqa: F401  (it finds the engine, which comes before larkspur)
import gmapi
import larkspur
import pygame

POINT = 4
TILE = 8 * POINT

NIGHT, PLUM, ROSE, CORAL = (40, 32, 76), (92, 48, 106), (190, 82, 110), (240, 138, 106)
SAND, CREAM, SHADE, DUSK = (250, 204, 134), (255, 243, 212), (70, 44, 96), (46, 44, 82)
LEAF, MOSS, SOIL, CLAY = (126, 172, 100), (58, 112, 100), (80, 50, 80), (110, 70, 92)

LETTERS = {"k": NIGHT, "p": PLUM, "r": ROSE, "o": CORAL, "s": SAND, "c": CREAM}
LETTERS.update({"l": LEAF, "m": MOSS, "e": SOIL, "b": CLAY})
LETTERS.update({"1": (44, 40, 8), "2": (100, 88, 22), "3": (200, 176, 60)})  # light

FOX = (
    "..............k.....k.",
    "..............ok...ko.",
    "..............oro.oro.",
    ".ccc.........oooooooo.",
    "ccccc........ooooooooo",
    "ccccco.......okooookoo",
    "oocooo.......ckoookccc",
    "ooooooo......cccccccck",
    ".oooooo.ooooo.ccccccc.",
    ".oooooooooooooooccc...",
    "..rooooooooooooocc....",
    "...roooooooooooocc....",
    "....rrooooooooooo.....",
)
LEGS = (
    ("....oo.rr...oo.rr.....", "....pp.pp...pp.pp....."),
    (".....orr.....orr......", ".....ppp.....ppp......"),
    ("....rr.oo...rr.oo.....", "....pp.pp...pp.pp....."),
    (".....rro.....rro......", ".....ppp.....ppp......"),
)
STAR = ("....c....", "....c....", "...css...", "ccccsssss", ".ccsssss.", "..cssss..")
STAR += ("..cs.so..", ".cs...oo.", ".s.....o.")
GLOW = ("...1...", "..121..", ".12321.", "123c321", ".12321.", "..121..", "...1...")

DIGITS = (
    "ccc c.c c.c c.c sss",
    ".c. cc. .c. .c. sss",
    "ccc ..c ccc c.. sss",
    "ccc ..c ccc ..c sss",
    "c.c c.c ccc ..c ..s",
    "ccc c.. ccc ..c sss",
    "ccc c.. ccc c.c sss",
    "ccc ..c ..c ..c ..s",
    "ccc c.c ccc c.c sss",
    "ccc c.c ccc ..c sss",
)

# Eight rows of eight points each: grass, soil, a fence, a tuft, flowers, a stone, a mushroom.
TILE_LETTERS = "GEft*su"
TILES = (
    "llllllll lllmllll mlmmmlml mmmmmmmm emmemmme eeeeemee eebeeeee eeeeeebe",
    "eeeeeeee ebeeeeee eeeeeeee eeeeebbe eeeeebee eeeeeeee ebbeeeee eeeeeeee",
    "........ .ss..ss. .bo..bo. ssssssss bbobbbob .bo..bo. .bo..bo. .bo..bo.",
    "........ ........ ........ ........ ......l. .l..l.l. .lm.mlm. lmmlmmlm",
    "........ ........ ..r..... .rsr..o. ..r..oso ..m...o. .mm.l.m. .lm.mlml",
    "........ ........ ........ ..bbb... .brrbb.. bbrbbbbe bbbbbeee lbbeeeel",
    "........ ........ ..rrr... .rcrrcr. rrrrrrrr ...ss... ...ss.l. .l.ss.ml",
)


def paint(rows):
    """The picture of rows of letters; where a letter is not of LETTERS it stays transparent."""
    small = pygame.Surface((max(map(len, rows)), len(rows)), pygame.SRCALPHA, 32)
    for y, row in enumerate(rows):
        for x, letter in enumerate(row):
            if letter in LETTERS:
                small.set_at((x, y), LETTERS[letter])
    return enlarged(small).convert_alpha()


def enlarged(small):
    width, height = small.get_size()
    return pygame.transform.scale(small, (width * POINT, height * POINT))


def sky(width, height):
    """Dusk: gradients that larkspur fills, a sun with bars of haze before it, the first stars."""
    across, down = width // POINT, height // POINT
    small = pygame.Surface((across + 1, down), 0, 32)  # gradients leave the last column out
    colors = [gmapi.make_color_rgb(*color) for color in (NIGHT, PLUM, ROSE, CORAL, SAND)]
    edges = [down * percent // 100 for percent in (0, 28, 48, 58, 66)]
    small.fill(SAND)
    for top, bottom, first, second in zip(edges, edges[1:], colors, colors[1:]):
        larkspur.fast_draw_gradient_v(small, 0, top, across, bottom, first, second, 255)
    for number in range(20):
        x, y = (17 + number * 61) % across, (9 + number * number * 7) % (edges[2] - 8)
        small.set_at((x, y), ROSE if number % 3 else CREAM)
    sun = across * 68 // 100, edges[2]
    for y in range(-17, 18):
        half = int((17.5**2 - y**2) ** 0.5)
        small.fill(CREAM, (sun[0] - half, sun[1] + y, 2 * half + 1, 1))
    for y, half in ((-3, 16), (1, 16), (5, 15)):
        small.fill(SAND, (sun[0] - half, sun[1] + y, 2 * half, 1))
    return enlarged(small.subsurface((0, 0, across, down))).convert()


def ridge(width, height, color, edge, waves, trees=0):
    """A skyline that goes on where it is repeated; `waves` are (waves in the width, height)."""
    small = pygame.Surface((width // POINT, height // POINT), pygame.SRCALPHA, 32)
    across, down = small.get_size()
    for x in range(across):
        lift = sum(size * math.sin(2 * math.pi * (n * x / float(across)) + n) for n, size in waves)
        top = int(down * 0.4 - lift)
        small.fill(color, (x, top, 1, down))
        small.set_at((x, top), edge)
        if trees and x % 7 == 3 and x * x % 11 < trees:
            tall = 5 + x * 5 % 6
            for y in range(tall + 2):
                half = 0 if y > tall - 1 else y % 3 + y // 4
                small.fill(color, (x - half, top - tall + y, 2 * half + 1, 1))
                small.set_at((x - half, top - tall + y), edge)
    return enlarged(small).convert_alpha()


def hills(width, height):
    """Far hills."""
    return ridge(width, height, PLUM, CORAL, ((2, 5), (5, 3)))


def meadow(width, height):
    """The edge of a wood, and grass in front of it."""
    picture = ridge(width, height, DUSK, PLUM, ((1, 3), (3, 2), (8, 1)), trees=6)
    grass, soil = [paint(tile.split()) for tile in TILES[:2]]
    for x in range(0, width, TILE):
        picture.blit(grass, (x, height - 2 * TILE))
        picture.blit(soil, (x, height - TILE))
    return picture


def fox():
    """The pictures of the fox's walk, to the right."""
    return [paint(FOX + legs) for legs in LEGS]


def star():
    return paint(STAR)


def digits():
    """0 to 9."""
    return [paint(digit.split()) for digit in DIGITS]


def glow():
    """For additive blending: bright on black, nothing transparent."""
    light = paint(GLOW)
    picture = pygame.Surface(light.get_size(), 0, 32)
    picture.blit(light, (0, 0))
    return picture.convert()


def tiles():
    """All tiles side by side in one picture, in the order of TILE_LETTERS."""
    return paint(["".join(row) for row in zip(*[tile.split() for tile in TILES])])
