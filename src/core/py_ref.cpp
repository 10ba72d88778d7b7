#include "core/py_ref.h"

namespace larkspur {
namespace {

// The ints that exist once (NSMALLNEGINTS and NSMALLPOSINTS of the interpreter's intobject.c).
constexpr long kLeastSharedInt = -5;
constexpr long kGreatestSharedInt = 256;

// Whether an object is one of those that the interpreter hands out again and again.
bool is_shared_by_interpreter(PyObject* object) noexcept {
    if (object == Py_None || object == Py_NotImplemented || object == Py_Ellipsis ||
        PyBool_Check(object) || PyType_Check(object)) {
        return true;
    }
    if (PyInt_CheckExact(object)) {
        const long value = PyInt_AS_LONG(object);
        return value >= kLeastSharedInt && value <= kGreatestSharedInt;
    }
    if (PyString_CheckExact(object)) {
        return PyString_GET_SIZE(object) <= 1 || PyString_CHECK_INTERNED(object) != 0;
    }
    if (PyUnicode_CheckExact(object)) {
        return PyUnicode_GET_SIZE(object) <= 1;
    }
    if (PyTuple_CheckExact(object)) {
        return PyTuple_GET_SIZE(object) == 0;
    }
    return PyFrozenSet_CheckExact(object) && PySet_GET_SIZE(object) == 0;
}

}  // namespace

void release_unowned(PyObject* object, Py_ssize_t held) noexcept {
    if (Py_REFCNT(object) > held + 1 && !is_shared_by_interpreter(object)) {
        Py_DECREF(object);
    }
}

}  // namespace larkspur
