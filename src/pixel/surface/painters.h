// Rectangles painted into the pixels of a surface: translucent ones and gradients.
#pragma once

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

/// The lowest coordinate of a first corner from which the painters step the fraction of a gradient.
constexpr int kLowestCorner = -32768;

/// A layer whose colour runs from `top` to `bottom`, both GM colours.
struct GradientLayer {
    std::uint32_t top;
    std::uint32_t bottom;
    std::uint8_t weight;  ///< share in the painted pixel, 256ths
};

// What all painters need: a surface with 32-bit pixels that are there and locked where they must
// be, and a first corner at kLowestCorner or more along the axis of a gradient; along the other one
// it may be anywhere. Fractions are single floats that start at 1.0 and lose one step per row or
// column, so they carry the rounding of all steps before.

/// Blends `colour`, a pixel value, over columns x1 .. x2 - 1 of rows y1 .. y2, the last row
/// included: each pixel p becomes multalpha(colour, alpha) + multalpha(p, 255 - alpha), top byte
/// included, which becomes 0. So the surface's last column is never painted and its last row is.
/// Games depend on both.
void translucent_fill_rect(const SDL_Surface& surface, const Corners& corners, std::uint32_t colour,
                           std::uint8_t alpha) noexcept;

/// Composites gradients over rows y1 .. y2 - 1, columns x1 .. x2 - 1: each pixel p of a row becomes
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

}  // namespace larkspur::pixel
