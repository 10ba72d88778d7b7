#include "pixel/surface/zoom.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "../../sdl_layer.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

using Transform = std::function<SurfacePtr(SDL_Surface*, double, double)>;

const std::vector<Transform> kTransforms = {
    [](SDL_Surface* surface, double x, double y) { return zoomed(surface, x, y, false); },
    [](SDL_Surface* surface, double x, double y) { return zoomed(surface, x, y, true); },
    [](SDL_Surface* surface, double x, double) { return rotozoomed(surface, 30, x, false); },
    [](SDL_Surface* surface, double x, double) { return rotozoomed(surface, 0, x, true); },
    [](SDL_Surface* surface, double x, double y) {
        return rotozoomed_xy(surface, 30, x, y, false);
    },
    [](SDL_Surface* surface, double x, double y) { return rotozoomed_xy(surface, 0, x, y, false); },
};

SurfacePtr surface_of(int width, int height, int depth = 32) {
    return SurfacePtr(SDL_CreateRGBSurface(0, width, height, depth, 0, 0, 0, 0));
}

// A row of any number of pixels by its record, which is all that is looked at: SDL makes none of
// more than 16383.
SurfacePtr wide_surface(int width, int depth) {
    SurfacePtr surface = surface_of(1, 1, depth);
    surface->w = width;
    surface->pitch = static_cast<Uint16>(width * surface->format->BytesPerPixel);
    return surface;
}

TEST(Zoom, GivesTheResultAClipRectangleOfItsOwnSize) {
    for (const int depth : {8, 16, 32}) {
        const SurfacePtr surface = surface_of(12, 7, depth);
        for (const Transform& transform : kTransforms) {
            for (const double factor : {0.5, 1.0, 2.5}) {
                const SurfacePtr result = transform(surface.get(), factor, factor);
                ASSERT_NE(result, nullptr);
                EXPECT_EQ(result->clip_rect.x, 0);
                EXPECT_EQ(result->clip_rect.y, 0);
                EXPECT_EQ(result->clip_rect.w, result->w);
                EXPECT_EQ(result->clip_rect.h, result->h);
            }
        }
    }
}

TEST(Zoom, ScalesEachAxis) {
    const SurfacePtr surface = surface_of(12, 6);
    const SurfacePtr result = zoomed(surface.get(), 2.0, 0.5, false);
    EXPECT_EQ(result->w, 24);
    EXPECT_EQ(result->h, 3);
    const SurfacePtr turned = rotozoomed_xy(surface.get(), 0, 2.0, 0.5, false);
    EXPECT_EQ(turned->w, 24);
    EXPECT_EQ(turned->h, 3);
}

TEST(Zoom, ReportsWhatTheLibraryWouldLeaveItsMemoryFor) {
    const SurfacePtr palette = surface_of(4, 4, 8);
    const SurfacePtr flat = surface_of(4, 0);
    const SurfacePtr thin = surface_of(0, 4);
    for (const Transform& transform : kTransforms) {
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(transform(palette.get(), -1, -1), nullptr);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(),
                  "larkspur: cannot scale an 8-bit surface by a negative factor.\n");
        for (SDL_Surface* surface : {flat.get(), thin.get()}) {
            ::testing::internal::CaptureStderr();
            EXPECT_EQ(transform(surface, 1, 1), nullptr);
            EXPECT_EQ(::testing::internal::GetCapturedStderr(),
                      "larkspur: cannot scale a surface without width or height.\n");
        }
    }
}

TEST(ZoomObstacle, IsAnyNegativeFactorOf8Bits) {
    const SurfacePtr palette = surface_of(4, 4, 8);
    EXPECT_NE(zoom_obstacle(*palette, -1, 1), nullptr);
    EXPECT_NE(zoom_obstacle(*palette, 1, -1), nullptr);
    EXPECT_EQ(zoom_obstacle(*palette, 1, 1), nullptr);
    EXPECT_EQ(zoom_obstacle(*palette, std::numeric_limits<double>::quiet_NaN(), 0), nullptr);
    for (const int depth : {16, 24, 32}) {
        EXPECT_EQ(zoom_obstacle(*surface_of(4, 4, depth), -1, -1), nullptr);
    }
}

// Places in the source are 65536ths of a pixel in an int, which holds 32767 of them and a rest.
TEST(ZoomObstacle, IsASideOfMoreThan32767Pixels) {
    for (const int depth : {8, 16, 24, 32}) {
        EXPECT_EQ(zoom_obstacle(*surface_of(1, 32767, depth), 1, 1), nullptr) << depth;
        EXPECT_NE(zoom_obstacle(*surface_of(1, 32768, depth), 1, 1), nullptr) << depth;
    }
    EXPECT_EQ(zoom_obstacle(*wide_surface(32767, 8), 1, 1), nullptr);
    EXPECT_NE(zoom_obstacle(*wide_surface(32768, 8), 1, 1), nullptr);
}

