#include "particles/beancounter.h"

#include "core/static_type.h"

namespace larkspur {
namespace {

PyObject* beancounter_int(PyObject* self) noexcept {
    return PyInt_FromLong(reinterpret_cast<BeancounterObject*>(self)->count);
}

PyNumberMethods beancounter_number = [] {
    PyNumberMethods number = {};
    number.nb_int = beancounter_int;
    return number;
}();

PyTypeObject make_beancounter_type() noexcept {
    PyTypeObject type = make_type("larkspur.Beancounter", "A counter.", sizeof(BeancounterObject));
    type.tp_as_number = &beancounter_number;
    return type;
}

}  // namespace

PyTypeObject beancounter_type = make_beancounter_type();

}  // namespace larkspur
