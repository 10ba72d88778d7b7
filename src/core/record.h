// Records: native types that are little more than a list of fields. One table per type says what
// its fields are; members, garbage collection and the integers of its pickled state follow from it.
#pragma once

#include "core/python.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

#include "core/host_access.h"
#include "core/py_ref.h"

namespace larkspur {

static_assert(sizeof(int) == sizeof(std::int32_t), "int members are signed 32-bit integers");

/// What a field holds and how Python sees it.
enum class FieldKind : std::uint8_t {
    kInt,            ///< signed 32-bit integer
    kFloat,          ///< single precision
    kLenientObject,  ///< owned reference; reads as None while unset
    kStrictObject,   ///< owned reference; AttributeError while unset
};

/// Whether garbage collection looks through an object field.
enum class Visit : std::uint8_t { kNo, kYes };

/// When a dying record, or one whose cycle is broken, releases an object field: the fields of the
/// first round go in storage order, then those of the second, then those of the third. Destructors
/// that run on the way can look at the record, so they see in which order its fields become unset.
/// kNever keeps the object alive for good.
enum class Release : std::uint8_t { kNever, kFirst, kSecond, kThird };

/// One field of a record.
struct Field {
    const char* name;
    FieldKind kind;
    Py_ssize_t offset;  ///< bytes from the start of the object
    const char* doc;    ///< null for none
    Visit visit;
    Release release;
};

/// The rows of which field tables are made, but for a type's own. Object fields are visited, and
/// released in the first round.
constexpr Field int_field(const char* name, Py_ssize_t offset, const char* doc = nullptr) noexcept {
    return {name, FieldKind::kInt, offset, doc, Visit::kNo, Release::kNever};
}
constexpr Field float_field(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kFloat, offset, nullptr, Visit::kNo, Release::kNever};
}
constexpr Field object_field(const char* name, Py_ssize_t offset) noexcept {
    return {name, FieldKind::kLenientObject, offset, nullptr, Visit::kYes, Release::kFirst};
}
constexpr Field strict_object_field(const char* name, Py_ssize_t offset, const char* doc) noexcept {
    return {name, FieldKind::kStrictObject, offset, doc, Visit::kYes, Release::kFirst};
}

/// Reads item i of a pickled state, a tuple or list, into an integer field. False with an exception
/// and the field as it was when there is none (IndexError) or it does not convert (TypeError).
inline bool read_state_int(PyObject* state, int i, std::int32_t& field) noexcept {
    const std::int32_t value = state_int(state, i);
    if (value == -1 && PyErr_Occurred() != nullptr) {
        return false;
    }
    field = value;
    return true;
}

/// Replaces what an object field owns and then drops the old object, whose destructor can run code
/// that looks at the record. False, with the exception that is pending, when `value` is empty.
inline bool replace_field(PyObject*& field, PyRef value) noexcept {
    if (!value) {
        return false;
    }
    const PyRef old = PyRef::steal(std::exchange(field, value.release()));
    return true;
}

/// What an object field owns; empty with AttributeError when it is unset.
inline PyRef required_field(PyObject* field, const char* name) noexcept {
    if (field == nullptr) {
        PyErr_SetString(PyExc_AttributeError, name);
    }
    return PyRef::borrow(field);
}

/// The argument of __setstate__(), borrowed; null with TypeError when there is none.
///
/// @param function name of the caller with its brackets
inline PyObject* state_argument(PyObject* args, const char* function) noexcept {
    if (PyTuple_GET_SIZE(args) == 0) {
        PyErr_Format(PyExc_TypeError, "%s needs a state as __reduce__() gives it, got no argument",
                     function);
        return nullptr;
    }
    return PyTuple_GET_ITEM(args, 0);
}

/// The result of __reduce__(), a new reference: (type, (), state). Null, with the exception that is
/// pending, when `state` is empty.
inline PyObject* reduced(PyTypeObject& type, const PyRef& state) noexcept {
    return state ? Py_BuildValue("(O()O)", &type, state.get()) : nullptr;
}

/// What follows from a field table, whose rows stand in the order of the type's member table.
template <const auto& fields>
class Record {
 public:
    /// tp_members: the fields in table order, readable and writable.
    static PyMemberDef* members() noexcept {
        static std::array<PyMemberDef, kFieldCount + 1> table = make_members();
        return table.data();
    }

    /// tp_traverse: the visited fields that are set, in storage order.
    static int traverse(PyObject* self, visitproc visit, void* arg) noexcept {
        for (const Py_ssize_t offset : kVisited) {
            Py_VISIT(at<PyObject*>(self, offset));
        }
        return 0;
    }

