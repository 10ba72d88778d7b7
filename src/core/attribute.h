// Attributes of host objects, fetched under names that are made once.
#pragma once

#include "core/python.h"

#include "core/py_ref.h"

namespace larkspur {

/// The name of an attribute as a Python string, made at its first use and kept for the life of the
/// process, so that looking it up every frame makes no new string.
class AttributeName {
 public:
    /// @param text must outlive the name: a literal
    explicit constexpr AttributeName(const char* text) noexcept : text_(text) {}

    /// The interned string, borrowed; null with MemoryError.
    PyObject* get() noexcept {
        if (interned_ == nullptr) {
            interned_ = PyString_InternFromString(text_);
        }
        return interned_;
    }

 private:
    const char* text_;
    PyObject* interned_ = nullptr;
};

/// False with RuntimeError for null, which one of the host's modules is where it could not be
/// bound.
inline bool require_bound(PyObject* object) noexcept {
    if (object == nullptr) {
        PyErr_SetString(PyExc_RuntimeError, "the host's modules gm6 and gmapi are not bound");
    }
    return object != nullptr;
}

/// An attribute of an object: a new reference, or empty with the lookup's exception. A null name
/// stands for an exception that is already pending, a null object for a module that is not bound.
inline PyRef get_attribute(PyObject* object, PyObject* name) noexcept {
    return name != nullptr && require_bound(object) ? PyRef::steal(PyObject_GetAttr(object, name))
                                                    : PyRef();
}
inline PyRef get_attribute(PyObject* object, AttributeName& name) noexcept {
    return get_attribute(object, name.get());
}

/// Sets an attribute to a borrowed value, or deletes it when that is null. False with an exception,
/// also for a null object, a module that is not bound.
inline bool set_attribute(PyObject* object, AttributeName& name, PyObject* value) noexcept {
    PyObject* interned = name.get();
    return interned != nullptr && require_bound(object) &&
           PyObject_SetAttr(object, interned, value) == 0;
}
/// Sets an attribute to a value that was just made. False with an exception: the store's, or when
/// `value` is empty the one with which making it failed.
inline bool set_attribute(PyObject* object, AttributeName& name, const PyRef& value) noexcept {
    return value && set_attribute(object, name, value.get());
}

}  // namespace larkspur
