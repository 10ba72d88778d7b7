// Pictures by zoom.h against SDL_gfx's own, and when SDL_gfx is asked for them.
#include <SDL.h>
#include <SDL_rotozoom.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "../../sdl_layer.h"
#include "../memory_field.h"
#include "../odd_factors.h"
#include "asked_gfx.h"
#include "gtest/gtest.h"
#include "pixel/surface/zoom.h"
#include "same_pictures.h"

namespace larkspur::pixel {
namespace {

enum Function { kZoom, kSmoothZoom, kRotozoom, kRotozoomXY, kFunctions };

struct Call {
    Function function;
    double angle_degrees;
    double x;
    double y;
};

std::ostream& operator<<(std::ostream& out, const Call& call) {
    return out << "function " << call.function << ", angle " << call.angle_degrees << ", factors "
               << call.x << " and " << call.y;
}

SurfacePtr by_us(SDL_Surface* source, const Call& call) {
    switch (call.function) {
        case kZoom:
        case kSmoothZoom:
            return zoomed(source, call.x, call.y, call.function == kSmoothZoom);
        case kRotozoom:
            return rotozoomed(source, call.angle_degrees, call.x, false);
        default:
            return rotozoomed_xy(source, call.angle_degrees, call.x, call.y, false);
    }
}

// In memory that has just held another picture, where memory serves again.
SurfacePtr by_us_over_another(SDL_Surface* source, const Call& call) {
    if (const SurfacePtr another = by_us(source, call)) {
        std::memset(another->pixels, 0xA5, buffer_bytes(*another));
    }
    return by_us(source, call);
}

// As SDL_gfx draws it, with the clip rectangle of its own size.
SurfacePtr by_gfx(SDL_Surface* source, const Call& call) {
    SurfacePtr result;
    switch (call.function) {
        case kZoom:
        case kSmoothZoom:
            result.reset(zoomSurface(source, call.x, call.y, call.function == kSmoothZoom));
            break;
        case kRotozoom:
            result.reset(rotozoomSurface(source, call.angle_degrees, call.x, 0));
            break;
        default:
            result.reset(rotozoomSurfaceXY(source, call.angle_degrees, call.x, call.y, 0));
    }
    if (result != nullptr) {
        SDL_SetClipRect(result.get(), nullptr);
        result->clip_rect.h = static_cast<std::uint16_t>(result->h);  // a layer takes two rows more
    }
    return result;
}

// Makes random sources and calls, the same ones in every run.
class Chance {
 public:
    explicit Chance(unsigned seed) : random_(seed) {}

    int below(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }
    bool once_in(int times) { return below(times) == 0; }
    std::uint32_t word() { return static_cast<std::uint32_t>(random_()); }

    int side() {
        return once_in(150) ? 1000 + below(700) : once_in(3) ? 1 + below(200) : 1 + below(40);
    }
    double factor() {
        if (once_in(8)) {
            return kOddFactors[below(std::size(kOddFactors))];
        }
        const double factor = once_in(2) ? below(1000) / 1000.0 : below(4000) / 1000.0;
        return once_in(4) ? -factor : factor;
    }
    Call call() {
        Call call = {static_cast<Function>(below(kFunctions)), 0, factor(), 0};
        call.y = once_in(3) ? call.x : factor();
        if (!once_in(6)) {
            call.angle_degrees = once_in(4) ? 90 * (below(17) - 8) : below(1000) - 500;
        }
        if (once_in(20)) {
            call.angle_degrees += below(1000) / 1000.0;
        }
        return call;
    }

