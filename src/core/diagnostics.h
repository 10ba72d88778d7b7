// Log files and the debugger's hook.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Module function breakable(): prints "breakable\n"; a place for a debugger to stop at. Ignores
/// its arguments; returns None.
PyObject* breakable(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
