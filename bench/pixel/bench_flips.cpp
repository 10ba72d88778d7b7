#include <cstring>

#include "canvas.h"
#include "pixel/kernels/copy_kernels.h"
#include "scalar.h"

namespace larkspur::bench {
namespace {

const unsigned char* last_row(const Canvas& canvas) {
    return canvas.source() + (canvas.height() - 1) * static_cast<std::size_t>(canvas.pitch());
}

}  // namespace

void add_flip_kernels() {
    add_kernel(
        "flip_h",
        [](Canvas& canvas) {
            pixel::copy_rows_mirrored(canvas.target(), canvas.pitch(), canvas.source(),
                                      canvas.pitch(), canvas.width(), canvas.height());
        },
        [](Canvas& canvas) {
            scalar::copy_rows_mirrored(canvas.target(), canvas.pitch(), canvas.source(),
                                       canvas.pitch(), canvas.width(), canvas.height());
        },
        copy_by_memcpy);
    add_kernel(
        "flip_vh",
        [](Canvas& canvas) {
            pixel::copy_rows_mirrored(canvas.target(), canvas.pitch(), last_row(canvas),
                                      -canvas.pitch(), canvas.width(), canvas.height());
        },
        [](Canvas& canvas) {
            scalar::copy_rows_mirrored(canvas.target(), canvas.pitch(), last_row(canvas),
                                       -canvas.pitch(), canvas.width(), canvas.height());
        },
        copy_by_memcpy);
    add_kernel(
        "flip_v",
        [](Canvas& canvas) {
            pixel::copy_rows(canvas.target(), canvas.pitch(), last_row(canvas), -canvas.pitch(),
                             static_cast<std::size_t>(canvas.pitch()), canvas.height());
        },
        [](Canvas& canvas) {
            scalar::copy_rows(canvas.target(), canvas.pitch(), last_row(canvas), -canvas.pitch(),
                              canvas.width(), canvas.height());
        },
        copy_by_memcpy);
    // Against memcpy row by row, where that may stall.
    add_kernel(
        "flip_v at stalling distance",
        [](Canvas& canvas) {
            pixel::copy_rows(canvas.target_at_stalling_distance(), canvas.pitch(), last_row(canvas),
                             -canvas.pitch(), static_cast<std::size_t>(canvas.pitch()),
                             canvas.height());
        },
        [](Canvas& canvas) {
            unsigned char* to = canvas.target_at_stalling_distance();
            const unsigned char* from = last_row(canvas);
            for (std::size_t y = 0; y < canvas.height(); ++y) {
                std::memcpy(to, from, static_cast<std::size_t>(canvas.pitch()));
                to += canvas.pitch();
                from -= canvas.pitch();
            }
        },
        copy_by_memcpy);
}

}  // namespace larkspur::bench