 private:
    std::mt19937 random_;
};

constexpr std::uint32_t kMasks[][4] = {{0xFF0000, 0xFF00, 0xFF, 0xFF000000},
                                       {0xFF0000, 0xFF00, 0xFF, 0},
                                       {0xFF, 0xFF00, 0xFF0000, 0xFF000000},
                                       {0xFF000000, 0xFF0000, 0xFF00, 0xFF},
                                       {0xFF000000, 0xFF0000, 0xFF00, 0}};

// A surface of random pixels, masks, colour key and alpha, in memory of its own or in a piece of
// somebody else's: at an odd address, with other pixels around, up to the very end of a page.
class RandomSource {
 public:
    explicit RandomSource(Chance& chance, GuardedPage& page) {
        int width = chance.side();
        int height = chance.side();
        int padding = 0;
        unsigned char* memory = nullptr;
        if (chance.once_in(3)) {
            width = 1 + width % 30;
            height = 1 + height % 30;
            padding = 4 * chance.below(4);
            const int bytes = (4 * width + padding) * (height - 1) + 4 * width;
            memory =
                chance.once_in(2) ? page.at_start() : page.at_end(static_cast<std::size_t>(bytes));
        } else {
            padding = chance.once_in(2) ? chance.below(9) : 4 * chance.below(9);
            memory_.resize(static_cast<std::size_t>(4 * width + padding) *
                               static_cast<std::size_t>(height) +
                           4);
            memory = memory_.data() + chance.below(4);
        }
        const int pitch = 4 * width + padding;
        for (int i = 0; i < pitch * (height - 1) + 4 * width; ++i) {
            memory[i] = static_cast<unsigned char>(chance.word());
        }
        const auto& masks = kMasks[chance.below(std::size(kMasks))];
        surface_.reset(SDL_CreateRGBSurfaceFrom(memory, width, height, 32, pitch, masks[0],
                                                masks[1], masks[2], masks[3]));
        if (chance.once_in(6)) {
            SDL_SetColorKey(surface_.get(), SDL_SRCCOLORKEY, chance.word());
        }
        if (chance.once_in(3)) {
            SDL_SetAlpha(surface_.get(), chance.once_in(2) ? SDL_SRCALPHA : 0,
                         static_cast<std::uint8_t>(chance.below(256)));
        }
    }

    SDL_Surface* get() const { return surface_.get(); }

