// The host engine: its two modules, its callables, and the registry of instances.
#pragma once

#include "core/python.h"

#include <array>
#include <cstdint>

namespace larkspur {

/// Module function RegisterInstancesDict(instances, type1, type2, type3): keeps the registry and
/// the three instance types, and fetches the host's callables. Returns None: bad arguments go
/// unreported and leave no registry and no types, and a lookup that fails leaves an empty global
/// and its exception pending.
PyObject* register_instances_dict(PyObject* module, PyObject* args) noexcept;

/// Module function draw_sprite_ext(): writes its line on standard error and fails; the host draws
/// sprites itself.
PyObject* draw_sprite_ext(PyObject* module, PyObject* args) noexcept;

/// Binds gm6, gmapi and gmapi.__dict__; part of the module's initialisation. The modules are taken
/// as registered, or made empty; they are not imported. What can't be made stays null and leaves
/// its exception.
void bind_host_modules() noexcept;

/// The registry from instance id (int) to instance, and the three types whose instances are stored
/// as they are. Borrowed; null before RegisterInstancesDict().
PyObject* instances_dict() noexcept;
const std::array<PyObject*, 3>& direct_instance_types() noexcept;

// What follows lives in exported variables wherever there is one. Native callers may store other
// objects there, so each call reads the variable anew. Results are borrowed.

/// The modules gm6 and gmapi, and gmapi.__dict__, in which game code runs; null until larkspur is
/// imported.
PyObject* gm6_module() noexcept;
PyObject* gmapi_module() noexcept;
PyObject* game_globals() noexcept;

/// What RegisterInstancesDict() fetches from gm6 and gmapi, in this order.
enum class HostObject : std::uint8_t {
    kSpriteImageLoader,
    kBackgroundImageLoader,
    kRoomCompile,
    kRoomCreate,
    kRoomInitializeBackgrounds,
    kRoomAddInstance,
    kRoomAddDrawnInstance,
    kRoomResortDrawnObjects,
    kRoomSetBackgroundIndex,
    kRoomStepAlarms,
    kRoomMoveInstances,
    kRoomHandleCollisions,
    kRoomStepEvents,
    kRoomDrawBackgrounds,
    kRoomRenderBackground,
    kRoomLeave,
    kRoomMouseButtonDown,
    kRoomMouseButtonUp,
    kRoomHandleKeyrelease,
    kRoomHandleKeypress,
    kDrawSpriteExt,
    kParticleSystemType,
    kDrawProperties,  ///< holds the current alpha and colour
    kSelfStack,       ///< list of the saved `self` objects
};

/// One of these objects; null before RegisterInstancesDict(), and when its lookup failed.
PyObject* host_object(HostObject which) noexcept;

/// pygame.draw.rect; null as host_object().
PyObject* draw_rect_function() noexcept;

}  // namespace larkspur
