// What SDL_gfx 2.0.25 draws when it zooms and turns pictures of 32-bit pixels, to the bit: the
// loops that zoom.h may take in its place.
#pragma once

#include <SDL.h>

namespace larkspur::pixel {

/// Whether what is drawn is the source's mirror image.
struct Mirroring {
    bool left_right;
    bool top_bottom;
};

// Source and target have 32-bit pixels that can be touched, an area, rows that are whole pixels
// apart, and share no memory; the source's sides are below 32768. All of these return false when
// nothing, or not everything, was drawn and the library has to.

/// Fills the target with the source, zoomed to the target's size: pixels of the source that are
/// repeated or left out or, if smooth, mixed of four. False when there is no memory for rows,
/// or for the copy that a mirror image from left to right needs, of 64 MiB at most.
bool fill_by_zoom(SDL_Surface& target, const SDL_Surface& source, Mirroring mirroring,
                  bool smooth) noexcept;

/// Draws the source around the target's centre, zoomed by a factor for both axes from 0.001 on, and
/// turned counter-clockwise. Pixels outside the turned picture stay. False when there is no memory
/// for its rows or it goes beyond the numbers of 32 bits in which SDL_gfx counts.
bool fill_by_turn(SDL_Surface& target, const SDL_Surface& source, Mirroring mirroring,
                  double angle_degrees, double factor) noexcept;

}  // namespace larkspur::pixel
