#include "room/view.h"

#include <cstdint>
#include <optional>
#include <utility>

#include "base/console.h"
#include "base/convert.h"
#include "base/recycled_surface.h"
#include "base/surface.h"
#include "core/attribute.h"
#include "core/display.h"
#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/view_state.h"
#include "larkspur.h"
#include "pixel/surface/blit.h"
#include "room/instance_draw.h"
#include "room/room_pygame.h"
#include "types/float_list.h"
#include "types/room.h"

namespace larkspur {
namespace {

constexpr char kFunction[] = "Room_DrawView()";

AttributeName view_xscale("view_xscale");
AttributeName view_yscale("view_yscale");
AttributeName instance_x("x");
AttributeName instance_y("y");

// One check point with three lines: an exception was pending when the backgrounds were done.
// Nothing between them can fail, so they come together or not at all; but people search logs for
// each.
constexpr const char* kBackgroundsDoneLines[] = {
    "660\n",
    "660 a\n",
    "An error has occurred 661\n",
};

// A room's values for one view: pixels in the room, ports in pixels of the display.
struct View {
    double xview;
    double yview;
    double object;
    double hborder;
    double vborder;
    double wview;
    double hview;
    double xport;
    double yport;
    double wport;
    double hport;
};

// Where each value of a view comes from.
struct ViewField {
    const char* name;
    PyObject* RoomObject::*list;
    double View::*value;
};

constexpr ViewField kViewFields[] = {
    {"view_xview", &RoomObject::view_xview, &View::xview},
    {"view_yview", &RoomObject::view_yview, &View::yview},
    {"view_object", &RoomObject::view_object, &View::object},
    {"view_hborder", &RoomObject::view_hborder, &View::hborder},
    {"view_vborder", &RoomObject::view_vborder, &View::vborder},
    {"view_wview", &RoomObject::view_wview, &View::wview},
    {"view_hview", &RoomObject::view_hview, &View::hview},
    {"view_xport", &RoomObject::view_xport, &View::xport},
    {"view_yport", &RoomObject::view_yport, &View::yport},
    {"view_wport", &RoomObject::view_wport, &View::wport},
    {"view_hport", &RoomObject::view_hport, &View::hport},
};

// A room's values for a view as they are now; read them again after anything that can run Python.
// Empty with TypeError when a list is no Floatlist8.
std::optional<View> read_view(const RoomObject& room, int index) noexcept {
    View view = {};
    for (const ViewField& field : kViewFields) {
        PyObject* list = room.*field.list;
        if (list == nullptr || Py_TYPE(list) != &float_list_type) {
            PyErr_Format(PyExc_TypeError, "%s needs a Floatlist8 in the room's %s, got %.200s",
                         kFunction, field.name,
                         list == nullptr ? "nothing" : Py_TYPE(list)->tp_name);
            return std::nullopt;
        }
        view.*field.value = reinterpret_cast<FloatListObject*>(list)->values[index];
    }
    return view;
}

// REQUIRES: read_view() has just found the room's lists to be what they should.
void write_position(RoomObject& room, int index, AxisPair position) noexcept {
    reinterpret_cast<FloatListObject*>(room.view_xview)->values[index] = position.x;
    reinterpret_cast<FloatListObject*>(room.view_yview)->values[index] = position.y;
}

// An attribute of an instance as a double; empty with an exception.
std::optional<double> coordinate(PyObject* instance, AttributeName& name) noexcept {
    const PyRef attribute = get_attribute(instance, name);
    if (!attribute) {
        return std::nullopt;
    }
    const double value = PyFloat_AsDouble(attribute.get());
    if (value == -1.0 && PyErr_Occurred() != nullptr) {
        return std::nullopt;
    }
    return value;
}

// Position of the first instance of an object of the game. Empty when there is none, with an
// exception when it could not be found out.
std::optional<AxisPair> find_followed(std::int32_t object_number) noexcept {
    const PendingException set_aside;
    const PyRef objects = game_list(gm6_module(), object_list.get());
    if (!objects) {
        return std::nullopt;
    }
    const PyRef object = PyRef::steal(PySequence_GetItem(objects.get(), object_number));
    if (!object) {
        return std::nullopt;
    }
    const PyRef instance = first_instance(object.get());
    if (!instance) {
        return std::nullopt;
    }
    const std::optional<double> x = coordinate(instance.get(), instance_x);
    const std::optional<double> y = x ? coordinate(instance.get(), instance_y) : std::nullopt;
    if (!y) {
        return std::nullopt;
    }
    return AxisPair{*x, *y};
}

// Position of a view along one axis that keeps `border` before the target and ends inside the room.
double follow(double target, double border, double view_length, double room_length) noexcept {
    const double start = target - border;
    if (start < 0.0) {
        return 0.0;
    }
    return start + view_length > room_length ? room_length - view_length : start;
}

// Tells the reader of a log by which step of a view an exception was pending: writes the line that
// stands for this step if one is.
void check_point(const char* line) noexcept {
    if (PyErr_Occurred() != nullptr) {
        write_stderr("%s", line);
    }
}

// Stores the scale where native code and the host read it; a failed store leaves its exception.
//
// @param x, y the scale as Python numbers, empty with an exception where making one failed
void store_scale(AxisPair scale, const PyRef& x, const PyRef& y) noexcept {
    set_view_scale(scale);
    {
        const PendingException set_aside;
        set_attribute(gm6_module(), view_xscale, x);
    }
    const PendingException set_aside;
    set_attribute(gm6_module(), view_yscale, y);
}

// An empty surface in the display's masks; null with an exception.
SurfacePtr make_intermediate(std::int32_t width, std::int32_t height) noexcept {
    const SDL_Surface* display = require_display(kFunction);
    if (display == nullptr) {
        return nullptr;
    }
    // SDL itself takes a negative size for a huge one.
    const bool refused = width < 0 || height < 0;
    RecycledSurface recycled = refused ? RecycledSurface{}
                                       : recycled_surface(SDL_SWSURFACE | SDL_SRCALPHA, width,
                                                          height, 32, *display->format);
    SurfacePtr surface = std::move(recycled.surface);
    if (!surface) {
        PyErr_Format(PyExc_ValueError,
                     "%s can't make a surface of view_wport x view_hport = %d x %d pixels",
                     kFunction, static_cast<int>(width), static_cast<int>(height));
        return nullptr;
    }
    if (!recycled.is_clear) {
        clear_first_rows(*surface, height);
    }
    return surface;
}

// The drawing of one view in its steps, and what they hand on.
class ViewPass {
 public:
    ViewPass(RoomObject& room, PyObject* surface, int index) noexcept
        : room_(room), surface_(surface), index_(index) {}

