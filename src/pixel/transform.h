// The module's functions that return a changed copy of a surface. Each leaves its argument as it
// is and returns a new pygame Surface.
#pragma once

#include "core/python.h"

namespace larkspur {

/// rotoscale(surface, x_scale, y_scale, angle): scaled, then turned counter-clockwise by whole
/// degrees (the angle is truncated), without smoothing; the result has no colour key. Raises
/// TypeError, ValueError for what cannot be scaled, or pygame.error when SDL refuses the size.
PyObject* rotoscale(PyObject* module, PyObject* args) noexcept;

/// scale(surface, x_scale, y_scale): scaled with smoothing; a colour key comes along as it is.
/// Raises TypeError or ValueError; when SDL refuses the size the result is null without an
/// exception, which the interpreter reports as SystemError.
PyObject* scale(PyObject* module, PyObject* args) noexcept;

/// flip_vh(surface), flip_v(surface), flip_h(surface): see pixel/flip.h; what is null there raises
/// pygame.error here, anything but a Surface TypeError.
PyObject* flip_vh(PyObject* module, PyObject* args) noexcept;
PyObject* flip_v(PyObject* module, PyObject* args) noexcept;
PyObject* flip_h(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
