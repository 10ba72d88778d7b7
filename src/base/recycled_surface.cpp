#include "base/recycled_surface.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

namespace larkspur {
namespace {

// The flags, and what SDL has no function for but holders change all the same.
auto layout_of(const SDL_Surface& surface) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    return std::make_tuple(surface.flags, surface.w, surface.h, format.Rmask, format.Gmask,
                           format.Bmask, format.Amask, format.Rshift, format.Gshift, format.Bshift,
                           format.Ashift);
}

// What a surface is asked for with: SDL can give it other flags and masks.
auto request_of(Uint32 flags, int width, int height, int depth,
                const SDL_PixelFormat& masks) noexcept {
    return std::make_tuple(flags, width, height, depth, masks.Rmask, masks.Gmask, masks.Bmask,
                           masks.Amask);
}

using Layout = decltype(layout_of(std::declval<const SDL_Surface&>()));
using Request = decltype(request_of(0, 0, 0, 0, std::declval<const SDL_PixelFormat&>()));

struct Kept {
    SDL_Surface* surface;  // a share of ours
    Request request;
    Layout as_made;
};

// Eight displays of 1024 x 1024 pixels, or four of 1920 x 1080.
constexpr std::size_t kMostBytes = 32U << 20;
constexpr std::ptrdiff_t kMostSurfaces = 8;

// Never released at the end of the process, when SDL may be gone.
std::array<Kept, kMostSurfaces> kept_surfaces = {};
auto kept_end = kept_surfaces.begin();

// Whether only this unit holds it, and nobody left it locked or run-length encoded: to decode one
// takes longer than to make another.
bool is_free(const Kept& kept) noexcept {
    return kept.surface->refcount == 1 && has_plain_pixels(kept.surface);
}

// Puts back what SDL has functions for, and says whether the surface is as it was made.
//
// REQUIRES: it is free.
bool is_made_anew(const Kept& kept) noexcept {
    SDL_Surface* surface = kept.surface;
    SDL_SetColorKey(surface, 0, 0);
    // There and back: when flags change, SDL forgets by which loop it drew the surface last, and
    // where to. After a conversion that may be one that leaves the alpha out.
    const Uint32 alpha_flag = std::get<0>(kept.as_made) & SDL_SRCALPHA;
    SDL_SetAlpha(surface, alpha_flag ^ SDL_SRCALPHA, SDL_ALPHA_OPAQUE);
    SDL_SetAlpha(surface, alpha_flag, SDL_ALPHA_OPAQUE);
    SDL_SetClipRect(surface, nullptr);
    return layout_of(*surface) == kept.as_made;
}

template <typename Condition>
void let_go_if(const Condition& condition) noexcept {
    kept_end = std::remove_if(kept_surfaces.begin(), kept_end, [&](const Kept& kept) {
        if (!condition(kept)) {
            return false;
        }
        if (kept.surface->refcount == 1) {
            decode_pixel_alpha(kept.surface);  // SDL undoes what locks its last holder left
        }
        SDL_FreeSurface(kept.surface);
        return true;
    });
}

bool has_room_for(const SDL_Surface& surface) noexcept {
    std::size_t bytes = buffer_bytes(surface);
    for (auto kept = kept_surfaces.begin(); kept != kept_end; ++kept) {
        bytes += buffer_bytes(*kept->surface);
    }
    return kept_end != kept_surfaces.end() && bytes <= kMostBytes;
}

void keep(SDL_Surface* surface, const Request& request) noexcept {
    // Where a lock that a holder leaves behind does not show, no surface can be used again; nor one
    // in video memory, which goes with its mode, or whose colours can be changed.
    if (!has_plain_pixels(surface) || !locks_show(surface) || surface->format->palette != nullptr ||
        buffer_bytes(*surface) > kMostBytes) {
        return;
    }
    if (!has_room_for(*surface)) {
        // What others hold may be pictures that stay; what is free has just served.
        let_go_if([](const Kept& kept) { return !is_free(kept); });
    }
    if (!has_room_for(*surface)) {
        let_go_if([](const Kept&) { return true; });
    }
    ++surface->refcount;
    *kept_end++ = {surface, request, layout_of(*surface)};
}

}  // namespace

RecycledSurface recycled_surface(Uint32 flags, int width, int height, int depth,
                                 const SDL_PixelFormat& masks) noexcept {
    const Request request = request_of(flags, width, height, depth, masks);
    const auto kept = std::find_if(kept_surfaces.begin(), kept_end, [&](const Kept& candidate) {
        return candidate.request == request && is_free(candidate) && is_made_anew(candidate);
    });
    if (kept != kept_end) {
        ++kept->surface->refcount;
        return {SurfacePtr(kept->surface), false};
    }
    SurfacePtr made = new_surface(flags, width, height, depth, masks);
    if (made != nullptr) {
        keep(made.get(), request);
    }
    return {std::move(made), true};
}

}  // namespace larkspur
