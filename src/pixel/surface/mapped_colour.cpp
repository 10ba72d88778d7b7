#include "pixel/surface/mapped_colour.h"

#include "larkspur.h"
#include "pixel/kernels/colour.h"

namespace larkspur::pixel {

std::uint32_t map_colour(std::uint32_t colour, const SDL_PixelFormat* format) noexcept {
    return SDL_MapRGB(format, static_cast<std::uint8_t>(colour),
                      static_cast<std::uint8_t>(colour >> 8),
                      static_cast<std::uint8_t>(colour >> 16));
}

std::uint32_t map_interpolated(std::uint32_t a, std::uint32_t b, float t,
                               const SDL_PixelFormat* format) noexcept {
    return map_colour(blend(a, b, gradient_weight(t)), format);
}

}  // namespace larkspur::pixel

extern "C" {

std::uint32_t color_for_format(std::uint32_t colour, const SDL_PixelFormat* format) {
    return larkspur::pixel::map_colour(colour, format);
}

std::uint32_t interpolate_fmt(std::uint32_t a, std::uint32_t b, float t,
                              const SDL_PixelFormat* format) {
    return larkspur::pixel::map_interpolated(a, b, t, format);
}

}  // extern "C"
