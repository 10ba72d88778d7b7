#!/usr/bin/env python2.7
"""Step 4: ground made of tiles in a room of three screens, and a view that follows the fox."""

import art
import common
import gm6
import gmapi
import larkspur
import pygame
from engine import resources

SIZE = WIDTH, HEIGHT = 640, 384
GROUND = 320
GROUND_PLAN = (
    "t*  uffff  t s  *   t  *u  s   fffffft   u  *  t s  fff *tu ",
    "GGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGGG",
    "EEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEEE",
)


def fox_step(self):
    direction = gmapi.keyboard_check(gmapi.vk_right) - gmapi.keyboard_check(gmapi.vk_left)
    self.hspeed = 3 * direction
    if not 40 < self.x + self.hspeed < room.room_width - 40:
        self.hspeed = 0
    self.image_speed = 0.2 * abs(direction)
    if direction:
        self.image_xscale = direction


def lay_tile(letter, x, y):
    tile = larkspur.RoomTileData()
    tile.x, tile.y = x, y
    tile.background_idx = int(tiles)
    tile.tilex = art.TILE * art.TILE_LETTERS.index(letter)
    tile.w = tile.h = art.TILE
    tile.id = len(room.tiles)
    room.tiles.append(tile)


pygame.display.init()
screen = pygame.display.set_mode(SIZE, 0, 32)
pygame.display.set_caption("Your first room")
gm6.start(screen)  # larkspur.set_SDL_screen() and larkspur.RegisterInstancesDict()

sky = gmapi.game.add_background("bg_sky", art.sky(WIDTH, HEIGHT))
hills = gmapi.game.add_background("bg_hills", art.hills(2 * WIDTH, 280))
meadow = gmapi.game.add_background("bg_meadow", art.meadow(WIDTH, 224))
tiles = gmapi.game.add_background("bg_tiles", art.tiles())

fox_sprite = gmapi.game.add_sprite("spr_fox", art.fox(), (44, 60))
fox = gmapi.game.add_object("obj_fox", sprite=fox_sprite)
fox.on(resources.EVENT_STEP, fox_step)

room = gmapi.game.add_room("room_meadow", 3 * WIDTH, HEIGHT)
room.bg0 = resources.BackgroundSlot(sky, parallax=1)
room.bg1 = resources.BackgroundSlot(hills, y=HEIGHT - 280, htiled=True, parallax=0.8)
room.bg2 = resources.BackgroundSlot(meadow, y=HEIGHT - 224, htiled=True, parallax=0.5)
room.instances = [resources.Placement(fox, 80, GROUND)]
for row, letters in enumerate(GROUND_PLAN):
    for column, letter in enumerate(letters):
        if letter != " ":
            lay_tile(letter, art.TILE * column, GROUND + art.TILE * (row - 1))
everything = (0, 0) + SIZE
resources.set_view(room, 0, everything, everything, follow=fox, border=(WIDTH / 2, 0))
gm6.goto_room(room)

for events in common.frames():
    for event in events:
        if event.type == pygame.KEYDOWN:
            room.HandleKeypress(event.key)
        elif event.type == pygame.KEYUP:
            room.HandleKeyrelease(event.key)
    gm6.step()
    gm6.draw()  # larkspur.Room_Draw()
    pygame.display.flip()
