"""Rooms of the demo game in any size of the display, with chosen numbers of everything."""

from __future__ import division

import random

import gm6  # the engine comes before larkspur, which it imports
import gmapi
import larkspur
from engine import resources
from evening import art, effects, village

# Types of particles, how many hundredths of all are of each, and steps that all of them live: what
# snows and burns in the village. Smoke and sparks, whose pictures are kept up to a hundred, are
# left to the demo's rooms: the more of them there are, the rarer is one found.
MIX = (
    ("snow", 45, 190),
    ("drift", 35, 190),
    ("fire", 10, 20),
    ("torch_fire", 5, 12),
    ("twinkle", 5, 18),
)
# Things that make no particles: some only stand there, some move, some have draw events.
KINDS = (
    "obj_pine_0 obj_pine_1 obj_lamp obj_crate obj_snowman obj_pine_2 obj_star_0 obj_crow obj_fence "
    "obj_star_1"
).split()
LEFT = 1200  # of the view in the village


def load_demo(screen):
    """The demo on a display of any size; returns the game."""
    width, height = screen.get_size()
    village.VIEW_WIDTH, village.VIEW_HEIGHT = width, height
    village.MAP_X = width - village.MAP_WIDTH - 14
    from evening import game  # takes its size, and the garden's, from the village

    evening = game.Evening(screen)
    for _ in evening.load():
        pass
    return evening


def enter_room(size, views, instances, tiles, particles):
    """A room of the demo's pictures: the village's backgrounds where there are views, its main view
    and its map; else the garden's. Instances are spread over the width of the village."""
    room = gmapi.game.add_room("room_%d" % len(gmapi.game.rooms), village.WIDTH, village.HEIGHT)
    room.room_persistent = 1
    model = gmapi.room_village if views else gmapi.room_garden
    for slot in ("bg%d" % number for number in range(8)):
        setattr(room, slot, getattr(model, slot))
    top = village.HEIGHT - size[1]
    if views:
        resources.set_view(room, 0, (LEFT, top) + size, (0, 0) + size)
        map_port = (village.MAP_X, village.MAP_Y, village.MAP_WIDTH, village.MAP_HEIGHT)
        resources.set_view(room, 1, (0, 0, village.WIDTH, village.HEIGHT), map_port)
    room.tiles = lay_tiles(size, tiles)
    room.instances = place_instances(instances)
    gm6.goto_room(room)
    corner = (LEFT, top) if views else (0, 0)
    for number, (name, hundredths, life) in enumerate(MIX):
        fill(room, number, name, particles * hundredths // 100, life, corner, size)
    room.ResortDrawnObjects()
    return room


def lay_tiles(size, number):
    """The garden's tiles, row by row over the display and again on top."""
    source = random.Random(5)
    index = int(gmapi.bg_tiles)
    columns, rows = size[0] // art.TILE, size[1] // art.TILE
    laid = []
    for i in range(number):
        tile = larkspur.RoomTileData()
        tile.x, tile.y = i % columns * art.TILE, i // columns % rows * art.TILE
        tile.background_idx = index
        tile.tilex, tile.tiley = source.randrange(16) * art.TILE, 0
        tile.w = tile.h = art.TILE
        laid.append(tile)
    return laid


def place_instances(number):
    source = random.Random(6)
    return [
        resources.Placement(
            getattr(gmapi, KINDS[i % len(KINDS)]),
            source.randrange(village.WIDTH),
            source.randrange(200, village.GROUND),
        )
        for i in range(number)
    ]


def fill(room, number, name, count, life, corner, size):
    """A system that keeps `count` particles, of all ages, in the rectangle that is seen: for each
    that dies one is born."""
    system = gmapi.py_ParticleSystem(-number)
    place = system.emitter()
    place.region(corner[0], corner[0] + size[0], corner[1], corner[1] + size[1])
    step = system.step

    def step_and_fill():
        step()
        system.burst(place, effects.types[name], count - len(system.particles))

    system.step = step_and_fill
    step_and_fill()
    for i, particle in enumerate(system.particles):
        for _ in range(i * 37 % life):
            larkspur.CParticle_step(particle)
    room.AddDrawnInstance(system)
