/* Calls into larkspur that tell the result and the exception that is pending afterwards, which may
 * both be there: Python code alone can't see that, and would stumble over the exception later. */
#include <Python.h>
#include <stdint.h>

typedef uint32_t (*ColorAsInt)(PyObject* colour);
typedef int32_t (*DrawView)(PyObject* room, PyObject* surface, int32_t view, PyObject* drawn);
typedef PyObject* (*FindInList)(PyObject* object, const char* list_name);
typedef PyObject* (*FindInstance)(PyObject* object);
typedef void (*RenderParticle)(void* record, int x_offset, int y_offset);
typedef PyObject* (*AddToScaleCache)(PyObject* sprite, PyObject* key, int subimage, int width,
                                     int height, int angle, int ignored, int colour, int alpha,
                                     int rgba_copy);

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

/* Makes an exception pending, unless it is None. */
static void set_exception(PyObject* exception) {
    if (exception != Py_None) {
        PyErr_SetObject((PyObject*)Py_TYPE(exception), exception);
    }
}

/* What a function returned, a new reference or null, as (1 or 0 for success, the result or None,
 * the exception or None). */
static PyObject* outcome(PyObject* result) {
    PyObject* exception = take_exception();
    const int succeeded = result != NULL;
    if (result == NULL) {
        Py_INCREF(Py_None);
        result = Py_None;
    }
    return Py_BuildValue("(iNN)", succeeded, result, exception);
}

/* Calls a function; its outcome. */
PyObject* call(PyObject* callable, PyObject* arguments) {
    return outcome(PyObject_CallObject(callable, arguments));
}

/* Calls one of the three functions that find an object's position in a list, or GetFirstInstance,
 * with an exception pending, unless `before` is None; its outcome. */
PyObject* find_in_list(FindInList function, PyObject* before, PyObject* object,
                       const char* list_name) {
    set_exception(before);
    return outcome(function(object, list_name));
}
PyObject* find_instance(FindInstance function, PyObject* before, PyObject* object) {
    set_exception(before);
    return outcome(function(object));
}

/* Calls Room_DrawView with an exception pending, unless `before` is None; (status, exception). */
PyObject* draw_view(DrawView function, PyObject* before, PyObject* room, PyObject* surface,
                    int view, PyObject* drawn) {
    set_exception(before);
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

/* Calls particle_render_low without offsets and with an exception pending, unless `before` is None;
 * the exception. */
PyObject* render_particle(RenderParticle function, PyObject* before, PyObject* particle) {
    void* record = PyCObject_AsVoidPtr(particle);
    set_exception(before);
    function(record, 0, 0);
    return take_exception();
}

/* Calls sprite_scalecache_add for a copy of the first subimage with an exception pending, unless
 * `before` is None; its outcome. */
PyObject* add_to_scale_cache(AddToScaleCache function, PyObject* before, PyObject* sprite,
                             PyObject* key, int width, int height, int colour) {
    set_exception(before);
    return outcome(function(sprite, key, 0, width, height, 0, 0, colour, 255, 0));
}
