// The colours of gradients, and rows set to them as they are. Translucent rows are fill_kernels'
// business.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Where a pixel word has its channels: a value of eight bits loses `loss` of its low bits and
/// moves up by `shift`, each below 32. `opaque` is set in every word.
struct PixelLayout {
    struct Channel {
        std::uint32_t loss;
        std::uint32_t shift;
    };
    Channel red;
    Channel green;
    Channel blue;
    std::uint32_t opaque;
};

/// Sets each of `count` words to the pixel value of blend(first, second, its weight), both being GM
/// colours (red in bits 0-7, green in 8-15, blue in 16-23; the top byte counts for nothing).
void mix_colours(PixelWord* words, const std::int32_t* weights, std::size_t count,
                 std::uint32_t first, std::uint32_t second, PixelLayout layout) noexcept;

/// Adds multalpha(word, weight) of each of `count` words to its sum, which wraps at 32 bits.
void add_scaled(std::uint32_t* sums, const std::uint32_t* words, std::size_t count,
                std::uint8_t weight) noexcept;

/// Sets `count` pixels to `colour`, all 32 bits of it.
void set_pixels(PixelWord* pixels, std::size_t count, std::uint32_t colour) noexcept;

}  // namespace larkspur::pixel
