// The module functions that composite vertical gradients over what a surface shows.
#pragma once

#include "core/python.h"

namespace larkspur::pixel {

/// Module functions fast_draw_gradient*(surface, x1, y1, x2, y2, layers...): composite vertical
/// gradients ('v': top colour, bottom colour, opacity) and constant pixel values ('c': value,
/// opacity) over a rectangle, the first layer undermost, as the letters of the name say. Opacities
/// are floats with 1.0 for opaque; fast_draw_gradient_v takes an alpha of 0..255 instead. Return
/// None. TypeError when `surface` is no pygame Surface, ValueError when it has no 32-bit pixels or
/// y1 is below -32768, RuntimeError when its pixels can't be reached.
PyObject* fast_draw_gradient_v(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vc(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vv(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vcv(PyObject* module, PyObject* args) noexcept;
PyObject* fast_draw_gradients_vcvvc(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur::pixel
