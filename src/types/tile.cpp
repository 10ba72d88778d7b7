#include "types/tile.h"

#include <cstddef>

#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"
#include "types/comparison.h"

namespace larkspur {
namespace {

constexpr Field kTileFields[] = {
    int_field("x", offsetof(TileObject, x), ""),
    int_field("y", offsetof(TileObject, y), ""),
    int_field("id", offsetof(TileObject, id), ""),
    int_field("background_idx", offsetof(TileObject, background_idx), ""),
    int_field("tilex", offsetof(TileObject, tilex), ""),
    int_field("tiley", offsetof(TileObject, tiley), ""),
    int_field("w", offsetof(TileObject, w), ""),
    int_field("h", offsetof(TileObject, h), ""),
    int_field("layer_depth", offsetof(TileObject, layer_depth), ""),
    int_field("locked", offsetof(TileObject, locked), ""),
};
using TileRecord = Record<kTileFields>;

std::int32_t tile_id(PyObject* self) noexcept {
    return reinterpret_cast<TileObject*>(self)->id;
}

PyObject* tile_int(PyObject* self) noexcept {
    return PyInt_FromLong(tile_id(self));
}

PyObject* tile_float(PyObject* self) noexcept {
    return PyFloat_FromDouble(tile_id(self));
}

PyObject* tile_str(PyObject* self) noexcept {
    return PyString_FromFormat("%d", tile_id(self));
}

PyObject* tile_reduce(PyObject* self, PyObject* /*args*/) noexcept {
    const PyRef state = PyRef::steal(PyTuple_New(TileRecord::int_count()));
    if (!state || !TileRecord::pack_ints(self, state.get())) {
        return nullptr;
    }
    return reduced(tile_type, state);
}

PyObject* tile_setstate(PyObject* self, PyObject* args) noexcept {
    PyObject* state = state_argument(args, "RoomTileData.__setstate__()");
    if (state == nullptr || !TileRecord::unpack_ints(self, state)) {
        return nullptr;
    }
    return new_none();
}

PyMethodDef tile_methods[] = {
    {"__reduce__", tile_reduce, METH_VARARGS, nullptr},
    {"__setstate__", tile_setstate, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PyNumberMethods tile_number = [] {
    PyNumberMethods number = {};
    number.nb_int = tile_int;
    number.nb_float = tile_float;
    return number;
}();

PyTypeObject make_tile_type() noexcept {
    PyTypeObject type =
        make_type("larkspur.RoomTileData", "GM-compatible room tile entries.", sizeof(TileObject));
    type.tp_compare = compare_as_int;
    type.tp_as_number = &tile_number;
    type.tp_str = tile_str;
    type.tp_methods = tile_methods;
    type.tp_members = TileRecord::members();
    return type;
}

}  // namespace

PyTypeObject tile_type = make_tile_type();

}  // namespace larkspur
