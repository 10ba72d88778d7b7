// Whether SDL is asked for a blit.
#pragma once

namespace larkspur::pixel {

/// Number of calls of SDL_UpperBlit() in this program; the linker has them counted.
extern int blits_by_sdl;

}  // namespace larkspur::pixel
