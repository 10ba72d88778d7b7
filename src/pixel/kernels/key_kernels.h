// Drawing pixels with a colour key: those that have its colour are left out.
#pragma once

#include <cstdint>

#include "pixel/kernels/pixel_rows.h"

namespace larkspur::pixel {

/// A source pixel p has the key's colour when (p & compared) == colour.
struct ColourKey {
    std::uint32_t colour;
    std::uint32_t compared;
};

/// Pixels without the key's colour become (p & kept) | added; the target's others stay.
void copy_keyed_rows(const PixelRows& rows, ColourKey key, std::uint32_t kept,
                     std::uint32_t added) noexcept;

/// Composites the pixels without the key's colour with one alpha for all: each of the target's
/// three low bytes d becomes ceil((s * alpha + d * (256 - alpha)) / 256). The top byte becomes that
/// of `added`, with bit 24 set where (d - s) * alpha of the lowest byte is above 255.
void composite_keyed_rows(const PixelRows& rows, ColourKey key, std::uint8_t alpha,
                          std::uint32_t added) noexcept;

}  // namespace larkspur::pixel
