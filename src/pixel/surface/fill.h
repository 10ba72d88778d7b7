// Translucent rectangles on surfaces.
#pragma once

#include <SDL.h>

#include <cstdint>

namespace larkspur::pixel {

/// Blends `colour`, a pixel value, over a rectangle of a 32-bit surface: each pixel p becomes
/// multalpha(colour, alpha) + multalpha(p, 255 - alpha), top byte included, which becomes 0.
///
/// Column x2 is not painted, row y2 is; what lies outside the surface is left out. x2 and y2 come
/// down to the surface's last column and row first, so the last column is never painted. Games
/// depend on both.
///
/// @return false, with nothing drawn, when the surface's pixels cannot be reached or are not 32-bit
bool translucent_fill_rect(SDL_Surface* surface, int x1, int y1, int x2, int y2,
                           std::uint32_t colour, std::uint8_t alpha);

}  // namespace larkspur::pixel
