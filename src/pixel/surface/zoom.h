// SDL_gfx's zooms and rotations, faster: to the last bit of the picture and of its record they give
// what SDL_gfx 2.0.25 does. Pictures of 32 bits are drawn by loops of ours; what these do not take,
// and whatever the SDL_gfx at hand turns out to draw in another way, is left to it.
//
// This is the only place that calls it for this, because its results need care. Their clip
// rectangle is two rows taller than they are, and once SDL has encoded such a picture, decoding it
// writes past its pixels; here it is set right at once. A layer over SDL 2 would even draw the two
// rows.
#pragma once

#include <SDL.h>

#include "base/surface.h"

namespace larkspur::pixel {

/// Sides of a rectangle in pixels, not yet whole ones.
struct Extents {
    double width;
    double height;
};

/// A side of so many pixels, turned ones of twice as many, is no int to SDL_gfx, which then makes
/// the smallest picture.
constexpr double kIntEnd = 2147483648.0;

/// The box around a surface that was scaled by a factor for each axis, negative or not, and then
/// turned.
Extents turned_extents(const SDL_Surface& surface, double angle_degrees, double x_factor,
                       double y_factor) noexcept;

/// What keeps SDL_gfx from scaling a surface by these factors without leaving its memory, as a text
/// for messages; null when nothing does. It reads outside an 8-bit surface whose factor is
/// negative, from a null pointer for a surface without an area, and counts places in the source in
/// 65536ths of a pixel, which are no int from 32768 pixels on. Of the factors only the signs count.
const char* zoom_obstacle(const SDL_Surface& surface, double x_factor, double y_factor) noexcept;

/// The same for the rotations, also by 0 degrees. These go through a copy of 32 bits of a surface
/// that has neither 8 nor 32; SDL makes none of more than 16383 columns, and SDL_gfx does not ask
/// whether it did. Nor does it ask whether a colour key is a place in the palette where it looks it
/// up.
const char* turn_obstacle(const SDL_Surface& surface, double x_factor, double y_factor) noexcept;

// All of these return null when there is an obstacle (after a line on standard error that names
// it), for a null surface, when the pixels cannot be reached and when SDL refuses the size.
// Negative factors mirror; what is no usable number, or comes to less than a pixel, gives one
// pixel. The rotations also give their result a colour key and ask for run-length encoding.

/// A copy of the surface scaled by a factor for each axis.
SurfacePtr zoomed(SDL_Surface* surface, double x_factor, double y_factor, bool smooth) noexcept;

/// A copy turned counter-clockwise and scaled, in a surface large enough for it.
SurfacePtr rotozoomed(SDL_Surface* surface, double angle_degrees, double factor,
                      bool smooth) noexcept;

/// The same with a factor for each axis, which is applied before the turn.
SurfacePtr rotozoomed_xy(SDL_Surface* surface, double angle_degrees, double x_factor,
                         double y_factor, bool smooth) noexcept;

}  // namespace larkspur::pixel
