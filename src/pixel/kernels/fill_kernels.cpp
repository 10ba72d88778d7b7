#include "pixel/kernels/fill_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {

LARKSPUR_MULTIVERSION
void fill_translucent_rows(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                           std::size_t height, std::uint8_t keep, std::uint32_t sum) noexcept {
    auto* row = reinterpret_cast<unsigned char*>(pixels);
    for (std::size_t y = 0; y < height; ++y) {
        PixelWord* words = pixel_words(row);
        for (std::size_t x = 0; x < width; ++x) {
            words[x] = sum + multalpha(words[x], keep);
        }
        row += pitch_bytes;
    }
}

}  // namespace larkspur::pixel
