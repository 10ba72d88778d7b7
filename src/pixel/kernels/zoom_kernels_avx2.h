// The kernels of zooms and turns as this processor runs them best. Plain loops look up pixel by
// pixel; where a few neighbouring pixels of the source give a whole vector of a row, shuffles do
// that in half the time and less.
#pragma once

#include "pixel/kernels/zoom_kernels.h"

namespace larkspur::pixel {

/// Each does what the kernel of its name does.
struct ZoomKernels {
    decltype(&larkspur::pixel::pick_pixels) pick_pixels;
    decltype(&larkspur::pixel::mix_columns) mix_columns;
    decltype(&larkspur::pixel::pick_along_lines) pick_along_lines;
    decltype(&larkspur::pixel::transpose) transpose;
};

/// The plain loops where the processor knows no AVX2, and in builds for other processors.
ZoomKernels fastest_zoom_kernels() noexcept;

}  // namespace larkspur::pixel
