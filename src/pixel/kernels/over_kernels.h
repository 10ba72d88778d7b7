// Compositing pixels over opaque ones.
#pragma once

#include <cstdint>

#include "pixel/kernels/pixel_rows.h"

namespace larkspur::pixel {

/// Pixels with an alpha of their own, in bits 24-31. Each of the target's three low bytes d becomes
/// floor((s * alpha + d * (256 - alpha)) / 256), and s where alpha is 255; its top byte stays.
void composite_over_rows(const PixelRows& rows) noexcept;

/// Pixels with one alpha for all. Each of the target's three low bytes d becomes
/// floor((s * alpha + d * (256 - alpha)) / 256), its top byte 255.
void composite_evenly_rows(const PixelRows& rows, std::uint8_t alpha) noexcept;

}  // namespace larkspur::pixel
