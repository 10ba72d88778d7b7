// Owned references, and the two helpers for code that runs while an exception is pending or
// whose reference counts are unusual by design.
#pragma once

#include "core/python.h"

#include <utility>

namespace larkspur {

/// Owns one reference to a Python object, or none. Move-only; made by name, so that every place
/// says whether it takes over a reference or adds one.
class PyRef {
 public:
    PyRef() noexcept = default;
    PyRef(const PyRef&) = delete;
    PyRef& operator=(const PyRef&) = delete;
    PyRef(PyRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    PyRef& operator=(PyRef&& other) noexcept {
        // Replace, then drop: the released object's destructor may look at us.
        PyObject* old = std::exchange(object_, std::exchange(other.object_, nullptr));
        Py_XDECREF(old);
        return *this;
    }
    ~PyRef() { Py_XDECREF(object_); }

    /// Takes over a new reference; null gives an empty PyRef.
    static PyRef steal(PyObject* object) noexcept { return PyRef(object); }
    /// Adds a reference to a borrowed object; null gives an empty PyRef.
    static PyRef borrow(PyObject* object) noexcept {
        Py_XINCREF(object);
        return PyRef(object);
    }

    /// The object, still owned here; null when empty.
    PyObject* get() const noexcept { return object_; }
    /// Hands the reference to the caller; belongs into a return or a call that steals.
    [[nodiscard]] PyObject* release() noexcept { return std::exchange(object_, nullptr); }
    explicit operator bool() const noexcept { return object_ != nullptr; }

 private:
    explicit PyRef(PyObject* object) noexcept : object_(object) {}
    PyObject* object_ = nullptr;
};

/// Sets the pending exception aside for a scope, so that the code inside starts clean, and puts it
/// back at the end. An exception raised inside stays and replaces the older one.
class PendingException {
 public:
    PendingException() noexcept {
        // As a rule nothing is pending, many times in every frame, and asking is the cheapest.
        if (PyErr_Occurred() != nullptr) {
            PyErr_Fetch(&type_, &value_, &traceback_);
        }
    }
    PendingException(const PendingException&) = delete;
    PendingException& operator=(const PendingException&) = delete;
    ~PendingException() {
        if (type_ == nullptr) {
            return;  // a newer one stays
        }
        if (PyErr_Occurred() != nullptr) {
            // Dropping the older exception can run Python code, which must not see the newer one.
            PyObject *type, *value, *traceback;
            PyErr_Fetch(&type, &value, &traceback);
            Py_DECREF(type_);
            Py_XDECREF(value_);
            Py_XDECREF(traceback_);
            PyErr_Restore(type, value, traceback);
        } else {
            PyErr_Restore(type_, value_, traceback_);
        }
    }

 private:
    PyObject* type_ = nullptr;
    PyObject* value_ = nullptr;
    PyObject* traceback_ = nullptr;
};

/// Makes a release that no acquisition pairs with: callers of the operation see one count less.
/// The last reference that someone else may hold is never given away, and no reference to an object
/// that the interpreter itself hands out again and again: it would one day free what it still
/// shares. These are None, NotImplemented, Ellipsis, True, False, the ints from -5 to 256 (the 0
/// that stands for an unset element of a variable is one), the empty tuple and frozenset, strings
/// of no or one character, interned strings, and types.
///
/// @param object borrowed
/// @param held number of references that the running call itself holds on the object
void release_unowned(PyObject* object, Py_ssize_t held) noexcept;

/// The module that is loaded under this name, or what stands in its place; empty, without an
/// exception, when there is none or no memory for the name.
inline PyRef loaded_module(const char* name) noexcept {
    return PyRef::borrow(PyDict_GetItemString(PyImport_GetModuleDict(), name));
}

/// A new reference to None, for functions that return nothing.
[[nodiscard]] inline PyObject* new_none() noexcept {
    Py_INCREF(Py_None);
    return Py_None;
}

}  // namespace larkspur