TEST(Zoom, ReportsLongSidesInsteadOfReadingOutsideThem) {
    const SurfacePtr high = surface_of(1, 40000, 8);
    const SurfacePtr wide = wide_surface(40000, 8);
    for (SDL_Surface* surface : {high.get(), wide.get()}) {
        for (const Transform& transform : kTransforms) {
            ::testing::internal::CaptureStderr();
            EXPECT_EQ(transform(surface, 0.25, 0.25), nullptr);
            EXPECT_EQ(::testing::internal::GetCapturedStderr(),
                      "larkspur: cannot scale a surface with a side of more than 32767 pixels.\n");
        }
    }
}

// The copy of 32 bits that SDL_gfx turns in its place has at most 16383 columns.
TEST(TurnObstacle, IsARowOfMoreThan16383PixelsThatIsTurnedThroughACopy) {
    for (const int depth : {15, 16, 24}) {
        EXPECT_EQ(turn_obstacle(*wide_surface(16383, depth), 1, 1), nullptr) << depth;
        const SurfacePtr wide = wide_surface(16384, depth);
        EXPECT_NE(turn_obstacle(*wide, 1, 1), nullptr) << depth;
        EXPECT_EQ(zoom_obstacle(*wide, 1, 1), nullptr) << depth;
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(rotozoomed(wide.get(), 30, 0.5, false), nullptr);
        EXPECT_EQ(rotozoomed_xy(wide.get(), 0, 0.5, 0.25, false), nullptr);
        const std::string line =
            "larkspur: cannot scale a surface of neither 8 nor 32 bits that has more than 16383 "
            "columns.\n";
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), line + line);
    }
    EXPECT_EQ(turn_obstacle(*wide_surface(16384, 8), 1, 1), nullptr);
}

// SDL_gfx would look it up behind the palette. A layer over SDL 2 sets no such key.
TEST(TurnObstacle, IsAColourKeyThatIsNoPlaceInThePalette) {
    for (const Uint32 key : {0U, 255U, 256U, 0x12345678U, 0xFFFFFFFFU}) {
        const SurfacePtr surface = surface_of(4, 4, 8);
        SDL_SetColorKey(surface.get(), SDL_SRCCOLORKEY, key);
        // A layer over SDL 2 refuses such a key, or keeps another one.
        const bool keyed =
            (surface->flags & SDL_SRCCOLORKEY) != 0 && surface->format->colorkey == key;
        EXPECT_TRUE(keyed || is_layer()) << key;
        const bool refused = keyed && key >= 256;
        EXPECT_EQ(turn_obstacle(*surface, 1, 1) != nullptr, refused) << key;
        EXPECT_EQ(zoom_obstacle(*surface, 1, 1), nullptr) << key;
        ::testing::internal::CaptureStderr();
        EXPECT_EQ(rotozoomed(surface.get(), 30, 0.5, false) == nullptr, refused) << key;
        EXPECT_EQ(::testing::internal::GetCapturedStderr(),
                  refused ? "larkspur: cannot scale a surface whose colour key is no place in its "
                            "palette.\n"
                          : "");
    }
}

TEST(TurnObstacle, IsEveryZoomObstacle) {
    EXPECT_NE(turn_obstacle(*surface_of(4, 4, 8), -1, 1), nullptr);
    EXPECT_NE(turn_obstacle(*surface_of(4, 0), 1, 1), nullptr);
    EXPECT_NE(turn_obstacle(*surface_of(1, 32768), 1, 1), nullptr);
}

TEST(Zoom, OfNothingIsNull) {
    for (const Transform& transform : kTransforms) {
        EXPECT_EQ(transform(nullptr, 1, 1), nullptr);
    }
}

TEST(Zoom, OfASizeThatIsRefusedIsNull) {
    const SurfacePtr surface = surface_of(10, 10);
    for (const Transform& transform : kTransforms) {
        EXPECT_EQ(transform(surface.get(), 1e4, 1e4), nullptr);
    }
    // Each side is allowed, but not their 2^31 bytes and more.
    EXPECT_EQ(zoomed(surface_of(10, 40).get(), 1638, 1638, false), nullptr);
    EXPECT_STREQ(SDL_GetError(), "Out of memory");
}

