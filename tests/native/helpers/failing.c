/* Preloaded, this library stands in the place of everything that allocates: the C library's
 * functions, the interpreter's, SDL's surfaces and SDL_gfx's zooms. It counts those calls that
 * larkspur makes, or has others make for it, fails the one that a test has asked for, and knows
 * what is alive.
 *
 * What the interpreter does for Python code does not count, also where larkspur has called that
 * code: the interpreter itself crashes when it has no memory for a function's arguments, as it does
 * for the weak reference by which a type knows a type derived from it. Nor does what SDL allocates
 * beside surfaces: 1.2.15 uses a pixel format that it had no memory for; and the dynamic linker,
 * without memory for a library's variables of a thread, ends the process.
 *
 * What an executable calls inside of itself can't be replaced, so with an interpreter that is no
 * shared library only the C library's functions stand for the interpreter's. */
#include <Python.h>
#include <SDL.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <link.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

/* Kinds of calls, for failing_call(). */
enum { kMemory = 1, kInterpreter = 2, kSurface = 4 };

static int armed;         /* the kinds that count now; 0 outside of failing_call() */
static long counted;      /* calls of these kinds so far */
static long failing_from; /* the first that fails, from 1 on; 0 for none */
static long failing_to;   /* the last that fails */

static long live_blocks; /* of the C library's and the interpreter's memory */
static long live_surfaces;

static char failed_at[256]; /* which function's call failed last, of which library */

/* The code of one function or library. */
struct range {
    const char* start;
    const char* end;
};
static struct range larkspur, evaluation;

static int lies_in(struct range range, const void* place) {
    return (const char*)place >= range.start && (const char*)place < range.end;
}

static const char* file_of(const char* path) {
    const char* slash = strrchr(path, '/');
    return slash != NULL ? slash + 1 : path;
}

static int begins(const char* text, const char* start) {
    return strncmp(text, start, strlen(start)) == 0;
}

static int find_larkspur(struct dl_phdr_info* library, size_t size, void* unused) {
    (void)size;
    (void)unused;
    if (begins(file_of(library->dlpi_name), "larkspur.so")) {
        for (int i = 0; i < library->dlpi_phnum; ++i) {
            const ElfW(Phdr)* segment = &library->dlpi_phdr[i];
            if (segment->p_type == PT_LOAD && (segment->p_flags & PF_X) != 0) {
                larkspur.start = (const char*)library->dlpi_addr + segment->p_vaddr;
                larkspur.end = larkspur.start + segment->p_memsz;
            }
        }
    }
    return 0;
}

/* Looks where the code is that is_larkspurs() asks for; the module can come at any time. */
static void find_code(void) {
    if (evaluation.start == NULL) {
        Dl_info info;
        const ElfW(Sym)* symbol = NULL;
        evaluation.start = dlsym(RTLD_DEFAULT, "PyEval_EvalFrameEx");
        dladdr1(evaluation.start, &info, (void**)&symbol, RTLD_DL_SYMENT);
        evaluation.end = evaluation.start + symbol->st_size;
    }
    if (larkspur.start == NULL) {
        dl_iterate_phdr(find_larkspur, NULL);
    }
}

/* Whether larkspur makes this call, or the interpreter or SDL for it, and not for Python code. */
static int is_larkspurs(int kind) {
    void* places[64];
    find_code();
    const int depth = backtrace(places, 64);
    int i = 0;
    while (i < depth && !lies_in(larkspur, places[i])) {
        if (lies_in(evaluation, places[i++])) {
            return 0;
        }
    }
    if (i == depth) {
        return 0;
    }
    const char* maker = NULL;
    for (int k = 0; k <= i; ++k) {
        Dl_info info;
        if (dladdr(places[k], &info) == 0) {
            continue;
        }
        const char* library = file_of(info.dli_fname);
        if (info.dli_sname != NULL && strcmp(info.dli_sname, "PyWeakref_NewRef") == 0) {
            return 0;
        }
        if (maker != NULL) {
            continue;
        }
        if (begins(library, "failing.so") || begins(library, "libc.so") ||
            begins(library, "libasan")) {
            continue;
        }
        maker = library;
        snprintf(failed_at, sizeof failed_at, "%s, %s", library,
                 info.dli_sname != NULL ? info.dli_sname : "a function that is not exported");
    }
    if (maker == NULL || begins(maker, "ld-linux")) {
        return 0;
    }
    return kind == kSurface || !(begins(maker, "libSDL-") || begins(maker, "libSDL2"));
}

