// Our blit against SDL's own: every byte of the target, its row padding included, the rectangle and
// the result; above all pictures without alpha, which are copied.
#include "pixel/surface/blit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "../../sdl_layer.h"
#include "asked_gfx.h"
#include "base/surface.h"
#include "counted_blits.h"

namespace larkspur::pixel {
namespace {

constexpr Uint32 kSeed = 20111;

struct Format {
    int bits;
    Uint32 red, green, blue, alpha;
};

constexpr Format kOpaque32 = {32, 0xFF0000, 0xFF00, 0xFF, 0};
constexpr Format kAlpha32 = {32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000};
constexpr Format kSwapped32 = {32, 0xFF, 0xFF00, 0xFF0000, 0};
constexpr Format kHighRed32 = {32, 0xFF000000, 0xFF00, 0xFF, 0};
constexpr Format kOpaque24 = {24, 0xFF0000, 0xFF00, 0xFF, 0};
constexpr Format kOpaque16 = {16, 0xF800, 0x07E0, 0x001F, 0};
constexpr Format kPalette8 = {8, 0, 0, 0, 0};

// A surface around memory of the test's own, with padding behind each row and sentinels behind all.
class Picture {
 public:
    Picture(const Format& format, int width, int height, std::mt19937& random, int padding = 4)
        : format_(format), width_(width), height_(height) {
        pitch_ = ((width * format.bits / 8 + 3) & ~3) + padding;
        bytes_.resize(static_cast<std::size_t>(pitch_) * height + 64);
        for (Uint8& byte : bytes_) {
            byte = static_cast<Uint8>(random());
        }
        make_surface();
    }
    Picture(const Picture& other)
        : format_(other.format_),
          width_(other.width_),
          height_(other.height_),
          pitch_(other.pitch_),
          bytes_(other.bytes_) {
        make_surface();
        SDL_SetClipRect(surface(), &other.surface()->clip_rect);
    }
    Picture& operator=(const Picture&) = delete;

    // Null when this SDL knows no such format.
    SDL_Surface* surface() const { return surface_.get(); }
    const std::vector<Uint8>& bytes() const { return bytes_; }

    // The colours of an 8-bit picture, shades of grey at first. SDL_SetColors() needs a display.
    std::array<SDL_Color, 256>& palette() const {
        return *reinterpret_cast<std::array<SDL_Color, 256>*>(surface_->format->palette->colors);
    }

 private:
    void make_surface() {
        surface_.reset(SDL_CreateRGBSurfaceFrom(bytes_.data(), width_, height_, format_.bits,
                                                pitch_, format_.red, format_.green, format_.blue,
                                                format_.alpha));
        if (format_.bits == 8) {
            for (int shade = 0; shade < 256; ++shade) {
                const auto byte = static_cast<Uint8>(shade);
                palette()[shade] = {byte, byte, byte, 0};
            }
        }
        // An alpha mask alone asks for blending; a picture without it is what converting makes.
        if (surface_ != nullptr) {
            SDL_SetAlpha(surface_.get(), 0, SDL_ALPHA_OPAQUE);
        }
    }

    Format format_;
    int width_;
    int height_;
    int pitch_;
    std::vector<Uint8> bytes_;
    SurfacePtr surface_;
};

// Rectangles that mostly touch a picture, some far outside or at the ends of 16 bits.
class Rectangles {
 public:
    explicit Rectangles(std::mt19937& random) : random_(random) {}

    SDL_Rect next(int width, int height) {
        SDL_Rect rect;
        rect.x = position(width);
        rect.y = position(height);
        rect.w = length(width);
        rect.h = length(height);
        return rect;
    }

 private:
    Sint16 position(int range) {
        if (random_() % 16 == 0) {
            return static_cast<Sint16>(random_());
        }
        return static_cast<Sint16>(static_cast<int>(random_() % (range + range / 2 + 1)) -
                                   range / 2);
    }
    Uint16 length(int range) {
        if (random_() % 16 == 0) {
            return static_cast<Uint16>(random_());
        }
        return static_cast<Uint16>(random_() % (range + range / 2 + 2));
    }

