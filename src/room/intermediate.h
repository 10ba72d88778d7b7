// The surfaces on which the backgrounds of scaled views are drawn, kept from frame to frame: fresh
// memory would be mapped in page by page for every frame.
#pragma once

#include <SDL.h>

#include "base/surface.h"

namespace larkspur {

/// A surface of 32 bits in the masks of a format, its pixels all 0, with the source-alpha flag: one
/// of an earlier call, cleared, when it has this size and these masks, nobody else holds it any
/// longer, and none of its holders left a lock, colour key, alpha, clip rectangle or other masks
/// behind; else a new one. Null when SDL refuses the size.
///
/// The result is a share of the surface, which SDL frees with the last one. This unit keeps another
/// until the view needs a new surface.
///
/// @param view 0 to 7
/// @param width, height pixels
SurfacePtr intermediate_surface(int view, int width, int height,
                                const SDL_PixelFormat& format) noexcept;

}  // namespace larkspur
