// Compositing pixels with alpha over opaque ones.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Composites `height` rows of `width` source pixels over as many target pixels; alpha is in bits
/// 24-31 of the source. Each of the target's three low bytes d becomes
/// floor((s * alpha + d * (256 - alpha)) / 256), and s where alpha is 255; its top byte stays. Rows
/// are their pitches apart; source and target share no memory. Either number may be 0.
void composite_over_rows(PixelWord* target, std::ptrdiff_t target_pitch_bytes,
                         const PixelWord* source, std::ptrdiff_t source_pitch_bytes,
                         std::size_t width, std::size_t height) noexcept;

}  // namespace larkspur::pixel
