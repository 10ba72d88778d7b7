#include <SDL.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <utility>

#include "../../sdl_layer.h"
#include "base/surface.h"
#include "counted_blits.h"
#include "gtest/gtest.h"
#include "pixel/surface/blit.h"

namespace larkspur::pixel {
namespace {

constexpr std::uint32_t kAlpha = 0xFF000000;
constexpr int kTargetWidth = 40;
constexpr int kTargetHeight = 30;

SurfacePtr made(int width, int height, unsigned seed, std::uint32_t alpha_mask, std::uint32_t flags,
                std::uint32_t red = 0xFF0000, std::uint32_t blue = 0xFF) {
    SurfacePtr surface(
        SDL_CreateRGBSurface(flags, width, height, 32, red, 0xFF00, blue, alpha_mask));
    std::mt19937 random(seed);
    auto* bytes = static_cast<unsigned char*>(surface->pixels);
    for (int i = 0; i < surface->pitch * height; ++i) {
        bytes[i] = static_cast<unsigned char>(random());
    }
    return surface;
}

SurfacePtr picture(int width = 9, int height = 7, unsigned seed = 1) {
    return made(width, height, seed, kAlpha, SDL_SRCALPHA);
}

SurfacePtr screen(unsigned seed = 2) {
    return made(kTargetWidth, kTargetHeight, seed, 0, 0);
}

::testing::AssertionResult same_pixels(const SDL_Surface& a, const SDL_Surface& b) {
    const auto bytes = static_cast<std::size_t>(a.pitch) * static_cast<std::size_t>(a.h);
    if (std::memcmp(a.pixels, b.pixels, bytes) == 0) {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "the pixels differ";
}

// Whether a loop of ours draws, or SDL is asked.
bool is_drawn_by_us(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect) {
    SDL_Rect elsewhere = {-100, -100, 0, 0};
    blit(source, nullptr, target, &elsewhere);  // the first one tries the loops
    blits_by_sdl = 0;
    blit(source, nullptr, target, rect);
    return blits_by_sdl == 0;
}

void expect_left(SDL_Surface* source, SDL_Surface* target) {
    SDL_Rect rect = {3, 4, 77, 88};
    EXPECT_FALSE(is_drawn_by_us(source, target, &rect));
}

// Blits here and through SDL onto twins, and compares the pixels and what becomes of the rectangle.
// A layer over SDL 2 rounds otherwise: there every blit is left to it.
void expect_as_sdl(SDL_Surface* source, const std::function<SurfacePtr()>& make_target, int x,
                   int y) {
    const SurfacePtr target = make_target();
    const SurfacePtr twin = make_target();
    SDL_Rect rect = {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 77, 88};
    SDL_Rect sdl_rect = rect;
    ASSERT_EQ(is_drawn_by_us(source, target.get(), &rect), !is_layer()) << x << ", " << y;
    ASSERT_EQ(SDL_UpperBlit(source, nullptr, twin.get(), &sdl_rect), 0);
    EXPECT_EQ(rect.x, sdl_rect.x) << x << ", " << y;
    EXPECT_EQ(rect.y, sdl_rect.y) << x << ", " << y;
    EXPECT_EQ(rect.w, sdl_rect.w) << x << ", " << y;
    EXPECT_EQ(rect.h, sdl_rect.h) << x << ", " << y;
    EXPECT_TRUE(same_pixels(*target, *twin)) << x << ", " << y;
}

TEST(BlitOfPixelAlpha, DoesAsSdlAtEveryPlace) {
    const SurfacePtr source = picture();
    for (int x = -12; x <= kTargetWidth + 3; ++x) {
        for (int y = -10; y <= kTargetHeight + 3; ++y) {
            expect_as_sdl(
                source.get(), [] { return screen(); }, x, y);
        }
    }
    for (const int far : {-32768, -32767, 32767, 32000}) {
        expect_as_sdl(
            source.get(), [] { return screen(); }, far, 5);
        expect_as_sdl(
            source.get(), [] { return screen(); }, 5, far);
    }
}

TEST(BlitOfPixelAlpha, KeepsToTheClipRectangle) {
    const SurfacePtr source = picture(20, 20);
    std::mt19937 random(3);
    for (int i = 0; i < 500; ++i) {
        SDL_Rect clip = {static_cast<std::int16_t>(random() % kTargetWidth),
                         static_cast<std::int16_t>(random() % kTargetHeight),
                         static_cast<std::uint16_t>(random() % kTargetWidth),
                         static_cast<std::uint16_t>(random() % kTargetHeight)};
        const auto clipped = [&] {
            SurfacePtr target = screen();
            SDL_SetClipRect(target.get(), &clip);
            return target;
        };
        expect_as_sdl(source.get(), clipped, static_cast<int>(random() % 60) - 20,
                      static_cast<int>(random() % 50) - 20);
    }
}

TEST(BlitOfPixelAlpha, KeepsTheAlphaOfItsTarget) {
    const SurfacePtr source = picture();
    const auto with_alpha = [] { return made(20, 20, 4, kAlpha, SDL_SRCALPHA); };
    expect_as_sdl(source.get(), with_alpha, 3, 4);
}

TEST(BlitOfPixelAlpha, TakesTheOtherByteOrderToo) {
    const SurfacePtr source = made(9, 7, 1, kAlpha, SDL_SRCALPHA, 0xFF, 0xFF0000);
    const auto other = [] { return made(20, 20, 4, 0, 0, 0xFF, 0xFF0000); };
    expect_as_sdl(source.get(), other, 3, 4);
}

TEST(BlitOfPixelAlpha, IgnoresTheSurfacesOwnAlphaAsSdlDoes) {
    const SurfacePtr source = picture();
    SDL_SetAlpha(source.get(), SDL_SRCALPHA, 90);
    expect_as_sdl(
        source.get(), [] { return screen(); }, 3, 4);
}

// As turned pictures have one; SDL does not encode them either.
TEST(BlitOfPixelAlpha, DrawsPixelsOfAColourKeyToo) {
    for (const std::uint32_t flags : {SDL_SRCCOLORKEY, SDL_SRCCOLORKEY | SDL_RLEACCEL}) {
        const SurfacePtr source = picture();
        SDL_SetColorKey(source.get(), flags, *static_cast<std::uint32_t*>(source->pixels));
        for (int round = 0; round < 2; ++round) {
            expect_as_sdl(
                source.get(), [] { return screen(); }, 3, 4);
        }
    }
}

TEST(BlitOfPixelAlpha, LeavesPicturesThatSdlTreatsInAnotherWay) {
    const SurfacePtr target = screen();
    const SurfacePtr to_be_encoded = picture();
    SDL_SetAlpha(to_be_encoded.get(), SDL_SRCALPHA | SDL_RLEACCEL, 255);
    expect_left(to_be_encoded.get(), target.get());
    SDL_UpperBlit(to_be_encoded.get(), nullptr, target.get(), nullptr);
    expect_left(to_be_encoded.get(), target.get());  // encoded now
    const SurfacePtr low_alpha(
        SDL_CreateRGBSurface(SDL_SRCALPHA, 9, 7, 32, 0xFF000000, 0xFF0000, 0xFF00, 0xFF));
    expect_left(low_alpha.get(), target.get());
    for (unsigned place = 0; place < 3; ++place) {  // another mask for one channel
        std::array<std::uint32_t, 3> masks = {0xFF0000, 0xFF00, 0xFF};
        masks[place] &= 0x7F7F7F;
        const SurfacePtr other(
            SDL_CreateRGBSurface(SDL_SRCALPHA, 9, 7, 32, masks[0], masks[1], masks[2], kAlpha));
        expect_left(other.get(), target.get());
    }
}

// SDL then steps from row to row in whole pixels.
TEST(BlitOfPixelAlpha, LeavesRowsThatAreNoWholeNumberOfPixelsApart) {
    std::array<unsigned char, 9 * 41> bytes = {};
    const auto around = [&](int pitch) {
        SurfacePtr surface(SDL_CreateRGBSurfaceFrom(bytes.data(), 9, 7, 32, pitch, 0xFF0000, 0xFF00,
                                                    0xFF, kAlpha));
        SDL_SetAlpha(surface.get(), SDL_SRCALPHA, 255);
        return surface;
    };
    SDL_Rect rect = {3, 4, 77, 88};
    const SurfacePtr target = screen();
    EXPECT_EQ(is_drawn_by_us(around(40).get(), target.get(), &rect), !is_layer());
    const SurfacePtr source = picture();
    for (const int pitch : {37, 38, 39, 41}) {
        expect_left(around(pitch).get(), target.get());
        expect_left(source.get(), around(pitch).get());
    }
}

TEST(BlitOfPixelAlpha, LeavesSurfacesThatAreNotPlainMemory) {
    const SurfacePtr source = picture();
    const SurfacePtr shallow(SDL_CreateRGBSurface(0, 20, 20, 16, 0xF800, 0x7E0, 0x1F, 0));
    expect_left(source.get(), shallow.get());
    const SurfacePtr target = screen();
    target->locked = 1;
    expect_left(source.get(), target.get());
    target->locked = 0;
    source->locked = 1;
    expect_left(source.get(), target.get());
    source->locked = 0;
}

TEST(HasPlainPixels, IsFalseForPixelsThatAreNotThere) {
    const SurfacePtr surface = screen();
    EXPECT_TRUE(has_plain_pixels(surface.get()));
    void* pixels = std::exchange(surface->pixels, nullptr);
    EXPECT_FALSE(has_plain_pixels(surface.get()));
    surface->pixels = pixels;
}

TEST(LocksShow, WhereTheRecordCountsThem) {
    const SurfacePtr surface = screen();
    EXPECT_EQ(locks_show(surface.get()), !is_layer());
    SDL_Rect rect = {0, 0, 0, 0};  // and it is unlocked again
    EXPECT_EQ(SDL_UpperBlit(picture().get(), nullptr, surface.get(), &rect), 0);
}

TEST(BlitOfPixelAlpha, LeavesSurfacesThatShareMemory) {
    const SurfacePtr whole = made(20, 20, 5, kAlpha, SDL_SRCALPHA);
    expect_left(whole.get(), whole.get());
    const SurfacePtr piece(SDL_CreateRGBSurfaceFrom(
        static_cast<unsigned char*>(whole->pixels) + 4 * 5 + 3 * whole->pitch, 8, 8, 32,
        whole->pitch, 0xFF0000, 0xFF00, 0xFF, kAlpha));
    expect_left(piece.get(), whole.get());
    expect_left(whole.get(), piece.get());
}

TEST(BlitOfPixelAlpha, StaysInsideATargetWhoseClipRectangleLeavesIt) {
    const SurfacePtr source = picture(50, 40);
    const SDL_Rect leaving[] = {{0, 0, kTargetWidth + 1, kTargetHeight},
                                {0, 0, kTargetWidth, kTargetHeight + 1},
                                {-1, 0, kTargetWidth + 1, kTargetHeight},
                                {0, -1, kTargetWidth, kTargetHeight + 1}};
    for (const SDL_Rect& clip : leaving) {
        const SurfacePtr target = screen();
        const SurfacePtr twin = screen();
        target->clip_rect = clip;
        SDL_Rect rect = {-3, -4, 0, 0};
        SDL_Rect sdl_rect = rect;
        ASSERT_TRUE(blit(source.get(), nullptr, target.get(), &rect));
        ASSERT_EQ(SDL_UpperBlit(source.get(), nullptr, twin.get(), &sdl_rect), 0);
        EXPECT_TRUE(same_pixels(*target, *twin));
    }
}

}  // namespace
}  // namespace larkspur::pixel
