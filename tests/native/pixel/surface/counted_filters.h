// Whether SDL_gfx is asked for a filter, and an SDL_gfx that answers otherwise.
#pragma once

namespace larkspur::pixel {

/// Number of calls of SDL_imageFilterAdd() and SDL_imageFilterSubUint() in this program; the linker
/// has them counted.
extern int filters_by_gfx;

/// Whether it answers like a build of SDL_gfx that leaves another last byte behind.
extern bool gfx_answers_otherwise;

}  // namespace larkspur::pixel
