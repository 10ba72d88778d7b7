// SDL's blit, faster: the one home of the loops that stand in for it.
#pragma once

#include <SDL.h>

namespace larkspur::pixel {

/// Does what SDL_UpperBlit(source, from, target, to) does, to the last bit of the pixels and of
/// `to`: clips to the source and to the target's clip rectangle, honours the source's colour key
/// and alpha, and leaves in `to` the rectangle that was drawn. Source and target may be the same;
/// where such a surface asks for run-length encoding, which would take its pixels away under SDL's
/// hands, nothing is drawn, and `to` is left without an area.
///
/// Pairs of surfaces that a loop of ours takes are drawn by it: copies within one format, which SDL
/// writes past the processor's cache at a multiple of the time, and pictures of 32 bits with or
/// without a colour key and alpha, their own or their pixels', which it draws pixel by pixel. All
/// others are left to SDL: other formats, surfaces that share memory, pictures that SDL encodes,
/// and whatever this SDL turns out to draw in another way.
///
/// A clip rectangle that a native caller set beyond the target's edges counts as far as it lies
/// inside where a loop of ours draws.
///
/// @param from a rectangle of the source; null for all of it
/// @param to never null; only its position counts at first
/// @return false, with SDL's error set, when SDL refuses the blit: a surface is null or locked, or
///         its pixels are lost
bool blit(SDL_Surface* source, const SDL_Rect* from, SDL_Surface* target, SDL_Rect* to) noexcept;

}  // namespace larkspur::pixel
