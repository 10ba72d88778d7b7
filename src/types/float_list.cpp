#include "types/float_list.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "base/convert.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"

namespace larkspur {
namespace {

double* values_of(PyObject* self) noexcept {
    return reinterpret_cast<FloatListObject*>(self)->values;
}

bool in_range(Py_ssize_t i) noexcept {
    return i >= 0 && i < kFloatListLength;
}

// The interpreter's float conversion. False with its exception.
bool to_double(PyObject* object, double& value) noexcept {
    const PyRef number = PyRef::steal(PyNumber_Float(object));
    if (!number) {
        return false;
    }
    value = PyFloat_AS_DOUBLE(number.get());
    return true;
}

// Arithmetic is that of element 0 with a number. The list's element is the left operand even where
// the list stands on the right: 5 - list subtracts 5.
template <typename Operation>
PyObject* float_list_binary(PyObject* a, PyObject* b) noexcept {
    const bool list_is_left = Py_TYPE(a) == &float_list_type;
    PyObject* list = list_is_left ? a : b;
    double number = 0.0;
    if (!to_double(list_is_left ? b : a, number)) {
        return nullptr;
    }
    PyObject* result = PyType_GenericNew(&float_list_type, nullptr, nullptr);
    if (result == nullptr) {
        return nullptr;
    }
    const double* from = values_of(list);
    double* to = values_of(result);
    std::copy_n(from, kFloatListLength, to);
    to[0] = Operation()(from[0], number);
    return result;
}

PyObject* float_list_inplace_subtract(PyObject* self, PyObject* other) noexcept {
    double number = 0.0;
    if (!to_double(other, number)) {
        return nullptr;
    }
    values_of(self)[0] -= number;
    Py_INCREF(self);
    return self;
}

PyObject* float_list_int(PyObject* self) noexcept {
    return PyInt_FromLong(truncate_to_int32(values_of(self)[0]));
}

PyObject* float_list_float(PyObject* self) noexcept {
    return PyFloat_FromDouble(values_of(self)[0]);
}

int float_list_compare(PyObject* a, PyObject* b) noexcept {
    double value_a = 0.0;
    double value_b = 0.0;
    if (!to_double(a, value_a) || !to_double(b, value_b)) {
        return -1;
    }
    if (value_b > value_a) {
        return -1;
    }
    return value_a > value_b ? 1 : 0;  // NaN is equal to everything
}

// A whole number as an integer. Others give the text "%f" itself, which is what the interpreter's
// string formatting makes of a conversion that it does not know.
PyObject* float_list_str(PyObject* self) noexcept {
    const double value = values_of(self)[0];
    if (std::floor(value) == value) {
        return PyString_FromFormat("%d", truncate_to_int32(value));
    }
    return PyString_FromString("%f");
}

Py_ssize_t float_list_length(PyObject* /*self*/) noexcept {
    return kFloatListLength;
}

// Out of range fails without an exception, here and in assignment.
PyObject* float_list_item(PyObject* self, Py_ssize_t i) noexcept {
    return in_range(i) ? PyFloat_FromDouble(values_of(self)[i]) : nullptr;
}

// Deletion comes in as a null value, which does not convert.
int float_list_assign_item(PyObject* self, Py_ssize_t i, PyObject* value) noexcept {
    double number = 0.0;
    if (!in_range(i) || !to_double(value, number)) {
        return -1;
    }
    values_of(self)[i] = number;
    return 0;
}

PyObject* float_list_reduce(PyObject* self, PyObject* /*args*/) noexcept {
    const double* values = values_of(self);
    return reduced(float_list_type, PyRef::steal(Py_BuildValue("(dddddddd)", values[0], values[1],
                                                               values[2], values[3], values[4],
                                                               values[5], values[6], values[7])));
}

PyObject* float_list_setstate(PyObject* self, PyObject* args) noexcept {
    PyObject* state = state_argument(args, "Floatlist8.__setstate__()");
    if (state == nullptr) {
        return nullptr;
    }
    for (int i = 0; i < kFloatListLength; ++i) {
        const PyRef item = state_item(state, i);
        if (!item) {
            return nullptr;
        }
        const double number = PyFloat_AsDouble(item.get());
        if (number == -1.0 && PyErr_Occurred() != nullptr) {
            PyErr_Clear();  // what does not convert is stored as -1
        }
        values_of(self)[i] = number;
    }
    return new_none();
}

PyMethodDef float_list_methods[] = {
    {"__reduce__", float_list_reduce, METH_VARARGS, nullptr},
    {"__setstate__", float_list_setstate, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyNumberMethods float_list_number = [] {
    PyNumberMethods number = {};
    number.nb_add = float_list_binary<std::plus<double>>;
    number.nb_subtract = float_list_binary<std::minus<double>>;
    number.nb_multiply = float_list_binary<std::multiplies<double>>;
    number.nb_divide = float_list_binary<std::divides<double>>;
    number.nb_inplace_subtract = float_list_inplace_subtract;
    number.nb_int = float_list_int;
    number.nb_float = float_list_float;
    return number;
}();

PySequenceMethods float_list_sequence = [] {
    PySequenceMethods sequence = {};
    sequence.sq_length = float_list_length;
    sequence.sq_item = float_list_item;
    sequence.sq_ass_item = float_list_assign_item;
    return sequence;
}();

PyTypeObject make_float_list_type() noexcept {
    PyTypeObject type =
        make_type("larkspur.Floatlist8", "A list of 8 floats.", sizeof(FloatListObject));
    type.tp_flags |= Py_TPFLAGS_CHECKTYPES;  // operands of any type, uncoerced
    type.tp_compare = float_list_compare;
    type.tp_as_number = &float_list_number;
    type.tp_as_sequence = &float_list_sequence;
    type.tp_str = float_list_str;
    type.tp_methods = float_list_methods;
    return type;
}

}  // namespace

PyTypeObject float_list_type = make_float_list_type();

}  // namespace larkspur
