#include "particles/picture_cache.h"

namespace larkspur {

PyRef PictureKey::tuple() const noexcept {
    PyRef tuple = PyRef::steal(PyTuple_New(static_cast<Py_ssize_t>(count_)));
    if (!tuple) {
        return tuple;
    }
    for (std::size_t i = 0; i < count_; ++i) {
        PyObject* number = PyInt_FromLong(numbers_[i]);
        if (number == nullptr) {
            return PyRef();
        }
        PyTuple_SET_ITEM(tuple.get(), static_cast<Py_ssize_t>(i), number);
    }
    return tuple;
}

PyRef PictureKey::find_in(PyObject* cache) const noexcept {
    const PyRef key = tuple();
    return key ? PyRef::borrow(PyDict_GetItem(cache, key.get())) : PyRef();
}

bool PictureKey::store_in(PyObject* cache, PyObject* picture) const noexcept {
    const PyRef key = tuple();
    return key && PyDict_SetItem(cache, key.get(), picture) == 0;
}

}  // namespace larkspur