    std::mt19937& random_;
};

std::string text(const SDL_Rect& rect) {
    return std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.w) +
           "x" + std::to_string(rect.h);
}

// Blits random pieces to random places of two equal targets, ours to one and SDL's to the other.
//
// Many of them must change something, unless the source shows nothing.
void compare_with_sdl(SDL_Surface* source, const Picture& target, int rounds, Uint32 seed,
                      bool shows_something = true) {
    int changed = 0;
    std::mt19937 random(seed);
    Rectangles rectangles(random);
    const Picture ours(target);
    const Picture expected(target);
    for (int round = 0; round < rounds; ++round) {
        if (round % 8 == 0) {
            const SDL_Rect clip = rectangles.next(target.surface()->w, target.surface()->h);
            const bool whole = round % 16 == 0;
            SDL_SetClipRect(ours.surface(), whole ? nullptr : &clip);
            SDL_SetClipRect(expected.surface(), whole ? nullptr : &clip);
        }
        SDL_Rect from = rectangles.next(source->w, source->h);
        SDL_Rect to = rectangles.next(target.surface()->w, target.surface()->h);
        const std::string what = "seed " + std::to_string(seed) + " round " +
                                 std::to_string(round) + ": " + text(from) + " to " + text(to) +
                                 ", clip " + text(ours.surface()->clip_rect);
        const std::vector<Uint8> before = ours.bytes();
        SDL_Rect drawn = to;
        const bool blitted = blit(source, &from, ours.surface(), &drawn);
        ASSERT_EQ(SDL_UpperBlit(source, &from, expected.surface(), &to) == 0, blitted) << what;
        ASSERT_EQ(text(to), text(drawn)) << what;
        ASSERT_EQ(expected.bytes(), ours.bytes()) << what;
        changed += ours.bytes() != before ? 1 : 0;
    }
    if (shows_something) {
        EXPECT_GE(changed, rounds / 8);
    }
}

// What SDL's blit depends on beside the format.
struct Kind {
    bool has_key;
    bool blends;
    Format source;
    Format target;
};

std::vector<Kind> all_kinds() {
    std::vector<Kind> kinds;
    for (const Format& source : {kOpaque32, kAlpha32}) {
        for (const Format& target : {kOpaque32, kAlpha32}) {
            for (const bool has_key : {false, true}) {
                for (const bool blends : {false, true}) {
                    kinds.push_back({has_key, blends, source, target});
                }
            }
        }
    }
    return kinds;
}

// The number of blits that SDL is asked for when such a picture is drawn, once loops are tried.
int blits_left_to_sdl(const Kind& kind) {
    std::mt19937 random(kSeed);
    const Picture source(kind.source, 16, 16, random);
    const Picture target(kind.target, 64, 48, random);
    SDL_SetAlpha(source.surface(), kind.blends ? SDL_SRCALPHA : 0, 100);
    SDL_SetColorKey(source.surface(), kind.has_key ? SDL_SRCCOLORKEY : 0, 0x123456);
    SDL_Rect to = {0, 0, 0, 0};
    blit(source.surface(), nullptr, target.surface(), &to);
    blits_by_sdl = 0;
    blit(source.surface(), nullptr, target.surface(), &to);
    return blits_by_sdl;
}

TEST(Blit, DrawsEveryKindItselfWhereThisSdlCanBeStoodInFor) {
    for (const Kind& kind : all_kinds()) {
        EXPECT_EQ(blits_left_to_sdl(kind), is_layer() ? 1 : 0)
            << kind.has_key << kind.blends << kind.source.alpha << kind.target.alpha;
    }
}

// In a process of its own, as loops are tried once.
TEST(BlitDeathTest, LeavesAllToAnSdlThatAnswersOtherwise) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    constexpr struct {
        AnswerOfSdl answer;
        int kinds_left;
    } kCases[] = {
        {AnswerOfSdl::kOtherPixel, 16},
        {AnswerOfSdl::kOtherRectangle, 16},
        {AnswerOfSdl::kRefusal, 16},
        // Those that blend all pixels by the alpha of the source; to a layer all are left.
        {AnswerOfSdl::kOtherPixelOfOtherAlpha, 4},
    };
    for (const auto& [answer, kinds_left] : kCases) {
        const auto kinds_left_to_sdl = [answer = answer] {
            answer_of_sdl = answer;
            int kinds = 0;
            for (const Kind& kind : all_kinds()) {
                kinds += blits_left_to_sdl(kind);
            }
            return kinds;
        };
        EXPECT_EXIT(std::_Exit(kinds_left_to_sdl()),
                    ::testing::ExitedWithCode(is_layer() ? 16 : kinds_left), "");
    }
}

