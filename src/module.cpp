// The module's table of contents: its functions and types in their fixed order, and its
// initialisation. The one unit that knows everyone.
#include "core/python.h"

#include "base/console.h"
#include "core/diagnostics.h"
#include "core/display.h"
#include "core/host.h"
#include "core/py_ref.h"
#include "core/pygame.h"
#include "core/random_seed.h"
#include "larkspur.h"
#include "particles/beancounter.h"
#include "particles/particle.h"
#include "particles/particle_render.h"
#include "particles/particle_type.h"
#include "pixel/gradient.h"
#include "pixel/rectangle.h"
#include "pixel/transform.h"
#include "room/room_draw.h"
#include "room/room_pygame.h"
#include "types/background.h"
#include "types/float_list.h"
#include "types/gmvar.h"
#include "types/instance_list.h"
#include "types/room.h"
#include "types/sprite.h"
#include "types/tile.h"

namespace larkspur {
namespace {

constexpr const char* kModuleName = "larkspur";

// The order is part of the module's interface, and so is every text. A row stands here from the
// moment its function exists.
PyMethodDef module_functions[] = {
    {"breakable", breakable, METH_VARARGS, "A hook for GDB."},
    {"fast_draw_gradient_v", pixel::fast_draw_gradient_v, METH_VARARGS,
     "Draw a vertical gradient, with alpha blending."},
    {"fast_draw_gradients_vc", pixel::fast_draw_gradients_vc, METH_VARARGS,
     "Draw a vertical translucent gradient, then fill translucently."},
    {"fast_draw_gradients_vv", pixel::fast_draw_gradients_vv, METH_VARARGS,
     "Draw two vertical translucent gradients."},
    {"fast_draw_gradients_vcv", pixel::fast_draw_gradients_vcv, METH_VARARGS,
     "Draw a vertical gradient, a constant, and another vgrad, each alphablent."},
    {"fast_draw_gradients_vcvvc", pixel::fast_draw_gradients_vcvvc, METH_VARARGS,
     "More complex gradients."},
    {"fast_draw_rectangle_color", pixel::fast_draw_rectangle_color, METH_VARARGS,
     "C core for draw_rectangle_color."},
    {"draw_rectangle", pixel::draw_rectangle, METH_VARARGS, "Draw a rectangle."},
    {"fill_translucent", pixel::fill_translucent, METH_VARARGS,
     "Draw a rectangle, possibly with alpha blending."},
    {"init_subsystems", init_subsystems, METH_VARARGS, "Initialize the subsystem variables."},
    {"CParticle_new", cparticle_new, METH_VARARGS, "Create a new particle."},
    {"CParticle_new_size_color", cparticle_new_size_color, METH_VARARGS,
     "Create a new particle of a given size and color."},
    {"CParticle_step", cparticle_step, METH_VARARGS, "Per-particle step function."},
    {"CParticle_dec_ttl", cparticle_dec_ttl, METH_VARARGS,
     "Decrement the particle TTL and return the new value."},
    {"CParticle_dec_ttl_and_render", cparticle_dec_ttl_and_render, METH_VARARGS,
     "Decrement the particle TTL and render if the particle still should exist."},
    {"CParticle_attach_beancounter", cparticle_attach_beancounter, METH_VARARGS,
     "Attach a beancounter to the particle.  The beancounter will be increased.  Destroying the "
     "particle will decrease it.  If there is a preexisting beancounter, it will be decreased."},
    {"CParticle_type_cache_clear", cparticle_type_cache_clear, METH_VARARGS,
     "Remove cache of prerendered particle surfaces for this type."},
    {"flip_vh", flip_vh, METH_VARARGS, "Flip a surface."},
    {"flip_v", flip_v, METH_VARARGS, "Flip a surface."},
    {"flip_h", flip_h, METH_VARARGS, "Flip a surface."},
    {"part_type_alpha2", part_type_alpha2, METH_VARARGS,
     "Set start and end alphas, linear interpolation."},
    {"part_type_alpha3", part_type_alpha3, METH_VARARGS, "Set start/half/end alphas."},
    {"part_type_blend", part_type_blend, METH_VARARGS, "Set particle blend mode flag."},
    {"part_type_color3", part_type_color3, METH_VARARGS,
     "Lowlevel color3 implementation.  Expects ints."},
    {"part_type_create", part_type_create, METH_VARARGS, "C implementation of part_type_create."},
    {"part_type_direction", part_type_direction, METH_VARARGS,
     "Set the direction min/max/incr/wiggle."},
    {"part_type_gravity", part_type_gravity, METH_VARARGS, "Set the gravity strength and angle."},
    {"part_type_life", part_type_life, METH_VARARGS,
     "Set the particle minimum and maximum lifespan in frames."},
    {"part_type_orientation", part_type_orientation, METH_VARARGS,
     "Set the orientation min/max/incr/wiggle/relativity for this particle type."},
    {"part_type_scale", part_type_scale, METH_VARARGS,
     "Set the x and y scale factors for the particle type."},
    {"part_type_shape", part_type_shape, METH_VARARGS, "Set the shape of a particle type."},
    {"part_type_size", part_type_size, METH_VARARGS, "Set min/max/incr/wiggle for particle size."},
    {"part_type_speed", part_type_speed, METH_VARARGS,
     "Set min/max/incr/wiggle por particle speed."},
    {"part_type_sprite", part_type_sprite, METH_VARARGS,
     "Set particle type to use a sprite/animated/stretched/random"},
    {"rotoscale", rotoscale, METH_VARARGS,
     "Rotate and scale a Pygame surface; return a new Pygame surface."},
    {"scale", scale, METH_VARARGS, "Scale a Pygame surface."},
    {"set_SDL_screen", set_sdl_screen, METH_VARARGS, "Store the SDL screen in a C variable."},
    {"RegisterInstancesDict", register_instances_dict, METH_VARARGS,
     "Store data for InstanceList."},
    {"GMSprite_from_surface", sprite_from_surface, METH_VARARGS,
     "Create a new GMSprite from a Pygame surface."},
    {"Room_Draw", room_draw, METH_VARARGS, "Draw the current room."},
    {"draw_sprite_ext", draw_sprite_ext, METH_VARARGS, "Draw a sprite."},
    {nullptr, nullptr, 0, nullptr},
};

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

// Readies the types in order and adds each to the module. The first that cannot be readied gets its
// line on standard error, and the later ones are neither readied nor added. False with MemoryError
// when one cannot be added.
bool add_types(PyObject* module) noexcept {
    for (const TypeEntry& entry : kTypes) {
        if (entry.prepare != nullptr) {
            entry.prepare();
        }
        if (PyType_Ready(entry.type) < 0) {
            if (entry.failure_message != nullptr) {
                write_stderr("%s", entry.failure_message);
            }
            PyErr_Clear();  // the module is of use without its later types, so importing goes on
            return true;
        }
        Py_INCREF(entry.type);  // the module takes over this reference; the type keeps its own
        if (PyModule_AddObject(module, entry.name, reinterpret_cast<PyObject*>(entry.type)) < 0) {
            Py_DECREF(entry.type);
            return false;
        }
    }
    return true;
}

// The interpreter would keep a module whose initialisation failed, and hand it out at the next
// import. Leaves the exception that says why.
void forget_module(const PyRef& name) noexcept {
    const PendingException set_aside;
    if (PyDict_DelItem(PyImport_GetModuleDict(), name.get()) < 0) {
        PyErr_Clear();  // someone else has taken it out
    }
}

// Makes the module. False with an exception.
bool make_module() noexcept {
    PyObject* module = Py_InitModule4(kModuleName, module_functions, nullptr, nullptr,
                                      PYTHON_API_VERSION);  // borrowed
    if (module == nullptr || !add_types(module) ||
        PyModule_AddStringConstant(module, "__version__", LARKSPUR_VERSION) < 0 ||
        !load_pygame_api(pygame_api())) {
        return false;
    }
    load_room_pygame_api();
    seed_random(read_entropy());
    bind_host_modules();
    return PyErr_Occurred() == nullptr;
}

}  // namespace
}  // namespace larkspur

// The interpreter finds this function by name, so it has to be visible.
extern "C" LARKSPUR_EXPORT void initlarkspur() {
    using namespace larkspur;
    // Made first: without memory the module could not be forgotten by a name made then.
    const PyRef name = PyRef::steal(PyString_FromString(kModuleName));
    if (name && !make_module()) {
        forget_module(name);
    }
}
