#include "pixel/zoom.h"

#include <SDL_rotozoom.h>

#include <cmath>
#include <cstdio>

namespace larkspur::pixel {
namespace {

// Surfaces of these depths are read as they are; any other is first blitted to a 32-bit one, which
// asks for an unlocked source.
bool is_read_directly(const SDL_Surface& surface) {
    return surface.format->BitsPerPixel == 32 || surface.format->BitsPerPixel == 8;
}

// SDL refuses sides from 65536 pixels on, but SDL_gfx counts in ints: near their end a side
// overflows on its way to SDL and comes back as one that it accepts. From `int_end` on a side is no
// int at all, and SDL_gfx makes the smallest picture.
bool is_refused(double side, double int_end) {
    return side >= 65536 && side < int_end;
}

constexpr double kIntEnd = 2147483648.0;

bool size_is_refused(const SDL_Surface& surface, double angle_degrees, double x_factor,
                     double y_factor) {
    const double width = std::fabs(surface.w * x_factor);
    const double height = std::fabs(surface.h * y_factor);
    if (angle_degrees == 0) {
        return is_refused(width, kIntEnd) || is_refused(height, kIntEnd);
    }
    const double radians = angle_degrees * (M_PI / 180.0);
    const double sine = std::fabs(std::sin(radians));
    const double cosine = std::fabs(std::cos(radians));
    // Turned sides are counted in halves.
    return is_refused(width * cosine + height * sine, 2 * kIntEnd) ||
           is_refused(width * sine + height * cosine, 2 * kIntEnd);
}

template <typename Transform>
SurfacePtr transformed(SDL_Surface* surface, double angle_degrees, double x_factor, double y_factor,
                       Transform transform) {
    if (surface == nullptr) {
        return nullptr;
    }
    if (const char* obstacle = zoom_obstacle(*surface, x_factor, y_factor)) {
        std::fprintf(stderr, "larkspur: cannot scale %s.\n", obstacle);
        return nullptr;
    }
    if (size_is_refused(*surface, angle_degrees, x_factor, y_factor)) {
        SDL_SetError("Width or height is too large");  // as SDL itself says
        return nullptr;
    }
    const bool direct = is_read_directly(*surface);
    const SurfaceLock lock(direct ? surface : nullptr);
    if (direct && !lock) {
        return nullptr;
    }
    SurfacePtr result(transform(surface));
    if (result != nullptr) {
        SDL_SetClipRect(result.get(), nullptr);
    }
    return result;
}

int smoothing(bool smooth) {
    return smooth ? SMOOTHING_ON : SMOOTHING_OFF;
}

}  // namespace

const char* zoom_obstacle(const SDL_Surface& surface, double x_factor, double y_factor) {
    if (surface.w == 0 || surface.h == 0) {
        return "a surface without width or height";
    }
    if (surface.format->BitsPerPixel == 8 && (x_factor < 0 || y_factor < 0)) {
        return "an 8-bit surface by a negative factor";
    }
    return nullptr;
}

SurfacePtr zoomed(SDL_Surface* surface, double x_factor, double y_factor, bool smooth) {
    return transformed(surface, 0, x_factor, y_factor, [&](SDL_Surface* source) {
        return zoomSurface(source, x_factor, y_factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed(SDL_Surface* surface, double angle_degrees, double factor, bool smooth) {
    return transformed(surface, angle_degrees, factor, factor, [&](SDL_Surface* source) {
        return rotozoomSurface(source, angle_degrees, factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed_xy(SDL_Surface* surface, double angle_degrees, double x_factor,
                         double y_factor, bool smooth) {
    return transformed(surface, angle_degrees, x_factor, y_factor, [&](SDL_Surface* source) {
        return rotozoomSurfaceXY(source, angle_degrees, x_factor, y_factor, smoothing(smooth));
    });
}

}  // namespace larkspur::pixel
