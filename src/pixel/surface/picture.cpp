#include "pixel/surface/picture.h"

#include <cmath>

#include "pixel/surface/zoom.h"

namespace larkspur::pixel {
namespace {

constexpr double kLargestPixels = 1 << 26;
constexpr double kSdlLargestSide = 65535;

// What is beyond SDL's own limits is left to it: it comes out as nothing or as a single pixel, and
// takes no memory.
bool too_large(double width, double height) {
    return width <= kSdlLargestSide && height <= kSdlLargestSide && width * height > kLargestPixels;
}

}  // namespace

SurfacePtr scaled_picture(SDL_Surface* surface, std::int64_t width, std::int64_t height) {
    if (surface == nullptr) {
        return nullptr;
    }
    const auto x_size = static_cast<double>(width);
    const auto y_size = static_cast<double>(height);
    if (too_large(std::fabs(x_size), std::fabs(y_size))) {
        return nullptr;
    }
    return zoomed(surface, x_size / surface->w, y_size / surface->h, false);
}

SurfacePtr turned_picture(SDL_Surface* surface, int angle_degrees, double factor) {
    if (surface == nullptr) {
        return nullptr;
    }
    const double radians = angle_degrees * (M_PI / 180.0);
    const double sine = std::fabs(std::sin(radians) * factor);
    const double cosine = std::fabs(std::cos(radians) * factor);
    if (too_large(surface->w * cosine + surface->h * sine,
                  surface->w * sine + surface->h * cosine)) {
        return nullptr;
    }
    return rotozoomed(surface, angle_degrees, factor, false);
}

}  // namespace larkspur::pixel
