#include "pixel/kernels/over_kernels.h"

#include "../formulas.h"
#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

TEST(CompositeOverRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(composite_over_rows, composited_over);
}

TEST(CompositeOverRows, DrawsLongRowsFromEveryOffset) {
    expect_pixels_of_long_rows(composite_over_rows, composited_over);
}

TEST(CompositeOverRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    expect_pixels_of_all_pairs(
        [](const PixelRows& rows, int) { composite_over_rows(rows); },
        [](std::uint32_t over, std::uint32_t under, int) { return composited_over(over, under); });
}

TEST(CompositeOverRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(composite_over_rows);
}

TEST(CompositeEvenlyRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(
        [](const PixelRows& rows) { composite_evenly_rows(rows, 77); },
        [](std::uint32_t over, std::uint32_t under) { return composited_evenly(over, under, 77); });
}

TEST(CompositeEvenlyRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    expect_pixels_of_all_pairs(composite_evenly_rows, composited_evenly);
}

TEST(CompositeEvenlyRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside([](const PixelRows& rows) { composite_evenly_rows(rows, 77); });
}

}  // namespace
}  // namespace larkspur::pixel
