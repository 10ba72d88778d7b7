#include "pixel/kernels/copy_kernels.h"

#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

// A loop and not memcpy, which takes ten times as long for rows of 2 KB and more when the two
// addresses differ by 1 to 16 bytes modulo 4096; surfaces 1024 or 2048 pixels wide often lie so.
// The kernels are compiled with the option that keeps the compiler from making it a memcpy again.
// That no row depends on itself is said to the compiler, as it else looks before each row whether
// source and target overlap, which takes a tenth of the time for rows of 16 pixels.
LARKSPUR_MULTIVERSION
void copy_rows(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t row_bytes, std::size_t rows) noexcept {
    for (std::size_t y = 0; y < rows; ++y) {
#pragma GCC ivdep
        for (std::size_t i = 0; i < row_bytes; ++i) {
            to[i] = from[i];
        }
        to += to_pitch_bytes;
        from += from_pitch_bytes;
    }
}

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
