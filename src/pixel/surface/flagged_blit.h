// Blits with a blend mode.
//
// Surfaces are locked where they must be for the additive blit, and left unlocked for SDL's own.
// Nothing is reported and nothing drawn for a null surface or rectangle.
#pragma once

#include <SDL.h>

#include <cstddef>

namespace larkspur::pixel {

/// Draws the whole of `source` at (rect->x, rect->y) of `target`. Mode 0 is SDL's blit, which
/// updates `rect`; modes 1 and 128 add byte by byte, alpha included, and leave `rect` alone; any
/// other mode prints a line on standard output and is drawn as mode 0.
///
/// Placing of every mode but 0: a negative y counts as row 0, without clipping the source; a
/// negative x leaves out the source's first columns; a source that touches or crosses the target's
/// right edge is not drawn at all; rows below the target are left out. Adding needs 32-bit
/// surfaces: with others nothing is drawn.
void flagged_blit(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect, int mode) noexcept;

/// Adds `row_bytes` bytes of `rows` rows of `source`, from `source_offset` bytes after its first
/// pixel on, to those of `target` from `target_offset` on; sums stop at 255. Ends at the first row
/// that does not lie inside both surfaces' buffers.
void additive_blit(SDL_Surface* source, SDL_Surface* target, std::ptrdiff_t source_offset,
                   std::ptrdiff_t target_offset, int rows, int row_bytes) noexcept;

}  // namespace larkspur::pixel
