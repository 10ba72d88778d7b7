/* A fountain of sparks: what a native caller of larkspur does.
 *
 * This is an extension module of its own, loaded by the interpreter beside larkspur. Python sets up
 * the display and calls it (see fountain.py); particle types and particles are made by larkspur's
 * Python functions, everything per frame goes through its exported native functions.
 *
 *   sparks.light(shape, x, y, count)   lights a burst of `count` sparks at a place in the room
 *   sparks.frame(x_offset, y_offset)   steps and draws all of them; the number that still burn
 *   sparks.stamp(sprite, width, height, angle)   a transformed subimage, made once and then found
 */
#include <Python.h>
#include <dlfcn.h>
#include <string.h>

#include "larkspur.h"

#define MOST_SPARKS 1024

static const float FALL_PER_STEP = 0.15F; /* pixels per step, added at each step */

/* larkspur's functions, looked up in the library that the interpreter has loaded; with the types
 * that the header declares. */
static __typeof__(&CParticle_step_low) step_particle;
static __typeof__(&particle_render_low) render_particle;
static __typeof__(&sprite_scalecache_add) add_to_scale_cache;
static const uint32_t* white;

static PyObject* larkspur; /* the module, owned */

/* Handles, each owned; the records in them live as long. */
static PyObject* sparks[MOST_SPARKS];
static int spark_count;

/* Finds one exported name. The result is a function's or a variable's address. */
static int find(void* library, const char* name, void* result) {
    void* address = dlsym(library, name);
    if (address == NULL) {
        PyErr_Format(PyExc_ImportError, "larkspur does not export %s", name);
        return -1;
    }
    memcpy(result, &address, sizeof address);
    return 0;
}

static int load_larkspur(void) {
    PyObject* path;
    void* library;
    larkspur = PyImport_ImportModule("larkspur");
    if (larkspur == NULL) {
        return -1;
    }
    path = PyObject_GetAttrString(larkspur, "__file__");
    if (path == NULL) {
        return -1;
    }
    library = dlopen(PyString_AsString(path), RTLD_NOW | RTLD_NOLOAD);
    Py_DECREF(path);
    if (library == NULL) {
        PyErr_SetString(PyExc_ImportError, dlerror());
        return -1;
    }
    if (find(library, "CParticle_step_low", &step_particle) < 0 ||
        find(library, "particle_render_low", &render_particle) < 0 ||
        find(library, "sprite_scalecache_add", &add_to_scale_cache) < 0 ||
        find(library, "COLOR_WHITE", &white) < 0) {
        return -1;
    }
    return 0;
}

/* Calls a function of larkspur that sets something; steals the arguments. */
static int set(const char* function, PyObject* arguments) {
    PyObject* callable = PyObject_GetAttrString(larkspur, function);
    PyObject* result = NULL;
    if (callable != NULL && arguments != NULL) {
        result = PyObject_CallObject(callable, arguments);
    }
    Py_XDECREF(callable);
    Py_XDECREF(arguments);
    Py_XDECREF(result);
    return result != NULL ? 0 : -1;
}

/* A new particle type with `shape`; null with an exception. */
static PyObject* make_type(PyObject* shape) {
    PyObject* type = PyObject_CallMethod(larkspur, "part_type_create", NULL);
    struct particle_type_record* record;
    if (type == NULL) {
        return NULL;
    }
    if (set("part_type_shape", Py_BuildValue("(OO)", type, shape)) < 0 ||
        set("part_type_life", Py_BuildValue("(Oii)", type, 30, 60)) < 0 ||
        set("part_type_speed", Py_BuildValue("(Oiiii)", type, 1, 6, 0, 0)) < 0 ||
        set("part_type_direction", Py_BuildValue("(Oiiii)", type, 140, 220, 0, 0)) < 0) {
        Py_DECREF(type);
        return NULL;
    }
    /* Plain numbers of a record may just as well be written. */
    record = PyCObject_AsVoidPtr(type);
    record->blend = 1; /* additive */
    record->color1 = 0xFFFFFF;
    record->color2 = 0x40C0FF;
    record->color3 = 0x2040C0;
    record->alpha_end = 0.0F;
    return type;
}

