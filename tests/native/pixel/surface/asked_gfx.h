// Whether SDL_gfx is asked for a zoom or a turn, and an SDL_gfx that draws otherwise.
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

}  // namespace larkspur::pixel
