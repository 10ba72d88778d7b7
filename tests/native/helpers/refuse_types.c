/* Linked into a second build of larkspur in place of PyType_Ready(): writes down which types are
 * readied, and fails for the one that LARKSPUR_REFUSED_TYPE names. */
#include <Python.h>
#include <stdlib.h>
#include <string.h>

int __real_PyType_Ready(PyTypeObject* type);
int __wrap_PyType_Ready(PyTypeObject* type);

/* The names of the readied types, each followed by a blank. */
__attribute__((visibility("default"))) char readied_types[512];

int __wrap_PyType_Ready(PyTypeObject* type) {
    const char* refused = getenv("LARKSPUR_REFUSED_TYPE");
    strncat(readied_types, type->tp_name, sizeof readied_types - strlen(readied_types) - 2);
    strcat(readied_types, " ");
    if (refused != NULL && strcmp(refused, type->tp_name) == 0) {
        PyErr_Format(PyExc_TypeError, "%s is refused", refused);
        return -1;
    }
    return __real_PyType_Ready(type);
}
