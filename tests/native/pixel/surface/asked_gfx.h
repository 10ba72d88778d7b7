// Whether SDL_gfx is asked for a zoom or a turn, an SDL_gfx that draws otherwise, an SDL without
// memory, or one that takes pictures for higher or hides its locks, and an allocator without
// memory.
#pragma once

#include <SDL.h>

namespace larkspur::pixel {

/// Number of calls of zoomSurface(), rotozoomSurface() and rotozoomSurfaceXY() in this program; the
/// linker has them counted.
extern int pictures_by_gfx;

/// What another SDL_gfx makes of the pictures that it gives out; null for none. It may keep one and
/// return null.
extern SDL_Surface* (*gfx_change)(SDL_Surface* picture);

/// Whether rotozoomSurfaceXY() turns by the second factor.
extern bool gfx_turns_by_second_factor;

/// How many more surfaces SDL makes for this program; negative for any number. It always makes
/// those of SDL_gfx.
extern int surfaces_granted;
constexpr int kAnyNumber = -1;

/// While it is true, SDL takes the clip rectangle of a whole surface for two rows higher, as a
/// layer over SDL 2 does with pictures by SDL_gfx.
extern bool clip_rectangles_are_higher;

/// While it is true, locks leave no trace in the surface's record, as on a layer over SDL 2.
extern bool locks_are_hidden;

/// While it is true, there is no memory for arrays that may be refused.
extern bool refuses_arrays;

}  // namespace larkspur::pixel
