// BackgroundData: a background of the game.
#pragma once

#include "core/python.h"

#include <cstdint>

namespace larkspur {

/// Object fields own their reference; each is null once Python deleted it.
struct BackgroundObject {
    PyObject_HEAD;
    PyObject* name;               ///< its name in the game code's globals
    PyObject* surf;               ///< its image, a pygame Surface; None while there is none
    PyObject* scaled_data_cache;  ///< dictionary of scaled images, filled by the drawing code
    std::int32_t w;               ///< width in pixels
    std::int32_t h;               ///< height in pixels
    std::int32_t transparent;     ///< flag
};

extern PyTypeObject background_type;

}  // namespace larkspur
