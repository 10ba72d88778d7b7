// Loops around native functions, so that what Python adds to a call does not count. Each returns
// the seconds of processor time of all its rounds.

#include <SDL.h>
#include <SDL_rotozoom.h>

#include <cstdint>
#include <ctime>

#include "larkspur.h"

namespace {

template <typename Call>
double seconds_of(long rounds, Call call) {
    const std::clock_t begin = std::clock();
    for (long i = 0; i < rounds; ++i) {
        call();
    }
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

}  // namespace

extern "C" {

LARKSPUR_EXPORT double time_fading(void (*function)(SDL_Surface*, std::uint8_t),
                                   SDL_Surface* surface, std::uint8_t alpha, long rounds) {
    return seconds_of(rounds, [=] { function(surface, alpha); });
}

LARKSPUR_EXPORT double time_tinting(void (*function)(SDL_Surface*, std::uint32_t),
                                    SDL_Surface* surface, std::uint32_t tint, long rounds) {
    return seconds_of(rounds, [=] { function(surface, tint); });
}

LARKSPUR_EXPORT double time_subtracting(void (*function)(void*, int, std::uint32_t),
                                        SDL_Surface* surface, std::uint32_t value, long rounds) {
    return seconds_of(rounds,
                      [=] { function(surface->pixels, surface->pitch * surface->h, value); });
}

// The source goes to (0, 0).
LARKSPUR_EXPORT double time_blitting(void (*function)(SDL_Surface*, SDL_Surface*, SDL_Rect*, int),
                                     SDL_Surface* source, SDL_Surface* target, int mode,
                                     long rounds) {
    return seconds_of(rounds, [=] {
        SDL_Rect rect = {0, 0, 0, 0};
        function(source, target, &rect, mode);
    });
}

// SDL_gfx alone, without anything around it.
LARKSPUR_EXPORT double time_zoom(SDL_Surface* surface, double x_factor, double y_factor,
                                 long rounds) {
    return seconds_of(
        rounds, [=] { SDL_FreeSurface(zoomSurface(surface, x_factor, y_factor, SMOOTHING_ON)); });
}

LARKSPUR_EXPORT double time_rotozoom(SDL_Surface* surface, double angle_degrees, double factor,
                                     long rounds) {
    return seconds_of(rounds, [=] {
        SDL_FreeSurface(rotozoomSurface(surface, angle_degrees, factor, SMOOTHING_OFF));
    });
}

}  // extern "C"
