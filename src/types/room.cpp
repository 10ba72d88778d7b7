#include "types/room.h"

#include <array>
#include <cstddef>
#include <utility>

#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"
#include "core/tuple.h"
#include "types/comparison.h"
#include "types/resource.h"

namespace larkspur {
namespace {

// Two asymmetries are part of the type. What belongs to the backgrounds is released but not looked
// through by garbage collection, and their sizes go last of all.
constexpr Field background_slot(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kLenientObject, offset, nullptr, Visit::kNo, Release::kFirst};
}
constexpr Field background_setting(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kLenientObject, offset, nullptr, Visit::kNo, Release::kSecond};
}
constexpr Field background_size(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kLenientObject, offset, nullptr, Visit::kNo, Release::kThird};
}

// And some objects outlive their room for good.
constexpr Field kept_object(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kLenientObject, offset, nullptr, Visit::kNo, Release::kNever};
}

// In the order of the pickled state.
constexpr Field kRoomFields[] = {
    int_field("id", offsetof(RoomObject, id)),
    object_field("name", offsetof(RoomObject, name)),
    int_field("room_width", offsetof(RoomObject, room_width)),
    int_field("room_height", offsetof(RoomObject, room_height)),
    int_field("snapx", offsetof(RoomObject, snapx)),
    int_field("snapy", offsetof(RoomObject, snapy)),
    int_field("isogrid", offsetof(RoomObject, isogrid)),
    int_field("room_speed", offsetof(RoomObject, room_speed)),
    int_field("room_persistent", offsetof(RoomObject, room_persistent)),
    int_field("bgcolor", offsetof(RoomObject, bgcolor)),
    int_field("draw_bgcolor", offsetof(RoomObject, draw_bgcolor)),
    object_field("room_caption", offsetof(RoomObject, room_caption)),
    object_field("creation_code", offsetof(RoomObject, creation_code)),
    background_slot("bg0", offsetof(RoomObject, bg0)),
    background_slot("bg1", offsetof(RoomObject, bg1)),
    background_slot("bg2", offsetof(RoomObject, bg2)),
    background_slot("bg3", offsetof(RoomObject, bg3)),
    background_slot("bg4", offsetof(RoomObject, bg4)),
    background_slot("bg5", offsetof(RoomObject, bg5)),
    background_slot("bg6", offsetof(RoomObject, bg6)),
    background_slot("bg7", offsetof(RoomObject, bg7)),
    int_field("view_enabled", offsetof(RoomObject, view_enabled)),
    int_field("numviews", offsetof(RoomObject, numviews)),
    object_field("view_xview", offsetof(RoomObject, view_xview)),
    object_field("view_yview", offsetof(RoomObject, view_yview)),
    object_field("view_object", offsetof(RoomObject, view_object)),
    object_field("view_hborder", offsetof(RoomObject, view_hborder)),
    object_field("view_vborder", offsetof(RoomObject, view_vborder)),
    object_field("view_wview", offsetof(RoomObject, view_wview)),
    object_field("view_hview", offsetof(RoomObject, view_hview)),
    object_field("view_xport", offsetof(RoomObject, view_xport)),
    object_field("view_yport", offsetof(RoomObject, view_yport)),
    object_field("view_wport", offsetof(RoomObject, view_wport)),
    object_field("view_hport", offsetof(RoomObject, view_hport)),
    object_field("background_index", offsetof(RoomObject, background_index)),
    object_field("instances", offsetof(RoomObject, instances)),
    object_field("tiles", offsetof(RoomObject, tiles)),
    int_field("tile_w", offsetof(RoomObject, tile_w)),
    int_field("tile_h", offsetof(RoomObject, tile_h)),
    int_field("tile_hsep", offsetof(RoomObject, tile_hsep)),
    int_field("tile_vsep", offsetof(RoomObject, tile_vsep)),
    int_field("tile_hoffset", offsetof(RoomObject, tile_hoffset)),
    int_field("tile_voffset", offsetof(RoomObject, tile_voffset)),
    int_field("created", offsetof(RoomObject, created)),
    object_field("all_objects", offsetof(RoomObject, all_objects)),
    object_field("drawn_objects", offsetof(RoomObject, drawn_objects)),
    object_field("deactivated_objects", offsetof(RoomObject, deactivated_objects)),
    object_field("keypressed_objects", offsetof(RoomObject, keypressed_objects)),
    object_field("keyreleased_objects", offsetof(RoomObject, keyreleased_objects)),
    object_field("mouse_leftpressed_objects", offsetof(RoomObject, mouse_leftpressed_objects)),
    object_field("mouse_rightpressed_objects", offsetof(RoomObject, mouse_rightpressed_objects)),
    object_field("collisioned_objects", offsetof(RoomObject, collisioned_objects)),
    object_field("stepped_objects", offsetof(RoomObject, stepped_objects)),
    object_field("moving_objects", offsetof(RoomObject, moving_objects)),
    object_field("alarmed_objects", offsetof(RoomObject, alarmed_objects)),
    object_field("animated_objects", offsetof(RoomObject, animated_objects)),
    object_field("key_objects", offsetof(RoomObject, key_objects)),
    object_field("mouse_objects", offsetof(RoomObject, mouse_objects)),
    object_field("cached_bg", offsetof(RoomObject, cached_bg)),
    object_field("cached_bg_scaled", offsetof(RoomObject, cached_bg_scaled)),
    float_field("frame_duration", offsetof(RoomObject, frame_duration)),
    kept_object("creation_code_compiled", offsetof(RoomObject, creation_code_compiled)),
    background_setting("background_x", offsetof(RoomObject, background_x)),
    background_setting("background_y", offsetof(RoomObject, background_y)),
    background_size("background_width", offsetof(RoomObject, background_width)),
    background_size("background_height", offsetof(RoomObject, background_height)),
    background_setting("background_xscale", offsetof(RoomObject, background_xscale)),
    background_setting("background_yscale", offsetof(RoomObject, background_yscale)),
    background_setting("background_hspeed", offsetof(RoomObject, background_hspeed)),
    background_setting("background_vspeed", offsetof(RoomObject, background_vspeed)),
    background_setting("background_blend", offsetof(RoomObject, background_blend)),
    background_setting("background_alpha", offsetof(RoomObject, background_alpha)),
    background_setting("background_htiled", offsetof(RoomObject, background_htiled)),
    background_setting("background_vtiled", offsetof(RoomObject, background_vtiled)),
    background_setting("background_visible", offsetof(RoomObject, background_visible)),
    kept_object("view_visible", offsetof(RoomObject, view_visible)),
    int_field("view_current", offsetof(RoomObject, view_current)),
    kept_object("initial_view_data", offsetof(RoomObject, initial_view_data)),
};
using RoomRecord = Record<kRoomFields>;

