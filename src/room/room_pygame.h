// Room drawing's own way to make pygame Surfaces.
#pragma once

#include "core/python.h"

#include "core/py_ref.h"
#include "pixel/surface/surface.h"

namespace larkspur {

/// As wrap_surface() with the tables that larkspur_init_rooms() copied.
PyRef wrap_room_surface(SurfacePtr surface) noexcept;

}  // namespace larkspur
