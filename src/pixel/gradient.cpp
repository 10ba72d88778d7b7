#include "core/python.h"

#include "pixel/gradient.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>

#include "core/convert.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/surface.h"
#include "pixel/colour.h"
#include "pixel/fill_kernels.h"
#include "pixel/gradient_kernels.h"
#include "pixel/surface_words.h"

namespace larkspur::pixel {
namespace {

constexpr int kLowestCorner = -32768;

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

constexpr std::size_t kMaxLayers = 5;

// One layer as it is parsed. A constant layer has no bottom colour, and a layer has either an
// opacity or an alpha.
struct Layer {
    std::uint32_t top;
    std::uint32_t bottom;
    float opacity;
    int alpha;
};

// What the opacities of a call come to: each layer's share and what is kept of the old pixel, in
// 256ths.
struct Weights {
    std::array<std::uint8_t, kMaxLayers> layers;
    std::uint8_t keep;
};

// A weight is the low byte of its number: a share of 1.0, 256, comes out as 0.
std::uint8_t low_byte_of(float number) noexcept {
    return static_cast<std::uint8_t>(truncate_to_int32(number));
}

// Each layer's share is its opacity times what the layers above it leave; in 256ths.
Weights weigh_over(const Layer* layers, std::size_t count) noexcept {
    Weights weights = {};
    float remaining = 1.0F;
    for (std::size_t i = count; i-- > 0;) {
        const float share = layers[i].opacity * remaining;
        remaining -= share;
        weights.layers[i] = low_byte_of(share * 256.0F);
    }
    weights.keep = low_byte_of(remaining * 256.0F);
    return weights;
}

// As weigh_over(), but in 255ths and by adding up what is covered, which rounds differently; the
// old pixel keeps the complement of the covered weight.
Weights weigh_covered(const Layer* layers, std::size_t count) noexcept {
    Weights weights = {};
    float covered = 0.0F;
    for (std::size_t i = count; i-- > 0;) {
        const float share = (1.0F - covered) * layers[i].opacity;
        covered += share;
        weights.layers[i] = low_byte_of(share * 255.0F);
    }
    weights.keep = static_cast<std::uint8_t>(255 - low_byte_of(covered * 255.0F));
    return weights;
}

// The one layer's alpha byte and its complement.
Weights weigh_alpha(const Layer* layers, std::size_t /*count*/) noexcept {
    Weights weights = {};
    weights.layers[0] = static_cast<std::uint8_t>(layers[0].alpha);
    weights.keep = static_cast<std::uint8_t>(255 - weights.layers[0]);
    return weights;
}

// A row per module function.
struct GradientFunction {
    const char* name;
    const char* format;  // of the arguments
    const char* layers;  // undermost first: v(ertical gradient) or c(onstant)
    Weights (*weigh)(const Layer* layers, std::size_t count) noexcept;
};

constexpr GradientFunction kGradientV = {"fast_draw_gradient_v()", "OiiiiIIi", "v", weigh_alpha};
constexpr GradientFunction kGradientsVc = {"fast_draw_gradients_vc()", "OiiiiIIfIf", "vc",
                                           weigh_over};
constexpr GradientFunction kGradientsVv = {"fast_draw_gradients_vv()", "OiiiiIIfIIf", "vv",
                                           weigh_over};
constexpr GradientFunction kGradientsVcv = {"fast_draw_gradients_vcv()", "OiiiiIIfIfIIf", "vcv",
                                            weigh_covered};
constexpr GradientFunction kGradientsVcvvc = {"fast_draw_gradients_vcvvc()", "OiiiiIIfIfIIfIIfIf",
                                              "vcvvc", weigh_over};

// The arguments of a call, in the order of the function's format.
struct Arguments {
    PyObject* surface = nullptr;
    Corners corners = {};
    std::array<Layer, kMaxLayers> layers = {};
};

bool parse(const GradientFunction& function, PyObject* args, Arguments& parsed) noexcept {
    // Surface, four coordinates, and at most three numbers per layer; the format tells the parser
    // how many of the places it is to fill, and with what.
    std::array<void*, 5 + 3 * kMaxLayers> places = {&parsed.surface, &parsed.corners.x1,
                                                    &parsed.corners.y1, &parsed.corners.x2,
                                                    &parsed.corners.y2};
    std::size_t next = 5;
    for (std::size_t i = 0; function.layers[i] != '\0'; ++i) {
        Layer& layer = parsed.layers[i];
        places[next++] = &layer.top;
        if (function.layers[i] == 'v') {
            places[next++] = &layer.bottom;
        }
        places[next++] = function.weigh == weigh_alpha ? static_cast<void*>(&layer.alpha)
                                                       : static_cast<void*>(&layer.opacity);
    }
    return std::apply(
        [&](auto*... place) { return PyArg_ParseTuple(args, function.format, place...) != 0; },
        places);
}

PyObject* draw(const GradientFunction& function, PyObject* args) noexcept {
    Arguments parsed;
    if (!parse(function, args, parsed)) {
        return nullptr;
    }
    const SurfaceUse surface(parsed.surface, function.name);
    if (!surface || !require_32_bit(*surface.get(), function.name) ||
        !require_corner_in_range(parsed.corners, function.name)) {
        return nullptr;
    }
    const SurfaceLock lock(surface.get());
    if (!require_pixels(lock, function.name)) {
        return nullptr;
    }

    const std::size_t count = std::strlen(function.layers);
    const Weights weights = function.weigh(parsed.layers.data(), count);
    std::array<GradientLayer, kMaxLayers> gradients;
    std::size_t gradient_count = 0;
    std::uint32_t constant = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Layer& layer = parsed.layers[i];
        if (function.layers[i] == 'v') {
            gradients[gradient_count++] = {layer.top, layer.bottom, weights.layers[i]};
        } else {
            constant += multalpha(layer.top, weights.layers[i]);
        }
    }
    blend_vertical_gradients(*surface.get(), parsed.corners, gradients.data(), gradient_count,
                             constant, weights.keep);
    return new_none();
}

}  // namespace

bool require_corner_in_range(const Corners& corners, const char* function) noexcept {
    if (corners.x1 >= kLowestCorner && corners.y1 >= kLowestCorner) {
        return true;
    }
    PyErr_Format(PyExc_ValueError, "%s got (%d, %d) for x1 and y1; both must be %d or more",
                 function, corners.x1, corners.y1, kLowestCorner);
    return false;
}

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

PyObject* fast_draw_gradient_v(PyObject* /*module*/, PyObject* args) noexcept {
    return draw(kGradientV, args);
}

PyObject* fast_draw_gradients_vc(PyObject* /*module*/, PyObject* args) noexcept {
    return draw(kGradientsVc, args);
}

PyObject* fast_draw_gradients_vv(PyObject* /*module*/, PyObject* args) noexcept {
    return draw(kGradientsVv, args);
}

PyObject* fast_draw_gradients_vcv(PyObject* /*module*/, PyObject* args) noexcept {
    return draw(kGradientsVcv, args);
}

PyObject* fast_draw_gradients_vcvvc(PyObject* /*module*/, PyObject* args) noexcept {
    return draw(kGradientsVcvvc, args);
}

}  // namespace larkspur::pixel
