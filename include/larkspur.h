/*
 * larkspur for native callers.
 *
 * Every function, variable and record that the module exports, with its contract. The module is an
 * extension of Python 2.7: load it by importing it, then look the names up in the loaded library
 * (dlopen of the module's file, then dlsym) or link against it. All calls belong on the
 * interpreter's thread, with its global lock held.
 *
 * Compiles as C11 and as C++17. Python's headers are not needed: Python objects are pointers to
 * the incomplete `struct _object`, which is what PyObject is. A "new reference" is the caller's to
 * release, a "borrowed" one is not.
 */
#ifndef LARKSPUR_H
#define LARKSPUR_H

#include <stdint.h>

#if defined(__GNUC__)
#define LARKSPUR_EXPORT __attribute__((visibility("default")))
#else
#define LARKSPUR_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

struct _object;
struct SDL_Surface;
struct SDL_Rect;
struct SDL_PixelFormat;

/* ---- The module ---------------------------------------------------------------------------- */

/* Copies pygame's native tables into the room-drawing unit. Called by the module's initialisation;
 * calling it again reads the tables again. Leaves no exception pending. */
LARKSPUR_EXPORT void larkspur_init_rooms(void);

/* Wraps a surface in a new pygame Surface, which owns it from then on. Returns a new reference, or
 * null with an exception: pygame's error for a null surface, RuntimeError when pygame's native
 * table is not there; the surface is freed on failure. */
LARKSPUR_EXPORT struct _object* PySurface_FromSurface(struct SDL_Surface* surface);

/* ---- Shared variables ---------------------------------------------------------------------- */
/* Objects hold one reference each, owned by the module, for the life of the process; null until
 * the function named has run. */

/* The host's modules and the dictionary in which game code runs; bound when larkspur is imported. */
extern LARKSPUR_EXPORT struct _object* gm6;
extern LARKSPUR_EXPORT struct _object* gmapi;
extern LARKSPUR_EXPORT struct _object* gmapi__dict__;

/* The display's surface, whose pixel format every surface made here shares, and that format's red,
 * green and blue masks together (white without alpha). Set by set_SDL_screen(); a native caller may
 * store a surface of its own, which it has to keep alive. */
extern LARKSPUR_EXPORT struct SDL_Surface* g_screen;
extern LARKSPUR_EXPORT uint32_t COLOR_WHITE;

/* Scale of the view being drawn or drawn last: port size divided by view size. */
extern LARKSPUR_EXPORT double g_view_xscale;
extern LARKSPUR_EXPORT double g_view_yscale;

/* Wall-clock second of the last frame-rate sample, -1 before the first frame. */
extern LARKSPUR_EXPORT int32_t this_second;

/* The host's callables, fetched by RegisterInstancesDict(). */
extern LARKSPUR_EXPORT struct _object* gm6_Room_Compile;
extern LARKSPUR_EXPORT struct _object* gm6_Room_Create;
extern LARKSPUR_EXPORT struct _object* gm6_Room_InitializeBackgrounds;
extern LARKSPUR_EXPORT struct _object* gm6_Room_AddInstance;
extern LARKSPUR_EXPORT struct _object* gm6_Room_AddDrawnInstance;
extern LARKSPUR_EXPORT struct _object* gm6_Room_ResortDrawnObjects;
extern LARKSPUR_EXPORT struct _object* gm6_Room_SetBackgroundIndex;
extern LARKSPUR_EXPORT struct _object* gm6_Room_StepAlarms;
extern LARKSPUR_EXPORT struct _object* gm6_Room_MoveInstances;
extern LARKSPUR_EXPORT struct _object* gm6_Room_HandleCollisions;
extern LARKSPUR_EXPORT struct _object* gm6_Room_StepEvents;
extern LARKSPUR_EXPORT struct _object* gm6_Room_DrawBackgrounds;
extern LARKSPUR_EXPORT struct _object* gm6_Room_RenderBackground;
extern LARKSPUR_EXPORT struct _object* gm6_Room_Leave;
extern LARKSPUR_EXPORT struct _object* gm6_Room_MouseButtonDown;
extern LARKSPUR_EXPORT struct _object* gm6_Room_MouseButtonUp;
extern LARKSPUR_EXPORT struct _object* gm6_Room_HandleKeyrelease;
extern LARKSPUR_EXPORT struct _object* gm6_Room_HandleKeypress;
/* Always null: the name is kept for callers that look it up. */
extern LARKSPUR_EXPORT struct _object* gm6_Room_DrawView;
/* A function, a class (objects of exactly this type are particle systems), the object that holds
 * the current drawing properties, and the list of saved `self` objects. */