// SDL_gfx counts sides in ints, those of turned pictures by their halves. Up to the end of the ints
// a side is too large; one beyond it is no number to SDL_gfx, which makes its smallest picture.
TEST(Zoom, RefusesSidesUpToTheEndOfTheIntegers) {
    const SurfacePtr surface = surface_of(2, 2);
    constexpr double kHalfOfIntEnd = 1073741824;
    EXPECT_EQ(zoomed(surface.get(), kHalfOfIntEnd - 1, 1, false), nullptr);
    EXPECT_EQ(zoomed(surface.get(), 1, kHalfOfIntEnd - 1, false), nullptr);
    EXPECT_NE(zoomed(surface.get(), kHalfOfIntEnd, kHalfOfIntEnd, false), nullptr);
    for (const double angle_degrees : {90.0, 180.0}) {  // the long side lies, and stands
        EXPECT_EQ(rotozoomed_xy(surface.get(), angle_degrees, 1, 2 * kHalfOfIntEnd - 1, false),
                  nullptr)
            << angle_degrees;
    }
    EXPECT_NE(rotozoomed(surface.get(), 90, 2 * kHalfOfIntEnd + 1, false), nullptr);
    // Both sides upside down: halves of up to the end of the ints, whose doubles wrap.
    for (const double factor : {kHalfOfIntEnd, 1.5 * kHalfOfIntEnd, 2 * kHalfOfIntEnd - 1}) {
        EXPECT_EQ(rotozoomed(surface.get(), 180, factor, false), nullptr) << factor;
        EXPECT_EQ(rotozoomed_xy(surface.get(), 180, factor, 1, false), nullptr) << factor;
    }
}

// 65000 rows are allowed, with the 600 columns on top they would not be.
TEST(Zoom, MeasuresEachSideOfATurnedPictureByItself) {
    EXPECT_NE(rotozoomed(surface_of(6, 650, 8).get(), 180, 100, false), nullptr);
    EXPECT_NE(rotozoomed(surface_of(650, 6, 8).get(), 90, 100, false), nullptr);
}

TEST(TurnedExtents, AreThoseOfTheTurnedRectangle) {
    const SurfacePtr surface = surface_of(10, 20);
    for (const double degrees : {0.0, 1.0, -30.0, 90.0, 200.0}) {
        const double radians = degrees * M_PI / 180;
        const double sine = std::fabs(std::sin(radians));
        const double cosine = std::fabs(std::cos(radians));
        const Extents extents = turned_extents(*surface, degrees, -2, 0.5);
        EXPECT_NEAR(extents.width, 20 * cosine + 10 * sine, 1e-9) << degrees;
        EXPECT_NEAR(extents.height, 20 * sine + 10 * cosine, 1e-9) << degrees;
    }
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(turned_extents(*surface, 0, kInfinity, 0.5).width, kInfinity);
    EXPECT_EQ(turned_extents(*surface, 0, kInfinity, 0.5).height, 10);
}

// SDL_gfx makes each picture two rows higher than it says.
TEST(Zoom, IsDrawnInItsOwnHeightAlone) {
    for (const int depth : {8, 16, 32}) {
        const SurfacePtr surface = surface_of(6, 5, depth);
        for (const Transform& transform : kTransforms) {
            const SurfacePtr result = transform(surface.get(), 1.5, 1.5);
            SDL_SetAlpha(result.get(), 0, SDL_ALPHA_OPAQUE);
            SDL_SetColorKey(result.get(), 0, 0);
            const SurfacePtr target = surface_of(result->w, result->h + 2);
            constexpr std::uint32_t kUntouched = 0x123456;
            SDL_FillRect(target.get(), nullptr, kUntouched);
            ASSERT_EQ(SDL_UpperBlit(result.get(), nullptr, target.get(), nullptr), 0);
            const auto* words = static_cast<const std::uint32_t*>(target->pixels);
            const int width = target->pitch / 4;
            EXPECT_NE(words[(result->h - 1) * width] & 0xFFFFFF, kUntouched);
            EXPECT_EQ(words[result->h * width], kUntouched);
        }
    }
}

TEST(Zoom, LeavesTheSourceUnlocked) {
    const SurfacePtr surface = surface_of(10, 10);
    SDL_SetColorKey(surface.get(), SDL_SRCCOLORKEY | SDL_RLEACCEL, 0);
    const SurfacePtr target = surface_of(10, 10);
    SDL_UpperBlit(surface.get(), nullptr, target.get(), nullptr);
    // SDL 2, if it encodes at all, hides that behind the layer.
    ASSERT_EQ(surface->pixels == nullptr, !is_layer());
    for (const Transform& transform : kTransforms) {
        EXPECT_NE(transform(surface.get(), 1.5, 1.5), nullptr);
        EXPECT_EQ(surface->locked, 0U);
    }
}

}  // namespace
}  // namespace larkspur::pixel
