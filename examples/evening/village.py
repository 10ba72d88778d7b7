"""The village: a room of 3,200 x 720 pixels with a main view and a map of it all."""

import math
import random

import gmapi
from engine.resources import (
    EVENT_ALARM,
    EVENT_COLLISION,
    EVENT_CREATE,
    EVENT_DRAW,
    EVENT_KEYPRESS,
    EVENT_MOUSE,
    EVENT_STEP,
    MOUSE_LEFT_PRESS,
    BackgroundSlot,
    Placement,
    set_view,
)

from evening import art, effects

WIDTH, HEIGHT = 3200, 720
VIEW_WIDTH, VIEW_HEIGHT = 960, 540
MAP_WIDTH, MAP_HEIGHT = 288, 65
MAP_X, MAP_Y = VIEW_WIDTH - MAP_WIDTH - 14, 14
GROUND = 646

RUN, JUMP, FALL = 3.6, -11.6, 0.52
INVENTORY_COLUMNS, INVENTORY_ROWS = 4, 2


def build():
    """Make the village's resources and its room, gmapi.room_village.

    A generator: before each piece of work it says what that is.
    """
    for what in _make_sprites():
        yield what
    _make_objects()
    room = gmapi.game.add_room("room_village", WIDTH, HEIGHT)
    room.room_persistent = 1
    for what in _hang_backgrounds(room):
        yield what
    hero = gmapi.obj_hero
    set_view(
        room,
        0,
        (0, HEIGHT - VIEW_HEIGHT, VIEW_WIDTH, VIEW_HEIGHT),
        (0, 0, VIEW_WIDTH, VIEW_HEIGHT),
        hero,
        (VIEW_WIDTH * 0.42, 396),
    )
    set_view(room, 1, (0, 0, WIDTH, HEIGHT), (MAP_X, MAP_Y, MAP_WIDTH, MAP_HEIGHT))
    room.instances = _placements()


def _hang_backgrounds(room):
    add = gmapi.game.add_background
    yield "the evening sky"
    room.bg0 = BackgroundSlot(add("bg_sky", art.sky(480, HEIGHT)), htiled=True, parallax=1.0)
    yield "the moon"
    room.bg1 = BackgroundSlot(add("bg_moon", art.moon(210)), x=420, y=196, parallax=0.97)
    yield "clouds"
    room.bg2 = BackgroundSlot(
        add("bg_clouds", art.clouds(1280, 240)), y=190, htiled=True, hspeed=0.25, parallax=0.9
    )
    yield "mountains"
    room.bg3 = BackgroundSlot(
        add("bg_mountains", art.mountains(1600, 300)), y=330, htiled=True, parallax=0.8
    )
    yield "far hills"
    room.bg4 = BackgroundSlot(
        add("bg_hills_far", art.hills(1280, 250, 31, False)), y=430, htiled=True, parallax=0.6
    )
    yield "near hills"
    room.bg5 = BackgroundSlot(
        add("bg_hills_near", art.hills(1600, 250, 37, True)), y=476, htiled=True, parallax=0.35
    )
    yield "snow on the ground"
    room.bg6 = BackgroundSlot(add("bg_ground", art.ground(800, 90)), y=GROUND - 14, htiled=True)