 private:
    std::vector<unsigned char> memory_;
    SurfacePtr surface_;
};

int examples() {
    const char* wanted = std::getenv("LARKSPUR_FUZZ_EXAMPLES");
    return wanted != nullptr ? std::atoi(wanted) : 1500;
}

// Sizes that would take too long, or that zoom.h refuses for SDL_gfx's sake.
bool is_out_of_scope(const SDL_Surface& source, const Call& call) {
    const auto extents = turned_extents(source, call.angle_degrees, call.x,
                                        call.function == kRotozoom ? call.x : call.y);
    return extents.width * extents.height > 2e6 || extents.width > 16000 || extents.height > 16000;
}

TEST(ZoomAsGfx, IsTheLibrarysPictureForRandomSourcesAndCalls) {
    const unsigned seed = examples() > 2000 ? std::random_device()() : 41;
    Chance chance(seed);
    GuardedPage page;
    for (int i = 0; i < examples(); ++i) {
        const RandomSource source(chance, page);
        const Call call = chance.call();
        if (is_out_of_scope(*source.get(), call)) {
            continue;
        }
        const SurfacePtr own = by_us_over_another(source.get(), call);
        const SurfacePtr expected = by_gfx(source.get(), call);
        ASSERT_TRUE(same_pictures(own.get(), expected.get()))
            << call << ", source " << source.get()->w << " x " << source.get()->h << ", pitch "
            << source.get()->pitch << ", example " << i << ", seed " << seed;
    }
}

SurfacePtr picture(int depth = 32, int width = 23, int height = 14) {
    SurfacePtr surface(SDL_CreateRGBSurface(0, width, height, depth, 0, 0, 0, 0));
    SDL_FillRect(surface.get(), nullptr, 0x345678);
    return surface;
}

// Each function as it is usually called, and mirrored.
constexpr Call kCalls[] = {
    {kZoom, 0, 1.5, 0.4},         {kZoom, 0, -1.5, -0.4},       {kSmoothZoom, 0, 1.5, 0.4},
    {kSmoothZoom, 0, -1.5, -0.4}, {kRotozoom, 30, 1.5, 0},      {kRotozoom, 0, 1.5, 0},
    {kRotozoom, -90, -1.5, 0},    {kRotozoomXY, 30, 1.5, -0.4}, {kRotozoomXY, 0, -1.5, 0.4}};

bool is_rotation(const Call& call) {
    return call.function == kRotozoom || call.function == kRotozoomXY;
}

// Whether SDL_gfx is asked for a picture, once the loops were tried.
bool is_left_to_gfx(SDL_Surface* source, const Call& call) {
    by_us(picture().get(), call);
    pictures_by_gfx = 0;
    by_us(source, call);
    return pictures_by_gfx != 0;
}

TEST(ZoomAsGfx, DrawsPicturesOf32BitsItself) {
    for (const Call& call : kCalls) {
        EXPECT_FALSE(is_left_to_gfx(picture().get(), call)) << call;
    }
}

TEST(ZoomAsGfx, LeavesOtherDepthsToTheLibrary) {
    for (const Call& call : kCalls) {
        for (const int depth : {8, 15, 16, 24}) {
            const bool refused = depth == 8 && (call.x < 0 || call.y < 0);
            EXPECT_EQ(is_left_to_gfx(picture(depth).get(), call), !refused) << call;
        }
    }
}

// Of all kinds of sources, also what becomes of the source itself.
TEST(ZoomAsGfx, IsTheLibrarysPictureForOtherDepths) {
    constexpr struct {
        int depth;
        Uint32 red, green, blue, alpha;
    } kFormats[] = {{15, 0x7C00, 0x3E0, 0x1F, 0},
                    {16, 0xF800, 0x7E0, 0x1F, 0},
                    {16, 0xF00, 0xF0, 0xF, 0xF000},
                    {24, 0xFF0000, 0xFF00, 0xFF, 0}};
    constexpr Uint32 kKeyFlags[] = {0, SDL_SRCCOLORKEY, SDL_SRCCOLORKEY | SDL_RLEACCEL};
    constexpr Uint32 kAlphaFlags[] = {0, SDL_SRCALPHA};
    std::mt19937 random(2);
    for (const auto& format : kFormats) {
        for (const Uint32 key_flags : kKeyFlags) {
            for (const Uint32 alpha_flags : kAlphaFlags) {
                const auto new_source = [&](Uint32 seed) {
                    SurfacePtr source(SDL_CreateRGBSurface(SDL_SWSURFACE, 21, 13, format.depth,
                                                           format.red, format.green, format.blue,
                                                           format.alpha));
                    std::mt19937 bytes(seed);
                    std::generate_n(static_cast<Uint8*>(source->pixels), buffer_bytes(*source),
                                    bytes);
                    SDL_SetColorKey(source.get(), key_flags, 0x1234);
                    SDL_SetAlpha(source.get(), alpha_flags, 100);
                    return source;
                };
                for (const Call& call : kCalls) {
                    const auto seed = static_cast<Uint32>(random());
                    const SurfacePtr ours = new_source(seed);
                    const SurfacePtr theirs = new_source(seed);
                    EXPECT_TRUE(same_pictures(by_us(ours.get(), call).get(),
                                              by_gfx(theirs.get(), call).get()))
                        << call << ", depth " << format.depth << ", flags " << ours->flags;
                    EXPECT_EQ(ours->flags, theirs->flags) << call;
                    EXPECT_EQ(ours->format->colorkey, theirs->format->colorkey) << call;
                }
            }
        }
    }
}

// SDL_gfx would turn a copy that is not there.
TEST(ZoomAsGfx, IsNullWhereThereIsNoMemoryForACopyToTurn) {
    for (const int depth : {15, 16, 24}) {
        const SurfacePtr source = picture(depth);
        pictures_by_gfx = 0;
        surfaces_granted = 0;
        const SurfacePtr turned = rotozoomed(source.get(), 30, 1.5, false);
        const SurfacePtr turned_xy = rotozoomed_xy(source.get(), 0, 1.5, 0.4, true);
        surfaces_granted = kAnyNumber;
        EXPECT_EQ(turned, nullptr) << depth;
        EXPECT_EQ(turned_xy, nullptr) << depth;
        EXPECT_EQ(pictures_by_gfx, 0) << depth;
    }
}

// It fills the picture with the key first, and makes it opaque where it has alpha.
TEST(ZoomAsGfx, LeavesRotationsOfKeyedPicturesToTheLibrary) {
    const SurfacePtr keyed = picture();
    SDL_SetColorKey(keyed.get(), SDL_SRCCOLORKEY, 0x345678);
    for (const Call& call : kCalls) {
        EXPECT_EQ(is_left_to_gfx(keyed.get(), call), is_rotation(call)) << call;
    }
}

TEST(ZoomAsGfx, LeavesSmoothRotationsToTheLibrary) {
    const SurfacePtr source = picture();
    by_us(source.get(), kCalls[0]);
    pictures_by_gfx = 0;
    rotozoomed(source.get(), 30, 1.5, true);
    rotozoomed_xy(source.get(), 30, 1.5, 0.4, true);
    EXPECT_EQ(pictures_by_gfx, 2);
}

// SDL_gfx steps from row to row in whole pixels.
TEST(ZoomAsGfx, LeavesRowsThatAreNoWholeNumberOfPixelsApartToTheLibrary) {
    std::vector<unsigned char> bytes(100 * 14);
    for (const int rest : {0, 1, 2, 3}) {
        const SurfacePtr source(SDL_CreateRGBSurfaceFrom(bytes.data(), 23, 14, 32, 92 + rest,
                                                         0xFF0000, 0xFF00, 0xFF, 0));
        for (const Call& call : kCalls) {
            EXPECT_EQ(is_left_to_gfx(source.get(), call), rest != 0) << call << ", rest " << rest;
        }
    }
}

// A huge picture of random words that repeat: the same few pages serve for all of its memory.
class RepeatingPicture {
 public:
    RepeatingPicture(int width, int height)
        : bytes_((std::size_t{4} * width * height / kPeriod + 1) * kPeriod),
          memory_(::mmap(nullptr, bytes_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE,
                         -1, 0)) {
        const int pages = ::memfd_create("pixels", 0);
        EXPECT_EQ(::ftruncate(pages, kPeriod), 0);
        auto* bytes = static_cast<unsigned char*>(memory_);
        for (std::size_t offset = 0; offset < bytes_; offset += kPeriod) {
            EXPECT_NE(::mmap(bytes + offset, kPeriod, PROT_READ | PROT_WRITE,
                             MAP_SHARED | MAP_FIXED, pages, 0),
                      MAP_FAILED);
        }
        ::close(pages);
        std::mt19937 random(bytes_);
        std::generate_n(static_cast<std::uint32_t*>(memory_), kPeriod / 4, random);
        surface_.reset(SDL_CreateRGBSurfaceFrom(memory_, width, height, 32, 4 * width, 0xFF0000,
                                                0xFF00, 0xFF, 0));
    }
    RepeatingPicture(const RepeatingPicture&) = delete;
    RepeatingPicture& operator=(const RepeatingPicture&) = delete;
    ~RepeatingPicture() {
        surface_.reset();
        ::munmap(memory_, bytes_);
    }

