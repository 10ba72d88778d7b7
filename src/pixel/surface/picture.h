// Pictures that are made to be kept: scaled and turned without smoothing, and never absurdly large.
#pragma once

#include <SDL.h>

#include <cstdint>

#include "base/surface.h"

namespace larkspur::pixel {

/// A copy of a surface at another size; negative sizes mirror. Null for a null surface, when
/// zoomed() (zoom.h) makes none, and when it would take more than 256 MiB, in which any display
/// fits many times; SDL alone stops at 4 GiB.
SurfacePtr scaled_picture(SDL_Surface* surface, std::int64_t width, std::int64_t height) noexcept;

/// A copy of a surface scaled by a factor and turned counter-clockwise, in a surface large enough
/// for it; null in the same cases.
SurfacePtr turned_picture(SDL_Surface* surface, int angle_degrees, double factor) noexcept;

}  // namespace larkspur::pixel
