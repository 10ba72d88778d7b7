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
 *
 * What every caller sees to, as no function can check it:
 *   - A pointer is valid, and not null unless the contract says what null does. A surface lies in
 *     memory as it says of itself, a record is one that the module made.
 *   - Objects that are passed are held by the caller until the call returns. All functions that
 *     take or give Python objects can run Python code, and so can larkspur_init_rooms(), PopSelf()
 *     and particle_render_low(): the host's, and at any allocation that of weak references and
 *     destructors. It can close or replace the display, and drop whatever only Python holds. What
 *     was borrowed before such a call, as items of lists, records and surfaces inside of objects,
 *     is looked up again after it. No other function runs Python code.
 *   - No exception is pending at a call, unless the contract says what becomes of it.
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
 * calling it again reads the tables again. A table that is not there, or belongs to a pygame on
 * another SDL than larkspur's, is not taken. Leaves no exception pending. */
LARKSPUR_EXPORT void larkspur_init_rooms(void);

/* Wraps a surface in a new pygame Surface, which owns it from then on. Returns a new reference, or
 * null with an exception: pygame's error for a null surface, RuntimeError when pygame's native
 * table is not there; the surface is freed on failure. */
LARKSPUR_EXPORT struct _object* PySurface_FromSurface(struct SDL_Surface* surface);

/* ---- Shared variables ---------------------------------------------------------------------- */
/* Objects hold references of the module's own for the life of the process, gmapi two and the others
 * one each; null until the function named has run, and where the lookup failed. A native caller may
 * store another object, which it has to hold as long as it stands there; nothing that is
 * overwritten is released. */

/* The host's modules and the dictionary in which game code runs; bound when larkspur is imported.
 */
extern LARKSPUR_EXPORT struct _object* gm6;
extern LARKSPUR_EXPORT struct _object* gmapi;
extern LARKSPUR_EXPORT struct _object* gmapi__dict__;

/* The display's surface, in whose pixel format pictures are made that do not keep that of their
 * source, and that format's red, green and blue masks together (white without alpha). Null and 0
 * before set_SDL_screen(), which sets them; a native caller may store a surface of its own, which
 * it has to keep alive. Where the host closes the display or sets it anew, the module looks before
 * it uses these, and sets them anew; until then the old pointer stands here, and its surface is
 * gone. So ask the host, and read through g_screen only while the display is known to be the one
 * given to set_SDL_screen(). */
extern LARKSPUR_EXPORT struct SDL_Surface* g_screen;
extern LARKSPUR_EXPORT uint32_t COLOR_WHITE;

/* Scale of the view being drawn or drawn last: port size divided by view size. 1.0 from a frame
 * without views on, 0.0 before the first frame. */
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
 * cannot be fetched, or the name is null; while gm6 is not bound the first returns null without
 * one. An exception that is pending at the call is set aside meanwhile and pending again
 * afterwards, unless there is a newer one. */
LARKSPUR_EXPORT struct _object* Game_Sequence_Index(struct _object* object, const char* list_name);
LARKSPUR_EXPORT struct _object* Game_Sequence_Index_F(struct _object* object,
                                                      const char* list_name);
LARKSPUR_EXPORT struct _object* Game_Sequence_Index_S(struct _object* object,
                                                      const char* list_name);

/* Element i of a list or tuple as a signed 32-bit integer. -1 with an exception when the object is
 * neither (TypeError), i is outside (IndexError) or the element does not convert. Fractions are
 * dropped; of a number outside the range the low 32 bits count. */
LARKSPUR_EXPORT int32_t seqi(struct _object* sequence, int32_t i);

/* The first instance of an object resource or, when it has none, of its children, depth first: a
 * new reference. Null without an exception when there is none, with one when a lookup failed. An
 * exception that is pending at the call is treated as above. */
LARKSPUR_EXPORT struct _object* GetFirstInstance(struct _object* object);

