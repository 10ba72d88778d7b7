// pygame's native interface: its Surface objects seen from C++.
#pragma once

#include "core/python.h"

#include <SDL.h>

#include "base/surface.h"
#include "core/py_ref.h"

namespace larkspur {

/// The heads of the two native tables that pygame exports, copied entry by entry. All null when
/// pygame is not there or exports no table.
struct PygameApi {
    void* surface[3];   ///< "pygame.surface": [0] the Surface type, [1] makes a Surface
    void* surflock[5];  ///< "pygame.surflock": [1] and [2] prepare and release a part of a surface
};

/// Reads both tables from "_PYGAME_C_API" of "pygame.surface" and "pygame.surflock", which may be a
/// CObject (pygame before 1.9.2) or a PyCapsule. A table that is not there stays as it is.
/// False with RuntimeError, and with both tables as they were, when pygame uses another SDL than
/// larkspur.
bool load_pygame_api(PygameApi& api) noexcept;

/// The copy that everything but room drawing uses; filled when the module is imported.
PygameApi& pygame_api() noexcept;

/// Checks pygame as it is loaded now, which may have come or changed since larkspur was imported.
/// False with RuntimeError when its surfaces or its display use another SDL than larkspur.
bool require_pygame_on_our_sdl() noexcept;

/// pygame's Surface type, borrowed; null with RuntimeError when the table is empty.
PyTypeObject* pygame_surface_type(const char* function) noexcept;

/// Wraps a surface in a new pygame Surface that owns it. Null with an exception: pygame's own error
/// for a null surface, RuntimeError when the table is empty. The surface is freed on failure.
PyRef wrap_surface(const PygameApi& api, SurfacePtr surface) noexcept;

/// The SDL surface inside a pygame Surface (or a subtype), borrowed from it. For sizes and formats
/// only: pixels are reached through SurfaceUse.
/// Null with TypeError when the object is no Surface, with RuntimeError when its display was closed
/// or pygame is not there.
///
/// @param function name of the caller with its brackets, for messages: "scale()"
SDL_Surface* surface_of(PyObject* object, const char* function) noexcept;

/// The SDL surface inside an object that is known to be a pygame Surface, borrowed; null once its
/// display was closed. Sets no exception.
SDL_Surface* peek_surface(PyObject* surface_object) noexcept;

/// Holds a pygame Surface for a scope in which its pixels are used: checks it, keeps it alive, and
/// when it is a part of another surface finds its pixels again, which move whenever the parent is
/// encoded, closed or replaced. Locks nothing else, so SDL can blit from and to it; use SurfaceLock
/// inside to touch pixels directly. False with an exception (as surface_of(), ValueError when its
/// rows overlap, and RuntimeError when a subsurface no longer lies inside its parent, or SDL would
/// not find it there, and for the display after a failed attempt to set it anew).
///
/// No collection starts while it is made, and so no code of the host. All the same both questions
/// look inside the object anew: where two surfaces are used, ask for the first one again once the
/// second one is there.
class SurfaceUse {
 public:
    SurfaceUse(PyObject* object, const char* function) noexcept;
    SurfaceUse(const SurfaceUse&) = delete;
    SurfaceUse& operator=(const SurfaceUse&) = delete;
    ~SurfaceUse() {
        if (prepared_) {
            release_part();
        }
    }

    /// Null when it is not in use, or no longer there.
    SDL_Surface* get() const noexcept { return in_use_ ? peek_surface(object_.get()) : nullptr; }
    explicit operator bool() const noexcept;

 private:
    bool find_part() noexcept;
    void release_part() noexcept;

    PyRef object_;
    const char* function_;
    bool prepared_ = false;
    bool in_use_ = false;
};

/// Readies a pygame Surface for pygame's own functions that draw on it: they read the pixels of a
/// subsurface's owner without asking whether they are there, and lock what SDL may have encoded for
/// a target that is gone. False with an exception, as SurfaceUse.
bool ready_for_pygame(PyObject* object, const char* function) noexcept;

/// Checks that a surface has 32-bit pixels; false with ValueError that names what it has.
bool require_32_bit(const SDL_Surface& surface, const char* function) noexcept;

/// Checks that a lock succeeded; false with RuntimeError when the pixels can't be reached.
bool require_pixels(const SurfaceLock& lock, const char* function) noexcept;

}  // namespace larkspur
