#include "core/python.h"

#include "pixel/rectangle.h"

#include <SDL.h>

#include <cmath>
#include <cstdint>
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
#include "core/view_state.h"
#include "pixel/kernels/colour.h"
#include "pixel/paint.h"
#include "pixel/surface/painters.h"

namespace larkspur::pixel {
namespace {

AttributeName color_to_int("__color_to_int");
AttributeName property_alpha("alpha");
AttributeName property_color("color");

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

// pygame's own functions read the pixels of a subsurface's owner without asking whether they are
// there. False with an exception when they are not.
bool require_usable(PyObject* screen) noexcept {
    return static_cast<bool>(SurfaceUse(screen, kDrawRectangle));
}

PyObject* fill_box(PyObject* colour, const ScreenBox& box) noexcept {
    const CollectionPause pause;
    const PyRef screen = screen_object(kDrawRectangle);
    // That a display was closed fill() finds out itself, and says so in its own words.
    if (!screen || (peek_surface(screen.get()) != nullptr && !require_usable(screen.get()))) {
        return nullptr;
    }
    const PyRef result = PyRef::steal(
        PyObject_CallMethod(screen.get(), const_cast<char*>("fill"), const_cast<char*>("(O(ffff))"),
                            colour, box.x1, box.y1, box.x2 - box.x1, box.y2 - box.y1));
    if (!result) {
        write_stderr("An error occurred filling surface.\n");
        return nullptr;
    }
    return new_none();
}

PyObject* outline_box(PyObject* colour, const ScreenBox& box) noexcept {
    const CollectionPause pause;
    const PyRef screen = screen_object(kDrawRectangle);
    // Unlike fill(), pygame's drawing functions do not ask whether the display is still open.
    if (!screen || !require_usable(screen.get())) {
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
    const PyRef result =
        PyRef::steal(PyObject_CallFunction(draw_rect.get(), const_cast<char*>("(OO(ffff)i)"),
                                           screen.get(), colour, box.x1, box.y1, width, height, 1));
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
