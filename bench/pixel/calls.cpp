// Loops around native functions, so that what Python adds to a call does not count. Each returns
// the seconds of processor time of all its rounds.

#include <SDL.h>
#include <SDL_imageFilter.h>
#include <SDL_rotozoom.h>

#include <cstddef>
#include <cstdint>
#include <ctime>

#include "larkspur.h"
#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/pixel_word.h"

namespace {

using larkspur::pixel::PixelWord;

// flagged_blit().
using FlaggedBlit = void (*)(SDL_Surface*, SDL_Surface*, SDL_Rect*, int);

template <typename Call>
double seconds_of(long rounds, Call call) {
    const std::clock_t begin = std::clock();
    for (long i = 0; i < rounds; ++i) {
        call();
    }
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

unsigned char* row_of(const SDL_Surface* surface, int y) {
    return static_cast<unsigned char*>(surface->pixels) + std::ptrdiff_t{y} * surface->pitch;
}

std::size_t width_of(const SDL_Surface* surface) {
    return static_cast<std::size_t>(surface->w);
}

LARKSPUR_MULTIVERSION
void xor_words(PixelWord* words, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] ^= 0x00A5A5A5U;
    }
}

LARKSPUR_MULTIVERSION
void xor_words_with(PixelWord* words, const PixelWord* others, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] ^= others[i];
    }
}

// The rectangle that a source goes to: SDL writes what it clipped into its argument, so each blit
// gets a new one.
SDL_Rect top_left() {
    return {0, 0, 0, 0};
}

void blit_by_sdl(SDL_Surface* source, SDL_Surface* target) {
    SDL_Rect rect = top_left();
    SDL_UpperBlit(source, nullptr, target, &rect);
}

// Reads and writes what a blit of `source` has drawn.
void pass_over(const SDL_Surface* source, const SDL_Surface* target) {
    for (int y = 0; y < source->h; ++y) {
        xor_words(larkspur::pixel::pixel_words(row_of(target, y)), width_of(source));
    }
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

// Sources of blits go to (0, 0).
LARKSPUR_EXPORT double time_blitting(FlaggedBlit function, SDL_Surface* source, SDL_Surface* target,
                                     int mode, long rounds) {
    return seconds_of(rounds, [=] {
        SDL_Rect rect = top_left();
        function(source, target, &rect, mode);
    });
}

LARKSPUR_EXPORT double time_blitting_and_pass(FlaggedBlit function, SDL_Surface* source,
                                              SDL_Surface* target, int mode, long rounds) {
    return seconds_of(rounds, [=] {
        SDL_Rect rect = top_left();
        function(source, target, &rect, mode);
        pass_over(source, target);
    });
}

// SDL and SDL_gfx alone, without anything around them.
LARKSPUR_EXPORT double time_sdl_blitting(SDL_Surface* source, SDL_Surface* target, long rounds) {
    return seconds_of(rounds, [=] { blit_by_sdl(source, target); });
}

LARKSPUR_EXPORT double time_sdl_blitting_and_pass(SDL_Surface* source, SDL_Surface* target,
                                                  long rounds) {
    return seconds_of(rounds, [=] {
        blit_by_sdl(source, target);
        pass_over(source, target);
    });
}

LARKSPUR_EXPORT double time_gfx_adding(SDL_Surface* source, SDL_Surface* target, long rounds) {
    const auto row_bytes = static_cast<unsigned>(width_of(source) * sizeof(PixelWord));
    return seconds_of(rounds, [=] {
        for (int y = 0; y < source->h; ++y) {
            unsigned char* to = row_of(target, y);
            SDL_imageFilterAdd(row_of(source, y), to, to, row_bytes);
        }
    });
}

// What memory allows of an additive blit: as many bytes read and written, with the least work.
LARKSPUR_EXPORT double time_xor_blitting(SDL_Surface* source, SDL_Surface* target, long rounds) {
    return seconds_of(rounds, [=] {
        for (int y = 0; y < source->h; ++y) {
            xor_words_with(larkspur::pixel::pixel_words(row_of(target, y)),
                           larkspur::pixel::pixel_words(row_of(source, y)), width_of(source));
        }
    });
}

LARKSPUR_EXPORT double time_zoom(SDL_Surface* surface, double x_factor, double y_factor, int smooth,
                                 long rounds) {
    return seconds_of(rounds,
                      [=] { SDL_FreeSurface(zoomSurface(surface, x_factor, y_factor, smooth)); });
}

LARKSPUR_EXPORT double time_rotozoom(SDL_Surface* surface, double angle_degrees, double factor,
                                     long rounds) {
    return seconds_of(rounds, [=] {
        SDL_FreeSurface(rotozoomSurface(surface, angle_degrees, factor, SMOOTHING_OFF));
    });
}

}  // extern "C"
