#include "particles/particle_type.h"

#include <cstdint>
#include <tuple>
#include <utility>

#include "base/console.h"
#include "base/convert.h"
#include "core/display.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "types/gmvar.h"

namespace larkspur {
namespace {

constexpr std::int32_t kDefaultLifeSteps = 30;
constexpr std::uint32_t kWhiteWithoutDisplay = 0xFFFFFF;

std::int32_t initial_colour() noexcept {
    const std::uint32_t white = display_white();
    // A palette display's white is 0, so the number alone does not say that there is none.
    const bool known = white != 0 || screen_surface_object() != nullptr;
    return static_cast<std::int32_t>(known ? white : kWhiteWithoutDisplay);
}

// A shape that is a handle can hold a type whose shape is a handle, and so on: from so many on, one
// inside of the other, those further in wait until the outermost is gone. A long chain must not
// become a deep recursion.
constexpr int kMostNested = 50;

// Handles that wait, linked through the description that no handle of ours has.
PyCObject* waiting = nullptr;
int nested = 0;

void release_nested(PyObject* shape) noexcept {
    ++nested;
    Py_DECREF(shape);
    --nested;
}

void release_shape(PyObject* shape) noexcept {
    if (nested >= kMostNested && PyCObject_Check(shape) && Py_REFCNT(shape) == 1) {
        auto* handle = reinterpret_cast<PyCObject*>(shape);
        if (handle->desc == nullptr) {
            handle->desc = waiting;
            waiting = handle;
            return;
        }
    }
    release_nested(shape);
    while (nested == 0 && waiting != nullptr) {
        PyCObject* handle = std::exchange(waiting, static_cast<PyCObject*>(waiting->desc));
        handle->desc = nullptr;
        release_nested(reinterpret_cast<PyObject*>(handle));
    }
}

void raise_no_particle_type(const char* function, PyObject* object) noexcept {
    PyErr_Format(PyExc_TypeError,
                 "%s needs a particle type, got %.200s; pass what part_type_create() returned",
                 function, Py_TYPE(object)->tp_name);
}

// Carries out a call that changes a particle type: parses the handle and the numbers behind it, and
// has `store` put them into the record. Null for arguments that do not parse, with the parser's
// exception, and for what is no particle type: without one, or, for a function that gives its name
// as `complain_as`, with TypeError.
template <typename... Number>
PyObject* change_type(PyObject* args, const char* format,
                      void (*store)(particle_type_record& type, Number... numbers),
                      const char* complain_as = nullptr) noexcept {
    PyObject* object = nullptr;
    std::tuple<Number...> numbers;
    const bool parsed = std::apply(
        [&](auto&... number) { return PyArg_ParseTuple(args, format, &object, &number...) != 0; },
        numbers);
    if (!parsed) {
        return nullptr;
    }
    particle_type_record* type = particle_type_from_handle(object);
    if (type == nullptr) {
        if (complain_as != nullptr) {
            raise_no_particle_type(complain_as, object);
        }
        return nullptr;
    }
    std::apply([&](auto... number) { store(*type, number...); }, numbers);
    return new_none();
}

}  // namespace

void particle_type_destroy(void* record) noexcept {
    auto* type = static_cast<particle_type_record*>(record);
    type->shape_surface = nullptr;
    if (PyObject* shape = std::exchange(type->shape, nullptr)) {
        release_shape(shape);
    }
    Py_CLEAR(type->cache);
}

PyObject* find_particle_type_handle(PyObject* object) noexcept {
    const bool is_variable = is_gmvar(object);
    PyObject* handle = unwrap(object);
    if (handle != nullptr && ParticleTypeHandle::find(handle) != nullptr) {
        return handle;
    }
    if (!is_variable) {
        write_stdout("Returning NULL!\n");
    }
    return nullptr;
}

particle_type_record* particle_type_from_handle(PyObject* object) noexcept {
    PyObject* handle = find_particle_type_handle(object);
    return handle != nullptr ? &ParticleTypeHandle::of(handle) : nullptr;
}

PyObject* part_type_create(PyObject* /*module*/, PyObject* /*args*/) noexcept {
    PyRef cache = PyRef::steal(PyDict_New());
    if (!cache) {
        return nullptr;
    }
    PyRef handle = ParticleTypeHandle::make();
    if (!handle) {
        return nullptr;
    }
    particle_type_record& type = ParticleTypeHandle::of(handle.get());
    type.life_min = type.life_max = kDefaultLifeSteps;
    type.reserved_float = 1.0F;
    type.xscale = type.yscale = 1.0F;
    type.size_min = type.size_max = 1.0F;
    type.alpha_start = type.alpha_half = type.alpha_end = 1.0F;
    type.color1 = type.color2 = type.color3 = initial_colour();
    type.cache = cache.release();
    return handle.release();
}

PyObject* part_type_shape(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* handle = nullptr;
    PyObject* surface = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &handle, &surface)) {
        return nullptr;
    }
    PyTypeObject* surface_type = pygame_surface_type("part_type_shape()");
    if (surface_type == nullptr) {
        return nullptr;
    }
    if (Py_TYPE(surface) != surface_type) {
        write_stderr("part_type_shape: A pygame Surface is required.\n");
        return nullptr;
    }
    particle_type_record* type = particle_type_from_handle(handle);
    if (type == nullptr) {
        return nullptr;
    }
    type->shape_surface = peek_surface(surface);
    Py_INCREF(surface);
    PyObject* old = std::exchange(type->shape, surface);
    Py_XDECREF(old);
    return new_none();
}

