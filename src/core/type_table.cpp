#include "core/type_table.h"

#include "core/diagnostics.h"
#include "types/gmvar.h"

namespace larkspur {
namespace {

// One type of the module.
struct TypeEntry {
    PyTypeObject* type;
    const char* name;             // its attribute on the module
    void (*prepare)();            // fills in what only run time knows; null when there is nothing
    const char* failure_message;  // null: a failure is silent
};

// In the order in which the types are readied and added.
const TypeEntry kTypes[] = {
    {&gmvar_type, "GMVar", prepare_gmvar_type, nullptr},
};

}  // namespace

void add_types(PyObject* module) noexcept {
    for (const TypeEntry& entry : kTypes) {
        if (entry.prepare != nullptr) {
            entry.prepare();
        }
        if (PyType_Ready(entry.type) < 0) {
            if (entry.failure_message != nullptr) {
                write_stderr("%s", entry.failure_message);
            }
            return;
        }
        Py_INCREF(entry.type);  // the module takes over this reference; the type keeps its own
        PyModule_AddObject(module, entry.name, reinterpret_cast<PyObject*>(entry.type));
    }
}

}  // namespace larkspur
