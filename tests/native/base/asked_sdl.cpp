#include "asked_sdl.h"

#include <unordered_map>

namespace larkspur {
namespace {

int surfaces_made = 0;
std::unordered_map<const SDL_Surface*, int> numbers;

}  // namespace

LockAnswer lock_answer = LockAnswer::kTrue;
int locks_asked = 0;
bool conversions_forget_flags = false;
SDL_Surface* other_display = nullptr;

int number_of(const SDL_Surface& surface) {
    return numbers.at(&surface);
}

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
        case LockAnswer::kCounted:
            break;
    }
    const Uint32 before = surface->locked;
    const int status = __real_SDL_LockSurface(surface);
    if (larkspur::lock_answer == LockAnswer::kCounted && status == 0) {
        surface->locked = before + 1;
    }
    return status;
}

void __real_SDL_UnlockSurface(SDL_Surface* surface);
void __wrap_SDL_UnlockSurface(SDL_Surface* surface) {
    const Uint32 before = surface->locked;
    __real_SDL_UnlockSurface(surface);
    if (larkspur::lock_answer == larkspur::LockAnswer::kCounted && before > 0) {
        surface->locked = before - 1;
    }
}

SDL_Surface* __real_SDL_CreateRGBSurface(Uint32 flags, int width, int height, int depth,
                                         Uint32 red_mask, Uint32 green_mask, Uint32 blue_mask,
                                         Uint32 alpha_mask);
SDL_Surface* __wrap_SDL_CreateRGBSurface(Uint32 flags, int width, int height, int depth,
                                         Uint32 red_mask, Uint32 green_mask, Uint32 blue_mask,
                                         Uint32 alpha_mask) {
    SDL_Surface* surface = __real_SDL_CreateRGBSurface(flags, width, height, depth, red_mask,
                                                       green_mask, blue_mask, alpha_mask);
    if (surface != nullptr) {
        larkspur::numbers[surface] = larkspur::surfaces_made++;
    }
    return surface;
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
