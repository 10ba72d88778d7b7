#include "particles/beancounter.h"

namespace larkspur {
namespace {

PyObject* beancounter_int(PyObject* self) noexcept {
    return PyInt_FromLong(reinterpret_cast<BeancounterObject*>(self)->count);
}

PyNumberMethods make_number_methods() noexcept {
    PyNumberMethods methods = {};
    methods.nb_int = beancounter_int;
    return methods;
}

PyNumberMethods number_methods = make_number_methods();

PyTypeObject make_type() noexcept {
    PyTypeObject type = {PyVarObject_HEAD_INIT(nullptr, 0)};
    type.tp_name = "larkspur.Beancounter";
    type.tp_doc = "A counter.";
    type.tp_basicsize = sizeof(BeancounterObject);
    type.tp_flags = Py_TPFLAGS_DEFAULT;
    type.tp_as_number = &number_methods;
    type.tp_new = PyType_GenericNew;
    return type;
}

}  // namespace

PyTypeObject beancounter_type = make_type();

}  // namespace larkspur
