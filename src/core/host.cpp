#include "core/host.h"

#include <cstddef>
#include <iterator>

#include "base/console.h"
#include "core/py_ref.h"
#include "larkspur.h"

extern "C" {
PyObject* gm6 = nullptr;
PyObject* gmapi = nullptr;
PyObject* gmapi__dict__ = nullptr;

PyObject* gm6_Room_Compile = nullptr;
PyObject* gm6_Room_Create = nullptr;
PyObject* gm6_Room_InitializeBackgrounds = nullptr;
PyObject* gm6_Room_AddInstance = nullptr;
PyObject* gm6_Room_AddDrawnInstance = nullptr;
PyObject* gm6_Room_ResortDrawnObjects = nullptr;
PyObject* gm6_Room_SetBackgroundIndex = nullptr;
PyObject* gm6_Room_StepAlarms = nullptr;
PyObject* gm6_Room_MoveInstances = nullptr;
PyObject* gm6_Room_HandleCollisions = nullptr;
PyObject* gm6_Room_StepEvents = nullptr;
PyObject* gm6_Room_DrawBackgrounds = nullptr;
PyObject* gm6_Room_RenderBackground = nullptr;
PyObject* gm6_Room_Leave = nullptr;
PyObject* gm6_Room_MouseButtonDown = nullptr;
PyObject* gm6_Room_MouseButtonUp = nullptr;
PyObject* gm6_Room_HandleKeyrelease = nullptr;
PyObject* gm6_Room_HandleKeypress = nullptr;
PyObject* gm6_Room_DrawView = nullptr;
PyObject* gmapi_draw_sprite_ext = nullptr;
PyObject* gmapi_py_ParticleSystem = nullptr;
PyObject* gmapi_py_draw_props = nullptr;
PyObject* gmapi_py_self_stack = nullptr;
PyObject* pygame_draw_rect = nullptr;
PyObject* pygame_Surface = nullptr;
}

