#include "pixel/surface/blit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "base/convert.h"
#include "base/surface.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/over_kernels.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {
namespace {

// What is left of a blit along one axis once it is clipped: nothing when the length is not
// positive.
struct Span {
    int from;
    int to;
    int length;
};

struct Area {
    Span x;
    Span y;

    bool is_empty() const noexcept { return x.length <= 0 || y.length <= 0; }
};

// Clips one axis. Positions in the target are 16 bits wide and wrap like SDL's.
Span clip_axis(int from, int length, std::int16_t to, int source_length, int clip_start,
               int clip_length) noexcept {
    if (from < 0) {
        length += from;
        to = low_16_bits(to - from);
        from = 0;
    }
    length = std::min(length, source_length - from);
    const int before = clip_start - to;
    if (before > 0) {
        length -= before;
        to = low_16_bits(to + before);
        from += before;
    }
    const int behind = to + length - clip_start - clip_length;
    if (behind > 0) {
        length -= behind;
    }
    return {from, to, length};
}

// Clips to the source, the target's clip rectangle and the target itself, which the rectangle of a
// native caller may leave.
Area clip(const SDL_Surface& source, const SDL_Rect* from, const SDL_Surface& target,
          const SDL_Rect& to) noexcept {
    const SDL_Rect& bounds = target.clip_rect;
    const int left = std::max<int>(bounds.x, 0);
    const int top = std::max<int>(bounds.y, 0);
    const int right = std::min(bounds.x + bounds.w, target.w);
    const int bottom = std::min(bounds.y + bounds.h, target.h);
    const int x = from != nullptr ? from->x : 0;
    const int y = from != nullptr ? from->y : 0;
    const int width = from != nullptr ? from->w : source.w;
    const int height = from != nullptr ? from->h : source.h;
    return {clip_axis(x, width, to.x, source.w, left, right - left),
            clip_axis(y, height, to.y, source.h, top, bottom - top)};
}

unsigned char* byte_at(const SDL_Surface& surface, int x, int y) noexcept {
    return static_cast<unsigned char*>(surface.pixels) + std::ptrdiff_t{y} * surface.pitch +
           std::ptrdiff_t{x} * surface.format->BytesPerPixel;
}

// The loops: for which pairs of surfaces of one format each gives SDL's bits, and what it does with
// an area that is not empty.

bool have_same_format(const SDL_PixelFormat& a, const SDL_PixelFormat& b) noexcept {
    return a.BitsPerPixel == b.BitsPerPixel && a.Rmask == b.Rmask && a.Gmask == b.Gmask &&
           a.Bmask == b.Bmask;
}

// Pixels of one byte stand for colours of a palette, which SDL may have to translate.
bool is_opaque_copy(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    return (source.flags & (SDL_SRCALPHA | SDL_SRCCOLORKEY)) == 0 &&
           source.format->BytesPerPixel > 1 && source.format->Amask == target.format->Amask;
}

void copy(const SDL_Surface& source, const SDL_Surface& target, const Area& area) noexcept {
    copy_rows(byte_at(target, area.x.to, area.y.to), target.pitch,
              byte_at(source, area.x.from, area.y.from), source.pitch,
              static_cast<std::size_t>(area.x.length) * source.format->BytesPerPixel,
              static_cast<std::size_t>(area.y.length));
}

// True when rows are whole pixels apart.
bool has_word_pitch(const SDL_Surface& surface) noexcept {
    return surface.pitch % sizeof(PixelWord) == 0;
}

// SDL treats a colour key in its own way, and encodes a picture for which that was asked. Where it
// blends, an odd rest of a pitch counts for nothing.
bool has_pixel_alpha(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    return (source.flags & SDL_SRCALPHA) != 0 &&
           (source.flags & (SDL_SRCCOLORKEY | SDL_RLEACCELOK)) == 0 &&
           source.format->BytesPerPixel == sizeof(PixelWord) && source.format->Amask == kTopByte &&
           has_word_pitch(source) && has_word_pitch(target);
}

void composite_over(const SDL_Surface& source, const SDL_Surface& target,
                    const Area& area) noexcept {
    composite_over_rows({pixel_words(byte_at(target, area.x.to, area.y.to)), target.pitch,
                         pixel_words(byte_at(source, area.x.from, area.y.from)), source.pitch,
                         static_cast<std::size_t>(area.x.length),
                         static_cast<std::size_t>(area.y.length)});
}

struct Loop {
    bool (*takes)(const SDL_Surface& source, const SDL_Surface& target) noexcept;
    void (*draw)(const SDL_Surface& source, const SDL_Surface& target, const Area& area) noexcept;
    // The source that it is tried with.
    std::uint32_t trial_flags;
    std::uint32_t trial_alpha_mask;
};

constexpr Loop kLoops[] = {
    {is_opaque_copy, copy, 0, 0},
    {has_pixel_alpha, composite_over, SDL_SRCALPHA, kTopByte},
};
constexpr std::size_t kLoopCount = std::size(kLoops);

void draw_by(const Loop& loop, const SDL_Surface& source, const SDL_Rect* from,
             const SDL_Surface& target, SDL_Rect& to) noexcept {
    const Area area = clip(source, from, target, to);
    to = {low_16_bits(area.x.to), low_16_bits(area.y.to), 0, 0};
    if (!area.is_empty()) {
        loop.draw(source, target, area);
        to.w = static_cast<std::uint16_t>(area.x.length);
        to.h = static_cast<std::uint16_t>(area.y.length);
    }
}

// Trying the loops: other builds of SDL clip and round otherwise, or hide their locks.

// A column for each value that alpha can have.
constexpr int kTrialWidth = 256;
constexpr int kTrialHeight = 32;

// All of the source, then pieces that go over each edge and past the ends of 16 bits.
constexpr struct {
    SDL_Rect from;
    SDL_Rect to;
} kTrials[] = {
    {{0, 0, kTrialWidth, kTrialHeight}, {0, 0, 0, 0}},
    {{-2, 3, 9, 20}, {5, -2, 0, 0}},
    {{1, -4, 4, 6}, {-1, 4, 0, 0}},
    {{200, 20, 100, 100}, {250, 30, 0, 0}},
    {{0, -32768, 8, 65535}, {3, 32767, 0, 0}},
    {{-32768, 0, 65535, 8}, {32767, 1, 0, 0}},
};

// Colours that take in everything, the same in every run.
SurfacePtr new_trial_surface(std::uint32_t flags, std::uint32_t alpha_mask,
                             std::uint32_t seed) noexcept {
    SurfacePtr surface(SDL_CreateRGBSurface(flags, kTrialWidth, kTrialHeight, 32, 0xFF0000, 0xFF00,
                                            0xFF, alpha_mask));
    if (surface == nullptr) {
        return nullptr;
    }
    for (int y = 0; y < kTrialHeight; ++y) {
        for (int x = 0; x < kTrialWidth; ++x) {
            seed = seed * 1664525U + 1013904223U;
            *pixel_words(byte_at(*surface, x, y)) =
                (seed >> 8 & kAllChannels) | static_cast<std::uint32_t>(x) << 24;
        }
    }
    return surface;
}

// Blits the pieces of a source to a target of this alpha mask, by a loop and by SDL.
bool agrees_on_target(const Loop& loop, SDL_Surface& source, std::uint32_t alpha_mask) noexcept {
    const SurfacePtr by_sdl = new_trial_surface(SDL_SWSURFACE, alpha_mask, 2);
    const SurfacePtr by_us = new_trial_surface(SDL_SWSURFACE, alpha_mask, 2);
    if (by_sdl == nullptr || by_us == nullptr) {
        return false;
    }
    if (!loop.takes(source, *by_us)) {
        return true;
    }
    for (const auto& trial : kTrials) {
        SDL_Rect from = trial.from;
        SDL_Rect to_by_sdl = trial.to;
        SDL_Rect to_by_us = trial.to;
        draw_by(loop, source, &from, *by_us, to_by_us);
        if (SDL_UpperBlit(&source, &from, by_sdl.get(), &to_by_sdl) != 0 ||
            std::memcmp(&to_by_us, &to_by_sdl, sizeof to_by_us) != 0 ||
            std::memcmp(by_us->pixels, by_sdl->pixels, buffer_bytes(*by_us)) != 0) {
            return false;
        }
    }
    return true;
}

bool agrees_with_sdl(const Loop& loop) noexcept {
    const SurfacePtr source = new_trial_surface(loop.trial_flags, loop.trial_alpha_mask, 1);
    return source != nullptr && locks_show(source.get()) && agrees_on_target(loop, *source, 0) &&
           agrees_on_target(loop, *source, kTopByte);
}

std::array<bool, kLoopCount> try_loops() noexcept {
    std::array<bool, kLoopCount> agrees;
    std::transform(std::begin(kLoops), std::end(kLoops), agrees.begin(), agrees_with_sdl);
    return agrees;
}

// The loop that takes a pair of surfaces; null for one that is SDL's.
const Loop* loop_for(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    if (!have_same_format(*source.format, *target.format) || (source.flags & SDL_HWACCEL) != 0 ||
        !has_plain_pixels(&source) || !has_plain_pixels(&target) || share_memory(source, target)) {
        return nullptr;
    }
    static const std::array<bool, kLoopCount> agrees = try_loops();
    for (std::size_t i = 0; i < kLoopCount; ++i) {
        if (agrees[i] && kLoops[i].takes(source, target)) {
            return &kLoops[i];
        }
    }
    return nullptr;
}

}  // namespace

bool blit(SDL_Surface* source, const SDL_Rect* from, SDL_Surface* target, SDL_Rect* to) noexcept {
    if (source == nullptr || target == nullptr) {
        // As SDL itself does; a layer over SDL 2 would read them.
        SDL_SetError("SDL_UpperBlit: passed a NULL surface");
        return false;
    }
    if (const Loop* loop = loop_for(*source, *target)) {
        draw_by(*loop, *source, from, *target, *to);
        return true;
    }
    SDL_Rect piece = from != nullptr ? *from : SDL_Rect{};
    return SDL_UpperBlit(source, from != nullptr ? &piece : nullptr, target, to) == 0;
}

}  // namespace larkspur::pixel
