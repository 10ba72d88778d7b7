// The module's types, readied and added in one fixed order.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Readies the types in order and adds each to the module. The first that cannot be readied gets
/// its line on standard error, and the later ones are neither readied nor added.
void add_types(PyObject* module) noexcept;

}  // namespace larkspur
