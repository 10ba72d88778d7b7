#include "core/display.h"

#include <utility>

#include "core/py_ref.h"
#include "larkspur.h"

extern "C" {
SDL_Surface* g_screen = nullptr;
uint32_t COLOR_WHITE = 0;
}

namespace larkspur {
namespace {

// The Surface that the host gave last to set_SDL_screen().
PyObject* kept_object = nullptr;

// What was inside it when g_screen and COLOR_WHITE were last set from it. pygame puts another
// surface inside when the display is set anew, and none when it is closed; to notice takes both.
// g_screen itself doesn't tell, as a native caller may have stored a surface of its own there. Nor
// does the address alone: a new display can lie where the old one was, with a format of its own.
SDL_Surface* seen_surface = nullptr;
std::uint32_t seen_white = 0;

std::uint32_t white_of(const SDL_Surface& surface) noexcept {
    return surface.format->Rmask | surface.format->Gmask | surface.format->Bmask;
}

// Sets the exported variables to what pygame has inside the kept object now. COLOR_WHITE outlives a
// display that was closed.
void set_exported_display(SDL_Surface* surface) noexcept {
    g_screen = seen_surface = surface;
    if (surface != nullptr) {
        COLOR_WHITE = seen_white = white_of(*surface);
    }
}

void raise_without_display(const char* function) noexcept {
    PyErr_Format(PyExc_RuntimeError,
                 "%s needs a display: call set_SDL_screen() with what display.set_mode() "
                 "returned, and keep it open",
                 function);
}

// Sets the exported variables anew when pygame has replaced the surface inside the kept object.
void follow_pygame() noexcept {
    if (kept_object == nullptr) {
        return;
    }
    SDL_Surface* current = peek_surface(kept_object);
    if (current != seen_surface || (current != nullptr && white_of(*current) != seen_white)) {
        set_exported_display(current);
    }
}

}  // namespace

PyObject* set_sdl_screen(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* object = nullptr;
    if (!PyArg_ParseTuple(args, "O", &object)) {
        return nullptr;
    }
    if (!require_pygame_on_our_sdl()) {
        return nullptr;
    }
    SDL_Surface* surface = surface_of(object, "set_SDL_screen()");
    if (surface == nullptr) {
        return nullptr;
    }
    Py_INCREF(object);
    PyObject* old = std::exchange(kept_object, object);
    set_exported_display(surface);
    Py_XDECREF(old);
    return new_none();
}

PyObject* init_subsystems(PyObject* /*module*/, PyObject* /*args*/) noexcept {
    SDL_InitSubSystem(SDL_INIT_VIDEO);
    return new_none();
}

SDL_Surface* display_surface() noexcept {
    follow_pygame();
    return has_video_mode() ? g_screen : nullptr;
}

SDL_Surface* require_display(const char* function) noexcept {
    SDL_Surface* surface = display_surface();
    if (surface == nullptr) {
        raise_without_display(function);
    }
    return surface;
}

std::uint32_t display_white() noexcept {
    follow_pygame();
    return COLOR_WHITE;
}

PyObject* screen_surface_object() noexcept {
    return kept_object;
}

DisplayUse::DisplayUse() noexcept {
    SDL_Surface* surface = display_surface();
    if (surface == nullptr) {
        return;
    }
    if (surface != seen_surface) {
        foreign_ = surface;
        return;
    }
    const PendingException set_aside;
    kept_.emplace(kept_object, "the surface of set_SDL_screen()");
    if (!*kept_) {
        PyErr_Clear();  // a subsurface that lost its parent is no display
        kept_.reset();
    }
}

DisplayUse::DisplayUse(const char* function) noexcept : DisplayUse() {
    if (get() == nullptr) {
        raise_without_display(function);
    }
}

}  // namespace larkspur
