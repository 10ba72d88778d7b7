// Arguments of methods that take them as they stand.
#pragma once

#include "core/python.h"

namespace larkspur {

/// The first positional argument, borrowed from the tuple; further ones are not looked at. Null
/// with TypeError when there is none.
///
/// @param function name of the caller with its brackets; @param wanted what the argument should be
inline PyObject* first_argument(PyObject* args, const char* function, const char* wanted) noexcept {
    if (PyTuple_GET_SIZE(args) == 0) {
        PyErr_Format(PyExc_TypeError, "%s needs %s, got no argument", function, wanted);
        return nullptr;
    }
    return PyTuple_GET_ITEM(args, 0);
}

}  // namespace larkspur