    SDL_Surface* get() const { return surface_.get(); }

 private:
    static constexpr std::size_t kPeriod = std::size_t{4} << 20;

    std::size_t bytes_;
    void* memory_;
    SurfacePtr surface_;
};

// SDL_gfx counts in 32 bits, and the corners of a turned picture can be beyond.
TEST(ZoomAsGfx, LeavesTurnsWhosePlacesWrapToTheLibrary) {
    for (const int height : {20000, 32767}) {
        const RepeatingPicture source(16383, height);
        for (const double factor : {0.002, 0.0011}) {  // of the height alone, and of both sides
            const Call call = {kRotozoom, 45, factor, 0};
            EXPECT_EQ(is_left_to_gfx(source.get(), call), height == 32767);
            EXPECT_TRUE(
                same_pictures(by_us(source.get(), call).get(), by_gfx(source.get(), call).get()));
        }
    }
}

// A mirror image from left to right needs a copy.
TEST(ZoomAsGfx, LeavesMirrorImagesOfHugePicturesToTheLibrary) {
    const Call left_right = {kZoom, 0, -0.01, 0.01};
    const Call top_bottom = {kZoom, 0, 0.01, -0.01};
    for (const int side : {4096, 4097}) {
        const RepeatingPicture source(side, side);
        EXPECT_EQ(is_left_to_gfx(source.get(), left_right), side == 4097);
        EXPECT_FALSE(is_left_to_gfx(source.get(), top_bottom));
    }
}

TEST(ZoomAsGfx, LeavesOddAnglesAndFactorsOfTurnsToTheLibrary) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double angle : {0.0005, -0.0005, kNan, kInfinity}) {
        EXPECT_TRUE(is_left_to_gfx(picture().get(), {kRotozoom, angle, 1.5, 0})) << angle;
    }
    for (const double factor : {0.0, 0.0005, -0.0005, kNan}) {
        EXPECT_TRUE(is_left_to_gfx(picture().get(), {kRotozoomXY, 30, factor, 1.5})) << factor;
    }
}

