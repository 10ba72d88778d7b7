#include "room/room_pygame.h"

#include <utility>

#include "core/py_ref.h"
#include "core/pygame.h"
#include "larkspur.h"

namespace larkspur {
namespace {

// Room drawing keeps a copy of its own, which a native caller can have read again at any time.
PygameApi room_api = {};

}  // namespace

void load_room_pygame_api() noexcept {
    const PendingException set_aside;
    if (!load_pygame_api(room_api)) {
        PyErr_Clear();  // set_SDL_screen() tells it where someone can catch it
    }
}

PyRef wrap_room_surface(SurfacePtr surface) noexcept {
    return wrap_surface(room_api, std::move(surface));
}

}  // namespace larkspur

extern "C" void larkspur_init_rooms(void) {
    larkspur::load_room_pygame_api();
}
