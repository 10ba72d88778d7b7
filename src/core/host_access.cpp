#include "core/host_access.h"

#include <climits>

#include "base/console.h"
#include "core/display.h"
#include "core/host.h"
#include "core/recursion.h"
#include "larkspur.h"

namespace larkspur {
namespace {

AttributeName game_name("game");
AttributeName instances_name("instances");
AttributeName children_name("children");
AttributeName self_name("self");

constexpr Py_ssize_t kNotFound = -1;
constexpr Py_ssize_t kLookupFailed = -2;  // with an exception

// Position of an object, by identity, in gm6.game.<list_name>. What is no list has no positions.
Py_ssize_t position_in_game_list(PyObject* object, PyObject* list_name) noexcept {
    const PyRef list = game_list(gm6_module(), list_name);
    if (!list) {
        return kLookupFailed;
    }
    if (!PyList_Check(list.get())) {
        return kNotFound;
    }
    const Py_ssize_t length = PyList_GET_SIZE(list.get());
    for (Py_ssize_t i = 0; i < length; ++i) {
        if (PyList_GET_ITEM(list.get(), i) == object) {
            return i;
        }
    }
    return kNotFound;
}

// The list of the saved `self` objects, borrowed; null when there is none. It is never released,
// even when another one is registered.
PyObject* self_stack() noexcept {
    PyObject* stack = host_object(HostObject::kSelfStack);
    return stack != nullptr && PyList_Check(stack) ? stack : nullptr;
}

Py_ssize_t saved_self_count() noexcept {
    PyObject* stack = self_stack();
    return stack != nullptr ? PyList_GET_SIZE(stack) : 0;
}

// Looks an object up for a native caller, in the list whose name it gives as text.
template <PyRef (*look_up)(PyObject* object, PyObject* list_name) noexcept>
PyObject* look_up_by_text(PyObject* object, const char* list_name) noexcept {
    // The host's code would stop at an exception that the caller has pending.
    const PendingException set_aside;
    const PyRef name =
        PyRef::steal(list_name != nullptr ? PyString_InternFromString(list_name) : nullptr);
    return look_up(object, name.get()).release();
}

// As first_instance(), with whatever exception is pending.
PyRef search_instance(PyObject* object) noexcept {
    const RecursionGuard recursion(" while searching the first instance of an object");
    if (!recursion) {
        return PyRef();
    }
    {
        const PyRef instances = get_attribute(object, instances_name);
        if (!instances) {
            return PyRef();
        }
        const Py_ssize_t count = PyObject_Size(instances.get());
        if (count < 0) {
            return PyRef();
        }
        if (count >= 1) {
            return PyRef::steal(PySequence_GetItem(instances.get(), 0));
        }
    }
    const PyRef children = get_attribute(object, children_name);
    if (!children) {
        return PyRef();
    }
    // Lookups can change the list: its length is read anew for every child.
    for (Py_ssize_t i = 0;; ++i) {
        const Py_ssize_t count = PyObject_Size(children.get());
        if (i >= count) {
            return PyRef();  // a failed count, -1, ends here too, with its exception
        }
        const PyRef child = PyRef::steal(PySequence_GetItem(children.get(), i));
        if (!child) {
            return PyRef();
        }
        PyRef found = search_instance(child.get());
        if (found || PyErr_Occurred() != nullptr) {
            return found;
        }
    }
}

// One channel of a colour; -1 with its exception when it does not convert. Another channel's
// failure must not show in the code of this one.
std::uint32_t colour_channel(PyObject* colour, Py_ssize_t i) noexcept {
    const PendingException set_aside;
    const PyRef channel = PyRef::steal(PySequence_GetItem(colour, i));
    return channel ? static_cast<std::uint32_t>(PyInt_AsLong(channel.get())) : UINT_MAX;
}

}  // namespace

PyRef game_list(PyObject* host_module, PyObject* list_name) noexcept {
    if (!require_bound(host_module)) {
        return PyRef();
    }
    if (list_name == nullptr) {
        if (PyErr_Occurred() == nullptr) {
            PyErr_SetString(PyExc_TypeError, "a list of gm6.game needs a name, got a null pointer");
        }
        return PyRef();
    }
    const PyRef game = get_attribute(host_module, game_name);
    return game ? get_attribute(game.get(), list_name) : PyRef();
}

PyRef game_list_index(PyObject* object, PyObject* list_name) noexcept {
    if (gm6_module() == nullptr) {
        return PyRef();  // without the host's modules there is no list to be in
    }
    const Py_ssize_t position = position_in_game_list(object, list_name);
    return position < 0 ? PyRef() : PyRef::steal(PyInt_FromSsize_t(position));
}

PyRef game_list_index_as_float(PyObject* object, PyObject* list_name) noexcept {
    const Py_ssize_t position = position_in_game_list(object, list_name);
    return position < 0 ? PyRef() : PyRef::steal(PyFloat_FromDouble(static_cast<double>(position)));
}

PyRef game_list_index_as_text(PyObject* object, PyObject* list_name) noexcept {
    const Py_ssize_t position = position_in_game_list(object, list_name);
    return position == kLookupFailed ? PyRef() : PyRef::steal(PyString_FromFormat("%zd", position));
}

PyRef first_instance(PyObject* object) noexcept {
    const PendingException set_aside;
    return search_instance(object);
}

bool push_self(PyObject* instance) noexcept {
    PyObject* stack = self_stack();
    if (gmapi_module() == nullptr || stack == nullptr) {
        PyErr_SetString(
            PyExc_RuntimeError,
            "gmapi.py_self_stack must be a list when RegisterInstancesDict() is called");
        return false;
    }
    const PyRef current = get_attribute(gmapi_module(), self_name);
    return current && PyList_Append(stack, current.get()) == 0 &&
           set_attribute(gmapi_module(), self_name, instance);
}

bool pop_self() noexcept {
    PyObject* stack = self_stack();
    const Py_ssize_t last = stack != nullptr ? PyList_GET_SIZE(stack) - 1 : -1;
    if (last < 0) {
        write_stderr("Error in PyList_GetItem %d\n", static_cast<int>(last));
        return false;
    }
    const PyRef saved = PyRef::borrow(PyList_GET_ITEM(stack, last));
    // The store comes first: the saved object stays on the stack until it is current again. It can
    // run code that shortens the stack itself; then there is nothing left to delete.
    const bool stored = set_attribute(gmapi_module(), self_name, saved.get());
    const int deleted = PyList_SetSlice(stack, last, last + 1, nullptr);
    return stored && deleted == 0;
}

// A failed push can have saved the old object all the same: then it has to be put back, too.
SelfScope::SelfScope(PyObject* instance) noexcept {
    const Py_ssize_t before = saved_self_count();
    entered_ = push_self(instance);
    saved_ = entered_ || saved_self_count() > before;
}

SelfScope::~SelfScope() {
    if (saved_) {
        const PendingException set_aside;
        pop_self();
    }
}

PyRef call_host(PyObject* callable, const PyRef& arguments) noexcept {
    if (!arguments) {
        return PyRef();
    }
    if (callable == nullptr) {
        PyErr_SetString(PyExc_RuntimeError,
                        "the host's callables are not there yet: call RegisterInstancesDict() once "
                        "gm6 and gmapi are complete");
        return PyRef();
    }
    return PyRef::steal(PyObject_CallObject(callable, arguments.get()));
}

PyRef call_host(PyObject* callable, PyObject* argument) noexcept {
    return call_host(callable, PyRef::steal(Py_BuildValue("(O)", argument)));
}

PyRef call_host(PyObject* callable, PyObject* a, PyObject* b, PyObject* c, PyObject* d) noexcept {
    return call_host(callable, PyRef::steal(Py_BuildValue("(OOOO)", a, b, c, d)));
}

std::uint32_t colour_as_pixel(PyObject* colour) noexcept {
    if (!PySequence_Check(colour)) {
        return static_cast<std::uint32_t>(PyInt_AsLong(colour));
    }
    if (PySequence_Size(colour) <= 2) {
        return display_white();
    }
    const SDL_Surface* display = require_display("color_as_int()");
    if (display == nullptr) {
        return display_white();
    }
    // Only copies of the shifts are used: converting a channel can run code that closes the
    // display.
    const SDL_PixelFormat format = *display->format;
    const std::uint32_t red = colour_channel(colour, 0);
    const std::uint32_t green = colour_channel(colour, 1);
    const std::uint32_t blue = colour_channel(colour, 2);
    // A host can set shifts of up to 255; the processor takes them modulo 32.
    return (red << (format.Rshift & 31U)) + (green << (format.Gshift & 31U)) +
           (blue << (format.Bshift & 31U));
}

PyRef state_item(PyObject* state, Py_ssize_t i) noexcept {
    if (PyList_Check(state)) {
        return PyRef::borrow(PyList_GetItem(state, i));
    }
    if (PyTuple_Check(state)) {
        return PyRef::borrow(PyTuple_GetItem(state, i));
    }
    PyErr_Format(PyExc_TypeError, "a state must be a tuple or a list, got %.200s",
                 Py_TYPE(state)->tp_name);
    return PyRef();
}

std::int32_t state_int(PyObject* state, Py_ssize_t i) noexcept {
    const PyRef item = state_item(state, i);
    return item ? static_cast<std::int32_t>(PyInt_AsLong(item.get())) : -1;
}

}  // namespace larkspur

