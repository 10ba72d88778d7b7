#include "pixel/kernels/over_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {

LARKSPUR_MULTIVERSION
void composite_over_rows(PixelWord* target, std::ptrdiff_t target_pitch_bytes,
                         const PixelWord* source, std::ptrdiff_t source_pitch_bytes,
                         std::size_t width, std::size_t height) noexcept {
    for (std::size_t y = 0; y < height; ++y) {
        PixelWord* __restrict to = target;
        const PixelWord* __restrict from = source;
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint32_t over = from[x];
            const std::uint32_t under = to[x];
            const std::uint32_t alpha = over >> 24;
            // An opaque pixel has the full weight, not one less. Sums stay below 65536, so two
            // bytes share a multiplication.
            const std::uint32_t share = alpha + (alpha == kOpaque ? 1 : 0);
            const std::uint32_t rest = kFullWeight - share;
            const std::uint32_t outer =
                ((over & kOuterChannels) * share + (under & kOuterChannels) * rest) >> 8 &
                kOuterChannels;
            const std::uint32_t middle =
                ((over & kMiddleChannel) * share + (under & kMiddleChannel) * rest) >> 8 &
                kMiddleChannel;
            to[x] = outer | middle | (under & kTopByte);
        }
        target = pixel_words(reinterpret_cast<unsigned char*>(target) + target_pitch_bytes);
        source = pixel_words(reinterpret_cast<const unsigned char*>(source) + source_pitch_bytes);
    }
}

}  // namespace larkspur::pixel