// How a forwarding method takes its arguments.
enum class Arguments : std::uint8_t {
    kIgnored,  // any, none passed on
    kNone,     // none accepted
    kFirst,    // the first is passed on, more are ignored
    kExact,    // as many as are passed on
};

// A method that calls one of the host's functions with the room and its own arguments.
struct Forward {
    const char* name;
    HostObject callable;
    Arguments arguments;
    Py_ssize_t passed_on;
};

// In the order of the method table, which holds StepAlarms twice.
constexpr Forward kForwards[] = {
    {"Compile", HostObject::kRoomCompile, Arguments::kIgnored, 0},
    {"Create", HostObject::kRoomCreate, Arguments::kIgnored, 0},
    {"InitializeBackgrounds", HostObject::kRoomInitializeBackgrounds, Arguments::kIgnored, 0},
    {"AddInstance", HostObject::kRoomAddInstance, Arguments::kFirst, 1},
    {"AddDrawnInstance", HostObject::kRoomAddDrawnInstance, Arguments::kFirst, 1},
    {"ResortDrawnObjects", HostObject::kRoomResortDrawnObjects, Arguments::kIgnored, 0},
    {"SetBackgroundIndex", HostObject::kRoomSetBackgroundIndex, Arguments::kExact, 2},
    {"StepAlarms", HostObject::kRoomStepAlarms, Arguments::kNone, 0},
    {"MoveInstances", HostObject::kRoomMoveInstances, Arguments::kNone, 0},
    {"HandleCollisions", HostObject::kRoomHandleCollisions, Arguments::kNone, 0},
    {"StepAlarms", HostObject::kRoomStepAlarms, Arguments::kNone, 0},
    {"StepEvents", HostObject::kRoomStepEvents, Arguments::kNone, 0},
    {"DrawBackgrounds", HostObject::kRoomDrawBackgrounds, Arguments::kExact, 3},
    {"RenderBackground", HostObject::kRoomRenderBackground, Arguments::kNone, 0},
    {"Leave", HostObject::kRoomLeave, Arguments::kNone, 0},
    {"MouseButtonDown", HostObject::kRoomMouseButtonDown, Arguments::kExact, 1},
    {"MouseButtonUp", HostObject::kRoomMouseButtonUp, Arguments::kExact, 1},
    {"HandleKeyrelease", HostObject::kRoomHandleKeyrelease, Arguments::kExact, 1},
    {"HandleKeypress", HostObject::kRoomHandleKeypress, Arguments::kExact, 1},
};

// Formats for a number of arguments; the interpreter's own parser words the errors.
constexpr const char* kObjectFormats[] = {"", "O", "OO", "OOO"};

bool check_arguments(const Forward& method, PyObject* args) noexcept {
    if (method.arguments == Arguments::kExact) {
        PyObject* first = nullptr;
        PyObject* second = nullptr;
        PyObject* third = nullptr;
        return PyArg_ParseTuple(args, kObjectFormats[method.passed_on], &first, &second, &third) !=
               0;
    }
    if (PyTuple_GET_SIZE(args) < method.passed_on) {
        PyErr_Format(PyExc_TypeError, "GMRoom.%s() needs an instance, and got no argument",
                     method.name);
        return false;
    }
    return true;
}

