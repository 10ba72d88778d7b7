#include "canvas.h"
#include "pixel/kernels/fade_kernels.h"
#include "pixel/kernels/subtract_kernels.h"
#include "scalar.h"

namespace larkspur::bench {
namespace {

constexpr std::uint8_t kAlpha = 200;
constexpr std::uint32_t kTopAlpha = 0xFF000000;
constexpr std::uint32_t kLowAlpha = 0x000000FF;
constexpr std::uint32_t kLoss = 0x00402010;
constexpr std::uint32_t kEvenLoss = 0x20202020;

}  // namespace

void add_buffer_kernels() {
    add_kernel(
        "Translucentify, top byte",
        [](Canvas& canvas) {
            pixel::scale_top_alpha(canvas.row(0), canvas.pixels(), kAlpha, kTopAlpha, ~kTopAlpha);
        },
        [](Canvas& canvas) {
            scalar::scale_top_alpha(canvas.row(0), canvas.pixels(), kAlpha, kTopAlpha, ~kTopAlpha);
        },
        xor_in_place);
    add_kernel(
        "Translucentify, low byte",
        [](Canvas& canvas) {
            pixel::scale_low_alpha(canvas.row(0), canvas.pixels(), kAlpha, kLowAlpha, ~kLowAlpha);
        },
        [](Canvas& canvas) {
            scalar::scale_low_alpha(canvas.row(0), canvas.pixels(), kAlpha, kLowAlpha, ~kLowAlpha);
        },
        xor_in_place);
    add_kernel(
        "Tint_Surface",
        [](Canvas& canvas) {
            pixel::subtract_saturating(canvas.target(), canvas.bytes(),
                                       pixel::pattern_of(kLoss, kLoss));
        },
        [](Canvas& canvas) { scalar::subtract(canvas.target(), canvas.bytes(), kLoss); },
        xor_in_place);
    add_kernel(
        "satusub",
        [](Canvas& canvas) {
            pixel::subtract_saturating(canvas.target(), canvas.bytes(),
                                       pixel::pattern_of(kEvenLoss, kEvenLoss));
        },
        [](Canvas& canvas) { scalar::subtract(canvas.target(), canvas.bytes(), kEvenLoss); },
        xor_in_place);
}

}  // namespace larkspur::bench
