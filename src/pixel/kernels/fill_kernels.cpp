#include "pixel/kernels/fill_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {
namespace {

LARKSPUR_MULTIVERSION
void fill_row(PixelWord* pixels, std::size_t count, std::uint8_t keep, std::uint32_t sum) {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = sum + multalpha(pixels[i], keep);
    }
}

LARKSPUR_MULTIVERSION
void fill_rows(unsigned char* row, std::ptrdiff_t pitch_bytes, std::size_t width,
               std::size_t height, std::uint8_t keep, std::uint32_t sum) {
    for (std::size_t y = 0; y < height; ++y) {
        PixelWord* pixels = pixel_words(row);
        for (std::size_t x = 0; x < width; ++x) {
            pixels[x] = sum + multalpha(pixels[x], keep);
        }
        row += pitch_bytes;
    }
}

}  // namespace

void fill_translucent_row(PixelWord* pixels, std::size_t count, std::uint8_t keep,
                          std::uint32_t sum) {
    fill_row(pixels, count, keep, sum);
}

void fill_translucent_rows(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                           std::size_t height, std::uint8_t keep, std::uint32_t sum) {
    fill_rows(reinterpret_cast<unsigned char*>(pixels), pitch_bytes, width, height, keep, sum);
}

}  // namespace larkspur::pixel
