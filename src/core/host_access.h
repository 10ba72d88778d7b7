// Reaching into the host's objects: resource lists, instances, the current `self`, calls, colours.
// The exported functions and their contracts are in the public header; here is what internal code
// uses beside them.
#pragma once

#include "core/python.h"

#include "core/py_ref.h"
#include "larkspur.h"

namespace larkspur {

/// Saves gmapi.self and makes `instance` the current one for a scope in which game code runs; at
/// its end, whatever exception is pending, the saved one is put back. False with an exception when
/// the instance could not be made the current one.
class SelfScope {
 public:
    explicit SelfScope(PyObject* instance) noexcept;
    SelfScope(const SelfScope&) = delete;
    SelfScope& operator=(const SelfScope&) = delete;
    ~SelfScope();

    explicit operator bool() const noexcept { return entered_; }

 private:
    bool entered_;
    bool saved_;
};

/// Calls one of the host's callables with a tuple of arguments: its result, or empty with an
/// exception. RuntimeError for a null callable, which RegisterInstancesDict() has not fetched;
/// empty arguments stand for an exception that is already pending.
PyRef call_host(PyObject* callable, const PyRef& arguments) noexcept;

/// gm6.game or gmapi.game and one of its lists: a new reference to game.<list_name>; empty with the
/// lookup's exception. RuntimeError before the host's modules are bound.
PyRef game_list(PyObject* host_module, const char* list_name) noexcept;

/// Item i of a tuple or list: a new reference; empty with TypeError when it is neither, with
/// IndexError when i is outside.
PyRef state_item(PyObject* state, Py_ssize_t i) noexcept;

}  // namespace larkspur
