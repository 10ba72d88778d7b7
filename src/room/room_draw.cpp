#include "room/room_draw.h"

#include <cstdint>
#include <ctime>

#include "base/console.h"
#include "base/convert.h"
#include "core/attribute.h"
#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/tuple.h"
#include "core/view_state.h"
#include "larkspur.h"
#include "pixel/surface/blit.h"
#include "room/view.h"
#include "types/background.h"
#include "types/float_list.h"
#include "types/tile.h"

extern "C" {
int32_t this_second = -1;
}

namespace larkspur {
namespace {

constexpr char kFunction[] = "Room_Draw()";
constexpr char kTileSource[] = "Room_Draw(), for the surf of a tile's background,";

AttributeName fps("fps");
AttributeName view_enabled("view_enabled");
AttributeName drawn_objects("drawn_objects");
AttributeName view_visible("view_visible");
AttributeName draw_backgrounds("DrawBackgrounds");
AttributeName tiles("tiles");
AttributeName view_current("view_current");
AttributeName draw("Draw");

// Frames begun since this_second changed.
std::int32_t frames_this_second = 0;

// Counts a frame, and stores the count of the last second as the host's fps when the clock has
// moved on. False with the exception of the store.
bool count_frame() noexcept {
    const auto now = static_cast<std::int32_t>(std::time(nullptr));
    if (now != this_second) {
        if (!set_attribute(gmapi_module(), fps, PyRef::steal(PyInt_FromLong(frames_this_second)))) {
            return false;
        }
        frames_this_second = 0;
        this_second = now;
    }
    ++frames_this_second;
    return true;
}

// Truth of an attribute; -1 with an exception.
int truth_of(PyObject* object, AttributeName& name) noexcept {
    const PyRef attribute = get_attribute(object, name);
    return attribute ? PyObject_IsTrue(attribute.get()) : -1;
}

// What the room says of a view.
enum class Visibility : std::uint8_t { kHidden, kVisible, kEnd, kFailed };

// Failed with an exception. An earlier view can have left an exception although it counts as drawn:
// the host's code runs with that set aside.
Visibility visibility_of(PyObject* visible, int view) noexcept {
    const PendingException set_aside;
    const PyRef flag = PyRef::steal(PySequence_GetItem(visible, view));
    if (!flag) {
        if (PyErr_ExceptionMatches(PyExc_IndexError) == 0) {
            return Visibility::kFailed;
        }
        PyErr_Clear();  // the list says by its length how many views there are
        return Visibility::kEnd;
    }
    switch (PyObject_IsTrue(flag.get())) {
        case 0:
            return Visibility::kHidden;
        case 1:
            return Visibility::kVisible;
        default:
            return Visibility::kFailed;
    }
}

// Draws the visible views. False as a rule with an exception.
bool draw_views(PyObject* room, PyObject* surface, PyObject* drawn) noexcept {
    const PyRef visible = get_attribute(room, view_visible);
    if (!visible) {
        return false;
    }
    for (int view = 0; view < kFloatListLength; ++view) {
        switch (visibility_of(visible.get(), view)) {
            case Visibility::kHidden:
                break;
            case Visibility::kVisible:
                if (!draw_view(room, surface, view, drawn)) {
                    return false;
                }
                break;
            case Visibility::kEnd:
                return true;
            case Visibility::kFailed:
                return false;
        }
    }
    return true;
}

// Has the room draw its backgrounds. False with an exception.
bool draw_room_backgrounds(PyObject* room, PyObject* surface) noexcept {
    const PyRef method = get_attribute(room, draw_backgrounds);
    if (!method) {
        return false;
    }
    const PyRef zero = PyRef::steal(PyInt_FromLong(0));
    const PyRef arguments =
        zero ? PyRef::steal(PyTuple_Pack(3, surface, zero.get(), zero.get())) : PyRef();
    if (!arguments) {
        return false;
    }
    if (!PyRef::steal(PyObject_CallObject(method.get(), arguments.get()))) {
        write_stderr("Drawing backgrounds failed.\n");
        return false;
    }
    // A call can succeed and still leave an exception.
    return PyErr_Occurred() == nullptr;
}

// The background of a tile; empty with an exception.
PyRef background_of(const TileObject& tile, PyObject* backgrounds) noexcept {
    if (tile.background_idx < 0) {
        PyErr_Format(PyExc_IndexError, "%s found background_idx %d in a tile, where 0 is the least",
                     kFunction, static_cast<int>(tile.background_idx));
        return PyRef();
    }
    PyRef background = PyRef::steal(PySequence_GetItem(backgrounds, tile.background_idx));
    if (!background) {
        if (PyErr_ExceptionMatches(PyExc_IndexError) != 0) {
            PyErr_Format(PyExc_IndexError,
                         "%s found background_idx %d in a tile, and gmapi.game.backgrounds has no "
                         "such element",
                         kFunction, static_cast<int>(tile.background_idx));
        }
        return PyRef();
    }
    if (Py_TYPE(background.get()) != &background_type) {
        PyErr_Format(PyExc_TypeError,
                     "%s needs BackgroundData in gmapi.game.backgrounds, got %.200s", kFunction,
                     Py_TYPE(background.get())->tp_name);
        return PyRef();
    }
    return background;
}

// Blits one tile. False as a rule with an exception; without one when SDL refuses the blit.
bool draw_tile(const TileObject& tile, PyObject* backgrounds, PyObject* surface) noexcept {
    const PyRef background = background_of(tile, backgrounds);
    if (!background) {
        return false;
    }
    // The target is looked at for each tile: fetching a background can run code that closes it.
    const SurfaceUse target(surface, kFunction);
    if (!target) {
        return false;
    }
    PyObject* image = reinterpret_cast<BackgroundObject*>(background.get())->surf;
    const SurfaceUse source(image != nullptr ? image : Py_None, kTileSource);
    // The target is asked anew: it may have gone while the source was taken into use.
    // cppcheck-suppress identicalConditionAfterEarlyExit
    if (!source || !target) {
        return false;
    }
    SDL_Rect from = {};
    from.x = low_16_bits(tile.tilex);
    from.y = low_16_bits(tile.tiley);
    from.w = static_cast<Uint16>(tile.w);
    from.h = static_cast<Uint16>(tile.h);
    SDL_Rect to = {};
    to.x = low_16_bits(tile.x);
    to.y = low_16_bits(tile.y);
    return pixel::blit(source.get(), &from, target.get(), &to);
}

// Tile i of the room's list; empty with an exception. The host's sequences can run code that
// shortens the list meanwhile.
PyRef tile_at(PyObject* list, Py_ssize_t i) noexcept {
    PyRef tile = PyRef::borrow(PyList_GetItem(list, i));
    if (tile && Py_TYPE(tile.get()) != &tile_type) {
        PyErr_Format(PyExc_TypeError, "%s needs RoomTileData in the room's tiles, got %.200s",
                     kFunction, Py_TYPE(tile.get())->tp_name);
        return PyRef();
    }
    return tile;
}

// Blits the room's tiles. False as a rule with an exception.
bool draw_tiles(PyObject* room, PyObject* surface) noexcept {
    const PyRef list = get_attribute(room, tiles);
    if (!list) {
        return false;
    }
    if (!PyList_Check(list.get())) {
        PyErr_Format(PyExc_TypeError, "%s needs a list in the room's tiles, got %.200s", kFunction,
                     Py_TYPE(list.get())->tp_name);
        return false;
    }
    const Py_ssize_t count = PyList_GET_SIZE(list.get());
    if (count == 0) {
        return true;
    }
    const PyRef backgrounds = game_list(gmapi_module(), background_list.get());
    if (!backgrounds) {
        return false;
    }
    for (Py_ssize_t i = 0; i < count; ++i) {
        const PyRef tile = tile_at(list.get(), i);
        if (!tile ||
            !draw_tile(*reinterpret_cast<TileObject*>(tile.get()), backgrounds.get(), surface)) {
            return false;
        }
    }
    return true;
}

// Has one object draw itself. False with an exception.
bool draw_object(PyObject* object, PyObject* no_arguments) noexcept {
    // A call can succeed and still leave an exception, which must not show in another's code.
    const PendingException set_aside;
    const PyRef method = get_attribute(object, draw);
    if (!method) {
        write_stderr("ERror!\n");  // the capital tells a missing method from a failing one
        return false;
    }
    if (!PyRef::steal(PyObject_Call(method.get(), no_arguments, nullptr))) {
        write_stderr("Error!\n");
        return false;
    }
    return true;
}

// Draws the objects in order up to the first that fails. False with an exception.
bool draw_objects(PyObject* drawn) noexcept {
    const PyRef no_arguments = PyRef::steal(PyTuple_New(0));
    if (!no_arguments) {
        return false;
    }
    const Py_ssize_t count = PyTuple_GET_SIZE(drawn);
    for (Py_ssize_t i = 0; i < count; ++i) {
        if (!draw_object(PyTuple_GET_ITEM(drawn, i), no_arguments.get())) {
            return false;
        }
    }
    return true;
}

// Draws a room that has no views. False as a rule with an exception.
bool draw_whole_room(PyObject* room, PyObject* surface, PyObject* drawn) noexcept {
    set_view_scale({1.0, 1.0});
    set_view_offset({0.0, 0.0});
    if (!draw_room_backgrounds(room, surface) || !draw_tiles(room, surface)) {
        return false;
    }
    if (!set_attribute(room, view_current, PyRef::steal(PyInt_FromLong(0)))) {
        PyErr_Clear();  // a room without this attribute is drawn all the same
    }
    return draw_objects(drawn);
}

}  // namespace

PyObject* room_draw(PyObject* /*module*/, PyObject* args) noexcept {
    PyObject* room = nullptr;
    PyObject* surface = nullptr;
    if (!PyArg_ParseTuple(args, "OO", &room, &surface) || !count_frame()) {
        return nullptr;
    }
    const int has_views = truth_of(room, view_enabled);
    if (has_views < 0) {
        return nullptr;
    }
    const PyRef objects = get_attribute(room, drawn_objects);
    if (!objects) {
        return nullptr;
    }
    // The frame draws this snapshot, whatever the objects do to the list.
    const PyRef drawn = tuple_of(objects.get());
    if (!drawn) {
        write_stderr("Error making tuple from drawn_objects\n");
        return nullptr;
    }
    if (surface_of(surface, kFunction) == nullptr) {
        return nullptr;
    }
    const bool done = has_views != 0 ? draw_views(room, surface, drawn.get())
                                     : draw_whole_room(room, surface, drawn.get());
    return done ? new_none() : nullptr;
}

}  // namespace larkspur
