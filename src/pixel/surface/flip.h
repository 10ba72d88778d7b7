// Mirrored copies of surfaces.
#pragma once

#include <SDL.h>

#include "base/surface.h"

namespace larkspur::pixel {

/// A blank surface of the same flags, size and format; neither pixels, palette, colour key nor
/// surface alpha come along. Null, with SDL's error set, for a null surface and when SDL refuses.
SurfacePtr clone_surface(const SDL_Surface* surface) noexcept;

/// A copy upside down, of any depth, row padding included. Null, with SDL's error set, for a null
/// surface and when the copy cannot be made or the pixels cannot be reached; so for all flips.
SurfacePtr flip_v(SDL_Surface* surface) noexcept;

/// A copy mirrored from left to right. A surface that is not 32-bit gives null and a line on
/// standard error.
SurfacePtr flip_h(SDL_Surface* surface) noexcept;

/// A copy turned by half a circle, but one row too low: row i shows the source's row h - i, so the
/// source's row 0 never appears and row 0 of the copy is blank. Games depend on the shift. A
/// surface that is not 32-bit gives null and a line on standard error.
SurfacePtr flip_vh(SDL_Surface* surface) noexcept;

}  // namespace larkspur::pixel
