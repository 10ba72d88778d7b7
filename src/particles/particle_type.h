// Particle types: what all particles made from one have in common.
#pragma once

#include "core/python.h"

#include "larkspur.h"
#include "particles/handle.h"

namespace larkspur {

/// Releases what a particle type owns; the destructor of its handle.
void particle_type_destroy(void* record) noexcept;

using ParticleTypeHandle = HandleKind<particle_type_record, particle_type_destroy>;

/// The particle-type handle that `object` is, or holds as a GMVar; borrowed. Null without an
/// exception when there is none, after a line on standard output unless it is a GMVar.
PyObject* find_particle_type_handle(PyObject* object) noexcept;

/// As find_particle_type_handle(), but gives the handle's record.
particle_type_record* particle_type_from_handle(PyObject* object) noexcept;

/// Module function part_type_create(): a new handle; ignores its arguments. The type is white and
/// opaque, lives 30 steps, does not move, and has no shape yet.
PyObject* part_type_create(PyObject* module, PyObject* args) noexcept;

// Module functions that set properties: a handle (or a GMVar holding one) and the values; see the
// record's fields. Each returns None. For a first argument that is no particle type,
// part_type_speed and part_type_sprite raise TypeError; the others fail without an exception, which
// the interpreter reports as SystemError. What goes from float to int is truncated; what does not
// fit, NaN included, becomes the smallest int.

/// (handle, surface): anything but exactly a pygame Surface fails without an exception, after a
/// line on standard error.
PyObject* part_type_shape(PyObject* module, PyObject* args) noexcept;
/// (handle, min, max, incr, wiggle): the last two in shares of max - min.
PyObject* part_type_size(PyObject* module, PyObject* args) noexcept;
/// (handle, xscale, yscale)
PyObject* part_type_scale(PyObject* module, PyObject* args) noexcept;
/// (handle, min, max, incr, wiggle, relative): degrees.
PyObject* part_type_orientation(PyObject* module, PyObject* args) noexcept;
/// (handle, min, max): steps.
PyObject* part_type_life(PyObject* module, PyObject* args) noexcept;
/// (handle, amount, direction)
PyObject* part_type_gravity(PyObject* module, PyObject* args) noexcept;
/// (handle, min, max, incr, wiggle): degrees.
PyObject* part_type_direction(PyObject* module, PyObject* args) noexcept;
/// (handle, colour1, colour2, colour3): ints.
PyObject* part_type_color3(PyObject* module, PyObject* args) noexcept;
/// (handle, blend): a blend mode as a float.
PyObject* part_type_blend(PyObject* module, PyObject* args) noexcept;
/// (handle, start, half, end): 0 to 1.
PyObject* part_type_alpha3(PyObject* module, PyObject* args) noexcept;
/// (handle, start, end): half life gets their mean.
PyObject* part_type_alpha2(PyObject* module, PyObject* args) noexcept;
/// (handle, min, max, incr, wiggle): pixels per step.
PyObject* part_type_speed(PyObject* module, PyObject* args) noexcept;
/// (handle, sprite, animate, stretch, random): keeps any object as the shape. The stretch flag
/// counts only for an animated sprite; asking for a random subimage of another prints a line.
PyObject* part_type_sprite(PyObject* module, PyObject* args) noexcept;
/// (handle): empties the type's cache of prerendered surfaces.
PyObject* cparticle_type_cache_clear(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
