#include "pixel/surface/painters.h"

#include <algorithm>
#include <array>

#include "pixel/kernels/colour.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/fill_kernels.h"
#include "pixel/kernels/gradient_kernels.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/mapped_colour.h"

namespace larkspur::pixel {
namespace {

// Colours are worked out for so many rows or columns at once, whose numbers stay in the nearest
// cache.
constexpr int kBand = 128;

using Weights = std::array<std::int32_t, kBand>;
using Words = std::array<std::uint32_t, kBand>;

// Bytes from one row to the next as painters count them: whole pixels, so an odd rest of the pitch
// counts for nothing.
std::ptrdiff_t painted_pitch_bytes(const SDL_Surface& surface) noexcept {
    constexpr int kPixelBytes = sizeof(PixelWord);
    return surface.pitch / kPixelBytes * kPixelBytes;
}

// The pixel in column x of row y, which must be inside the surface.
PixelWord* painted_pixel(const SDL_Surface& surface, int x, int y) noexcept {
    return pixel_words(static_cast<unsigned char*>(surface.pixels) +
                       y * painted_pitch_bytes(surface)) +
           x;
}

// The fraction of a gradient: 1.0 at its start, less by 1 / length with every step. Stepped, not
// multiplied, because its rounding is part of the result. A length of 0 gives an infinite step, and
// no step is then taken.
class Fraction {
 public:
    explicit Fraction(std::int64_t length) noexcept : step_(1.0F / static_cast<float>(length)) {}

    void advance(int steps) noexcept {
        for (int i = 0; i < steps; ++i) {
            value_ -= step_;
        }
    }

    // The weight of the first colour at each of the next `count` places.
    void take(std::int32_t* weights, int count) noexcept {
        for (int i = 0; i < count; ++i) {
            weights[i] = gradient_weight(value_);
            value_ -= step_;
        }
    }

