// What sprites, backgrounds and rooms share: they are identified by their position in one of the
// game's lists, and their images come from the host.
#pragma once

#include "core/python.h"

#include "core/attribute.h"
#include "core/host_access.h"
#include "core/py_ref.h"

namespace larkspur {

/// nb_int and nb_float of a resource: its position in its list; null without an exception when it
/// is not there.
template <AttributeName& list_name>
PyObject* resource_int(PyObject* self) noexcept {
    return game_list_index(self, list_name.get()).release();
}
template <AttributeName& list_name>
PyObject* resource_float(PyObject* self) noexcept {
    return game_list_index_as_float(self, list_name.get()).release();
}

/// tp_as_number of a resource.
template <AttributeName& list_name>
inline PyNumberMethods resource_number = [] {
    PyNumberMethods number = {};
    number.nb_int = resource_int<list_name>;
    number.nb_float = resource_float<list_name>;
    return number;
}();

/// tp_str of a background or room: its position in its list as text, "-1" when it is not there.
template <AttributeName& list_name>
PyObject* resource_str(PyObject* self) noexcept {
    return game_list_index_as_text(self, list_name.get()).release();
}

/// Reads item i of a pickled state into the field `name`. Beside the field's reference one more is
/// taken: a restored name is never freed. False with an exception, the field as it was.
bool restore_name(PyObject* state, Py_ssize_t i, PyObject*& name) noexcept;

/// Lets the host load a resource's images: its result, or empty with its exception after a line on
/// standard error.
PyRef load_images(PyObject* loader, const PyRef& arguments) noexcept;

/// Stores a resource in the game code's globals under its name: a new reference to None, or null
/// with an exception after a line on standard output.
///
/// @param name borrowed; null when Python deleted it
PyObject* define_in_game_globals(PyObject* name, PyObject* resource) noexcept;

}  // namespace larkspur
