// Pictures that SDL has run-length encoded, locked and drawn on when what they were drawn to is
// gone; what becomes of locks and conversions where SDL answers in another way; and where a
// surface's memory ends.
#include "base/surface.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include "asked_sdl.h"
#include "gtest/gtest.h"
#include "lost_target.h"

namespace larkspur {
namespace {

constexpr int kWidth = 16;
constexpr int kHeight = 12;
constexpr std::uint32_t kAlphaMask = 0xFF000000;

SurfacePtr new_surface(std::uint32_t alpha_mask) {
    return SurfacePtr(SDL_CreateRGBSurface(SDL_SWSURFACE, kWidth, kHeight, 32, 0xFF0000, 0xFF00,
                                           0xFF, alpha_mask));
}

std::vector<std::uint32_t> pixels_of(const SDL_Surface& surface) {
    std::vector<std::uint32_t> pixels(kWidth * kHeight);
    std::memcpy(pixels.data(), surface.pixels, pixels.size() * sizeof pixels[0]);
    return pixels;
}

// A picture of random pixels, none of them fully transparent, which SDL would forget the colours
// of; drawn to a target that is gone. SDL 2 encodes nothing that shows.
SurfacePtr drawn_picture(std::uint8_t alpha) {
    SurfacePtr picture = new_surface(kAlphaMask);
    std::mt19937 random(1);
    auto* words = static_cast<std::uint32_t*>(picture->pixels);
    for (int i = 0; i < kWidth * kHeight; ++i) {
        words[i] = static_cast<std::uint32_t>(random()) | (i % 3 == 0 ? kAlphaMask : 0x01000000);
    }
    SDL_SetAlpha(picture.get(), SDL_SRCALPHA | SDL_RLEACCEL, alpha);
    {
        const SurfacePtr target = new_surface(0);
        SDL_UpperBlit(picture.get(), nullptr, target.get(), nullptr);
    }
    forget_target(picture.get());
    return picture;
}

std::vector<std::uint32_t> pixels_before(std::uint8_t alpha) {
    const SurfacePtr picture = drawn_picture(alpha);
    SDL_SetAlpha(picture.get(), 0, 0);  // decodes it
    return pixels_of(*picture);
}

TEST(SurfaceLock, NeedsNoTargetOfAnEncodedPicture) {
    for (const std::uint8_t alpha : {255, 100}) {
        const SurfacePtr picture = drawn_picture(alpha);
        const Uint32 asks = picture->flags & (SDL_SRCALPHA | SDL_RLEACCELOK);
        const Uint8 alpha_before = picture->format->alpha;
        for (int round = 0; round < 2; ++round) {
            const SurfaceLock outer(picture.get());
            const SurfaceLock lock(picture.get());
            ASSERT_TRUE(outer && lock);
            EXPECT_EQ(pixels_of(*picture), pixels_before(alpha));
        }
        EXPECT_EQ(picture->flags & (SDL_SRCALPHA | SDL_RLEACCELOK), asks);
        EXPECT_EQ(picture->format->alpha, alpha_before);
        EXPECT_EQ(picture->locked, 0U);
    }
}

TEST(SurfaceLock, LeavesAPictureDrawableThatWasEncoded) {
    const auto drawn = [](SDL_Surface* picture) {
        const SurfacePtr target = new_surface(0);
        SDL_FillRect(target.get(), nullptr, 0x336699);
        EXPECT_EQ(SDL_UpperBlit(picture, nullptr, target.get(), nullptr), 0);
        return pixels_of(*target);
    };
    const SurfacePtr locked = drawn_picture(255);
    { const SurfaceLock lock(locked.get()); }
    EXPECT_EQ(drawn(locked.get()), drawn(drawn_picture(255).get()));
}

// The host's is undone after ours, and SDL would encode the picture then.
TEST(SurfaceLock, LeavesALockOfTheHostAlone) {
    const SurfacePtr picture = drawn_picture(255);
    const Uint32 asks = picture->flags & (SDL_SRCALPHA | SDL_RLEACCELOK);
    ASSERT_EQ(SDL_LockSurface(picture.get()), 0);
    const Uint32 locked = picture->locked;
    {
        const SurfaceLock lock(picture.get());
        EXPECT_TRUE(lock);
        EXPECT_EQ(pixels_of(*picture), pixels_before(255));
    }
    EXPECT_EQ(picture->locked, locked);
    SDL_UnlockSurface(picture.get());
    EXPECT_EQ(picture->locked, 0U);
    EXPECT_EQ(picture->flags & (SDL_SRCALPHA | SDL_RLEACCELOK), asks);
    EXPECT_EQ(pixels_of(*picture), pixels_before(255));
}

// How many locks of SDL one of ours takes.
int locks_of(SDL_Surface* surface) {
    const int before = locks_asked;
    const SurfaceLock lock(surface);
    EXPECT_TRUE(lock);
    return locks_asked - before;
}

TEST(SurfaceLock, AsksSdlWhereTheRecordSaysSo) {
    const SurfacePtr surface = new_surface(0);
    EXPECT_TRUE(has_plain_pixels(surface.get()));
    EXPECT_EQ(locks_of(surface.get()), 0);
    surface->offset = surface->pitch;  // SDL adds it to the pixels while they are locked
    EXPECT_FALSE(has_plain_pixels(surface.get()));
    EXPECT_EQ(locks_of(surface.get()), 1);
    surface->offset = 0;
}

TEST(SurfaceLock, IsFalseWhereSdlRefusesIt) {
    const SurfacePtr surface = new_surface(0);
    surface->offset = surface->pitch;
    lock_answer = LockAnswer::kRefused;
    SDL_SetError("of another failure");
    {
        const SurfaceLock lock(surface.get());
        EXPECT_FALSE(lock);
    }
    lock_answer = LockAnswer::kTrue;
    surface->offset = 0;
    EXPECT_STREQ(SDL_GetError(), "The surface can't be locked");
    EXPECT_EQ(surface->locked, 0U);
}

TEST(LocksShow, NowhereWhereSdlRefusesThem) {
    const SurfacePtr surface = new_surface(0);
    lock_answer = LockAnswer::kRefused;
    EXPECT_FALSE(locks_show(surface.get()));
    lock_answer = LockAnswer::kTrue;
}

TEST(HasVideoMode, IsFalseForARecordThatWasEmptied) {
    SDL_Surface emptied = {};
    other_display = &emptied;
    EXPECT_FALSE(has_video_mode());
    const SurfacePtr display = new_surface(0);
    other_display = display.get();
    EXPECT_TRUE(has_video_mode());
    other_display = nullptr;
}

// Flags of a picture with a colour key and alpha that does not count, converted.
Uint32 flags_kept(std::uint32_t alpha_mask) {
    const SurfacePtr picture = new_surface(0);
    SDL_SetColorKey(picture.get(), SDL_SRCCOLORKEY, 5);
    SDL_SetAlpha(picture.get(), SDL_SRCALPHA, 255);
    const SurfacePtr like = new_surface(alpha_mask);
    conversions_forget_flags = true;
    const SurfacePtr result = converted(picture.get(), like->format, SDL_SWSURFACE);
    conversions_forget_flags = false;
    return result->flags & (SDL_SRCCOLORKEY | SDL_SRCALPHA);
}

TEST(Converted, KeepsFlagsThatSdlWantsToBeAskedFor) {
    EXPECT_EQ(flags_kept(0), static_cast<Uint32>(SDL_SRCCOLORKEY | SDL_SRCALPHA));
    EXPECT_EQ(flags_kept(kAlphaMask), 0U);
}

// The record of a surface of 32 bits around memory that is not its own.
struct ForeignRecord {
    ForeignRecord(int width, int height, Uint16 pitch_bytes) {
        format.BitsPerPixel = 32;
        format.BytesPerPixel = 4;
        surface.format = &format;
        surface.flags = SDL_PREALLOC;
        surface.w = width;
        surface.h = height;
        surface.pitch = pitch_bytes;
    }

    SDL_PixelFormat format = {};
    SDL_Surface surface = {};
};

TEST(BufferBytes, EndAtTheLastPixelOfForeignMemory) {
    EXPECT_EQ(buffer_bytes(ForeignRecord(5, 3, 64).surface), 2U * 64 + 5 * 4);
}

TEST(BufferBytes, AreNoneWithoutRowsOrColumns) {
    EXPECT_EQ(buffer_bytes(ForeignRecord(5, 0, 64).surface), 0U);
    EXPECT_EQ(buffer_bytes(ForeignRecord(0, 3, 64).surface), 0U);
}

}  // namespace
}  // namespace larkspur
