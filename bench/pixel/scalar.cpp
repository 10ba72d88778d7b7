#include "scalar.h"

#include "pixel/kernels/colour.h"
#include "pixel/surface/mapped_colour.h"

namespace larkspur::bench::scalar {

using pixel::PixelWord;

namespace {

PixelWord* pixel_at(const SDL_Surface& surface, int x, int y) {
    return pixel::pixel_words(static_cast<unsigned char*>(surface.pixels) +
                              std::ptrdiff_t{y} * surface.pitch) +
           x;
}

// Calls pixel(target pixel, source pixel) for all of them.
template <class Pixel>
void for_each_pixel(pixel::PixelRows rows, Pixel pixel) {
    for (; rows.height > 0; rows.drop_row()) {
        for (std::size_t x = 0; x < rows.width; ++x) {
            pixel(rows.target[x], rows.source[x]);
        }
    }
}

}  // namespace

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

void copy_masked(const pixel::PixelRows& rows, std::uint32_t kept, std::uint32_t added) {
    for_each_pixel(rows, [=](PixelWord& to, std::uint32_t from) { to = (from & kept) | added; });
}

void copy_keyed(const pixel::PixelRows& rows, pixel::ColourKey key, std::uint32_t kept,
                std::uint32_t added) {
    for_each_pixel(rows, [=](PixelWord& to, std::uint32_t from) {
        if ((from & key.compared) != key.colour) {
            to = (from & kept) | added;
        }
    });
}

void composite_over(const pixel::PixelRows& rows) {
    for_each_pixel(rows, [](PixelWord& to, std::uint32_t from) {
        const std::uint32_t alpha = from >> 24;
        to = pixel::blend(from, to, static_cast<int>(alpha == 255 ? 256 : alpha)) |
             (to & pixel::kTopByte);
    });
}

void composite_evenly(const pixel::PixelRows& rows, std::uint8_t alpha) {
    for_each_pixel(rows, [=](PixelWord& to, std::uint32_t from) {
        to = pixel::blend(from, to, alpha) | pixel::kTopByte;
    });
}

void composite_keyed(const pixel::PixelRows& rows, pixel::ColourKey key, std::uint8_t alpha) {
    for_each_pixel(rows, [=](PixelWord& to, std::uint32_t from) {
        if ((from & key.compared) != key.colour) {
            std::uint32_t drawn = 0;
            for (unsigned shift = 0; shift < 24; shift += 8) {
                const auto s = static_cast<int>(from >> shift & 0xFF);
                const auto d = static_cast<int>(to >> shift & 0xFF);
                drawn |= static_cast<std::uint32_t>((256 * d + (s - d) * alpha + 255) / 256)
                         << shift;
            }
            to = drawn;
        }
    });
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

void blend_vertical_gradients(const SDL_Surface& surface, const pixel::Corners& corners,
                              const pixel::GradientLayer* layers, std::size_t count,
                              std::uint32_t constant, std::uint8_t keep) {
    const float step = 1.0F / static_cast<float>(corners.y2 - corners.y1);
    float t = 1.0F;
    for (int y = corners.y1; y < corners.y2; ++y) {
        std::uint32_t sum = constant;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint32_t colour =
                pixel::map_interpolated(layers[i].top, layers[i].bottom, t, surface.format);
            sum += pixel::multalpha(colour, layers[i].weight);
        }
        fill_translucent(pixel_at(surface, corners.x1, y),
                         static_cast<std::size_t>(corners.x2 - corners.x1), keep, sum);
        t -= step;
    }
}

void draw_vertical_gradient(const SDL_Surface& surface, const pixel::Corners& corners,
                            std::uint32_t top, std::uint32_t bottom) {
    const float step = 1.0F / static_cast<float>(corners.y2 - corners.y1);
    float t = 1.0F;
    for (int y = corners.y1; y < corners.y2; ++y) {
        const std::uint32_t colour = pixel::map_interpolated(top, bottom, t, surface.format);
        PixelWord* row = pixel_at(surface, 0, y);
        for (int x = corners.x1; x < corners.x2; ++x) {
            row[x] = colour;
        }
        t -= step;
    }
}

// By columns, as the gradient runs.
void draw_horizontal_gradient(const SDL_Surface& surface, const pixel::Corners& corners,
                              std::uint32_t left, std::uint32_t right) {
    const float step = 1.0F / static_cast<float>(corners.x2 - corners.x1);
    float t = 1.0F;
    for (int x = corners.x1; x < corners.x2; ++x) {
        const std::uint32_t colour = pixel::map_interpolated(left, right, t, surface.format);
        auto* place = reinterpret_cast<unsigned char*>(pixel_at(surface, x, corners.y1));
        for (int y = corners.y1; y <= corners.y2; ++y) {
            *pixel::pixel_words(place) = colour;
            place += surface.pitch;
        }
        t -= step;
    }
}

}  // namespace larkspur::bench::scalar
