// SDL's blit of pictures with alpha, made faster.
#pragma once

#include <SDL.h>

namespace larkspur::pixel {

/// Does what SDL_UpperBlit(source, nullptr, target, rect) does, to the last bit and with `rect` as
/// SDL leaves it, for a plain picture with alpha on a plain surface of the same byte order. False,
/// with nothing done, for every other pair of surfaces: those are SDL's.
bool blit_with_alpha(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect);

}  // namespace larkspur::pixel
