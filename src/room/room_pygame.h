// Room drawing's own way to make pygame Surfaces.
#pragma once

#include "core/python.h"

#include "base/surface.h"
#include "core/py_ref.h"

namespace larkspur {

/// Reads pygame's native tables for room drawing, at initialisation and whenever a native caller
/// asks. Tables that are not there, or of a pygame on another SDL, are not taken. Leaves no
/// exception of its own and keeps a pending one.
void load_room_pygame_api() noexcept;

/// As wrap_surface() with the tables that load_room_pygame_api() read last.
PyRef wrap_room_surface(SurfacePtr surface) noexcept;

}  // namespace larkspur
