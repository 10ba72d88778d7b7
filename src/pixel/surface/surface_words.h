// Where the pixels of a 32-bit surface are, as gradients and fills count them.
#pragma once

#include <SDL.h>

#include <cstddef>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Bytes from one row to the next: whole pixels, so an odd rest of the pitch counts for nothing.
inline std::ptrdiff_t row_bytes(const SDL_Surface& surface) {
    return surface.pitch / 4 * 4;
}

/// The pixel in column x of row y, which must be inside the surface.
inline PixelWord* pixel_at(const SDL_Surface& surface, int x, int y) {
    return pixel_words(static_cast<unsigned char*>(surface.pixels) + y * row_bytes(surface)) + x;
}

}  // namespace larkspur::pixel
