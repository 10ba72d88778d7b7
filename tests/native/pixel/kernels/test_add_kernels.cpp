#include "pixel/kernels/add_kernels.h"

#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

std::uint32_t added(std::uint32_t over, std::uint32_t under) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 4; ++place) {
        const std::uint32_t sum = channel(over, place) + channel(under, place);
        result |= (sum < 256 ? sum : 255) << (8 * place);
    }
    return result;
}

TEST(AddSaturatingRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(add_saturating_rows, added);
}

TEST(AddSaturatingRows, AddsEveryByteToEveryByte) {
    expect_pixels_of_all_pairs(
        [](const PixelRows& rows, int) { add_saturating_rows(rows); },
        [](std::uint32_t over, std::uint32_t under, int) { return added(over, under); });
}

TEST(AddSaturatingRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(add_saturating_rows);
}

}  // namespace
}  // namespace larkspur::pixel