def _make_sprites():
    def standing(name, images):
        width, height = images[0].get_size()
        return gmapi.game.add_sprite(name, images, (width // 2, height))

    yield "trees"
    for number in range(3):
        standing("spr_pine_%d" % number, [art.pine(number)])
    yield "houses"
    for number, wall in enumerate(((132, 84, 70), (98, 92, 122), (116, 104, 82))):
        standing("spr_house_%d" % number, [art.house(number, wall)])
    for name in ("lamp", "torch", "campfire", "crate", "ledge", "snowman", "gate", "fence"):
        standing("spr_" + name, [getattr(art, name)()])
    yield "people and stars"
    hero = standing("spr_hero", art.hero_frames())
    hero.leftbound, hero.rightbound = 10, 30
    hero.topbound = 6
    for number, color in enumerate(art.STAR_COLORS):
        gmapi.game.add_sprite("spr_star_%d" % number, art.star_frames(color), (14, 14))
    gmapi.game.add_sprite("spr_crow", art.crow_frames(), (20, 14))
    yield "the light of lamps and fires"
    for name, diameter, color in (
        ("lamp", 150, (255, 196, 110)),
        ("fire", 260, (255, 150, 70)),
        ("lantern", 90, (255, 220, 150)),
        ("star", 60, (255, 255, 220)),
    ):
        gmapi.game.add_sprite(
            "spr_glow_" + name, [art.glow(diameter, color)], (diameter // 2, diameter // 2)
        )


# --- Things --------------------------------------------------------------------------------------


def _make_objects():
    add = gmapi.game.add_object
    for number in range(3):
        add(
            "obj_pine_%d" % number,
            sprite=getattr(gmapi, "spr_pine_%d" % number),
            depth=60,
            still=True,
        )
        house = add(
            "obj_house_%d" % number,
            sprite=getattr(gmapi, "spr_house_%d" % number),
            depth=50,
            still=True,
        )
        house.on(EVENT_CREATE, house_create)
    add("obj_fence", sprite=gmapi.spr_fence, depth=40, still=True)
    add("obj_gate", sprite=gmapi.spr_gate, depth=45, still=True)

    lamp = add("obj_lamp", sprite=gmapi.spr_lamp, depth=30, still=True)
    lamp.on(
        EVENT_DRAW,
        "draw_sprite(self.sprite_index, 0, self.x, self.y)\n"
        "draw_glow(self, spr_glow_lamp, 0, -104)",
    )
    torch = add("obj_torch", sprite=gmapi.spr_torch, depth=20, still=True)
    torch.on(EVENT_CREATE, torch_create)
    campfire = add("obj_campfire", sprite=gmapi.spr_campfire, depth=18, still=True)
    campfire.on(EVENT_CREATE, campfire_create)
    campfire.on(EVENT_ALARM, campfire_crackle, key=0)
    campfire.on(
        EVENT_DRAW,
        "draw_glow(self, spr_glow_fire, 0, -30)\ndraw_sprite(self.sprite_index, 0, self.x, self.y)",
    )
    gmapi.__dict__["draw_glow"] = draw_glow

    solid = add("obj_solid", visible=False, solid=True, still=True)
    add("obj_crate", sprite=gmapi.spr_crate, depth=16, solid=True, still=True, parent=solid)
    add("obj_ledge", sprite=gmapi.spr_ledge, depth=16, solid=True, still=True, parent=solid)

    snowman = add("obj_snowman", sprite=gmapi.spr_snowman, depth=25, still=True)
    snowman.on(EVENT_CREATE, "self.sparkle = None")
    snowman.on(EVENT_MOUSE, snowman_tickle, key=MOUSE_LEFT_PRESS)
    crow = add("obj_crow", sprite=gmapi.spr_crow, depth=70)
    crow.on(EVENT_CREATE, crow_create)
    crow.on(EVENT_ALARM, crow_turn, key=0)
    crow.on(EVENT_STEP, crow_step)

    star = add("obj_star", depth=5)
    star.on(EVENT_CREATE, star_create)
    star.on(
        EVENT_STEP,
        "self.y = self.ystart + 5 * math.sin(self.turn + self.x * 0.02)\nself.turn += 0.06",
    )
    star.on(EVENT_DRAW, star_draw)
    for number in range(len(art.STAR_COLORS)):
        add(
            "obj_star_%d" % number,
            sprite=getattr(gmapi, "spr_star_%d" % number),
            depth=5,
            parent=star,
        )

    hero = add("obj_hero", sprite=gmapi.spr_hero, depth=0)
    hero.on(EVENT_CREATE, hero_create)
    hero.on(EVENT_STEP, hero_step)
    hero.on(EVENT_KEYPRESS, hero_jump, key=gmapi.vk_space)
    hero.on(EVENT_KEYPRESS, hero_jump, key=gmapi.vk_up)
    hero.on(EVENT_COLLISION, hero_collect, key="obj_star")
    hero.on(EVENT_DRAW, hero_draw)

    weather = add("obj_weather", visible=False)
    weather.on(EVENT_CREATE, weather_create)
    weather.on(EVENT_STEP, weather_step)


def draw_glow(self, sprite, dx, dy):
    """A flickering halo; too small to see on the map."""
    if gmapi.view.number == 0:
        flicker = 0.84 + 0.16 * random.random()
        gmapi.draw_sprite_ext(
            sprite, 0, self.x + dx, self.y + dy, 1, 1, 0, gmapi.c_white, int(flicker * 12) / 12.0
        )


def house_create(self):
    self.smoke = gmapi.part_system_create(55)
    chimney = self.smoke.emitter()
    x, y = self.x + 53 * self.image_xscale, self.y - 168
    chimney.region(x - 4, x + 4, y - 2, y + 2)
    self.smoke.stream(chimney, effects.types["smoke"], 0.45, size=0.3)


def torch_create(self):
    self.fire = gmapi.part_system_create(19)
    flame = self.fire.emitter()
    flame.region(self.x - 4, self.x + 4, self.y - 64, self.y - 58, gmapi.ps_distr_gaussian)
    self.fire.stream(flame, effects.types["torch_fire"], 2.2)


def campfire_create(self):
    self.smoke = gmapi.part_system_create(21)
    plume = self.smoke.emitter()
    plume.region(self.x - 8, self.x + 8, self.y - 70, self.y - 60)
    self.smoke.stream(plume, effects.types["smoke"], 0.4, size=0.3)
    self.fire = gmapi.part_system_create(17)
    flames = self.fire.emitter()
    flames.region(self.x - 24, self.x + 24, self.y - 20, self.y - 8, gmapi.ps_distr_gaussian)
    self.fire.stream(flames, effects.types["fire"], 7.5)
    self.sparks = gmapi.part_system_create(15)
    self.embers = self.sparks.emitter()
    self.embers.region(self.x - 16, self.x + 16, self.y - 34, self.y - 14)
    self.sparks.stream(self.embers, effects.types["spark"], 0.7)
    self.alarm[0] = 40


def campfire_crackle(self):
    self.sparks.burst(self.embers, effects.types["spark"], 26)
    self.alarm[0] = 50 + gmapi.irandom(70)


def snowman_tickle(self):
    if self.sparkle is None:
        self.sparkle = gmapi.part_system_create(-5)
    self.sparkle.create(self.x, self.y - 50, effects.types["twinkle"], 40)


def crow_create(self):
    self.hspeed = random.choice((-1, 1)) * random.uniform(1.2, 2.4)
    self.image_speed = random.uniform(0.12, 0.2)
    self.turn = random.uniform(0, 6.28)
    self.alarm[0] = 60 + gmapi.irandom(240)


def crow_turn(self):
    self.hspeed = -self.hspeed
    self.alarm[0] = 120 + gmapi.irandom(300)


def crow_step(self):
    self.turn += 0.04
    self.vspeed = math.sin(self.turn) * 0.7
    if (self.x < 40 and self.hspeed < 0) or (self.x > WIDTH - 40 and self.hspeed > 0):
        self.hspeed = -self.hspeed
    self.image_xscale = 1.0 if self.hspeed > 0 else -1.0
    self.image_angle = int(-self.vspeed * 20) // 4 * 4 * self.image_xscale


def star_create(self):
    self.turn = random.uniform(0, 6.28)
    self.image_index = gmapi.irandom(7)
    self.image_speed = 0.16
    self.number = int(self.object_index.name[-1])


def star_draw(self):
    if gmapi.view.number == 0:
        gmapi.draw_sprite(gmapi.spr_glow_star, 0, self.x, self.y)
        gmapi.draw_sprite(self.sprite_index, self.image_index, self.x, self.y)
    else:
        gmapi.draw_set_color(gmapi.make_color_rgb(*art.STAR_COLORS[self.number]))
        gmapi.draw_rectangle(self.x - 14, self.y - 14, self.x + 14, self.y + 14)


# --- The hero ------------------------------------------------------------------------------------


def hero_create(self):
    self.image_speed = 0
    self.ride = 0.0  # how far the steps have carried it, in pictures of the walk
    self.facing = 1
    self.grounded = False
    self.sparkle = gmapi.part_system_create(-6)


def hero_step(self):
    wish = RUN * (gmapi.keyboard_check(gmapi.vk_right) - gmapi.keyboard_check(gmapi.vk_left))
    self.hspeed += max(-0.5, min(0.5, wish - self.hspeed))
    if self.hspeed and not 24 < self.x + self.hspeed < WIDTH - 24:
        self.hspeed = 0.0
    if self.hspeed and not gmapi.place_free(self.x + self.hspeed, self.y):
        self.hspeed = 0.0
    self.vspeed = min(self.vspeed + FALL, 14.0)
    self.grounded = False
    if self.y + self.vspeed >= GROUND:
        self.y, self.vspeed, self.grounded = float(GROUND), 0.0, True
    elif not gmapi.place_free(self.x + self.hspeed, self.y + self.vspeed):
        toward = 1 if self.vspeed > 0 else -1
        self.y = float(math.floor(self.y))
        while gmapi.place_free(self.x + self.hspeed, self.y + toward):
            self.y += toward
        self.grounded = toward > 0
        self.vspeed = 0.0
    if wish:
        self.facing = 1 if wish > 0 else -1
        self.image_xscale = float(self.facing)
    if not self.grounded:
        self.image_index = 6
    elif abs(self.hspeed) > 0.3:
        self.ride += abs(self.hspeed) * 0.055
        self.image_index = int(self.ride) % 6
    else:
        self.image_index = 1


def hero_jump(self):
    if self.grounded:
        self.vspeed = JUMP
        self.sparkle.create(self.x, self.y - 2, effects.types["snow"], 8)


def hero_collect(self):
    take_star(self, gmapi.other)


def take_star(self, star):
    """Count a star in the field of its kind (the inventory is a GMVar grid) and let it burst."""
    column, row = star.number % INVENTORY_COLUMNS, star.number // INVENTORY_COLUMNS
    gmapi.inventory[column, row] = gmapi.inventory[column, row] + 1
    gmapi.score += 10
    self.sparkle.create(star.x, star.y, effects.types["twinkle"], 36)
    gmapi.instance_destroy(star)


def hero_draw(self):
    if gmapi.view.number == 0:
        draw_glow(self, gmapi.spr_glow_lantern, 12 * self.facing, -14)
        gmapi.draw_sprite_ext(
            self.sprite_index,
            self.image_index,
            self.x,
            self.y,
            self.image_xscale,
            1,
            0,
            gmapi.c_white,
            1,
        )
    else:
        gmapi.draw_set_color(gmapi.c_white)
        gmapi.draw_rectangle(self.x - 36, self.y - 70, self.x + 36, self.y)
        gmapi.draw_set_color(gmapi.make_color_rgb(230, 60, 70))
        gmapi.draw_rectangle(self.x - 24, self.y - 58, self.x + 24, self.y - 12)


# --- Snow ----------------------------------------------------------------------------------------


def weather_create(self):
    self.system = gmapi.part_system_create(-8)
    self.edge = self.system.emitter()
    everywhere = self.system.emitter()
    x = gmapi.obj_hero.instances[0].x
    everywhere.region(x - 560, x + 880, HEIGHT - VIEW_HEIGHT - 20, HEIGHT - 60)
    self.system.burst(everywhere, effects.types["snow"], 900)
    self.system.burst(everywhere, effects.types["drift"], 700)
    self.system.stream(self.edge, effects.types["snow"], 5.4)
    self.fine = self.system.emitter()
    self.system.stream(self.fine, effects.types["drift"], 5.0)


def weather_step(self):
    """Let it snow from above the view, around the hero whom it follows."""
    x, y = gmapi.obj_hero.instances[0].x, self.room.view_yview[0]
    for emitter in (self.edge, self.fine):
        emitter.region(x - 560, x + 880, y - 24, y - 6)


# --- Where everything stands ---------------------------------------------------------------------


def _placements():
    rng = random.Random(2)
    placed = [
        Placement(gmapi.obj_hero, 1330, GROUND),
        Placement(gmapi.obj_weather, 0, 0),
        Placement(gmapi.obj_hud, 0, 0),
    ]

    def put(kind, x, y=GROUND, **settings):
        placed.append(Placement(getattr(gmapi, kind), x, y, **settings))

    for number, x in enumerate((640, 1240, 1990, 2560)):
        put("obj_house_%d" % (number % 3), x, image_xscale=(1.0, -1.0)[number % 2])
    for x in range(40, WIDTH, 62):
        if not any(abs(x - house) < 150 for house in (640, 1240, 1560, 1990, 2560, 2990)):
            size = rng.uniform(0.62, 1.0)
            put(
                "obj_pine_%d" % rng.randrange(3),
                x + rng.randrange(-18, 18),
                GROUND + rng.randrange(-4, 3),
                image_xscale=size * rng.choice((-1, 1)),
                image_yscale=size,
            )
    for x in (180, 470, 860, 1070, 1400, 1800, 2200, 2400, 2760, 3080):
        put("obj_lamp", x)
    for x in (440, 1450, 1670, 2330, 2920, 3060):
        put("obj_torch", x)
    for x in range(1040, 1180, 80):
        put("obj_fence", x)
    for x in range(2130, 2320, 80):
        put("obj_fence", x)
    put("obj_campfire", 1560)
    put("obj_gate", 2990)
    for x in (820, 1850, 2700):
        put("obj_snowman", x)
    for x, levels in ((930, 1), (976, 2), (1720, 1), (2370, 1), (2416, 2), (2462, 1)):
        for level in range(levels):
            put("obj_crate", x, GROUND - 44 * level)
    for x, y in (
        (540, 560),
        (1120, 520),
        (1300, 440),
        (1500, 400),
        (1900, 500),
        (2080, 420),
        (2560, 430),
        (2740, 520),
    ):
        put("obj_ledge", x, y)
    stars = [
        (540, 510),
        (420, 600),
        (976, 520),
        (1120, 470),
        (1300, 390),
        (1500, 350),
        (1660, 580),
        (1900, 450),
        (2080, 370),
        (2200, 600),
        (2416, 520),
        (2560, 380),
        (2740, 470),
        (2860, 590),
        (3120, 590),
        (740, 470),
        (1800, 600),
        (1360, 600),
    ]
    for number, (x, y) in enumerate(stars):
        put("obj_star_%d" % (number % len(art.STAR_COLORS)), x, y)
    for _ in range(9):
        put("obj_crow", rng.randrange(100, WIDTH - 100), rng.randrange(250, 430))
    return placed
