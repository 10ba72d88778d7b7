#include "canvas.h"
#include "pixel/kernels/fill_kernels.h"
#include "scalar.h"

namespace larkspur::bench {
namespace {

constexpr std::uint8_t kKeep = 127;
constexpr std::uint32_t kSum = 0x00203040;

}  // namespace

void add_fill_kernels() {
    add_kernel(
        "translucent fill",
        [](Canvas& canvas) {
            pixel::fill_translucent_rows(canvas.row(0), canvas.pitch(), canvas.width(),
                                         canvas.height(), kKeep, kSum);
        },
        [](Canvas& canvas) {
            for (std::size_t y = 0; y < canvas.height(); ++y) {
                scalar::fill_translucent(canvas.row(y), canvas.width(), kKeep, kSum);
            }
        },
        xor_in_place);
}

}  // namespace larkspur::bench
