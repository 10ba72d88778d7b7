#pragma once

#include <cstddef>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Rows of source pixels and as many of a target, on which they are drawn pixel by pixel. Rows are
/// their pitches apart; either number may be 0. The two share no memory.
struct PixelRows {
    PixelWord* target;
    std::ptrdiff_t target_pitch_bytes;
    const PixelWord* source;
    std::ptrdiff_t source_pitch_bytes;
    std::size_t width;
    std::size_t height;

    /// Leaves out the first row.
    void drop_row() noexcept {
        target = pixel_words(reinterpret_cast<unsigned char*>(target) + target_pitch_bytes);
        source = pixel_words(reinterpret_cast<const unsigned char*>(source) + source_pitch_bytes);
        --height;
    }
};

}  // namespace larkspur::pixel
