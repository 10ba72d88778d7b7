"""What the demo's pictures must show, whatever the random numbers were."""

from engine.colors import color_to_rgb

from evening import art, hud, village

MOST_PARTICLES_AT_LEAST = 2000


def faults(pygame, pictures, most_particles):
    """What is wrong with the pictures, a list of (path, room name); an empty list is good."""
    found = []
    rooms = set(room for _, room in pictures)
    if rooms != {"room_village", "room_garden"}:
        found.append("pictures of both rooms are wanted, there are " + ", ".join(sorted(rooms)))
    if most_particles < MOST_PARTICLES_AT_LEAST:
        found.append(
            "{} particles lived at once, not {}".format(most_particles, MOST_PARTICLES_AT_LEAST)
        )
    seen = {}
    for path, room in pictures:
        surface = pygame.image.load(path)
        picture = Picture(pygame, surface)
        checks = VILLAGE_CHECKS if room == "room_village" else GARDEN_CHECKS
        if surface.get_size() != (village.VIEW_WIDTH, village.VIEW_HEIGHT):
            found.append("{}: the size is {} x {}".format(path, *surface.get_size()))
            continue
        found += ["{}: {}".format(path, text) for text, holds in checks if not holds(picture)]
        twin = seen.setdefault(picture.data, path)
        if twin is not path:
            found.append("{} and {} are the same picture".format(twin, path))
    return found


class Picture(object):
    """A picture's pixels, and how many of them answer a question."""

    def __init__(self, pygame, surface):
        self.width, self.height = surface.get_size()
        self.data = pygame.image.tostring(surface, "RGB")

    def pixel(self, x, y):
        start = 3 * (y * self.width + x)
        return tuple(ord(part) for part in self.data[start : start + 3])

    def colors(self):
        """How many different colours every third pixel has."""
        return len(set(self.data[start : start + 3] for start in range(0, len(self.data), 9)))

    def share(self, area, question):
        """The share of every third pixel of (x, y, width, height) for which question(r, g, b)."""
        left, top, width, height = area
        asked = [
            question(*self.pixel(x, y))
            for y in range(top, top + height, 3)
            for x in range(left, left + width, 3)
        ]
        return sum(asked) / float(len(asked))


WHOLE = 0, 0, village.VIEW_WIDTH, village.VIEW_HEIGHT
MAP = village.MAP_X, village.MAP_Y, village.MAP_WIDTH, village.MAP_HEIGHT
INVENTORY = 14, village.VIEW_HEIGHT - 124, 170, 100


def _map_is_framed(picture):
    frame = color_to_rgb(hud.FRAME)
    x, y = village.MAP_X - 2, village.MAP_Y + village.MAP_HEIGHT // 2
    return picture.pixel(x, y) == frame and picture.pixel(village.VIEW_WIDTH - 13, y) == frame


def _map_shows_land(picture):
    ground = MAP[0], MAP[1] + MAP[3] - 6, MAP[2], 6
    return picture.share(ground, lambda r, g, b: min(r, g, b) > 90) > 0.8


def _hero_is_on_the_map(picture):
    return any(
        picture.pixel(x, y) == (230, 60, 70)
        for y in range(MAP[1], MAP[1] + MAP[3])
        for x in range(MAP[0], MAP[0] + MAP[2])
    )


def _panel_fades(picture):
    """The score panel's upper edge is brighter than its lower part, and both are bluish; nearly
    everywhere, because a flake can fall on any place of it."""

    def fades_at(x):
        top, bottom = picture.pixel(x, 18), picture.pixel(x, 69)
        return sum(top) > sum(bottom) + 40 and top[2] > top[0] and bottom[2] > bottom[0]

    places = range(20, 220, 5)
    return sum(fades_at(x) for x in places) > 0.7 * len(places)


def _of(color, most=26):
    """A question: is a pixel nearly this colour?"""
    return lambda r, g, b: abs(r - color[0]) + abs(g - color[1]) + abs(b - color[2]) < most


def _flames_have_shades(picture):
    """Where red and green are full without blue, a flame is one flat yellow. A few sparks may."""
    return picture.share(WHOLE, lambda r, g, b: r == 255 and g == 255 and b < 200) < 0.0015


VILLAGE_CHECKS = (
    ("the flames are one flat yellow", _flames_have_shades),
    ("there are too few colours", lambda picture: picture.colors() > 3000),
    ("the map has no frame", _map_is_framed),
    ("the map shows no snow on the ground", _map_shows_land),
    ("the hero is not on the map", _hero_is_on_the_map),
    ("the score panel is no gradient", _panel_fades),
    (
        "the inventory panel is not blue",
        lambda picture: picture.share(INVENTORY, lambda r, g, b: b > r + 8) > 0.5,
    ),
    (
        "nothing burns or is lit",
        lambda picture: (
            picture.share(WHOLE, lambda r, g, b: r > 225 and g > 130 and b < 170) > 0.001
        ),
    ),
    (
        "no snow lies or falls",
        lambda picture: picture.share(WHOLE, lambda r, g, b: min(r, g, b) > 190) > 0.01,
    ),
    (
        "there is no night sky",
        lambda picture: picture.share((330, 0, 200, 60), lambda r, g, b: r + g + b < 330) > 0.8,
    ),
)
GARDEN_CHECKS = (
    ("the flames are one flat yellow", _flames_have_shades),
    ("there are too few colours", lambda picture: picture.colors() > 1500),
    ("the score panel is no gradient", _panel_fades),
    (
        "there is too little grass",
        lambda picture: picture.share(WHOLE, lambda r, g, b: g > r + 15 and g > b + 8) > 0.25,
    ),
    (
        "the wall does not stand",
        lambda picture: picture.share((32 * 10, 0, 32 * 8, art.TILE), _of(art.STONE, 130)) > 0.6,
    ),
    (
        "there is no water in the pond",
        lambda picture: picture.share((32 * 20, 32 * 5, 64, 32), lambda r, g, b: b > r + 30) > 0.4,
    ),
    (
        "the path is not paved",
        lambda picture: picture.share((32 * 2, 32 * 8, 32 * 8, 64), _of((108, 98, 96), 110)) > 0.8,
    ),
)
