#include "pixel/kernels/key_kernels.h"

#include "../formulas.h"
#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

constexpr std::uint32_t kKey = 0x12345678;
constexpr ColourKey kWhole = {kKey, 0xFFFFFFFF};
constexpr ColourKey kWithoutTop = {kKey & 0xFFFFFF, 0xFFFFFF};

TEST(CopyKeyedRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    for (const ColourKey& key : {kWhole, kWithoutTop}) {
        expect_pixels_at_every_width_and_offset(
            [&](const PixelRows& rows) { copy_keyed_rows(rows, key, 0xFFFFFF, 0x55000000); },
            [&](std::uint32_t over, std::uint32_t under) {
                return has_colour(over, key) ? under : (over & 0xFFFFFF) + 0x55000000;
            },
            kKey);
    }
}

TEST(CopyKeyedRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(
        [](const PixelRows& rows) { copy_keyed_rows(rows, kWhole, 0xFFFFFF, 0); });
}

TEST(CompositeKeyedRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    for (const ColourKey& key : {kWhole, kWithoutTop}) {
        expect_pixels_at_every_width_and_offset(
            [&](const PixelRows& rows) { composite_keyed_rows(rows, key, 77, 0xF0000000); },
            [&](std::uint32_t over, std::uint32_t under) {
                return has_colour(over, key) ? under : composited_up(over, under, 77, 0xF0000000);
            },
            kKey);
    }
}

TEST(CompositeKeyedRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    expect_pixels_of_all_pairs(
        [](const PixelRows& rows, std::uint8_t alpha) {
            composite_keyed_rows(rows, kWhole, alpha, 0);
        },
        [](std::uint32_t over, std::uint32_t under, int alpha) {
            return composited_up(over, under, alpha, 0);
        });
}

TEST(CompositeKeyedRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(
        [](const PixelRows& rows) { composite_keyed_rows(rows, kWhole, 77, 0); });
}

}  // namespace
}  // namespace larkspur::pixel
