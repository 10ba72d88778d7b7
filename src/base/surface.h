// SDL surfaces: who owns them, their locks and memory, their conversion, and whether there is a
// video mode. Knows nothing of Python.
#pragma once

#include <SDL.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

namespace larkspur {

struct SurfaceDeleter {
    void operator()(SDL_Surface* surface) const noexcept { SDL_FreeSurface(surface); }
};

/// Owns an SDL surface.
using SurfacePtr = std::unique_ptr<SDL_Surface, SurfaceDeleter>;

/// True when every pixel of the surface is a 32-bit word.
inline bool has_32_bit_pixels(const SDL_Surface& surface) noexcept {
    return surface.format->BytesPerPixel == 4;
}

/// True when no row of a surface reaches into the next one. SDL keeps the pitch of memory that is
/// not its own modulo 65536.
inline bool has_separate_rows(const SDL_Surface& surface) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    const std::int64_t width = surface.w;
    if (surface.pitch >= width * format.BytesPerPixel) {
        return true;
    }
    return format.BitsPerPixel < 8 && surface.pitch >= (width * format.BitsPerPixel + 7) / 8;
}

/// Decodes a picture that SDL has run-length encoded by the alpha of its pixels; it still asks to
/// be encoded when it is drawn again. When SDL unlocks such a picture for the last time, it encodes
/// it for the target of its last blit, which may be gone. Leaves all other surfaces, and locks,
/// alone.
inline void decode_pixel_alpha(SDL_Surface* surface) noexcept {
    // A colour key takes precedence over alpha.
    if ((surface->flags & (SDL_RLEACCEL | SDL_SRCCOLORKEY)) != SDL_RLEACCEL) {
        return;
    }
    if (surface->locked != 0 && surface->pixels != nullptr) {
        // The lock has decoded it, and SDL crashes where it decodes one a second time.
        surface->flags &= ~static_cast<Uint32>(SDL_RLEACCEL);
    }
    const Uint8 alpha = surface->format->alpha;
    SDL_SetAlpha(surface, 0, alpha);
    SDL_SetAlpha(surface, SDL_SRCALPHA | SDL_RLEACCEL, alpha);
}

/// Makes a surface's pixels touchable for a scope. Locks only what must be locked: a surface that
/// says so itself, or one whose pixels are null because it is run-length encoded. Plain software
/// surfaces are left alone. False when the surface is null or cannot be locked, or when its rows
/// overlap; SDL's error says which.
class SurfaceLock {
 public:
    explicit SurfaceLock(SDL_Surface* surface) noexcept {
        if (surface == nullptr) {
            return;
        }
        if (!has_separate_rows(*surface)) {
            SDL_SetError("The surface's rows overlap");
            return;
        }
        decode_pixel_alpha(surface);
        const bool must_lock = SDL_MUSTLOCK(surface) || surface->pixels == nullptr;
        if (must_lock) {
            if (SDL_LockSurface(surface) != 0) {
                SDL_SetError("The surface can't be locked");  // not all drivers say so
                return;
            }
            locked_ = surface;
        }
        // A surface without an area has no pixels, locked or not; nobody will touch any.
        usable_ = surface->pixels != nullptr || surface->w == 0 || surface->h == 0;
        if (!usable_) {
            SDL_SetError("The surface has no pixels");
        }
    }
    SurfaceLock(const SurfaceLock&) = delete;
    SurfaceLock& operator=(const SurfaceLock&) = delete;
    ~SurfaceLock() {
        if (locked_ != nullptr) {
            SDL_UnlockSurface(locked_);
        }
    }

    explicit operator bool() const noexcept { return usable_; }

 private:
    SDL_Surface* locked_ = nullptr;
    bool usable_ = false;
};

/// Number of bytes of a surface's pixel buffer from its first pixel on: pitch x height, row padding
/// included. A surface around memory that is not its own (a part of another surface) ends at its
/// last pixel: what would be padding behind it may lie outside the memory.
inline std::size_t buffer_bytes(const SDL_Surface& surface) noexcept {
    if (surface.w <= 0 || surface.h <= 0) {
        return 0;
    }
    const auto rows = static_cast<std::size_t>(surface.h);
    if ((surface.flags & SDL_PREALLOC) == 0) {
        return rows * surface.pitch;
    }
    return (rows - 1) * surface.pitch +
           static_cast<std::size_t>(surface.w) * surface.format->BytesPerPixel;
}

/// Sets all bytes of the first rows of a surface to 0, the padding included; its pixels can be
/// touched.
inline void clear_first_rows(const SDL_Surface& surface, int rows) noexcept {
    std::memset(surface.pixels, 0, static_cast<std::size_t>(rows) * surface.pitch);
}

