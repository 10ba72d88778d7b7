// Scaling of the alpha channel of whole pixel buffers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// For a format with alpha in bits 24-31: each of `count` words p becomes
/// (((p >> 8) * alpha) & alpha_mask) | (p & colour_mask), wrapping at 32 bits. The lower channels
/// take part in the product, so their carries reach the alpha: 0xFF000000 times 255 is 0xFE000000,
/// and 0xFFFFFFFF times 255 is 0xFEFFFFFF. Pictures depend on these bits.
void scale_top_alpha(PixelWord* words, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) noexcept;

/// For a format with alpha further down, or with none: each word p becomes
/// ((((p & alpha_mask) * alpha) >> 8) & alpha_mask) | (p & colour_mask).
void scale_low_alpha(PixelWord* words, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) noexcept;

}  // namespace larkspur::pixel