extern LARKSPUR_EXPORT struct _object* gmapi_draw_sprite_ext;
extern LARKSPUR_EXPORT struct _object* gmapi_py_ParticleSystem;
extern LARKSPUR_EXPORT struct _object* gmapi_py_draw_props;
extern LARKSPUR_EXPORT struct _object* gmapi_py_self_stack;
extern LARKSPUR_EXPORT struct _object* pygame_draw_rect;
extern LARKSPUR_EXPORT struct _object* pygame_Surface;

/* ---- Host access --------------------------------------------------------------------------- */

/* Position of `object` (compared by identity) in the list gm6.game.<list_name>: a new int, float or
 * string. When it is not there, or the attribute is no list, the first two return null without an
 * exception and the third the string "-1". Null with an exception when gm6.game or its attribute
 * cannot be fetched. */
LARKSPUR_EXPORT struct _object* Game_Sequence_Index(struct _object* object, const char* list_name);
LARKSPUR_EXPORT struct _object* Game_Sequence_Index_F(struct _object* object,
                                                      const char* list_name);
LARKSPUR_EXPORT struct _object* Game_Sequence_Index_S(struct _object* object,
                                                      const char* list_name);

/* Element i of a list or tuple as a signed 32-bit integer. -1 with an exception when the object is
 * neither (TypeError), i is outside (IndexError) or the element does not convert. */
LARKSPUR_EXPORT int32_t seqi(struct _object* sequence, int32_t i);

/* The first instance of an object resource or, when it has none, of its children, depth first: a
 * new reference. Null without an exception when there is none, with one when a lookup failed. */
LARKSPUR_EXPORT struct _object* GetFirstInstance(struct _object* object);

/* PushSelf saves gmapi.self on gmapi.py_self_stack and makes `instance` the new one; PopSelf puts
 * the saved one back. 0, or -1 with an exception; popping an empty stack writes a line on standard
 * error and returns -1 without an exception. */
LARKSPUR_EXPORT int PushSelf(struct _object* instance);
LARKSPUR_EXPORT int PopSelf(void);

/* Calls `callable` with one or four borrowed arguments; a new reference, or null with the call's
 * exception. */
LARKSPUR_EXPORT struct _object* invoke(struct _object* callable, struct _object* argument);
LARKSPUR_EXPORT struct _object* invoke_4(struct _object* callable, struct _object* a,
                                         struct _object* b, struct _object* c, struct _object* d);

/* A colour as a pixel value of the display: an integer stands for itself; of a sequence of three or
 * more the first three are red, green and blue (0 to 255), shifted into place and added; a shorter
 * sequence is COLOR_WHITE. Parts that do not convert count as -1 and leave their exception. Without
 * a display RuntimeError and COLOR_WHITE. */
LARKSPUR_EXPORT uint32_t color_as_int(struct _object* colour);

/* ---- Diagnostics --------------------------------------------------------------------------- */

/* Appends "larkspur: <message>\n" to debug.log in the current directory; result of the close. */
LARKSPUR_EXPORT int debug_log(const char* message);
/* Prints a printf format that takes no arguments, and flushes standard output; result of the
 * flush. */
LARKSPUR_EXPORT int debug(const char* format);
/* Appends the message's bytes to logfile.txt in the current directory; result of the close. */
LARKSPUR_EXPORT int dump(const char* message);
/* Dumps "crasher called.\n" and ends the process with status 0. */
LARKSPUR_EXPORT void crasher(void);

#ifdef __cplusplus
}
#endif

#endif /* LARKSPUR_H */
