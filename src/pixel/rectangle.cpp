#include "core/python.h"

#include "pixel/rectangle.h"

#include <SDL.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

#include "base/console.h"
#include "base/convert.h"
#include "core/attribute.h"
#include "core/collection_pause.h"
#include "core/display.h"
#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/tuple.h"
#include "core/view_state.h"
#include "pixel/kernels/colour.h"
#include "pixel/paint.h"
#include "pixel/surface/painters.h"

namespace larkspur::pixel {
namespace {

AttributeName color_to_int("__color_to_int");
AttributeName property_alpha("alpha");
AttributeName property_color("color");
AttributeName fill_name("fill");

// A rectangle on the screen, not yet in whole pixels.
struct ScreenBox {
    double x1;
    double y1;
    double x2;
    double y2;
};

// Where a room coordinate lies on the screen: its distance from the view's corner is scaled and
// rounded, halves away from zero; the corner itself is not.
double to_screen(float coordinate, double scale, double offset) noexcept {
    return std::round((static_cast<double>(coordinate) - offset) * scale) + offset;
}

// The kept screen Surface; empty with RuntimeError before set_SDL_screen().
PyRef screen_object(const char* function) noexcept {
    PyRef screen = PyRef::borrow(screen_surface_object());
    if (!screen) {
        PyErr_Format(PyExc_RuntimeError, "%s needs a display: call set_SDL_screen() first",
                     function);
    }
    return screen;
}

constexpr const char* kDrawRectangle = "draw_rectangle()";

// pygame has a screen's surface in hand while it reads a colour, and code of the host that this
// runs could close the display. The next functions read it as pygame would, but beforehand.

bool is_plain_number(PyObject* object) noexcept {
    return PyInt_CheckExact(object) || PyBool_Check(object) || PyLong_CheckExact(object) ||
           PyFloat_CheckExact(object);
}

// Whether reading a colour runs no code: an int of any kind, a text, one of pygame's own, and a
// tuple or list of numbers do not.
bool is_plain_colour(PyObject* colour) noexcept {
    const PyTypeObject* type = Py_TYPE(colour);
    const bool is_pygames = (type->tp_flags & Py_TPFLAGS_HEAPTYPE) == 0 &&
                            std::strcmp(type->tp_name, "pygame.Color") == 0;
    if (is_pygames || PyInt_Check(colour) || PyLong_Check(colour) || PyString_CheckExact(colour) ||
        PyUnicode_CheckExact(colour)) {
        return true;
    }
    if (!PyTuple_CheckExact(colour) && !PyList_CheckExact(colour)) {
        return false;
    }
    PyObject** const items = PySequence_Fast_ITEMS(colour);
    return std::all_of(items, items + PySequence_Fast_GET_SIZE(colour), is_plain_number);
}

// Channel i of a colour as an int; empty when it is none, with an exception or without.
PyRef plain_channel(PyObject* colour, Py_ssize_t i) noexcept {
    const PyRef item = PyRef::steal(PySequence_GetItem(colour, i));
    if (!item || !PyNumber_Check(item.get())) {
        return PyRef();
    }
    const PyRef number = PyRef::steal(PyNumber_Long(item.get()));
    if (!number) {
        return PyRef();
    }
    const auto channel = static_cast<std::uint32_t>(PyLong_AsUnsignedLong(number.get()));
    return channel <= kOpaque ? PyRef::steal(PyInt_FromLong(channel)) : PyRef();
}

// A colour that is a sequence as a tuple of its channels; empty when it is none, with an exception
// or without.
PyRef plain_channels(PyObject* colour) noexcept {
    while (PyTuple_Check(colour) && PyTuple_GET_SIZE(colour) == 1) {
        colour = PyTuple_GET_ITEM(colour, 0);  // pygame looks into such a tuple
    }
    const Py_ssize_t count = PySequence_Check(colour) ? PySequence_Size(colour) : 0;
    if (count < 3 || count > 4) {
        return PyRef();
    }
    std::array<PyRef, 4> channels;
    channels[3] = PyRef::steal(PyInt_FromLong(kOpaque));
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyRef& channel = channels[static_cast<std::size_t>(i)];
        channel = plain_channel(colour, i);
        if (!channel) {
            return PyRef();
        }
    }
    return tuple_of(channels);
}

// A colour that runs no code when it is read: itself, or what it comes to. What comes to nothing
// gives something that pygame refuses in the same way.
PyRef plain_colour(PyObject* colour) noexcept {
    if (is_plain_colour(colour)) {
        return PyRef::borrow(colour);
    }
    const bool is_sequence = PySequence_Check(colour) != 0;
    PyRef channels = plain_channels(colour);
    if (channels) {
        return channels;
    }
    PyErr_Clear();
    return is_sequence ? PyRef::steal(PyTuple_New(0)) : PyRef::borrow(Py_None);
}

PyObject* fill_box(PyObject* colour, const ScreenBox& box) noexcept {
    const PyRef plain = plain_colour(colour);
    const PyRef screen = plain ? screen_object(kDrawRectangle) : PyRef();
    if (!screen) {
        return nullptr;
    }
    const PyRef fill = get_attribute(screen.get(), fill_name);
    const CollectionPause pause;
    // That a display was closed fill() finds out itself, and says so in its own words.
    if (peek_surface(screen.get()) != nullptr && !ready_for_pygame(screen.get(), kDrawRectangle)) {
        return nullptr;
    }
    const PyRef result = PyRef::steal(
        fill ? PyObject_CallFunction(fill.get(), const_cast<char*>("(O(ffff))"), plain.get(),
                                     box.x1, box.y1, box.x2 - box.x1, box.y2 - box.y1)
             : nullptr);
    if (!result) {
        write_stderr("An error occurred filling surface.\n");
        return nullptr;
    }
    return new_none();
}

PyObject* outline_box(PyObject* colour, const ScreenBox& box) noexcept {
    const PyRef plain = plain_colour(colour);
    const CollectionPause pause;
    const PyRef screen = plain ? screen_object(kDrawRectangle) : PyRef();
    // Unlike fill(), pygame's drawing functions do not ask whether the display is still open.
    if (!screen || !ready_for_pygame(screen.get(), kDrawRectangle)) {
        return nullptr;
    }
    const PyRef draw_rect = PyRef::borrow(draw_rect_function());
    if (!draw_rect) {
        PyErr_Format(PyExc_RuntimeError,
                     "%s needs pygame.draw.rect: call RegisterInstancesDict() once gmapi.pygame is "
                     "set",
                     kDrawRectangle);
        return nullptr;
    }
    const double width = box.x2 - box.x1;
    const double height = box.y2 - box.y1;
    const PyRef result = PyRef::steal(
        PyObject_CallFunction(draw_rect.get(), const_cast<char*>("(OO(ffff)i)"), screen.get(),
                              plain.get(), box.x1, box.y1, width, height, 1));
    if (!result) {
        write_stderr("An error occurred calling pygame.draw.rect(screen,color,%f,%f,%f,%f,1).\n",
                     box.x1, box.y1, width, height);
        return nullptr;
    }
    return new_none();
}

PyObject* blend_box(PyObject* colour, double alpha, const ScreenBox& box) noexcept {
    const PyRef convert = get_attribute(gmapi_module(), color_to_int);
    if (!convert) {
        return nullptr;
    }
    const PyRef number = call_host(convert.get(), colour);
    if (!number) {
        return nullptr;
    }
    const auto pixel = static_cast<std::uint32_t>(PyInt_AsUnsignedLongMask(number.get()));
    if (PyErr_Occurred() != nullptr) {
        return nullptr;
    }
    const Corners corners = {truncate_to_int32(box.x1), truncate_to_int32(box.y1),
                             truncate_to_int32(box.x2), truncate_to_int32(box.y2)};
    const auto alpha_255 = static_cast<std::uint8_t>(truncate_to_int32(alpha * kOpaque));
    return paint_on(DisplayUse(kDrawRectangle), corners, SteppedAxis::kNone, kDrawRectangle,
                    [&](const SDL_Surface& display) {
                        translucent_fill_rect(display, corners, pixel, alpha_255);
                    });
}

}  // namespace

