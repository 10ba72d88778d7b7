// Rows of pixels set as they are, for opaque gradients. Translucent rows are fill_kernels'
// business.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/pixel_word.h"

namespace larkspur::pixel {

/// Sets `count` pixels to `colour`, all 32 bits of it.
void fill_row(PixelWord* pixels, std::size_t count, std::uint32_t colour);

/// Copies a row of `count` pixels to the `rows` rows that follow it, `pitch_bytes` apart. The rows
/// must not overlap. Nothing is copied when `rows` is not positive.
void repeat_row(PixelWord* first, std::ptrdiff_t pitch_bytes, std::size_t count, int rows);

}  // namespace larkspur::pixel
