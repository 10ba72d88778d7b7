#include "pixel/kernels/add_kernels.h"

#include "../formulas.h"
#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

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
