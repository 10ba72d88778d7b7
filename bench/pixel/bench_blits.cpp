#include "canvas.h"
#include "pixel/kernels/add_kernels.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/key_kernels.h"
#include "pixel/kernels/over_kernels.h"
#include "scalar.h"

namespace larkspur::bench {
namespace {

constexpr std::uint8_t kAlpha = 100;
constexpr std::uint32_t kColours = 0x00FFFFFF;
constexpr std::uint32_t kTop = 0xFF000000;

// A colour of the canvas.
constexpr pixel::ColourKey kKey = {0x00533E29, kColours};

}  // namespace

void add_blit_kernels() {
    add_kernel(
        "copy to other alpha",
        [](Canvas& canvas) { pixel::copy_masked_rows(canvas.rows(), kColours, kTop); },
        [](Canvas& canvas) { scalar::copy_masked(canvas.rows(), kColours, kTop); }, copy_by_memcpy);
    add_kernel(
        "keyed blit",
        [](Canvas& canvas) { pixel::copy_keyed_rows(canvas.rows(), kKey, kColours, 0); },
        [](Canvas& canvas) { scalar::copy_keyed(canvas.rows(), kKey, kColours, 0); },
        xor_onto_target);
    add_kernel(
        "faded blit", [](Canvas& canvas) { pixel::composite_evenly_rows(canvas.rows(), kAlpha); },
        [](Canvas& canvas) { scalar::composite_evenly(canvas.rows(), kAlpha); }, xor_onto_target);
    add_kernel(
        "keyed and faded blit",
        [](Canvas& canvas) { pixel::composite_keyed_rows(canvas.rows(), kKey, kAlpha, 0); },
        [](Canvas& canvas) { scalar::composite_keyed(canvas.rows(), kKey, kAlpha); },
        xor_onto_target);
    add_kernel(
        "alpha blit", [](Canvas& canvas) { pixel::composite_over_rows(canvas.rows()); },
        [](Canvas& canvas) { scalar::composite_over(canvas.rows()); }, xor_onto_target);
    add_kernel(
        "additive blit", [](Canvas& canvas) { pixel::add_saturating_rows(canvas.rows()); },
        [](Canvas& canvas) { scalar::add(canvas.target(), canvas.source(), canvas.bytes()); },
        xor_onto_target);
}

}  // namespace larkspur::bench
