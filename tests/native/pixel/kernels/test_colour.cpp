#include "pixel/kernels/colour.h"

#include <cstdint>
#include <limits>

#include "../memory_field.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

TEST(Multalpha, ScalesEachLowByteAndClearsTheTopOne) {
    for (std::uint32_t value = 0; value < 256; ++value) {
        for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
            const std::uint32_t scaled = value * alpha / 256;
            for (const unsigned place : {0U, 8U, 16U}) {
                // The other channels are full, so that any leak between them shows.
                const std::uint32_t others = 0xFFFFFFFF & ~(0xFFU << place);
                const std::uint32_t result =
                    multalpha(others | value << place, static_cast<std::uint8_t>(alpha));
                ASSERT_EQ(result >> place & 0xFF, scaled) << value << " at " << alpha;
                ASSERT_EQ(result >> 24, 0U);
            }
        }
    }
}

TEST(Multalpha, FullAlphaTakesOneFrom255) {
    EXPECT_EQ(multalpha(0xFFFFFFFF, 255), 0x00FEFEFEU);
}

TEST(Blend, GivesTheWeightedFloorOfEachChannel) {
    for (std::uint32_t a = 0; a < 256; ++a) {
        for (std::uint32_t b = 0; b < 256; ++b) {
            for (std::uint32_t weight = 0; weight <= 256; ++weight) {
                const std::uint32_t mixed = (a * weight + b * (256 - weight)) / 256;
                const std::uint32_t result = blend(
                    0xAA000000 | a * 0x010101, 0x55000000 | b * 0x010101, static_cast<int>(weight));
                ASSERT_EQ(result, mixed * 0x010101) << a << ", " << b << " at " << weight;
            }
        }
    }
}

TEST(Blend, KeepsChannelsApart) {
    EXPECT_EQ(blend(0xFF0000FF, 0xFF00FF00, 128), 0x00007F7FU);
    EXPECT_EQ(blend(0x00FF0000, 0x000000FF, 64), 0x003F00BFU);
}

TEST(Blend, FullAndNoWeightGiveOneColourExactly) {
    EXPECT_EQ(blend(0x12345678, 0x9ABCDEF0, 256), 0x345678U);
    EXPECT_EQ(blend(0x12345678, 0x9ABCDEF0, 0), 0xBCDEF0U);
}

TEST(Blend, LowByteSpillsForWeightsOutOfRange) {
    EXPECT_EQ(blend(0xFF, 0, 512), 0x1FEU);
    // 1 * -256 + 0 * 512 is -256, which wraps to 0xFFFFFF00 and comes down as 0x00FFFFFF.
    EXPECT_EQ(blend(0x01, 0, -256), 0x00FFFFFFU);
    // The middle byte stays inside its mask: 0x100 * 512 >> 8 is 0x200.
    EXPECT_EQ(blend(0x100, 0, 512), 0x200U);
    // 0xFF00 * 512 >> 8 is 0x1FE00, of which the mask leaves 0xFE00.
    EXPECT_EQ(blend(0xFF00, 0, 512), 0xFE00U);
    // The smallest weight: 1 * 2^31 and 3 * (2^31 + 256) add up to 2^33 + 0x300, of which 32 bits
    // hold 0x300.
    EXPECT_EQ(blend(1, 3, std::numeric_limits<int>::min()), 3U);
}

TEST(InterpolateUnformatted, TruncatesTo256ths) {
    EXPECT_EQ(interpolate_unformatted(0xFF123456, 0x00ABCDEF, 1.0F), 0x123456U);
    EXPECT_EQ(interpolate_unformatted(0xFF123456, 0x00ABCDEF, 0.0F), 0xABCDEFU);
    // 0.7 * 256 = 179.2: 255 * 179 / 256 = 178.3
    EXPECT_EQ(interpolate_unformatted(0xFF, 0, 0.7F), 178U);
    // A negative fraction truncates toward zero.
    EXPECT_EQ(interpolate_unformatted(0xFF, 0x10, -0.003F), 0x10U);
}

TEST(InterpolateUnformatted, TakesWhatIsNoNumberAsTheSmallestInteger) {
    const std::uint32_t smallest = blend(0x0F, 0xF0, std::numeric_limits<int>::min());
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(interpolate_unformatted(0x0F, 0xF0, std::numeric_limits<float>::quiet_NaN()),
              smallest);
    EXPECT_EQ(interpolate_unformatted(0x0F, 0xF0, infinity), smallest);
    EXPECT_EQ(interpolate_unformatted(0x0F, 0xF0, -infinity), smallest);
    EXPECT_EQ(interpolate_unformatted(0x0F, 0xF0, 1e30F), smallest);
}

TEST(BlendModeFlatten, KnowsTheTwoAdditiveModes) {
    for (const int mode : {1, 128}) {
        EXPECT_EQ(blend_mode_flatten(mode), 1);
    }
    for (const int mode : {0, 2, -1, 127, 129, 256}) {
        EXPECT_EQ(blend_mode_flatten(mode), 0);
    }
}

}  // namespace
}  // namespace larkspur::pixel