// SDL takes 65535 rows, and SDL_gfx asks it for two more than it shows.
TEST(ZoomAsGfx, LeavesPicturesThatAreTooHighForTheLibraryToIt) {
    by_us(picture().get(), kCalls[0]);
    const SurfacePtr source = picture(32, 1, 1);
    for (const int height : {65533, 65534}) {
        const Call call = {kZoom, 0, 1, static_cast<double>(height)};
        EXPECT_EQ(is_left_to_gfx(source.get(), call), height == 65534);
        EXPECT_EQ(by_us(source.get(), call) == nullptr, by_gfx(source.get(), call) == nullptr);
    }
}

TEST(ZoomAsGfx, LeavesPicturesToTheLibraryThatThereIsNoMemoryFor) {
    by_us(picture().get(), kCalls[0]);
    const SurfacePtr source = picture(32, 219, 217);  // of a size that was not made before
    for (const Call& call : kCalls) {
        const SurfacePtr expected = by_gfx(source.get(), call);
        pictures_by_gfx = 0;
        surfaces_granted = 0;
        const SurfacePtr result = by_us(source.get(), call);
        surfaces_granted = kAnyNumber;
        EXPECT_EQ(pictures_by_gfx, 1) << call;
        if (is_layer()) {
            EXPECT_EQ(result, nullptr) << call;  // which is a copy of the library's
        } else {
            EXPECT_TRUE(same_pictures(result.get(), expected.get())) << call;
        }
    }
}

// Mirrored columns, mixed rows and lines of a turn take some.
TEST(ZoomAsGfx, LeavesPicturesToTheLibraryThatThereAreNoRowsFor) {
    by_us(picture().get(), kCalls[0]);
    const SurfacePtr source = picture();
    for (const Call& call :
         {Call{kZoom, 0, -1.5, 0.4}, Call{kSmoothZoom, 0, 1.5, 0.4}, Call{kRotozoom, 30, 1.5, 0}}) {
        const SurfacePtr expected = by_gfx(source.get(), call);
        pictures_by_gfx = 0;
        refuses_arrays = true;
        const SurfacePtr result = by_us(source.get(), call);
        refuses_arrays = false;
        EXPECT_EQ(pictures_by_gfx, 1) << call;
        EXPECT_TRUE(same_pictures(result.get(), expected.get())) << call;
    }
}

// Where SDL goes by a height of its own, a picture is copied to a surface that never was higher.
TEST(ZoomAsGfx, CopiesPicturesThatSdlTakesForHigher) {
    constexpr struct {
        int depth;
        bool keyed;
        Call call;
    } kCases[] = {{16, false, {kZoom, 0, 1.5, 0.4}},
                  {8, true, {kZoom, 0, 1.5, 0.4}},
                  {8, true, {kRotozoom, 30, 1.5, 0}},
                  {32, true, {kRotozoom, 30, 1.5, 0}}};
    for (const auto& [depth, keyed, call] : kCases) {
        const SurfacePtr source = picture(depth);
        SDL_SetColorKey(source.get(), keyed ? SDL_SRCCOLORKEY : 0, 3);
        if (depth == 8) {
            source->format->palette->colors[5] = {1, 2, 3, 0};
        }
        EXPECT_TRUE(is_left_to_gfx(source.get(), call)) << call;  // which makes it higher
        clip_rectangles_are_higher = true;
        const SurfacePtr copied = by_us(source.get(), call);
        surfaces_granted = 0;
        EXPECT_EQ(by_us(source.get(), call), nullptr) << call;
        surfaces_granted = kAnyNumber;
        clip_rectangles_are_higher = false;
        const SurfacePtr expected = by_gfx(source.get(), call);
        expected->flags &= ~static_cast<Uint32>(SDL_RLEACCELOK);
        EXPECT_TRUE(same_pictures(copied.get(), expected.get())) << call << ", depth " << depth;
        if (depth == 8) {
            EXPECT_EQ(std::memcmp(copied->format->palette->colors,
                                  expected->format->palette->colors, 256 * sizeof(SDL_Color)),
                      0);
        }
    }
}

