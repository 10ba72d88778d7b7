#include "asked_sdl.h"

namespace larkspur {

LockAnswer lock_answer = LockAnswer::kTrue;
int locks_asked = 0;
bool conversions_forget_flags = false;
SDL_Surface* other_display = nullptr;

}  // namespace larkspur

// The linker puts those with "wrap" in place of SDL's functions, which those with "real" then are.
extern "C" {

int __real_SDL_LockSurface(SDL_Surface* surface);
// A lock of a software surface is a count in its record and no more.
int __wrap_SDL_LockSurface(SDL_Surface* surface) {
    using larkspur::LockAnswer;
    ++larkspur::locks_asked;
    switch (larkspur::lock_answer) {
        case LockAnswer::kUncounted:
            return 0;
        case LockAnswer::kRefused:
            return -1;
        case LockAnswer::kTrue:
            break;
    }
    return __real_SDL_LockSurface(surface);
}

SDL_Surface* __real_SDL_ConvertSurface(SDL_Surface* surface, SDL_PixelFormat* format, Uint32 flags);
SDL_Surface* __wrap_SDL_ConvertSurface(SDL_Surface* surface, SDL_PixelFormat* format,
                                       Uint32 flags) {
    SDL_Surface* result = __real_SDL_ConvertSurface(surface, format, flags);
    if (result != nullptr && larkspur::conversions_forget_flags) {
        result->flags &= flags | ~static_cast<Uint32>(SDL_SRCCOLORKEY | SDL_SRCALPHA);
    }
    return result;
}

SDL_Surface* __real_SDL_GetVideoSurface();
SDL_Surface* __wrap_SDL_GetVideoSurface() {
    return larkspur::other_display != nullptr ? larkspur::other_display
                                              : __real_SDL_GetVideoSurface();
}

}  // extern "C"
