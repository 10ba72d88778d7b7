#include "pixel/kernels/key_kernels.h"

#include "gtest/gtest.h"
#include "row_kernels.h"

namespace larkspur::pixel {
namespace {

constexpr std::uint32_t kKey = 0x12345678;
constexpr ColourKey kWhole = {kKey, 0xFFFFFFFF};
constexpr ColourKey kWithoutTop = {kKey & 0xFFFFFF, 0xFFFFFF};

bool has_colour(std::uint32_t pixel, const ColourKey& key) {
    return (pixel & key.compared) == key.colour;
}

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

// Each low byte comes nearer to the upper one by its alpha's share in 256ths, rounded up.
std::uint32_t composited(std::uint32_t over, std::uint32_t under, int alpha, std::uint32_t top) {
    std::uint32_t result = top;
    for (unsigned place = 0; place < 3; ++place) {
        const auto s = static_cast<int>(channel(over, place));
        const auto d = static_cast<int>(channel(under, place));
        result |= static_cast<std::uint32_t>((256 * d + (s - d) * alpha + 255) / 256)
                  << (8 * place);
        if (place == 0 && (d - s) * alpha > 255) {
            result |= 0x01000000;
        }
    }
    return result;
}

TEST(CompositeKeyedRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    for (const ColourKey& key : {kWhole, kWithoutTop}) {
        expect_pixels_at_every_width_and_offset(
            [&](const PixelRows& rows) { composite_keyed_rows(rows, key, 77, 0xF0000000); },
            [&](std::uint32_t over, std::uint32_t under) {
                return has_colour(over, key) ? under : composited(over, under, 77, 0xF0000000);
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
            return composited(over, under, alpha, 0);
        });
}

TEST(CompositeKeyedRows, TouchesNoMemoryOutside) {
    touch_all_memory_inside(
        [](const PixelRows& rows) { composite_keyed_rows(rows, kWhole, 77, 0); });
}

}  // namespace
}  // namespace larkspur::pixel
