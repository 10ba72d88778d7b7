// Handles: opaque Python objects that own a native record.
#pragma once

#include "core/python.h"

#include <cstddef>
#include <new>

#include "core/py_ref.h"

namespace larkspur {

/// One kind of handle: a CObject with `destroy` as its destructor, which tells this kind from every
/// other CObject. `destroy` gets the record when the handle's last reference goes; it releases what
/// the record owns, and does not free the record, whose memory goes with the handle's: both lie in
/// one block. With a block for each, the birth and death of a particle take a tenth longer.
template <typename Record, void (*destroy)(void*)>
class HandleKind {
 public:
    /// A new handle around a record of zeros; empty with MemoryError.
    static PyRef make() noexcept {
        void* memory = PyObject_Malloc(sizeof(Block));
        if (memory == nullptr) {
            PyErr_NoMemory();
            return PyRef();
        }
        auto* block = new (memory) Block{};
        block->head.cobject = &block->record;
        block->head.destructor = destroy;
        return PyRef::steal(PyObject_INIT(reinterpret_cast<PyObject*>(block), &PyCObject_Type));
    }

    /// The record of an object that may be anything; null, without an exception, when it is no
    /// handle of this kind.
    static Record* find(PyObject* object) noexcept {
        if (!PyCObject_Check(object) ||
            reinterpret_cast<PyCObject*>(object)->destructor != destroy) {
            return nullptr;
        }
        return &of(object);
    }

    /// The record of an object that is known to be a handle of this kind.
    static Record& of(PyObject* handle) noexcept {
        return reinterpret_cast<Block*>(handle)->record;
    }

 private:
    struct Block {
        PyCObject head;  // first: the interpreter frees the block through it
        Record record;
    };
};

}  // namespace larkspur