static int fails(int kind) {
    if ((armed & kind) == 0) {
        return 0;
    }
    char before[sizeof failed_at];
    memcpy(before, failed_at, sizeof before);
    const int kinds = armed;
    armed = 0; /* to look allocates */
    const int counts = is_larkspurs(kind);
    armed = kinds;
    counted += counts;
    const int failing = counts && counted >= failing_from && counted <= failing_to;
    if (!failing) {
        memcpy(failed_at, before, sizeof before);
    }
    return failing;
}

/* Whether the function behind one of ours is searched for. The compiler takes it that dlsym() never
 * comes back into this file, as its header says; yet it allocates and frees, with what is here. */
static volatile int searching;

/* The function that stands behind ours. */
static void* next(void** found, const char* name) {
    if (*found == NULL) {
        searching = 1;
        *found = dlsym(RTLD_NEXT, name);
        searching = 0;
    }
    return *found;
}
/* NOLINTBEGIN(bugprone-macro-parentheses): lists come in parentheses of their own */
#define NEXT(result, name, parameters) \
    static void* found;                \
    result(*const real) parameters = (result(*) parameters)next(&found, #name)
/* NOLINTEND(bugprone-macro-parentheses) */

/* dlsym() itself allocates a little the first time: from here, never to be freed. */
static _Alignas(16) char early_memory[4096];
static size_t early_used;

static void* early(size_t size) {
    void* block = early_memory + early_used;
    early_used += (size + 15) & ~(size_t)15;
    return early_used <= sizeof early_memory ? block : NULL;
}
static int is_early(const void* block) {
    return (const char*)block >= early_memory &&
           (const char*)block < early_memory + sizeof early_memory;
}

static void* kept(void* block) {
    live_blocks += block != NULL;
    return block;
}

/* Resizes a block, or makes one, with one of the functions for that. */
static void* resized(int kind, void* (*real)(void*, size_t), void* block, size_t size) {
    if (fails(kind)) {
        return NULL;
    }
    void* moved = real(block, size);
    live_blocks += block == NULL && moved != NULL;
    return moved;
}

EXPORT void* malloc(size_t size) {
    if (searching) {
        return early(size);
    }
    NEXT(void*, malloc, (size_t));
    return fails(kMemory) ? NULL : kept(real(size));
}

EXPORT void* calloc(size_t count, size_t size) {
    if (searching) {
        return early(count * size);
    }
    NEXT(void*, calloc, (size_t, size_t));
    return fails(kMemory) ? NULL : kept(real(count, size));
}

EXPORT void* realloc(void* block, size_t size) {
    NEXT(void*, realloc, (void*, size_t));
    return resized(kMemory, real, block, size);
}

EXPORT void free(void* block) {
    if (block == NULL || is_early(block) || searching) {
        return; /* dlsym() frees the text of an older error: that one stays */
    }
    NEXT(void, free, (void*));
    --live_blocks;
    real(block);
}

EXPORT void* PyObject_Malloc(size_t size) {
    NEXT(void*, PyObject_Malloc, (size_t));
    return fails(kInterpreter) ? NULL : kept(real(size));
}

EXPORT void* PyObject_Realloc(void* block, size_t size) {
    NEXT(void*, PyObject_Realloc, (void*, size_t));
    return resized(kInterpreter, real, block, size);
}

EXPORT void PyObject_Free(void* block) {
    NEXT(void, PyObject_Free, (void*));
    live_blocks -= block != NULL;
    real(block);
}

/* A function of the interpreter that can fail, with what it gives then. */
/* NOLINTBEGIN(bugprone-macro-parentheses): lists come in parentheses of their own */
#define INTERPRETERS(result, name, parameters, arguments, failure) \
    EXPORT result name parameters {                                \
        NEXT(result, name, parameters);                            \
        return fails(kInterpreter) ? failure : real arguments;     \
    }
/* NOLINTEND(bugprone-macro-parentheses) */

INTERPRETERS(void*, PyMem_Malloc, (size_t size), (size), NULL)
INTERPRETERS(void*, PyMem_Realloc, (void* block, size_t size), (block, size), NULL)
/* What the interpreter keeps for the next object of a kind would hide that these can fail. */
INTERPRETERS(PyObject*, PyList_New, (Py_ssize_t length), (length), PyErr_NoMemory())
INTERPRETERS(PyObject*, PyDict_New, (void), (), PyErr_NoMemory())
INTERPRETERS(PyObject*, PyFloat_FromDouble, (double value), (value), PyErr_NoMemory())

EXPORT PyObject* PyTuple_New(Py_ssize_t length) {
    NEXT(PyObject*, PyTuple_New, (Py_ssize_t));
    return length > 0 && fails(kInterpreter) ? PyErr_NoMemory() : real(length);
}

/* A function of SDL or SDL_gfx that makes a surface. Most do it with the first one, which counts
 * the surface; where they call that inside of themselves, it is counted here. */
#define SURFACE_MAKER(name, parameters, arguments)                   \
    EXPORT SDL_Surface* name parameters {                            \
        NEXT(SDL_Surface*, name, parameters);                        \
        if (fails(kSurface)) {                                       \
            SDL_SetError("Out of memory");                           \
            return NULL;                                             \
        }                                                            \
        const long before = live_surfaces;                           \
        SDL_Surface* surface = real arguments;                       \
        live_surfaces += surface != NULL && live_surfaces == before; \
        return surface;                                              \
    }

SURFACE_MAKER(SDL_CreateRGBSurface,
              (Uint32 flags, int width, int height, int depth, Uint32 r, Uint32 g, Uint32 b,
               Uint32 a),
              (flags, width, height, depth, r, g, b, a))
SURFACE_MAKER(SDL_ConvertSurface, (SDL_Surface * source, SDL_PixelFormat* format, Uint32 flags),
              (source, format, flags))
SURFACE_MAKER(SDL_DisplayFormatAlpha, (SDL_Surface * source), (source))
SURFACE_MAKER(zoomSurface, (SDL_Surface * source, double x, double y, int smooth),
              (source, x, y, smooth))
SURFACE_MAKER(rotozoomSurfaceXY,
              (SDL_Surface * source, double angle, double x, double y, int smooth),
              (source, angle, x, y, smooth))
SURFACE_MAKER(rotozoomSurface, (SDL_Surface * source, double angle, double zoom, int smooth),
              (source, angle, zoom, smooth))

EXPORT void SDL_FreeSurface(SDL_Surface* surface) {
    NEXT(void, SDL_FreeSurface, (SDL_Surface*));
    live_surfaces -= surface != NULL && surface->refcount == 1;
    real(surface);
}

/* Calls a function without arguments while calls of these kinds count and, from the n-th on, so
 * many of them fail. (the result or None, the exception or None, whether there was a result at all,
 * the number of calls that counted, where the last failed.) */
EXPORT PyObject* failing_call(PyObject* callable, int kinds, long n, long failures) {
    PyObject *type, *value, *traceback;
    counted = 0;
    failed_at[0] = '\0';
    failing_from = n;
    failing_to = n + failures - 1;
    armed = kinds;
    PyObject* result = PyObject_CallObject(callable, NULL);
    armed = 0;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    Py_XDECREF(value);
    Py_XDECREF(traceback);
    const int succeeded = result != NULL;
    return Py_BuildValue("(NNils)", result != NULL ? result : Py_BuildValue(""),
                         type != NULL ? type : Py_BuildValue(""), succeeded, counted, failed_at);
}

EXPORT long failing_live_blocks(void) {
    return live_blocks;
}
EXPORT long failing_live_surfaces(void) {
    return live_surfaces;
}