/// True when a surface's pixels are plain memory: there, without the need of a lock, and not locked
/// by anyone, which would make SDL refuse to blit. Trust it only where locks_show().
inline bool has_plain_pixels(const SDL_Surface* surface) noexcept {
    return surface->pixels != nullptr && surface->locked == 0 && !SDL_MUSTLOCK(surface);
}

/// Whether this SDL counts locks in the surface's record, tried out on a surface: a layer over
/// SDL 2 counts them in a surface of its own behind the record.
inline bool locks_show(SDL_Surface* surface) noexcept {
    if (SDL_LockSurface(surface) != 0) {
        return false;
    }
    const bool shown = surface->locked != 0;
    SDL_UnlockSurface(surface);
    return shown;
}

/// True while a video mode is set. A layer over SDL 2 may go on answering with the record of a
/// display that was closed, emptied.
inline bool has_video_mode() noexcept {
    const SDL_Surface* surface = SDL_GetVideoSurface();
    return surface != nullptr && surface->format != nullptr;
}

/// Number of bytes from which on SDL makes no surface; a layer over SDL 2 would.
constexpr double kRefusedBytes = 2147483648.0;

/// As SDL_CreateRGBSurface(), in the masks of a format. Null, with SDL's error set, also from
/// kRefusedBytes on: SDL 1.2 gives such a surface up by way of a field that it has not set yet.
///
/// @param width, height pixels, not negative
/// @param depth bits a pixel
inline SurfacePtr new_surface(Uint32 flags, int width, int height, int depth,
                              const SDL_PixelFormat& masks) noexcept {
    const int pixel_bytes = (depth + 7) / 8;
    if (static_cast<double>(pixel_bytes) * width * height >= kRefusedBytes) {
        SDL_OutOfMemory();
        return nullptr;
    }
    return SurfacePtr(SDL_CreateRGBSurface(flags, width, height, depth, masks.Rmask, masks.Gmask,
                                           masks.Bmask, masks.Amask));
}

/// False, with SDL's error set, when somebody holds a lock on a picture that was run-length
/// encoded: it is decoded then and still says that it is encoded, and SDL crashes where it changes
/// its colour key or alpha, as it does to convert it.
inline bool may_change_key_or_alpha(const SDL_Surface& surface) noexcept {
    if (surface.locked != 0 && (surface.flags & SDL_RLEACCEL) != 0) {
        SDL_SetError("Surfaces must not be locked during blit");  // as SDL itself says elsewhere
        return false;
    }
    return true;
}

/// True when a surface of palette colours has a colour key that is no place in its palette. SDL and
/// SDL_gfx look the key up there all the same where they carry it over to another format.
inline bool has_key_outside_palette(const SDL_Surface& surface) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    return (surface.flags & SDL_SRCCOLORKEY) != 0 && format.palette != nullptr &&
           format.colorkey >= static_cast<Uint32>(format.palette->ncolors);
}

/// As SDL_ConvertSurface(). The colour key and the alpha of a surface outlive its conversion to a
/// format without alpha whatever the flags say; a layer over SDL 2 wants to be asked. SDL 1.2 is
/// not asked, which could move the picture into video memory. Null, with SDL's error set, also for
/// a colour key that would have to be looked up outside of the palette, and for an encoded picture
/// that is locked.
inline SurfacePtr converted(SDL_Surface* surface, SDL_PixelFormat* format, Uint32 flags) noexcept {
    if (!may_change_key_or_alpha(*surface)) {
        return nullptr;
    }
    // Where the new format has alpha, a key becomes that unless the flags ask for a key.
    const bool keeps_key = format->Amask == 0 || (flags & SDL_SRCCOLORKEY) != 0;
    if (keeps_key && has_key_outside_palette(*surface)) {
        SDL_SetError("The colour key is no place in the palette");
        return nullptr;
    }
    const Uint32 kept = surface->flags & (SDL_SRCCOLORKEY | SDL_SRCALPHA);
    auto result = SurfacePtr(SDL_ConvertSurface(surface, format, flags));
    if (result != nullptr && format->Amask == 0 && (kept & ~result->flags) != 0) {
        result = SurfacePtr(SDL_ConvertSurface(surface, format, flags | kept));
    }
    return result;
}

/// True when the pixel buffers of two surfaces overlap.
inline bool share_memory(const SDL_Surface& a, const SDL_Surface& b) noexcept {
    const auto start_a = reinterpret_cast<std::uintptr_t>(a.pixels);
    const auto start_b = reinterpret_cast<std::uintptr_t>(b.pixels);
    return start_a < start_b + buffer_bytes(b) && start_b < start_a + buffer_bytes(a);
}

}  // namespace larkspur
