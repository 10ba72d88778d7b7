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

/// An attribute of an object: a new reference, or empty with the lookup's exception.
inline PyRef get_attribute(PyObject* object, AttributeName& name) noexcept {
    PyObject* interned = name.get();
    return interned != nullptr ? PyRef::steal(PyObject_GetAttr(object, interned)) : PyRef();
}

/// Sets an attribute. False with an exception: the store's, or when `value` is empty the one with
/// which making the value failed.
inline bool set_attribute(PyObject* object, AttributeName& name, const PyRef& value) noexcept {
    PyObject* interned = name.get();
    return interned != nullptr && value && PyObject_SetAttr(object, interned, value.get()) == 0;
}

}  // namespace larkspur