// A loop that could not be tried is not used later either.
TEST(BlitDeathTest, LeavesToSdlWhatCouldNotBeTried) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto blits_left = [](int granted, bool hidden_locks) {
        std::mt19937 random(kSeed);
        const Picture source(kOpaque32, 16, 16, random);
        const Picture target(kOpaque32, 64, 48, random);
        SDL_Rect to = {0, 0, 0, 0};
        surfaces_granted = granted;
        locks_are_hidden = hidden_locks;
        blit(source.surface(), nullptr, target.surface(), &to);
        surfaces_granted = kAnyNumber;
        locks_are_hidden = false;
        blits_by_sdl = 0;
        blit(source.surface(), nullptr, target.surface(), &to);
        return blits_by_sdl;
    };
    for (const int granted : {0, 1, 2}) {
        EXPECT_EXIT(std::_Exit(blits_left(granted, false)), ::testing::ExitedWithCode(1), "");
    }
    EXPECT_EXIT(std::_Exit(blits_left(kAnyNumber, true)), ::testing::ExitedWithCode(1), "");
    EXPECT_EXIT(std::_Exit(blits_left(kAnyNumber, false)),
                ::testing::ExitedWithCode(is_layer() ? 1 : 0), "");
}

// What a driver draws by itself is its own, whatever the pixels are. It would crash without one.
TEST(Blit, LeavesSourcesThatTheHardwareBlitsToSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kOpaque32, 16, 16, random);
    const Picture target(kOpaque32, 64, 48, random);
    const std::vector<Uint8> before = target.bytes();
    source.surface()->flags |= SDL_HWACCEL;
    answer_of_sdl = AnswerOfSdl::kRefusal;
    blits_by_sdl = 0;
    SDL_Rect to = {0, 0, 0, 0};
    EXPECT_FALSE(blit(source.surface(), nullptr, target.surface(), &to));
    EXPECT_EQ(blits_by_sdl, 1);
    answer_of_sdl = AnswerOfSdl::kTrue;
    source.surface()->flags &= ~static_cast<Uint32>(SDL_HWACCEL);
    EXPECT_EQ(target.bytes(), before);
}

// Some SDLs go by red and alpha alone, and copy where green or blue differ.
TEST(Blit, LeavesToSdlWhereASingleChannelDiffers) {
    for (const Format& other :
         {Format{16, 0x7800, 0x07E0, 0x001F, 0}, Format{16, 0xF800, 0x03E0, 0x001F, 0},
          Format{16, 0xF800, 0x07E0, 0x000F, 0}, Format{16, 0xF800, 0x07E0, 0x001F, 0x0400}}) {
        std::mt19937 random(kSeed);
        const Picture source(other, 23, 9, random);
        const Picture target(kOpaque16, 30, 12, random);
        if (source.surface() == nullptr) {
            EXPECT_TRUE(is_layer());  // which knows few formats
            continue;
        }
        compare_with_sdl(source.surface(), target, 50, kSeed);
        blits_by_sdl = 0;
        SDL_Rect to = {0, 0, 0, 0};
        blit(source.surface(), nullptr, target.surface(), &to);
        EXPECT_EQ(blits_by_sdl, 1) << other.red << other.green << other.blue << other.alpha;
    }
}

// pygame's set_shifts() leaves the masks alone.
TEST(Blit, DrawsAsSdlWhereShiftsDoNotFitTheMasks) {
    for (const Kind& kind : all_kinds()) {
        for (Uint8 SDL_PixelFormat::*shift : {&SDL_PixelFormat::Rshift, &SDL_PixelFormat::Gshift,
                                              &SDL_PixelFormat::Bshift, &SDL_PixelFormat::Ashift}) {
            std::mt19937 random(kSeed);
            const Picture source(kind.source, 16, 16, random);
            const Picture target(kind.target, 64, 48, random);
            SDL_SetAlpha(source.surface(), kind.blends ? SDL_SRCALPHA : 0, 100);
            SDL_SetColorKey(source.surface(), kind.has_key ? SDL_SRCCOLORKEY : 0, 0x123456);
            source.surface()->format->*shift = 4;
            compare_with_sdl(source.surface(), target, 24, kSeed, false);
        }
    }
}

