// The blits and Python calls of a frame without views, and nothing else: what any implementation
// has to do at least when it blits with SDL.
#include "core/python.h"

#include <SDL.h>

extern "C" {

/// One tile: where it comes from and where it goes.
struct Blit {
    SDL_Surface* source;
    SDL_Rect from;
    SDL_Rect to;
};

/// Blits the tiles, calls `backgrounds` with `arguments`, then every object's Draw method. Returns
/// None, or null with the exception of the call that failed.
__attribute__((visibility("default"))) PyObject* bare_frame(const Blit* blits, int count,
                                                            SDL_Surface* target,
                                                            PyObject* backgrounds,
                                                            PyObject* arguments,
                                                            PyObject* objects) {
    static PyObject* const draw = PyString_InternFromString("Draw");
    static PyObject* const no_arguments = PyTuple_New(0);

    PyObject* result = PyObject_CallObject(backgrounds, arguments);
    Py_XDECREF(result);
    for (int i = 0; i < count && result != nullptr; ++i) {
        SDL_Rect from = blits[i].from;  // SDL writes what it clipped into its arguments
        SDL_Rect to = blits[i].to;
        SDL_UpperBlit(blits[i].source, &from, target, &to);
    }
    const Py_ssize_t object_count = PyList_GET_SIZE(objects);
    for (Py_ssize_t i = 0; i < object_count && result != nullptr; ++i) {
        PyObject* method = PyObject_GetAttr(PyList_GET_ITEM(objects, i), draw);
        result = method != nullptr ? PyObject_Call(method, no_arguments, nullptr) : nullptr;
        Py_XDECREF(result);
        Py_XDECREF(method);
    }
    if (result == nullptr) {
        return nullptr;
    }
    Py_RETURN_NONE;
}

}  // extern "C"
