// Colour changes of whole surfaces and byte buffers, in place.
//
// Surfaces are worked on as one buffer, row padding included. Native callers pass them, so nothing
// is reported: a null surface, one of another depth than 32 bits, or one whose pixels cannot be
// reached stays as it is.
#pragma once

#include <SDL.h>

#include <cstdint>

#include "base/surface.h"

namespace larkspur::pixel {

/// Scales the alpha channel of every pixel by alpha/256 and keeps its colour bits; all other bits
/// become 0. Where alpha is in the top byte, the channels below take part in the product.
void translucentify(SDL_Surface* surface, std::uint8_t alpha) noexcept;

/// Tints with a GM colour: each channel c becomes max(0, c - (255 - t)), t being the tint's
/// channel; alpha stays. White changes nothing, black leaves black. When the buffer is no whole
/// number of 8-byte steps, the last 4 bytes lose the bytes of the subtracted pixel value in reverse
/// order.
void tint_surface(SDL_Surface* surface, std::uint32_t tint) noexcept;

/// Subtracts the bytes of `value`, lowest first, from the bytes of a buffer in turn, each stopping
/// at 0; or does what else SDL_imageFilterSubUint() does with them in the SDL_gfx at hand. Does
/// nothing for a null buffer or a length below 1.
void satusub(void* buffer, int length_bytes, std::uint32_t value) noexcept;

/// Subtracts `value`, or `low` and `high` in turn, from the 32-bit words of a buffer, byte by byte
/// and each stopping at 0; a last word or pair that is not complete counts whole. Does nothing for
/// a null buffer or a length below 1.
void subtract_words(void* buffer, int length_bytes, std::uint32_t value) noexcept;
void subtract_word_pairs(void* buffer, int length_bytes, std::uint32_t low,
                         std::uint32_t high) noexcept;

/// A new surface with the pixels of `surface` in the display's format with alpha; null without a
/// video mode and when SDL has none.
SurfacePtr rgba_copy(SDL_Surface* surface) noexcept;

}  // namespace larkspur::pixel
