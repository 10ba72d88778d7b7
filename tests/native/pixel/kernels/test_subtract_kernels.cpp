#include "pixel/kernels/subtract_kernels.h"

#include "../formulas.h"
#include "../memory_field.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

constexpr BytePattern kUnlikeBytes = {1, 255, 128, 0, 77, 2, 200, 64};

TEST(SubtractSaturating, KeepsToItsBytesAtEveryCountAndOffset) {
    for (std::size_t count = 0; count <= kEnoughBytes; ++count) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, count, 0, 1, 9);
            MemoryField expected = field.copy();
            for (std::size_t i = 0; i < count; ++i) {
                expected.row(0)[i] = subtracted(expected.row(0)[i], kUnlikeBytes[i % 8]);
            }
            subtract_saturating(field.row(0), count, kUnlikeBytes);
            ASSERT_TRUE(field.equals(expected)) << "count " << count << ", offset " << offset;
        }
    }
}

TEST(SubtractSaturating, TakesEveryValueFromEveryByte) {
    for (int k = 0; k < 256; ++k) {
        MemoryField field(0, 256, 0, 1, 10);
        MemoryField expected = field.copy();
        for (int byte = 0; byte < 256; ++byte) {
            field.row(0)[byte] = static_cast<unsigned char>(byte);
            expected.row(0)[byte] = subtracted(byte, k);
        }
        BytePattern pattern;
        pattern.fill(static_cast<std::uint8_t>(k));
        subtract_saturating(field.row(0), 256, pattern);
        ASSERT_TRUE(field.equals(expected)) << k;
    }
}

TEST(SubtractSaturating, TouchesNoMemoryOutside) {
    GuardedPage page;
    for (std::size_t count = 0; count <= kEnoughBytes; ++count) {
        subtract_saturating(page.at_start(), count, kUnlikeBytes);
        subtract_saturating(page.at_end(count), count, kUnlikeBytes);
    }
}

TEST(PatternOf, TakesTheLowWordFirstAndItsLowByteFirst) {
    const BytePattern expected = {0x44, 0x33, 0x22, 0x11, 0x88, 0x77, 0x66, 0x55};
    EXPECT_EQ(pattern_of(0x11223344, 0x55667788), expected);
}

}  // namespace
}  // namespace larkspur::pixel
