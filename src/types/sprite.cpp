#include "types/sprite.h"

#include <cstddef>

#include "core/display.h"
#include "core/host.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/record.h"
#include "core/static_type.h"
#include "types/comparison.h"
#include "types/resource.h"

namespace larkspur {
namespace {

constexpr Field kSpriteFields[] = {
    int_field("w", offsetof(SpriteObject, w), "unscaled sprite width."),
    int_field("h", offsetof(SpriteObject, h), "unscaled sprite height."),
    int_field("xorigin", offsetof(SpriteObject, xorigin), ""),
    int_field("yorigin", offsetof(SpriteObject, yorigin), ""),
    int_field("leftbound", offsetof(SpriteObject, leftbound), ""),
    int_field("rightbound", offsetof(SpriteObject, rightbound), ""),
    int_field("topbound", offsetof(SpriteObject, topbound), ""),
    int_field("bottombound", offsetof(SpriteObject, bottombound), ""),
    int_field("transparent", offsetof(SpriteObject, transparent), ""),
    int_field("use_video_memory", offsetof(SpriteObject, use_video_memory), ""),
    int_field("load_only_on_use", offsetof(SpriteObject, load_only_on_use), ""),
    int_field("smooth_edges", offsetof(SpriteObject, smooth_edges), ""),
    int_field("preload_texture", offsetof(SpriteObject, preload_texture), ""),
    int_field("bounding_box_type", offsetof(SpriteObject, bounding_box_type), ""),
    int_field("precise_collision_checking", offsetof(SpriteObject, precise_collision_checking), ""),
    strict_object_field("name", offsetof(SpriteObject, name), ""),
    strict_object_field("subimages", offsetof(SpriteObject, subimages), ""),
    strict_object_field("scalecache", offsetof(SpriteObject, scalecache), ""),
};
using SpriteRecord = Record<kSpriteFields>;

// The pickled state: the integers, then these two.
constexpr Py_ssize_t kStateName = SpriteRecord::int_count();
constexpr Py_ssize_t kStateSubimageCount = kStateName + 1;
constexpr Py_ssize_t kStateLength = kStateSubimageCount + 1;

SpriteObject* as_sprite(PyObject* self) noexcept {
    return reinterpret_cast<SpriteObject*>(self);
}

PyObject* sprite_new(PyTypeObject* type, PyObject* /*args*/, PyObject* /*kwargs*/) noexcept {
    PyRef subimages = PyRef::steal(PyList_New(0));
    PyRef scalecache = PyRef::steal(PyDict_New());
    if (!subimages || !scalecache) {
        return nullptr;
    }
    // The sprite comes last: from then on the collector shows it, which sees it complete.
    PyObject* self = type->tp_alloc(type, 0);
    if (self == nullptr) {
        return nullptr;
    }
    SpriteObject* sprite = as_sprite(self);
    sprite->name = new_none();
    sprite->subimages = subimages.release();
    sprite->scalecache = scalecache.release();
    return self;
}

// Unlike a background's or room's, a sprite's text fails when it is not in the list.
PyObject* sprite_str(PyObject* self) noexcept {
    const PyRef index = game_list_index(self, sprite_list.get());
    return index ? PyObject_Str(index.get()) : nullptr;
}

// The images are left to the host, which loads them again. The scale cache goes with the first
// pickling and comes back when a state or a new dictionary is set.
PyObject* sprite_reduce(PyObject* self, PyObject* /*args*/) noexcept {
    SpriteObject* sprite = as_sprite(self);
    Py_CLEAR(sprite->scalecache);
    const PyRef state = PyRef::steal(PyTuple_New(kStateLength));
    if (!state || !SpriteRecord::pack_ints(self, state.get())) {
        return nullptr;
    }
    PyRef name = required_field(sprite->name, "name");
    const PyRef subimages = required_field(sprite->subimages, "subimages");
    if (!name || !subimages) {
        return nullptr;
    }
    if (!PyList_Check(subimages.get())) {
        PyErr_Format(PyExc_TypeError, "GMSprite.__reduce__() needs a list in subimages, got %.200s",
                     Py_TYPE(subimages.get())->tp_name);
        return nullptr;
    }
    PyObject* count = PyInt_FromSsize_t(PyList_GET_SIZE(subimages.get()));
    if (count == nullptr) {
        return nullptr;
    }
    PyTuple_SET_ITEM(state.get(), kStateName, name.release());
    PyTuple_SET_ITEM(state.get(), kStateSubimageCount, count);
    return reduced(sprite_type, state);
}

PyObject* sprite_setstate(PyObject* self, PyObject* args) noexcept {
    PyObject* state = state_argument(args, "GMSprite.__setstate__()");
    SpriteObject* sprite = as_sprite(self);
    std::int32_t subimage_count = 0;
    if (state == nullptr || !SpriteRecord::unpack_ints(self, state) ||
        !restore_name(state, kStateName, sprite->name) ||
        !replace_field(sprite->subimages, PyRef::steal(PyList_New(0))) ||
        !read_state_int(state, kStateSubimageCount, subimage_count) ||
        !replace_field(sprite->scalecache, PyRef::steal(PyDict_New()))) {
        return nullptr;
    }
    // What was released above can have run code that deleted the name.
    const PyRef name = required_field(sprite->name, "name");
    if (!name) {
        return nullptr;
    }
    const PyRef arguments = PyRef::steal(Py_BuildValue("(OOi)", self, name.get(), subimage_count));
    const PyRef loaded = load_images(host_object(HostObject::kSpriteImageLoader), arguments);
    if (!loaded) {
        return nullptr;
    }
    return define_in_game_globals(sprite->name, self);
}

PyMethodDef sprite_methods[] = {
    {"__reduce__", sprite_reduce, METH_VARARGS, nullptr},
    {"__setstate__", sprite_setstate, METH_VARARGS, "Unpickler"},
    {nullptr, nullptr, 0, nullptr},
};

PyTypeObject make_sprite_type() noexcept {
    PyTypeObject type =
        make_type("larkspur.GMSprite", "GM-compatible sprites.", sizeof(SpriteObject));
    type.tp_flags |= Py_TPFLAGS_HAVE_GC;
    type.tp_new = sprite_new;
    type.tp_traverse = SpriteRecord::traverse;
    type.tp_clear = SpriteRecord::clear;
    type.tp_dealloc = SpriteRecord::dealloc;
    type.tp_free = PyObject_GC_Del;
    type.tp_richcompare = richcompare_as_int;
    type.tp_as_number = &resource_number<sprite_list>;
    type.tp_str = sprite_str;
    type.tp_methods = sprite_methods;
    type.tp_members = SpriteRecord::members();
    return type;
}

}  // namespace

PyTypeObject sprite_type = make_sprite_type();

PyObject* sprite_from_surface(PyObject* /*module*/, PyObject* args) noexcept {
    constexpr const char* kFunction = "GMSprite_from_surface()";
    PyObject* surface_object = nullptr;
    PyObject* name = nullptr;
    if (!PyArg_ParseTuple(args, "O|O", &surface_object, &name)) {
        return nullptr;
    }
    const SurfaceUse surface(surface_object, kFunction);
    if (!surface) {
        return nullptr;
    }
    const SDL_Surface* display = require_display(kFunction);
    if (display == nullptr) {
        return nullptr;
    }
    const int width = surface.get()->w;
    const int height = surface.get()->h;
    const PyRef subimage = wrap_surface(pygame_api(), converted(surface.get(), display->format, 0));
    if (!subimage) {
        return nullptr;
    }
    // Made when nothing is left that runs Python code, which could find it and take it apart.
    PyRef self = PyRef::steal(sprite_new(&sprite_type, nullptr, nullptr));
    if (!self) {
        return nullptr;
    }
    SpriteObject* sprite = as_sprite(self.get());
    if (name != nullptr) {
        Py_INCREF(name);
        sprite->name = name;  // the None that stood here is never released
    }
    sprite->w = sprite->rightbound = width;
    sprite->h = sprite->bottombound = height;
    if (PyList_Append(sprite->subimages, subimage.get()) != 0) {
        return nullptr;
    }
    return self.release();
}

}  // namespace larkspur
