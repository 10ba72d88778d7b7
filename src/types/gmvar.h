// GMVar: a game variable. It behaves as the value it holds, and is at the same time an array with
// two dimensions that grows when it is assigned to; the value is the array's element (0, 0).
//
// v[i] and v[i, j] read 0 where nothing was assigned, so games need not declare sizes. Arithmetic
// gives plain values, and only += changes the variable itself. Comparing two variables with cmp()
// costs both values a reference that nobody took, down to the last one: a host that does so in
// quantity keeps references to spare.
#pragma once

#include "core/python.h"

#include <cstddef>
#include <cstdint>

namespace larkspur {

/// The array is null, and all its sizes 0, after garbage collection has cleared the variable.
struct GMVarObject {
    PyObject_HEAD;
    std::uint32_t magic;   ///< 0xC0FFEE55; marks a variable in a memory dump
    std::int32_t width;    ///< columns, the range of the first index; at least 1 with an array
    std::int32_t height;   ///< rows, the range of the second index; at least 1 with an array
    PyObject** items;      ///< owned; element (i, j), owned, at j * width + i; null where unset
    std::size_t capacity;  ///< slots allocated; those past width * height are null
};

extern PyTypeObject gmvar_type;

/// The int 0, which an unset element reads as; owned by the type's unit.
extern PyObject* gmvar_zero;

/// Fills in what only run time knows; before the type is readied.
void prepare_gmvar_type() noexcept;

inline bool is_gmvar(PyObject* object) noexcept {
    return Py_TYPE(object) == &gmvar_type;  // the type cannot be subclassed
}

/// The value that stands for an operand: a variable's value, one level deep, or the object itself.
/// Borrowed, and from a variable only valid until Python code runs: that code may change it.
inline PyObject* unwrap(PyObject* object) noexcept {
    if (!is_gmvar(object)) {
        return object;
    }
    const GMVarObject* variable = reinterpret_cast<GMVarObject*>(object);
    PyObject* value = variable->items != nullptr ? variable->items[0] : nullptr;
    return value != nullptr ? value : gmvar_zero;
}

}  // namespace larkspur
