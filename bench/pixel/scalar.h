// The kernels' formulas written down plainly, a pixel or byte at a time, and built without vectors.
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/kernels/key_kernels.h"
#include "pixel/kernels/pixel_rows.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/painters.h"

namespace larkspur::bench::scalar {

void fill_translucent(pixel::PixelWord* pixels, std::size_t count, std::uint8_t keep,
                      std::uint32_t sum);
void scale_top_alpha(pixel::PixelWord* pixels, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask);
void scale_low_alpha(pixel::PixelWord* pixels, std::size_t count, std::uint8_t alpha,
                     std::uint32_t alpha_mask, std::uint32_t colour_mask);
void subtract(unsigned char* bytes, std::size_t count, std::uint32_t word);
void add(unsigned char* to, const unsigned char* from, std::size_t count);
void copy_masked(const pixel::PixelRows& rows, std::uint32_t kept, std::uint32_t added);
void copy_keyed(const pixel::PixelRows& rows, pixel::ColourKey key, std::uint32_t kept,
                std::uint32_t added);
void composite_over(const pixel::PixelRows& rows);
void composite_evenly(const pixel::PixelRows& rows, std::uint8_t alpha);
void composite_keyed(const pixel::PixelRows& rows, pixel::ColourKey key, std::uint8_t alpha);
void copy_rows(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t rows);
void copy_rows_mirrored(unsigned char* to, std::ptrdiff_t to_pitch_bytes, const unsigned char* from,
                        std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t rows);
void blend_vertical_gradients(const SDL_Surface& surface, const pixel::Corners& corners,
                              const pixel::GradientLayer* layers, std::size_t count,
                              std::uint32_t constant, std::uint8_t keep);
void draw_vertical_gradient(const SDL_Surface& surface, const pixel::Corners& corners,
                            std::uint32_t top, std::uint32_t bottom);
void draw_horizontal_gradient(const SDL_Surface& surface, const pixel::Corners& corners,
                              std::uint32_t left, std::uint32_t right);

}  // namespace larkspur::bench::scalar