    /// tp_clear: releases the fields that are set, each unset before its release; always 0.
    static int clear(PyObject* self) noexcept {
        clear_all(self, kFirstReleased);
        clear_all(self, kSecondReleased);
        clear_all(self, kThirdReleased);
        return 0;
    }

    /// tp_dealloc of a garbage-collected record.
    static void dealloc(PyObject* self) noexcept {
        PyObject_GC_UnTrack(self);
        Py_TRASHCAN_SAFE_BEGIN(self);  // a long chain of records must not become a deep recursion
        clear(self);
        Py_TYPE(self)->tp_free(self);
        Py_TRASHCAN_SAFE_END(self);
    }

    /// Stores the integer fields, in storage order, as the first items of a new tuple. False with
    /// an exception.
    static bool pack_ints(PyObject* self, PyObject* new_tuple) noexcept {
        Py_ssize_t i = 0;
        for (const Py_ssize_t offset : kInts) {
            PyObject* value = PyInt_FromLong(at<std::int32_t>(self, offset));
            if (value == nullptr) {
                return false;
            }
            PyTuple_SET_ITEM(new_tuple, i++, value);
        }
        return true;
    }

    /// Reads the integer fields, in storage order, from the first items of a pickled state. False
    /// with an exception at the first that is missing or does not convert; those before it keep
    /// their new values.
    static bool unpack_ints(PyObject* self, PyObject* state) noexcept {
        int i = 0;
        for (const Py_ssize_t offset : kInts) {
            if (!read_state_int(state, i++, at<std::int32_t>(self, offset))) {
                return false;
            }
        }
        return true;
    }

    /// The number of integer fields, and of all fields.
    static constexpr Py_ssize_t int_count() noexcept { return kInts.count; }
    static constexpr Py_ssize_t field_count() noexcept { return kFieldCount; }

 private:
    static constexpr std::size_t kFieldCount = std::size(fields);

    // Offsets of some of the fields, in storage order.
    struct Offsets {
        std::array<Py_ssize_t, kFieldCount> values = {};
        std::size_t count = 0;

        constexpr void insert(Py_ssize_t offset) noexcept {
            std::size_t i = count++;
            for (; i > 0 && values[i - 1] > offset; --i) {
                values[i] = values[i - 1];
            }
            values[i] = offset;
        }
        constexpr const Py_ssize_t* begin() const noexcept { return values.data(); }
        constexpr const Py_ssize_t* end() const noexcept { return values.data() + count; }
    };

    template <typename Wanted>
    static constexpr Offsets select(Wanted wanted) noexcept {
        Offsets offsets;
        for (const Field& field : fields) {
            if (wanted(field)) {
                offsets.insert(field.offset);
            }
        }
        return offsets;
    }

    static constexpr Offsets released_in(Release round) noexcept {
        return select([round](const Field& field) { return field.release == round; });
    }

    static constexpr Offsets kInts =
        select([](const Field& field) { return field.kind == FieldKind::kInt; });
    static constexpr Offsets kVisited =
        select([](const Field& field) { return field.visit == Visit::kYes; });
    static constexpr Offsets kFirstReleased = released_in(Release::kFirst);
    static constexpr Offsets kSecondReleased = released_in(Release::kSecond);
    static constexpr Offsets kThirdReleased = released_in(Release::kThird);

    template <typename T>
    static T& at(PyObject* self, Py_ssize_t offset) noexcept {
        return *reinterpret_cast<T*>(reinterpret_cast<char*>(self) + offset);
    }

    static void clear_all(PyObject* self, const Offsets& offsets) noexcept {
        for (const Py_ssize_t offset : offsets) {
            Py_CLEAR(at<PyObject*>(self, offset));
        }
    }

    static constexpr int member_type(FieldKind kind) noexcept {
        switch (kind) {
            case FieldKind::kInt:
                return T_INT;
            case FieldKind::kFloat:
                return T_FLOAT;
            case FieldKind::kLenientObject:
                return T_OBJECT;
            case FieldKind::kStrictObject:
                return T_OBJECT_EX;
        }
        return T_INT;
    }

    static constexpr std::array<PyMemberDef, kFieldCount + 1> make_members() noexcept {
        std::array<PyMemberDef, kFieldCount + 1> table = {};  // the last row is the end marker
        for (std::size_t i = 0; i < kFieldCount; ++i) {
            const Field& field = fields[i];
            table[i].name = const_cast<char*>(field.name);
            table[i].type = member_type(field.kind);
            table[i].offset = field.offset;
            table[i].doc = const_cast<char*>(field.doc);
        }
        return table;
    }
};

}  // namespace larkspur
