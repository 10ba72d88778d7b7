#include "pixel/surface/painters.h"

#include <limits>
#include <vector>

#include "../formulas.h"
#include "../memory_field.h"
#include "base/surface.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

constexpr int kWidth = 9;
constexpr int kHeight = 6;
constexpr std::uint32_t kColour = 0x4080C0E0;
constexpr std::uint8_t kAlpha = 100;

// A surface inside a field, as a part of another surface lies: around memory that is not its own.
SurfacePtr surface_in(MemoryField& field, int width, int height) {
    return SurfacePtr(SDL_CreateRGBSurfaceFrom(field.row(0), width, height, 32,
                                               static_cast<int>(field.pitch()), 0xFF0000, 0xFF00,
                                               0xFF, 0));
}

// The rule, pixel by pixel, in a range in which no number can overflow.
void expect_filled(int x1, int y1, int x2, int y2) {
    MemoryField field(4, 4 * kWidth, 12, kHeight, 21);
    MemoryField expected = field.copy();
    const long long right = x2 < kWidth ? x2 : kWidth - 1;
    const long long bottom = y2 < kHeight ? y2 : kHeight - 1;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            if (x >= x1 && x < right && y >= y1 && y <= bottom) {
                const auto row = static_cast<std::size_t>(y);
                const auto column = static_cast<std::size_t>(x);
                expected.set_word(
                    column, row,
                    scaled(kColour, kAlpha) + scaled(expected.word(column, row), 255 - kAlpha));
            }
        }
    }
    const SurfacePtr surface = surface_in(field, kWidth, kHeight);
    translucent_fill_rect(*surface, {x1, y1, x2, y2}, kColour, kAlpha);
    EXPECT_TRUE(field.equals(expected))
        << "(" << x1 << ", " << y1 << ") to (" << x2 << ", " << y2 << ")";
}

TEST(TranslucentFillRect, PaintsWhatLiesInside) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    const std::vector<int> places = {kLeast, -20, -1, 0, 1, 4, 5, 6, 7, 8, 9, 10, 30, kMost};
    for (const int x1 : places) {
        for (const int x2 : places) {
            for (const int y1 : places) {
                for (const int y2 : places) {
                    expect_filled(x1, y1, x2, y2);
                }
            }
        }
    }
}

TEST(TranslucentFillRect, LeavesTheLastColumnOfTheSurface) {
    MemoryField field(0, 4 * kWidth, 0, kHeight, 22);
    const SurfacePtr surface = surface_in(field, kWidth, kHeight);
    const std::uint32_t corner = field.word(kWidth - 1, kHeight - 1);
    translucent_fill_rect(*surface, {0, 0, kWidth, kHeight}, 0, 255);
    EXPECT_EQ(field.word(kWidth - 1, kHeight - 1), corner);
    EXPECT_EQ(field.word(kWidth - 2, kHeight - 1), 0U);
    EXPECT_EQ(field.word(0, 0), 0U);
}

TEST(TranslucentFillRect, HasNothingToDoWithoutAnArea) {
    for (const int width : {0, 4}) {
        const SurfacePtr surface(
            SDL_CreateRGBSurface(0, width, 4 - width, 32, 0xFF0000, 0xFF00, 0xFF, 0));
        translucent_fill_rect(*surface, {0, 0, 4, 4}, 0, 0);
    }
}

}  // namespace
}  // namespace larkspur::pixel
