"""GM colours: integers 0xBBGGRR, red in the lowest byte."""

c_black = 0x000000
c_white = 0xFFFFFF
c_gray = 0x808080
c_red = 0x0000FF
c_lime = 0x00FF00
c_blue = 0xFF0000
c_yellow = 0x00FFFF
c_orange = 0x40A0FF
c_aqua = 0xFFFF00


def make_color_rgb(red, green, blue):
    """The GM colour with the given parts, each 0 to 255."""
    return int(red) | int(green) << 8 | int(blue) << 16


def color_to_rgb(color):
    """The (red, green, blue) of a GM colour."""
    color = int(color)
    return color & 0xFF, color >> 8 & 0xFF, color >> 16 & 0xFF


def merge_color(first, second, amount):
    """The GM colour `amount` (0.0 to 1.0) of the way from first to second."""
    return make_color_rgb(
        *[a + (b - a) * amount for a, b in zip(color_to_rgb(first), color_to_rgb(second))]
    )


def color_to_pixel(color, surface):
    """The pixel value, without alpha bits, that `surface` has for a colour.

    `color` is a GM colour or a sequence that starts with red, green and blue.
    """
    rgb = tuple(color)[:3] if hasattr(color, "__len__") else color_to_rgb(color)
    red, green, blue = surface.get_masks()[:3]
    return surface.map_rgb(rgb) & (red | green | blue)
