// The module: its functions in their fixed order, and its initialisation.
#include "core/python.h"

#include "core/diagnostics.h"
#include "core/display.h"
#include "core/exports.h"
#include "core/host.h"
#include "core/pygame.h"
#include "core/random_seed.h"
#include "core/type_table.h"
#include "pixel/gradient.h"
#include "pixel/rectangle.h"
#include "pixel/transform.h"
#include "room/room_draw.h"
#include "types/sprite.h"

namespace larkspur {
namespace {

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
    {"flip_vh", flip_vh, METH_VARARGS, "Flip a surface."},
    {"flip_v", flip_v, METH_VARARGS, "Flip a surface."},
    {"flip_h", flip_h, METH_VARARGS, "Flip a surface."},
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

}  // namespace
}  // namespace larkspur

// The interpreter finds this function by name, so it has to be visible.
extern "C" LARKSPUR_EXPORT void initlarkspur() {
    using namespace larkspur;

    PyObject* module = Py_InitModule4("larkspur", module_functions, nullptr, nullptr,
                                      PYTHON_API_VERSION);  // borrowed
    if (module == nullptr) {
        return;
    }
    add_types(module);
    load_pygame_api(pygame_api());
    larkspur_init_rooms();
    const std::uint32_t entropy = read_entropy();
    seed_random(entropy);
    bind_host_modules();
}