/* PushSelf saves gmapi.self, which must exist, on gmapi.py_self_stack and makes `instance` the new
 * one; PopSelf puts the saved one back. 0, or -1 with an exception: AttributeError without a self,
 * RuntimeError when RegisterInstancesDict() found no list. Popping an empty stack, or none, writes
 * "Error in PyList_GetItem -1" on standard error and returns -1 without an exception. */
LARKSPUR_EXPORT int PushSelf(struct _object* instance);
LARKSPUR_EXPORT int PopSelf(void);

/* Calls `callable` with one or four borrowed arguments; a new reference, or null with the call's
 * exception. A null callable, as of a host that is not registered, raises RuntimeError. */
LARKSPUR_EXPORT struct _object* invoke(struct _object* callable, struct _object* argument);
LARKSPUR_EXPORT struct _object* invoke_4(struct _object* callable, struct _object* a,
                                         struct _object* b, struct _object* c, struct _object* d);

/* A colour as a pixel value of the display: an integer stands for itself; of a sequence of three or
 * more the first three are red, green and blue (0 to 255), shifted into place and added, neither
 * masked nor cut to the depth, and without alpha bits; a shorter sequence is COLOR_WHITE. What does
 * not convert counts as -1 and leaves its exception. Without a display three numbers give
 * COLOR_WHITE and RuntimeError. */
LARKSPUR_EXPORT uint32_t color_as_int(struct _object* colour);

/* ---- Particles ----------------------------------------------------------------------------- */
/* Particle types and particles are made by the module's Python functions, which return handles:
 * CObjects that own one of the records below. PyCObject_AsVoidPtr() gives the record; it lives as
 * long as its handle, and its address is no reference to it. Fields may be read and, where they are
 * plain numbers, written at any time; object fields belong to the module and are only read. Nothing
 * is worked out anew: whoever writes a bound writes the range as well. Floats are in single
 * precision, ints are truncated toward zero where Python passes a float.
 *
 * From outside nothing tells the handle of a type from that of a particle, nor either from a
 * CObject of another module: they are of one Python type, and PyCObject_AsVoidPtr() gives an
 * address for each. A caller keeps them apart itself. One record taken for the other is
 * misread, and read and written behind its end. Only the module's Python functions tell, and raise
 * TypeError: a caller that got a handle from elsewhere can ask part_type_speed() or
 * CParticle_step(), which change the record when the handle is right.
 *
 * Colours are GM colours, as below: red in bits 0-7, green in 8-15, blue in 16-23; the top byte
 * does not count. 0xFFFFFF shows the shape as it is, and everything else takes from it. A new type
 * has COLOR_WHITE, or 0xFFFFFF as long as no display was set. */

/* What all particles of one type share, as part_type_create() and the other part_type functions
 * store it. Numbers apply to living particles from the next step or drawing on, except those from
 * which a particle takes its own values when it is made: speed, direction, life and colours. */
