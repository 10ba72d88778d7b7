// A module with one function per kind of fault, so that the tests can see the sanitizers catch it.
// It is built for Sanitize builds alone, with the very flags of the module.
#include "core/python.h"

#include <climits>
#include <cstdlib>

namespace {

// The compiler must not see that what follows is wrong, or it would drop it.
volatile int hidden_zero = 0;

PyObject* leak(PyObject*, PyObject*) {
    void* volatile lost = std::malloc(123);
    lost = nullptr;
    static_cast<void>(lost);
    Py_RETURN_NONE;
}

// Memory that only a Python object keeps: no leak while that object lives.
PyObject* keep(PyObject*, PyObject*) {
    return PyCObject_FromVoidPtr(std::malloc(123), std::free);
}

PyObject* overflow(PyObject*, PyObject*) {
    void* volatile block = std::calloc(8, 1);
    const int past_the_end = static_cast<unsigned char*>(block)[8 + hidden_zero];
    std::free(block);
    return PyInt_FromLong(past_the_end);
}

PyObject* undefined(PyObject*, PyObject*) {
    return PyInt_FromLong(INT_MAX + (1 + hidden_zero));
}

PyMethodDef methods[] = {{"leak", leak, METH_NOARGS, "Loses 123 bytes."},
                         {"keep", keep, METH_NOARGS, "An object that owns 123 bytes."},
                         {"overflow", overflow, METH_NOARGS, "Reads past the end of a block."},
                         {"undefined", undefined, METH_NOARGS, "Adds past the largest int."},
                         {nullptr, nullptr, 0, nullptr}};

}  // namespace

extern "C" __attribute__((visibility("default"))) void initlarkspur_faulty() {
    Py_InitModule("larkspur_faulty", methods);
}
