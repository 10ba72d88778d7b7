// The frame: drawing the current room.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Module function Room_Draw(room, surface): counts the frame, sets gmapi.fps once per
/// wall-clock second, and draws the room on a pygame Surface: its visible views, or without views
/// backgrounds, tiles and objects one to one. Objects come from a snapshot of room.drawn_objects.
/// Returns None; fails with the exception of the step that failed (a refused blit and some failures
/// of a view have none) and stops there. What was drawn stays.
PyObject* room_draw(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
