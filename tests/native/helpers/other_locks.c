/* Preloaded: SDL's locks as a driver that refuses them, or as a layer that finds the pixels where
 * they were when the surface was made. */
#ifndef _GNU_SOURCE
#define _GNU_SOURCE
#endif
#include <SDL.h>
#include <dlfcn.h>

/* Written by the test: whether locks are refused, where a lock puts a surface's pixels, null for
 * nowhere else, and the flags of the surfaces for which this holds. */
int refuses_locks = 0;
void* remembered_pixels = NULL;
unsigned other_flags = 0;

int SDL_LockSurface(SDL_Surface* surface) {
    int (*lock)(SDL_Surface*) = (int (*)(SDL_Surface*))dlsym(RTLD_NEXT, "SDL_LockSurface");
    const int is_other = (surface->flags & other_flags) == other_flags;
    if (is_other && refuses_locks) {
        return -1;
    }
    const int status = lock(surface);
    if (is_other && remembered_pixels != NULL) {
        surface->pixels = remembered_pixels;
    }
    return status;
}