 private:
    float value_ = 1.0F;
    float step_;
};

// SDL counts the loss of a mask of more than eight bits below zero; the processor's shifts, and so
// SDL's own mapping, take it modulo 32.
PixelLayout::Channel channel_of(std::uint8_t loss, std::uint8_t shift) noexcept {
    return {loss & 31U, shift & 31U};
}

PixelLayout layout_of(const SDL_PixelFormat& format) noexcept {
    return {channel_of(format.Rloss, format.Rshift), channel_of(format.Gloss, format.Gshift),
            channel_of(format.Bloss, format.Bshift), format.Amask};
}

std::int64_t height_of(const Corners& corners) noexcept {
    return std::int64_t{corners.y2} - corners.y1;
}

// The rows of a vertical gradient, band by band: calls colour(words, weights, number of rows),
// which turns the weights of the top colour into one word per row, then paint(first pixel, pitch in
// bytes, number of pixels in a row, number of rows, words).
template <typename Colour, typename Paint>
void for_each_gradient_band(const SDL_Surface& surface, const Corners& corners, Colour colour,
                            Paint paint) noexcept {
    const int left = std::max(corners.x1, 0);
    const int right = std::min(corners.x2, surface.w - 1);
    const int top = std::max(corners.y1, 0);
    const int bottom = std::min(corners.y2, surface.h - 1);
    if (left >= right || top >= bottom) {
        return;
    }
    Fraction fraction(height_of(corners));
    fraction.advance(top - corners.y1);
    Weights weights;
    Words words;
    for (int y = top; y < bottom; y += kBand) {
        const int rows = std::min(bottom - y, kBand);
        fraction.take(weights.data(), rows);
        colour(words.data(), weights.data(), static_cast<std::size_t>(rows));
        paint(painted_pixel(surface, left, y), painted_pitch_bytes(surface),
              static_cast<std::size_t>(right - left), static_cast<std::size_t>(rows), words.data());
    }
}

// Sets each of `height` rows to its word.
void set_rows(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width, std::size_t height,
              const std::uint32_t* words) noexcept {
    auto* row = reinterpret_cast<unsigned char*>(pixels);
    for (std::size_t y = 0; y < height; ++y) {
        set_pixels(pixel_words(row), width, words[y]);
        row += pitch_bytes;
    }
}

// Sets `count` pixels of row y from column x on, as far as they are inside.
void draw_span(const SDL_Surface& surface, int x, int y, std::int64_t count,
               std::uint32_t pixel) noexcept {
    const int left = std::max(x, 0);
    const std::int64_t right = std::min<std::int64_t>(x + count, surface.w);
    if (y >= 0 && y < surface.h && left < right) {
        set_pixels(painted_pixel(surface, left, y), static_cast<std::size_t>(right - left), pixel);
    }
}

}  // namespace

void translucent_fill_rect(const SDL_Surface& surface, const Corners& corners, std::uint32_t colour,
                           std::uint8_t alpha) noexcept {
    const int left = std::max(corners.x1, 0);
    const int top = std::max(corners.y1, 0);
    const int right = std::min(corners.x2, surface.w - 1);
    const int bottom = std::min(corners.y2, surface.h - 1);
    if (left >= right || top > bottom) {
        return;
    }
    fill_translucent_rows(painted_pixel(surface, left, top), painted_pitch_bytes(surface),
                          static_cast<std::size_t>(right - left),
                          static_cast<std::size_t>(bottom - top) + 1,
                          static_cast<std::uint8_t>(kOpaque - alpha), multalpha(colour, alpha));
}

void blend_vertical_gradients(const SDL_Surface& surface, const Corners& corners,
                              const GradientLayer* layers, std::size_t count,
                              std::uint32_t constant, std::uint8_t keep) noexcept {
    const PixelLayout layout = layout_of(*surface.format);
    const auto sum_layers = [&](std::uint32_t* sums, const std::int32_t* weights,
                                std::size_t rows) {
        std::fill_n(sums, rows, constant);
        Words words;
        for (std::size_t i = 0; i < count; ++i) {
            mix_colours(words.data(), weights, rows, layers[i].top, layers[i].bottom, layout);
            add_scaled(sums, words.data(), rows, layers[i].weight);
        }
    };
    const auto blend_band = [=](PixelWord* pixels, std::ptrdiff_t pitch, std::size_t width,
                                std::size_t rows, const std::uint32_t* sums) {
        fill_each_translucent_row(pixels, pitch, width, rows, keep, sums);
    };
    for_each_gradient_band(surface, corners, sum_layers, blend_band);
}

void draw_vertical_gradient(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                            std::uint32_t bottom) noexcept {
    const PixelLayout layout = layout_of(*surface.format);
    const auto mix = [&](std::uint32_t* words, const std::int32_t* weights, std::size_t rows) {
        mix_colours(words, weights, rows, top, bottom, layout);
    };
    for_each_gradient_band(surface, corners, mix, set_rows);
}

void draw_horizontal_gradient(const SDL_Surface& surface, const Corners& corners,
                              std::uint32_t left, std::uint32_t right) noexcept {
    const int x2 = std::min(corners.x2, surface.w - 1);
    const int y2 = std::min(corners.y2, surface.h - 1);
    const int first_column = std::max(corners.x1, 0);
    const int first_row = std::max(corners.y1, 0);
    if (first_column >= x2 || first_row > y2) {
        return;
    }
    // The first row is mixed in its place, the others are its copies.
    PixelWord* row = painted_pixel(surface, first_column, first_row);
    const PixelLayout layout = layout_of(*surface.format);
    Fraction fraction(std::int64_t{x2} - corners.x1);
    fraction.advance(first_column - corners.x1);
    Weights weights;
    for (int x = first_column; x < x2; x += kBand) {
        const int columns = std::min(x2 - x, kBand);
        fraction.take(weights.data(), columns);
        mix_colours(row + (x - first_column), weights.data(), static_cast<std::size_t>(columns),
                    left, right, layout);
    }
    const std::ptrdiff_t pitch = painted_pitch_bytes(surface);
    auto* first_bytes = reinterpret_cast<unsigned char*>(row);
    copy_rows(first_bytes + pitch, pitch, first_bytes, 0,
              static_cast<std::size_t>(x2 - first_column) * sizeof(PixelWord),
              static_cast<std::size_t>(y2 - first_row));
}

void draw_gradient_outline(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                           std::uint32_t bottom) noexcept {
    const int x2 = std::min(corners.x2, surface.w - 1);
    const int y2 = std::min(corners.y2, surface.h - 1);
    const std::int64_t edge = std::int64_t{x2} - corners.x1;
    draw_span(surface, corners.x1, corners.y1, edge, map_colour(top, surface.format));
    draw_span(surface, corners.x1, y2, edge, map_colour(bottom, surface.format));
    Fraction fraction(height_of(corners));
    for (int above = corners.y1; above < y2; ++above) {
        std::int32_t weight = 0;
        fraction.take(&weight, 1);
        const std::uint32_t side = map_colour(blend(top, bottom, weight), surface.format);
        draw_span(surface, corners.x1, above + 1, 1, side);
        draw_span(surface, x2, above + 1, 1, side);
    }
}

}  // namespace larkspur::pixel
