#include "types/comparison.h"

#include <cstdint>

#include "base/console.h"
#include "core/py_ref.h"

namespace larkspur {
namespace {

// For tp_compare: the integer an object stands for; empty after a line on standard error.
PyRef int_value(PyObject* object) noexcept {
    PyRef value = PyRef::steal(PyNumber_Int(object));
    if (!value) {
        write_stderr("XXX need to set an exception.\n");
    }
    return value;
}

// The integer's value cut to 32 bits. False with OverflowError when it does not even fit a long.
bool cut_to_32_bits(PyObject* number, std::int32_t& value) noexcept {
    const long wide = PyInt_AsLong(number);
    if (wide == -1 && PyErr_Occurred() != nullptr) {
        return false;
    }
    value = static_cast<std::int32_t>(wide);
    return true;
}

}  // namespace

int compare_as_int(PyObject* a, PyObject* b) noexcept {
    const PyRef value_a = int_value(a);
    if (!value_a) {
        return -1;
    }
    const PyRef value_b = int_value(b);
    if (!value_b) {
        return -1;
    }
    if (PyInt_CheckExact(value_a.get()) && PyInt_CheckExact(value_b.get())) {
        const long number_a = PyInt_AS_LONG(value_a.get());
        const long number_b = PyInt_AS_LONG(value_b.get());
        return number_a < number_b ? -1 : static_cast<int>(number_a > number_b);
    }
    return PyObject_Compare(value_a.get(), value_b.get());  // a long, or a subclass's own order
}

PyObject* richcompare_as_int(PyObject* a, PyObject* b, int op) noexcept {
    const PyRef value_a = PyRef::steal(PyNumber_Int(a));
    if (!value_a) {
        return nullptr;
    }
    const PyRef value_b = PyRef::steal(PyNumber_Int(b));
    if (!value_b) {
        return nullptr;
    }
    std::int32_t int_a = 0;
    std::int32_t int_b = 0;
    if (!cut_to_32_bits(value_a.get(), int_a) || !cut_to_32_bits(value_b.get(), int_b)) {
        return nullptr;
    }
    return compared(int_a, int_b, op);
}

}  // namespace larkspur
