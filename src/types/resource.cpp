#include "types/resource.h"

#include "base/console.h"
#include "core/host.h"
#include "core/host_access.h"
#include "core/record.h"

namespace larkspur {

bool restore_name(PyObject* state, Py_ssize_t i, PyObject*& name) noexcept {
    PyRef item = PyRef::steal(PySequence_GetItem(state, i));
    Py_XINCREF(item.get());  // the name outlives every resource that was restored under it
    return replace_field(name, std::move(item));
}

PyRef load_images(PyObject* loader, const PyRef& arguments) noexcept {
    PyRef result = call_host(loader, arguments);
    if (!result) {
        write_stderr("An exception occurred!\n");
    }
    return result;
}

PyObject* define_in_game_globals(PyObject* name, PyObject* resource) noexcept {
    const PyRef key = required_field(name, "name");  // hashing it can run code that renames us
    // The general store, as it raises where a failed import has left no dictionary to store in.
    if (!key || PyObject_SetItem(game_globals(), key.get(), resource) != 0) {
        write_stdout("Retnull\n");
        return nullptr;
    }
    return new_none();
}

}  // namespace larkspur
