// Saturating addition of pixels.
#pragma once

#include "pixel/kernels/pixel_rows.h"

namespace larkspur::pixel {

/// Each of the target's bytes t becomes min(255, t + s), s being the source's byte.
void add_saturating_rows(const PixelRows& rows) noexcept;

}  // namespace larkspur::pixel
