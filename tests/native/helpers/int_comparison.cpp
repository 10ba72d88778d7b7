// Comparison by integer for any two objects: inside the module the interpreter hands it only some.
#include "core/python.h"

#include "types/comparison.h"

#define EXPORT extern "C" __attribute__((visibility("default")))

namespace {

// A type of integers with rich comparison alone. Its slot says what it was called for and answers
// as it was told.
PyObject* answers[6];

PyObject* only_rich_compare(PyObject* a, PyObject* b, int op) {
    PyObject* calls = PyObject_GetAttrString(reinterpret_cast<PyObject*>(Py_TYPE(a)), "calls");
    PyObject* call = Py_BuildValue("(OOi)", a, b, op);
    if (calls == nullptr || call == nullptr || PyList_Append(calls, call) != 0) {
        Py_FatalError("no list of calls");
    }
    Py_DECREF(call);
    Py_DECREF(calls);
    if (answers[op] == nullptr) {
        PyErr_SetString(PyExc_ArithmeticError, "told to fail");
        return nullptr;
    }
    Py_INCREF(answers[op]);
    return answers[op];
}

PyTypeObject only_rich_type = {PyVarObject_HEAD_INIT(nullptr, 0)};

}  // namespace

EXPORT int compare(PyObject* a, PyObject* b) {
    return larkspur::compare_as_int(a, b);
}

EXPORT PyObject* richcompare(PyObject* a, PyObject* b, int op) {
    return larkspur::richcompare_as_int(a, b, op);
}

// What the type OnlyRich answers to a comparison: a new reference kept, null for a failure.
EXPORT void set_answer(int op, PyObject* answer) {
    Py_XINCREF(answer);
    Py_XDECREF(answers[op]);
    answers[op] = answer;
}

// The type OnlyRich; its comparisons are appended to its list `calls`.
EXPORT PyObject* make_only_rich_type() {
    only_rich_type.tp_name = "OnlyRich";
    only_rich_type.tp_basicsize = sizeof(PyIntObject);
    only_rich_type.tp_flags = Py_TPFLAGS_DEFAULT;
    only_rich_type.tp_base = &PyInt_Type;
    only_rich_type.tp_richcompare = only_rich_compare;
    PyObject* calls = PyList_New(0);
    if (calls == nullptr || PyType_Ready(&only_rich_type) != 0 ||
        PyDict_SetItemString(only_rich_type.tp_dict, "calls", calls) != 0) {
        return nullptr;
    }
    Py_DECREF(calls);
    Py_INCREF(&only_rich_type);
    return reinterpret_cast<PyObject*>(&only_rich_type);
}