struct particle_type_record {
    struct _object* shape;             /* owned: the pygame Surface that is drawn, or a sprite
                                          object (which is not); null until one is set */
    struct SDL_Surface* shape_surface; /* borrowed: the surface inside the last pygame Surface set;
                                          not read by the module, as pygame may replace it, and not
                                          to be read by others: it may be gone */
    int32_t blend;                     /* blend mode of flagged_blit(): 0, or 1 and 128 to add */
    int32_t animate;                   /* 1 when the sprite is animated */
    int32_t stretch;                   /* stretch flag of an animated sprite */
    int32_t reserved_int;              /* 0; not used */
    float reserved_float;              /* 1.0; not used */
    float size_min;                    /* size: a factor of the shape's size, and its bounds */
    float size_max;
    float size_range;  /* size_max - size_min */
    float size_incr;   /* added to the size per step: the share that part_type_size() was given
                          times size_range */
    float size_wiggle; /* amplitude of the random part per step, likewise */
    float xscale;      /* factors of the drawn width and height */
    float yscale;
    int32_t color1; /* GM colours at birth, half life and death */
    int32_t color2;
    int32_t color3;
    float alpha_start; /* alphas at birth, half life and death, 0 to 1 */
    float alpha_half;
    float alpha_end;
    float speed_min; /* initial speed, pixels per step */
    float speed_max;
    float speed_range;  /* speed_max - speed_min */
    float speed_incr;   /* kept, not used by steps */
    float speed_wiggle; /* kept, not used by steps */
    float dir_min;      /* initial direction, degrees; 0 moves down, 90 left */
    float dir_max;
    float dir_range;  /* dir_max - dir_min */
    float dir_incr;   /* kept, not used by steps */
    float dir_wiggle; /* kept, not used by steps */
    int32_t life_min; /* life, steps */
    int32_t life_max;
    int32_t life_range;   /* life_max - life_min */
    float gravity_amount; /* kept, not used by steps */
    float gravity_dir;    /* kept, not used by steps */
    float orient_min;     /* orientation, degrees, and its bounds at every step */
    float orient_max;
    float orient_incr;     /* added to the orientation per step, degrees */
    float orient_wiggle;   /* amplitude of the random part per step, degrees */
    float orient_relative; /* a whole number; kept, not used */
    struct _object* cache; /* owned: dictionary from key tuple to prerendered Surface */
};

/* One particle. */
struct particle_record {
    float x; /* position in the room, pixels */
    float y;
    float direction; /* at its start, degrees */
    float speed;     /* at its start, pixels per step */
    float vx;        /* change of the position per step, pixels */
    float vy;
    struct _object* beancounter; /* owned: the Beancounter that counts it, or null */
    struct _object* type_handle; /* owned: handle of its type */
    float size;                  /* factor of the shape's size */
    int32_t ttl;                 /* remaining life, steps; goes on below 0 */
    int32_t color1;              /* GM colours at birth, half life and death */
    int32_t color2;
    int32_t color3;
    float life;        /* its whole life, steps: ttl when it was made */
    float orientation; /* degrees */
};

/* One step: moves the particle, takes one from its ttl, and changes its orientation and size as its
 * type says, drawing from drand48() only for a wiggle that is not 0 (orientation first). The least
 * ttl, -2^31, is followed by the greatest. */
LARKSPUR_EXPORT void CParticle_step_low(struct particle_record* particle);

/* Sets vx and vy from direction and speed. */
LARKSPUR_EXPORT void CParticle_reset_velocities(struct particle_record* particle);

/* Draws a particle on g_screen, centred on its position moved by the offsets (pixels), through its
 * type's cache of prerendered surfaces. Leaves no exception of its own and keeps a pending one.
 *
 * It draws whatever `ttl` is, also at 0 and below, where colours and alpha go on as they came: a
 * caller looks at `ttl` itself, as CParticle_dec_ttl_and_render() does.
 *
 * It can run Python code, which can drop the particle: the caller holds the particle's handle for
 * the time of the call, by a reference of its own and not just by a list's. The type is held here.
 *
 * Nothing is drawn, and nothing said of it, in these cases:
 *   - there is no display, it was closed, or it is a subsurface whose parent has changed;
 *   - pygame's native tables were not found, or are those of a pygame on another SDL;
 *   - the type's shape is no pygame Surface, or one of a display that was closed or lost, or a
 *     subsurface whose parent has changed;
 *   - the drawn width or height comes to 0 pixels;
 *   - the picture that is not in the cache yet cannot be made: SDL has no memory for it; it would
 *     have more than 2^26 pixels, or a side that SDL refuses; the shape has no pixels at all, or a
 *     side of more than 32767; it has 8 bits and would be mirrored, or a colour key outside of its
 *     palette and would be turned or converted; it has 15, 16 or 24 bits and SDL refuses the copy
 *     that turning takes; it was run-length encoded, is locked, and would be converted;
 *   - a picture that is to be tinted or faded has no 32 bits, or the picture or the display has not
 *     when the blend mode adds;
 *   - the entry of the cache is no pygame Surface, which is only where others wrote to it;
 *   - flagged_blit() draws nothing: outside the display or, in mode 0, its clip rectangle, and in
 *     the adding modes where the picture touches or crosses the right edge; also a surface drawn on
 *     itself while it asks for run-length encoding, and one that SDL refuses to blit, as it is
 *     locked;
 *   - there is no memory for the key or for the entry of the cache.
 * Two cases have a line: a shape that does not convert to the display's format, on standard error,
 * and a blend mode that flagged_blit() does not know, on standard output, which is drawn. */
