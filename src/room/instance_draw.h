// Drawing of the two kinds of objects that a view shows: instances and particle systems.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Draws an instance as its "py_Draw" says: 0, or no such attribute, runs run_draw_event(); any
/// other int calls the host's draw_sprite_ext with the instance's nine image attributes; anything
/// else is the instance's compiled draw code and is evaluated. False, as a rule with an exception,
/// when it failed. A missing "py_Draw" leaves its AttributeError pending, even when drawing went
/// well.
///
/// REQUIRES: no exception pending.
bool draw_instance(PyObject* instance) noexcept;

/// Finds out how an instance is drawn, and stores that as its "py_Draw": the code of the first
/// action of its object's draw event, which is then run for the first time, or the int 1 when there
/// is none. False when it failed: with an exception, or for an object with too few events only with
/// a line on standard error. An object without events leaves its AttributeError pending.
///
/// REQUIRES: no exception pending.
bool run_draw_event(PyObject* instance) noexcept;

/// Draws a particle system unless it says that it is not drawn by itself.
/// False with an exception when it failed. A missing "py_automatic_draw" means that it is not
/// drawn; its AttributeError stays pending.
///
/// REQUIRES: no exception pending.
/// @param offset 2-tuple of ints, the position of the room on the display
bool draw_particle_system(PyObject* system, PyObject* offset) noexcept;

}  // namespace larkspur
