#include "pixel/gradient_kernels.h"

#include "gtest/gtest.h"
#include "memory_field.h"

namespace larkspur::pixel {
namespace {

constexpr std::uint32_t kColour = 0x89ABCDEF;

TEST(FillRow, SetsItsPixelsAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * width, 0, 1, 1);
            MemoryField expected = field.copy();
            for (std::size_t x = 0; x < width; ++x) {
                expected.set_word(x, 0, kColour);
            }
            fill_row(pixel_words(field.row(0)), width, kColour);
            ASSERT_TRUE(field.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(RepeatRow, CopiesTheFirstRowAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * width, 4 + width % 5 * 4, 4, 2);
            MemoryField expected = field.copy();
            for (std::size_t y = 1; y < 4; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    expected.set_word(x, y, expected.word(x, 0));
                }
            }
            repeat_row(pixel_words(field.row(0)), field.pitch(), width, 3);
            ASSERT_TRUE(field.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(RepeatRow, NeedsNoRow) {
    for (const int rows : {0, -1}) {
        MemoryField field(0, 16, 0, 2, 3);
        MemoryField expected = field.copy();
        repeat_row(pixel_words(field.row(0)), field.pitch(), 4, rows);
        EXPECT_TRUE(field.equals(expected)) << rows << " rows";
    }
}

TEST(GradientKernels, TouchNoMemoryOutside) {
    GuardedPage page;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        fill_row(pixel_words(page.at_start()), width, kColour);
        fill_row(pixel_words(page.at_end(4 * width)), width, kColour);
        const auto pitch = static_cast<std::ptrdiff_t>(4 * width + 12);
        const auto bytes = static_cast<std::size_t>(2 * pitch) + 4 * width;
        repeat_row(pixel_words(page.at_start()), pitch, width, 2);
        repeat_row(pixel_words(page.at_end(bytes)), pitch, width, 2);
    }
}

}  // namespace
}  // namespace larkspur::pixel
