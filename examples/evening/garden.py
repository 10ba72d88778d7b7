"""The walled garden: a room without views, made of tiles, with water flowing underneath."""

import gmapi
import larkspur
from engine.resources import (
    EVENT_COLLISION,
    EVENT_CREATE,
    EVENT_DRAW,
    EVENT_STEP,
    BackgroundSlot,
    Placement,
)

from evening import art, effects, village

WIDTH, HEIGHT = village.VIEW_WIDTH, village.VIEW_HEIGHT
WALK = 2.6

# One letter is one tile; see LEGEND. Dots in the pond are open water.
PLAN = (
    "TTTTTTTTTTTTTTTTTTTTTTTTTTTTTT",
    "TWWWWWWWWWWWWWWSWWWWWWWWWWWWWT",
    "TgHHgggggg,gggPPPggggg,ggHHHgT",
    "TgHrrrbbbgggggPPPgg1~~2gyyyHgT",
    "Tgrrrbbbbg,gggPPPg1~~~~2yyyggT",
    "Tggggggggggg,gPPPg~~L~~~ggg,gT",
    "Tg,ggcgggggggPPPPP~~~~L~gcgggT",
    "TggggggyyyggPPgggP3~~~~4ggggHT",
    "TPPPPPPPPPPPPgggggPP3~4gg,ggHT",
    "TPPPPPPPPPPPPgggggPPPPPPPPPPPT",
    "TggggggyyyggPPgggPPggggggggggT",
    "TgH,gggggggggPPPPPgg,ggbbbrrgT",
    "TgHgggcgggg,ggPPPggggggbbbrrgT",
    "TggrrrgbbbggggPPPggcggggggggHT",
    "TgHrrrgbbbHgggPPPgggHyyyg,ggHT",
    "TgHHggggggHHggPPPggHHyyyggHHHT",
    "TTTTTTTTTTTTTTTTTTTTTTTTTTTTTT",
)
LEGEND = {
    "g": art.GRASS,
    ",": art.GRASS_TUFT,
    "c": art.GRASS_CLOVER,
    "P": art.PATH,
    "T": art.WALL_TOP,
    "W": art.WALL_FRONT,
    "H": art.HEDGE,
    "r": art.FLOWERS_ROSE,
    "b": art.FLOWERS_BLUE,
    "y": art.FLOWERS_GOLD,
    "1": art.POND_NW,
    "2": art.POND_NE,
    "3": art.POND_SW,
    "4": art.POND_SE,
    "L": art.LILY,
    "S": art.STEPS,
}
SOLID = "TWH1234~L"


def build():
    """Make the garden's resources and its room, gmapi.room_garden; a generator as the village's."""
    yield "the garden"
    add = gmapi.game.add_object
    tiles = gmapi.game.add_background("bg_tiles", art.garden_tiles())
    wash = gmapi.game.add_background("bg_wash", art.evening_wash(8, 32))
    water = gmapi.game.add_background("bg_water", art.water(96))
    gmapi.game.add_sprite("spr_fountain", [art.fountain()], (42, 60))
    gmapi.game.add_sprite("spr_brazier", [art.brazier()], (20, 50))

    wall = add("obj_wall", visible=False, solid=True, still=True)
    fountain = add("obj_fountain", sprite=gmapi.spr_fountain, depth=10, still=True, parent=wall)
    fountain.on(EVENT_CREATE, fountain_create)
    brazier = add("obj_brazier", sprite=gmapi.spr_brazier, depth=8, still=True, parent=wall)
    brazier.on(EVENT_CREATE, brazier_create)
    brazier.on(
        EVENT_DRAW,
        "draw_sprite(self.sprite_index, 0, self.x, self.y)\ndraw_glow(self, spr_glow_fire, 0, -44)",
    )
    dusk = add("obj_dusk", depth=9, still=True)
    dusk.on(
        EVENT_DRAW,
        "draw_set_color(make_color_rgb(14, 18, 62))\n"
        "draw_set_alpha(0.34)\n"
        "draw_rectangle(0, 0, room_garden.room_width, room_garden.room_height)\n"
        "draw_set_alpha(1)",
    )
    walker = add("obj_walker", sprite=gmapi.spr_hero, depth=0)
    walker.on(
        EVENT_CREATE, "self.image_speed = 0\nself.ride = 0.0\nself.sparkle = part_system_create(-6)"
    )
    walker.on(EVENT_STEP, walker_step)
    walker.on(EVENT_COLLISION, walker_collect, key="obj_star")
    air = add("obj_garden_air", visible=False)
    air.on(EVENT_CREATE, air_create)

    room = gmapi.game.add_room("room_garden", WIDTH, HEIGHT)
    room.room_persistent = 1
    room.bg0 = BackgroundSlot(wash, stretch=True)
    room.bg1 = BackgroundSlot(water, htiled=True, vtiled=True, hspeed=0.4, vspeed=0.2)
    room.tiles = _lay_tiles(tiles)
    room.tile_w = room.tile_h = art.TILE
    room.instances = [
        Placement(gmapi.obj_walker, 496, 470),
        Placement(gmapi.obj_hud, 0, 0),
        Placement(gmapi.obj_fountain, 480, 296),
        Placement(gmapi.obj_dusk, 0, 0),
        Placement(gmapi.obj_garden_air, 0, 0),
    ]
    room.instances += [
        Placement(gmapi.obj_brazier, x, y)
        for x, y in ((420, 110), (572, 110), (420, 490), (572, 490))
    ]
    room.instances += [
        Placement(getattr(gmapi, "obj_star_%d" % number), x, y)
        for number, (x, y) in enumerate(
            ((240, 300), (720, 300), (300, 180), (800, 440), (180, 430), (860, 220))
        )
    ]


