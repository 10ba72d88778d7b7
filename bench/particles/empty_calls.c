/* What a call of a module function costs by itself: functions that parse their arguments as most
 * module functions do, and do nothing. */
#include <Python.h>

/* seven_ints(i, i, i, i, i, i, i): None. */
static PyObject* seven_ints(PyObject* self, PyObject* args) {
    int a, b, c, d, e, f, g;
    (void)self;
    if (!PyArg_ParseTuple(args, "iiiiiii", &a, &b, &c, &d, &e, &f, &g)) {
        return NULL;
    }
    Py_RETURN_NONE;
}

/* one_object(o): an int. */
static PyObject* one_object(PyObject* self, PyObject* args) {
    PyObject* object;
    (void)self;
    if (!PyArg_ParseTuple(args, "O", &object)) {
        return NULL;
    }
    return PyInt_FromLong(29);
}

static PyMethodDef functions[] = {
    {"seven_ints", seven_ints, METH_VARARGS, "Parse seven ints."},
    {"one_object", one_object, METH_VARARGS, "Parse one object; return an int."},
    {NULL, NULL, 0, NULL},
};

PyMODINIT_FUNC initempty_calls(void);

__attribute__((visibility("default"))) void initempty_calls(void) {
    Py_InitModule("empty_calls", functions);
}
