// Blitting of tiles. Knows nothing of Python.
#pragma once

#include <SDL.h>

namespace larkspur {

/// Blits the rectangle `from` of a surface to the position of `to`, as SDL_UpperBlit does in every
/// pixel: clipped to the source and to the target's clip rectangle, with the source's colour key
/// and alpha. Source and target may be the same. SDL writes opaque pixels past the processor's
/// cache, which makes a tile of a few rows several times slower than copying it, so tiles that are
/// a plain copy of rows are copied here; all others are left to SDL, and all of them where this SDL
/// turns out to blit in another way.
///
/// @param to only its position counts
/// @return false when SDL refuses the blit: a surface is locked, or its pixels are lost
bool blit_tile(SDL_Surface* source, SDL_Rect from, SDL_Surface* target, SDL_Rect to) noexcept;

}  // namespace larkspur
