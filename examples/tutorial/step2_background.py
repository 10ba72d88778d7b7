#!/usr/bin/env python2.7
"""Step 2: a room with backgrounds."""

import art
import common
import gm6
import gmapi
import pygame
from engine import resources

SIZE = WIDTH, HEIGHT = 640, 384

pygame.display.init()
screen = pygame.display.set_mode(SIZE, 0, 32)
pygame.display.set_caption("Your first room")
gm6.start(screen)  # larkspur.set_SDL_screen() and larkspur.RegisterInstancesDict()

sky = gmapi.game.add_background("bg_sky", art.sky(WIDTH, HEIGHT))
hills = gmapi.game.add_background("bg_hills", art.hills(2 * WIDTH, 280))
meadow = gmapi.game.add_background("bg_meadow", art.meadow(WIDTH, 224))

room = gmapi.game.add_room("room_meadow", WIDTH, HEIGHT)
room.bg0 = resources.BackgroundSlot(sky)
room.bg1 = resources.BackgroundSlot(hills, y=HEIGHT - 280, htiled=True)
room.bg2 = resources.BackgroundSlot(meadow, y=HEIGHT - 224, htiled=True)
gm6.goto_room(room)

for _ in common.frames():
    gm6.step()
    gm6.draw()  # larkspur.Room_Draw()
    pygame.display.flip()
