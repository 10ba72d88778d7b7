/* Preloaded into an interpreter that is a shared library, this lets the collector start also where
 * an object comes from a list of free ones: before each of these calls it makes a collectable
 * object and drops it again, as the interpreter would if the list were empty. */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include <Python.h>
#include <dlfcn.h>
#include <frameobject.h>

/* How often that was; 0 where the interpreter does not let its functions be replaced. */
long free_list_allocations = 0;

static void make_collectable(void) {
    PyObject* object = _PyObject_GC_Malloc(sizeof(PyObject));
    ++free_list_allocations;
    if (object != NULL) {
        PyObject_GC_Del(object);
    } else {
        PyErr_Clear();
    }
}

#define REPLACED(result, name, parameters, arguments)         \
    result name parameters {                                  \
        static __typeof__(&(name)) real;                      \
        if (real == NULL) {                                   \
            real = (__typeof__(real))dlsym(RTLD_NEXT, #name); \
        }                                                     \
        make_collectable();                                   \
        return real arguments;                                \
    }

REPLACED(PyObject*, PyTuple_New, (Py_ssize_t size), (size))
REPLACED(PyObject*, PyList_New, (Py_ssize_t size), (size))
REPLACED(PyObject*, PyDict_New, (void), ())
REPLACED(PyObject*, PyMethod_New, (PyObject * function, PyObject* self, PyObject* type),
         (function, self, type))
REPLACED(PyObject*, PyCFunction_NewEx, (PyMethodDef * method, PyObject* self, PyObject* module),
         (method, self, module))
REPLACED(PyFrameObject*, PyFrame_New,
         (PyThreadState * state, PyCodeObject* code, PyObject* globals, PyObject* locals),
         (state, code, globals, locals))
REPLACED(PyObject*, PyWeakref_NewRef, (PyObject * object, PyObject* callback), (object, callback))
