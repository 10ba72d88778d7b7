#include "pixel/gradient_painters.h"

#include <algorithm>

#include "pixel/colour.h"
#include "pixel/fill_kernels.h"
#include "pixel/gradient_kernels.h"
#include "pixel/surface_words.h"

namespace larkspur::pixel {
namespace {

// The fraction of a gradient: 1.0 at its start, less by 1 / length with every step. Stepped, not
// multiplied, because its rounding is part of the result. A length of 0 gives an infinite step, and
// no step is then taken.
class Fraction {
 public:
    explicit Fraction(std::int64_t length) noexcept : step_(1.0F / static_cast<float>(length)) {}

    float value() const noexcept { return value_; }
    void advance() noexcept { value_ -= step_; }

 private:
    float value_ = 1.0F;
    float step_;
};

std::int64_t height_of(const Corners& corners) noexcept {
    return std::int64_t{corners.y2} - corners.y1;
}

// Calls paint(first pixel, number of pixels, fraction) for each row of a vertical gradient.
template <typename PaintRow>
void for_each_gradient_row(const SDL_Surface& surface, const Corners& corners,
                           PaintRow paint) noexcept {
    const int left = std::max(corners.x1, 0);
    const int right = std::min(corners.x2, surface.w - 1);
    const int bottom = std::min(corners.y2, surface.h - 1);
    if (left >= right) {
        return;
    }
    Fraction fraction(height_of(corners));
    for (int y = corners.y1; y < bottom; ++y, fraction.advance()) {
        if (y >= 0) {
            paint(pixel_at(surface, left, y), static_cast<std::size_t>(right - left),
                  fraction.value());
        }
    }
}

// Sets `count` pixels of row y from column x on, as far as they are inside.
void draw_span(const SDL_Surface& surface, int x, int y, std::int64_t count,
               std::uint32_t pixel) noexcept {
    const int left = std::max(x, 0);
    const std::int64_t right = std::min<std::int64_t>(x + count, surface.w);
    if (y >= 0 && y < surface.h && left < right) {
        fill_row(pixel_at(surface, left, y), static_cast<std::size_t>(right - left), pixel);
    }
}

}  // namespace

void blend_vertical_gradients(const SDL_Surface& surface, const Corners& corners,
                              const GradientLayer* layers, std::size_t count,
                              std::uint32_t constant, std::uint8_t keep) noexcept {
    const auto blend_row = [&](PixelWord* row, std::size_t width, float fraction) {
        std::uint32_t sum = constant;
        for (std::size_t i = 0; i < count; ++i) {
            sum += multalpha(
                interpolate_fmt(layers[i].top, layers[i].bottom, fraction, surface.format),
                layers[i].weight);
        }
        fill_translucent_row(row, width, keep, sum);
    };
    for_each_gradient_row(surface, corners, blend_row);
}

void draw_vertical_gradient(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                            std::uint32_t bottom) noexcept {
    const auto set_row = [&](PixelWord* row, std::size_t width, float fraction) {
        fill_row(row, width, interpolate_fmt(top, bottom, fraction, surface.format));
    };
    for_each_gradient_row(surface, corners, set_row);
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
    // The first row is painted pixel by pixel, the others are its copies.
    PixelWord* row = pixel_at(surface, first_column, first_row);
    Fraction fraction(std::int64_t{x2} - corners.x1);
    for (int x = corners.x1; x < x2; ++x, fraction.advance()) {
        if (x >= 0) {
            row[x - first_column] = interpolate_fmt(left, right, fraction.value(), surface.format);
        }
    }
    repeat_row(row, row_bytes(surface), static_cast<std::size_t>(x2 - first_column),
               y2 - first_row);
}

void draw_gradient_outline(const SDL_Surface& surface, const Corners& corners, std::uint32_t top,
                           std::uint32_t bottom) noexcept {
    const int x2 = std::min(corners.x2, surface.w - 1);
    const int y2 = std::min(corners.y2, surface.h - 1);
    const std::int64_t edge = std::int64_t{x2} - corners.x1;
    draw_span(surface, corners.x1, corners.y1, edge, color_for_format(top, surface.format));
    draw_span(surface, corners.x1, y2, edge, color_for_format(bottom, surface.format));
    Fraction fraction(height_of(corners));
    for (int above = corners.y1; above < y2; ++above, fraction.advance()) {
        const std::uint32_t pixel = interpolate_fmt(top, bottom, fraction.value(), surface.format);
        draw_span(surface, corners.x1, above + 1, 1, pixel);
        draw_span(surface, x2, above + 1, 1, pixel);
    }
}

}  // namespace larkspur::pixel
