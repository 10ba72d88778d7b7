#include "types/background.h"

#include <cstddef>

#include "core/host.h"
#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"
#include "types/comparison.h"
#include "types/resource.h"

namespace larkspur {
namespace {

constexpr Field kBackgroundFields[] = {
    strict_object_field("name", offsetof(BackgroundObject, name), ""),
    strict_object_field("surf", offsetof(BackgroundObject, surf), ""),
    strict_object_field("scaled_data_cache", offsetof(BackgroundObject, scaled_data_cache), ""),
    int_field("w", offsetof(BackgroundObject, w), ""),
    int_field("h", offsetof(BackgroundObject, h), ""),
    int_field("transparent", offsetof(BackgroundObject, transparent), ""),
};
using BackgroundRecord = Record<kBackgroundFields>;

BackgroundObject* as_background(PyObject* self) noexcept {
    return reinterpret_cast<BackgroundObject*>(self);
}

PyObject* background_new(PyTypeObject* type, PyObject* /*args*/, PyObject* /*kwargs*/) noexcept {
    PyRef scaled_data_cache = PyRef::steal(PyDict_New());
    if (!scaled_data_cache) {
        return nullptr;
    }
    // The background comes last: from then on the collector shows it, which sees it complete.
    PyObject* self = type->tp_alloc(type, 0);
    if (self == nullptr) {
        return nullptr;
    }
    BackgroundObject* background = as_background(self);
    background->name = new_none();
    background->surf = new_none();
    background->scaled_data_cache = scaled_data_cache.release();
    return self;
}

// The image is left to the host, which loads it again, and with it the size.
PyObject* background_reduce(PyObject* self, PyObject* /*args*/) noexcept {
    const BackgroundObject* background = as_background(self);
    const PyRef name = required_field(background->name, "name");
    if (!name) {
        return nullptr;
    }
    return reduced(background_type,
                   PyRef::steal(Py_BuildValue("(Oi)", name.get(), background->transparent)));
}

PyObject* background_setstate(PyObject* self, PyObject* args) noexcept {
    PyObject* state = state_argument(args, "BackgroundData.__setstate__()");
    BackgroundObject* background = as_background(self);
    if (state == nullptr || !read_state_int(state, 1, background->transparent) ||
        !restore_name(state, 0, background->name) ||
        !replace_field(background->scaled_data_cache, PyRef::steal(PyDict_New())) ||
        !replace_field(background->surf, PyRef::borrow(Py_None))) {
        return nullptr;
    }
    PyRef arguments = PyRef::steal(Py_BuildValue("(O)", self));
    const PyRef loaded = load_images(host_object(HostObject::kBackgroundImageLoader), arguments);
    if (!loaded) {
        // Never released: a background whose image could not be loaded stays alive for good.
        static_cast<void>(arguments.release());
        return nullptr;
    }
    return define_in_game_globals(background->name, self);
}

PyMethodDef background_methods[] = {
    {"__reduce__", background_reduce, METH_VARARGS, nullptr},
    {"__setstate__", background_setstate, METH_VARARGS, "Unpickler"},
    {nullptr, nullptr, 0, nullptr},
};

PyTypeObject make_background_type() noexcept {
    PyTypeObject type = make_type("larkspur.BackgroundData", "GM-compatible backgrounds.",
                                  sizeof(BackgroundObject));
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_new = background_new;
    type.tp_traverse = BackgroundRecord::traverse;
    type.tp_clear = BackgroundRecord::clear;
    type.tp_dealloc = BackgroundRecord::dealloc;
    type.tp_free = PyObject_GC_Del;
    type.tp_compare = compare_as_int;
    type.tp_as_number = &resource_number<background_list>;
    type.tp_str = resource_str<background_list>;
    type.tp_methods = background_methods;
    type.tp_members = BackgroundRecord::members();
    return type;
}

}  // namespace

PyTypeObject background_type = make_background_type();

}  // namespace larkspur
