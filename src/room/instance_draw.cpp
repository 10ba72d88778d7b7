#include "room/instance_draw.h"

#include <array>
#include <iterator>

#include "base/console.h"
#include "core/attribute.h"
#include "core/host.h"
#include "core/host_access.h"
#include "core/py_ref.h"
#include "core/tuple.h"

namespace larkspur {
namespace {

// Position of the draw event in an object's list of events.
constexpr Py_ssize_t kDrawEvent = 8;

// What "py_Draw" holds when there is no draw code.
constexpr long kAutomaticDraw = 1;

AttributeName py_draw("py_Draw");
AttributeName object_index("object_index");
AttributeName py_objectdata("py_objectdata");
AttributeName events("events");
AttributeName python("python");
AttributeName py_automatic_draw("py_automatic_draw");
AttributeName py_real_draw("py_RealDraw");

// The arguments of draw_sprite_ext, in order.
AttributeName sprite_attributes[] = {
    AttributeName("sprite_index"),
    AttributeName("image_index"),
    AttributeName("x"),
    AttributeName("y"),
    AttributeName("image_xscale"),
    AttributeName("image_yscale"),
    AttributeName("image_angle"),
    AttributeName("image_blend"),
    AttributeName("image_alpha"),
};

// True when an object can be evaluated like a module's code; false with TypeError. Code with free
// variables would read them from cells that are not there.
bool check_draw_code(PyObject* code) noexcept {
    if (!PyCode_Check(code)) {
        PyErr_Format(PyExc_TypeError, "draw code must be a compiled code object, got %.200s",
                     Py_TYPE(code)->tp_name);
        return false;
    }
    if (PyCode_GetNumFree(reinterpret_cast<PyCodeObject*>(code)) > 0) {
        PyErr_SetString(PyExc_TypeError,
                        "draw code must not have free variables; compile it as a module's code");
        return false;
    }
    return true;
}

// The dictionary in which draw code runs; empty with TypeError when the host has none. Names are
// looked up in it without another check.
PyRef code_globals() noexcept {
    PyObject* globals = game_globals();
    if (globals == nullptr || !PyDict_Check(globals)) {
        PyErr_Format(PyExc_TypeError,
                     "draw code runs in gmapi.__dict__, which must be a dictionary, got %.200s",
                     globals != nullptr ? Py_TYPE(globals)->tp_name : "nothing");
        return PyRef();
    }
    return PyRef::borrow(globals);
}

// Runs draw code as the current `self`, which a scope has made the instance. False with an
// exception.
bool run_draw_code(const SelfScope& self, PyObject* code) noexcept {
    // With another instance as `self` the code would draw, and change, the wrong one.
    if (!self || !check_draw_code(code)) {
        return false;
    }
    const PyRef globals = code_globals();
    return globals && PyRef::steal(PyEval_EvalCode(reinterpret_cast<PyCodeObject*>(code),
                                                   globals.get(), globals.get()));
}

// Calls the host's draw_sprite_ext for an instance. False with an exception.
bool draw_sprite_of(PyObject* instance) noexcept {
    std::array<PyRef, std::size(sprite_attributes)> values;
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] = get_attribute(instance, sprite_attributes[i]);
        if (!values[i]) {
            return false;
        }
    }
    return static_cast<bool>(call_host(host_object(HostObject::kDrawSpriteExt), tuple_of(values)));
}

// Stores that an instance has no draw code; returns `status`, or false when the store failed.
bool store_automatic_draw(PyObject* instance, bool status) noexcept {
    const PendingException set_aside;
    if (set_attribute(instance, py_draw, PyRef::steal(PyInt_FromLong(kAutomaticDraw)))) {
        return status;
    }
    write_stderr("Error setting attribute string to number.\n");
    return false;
}

// Keeps draw code that was just found as the instance's "py_Draw", and runs it, kept or not. False
// with an exception when either failed.
bool keep_and_run(PyObject* instance, const PyRef& code) noexcept {
    const bool kept = set_attribute(instance, py_draw, code);
    if (!kept) {
        write_stderr("Error setting attribute string to code.\n");
    }
    const PendingException store_failure;
    const SelfScope self(instance);
    const bool drawn = run_draw_code(self, code.get());
    if (!drawn) {
        write_stderr("Code eval failed\n");  // before giving `self` back can have its own line
    }
    return kept && drawn;
}

// Finds the draw code of an instance, the code of the first action of its object's draw event, and
// keeps and runs it. An instance that has none is from now on drawn automatically. False when it
// failed: with an exception, or for an object with too few events only with a line on standard
// error. An object without events leaves its AttributeError pending.
bool run_draw_event(PyObject* instance) noexcept {
    const PyRef object = get_attribute(instance, object_index);
    const PyRef data = object ? get_attribute(object.get(), py_objectdata) : PyRef();
    if (!data) {
        return false;
    }
    const PyRef all_actions = get_attribute(data.get(), events);
    if (!all_actions) {
        return store_automatic_draw(instance, true);
    }
    if (PySequence_Size(all_actions.get()) <= kDrawEvent) {  // or has no size
        write_stderr("Events too small!\n");
        return store_automatic_draw(instance, false);
    }
    const PyRef actions = PyRef::steal(PySequence_GetItem(all_actions.get(), kDrawEvent));
    const Py_ssize_t count = actions ? PySequence_Size(actions.get()) : -1;
    if (count < 0) {
        return false;
    }
    if (count == 0) {
        return store_automatic_draw(instance, true);
    }
    const PyRef action = PyRef::steal(PySequence_GetItem(actions.get(), 0));
    const PyRef code = action ? get_attribute(action.get(), python) : PyRef();
    return code && keep_and_run(instance, code);
}

}  // namespace

bool draw_instance(PyObject* instance) noexcept {
    const PyRef draw = get_attribute(instance, py_draw);
    if (!draw) {
        const PendingException missing;
        return run_draw_event(instance);
    }
    if (!PyInt_CheckExact(draw.get())) {
        const SelfScope self(instance);
        return run_draw_code(self, draw.get());
    }
    return PyInt_AS_LONG(draw.get()) == 0 ? run_draw_event(instance) : draw_sprite_of(instance);
}

bool draw_particle_system(PyObject* system, PyObject* offset) noexcept {
    const PyRef automatic = get_attribute(system, py_automatic_draw);
    if (!automatic) {
        return true;
    }
    const int wanted = PyObject_IsTrue(automatic.get());
    if (wanted <= 0) {
        return wanted == 0;
    }
    const PyRef draw = get_attribute(system, py_real_draw);
    return draw && PyRef::steal(PyObject_CallObject(draw.get(), offset));
}

}  // namespace larkspur
