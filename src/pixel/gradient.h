// Gradients: painted into the pixels of a surface, and the module functions that stack vertical
// ones over what is there.
#pragma once

#include "core/python.h"

#include <SDL.h>

#include <cstddef>
#include <cstdint>

namespace larkspur::pixel {

/// The corners of a rectangle as a caller gave them: pixels, in any position to the surface. The
/// painters clamp the second corner to the surface's last column and row, which are never painted
/// unless said otherwise, and leave out what lies left of or above it.
struct Corners {
    int x1;
    int y1;
    int x2;
    int y2;
};

/// True when the first corner is at -32768 or more on both axes, which is what the painters need:
/// the fraction of a gradient is stepped from there. Otherwise false with ValueError.
bool require_corner_in_range(const Corners& corners, const char* function) noexcept;

/// A layer whose colour runs from `top` to `bottom`, both GM colours.
struct GradientLayer {
    std::uint32_t top;
    std::uint32_t bottom;
    std::uint8_t weight;  ///< share in the painted pixel, 256ths
};

// What all painters need: a surface with 32-bit pixels that are there and locked where they must
// be, and corners in range. Fractions are single floats that start at 1.0 and lose one step per row
// or column, so they carry the rounding of all steps before.

/// Lays gradients over rows y1 .. y2 - 1, columns x1 .. x2 - 1: each pixel p of a row becomes
/// constant + multalpha(colour of each layer in that row, its weight) + multalpha(p, keep). The
/// step comes from y2 before it is clamped.
void blend_vertical_gradients(const SDL_Surface& surface, const Corners& corners,
                              const GradientLayer* layers, std::size_t count,
                              std::uint32_t constant, std::uint8_t keep) noexcept;

/// Sets rows y1 .. y2 - 1, columns x1 .. x2 - 1 to a gradient from `top` to `bottom` (GM colours).
/// The step comes from y2 before it is clamped.
void draw_vertical_gradient(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                            std::uint32_t bottom) noexcept;

/// Sets columns x1 .. x2 - 1 of rows y1 .. y2, the last included, to a gradient from `left` to
/// `right` (GM colours). Unlike the vertical ones it takes its step from x2 after it is clamped.
void draw_horizontal_gradient(const SDL_Surface& surface, const Corners& corners,
                              std::uint32_t left, std::uint32_t right) noexcept;

/// Outlines the rectangle: columns x1 .. x2 - 1 of row y1 in `top` and of row y2 in `bottom` (GM
/// colours), then columns x1 and x2 of rows y1 + 1 .. y2 in a gradient that starts with `top` in
/// row y1 + 1. So the sides start a row late, the right one stands a column right of the edges, and
/// the sides end in the bottom row. The step comes from y2 before it is clamped.
void draw_gradient_outline(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                           std::uint32_t bottom) noexcept;

/// Module functions fast_draw_gradient*(surface, x1, y1, x2, y2, layers...): lay vertical gradients
/// ('v': top colour, bottom colour, opacity) and constant pixel values ('c': value, opacity) over a
/// rectangle, the first layer undermost, as the letters of the name say. Opacities are floats with
/// 1.0 for opaque; fast_draw_gradient_v takes an alpha of 0..255 instead. Return None.
/// TypeError when `surface` is no pygame Surface, ValueError when it has no 32-bit pixels or x1 or
/// y1 is below -32768, RuntimeError when its pixels can't be reached.
PyObject* fast_draw_gradient_v(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vc(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vv(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vcv(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vcvvc(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur::pixel