PyObject* forward_call(const Forward& method, PyObject* self, PyObject* args) noexcept {
    // A method that takes none gets no tuple at all.
    if (method.passed_on > 0 && !check_arguments(method, args)) {
        return nullptr;
    }
    const PyRef arguments = PyRef::steal(PyTuple_New(1 + method.passed_on));
    if (!arguments) {
        return nullptr;
    }
    PyTuple_SET_ITEM(arguments.get(), 0, PyRef::borrow(self).release());
    for (Py_ssize_t i = 0; i < method.passed_on; ++i) {
        PyTuple_SET_ITEM(arguments.get(), 1 + i,
                         PyRef::borrow(PyTuple_GET_ITEM(args, i)).release());
    }
    return call_host(host_object(method.callable), arguments).release();
}

template <std::size_t row>
PyObject* forward(PyObject* self, PyObject* args) noexcept {
    return forward_call(kForwards[row], self, args);
}

// One pair of name and value per member, in the order of the member table.
PyObject* room_reduce(PyObject* self, PyObject* /*args*/) noexcept {
    std::array<PyRef, RoomRecord::field_count()> pairs;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const char* name = kRoomFields[i].name;
        const PyRef value = PyRef::steal(PyObject_GetAttrString(self, name));
        pairs[i] = PyRef::steal(value ? Py_BuildValue("(sO)", name, value.get()) : nullptr);
        if (!pairs[i]) {
            return nullptr;
        }
    }
    return reduced(room_type, tuple_of(pairs));
}

// Assigns one pair of name and value. A pair that cannot be assigned is passed over: a state may
// come from another version of the engine. False with TypeError for what is no pair.
bool restore_member(PyObject* self, PyObject* pair) noexcept {
    const PyRef name = state_item(pair, 0);
    const PyRef value = name ? state_item(pair, 1) : PyRef();
    if (!value) {
        PyErr_Format(PyExc_TypeError,
                     "GMRoom.__setstate__() needs pairs of a name and a value, got %.200s",
                     Py_TYPE(pair)->tp_name);
        return false;
    }
    const PyRef text = PyRef::steal(PyObject_Str(name.get()));
    if (!text || PyObject_SetAttr(self, text.get(), value.get()) != 0) {
        PyErr_Clear();
    }
    return true;
}

PyObject* room_setstate(PyObject* self, PyObject* args) noexcept {
    PyObject* state = state_argument(args, "GMRoom.__setstate__()");
    if (state == nullptr) {
        return nullptr;
    }
    if (!PyTuple_Check(state) && !PyList_Check(state)) {
        PyErr_Format(PyExc_TypeError,
                     "GMRoom.__setstate__() needs a tuple of pairs as __reduce__() gives it, got "
                     "%.200s",
                     Py_TYPE(state)->tp_name);
        return nullptr;
    }
    // Assigning can run code that shortens a list: its length is read anew for every pair.
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(state); ++i) {
        const PyRef pair = state_item(state, i);
        if (!pair || !restore_member(self, pair.get())) {
            return nullptr;
        }
    }
    return new_none();
}

constexpr std::size_t kOwnMethods = 2;
using MethodTable = std::array<PyMethodDef, kOwnMethods + std::size(kForwards) + 1>;

template <std::size_t... rows>
MethodTable make_methods(std::index_sequence<rows...> /*rows*/) noexcept {
    const auto flags = [](const Forward& method) {
        return method.arguments == Arguments::kNone ? METH_NOARGS : METH_VARARGS;
    };
    return {{
        {"__reduce__", room_reduce, METH_VARARGS, nullptr},
        {"__setstate__", room_setstate, METH_VARARGS, nullptr},
        {kForwards[rows].name, forward<rows>, flags(kForwards[rows]), nullptr}...,
        {nullptr, nullptr, 0, nullptr},
    }};
}

MethodTable room_methods = make_methods(std::make_index_sequence<std::size(kForwards)>());

PyTypeObject make_room_type() noexcept {
    PyTypeObject type =
        make_type("larkspur.GMRoom", "GM-compatible backgrounds.", sizeof(RoomObject));
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_traverse = RoomRecord::traverse;
    type.tp_clear = RoomRecord::clear;
    type.tp_dealloc = RoomRecord::dealloc;
    type.tp_free = PyObject_GC_Del;
    type.tp_compare = compare_as_int;
    type.tp_as_number = &resource_number<room_list>;
    type.tp_str = resource_str<room_list>;
    type.tp_methods = room_methods.data();
    type.tp_members = RoomRecord::members();
    return type;
}

}  // namespace

PyTypeObject room_type = make_room_type();

}  // namespace larkspur
