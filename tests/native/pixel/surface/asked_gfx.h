// Whether SDL_gfx is asked for a zoom or a turn, an SDL_gfx that draws otherwise, and an SDL
// without memory.
#pragma once

namespace larkspur::pixel {

/// Number of calls of zoomSurface(), rotozoomSurface() and rotozoomSurfaceXY() in this program; the
/// linker has them counted.
extern int pictures_by_gfx;

/// What another SDL_gfx does its own way.
enum class GfxChange {
    kNone,
    kPixel,       // one bit of one pixel
    kFlags,       // no alpha for the surface
    kSecondSide,  // rotozoomSurfaceXY() turns by the second factor
};
extern GfxChange gfx_change;

/// While it is true, SDL makes no surface for this program; it does for SDL_gfx.
extern bool refuses_surfaces;

}  // namespace larkspur::pixel
