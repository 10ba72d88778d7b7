#include "core/type_table.h"

#include "core/diagnostics.h"
#include "particles/beancounter.h"
#include "types/background.h"
#include "types/float_list.h"
#include "types/gmvar.h"
#include "types/instance_list.h"
#include "types/room.h"
#include "types/sprite.h"
#include "types/tile.h"

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
    {&sprite_type, "GMSprite", nullptr, "GMSprite_Type not ready.\n"},
    {&background_type, "BackgroundData", nullptr, "BackgroundData_Type not ready.\n"},
    {&tile_type, "RoomTileData", nullptr, "RoomTileData_Type not ready.\n"},
    {&instance_list_type, "InstanceList", prepare_instance_list_type, nullptr},
    {&room_type, "GMRoom", nullptr, "GMRoom_Type not ready.\n"},
    {&float_list_type, "Floatlist8", nullptr, "Floatlist8_Type not ready.\n"},
    {&beancounter_type, "Beancounter", nullptr, "Beancounter_Type not ready.\n"},
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
            PyErr_Clear();  // the module is of use without its later types, so importing goes on
            return;
        }
        Py_INCREF(entry.type);  // the module takes over this reference; the type keeps its own
        PyModule_AddObject(module, entry.name, reinterpret_cast<PyObject*>(entry.type));
    }
}

}  // namespace larkspur
