// Our adding and subtracting against SDL_gfx's. LARKSPUR_FUZZ_EXAMPLES sets how many examples are
// tried.
#include <SDL_imageFilter.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

#include "../memory_field.h"
#include "base/surface.h"
#include "counted_filters.h"
#include "pixel/surface/flagged_blit.h"
#include "pixel/surface/tint.h"

namespace larkspur::pixel {
namespace {

constexpr Uint32 kSeed = 20113;

int examples() {
    const char* count = std::getenv("LARKSPUR_FUZZ_EXAMPLES");
    return count != nullptr ? std::atoi(count) : 300;
}

class Random {
 public:
    explicit Random(Uint32 seed) : random_(seed) {}

    int from(int least, int most) {
        return least + static_cast<int>(random_() % static_cast<unsigned>(most - least + 1));
    }
    bool one_in(int count) { return from(1, count) == 1; }
    Uint32 word() { return random_(); }
    void fill(GuardedMemory& memory) {
        for (unsigned char& byte : memory) {
            byte = static_cast<unsigned char>(random_());
        }
    }

 private:
    std::mt19937 random_;
};

bool have_same_bytes(GuardedMemory& a, GuardedMemory& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

SurfacePtr surface_in(unsigned char* start, int width, int height, int pitch) {
    return SurfacePtr(SDL_CreateRGBSurfaceFrom(start, width, height, 32, pitch, 0xFF0000, 0xFF00,
                                               0xFF, 0xFF000000));
}

// Where a surface lies at the end of its memory, or deeper in the target's.
struct Place {
    int width;
    int height;
    int pitch;
    int before_end;

    int bytes() const { return pitch * (height - 1) + 4 * width + before_end; }
};

Place any_place(Random& random) {
    const int width = random.one_in(30) ? random.from(1001, 1300) : random.from(1, 200);
    const int height = random.from(1, width > 1000 ? 6 : 40);
    return {width, height, 4 * width + random.from(0, 9), 0};
}

// What adding a piece of a surface to another is: row by row, as far as both reach.
void add_rows_by_gfx(const SDL_Surface& source, const SDL_Surface& target, std::ptrdiff_t from,
                     std::ptrdiff_t to, int rows, int row_bytes) {
    const auto leaves = [&](const SDL_Surface& surface, std::ptrdiff_t offset) {
        return offset < 0 ||
               offset + row_bytes > static_cast<std::ptrdiff_t>(buffer_bytes(surface));
    };
    for (int row = 0; row < rows && !leaves(source, from) && !leaves(target, to); ++row) {
        auto* added = static_cast<unsigned char*>(source.pixels) + from;
        auto* sum = static_cast<unsigned char*>(target.pixels) + to;
        SDL_imageFilterAdd(added, sum, sum, static_cast<unsigned>(row_bytes));
        from += source.pitch;
        to += target.pitch;
    }
}

TEST(AdditiveBlit, DoesAsTheLibrary) {
    for (int i = 0; i < examples(); ++i) {
        const Uint32 seed = kSeed + static_cast<Uint32>(i);
        SCOPED_TRACE(seed);
        Random random(seed);
        const Place target_place = any_place(random);
        Place source_place = any_place(random);
        const bool shares = random.one_in(4);
        if (shares) {
            source_place = target_place;
            source_place.height = random.from(1, target_place.height);
            source_place.before_end = random.from(0, target_place.bytes() - source_place.bytes());
        }
        GuardedMemory source_memory(static_cast<std::size_t>(source_place.bytes()));
        GuardedMemory ours(static_cast<std::size_t>(target_place.bytes()));
        GuardedMemory expected(static_cast<std::size_t>(target_place.bytes()));
        random.fill(source_memory);
        random.fill(ours);
        std::copy(ours.begin(), ours.end(), expected.begin());
        const auto surfaces_in = [&](GuardedMemory& memory) {
            GuardedMemory& source_is_in = shares ? memory : source_memory;
            return std::make_pair(
                surface_in(source_is_in.end() - source_place.bytes(), source_place.width,
                           source_place.height, source_place.pitch),
                surface_in(memory.end() - target_place.bytes(), target_place.width,
                           target_place.height, target_place.pitch));
        };
        const auto [our_source, our_target] = surfaces_in(ours);
        const auto [source, target] = surfaces_in(expected);

        const int row_bytes =
            4 * random.from(0, target_place.width) + (random.one_in(4) ? random.from(0, 3) : 0);
        const std::ptrdiff_t from = random.one_in(2) ? 0 : random.from(-4, 4 * source_place.width);
        const std::ptrdiff_t to = random.from(-4, random.one_in(2) ? 40 : target_place.bytes());
        const int rows = random.one_in(8) ? 100000 : random.from(-1, 42);
        filters_by_gfx = 0;
        additive_blit(our_source.get(), our_target.get(), from, to, rows, row_bytes);
        if (!shares && row_bytes % 4 == 0 && i > 0) {
            EXPECT_EQ(filters_by_gfx, 0);
        }
        add_rows_by_gfx(*source, *target, from, to, rows, row_bytes);
        ASSERT_TRUE(have_same_bytes(ours, expected));
    }
}

TEST(Satusub, DoesAsTheLibrary) {
    GuardedMemory ours(4096);
    GuardedMemory expected(4096);
    for (int i = 0; i < examples(); ++i) {
        const Uint32 seed = kSeed + static_cast<Uint32>(i);
        SCOPED_TRACE(seed);
        Random random(seed);
        const int length = random.from(1, random.one_in(8) ? 4000 : 150);
        const Uint32 value = random.word();
        random.fill(ours);
        std::copy(ours.begin(), ours.end(), expected.begin());
        satusub(ours.end() - length, length, value);
        SDL_imageFilterSubUint(expected.end() - length, expected.end() - length,
                               static_cast<unsigned>(length), value);
        ASSERT_TRUE(have_same_bytes(ours, expected)) << length;
    }
}

// The calls of the library that adding 9 x 7 pixels twice and subtracting from them twice makes at
// the second time.
int calls_once_tried() {
    std::vector<Uint32> source_pixels(63, 0x01020304);
    std::vector<Uint32> target_pixels(63, 0x10203040);
    const auto surface_around = [](std::vector<Uint32>& pixels) {
        return surface_in(reinterpret_cast<unsigned char*>(pixels.data()), 9, 7, 36);
    };
    const SurfacePtr source = surface_around(source_pixels);
    const SurfacePtr target = surface_around(target_pixels);
    for (int round = 0; round < 2; ++round) {
        filters_by_gfx = 0;
        additive_blit(source.get(), target.get(), 0, 0, 7, 36);
        satusub(target_pixels.data(), 63 * 4, 0x01010101);
    }
    return filters_by_gfx;
}

TEST(Filters, AreOurOwnWhereTheLibraryCanBeStoodInFor) {
    EXPECT_EQ(calls_once_tried(), 0);
}

// In a process of its own, as filters are tried once.
TEST(FiltersDeathTest, AreLeftToALibraryThatAnswersOtherwise) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const AnswerOfGfx answer :
         {AnswerOfGfx::kOtherLastByte, AnswerOfGfx::kOtherLastByteOfFew, AnswerOfGfx::kOtherPair}) {
        const auto calls_of_another_library = [&] {
            answer_of_gfx = answer;
            return calls_once_tried();
        };
        EXPECT_EXIT(std::_Exit(calls_of_another_library()), ::testing::ExitedWithCode(7 + 1), "");
    }
}

}  // namespace
}  // namespace larkspur::pixel