LARKSPUR_EXPORT void particle_render_low(struct particle_record* particle, int x_offset,
                                         int y_offset);

/* ---- Colours ------------------------------------------------------------------------------- */
/* A colour is a 32-bit word whose three low bytes hold a channel each: a GM colour, with red in
 * bits 0-7, green in 8-15 and blue in 16-23, or a pixel value. All arithmetic wraps at 32 bits. */

/* Scales each of the three low bytes to floor(byte * alpha / 256); the top byte becomes 0. */
LARKSPUR_EXPORT uint32_t multalpha(uint32_t colour, uint8_t alpha);

/* Each of the three low bytes becomes floor((a * weight + b * (256 - weight)) / 256); the top byte
 * becomes 0. A weight outside 0..256 is not clamped: the low byte then spills into the others. */
LARKSPUR_EXPORT uint32_t blend(uint32_t a, uint32_t b, int weight);

/* blend() of two colours by the fraction t: 1 gives a, 0 gives b. Weight trunc(256 * t). */
LARKSPUR_EXPORT uint32_t interpolate_unformatted(uint32_t a, uint32_t b, float t);

/* The pixel value of blend(a, b, trunc(255 * t)), both being GM colours: t = 1 keeps 1/256 of b.
 * The product 255 * t is rounded to single precision. */
LARKSPUR_EXPORT uint32_t interpolate_fmt(uint32_t a, uint32_t b, float t,
                                         const struct SDL_PixelFormat* format);

/* The pixel value of a GM colour, as SDL_MapRGB() gives it: with all alpha bits where the format
 * has some. The colour's top byte is ignored. */
LARKSPUR_EXPORT uint32_t color_for_format(uint32_t colour, const struct SDL_PixelFormat* format);

/* 1 for the additive blend modes 1 and 128, else 0. */
LARKSPUR_EXPORT int blend_mode_flatten(int mode);

/* Alpha (0 to 255, truncated, not clamped) and colour of a particle type at life fraction t, which
 * is 1 at birth and 0 at death; DesiredTint_part_gm takes the particle's own colours. Above 0.5
 * they lie evenly between birth and half life, from 0.5 down between half life and death; colours
 * come from interpolate_unformatted(). The alpha is worked out in extended precision: the one that
 * a particle is drawn with, in single precision, can differ by 1. */
LARKSPUR_EXPORT int32_t DesiredAlpha(const struct particle_type_record* type, float t);
LARKSPUR_EXPORT uint32_t DesiredTint_type(const struct particle_type_record* type, float t);
LARKSPUR_EXPORT uint32_t DesiredTint_part_gm(const struct particle_record* particle, float t);

/* ---- Pixels -------------------------------------------------------------------------------- */
/* Surfaces are SDL 1.2's, borrowed, and locked here for the time of the access where they must be;
 * a result is the caller's to free. Null surfaces, depths other than 32 bits where pixels are
 * changed, and pixels that cannot be reached leave everything as it is. */

/* Scales the alpha channel of every pixel of the buffer (row padding included) by alpha/256. With
 * alpha in the top byte the channels below take part in the product: it becomes
 * ((pixel >> 8) * alpha) & Amask. Bits of no channel become 0; colours stay. */
LARKSPUR_EXPORT void Translucentify(struct SDL_Surface* surface, uint8_t alpha);

/* Tints with a GM colour: each channel c of the buffer (row padding included) becomes
 * max(0, c - (255 - tint's channel)); alpha stays. When pitch * height is no multiple of 8, the
 * last 4 bytes lose the bytes of the subtracted pixel value in reverse order. */