// A native caller's surface may have a pitch that is shorter than its rows. What is drawn first
// then lies under the rows below.
TEST(Blit, DrawsOnRowsThatOverlapAsSdl) {
    constexpr int kWidth = 200;
    constexpr int kHeight = 10;
    std::mt19937 random(kSeed);
    for (const Format& format : {kOpaque32, kAlpha32}) {
        for (const int pitch : {64, 256, 512, 768}) {
            const Picture source(format, kWidth, kHeight, random);
            SDL_SetAlpha(source.surface(), SDL_SRCALPHA, 100);
            std::vector<Uint32> ours(kHeight * kWidth);
            std::generate(ours.begin(), ours.end(), [&] { return static_cast<Uint32>(random()); });
            std::vector<Uint32> expected = ours;
            const auto around = [&](std::vector<Uint32>& words) {
                return SurfacePtr(SDL_CreateRGBSurfaceFrom(words.data() + 1, kWidth, kHeight, 32,
                                                           pitch, 0xFF0000, 0xFF00, 0xFF, 0));
            };
            const SurfacePtr target = around(ours);
            const SurfacePtr sdl_target = around(expected);
            if (target == nullptr) {
                EXPECT_TRUE(is_layer());  // SDL 2 makes no surface whose rows overlap
                continue;
            }
            SDL_Rect to = {0, 0, 0, 0};
            SDL_Rect sdl_to = {0, 0, 0, 0};
            ASSERT_TRUE(blit(source.surface(), nullptr, target.get(), &to));
            ASSERT_EQ(SDL_UpperBlit(source.surface(), nullptr, sdl_target.get(), &sdl_to), 0);
            EXPECT_EQ(ours, expected) << "alpha " << format.alpha << ", pitch " << pitch;
        }
    }
}

TEST(Blit, CopiesAsSdlInEveryDirectFormat) {
    for (const Format& format : {kOpaque32, kAlpha32, kOpaque24, kOpaque16}) {
        SCOPED_TRACE(format.bits);
        std::mt19937 random(kSeed);
        const Picture source(format, 37, 29, random);
        const Picture target(format, 50, 41, random, 12);
        compare_with_sdl(source.surface(), target, 2000, kSeed);
    }
}

// A position that leaves the 16 bits while the source is clipped comes back at the other end: here
// the source's row 1 goes to the target's row 0. SDL 2 counts in more bits, and nothing comes back.
TEST(Blit, WrapsPositionsAsSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kOpaque32, 37, 29, random);
    const Picture ours(kOpaque32, 50, 41, random);
    const Picture expected(ours);
    const std::vector<Uint8> before = ours.bytes();
    SDL_Rect from = {0, -32768, 37, 65535};
    SDL_Rect to = {3, 32767, 0, 0};
    SDL_Rect drawn = to;
    ASSERT_TRUE(blit(source.surface(), &from, ours.surface(), &drawn));
    ASSERT_EQ(0, SDL_UpperBlit(source.surface(), &from, expected.surface(), &to));
    EXPECT_EQ(text(to), text(drawn));
    EXPECT_EQ(expected.bytes(), ours.bytes());
    EXPECT_EQ(before == ours.bytes(), is_layer());
}

TEST(Blit, CopiesLongRowsAsSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kOpaque32, 700, 9, random);
    const Picture target(kOpaque32, 800, 12, random);
    compare_with_sdl(source.surface(), target, 500, kSeed);
}

TEST(Blit, ConvertsBetweenFormatsAsSdl) {
    std::mt19937 random(kSeed);
    for (const Format& format :
         {kAlpha32, kSwapped32, kHighRed32, kOpaque24, kOpaque16, kPalette8}) {
        SCOPED_TRACE(format.bits);
        const Picture source(format, 37, 29, random);
        if (source.surface() == nullptr) {
            ASSERT_EQ(kHighRed32.red, format.red);
            ASSERT_TRUE(is_layer());  // SDL 2 has no such format
            continue;
        }
        const Picture target(kOpaque32, 50, 41, random);
        compare_with_sdl(source.surface(), target, 500, kSeed);
    }
}

TEST(Blit, TranslatesBetweenPalettesAsSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kPalette8, 37, 29, random);
    const Picture target(kPalette8, 50, 41, random);
    for (SDL_Color& colour : source.palette()) {
        colour = {static_cast<Uint8>(random()), static_cast<Uint8>(random()),
                  static_cast<Uint8>(random()), 0};
    }
    compare_with_sdl(source.surface(), target, 500, kSeed);
}

TEST(Blit, LeavesPicturesThatSdlEncodesToSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kOpaque32, 16, 16, random);
    const Picture target(kOpaque32, 64, 48, random);
    SDL_SetColorKey(source.surface(), SDL_SRCCOLORKEY | SDL_RLEACCEL, 0x123456);
    for (int round = 0; round < 2; ++round) {  // not yet encoded; encoded
        SDL_Rect to = {0, 0, 0, 0};
        blits_by_sdl = 0;
        EXPECT_TRUE(blit(source.surface(), nullptr, target.surface(), &to));
        EXPECT_EQ(blits_by_sdl, 1);
    }
}

// SDL 1.2 would encode it first, which takes its pixels away, and then draw on them. SDL 2 encodes
// nothing that shows, and draws.
TEST(Blit, DrawsNothingWhereASurfaceGoesOntoItselfEncoded) {
    std::mt19937 random(kSeed);
    constexpr SDL_Rect kPiece = {0, 0, 5, 6};
    for (const bool keyed : {true, false}) {
        for (const Format& format : {kOpaque32, kAlpha32, kOpaque16}) {
            for (const bool encoded : {false, true}) {
                const Picture picture(format, 16, 12, random);
                SDL_Surface* surface = picture.surface();
                if (keyed) {
                    SDL_SetColorKey(surface, SDL_SRCCOLORKEY | SDL_RLEACCEL, 0x1234);
                } else {
                    SDL_SetAlpha(surface, SDL_SRCALPHA | SDL_RLEACCEL, 255);
                }
                const Picture target(format, 16, 12, random);
                if (encoded) {
                    SDL_UpperBlit(surface, nullptr, target.surface(), nullptr);
                }
                const std::vector<Uint8> before = picture.bytes();
                SDL_Rect to = {3, 4, 0, 0};
                blits_by_sdl = 0;
                EXPECT_TRUE(blit(surface, &kPiece, surface, &to));
                EXPECT_EQ(blits_by_sdl, is_layer() ? 1 : 0);
                EXPECT_EQ(to.w, is_layer() ? kPiece.w : 0);
                EXPECT_EQ(to.h, is_layer() ? kPiece.h : 0);
                EXPECT_EQ(picture.bytes() == before, !is_layer());
            }
        }
    }
}

TEST(Blit, LeavesOutTheColourKeyAsSdl) {
    for (const Uint32 flag : {SDL_SRCCOLORKEY, SDL_SRCCOLORKEY | SDL_RLEACCEL}) {
        SCOPED_TRACE(flag);
        std::mt19937 random(kSeed);
        const Picture source(kOpaque32, 37, 29, random);
        const Picture target(kOpaque32, 50, 41, random);
        const Uint32 key = 0x123456;
        SDL_Rect hole = {5, 5, 20, 9};
        SDL_FillRect(source.surface(), &hole, key);
        ASSERT_EQ(0, SDL_SetColorKey(source.surface(), flag, key));
        compare_with_sdl(source.surface(), target, 500, kSeed);
    }
}

TEST(Blit, BlendsAlphaAsSdl) {
    for (const Format& format : {kOpaque32, kAlpha32}) {
        for (const int alpha : {0, 100, SDL_ALPHA_OPAQUE}) {
            SCOPED_TRACE(alpha);
            std::mt19937 random(kSeed);
            const Picture source(format, 37, 29, random);
            const Picture target(format, 50, 41, random);
            ASSERT_EQ(0, SDL_SetAlpha(source.surface(), SDL_SRCALPHA, static_cast<Uint8>(alpha)));
            compare_with_sdl(source.surface(), target, 500, kSeed, alpha != 0);
        }
    }
}

