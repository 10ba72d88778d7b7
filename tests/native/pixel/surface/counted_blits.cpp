#include "counted_blits.h"

#include <SDL.h>

namespace larkspur::pixel {

int blits_by_sdl = 0;
AnswerOfSdl answer_of_sdl = AnswerOfSdl::kTrue;

}  // namespace larkspur::pixel

// The linker puts the second in place of SDL's function, which the first then is. Visible, as
// SDL_gfx calls it too.
extern "C" int __real_SDL_UpperBlit(SDL_Surface* source, SDL_Rect* from, SDL_Surface* target,
                                    SDL_Rect* to);
extern "C" [[gnu::visibility("default")]] int __wrap_SDL_UpperBlit(SDL_Surface* source,
                                                                   SDL_Rect* from,
                                                                   SDL_Surface* target,
                                                                   SDL_Rect* to) {
    using namespace larkspur::pixel;
    ++blits_by_sdl;
    if (answer_of_sdl == AnswerOfSdl::kRefusal) {
        return -1;
    }
    const int status = __real_SDL_UpperBlit(source, from, target, to);
    constexpr int kUsualAlpha = 100;
    if (answer_of_sdl == AnswerOfSdl::kOtherPixel ||
        (answer_of_sdl == AnswerOfSdl::kOtherPixelOfOtherAlpha &&
         (source->flags & SDL_SRCALPHA) != 0 && source->format->alpha != kUsualAlpha)) {
        *static_cast<unsigned char*>(target->pixels) ^= 1U;
    } else if (answer_of_sdl == AnswerOfSdl::kOtherRectangle) {
        to->w ^= 1U;
    }
    return status;
}
