#include "core/tuple.h"

#include <algorithm>

namespace larkspur {
namespace {

PyRef tuple_of_list(PyObject* list) noexcept {
    PyObject* tuple = PyTuple_New(PyList_GET_SIZE(list));
    if (tuple == nullptr) {
        return PyRef();
    }
    // Making it can have started a collection, and with it code that cut the list.
    const Py_ssize_t count = std::min(PyTuple_GET_SIZE(tuple), PyList_GET_SIZE(list));
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyTuple_SET_ITEM(tuple, i, PyRef::borrow(PyList_GET_ITEM(list, i)).release());
    }
    if (count < PyTuple_GET_SIZE(tuple) && _PyTuple_Resize(&tuple, count) != 0) {
        return PyRef();
    }
    return PyRef::steal(tuple);
}

}  // namespace

PyRef tuple_of(PyObject* items) noexcept {
    if (PyTuple_CheckExact(items)) {
        return PyRef::borrow(items);
    }
    if (PyList_Check(items)) {
        return tuple_of_list(items);
    }
    const PyRef list = PyRef::steal(PySequence_List(items));
    return list ? tuple_of_list(list.get()) : PyRef();
}

}  // namespace larkspur
