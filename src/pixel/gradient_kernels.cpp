#include "pixel/gradient_kernels.h"

#include <cstring>

#include "pixel/multiversion.h"

namespace larkspur::pixel {

namespace {

LARKSPUR_MULTIVERSION
void set_pixels(PixelWord* pixels, std::size_t count, std::uint32_t colour) {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = colour;
    }
}

}  // namespace

void fill_row(PixelWord* pixels, std::size_t count, std::uint32_t colour) {
    set_pixels(pixels, count, colour);
}

void repeat_row(PixelWord* first, std::ptrdiff_t pitch_bytes, std::size_t count, int rows) {
    // Always from the first row, never from the one above: the source stays in the nearest cache,
    // and at most a handful of rows lie the few bytes modulo 4096 behind it at which copying
    // stalls.
    auto* row = reinterpret_cast<unsigned char*>(first);
    for (int i = 0; i < rows; ++i) {
        row += pitch_bytes;
        std::memcpy(row, first, count * sizeof(*first));
    }
}

}  // namespace larkspur::pixel
