#!/usr/bin/env python2.7
"""Step 1: a window, and an empty room in it."""

import common  # comes before gm6: it finds the engine
import gm6
import gmapi
import pygame

SIZE = WIDTH, HEIGHT = 640, 384

pygame.display.init()
screen = pygame.display.set_mode(SIZE, 0, 32)
pygame.display.set_caption("Your first room")
gm6.start(screen)  # larkspur.set_SDL_screen() and larkspur.RegisterInstancesDict()

room = gmapi.game.add_room("room_meadow", WIDTH, HEIGHT)
room.draw_bgcolor = 1
room.bgcolor = gmapi.make_color_rgb(40, 32, 76)
gm6.goto_room(room)

for _ in common.frames():
    gm6.step()
    gm6.draw()  # larkspur.Room_Draw()
    pygame.display.flip()
