#include "core/python.h"

#include "room/intermediate.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <tuple>
#include <utility>

#include "types/float_list.h"

namespace larkspur {
namespace {

// How many hold a surface, and what they can change of it beside its pixels. A clip rectangle lies
// within the surface, so one of full size starts at its corner.
auto state_of(const SDL_Surface& surface) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    const SDL_Rect& clip = surface.clip_rect;
    return std::make_tuple(surface.refcount, surface.locked, surface.flags, format.alpha, clip.w,
                           clip.h, format.Rmask, format.Gmask, format.Bmask, format.Amask,
                           format.Rshift, format.Gshift, format.Bshift, format.Ashift);
}

struct Kept {
    SDL_Surface* surface;  // a share of ours; null when there is none
    decltype(state_of(std::declval<const SDL_Surface&>())) as_made;
};

// One for each view that needs one of its own; views with ports of one size take turns with one,
// whose memory so stays in the processor's caches. Never released at the end of the process, when
// SDL may be gone.
std::array<Kept, kFloatListLength> kept_surfaces = {};

bool fits(const SDL_Surface& surface, int width, int height,
          const SDL_PixelFormat& format) noexcept {
    const SDL_PixelFormat& own = *surface.format;
    return surface.w == width && surface.h == height && own.Rmask == format.Rmask &&
           own.Gmask == format.Gmask && own.Bmask == format.Bmask && own.Amask == format.Amask;
}

SurfacePtr make_surface(int width, int height, const SDL_PixelFormat& format) noexcept {
    // SDL itself takes a negative size for a huge one.
    if (width < 0 || height < 0 || 4.0 * width * height >= kRefusedBytes) {
        return nullptr;
    }
    return SurfacePtr(SDL_CreateRGBSurface(SDL_SWSURFACE | SDL_SRCALPHA, width, height, 32,
                                           format.Rmask, format.Gmask, format.Bmask, format.Amask));
}

}  // namespace

SurfacePtr intermediate_surface(int view, int width, int height,
                                const SDL_PixelFormat& format) noexcept {
    const auto is_usable = [&](const Kept& kept) {
        return kept.surface != nullptr && fits(*kept.surface, width, height, format) &&
               state_of(*kept.surface) == kept.as_made;
    };
    Kept* kept = std::find_if(kept_surfaces.begin(), kept_surfaces.end(), is_usable);
    if (kept != kept_surfaces.end()) {
        std::fill_n(static_cast<std::uint8_t*>(kept->surface->pixels), buffer_bytes(*kept->surface),
                    std::uint8_t{0});
    } else {
        kept = &kept_surfaces[view];
        SurfacePtr(std::exchange(kept->surface, nullptr)).reset();  // its memory may serve again
        SurfacePtr made = make_surface(width, height, format);
        // Where a lock that a holder leaves behind does not show, no surface can be used again; nor
        // one in video memory, which goes with its mode.
        if (made == nullptr || !has_plain_pixels(made.get()) || !locks_show(made.get())) {
            return made;
        }
        *kept = {made.get(), state_of(*made)};
        static_cast<void>(made.release());
    }
    ++kept->surface->refcount;
    return SurfacePtr(kept->surface);
}

}  // namespace larkspur
