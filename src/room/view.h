// Drawing of one view of a room.
//
// The exported function Room_DrawView() and its contract are in the public header.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Draws a view: follows its instance, stores its scale, has the host draw the backgrounds, then
/// draws the objects in order. A failing object never stops the others. False when anything failed;
/// the last exception is left pending, also by failures that do not count (such as a followed
/// instance that can't be found), and lines on standard error say where one was pending. An
/// exception that is pending at the start stays so.
///
/// @param room a GMRoom whose eleven lists from view_xview to view_hport are Floatlist8
/// @param surface the pygame Surface to draw on
/// @param index the view, 0 to 7
/// @param drawn tuple of instances and particle systems in drawing order
bool draw_view(PyObject* room, PyObject* surface, int index, PyObject* drawn) noexcept;

}  // namespace larkspur