LARKSPUR_EXPORT void Tint_Surface(struct SDL_Surface* surface, uint32_t tint);

/* Draws the whole of `source` at (rect->x, rect->y). Mode 0: SDL's blit, which updates `rect`.
 * Modes 1 and 128 add bytes up to 255, alpha included, and leave `rect` as it is: a negative y
 * counts as 0, a negative x leaves out the first columns, rows below the target are left out, a
 * source that touches or crosses the right edge is not drawn, and clip rectangles do not count.
 * They draw only from and to surfaces of 32 bits. Any other mode prints "Error: Unexpected additive
 * blend mode %d\n" on standard output and is drawn as mode 0, except at a place where modes 1 and
 * 128 draw nothing. A null rectangle draws nothing, nor does a surface drawn on itself in mode 0
 * while it asks for run-length encoding. */
LARKSPUR_EXPORT void flagged_blit(struct SDL_Surface* source, struct SDL_Surface* target,
                                  struct SDL_Rect* rect, int mode);

/* The adding itself, for `rows` rows of `row_bytes` bytes from two byte offsets on, which a pitch
 * each moves to the next row. Ends at the first row that does not lie inside both buffers. */
LARKSPUR_EXPORT void additive_blit(struct SDL_Surface* source, struct SDL_Surface* target,
                                   int source_offset, int target_offset, int rows, int row_bytes);

/* Mirrored copies. flip_v (upside down) takes every depth; flip_h (left to right) and flip_vh take
 * 32 bits and give null for others, with SDL's error set and a line on standard error: "Cannot
 * horizontally flip non-32-bit surfaces." and "Error: non-32bit surfaces not yet flippable."
 * flip_vh mirrors both ways, one row too low: row i shows the source's row h - i, and row 0 is
 * blank. clone_surface gives a blank surface of the same size and format. Null, with SDL's error
 * set, when a copy cannot be made. Palette, colour key and alpha of the whole do not come along. */
LARKSPUR_EXPORT struct SDL_Surface* flip_v(struct SDL_Surface* surface);
LARKSPUR_EXPORT struct SDL_Surface* flip_h(struct SDL_Surface* surface);
LARKSPUR_EXPORT struct SDL_Surface* flip_vh(struct SDL_Surface* surface);
LARKSPUR_EXPORT struct SDL_Surface* clone_surface(struct SDL_Surface* surface);

/* SDL_DisplayFormatAlpha(): a copy of 32 bits with an alpha channel. Null without a video mode. */
LARKSPUR_EXPORT struct SDL_Surface* RGBA_copy(struct SDL_Surface* surface);

/* Saturating subtraction of a word's bytes from those of a buffer, in memory order: bits 0-7 from
 * byte 0. satusub does what SDL_gfx does, which with version 2.0.25 is in this order, and ends at
 * the length. The others go by 4 bytes, or by 8 with the pattern `low`, `high`; a group that begins
 * inside the length is done whole, so the buffer must go on to its end. Lengths below 1 do nothing.
 */
LARKSPUR_EXPORT void satusub(void* buffer, int length_bytes, uint32_t value);
LARKSPUR_EXPORT void satusub_head(void* buffer, uint32_t value, uint32_t ignored, int length_bytes);
LARKSPUR_EXPORT void satusub_body(void* buffer, uint32_t low, uint32_t high, int length_bytes);

/* The words that go with satusub_body and satusub_head: `value` twice, and once. */
struct satusub_subtractor {
    uint32_t low;
    uint32_t high;
};
struct satusub_start {
    uint32_t value;
};
LARKSPUR_EXPORT struct satusub_subtractor subtractor_for(uint32_t value);
LARKSPUR_EXPORT struct satusub_start startptr_for(uint32_t value);

/* ---- Sprite scale cache -------------------------------------------------------------------- */

