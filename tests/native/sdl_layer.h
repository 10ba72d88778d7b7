// What the native tests have to know of the SDL they run on.
#pragma once

#include <SDL.h>

namespace larkspur {

/// Whether SDL 1.2 is a layer over SDL 2. It numbers its patches from 50 on.
inline bool is_layer() {
    return SDL_Linked_Version()->patch >= 50;
}

}  // namespace larkspur
