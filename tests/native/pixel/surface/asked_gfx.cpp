#include "asked_gfx.h"

#include <cstdlib>
#include <new>

namespace larkspur::pixel {

int pictures_by_gfx = 0;
SDL_Surface* (*gfx_change)(SDL_Surface* picture) = nullptr;
bool gfx_turns_by_second_factor = false;
int surfaces_granted = kAnyNumber;
bool clip_rectangles_are_higher = false;
bool locks_are_hidden = false;
bool refuses_arrays = false;

namespace {

SDL_Surface* changed(SDL_Surface* picture) {
    ++pictures_by_gfx;
    return picture != nullptr && gfx_change != nullptr ? gfx_change(picture) : picture;
}

}  // namespace
}  // namespace larkspur::pixel

// The linker puts those with "wrap" in place of the libraries' functions, which those with "real"
// then are.
extern "C" {

SDL_Surface* __real_SDL_CreateRGBSurface(Uint32 flags, int width, int height, int depth,
                                         Uint32 red_mask, Uint32 green_mask, Uint32 blue_mask,
                                         Uint32 alpha_mask);
// Visible, as libraries name the function too; they go on with SDL's.
[[gnu::visibility("default")]] SDL_Surface* __wrap_SDL_CreateRGBSurface(
    Uint32 flags, int width, int height, int depth, Uint32 red_mask, Uint32 green_mask,
    Uint32 blue_mask, Uint32 alpha_mask) {
    int& granted = larkspur::pixel::surfaces_granted;
    if (granted == 0) {
        return nullptr;
    }
    granted -= granted > 0 ? 1 : 0;
    return __real_SDL_CreateRGBSurface(flags, width, height, depth, red_mask, green_mask, blue_mask,
                                       alpha_mask);
}

SDL_bool __real_SDL_SetClipRect(SDL_Surface* surface, const SDL_Rect* rect);
[[gnu::visibility("default")]] SDL_bool __wrap_SDL_SetClipRect(SDL_Surface* surface,
                                                               const SDL_Rect* rect) {
    const SDL_bool result = __real_SDL_SetClipRect(surface, rect);
    if (larkspur::pixel::clip_rectangles_are_higher && rect == nullptr) {
        surface->clip_rect.h = static_cast<Uint16>(surface->h + 2);
    }
    return result;
}

int __real_SDL_LockSurface(SDL_Surface* surface);
[[gnu::visibility("default")]] int __wrap_SDL_LockSurface(SDL_Surface* surface) {
    return larkspur::pixel::locks_are_hidden ? 0 : __real_SDL_LockSurface(surface);
}

SDL_Surface* __real_zoomSurface(SDL_Surface* source, double x, double y, int smooth);
SDL_Surface* __wrap_zoomSurface(SDL_Surface* source, double x, double y, int smooth) {
    return larkspur::pixel::changed(__real_zoomSurface(source, x, y, smooth));
}

SDL_Surface* __real_rotozoomSurface(SDL_Surface* source, double angle, double factor, int smooth);
SDL_Surface* __wrap_rotozoomSurface(SDL_Surface* source, double angle, double factor, int smooth) {
    return larkspur::pixel::changed(__real_rotozoomSurface(source, angle, factor, smooth));
}

SDL_Surface* __real_rotozoomSurfaceXY(SDL_Surface* source, double angle, double x, double y,
                                      int smooth);
SDL_Surface* __wrap_rotozoomSurfaceXY(SDL_Surface* source, double angle, double x, double y,
                                      int smooth) {
    const bool swapped = larkspur::pixel::gfx_turns_by_second_factor;
    return larkspur::pixel::changed(
        __real_rotozoomSurfaceXY(source, angle, swapped ? y : x, swapped ? x : y, smooth));
}

}  // extern "C"

// Arrays of this program; all of the four, so that they fit each other.

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return larkspur::pixel::refuses_arrays ? nullptr : std::malloc(size);
}

void* operator new[](std::size_t size) {
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    std::abort();
}

void operator delete[](void* memory) noexcept {
    std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
