// Drawing of particles, through their type's cache of prerendered pictures.
#pragma once

#include "core/python.h"

#include "larkspur.h"

namespace larkspur {

/// Module function CParticle_dec_ttl_and_render(particle, x_offset, y_offset): one step and, when
/// remaining life is left after it, the drawing of the particle on the display at its position
/// moved by the offsets (pixels). Returns the new remaining life as an int.
///
/// Raises TypeError for what is no particle and for a type whose shape is no pygame Surface,
/// RuntimeError when there is no display or the shape's pixels are gone, ValueError when a surface
/// has other than 32 bits per pixel and has to be tinted, faded or added, or when the shape can't
/// be scaled or turned: one of 8 bits to its mirror image, or one with a side of more than 32767
/// pixels. The step has been made then. A picture that SDL refuses, by its size above all, is not
/// drawn, and no failure.
PyObject* cparticle_dec_ttl_and_render(PyObject* module, PyObject* args) noexcept;

/// Draws a particle without a step for a native caller: as the module function does, and nothing
/// where that raises. Leaves no exception of its own and keeps a pending one.
void draw_particle(const particle_record& particle, int x_offset, int y_offset) noexcept;

}  // namespace larkspur
