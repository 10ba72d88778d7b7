/* In place of pygame's extension modules "surface" and "display": exports a table of pygame's kind
 * and is linked with the SDL that has the function SDL_FUNCTION, or with none. Its Surfaces point
 * to memory that nobody may read, as another SDL's seem to do when they are taken for ours. */
#include <Python.h>

#ifdef SDL_FUNCTION
void SDL_FUNCTION(void);
#endif

struct surface {
    PyObject head;
    void* surface;
    void* part;
};

static PyObject* new_surface(PyTypeObject* type, PyObject* arguments, PyObject* keywords) {
    PyObject* object = PyType_GenericNew(type, arguments, keywords);
    if (object != NULL) {
        ((struct surface*)object)->surface = (void*)16;
    }
    return object;
}

static PyTypeObject surface_type = {PyVarObject_HEAD_INIT(NULL, 0)};

static PyObject* wrap(void* surface) {
    PyObject* object = new_surface(&surface_type, NULL, NULL);
    if (object != NULL) {
        ((struct surface*)object)->surface = surface;
    }
    return object;
}

/* The third entry is there to need the SDL. */
static void* table[] = {
    (void*)&surface_type,
    (void*)wrap,
#ifdef SDL_FUNCTION
    (void*)SDL_FUNCTION,
#else
    NULL,
#endif
};

static void make_module(const char* name) {
    PyObject* module = Py_InitModule3(name, NULL, NULL);
    surface_type.tp_name = "pygame.Surface";
    surface_type.tp_basicsize = sizeof(struct surface);
    surface_type.tp_flags = Py_TPFLAGS_DEFAULT;
    surface_type.tp_new = new_surface;
    if (module == NULL || PyType_Ready(&surface_type) < 0) {
        return;
    }
    Py_INCREF(&surface_type);
    PyModule_AddObject(module, "Surface", (PyObject*)&surface_type);
    PyModule_AddObject(module, "_PYGAME_C_API", PyCapsule_New(table, NULL, NULL));
}

PyMODINIT_FUNC initsurface(void);
PyMODINIT_FUNC initsurface(void) {
    make_module("surface");
}

PyMODINIT_FUNC initdisplay(void);
PyMODINIT_FUNC initdisplay(void) {
    make_module("display");
}
