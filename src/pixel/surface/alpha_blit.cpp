#include "pixel/surface/alpha_blit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "base/surface.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/over_kernels.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {
namespace {

PixelWord* pixel_at(const SDL_Surface& surface, int x, int y) {
    return pixel_words(static_cast<unsigned char*>(surface.pixels) +
                       static_cast<std::ptrdiff_t>(y) * surface.pitch) +
           x;
}

// SDL treats a colour key in its own way, and encodes a picture for which that was asked.
bool is_picture(const SDL_Surface& source) {
    return (source.flags & SDL_SRCALPHA) != 0 &&
           (source.flags & (SDL_SRCCOLORKEY | SDL_RLEACCELOK)) == 0 &&
           source.format->Amask == kTopByte;
}

bool have_same_bytes(const SDL_PixelFormat& a, const SDL_PixelFormat& b) {
    return a.BytesPerPixel == sizeof(PixelWord) && b.BytesPerPixel == sizeof(PixelWord) &&
           a.Rmask == b.Rmask && a.Gmask == b.Gmask && a.Bmask == b.Bmask;
}

void lay(const SDL_Surface& source, int source_x, int source_y, SDL_Surface& target, int x, int y,
         int width, int height) {
    composite_over_rows(pixel_at(target, x, y), target.pitch, pixel_at(source, source_x, source_y),
                        source.pitch, static_cast<std::size_t>(width),
                        static_cast<std::size_t>(height));
}

// Colours that take in everything, the same in every run.
void fill_with_noise(SDL_Surface& surface, std::uint32_t seed) {
    for (int y = 0; y < surface.h; ++y) {
        for (int x = 0; x < surface.w; ++x) {
            seed = seed * 1664525U + 1013904223U;
            *pixel_at(surface, x, y) = (seed >> 8 & ~kTopByte) | static_cast<std::uint32_t>(x)
                                                                     << 24;  // each alpha
        }
    }
}

// Other builds of SDL round otherwise: whether this one lays pictures as we do is tried out.
bool sdl_agrees() {
    constexpr int kAlphas = 256;
    constexpr int kRows = 32;
    std::array<SurfacePtr, 3> made;
    for (SurfacePtr& surface : made) {
        surface.reset(SDL_CreateRGBSurface(SDL_SWSURFACE, kAlphas, kRows, 32, 0xFF0000, 0xFF00,
                                           0xFF, kTopByte));
        if (surface == nullptr) {
            return false;
        }
    }
    SDL_Surface& source = *made[0];
    SDL_Surface& by_sdl = *made[1];
    SDL_Surface& by_us = *made[2];
    fill_with_noise(source, 1);
    fill_with_noise(by_sdl, 2);
    fill_with_noise(by_us, 2);
    SDL_UpperBlit(&source, nullptr, &by_sdl, nullptr);
    lay(source, 0, 0, by_us, 0, 0, kAlphas, kRows);
    if (!locks_show(&source)) {
        return false;
    }
    for (int y = 0; y < kRows; ++y) {
        if (!std::equal(pixel_at(by_us, 0, y), pixel_at(by_us, kAlphas, y),
                        pixel_at(by_sdl, 0, y))) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool blit_with_alpha(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect) {
    static const bool is_known = sdl_agrees();
    if (!is_known || !is_picture(*source) || !have_same_bytes(*source->format, *target->format) ||
        !has_plain_pixels(source) || !has_plain_pixels(target) || share_memory(*source, *target)) {
        return false;
    }
    const SDL_Rect& clip = target->clip_rect;
    const int left = std::max<int>(rect->x, clip.x);
    const int top = std::max<int>(rect->y, clip.y);
    const int width = std::min(rect->x + source->w, clip.x + clip.w) - left;
    const int height = std::min(rect->y + source->h, clip.y + clip.h) - top;
    if (left + width > target->w || top + height > target->h) {
        return false;  // the clip rectangle leaves the surface
    }
    const int source_x = left - rect->x;
    const int source_y = top - rect->y;
    rect->x = static_cast<std::int16_t>(left);
    rect->y = static_cast<std::int16_t>(top);
    if (width <= 0 || height <= 0) {
        rect->w = rect->h = 0;
        return true;
    }
    rect->w = static_cast<std::uint16_t>(width);
    rect->h = static_cast<std::uint16_t>(height);
    lay(*source, source_x, source_y, *target, left, top, width, height);
    return true;
}

}  // namespace larkspur::pixel
