#include "pixel/surface/zoom.h"

#include <SDL_rotozoom.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

#include "base/console.h"

namespace larkspur::pixel {
namespace {

// Surfaces of these depths are read as they are; any other is first blitted to a 32-bit one, which
// asks for an unlocked source.
bool is_read_directly(const SDL_Surface& surface) noexcept {
    return surface.format->BitsPerPixel == 32 || surface.format->BitsPerPixel == 8;
}

constexpr double kSideEnd = 65536;
constexpr double kIntEnd = 2147483648.0;

// SDL refuses sides from 65536 pixels on, but SDL_gfx counts in ints: near their end a side
// overflows on its way to SDL and comes back as one that it accepts. From `int_end` on a side is no
// int at all, and SDL_gfx makes the smallest picture.
bool is_refused(double side, double int_end) noexcept {
    return side >= kSideEnd && side < int_end;
}

bool size_is_refused(const SDL_Surface& surface, double angle_degrees, double x_factor,
                     double y_factor) noexcept {
    const auto [width, height] = turned_extents(surface, angle_degrees, x_factor, y_factor);
    // Turned sides are counted in halves.
    const double int_end = angle_degrees == 0 ? kIntEnd : 2 * kIntEnd;
    return is_refused(width, int_end) || is_refused(height, int_end);
}

// True when SDL has no memory for the picture. What SDL_gfx makes of a turned one is not what
// geometry says: it halves odd sides downwards, and stretches by the x factor alone.
bool memory_is_refused(const SDL_Surface& surface, double angle_degrees, double x_factor,
                       double y_factor) noexcept {
    int width = 0;
    int height = 0;
    x_factor = std::fabs(x_factor);
    y_factor = std::fabs(y_factor);
    if (angle_degrees == 0) {
        zoomSurfaceSize(surface.w, surface.h, x_factor, y_factor, &width, &height);
    } else {
        rotozoomSurfaceSizeXY(surface.w, surface.h, angle_degrees, x_factor, y_factor, &width,
                              &height);
    }
    const double pixel_bytes = surface.format->BitsPerPixel == 8 ? 1 : 4;
    return pixel_bytes * width * height >= kRefusedBytes;
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
    SurfacePtr copy(SDL_CreateRGBSurface(result->flags, result->w, result->h, format.BitsPerPixel,
                                         format.Rmask, format.Gmask, format.Bmask, format.Amask));
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

template <typename Transform>
SurfacePtr transformed(SDL_Surface* surface, double angle_degrees, double x_factor, double y_factor,
                       Transform transform) noexcept {
    if (surface == nullptr) {
        return nullptr;
    }
    if (const char* obstacle = zoom_obstacle(*surface, x_factor, y_factor)) {
        write_stderr("larkspur: cannot scale %s.\n", obstacle);
        return nullptr;
    }
    if (size_is_refused(*surface, angle_degrees, x_factor, y_factor)) {
        SDL_SetError("Width or height is too large");  // as SDL itself says
        return nullptr;
    }
    if (memory_is_refused(*surface, angle_degrees, x_factor, y_factor)) {
        SDL_OutOfMemory();  // as SDL itself says
        return nullptr;
    }
    const bool direct = is_read_directly(*surface);
    const SurfaceLock lock(direct ? surface : nullptr);
    if (direct && !lock) {
        return nullptr;
    }
    SurfacePtr result(transform(surface));
    return result != nullptr ? of_its_own_height(std::move(result)) : nullptr;
}

int smoothing(bool smooth) noexcept {
    return smooth ? SMOOTHING_ON : SMOOTHING_OFF;
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
    return nullptr;
}

SurfacePtr zoomed(SDL_Surface* surface, double x_factor, double y_factor, bool smooth) noexcept {
    return transformed(surface, 0, x_factor, y_factor, [&](SDL_Surface* source) {
        return zoomSurface(source, x_factor, y_factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed(SDL_Surface* surface, double angle_degrees, double factor,
                      bool smooth) noexcept {
    return transformed(surface, angle_degrees, factor, factor, [&](SDL_Surface* source) {
        return rotozoomSurface(source, angle_degrees, factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed_xy(SDL_Surface* surface, double angle_degrees, double x_factor,
                         double y_factor, bool smooth) noexcept {
    return transformed(surface, angle_degrees, x_factor, y_factor, [&](SDL_Surface* source) {
        return rotozoomSurfaceXY(source, angle_degrees, x_factor, y_factor, smoothing(smooth));
    });
}

}  // namespace larkspur::pixel
