#include "pixel/kernels/key_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {

// That the pixels of a row do not depend on each other is said to the compiler, as it else looks
// before each row whether source and target overlap.

LARKSPUR_MULTIVERSION
void copy_keyed_rows(const PixelRows& rows, ColourKey key, std::uint32_t kept,
                     std::uint32_t added) noexcept {
    for (PixelRows left = rows; left.height > 0; left.drop_row()) {
        PixelWord* to = left.target;
        const PixelWord* from = left.source;
#pragma GCC ivdep
        for (std::size_t x = 0; x < left.width; ++x) {
            const std::uint32_t pixel = from[x];
            const std::uint32_t under = to[x];
            to[x] = (pixel & key.compared) == key.colour ? under : (pixel & kept) | added;
        }
    }
}

LARKSPUR_MULTIVERSION
void composite_keyed_rows(const PixelRows& rows, ColourKey key, std::uint8_t alpha,
                          std::uint32_t added) noexcept {
    const std::uint32_t share = alpha;
    for (PixelRows left = rows; left.height > 0; left.drop_row()) {
        PixelWord* to = left.target;
        const PixelWord* from = left.source;
#pragma GCC ivdep
        for (std::size_t x = 0; x < left.width; ++x) {
            const std::uint32_t over = from[x];
            const std::uint32_t under = to[x];
            // Each channel moves on by a share of the difference, rounded up. A negative one wraps,
            // and borrows: the higher channels from bits that are cut off, the lowest from bit 24.
            const std::uint32_t low = under & kLowChannel;
            const std::uint32_t middle = under & kMiddleChannel;
            const std::uint32_t high = under & kHighChannel;
            const std::uint32_t low_move = ((over & kLowChannel) - low) * share + kLowChannel;
            const std::uint32_t middle_move =
                ((over & kMiddleChannel) - middle) * share + kMiddleChannel;
            const std::uint32_t high_move = ((over & kHighChannel) - high) * share + kHighChannel;
            const std::uint32_t drawn = (low + (low_move >> 8)) |
                                        ((middle + (middle_move >> 8)) & kMiddleChannel) |
                                        ((high + (high_move >> 8)) & kHighChannel) | added;
            to[x] = (over & key.compared) == key.colour ? under : drawn;
        }
    }
}

}  // namespace larkspur::pixel