PyObject* fill_translucent(PyObject* /*module*/, PyObject* args) noexcept {
    constexpr const char* kFunction = "fill_translucent()";
    PyObject* object = nullptr;
    Corners corners = {};
    int colour = 0;
    int alpha = 0;
    if (!PyArg_ParseTuple(args, "Oiiiiii", &object, &corners.x1, &corners.y1, &corners.x2,
                          &corners.y2, &colour, &alpha)) {
        return nullptr;
    }
    return paint_on(SurfaceUse(object, kFunction), corners, SteppedAxis::kNone, kFunction,
                    [&](const SDL_Surface& surface) {
                        translucent_fill_rect(surface, corners, static_cast<std::uint32_t>(colour),
                                              static_cast<std::uint8_t>(alpha));
                    });
}

PyObject* fast_draw_rectangle_color(PyObject* /*module*/, PyObject* args) noexcept {
    constexpr const char* kFunction = "fast_draw_rectangle_color()";
    Corners corners = {};
    std::uint32_t top_left = 0;
    std::uint32_t top_right = 0;
    std::uint32_t bottom_right = 0;
    std::uint32_t bottom_left = 0;
    float alpha_share = 0.0F;
    int outline = 0;
    if (!PyArg_ParseTuple(args, "iiiiIIIIfi", &corners.x1, &corners.y1, &corners.x2, &corners.y2,
                          &top_left, &top_right, &bottom_right, &bottom_left, &alpha_share,
                          &outline)) {
        return nullptr;
    }
    if (corners.x2 < corners.x1) {
        std::swap(corners.x1, corners.x2);
    }
    if (corners.y2 < corners.y1) {
        std::swap(corners.y1, corners.y2);
    }
    const int alpha = truncate_to_int32(255.0F * alpha_share);
    const auto alpha_byte = static_cast<std::uint8_t>(alpha);
    const bool vertical = top_left == top_right && bottom_left == bottom_right;

    if (vertical && top_left == bottom_left) {
        if (alpha >= kOpaque) {
            write_stdout("BUG: should actually fill.\n");
            return new_none();
        }
        // The colour goes in as it came, as a pixel value; an outline is filled all the same.
        return paint_on(DisplayUse(kFunction), corners, SteppedAxis::kNone, kFunction,
                        [&](const SDL_Surface& display) {
                            translucent_fill_rect(display, corners, top_left, alpha_byte);
                        });
    }
    if (vertical && alpha == kOpaque) {
        return paint_on(DisplayUse(kFunction), corners, SteppedAxis::kY, kFunction,
                        [&](const SDL_Surface& display) {
                            const auto draw =
                                outline != 0 ? draw_gradient_outline : draw_vertical_gradient;
                            draw(display, corners, top_left, bottom_left);
                        });
    }
    if (vertical) {
        if (outline != 0) {
            write_stdout("BUG: need to draw translucent outline vgrad.\n");
            return new_none();
        }
        return paint_on(DisplayUse(kFunction), corners, SteppedAxis::kY, kFunction,
                        [&](const SDL_Surface& display) {
                            const GradientLayer layer = {top_left, bottom_left, alpha_byte};
                            blend_vertical_gradients(
                                display, corners, &layer, 1, 0,
                                static_cast<std::uint8_t>(kOpaque - alpha_byte));
                        });
    }
    if (alpha == kOpaque && outline == 0) {
        return paint_on(DisplayUse(kFunction), corners, SteppedAxis::kX, kFunction,
                        [&](const SDL_Surface& display) {
                            draw_horizontal_gradient(display, corners, top_left, top_right);
                        });
    }
    write_stdout("Horizontal gradient, complex gradient, or no gradient. %d/%d\n", alpha, outline);
    return new_none();
}

