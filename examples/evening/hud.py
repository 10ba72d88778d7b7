"""What lies over the picture: score, inventory, the map's frame, the frame rate."""

import gmapi
from engine import drawing
from engine.resources import EVENT_CREATE, EVENT_DRAW

from evening import village

PANEL_TOP, PANEL_BOTTOM = gmapi.make_color_rgb(86, 96, 168), gmapi.make_color_rgb(24, 22, 58)
FRAME = gmapi.make_color_rgb(236, 214, 160)
SLOT = 40
STARS = 24
COUNTER_WIDTH, COUNTER_AND_RATE_WIDTH = 124, 218


class FrameRate(object):
    """gmapi.fps, once it tells how many frames a second are shown.

    larkspur counts the frames of each second of the wall clock, and publishes the count with the
    first frame of the next. The first count is 0, before any frame; the second is that of a second
    which had begun before the first frame.
    """

    def __init__(self):
        self._first_second = None
        self._known = False

    def frame_shown(self, now):
        """A frame has been drawn and shown, and the wall clock reads `now`."""
        second = int(now)
        if self._first_second is None:
            self._first_second = second
        self._known = second >= self._first_second + 2

    def get(self):
        """Frames in the last whole second; None until there was one, or where none are shown."""
        return gmapi.fps if self._known else None


rate = FrameRate()


def build():
    """Make the object that draws all this. It stands in both rooms."""
    global rate
    rate = FrameRate()
    hud = gmapi.game.add_object("obj_hud", depth=-100, still=True)
    hud.on(EVENT_DRAW, draw_hud)
    hud.on(EVENT_CREATE, "self.open = True")
    gmapi.inventory = gmapi.GMVar(0)
    # One assignment far out gives the grid its size; what is not set reads 0.
    gmapi.inventory[village.INVENTORY_COLUMNS - 1, village.INVENTORY_ROWS - 1] = 0


def draw_hud(self):
    """The first view's pass draws the panels, the map's own pass the frame of the main view."""
    if gmapi.view.number == 0:
        _draw_score()
        if self.open:
            _draw_inventory()
        _draw_counters()
        if self.room.view_enabled:
            _draw_map_border()
    else:
        room = self.room
        x, y = room.view_xview[0], room.view_yview[0]
        gmapi.draw_set_color(FRAME)
        gmapi.draw_set_alpha(0.9)
        gmapi.draw_rectangle(x, y, x + room.view_wview[0], y + room.view_hview[0], 1)
        gmapi.draw_set_alpha(1)


def _write(x, y, text, height=20, color=gmapi.c_white):
    gmapi.draw_set_font(drawing.text_font(height))
    gmapi.draw_set_color(gmapi.c_black)
    gmapi.draw_text_on_screen(x + 1, y + 1, text)
    gmapi.draw_set_color(color)
    gmapi.draw_text_on_screen(x, y, text)


def _on_screen(x, y):
    """The point of the room that is at a place of the screen in an unscaled view."""
    return x + gmapi.view.x, y + gmapi.view.y


def _draw_score():
    gmapi.draw_panel(14, 14, 210, 58, PANEL_TOP, PANEL_BOTTOM)
    gmapi.draw_sprite(gmapi.spr_star_0, 0, *_on_screen(38, 38))
    _write(60, 22, "Score %d" % int(gmapi.score), 26, FRAME)
    found = sum(
        int(gmapi.inventory[column, row])
        for column in range(village.INVENTORY_COLUMNS)
        for row in range(village.INVENTORY_ROWS)
    )
    x, y = _on_screen(60, 50)
    gmapi.draw_set_color(gmapi.c_black)
    gmapi.draw_set_alpha(0.5)
    gmapi.draw_rectangle(x, y, x + 150, y + 10)
    gmapi.draw_set_alpha(1)
    if found:
        gold, rose = gmapi.make_color_rgb(255, 214, 96), gmapi.make_color_rgb(255, 96, 128)
        gmapi.draw_rectangle_color(
            x, y, x + 150 * min(1.0, found / float(STARS)), y + 10, rose, gold, gold, rose
        )


def _draw_inventory():
    columns, rows = village.INVENTORY_COLUMNS, village.INVENTORY_ROWS
    width, height = columns * SLOT + 16, rows * SLOT + 36
    left, top = 14, village.VIEW_HEIGHT - height - 14
    gmapi.draw_panel(left, top, width, height, PANEL_TOP, PANEL_BOTTOM)
    _write(left + 10, top + 7, "Stars found", 20, FRAME)
    dark, blue = gmapi.make_color_rgb(10, 10, 30), gmapi.make_color_rgb(70, 70, 130)
    for column in range(columns):
        for row in range(rows):
            x, y = left + 10 + column * SLOT, top + 28 + row * SLOT
            room_x, room_y = _on_screen(x, y)
            gmapi.draw_set_alpha(0.6)
            gmapi.draw_rectangle_color(
                room_x, room_y, room_x + SLOT - 4, room_y + SLOT - 4, dark, dark, blue, blue
            )
            gmapi.draw_set_alpha(1)
            count = int(gmapi.inventory[column, row])
            number = column + row * columns
            sprite = gmapi.game.sprites[int(getattr(gmapi, "spr_star_%d" % number))]
            color = gmapi.c_white if count else gmapi.c_black
            middle = SLOT // 2 - 2
            gmapi.draw_sprite_ext(
                sprite, 0, room_x + middle, room_y + middle, 1, 1, 0, color, 1.0 if count else 0.35
            )
            if count:
                _write(x + SLOT - 14, y + SLOT - 19, count, 20)


def _draw_counters():
    particles = sum(system.count() for system in gmapi.particle_systems())
    frames = rate.get()
    width = COUNTER_WIDTH if frames is None else COUNTER_AND_RATE_WIDTH
    left = village.VIEW_WIDTH - 14 - width
    gmapi.draw_panel(left, village.VIEW_HEIGHT - 40, width, 26, PANEL_TOP, PANEL_BOTTOM, 0.5)
    _write(left + 10, village.VIEW_HEIGHT - 34, counter_text(particles, frames), 20)


def counter_text(particles, frames):
    """What the counter reads; `frames` is the rate, or None where it says nothing yet."""
    text = "%d particles" % particles
    return text if frames is None else "%s   %d frames/s" % (text, frames)


def _draw_map_border():
    x, y = _on_screen(village.MAP_X, village.MAP_Y)
    gmapi.draw_set_color(FRAME)
    gmapi.draw_rectangle(x - 3, y - 3, x + village.MAP_WIDTH + 3, y + village.MAP_HEIGHT + 3)
