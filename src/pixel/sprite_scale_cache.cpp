// Transformed, filled and faded copies of sprites' subimages, kept per sprite. Only native callers
// use them: sprite_scalecache_add() and its contract stand in the public header.
#include "core/python.h"

#include <SDL.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

#include "base/console.h"
#include "base/surface.h"
#include "core/collection_pause.h"
#include "core/display.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "larkspur.h"
#include "pixel/kernels/colour.h"
#include "pixel/surface/blit.h"
#include "pixel/surface/flip.h"
#include "pixel/surface/picture.h"
#include "pixel/surface/tint.h"
#include "types/sprite.h"

namespace larkspur::pixel {
namespace {

constexpr char kFunction[] = "sprite_scalecache_add()";

// What the copy shall be; widths and heights are negative for mirrored ones.
struct Transform {
    std::int64_t width;
    std::int64_t height;
    int angle_degrees;
    int colour;
    int alpha;
    bool rgba_copy;
};

// Wraps what `make` makes of the surface inside an object; empty, with an exception, when it makes
// nothing or the object is no usable Surface.
template <typename Make>
PyRef remade(PyObject* object, Make make) noexcept {
    const SurfaceUse use(object, kFunction);
    return use ? wrap_surface(pygame_api(), make(use.get())) : PyRef();
}

PyRef mirrored(PyRef image, bool left_right, bool top_bottom) noexcept {
    if (!left_right && !top_bottom) {
        return image;
    }
    return remade(image.get(), [&](SDL_Surface* surface) {
        return left_right && top_bottom ? pixel::flip_vh(surface)
               : left_right             ? pixel::flip_h(surface)
                                        : pixel::flip_v(surface);
    });
}

PyRef scaled_and_turned(PyRef image, std::int64_t width, std::int64_t height,
                        int angle_degrees) noexcept {
    const SDL_Surface* surface = surface_of(image.get(), kFunction);
    if (surface == nullptr) {
        return PyRef();
    }
    const bool natural_size = width == surface->w && height == surface->h;
    if (angle_degrees == 0 && natural_size) {
        return image;
    }
    return remade(image.get(), [&](SDL_Surface* source) {
        const double x_factor = static_cast<double>(width) / source->w;
        const double y_factor = static_cast<double>(height) / source->h;
        if (angle_degrees != 0 && x_factor == y_factor) {
            return turned_picture(source, angle_degrees, x_factor);
        }
        SurfacePtr scaled = scaled_picture(source, width, height);
        return angle_degrees != 0 ? turned_picture(scaled.get(), angle_degrees, 1.0)
                                  : std::move(scaled);
    });
}

// Calls a method of a Surface. Empty with an exception when that fails, or it can't be used.
PyRef call_method(PyObject* object, const char* name, PyRef arguments) noexcept {
    const PyRef method = PyRef::steal(PyObject_GetAttrString(object, name));
    const CollectionPause pause;
    return method && arguments && ready_for_pygame(object, kFunction)
               ? PyRef::steal(PyObject_CallObject(method.get(), arguments.get()))
               : PyRef();
}

// The image, or its copy while it is still the sprite's own, which never changes. Empty when there
// is no copy to be had: pygame asks as little as SDL whether it can be made.
PyRef changeable(PyRef image, PyObject* original) noexcept {
    if (image.get() != original) {
        return image;
    }
    const SDL_Surface* surface = surface_of(original, kFunction);
    if (surface == nullptr || has_key_outside_palette(*surface) ||
        !may_change_key_or_alpha(*surface)) {
        return PyRef();
    }
    return call_method(original, "copy", PyRef::steal(Py_BuildValue("()")));
}

void fill(PyObject* image, int colour) noexcept {
    if (!call_method(image, "fill", PyRef::steal(Py_BuildValue("(i)", colour)))) {
        PyErr_Clear();  // a colour that the image does not take leaves it as it is
    }
}

// Its pixels on transparent black, in these masks.
SurfacePtr copied(SDL_Surface* source, const SDL_PixelFormat& masks) noexcept {
    SurfacePtr copy = new_surface(SDL_SWSURFACE, source->w, source->h, 32, masks);
    if (copy != nullptr) {
        SDL_Rect place = {};
        blit(source, nullptr, copy.get(), &place);
    }
    return copy;
}

SurfacePtr rgba_copied(SDL_Surface* source, int alpha) noexcept {
    SurfacePtr copy = copied(source, *source->format);
    if (copy == nullptr || alpha == kOpaque) {
        return copy;
    }
    const DisplayUse display;
    if (!display) {
        return nullptr;
    }
    SDL_SetAlpha(copy.get(), SDL_SRCALPHA, static_cast<std::uint8_t>(alpha));
    return copied(copy.get(), *display.get()->format);
}

// False when the image is no usable Surface.
bool fade(PyObject* image, int alpha) noexcept {
    const SurfaceUse use(image, kFunction);
    if (!use || !may_change_key_or_alpha(*use.get())) {
        return false;
    }
    const auto alpha_byte = static_cast<std::uint8_t>(alpha);
    // Outside the lock: setting the alpha of an encoded surface decodes it, a second time inside.
    SDL_SetAlpha(use.get(), SDL_SRCALPHA, alpha_byte);
    translucentify(use.get(), alpha_byte);
    return true;
}

PyRef transformed(PyObject* original, const Transform& wanted) noexcept {
    PyRef image = mirrored(PyRef::borrow(original), wanted.width < 0, wanted.height < 0);
    if (image) {
        image = scaled_and_turned(std::move(image), std::abs(wanted.width), std::abs(wanted.height),
                                  wanted.angle_degrees);
    }
    if (image && static_cast<std::uint32_t>(wanted.colour) != display_white()) {
        image = changeable(std::move(image), original);
        if (image) {
            fill(image.get(), wanted.colour);
        }
    }
    if (image && wanted.rgba_copy) {
        return remade(image.get(),
                      [&](SDL_Surface* surface) { return rgba_copied(surface, wanted.alpha); });
    }
    if (image && wanted.alpha != kOpaque) {
        image = changeable(std::move(image), original);
        if (image && !fade(image.get(), wanted.alpha)) {
            return PyRef();
        }
    }
    return image;
}

PyRef subimage_of(PyObject* sprite, int index) noexcept {
    if (sprite == nullptr || Py_TYPE(sprite) != &sprite_type) {
        return PyRef();
    }
    const PyRef subimages = PyRef::borrow(reinterpret_cast<SpriteObject*>(sprite)->subimages);
    return subimages ? PyRef::steal(PySequence_GetItem(subimages.get(), index)) : PyRef();
}

// Storing runs the key's code, which may take the sprite's cache away.
bool store(PyObject* sprite, PyObject* key, PyObject* image) noexcept {
    const PyRef cache = PyRef::borrow(reinterpret_cast<SpriteObject*>(sprite)->scalecache);
    return cache && key != nullptr && PyDict_Check(cache.get()) &&
           PyDict_SetItem(cache.get(), key, image) == 0;
}

PyRef add_to_scale_cache(PyObject* sprite, PyObject* key, int subimage,
                         const Transform& wanted) noexcept {
    // Images may be of types whose methods are Python code: nothing that is used later may go.
    const PyRef sprite_held = PyRef::borrow(sprite);
    const PyRef key_held = PyRef::borrow(key);
    const PyRef original = subimage_of(sprite, subimage);
    if (!original) {
        write_stderr("sequence error.\n");
        return PyRef();
    }
    PyRef image = transformed(original.get(), wanted);
    if (!image) {
        write_stderr("No source?\n");
        return PyRef();
    }
    if (!store(sprite, key, image.get())) {
        write_stderr("Error storing item in scalecache.\n");
        return PyRef();
    }
    return image;
}

// As a native caller wants it: whatever exception is pending stays, and none is added, as lines on
// standard error have told what failed.
PyObject* add_for_native_caller(PyObject* sprite, PyObject* key, int subimage,
                                const Transform& wanted) noexcept {
    const PendingException set_aside;
    PyRef image = add_to_scale_cache(sprite, key, subimage, wanted);
    PyErr_Clear();
    return image.release();
}

}  // namespace
}  // namespace larkspur::pixel

extern "C" struct _object* sprite_scalecache_add(PyObject* sprite, PyObject* key, int subimage,
                                                 int width, int height, int angle, int /*ignored*/,
                                                 int colour, int alpha, int rgba_copy) {
    return larkspur::pixel::add_for_native_caller(
        sprite, key, subimage, {width, height, angle, colour, alpha, rgba_copy != 0});
}
