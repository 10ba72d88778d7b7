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

// The kept Surface, and the SDL surface and its white when g_screen last followed it. pygame
// changes the pointer inside the object when the display is closed or set anew; a new display can
// lie where the old one was.
PyObject* kept_object = nullptr;
SDL_Surface* kept_surface = nullptr;
std::uint32_t kept_white = 0;

std::uint32_t white_of(const SDL_Surface& surface) noexcept {
    return surface.format->Rmask | surface.format->Gmask | surface.format->Bmask;
}

void publish(SDL_Surface* surface) noexcept {
    kept_surface = surface;
    g_screen = surface;
    if (surface != nullptr) {
        COLOR_WHITE = kept_white = white_of(*surface);
    }
}

void raise_without_display(const char* function) noexcept {
    PyErr_Format(PyExc_RuntimeError,
                 "%s needs a display: call set_SDL_screen() with what display.set_mode() "
                 "returned, and keep it open",
                 function);
}

// Makes g_screen follow the kept object when pygame replaced the surface inside it.
void follow_pygame() noexcept {
    if (kept_object == nullptr) {
        return;
    }
    SDL_Surface* current = peek_surface(kept_object);
    if (current != kept_surface || (current != nullptr && white_of(*current) != kept_white)) {
        publish(current);
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
    publish(surface);
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
    if (surface == kept_surface) {
        const PendingException set_aside;
        object_use_.emplace(kept_object, "the surface of set_SDL_screen()");
        PyErr_Clear();  // a part that lost its parent is no display
        if (!*object_use_) {
            return;
        }
    }
    surface_ = surface;
}

DisplayUse::DisplayUse(const char* function) noexcept : DisplayUse() {
    if (surface_ == nullptr) {
        raise_without_display(function);
    }
}

}  // namespace larkspur
