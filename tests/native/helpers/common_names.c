/* Preloaded, this library offers other variables under names that larkspur exports, to prove that
 * larkspur uses its own. */

struct _object;
struct SDL_Surface;

struct _object* gm6 = 0;
struct SDL_Surface* g_screen = 0;
double g_view_xscale = -1.0;
int this_second = -2;
