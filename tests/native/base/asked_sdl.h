// What SDL answers when it is asked for a lock, a conversion or the display: the truth, or what
// other drivers and layers would. Surfaces that it makes are counted.
#pragma once

#include <SDL.h>

namespace larkspur {

enum class LockAnswer {
    kTrue,
    kCounted,    // the record shows it, over a layer as well
    kUncounted,  // the record does not show it
    kRefused,
};

extern LockAnswer lock_answer;
extern int locks_asked;

/// Whether a conversion leaves out the flags of the colour key and of alpha unless it is asked for
/// them, as a layer over SDL 2 does.
extern bool conversions_forget_flags;

/// How many surfaces were made before this one, which tells it from others at its address.
int number_of(const SDL_Surface& surface);

/// What SDL answers as the display; null for the truth.
extern SDL_Surface* other_display;

}  // namespace larkspur
