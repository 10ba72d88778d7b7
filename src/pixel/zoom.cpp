#include "pixel/zoom.h"

#include <SDL_rotozoom.h>

#include <cstdio>

namespace larkspur::pixel {
namespace {

// Surfaces of these depths are read as they are; any other is first blitted to a 32-bit one, which
// asks for an unlocked source.
bool is_read_directly(const SDL_Surface& surface) {
    return surface.format->BitsPerPixel == 32 || surface.format->BitsPerPixel == 8;
}

template <typename Transform>
SurfacePtr transformed(SDL_Surface* surface, double x_factor, double y_factor,
                       Transform transform) {
    if (surface == nullptr) {
        return nullptr;
    }
    if (const char* obstacle = zoom_obstacle(*surface, x_factor, y_factor)) {
        std::fprintf(stderr, "larkspur: cannot scale %s.\n", obstacle);
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
    return transformed(surface, x_factor, y_factor, [&](SDL_Surface* source) {
        return zoomSurface(source, x_factor, y_factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed(SDL_Surface* surface, double angle_degrees, double factor, bool smooth) {
    return transformed(surface, factor, factor, [&](SDL_Surface* source) {
        return rotozoomSurface(source, angle_degrees, factor, smoothing(smooth));
    });
}

SurfacePtr rotozoomed_xy(SDL_Surface* surface, double angle_degrees, double x_factor,
                         double y_factor, bool smooth) {
    return transformed(surface, x_factor, y_factor, [&](SDL_Surface* source) {
        return rotozoomSurfaceXY(source, angle_degrees, x_factor, y_factor, smoothing(smooth));
    });
}

}  // namespace larkspur::pixel
