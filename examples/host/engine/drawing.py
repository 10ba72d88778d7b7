"""Drawing: sprites, backgrounds, rectangles, gradients and text in the view being drawn."""

import math

import gm6
import larkspur
import pygame

from engine import colors

CACHE_LIMIT = 400  # transformed copies per sprite or background; more, and they are made afresh


class DrawProps(object):
    """What the drawing functions draw with. There is one, which larkspur knows, too."""

    def __init__(self):
        self.color = (0, 0, 0)  # red, green, blue, as pygame's own functions take it
        self.alpha = 1.0
        self.font = None
        self.halign = 0  # 0 left, 1 centre, 2 right


class ViewPass(object):
    """Where the room's points are on the screen while a view is drawn.

    Screen x = (room x - x) * xscale + xport, and the same for y. `clip` is the view's port.
    """

    def __init__(self):
        self.number = 0
        self.x = self.y = self.xport = self.yport = 0
        self.xscale = self.yscale = 1.0
        self.clip = pygame.Rect(0, 0, 0, 0)

    def to_screen(self, x, y):
        return ((x - self.x) * self.xscale + self.xport, (y - self.y) * self.yscale + self.yport)


py_draw_props = DrawProps()
view = ViewPass()


def begin_pass(room):
    """Note which view is about to be drawn, and keep drawing inside its port."""
    number = view.number = room.view_current if room.view_enabled else 0
    if room.view_enabled:
        view.x, view.y = int(room.view_xview[number]), int(room.view_yview[number])
        view.xscale, view.yscale = float(gm6.view_xscale), float(gm6.view_yscale)
        view.xport, view.yport = int(room.view_xport[number]), int(room.view_yport[number])
        view.clip = pygame.Rect(
            view.xport, view.yport, room.view_wport[number], room.view_hport[number]
        )
    else:
        view.x = view.y = view.xport = view.yport = 0
        view.xscale = view.yscale = 1.0
        view.clip = gm6.screen.get_rect()
    gm6.screen.set_clip(view.clip)


# --- Pictures ------------------------------------------------------------------------------------


def transformed_copy(image, width, height, angle, color, alpha_255):
    """A copy of a picture at another size (negative: mirrored), turned, tinted and faded."""
    result = image
    if width < 0:
        result = larkspur.flip_h(result)
    if height < 0:
        result = larkspur.flip_v(result)
    factors = abs(width) / float(image.get_width()), abs(height) / float(image.get_height())
    if angle:
        result = larkspur.rotoscale(result, factors[0], factors[1], angle)
    elif factors != (1.0, 1.0):
        result = larkspur.scale(result, *factors)
    if color != colors.c_white or alpha_255 != 255:
        result = result.convert_alpha()
        result.fill(colors.color_to_rgb(color) + (alpha_255,), None, pygame.BLEND_RGBA_MULT)
    return result


def cached_copy(cache, image, key):
    """The transformed copy for a key (number, width, height, angle, color, alpha_255)."""
    copy = cache.get(key)
    if copy is None:
        if len(cache) >= CACHE_LIMIT:
            cache.clear()
        copy = cache[key] = transformed_copy(image, *key[1:])
    return copy


def sprite_of(sprite):
    """A sprite given as itself or as its number (any number, GMVars too); None for -1."""
    if type(sprite) is larkspur.GMSprite:
        return sprite
    number = int(sprite)
    return gm6.game.sprites[number] if number >= 0 else None


