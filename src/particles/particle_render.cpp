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
#include "pixel/surface/zoom.h"
#include "pixel/zoom_guard.h"

namespace larkspur {
namespace {

constexpr std::uint32_t kNoTint = 0xFFFFFF;  // white by the literal, whatever the display's white
constexpr std::int32_t kScaledAngleMask = 0xFF0;  // whole sixteens of degrees, in twelve bits
// With more entries than this, a new scaled picture empties the cache first; nothing else bounds
// it.
constexpr Py_ssize_t kScaledCacheBound = 100;

// Which picture of its type's shape shows a particle.
enum class Picture : std::uint8_t {
    kNone,    // the size comes to no pixel
    kShape,   // the shape itself: natural size, full alpha, no tint; never turned
    kTinted,  // natural size, full alpha; never turned
    kFaded,   // natural size; turned by whole degrees
    kScaled,  // another size, or one that wiggles; turned by whole sixteens of degrees
};

// How a particle looks and where it is, taken from particle and type before anything runs that
// could change them.
struct Look {
    Picture picture;
    std::int32_t width;  // drawn size; negative is mirrored
    std::int32_t height;
    std::uint32_t colour;
    std::int32_t alpha;
    std::int32_t angle_degrees;
    std::int16_t centre_x;
    std::int16_t centre_y;
    int blend;
};

// Rounded to single precision at every step, while desired_alpha(), which native callers ask,
// rounds nothing before it truncates. Neither stands in for the other: this one decides the keys
// and pixels of kept pictures. A type of alpha 0.2 throughout is drawn with 50 when 1 step of 20 is
// left; the other says 51.
std::int32_t drawn_alpha(const particle_type_record& type, float life_fraction) noexcept {
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

Picture picture_for(const Look& look, bool scaled) noexcept {
    if (look.width == 0 || look.height == 0) {
        return Picture::kNone;
    }
    if (scaled) {
        return Picture::kScaled;
    }
    if (look.alpha != pixel::kOpaque) {
        return Picture::kFaded;
    }
    return look.colour == kNoTint ? Picture::kShape : Picture::kTinted;
}

// Single precision throughout, each product in the order written: other orders round differently
// and give sizes that are a pixel off.
Look look_of(const particle_record& particle, const particle_type_record& type,
             const SDL_Surface& shape, int x_offset, int y_offset) noexcept {
    const auto shape_width = static_cast<float>(shape.w);
    const auto shape_height = static_cast<float>(shape.h);
    Look look = {};
    bool scaled = true;
    if (type.size_wiggle != 0) {
        look.width = truncate_to_int32(shape_width * particle.size * type.xscale);
        look.height = truncate_to_int32(shape_height * particle.size * type.yscale);
    } else {
        look.width = truncate_to_int32(shape_width * type.xscale * particle.size);
        look.height = truncate_to_int32(shape_height * type.yscale * particle.size);
        scaled = look.width != shape.w || look.height != shape.h;
    }
    const float life_fraction = static_cast<float>(particle.ttl) / particle.life;
    look.colour = desired_tint(particle, life_fraction);
    look.alpha = drawn_alpha(type, life_fraction);
    look.picture = picture_for(look, scaled);
    const std::int32_t orientation_degrees = truncate_to_int32(particle.orientation);
    look.angle_degrees = look.picture == Picture::kScaled ? orientation_degrees & kScaledAngleMask
                                                          : orientation_degrees;
    look.centre_x = low_16_bits(truncate_to_int32(static_cast<float>(x_offset) + particle.x));
    look.centre_y = low_16_bits(truncate_to_int32(static_cast<float>(y_offset) + particle.y));
    look.blend = type.blend;
    return look;
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

SurfacePtr in_display_format(SDL_Surface* surface, const SDL_Surface& display) noexcept {
    return converted(surface, display.format, SDL_SRCALPHA);
}

// The drawing of one particle in its steps, and what they hand on. Making and keeping a picture can
// run Python code that changes particle, type and display: the type and its shape are held, the
// rest is looked at before, or again.
class ParticleDrawing {
 public:
    // `function` is named in messages.
    ParticleDrawing(const particle_record& particle, const char* function) noexcept
        : function_(function),
          type_handle_(PyRef::borrow(particle.type_handle)),
          type_(ParticleTypeHandle::of(type_handle_.get())),
          shape_(PyRef::borrow(type_.shape)) {}

    bool look_at(const particle_record& particle, int x_offset, int y_offset) noexcept;
    bool draw() noexcept;

 private:
    const SDL_Surface* shape_surface() noexcept;
    bool draw_new(const PictureKey& wanted) noexcept;
    void centre(const SDL_Surface& picture) noexcept;
    bool show(PyObject* picture) noexcept;

    PictureKey key() const noexcept;
    PyRef make() noexcept;
    SurfacePtr make_scaled(SDL_Surface* shape, const SDL_Surface& display) noexcept;
    SurfacePtr make_faded(SDL_Surface* shape, const SDL_Surface& display) noexcept;
    SurfacePtr make_tinted(SDL_Surface* shape) noexcept;
    bool tint(SDL_Surface* picture) noexcept;
    bool fade(SDL_Surface* picture) noexcept;
    SurfacePtr turned(SurfacePtr picture) noexcept;

    const char* function_;
    PyRef type_handle_;
    const particle_type_record& type_;
    PyRef shape_;
    Look look_ = {};
    SDL_Rect place_ = {};  // of the picture on the display, as the last blit left it
};

// Finds out how the particle looks. False with an exception when its shape can't be drawn.
bool ParticleDrawing::look_at(const particle_record& particle, int x_offset,
                              int y_offset) noexcept {
    const SDL_Surface* shape = shape_surface();
    if (shape == nullptr) {
        return false;
    }
    look_ = look_of(particle, type_, *shape, x_offset, y_offset);
    centre(*shape);
    return true;
}

// Shows the picture that the type's cache has, or a new one. False with an exception when something
// can't be used.
bool ParticleDrawing::draw() noexcept {
    if (look_.picture == Picture::kNone) {
        return true;
    }
    if (look_.picture == Picture::kShape) {
        return show(shape_.get());
    }
    const PictureKey wanted = key();
    const PyRef picture = wanted.find_in(type_.cache);
    if (picture) {
        return show(picture.get());
    }
    return PyErr_Occurred() == nullptr && draw_new(wanted);
}

// Makes the picture, keeps it in the cache and shows it. False with an exception when something
// can't be used; a picture that SDL refuses to make is no failure.
bool ParticleDrawing::draw_new(const PictureKey& wanted) noexcept {
    if (look_.picture == Picture::kScaled && PyDict_Size(type_.cache) > kScaledCacheBound) {
        PyDict_Clear(type_.cache);
    }
    const PyRef picture = make();
    if (!picture) {
        return PyErr_Occurred() == nullptr;
    }
    // A tinted picture shows twice when it first appears, before and after it is kept: it covers
    // more in that frame, or adds twice. Pictures depend on it.
    if (look_.picture == Picture::kTinted && !show(picture.get())) {
        return false;
    }
    return wanted.store_in(type_.cache, picture.get()) && show(picture.get());
}

// The surface of the type's shape, for its size; null with an exception, TypeError when the shape
// is no pygame Surface.
const SDL_Surface* ParticleDrawing::shape_surface() noexcept {
    PyTypeObject* surface_type = pygame_surface_type(function_);
    if (surface_type == nullptr) {
        return nullptr;
    }
    PyObject* shape = shape_.get();
    if (shape == nullptr || !PyObject_TypeCheck(shape, surface_type)) {
        PyErr_Format(PyExc_TypeError,
                     "%s needs a particle type whose shape is a pygame Surface, got %.200s; set "
                     "one with part_type_shape()",
                     function_, shape == nullptr ? "none" : Py_TYPE(shape)->tp_name);
        return nullptr;
    }
    return surface_of(shape, function_);
}

void ParticleDrawing::centre(const SDL_Surface& picture) noexcept {
    place_.x = low_16_bits(look_.centre_x - (picture.w >> 1));
    place_.y = low_16_bits(look_.centre_y - (picture.h >> 1));
}

// Blits a picture to the display. False with an exception when either can't be used.
bool ParticleDrawing::show(PyObject* picture) noexcept {
    const DisplayUse display(function_);
    const SurfaceUse source(picture, function_);
    if (!display || !source) {
        return false;
    }
    if (pixel::blend_mode_flatten(look_.blend) != 0 &&
        (!require_32_bit(*source.get(), function_) || !require_32_bit(*display.get(), function_))) {
        return false;
    }
    // A tinted picture lies where the shape would, its second showing where the first blit left the
    // rectangle: cut off at the left, it moves to the right.
    if (look_.picture != Picture::kTinted) {
        centre(*source.get());
    }
    pixel::flagged_blit(source.get(), display.get(), &place_, look_.blend);
    return true;
}

// What decides the picture. Tinted ones are never turned, so their key has no angle.
PictureKey ParticleDrawing::key() const noexcept {
    const auto colour = static_cast<std::int32_t>(look_.colour);
    if (look_.picture == Picture::kTinted) {
        return PictureKey(look_.width, look_.height, colour, look_.alpha);
    }
    return PictureKey(look_.width, look_.height, colour, look_.alpha, look_.angle_degrees);
}

// A new pygame Surface. Empty without an exception when SDL makes nothing, with one when shape or
// display can't be used.
PyRef ParticleDrawing::make() noexcept {
    const DisplayUse display(function_);
    const SurfaceUse shape(shape_.get(), function_);
    if (!display || !shape) {
        return PyRef();
    }
    SurfacePtr picture;
    if (look_.picture == Picture::kScaled) {
        picture = make_scaled(shape.get(), *display.get());
    } else if (look_.picture == Picture::kFaded) {
        picture = make_faded(shape.get(), *display.get());
    } else {
        picture = make_tinted(shape.get());
    }
    return picture != nullptr ? wrap_surface(pygame_api(), std::move(picture)) : PyRef();
}

// The makers: null without an exception when SDL makes nothing, with one when a surface can't be
// worked on.

SurfacePtr ParticleDrawing::make_scaled(SDL_Surface* shape, const SDL_Surface& display) noexcept {
    if (!pixel::require_no_obstacle(pixel::zoom_obstacle(*shape, look_.width, look_.height),
                                    function_)) {
        return nullptr;
    }
    SurfacePtr picture = pixel::scaled_picture(shape, look_.width, look_.height);
    if (picture == nullptr || !tint(picture.get())) {
        return nullptr;
    }
    // A negative alpha counts as a large one.
    if (static_cast<std::uint32_t>(look_.alpha) < static_cast<std::uint32_t>(pixel::kOpaque)) {
        if (look_.blend != 0) {
            picture = in_display_format(picture.get(), display);
        }
        if (picture == nullptr || !fade(picture.get())) {
            return nullptr;
        }
    }
    return turned(std::move(picture));
}

SurfacePtr ParticleDrawing::make_faded(SDL_Surface* shape, const SDL_Surface& display) noexcept {
    SurfacePtr picture = in_display_format(shape, display);
    if (picture == nullptr) {
        write_stderr("Error reformatting shapesurf: %s\n", SDL_GetError());
        return nullptr;
    }
    if (!tint(picture.get()) || !fade(picture.get())) {
        return nullptr;
    }
    return turned(std::move(picture));
}

SurfacePtr ParticleDrawing::make_tinted(SDL_Surface* shape) noexcept {
    SurfacePtr picture = pixel::rgba_copy(shape);
    pixel::tint_surface(picture.get(), look_.colour);
    return picture;
}

// The steps in the making of a picture; false with an exception when it is not 32-bit.

bool ParticleDrawing::tint(SDL_Surface* picture) noexcept {
    if (look_.colour == kNoTint) {
        return true;
    }
    if (!require_32_bit(*picture, function_)) {
        return false;
    }
    pixel::tint_surface(picture, look_.colour);
    return true;
}

bool ParticleDrawing::fade(SDL_Surface* picture) noexcept {
    if (!require_32_bit(*picture, function_)) {
        return false;
    }
    if (look_.blend != 0) {
        darken(picture, look_.alpha);
    } else {
        pixel::translucentify(picture, static_cast<std::uint8_t>(look_.alpha));
    }
    return true;
}

SurfacePtr ParticleDrawing::turned(SurfacePtr picture) noexcept {
    if (look_.angle_degrees == 0) {
        return picture;
    }
    return pixel::require_no_obstacle(pixel::turn_obstacle(*picture, 1.0, 1.0), function_)
               ? pixel::turned_picture(picture.get(), look_.angle_degrees, 1.0)
               : nullptr;
}

bool render(const particle_record& particle, int x_offset, int y_offset,
            const char* function) noexcept {
    ParticleDrawing drawing(particle, function);
    return drawing.look_at(particle, x_offset, y_offset) && drawing.draw();
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
