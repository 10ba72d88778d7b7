#include "types/comparison.h"

#include <cstdint>
#include <utility>

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

// A rich comparison by one type's slot. A slot reads its operands as objects of its own type, so
// any other pair goes the interpreter's way.
PyRef rich_result(const PyTypeObject* type, PyObject* a, PyObject* b, int op) noexcept {
    const bool takes_both =
        type->tp_richcompare != nullptr && Py_TYPE(a) == type && Py_TYPE(b) == type;
    return PyRef::steal(takes_both ? type->tp_richcompare(a, b, op)
                                   : PyObject_RichCompare(a, b, op));
}

// Three-way comparison of two integers of which the first one's type knows only the rich one.
int compare_richly(PyObject* a, PyObject* b) noexcept {
    const PyTypeObject* type = Py_TYPE(a);
    PyRef equal = rich_result(type, a, b, Py_EQ);
    if (!equal) {
        return 0;
    }
    static_cast<void>(equal.release());  // only that it succeeded counts; its reference is kept
    const std::pair<int, int> answers[] = {{Py_LT, -1}, {Py_GT, 1}};
    for (const auto& [op, answer] : answers) {
        const PyRef result = rich_result(type, a, b, op);
        const int holds = result ? PyObject_IsTrue(result.get()) : -1;
        if (holds != 0) {
            return holds < 0 ? -1 : answer;
        }
    }
    return 0;
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
    const PyTypeObject* type = Py_TYPE(value_a.get());
    if (type->tp_compare == nullptr) {
        return compare_richly(value_a.get(), value_b.get());
    }
    // The slot would read a value of another type as one of its own.
    return Py_TYPE(value_b.get()) == type ? type->tp_compare(value_a.get(), value_b.get())
                                          : PyObject_Compare(value_a.get(), value_b.get());
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
    const PyTypeObject* type = Py_TYPE(value_a.get());
    if (type->tp_richcompare != nullptr) {
        return rich_result(type, a, b, op).release();
    }
    std::int32_t int_a = 0;
    std::int32_t int_b = 0;
    if (!cut_to_32_bits(value_a.get(), int_a) || !cut_to_32_bits(value_b.get(), int_b)) {
        return nullptr;
    }
    switch (op) {
        case Py_LT:
            return PyBool_FromLong(int_a < int_b);
        case Py_LE:
            return PyBool_FromLong(int_a <= int_b);
        case Py_EQ:
            return PyBool_FromLong(int_a == int_b);
        case Py_NE:
            return PyBool_FromLong(int_a != int_b);
        case Py_GT:
            return PyBool_FromLong(int_a > int_b);
        case Py_GE:
            return PyBool_FromLong(int_a >= int_b);
        default:
            return nullptr;
    }
}

}  // namespace larkspur
