// Arithmetic on packed colours: the three low bytes of a 32-bit word hold a channel each, in an
// order that does not matter here, so it serves a GM colour (0x00BBGGRR) as well as a mapped pixel.
// All integer arithmetic is unsigned and wraps at 32 bits.
#pragma once

#include <cstdint>

#include "base/convert.h"

namespace larkspur::pixel {

// Two channels go through one multiply: each has eight zero bits above it to grow into.
constexpr std::uint32_t kOuterChannels = 0x00FF00FF;
constexpr std::uint32_t kMiddleChannel = 0x0000FF00;
constexpr std::uint32_t kLowChannel = 0x000000FF;
constexpr std::uint32_t kHighChannel = 0x00FF0000;
constexpr std::uint32_t kAllChannels = 0x00FFFFFF;
constexpr std::uint32_t kTopByte = 0xFF000000;

/// The alpha byte that leaves nothing of what is behind.
constexpr int kOpaque = 255;

/// Weight of the first colour that leaves nothing of the second, in `blend`.
constexpr int kFullWeight = 256;

/// Scales each of the three low bytes to floor(byte * alpha / 256); the top byte becomes 0.
/// The divisor is 256, so alpha 255 turns 255 into 254.
inline std::uint32_t multalpha(std::uint32_t colour, std::uint8_t alpha) noexcept {
    return (((colour & kOuterChannels) * alpha >> 8) & kOuterChannels) +
           (((colour & kMiddleChannel) * alpha >> 8) & kMiddleChannel);
}

/// Each of the three low bytes becomes floor((a * weight + b * (256 - weight)) / 256); the top byte
/// becomes 0. The weight is the share of `a` in 256ths and is not clamped: outside 0..256 the low
/// byte, which is not masked, spills into the middle and high bytes.
inline std::uint32_t blend(std::uint32_t a, std::uint32_t b, int weight) noexcept {
    const std::uint32_t share_a = static_cast<std::uint32_t>(weight);
    const std::uint32_t share_b = static_cast<std::uint32_t>(kFullWeight) - share_a;
    const std::uint32_t low = ((a & kLowChannel) * share_a + (b & kLowChannel) * share_b) >> 8;
    const std::uint32_t middle =
        ((a & kMiddleChannel) * share_a + (b & kMiddleChannel) * share_b) >> 8;
    const std::uint32_t high = ((a & kHighChannel) * share_a + (b & kHighChannel) * share_b) >> 8;
    return (low + (middle & kMiddleChannel) + (high & kHighChannel)) & kAllChannels;
}

/// blend(a, b, trunc(256 * t)): t = 1 gives a, t = 0 gives b. t outside 0..1 is not clamped.
inline std::uint32_t interpolate_unformatted(std::uint32_t a, std::uint32_t b, float t) noexcept {
    return blend(a, b, truncate_to_int32(256.0 * static_cast<double>(t)));
}

/// The weight of the first colour at fraction t of a gradient. The constant is 255 and not the
/// other interpolation's 256: t = 1 keeps 1/256 of the second colour. The product is a single
/// float, as all numbers of gradients are; that shows for t above 1 alone.
inline int gradient_weight(float t) noexcept {
    return truncate_to_int32(255.0F * t);
}

/// 1 for the two additive blend modes, 1 and 128; 0 for every other.
inline int blend_mode_flatten(int mode) noexcept {
    return mode == 1 || mode == 128 ? 1 : 0;
}

}  // namespace larkspur::pixel
