"""Frames of rooms by larkspur: WAYS, job -> function of a size, which returns a dictionary of ways
by their names.
"""

import ctypes
import sys
import time

import host
import larkspur
from host import gm6, gmapi
from pictures import picture, surface_of
from pygame_ways import Tiles
from ways import build_path, calling, drawing, drawing_with, surface_address

OBJECTS = 500


class Still(object):
    """An object that draws nothing."""

    def Draw(self):
        pass


def room_with(**members):
    room = larkspur.GMRoom()
    room.tiles, room.drawn_objects = [], []
    for name, value in members.items():
        setattr(room, name, value)
    return room


# ---- frames without views


class Rect(ctypes.Structure):
    _fields_ = [
        ("x", ctypes.c_int16),
        ("y", ctypes.c_int16),
        ("w", ctypes.c_uint16),
        ("h", ctypes.c_uint16),
    ]


class Blit(ctypes.Structure):
    _fields_ = [("source", ctypes.c_void_p), ("source_rect", Rect), ("target_rect", Rect)]


def room_of(frame, objects):
    """A room with the tiles of a frame; its sheet is the game's only background."""
    background = larkspur.BackgroundData()
    background.surf = frame.sheet
    gmapi.game.backgrounds = [background]
    gm6.Room_DrawBackgrounds = host.draw_no_backgrounds
    host.register()
    room = room_with(drawn_objects=[Still() for _ in range(objects)])
    for to, start in frame.tiles:
        tile = larkspur.RoomTileData()
        tile.x, tile.y = to
        tile.tilex, tile.tiley = start
        tile.w = tile.h = frame.SIDE
        room.tiles.append(tile)
    return room


def bare_frame(frame, room, screen):
    """The frame's blits and calls alone, made in a native loop."""
    function = ctypes.PyDLL(build_path("bench", "room", "bench_frame.so")).bare_frame
    function.restype = ctypes.py_object
    function.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_void_p] + [ctypes.py_object] * 3
    side, sheet = frame.SIDE, surface_address(frame.sheet)
    blits = (Blit * frame.COUNT)(
        *[Blit(sheet, Rect(x, y, side, side), Rect(*to)) for to, (x, y) in frame.tiles]
    )
    return drawing(
        screen,
        function,
        blits,
        len(blits),
        surface_address(screen),
        host.draw_no_backgrounds,
        (room, screen, 0, 0),
        room.drawn_objects,
    )


def frame_of_pygame(room, screen):
    """The frame as an engine written with pygame draws it."""
    frames = {"second": 0, "count": 0}

    def draw():
        now = int(time.time())
        if now != frames["second"]:
            gmapi.fps = frames["count"]
            frames["second"], frames["count"] = now, 0
        frames["count"] += 1
        gm6.Room_DrawBackgrounds(room, screen, 0, 0)
        backgrounds = gmapi.game.backgrounds
        for tile in room.tiles:
            screen.blit(
                backgrounds[tile.background_idx].surf,
                (tile.x, tile.y),
                (tile.tilex, tile.tiley, tile.w, tile.h),
            )
        room.view_current = 0
        for drawn in list(room.drawn_objects):
            drawn.Draw()

    return drawing(screen, draw)


def frames_of_tiles(colour_key, objects=0):
    def ways(_):
        frame = Tiles(colour_key)
        room = room_of(frame, objects)
        screen, second, third = (surface_of(frame.DISPLAY) for _ in range(3))
        return {
            "larkspur": drawing(screen, larkspur.Room_Draw, room, screen),
            "bare SDL loop": bare_frame(frame, room, second),
            "pygame": frame_of_pygame(room, third),
        }

    return ways


# ---- frames with a view

VIEW_MEMBERS = "xview yview object hborder vborder wview hview xport yport wport hport".split()


def room_with_view(display, **values):
    """A room with one view, which follows nothing and shows the room one to one."""
    room = room_with(
        view_enabled=1,
        room_width=display[0],
        room_height=display[1],
        view_visible=[i == 0 for i in range(8)],
    )
    members = {"object": -1, "wview": display[0], "hview": display[1]}
    members.update(wport=display[0], hport=display[1])
    members.update(values)
    for name in VIEW_MEMBERS:
        numbers = larkspur.Floatlist8()
        numbers[0] = members.get(name, 0)
        setattr(room, "view_" + name, numbers)
    return room


def scaled_view(size):
    """The view shows a quarter of the room on all of the display, and the host scales the
    background, as large as the view, in each frame."""
    view = size[0] // 2, size[1] // 2
    background = picture(view)
    screen = surface_of(size)

    def draw_backgrounds(room, surface, x, y):
        surface.blit(larkspur.scale(background, gm6.view_xscale, gm6.view_yscale), (0, 0))

    room = room_with_view(size, wview=view[0], hview=view[1])
    frame = calling(larkspur.Room_Draw, room, screen)

    def seconds(calls):
        gm6.Room_DrawBackgrounds = draw_backgrounds
        host.register()
        return frame.seconds(calls)

    return {"larkspur": drawing_with(screen, seconds)}


def scripted_instances(_):
    screen = surface_of((640, 480))
    gm6.Room_DrawBackgrounds = host.draw_no_backgrounds
    host.register()
    gmapi.__builtins__ = sys.modules["__builtin__"]
    code = compile("pass", "<draw code>", "exec")
    room = room_with_view(screen.get_size())
    for _ in range(OBJECTS):
        instance = host.Instance()
        instance.py_Draw = code
        room.drawn_objects.append(instance)
    return {"larkspur": drawing(screen, larkspur.Room_Draw, room, screen)}


WAYS = {
    "Room_Draw(), 2,000 opaque tiles": frames_of_tiles(False),
    "Room_Draw(), 2,000 colour-keyed tiles": frames_of_tiles(True),
    "Room_Draw(), 2,000 opaque tiles and 500 objects": frames_of_tiles(False, OBJECTS),
    "Room_Draw(), a view with a scaled background": scaled_view,
    "Room_Draw(), against scaling onto the display": scaled_view,
    "Room_Draw(), 500 scripted instances": scripted_instances,
}
