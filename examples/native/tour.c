/* A call of each function that larkspur exports, checked: what to pass, and who owns what.
 *
 * Unlike sparks.c, which looks names up one by one, this module leaves them to the loader: whoever
 * imports it (show_tour.py does) loads larkspur before with its names visible to all:
 *
 *   sys.setdlopenflags(sys.getdlopenflags() | ctypes.RTLD_GLOBAL); import larkspur
 *
 * Each function below is a function of the module. It returns None, or raises AssertionError with
 * the check that did not hold.
 */
#include <Python.h>

#include <SDL.h>

#include "larkspur.h"

#define CHECK(condition)                                                                         \
    do {                                                                                         \
        if (!(condition)) {                                                                      \
            if (!PyErr_Occurred()) {                                                             \
                PyErr_Format(PyExc_AssertionError, "tour.c, line %d: %s", __LINE__, #condition); \
            }                                                                                    \
            return NULL;                                                                         \
        }                                                                                        \
    } while (0)

/* A surface of 32 bits a pixel with alpha in the top byte; the caller's to free. */
static SDL_Surface* new_surface(int width, int height, Uint32 pixel) {
    SDL_Surface* surface =
        SDL_CreateRGBSurface(SDL_SWSURFACE, width, height, 32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000);
    if (surface != NULL) {
        SDL_FillRect(surface, NULL, pixel);
    }
    return surface;
}

static Uint32 pixel_at(const SDL_Surface* surface, int x, int y) {
    return ((const Uint32*)((const char*)surface->pixels + (ptrdiff_t)y * surface->pitch))[x];
}

/* ---- The module ---------------------------------------------------------------------------- */

static PyObject* the_module(PyObject* self, PyObject* unused) {
    PyObject* wrapped;
    SDL_Surface* surface = new_surface(4, 3, 0xFF102030);
    (void)self;
    (void)unused;
    CHECK(surface != NULL);
    wrapped = PySurface_FromSurface(surface); /* ours; the surface is its own from here on */
    CHECK(wrapped != NULL);
    Py_DECREF(wrapped); /* frees the surface, too */
    larkspur_init_rooms();
    CHECK(!PyErr_Occurred());
    Py_RETURN_NONE;
}

/* ---- Shared variables ---------------------------------------------------------------------- */

/* shared_variables(name): whether gm6 has an attribute, read through what larkspur is bound to. */
static PyObject* shared_variables(PyObject* self, PyObject* name) {
    (void)self;
    CHECK(gm6 != NULL && gmapi != NULL && gmapi__dict__ != NULL);
    CHECK(PyDict_GetItemString(gmapi__dict__, "py_self_stack") == gmapi_py_self_stack);
    CHECK(g_screen != NULL); /* set_SDL_screen() came before */
    CHECK(COLOR_WHITE ==
          (g_screen->format->Rmask | g_screen->format->Gmask | g_screen->format->Bmask));
    return PyBool_FromLong(PyObject_HasAttr(gm6, name));
}

/* ---- Host access --------------------------------------------------------------------------- */

/* host_access(sprite, object, instance): `sprite` is gm6.game.sprites[1], `instance` the first one
 * of `object`. */
static PyObject* host_access(PyObject* self, PyObject* args) {
    PyObject *sprite, *object, *instance, *result, *pair;
    (void)self;
    if (!PyArg_ParseTuple(args, "OOO", &sprite, &object, &instance)) {
        return NULL;
    }
    result = Game_Sequence_Index(sprite, "sprites");
    CHECK(result != NULL && PyInt_AsLong(result) == 1);
    Py_DECREF(result);
    result = Game_Sequence_Index_F(sprite, "sprites");
    CHECK(result != NULL && PyFloat_AsDouble(result) == 1.0);
    Py_DECREF(result);
    result = Game_Sequence_Index_S(sprite, "rooms"); /* it is none of the rooms */
    CHECK(result != NULL && strcmp(PyString_AsString(result), "-1") == 0);
    Py_DECREF(result);

    pair = Py_BuildValue("(ii)", 7, -8);
    CHECK(pair != NULL);
    CHECK(seqi(pair, 1) == -8);
    Py_DECREF(pair);

    result = GetFirstInstance(object);
    CHECK(result == instance);
    Py_DECREF(result);

    CHECK(PushSelf(instance) == 0);
    CHECK(PyDict_GetItemString(gmapi__dict__, "self") == instance);
    CHECK(PopSelf() == 0);
    CHECK(PyDict_GetItemString(gmapi__dict__, "self") != instance);

    result = invoke((PyObject*)&PyInt_Type, Py_True);
    CHECK(result != NULL && PyInt_AsLong(result) == 1);
    Py_DECREF(result);
    result = invoke_4(gm6_Room_DrawBackgrounds, Py_None, Py_None, Py_None, Py_None);
    CHECK(result != NULL);
    Py_DECREF(result);

    pair = Py_BuildValue("(iii)", 1, 2, 3);
    CHECK(pair != NULL);
    CHECK(color_as_int(pair) == SDL_MapRGB(g_screen->format, 1, 2, 3));
    Py_DECREF(pair);
    Py_RETURN_NONE;
}

/* ---- Particles ----------------------------------------------------------------------------- */

/* particles(handle): the handle of a particle at (10, 10), made by CParticle_new(), whose type has
 * a shape. */
static PyObject* particles(PyObject* self, PyObject* handle) {
    (void)self;
    /* The caller of this function holds the handle, and so the record stays. */
    struct particle_record* particle = PyCObject_AsVoidPtr(handle);
    int32_t ttl = particle->ttl;
    particle->direction = 180.0F; /* degrees: upwards */
    particle->speed = 2.0F;       /* pixels per step */
    CParticle_reset_velocities(particle);
    CParticle_step_low(particle);
    CHECK(particle->y > 7.9F && particle->y < 8.1F);
    CHECK(particle->ttl == ttl - 1);
    if (particle->ttl > 0) {
        particle_render_low(particle, 0, 0);
    }
    CHECK(!PyErr_Occurred());
    Py_RETURN_NONE;
}

/* ---- Colours ------------------------------------------------------------------------------- */

/* colours(type, particle): handles; the type fades from alpha 1 to 0 and is white throughout. */
static PyObject* colours(PyObject* self, PyObject* args) {
    PyObject *type_handle, *particle_handle;
    const struct particle_type_record* type;
    (void)self;
    if (!PyArg_ParseTuple(args, "OO", &type_handle, &particle_handle)) {
        return NULL;
    }
    CHECK(multalpha(0x804020, 128) == 0x402010);
    CHECK(blend(0x0000FF, 0xFF0000, 64) == 0xBF003F); /* 64/256 of the first */
    CHECK(interpolate_unformatted(0x0000FF, 0xFF0000, 0.25F) == 0xBF003F);
    CHECK(color_for_format(0x0000FF, g_screen->format) == SDL_MapRGB(g_screen->format, 255, 0, 0));
    CHECK(interpolate_fmt(0x0000FF, 0x000000, 1.0F, g_screen->format) ==
          SDL_MapRGB(g_screen->format, 254, 0, 0)); /* 255/256 of the first */
    CHECK(blend_mode_flatten(128) == 1 && blend_mode_flatten(0) == 0);

    type = PyCObject_AsVoidPtr(type_handle);
    CHECK(DesiredAlpha(type, 1.0F) == 255 && DesiredAlpha(type, 0.0F) == 0);
    CHECK((DesiredTint_type(type, 0.5F) & 0xFFFFFF) == 0xFFFFFF);
    CHECK((DesiredTint_part_gm(PyCObject_AsVoidPtr(particle_handle), 0.5F) & 0xFFFFFF) == 0xFFFFFF);
    Py_RETURN_NONE;
}

/* ---- Pixels -------------------------------------------------------------------------------- */

static PyObject* pixels(PyObject* self, PyObject* unused) {
    SDL_Rect place = {1, 1, 0, 0};
    SDL_Surface* source = new_surface(2, 2, 0xFF804020);
    SDL_Surface* target = new_surface(8, 8, 0xFF101010);
    SDL_Surface* made;
    struct satusub_subtractor both = subtractor_for(0x01020304);
    struct satusub_start one = startptr_for(0x01020304);
    uint32_t words[4] = {0x10101010, 0x10101010, 0x10101010, 0x10101010};
    (void)self;
    (void)unused;
    CHECK(source != NULL && target != NULL);

    flagged_blit(source, target, &place, 1); /* adds bytes, up to 255 */
    CHECK(pixel_at(target, 1, 1) == 0xFF905030);
    CHECK(pixel_at(target, 3, 1) == 0xFF101010);
    additive_blit(source, target, 0, target->pitch, 1, 4); /* one pixel, to the start of row 1 */
    CHECK(pixel_at(target, 0, 1) == 0xFF905030);

    Tint_Surface(source, 0x80FFFF); /* a GM colour: takes 255 - 0x80 from blue */
    CHECK(pixel_at(source, 0, 0) == 0xFF804000);
    Translucentify(source, 128); /* the alpha byte becomes 255 * 128 / 256 */
    CHECK(pixel_at(source, 0, 0) >> 24 == 127);

    made = flip_v(target); /* upside down */
    CHECK(made != NULL && pixel_at(made, 1, 6) == pixel_at(target, 1, 1));
    SDL_FreeSurface(made);
    made = flip_h(target); /* left to right */
    CHECK(made != NULL && pixel_at(made, 6, 1) == pixel_at(target, 1, 1));
    SDL_FreeSurface(made);
    made = flip_vh(target); /* both, one row too low */
    CHECK(made != NULL && pixel_at(made, 6, 7) == pixel_at(target, 1, 1));
    SDL_FreeSurface(made);
    made = clone_surface(target); /* blank, of the same size and format */
    CHECK(made != NULL && made->w == 8 && pixel_at(made, 1, 1) == 0);
    SDL_FreeSurface(made);
    made = RGBA_copy(target);
    CHECK(made != NULL && made->format->BitsPerPixel == 32);
    SDL_FreeSurface(made);

    satusub_head(words, one.value, 0, 4); /* the first word */
    CHECK(words[0] == 0x0F0E0D0C && words[1] == 0x10101010);
    satusub_body(words + 1, both.low, both.high, 8); /* two words at a time */
    CHECK(words[1] == 0x0F0E0D0C && words[2] == 0x0F0E0D0C && words[3] == 0x10101010);
    satusub(words, sizeof words, 0xFFFFFFFF);
    CHECK(words[0] == 0 && words[3] == 0);

    SDL_FreeSurface(source);
    SDL_FreeSurface(target);
    Py_RETURN_NONE;
}

/* ---- Sprite scale cache -------------------------------------------------------------------- */

/* sprite_scale_cache(sprite, key): the sprite's first subimage in 8 x 8 pixels, drawn half opaque
 * on black, which sprite.scalecache[key] holds from then on. */
static PyObject* sprite_scale_cache(PyObject* self, PyObject* args) {
    PyObject *sprite, *key, *picture;
    (void)self;
    if (!PyArg_ParseTuple(args, "OO", &sprite, &key)) {
        return NULL;
    }
    picture = sprite_scalecache_add(sprite, key, 0, 8, 8, 0, 0, (int)COLOR_WHITE, 128, 1);
    CHECK(picture != NULL); /* a new reference */
    return picture;
}

/* ---- Room drawing -------------------------------------------------------------------------- */

/* room_drawing(room, surface, drawn): view 0 of a GMRoom, with the tuple `drawn` in it. */
static PyObject* room_drawing(PyObject* self, PyObject* args) {
    PyObject *room, *surface, *drawn;
    (void)self;
    if (!PyArg_ParseTuple(args, "OOO!", &room, &surface, &PyTuple_Type, &drawn)) {
        return NULL;
    }
    CHECK(Room_DrawView(room, surface, 0, drawn) == 1);
    CHECK(g_view_xscale == 1.0 && g_view_yscale == 1.0);
    CHECK(this_second == -1 || this_second > 0); /* -1 until Room_Draw() has counted a frame */
    Py_RETURN_NONE;
}

/* ---- Diagnostics --------------------------------------------------------------------------- */

/* diagnostics(last): writes into the current directory; when `last` is true, ends the process. */
static PyObject* diagnostics(PyObject* self, PyObject* last) {
    (void)self;
    CHECK(debug_log("a line of its own") == 0);
    CHECK(dump("just these bytes") == 0);
    CHECK(debug("a fixed text\n") == 0);
    if (PyObject_IsTrue(last)) {
        crasher();
    }
    Py_RETURN_NONE;
}

/* ---- This module --------------------------------------------------------------------------- */

static PyMethodDef functions[] = {
    {"the_module", the_module, METH_NOARGS, NULL},
    {"shared_variables", shared_variables, METH_O, NULL},
    {"host_access", host_access, METH_VARARGS, NULL},
    {"particles", particles, METH_O, NULL},
    {"colours", colours, METH_VARARGS, NULL},
    {"pixels", pixels, METH_NOARGS, NULL},
    {"sprite_scale_cache", sprite_scale_cache, METH_VARARGS, NULL},
    {"room_drawing", room_drawing, METH_VARARGS, NULL},
    {"diagnostics", diagnostics, METH_O, NULL},
    {NULL, NULL, 0, NULL},
};

PyMODINIT_FUNC inittour(void);

__attribute__((visibility("default"))) void inittour(void) {
    Py_InitModule("tour", functions);
}