namespace larkspur {
namespace {

PyObject* sprite_loader = nullptr;
PyObject* background_loader = nullptr;
PyObject* registry = nullptr;
std::array<PyObject*, 3> instance_types = {};

// One object of the host: where it comes from, and the variable that keeps it.
struct HostObjectRow {
    HostObject which;
    PyObject** module;
    const char* attribute;
    PyObject** variable;
};

// In the order in which they are fetched.
constexpr HostObjectRow kHostObjects[] = {
    {HostObject::kSpriteImageLoader, &gm6, "SpriteData_load_images", &sprite_loader},
    {HostObject::kBackgroundImageLoader, &gm6, "BackgroundData_load_images", &background_loader},
    {HostObject::kRoomCompile, &gm6, "Room_Compile", &gm6_Room_Compile},
    {HostObject::kRoomCreate, &gm6, "Room_Create", &gm6_Room_Create},
    {HostObject::kRoomInitializeBackgrounds, &gm6, "Room_InitializeBackgrounds",
     &gm6_Room_InitializeBackgrounds},
    {HostObject::kRoomAddInstance, &gm6, "Room_AddInstance", &gm6_Room_AddInstance},
    {HostObject::kRoomAddDrawnInstance, &gm6, "Room_AddDrawnInstance", &gm6_Room_AddDrawnInstance},
    {HostObject::kRoomResortDrawnObjects, &gm6, "Room_ResortDrawnObjects",
     &gm6_Room_ResortDrawnObjects},
    {HostObject::kRoomSetBackgroundIndex, &gm6, "Room_SetBackgroundIndex",
     &gm6_Room_SetBackgroundIndex},
    {HostObject::kRoomStepAlarms, &gm6, "Room_StepAlarms", &gm6_Room_StepAlarms},
    {HostObject::kRoomMoveInstances, &gm6, "Room_MoveInstances", &gm6_Room_MoveInstances},
    {HostObject::kRoomHandleCollisions, &gm6, "Room_HandleCollisions", &gm6_Room_HandleCollisions},
    {HostObject::kRoomStepEvents, &gm6, "Room_StepEvents", &gm6_Room_StepEvents},
    {HostObject::kRoomDrawBackgrounds, &gm6, "Room_DrawBackgrounds", &gm6_Room_DrawBackgrounds},
    {HostObject::kRoomRenderBackground, &gm6, "Room_RenderBackground", &gm6_Room_RenderBackground},
    {HostObject::kRoomLeave, &gm6, "Room_Leave", &gm6_Room_Leave},
    {HostObject::kRoomMouseButtonDown, &gm6, "Room_MouseButtonDown", &gm6_Room_MouseButtonDown},
    {HostObject::kRoomMouseButtonUp, &gm6, "Room_MouseButtonUp", &gm6_Room_MouseButtonUp},
    {HostObject::kRoomHandleKeyrelease, &gm6, "Room_HandleKeyrelease", &gm6_Room_HandleKeyrelease},
    {HostObject::kRoomHandleKeypress, &gm6, "Room_HandleKeypress", &gm6_Room_HandleKeypress},
    {HostObject::kDrawSpriteExt, &gmapi, "draw_sprite_ext", &gmapi_draw_sprite_ext},
    {HostObject::kParticleSystemType, &gmapi, "py_ParticleSystem", &gmapi_py_ParticleSystem},
    {HostObject::kDrawProperties, &gmapi, "py_draw_props", &gmapi_py_draw_props},
    {HostObject::kSelfStack, &gmapi, "py_self_stack", &gmapi_py_self_stack},
};

constexpr bool rows_stand_in_the_order_of_the_enumeration() noexcept {
    for (std::size_t i = 0; i < std::size(kHostObjects); ++i) {
        if (kHostObjects[i].which != static_cast<HostObject>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(rows_stand_in_the_order_of_the_enumeration());

// An attribute; empty when there is none, or no object to look in. Fetched with no exception
// pending, so that an earlier failure cannot upset the lookup; of several failures the last one
// stays pending.
PyRef fetch(PyObject* object, const char* attribute) noexcept {
    if (object == nullptr) {
        return PyRef();
    }
    const PendingException set_aside;
    return PyRef::steal(PyObject_GetAttrString(object, attribute));
}

PyObject* bind_module(const char* name) noexcept {
    // Looked up here: without memory for the name, PyImport_AddModule() would take the module for
    // missing, and register an empty one in its place.
    const PyRef key = PyRef::steal(PyString_FromString(name));
    if (!key) {
        return nullptr;
    }
    PyObject* module = PyDict_GetItem(PyImport_GetModuleDict(), key.get());  // borrowed
    if (module == nullptr || !PyModule_Check(module)) {
        module = PyImport_AddModule(name);
    }
    Py_XINCREF(module);
    return module;
}

}  // namespace

PyObject* register_instances_dict(PyObject* /*module*/, PyObject* args) noexcept {
    Py_CLEAR(registry);
    for (PyObject*& type : instance_types) {
        Py_CLEAR(type);
    }

    PyObject* objects[4] = {};
    if (PyArg_ParseTuple(args, "OOOO", &objects[0], &objects[1], &objects[2], &objects[3])) {
        // Releasing the old objects can have run code that registered others meanwhile.
        const PyRef older[] = {PyRef::steal(registry), PyRef::steal(instance_types[0]),
                               PyRef::steal(instance_types[1]), PyRef::steal(instance_types[2])};
        for (PyObject* object : objects) {
            Py_INCREF(object);
        }
        registry = objects[0];
        instance_types = {objects[1], objects[2], objects[3]};
    } else {
        PyErr_Clear();  // bad arguments go unreported: the callables are fetched all the same
    }

    // A value stored by an earlier call keeps its reference: running code may still use it.
    for (const HostObjectRow& row : kHostObjects) {
        *row.variable = fetch(*row.module, row.attribute).release();
    }
    const PyRef pygame = fetch(gmapi, "pygame");
    {
        const PyRef draw = fetch(pygame.get(), "draw");
        pygame_draw_rect = fetch(draw.get(), "rect").release();
    }
    pygame_Surface = fetch(pygame.get(), "Surface").release();
    return new_none();
}

PyObject* draw_sprite_ext(PyObject* /*module*/, PyObject* /*args*/) noexcept {
    write_stderr(
        "This does not behave properly on Mac, and does not provide the desired speed boost on "
        "Linux.\n");
    return nullptr;
}

void bind_host_modules() noexcept {
    gm6 = bind_module("gm6");
    gmapi = bind_module("gmapi");
    gmapi__dict__ = fetch(gmapi, "__dict__").release();
    Py_XINCREF(gmapi);  // held for its dictionary too, which a module empties when it goes
}

PyObject* instances_dict() noexcept {
    return registry;
}

const std::array<PyObject*, 3>& direct_instance_types() noexcept {
    return instance_types;
}

PyObject* gm6_module() noexcept {
    return gm6;
}

PyObject* gmapi_module() noexcept {
    return gmapi;
}

PyObject* game_globals() noexcept {
    return gmapi__dict__;
}

PyObject* host_object(HostObject which) noexcept {
    return *kHostObjects[static_cast<std::size_t>(which)].variable;
}

PyObject* draw_rect_function() noexcept {
    return pygame_draw_rect;
}

}  // namespace larkspur
