#include "pixel/surface/flagged_blit.h"

#include <SDL_imageFilter.h>

#include <algorithm>

#include "base/console.h"
#include "base/surface.h"
#include "larkspur.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/blit.h"

namespace larkspur::pixel {
namespace {

constexpr std::ptrdiff_t kPixelBytes = sizeof(PixelWord);

// True when bytes offset .. offset + count - 1 belong to the surface's buffer.
bool holds(const SDL_Surface& surface, std::ptrdiff_t offset, std::ptrdiff_t count) noexcept {
    return offset >= 0 && offset + count <= static_cast<std::ptrdiff_t>(buffer_bytes(surface));
}

}  // namespace

void additive_blit(SDL_Surface* source, SDL_Surface* target, std::ptrdiff_t source_offset,
                   std::ptrdiff_t target_offset, int rows, int row_bytes) noexcept {
    const SurfaceLock source_lock(source);
    const SurfaceLock target_lock(target);
    if (!source_lock || !target_lock || row_bytes <= 0) {
        return;
    }
    auto* from = static_cast<unsigned char*>(source->pixels);
    auto* to = static_cast<unsigned char*>(target->pixels);
    for (int row = 0; row < rows; ++row) {
        if (!holds(*source, source_offset, row_bytes) ||
            !holds(*target, target_offset, row_bytes)) {
            return;
        }
        SDL_imageFilterAdd(from + source_offset, to + target_offset, to + target_offset,
                           static_cast<unsigned>(row_bytes));
        source_offset += source->pitch;
        target_offset += target->pitch;
    }
}

void flagged_blit(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect, int mode) noexcept {
    if (source == nullptr || target == nullptr || rect == nullptr) {
        return;
    }
    if (mode == 0) {
        blit(source, nullptr, target, rect);
        return;
    }
    const int x = rect->x;
    const int y = rect->y;
    if (y > 0 && y >= target->h) {
        return;
    }
    // A negative y moves nothing up: the rows start at the target's first one and end at its last.
    const int rows = std::min(source->h, target->h - std::max(y, 0));

    // The distance to the right edge is negative or zero for a source that reaches it or lies
    // behind it, and so is the length then: such a source is not drawn. Pictures depend on it.
    const int right_edge = x + source->w;
    const std::ptrdiff_t reach = right_edge < target->w ? source->w : target->w - right_edge;
    const std::ptrdiff_t columns = reach + std::min(x, 0);
    if (columns <= 0) {
        return;
    }
    if (blend_mode_flatten(mode) == 0) {
        write_stdout("Error: Unexpected additive blend mode %d\n", mode);
        blit(source, nullptr, target, rect);
        return;
    }
    if (!has_32_bit_pixels(*source) || !has_32_bit_pixels(*target)) {
        return;
    }
    pixel::additive_blit(
        source, target, -std::min(x, 0) * kPixelBytes,
        std::max(y, 0) * std::ptrdiff_t{target->pitch} + std::max(x, 0) * kPixelBytes, rows,
        static_cast<int>(columns * kPixelBytes));
}

}  // namespace larkspur::pixel

extern "C" {

void flagged_blit(SDL_Surface* source, SDL_Surface* target, SDL_Rect* rect, int mode) {
    larkspur::pixel::flagged_blit(source, target, rect, mode);
}

void additive_blit(SDL_Surface* source, SDL_Surface* target, int source_offset, int target_offset,
                   int rows, int row_bytes) {
    larkspur::pixel::additive_blit(source, target, source_offset, target_offset, rows, row_bytes);
}

}  // extern "C"
