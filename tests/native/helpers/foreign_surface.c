/* What a pygame that is not built against the system's SDL 1.2 has as pygame.surface: a module that
 * CMake links with another SDL or with none. */
#include <Python.h>

PyMODINIT_FUNC initsurface(void) {
    Py_InitModule3("surface", NULL, NULL);
}