def _lay_tiles(background):
    """RoomTileData for every letter of the plan but open water."""
    laid = []
    for row, letters in enumerate(PLAN):
        for column, letter in enumerate(letters):
            if letter == "~":
                continue
            tile = larkspur.RoomTileData()
            tile.x, tile.y = column * art.TILE, row * art.TILE
            tile.background_idx = int(background)
            tile.tilex, tile.tiley = LEGEND[letter] * art.TILE, 0
            tile.w = tile.h = art.TILE
            tile.id = 1000 + len(laid)
            laid.append(tile)
    return laid


def walkable(x, y):
    """Whether a point is on a tile that can be walked on."""
    column, row = int(x) // art.TILE, int(y) // art.TILE
    return 0 <= row < len(PLAN) and 0 <= column < len(PLAN[0]) and PLAN[row][column] not in SOLID


def walker_step(self):
    held = gmapi.keyboard_check
    dx = WALK * (held(gmapi.vk_right) - held(gmapi.vk_left))
    dy = WALK * (held(gmapi.vk_down) - held(gmapi.vk_up))
    if dx and _free(self, dx, 0):
        self.x += dx
    if dy and _free(self, 0, dy):
        self.y += dy
    if dx:
        self.image_xscale = 1.0 if dx > 0 else -1.0
    if dx or dy:
        self.ride += 0.16
    self.image_index = int(self.ride) % 6 if dx or dy else 1


def _free(self, dx, dy):
    """Whether the walker's feet may go there: no wall, no water, nothing that stands around."""
    x, y = self.x + dx, self.y + dy
    if not all(walkable(x + side, y - up) for side in (-9, 9) for up in (0, 6)):
        return False
    feet = x - 10, y - 8, x + 10, y
    return not gmapi.collision_list(feet, gmapi.obj_wall)


def walker_collect(self):
    village.take_star(self, gmapi.other)


def fountain_create(self):
    self.water = gmapi.part_system_create(5)
    jet = self.water.emitter()
    jet.region(self.x - 7, self.x + 7, self.y - 54, self.y - 48)
    self.water.stream(jet, effects.types["spray"], 7)


def brazier_create(self):
    self.fire = gmapi.part_system_create(7)
    flames = self.fire.emitter()
    flames.region(self.x - 11, self.x + 11, self.y - 46, self.y - 40, gmapi.ps_distr_gaussian)
    self.fire.stream(flames, effects.types["torch_fire"], 3)
    sparks = self.fire.emitter()
    sparks.region(self.x - 8, self.x + 8, self.y - 50, self.y - 44)
    self.fire.stream(sparks, effects.types["spark"], 0.25)


def air_create(self):
    self.system = gmapi.part_system_create(-8)
    garden = self.system.emitter()
    garden.region(40, WIDTH - 40, 70, HEIGHT - 40)
    self.system.stream(garden, effects.types["firefly"], 1.1)
    above = self.system.emitter()
    above.region(200, WIDTH + 200, 0, 60)
    self.system.stream(above, effects.types["petal"], 0.5)
