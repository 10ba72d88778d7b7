// When a surface serves again, what is put back in it, how many are kept, and which. How Python can
// hold and change one is tested with the views of rooms.
#include "base/recycled_surface.h"

#include <SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "../sdl_layer.h"
#include "asked_sdl.h"
#include "gtest/gtest.h"
#include "lost_target.h"

namespace larkspur {
namespace {

struct Wanted {
    Uint32 flags;
    int width;
    int height;
    int depth;
    Uint32 masks[4];
};

constexpr Wanted kWanted = {SDL_SWSURFACE, 20, 10, 32, {0xFF0000, 0xFF00, 0xFF, 0}};

Wanted of_size(int width, int height) {
    Wanted wanted = kWanted;
    wanted.width = width;
    wanted.height = height;
    return wanted;
}

RecycledSurface taken(const Wanted& wanted) {
    SDL_PixelFormat masks = {};
    masks.Rmask = wanted.masks[0];
    masks.Gmask = wanted.masks[1];
    masks.Bmask = wanted.masks[2];
    masks.Amask = wanted.masks[3];
    return recycled_surface(wanted.flags, wanted.width, wanted.height, wanted.depth, masks);
}

// Whether somebody beside the test holds it.
bool is_kept(const SurfacePtr& surface) {
    return surface->refcount == 2;
}

// Lets go of all that is kept: one that is as large as all of them may be takes their place.
void let_go_of_all() {
    taken(of_size(2048, 4096));
}

class RecycledSurfaces : public ::testing::Test {
 protected:
    void SetUp() override {
        lock_answer = LockAnswer::kCounted;  // else a layer over SDL 2 would have nothing kept
        let_go_of_all();
    }
    void TearDown() override {
        let_go_of_all();
        lock_answer = LockAnswer::kTrue;
    }
};

using RecycledSurfacesDeathTest = RecycledSurfaces;

TEST(RecycledSurface, IsAsSdlMakesIt) {
    for (const int depth : {16, 24, 32}) {
        for (const Uint32 alpha_mask : {0U, 0xFF000000U}) {
            Wanted wanted = kWanted;
            wanted.depth = depth;
            wanted.masks[3] = depth == 32 ? alpha_mask : 0;
            const auto& masks = wanted.masks;
            const SurfacePtr expected(SDL_CreateRGBSurface(SDL_SWSURFACE, 20, 10, depth, masks[0],
                                                           masks[1], masks[2], masks[3]));
            for (int time = 0; time < 3; ++time) {
                const RecycledSurface again = taken(wanted);
                const SDL_Surface& surface = *again.surface;
                EXPECT_EQ(surface.flags, expected->flags);
                EXPECT_EQ(surface.w, 20);
                EXPECT_EQ(surface.h, 10);
                EXPECT_EQ(surface.pitch, expected->pitch);
                EXPECT_EQ(surface.format->BitsPerPixel, depth);
                EXPECT_EQ(surface.format->Amask, expected->format->Amask);
                if (again.is_clear) {
                    const std::vector<unsigned char> zeros(buffer_bytes(surface));
                    EXPECT_EQ(std::memcmp(surface.pixels, zeros.data(), zeros.size()), 0);
                }
                SDL_FillRect(again.surface.get(), nullptr, 0x123456);
            }
        }
    }
}

TEST(RecycledSurface, IsNullWhereSdlRefusesTheSize) {
    for (const Wanted& wanted : {of_size(70000, 5), of_size(5, 70000), of_size(16384, 32768)}) {
        EXPECT_EQ(taken(wanted).surface, nullptr) << wanted.width << " x " << wanted.height;
    }
}

TEST(RecycledSurface, IsNotKeptWhereLocksDoNotShow) {
    lock_answer = LockAnswer::kUncounted;
    EXPECT_FALSE(is_kept(taken(of_size(23, 10)).surface));
    lock_answer = LockAnswer::kTrue;
    EXPECT_EQ(is_kept(taken(of_size(23, 10)).surface), !is_layer());
}

TEST_F(RecycledSurfaces, ServeAgainOnceNobodyHoldsThem) {
    RecycledSurface first = taken(kWanted);
    EXPECT_TRUE(first.is_clear);
    const int number = number_of(*first.surface);
    const RecycledSurface second = taken(kWanted);
    EXPECT_NE(number_of(*second.surface), number);
    EXPECT_TRUE(second.is_clear);
    first.surface.reset();
    const RecycledSurface third = taken(kWanted);
    EXPECT_EQ(number_of(*third.surface), number);
    EXPECT_FALSE(third.is_clear);
}

TEST_F(RecycledSurfaces, ServeAgainWhereSdlCanPutBackWhatHoldersSet) {
    const std::vector<std::function<void(SDL_Surface*)>> changes = {
        [](SDL_Surface* surface) { SDL_SetColorKey(surface, SDL_SRCCOLORKEY, 5); },
        [](SDL_Surface* surface) { SDL_SetAlpha(surface, SDL_SRCALPHA, 100); },
        [](SDL_Surface* surface) { SDL_SetAlpha(surface, SDL_RLEACCEL, 100); },
        [](SDL_Surface* surface) {
            SDL_Rect middle = {2, 3, 4, 5};
            SDL_SetClipRect(surface, &middle);
        },
        [](SDL_Surface* surface) { surface->format->alpha = 100; }};
    SurfacePtr fresh = taken(kWanted).surface;
    const int number = number_of(*fresh);
    const Uint32 flags = fresh->flags;
    fresh.reset();
    for (const auto& change : changes) {
        change(taken(kWanted).surface.get());
        const SurfacePtr again = taken(kWanted).surface;
        EXPECT_EQ(number_of(*again), number);
        EXPECT_EQ(again->flags, flags);
        EXPECT_EQ(again->format->colorkey, 0U);
        EXPECT_EQ(again->format->alpha, 255);
        EXPECT_EQ(again->clip_rect.x, 0);
        EXPECT_EQ(again->clip_rect.y, 0);
        EXPECT_EQ(again->clip_rect.w, 20);
        EXPECT_EQ(again->clip_rect.h, 10);
        EXPECT_NE(again->pixels, nullptr);
    }
}

TEST_F(RecycledSurfaces, DoNotServeAgainWhereHoldersLeaveMoreBehind) {
    const std::vector<std::function<void(SDL_Surface*)>> changes = {
        [](SDL_Surface* surface) { SDL_LockSurface(surface); },
        [](SDL_Surface* surface) { --surface->w; },
        [](SDL_Surface* surface) { surface->h -= 2; },
        [](SDL_Surface* surface) { surface->format->Rmask = 0xFF; },
        [](SDL_Surface* surface) { surface->format->Gmask = 0xFF; },
        [](SDL_Surface* surface) { surface->format->Bmask = 0xFF00; },
        [](SDL_Surface* surface) { surface->format->Amask = 0xFF000000; },
        [](SDL_Surface* surface) { surface->format->Rshift = 8; },
        [](SDL_Surface* surface) { surface->format->Gshift = 16; },
        [](SDL_Surface* surface) { surface->format->Bshift = 8; },
        [](SDL_Surface* surface) { surface->format->Ashift = 24; }};
    for (const auto& change : changes) {
        SurfacePtr first = taken(kWanted).surface;
        const int number = number_of(*first);
        change(first.get());
        first.reset();
        EXPECT_NE(number_of(*taken(kWanted).surface), number) << &change - changes.data();
        let_go_of_all();
    }
}

// SDL 2, if it encodes at all, hides that behind the layer.
TEST_F(RecycledSurfaces, DoNotServeAgainWhereTheyWereLeftEncoded) {
    SurfacePtr first = taken(kWanted).surface;
    const int number = number_of(*first);
    SDL_SetColorKey(first.get(), SDL_SRCCOLORKEY | SDL_RLEACCEL, 5);
    const SurfacePtr target(SDL_CreateRGBSurface(0, 9, 9, 32, 0xFF0000, 0xFF00, 0xFF, 0));
    SDL_BlitSurface(first.get(), nullptr, target.get(), nullptr);
    ASSERT_EQ(first->pixels == nullptr, !is_layer());
    first.reset();
    EXPECT_EQ(number_of(*taken(kWanted).surface) == number, is_layer());
}

// A conversion to pixels with alpha draws without the source's, and SDL keeps the loop for the next
// time.
TEST_F(RecycledSurfaces, AreDrawnByNoLoopOfAnEarlierHolder) {
    Wanted wanted = kWanted;
    wanted.masks[3] = 0xFF000000;
    SurfacePtr first = taken(wanted).surface;
    const int number = number_of(*first);
    const SurfacePtr target(SDL_ConvertSurface(first.get(), first->format, SDL_SWSURFACE));
    first.reset();
    const SurfacePtr again = taken(wanted).surface;
    ASSERT_EQ(number_of(*again), number);
    SDL_FillRect(target.get(), nullptr, 0xFF0000FF);
    SDL_FillRect(again.get(), nullptr, 0x00FF0000);
    SDL_BlitSurface(again.get(), nullptr, target.get(), nullptr);
    EXPECT_EQ(*static_cast<Uint32*>(target->pixels), 0xFF0000FF);
}

TEST_F(RecycledSurfaces, ServeForTheSameAlone) {
    std::vector<Wanted> others(8, kWanted);
    others[0].flags = SDL_SRCALPHA;
    others[1].width = 21;
    others[2].height = 11;
    others[3].depth = 24;
    for (int i = 0; i < 4; ++i) {
        others[4 + i].masks[i] = 0xF000000;
    }
    for (const Wanted& other : others) {
        const int number = number_of(*taken(kWanted).surface);
        EXPECT_NE(number_of(*taken(other).surface), number);
        EXPECT_EQ(number_of(*taken(kWanted).surface), number);
        let_go_of_all();
    }
}

// Without masks of colours SDL takes its own, and leaves the alpha's out but for the flag.
TEST_F(RecycledSurfaces, DoNotServeForTheMasksThatSdlChose) {
    Wanted without_colours = kWanted;
    std::fill_n(without_colours.masks, 3, 0U);
    without_colours.masks[3] = 0xFF000000;
    SurfacePtr chosen = taken(without_colours).surface;
    const int number = number_of(*chosen);
    EXPECT_EQ(chosen->flags, is_layer() ? SDL_SWSURFACE : SDL_SRCALPHA);
    chosen.reset();
    EXPECT_EQ(taken(kWanted).surface->flags, SDL_SWSURFACE);
    EXPECT_EQ(number_of(*taken(without_colours).surface), number);
}

TEST_F(RecycledSurfaces, AreKeptUpToEight) {
    std::vector<SurfacePtr> held(8);
    for (int i = 0; i < 8; ++i) {
        held[i] = taken(of_size(20 + i, 10)).surface;
    }
    for (const SurfacePtr& surface : held) {
        EXPECT_TRUE(is_kept(surface));
    }
    const SurfacePtr ninth = taken(of_size(50, 10)).surface;
    EXPECT_TRUE(is_kept(ninth));
    for (const SurfacePtr& surface : held) {
        EXPECT_FALSE(is_kept(surface));
    }
}

TEST_F(RecycledSurfaces, AreLetGoFirstWhereOthersHoldThem) {
    const int number = number_of(*taken(kWanted).surface);
    std::vector<SurfacePtr> held(8);
    for (int i = 0; i < 8; ++i) {
        held[i] = taken(of_size(30 + i, 10)).surface;
    }
    EXPECT_FALSE(is_kept(held.front()));
    EXPECT_TRUE(is_kept(held.back()));
    EXPECT_EQ(number_of(*taken(kWanted).surface), number);
}

TEST_F(RecycledSurfaces, AreLetGoFirstWhereTheyWereLeftLocked) {
    const int number = number_of(*taken(kWanted).surface);
    for (int i = 0; i < 8; ++i) {
        SDL_LockSurface(taken(of_size(30 + i, 10)).surface.get());
    }
    EXPECT_EQ(number_of(*taken(kWanted).surface), number);
}

// The last holder of one is whoever lets it go, and SDL undoes the locks then.
TEST_F(RecycledSurfacesDeathTest, AreLetGoWhereTheyWereLeftLockedAndTheirTargetIsGone) {
    const auto let_go_of_locked = [] {
        Wanted wanted = kWanted;
        wanted.masks[3] = 0xFF000000;
        SurfacePtr picture = taken(wanted).surface;
        SDL_FillRect(picture.get(), nullptr, 0x80123456);
        SDL_SetAlpha(picture.get(), SDL_SRCALPHA | SDL_RLEACCEL, SDL_ALPHA_OPAQUE);
        const SurfacePtr target = taken(kWanted).surface;
        SDL_BlitSurface(picture.get(), nullptr, target.get(), nullptr);
        const bool is_encoded = picture->pixels == nullptr;
        SDL_LockSurface(picture.get());
        forget_target(picture.get());
        picture.reset();
        let_go_of_all();
        return is_encoded != is_layer();
    };
    EXPECT_EXIT(std::_Exit(let_go_of_locked() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

TEST_F(RecycledSurfaces, AllMakeRoomForAnotherWhereNobodyHoldsThem) {
    const int number = number_of(*taken(kWanted).surface);
    for (int i = 0; i < 8; ++i) {
        taken(of_size(30 + i, 10));
    }
    EXPECT_NE(number_of(*taken(kWanted).surface), number);
}

TEST_F(RecycledSurfaces, AreKeptUpTo32MiB) {
    constexpr int kSideOf16MiB = 2048;
    const int number = number_of(*taken(of_size(kSideOf16MiB, kSideOf16MiB)).surface);
    taken(of_size(kSideOf16MiB, kSideOf16MiB - 1));
    EXPECT_EQ(number_of(*taken(of_size(kSideOf16MiB, kSideOf16MiB)).surface), number);
    taken(of_size(kSideOf16MiB, 2));
    EXPECT_NE(number_of(*taken(of_size(kSideOf16MiB, kSideOf16MiB)).surface), number);
    EXPECT_TRUE(is_kept(taken(of_size(2048, 4096)).surface));
    EXPECT_FALSE(is_kept(taken(of_size(2048, 4097)).surface));
}

TEST_F(RecycledSurfaces, AreNotKeptWhereTheyHaveNoPixelsOrAPalette) {
    EXPECT_FALSE(is_kept(taken(of_size(0, 10)).surface));
    EXPECT_FALSE(is_kept(taken(of_size(10, 0)).surface));
    Wanted wanted = kWanted;
    wanted.depth = 8;
    EXPECT_FALSE(is_kept(taken(wanted).surface));
}

}  // namespace
}  // namespace larkspur
