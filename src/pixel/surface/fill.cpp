#include "pixel/surface/fill.h"

#include <algorithm>
#include <cstddef>

#include "base/surface.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/fill_kernels.h"
#include "pixel/surface/surface_words.h"

namespace larkspur::pixel {

bool translucent_fill_rect(SDL_Surface* surface, int x1, int y1, int x2, int y2,
                           std::uint32_t colour, std::uint8_t alpha) {
    const SurfaceLock lock(surface);
    if (!lock || !has_32_bit_pixels(*surface)) {
        return false;
    }
    const int left = std::max(x1, 0);
    const int top = std::max(y1, 0);
    const int right = std::min(x2, surface->w - 1);
    const int bottom = std::min(y2, surface->h - 1);
    if (left >= right || top > bottom) {
        return true;
    }
    const auto keep = static_cast<std::uint8_t>(255 - alpha);
    fill_translucent_rows(
        pixel_at(*surface, left, top), row_bytes(*surface), static_cast<std::size_t>(right - left),
        static_cast<std::size_t>(bottom - top) + 1, keep, multalpha(colour, alpha));
    return true;
}

}  // namespace larkspur::pixel