def draw_sprite_ext(sprite, subimage, x, y, xscale, yscale, rotation, color, alpha):
    """Draw a subimage with its origin at (x, y) of the room, scaled by itself and by the view.

    `rotation` is in degrees, counter-clockwise about the origin; `alpha` runs from 0.0 to 1.0.
    """
    sprite = sprite_of(sprite)
    if sprite is None:
        return
    number = int(subimage) % len(sprite.subimages)
    image = sprite.subimages[number]
    xscale *= view.xscale
    yscale *= view.yscale
    width, height = int(round(sprite.w * xscale)), int(round(sprite.h * yscale))
    angle = int(round(rotation)) % 360
    alpha_255 = max(0, min(255, int(alpha * 255)))
    if width == 0 or height == 0 or alpha_255 == 0:
        return
    x = (x - view.x) * view.xscale + view.xport
    y = (y - view.y) * view.yscale + view.yport
    if angle:
        left, top = _rotated_corner(sprite, xscale, yscale, angle)
    else:
        left = -sprite.xorigin * xscale if width > 0 else width - sprite.xorigin * xscale
        top = -sprite.yorigin * yscale if height > 0 else height - sprite.yorigin * yscale
    corner = int(math.floor(x + left)), int(math.floor(y + top))
    if not angle and not view.clip.colliderect((corner, (abs(width), abs(height)))):
        return
    if not (
        width == sprite.w
        and height == sprite.h
        and angle == 0
        and alpha_255 == 255
        and color == colors.c_white
    ):
        image = cached_copy(
            _scalecache(sprite), image, (number, width, height, angle, int(color), alpha_255)
        )
    if angle:
        corner = (corner[0] - image.get_width() // 2, corner[1] - image.get_height() // 2)
    gm6.screen.blit(image, corner)


def _scalecache(sprite):
    """A sprite's cache of copies; pickling takes it from the sprite, so it may be missing."""
    try:
        return sprite.scalecache
    except AttributeError:
        sprite.scalecache = {}
        return sprite.scalecache


def _rotated_corner(sprite, xscale, yscale, angle):
    """Where the middle of a turned sprite lies, measured from its origin on the screen."""
    x, y = (sprite.w / 2.0 - sprite.xorigin) * xscale, (sprite.h / 2.0 - sprite.yorigin) * yscale
    cosine, sine = math.cos(math.radians(angle)), math.sin(math.radians(angle))
    return x * cosine + y * sine, y * cosine - x * sine


def draw_sprite(sprite, subimage, x, y):
    draw_sprite_ext(sprite, subimage, x, y, 1.0, 1.0, 0, colors.c_white, 1.0)


def draw_background_slot(room, number, surface):
    """Draw one of the room's backgrounds, stretched, tiled and moved as its slot says.

    The view's corner is the surface's: that is the screen only for a view that fills it, any
    other composes its backgrounds on a surface of its own.
    """
    background = gm6.game.backgrounds[room.background_index[number]]
    xscale = room.background_xscale[number] * view.xscale
    yscale = room.background_yscale[number] * view.yscale
    width, height = int(round(background.w * xscale)), int(round(background.h * yscale))
    if width < 1 or height < 1:
        return
    image = background.surf
    color, alpha = room.background_blend[number], int(room.background_alpha[number] * 255)
    if (width, height, color, alpha) != (background.w, background.h, colors.c_white, 255):
        image = cached_copy(
            background.scaled_data_cache, image, (0, width, height, 0, color, alpha)
        )
    slot = getattr(room, "bg%d" % number)
    follow = view.x * slot.parallax if slot is not None else 0
    x = int(math.floor((room.background_x[number] + follow - view.x) * view.xscale))
    y = int(math.floor((room.background_y[number] - view.y) * view.yscale))
    columns = _positions(x, width, view.clip.width, room.background_htiled[number])
    rows = _positions(y, height, view.clip.height, room.background_vtiled[number])
    for row in rows:
        for column in columns:
            surface.blit(image, (column, row))


def draw_tiles(room, surface):
    """Draw the room's tiles in the view being drawn: larkspur does so in rooms without views.

    As with backgrounds, the view's corner is the surface's.
    """
    backgrounds = gm6.game.backgrounds
    width, height = view.clip.size
    for tile in room.tiles:
        left, top = _from_corner(tile.x, tile.y)
        right, bottom = _from_corner(tile.x + tile.w, tile.y + tile.h)
        if not (0 < right > left < width and 0 < bottom > top < height):
            continue
        background = backgrounds[tile.background_idx]
        area = tile.tilex, tile.tiley, tile.w, tile.h
        if (right - left, bottom - top) == (tile.w, tile.h):
            surface.blit(background.surf, (left, top), area)
        else:
            surface.blit(_scaled_tile(background, area, right - left, bottom - top), (left, top))


def _scaled_tile(background, area, width, height):
    """A tile at another size, made of itself alone: nothing of what lies beside it gets in."""
    key = (area, width, height, 0, colors.c_white, 255)
    if key not in background.scaled_data_cache:
        tile = pygame.Surface(area[2:], pygame.SRCALPHA, 32)
        tile.blit(background.surf, (0, 0), area)
        return cached_copy(background.scaled_data_cache, tile, key)
    return background.scaled_data_cache[key]


def _from_corner(x, y):
    """How far from the view's corner a point of the room is, in whole pixels of the screen."""
    return int(math.floor((x - view.x) * view.xscale)), int(math.floor((y - view.y) * view.yscale))


def _positions(start, size, end, tiled):
    """Where to put copies of a picture along one axis so that they cover 0 to `end`."""
    if not tiled:
        return [start]
    return range(start - (start + size - 1) // size * size, end, size)


def sprite_create_from_screen(x, y, width, height, xorigin=0, yorigin=0, name="screen"):
    """A new sprite, not in the game's list, with a part of the screen as its picture."""
    sprite = larkspur.GMSprite_from_surface(gm6.screen.subsurface((x, y, width, height)), name)
    sprite.xorigin, sprite.yorigin = xorigin, yorigin
    return sprite


# --- Colours, rectangles, gradients --------------------------------------------------------------


def draw_set_color(color):
    py_draw_props.color = colors.color_to_rgb(color)


def draw_get_color():
    return colors.make_color_rgb(*py_draw_props.color)


def draw_set_alpha(alpha):
    py_draw_props.alpha = float(alpha)


def draw_get_alpha():
    return py_draw_props.alpha


def _screen_rectangle(x1, y1, x2, y2):
    """A rectangle of the room on the screen, cut to the view's port; None when outside it."""
    left, top = view.to_screen(min(x1, x2), min(y1, y2))
    right, bottom = view.to_screen(max(x1, x2), max(y1, y2))
    left, top = max(left, view.clip.left), max(top, view.clip.top)
    right, bottom = min(right, view.clip.right), min(bottom, view.clip.bottom)
    if left >= right or top >= bottom:
        return None
    return left, top, right, bottom


def draw_rectangle(x1, y1, x2, y2, outline=0):
    """Draw a rectangle of the room in the current colour and alpha, filled or as an outline."""
    rectangle = _screen_rectangle(x1, y1, x2, y2)
    if rectangle is None:
        return
    if outline and py_draw_props.alpha != 1.0:
        _translucent_outline(*[int(value) for value in rectangle])
        return
    if not outline and py_draw_props.alpha != 1.0:
        # The translucent fill takes its last row in and leaves its last column out.
        left, top, right, bottom = rectangle
        rectangle = left, top, right, bottom - 1
    # larkspur scales about the view's position; the port and the view's offset are ours.
    left, right = [(value - view.x) / view.xscale + view.x for value in rectangle[::2]]
    top, bottom = [(value - view.y) / view.yscale + view.y for value in rectangle[1::2]]
    larkspur.draw_rectangle(left, top, right, bottom, 1 if outline else 0)


def _translucent_outline(left, top, right, bottom):
    alpha_255 = int(py_draw_props.alpha * 255)
    pixel = colors.color_to_pixel(py_draw_props.color, gm6.screen)
    for x1, y1, x2, y2 in (
        (left, top, right, top),
        (left, bottom - 1, right, bottom - 1),
        (left, top + 1, left + 1, bottom - 2),
        (right - 1, top + 1, right, bottom - 2),
    ):
        larkspur.fill_translucent(gm6.screen, x1, y1, x2, y2, pixel, alpha_255)


def draw_rectangle_color(x1, y1, x2, y2, color1, color2, color3, color4, outline=0):
    """Draw a rectangle whose corners (top left, top right, bottom right, bottom left) differ.

    The current alpha applies to filled ones. Vertical and opaque horizontal gradients are one
    call; any other is drawn in upright strips.
    """
    rectangle = _screen_rectangle(x1, y1, x2, y2)
    if rectangle is None:
        return
    left, top, right, bottom = [int(value) for value in rectangle]
    alpha = py_draw_props.alpha
    if color1 == color2 == color3 == color4:
        kept = py_draw_props.color
        draw_set_color(color1)
        draw_rectangle(x1, y1, x2, y2, outline)
        py_draw_props.color = kept
    elif (
        outline
        or (color1 == color2 and color3 == color4)
        or (int(alpha * 255) == 255 and color1 == color4 and color2 == color3)
    ):
        larkspur.fast_draw_rectangle_color(
            left,
            top,
            right,
            bottom,
            color1,
            color2,
            color3,
            color4,
            1.0 if outline else alpha,
            int(bool(outline)),
        )
    else:
        _draw_strips(left, top, right, bottom, (color1, color2, color3, color4))


def _draw_strips(left, top, right, bottom, corners, strip=4):
    """A four-corner gradient as upright strips, each a vertical gradient."""
    alpha_255 = int(py_draw_props.alpha * 255)
    for x in range(left, right, strip):
        share = (x - left) / float(max(1, right - left - 1))
        larkspur.fast_draw_gradient_v(
            gm6.screen,
            x,
            top,
            min(x + strip, right),
            bottom,
            colors.merge_color(corners[0], corners[1], share),
            colors.merge_color(corners[3], corners[2], share),
            alpha_255,
        )


def draw_panel(x, y, width, height, top, bottom, opacity=0.6):
    """A glass panel at a place of the screen: a gradient, a dark film and a gleam in one call.

    `top` and `bottom` are the gradient's GM colours. Panels belong to the screen, so their place
    is not moved by the view.
    """
    larkspur.fast_draw_gradients_vcv(
        gm6.screen,
        x,
        y,
        x + width,
        y + height,
        top,
        bottom,
        opacity,
        colors.color_to_pixel((6, 8, 20), gm6.screen),
        0.25,
        colors.c_white,
        colors.c_black,
        0.10,
    )
    larkspur.fill_translucent(gm6.screen, x, y, x + width, y, 0xFFFFFF, 70)
    larkspur.fill_translucent(gm6.screen, x, y + height - 1, x + width, y + height - 1, 0, 110)


# --- Text ----------------------------------------------------------------------------------------

_text_cache = {}


def draw_set_font(font):
    """Draw text with this pygame font; None is pygame's own at 18 pixels."""
    py_draw_props.font = font


def draw_set_halign(halign):
    py_draw_props.halign = halign


def draw_text(x, y, text):
    """Write at a point of the room in the current colour and font."""
    draw_text_on_screen(*(view.to_screen(x, y) + (text,)))


def draw_text_on_screen(x, y, text):
    """Write at a point of the screen in the current colour and font."""
    font = py_draw_props.font or _default_font()
    key = font, str(text), py_draw_props.color
    picture = _text_cache.get(key)
    if picture is None:
        if len(_text_cache) >= CACHE_LIMIT:
            _text_cache.clear()
        picture = _text_cache[key] = font.render(str(text), True, py_draw_props.color)
    x -= picture.get_width() * py_draw_props.halign // 2
    gm6.screen.blit(picture, (int(x), int(y)))


_fonts = {}


def text_font(height_pixels):
    """pygame's own font in a height."""
    if height_pixels not in _fonts:
        if not pygame.font.get_init():
            pygame.font.init()
        _fonts[height_pixels] = pygame.font.Font(None, height_pixels)
    return _fonts[height_pixels]


def _default_font():
    return text_font(18)
