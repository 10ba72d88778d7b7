// RoomTileData: one tile placed in a room.
#pragma once

#include "core/python.h"

#include <cstdint>

namespace larkspur {

/// Distances are in pixels; x and y are in the room, the others in the background.
struct TileObject {
    PyObject_HEAD;
    std::int32_t x;               ///< of the tile's left edge in the room
    std::int32_t y;               ///< of its top edge
    std::int32_t background_idx;  ///< position of the source in the game's list of backgrounds
    std::int32_t tilex;           ///< left edge of the source rectangle
    std::int32_t tiley;           ///< its top edge
    std::int32_t w;               ///< width of the rectangle
    std::int32_t h;               ///< its height
    std::int32_t layer_depth;     ///< depth of the tile's layer
    std::int32_t id;              ///< the tile's number, which it converts to and compares by
    std::int32_t locked;          ///< flag
};

extern PyTypeObject tile_type;

}  // namespace larkspur
