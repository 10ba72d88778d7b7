// Our blit against SDL's on random surfaces: every byte of both surfaces and around them, what
// becomes of the source, the rectangle and the result. LARKSPUR_FUZZ_EXAMPLES sets how many pairs
// of surfaces are tried.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "../../sdl_layer.h"
#include "../memory_field.h"
#include "base/surface.h"
#include "counted_blits.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/blit.h"

namespace larkspur::pixel {
namespace {

constexpr Uint32 kSeed = 20112;
constexpr int kBlitsPerPair = 4;

int pairs_to_try() {
    const char* examples = std::getenv("LARKSPUR_FUZZ_EXAMPLES");
    return examples != nullptr ? std::atoi(examples) : 300;
}

struct Masks {
    Uint32 red, green, blue, alpha;
};

// How one of the two surfaces is made.
struct Plan {
    int width;
    int height;
    int pitch;
    Masks masks;
    bool at_start;  // of its memory, where memory begins that must not be touched; else at the end
    bool shares;    // lies in the target's memory, from `offset` bytes after its start on
    int offset;
    Uint32 flags;
    Uint32 key;
    Uint8 alpha;
    bool stores_alpha;  // past SDL, as native callers can

    std::size_t bytes() const {
        return static_cast<std::size_t>(pitch) * (height - 1) + 4U * static_cast<unsigned>(width);
    }
};

class Dice {
 public:
    explicit Dice(Uint32 seed) : random_(seed) {}

    int below(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    bool one_in(int count) { return below(count) == 0; }
    int from(int least, int most) { return least + below(most - least + 1); }
    Uint32 word() { return random_(); }

    Plan plan() {
        Plan plan = {};
        plan.width = one_in(30) ? from(1001, 1400) : from(1, one_in(2) ? 40 : 200);
        plan.height =
            one_in(30) && plan.width < 50 ? from(1001, 1400) : from(1, plan.width > 1000 ? 8 : 60);
        plan.pitch = 4 * (plan.width + below(4)) + (one_in(12) ? from(1, 3) : 0);
        plan.masks = masks();
        plan.at_start = one_in(2);
        return plan;
    }

    Masks masks() {
        static constexpr Masks kUsual[] = {
            {0xFF0000, 0xFF00, 0xFF, 0},
            {0xFF0000, 0xFF00, 0xFF, 0xFF000000},
        };
        static constexpr Masks kOthers[] = {
            {0xFF, 0xFF00, 0xFF0000, 0},          {0xFF, 0xFF00, 0xFF0000, 0xFF000000},
            {0xFF000000, 0xFF0000, 0xFF00, 0xFF}, {0xFF000000, 0xFF0000, 0xFF00, 0},
            {0xFF00, 0xFF0000, 0xFF, 0},          {0xFF0000, 0xFF00, 0xFF, 0x7F000000},
            {0x7F0000, 0xFF00, 0xFF, 0xFF000000}, {0xFF0000, 0xFF00, 0x1F, 0},
            {0xFF0000, 0x7F00, 0xFF, 0},
        };
        return one_in(6) ? kOthers[below(std::size(kOthers))] : kUsual[below(std::size(kUsual))];
    }

    Uint8 alpha() {
        static constexpr Uint8 kSpecial[] = {0, 1, 127, 128, 129, 254, 255};
        return one_in(2) ? kSpecial[below(std::size(kSpecial))] : static_cast<Uint8>(word());
    }

    // Mostly touching an area of this size, sometimes far away or at the ends of 16 bits.
    SDL_Rect rectangle(int width, int height) {
        if (one_in(12)) {
            return {static_cast<Sint16>(word()), static_cast<Sint16>(word()),
                    static_cast<Uint16>(word()), static_cast<Uint16>(word())};
        }
        return {static_cast<Sint16>(from(-width / 3, width)),
                static_cast<Sint16>(from(-height / 3, height)),
                static_cast<Uint16>(below(width + width / 2 + 2)),
                static_cast<Uint16>(below(height + height / 2 + 2))};
    }

 private:
    std::mt19937 random_;
};

// A source and a target in memory of their own; equal ones are made of equal plans.
class Pair {
 public:
    Pair(const Plan& source, const Plan& target, Uint32 seed)
        : source_memory_(source.bytes()), target_memory_(target.bytes()) {
        Dice dice(seed);
        for (GuardedMemory* memory : {&source_memory_, &target_memory_}) {
            for (unsigned char& byte : *memory) {
                byte = static_cast<unsigned char>(dice.word() >> 8);
            }
        }
        auto* source_start = source.shares     ? target_start(target) + source.offset
                             : source.at_start ? source_memory_.begin()
                                               : source_memory_.end() - source.bytes();
        plant_key(source, source_start, dice);
        target_ = surface(target, target_start(target));
        source_ = surface(source, source_start);
        if (!is_made()) {
            return;
        }
        SDL_SetAlpha(source_.get(), source.flags & (SDL_SRCALPHA | SDL_RLEACCEL), source.alpha);
        if (source.stores_alpha) {
            source_->format->alpha = source.alpha;
        }
        if ((source.flags & SDL_SRCCOLORKEY) != 0) {
            SDL_SetColorKey(source_.get(), source.flags & (SDL_SRCCOLORKEY | SDL_RLEACCEL),
                            source.key);
        }
    }

    bool is_made() const { return source_ != nullptr && target_ != nullptr; }
    SDL_Surface* source() const { return source_.get(); }
    SDL_Surface* target() const { return target_.get(); }
    bool has_same_memory(Pair& other) {
        return std::equal(source_memory_.begin(), source_memory_.end(),
                          other.source_memory_.begin()) &&
               std::equal(target_memory_.begin(), target_memory_.end(),
                          other.target_memory_.begin());
    }

