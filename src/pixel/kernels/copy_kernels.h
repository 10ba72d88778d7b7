// Copies of rows of pixels, plain and mirrored. Source and destination never overlap.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_rows.h"

namespace larkspur::pixel {

/// Copies `rows` rows of `row_bytes` bytes each. Either pitch may be negative: its pointer then
/// names the last row in memory, and the rows are walked backwards. With a source pitch of 0 every
/// row becomes a copy of the one at `from`.
void copy_rows(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t row_bytes, std::size_t rows) noexcept;

/// Each source pixel p becomes the target's (p & kept) | added.
void copy_masked_rows(const PixelRows& rows, std::uint32_t kept, std::uint32_t added) noexcept;

/// As copy_rows, for rows of `width` 32-bit pixels, each row mirrored: pixel x is the source's
/// pixel width - 1 - x.
void copy_rows_mirrored(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
                        std::ptrdiff_t from_pitch_bytes, std::size_t width,
                        std::size_t rows) noexcept;

}  // namespace larkspur::pixel
