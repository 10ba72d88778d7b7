#include "pixel/surface/tint.h"

#include <SDL_imageFilter.h>

#include <algorithm>
#include <cstddef>

#include "larkspur.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/fade_kernels.h"
#include "pixel/kernels/subtract_kernels.h"
#include "pixel/surface/mapped_colour.h"

namespace larkspur::pixel {
namespace {

constexpr unsigned kTopByteShift = 24;

unsigned char* bytes_of(void* memory) noexcept {
    return static_cast<unsigned char*>(memory);
}

// The bytes of a word from the last to the first.
constexpr std::uint32_t reversed(std::uint32_t word) noexcept {
    return word >> 24 | (word >> 8 & 0xFF00) | (word << 8 & 0xFF0000) | word << 24;
}

// Saturating subtraction in groups of `group` bytes; a last group that is not complete counts
// whole.
void subtract_groups(void* buffer, int length_bytes, std::size_t group,
                     const BytePattern& pattern) noexcept {
    if (buffer == nullptr || length_bytes <= 0) {
        return;
    }
    const std::size_t groups = (static_cast<std::size_t>(length_bytes) + group - 1) / group;
    subtract_saturating(bytes_of(buffer), groups * group, pattern);
}

}  // namespace

void translucentify(SDL_Surface* surface, std::uint8_t alpha) noexcept {
    const SurfaceLock lock(surface);
    if (!lock || !has_32_bit_pixels(*surface)) {
        return;
    }
    const SDL_PixelFormat& format = *surface->format;
    const auto scale = format.Ashift >= kTopByteShift ? scale_top_alpha : scale_low_alpha;
    scale(pixel_words(bytes_of(surface->pixels)), buffer_bytes(*surface) / sizeof(PixelWord), alpha,
          format.Amask, format.Rmask | format.Gmask | format.Bmask);
}

void tint_surface(SDL_Surface* surface, std::uint32_t tint) noexcept {
    const SurfaceLock lock(surface);
    if (!lock || !has_32_bit_pixels(*surface)) {
        return;
    }
    const SDL_PixelFormat& format = *surface->format;
    const std::uint32_t loss = map_colour(kAllChannels - tint, &format) & ~format.Amask;

    // Where the 8-byte steps end follows from pitch and height, even when the buffer ends earlier.
    const std::size_t available = buffer_bytes(*surface);
    const std::size_t stepped = static_cast<std::size_t>(surface->pitch) *
                                static_cast<std::size_t>(surface->h) / kPatternBytes *
                                kPatternBytes;
    const std::size_t in_order = std::min(available, stepped);
    unsigned char* bytes = bytes_of(surface->pixels);
    subtract_saturating(bytes, in_order, pattern_of(loss, loss));
    subtract_saturating(bytes + in_order, available - in_order,
                        pattern_of(reversed(loss), reversed(loss)));
}

void satusub(void* buffer, int length_bytes, std::uint32_t value) noexcept {
    if (buffer == nullptr || length_bytes <= 0) {
        return;
    }
    unsigned char* bytes = bytes_of(buffer);
    SDL_imageFilterSubUint(bytes, bytes, static_cast<unsigned>(length_bytes), value);
}

void subtract_words(void* buffer, int length_bytes, std::uint32_t value) noexcept {
    subtract_groups(buffer, length_bytes, 4, pattern_of(value, value));
}

void subtract_word_pairs(void* buffer, int length_bytes, std::uint32_t low,
                         std::uint32_t high) noexcept {
    subtract_groups(buffer, length_bytes, kPatternBytes, pattern_of(low, high));
}

SurfacePtr rgba_copy(SDL_Surface* surface) noexcept {
    if (surface == nullptr || !has_video_mode()) {
        return nullptr;
    }
    return SurfacePtr(SDL_DisplayFormatAlpha(surface));
}

}  // namespace larkspur::pixel

extern "C" {

void Translucentify(SDL_Surface* surface, std::uint8_t alpha) {
    larkspur::pixel::translucentify(surface, alpha);
}

void Tint_Surface(SDL_Surface* surface, std::uint32_t tint) {
    larkspur::pixel::tint_surface(surface, tint);
}

void satusub(void* buffer, int length_bytes, std::uint32_t value) {
    larkspur::pixel::satusub(buffer, length_bytes, value);
}

void satusub_head(void* buffer, std::uint32_t value, std::uint32_t /*ignored*/, int length_bytes) {
    larkspur::pixel::subtract_words(buffer, length_bytes, value);
}

void satusub_body(void* buffer, std::uint32_t low, std::uint32_t high, int length_bytes) {
    larkspur::pixel::subtract_word_pairs(buffer, length_bytes, low, high);
}

satusub_subtractor subtractor_for(std::uint32_t value) {
    return {value, value};
}

satusub_start startptr_for(std::uint32_t value) {
    return {value};
}

SDL_Surface* RGBA_copy(SDL_Surface* surface) {
    return larkspur::pixel::rgba_copy(surface).release();
}

}  // extern "C"