TEST(Blit, CopiesWithinOneSurfaceAsSdl) {
    std::mt19937 random(kSeed);
    Rectangles rectangles(random);
    const Picture ours(kOpaque32, 50, 41, random);
    const Picture expected(ours);
    for (int round = 0; round < 1000; ++round) {
        SDL_Rect from = rectangles.next(50, 41);
        SDL_Rect to = rectangles.next(50, 41);
        SDL_Rect drawn = to;
        ASSERT_TRUE(blit(ours.surface(), &from, ours.surface(), &drawn));
        ASSERT_EQ(0, SDL_UpperBlit(expected.surface(), &from, expected.surface(), &to));
        ASSERT_EQ(expected.bytes(), ours.bytes()) << "seed " << kSeed << " round " << round;
    }
}

// Two surfaces around the same memory: the order in which SDL copies rows decides the result.
TEST(Blit, CopiesWithinOneMemoryAsSdl) {
    std::mt19937 random(kSeed);
    Rectangles rectangles(random);
    const Picture ours(kOpaque32, 50, 41, random);
    const Picture expected(ours);
    const auto piece_of = [](const Picture& picture) {
        SDL_Surface* whole = picture.surface();
        auto* start = static_cast<Uint8*>(whole->pixels) + 7 * whole->pitch + 12;
        return SurfacePtr(SDL_CreateRGBSurfaceFrom(start, 30, 30, 32, whole->pitch, kOpaque32.red,
                                                   kOpaque32.green, kOpaque32.blue, 0));
    };
    const SurfacePtr our_piece = piece_of(ours);
    const SurfacePtr expected_piece = piece_of(expected);
    for (int round = 0; round < 1000; ++round) {
        SDL_Rect from = rectangles.next(30, 30);
        SDL_Rect to = rectangles.next(50, 41);
        SDL_Rect drawn = to;
        ASSERT_TRUE(blit(our_piece.get(), &from, ours.surface(), &drawn));
        ASSERT_EQ(0, SDL_UpperBlit(expected_piece.get(), &from, expected.surface(), &to));
        ASSERT_EQ(expected.bytes(), ours.bytes()) << "seed " << kSeed << " round " << round;
    }
}

TEST(Blit, RefusesLockedSurfacesAsSdl) {
    std::mt19937 random(kSeed);
    const Picture source(kOpaque32, 8, 8, random);
    const Picture target(kOpaque32, 8, 8, random);
    const std::vector<Uint8> before = target.bytes();
    for (SDL_Surface* locked : {source.surface(), target.surface()}) {
        ASSERT_EQ(0, SDL_LockSurface(locked));
        SDL_Rect to = {0, 0, 0, 0};
        EXPECT_FALSE(blit(source.surface(), nullptr, target.surface(), &to));
        SDL_UnlockSurface(locked);
    }
    EXPECT_EQ(before, target.bytes());
}

TEST(Blit, RefusesMissingSurfacesInTheWordsOfSdl) {
    std::mt19937 random(kSeed);
    const Picture picture(kOpaque32, 8, 8, random);
    SDL_Rect to = {0, 0, 0, 0};
    for (SDL_Surface* source : {static_cast<SDL_Surface*>(nullptr), picture.surface()}) {
        SDL_ClearError();
        EXPECT_FALSE(blit(source, nullptr, source == nullptr ? picture.surface() : nullptr, &to));
        EXPECT_STREQ(SDL_GetError(), "SDL_UpperBlit: passed a NULL surface");
    }
}

TEST(Blit, DrawsNothingFromAnEmptySurface) {
    std::mt19937 random(kSeed);
    const SurfacePtr source(SDL_CreateRGBSurface(SDL_SWSURFACE, 0, 5, 32, kOpaque32.red,
                                                 kOpaque32.green, kOpaque32.blue, 0));
    ASSERT_NE(nullptr, source);
    const Picture target(kOpaque32, 8, 8, random);
    compare_with_sdl(source.get(), target, 20, kSeed, false);
}

}  // namespace
}  // namespace larkspur::pixel
