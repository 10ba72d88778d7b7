// How large a picture may become. Its source has 8 bits a pixel, so that the largest takes 64 MiB.
#include "pixel/surface/picture.h"

#include <cstdint>

#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

constexpr int kSourceSide = 2;
constexpr int kLargestSide = 8192;            // of a square of 2^26 pixels
constexpr std::int64_t kNoInt = -2147483648;  // what a size of NaN or out of range is converted to

SurfacePtr source() {
    return SurfacePtr(SDL_CreateRGBSurface(0, kSourceSide, kSourceSide, 8, 0, 0, 0, 0));
}

TEST(ScaledPicture, HasAtMost2To26Pixels) {
    const SurfacePtr largest = scaled_picture(source().get(), kLargestSide, kLargestSide);
    ASSERT_NE(largest, nullptr);
    EXPECT_EQ(largest->w, kLargestSide);
    EXPECT_EQ(largest->h, kLargestSide);
    EXPECT_EQ(scaled_picture(source().get(), kLargestSide + 1, kLargestSide), nullptr);
    EXPECT_EQ(scaled_picture(source().get(), kLargestSide, kLargestSide + 1), nullptr);
}

// The quotient of such a size by 49, times 49 again, is below 2^31.
TEST(ScaledPicture, OfASizeThatIsNoIntIsOnePixelForAnySource) {
    for (int side = 1; side <= 200; ++side) {
        const SurfacePtr surface(SDL_CreateRGBSurface(0, side, side, 32, 0, 0, 0, 0));
        const SurfacePtr picture = scaled_picture(surface.get(), kNoInt, kNoInt);
        ASSERT_NE(picture, nullptr) << side;
        EXPECT_EQ(picture->w, 1) << side;
        EXPECT_EQ(picture->h, 1) << side;
        EXPECT_EQ(scaled_picture(surface.get(), -1 - kNoInt, 1), nullptr) << side;
    }
}

// A square turned by 30 degrees is as wide and high as its side times sine + cosine of them, 1.366:
// 2 pixels by a factor of 2998 come to 8190.7, by 2999 to 8193.4.
TEST(TurnedPicture, HasAtMost2To26Pixels) {
    EXPECT_NE(turned_picture(source().get(), 30, 2998), nullptr);
    for (const int angle_degrees : {30, -30, 60, 120}) {
        EXPECT_EQ(turned_picture(source().get(), angle_degrees, 2999), nullptr) << angle_degrees;
        EXPECT_EQ(turned_picture(source().get(), angle_degrees, -2999), nullptr) << angle_degrees;
    }
}

// 1600 columns that rise by 56 rows.
TEST(TurnedPicture, IsAsHighAsALongSideRises) {
    const SurfacePtr line(SDL_CreateRGBSurface(SDL_SWSURFACE, 1600, 4, 32, 0, 0, 0, 0));
    EXPECT_NE(turned_picture(line.get(), 2, 1), nullptr);
}

TEST(Picture, OfNothingIsNull) {
    EXPECT_EQ(scaled_picture(nullptr, 1, 1), nullptr);
    EXPECT_EQ(turned_picture(nullptr, 30, 1), nullptr);
}

}  // namespace
}  // namespace larkspur::pixel
