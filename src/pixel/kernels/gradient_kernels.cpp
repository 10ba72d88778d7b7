#include "pixel/kernels/gradient_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {
namespace {

std::uint32_t placed(std::uint32_t value, PixelLayout::Channel channel) noexcept {
    return value >> channel.loss << channel.shift;
}

}  // namespace

LARKSPUR_MULTIVERSION
void mix_colours(PixelWord* words, const std::int32_t* weights, std::size_t count,
                 std::uint32_t first, std::uint32_t second, PixelLayout layout) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t colour = blend(first, second, weights[i]);
        words[i] = placed(colour & 0xFF, layout.red) | placed(colour >> 8 & 0xFF, layout.green) |
                   placed(colour >> 16, layout.blue) | layout.opaque;
    }
}

LARKSPUR_MULTIVERSION
void add_scaled(std::uint32_t* sums, const std::uint32_t* words, std::size_t count,
                std::uint8_t weight) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        sums[i] += multalpha(words[i], weight);
    }
}

LARKSPUR_MULTIVERSION
void set_pixels(PixelWord* pixels, std::size_t count, std::uint32_t colour) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = colour;
    }
}

}  // namespace larkspur::pixel
