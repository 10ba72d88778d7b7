#include "pixel/kernels/fade_kernels.h"

#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {

LARKSPUR_MULTIVERSION
void scale_top_alpha(PixelWord* words, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] = (((words[i] >> 8) * alpha) & alpha_mask) | (words[i] & colour_mask);
    }
}

LARKSPUR_MULTIVERSION
void scale_low_alpha(PixelWord* words, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) noexcept {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] =
            ((((words[i] & alpha_mask) * alpha) >> 8) & alpha_mask) | (words[i] & colour_mask);
    }
}

}  // namespace larkspur::pixel
