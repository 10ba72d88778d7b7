// Drawing of the two kinds of objects that a view shows: instances and particle systems.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Draws an instance as its "py_Draw" says: compiled draw code is run; an int other than 0 calls
/// the host's draw_sprite_ext with the instance's nine image attributes; 0, or no such attribute,
/// has its draw code found in its object's events and run. That code, or the int 1 when there is
/// none, is stored as the new "py_Draw", and an instance without code is not drawn yet. False, as a
/// rule with an exception, when it failed. A missing "py_Draw" leaves its AttributeError pending,
/// even when drawing went well.
///
/// REQUIRES: no exception pending.
bool draw_instance(PyObject* instance) noexcept;

/// Draws a particle system unless it says that it is not drawn by itself.
/// False with an exception when it failed. A missing "py_automatic_draw" means that it is not
/// drawn; its AttributeError stays pending.
///
/// REQUIRES: no exception pending.
/// @param offset 2-tuple of ints, the position of the room on the display
bool draw_particle_system(PyObject* system, PyObject* offset) noexcept;

}  // namespace larkspur