PyObject* part_type_size(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store =
        +[](particle_type_record& type, float min, float max, float incr, float wiggle) {
            type.size_min = min;
            type.size_max = max;
            type.size_range = max - min;
            type.size_incr = incr * type.size_range;
            type.size_wiggle = wiggle * type.size_range;
        };
    return change_type(args, "Offff", store);
}

PyObject* part_type_scale(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float xscale, float yscale) {
        type.xscale = xscale;
        type.yscale = yscale;
    };
    return change_type(args, "Off", store);
}

PyObject* part_type_orientation(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float min, float max, float incr,
                           float wiggle, float relative) {
        type.orient_min = min;
        type.orient_max = max;
        type.orient_incr = incr;
        type.orient_wiggle = wiggle;
        type.orient_relative = static_cast<float>(truncate_to_int32(relative));
    };
    return change_type(args, "Offfff", store);
}

PyObject* part_type_life(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float min, float max) {
        type.life_min = truncate_to_int32(min);
        type.life_max = truncate_to_int32(max);
        // The difference of two extreme lives wraps.
        type.life_range = static_cast<std::int32_t>(static_cast<std::uint32_t>(type.life_max) -
                                                    static_cast<std::uint32_t>(type.life_min));
    };
    return change_type(args, "Off", store);
}

PyObject* part_type_gravity(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float amount, float direction) {
        type.gravity_amount = amount;
        type.gravity_dir = direction;
    };
    return change_type(args, "Off", store);
}

PyObject* part_type_direction(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store =
        +[](particle_type_record& type, float min, float max, float incr, float wiggle) {
            type.dir_min = min;
            type.dir_max = max;
            type.dir_range = max - min;
            type.dir_incr = incr;
            type.dir_wiggle = wiggle;
        };
    return change_type(args, "Offff", store);
}

PyObject* part_type_color3(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, int colour1, int colour2, int colour3) {
        type.color1 = colour1;
        type.color2 = colour2;
        type.color3 = colour3;
    };
    return change_type(args, "Oiii", store);
}

PyObject* part_type_blend(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store =
        +[](particle_type_record& type, float blend) { type.blend = truncate_to_int32(blend); };
    return change_type(args, "Of", store);
}

PyObject* part_type_alpha3(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float start, float half, float end) {
        type.alpha_start = start;
        type.alpha_half = half;
        type.alpha_end = end;
    };
    return change_type(args, "Offf", store);
}

PyObject* part_type_alpha2(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store = +[](particle_type_record& type, float start, float end) {
        type.alpha_start = start;
        type.alpha_end = end;
        type.alpha_half = (start + end) * 0.5F;
    };
    return change_type(args, "Off", store);
}

PyObject* part_type_speed(PyObject* /*module*/, PyObject* args) noexcept {
    const auto store =
        +[](particle_type_record& type, float min, float max, float incr, float wiggle) {
            type.speed_min = min;
            type.speed_max = max;
            type.speed_range = max - min;
            type.speed_incr = incr;
            type.speed_wiggle = wiggle;
        };
    return change_type(args, "Offff", store, "part_type_speed()");
}

PyObject* part_type_sprite(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* object = nullptr;
    PyObject* sprite = nullptr;
    float animate = 0;
    float stretch = 0;
    float random = 0;
    if (!PyArg_ParseTuple(args, "OOfff", &object, &sprite, &animate, &stretch, &random)) {
        return nullptr;
    }
    particle_type_record* type = particle_type_from_handle(object);
    if (type == nullptr) {
        raise_no_particle_type("part_type_sprite()", object);
        return nullptr;
    }
    type->animate = animate != 0 ? 1 : 0;
    type->stretch = animate != 0 ? truncate_to_int32(stretch) : 0;
    if (animate == 0 && random != 0) {
        write_stdout("XXX need to select a random subimage.\n");
    }
    Py_INCREF(sprite);
    PyObject* old = std::exchange(type->shape, sprite);
    Py_XDECREF(old);
    return new_none();
}

PyObject* cparticle_type_cache_clear(PyObject* /*module*/, PyObject* args) noexcept {
    const auto clear = +[](particle_type_record& type) {
        // A Surface's weak reference may run code that drops the type.
        const PyRef cache = PyRef::borrow(type.cache);
        PyDict_Clear(cache.get());
    };
    return change_type(args, "O", clear);
}

}  // namespace larkspur
