#include "particles/particle.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "base/convert.h"
#include "core/py_ref.h"
#include "particles/beancounter.h"
#include "particles/particle_type.h"
#include "types/gmvar.h"

namespace larkspur {
namespace {

constexpr double kRadiansPerDegree = M_PI / 180.0;
constexpr double kQuarterTurn = M_PI / 2.0;
constexpr float kFullTurnDegrees = 360.0F;

// Each of the next two takes one number from drand48. A seeded game must see the same particles
// each time, so how many numbers are taken, and in which order, is fixed.

// A random value from start to start + range; the sum is made in double precision.
double random_between(double start, double range) noexcept {
    return start + drand48() * range;
}

// `value` moved at random by up to `amplitude` either way.
float wiggled(double value, double amplitude) noexcept {
    return static_cast<float>(value + (drand48() * (2.0 * amplitude) - amplitude));
}

// Lives count down past 0 and, at the very end of the range, around.
std::int32_t decremented(std::int32_t value) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value) - 1U);
}

// What the two ways of making a particle share. They take their random numbers in different orders,
// which is why direction and speed, life, and orientation each have a function.

PyRef make_particle(PyObject* type_argument, float x, float y) noexcept {
    // Of a variable the value counts from here on: one that is no type is reported like any object.
    PyObject* type_handle = find_particle_type_handle(unwrap(type_argument));
    if (type_handle == nullptr) {
        return PyRef();
    }
    PyRef handle = ParticleHandle::make();
    if (handle) {
        particle_record& particle = ParticleHandle::of(handle.get());
        particle.x = x;
        particle.y = y;
        Py_INCREF(type_handle);
        particle.type_handle = type_handle;
    }
    return handle;
}

void choose_direction_and_speed(particle_record& particle,
                                const particle_type_record& type) noexcept {
    particle.direction = static_cast<float>(random_between(type.dir_min, type.dir_range));
    particle.speed = static_cast<float>(random_between(type.speed_min, type.speed_range));
}

void choose_life(particle_record& particle, const particle_type_record& type) noexcept {
    particle.ttl = truncate_to_int32(random_between(type.life_min, type.life_range));
    particle.life = static_cast<float>(particle.ttl);
}

void choose_orientation(particle_record& particle, const particle_type_record& type) noexcept {
    const double range = static_cast<double>(type.orient_max) - type.orient_min;
    particle.orientation = static_cast<float>(random_between(type.orient_min, range));
}

void detach_beancounter(particle_record& particle) noexcept {
    if (PyObject* counter = particle.beancounter) {
        particle.beancounter = nullptr;
        --reinterpret_cast<BeancounterObject*>(counter)->count;
        Py_DECREF(counter);
    }
}

// The particle that is the one argument of a call; null with an exception. The call is made for
// every particle in every frame, so an argument goes past the parser.
particle_record* only_particle(PyObject* args, const char* function) noexcept {
    PyObject* object = nullptr;
    if (PyTuple_GET_SIZE(args) == 1) {
        object = PyTuple_GET_ITEM(args, 0);
    } else if (!PyArg_ParseTuple(args, "O", &object)) {
        return nullptr;
    }
    return particle_of(object, function);
}

}  // namespace

void particle_destroy(void* record) noexcept {
    auto* particle = static_cast<particle_record*>(record);
    detach_beancounter(*particle);
    Py_CLEAR(particle->type_handle);
}

particle_record* particle_of(PyObject* object, const char* function) noexcept {
    particle_record* particle = ParticleHandle::find(object);
    if (particle == nullptr) {
        const bool is_type = ParticleTypeHandle::find(object) != nullptr;
        PyErr_Format(PyExc_TypeError,
                     "%s needs a particle, got %.200s; pass what CParticle_new() returned",
                     function, is_type ? "a particle type" : Py_TYPE(object)->tp_name);
    }
    return particle;
}

const particle_type_record& type_of(const particle_record& particle) noexcept {
    return ParticleTypeHandle::of(particle.type_handle);
}

