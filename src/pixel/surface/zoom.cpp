#include "pixel/surface/zoom.h"

#include <SDL_rotozoom.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/console.h"
#include "base/recycled_surface.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/zoom_loops.h"

namespace larkspur::pixel {
namespace {

// Which function of SDL_gfx is asked.
enum class Way : std::uint8_t { kZoom, kSmoothZoom, kRotozoom, kRotozoomXY };
constexpr std::size_t kWays = 4;

struct Transform {
    Way way;
    bool smooth;
    double angle_degrees;
    double x_factor;
    double y_factor;
};

// Surfaces of these depths are read as they are; any other is first blitted to a 32-bit one, which
// asks for an unlocked source.
bool is_read_directly(const SDL_Surface& surface) noexcept {
    return surface.format->BitsPerPixel == 32 || surface.format->BitsPerPixel == 8;
}

constexpr int kLongestSource = 32767;
constexpr double kSideEnd = 65536;

// SDL refuses sides from 65536 pixels on, but SDL_gfx counts in ints: near their end a side
// overflows on its way to SDL and comes back as one that it accepts. From `int_end` on a side is no
// int at all, and SDL_gfx makes the smallest picture.
bool is_refused(double side, double int_end) noexcept {
    return side >= kSideEnd && side < int_end;
}

bool size_is_refused(const SDL_Surface& surface, const Transform& wanted) noexcept {
    // No side of a turned picture is longer than two of the unturned one together.
    if (std::fabs(surface.w * wanted.x_factor) + std::fabs(surface.h * wanted.y_factor) <
        kSideEnd) {
        return false;
    }
    const auto [width, height] =
        turned_extents(surface, wanted.angle_degrees, wanted.x_factor, wanted.y_factor);
    // Turned sides are counted in halves.
    const double int_end = wanted.angle_degrees == 0 ? kIntEnd : 2 * kIntEnd;
    return is_refused(width, int_end) || is_refused(height, int_end);
}

struct Size {
    int width;
    int height;
};

// The size that SDL_gfx gives the picture. That of a turned one is not what geometry says: it
// halves odd sides downwards, and stretches by the x factor alone.
Size size_of(const SDL_Surface& surface, const Transform& wanted) noexcept {
    Size size = {};
    const double x_factor = std::fabs(wanted.x_factor);
    const double y_factor = std::fabs(wanted.y_factor);
    if (wanted.angle_degrees == 0) {
        zoomSurfaceSize(surface.w, surface.h, x_factor, y_factor, &size.width, &size.height);
    } else {
        rotozoomSurfaceSizeXY(surface.w, surface.h, wanted.angle_degrees, x_factor, y_factor,
                              &size.width, &size.height);
    }
    return size;
}

// True when SDL has no memory for a picture.
bool memory_is_refused(const SDL_Surface& surface, const Size& size) noexcept {
    const double pixel_bytes = surface.format->BitsPerPixel == 8 ? 1 : 4;
    return pixel_bytes * size.width * size.height >= kRefusedBytes;
}

// SDL_gfx makes its results two rows too high and then shortens the record alone. SDL 1.2 goes by
// the record, and only the clip rectangle has to follow. A layer over SDL 2 goes by the height of a
// surface of its own behind the record, would draw the two rows too, and tells by the clip
// rectangle: there the picture is copied to a surface that never was higher.
SurfacePtr of_its_own_height(SurfacePtr result) noexcept {
    SDL_SetClipRect(result.get(), nullptr);
    if (result->clip_rect.h == result->h) {
        return result;
    }
    const SDL_PixelFormat& format = *result->format;
    SurfacePtr copy = new_surface(result->flags, result->w, result->h, format.BitsPerPixel, format);
    if (copy == nullptr) {
        return nullptr;
    }
    std::memcpy(copy->pixels, result->pixels,
                static_cast<std::size_t>(result->h) * result->pitch);  // of one width, so one pitch
    if (format.palette != nullptr) {
        std::copy_n(format.palette->colors, format.palette->ncolors, copy->format->palette->colors);
    }
    if ((result->flags & SDL_SRCCOLORKEY) != 0) {
        SDL_SetColorKey(copy.get(), SDL_SRCCOLORKEY, format.colorkey);
    }
    SDL_SetAlpha(copy.get(), result->flags & SDL_SRCALPHA, format.alpha);
    return copy;
}

bool is_rotation(const Transform& wanted) noexcept {
    return wanted.way == Way::kRotozoom || wanted.way == Way::kRotozoomXY;
}

// What SDL_gfx turns in place of a surface that it does not read directly: a copy of 32 bits, with
// the pixels of the colour key too. It is made here, as SDL_gfx does not ask whether SDL had the
// memory for its own. Null when it had none, and for an encoded picture that is locked.
SurfacePtr copy_to_turn(SDL_Surface* surface) noexcept {
    if (!may_change_key_or_alpha(*surface)) {
        return nullptr;
    }
    SurfacePtr copy(SDL_CreateRGBSurface(SDL_SWSURFACE, surface->w, surface->h, 32, kLowChannel,
                                         kMiddleChannel, kHighChannel, kTopByte));
    if (copy == nullptr) {
        return nullptr;
    }
    const bool keyed = (surface->flags & SDL_SRCCOLORKEY) != 0;
    const Uint32 key = surface->format->colorkey;
    if (keyed) {
        SDL_SetColorKey(surface, 0, 0);
    }
    SDL_UpperBlit(surface, nullptr, copy.get(), nullptr);
    if (keyed) {
        SDL_SetColorKey(surface, SDL_SRCCOLORKEY, key);
        Uint8 red = 0;
        Uint8 green = 0;
        Uint8 blue = 0;
        SDL_GetRGB(key, surface->format, &red, &green, &blue);
        SDL_SetColorKey(copy.get(), SDL_SRCCOLORKEY, SDL_MapRGB(copy->format, red, green, blue));
    }
    return copy;
}

SurfacePtr by_library(SDL_Surface* surface, const Transform& wanted) noexcept {
    const int smoothing = wanted.smooth ? SMOOTHING_ON : SMOOTHING_OFF;
    SDL_Surface* result = nullptr;
    switch (wanted.way) {
        case Way::kZoom:
        case Way::kSmoothZoom:
            result = zoomSurface(surface, wanted.x_factor, wanted.y_factor, smoothing);
            break;
        case Way::kRotozoom:
            result = rotozoomSurface(surface, wanted.angle_degrees, wanted.x_factor, smoothing);
            break;
        case Way::kRotozoomXY:
            result = rotozoomSurfaceXY(surface, wanted.angle_degrees, wanted.x_factor,
                                       wanted.y_factor, smoothing);
            break;
    }
    return result != nullptr ? of_its_own_height(SurfacePtr(result)) : nullptr;
}

// Up to this angle SDL_gfx does not turn, and below this factor it takes it instead.
constexpr double kLeastTurned = 0.001;
// SDL refuses sides from here on, and SDL_gfx asks it for two rows more than it shows.
constexpr int kWidthEnd = 16384;
constexpr int kHeightEnd = 65536 - 2;

bool is_above_least(double number) noexcept {
    return std::isfinite(number) && std::fabs(number) > kLeastTurned;
}

// Whether the loops are meant for it. SDL_gfx fills a rotation with the colour key of its source
// first, and counts rows in whole pixels.
bool takes(const SDL_Surface& source, const Transform& wanted, const Size& size) noexcept {
    if (source.format->BitsPerPixel != 32 || source.pitch % sizeof(PixelWord) != 0 ||
        size.width >= kWidthEnd || size.height >= kHeightEnd) {
        return false;
    }
    if (!is_rotation(wanted)) {
        return true;
    }
    if (wanted.smooth || (source.flags & SDL_SRCCOLORKEY) != 0) {
        return false;
    }
    return wanted.angle_degrees == 0 ||
           (is_above_least(wanted.angle_degrees) && is_above_least(wanted.x_factor));
}

// By our own loops; null when they can't.
SurfacePtr by_us(const SDL_Surface& source, const Transform& wanted, const Size& size) noexcept {
    const SDL_PixelFormat& format = *source.format;
    RecycledSurface recycled = recycled_surface(SDL_SWSURFACE, size.width, size.height, 32, format);
    SurfacePtr result = std::move(recycled.surface);
    if (result == nullptr) {
        return nullptr;
    }
    const bool turned = wanted.angle_degrees != 0;
    if (turned && !recycled.is_clear) {
        clear_first_rows(*result, size.height);
    }
    const Mirroring mirroring = {wanted.x_factor < 0, wanted.y_factor < 0};
    const bool filled = turned ? fill_by_turn(*result, source, mirroring, wanted.angle_degrees,
                                              std::fabs(wanted.x_factor))
                               : fill_by_zoom(*result, source, mirroring, wanted.smooth);
    if (!filled) {
        return nullptr;
    }
    SDL_SetAlpha(result.get(), SDL_SRCALPHA, SDL_ALPHA_OPAQUE);
    if (is_rotation(wanted)) {
        SDL_SetColorKey(result.get(), SDL_SRCCOLORKEY | SDL_RLEACCEL, format.colorkey);
    }
    return result;
}

// Trying the loops: another SDL_gfx may step, round or turn otherwise.

// A wide and a narrow source, both ways up and down; the factors are unequal, as versions of
// SDL_gfx differ in what they make of the second one in a turn.
constexpr Size kTrialSizes[] = {{37, 11}, {5, 24}};
constexpr struct {
    double x;
    double y;
} kTrialFactors[] = {{1, 1}, {2.3, 0.7}, {-0.5, 1.6}, {0.3, -2.5}, {-1.5, -0.004}};
constexpr double kTrialAngles[] = {0, 30, 90, -200};

// Pixels that take in everything, the same in every run.
SurfacePtr new_trial_surface(const Size& size, std::uint32_t alpha_mask) noexcept {
    SurfacePtr surface(SDL_CreateRGBSurface(SDL_SWSURFACE, size.width, size.height, 32, 0xFF0000,
                                            0xFF00, 0xFF, alpha_mask));
    if (surface == nullptr) {
        return nullptr;
    }
    auto* words = static_cast<std::uint32_t*>(surface->pixels);
    std::uint32_t word = 1;
    for (std::size_t i = 0; i < buffer_bytes(*surface) / sizeof word; ++i) {
        word = word * 1664525U + 1013904223U;
        words[i] = word ^ word >> 16;
    }
    return surface;
}

// Each has the clip rectangle of its size.
bool have_same_record(const SDL_Surface& a, const SDL_Surface& b) noexcept {
    const SDL_PixelFormat& f = *a.format;
    const SDL_PixelFormat& g = *b.format;
    return a.flags == b.flags && a.w == b.w && a.h == b.h && a.pitch == b.pitch &&
           f.BitsPerPixel == g.BitsPerPixel && f.Rmask == g.Rmask && f.Gmask == g.Gmask &&
           f.Bmask == g.Bmask && f.Amask == g.Amask && f.colorkey == g.colorkey &&
           f.alpha == g.alpha;
}

// Of pictures that were just made, which need no lock.
bool are_same(const SDL_Surface& a, const SDL_Surface& b) noexcept {
    return have_same_record(a, b) && std::memcmp(a.pixels, b.pixels, buffer_bytes(a)) == 0;
}

// REQUIRES: the loops are meant for it, as for all that is tried.
bool agrees_on(SDL_Surface& source, const Transform& wanted) noexcept {
    const Size size = size_of(source, wanted);
    const SurfacePtr by_gfx = by_library(&source, wanted);
    const SurfacePtr own = by_us(source, wanted, size);
    return by_gfx != nullptr && own != nullptr && are_same(*by_gfx, *own);
}

bool agrees_everywhere(Way way) noexcept {
    Transform wanted = {way, way == Way::kSmoothZoom, 0, 0, 0};
    for (const std::uint32_t alpha_mask : {0U, 0xFF000000U}) {
        for (const Size& size : kTrialSizes) {
            const SurfacePtr source = new_trial_surface(size, alpha_mask);
            if (source == nullptr) {
                return false;
            }
            for (const auto& factors : kTrialFactors) {
                wanted.x_factor = factors.x;
                wanted.y_factor = way == Way::kRotozoom ? factors.x : factors.y;
                for (const double angle_degrees : kTrialAngles) {
                    wanted.angle_degrees = is_rotation(wanted) ? angle_degrees : 0;
                    if (!agrees_on(*source, wanted)) {
                        return false;
                    }
                }
            }
        }
    }
    return true;
}

std::array<bool, kWays> try_ways() noexcept {
    std::array<bool, kWays> agrees;
    for (std::size_t way = 0; way < kWays; ++way) {
        agrees[way] = agrees_everywhere(static_cast<Way>(way));
    }
    return agrees;
}

bool agrees_with_library(Way way) noexcept {
    static const std::array<bool, kWays> agrees = try_ways();
    return agrees[static_cast<std::size_t>(way)];
}

// A turned picture of a surface that SDL_gfx does not read directly. SDL_gfx's own copy of it, from
// which it would turn it, has no colour key.
SurfacePtr turned_through_copy(SDL_Surface* surface, const Transform& wanted) noexcept {
    const SurfacePtr copy = copy_to_turn(surface);
    SurfacePtr result = copy != nullptr ? by_library(copy.get(), wanted) : nullptr;
    if (result != nullptr) {
        SDL_SetColorKey(result.get(), SDL_SRCCOLORKEY | SDL_RLEACCEL, 0);
    }
    return result;
}

// The picture, by a loop of ours or by SDL_gfx; the source is there and locked if need be.
SurfacePtr made(SDL_Surface* surface, const Transform& wanted, const Size& size) noexcept {
    if (takes(*surface, wanted, size) && agrees_with_library(wanted.way)) {
        if (SurfacePtr result = by_us(*surface, wanted, size)) {
            return result;
        }
    }
    return by_library(surface, wanted);
}

SurfacePtr transformed(SDL_Surface* surface, const Transform& wanted) noexcept {
    if (surface == nullptr) {
        return nullptr;
    }
    const auto obstacle_to = is_rotation(wanted) ? turn_obstacle : zoom_obstacle;
    if (const char* obstacle = obstacle_to(*surface, wanted.x_factor, wanted.y_factor)) {
        write_stderr("larkspur: cannot scale %s.\n", obstacle);
        return nullptr;
    }
    if (size_is_refused(*surface, wanted)) {
        SDL_SetError("Width or height is too large");  // as SDL itself says
        return nullptr;
    }
    const Size size = size_of(*surface, wanted);
    if (memory_is_refused(*surface, size)) {
        SDL_OutOfMemory();  // as SDL itself says
        return nullptr;
    }
    const bool direct = is_read_directly(*surface);
    if (!direct && is_rotation(wanted)) {
        return turned_through_copy(surface, wanted);
    }
    const SurfaceLock lock(direct ? surface : nullptr);
    if (direct && !lock) {
        return nullptr;
    }
    return made(surface, wanted, size);
}

}  // namespace

Extents turned_extents(const SDL_Surface& surface, double angle_degrees, double x_factor,
                       double y_factor) noexcept {
    const double width = std::fabs(surface.w * x_factor);
    const double height = std::fabs(surface.h * y_factor);
    if (angle_degrees == 0) {
        return {width, height};  // also where a side is infinite, which a product with 0 is not
    }
    const double radians = angle_degrees * (M_PI / 180.0);
    const double sine = std::fabs(std::sin(radians));
    const double cosine = std::fabs(std::cos(radians));
    return {width * cosine + height * sine, width * sine + height * cosine};
}

const char* zoom_obstacle(const SDL_Surface& surface, double x_factor, double y_factor) noexcept {
    if (surface.w == 0 || surface.h == 0) {
        return "a surface without width or height";
    }
    if (surface.format->BitsPerPixel == 8 && (x_factor < 0 || y_factor < 0)) {
        return "an 8-bit surface by a negative factor";
    }
    if (surface.w > kLongestSource || surface.h > kLongestSource) {
        return "a surface with a side of more than 32767 pixels";
    }
    return nullptr;
}

const char* turn_obstacle(const SDL_Surface& surface, double x_factor, double y_factor) noexcept {
    if (const char* obstacle = zoom_obstacle(surface, x_factor, y_factor)) {
        return obstacle;
    }
    if (!is_read_directly(surface) && surface.w >= kWidthEnd) {
        return "a surface of neither 8 nor 32 bits that has more than 16383 columns";
    }
    if (has_key_outside_palette(surface)) {
        return "a surface whose colour key is no place in its palette";
    }
    return nullptr;
}

SurfacePtr zoomed(SDL_Surface* surface, double x_factor, double y_factor, bool smooth) noexcept {
    const Way way = smooth ? Way::kSmoothZoom : Way::kZoom;
    return transformed(surface, {way, smooth, 0, x_factor, y_factor});
}

SurfacePtr rotozoomed(SDL_Surface* surface, double angle_degrees, double factor,
                      bool smooth) noexcept {
    return transformed(surface, {Way::kRotozoom, smooth, angle_degrees, factor, factor});
}

SurfacePtr rotozoomed_xy(SDL_Surface* surface, double angle_degrees, double x_factor,
                         double y_factor, bool smooth) noexcept {
    return transformed(surface, {Way::kRotozoomXY, smooth, angle_degrees, x_factor, y_factor});
}

}  // namespace larkspur::pixel
