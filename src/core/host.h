// The host engine: its two modules, its callables, and the registry of instances.
#pragma once

#include "core/python.h"

#include <array>

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
/// as registered, or made empty; they are not imported.
void bind_host_modules() noexcept;

/// The registry from instance id (int) to instance, and the three types whose instances are stored
/// as they are. Borrowed; null before RegisterInstancesDict().
PyObject* instances_dict() noexcept;
const std::array<PyObject*, 3>& direct_instance_types() noexcept;

/// gm6.SpriteData_load_images and gm6.BackgroundData_load_images, borrowed; null before
/// RegisterInstancesDict().
PyObject* sprite_image_loader() noexcept;
PyObject* background_image_loader() noexcept;

}  // namespace larkspur