PyObject* draw_rectangle(PyObject* /*module*/, PyObject* args) noexcept {
    float x1 = 0.0F;
    float y1 = 0.0F;
    float x2 = 0.0F;
    float y2 = 0.0F;
    float outline = 0.0F;
    if (!PyArg_ParseTuple(args, "ffff|f", &x1, &y1, &x2, &y2, &outline)) {
        return nullptr;
    }
    const AxisPair scale = view_scale();
    const AxisPair offset = view_offset();
    const ScreenBox box = {to_screen(x1, scale.x, offset.x), to_screen(y1, scale.y, offset.y),
                           to_screen(x2, scale.x, offset.x), to_screen(y2, scale.y, offset.y)};

    const PyRef properties = PyRef::borrow(host_object(HostObject::kDrawProperties));
    if (!properties) {
        PyErr_Format(PyExc_RuntimeError,
                     "%s needs gmapi.py_draw_props: call RegisterInstancesDict() once it is set",
                     kDrawRectangle);
        return nullptr;
    }
    const PyRef alpha_object = get_attribute(properties.get(), property_alpha);
    if (!alpha_object) {
        return nullptr;
    }
    const double alpha = PyFloat_AsDouble(alpha_object.get());
    if (alpha == -1.0 && PyErr_Occurred() != nullptr) {
        return nullptr;
    }
    if (alpha != 1.0 && outline != 0.0F) {
        write_stderr("Can't do alphablending on outline rectangles yet.\n");
        return nullptr;
    }
    const PyRef colour = get_attribute(properties.get(), property_color);
    if (!colour) {
        return nullptr;
    }
    if (alpha != 1.0) {
        return blend_box(colour.get(), alpha, box);
    }
    // An opaque outline needs a flag of one half or more; not a number is none.
    const bool outlined = outline >= 0.5F || outline <= -0.5F;
    return outlined ? outline_box(colour.get(), box) : fill_box(colour.get(), box);
}

}  // namespace larkspur::pixel
