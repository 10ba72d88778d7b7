#include "pixel/kernels/colour.h"

#include "larkspur.h"

extern "C" {

std::uint32_t multalpha(std::uint32_t colour, std::uint8_t alpha) {
    return larkspur::pixel::multalpha(colour, alpha);
}

std::uint32_t blend(std::uint32_t a, std::uint32_t b, int weight) {
    return larkspur::pixel::blend(a, b, weight);
}

std::uint32_t interpolate_unformatted(std::uint32_t a, std::uint32_t b, float t) {
    return larkspur::pixel::interpolate_unformatted(a, b, t);
}

int blend_mode_flatten(int mode) {
    return larkspur::pixel::blend_mode_flatten(mode);
}

}  // extern "C"
