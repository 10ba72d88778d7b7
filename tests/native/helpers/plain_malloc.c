/* Preloaded: the interpreter's small objects come from malloc(), each by itself. Its own allocator
 * packs them into large blocks, in which no tool sees where one of them ends or that it is gone.
 *
 * Takes effect where the interpreter is a shared library, which calls these through its table.
 */
#include <stdlib.h>

void* PyObject_Malloc(size_t size) {
    return malloc(size == 0 ? 1 : size);
}

void* PyObject_Realloc(void* memory, size_t size) {
    return realloc(memory, size == 0 ? 1 : size);
}

void PyObject_Free(void* memory) {
    free(memory);
}
