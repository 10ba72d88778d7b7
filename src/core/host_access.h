// Reaching into the host's objects: resource lists, instances, the current `self`, calls, colours.
#pragma once

#include "core/python.h"

#include <cstdint>

#include "core/attribute.h"
#include "core/py_ref.h"

namespace larkspur {

/// The game's lists.
inline AttributeName sprite_list("sprites");
inline AttributeName background_list("backgrounds");
inline AttributeName room_list("rooms");
inline AttributeName object_list("objects");

/// gm6.game or gmapi.game and one of its lists: a new reference to game.<list_name>; empty with the
/// lookup's exception. RuntimeError before the host's modules are bound.
///
/// @param list_name a string, here and below; null stands for an exception that is already pending,
///     and is a TypeError where none is
PyRef game_list(PyObject* host_module, PyObject* list_name) noexcept;

/// Position of an object, by identity, in gm6.game.<list_name>, as an int, a float or text. Where
/// the object is not in it, or it is no list, the numbers are empty without an exception and the
/// text is "-1". Empty with game_list()'s exception when there is no such attribute; only the int
/// is empty without one while gm6 is not bound.
PyRef game_list_index(PyObject* object, PyObject* list_name) noexcept;
PyRef game_list_index_as_float(PyObject* object, PyObject* list_name) noexcept;
PyRef game_list_index_as_text(PyObject* object, PyObject* list_name) noexcept;

/// First instance of an object resource or, when it has none, of its children, depth first. Empty
/// without an exception of its own when there is none, with one when a lookup failed. An older
/// exception is set aside while the host's code is asked.
PyRef first_instance(PyObject* object) noexcept;

/// Saves gmapi.self on the host's stack and makes `instance` the current one. False with an
/// exception; the old one can have been saved all the same.
bool push_self(PyObject* instance) noexcept;

/// Makes the object saved last the current gmapi.self again. False with an exception, or, when none
/// is saved, after a line on standard error and without one.
bool pop_self() noexcept;

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

/// The same with one or four arguments, borrowed.
PyRef call_host(PyObject* callable, PyObject* argument) noexcept;
PyRef call_host(PyObject* callable, PyObject* a, PyObject* b, PyObject* c, PyObject* d) noexcept;

/// A colour as a pixel value of the display: an integer stands for itself; of a sequence of three
/// or more the first three are red, green and blue (0 to 255), shifted into place and added; a
/// shorter sequence is white. What does not convert counts as -1 and leaves its exception. Without
/// a display RuntimeError and white.
std::uint32_t colour_as_pixel(PyObject* colour) noexcept;

/// Item i of a tuple or list: a new reference; empty with TypeError when it is neither, with
/// IndexError when i is outside.
PyRef state_item(PyObject* state, Py_ssize_t i) noexcept;

/// Item i of a tuple or list as a signed 32-bit integer; -1 with an exception when there is none,
/// as for state_item(), or it does not convert.
std::int32_t state_int(PyObject* state, Py_ssize_t i) noexcept;

}  // namespace larkspur
