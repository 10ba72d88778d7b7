#include "core/python.h"

#include "pixel/transform.h"

#include <utility>

#include "base/convert.h"
#include "base/surface.h"
#include "core/pygame.h"
#include "pixel/surface/flip.h"
#include "pixel/surface/zoom.h"
#include "pixel/zoom_guard.h"

namespace larkspur {
namespace {

PyObject* flip(PyObject* args, SurfacePtr (*flipped)(SDL_Surface*), const char* function) noexcept {
    PyObject* object = nullptr;
    if (!PyArg_ParseTuple(args, "O", &object)) {
        return nullptr;
    }
    const SurfaceUse source(object, function);
    if (!source) {
        return nullptr;
    }
    return wrap_surface(pygame_api(), flipped(source.get())).release();
}

}  // namespace

PyObject* rotoscale(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* object = nullptr;
    float x_scale = 0;
    float y_scale = 0;
    float angle_degrees = 0;
    if (!PyArg_ParseTuple(args, "Offf", &object, &x_scale, &y_scale, &angle_degrees)) {
        return nullptr;
    }
    const SurfaceUse source(object, "rotoscale()");
    if (!source || !pixel::require_no_obstacle(
                       pixel::turn_obstacle(*source.get(), x_scale, y_scale), "rotoscale()")) {
        return nullptr;
    }
    const double whole_degrees = truncate_to_int32(angle_degrees);
    SurfacePtr result =
        x_scale == y_scale
            ? pixel::rotozoomed(source.get(), whole_degrees, x_scale, false)
            : pixel::rotozoomed_xy(source.get(), whole_degrees, x_scale, y_scale, false);
    if (result != nullptr) {
        SDL_SetColorKey(result.get(), 0, 0);
    }
    return wrap_surface(pygame_api(), std::move(result)).release();
}

PyObject* scale(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* object = nullptr;
    float x_scale = 0;
    float y_scale = 0;
    if (!PyArg_ParseTuple(args, "Off", &object, &x_scale, &y_scale)) {
        return nullptr;
    }
    const SurfaceUse source(object, "scale()");
    if (!source || !pixel::require_no_obstacle(
                       pixel::zoom_obstacle(*source.get(), x_scale, y_scale), "scale()")) {
        return nullptr;
    }
    SurfacePtr result = pixel::zoomed(source.get(), x_scale, y_scale, true);
    if (result == nullptr) {
        return nullptr;
    }
    if ((source.get()->flags & SDL_SRCCOLORKEY) != 0 &&
        SDL_SetColorKey(result.get(), SDL_SRCCOLORKEY, source.get()->format->colorkey) != 0) {
        return nullptr;
    }
    return wrap_surface(pygame_api(), std::move(result)).release();
}

PyObject* flip_vh(PyObject* /*module*/, PyObject* args) noexcept {
    return flip(args, pixel::flip_vh, "flip_vh()");
}

PyObject* flip_v(PyObject* /*module*/, PyObject* args) noexcept {
    return flip(args, pixel::flip_v, "flip_v()");
}

PyObject* flip_h(PyObject* /*module*/, PyObject* args) noexcept {
    return flip(args, pixel::flip_h, "flip_h()");
}

}  // namespace larkspur
