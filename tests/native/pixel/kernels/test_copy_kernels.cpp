#include "pixel/kernels/copy_kernels.h"

#include "../memory_field.h"
#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

constexpr std::size_t kRows = 3;

TEST(CopyRows, KeepToTheirBytesAtEveryLengthAndOffset) {
    for (std::size_t count = 0; count <= kEnoughBytes; ++count) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField from(offset, count, 5, kRows, 11);
            MemoryField to((offset * 7) % kWidestVectorBytes, count, count % 4, kRows, 12);
            MemoryField expected = to.copy();
            for (std::size_t y = 0; y < kRows; ++y) {
                for (std::size_t i = 0; i < count; ++i) {
                    expected.row(y)[i] = from.row(y)[i];
                }
            }
            copy_rows(to.row(0), to.pitch(), from.row(0), from.pitch(), count, kRows);
            ASSERT_TRUE(to.equals(expected)) << "length " << count << ", offset " << offset;
        }
    }
}

TEST(CopyRows, WalkBackwardsWithANegativePitch) {
    MemoryField from(0, 40, 8, kRows, 13);
    MemoryField to(4, 40, 0, kRows, 14);
    MemoryField expected = to.copy();
    for (std::size_t y = 0; y < kRows; ++y) {
        std::memcpy(expected.row(y), from.row(kRows - 1 - y), 40);
    }
    copy_rows(to.row(0), to.pitch(), from.row(kRows - 1), -from.pitch(), 40, kRows);
    EXPECT_TRUE(to.equals(expected));
}

TEST(CopyRows, RepeatTheRowOfAPitchOf0) {
    for (std::size_t count = 0; count <= kEnoughBytes; ++count) {
        MemoryField field(count % 7, count, 4 + count % 5, 4, 21);
        MemoryField expected = field.copy();
        for (std::size_t y = 1; y < 4; ++y) {
            std::memcpy(expected.row(y), expected.row(0), count);
        }
        copy_rows(field.row(1), field.pitch(), field.row(0), 0, count, 3);
        ASSERT_TRUE(field.equals(expected)) << "length " << count;
    }
}

TEST(CopyRows, NeedNoRow) {
    MemoryField from(0, 16, 0, 2, 22);
    MemoryField to(0, 16, 0, 2, 23);
    MemoryField expected = to.copy();
    copy_rows(to.row(0), to.pitch(), from.row(0), from.pitch(), 16, 0);
    EXPECT_TRUE(to.equals(expected));
}

TEST(CopyRows, CopyLongRowsAtEveryDistanceWithinAPage) {
    // Rows as long as a surface's, at all the address differences that matter to a processor.
    for (std::size_t offset = 0; offset < 64; ++offset) {
        MemoryField from(0, 4096, 0, 1, 15);
        MemoryField to(offset, 4096, 0, 1, 16);
        MemoryField expected = to.copy();
        std::memcpy(expected.row(0), from.row(0), 4096);
        copy_rows(to.row(0), to.pitch(), from.row(0), from.pitch(), 4096, 1);
        ASSERT_TRUE(to.equals(expected)) << offset;
    }
}

constexpr std::uint32_t kKept = 0xF0FFFF0F;
constexpr std::uint32_t kAdded = 0x81008100;

TEST(CopyMaskedRows, KeepToTheirPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(
        [](const PixelRows& rows) { copy_masked_rows(rows, kKept, kAdded); },
        [](std::uint32_t over, std::uint32_t) { return (over & kKept) | kAdded; });
}

TEST(CopyMaskedRows, TouchNoMemoryOutside) {
    touch_all_memory_inside([](const PixelRows& rows) { copy_masked_rows(rows, kKept, kAdded); });
}

TEST(CopyRowsMirrored, KeepToTheirPixelsAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField from(offset, 4 * width, 4, kRows, 17);
            MemoryField to((offset * 5) % kWidestVectorBytes, 4 * width, 12, kRows, 18);
            MemoryField expected = to.copy();
            for (std::size_t y = 0; y < kRows; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    expected.set_word(x, y, from.word(width - 1 - x, y));
                }
            }
            copy_rows_mirrored(to.row(0), to.pitch(), from.row(0), from.pitch(), width, kRows);
            ASSERT_TRUE(to.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(CopyRowsMirrored, WalkBackwardsWithANegativePitch) {
    MemoryField from(0, 20, 0, kRows, 19);
    MemoryField to(0, 20, 8, kRows, 20);
    MemoryField expected = to.copy();
    for (std::size_t y = 0; y < kRows; ++y) {
        for (std::size_t x = 0; x < 5; ++x) {
            expected.set_word(x, y, from.word(4 - x, kRows - 1 - y));
        }
    }
    copy_rows_mirrored(to.row(0), to.pitch(), from.row(kRows - 1), -from.pitch(), 5, kRows);
    EXPECT_TRUE(to.equals(expected));
}

TEST(CopiesOfRows, TouchNoMemoryOutside) {
    GuardedPage from;
    GuardedPage to;
    for (std::size_t count = 0; count <= kEnoughBytes; ++count) {
        copy_rows(to.at_start(), 0, from.at_end(count), 0, count, 1);
        copy_rows(to.at_end(count), 0, from.at_start(), 0, count, 1);
    }
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        copy_rows_mirrored(to.at_start(), 0, from.at_end(4 * width), 0, width, 1);
        copy_rows_mirrored(to.at_end(4 * width), 0, from.at_start(), 0, width, 1);
    }
}

}  // namespace
}  // namespace larkspur::pixel
