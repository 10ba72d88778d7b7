// GMSprite: a sprite of the game.
#pragma once

#include "core/python.h"

#include <cstdint>

namespace larkspur {

/// Distances are in pixels of the unscaled sprite. Object fields own their reference; each is null
/// once Python deleted it, and scalecache also from pickling until it is set again.
struct SpriteObject {
    PyObject_HEAD;
    std::int32_t w;            ///< width
    std::int32_t h;            ///< height
    std::int32_t leftbound;    ///< bounding box
    std::int32_t rightbound;   ///< bounding box
    std::int32_t topbound;     ///< bounding box
    std::int32_t bottombound;  ///< bounding box
    std::int32_t xorigin;      ///< the point that is placed at an instance's position
    std::int32_t yorigin;      ///< the same, downwards
    std::int32_t transparent;  ///< flag
    std::int32_t precise_collision_checking;  ///< flag
    std::int32_t bounding_box_type;           ///< kind, in the engine's numbering
    std::int32_t smooth_edges;                ///< flag
    std::int32_t preload_texture;             ///< flag
    std::int32_t use_video_memory;            ///< flag
    std::int32_t load_only_on_use;            ///< flag
    PyObject* name;                           ///< its name in the game code's globals
    PyObject* subimages;                      ///< list of pygame Surfaces, one per frame
    PyObject* scalecache;                     ///< dictionary from key to transformed pygame Surface
};

extern PyTypeObject sprite_type;

/// Module function GMSprite_from_surface(surface[, name]): a new sprite of the surface's size whose
/// one subimage is a copy in the display's format. TypeError when the first argument is no pygame
/// Surface, RuntimeError when no display is set.
PyObject* sprite_from_surface(PyObject* module, PyObject* args) noexcept;

}  // namespace larkspur
