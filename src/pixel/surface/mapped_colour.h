// GM colours as the pixel values of a surface's format.
#pragma once

#include <SDL.h>

#include <cstdint>

namespace larkspur::pixel {

/// The pixel value of a GM colour (red in bits 0-7, green in 8-15, blue in 16-23; the top byte is
/// ignored) in `format`, opaque where the format has alpha.
std::uint32_t map_colour(std::uint32_t colour, const SDL_PixelFormat* format) noexcept;

/// The pixel value of blend(a, b, gradient_weight(t)), a and b being GM colours.
std::uint32_t map_interpolated(std::uint32_t a, std::uint32_t b, float t,
                               const SDL_PixelFormat* format) noexcept;

}  // namespace larkspur::pixel
