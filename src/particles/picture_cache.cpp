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

// The hash that the interpreter gives to a tuple of these ints, without making one.
long PictureKey::hash() const noexcept {
    unsigned long hash = 0x345678UL;
    unsigned long multiplier = 1000003UL;
    for (std::size_t i = 0; i < count_; ++i) {
        const long number_hash = numbers_[i] == -1 ? -2 : numbers_[i];
        hash = (hash ^ static_cast<unsigned long>(number_hash)) * multiplier;
        multiplier += 82520UL + 2 * (count_ - 1 - i);
    }
    hash += 97531UL;
    return hash == static_cast<unsigned long>(-1) ? -2 : static_cast<long>(hash);
}

PictureKey::Match PictureKey::compare(PyObject* key) const noexcept {
    if (!PyTuple_CheckExact(key) || PyTuple_GET_SIZE(key) != static_cast<Py_ssize_t>(count_)) {
        return Match::kUnknown;
    }
    Match match = Match::kEqual;
    for (std::size_t i = 0; i < count_; ++i) {
        PyObject* number = PyTuple_GET_ITEM(key, static_cast<Py_ssize_t>(i));
        if (!PyInt_CheckExact(number)) {
            return Match::kUnknown;
        }
        if (PyInt_AS_LONG(number) != numbers_[i]) {
            match = Match::kDifferent;
        }
    }
    return match;
}

// Walks the dictionary's table along the places where it looks for this hash itself. All entries up
// to an equal one, or to the first free place, are told apart here, so the dictionary would come to
// the same end; where anything else turns up, it is left to the dictionary. Making a tuple and
// asking the dictionary each time takes a fifth more instructions, and a quarter more time, for
// drawing 5,000 particles of all kinds, 8 to 17 pixels wide.
bool PictureKey::find_quickly(PyObject* cache, PyObject*& picture) const noexcept {
    const auto* dictionary = reinterpret_cast<const PyDictObject*>(cache);
    const long hash = this->hash();
    const auto mask = static_cast<std::size_t>(dictionary->ma_mask);
    std::size_t place = static_cast<std::size_t>(hash);
    for (std::size_t perturb = place;; perturb >>= 5) {
        const PyDictEntry& entry = dictionary->ma_table[place & mask];
        if (entry.me_key == nullptr) {
            picture = nullptr;
            return true;
        }
        if (entry.me_hash == hash && entry.me_value != nullptr) {  // a removed one has no value
            switch (compare(entry.me_key)) {
                case Match::kEqual:
                    picture = entry.me_value;
                    return true;
                case Match::kUnknown:
                    return false;
                case Match::kDifferent:
                    break;
            }
        }
        place = 5 * place + perturb + 1;
    }
}

PyRef PictureKey::find_in(PyObject* cache) const noexcept {
    PyObject* picture = nullptr;
    if (!find_quickly(cache, picture)) {
        const PyRef key = tuple();
        picture = key ? PyDict_GetItem(cache, key.get()) : nullptr;
    }
    return PyRef::borrow(picture);
}

bool PictureKey::store_in(PyObject* cache, PyObject* picture) const noexcept {
    const PyRef key = tuple();
    return key && PyDict_SetItem(cache, key.get(), picture) == 0;
}

}  // namespace larkspur
