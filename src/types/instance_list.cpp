#include "types/instance_list.h"

#include <algorithm>
#include <utility>

#include "core/host.h"
#include "core/py_ref.h"
#include "core/record.h"
#include "core/static_type.h"
#include "core/tuple.h"
#include "types/gmvar.h"

namespace larkspur {
namespace {

PyListObject* as_list(PyObject* object) noexcept {
    return reinterpret_cast<PyListObject*>(object);
}

// From values to instances.

// The instance that a value stands for, held for the running call.
struct Conversion {
    PyRef instance;       // empty when there is none
    bool direct = false;  // the value is the instance; otherwise the registry named it
};

void raise_unknown_id(PyObject* id, const char* operation) noexcept {
    const PyRef text = PyRef::steal(PyObject_Str(id));
    if (text) {
        PyErr_Format(PyExc_KeyError,
                     "%s got the id %.200s, which no instance has; pass an instance or the id of "
                     "one in the dictionary given to RegisterInstancesDict()",
                     operation, PyString_AS_STRING(text.get()));
    }
}

// The host's dictionary from id to instance; empty with an exception.
PyRef registry() noexcept {
    PyRef dictionary = PyRef::borrow(instances_dict());
    if (!dictionary) {
        PyErr_SetString(PyExc_RuntimeError,
                        "an InstanceList cannot look up instances yet: call "
                        "RegisterInstancesDict() first");
    } else if (!PyDict_Check(dictionary.get())) {
        PyErr_Format(PyExc_TypeError,
                     "an InstanceList looks up instances in a dictionary, got %.200s; give "
                     "RegisterInstancesDict() a dictionary from id to instance",
                     Py_TYPE(dictionary.get())->tp_name);
        return PyRef();
    }
    return dictionary;
}

// Converts what was passed: an instance of exactly one of the three registered types, its id, or a
// variable holding either. Empty with an exception when it does not convert; when no instance has
// the id, with KeyError or, where `operation` is null, without an exception.
Conversion convert(PyObject* argument, const char* operation) noexcept {
    PyRef value = PyRef::borrow(unwrap(argument));
    const auto& types = direct_instance_types();
    auto* type = reinterpret_cast<PyObject*>(Py_TYPE(value.get()));
    if (std::find(types.begin(), types.end(), type) != types.end()) {
        return {std::move(value), true};
    }
    const PyRef id = PyRef::steal(PyNumber_Int(value.get()));
    if (!id) {
        return {};
    }
    // Held from here on: comparing keys can run code that registers another dictionary.
    const PyRef instances = registry();
    if (!instances) {
        return {};
    }
    PyRef instance = PyRef::borrow(_PyDict_GetItemWithError(instances.get(), id.get()));
    if (!instance && operation != nullptr && PyErr_Occurred() == nullptr) {
        raise_unknown_id(id.get(), operation);
    }
    return {std::move(instance), false};
}

// Ends append() and remove() with the release that the header tells of: an instance that the
// registry named loses a reference that nobody took. One that was passed as itself loses only the
// conversion's, which goes with the conversion.
//
// @param taken number of references that the call has taken on it beside the conversion's
void release_converted(const Conversion& conversion, PyObject* argument,
                       Py_ssize_t taken) noexcept {
    PyObject* instance = conversion.instance.get();
    if (!conversion.direct) {
        const Py_ssize_t callers = instance == argument ? 1 : 0;
        release_unowned(instance, 1 + callers + taken);
    }
}

// Assigning to one index.

bool has_index(PyObject* self, Py_ssize_t i) noexcept {
    return i >= 0 && i < PyList_GET_SIZE(self);
}

int assign_item(PyObject* self, Py_ssize_t i, PyObject* value) noexcept {
    if (value == nullptr) {
        return PyList_Type.tp_as_sequence->sq_ass_item(self, i, nullptr);
    }
    if (!has_index(self, i)) {
        return -1;  // without an exception
    }
    Conversion conversion = convert(value, "item assignment");
    if (!conversion.instance || !has_index(self, i)) {
        return -1;  // the conversion failed, or it shortened the list
    }
    if (conversion.direct) {
        Py_INCREF(conversion.instance.get());  // kept for good beside the one that the list owns
    }
    PyObject*& slot = as_list(self)->ob_item[i];
    const PyRef old = PyRef::steal(std::exchange(slot, conversion.instance.release()));
    return 0;
}

// One of a slice's three numbers as an int, or None. Empty with the interpreter's exception.
PyRef plain_bound(PyObject* bound) noexcept {
    if (bound == Py_None) {
        return PyRef::borrow(bound);
    }
    Py_ssize_t index = 0;
    return _PyEval_SliceIndex(bound, &index) != 0 ? PyRef::steal(PyInt_FromSsize_t(index))
                                                  : PyRef();
}

// Assigns to a slice, or deletes it where `value` is null, as the list does. The list goes by the
// length that it had before it asks bounds and values, whose code may shorten it: here they are
// asked first, in the list's order, and it gets plain ones.
int assign_slice(PyObject* self, const PySliceObject& slice, PyObject* value) noexcept {
    const PyRef step = plain_bound(slice.step);
    const PyRef start = step ? plain_bound(slice.start) : PyRef();
    const PyRef stop = start ? plain_bound(slice.stop) : PyRef();
    const PyRef plain =
        stop ? PyRef::steal(PySlice_New(start.get(), stop.get(), step.get())) : PyRef();
    if (!plain) {
        return -1;
    }
    const bool extended = step.get() != Py_None && PyInt_AS_LONG(step.get()) != 1;
    const PyRef items = value != nullptr
                            ? PyRef::steal(PySequence_Fast(
                                  value, extended ? "must assign iterable to extended slice"
                                                  : "can only assign an iterable"))
                            : PyRef();
    if (value != nullptr && !items) {
        return -1;
    }
    return PyList_Type.tp_as_mapping->mp_ass_subscript(self, plain.get(), items.get());
}

// The interpreter asks this slot first whatever the key is.
int assign_subscript(PyObject* self, PyObject* key, PyObject* value) noexcept {
    if (PySlice_Check(key)) {
        return assign_slice(self, *reinterpret_cast<PySliceObject*>(key), value);
    }
    if (!PyIndex_Check(key)) {
        return PyList_Type.tp_as_mapping->mp_ass_subscript(self, key, value);
    }
    Py_ssize_t i = PyNumber_AsSsize_t(key, PyExc_IndexError);
    if (i == -1 && PyErr_Occurred() != nullptr) {
        return -1;
    }
    if (i < 0) {
        i += PyList_GET_SIZE(self);
    }
    return assign_item(self, i, value);
}

// Methods.

PyObject* append(PyObject* self, PyObject* argument) noexcept {
    const Conversion conversion = convert(argument, nullptr);
    if (!conversion.instance) {
        return nullptr;  // an id that no instance has sets no exception
    }
    const bool appended = PyList_Append(self, conversion.instance.get()) == 0;
    release_converted(conversion, argument, appended ? 1 : 0);
    return appended ? new_none() : nullptr;
}

// Takes the first item that is this very object out of the list, whose capacity stays. False when
// there is none.
bool remove_first(PyListObject& list, PyObject* instance) noexcept {
    PyObject** end = list.ob_item + Py_SIZE(&list);
    PyObject** found = std::find(list.ob_item, end, instance);
    if (found == end) {
        return false;
    }
    std::move(found + 1, end, found);
    end[-1] = nullptr;
    --Py_SIZE(&list);
    Py_DECREF(instance);  // the list's; the caller has another
    return true;
}

PyObject* remove(PyObject* self, PyObject* argument) noexcept {
    const Conversion conversion = convert(argument, "remove()");
    if (!conversion.instance) {
        return nullptr;
    }
    const bool removed = remove_first(*as_list(self), conversion.instance.get());
    release_converted(conversion, argument, 0);
    return removed ? new_none() : nullptr;  // an instance that is not there sets no exception
}

PyObject* insert(PyObject* self, PyObject* args) noexcept {
    int i = 0;
    PyObject* argument = nullptr;
    if (!PyArg_ParseTuple(args, "iO", &i, &argument)) {
        return nullptr;
    }
    const Conversion conversion = convert(argument, "insert()");
    PyObject* instance = conversion.instance.get();
    if (instance == nullptr) {
        return nullptr;
    }
    const bool inserted = PyList_Insert(self, i, instance) == 0;
    // Here the argument loses a reference, whatever instance it stands for. Where it is the
    // instance itself, that is the conversion's reference, which goes with the conversion.
    if (!conversion.direct || instance != argument) {
        const Py_ssize_t held =
            instance == argument ? 2 : 1;  // by the arguments and the conversion
        release_unowned(argument, held);
        if (conversion.direct) {
            Py_INCREF(instance);  // an instance out of a variable keeps the conversion's reference
        }
    }
    return inserted ? new_none() : nullptr;
}

// Pickling.

PyObject* reduce(PyObject* self, PyObject* /*args*/) noexcept {
    return reduced(instance_list_type, tuple_of(self));
}

PyObject* set_state(PyObject* self, PyObject* args) noexcept {
    if (PyTuple_GET_SIZE(args) == 0) {
        PyErr_SetString(
            PyExc_TypeError,
            "__setstate__() needs a state, got no arguments; pass a tuple of instances");
        return nullptr;
    }
    PyObject* state = PyTuple_GET_ITEM(args, 0);
    if (PySequence_SetSlice(self, 0, PyList_GET_SIZE(self), state) < 0) {
        PyErr_Clear();  // a state that cannot be assigned leaves the list as it is
    }
    return new_none();
}

PyMethodDef instance_list_methods[] = {
    {"append", append, METH_O, "Add an instance"},
    {"remove", remove, METH_O, "Remove an instance."},
    {"insert", insert, METH_VARARGS, "Insert an instance into the list."},
    {"__reduce__", reduce, METH_VARARGS, nullptr},
    {"__setstate__", set_state, METH_VARARGS, nullptr},
    {nullptr, nullptr, 0, nullptr},
};

PySequenceMethods instance_list_sequence = [] {
    PySequenceMethods sequence = {};
    sequence.sq_ass_item = assign_item;
    return sequence;
}();

PyMappingMethods instance_list_mapping = [] {
    PyMappingMethods mapping = {};
    mapping.mp_ass_subscript = assign_subscript;
    return mapping;
}();

PyTypeObject make_instance_list_type() noexcept {
    PyTypeObject type = make_type("larkspur.InstanceList", "InstanceList", sizeof(PyListObject));
    type.tp_new = nullptr;  // inherited, as garbage collection and all slots that are not set
    type.tp_as_sequence = &instance_list_sequence;
    type.tp_as_mapping = &instance_list_mapping;
    type.tp_methods = instance_list_methods;
    return type;
}

}  // namespace

PyTypeObject instance_list_type = make_instance_list_type();

void prepare_instance_list_type() noexcept {
    Py_INCREF(&PyList_Type);
    instance_list_type.tp_base = &PyList_Type;
}

}  // namespace larkspur
