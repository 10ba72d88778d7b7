// Reaching into the host's objects: resource lists, instances, the current `self`, calls, colours.
// The exported functions and their contracts are in the public header; here is what internal code
// uses beside them.
#pragma once

#include "core/python.h"

#include "core/exports.h"
#include "core/py_ref.h"

namespace larkspur {

/// Saves gmapi.self and makes `instance` the current one for a scope in which game code runs.
class SelfScope {
 public:
    explicit SelfScope(PyObject* instance) noexcept { PushSelf(instance); }
    SelfScope(const SelfScope&) = delete;
    SelfScope& operator=(const SelfScope&) = delete;
    ~SelfScope() { PopSelf(); }
};

/// gm6.game or gmapi.game and one of its lists: a new reference to game.<list_name>; empty with the
/// lookup's exception. RuntimeError before the host's modules are bound.
PyRef game_list(PyObject* host_module, const char* list_name) noexcept;

}  // namespace larkspur
