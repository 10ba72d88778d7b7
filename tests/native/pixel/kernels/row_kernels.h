// What every kernel on rows of pixels is tried with. `draw` draws rows, and `drawn(over, under)`
// says what should become of a pixel of the target.
#pragma once

#include <cstddef>
#include <cstdint>

#include "../memory_field.h"
#include "gtest/gtest.h"
#include "pixel/kernels/pixel_rows.h"

namespace larkspur::pixel {

template <class Draw, class Drawn>
void expect_pixels(const Draw& draw, const Drawn& drawn, MemoryField& target, MemoryField& source,
                   std::size_t width, std::size_t height) {
    MemoryField expected = target.copy();
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            expected.set_word(x, y, drawn(source.word(x, y), target.word(x, y)));
        }
    }
    draw(PixelRows{pixel_words(target.row(0)), target.pitch(), pixel_words(source.row(0)),
                   source.pitch(), width, height});
    ASSERT_TRUE(target.equals(expected)) << "width " << width;
}

/// @param key a colour that some of the pixels have, with any top byte
template <class Draw, class Drawn>
void expect_pixels_at_every_width_and_offset(const Draw& draw, const Drawn& drawn,
                                             std::uint32_t key = 0) {
    for (const std::size_t rows : {0, 3}) {
        for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
            for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
                MemoryField target(offset, 4 * width, offset % 7, rows, 11);
                MemoryField source((3 * offset + 1) % kWidestVectorBytes, 4 * width, 5, rows, 12);
                for (std::size_t y = 0; y < rows; ++y) {
                    for (std::size_t x = offset % 3; x < width; x += 3) {
                        source.set_word(x, y,
                                        (x % 2 == 0 ? key >> 24 : x) << 24 | (key & 0xFFFFFF));
                    }
                }
                expect_pixels(draw, drawn, target, source, width, rows);
                ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "offset " << offset;
            }
        }
    }
}

/// Rows that are long enough to be drawn from a boundary of vectors on, at every distance from it.
template <class Draw, class Drawn>
void expect_pixels_of_long_rows(const Draw& draw, const Drawn& drawn) {
    constexpr std::size_t kWidth = 131;
    constexpr std::size_t kPitchBytes = 9 * kWidestVectorBytes;
    for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
        MemoryField target(offset, 4 * kWidth, kPitchBytes - 4 * kWidth, 3, 15);
        MemoryField source(7, 4 * kWidth, 8, 3, 16);
        expect_pixels(draw, drawn, target, source, kWidth, 3);
        ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "offset " << offset;
    }
}

/// All pairs of source and target bytes meet in each of the low bytes, and other pairs beside them.
/// Tries draw and drawn for each alpha, given to them last and in the top byte of the source.
template <class Draw, class Drawn>
void expect_pixels_of_all_pairs(const Draw& draw, const Drawn& drawn) {
    MemoryField target(0, 4 * 256, 0, 256, 13);
    MemoryField source(0, 4 * 256, 0, 256, 14);
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        for (std::uint32_t s = 0; s < 256; ++s) {
            for (std::uint32_t d = 0; d < 256; ++d) {
                source.set_word(d, s, alpha << 24 | (s ^ 0xAA) << 16 | (255 - s) << 8 | s);
                target.set_word(d, s, 0x77000000 | (d ^ 0x33) << 16 | d << 8 | (255 - d));
            }
        }
        const auto byte = static_cast<std::uint8_t>(alpha);
        expect_pixels(
            [&](const PixelRows& rows) { draw(rows, byte); },
            [&](std::uint32_t over, std::uint32_t under) { return drawn(over, under, byte); },
            target, source, 256, 256);
        ASSERT_FALSE(::testing::Test::HasFatalFailure()) << "alpha " << alpha;
    }
}

/// Ends the process when memory before or behind the rows is touched.
template <class Draw>
void touch_all_memory_inside(const Draw& draw) {
    GuardedPage target;
    GuardedPage source;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        draw(PixelRows{pixel_words(target.at_start()), 0, pixel_words(source.at_end(4 * width)), 0,
                       width, 1});
        draw(PixelRows{pixel_words(target.at_end(4 * width)), 0, pixel_words(source.at_start()), 0,
                       width, 1});
    }
}

}  // namespace larkspur::pixel
