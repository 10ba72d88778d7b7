#pragma once

#include <cstddef>
#include <cstdint>

namespace larkspur::pixel {

/// A 32-bit pixel where a surface keeps it. Python code can lay a surface around any piece of
/// memory, an odd address included, so nothing may be built on its alignment; processors that read
/// words at any address lose nothing by that.
using PixelWord [[gnu::aligned(1)]] = std::uint32_t;

/// The pixel words at `row`, the address of a row's first byte or of a pixel within it.
inline PixelWord* pixel_words(unsigned char* row) noexcept {
    return reinterpret_cast<PixelWord*>(row);
}
inline const PixelWord* pixel_words(const unsigned char* row) noexcept {
    return reinterpret_cast<const PixelWord*>(row);
}

}  // namespace larkspur::pixel
