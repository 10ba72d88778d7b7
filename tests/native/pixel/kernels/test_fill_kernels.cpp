#include "pixel/kernels/fill_kernels.h"

#include "../formulas.h"
#include "../memory_field.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

constexpr std::uint8_t kKeep = 171;
constexpr std::uint32_t kSum = 0x00102030;

TEST(FillTranslucentRows, LeavesThePaddingAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * width, 4 + width % 5 * 4, 3, 2);
            MemoryField expected = field.copy();
            for (std::size_t y = 0; y < 3; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    expected.set_word(x, y, filled(expected.word(x, y), kKeep, kSum));
                }
            }
            fill_translucent_rows(pixel_words(field.row(0)), field.pitch(), width, 3, kKeep, kSum);
            ASSERT_TRUE(field.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(FillTranslucentRows, NeedNoRow) {
    MemoryField field(0, 16, 0, 1, 3);
    MemoryField expected = field.copy();
    fill_translucent_rows(pixel_words(field.row(0)), field.pitch(), 4, 0, kKeep, kSum);
    EXPECT_TRUE(field.equals(expected));
}

TEST(FillTranslucentRows, ScalesEveryValueByEveryWeight) {
    for (std::uint32_t keep = 0; keep < 256; ++keep) {
        MemoryField row(0, 4 * 256, 0, 1, 4);
        for (std::uint32_t value = 0; value < 256; ++value) {
            // All channels in play, none alike, and a top byte that must not count.
            row.set_word(value, 0, value | (255 - value) << 8 | (value ^ 0x5A) << 16 | value << 24);
        }
        MemoryField expected = row.copy();
        for (std::uint32_t x = 0; x < 256; ++x) {
            expected.set_word(x, 0, filled(expected.word(x, 0), keep, kSum));
        }
        const auto weight = static_cast<std::uint8_t>(keep);
        fill_translucent_rows(pixel_words(row.row(0)), row.pitch(), 256, 1, weight, kSum);
        ASSERT_TRUE(row.equals(expected)) << "keep " << keep;
    }
}

TEST(FillTranslucentRows, AddsAsOneWordThatWraps) {
    MemoryField field(0, 4, 0, 1, 5);
    field.set_word(0, 0, 0x00FFFFFF);
    fill_translucent_rows(pixel_words(field.row(0)), 0, 1, 1, 255, 0xFFFFFFFF);
    EXPECT_EQ(field.word(0, 0), 0x00FEFEFDU);
}

TEST(FillTranslucentRows, TouchesNoMemoryOutside) {
    GuardedPage page;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        fill_translucent_rows(pixel_words(page.at_start()), 0, width, 1, kKeep, kSum);
        fill_translucent_rows(pixel_words(page.at_end(4 * width)), 0, width, 1, kKeep, kSum);
    }
}

TEST(FillEachTranslucentRow, GivesEachRowItsSumAtEveryWidthAndOffset) {
    constexpr std::uint32_t kSums[] = {0x00102030, 0xFF000001, 0x00FFFFFF};
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * width, 4 + width % 5 * 4, 3, 6);
            MemoryField expected = field.copy();
            for (std::size_t y = 0; y < 3; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    expected.set_word(x, y, filled(expected.word(x, y), kKeep, kSums[y]));
                }
            }
            fill_each_translucent_row(pixel_words(field.row(0)), field.pitch(), width, 3, kKeep,
                                      kSums);
            ASSERT_TRUE(field.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(FillEachTranslucentRow, NeedNoRow) {
    MemoryField field(0, 16, 0, 1, 7);
    MemoryField expected = field.copy();
    fill_each_translucent_row(pixel_words(field.row(0)), field.pitch(), 4, 0, kKeep, nullptr);
    EXPECT_TRUE(field.equals(expected));
}

TEST(FillEachTranslucentRow, TouchesNoMemoryOutside) {
    GuardedPage page;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        fill_each_translucent_row(pixel_words(page.at_start()), 0, width, 1, kKeep, &kSum);
        fill_each_translucent_row(pixel_words(page.at_end(4 * width)), 0, width, 1, kKeep, &kSum);
    }
}

}  // namespace
}  // namespace larkspur::pixel
