#include "pixel/surface/tint.h"

#include <SDL_imageFilter.h>

#include <algorithm>
#include <array>
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

void subtract_by_kernel(unsigned char* bytes, std::size_t count, std::uint32_t value) noexcept {
    subtract_saturating(bytes, count, pattern_of(value, value));
}

void subtract_by_library(unsigned char* bytes, std::size_t count, std::uint32_t value) noexcept {
    SDL_imageFilterSubUint(bytes, bytes, static_cast<unsigned>(count), value);
}

// Whether this SDL_gfx subtracts as the kernel does, also in the order of bytes: every byte from
// every byte, and then in buffers of each length around those of its vectors.
bool agrees_with_library() noexcept {
    constexpr std::size_t kValues = 256;
    constexpr std::size_t kMostBytes = 64;
    std::array<unsigned char, 4 * kValues> by_us;
    std::array<unsigned char, 4 * kValues> by_library;
    const auto agrees_on = [&](std::size_t count, std::uint32_t value) {
        subtract_by_kernel(by_us.data(), count, value);
        subtract_by_library(by_library.data(), count, value);
        return by_us == by_library;
    };
    for (std::uint32_t k = 0; k < kValues; ++k) {
        for (std::size_t i = 0; i < by_us.size(); ++i) {
            by_us[i] = by_library[i] = static_cast<unsigned char>(i / 4);
        }
        // Four bytes that differ.
        const std::uint32_t value = k << 24 | (k ^ 0x55) << 16 | (k ^ 0xAA) << 8 | (k ^ 0xFF);
        if (!agrees_on(by_us.size(), value) || !agrees_on(k % kMostBytes, value)) {
            return false;
        }
    }
    return true;
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
    static const bool kernel_agrees = agrees_with_library();
    const auto subtract = kernel_agrees ? subtract_by_kernel : subtract_by_library;
    subtract(bytes_of(buffer), static_cast<std::size_t>(length_bytes), value);
}

void subtract_words(void* buffer, int length_bytes, std::uint32_t value) noexcept {
    subtract_groups(buffer, length_bytes, 4, pattern_of(value, value));
}

void subtract_word_pairs(void* buffer, int length_bytes, std::uint32_t low,
                         std::uint32_t high) noexcept {
    subtract_groups(buffer, length_bytes, kPatternBytes, pattern_of(low, high));
}

SurfacePtr rgba_copy(SDL_Surface* surface) noexcept {
    if (surface == nullptr || !has_video_mode() || !may_change_key_or_alpha(*surface)) {
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
