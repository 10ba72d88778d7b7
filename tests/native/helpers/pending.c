/* Calls into larkspur that tell the result and the exception that is pending afterwards, which may
 * both be there: Python code alone can't see that, and would stumble over the exception later. */
#include <Python.h>
#include <stdint.h>

typedef uint32_t (*ColorAsInt)(PyObject* colour);
typedef int32_t (*DrawView)(PyObject* room, PyObject* surface, int32_t view, PyObject* drawn);

/* The pending exception as a new reference, which it takes away; None when there is none. */
static PyObject* take_exception(void) {
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    if (type == NULL) {
        Py_RETURN_NONE;
    }
    PyErr_NormalizeException(&type, &value, &traceback);
    Py_DECREF(type);
    Py_XDECREF(traceback);
    return value;
}

/* Calls a function; (1 or 0 for success, its result or None, the exception or None). */
PyObject* call(PyObject* callable, PyObject* arguments) {
    PyObject* result = PyObject_CallObject(callable, arguments);
    PyObject* exception = take_exception();
    const int succeeded = result != NULL;
    if (result == NULL) {
        Py_INCREF(Py_None);
        result = Py_None;
    }
    return Py_BuildValue("(iNN)", succeeded, result, exception);
}

/* Calls Room_DrawView with an exception pending, unless `before` is None; (status, exception). */
PyObject* draw_view(DrawView function, PyObject* before, PyObject* room, PyObject* surface,
                    int view, PyObject* drawn) {
    if (before != Py_None) {
        PyErr_SetObject((PyObject*)Py_TYPE(before), before);
    }
    const int status = function(room, surface, view, drawn);
    PyObject* exception = take_exception();
    return Py_BuildValue("(iN)", status, exception);
}

/* Calls color_as_int; (pixel value, exception). */
PyObject* color_as_int(ColorAsInt function, PyObject* colour) {
    const unsigned long value = function(colour);
    PyObject* exception = take_exception();
    return Py_BuildValue("(kN)", value, exception);
}
