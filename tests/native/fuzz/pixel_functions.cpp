#include "pixel_level.h"

extern "C" [[gnu::visibility("default")]] const larkspur::pixel::PixelFunctions*
larkspur_pixel_functions() {
    static const larkspur::pixel::PixelFunctions functions = {
#define LARKSPUR_FUNCTION(name) larkspur::pixel::name,
        LARKSPUR_TRIED_FUNCTIONS(LARKSPUR_FUNCTION)
#undef LARKSPUR_FUNCTION
    };
    return &functions;
}