// Runs in a process of its own, where the loops have not been tried yet: `prepare` makes this
// library another one before they are. So many calls are left to it then.
template <typename Prepare>
void expect_left_to_library(const Prepare& prepare, const std::vector<Call>& calls, int expected) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto calls_left = [&] {
        const SurfacePtr source = picture();
        prepare();
        return std::count_if(calls.begin(), calls.end(), [&](const Call& call) {
            return is_left_to_gfx(source.get(), call) &&
                   same_pictures(by_us(source.get(), call).get(), by_gfx(source.get(), call).get());
        });
    };
    EXPECT_EXIT(std::_Exit(static_cast<int>(calls_left())), ::testing::ExitedWithCode(expected),
                "");
}

template <typename Prepare>
void expect_left_to_library(const Prepare& prepare, const std::vector<Call>& calls) {
    expect_left_to_library(prepare, calls, static_cast<int>(calls.size()));
}

const std::vector<Call> kAllCalls = {std::begin(kCalls), std::end(kCalls)};

TEST(ZoomAsGfxDeathTest, LeavesAllToALibraryThatDrawsOtherwise) {
    const auto flip_last_bit = [](SDL_Surface* picture) {
        if (picture->format->BytesPerPixel == 4) {
            auto* bytes = static_cast<std::uint8_t*>(picture->pixels);
            bytes[4 * (picture->w - 1) + picture->pitch * (picture->h - 1)] ^= 1;
        }
        return picture;
    };
    expect_left_to_library([&] { gfx_change = flip_last_bit; }, kAllCalls);
}

// Each item of the record by itself, in a zoom and in a turn. Over a layer each picture of the
// library is copied to a surface of SDL's, and a change is seen there where the copy takes it over:
// all but turns have no colour key. Neither can a record be tried there that makes rows longer or
// shorter than those of the surface that SDL 2 has behind it.
TEST(ZoomAsGfxDeathTest, LeavesAllToALibraryWhosePicturesAreOthers) {
    using Picture = SDL_Surface*;
    constexpr int kUnsafe = -1;
    struct Case {
        Picture (*change)(Picture);
        int seen_over_layer;  // in so many of the two calls
    };
    constexpr Case kCases[] = {
        {[](Picture it) { return SDL_SetAlpha(it, 0, SDL_ALPHA_OPAQUE), it; }, 2},
        {[](Picture it) { return --it->h, it; }, 2},
        {[](Picture it) { return it->format->alpha ^= 1, it; }, 2},
        {[](Picture it) { return it->format->colorkey ^= 1, it; }, 1},
        {[](Picture it) { return it->format->BitsPerPixel = 31, it; }, 0},
        {[](Picture it) { return it->format->Rmask ^= 1, it; }, 0},
        {[](Picture it) { return it->format->Gmask ^= 1, it; }, 0},
        {[](Picture it) { return it->format->Bmask ^= 2, it; }, 0},
        {[](Picture it) { return it->format->Amask ^= 2, it; }, 0},
        {[](Picture it) { return --it->w, it; }, kUnsafe},
        {[](Picture it) { return it->pitch += 4, it; }, kUnsafe},
    };
    for (const Case& one : kCases) {
        const int expected = is_layer() ? one.seen_over_layer : 2;
        if (expected != kUnsafe) {
            SCOPED_TRACE(&one - kCases);
            expect_left_to_library([&] { gfx_change = one.change; }, {kCalls[0], kCalls[4]},
                                   expected);
        }
    }
}

TEST(ZoomAsGfxDeathTest, LeavesTurnsByTwoFactorsToALibraryThatTurnsByTheSecond) {
    expect_left_to_library([] { gfx_turns_by_second_factor = true; },
                           {{kRotozoomXY, 30, 1.5, -0.4}});
}

// No loop is used that could not be tried: without pictures by the library, of ours, or to draw.
TEST(ZoomAsGfxDeathTest, LeavesAllToTheLibraryWhereLoopsCouldNotBeTried) {
    const auto try_without_library = [] {
        gfx_change = [](SDL_Surface* picture) {
            SDL_FreeSurface(picture);
            return static_cast<SDL_Surface*>(nullptr);
        };
        by_us(picture().get(), kCalls[0]);
        gfx_change = nullptr;
    };
    expect_left_to_library(try_without_library, {kCalls[0]});
    for (const int granted : {0, 1}) {
        const auto try_without_memory = [&] {
            const SurfacePtr source = picture();
            surfaces_granted = granted;
            by_us(source.get(), kCalls[0]);
            surfaces_granted = kAnyNumber;
        };
        expect_left_to_library(try_without_memory, {kCalls[0]});
    }
}

}  // namespace
}  // namespace larkspur::pixel