static PyObject* sparks_light(PyObject* self, PyObject* args) {
    PyObject* shape;
    PyObject* type;
    float x, y;
    int count;
    (void)self;
    if (!PyArg_ParseTuple(args, "Offi:light", &shape, &x, &y, &count)) {
        return NULL;
    }
    type = make_type(shape);
    if (type == NULL) {
        return NULL;
    }
    while (count-- > 0 && spark_count < MOST_SPARKS) {
        PyObject* spark = PyObject_CallMethod(larkspur, "CParticle_new", "Off", type, x, y);
        if (spark == NULL) {
            Py_DECREF(type);
            return NULL;
        }
        sparks[spark_count++] = spark;
    }
    Py_DECREF(type); /* each spark keeps it */
    Py_RETURN_NONE;
}

static PyObject* sparks_frame(PyObject* self, PyObject* args) {
    static int running;
    int x_offset, y_offset, i, burning = 0;
    (void)self;
    if (!PyArg_ParseTuple(args, "ii:frame", &x_offset, &y_offset)) {
        return NULL;
    }
    if (running) { /* drawing can run Python code, and that must drop no spark that is drawn */
        PyErr_SetString(PyExc_RuntimeError, "sparks.frame() is running");
        return NULL;
    }
    running = 1;
    for (i = 0; i < spark_count; ++i) {
        struct particle_record* spark = PyCObject_AsVoidPtr(sparks[i]);
        spark->vy += FALL_PER_STEP;
        step_particle(spark);
        if (spark->ttl > 0) {
            render_particle(spark, x_offset, y_offset);
            sparks[burning++] = sparks[i];
        } else {
            Py_DECREF(sparks[i]);
        }
    }
    spark_count = burning;
    running = 0;
    return PyInt_FromLong(burning);
}

/* The picture that a sprite keeps under a key: a new reference. Null without an exception when it
 * keeps none. */
static PyObject* kept_picture(PyObject* sprite, PyObject* key) {
    PyObject* cache = PyObject_GetAttrString(sprite, "scalecache");
    PyObject* picture = cache != NULL ? PyObject_GetItem(cache, key) : NULL;
    Py_XDECREF(cache);
    PyErr_Clear(); /* what can't be found is made */
    return picture;
}

static PyObject* sparks_stamp(PyObject* self, PyObject* args) {
    PyObject *sprite, *key, *picture;
    int width, height, angle;
    (void)self;
    if (!PyArg_ParseTuple(args, "Oiii:stamp", &sprite, &width, &height, &angle)) {
        return NULL;
    }
    key = Py_BuildValue("(iii)", width, height, angle);
    if (key == NULL) {
        return NULL;
    }
    picture = kept_picture(sprite, key);
    if (picture == NULL) {
        picture = add_to_scale_cache(sprite, key, 0, width, height, angle, 0, (int)*white, 255, 0);
    }
    Py_DECREF(key);
    if (picture == NULL) {
        PyErr_SetString(PyExc_ValueError, "larkspur could not make the picture");
    }
    return picture;
}

static PyMethodDef functions[] = {
    {"light", sparks_light, METH_VARARGS, "light(shape, x, y, count): light a burst of sparks."},
    {"frame", sparks_frame, METH_VARARGS,
     "frame(x_offset, y_offset): step and draw the sparks; how many still burn."},
    {"stamp", sparks_stamp, METH_VARARGS,
     "stamp(sprite, width, height, angle): a transformed copy of the sprite's first subimage."},
    {NULL, NULL, 0, NULL},
};

PyMODINIT_FUNC initsparks(void);

__attribute__((visibility("default"))) void initsparks(void) {
    if (load_larkspur() == 0) {
        Py_InitModule("sparks", functions);
    }
}
