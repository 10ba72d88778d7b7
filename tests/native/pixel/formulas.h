// What becomes of one pixel or byte, channel by channel: the scalar formulas that kernels are held
// to. They share no code with the module.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "pixel/kernels/gradient_kernels.h"
#include "pixel/kernels/key_kernels.h"
#include "pixel/kernels/zoom_kernels.h"

namespace larkspur::pixel {

/// A source's pixel in places of zooms and turns.
constexpr std::uint32_t kPixel = 65536;

/// Channel `index` of a word, 0 being the lowest byte.
constexpr std::uint32_t channel(std::uint32_t word, unsigned index) {
    return word >> (8 * index) & 0xFF;
}

inline std::uint32_t added(std::uint32_t over, std::uint32_t under) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 4; ++place) {
        const std::uint32_t sum = channel(over, place) + channel(under, place);
        result |= (sum < 256 ? sum : 255) << (8 * place);
    }
    return result;
}

inline unsigned char subtracted(int byte, int k) {
    return static_cast<unsigned char>(byte < k ? 0 : byte - k);
}

/// The three low bytes, each scaled by a weight in 256ths.
inline std::uint32_t scaled(std::uint32_t word, std::uint32_t weight) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 3; ++place) {
        result |= channel(word, place) * weight / 256 << (8 * place);
    }
    return result;
}

inline std::uint32_t filled(std::uint32_t pixel, std::uint32_t keep, std::uint32_t sum) {
    return scaled(pixel, keep) + sum;
}

/// Alpha in bits 24-31: of the word without its lowest byte, scaled, bits 24-31 remain.
inline std::uint32_t faded_top(std::uint32_t word, std::uint32_t alpha,
                               std::uint32_t /*alpha_mask*/, std::uint32_t colour_mask) {
    const std::uint64_t product = std::uint64_t{word / 256} * alpha;
    return static_cast<std::uint32_t>(product / 0x1000000 % 256 * 0x1000000) | (word & colour_mask);
}

/// Alpha in a lower byte: floor(alpha of the word * alpha / 256), in its place.
inline std::uint32_t faded_low(std::uint32_t word, std::uint32_t alpha, std::uint32_t alpha_mask,
                               std::uint32_t colour_mask) {
    for (unsigned place = 0; place < 3; ++place) {
        if (alpha_mask == 0xFFU << (8 * place)) {
            return (channel(word, place) * alpha / 256 << (8 * place)) + (word & colour_mask);
        }
    }
    return word & colour_mask;
}

/// A gradient's colour as a pixel; weights from 0 to 256. GM colours begin with red.
inline std::uint32_t mixed_colour(std::uint32_t first, std::uint32_t second, std::int32_t weight,
                                  const PixelLayout& layout) {
    const PixelLayout::Channel channels[] = {layout.red, layout.green, layout.blue};
    std::uint32_t word = layout.opaque;
    for (unsigned i = 0; i < 3; ++i) {
        const auto share = static_cast<std::uint32_t>(weight);
        const std::uint32_t value =
            (channel(first, i) * share + channel(second, i) * (256 - share)) / 256;
        word |= value >> channels[i].loss << channels[i].shift;
    }
    return word;
}

inline bool has_colour(std::uint32_t pixel, const ColourKey& key) {
    return (pixel & key.compared) == key.colour;
}

/// Each low byte comes nearer to the upper one by its alpha's share in 256ths, rounded up.
inline std::uint32_t composited_up(std::uint32_t over, std::uint32_t under, int alpha,
                                   std::uint32_t top) {
    std::uint32_t result = top;
    for (unsigned place = 0; place < 3; ++place) {
        const auto s = static_cast<int>(channel(over, place));
        const auto d = static_cast<int>(channel(under, place));
        result |= static_cast<std::uint32_t>((256 * d + (s - d) * alpha + 255) / 256)
                  << (8 * place);
        if (place == 0 && (d - s) * alpha > 255) {
            result |= 0x01000000;
        }
    }
    return result;
}

/// Each low byte comes nearer to the upper one by a share in 256ths, rounded down.
inline std::uint32_t composited_down(std::uint32_t over, std::uint32_t under, int share) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 3; ++place) {
        const auto s = static_cast<int>(channel(over, place));
        const auto d = static_cast<int>(channel(under, place));
        result |= static_cast<std::uint32_t>((256 * d + (s - d) * share) / 256) << (8 * place);
    }
    return result;
}

/// The share is the upper pixel's own alpha, but 255 leaves nothing of the other; the top byte
/// stays.
inline std::uint32_t composited_over(std::uint32_t over, std::uint32_t under) {
    const auto alpha = static_cast<int>(over >> 24);
    return composited_down(over, under, alpha == 255 ? 256 : alpha) | (under & 0xFF000000);
}

/// One alpha for all pixels, and an opaque result.
inline std::uint32_t composited_evenly(std::uint32_t over, std::uint32_t under, int alpha) {
    return composited_down(over, under, alpha) | 0xFF000000;
}

/// The source's column in which place x * step of a zoom lies, and the share of the next one there.
constexpr std::size_t column_at(std::size_t x, std::uint32_t step) {
    return static_cast<std::size_t>(std::uint64_t{x} * step / kPixel);
}
constexpr std::uint32_t share_at(std::size_t x, std::uint32_t step) {
    return static_cast<std::uint32_t>(std::uint64_t{x} * step % kPixel);
}

/// The narrowest source that a row can be mixed of: the place of the row's last pixel may be the
/// beginning of the source's last one.
constexpr std::size_t least_width_to_mix(std::size_t width, std::uint32_t step) {
    return column_at(width - 1, step) + (share_at(width - 1, step) != 0 ? 2 : 1);
}

/// Each byte goes from a's to b's by its share in 65536ths, rounded down.
inline std::uint32_t mixed_pixel(std::uint32_t a, std::uint32_t b, std::uint32_t share) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 4; ++place) {
        const std::uint32_t sum = channel(a, place) * (kPixel - share) + channel(b, place) * share;
        result |= sum / kPixel << (8 * place);
    }
    return result;
}

/// The line of a row of `width` pixels that begins at (x, y) of a source of width_of x height_of
/// pixels, which may be outside, and the pixels of it that lie inside.
inline SourceLine inner_line(std::int64_t x, std::int64_t y, std::int64_t x_step,
                             std::int64_t y_step, int width, std::int64_t width_of,
                             std::int64_t height_of) {
    SourceLine line = {static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), width, width};
    for (int i = 0; i < width; ++i) {
        const std::int64_t place_x = x + i * x_step;
        const std::int64_t place_y = y + i * y_step;
        if (place_x >= 0 && place_x < width_of * kPixel && place_y >= 0 &&
            place_y < height_of * kPixel) {
            line.first = std::min(line.first, i);
            line.end = i + 1;
        }
    }
    if (line.first == width) {
        line.end = 0;
    }
    return line;
}

}  // namespace larkspur::pixel
