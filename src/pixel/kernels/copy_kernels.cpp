#include "pixel/kernels/copy_kernels.h"

#include <cstring>

#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {
namespace {

// In blocks, the last of which ends with the row and may copy some bytes once more. A row that is
// shorter than a block takes the largest that it fills.
template <std::size_t kBlockBytes>
[[gnu::always_inline]] inline void copy_row(unsigned char* to, const unsigned char* from,
                                            std::size_t row_bytes) noexcept {
    if (row_bytes < kBlockBytes) {
        if constexpr (kBlockBytes > 1) {
            copy_row<kBlockBytes / 2>(to, from, row_bytes);
        }
        return;
    }
    const std::size_t last = row_bytes - kBlockBytes;
    for (std::size_t i = 0; i < last; i += kBlockBytes) {
        std::memcpy(to + i, from + i, kBlockBytes);
    }
    std::memcpy(to + last, from + last, kBlockBytes);
}

}  // namespace

// A loop and not one memcpy, which takes ten times as long for rows of 2 KB and more when the two
// addresses differ by 1 to 16 bytes modulo 4096; surfaces 1024 or 2048 pixels wide often lie so.
// The kernels are compiled with the option that keeps the compiler from making it a memcpy again.
LARKSPUR_MULTIVERSION
void copy_rows(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t row_bytes, std::size_t rows) noexcept {
    for (std::size_t y = 0; y < rows; ++y) {
        copy_row<64>(to, from, row_bytes);
        to += to_pitch_bytes;
        from += from_pitch_bytes;
    }
}

// That pixels do not depend on each other is said to the compiler, as in key_kernels.cpp.
LARKSPUR_MULTIVERSION
void copy_masked_rows(const PixelRows& rows, std::uint32_t kept, std::uint32_t added) noexcept {
    for (PixelRows left = rows; left.height > 0; left.drop_row()) {
        PixelWord* to = left.target;
        const PixelWord* from = left.source;
#pragma GCC ivdep
        for (std::size_t x = 0; x < left.width; ++x) {
            to[x] = (from[x] & kept) | added;
        }
    }
}

LARKSPUR_MULTIVERSION
void copy_rows_mirrored(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
                        std::ptrdiff_t from_pitch_bytes, std::size_t width,
                        std::size_t rows) noexcept {
    for (std::size_t y = 0; y < rows; ++y) {
        PixelWord* __restrict to_words = pixel_words(to);
        const PixelWord* __restrict from_words = pixel_words(from);
        for (std::size_t x = 0; x < width; ++x) {
            to_words[x] = from_words[width - 1 - x];
        }
        to += to_pitch_bytes;
        from += from_pitch_bytes;
    }
}

}  // namespace larkspur::pixel
