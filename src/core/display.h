// The display: the surface that is drawn on and whose format all surfaces made here share.
#pragma once

#include "core/python.h"

#include <SDL.h>

#include <cstdint>
#include <optional>

#include "core/pygame.h"

namespace larkspur {

/// Module function set_SDL_screen(surface): keeps the pygame Surface and sets g_screen and
/// COLOR_WHITE to its SDL surface and white. Returns None; TypeError for anything but a Surface,
/// RuntimeError when pygame by now uses another SDL than larkspur.
PyObject* set_sdl_screen(PyObject* module, PyObject* args) noexcept;

/// Module function init_subsystems(): initialises SDL's video subsystem; returns None.
PyObject* init_subsystems(PyObject* module, PyObject* args) noexcept;

/// The display's surface; null when none was set, or there is no video mode any more. Follows
/// pygame when it closed or replaced the display since. Sets no exception.
SDL_Surface* display_surface() noexcept;

/// As display_surface(), but raises RuntimeError when there is none.
SDL_Surface* require_display(const char* function) noexcept;

/// White in the display's format, without alpha; 0 before any display was set.
std::uint32_t display_white() noexcept;

/// The pygame Surface last given to set_SDL_screen(), borrowed; null before.
PyObject* screen_surface_object() noexcept;

/// Holds the display for a scope in which its pixels are used: the kept Surface stays alive and,
/// should it be a subsurface of another, has its pixels found again. False when there is no
/// display: without an exception when made for a native caller, with RuntimeError when made with
/// the name of a module function. As SurfaceUse it looks for the surface anew when it is asked, and
/// is false with RuntimeError once that is gone.
class DisplayUse {
 public:
    DisplayUse() noexcept;
    explicit DisplayUse(const char* function) noexcept;

    SDL_Surface* get() const noexcept { return kept_ ? kept_->get() : foreign_; }
    explicit operator bool() const noexcept {
        return kept_ ? static_cast<bool>(*kept_) : foreign_ != nullptr;
    }

 private:
    std::optional<SurfaceUse> kept_;
    SDL_Surface* foreign_ = nullptr;  // stored by a native caller
};

}  // namespace larkspur
