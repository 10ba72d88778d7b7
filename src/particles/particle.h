// Particles: their making, their steps and their end. Random numbers come from drand48. How a
// particle is shown is particle_render's.
#pragma once

#include "core/python.h"

#include "larkspur.h"
#include "particles/handle.h"

namespace larkspur {

/// Lowers the particle's counter and releases what the particle owns; the destructor of its handle.
void particle_destroy(void* record) noexcept;

using ParticleHandle = HandleKind<particle_record, particle_destroy>;

/// The particle behind a handle; null with TypeError for any other object.
///
/// @param function name of the caller with its brackets, for messages
particle_record* particle_of(PyObject* object, const char* function) noexcept;

/// The type a particle was made from; lives as long as the particle.
const particle_type_record& type_of(const particle_record& particle) noexcept;

/// One step: position, remaining life, orientation, size. Takes a random number for the
/// orientation's wiggle and then one for the size's, each only when it is not 0. Runs no Python
/// code.
void step(particle_record& particle) noexcept;

/// Sets vx and vy from direction and speed: 0 degrees moves down, 90 degrees left.
void reset_velocities(particle_record& particle) noexcept;

// Module functions. What is no particle raises TypeError; a type argument that is no particle type
// fails without an exception, which the interpreter reports as SystemError.

/// CParticle_new(type, x, y): a new particle handle; takes five random numbers, in the order
/// direction, speed, size, life, orientation.
PyObject* cparticle_new(PyObject* module, PyObject* args) noexcept;
/// CParticle_new_size_color(type, x, y, size, colour): the same with a size and one colour given;
/// takes four random numbers, in the order direction, speed, orientation, life.
PyObject* cparticle_new_size_color(PyObject* module, PyObject* args) noexcept;
/// CParticle_step(particle): one step; the new remaining life as an int.
PyObject* cparticle_step(PyObject* module, PyObject* args) noexcept;
/// CParticle_dec_ttl(particle): takes one from the remaining life, which it returns as an int.
PyObject* cparticle_dec_ttl(PyObject* module, PyObject* args) noexcept;
/// CParticle_attach_beancounter(particle, counter): moves the particle from its old counter to this
/// one; None. TypeError for a second argument that is no Beancounter.
PyObject* cparticle_attach_beancounter(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
