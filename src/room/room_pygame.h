// Room drawing's own way to make pygame Surfaces.
#pragma once

#include "core/python.h"

#include "base/surface.h"
#include "core/py_ref.h"

namespace larkspur {

/// As wrap_surface() with the tables that larkspur_init_rooms() copied.
PyRef wrap_room_surface(SurfacePtr surface) noexcept;

}  // namespace larkspur
