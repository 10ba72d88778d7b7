#include "asked_gfx.h"

#include <SDL.h>

#include <cstdint>

namespace larkspur::pixel {

int pictures_by_gfx = 0;
GfxChange gfx_change = GfxChange::kNone;
bool refuses_surfaces = false;

namespace {

SDL_Surface* changed(SDL_Surface* picture) {
    ++pictures_by_gfx;
    if (picture != nullptr && gfx_change == GfxChange::kPixel &&
        picture->format->BytesPerPixel == 4) {
        auto* bytes = static_cast<std::uint8_t*>(picture->pixels);
        bytes[4 * (picture->w - 1) + picture->pitch * (picture->h - 1)] ^= 1;
    }
    if (picture != nullptr && gfx_change == GfxChange::kFlags) {
        SDL_SetAlpha(picture, 0, SDL_ALPHA_OPAQUE);
    }
    return picture;
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
    return larkspur::pixel::refuses_surfaces
               ? nullptr
               : __real_SDL_CreateRGBSurface(flags, width, height, depth, red_mask, green_mask,
                                             blue_mask, alpha_mask);
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
    using larkspur::pixel::GfxChange;
    const bool swapped = larkspur::pixel::gfx_change == GfxChange::kSecondSide;
    return larkspur::pixel::changed(
        __real_rotozoomSurfaceXY(source, angle, swapped ? y : x, swapped ? x : y, smooth));
}

}  // extern "C"
