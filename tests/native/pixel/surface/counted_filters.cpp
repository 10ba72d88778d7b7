#include "counted_filters.h"

namespace larkspur::pixel {

int filters_by_gfx = 0;
bool gfx_answers_otherwise = false;

namespace {

int answer(int status, unsigned char* target, unsigned length) {
    ++filters_by_gfx;
    if (gfx_answers_otherwise && length > 0) {
        target[length - 1] ^= 1U;
    }
    return status;
}

}  // namespace
}  // namespace larkspur::pixel

// The linker puts the wrapping ones in place of SDL_gfx's functions, which the real ones then are.
extern "C" int __real_SDL_imageFilterAdd(unsigned char* a, unsigned char* b, unsigned char* target,
                                         unsigned length);
extern "C" int __wrap_SDL_imageFilterAdd(unsigned char* a, unsigned char* b, unsigned char* target,
                                         unsigned length) {
    const int status = __real_SDL_imageFilterAdd(a, b, target, length);
    return larkspur::pixel::answer(status, target, length);
}

extern "C" int __real_SDL_imageFilterSubUint(unsigned char* source, unsigned char* target,
                                             unsigned length, unsigned value);
extern "C" int __wrap_SDL_imageFilterSubUint(unsigned char* source, unsigned char* target,
                                             unsigned length, unsigned value) {
    const int status = __real_SDL_imageFilterSubUint(source, target, length, value);
    return larkspur::pixel::answer(status, target, length);
}
