#include "pixel/surface/flip.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/console.h"
#include "base/recycled_surface.h"
#include "larkspur.h"
#include "pixel/kernels/copy_kernels.h"

namespace larkspur::pixel {
namespace {

unsigned char* row_of(SDL_Surface& surface, int row) noexcept {
    return static_cast<unsigned char*>(surface.pixels) +
           static_cast<std::ptrdiff_t>(row) * surface.pitch;
}

// Leaves the reason where whoever meets the null result looks for it.
void set_depth_error(const char* function, const SDL_Surface* surface) noexcept {
    if (surface != nullptr) {
        SDL_SetError(
            "%s needs a surface of 32 bits per pixel, got %d; convert it with "
            "Surface.convert(32)",
            function, static_cast<int>(surface->format->BitsPerPixel));
    } else {
        SDL_SetError("%s needs a surface, got null", function);
    }
}

// As clone_surface(), but it may have to be cleared.
RecycledSurface recycled_clone(const SDL_Surface& surface) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    return recycled_surface(surface.flags, surface.w, surface.h, format.BitsPerPixel, format);
}

// The source's rows first_row .. h - 1 from the last one up, mirrored, into the copy's rows from
// first_row down; those before are 0.
SurfacePtr mirrored_copy(SDL_Surface* source, int first_row, bool upside_down) noexcept {
    const SurfaceLock lock(source);
    if (!lock) {
        return nullptr;
    }
    RecycledSurface recycled = recycled_clone(*source);
    SurfacePtr copy = std::move(recycled.surface);
    if (copy == nullptr) {
        return nullptr;
    }
    if (!recycled.is_clear) {
        clear_first_rows(*copy, std::min(first_row, source->h));
    }
    if (source->w == 0 || source->h <= first_row) {
        return copy;
    }
    const std::ptrdiff_t pitch = source->pitch;
    copy_rows_mirrored(row_of(*copy, first_row), copy->pitch,
                       row_of(*source, upside_down ? source->h - 1 : first_row),
                       upside_down ? -pitch : pitch, static_cast<std::size_t>(source->w),
                       static_cast<std::size_t>(source->h - first_row));
    return copy;
}

}  // namespace

SurfacePtr clone_surface(const SDL_Surface* surface) noexcept {
    if (surface == nullptr) {
        SDL_SetError("clone_surface() needs a surface, got null");
        return nullptr;
    }
    const SDL_PixelFormat& format = *surface->format;
    return new_surface(surface->flags, surface->w, surface->h, format.BitsPerPixel, format);
}

SurfacePtr flip_v(SDL_Surface* surface) noexcept {
    const SurfaceLock lock(surface);
    if (!lock) {
        return nullptr;
    }
    RecycledSurface recycled = recycled_clone(*surface);
    SurfacePtr copy = std::move(recycled.surface);
    if (copy == nullptr || surface->w == 0 || surface->h == 0) {
        return copy;
    }
    // Only the source's last row can be short of its padding: its buffer may end there.
    const std::size_t row_bytes = std::min(copy->pitch, surface->pitch);
    const auto rows_before_last = static_cast<std::size_t>(surface->h - 1);
    const std::size_t last_row_bytes =
        std::min(row_bytes, buffer_bytes(*surface) - rows_before_last * surface->pitch);
    if (!recycled.is_clear && last_row_bytes < copy->pitch) {
        clear_first_rows(*copy, copy->h);
    }
    const std::ptrdiff_t pitch = surface->pitch;
    copy_rows(row_of(*copy, 0), copy->pitch, row_of(*surface, surface->h - 1), -pitch,
              last_row_bytes, 1);
    if (rows_before_last > 0) {
        copy_rows(row_of(*copy, 1), copy->pitch, row_of(*surface, surface->h - 2), -pitch,
                  row_bytes, rows_before_last);
    }
    return copy;
}

SurfacePtr flip_h(SDL_Surface* surface) noexcept {
    if (surface == nullptr || !has_32_bit_pixels(*surface)) {
        write_stderr("Cannot horizontally flip non-32-bit surfaces.\n");
        set_depth_error("flip_h()", surface);
        return nullptr;
    }
    return mirrored_copy(surface, 0, false);
}

SurfacePtr flip_vh(SDL_Surface* surface) noexcept {
    if (surface == nullptr || !has_32_bit_pixels(*surface)) {
        write_stderr("Error: non-32bit surfaces not yet flippable.\n");
        set_depth_error("flip_vh()", surface);
        return nullptr;
    }
    return mirrored_copy(surface, 1, true);
}

}  // namespace larkspur::pixel

extern "C" {

SDL_Surface* clone_surface(SDL_Surface* surface) {
    return larkspur::pixel::clone_surface(surface).release();
}

SDL_Surface* flip_v(SDL_Surface* surface) {
    return larkspur::pixel::flip_v(surface).release();
}

SDL_Surface* flip_h(SDL_Surface* surface) {
    return larkspur::pixel::flip_h(surface).release();
}

SDL_Surface* flip_vh(SDL_Surface* surface) {
    return larkspur::pixel::flip_vh(surface).release();
}

}  // extern "C"
