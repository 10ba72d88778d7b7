#include "pixel/surface/picture.h"

#include <cmath>

#include "pixel/surface/zoom.h"

namespace larkspur::pixel {
namespace {

constexpr double kLargestPixels = 1 << 26;
constexpr double kSdlLargestSide = 65535;

// What is beyond SDL's own limits is left to it: it comes out as nothing or as a single pixel, and
// takes no memory.
bool too_large(double width, double height) noexcept {
    return width <= kSdlLargestSide && height <= kSdlLargestSide && width * height > kLargestPixels;
}

// The factor of one axis. A size that is no int comes out as a single pixel; its quotient could
// come back as one that is.
double factor_to(double size, int side) noexcept {
    return std::fabs(size) < kIntEnd ? size / side : size;
}

}  // namespace

SurfacePtr scaled_picture(SDL_Surface* surface, std::int64_t width, std::int64_t height) noexcept {
    if (surface == nullptr) {
        return nullptr;
    }
    const auto x_size = static_cast<double>(width);
    const auto y_size = static_cast<double>(height);
    if (too_large(std::fabs(x_size), std::fabs(y_size))) {
        return nullptr;
    }
    return zoomed(surface, factor_to(x_size, surface->w), factor_to(y_size, surface->h), false);
}

SurfacePtr turned_picture(SDL_Surface* surface, int angle_degrees, double factor) noexcept {
    if (surface == nullptr) {
        return nullptr;
    }
    const Extents extents = turned_extents(*surface, angle_degrees, factor, factor);
    if (too_large(extents.width, extents.height)) {
        return nullptr;
    }
    return rotozoomed(surface, angle_degrees, factor, false);
}

}  // namespace larkspur::pixel
