#include "scalar.h"

#include "pixel/colour.h"

namespace larkspur::bench::scalar {

using pixel::PixelWord;

void fill_translucent(PixelWord* pixels, std::size_t count, std::uint8_t keep, std::uint32_t sum) {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = sum + pixel::multalpha(pixels[i], keep);
    }
}

void scale_top_alpha(PixelWord* pixels, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = (((pixels[i] >> 8) * alpha) & alpha_mask) | (pixels[i] & colour_mask);
    }
}

void scale_low_alpha(PixelWord* pixels, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask) {
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] =
            ((((pixels[i] & alpha_mask) * alpha) >> 8) & alpha_mask) | (pixels[i] & colour_mask);
    }
}

void subtract(unsigned char* bytes, std::size_t count, std::uint32_t word) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto k = static_cast<unsigned char>(word >> (8 * (i % 4)));
        bytes[i] = static_cast<unsigned char>(bytes[i] > k ? bytes[i] - k : 0);
    }
}

void add(unsigned char* to, const unsigned char* from, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const int sum = to[i] + from[i];
        to[i] = static_cast<unsigned char>(sum < 255 ? sum : 255);
    }
}

void copy_rows(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t rows) {
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            pixel::pixel_words(to)[x] = pixel::pixel_words(from)[x];
        }
        to += to_pitch_bytes;
        from += from_pitch_bytes;
    }
}

void copy_rows_mirrored(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
                        std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t rows) {
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            pixel::pixel_words(to)[x] = pixel::pixel_words(from)[width - 1 - x];
        }
        to += to_pitch_bytes;
        from += from_pitch_bytes;
    }
}

}  // namespace larkspur::bench::scalar
