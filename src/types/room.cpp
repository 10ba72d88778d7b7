#include "types/room.h"

#include <array>
#include <cstddef>
#include <utility>

#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"
#include "types/comparison.h"
#include "types/resource.h"

namespace larkspur {
namespace {

// In the order of the pickled state. Two asymmetries are part of the type: background slots and
// settings are released but not looked through, and three objects outlive their room for good.
constexpr Field kRoomFields[] = {
    {"id", FieldKind::kInt, offsetof(RoomObject, id)},
    {"name", FieldKind::kLenientObject, offsetof(RoomObject, name), nullptr, Visit::kYes,
     Release::kFirst},
    {"room_width", FieldKind::kInt, offsetof(RoomObject, room_width)},
    {"room_height", FieldKind::kInt, offsetof(RoomObject, room_height)},
    {"snapx", FieldKind::kInt, offsetof(RoomObject, snapx)},
    {"snapy", FieldKind::kInt, offsetof(RoomObject, snapy)},
    {"isogrid", FieldKind::kInt, offsetof(RoomObject, isogrid)},
    {"room_speed", FieldKind::kInt, offsetof(RoomObject, room_speed)},
    {"room_persistent", FieldKind::kInt, offsetof(RoomObject, room_persistent)},
    {"bgcolor", FieldKind::kInt, offsetof(RoomObject, bgcolor)},
    {"draw_bgcolor", FieldKind::kInt, offsetof(RoomObject, draw_bgcolor)},
    {"room_caption", FieldKind::kLenientObject, offsetof(RoomObject, room_caption), nullptr,
     Visit::kYes, Release::kFirst},
    {"creation_code", FieldKind::kLenientObject, offsetof(RoomObject, creation_code), nullptr,
     Visit::kYes, Release::kFirst},
    {"bg0", FieldKind::kLenientObject, offsetof(RoomObject, bg0), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg1", FieldKind::kLenientObject, offsetof(RoomObject, bg1), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg2", FieldKind::kLenientObject, offsetof(RoomObject, bg2), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg3", FieldKind::kLenientObject, offsetof(RoomObject, bg3), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg4", FieldKind::kLenientObject, offsetof(RoomObject, bg4), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg5", FieldKind::kLenientObject, offsetof(RoomObject, bg5), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg6", FieldKind::kLenientObject, offsetof(RoomObject, bg6), nullptr, Visit::kNo,
     Release::kFirst},
    {"bg7", FieldKind::kLenientObject, offsetof(RoomObject, bg7), nullptr, Visit::kNo,
     Release::kFirst},
    {"view_enabled", FieldKind::kInt, offsetof(RoomObject, view_enabled)},
    {"numviews", FieldKind::kInt, offsetof(RoomObject, numviews)},
    {"view_xview", FieldKind::kLenientObject, offsetof(RoomObject, view_xview), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_yview", FieldKind::kLenientObject, offsetof(RoomObject, view_yview), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_object", FieldKind::kLenientObject, offsetof(RoomObject, view_object), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_hborder", FieldKind::kLenientObject, offsetof(RoomObject, view_hborder), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_vborder", FieldKind::kLenientObject, offsetof(RoomObject, view_vborder), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_wview", FieldKind::kLenientObject, offsetof(RoomObject, view_wview), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_hview", FieldKind::kLenientObject, offsetof(RoomObject, view_hview), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_xport", FieldKind::kLenientObject, offsetof(RoomObject, view_xport), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_yport", FieldKind::kLenientObject, offsetof(RoomObject, view_yport), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_wport", FieldKind::kLenientObject, offsetof(RoomObject, view_wport), nullptr,
     Visit::kYes, Release::kFirst},
    {"view_hport", FieldKind::kLenientObject, offsetof(RoomObject, view_hport), nullptr,
     Visit::kYes, Release::kFirst},
    {"background_index", FieldKind::kLenientObject, offsetof(RoomObject, background_index), nullptr,
     Visit::kYes, Release::kFirst},
    {"instances", FieldKind::kLenientObject, offsetof(RoomObject, instances), nullptr, Visit::kYes,
     Release::kFirst},
    {"tiles", FieldKind::kLenientObject, offsetof(RoomObject, tiles), nullptr, Visit::kYes,
     Release::kFirst},
    {"tile_w", FieldKind::kInt, offsetof(RoomObject, tile_w)},
    {"tile_h", FieldKind::kInt, offsetof(RoomObject, tile_h)},
    {"tile_hsep", FieldKind::kInt, offsetof(RoomObject, tile_hsep)},
    {"tile_vsep", FieldKind::kInt, offsetof(RoomObject, tile_vsep)},
    {"tile_hoffset", FieldKind::kInt, offsetof(RoomObject, tile_hoffset)},
    {"tile_voffset", FieldKind::kInt, offsetof(RoomObject, tile_voffset)},
    {"created", FieldKind::kInt, offsetof(RoomObject, created)},
    {"all_objects", FieldKind::kLenientObject, offsetof(RoomObject, all_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"drawn_objects", FieldKind::kLenientObject, offsetof(RoomObject, drawn_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"deactivated_objects", FieldKind::kLenientObject, offsetof(RoomObject, deactivated_objects),
     nullptr, Visit::kYes, Release::kFirst},
    {"keypressed_objects", FieldKind::kLenientObject, offsetof(RoomObject, keypressed_objects),
     nullptr, Visit::kYes, Release::kFirst},
    {"keyreleased_objects", FieldKind::kLenientObject, offsetof(RoomObject, keyreleased_objects),
     nullptr, Visit::kYes, Release::kFirst},
    {"mouse_leftpressed_objects", FieldKind::kLenientObject,
     offsetof(RoomObject, mouse_leftpressed_objects), nullptr, Visit::kYes, Release::kFirst},
    {"mouse_rightpressed_objects", FieldKind::kLenientObject,
     offsetof(RoomObject, mouse_rightpressed_objects), nullptr, Visit::kYes, Release::kFirst},
    {"collisioned_objects", FieldKind::kLenientObject, offsetof(RoomObject, collisioned_objects),
     nullptr, Visit::kYes, Release::kFirst},
    {"stepped_objects", FieldKind::kLenientObject, offsetof(RoomObject, stepped_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"moving_objects", FieldKind::kLenientObject, offsetof(RoomObject, moving_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"alarmed_objects", FieldKind::kLenientObject, offsetof(RoomObject, alarmed_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"animated_objects", FieldKind::kLenientObject, offsetof(RoomObject, animated_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"key_objects", FieldKind::kLenientObject, offsetof(RoomObject, key_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"mouse_objects", FieldKind::kLenientObject, offsetof(RoomObject, mouse_objects), nullptr,
     Visit::kYes, Release::kFirst},
    {"cached_bg", FieldKind::kLenientObject, offsetof(RoomObject, cached_bg), nullptr, Visit::kYes,
     Release::kFirst},
    {"cached_bg_scaled", FieldKind::kLenientObject, offsetof(RoomObject, cached_bg_scaled), nullptr,
     Visit::kYes, Release::kFirst},
    {"frame_duration", FieldKind::kFloat, offsetof(RoomObject, frame_duration)},
    {"creation_code_compiled", FieldKind::kLenientObject,
     offsetof(RoomObject, creation_code_compiled), nullptr, Visit::kNo, Release::kNever},
    {"background_x", FieldKind::kLenientObject, offsetof(RoomObject, background_x), nullptr,
     Visit::kNo, Release::kSecond},
    {"background_y", FieldKind::kLenientObject, offsetof(RoomObject, background_y), nullptr,
     Visit::kNo, Release::kSecond},
    {"background_width", FieldKind::kLenientObject, offsetof(RoomObject, background_width), nullptr,
     Visit::kNo, Release::kThird},
    {"background_height", FieldKind::kLenientObject, offsetof(RoomObject, background_height),
     nullptr, Visit::kNo, Release::kThird},
    {"background_xscale", FieldKind::kLenientObject, offsetof(RoomObject, background_xscale),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_yscale", FieldKind::kLenientObject, offsetof(RoomObject, background_yscale),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_hspeed", FieldKind::kLenientObject, offsetof(RoomObject, background_hspeed),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_vspeed", FieldKind::kLenientObject, offsetof(RoomObject, background_vspeed),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_blend", FieldKind::kLenientObject, offsetof(RoomObject, background_blend), nullptr,
     Visit::kNo, Release::kSecond},
    {"background_alpha", FieldKind::kLenientObject, offsetof(RoomObject, background_alpha), nullptr,
     Visit::kNo, Release::kSecond},
    {"background_htiled", FieldKind::kLenientObject, offsetof(RoomObject, background_htiled),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_vtiled", FieldKind::kLenientObject, offsetof(RoomObject, background_vtiled),
     nullptr, Visit::kNo, Release::kSecond},
    {"background_visible", FieldKind::kLenientObject, offsetof(RoomObject, background_visible),
     nullptr, Visit::kNo, Release::kSecond},
    {"view_visible", FieldKind::kLenientObject, offsetof(RoomObject, view_visible), nullptr,
     Visit::kNo, Release::kNever},
    {"view_current", FieldKind::kInt, offsetof(RoomObject, view_current)},
    {"initial_view_data", FieldKind::kLenientObject, offsetof(RoomObject, initial_view_data),
     nullptr, Visit::kNo, Release::kNever},
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
    const PyRef state = PyRef::steal(PyTuple_New(RoomRecord::field_count()));
    if (!state) {
        return nullptr;
    }
    for (Py_ssize_t i = 0; i < RoomRecord::field_count(); ++i) {
        const char* name = kRoomFields[i].name;
        const PyRef value = PyRef::steal(PyObject_GetAttrString(self, name));
        PyObject* pair = value ? Py_BuildValue("(sO)", name, value.get()) : nullptr;
        if (pair == nullptr) {
            return nullptr;
        }
        PyTuple_SET_ITEM(state.get(), i, pair);
    }
    return reduced(room_type, state);
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
    type.tp_as_number = &resource_number<kRoomList>;
    type.tp_str = resource_str<kRoomList>;
    type.tp_methods = room_methods.data();
    type.tp_members = RoomRecord::members();
    return type;
}

}  // namespace

PyTypeObject room_type = make_room_type();

}  // namespace larkspur
