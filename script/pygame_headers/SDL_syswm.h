// Found before the header of this name when pygame is built. That of the SDL 1.2 that is a layer
// over SDL 2 declares a type SDL_Window, and a unit of pygame has a variable of that name.
#define SDL_Window SDL_WindowOfTheLayer
#include_next <SDL_syswm.h>
#undef SDL_Window
