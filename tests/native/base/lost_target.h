// A picture whose last target is gone.
#pragma once

#include <SDL.h>

#include <cstdint>

#include "../sdl_layer.h"

namespace larkspur {

/// Whoever looks at the target of a surface's last blit ends the process: SDL 1.2 remembers where
/// it was, first in what it knows of blits, and once it is gone its memory may be anybody's.
inline void forget_target(SDL_Surface* surface) {
    constexpr std::uintptr_t kUnreadable = 0x10;  // on a page that no process has
    if (!is_layer()) {
        *reinterpret_cast<std::uintptr_t*>(surface->map) = kUnreadable;
    }
}

}  // namespace larkspur
