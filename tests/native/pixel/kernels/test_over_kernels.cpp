#include "pixel/kernels/over_kernels.h"

#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

// Each low byte comes nearer to the upper one by a share in 256ths, rounded down.
std::uint32_t mixed(std::uint32_t over, std::uint32_t under, int share) {
    std::uint32_t result = 0;
    for (unsigned place = 0; place < 3; ++place) {
        const auto s = static_cast<int>(channel(over, place));
        const auto d = static_cast<int>(channel(under, place));
        result |= static_cast<std::uint32_t>((256 * d + (s - d) * share) / 256) << (8 * place);
    }
    return result;
}

// Its share is its alpha, but 255 leaves nothing of the other; the top byte stays.
std::uint32_t composited(std::uint32_t over, std::uint32_t under) {
    const auto alpha = static_cast<int>(over >> 24);
    return mixed(over, under, alpha == 255 ? 256 : alpha) | (under & 0xFF000000);
}

TEST(CompositeOverRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(composite_over_rows, composited);
}

TEST(CompositeOverRows, DrawsLongRowsFromEveryOffset) {
    expect_pixels_of_long_rows(composite_over_rows, composited);
}

TEST(CompositeOverRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    expect_pixels_of_all_pairs(
        [](const PixelRows& rows, int) { composite_over_rows(rows); },
        [](std::uint32_t over, std::uint32_t under, int) { return composited(over, under); });
}

TEST(CompositeOverRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(composite_over_rows);
}

TEST(CompositeEvenlyRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    expect_pixels_at_every_width_and_offset(
        [](const PixelRows& rows) { composite_evenly_rows(rows, 77); },
        [](std::uint32_t over, std::uint32_t under) {
            return mixed(over, under, 77) | 0xFF000000;
        });
}

TEST(CompositeEvenlyRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    expect_pixels_of_all_pairs(composite_evenly_rows,
                               [](std::uint32_t over, std::uint32_t under, int alpha) {
                                   return mixed(over, under, alpha) | 0xFF000000;
                               });
}

TEST(CompositeEvenlyRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside([](const PixelRows& rows) { composite_evenly_rows(rows, 77); });
}

}  // namespace
}  // namespace larkspur::pixel
