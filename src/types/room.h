// GMRoom: a room of the game. It holds data; its behaviour is the host's.
#pragma once

#include "core/python.h"

#include <cstdint>

namespace larkspur {

/// Object fields own their reference and are null while unset. What they hold is the host's affair
/// except where room drawing reads it: the eleven fields from view_xview to view_hport are
/// Floatlist8, element v for view v, in pixels but for view_object; tiles is a list of
/// RoomTileData; drawn_objects is a sequence in drawing order.
struct RoomObject {
    PyObject_HEAD;
    std::int32_t id;               ///< the room's number
    PyObject* name;                ///< its name
    std::int32_t room_width;       ///< pixels
    std::int32_t room_height;      ///< pixels
    std::int32_t snapx;            ///< editor's grid, pixels
    std::int32_t snapy;            ///< editor's grid, pixels
    std::int32_t isogrid;          ///< flag: isometric grid
    std::int32_t room_speed;       ///< steps per second
    std::int32_t room_persistent;  ///< flag
    std::int32_t bgcolor;          ///< GM colour behind everything
    std::int32_t draw_bgcolor;     ///< flag: paint bgcolor
    PyObject* room_caption;        ///< the window's caption
    float frame_duration;          ///< of one step, in the unit of the host
    PyObject* creation_code;       ///< source text
    PyObject* bg0;                 ///< the room's eight background slots
    PyObject* bg1;
    PyObject* bg2;
    PyObject* bg3;
    PyObject* bg4;
    PyObject* bg5;
    PyObject* bg6;
    PyObject* bg7;
    std::int32_t view_enabled;    ///< flag: draw views instead of the whole room
    std::int32_t numviews;        ///< number of views
    PyObject* view_xview;         ///< left edge of each view in the room
    PyObject* view_yview;         ///< its top edge
    PyObject* view_object;        ///< game object that each view follows; -1: none
    PyObject* view_hborder;       ///< distance that it keeps from left and right
    PyObject* view_vborder;       ///< from top and bottom
    PyObject* view_wview;         ///< width of each view in the room
    PyObject* view_hview;         ///< its height
    PyObject* view_xport;         ///< left edge of each view on the display
    PyObject* view_yport;         ///< its top edge
    PyObject* view_wport;         ///< width of each view on the display
    PyObject* view_hport;         ///< its height
    PyObject* background_index;   ///< per background slot, as are the background_* fields
    PyObject* initial_view_data;  ///< the host's copy of the views as they were
    PyObject* background_x;
    PyObject* background_y;
    PyObject* background_visible;
    PyObject* background_width;
    PyObject* background_height;
    PyObject* background_xscale;
    PyObject* background_yscale;
    PyObject* background_hspeed;
    PyObject* background_vspeed;
    PyObject* background_blend;
    PyObject* background_alpha;
    PyObject* background_htiled;
    PyObject* background_vtiled;
    PyObject* view_visible;  ///< flag per view
    PyObject* instances;     ///< the room's instances
    PyObject* tiles;         ///< list of RoomTileData
    std::int32_t tile_w;     ///< editor's grid for tiles, pixels
    std::int32_t tile_h;
    std::int32_t tile_hsep;
    std::int32_t tile_vsep;
    std::int32_t tile_hoffset;
    std::int32_t tile_voffset;
    std::int32_t created;   ///< flag
    PyObject* all_objects;  ///< instances that take part in each kind of event
    PyObject* drawn_objects;
    PyObject* deactivated_objects;
    PyObject* keypressed_objects;
    PyObject* keyreleased_objects;
    PyObject* mouse_leftpressed_objects;
    PyObject* mouse_rightpressed_objects;
    PyObject* collisioned_objects;
    PyObject* stepped_objects;
    PyObject* moving_objects;
    PyObject* alarmed_objects;
    PyObject* animated_objects;
    PyObject* key_objects;
    PyObject* mouse_objects;
    std::int32_t view_current;         ///< view being drawn, 0 to 7
    PyObject* cached_bg;               ///< surface kept by the host
    PyObject* cached_bg_scaled;        ///< surface kept by the host
    PyObject* creation_code_compiled;  ///< code object
};

extern PyTypeObject room_type;

}  // namespace larkspur
