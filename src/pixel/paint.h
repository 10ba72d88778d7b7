// The one guard in front of painting that Python asks for.
#pragma once

#include "core/python.h"

#include "base/surface.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "pixel/surface/painters.h"

namespace larkspur::pixel {

/// The axis along which a painter steps the fraction of a gradient; fills step none.
enum class SteppedAxis { kNone, kX, kY };

/// Checks that the first corner is where painters take it, -32768 or more along the axis that is
/// stepped; false with ValueError that names its coordinate there.
inline bool require_corner_in_range(const Corners& corners, SteppedAxis stepped,
                                    const char* function) noexcept {
    const int first = stepped == SteppedAxis::kX ? corners.x1 : corners.y1;
    if (stepped == SteppedAxis::kNone || first >= kLowestCorner) {
        return true;
    }
    PyErr_Format(PyExc_ValueError, "%s got %d for %s, which must be %d or more", function, first,
                 stepped == SteppedAxis::kX ? "x1" : "y1", kLowestCorner);
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
PyObject* paint_on(const Use& use, const Corners& corners, SteppedAxis stepped,
                   const char* function, Paint paint) noexcept {
    if (!use || !require_32_bit(*use.get(), function) ||
        !require_corner_in_range(corners, stepped, function)) {
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
