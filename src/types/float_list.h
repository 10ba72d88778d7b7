// Floatlist8: eight numbers, one for each view of a room.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Number of elements, and of the views of a room.
inline constexpr int kFloatListLength = 8;

struct FloatListObject {
    PyObject_HEAD;
    /// Element v belongs to view v; the list's value is element 0.
    double values[kFloatListLength];
};

extern PyTypeObject float_list_type;

}  // namespace larkspur
