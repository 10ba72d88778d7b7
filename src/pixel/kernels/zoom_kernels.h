// Pictures that are zoomed, whole or row by row, and turned. Places in a source are counted in
// 65536ths of a pixel: bits 16 and up say which pixel lies there, the bits below are the share that
// the next one has in a mixture. Source and target share no memory.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// A picture whose pixels are looked up: rows of `width` of them, 1 to 65535, a pitch apart.
struct LookedUp {
    const PixelWord* pixels;
    std::ptrdiff_t pitch_bytes;
    std::size_t width;

    const PixelWord* row(std::size_t y) const noexcept {
        return pixel_words(reinterpret_cast<const unsigned char*>(pixels) +
                           static_cast<std::ptrdiff_t>(y) * pitch_bytes);
    }
};

/// Pixel (x, y) of `width` x `height` becomes the source's pixel at (x * x_step, y * y_step). All
/// these places lie in the source. Either pitch may be negative: its pointer then names the last
/// row in memory, and the rows are walked backwards.
void pick_pixels(PixelWord* to, std::ptrdiff_t to_pitch_bytes, std::size_t width,
                 std::size_t height, const LookedUp& from, std::uint32_t x_step,
                 std::uint32_t y_step) noexcept;

/// Each channel of pixel x of `width` becomes a + floor((b - a) * share / 65536), with a from the
/// source's pixel at x * step, b from the one behind it, and the share that is there. None of these
/// places lies behind the beginning of the source's last pixel; the source has 1 to 65535.
void mix_columns(PixelWord* to, const PixelWord* from, std::size_t from_width, std::uint32_t step,
                 std::size_t width) noexcept;

/// The same of two rows, with one share, below 65536, for all pixels.
void mix_rows(PixelWord* to, const PixelWord* first, const PixelWord* second, std::uint32_t share,
              std::size_t width) noexcept;

/// The line in a source along which a row of a turned picture lies: the place of the row's pixel 0,
/// which may be outside and then wraps, and the pixels that lie inside, `first` to `end` - 1.
struct SourceLine {
    std::uint32_t x;
    std::uint32_t y;
    std::int32_t first;
    std::int32_t end;
};

/// Of each of `height` rows, the pixels inside become the source's pixels along the row's line,
/// (x_step, y_step) apart; all others stay. Steps wrap at 32 bits. The rows' pitches are whole
/// pixels, below 32768 of them.
void pick_along_lines(PixelWord* to, std::ptrdiff_t to_pitch_bytes, const PixelWord* from,
                      std::ptrdiff_t from_pitch_bytes, const SourceLine* lines, std::size_t height,
                      std::uint32_t x_step, std::uint32_t y_step) noexcept;

/// Pixel (x, y) of `width` x `height` becomes the source's pixel (y, x). Either pitch may be
/// negative: its pointer then names the last row in memory, and the rows are walked backwards.
void transpose(PixelWord* to, std::ptrdiff_t to_pitch_bytes, const PixelWord* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t height) noexcept;

}  // namespace larkspur::pixel
