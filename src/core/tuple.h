// Tuples that nobody ever sees half filled. The collector shows a tuple to all from its making on,
// and what reads an item that is not there yet crashes: so no Python code may run until all are.
#pragma once

#include "core/python.h"

#include <array>
#include <cstddef>

#include "core/py_ref.h"

namespace larkspur {

/// The items of a list or of anything else that can be iterated over, in a new tuple, or the tuple
/// itself that is passed; empty with an exception. Does what the interpreter's own conversion does,
/// which shows the tuple while an iterator runs, and reads past a list that is cut meanwhile.
PyRef tuple_of(PyObject* items) noexcept;

/// A new tuple of these objects, all of them there; empty with MemoryError.
template <std::size_t count>
PyRef tuple_of(std::array<PyRef, count>& items) noexcept {
    PyRef tuple = PyRef::steal(PyTuple_New(count));
    if (tuple) {
        for (std::size_t i = 0; i < count; ++i) {
            PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), items[i].release());
        }
    }
    return tuple;
}

}  // namespace larkspur
