// Whether two surfaces are the same to whoever looks at them.
#pragma once

#include <SDL.h>

#include <cstring>

#include "gtest/gtest.h"

namespace larkspur::pixel {

/// The same size, format, flags, colour key, alpha, clip rectangle and pixels; or both null.
inline ::testing::AssertionResult same_pictures(const SDL_Surface* a, const SDL_Surface* b) {
    if (a == nullptr || b == nullptr) {
        return a == b ? ::testing::AssertionSuccess()
                      : ::testing::AssertionFailure() << "one of them is missing";
    }
    const auto differ = [](const char* what) {
        return ::testing::AssertionFailure() << what << " differ";
    };
    if (a->w != b->w || a->h != b->h || a->pitch != b->pitch) {
        return differ("sizes");
    }
    if (a->flags != b->flags || a->format->colorkey != b->format->colorkey ||
        a->format->alpha != b->format->alpha) {
        return differ("flags, colour keys or alphas");
    }
    if (std::memcmp(&a->clip_rect, &b->clip_rect, sizeof a->clip_rect) != 0) {
        return differ("clip rectangles");
    }
    if (a->format->BitsPerPixel != b->format->BitsPerPixel ||
        a->format->Rmask != b->format->Rmask || a->format->Gmask != b->format->Gmask ||
        a->format->Bmask != b->format->Bmask || a->format->Amask != b->format->Amask) {
        return differ("formats");
    }
    for (int y = 0; y < a->h; ++y) {
        const auto row = [&](const SDL_Surface* surface) {
            return static_cast<const unsigned char*>(surface->pixels) + y * surface->pitch;
        };
        for (int x = 0; x < a->w * a->format->BytesPerPixel; ++x) {
            if (row(a)[x] != row(b)[x]) {
                return ::testing::AssertionFailure()
                       << "byte " << x << " of row " << y << " of " << a->w << " x " << a->h
                       << " is " << int{row(a)[x]} << ", should be " << int{row(b)[x]};
            }
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace larkspur::pixel
