// Translucent fills: the one place where old pixels are faded and a new colour is added to them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Each pixel p of `height` rows of `width` becomes sum + multalpha(p, keep); per channel
/// sum + floor(p * keep / 256). `sum` is the colour to add, already scaled by its own weight; the
/// addition wraps at 32 bits. The top byte of p never counts. The first row is at `pixels`, each
/// next one `pitch_bytes` further. Either number may be 0.
void fill_translucent_rows(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                           std::size_t height, std::uint8_t keep, std::uint32_t sum) noexcept;

/// The same with a sum for each row, `height` of them.
void fill_each_translucent_row(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                               std::size_t height, std::uint8_t keep,
                               const std::uint32_t* sums) noexcept;

}  // namespace larkspur::pixel