void step(particle_record& particle) noexcept {
    const particle_type_record& type = type_of(particle);
    particle.x += particle.vx;
    particle.y += particle.vy;
    particle.ttl = decremented(particle.ttl);

    if (type.orient_wiggle != 0) {
        particle.orientation = wiggled(particle.orientation, type.orient_wiggle);
    }
    if (type.orient_incr != 0) {
        particle.orientation += type.orient_incr;
        if (particle.orientation < 0) {
            particle.orientation += kFullTurnDegrees;
        } else if (particle.orientation > kFullTurnDegrees) {
            particle.orientation -= kFullTurnDegrees;
        }
    }
    // The order of the two tests shows in reversed ranges: here the upper bound comes first, with
    // the size the lower one.
    if (particle.orientation > type.orient_max) {
        particle.orientation = type.orient_max;
    } else if (particle.orientation < type.orient_min) {
        particle.orientation = type.orient_min;
    }

    if (type.size_wiggle != 0) {
        particle.size = wiggled(particle.size, type.size_wiggle);
    }
    if (type.size_incr != 0) {
        particle.size += type.size_incr;
    }
    // A type whose sizes do not change leaves a size given from outside its range alone.
    if (type.size_wiggle != 0 || type.size_incr != 0) {
        if (particle.size < type.size_min) {
            particle.size = type.size_min;
        } else if (particle.size > type.size_max) {
            particle.size = type.size_max;
        }
    }
}

void reset_velocities(particle_record& particle) noexcept {
    double sine = 0;
    double cosine = 0;
    sincos(particle.direction * kRadiansPerDegree + kQuarterTurn, &sine, &cosine);
    particle.vx = static_cast<float>(particle.speed * cosine);
    particle.vy = static_cast<float>(particle.speed * sine);
}

PyObject* cparticle_new(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* type_argument = nullptr;
    float x = 0;
    float y = 0;
    if (!PyArg_ParseTuple(args, "Off", &type_argument, &x, &y)) {
        return nullptr;
    }
    PyRef handle = make_particle(type_argument, x, y);
    if (!handle) {
        return nullptr;
    }
    particle_record& particle = ParticleHandle::of(handle.get());
    const particle_type_record& type = type_of(particle);
    choose_direction_and_speed(particle, type);
    reset_velocities(particle);
    particle.size = static_cast<float>(random_between(type.size_min, type.size_range));
    choose_life(particle, type);
    particle.color1 = type.color1;
    particle.color2 = type.color2;
    particle.color3 = type.color3;
    choose_orientation(particle, type);
    return handle.release();
}

PyObject* cparticle_new_size_color(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* type_argument = nullptr;
    float x = 0;
    float y = 0;
    float size = 0;
    int colour = 0;
    if (!PyArg_ParseTuple(args, "Offfi", &type_argument, &x, &y, &size, &colour)) {
        return nullptr;
    }
    PyRef handle = make_particle(type_argument, x, y);
    if (!handle) {
        return nullptr;
    }
    particle_record& particle = ParticleHandle::of(handle.get());
    const particle_type_record& type = type_of(particle);
    choose_direction_and_speed(particle, type);
    choose_orientation(particle, type);
    reset_velocities(particle);
    particle.size = size;
    choose_life(particle, type);
    particle.color1 = particle.color2 = particle.color3 = colour;
    return handle.release();
}

PyObject* cparticle_step(PyObject* /*module*/, PyObject* args) noexcept {
    particle_record* particle = only_particle(args, "CParticle_step()");
    if (particle == nullptr) {
        return nullptr;
    }
    step(*particle);
    return PyInt_FromLong(particle->ttl);
}

PyObject* cparticle_dec_ttl(PyObject* /*module*/, PyObject* args) noexcept {
    particle_record* particle = only_particle(args, "CParticle_dec_ttl()");
    if (particle == nullptr) {
        return nullptr;
    }
    particle->ttl = decremented(particle->ttl);
    return PyInt_FromLong(particle->ttl);
}

PyObject* cparticle_attach_beancounter(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* object = nullptr;
    PyObject* counter = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &object, &counter)) {
        return nullptr;
    }
    particle_record* particle = particle_of(object, "CParticle_attach_beancounter()");
    if (particle == nullptr) {
        return nullptr;
    }
    if (Py_TYPE(counter) != &beancounter_type) {
        PyErr_Format(PyExc_TypeError,
                     "CParticle_attach_beancounter() needs a Beancounter, got %.200s; pass a "
                     "larkspur.Beancounter()",
                     Py_TYPE(counter)->tp_name);
        return nullptr;
    }
    detach_beancounter(*particle);
    Py_INCREF(counter);
    particle->beancounter = counter;
    ++reinterpret_cast<BeancounterObject*>(counter)->count;
    return new_none();
}

}  // namespace larkspur

extern "C" {

void CParticle_step_low(particle_record* particle) {
    larkspur::step(*particle);
}

void CParticle_reset_velocities(particle_record* particle) {
    larkspur::reset_velocities(*particle);
}

}  // extern "C"