    bool place() noexcept;
    bool scale() noexcept;
    bool draw_backgrounds() noexcept;
    bool draw_objects(PyObject* drawn) noexcept;

 private:
    bool call_background_drawing(PyObject* canvas) noexcept;
    bool show_intermediate(PyObject* canvas) noexcept;
    bool draw_object(PyObject* object, PyObject* offset) noexcept;

    RoomObject& room_;
    PyObject* surface_;
    int index_;
    AxisPair start_ = {};      // view position before it followed its instance
    AxisPair position_ = {};   // and after
    SurfacePtr intermediate_;  // for the backgrounds of a scaled view; null for a direct one
};

// Moves the view to the instance that it follows, and says where it is now. False with an
// exception; a followed instance that can't be found leaves its exception, but is no failure.
bool ViewPass::place() noexcept {
    const std::optional<View> before = read_view(room_, index_);
    if (!before) {
        return false;
    }
    start_ = position_ = {before->xview, before->yview};
    const std::int32_t followed = truncate_to_int32(before->object);
    if (followed >= 0) {
        if (const std::optional<AxisPair> target = find_followed(followed)) {
            const std::optional<View> view = read_view(room_, index_);
            if (!view) {
                return false;
            }
            position_ = {follow(target->x, view->hborder, view->wview, room_.room_width),
                         follow(target->y, view->vborder, view->hview, room_.room_height)};
            if (position_.x != view->xview || position_.y != view->yview) {
                write_position(room_, index_, position_);
            }
        }
    }
    set_view_offset(position_);
    room_.view_current = index_;
    return true;
}

// Decides whether the view is drawn one to one, and stores its scale. False with an exception.
bool ViewPass::scale() noexcept {
    const std::optional<View> view = read_view(room_, index_);
    const SDL_Surface* target = view ? surface_of(surface_, kFunction) : nullptr;
    if (target == nullptr) {
        return false;
    }
    if (view->xport == 0.0 && view->yport == 0.0 && view->wview == target->w &&
        view->hview == target->h) {
        const PyRef one = PyRef::steal(PyInt_FromLong(1));
        store_scale({1.0, 1.0}, one, one);
        return true;
    }
    intermediate_ =
        make_intermediate(truncate_to_int32(view->wport), truncate_to_int32(view->hport));
    if (!intermediate_) {
        return false;
    }
    const AxisPair scale = {view->wport / view->wview, view->hport / view->hview};
    store_scale(scale, PyRef::steal(PyFloat_FromDouble(scale.x)),
                PyRef::steal(PyFloat_FromDouble(scale.y)));
    return true;
}

// Has the host draw the backgrounds: on the target, or on the intermediate surface, which then goes
// to the view's port. False with an exception.
bool ViewPass::draw_backgrounds() noexcept {
    const PendingException set_aside;
    if (!intermediate_) {
        return call_background_drawing(surface_);
    }
    const PyRef canvas = wrap_room_surface(std::move(intermediate_));
    if (!canvas) {
        return false;
    }
    const bool drawn = call_background_drawing(canvas.get());
    const PendingException failure;
    return show_intermediate(canvas.get()) && drawn;
}

// The host gets the view's position as it was when the pass began.
bool ViewPass::call_background_drawing(PyObject* canvas) noexcept {
    const PyRef x = PyRef::steal(PyFloat_FromDouble(start_.x));
    const PyRef y = PyRef::steal(PyFloat_FromDouble(start_.y));
    return x && y &&
           call_host(host_object(HostObject::kRoomDrawBackgrounds),
                     reinterpret_cast<PyObject*>(&room_), canvas, x.get(), y.get());
}

// Blits the intermediate surface to the view's port as the room has it now. False with an
// exception; a blit that SDL refuses is no failure.
bool ViewPass::show_intermediate(PyObject* canvas) noexcept {
    const std::optional<View> view = read_view(room_, index_);
    if (!view) {
        return false;
    }
    const SurfaceUse target(surface_, kFunction);
    if (!target) {
        return false;
    }
    SDL_Rect port = {};
    port.x = low_16_bits(truncate_to_int64(view->xport));
    port.y = low_16_bits(truncate_to_int64(view->yport));
    pixel::blit(peek_surface(canvas), nullptr, target.get(), &port);
    return true;
}

// Draws the objects in order, each whatever became of the others. False when one failed.
bool ViewPass::draw_objects(PyObject* drawn) noexcept {
    const PyRef offset = PyRef::steal(
        Py_BuildValue("(ii)", truncate_to_int32(-position_.x), truncate_to_int32(-position_.y)));
    if (!offset) {
        return false;
    }
    bool status = true;
    const Py_ssize_t count = PyTuple_GET_SIZE(drawn);
    for (Py_ssize_t i = 0; i < count; ++i) {
        if (i + 1 < count) {
            // Among thousands the next one has left the caches since the last frame: to wait for it
            // was most of what this loop took.
            __builtin_prefetch(PyTuple_GET_ITEM(drawn, i + 1));
        }
        if (PyErr_Occurred() != nullptr) {
            write_stderr("Error after GI %d\n", static_cast<int>(i));
        }
        status = draw_object(PyTuple_GET_ITEM(drawn, i), offset.get()) && status;
    }
    return status;
}

bool ViewPass::draw_object(PyObject* object, PyObject* offset) noexcept {
    const bool is_particle_system = reinterpret_cast<PyObject*>(Py_TYPE(object)) ==
                                    host_object(HostObject::kParticleSystemType);
    if (is_particle_system && index_ != 0) {
        return true;  // particle systems show once per frame, in the first view
    }
    bool drawn = false;
    {
        // One object's failure must not show in another's code.
        const PendingException set_aside;
        drawn = is_particle_system ? draw_particle_system(object, offset) : draw_instance(object);
    }
    check_point(is_particle_system ? "Error drawing PS\n" : "Error drawing instance\n");
    return drawn;
}

bool check_arguments(PyObject* room, PyObject* surface, int view, PyObject* drawn) noexcept {
    if (Py_TYPE(room) != &room_type) {
        PyErr_Format(PyExc_TypeError, "%s needs a GMRoom, got %.200s", kFunction,
                     Py_TYPE(room)->tp_name);
        return false;
    }
    if (view < 0 || view >= kFloatListLength) {
        PyErr_Format(PyExc_ValueError, "%s needs a view from 0 to %d, got %d", kFunction,
                     kFloatListLength - 1, view);
        return false;
    }
    if (!PyTuple_Check(drawn)) {
        PyErr_Format(PyExc_TypeError, "%s needs a tuple of objects, got %.200s", kFunction,
                     Py_TYPE(drawn)->tp_name);
        return false;
    }
    return surface_of(surface, kFunction) != nullptr;
}

}  // namespace

bool draw_view(PyObject* room, PyObject* surface, int index, PyObject* drawn) noexcept {
    if (!check_arguments(room, surface, index, drawn)) {
        return false;
    }
    ViewPass pass(*reinterpret_cast<RoomObject*>(room), surface, index);
    if (!pass.place()) {
        return false;
    }
    check_point("An error has occurred 615\n");
    if (!pass.scale()) {
        return false;
    }
    check_point("An error has occurred 638\n");
    const bool backgrounds_drawn = pass.draw_backgrounds();
    for (const char* line : kBackgroundsDoneLines) {
        check_point(line);
    }
    const bool objects_drawn = pass.draw_objects(drawn);
    check_point("An error has occurred\n");
    return backgrounds_drawn && objects_drawn;
}

}  // namespace larkspur

extern "C" int32_t Room_DrawView(PyObject* room, PyObject* surface, int32_t view, PyObject* drawn) {
    return larkspur::draw_view(room, surface, view, drawn) ? 1 : 0;
}