extern "C" {

PyObject* Game_Sequence_Index(PyObject* object, const char* list_name) {
    return larkspur::look_up_by_text<larkspur::game_list_index>(object, list_name);
}

PyObject* Game_Sequence_Index_F(PyObject* object, const char* list_name) {
    return larkspur::look_up_by_text<larkspur::game_list_index_as_float>(object, list_name);
}

PyObject* Game_Sequence_Index_S(PyObject* object, const char* list_name) {
    return larkspur::look_up_by_text<larkspur::game_list_index_as_text>(object, list_name);
}

int32_t seqi(PyObject* sequence, int32_t i) {
    return larkspur::state_int(sequence, i);
}

PyObject* GetFirstInstance(PyObject* object) {
    return larkspur::first_instance(object).release();
}

int PushSelf(PyObject* instance) {
    return larkspur::push_self(instance) ? 0 : -1;
}

int PopSelf(void) {
    return larkspur::pop_self() ? 0 : -1;
}

PyObject* invoke(PyObject* callable, PyObject* argument) {
    return larkspur::call_host(callable, argument).release();
}

PyObject* invoke_4(PyObject* callable, PyObject* a, PyObject* b, PyObject* c, PyObject* d) {
    return larkspur::call_host(callable, a, b, c, d).release();
}

uint32_t color_as_int(PyObject* colour) {
    return larkspur::colour_as_pixel(colour);
}

}  // extern "C"
