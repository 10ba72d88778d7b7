// GMVar: a game variable. It behaves as the value it holds, and is at the same time an array with
// two dimensions that grows when it is assigned to; the value is the array's element (0, 0).
//
// v[i] and v[i, j] read 0 where nothing was assigned, so games need not declare sizes. Arithmetic
// gives plain values, and only += changes the variable itself.
//
// Reference counts that are out of balance, which is part of the type and stays so:
//   cmp(v, w)          releases a reference to each of the two values without having taken one. Of
//                      two holders of a value one can thus be left with an object that is gone;
//                      only its very last reference is never released, nor any of an object that
//                      the interpreter shares, as small ints (see release_unowned()). A host that
//                      compares in quantity takes references to spare. Where the values have rich
//                      comparison alone, the answer to whether they are equal is never released.
//   v[i, j] = value    with a key that is refused: i and j are never released.
//   v.__init__(value)  the elements of the array so far are never released.
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
    // The type cannot be subclassed. Told to expect one, the compiler lays out straight what game
    // code does most.
    return __builtin_expect(static_cast<long>(Py_TYPE(object) == &gmvar_type), 1L) != 0;
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
