/* What callgrind is told to count, by its name, and what counts depend on beside the program. */
#include <Python.h>

/* Calls the scene once. callgrind counts from the moment it gets here and writes the count down
 * when it leaves, so count.py knows the name, and the function must stay one that is called. */
__attribute__((visibility("default"), noinline)) PyObject* larkspur_counted_scene(PyObject* scene);

PyObject* larkspur_counted_scene(PyObject* scene) {
    PyObject* volatile result = PyObject_CallObject(scene, NULL);
    return result;
}

/* count(scene): what scene() returns. */
static PyObject* count(PyObject* self, PyObject* scene) {
    (void)self;
    return larkspur_counted_scene(scene);
}

/* level(): the highest dispatch level that the processor is said to have. Under callgrind that is
 * what callgrind knows, not what the machine has. */
static PyObject* level(PyObject* self, PyObject* args) {
    const char* name = "x86-64";
    (void)self;
    (void)args;
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
    if (__builtin_cpu_supports("x86-64-v4")) {
        name = "x86-64-v4";
    } else if (__builtin_cpu_supports("x86-64-v3")) {
        name = "x86-64-v3";
    } else if (__builtin_cpu_supports("x86-64-v2")) {
        name = "x86-64-v2";
    }
#endif
    return PyString_FromString(name);
}

static PyMethodDef functions[] = {
    {"count", count, METH_O, "Call a scene; callgrind counts it."},
    {"level", level, METH_NOARGS, "The highest dispatch level here."},
    {NULL, NULL, 0, NULL},
};

PyMODINIT_FUNC initcounted(void);

__attribute__((visibility("default"))) void initcounted(void) {
    PyObject* module = Py_InitModule("counted", functions);
    if (module != NULL) {
#ifdef __clang__
        PyModule_AddStringConstant(module, "compiler", __VERSION__);
#else
        PyModule_AddStringConstant(module, "compiler", "GCC " __VERSION__);
#endif
    }
}
