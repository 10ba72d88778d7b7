// Surfaces whose memory serves again once nobody holds them. To make one takes memory from the
// system, often page by page, and SDL clears it: for pictures of the same size in every frame that
// can be most of what they cost.
#pragma once

#include <SDL.h>

#include "base/surface.h"

namespace larkspur {

struct RecycledSurface {
    /// A share of the surface, which SDL frees with the last one. Null when SDL refuses the size.
    SurfacePtr surface;
    /// True when its pixels are all 0; else they are those of an earlier picture.
    bool is_clear = false;
};

/// A surface in the masks of a format, its record as new_surface() makes it but for the
/// number of its holders: one of an earlier call for the same when nobody else holds it any
/// longer, and none of its holders left anything behind that can't be put back, such as a lock,
/// other masks or a picture that is run-length encoded; else a new one.
///
/// Of the latest surfaces up to eight, of 32 MiB together, are kept by a share of this unit's.
///
/// @param flags as new_surface() takes them
/// @param width, height pixels, not negative
/// @param depth bits a pixel
RecycledSurface recycled_surface(Uint32 flags, int width, int height, int depth,
                                 const SDL_PixelFormat& masks) noexcept;

}  // namespace larkspur
