#include "pixel/kernels/fade_kernels.h"

#include "../formulas.h"
#include "../memory_field.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

struct Format {
    std::uint32_t alpha;
    std::uint32_t colour;
};

using Kernel = void (*)(PixelWord*, std::size_t, std::uint8_t, std::uint32_t, std::uint32_t);
using Rule = std::uint32_t (*)(std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t);

struct Case {
    const char* name;
    Kernel kernel;
    Rule rule;
    Format format;
};

const Case kCases[] = {
    {"TopByte", scale_top_alpha, faded_top, {0xFF000000, 0x00FFFFFF}},
    {"LowByte", scale_low_alpha, faded_low, {0x000000FF, 0xFFFFFF00}},
    {"SecondByte", scale_low_alpha, faded_low, {0x0000FF00, 0xFFFF00FF}},
    {"ThirdByte", scale_low_alpha, faded_low, {0x00FF0000, 0xFF00FFFF}},
    {"None", scale_low_alpha, faded_low, {0, 0x00FFFFFF}},
};

class ScaleAlpha : public ::testing::TestWithParam<Case> {};

TEST_P(ScaleAlpha, KeepsToItsWordsAtEveryCountAndOffset) {
    const Case& test = GetParam();
    for (std::size_t count = 0; count <= kEnoughPixels; ++count) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * count, 0, 1, 6);
            MemoryField expected = field.copy();
            for (std::size_t x = 0; x < count; ++x) {
                expected.set_word(
                    x, 0,
                    test.rule(expected.word(x, 0), 200, test.format.alpha, test.format.colour));
            }
            test.kernel(pixel_words(field.row(0)), count, 200, test.format.alpha,
                        test.format.colour);
            ASSERT_TRUE(field.equals(expected)) << "count " << count << ", offset " << offset;
        }
    }
}

TEST_P(ScaleAlpha, ScalesEveryAlphaByEveryWeight) {
    const Case& test = GetParam();
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        MemoryField field(0, 4 * 256, 0, 1, 7 + alpha);
        for (std::uint32_t x = 0; x < 256; ++x) {
            field.set_word(
                x, 0,
                (field.word(x, 0) & ~test.format.alpha) | (x * 0x01010101 & test.format.alpha));
        }
        MemoryField expected = field.copy();
        for (std::size_t x = 0; x < 256; ++x) {
            expected.set_word(
                x, 0, test.rule(expected.word(x, 0), alpha, test.format.alpha, test.format.colour));
        }
        test.kernel(pixel_words(field.row(0)), 256, static_cast<std::uint8_t>(alpha),
                    test.format.alpha, test.format.colour);
        ASSERT_TRUE(field.equals(expected)) << "alpha " << alpha;
    }
}

TEST_P(ScaleAlpha, TouchesNoMemoryOutside) {
    const Case& test = GetParam();
    GuardedPage page;
    for (std::size_t count = 0; count <= kEnoughPixels; ++count) {
        test.kernel(pixel_words(page.at_start()), count, 9, test.format.alpha, test.format.colour);
        test.kernel(pixel_words(page.at_end(4 * count)), count, 9, test.format.alpha,
                    test.format.colour);
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, ScaleAlpha, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return info.param.name; });

TEST(ScaleTopAlpha, LetsCarriesOfTheColourReachTheAlpha) {
    MemoryField field(0, 12, 0, 1, 8);
    field.set_word(0, 0, 0xFF000000);
    field.set_word(1, 0, 0xFFFFFFFF);
    field.set_word(2, 0, 0x01FFFFFF);
    scale_top_alpha(pixel_words(field.row(0)), 3, 255, 0xFF000000, 0x00FFFFFF);
    EXPECT_EQ(field.word(0, 0), 0xFE000000U);
    // 0xFFFFFF * 255 is 0xFEFFFF01, whose top byte is 0xFE.
    EXPECT_EQ(field.word(1, 0), 0xFEFFFFFFU);
    // 0x01FFFF * 255 is 0x01FDFF01: alpha 1 stays 1 beside full colours, alone it would be 0.
    EXPECT_EQ(field.word(2, 0), 0x01FFFFFFU);
}

}  // namespace
}  // namespace larkspur::pixel
