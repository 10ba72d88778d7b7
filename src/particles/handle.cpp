#include "particles/handle.h"

namespace larkspur {
namespace {

PyTypeObject* particle_type_handle_type = nullptr;

}  // namespace

PyTypeObject* handle_type() noexcept {
    return particle_type_handle_type;
}

void learn_handle_type(PyObject* handle) noexcept {
    PyTypeObject* type = Py_TYPE(handle);
    Py_INCREF(type);  // for the life of the process
    particle_type_handle_type = type;
}

}  // namespace larkspur
