#include "pixel/surface/tile_blit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numeric>

#include "base/convert.h"
#include "base/surface.h"

namespace larkspur {
namespace {

// From this row length on memcpy falls to a tenth of its speed where the distance of source and
// target is just above a multiple of 4096 bytes; SDL's way past the cache does not.
constexpr std::size_t kLongRowBytes = 2048;

// What is left of a blit along one axis.
struct Span {
    int from;
    int to;
    int length;
};

// Clips one axis of a blit. Positions in the target are 16 bits wide and wrap like SDL's.
Span clip_axis(int from, int length, std::int16_t to, int source_length, int clip_start,
               int clip_length) noexcept {
    if (from < 0) {
        length += from;
        to = low_16_bits(to - from);
        from = 0;
    }
    length = std::min(length, source_length - from);
    const int before = clip_start - to;
    if (before > 0) {
        length -= before;
        to = low_16_bits(to + before);
        from += before;
    }
    const int behind = to + length - clip_start - clip_length;
    if (behind > 0) {
        length -= behind;
    }
    return {from, to, length};
}

bool have_same_format(const SDL_PixelFormat& a, const SDL_PixelFormat& b) noexcept {
    return a.BitsPerPixel == b.BitsPerPixel && a.Rmask == b.Rmask && a.Gmask == b.Gmask &&
           a.Bmask == b.Bmask && a.Amask == b.Amask;
}

// True when blitting copies each pixel's bytes as they are, and no two pixels are the same memory.
// Pixels of one byte stand for colours of a palette, which SDL may have to translate.
bool is_plain_copy(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    constexpr Uint32 kBlending = SDL_SRCALPHA | SDL_SRCCOLORKEY | SDL_HWACCEL;
    return (source.flags & kBlending) == 0 && source.format->BytesPerPixel > 1 &&
           has_plain_pixels(&source) && has_plain_pixels(&target) &&
           have_same_format(*source.format, *target.format) && !share_memory(source, target);
}

void copy_rows(const SDL_Surface& source, const SDL_Surface& target, const Span& x,
               const Span& y) noexcept {
    const std::size_t pixel_bytes = source.format->BytesPerPixel;
    const std::size_t row_bytes = x.length * pixel_bytes;
    const auto* from = static_cast<const std::uint8_t*>(source.pixels) +
                       std::ptrdiff_t{y.from} * source.pitch + x.from * pixel_bytes;
    auto* to = static_cast<std::uint8_t*>(target.pixels) + std::ptrdiff_t{y.to} * target.pitch +
               x.to * pixel_bytes;
    for (int row = 0; row < y.length; ++row) {
        std::memcpy(to, from, row_bytes);
        from += source.pitch;
        to += target.pitch;
    }
}

// Blits from one surface to another whose pixels it copies.
void copy_tile(const SDL_Surface& source, const SDL_Rect& from, const SDL_Surface& target,
               const SDL_Rect& to) noexcept {
    const SDL_Rect& clip = target.clip_rect;
    const Span x = clip_axis(from.x, from.w, to.x, source.w, clip.x, clip.w);
    const Span y = clip_axis(from.y, from.h, to.y, source.h, clip.y, clip.h);
    if (x.length > 0 && y.length > 0) {
        copy_rows(source, target, x, y);
    }
}

// Tiles of 8 x 8 pixels and where they go: inside, over each edge, and past the ends of 16 bits.
constexpr struct {
    SDL_Rect from;
    SDL_Rect to;
} kTrials[] = {
    {{0, 0, 8, 8}, {0, 0, 0, 0}},
    {{-2, 3, 9, 20}, {5, -2, 0, 0}},
    {{1, -4, 4, 6}, {-1, 4, 0, 0}},
    {{0, -32768, 8, 65535}, {3, 32767, 0, 0}},
    {{-32768, 0, 65535, 8}, {32767, 1, 0, 0}},
};

// Other builds of SDL clip otherwise, or hide their locks: whether this one blits tiles as we do is
// tried out.
bool sdl_agrees() noexcept {
    constexpr int kSide = 8;
    std::array<SurfacePtr, 3> made;
    for (SurfacePtr& surface : made) {
        surface.reset(
            SDL_CreateRGBSurface(SDL_SWSURFACE, kSide, kSide, 32, 0xFF0000, 0xFF00, 0xFF, 0));
        if (surface == nullptr) {
            return false;
        }
    }
    SDL_Surface& source = *made[0];
    SDL_Surface& by_sdl = *made[1];
    SDL_Surface& by_us = *made[2];
    auto* pixels = static_cast<std::uint8_t*>(source.pixels);
    std::iota(pixels, pixels + buffer_bytes(source), std::uint8_t{1});
    for (const auto& trial : kTrials) {
        SDL_Rect from = trial.from;
        SDL_Rect to = trial.to;
        copy_tile(source, from, by_us, to);
        if (SDL_UpperBlit(&source, &from, &by_sdl, &to) != 0 ||
            std::memcmp(by_us.pixels, by_sdl.pixels, buffer_bytes(by_us)) != 0) {
            return false;
        }
    }
    return locks_show(&source);
}

}  // namespace

bool blit_tile(SDL_Surface* source, SDL_Rect from, SDL_Surface* target, SDL_Rect to) noexcept {
    static const bool is_known = sdl_agrees();
    if (!is_known || from.w * std::size_t{source->format->BytesPerPixel} >= kLongRowBytes ||
        !is_plain_copy(*source, *target)) {
        return SDL_UpperBlit(source, &from, target, &to) == 0;
    }
    copy_tile(*source, from, *target, to);
    return true;
}

}  // namespace larkspur
