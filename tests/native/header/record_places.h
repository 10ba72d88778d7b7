/* The public header compiles on its own, and its records lie in memory as callers expect them: the
 * fields in their order, each where a 64-bit compiler puts it. */
#pragma once

#include "larkspur.h"

#include <assert.h>
#include <stddef.h>

#define LIES_AT(record, field, bytes) \
    static_assert(offsetof(struct record, field) == (bytes), #record "." #field)

LIES_AT(particle_type_record, shape, 0);
LIES_AT(particle_type_record, shape_surface, 8);
LIES_AT(particle_type_record, blend, 16);
LIES_AT(particle_type_record, animate, 20);
LIES_AT(particle_type_record, stretch, 24);
LIES_AT(particle_type_record, reserved_int, 28);
LIES_AT(particle_type_record, reserved_float, 32);
LIES_AT(particle_type_record, size_min, 36);
LIES_AT(particle_type_record, size_wiggle, 52);
LIES_AT(particle_type_record, xscale, 56);
LIES_AT(particle_type_record, color1, 64);
LIES_AT(particle_type_record, alpha_start, 76);
LIES_AT(particle_type_record, speed_min, 88);
LIES_AT(particle_type_record, dir_min, 108);
LIES_AT(particle_type_record, life_min, 128);
LIES_AT(particle_type_record, gravity_amount, 140);
LIES_AT(particle_type_record, orient_min, 148);
LIES_AT(particle_type_record, orient_relative, 164);
LIES_AT(particle_type_record, cache, 168);
static_assert(sizeof(struct particle_type_record) == 176, "particle_type_record");

LIES_AT(particle_record, x, 0);
LIES_AT(particle_record, vy, 20);
LIES_AT(particle_record, beancounter, 24);
LIES_AT(particle_record, type_handle, 32);
LIES_AT(particle_record, size, 40);
LIES_AT(particle_record, ttl, 44);
LIES_AT(particle_record, color1, 48);
LIES_AT(particle_record, life, 60);
LIES_AT(particle_record, orientation, 64);
static_assert(sizeof(struct particle_record) == 72, "particle_record");
