// The types of the module, which are static objects.
#pragma once

#include "core/python.h"

#include <cstddef>

namespace larkspur {

/// An empty static type that cannot be subclassed and whose creation ignores its arguments and
/// zeroes its fields; the caller assigns by name the slots that are in use.
///
/// @param name with the module's prefix; @param doc null for none; @param basic_size in bytes
inline PyTypeObject make_type(const char* name, const char* doc, std::size_t basic_size) noexcept {
    PyTypeObject type = {
        PyVarObject_HEAD_INIT(nullptr, 0)};  // a static type starts with one reference
    type.tp_name = name;
    type.tp_doc = doc;
    type.tp_basicsize = static_cast<Py_ssize_t>(basic_size);
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    type.tp_new = PyType_GenericNew;
    return type;
}

}  // namespace larkspur
