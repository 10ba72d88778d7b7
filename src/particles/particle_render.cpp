#include "particles/particle_render.h"

#include <SDL.h>

#include <cstdint>
#include <utility>

#include "base/console.h"
#include "base/convert.h"
#include "base/surface.h"
#include "core/display.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "larkspur.h"
#include "particles/curves.h"
#include "particles/particle.h"
#include "particles/particle_type.h"
#include "particles/picture_cache.h"
#include "pixel/kernels/colour.h"
#include "pixel/surface/flagged_blit.h"
#include "pixel/surface/picture.h"
#include "pixel/surface/tint.h"

namespace larkspur {
namespace {

constexpr std::uint32_t kNoTint = 0xFFFFFF;  // white by the literal, whatever the display's white
constexpr std::int32_t kOpaque = 255;
constexpr std::int32_t kScaledAngleMask = 0xFF0;  // whole sixteens of degrees, in twelve bits
constexpr Py_ssize_t kScaledCacheBound = 100;     // entries

// How a particle looks and where it is drawn, taken from particle and type before anything runs
// that could change them.
struct Look {
    std::int32_t width;  // drawn size; negative is mirrored
    std::int32_t height;
    bool scaled;
    std::uint32_t colour;
    std::int32_t alpha;
    std::int32_t orientation_degrees;
    std::int16_t centre_x;
    std::int16_t centre_y;
    int blend;
};

std::int32_t alpha_at(const particle_type_record& type, float life_fraction) noexcept {
    float alpha = 0;
    if (life_fraction > 0.5F) {
        const float u = 2 * (life_fraction - 0.5F);
        alpha = u * type.alpha_start + (1 - u) * type.alpha_half;
    } else {
        const float u = 2 * life_fraction;
        alpha = u * type.alpha_half + (1 - u) * type.alpha_end;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(truncate_to_int64(alpha * 255.0F)));
}

// Single precision throughout, each product in the order written: other orders round differently
// and give sizes that are a pixel off.
Look look_of(const particle_record& particle, const particle_type_record& type,
             const SDL_Surface& shape, int x_offset, int y_offset) noexcept {
    const auto shape_width = static_cast<float>(shape.w);
    const auto shape_height = static_cast<float>(shape.h);
    Look look = {};
    if (type.size_wiggle != 0) {
        look.width = truncate_to_int32(shape_width * particle.size * type.xscale);
        look.height = truncate_to_int32(shape_height * particle.size * type.yscale);
        look.scaled = true;
    } else {
        look.width = truncate_to_int32(shape_width * type.xscale * particle.size);
        look.height = truncate_to_int32(shape_height * type.yscale * particle.size);
        look.scaled = look.width != shape.w || look.height != shape.h;
    }
    const float life_fraction = static_cast<float>(particle.ttl) / particle.life;
    look.colour = desired_tint(particle, life_fraction);
    look.alpha = alpha_at(type, life_fraction);
    look.orientation_degrees = truncate_to_int32(particle.orientation);
    look.centre_x = low_16_bits(truncate_to_int32(static_cast<float>(x_offset) + particle.x));
    look.centre_y = low_16_bits(truncate_to_int32(static_cast<float>(y_offset) + particle.y));
    look.blend = type.blend;
    return look;
}

SDL_Rect centred(const Look& look, const SDL_Surface& picture) noexcept {
    SDL_Rect rect = {};
    rect.x = low_16_bits(look.centre_x - (picture.w >> 1));
    rect.y = low_16_bits(look.centre_y - (picture.h >> 1));
    return rect;
}

// Draws a picture on the display at `place`, which is left as the blit leaves it; null is centred.
// False with an exception when picture or display can't be used.
bool blit(PyObject* picture, SDL_Rect* place, const Look& look, const char* function) noexcept {
    const DisplayUse display(function);
    const SurfaceUse use(picture, function);
    if (!display || !use) {
        return false;
    }
    if (pixel::blend_mode_flatten(look.blend) != 0 &&
        (!require_32_bit(*use.get(), function) || !require_32_bit(*display.get(), function))) {
        return false;
    }
    SDL_Rect centre = centred(look, *use.get());
    pixel::flagged_blit(use.get(), display.get(), place != nullptr ? place : &centre, look.blend);
    return true;
}

SurfacePtr in_display_format(SDL_Surface* surface, const SDL_Surface& display) noexcept {
    return converted(surface, display.format, SDL_SRCALPHA);
}

// Fades for an additive blend: takes what is missing to full alpha from every byte.
void darken(SDL_Surface* surface, std::int32_t alpha) noexcept {
    const SurfaceLock lock(surface);
    if (lock) {
        const std::uint32_t loss = ~static_cast<std::uint32_t>(alpha) & 0xFF;
        pixel::satusub(surface->pixels, static_cast<int>(buffer_bytes(*surface)),
                       loss * 0x01010101);
    }
}

// A step in the making of a picture: false when a surface to work on is not 32-bit.
bool tint(SDL_Surface* surface, std::uint32_t colour, const char* function) noexcept {
    if (colour != kNoTint) {
        if (!require_32_bit(*surface, function)) {
            return false;
        }
        pixel::tint_surface(surface, colour);
    }
    return true;
}

bool fade(SDL_Surface* surface, const Look& look, const char* function) noexcept {
    if (!require_32_bit(*surface, function)) {
        return false;
    }
    if (look.blend != 0) {
        darken(surface, look.alpha);
    } else {
        pixel::translucentify(surface, static_cast<std::uint8_t>(look.alpha));
    }
    return true;
}

SurfacePtr turned(SurfacePtr picture, std::int32_t angle_degrees) noexcept {
    return angle_degrees != 0 ? pixel::turned_picture(picture.get(), angle_degrees, 1.0)
                              : std::move(picture);
}

// The makers of the three kinds of cached pictures. Null without an exception when SDL makes
// nothing, with one when a surface can't be worked on.

SurfacePtr make_scaled(SDL_Surface* shape, const SDL_Surface& display, const Look& look,
                       std::int32_t angle_degrees, const char* function) noexcept {
    SurfacePtr picture = pixel::scaled_picture(shape, look.width, look.height);
    if (picture == nullptr || !tint(picture.get(), look.colour, function)) {
        return nullptr;
    }
    // A negative alpha counts as a large one.
    if (static_cast<std::uint32_t>(look.alpha) < static_cast<std::uint32_t>(kOpaque)) {
        if (look.blend != 0) {
            picture = in_display_format(picture.get(), display);
        }
        if (picture == nullptr || !fade(picture.get(), look, function)) {
            return nullptr;
        }
    }
    return turned(std::move(picture), angle_degrees);
}

SurfacePtr make_faded(SDL_Surface* shape, const SDL_Surface& display, const Look& look,
                      std::int32_t angle_degrees, const char* function) noexcept {
    SurfacePtr picture = in_display_format(shape, display);
    if (picture == nullptr) {
        write_stderr("Error reformatting shapesurf: %s\n", SDL_GetError());
        return nullptr;
    }
    if (!tint(picture.get(), look.colour, function) || !fade(picture.get(), look, function)) {
        return nullptr;
    }
    return turned(std::move(picture), angle_degrees);
}

SurfacePtr make_tinted(SDL_Surface* shape, const Look& look) noexcept {
    SurfacePtr picture = pixel::rgba_copy(shape);
    if (picture != nullptr) {
        pixel::tint_surface(picture.get(), look.colour);
    }
    return picture;
}

// Wraps what `make` makes of shape and display. Empty, with or without an exception, when it makes
// nothing.
template <typename Make>
PyRef new_picture(PyObject* shape, const char* function, Make make) noexcept {
    const DisplayUse display(function);
    const SurfaceUse use(shape, function);
    if (!display || !use) {
        return PyRef();
    }
    SurfacePtr picture = make(use.get(), *display.get());
    return picture != nullptr ? wrap_surface(pygame_api(), std::move(picture)) : PyRef();
}

// Scaled and faded pictures: found in the cache or made and kept there, and drawn.
template <typename Make>
bool draw_cached(PyObject* shape, PyObject* cache, const Look& look, std::int32_t angle_degrees,
                 Py_ssize_t bound, const char* function, Make make) noexcept {
    const PictureKey key(look.width, look.height, static_cast<std::int32_t>(look.colour),
                         look.alpha, angle_degrees);
    PyRef picture = key.find_in(cache);
    if (!picture) {
        if (PyErr_Occurred() != nullptr) {
            return false;
        }
        if (PyDict_Size(cache) > bound) {
            PyDict_Clear(cache);
        }
        picture =
            new_picture(shape, function, [&](SDL_Surface* surface, const SDL_Surface& display) {
                return make(surface, display, look, angle_degrees, function);
            });
        if (!picture) {
            return PyErr_Occurred() == nullptr;
        }
        if (!key.store_in(cache, picture.get())) {
            return false;
        }
    }
    return blit(picture.get(), nullptr, look, function);
}

// Pictures at natural size and full alpha. Centred by the shape, and drawn twice when they first
// appear, the second time where the first blit left the rectangle.
bool draw_tinted(PyObject* shape, const SDL_Surface& surface, PyObject* cache, const Look& look,
                 const char* function) noexcept {
    const PictureKey key(look.width, look.height, static_cast<std::int32_t>(look.colour), kOpaque);
    SDL_Rect place = centred(look, surface);
    PyRef picture = key.find_in(cache);
    if (!picture) {
        if (PyErr_Occurred() != nullptr) {
            return false;
        }
        picture = new_picture(shape, function, [&](SDL_Surface* source, const SDL_Surface&) {
            return make_tinted(source, look);
        });
        if (!picture) {
            return PyErr_Occurred() == nullptr;
        }
        if (!blit(picture.get(), &place, look, function) || !key.store_in(cache, picture.get())) {
            return false;
        }
    }
    return blit(picture.get(), &place, look, function);
}

// The size of a type's shape; null with TypeError when the shape can't be drawn.
const SDL_Surface* shape_surface(PyObject* shape, const char* function) noexcept {
    PyTypeObject* surface_type = pygame_surface_type(function);
    if (surface_type == nullptr) {
        return nullptr;
    }
    if (shape == nullptr || !PyObject_TypeCheck(shape, surface_type)) {
        PyErr_Format(PyExc_TypeError,
                     "%s needs a particle type whose shape is a pygame Surface, got %.200s; set "
                     "one with part_type_shape()",
                     function, shape == nullptr ? "none" : Py_TYPE(shape)->tp_name);
        return nullptr;
    }
    return surface_of(shape, function);
}

// Draws a particle. False with an exception when something it needs can't be used. Making and
// keeping a picture can run Python code that changes particle, type and display: the type and its
// shape are held, the rest is looked at before, or again.
bool render(const particle_record& particle, int x_offset, int y_offset,
            const char* function) noexcept {
    const PyRef type_handle = PyRef::borrow(particle.type_handle);
    const particle_type_record& type = ParticleTypeHandle::of(type_handle.get());
    const PyRef shape = PyRef::borrow(type.shape);
    const SDL_Surface* surface = shape_surface(shape.get(), function);
    if (surface == nullptr) {
        return false;
    }
    const Look look = look_of(particle, type, *surface, x_offset, y_offset);
    if (look.width == 0 || look.height == 0) {
        return true;
    }
    if (look.scaled) {
        return draw_cached(shape.get(), type.cache, look,
                           look.orientation_degrees & kScaledAngleMask, kScaledCacheBound, function,
                           make_scaled);
    }
    if (look.alpha != kOpaque) {
        return draw_cached(shape.get(), type.cache, look, look.orientation_degrees, PY_SSIZE_T_MAX,
                           function, make_faded);
    }
    if (look.colour == kNoTint) {
        return blit(shape.get(), nullptr, look, function);
    }
    return draw_tinted(shape.get(), *surface, type.cache, look, function);
}

// An argument that is an int and fits; any other is the parser's to convert or refuse.
bool plain_int(PyObject* object, int& value) noexcept {
    if (!PyInt_CheckExact(object)) {
        return false;
    }
    const long number = PyInt_AS_LONG(object);
    value = static_cast<int>(number);
    return value == number;
}

}  // namespace

PyObject* cparticle_dec_ttl_and_render(PyObject* /*module*/, PyObject* args) noexcept {
    static constexpr char kFunction[] = "CParticle_dec_ttl_and_render()";
    PyObject* object = nullptr;
    int x_offset = 0;
    int y_offset = 0;
    // Made for every particle in every frame, so the usual arguments go past the parser.
    if (PyTuple_GET_SIZE(args) == 3 && plain_int(PyTuple_GET_ITEM(args, 1), x_offset) &&
        plain_int(PyTuple_GET_ITEM(args, 2), y_offset)) {
        object = PyTuple_GET_ITEM(args, 0);
    } else if (!PyArg_ParseTuple(args, "Oii", &object, &x_offset, &y_offset)) {
        return nullptr;
    }
    particle_record* particle = particle_of(object, kFunction);
    if (particle == nullptr) {
        return nullptr;
    }
    step(*particle);
    const std::int32_t ttl = particle->ttl;
    if (ttl > 0 && !render(*particle, x_offset, y_offset, kFunction)) {
        return nullptr;
    }
    return PyInt_FromLong(ttl);
}

void draw_particle(const particle_record& particle, int x_offset, int y_offset) noexcept {
    const PendingException set_aside;
    if (!render(particle, x_offset, y_offset, "particle_render_low()")) {
        PyErr_Clear();
    }
}

}  // namespace larkspur

extern "C" void particle_render_low(particle_record* particle, int x_offset, int y_offset) {
    larkspur::draw_particle(*particle, x_offset, y_offset);
}