/* Makes a transformed copy of one of a sprite's subimages and stores it in the sprite's scalecache
 * under a key; an entry of that key is replaced.
 *
 * sprite     a GMSprite, borrowed
 * key        any hashable object, borrowed; not interpreted
 * subimage   index into the sprite's subimages
 * width      wanted width in pixels; a negative one mirrors left to right
 * height     wanted height in pixels; a negative one mirrors top to bottom
 * angle      rotation, degrees counter-clockwise; 0 means none
 * ignored    not used
 * colour     COLOR_WHITE for none; any other fills the whole copy, as Surface.fill() takes it
 * alpha      0 to 255; 255 is opaque; of other numbers the low byte counts
 * rgba_copy  not 0: the result is a new surface of 32 bits per pixel
 *
 * In this order: mirrored by flip_h(), flip_v() or, both ways, flip_vh(); scaled, without smoothing
 * and to a pixel at least; turned, which gives other sides; filled; faded. The sprite's own picture
 * never changes.
 *
 * Fading without rgba_copy gives the copy the alpha as that of the whole and, with 32 bits, scales
 * its alpha channel as Translucentify() does. Fading with rgba_copy draws the copy with this alpha
 * on black, in the display's format: without an alpha channel there it becomes darker. A picture
 * with an alpha channel does not outlive rgba_copy: SDL 1.2 blits it to the new surface, which is
 * all transparent, without its alpha. Pass 0 for these.
 *
 * Returns a new reference to the pygame Surface stored: the subimage itself when nothing was to
 * change. Null on failure, without an exception of its own and with a line on standard error:
 * "sequence error." for a subimage that is not there or what is no GMSprite, "No source?" when a
 * transform yields nothing, "Error storing item in scalecache." for a key that is not hashable or a
 * sprite without a scalecache, as after pickling. Before "No source?" a line of the flips, or one
 * that begins with "larkspur: cannot scale", can say why. */
LARKSPUR_EXPORT struct _object* sprite_scalecache_add(struct _object* sprite, struct _object* key,
                                                      int subimage, int width, int height,
                                                      int angle, int ignored, int colour, int alpha,
                                                      int rgba_copy);

/* ---- Room drawing -------------------------------------------------------------------------- */

/* Draws one view of a room. `room` is a GMRoom whose eleven lists from view_xview to view_hport are
 * Floatlist8, `surface` the pygame Surface to draw on, `view` 0 to 7, `drawn` the tuple of
 * instances and particle systems in drawing order; all are borrowed, and anything else is TypeError
 * or ValueError. The view follows its instance and is kept in the room; its scale is published in
 * g_view_xscale, g_view_yscale, gm6.view_xscale and gm6.view_yscale; the host draws the
 * backgrounds, then each object is drawn, whatever became of the others. Returns 1, or 0 when
 * anything failed. The last exception is left pending, also by failures that do not count, such as
 * a followed instance that can't be found; lines on standard error tell where one was pending. An
 * exception that is pending at the call stays so, unless there is a newer one. */
LARKSPUR_EXPORT int32_t Room_DrawView(struct _object* room, struct _object* surface, int32_t view,
                                      struct _object* drawn);

/* ---- Diagnostics --------------------------------------------------------------------------- */

/* Appends "larkspur: <message>\n" to debug.log in the current directory; result of the close, EOF
 * where the file can't be opened. */
LARKSPUR_EXPORT int debug_log(const char* message);
/* Prints a printf format that takes no arguments, and flushes standard output; result of the
 * flush. A per-cent sign in it starts a conversion that reads arguments which are not there: pass
 * fixed texts only. */
LARKSPUR_EXPORT int debug(const char* format);
/* Appends the message's bytes, and no newline, to logfile.txt in the current directory; result of
 * the close, -1 where the file can't be opened. A new file is the owner's to write and all others'
 * to read. */
LARKSPUR_EXPORT int dump(const char* message);
/* Dumps "crasher called.\n" and ends the process with status 0. */
LARKSPUR_EXPORT void crasher(void);

#ifdef __cplusplus
}
#endif

#endif /* LARKSPUR_H */
