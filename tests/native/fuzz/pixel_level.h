// The kernels and the work on surfaces, several times in one program: as this program was compiled,
// and as libraries have them, one for each dispatch level.
#pragma once

#include <string>
#include <vector>

#include "pixel/kernels/add_kernels.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/fade_kernels.h"
#include "pixel/kernels/fill_kernels.h"
#include "pixel/kernels/gradient_kernels.h"
#include "pixel/kernels/key_kernels.h"
#include "pixel/kernels/over_kernels.h"
#include "pixel/kernels/subtract_kernels.h"
#include "pixel/kernels/zoom_kernels.h"
#include "pixel/kernels/zoom_kernels_avx2.h"
#include "pixel/surface/blit.h"
#include "pixel/surface/flagged_blit.h"
#include "pixel/surface/flip.h"
#include "pixel/surface/mapped_colour.h"
#include "pixel/surface/painters.h"
#include "pixel/surface/picture.h"
#include "pixel/surface/tint.h"
#include "pixel/surface/zoom.h"

// Every function that is tried, by its name.
#define LARKSPUR_TRIED_FUNCTIONS(OF) \
    OF(add_saturating_rows)          \
    OF(copy_rows)                    \
    OF(copy_masked_rows)             \
    OF(copy_rows_mirrored)           \
    OF(scale_top_alpha)              \
    OF(scale_low_alpha)              \
    OF(fill_translucent_rows)        \
    OF(fill_each_translucent_row)    \
    OF(mix_colours)                  \
    OF(add_scaled)                   \
    OF(set_pixels)                   \
    OF(copy_keyed_rows)              \
    OF(composite_keyed_rows)         \
    OF(composite_over_rows)          \
    OF(composite_evenly_rows)        \
    OF(subtract_saturating)          \
    OF(pick_pixels)                  \
    OF(mix_columns)                  \
    OF(mix_rows)                     \
    OF(pick_along_lines)             \
    OF(transpose)                    \
    OF(fastest_zoom_kernels)         \
    OF(blit)                         \
    OF(flagged_blit)                 \
    OF(additive_blit)                \
    OF(clone_surface)                \
    OF(flip_v)                       \
    OF(flip_h)                       \
    OF(flip_vh)                      \
    OF(map_colour)                   \
    OF(map_interpolated)             \
    OF(translucent_fill_rect)        \
    OF(blend_vertical_gradients)     \
    OF(draw_vertical_gradient)       \
    OF(draw_horizontal_gradient)     \
    OF(draw_gradient_outline)        \
    OF(scaled_picture)               \
    OF(turned_picture)               \
    OF(translucentify)               \
    OF(tint_surface)                 \
    OF(satusub)                      \
    OF(subtract_words)               \
    OF(subtract_word_pairs)          \
    OF(rgba_copy)                    \
    OF(zoomed)                       \
    OF(rotozoomed)                   \
    OF(rotozoomed_xy)

namespace larkspur::pixel {

struct PixelFunctions {
// NOLINTNEXTLINE(bugprone-macro-parentheses): what is declared can't stand in parentheses
#define LARKSPUR_FUNCTION(name) decltype(&larkspur::pixel::name) name;
    LARKSPUR_TRIED_FUNCTIONS(LARKSPUR_FUNCTION)
#undef LARKSPUR_FUNCTION
};

struct PixelLevel {
    std::string name;
    const PixelFunctions* functions;
};

/// This program's own, then those of the libraries level_*.so in the folder LARKSPUR_LEVELS. All
/// are loaded, and said on standard error, at the first call; one that can't be loaded ends the
/// program.
const std::vector<PixelLevel>& pixel_levels();

}  // namespace larkspur::pixel

/// In this program and in each of the libraries.
extern "C" const larkspur::pixel::PixelFunctions* larkspur_pixel_functions();
