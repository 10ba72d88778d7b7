// Rectangles of the host's drawing functions: filled, translucent, in up to four colours.
#pragma once

#include "core/python.h"

namespace larkspur::pixel {

/// Module function fill_translucent(surface, x1, y1, x2, y2, colour, alpha): blends a pixel value
/// over columns x1 .. x2 - 1 of rows y1 .. y2, the last row included; the low byte of `alpha` is
/// its share. Returns None. TypeError when `surface` is no pygame Surface, ValueError when it has
/// no 32-bit pixels, RuntimeError when its pixels can't be reached.
PyObject* fill_translucent(PyObject* module, PyObject* args) noexcept;

/// Module function fast_draw_rectangle_color(x1, y1, x2, y2, c1, c2, c3, c4, alpha, outline): draws
/// a rectangle on the display whose corners have the GM colours c1 (top left), c2 (top right), c3
/// (bottom right) and c4 (bottom left); alpha is a float with 1.0 for opaque, outline an integer.
/// Drawn are one colour that is translucent, vertical gradients that are filled or opaque, and
/// opaque filled horizontal gradients, which take c1 and c2 alone; any other call prints a line on
/// standard output and draws nothing. Returns None. RuntimeError without a display, ValueError as
/// fill_translucent(), and when the lower y of a vertical gradient or x of a horizontal one is
/// below -32768.
PyObject* fast_draw_rectangle_color(PyObject* module, PyObject* args) noexcept;

/// Module function draw_rectangle(x1, y1, x2, y2, outline=0): draws a rectangle given in room
/// coordinates (floats) on the display with the host's current drawing properties,
/// gmapi.py_draw_props: `alpha` and `color`. Opaque ones are the display Surface's fill() or
/// pygame.draw.rect() of one pixel's width; translucent ones are filled as fill_translucent() does,
/// in what gmapi.__color_to_int(color) returns. Returns None. A failing fill() or draw.rect()
/// writes a line on standard error and leaves its exception; a translucent outline writes a line
/// and fails without an exception. RuntimeError without a display or registered properties.
PyObject* draw_rectangle(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur::pixel
