// The one guard in front of painting that Python asks for.
#pragma once

#include "core/python.h"

#include "base/surface.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "pixel/surface/painters.h"

namespace larkspur::pixel {

/// Checks that the first corner is where painters take it, -32768 or more on both axes; false with
/// ValueError that names it.
inline bool require_corner_in_range(const Corners& corners, const char* function) noexcept {
    if (corners.x1 >= kLowestCorner && corners.y1 >= kLowestCorner) {
        return true;
    }
    PyErr_Format(PyExc_ValueError, "%s got (%d, %d) for x1 and y1; both must be %d or more",
                 function, corners.x1, corners.y1, kLowestCorner);
    return false;
}

/// Runs paint(surface) on a surface with its pixels locked, once surface and first corner are what
/// painters need, and returns None. Null with an exception, and nothing painted: that of a surface
/// that could not be taken into use, ValueError when it has no 32-bit pixels or the corner is out
/// of range, RuntimeError when its pixels can't be reached.
///
/// @param use a SurfaceUse or a DisplayUse, which hold the surface meanwhile
/// @param function name of the caller with its brackets, for messages
template <typename Use, typename Paint>
PyObject* paint_on(const Use& use, const Corners& corners, const char* function,
                   Paint paint) noexcept {
    if (!use || !require_32_bit(*use.get(), function) ||
        !require_corner_in_range(corners, function)) {
        return nullptr;
    }
    const SurfaceLock lock(use.get());
    if (!require_pixels(lock, function)) {
        return nullptr;
    }
    paint(*use.get());
    return new_none();
}

}  // namespace larkspur::pixel
