#include "core/pygame.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "core/collection_pause.h"
#include "core/sdl_identity.h"
#include "larkspur.h"

namespace larkspur {
namespace {

// pygame's own records, as every release from 1.8 to 2.0.3 that is built against SDL 1.2 lays them
// out (against SDL 2 there is one more field).
struct SubsurfaceRecord {
    PyObject* owner;
    int pixel_offset_bytes;
    int x_offset;
    int y_offset;
};

struct SurfaceObject {
    PyObject_HEAD;
    SDL_Surface* surface;  // null once the display it stood for is closed
    SubsurfaceRecord* part;
};

constexpr std::size_t kSurfaceTypeEntry = 0;
constexpr std::size_t kMakeSurfaceEntry = 1;
constexpr std::size_t kPrepareEntry = 1;
constexpr std::size_t kReleaseEntry = 2;

using MakeSurface = PyObject* (*)(SDL_Surface*);
using PartFunction = void (*)(PyObject*);

SurfaceObject* as_surface_object(PyObject* object) noexcept {
    return reinterpret_cast<SurfaceObject*>(object);
}

// A native table and the object that keeps it; without entries when there is none.
struct ExportedTable {
    PyRef owner;
    void* const* entries = nullptr;
};

// The table that a module of pygame exports. Leaves no exception of its own pending; the module may
// be empty.
ExportedTable exported_table(const PyRef& module) noexcept {
    ExportedTable table;
    if (!module) {
        return table;
    }
    const PendingException set_aside;
    table.owner = PyRef::steal(PyObject_GetAttrString(module.get(), "_PYGAME_C_API"));
    PyObject* owner = table.owner.get();
    if (owner != nullptr && Py_TYPE(owner) == &PyCObject_Type) {
        table.entries = static_cast<void**>(PyCObject_AsVoidPtr(owner));
    } else if (owner != nullptr && PyCapsule_CheckExact(owner)) {
        table.entries = static_cast<void**>(PyCapsule_GetPointer(owner, PyCapsule_GetName(owner)));
    }
    PyErr_Clear();
    return table;
}

ExportedTable import_table(const char* module_name) noexcept {
    const PendingException set_aside;
    const PyRef module = PyRef::steal(PyImport_ImportModule(module_name));
    PyErr_Clear();  // pygame is optional until a surface is used
    return exported_table(module);
}

template <std::size_t count>
void copy_table(const ExportedTable& from, void* (&to)[count]) noexcept {
    if (from.entries != nullptr) {
        std::copy_n(from.entries, count, to);
    }
}

// True without a table; else as require_our_sdl().
bool is_on_our_sdl(const ExportedTable& table) noexcept {
    return table.entries == nullptr || require_our_sdl(table.entries);
}

// The cause is another SDL where pygame came after larkspur.
void raise_without_pygame(const char* function) noexcept {
    if (!require_pygame_on_our_sdl()) {
        return;
    }
    PyErr_Format(PyExc_RuntimeError,
                 "%s needs pygame's native tables, and none were found when larkspur was imported; "
                 "install pygame 1.9.6 or 2.0.3, built against SDL 1.2, and import it first",
                 function);
}

// True when `object`, a part of another surface, and all it is a part of still have their pixels.
bool part_is_intact(PyObject* object, const char* function) noexcept {
    for (SurfaceObject* part = as_surface_object(object); part->part != nullptr;) {
        SurfaceObject* owner = as_surface_object(part->part->owner);
        const SDL_Surface* inner = part->surface;
        const SDL_Surface* outer = owner->surface;
        if (outer == nullptr) {
            PyErr_Format(PyExc_RuntimeError,
                         "%s got a subsurface of a display that was closed; make it again",
                         function);
            return false;
        }
        const std::int64_t end = inner->h <= 0
                                     ? 0
                                     : part->part->pixel_offset_bytes +
                                           std::int64_t{inner->h - 1} * inner->pitch +
                                           std::int64_t{inner->w} * inner->format->BytesPerPixel;
        if (inner->pitch != outer->pitch || end > std::int64_t{outer->h} * outer->pitch ||
            inner->format->BytesPerPixel != outer->format->BytesPerPixel) {
            PyErr_Format(
                PyExc_RuntimeError,
                "%s got a subsurface that no longer lies inside its surface; make it again",
                function);
            return false;
        }
        part = owner;
    }
    return true;
}

// The Surface that a part is in the end a part of, borrowed; the object itself when it is no part.
PyObject* whole_of(PyObject* object) noexcept {
    while (as_surface_object(object)->part != nullptr) {
        object = as_surface_object(object)->part->owner;
    }
    return object;
}

// Whether pygame may have failed to set the display anew.
bool display_may_be_lost() noexcept {
    return !has_video_mode() && SDL_WasInit(SDL_INIT_VIDEO) != 0;
}

// False with RuntimeError for the display's Surface after pygame failed to set the display anew:
// SDL has freed the old one's pixels then, and pygame keeps the Surface as it was. Apart from what
// every tile goes through, which would save the registers that this takes.
[[gnu::noinline]] bool require_no_lost_display(PyObject* whole, const char* function) noexcept {
    PyRef current;
    {
        const CollectionPause pause;
        const PendingException set_aside;
        const PyRef display = loaded_module("pygame.display");
        const PyRef get_surface =
            PyRef::steal(display ? PyObject_GetAttrString(display.get(), "get_surface") : nullptr);
        current =
            PyRef::steal(get_surface ? PyObject_CallObject(get_surface.get(), nullptr) : nullptr);
        PyErr_Clear();
    }
    if (current.get() != whole) {
        return true;
    }
    PyErr_Format(PyExc_RuntimeError,
                 "%s got the Surface of a display that was lost when display.set_mode() failed; "
                 "pass what display.set_mode() returns",
                 function);
    return false;
}

// Calls pygame's prepare or release of a part. Preparing makes a weak reference, after pygame has
// looked for the owner's surface: the collector could run code of the host there that closes or
// replaces it.
void call_without_collection(PartFunction function, PyObject* part) noexcept {
    const PendingException set_aside;
    const CollectionPause pause;
    function(part);
    PyErr_Clear();  // a refused lock shows as missing pixels, which the user of them meets
}

// True when SDL takes a subsurface's pixels from where pygame's prepare has just written that they
// are. A layer over SDL 2 remembers for itself where they were when the subsurface was made, and
// shows it while it is locked: in the old display's memory, when the display was set anew since.
bool sdl_finds_pixels(SDL_Surface* subsurface, const char* function) noexcept {
    if (subsurface->pixels == nullptr || SDL_MUSTLOCK(subsurface)) {
        return true;  // found by each lock, or an encoded surface's
    }
    void* const written = subsurface->pixels;
    if (SDL_LockSurface(subsurface) != 0) {
        return true;  // as whoever locks it for use will be told
    }
    void* const remembered = std::exchange(subsurface->pixels, written);
    SDL_UnlockSurface(subsurface);
    if (remembered == written) {
        return true;
    }
    PyErr_Format(PyExc_RuntimeError,
                 "%s got a subsurface of a display that was set anew, and this SDL still looks for "
                 "its pixels in the old one; make it again",
                 function);
    return false;
}

}  // namespace

bool load_pygame_api(PygameApi& api) noexcept {
    const ExportedTable surface = import_table("pygame.surface");
    if (!is_on_our_sdl(surface)) {
        return false;
    }
    copy_table(surface, api.surface);
    copy_table(import_table("pygame.surflock"), api.surflock);
    return true;
}

bool require_pygame_on_our_sdl() noexcept {
    return is_on_our_sdl(exported_table(loaded_module("pygame.surface"))) &&
           is_on_our_sdl(exported_table(loaded_module("pygame.display")));
}

PygameApi& pygame_api() noexcept {
    static PygameApi api = {};
    return api;
}

PyTypeObject* pygame_surface_type(const char* function) noexcept {
    auto* type = static_cast<PyTypeObject*>(pygame_api().surface[kSurfaceTypeEntry]);
    if (type == nullptr) {
        raise_without_pygame(function);
    }
    return type;
}

PyRef wrap_surface(const PygameApi& api, SurfacePtr surface) noexcept {
    const auto make = reinterpret_cast<MakeSurface>(api.surface[kMakeSurfaceEntry]);
    if (make == nullptr) {
        raise_without_pygame("making a Surface");
        return PyRef();
    }
    PyRef object = PyRef::steal(make(surface.get()));
    if (object) {
        static_cast<void>(surface.release());  // the object owns it now
    }
    return object;
}

SDL_Surface* surface_of(PyObject* object, const char* function) noexcept {
    PyTypeObject* type = pygame_surface_type(function);
    if (type == nullptr) {
        return nullptr;
    }
    if (!PyObject_TypeCheck(object, type)) {
        PyErr_Format(PyExc_TypeError, "%s needs a pygame Surface, got %.200s", function,
                     Py_TYPE(object)->tp_name);
        return nullptr;
    }
    SDL_Surface* surface = as_surface_object(object)->surface;
    if (surface == nullptr) {
        PyErr_Format(PyExc_RuntimeError,
                     "%s got the Surface of a display that was closed; pass what "
                     "display.set_mode() returned last",
                     function);
    }
    return surface;
}

SDL_Surface* peek_surface(PyObject* surface_object) noexcept {
    return as_surface_object(surface_object)->surface;
}

SurfaceUse::SurfaceUse(PyObject* object, const char* function) noexcept
    : object_(PyRef::borrow(object)), function_(function) {
    const SDL_Surface* surface = surface_of(object, function);
    if (surface != nullptr && display_may_be_lost()) {
        surface = require_no_lost_display(whole_of(object), function)
                      ? surface_of(object, function)  // again, as pygame was asked
                      : nullptr;
    }
    if (surface == nullptr) {
        return;
    }
    if (!has_separate_rows(*surface)) {
        PyErr_Format(PyExc_ValueError,
                     "%s can't use a surface with rows of %d pixels only %d bytes apart; SDL keeps "
                     "distances below 65536, so make it narrower",
                     function, surface->w, static_cast<int>(surface->pitch));
        return;
    }
    in_use_ = as_surface_object(object)->part == nullptr || find_part();
}

// Has pygame find a part's pixels again. False with an exception when they are not there.
bool SurfaceUse::find_part() noexcept {
    const auto prepare = reinterpret_cast<PartFunction>(pygame_api().surflock[kPrepareEntry]);
    if (prepare == nullptr) {
        raise_without_pygame(function_);
        return false;
    }
    if (!part_is_intact(object_.get(), function_)) {
        return false;
    }
    // pygame locks all that it is a part of.
    for (const SurfaceObject* part = as_surface_object(object_.get()); part->part != nullptr;) {
        part = as_surface_object(part->part->owner);
        decode_pixel_alpha(part->surface);
    }
    call_without_collection(prepare, object_.get());
    prepared_ = true;
    return part_is_intact(object_.get(), function_) &&
           sdl_finds_pixels(peek_surface(object_.get()), function_);
}

void SurfaceUse::release_part() noexcept {
    const auto release = reinterpret_cast<PartFunction>(pygame_api().surflock[kReleaseEntry]);
    if (release != nullptr) {
        call_without_collection(release, object_.get());
    }
}

SurfaceUse::operator bool() const noexcept {
    return in_use_ && (peek_surface(object_.get()) != nullptr ||
                       surface_of(object_.get(), function_) != nullptr);  // which raises
}

bool ready_for_pygame(PyObject* object, const char* function) noexcept {
    const SurfaceUse use(object, function);
    if (!use) {
        return false;
    }
    decode_pixel_alpha(use.get());
    return true;
}

bool require_32_bit(const SDL_Surface& surface, const char* function) noexcept {
    if (has_32_bit_pixels(surface)) {
        return true;
    }
    PyErr_Format(PyExc_ValueError,
                 "%s needs a surface of 32 bits per pixel, got %d; convert it with "
                 "Surface.convert(32)",
                 function, static_cast<int>(surface.format->BitsPerPixel));
    return false;
}

bool require_pixels(const SurfaceLock& lock, const char* function) noexcept {
    if (lock) {
        return true;
    }
    PyErr_Format(PyExc_RuntimeError, "%s can't lock the surface to reach its pixels: %s", function,
                 SDL_GetError());
    return false;
}

}  // namespace larkspur

extern "C" struct _object* PySurface_FromSurface(SDL_Surface* surface) {
    return larkspur::wrap_surface(larkspur::pygame_api(), larkspur::SurfacePtr(surface)).release();
}