 private:
    unsigned char* target_start(const Plan& target) {
        return target.at_start ? target_memory_.begin() : target_memory_.end() - target.bytes();
    }

    // None, some or all pixels get the key's colour, with the key's top byte or another one.
    static void plant_key(const Plan& plan, unsigned char* start, Dice& dice) {
        const int every = dice.below(4);
        for (int y = 0; every != 0 && y < plan.height; ++y) {
            for (int x = 0; x < plan.width; ++x) {
                if (dice.one_in(every)) {
                    const Uint32 top = dice.one_in(2) ? 0 : dice.word() & 0xFF000000;
                    pixel_words(start + std::ptrdiff_t{y} * plan.pitch)[x] = plan.key ^ top;
                }
            }
        }
    }

    static SurfacePtr surface(const Plan& plan, unsigned char* start) {
        return SurfacePtr(SDL_CreateRGBSurfaceFrom(start, plan.width, plan.height, 32, plan.pitch,
                                                   plan.masks.red, plan.masks.green,
                                                   plan.masks.blue, plan.masks.alpha));
    }

    GuardedMemory source_memory_;
    GuardedMemory target_memory_;
    SurfacePtr target_;
    SurfacePtr source_;
};

std::pair<Plan, Plan> source_and_target(Dice& dice) {
    Plan target = dice.plan();
    Plan source = dice.plan();
    if (!dice.one_in(6)) {  // no more than alpha may differ
        const Uint32 alpha = source.masks.alpha;
        source.masks = target.masks;
        if (target.masks.alpha == 0 || target.masks.alpha == 0xFF000000) {
            source.masks.alpha = alpha == 0 ? 0 : 0xFF000000 & ~source.masks.red;
        }
    }
    source.flags = (dice.one_in(2) ? SDL_SRCCOLORKEY : 0) | (dice.one_in(2) ? SDL_SRCALPHA : 0) |
                   (dice.one_in(6) ? SDL_RLEACCEL : 0);
    source.alpha = dice.alpha();
    source.stores_alpha = dice.one_in(8);
    source.key = dice.word();
    if (dice.one_in(10)) {
        source.shares = true;
        source.width = dice.from(1, target.width);
        source.height = dice.from(1, target.height);
        source.pitch = target.pitch;
        source.offset = dice.below(target.height - source.height + 1) * target.pitch +
                        4 * dice.below(target.width - source.width + 1);
    }
    return {source, target};
}

std::string text(const SDL_Rect& rect) {
    return std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.w) +
           "x" + std::to_string(rect.h);
}

// The combinations of what SDL's blit depends on: key, alpha, the alpha masks.
int kind_of(const Pair& pair) {
    const SDL_Surface& source = *pair.source();
    const bool blends = (source.flags & SDL_SRCALPHA) != 0 &&
                        (source.format->Amask != 0 || source.format->alpha != 255);
    return ((source.flags & SDL_SRCCOLORKEY) != 0 ? 1 : 0) + (blends ? 2 : 0) +
           (source.format->Amask != 0 ? 4 : 0) + (pair.target()->format->Amask != 0 ? 8 : 0);
}

// A layer over SDL 2 makes every blit itself, and crashes in one to a locked surface.
TEST(BlitFuzz, DoesAsSdl) {
    std::set<int> kinds_drawn_by_us;
    const int pairs = pairs_to_try();
    for (int i = 0; i < pairs; ++i) {
        const Uint32 seed = kSeed + static_cast<Uint32>(i);
        SCOPED_TRACE("seed " + std::to_string(seed));
        Dice dice(seed);
        const auto [source, target] = source_and_target(dice);
        Pair ours(source, target, seed);
        Pair expected(source, target, seed);
        if (!ours.is_made()) {
            ASSERT_TRUE(is_layer());  // which knows few formats
            continue;
        }
        if (dice.one_in(2)) {
            const SDL_Rect clip = dice.rectangle(target.width, target.height);
            SDL_SetClipRect(ours.target(), &clip);
            SDL_SetClipRect(expected.target(), &clip);
        }
        const std::array<SDL_Surface*, 4> surfaces = {ours.source(), expected.source(),
                                                      ours.target(), expected.target()};
        const int first_locked = !is_layer() && dice.one_in(40) ? 2 * dice.below(2) : 4;
        for (int place = first_locked; place < first_locked + 2 && place < 4; ++place) {
            SDL_LockSurface(surfaces[place]);
        }
        for (int round = 0; round < kBlitsPerPair; ++round) {
            const SDL_Rect piece = dice.rectangle(source.width, source.height);
            const bool whole = dice.one_in(3);
            SDL_Rect sdl_piece = piece;
            SDL_Rect drawn = dice.rectangle(target.width, target.height);
            SDL_Rect sdl_drawn = drawn;
            const std::string what = (whole ? "all" : text(piece)) + " to " + text(drawn);
            const int kind = kind_of(ours);
            blits_by_sdl = 0;
            const bool done = blit(ours.source(), whole ? nullptr : &piece, ours.target(), &drawn);
            if (blits_by_sdl == 0) {
                kinds_drawn_by_us.insert(kind);
            }
            const int status = SDL_UpperBlit(expected.source(), whole ? nullptr : &sdl_piece,
                                             expected.target(), &sdl_drawn);
            ASSERT_EQ(done, status == 0) << what;
            ASSERT_EQ(text(drawn), text(sdl_drawn)) << what;
            ASSERT_EQ(ours.source()->flags, expected.source()->flags) << what;
            ASSERT_TRUE(ours.has_same_memory(expected)) << what;
        }
    }
    if (pairs >= 300) {
        EXPECT_EQ(kinds_drawn_by_us.size(), is_layer() ? 0U : 16U);
    }
}

}  // namespace
}  // namespace larkspur::pixel
