// The one guard in front of scaling and turning that Python asks for.
#pragma once

#include "core/python.h"

namespace larkspur::pixel {

/// Checks that nothing keeps a surface from being scaled or turned; false with ValueError that
/// names what does.
///
/// @param obstacle what zoom_obstacle() or turn_obstacle() (pixel/surface/zoom.h) said
/// @param function name of the caller with its brackets, for messages
inline bool require_no_obstacle(const char* obstacle, const char* function) noexcept {
    if (obstacle == nullptr) {
        return true;
    }
    PyErr_Format(PyExc_ValueError,
                 "%s cannot scale %s; pass a surface with sides of 1 to 32767 pixels, of 32 bits "
                 "for a mirrored or a turned picture",
                 function, obstacle);
    return false;
}

}  // namespace larkspur::pixel
