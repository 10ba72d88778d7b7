#include "core/python.h"

#include "pixel/gradient.h"

#include <array>
#include <cstring>
#include <tuple>

#include "base/convert.h"
#include "pixel/kernels/colour.h"
#include "pixel/paint.h"

namespace larkspur::pixel {
namespace {

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
    weights.keep = static_cast<std::uint8_t>(kOpaque - low_byte_of(covered * 255.0F));
    return weights;
}

// The one layer's alpha byte and its complement.
Weights weigh_alpha(const Layer* layers, std::size_t /*count*/) noexcept {
    Weights weights = {};
    weights.layers[0] = static_cast<std::uint8_t>(layers[0].alpha);
    weights.keep = static_cast<std::uint8_t>(kOpaque - weights.layers[0]);
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
    return paint_on(SurfaceUse(parsed.surface, function.name), parsed.corners, SteppedAxis::kY,
                    function.name, [&](const SDL_Surface& surface) {
                        blend_vertical_gradients(surface, parsed.corners, gradients.data(),
                                                 gradient_count, constant, weights.keep);
                    });
}

}  // namespace

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
