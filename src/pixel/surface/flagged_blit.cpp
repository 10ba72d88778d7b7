#include "pixel/surface/flagged_blit.h"

#include <SDL_imageFilter.h>

#include <algorithm>
#include <array>
#include <numeric>

#include "base/console.h"
#include "base/surface.h"
#include "larkspur.h"
#include "pixel/kernels/add_kernels.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/surface/blit.h"

namespace larkspur::pixel {
namespace {

constexpr std::ptrdiff_t kPixelBytes = sizeof(PixelWord);

// Of `rows` rows of `row_bytes` bytes from `offset` on, the number of those before the first one
// that leaves the surface's buffer.
std::ptrdiff_t rows_inside(const SDL_Surface& surface, std::ptrdiff_t offset,
                           std::ptrdiff_t row_bytes, std::ptrdiff_t rows) noexcept {
    const std::ptrdiff_t room =
        static_cast<std::ptrdiff_t>(buffer_bytes(surface)) - offset - row_bytes;
    if (offset < 0 || room < 0) {
        return 0;
    }
    // Mostly all are inside, and need no division.
    return (rows - 1) * surface.pitch <= room ? rows : room / surface.pitch + 1;
}

// Rows of bytes and those that they are added to.
struct ByteRows {
    unsigned char* target;
    std::ptrdiff_t target_pitch;
    unsigned char* source;
    std::ptrdiff_t source_pitch;
    std::ptrdiff_t row_bytes;
    std::ptrdiff_t rows;

    bool share_memory() const noexcept {
        return source < target + (rows - 1) * target_pitch + row_bytes &&
               target < source + (rows - 1) * source_pitch + row_bytes;
    }
};

void add_by_library(ByteRows rows) noexcept {
    for (; rows.rows > 0; --rows.rows) {
        SDL_imageFilterAdd(rows.source, rows.target, rows.target,
                           static_cast<unsigned>(rows.row_bytes));
        rows.source += rows.source_pitch;
        rows.target += rows.target_pitch;
    }
}

void add_by_kernel(const ByteRows& rows) noexcept {
    add_saturating_rows({pixel_words(rows.target), rows.target_pitch, pixel_words(rows.source),
                         rows.source_pitch, static_cast<std::size_t>(rows.row_bytes / kPixelBytes),
                         static_cast<std::size_t>(rows.rows)});
}

// Whether this SDL_gfx adds as the kernel does: every byte to every byte, and then in rows of each
// length around those of its vectors.
bool agrees_with_library() noexcept {
    constexpr std::ptrdiff_t kValues = 256;
    constexpr std::ptrdiff_t kMostPixels = 32;
    std::array<unsigned char, kValues> by_us;
    std::iota(by_us.begin(), by_us.end(), static_cast<unsigned char>(0));
    std::array<unsigned char, kValues> by_library = by_us;
    const std::array<unsigned char, kValues> all_values = by_us;
    std::array<unsigned char, kValues> source;
    const auto agrees_on = [&](std::ptrdiff_t row_bytes) {
        add_by_kernel({by_us.data(), 0, source.data(), 0, row_bytes, 1});
        add_by_library({by_library.data(), 0, source.data(), 0, row_bytes, 1});
        return by_us == by_library;
    };
    for (int value = 0; value < kValues; ++value) {
        source.fill(static_cast<unsigned char>(value));
        by_us = by_library = all_values;
        if (!agrees_on(kValues) || !agrees_on(value % kMostPixels * kPixelBytes)) {
            return false;
        }
    }
    return true;
}

}  // namespace

void additive_blit(SDL_Surface* source, SDL_Surface* target, std::ptrdiff_t source_offset,
                   std::ptrdiff_t target_offset, int rows, int row_bytes) noexcept {
    const SurfaceLock source_lock(source);
    const SurfaceLock target_lock(target);
    if (!source_lock || !target_lock || row_bytes <= 0) {
        return;
    }
    const std::ptrdiff_t rows_in_both =
        std::min(rows_inside(*source, source_offset, row_bytes, rows),
                 rows_inside(*target, target_offset, row_bytes, rows));
    if (rows_in_both <= 0) {
        return;
    }
    const ByteRows both = {static_cast<unsigned char*>(target->pixels) + target_offset,
                           target->pitch,
                           static_cast<unsigned char*>(source->pixels) + source_offset,
                           source->pitch,
                           row_bytes,
                           rows_in_both};
    static const bool kernel_agrees = agrees_with_library();
    if (kernel_agrees && row_bytes % kPixelBytes == 0 && !both.share_memory()) {
        add_by_kernel(both);
    } else {
        add_by_library(both);
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
