#include <cstring>

#include "canvas.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::bench {
namespace {

LARKSPUR_MULTIVERSION
void xor_words(pixel::PixelWord* words, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        words[i] ^= 0x00A5A5A5U;
    }
}

LARKSPUR_MULTIVERSION
void xor_words_onto(pixel::PixelWord* __restrict to, const pixel::PixelWord* __restrict from,
                    std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        to[i] ^= from[i];
    }
}

}  // namespace

void xor_onto_target(Canvas& canvas) {
    xor_words_onto(canvas.row(0), pixel::pixel_words(canvas.source()), canvas.pixels());
}

void xor_in_place(Canvas& canvas) {
    xor_words(canvas.row(0), canvas.pixels());
}

void copy_by_memcpy(Canvas& canvas) {
    std::memcpy(canvas.target(), canvas.source(), canvas.bytes());
}

void set_by_memset(Canvas& canvas) {
    std::memset(canvas.target(), 0x5A, canvas.bytes());
}

}  // namespace larkspur::bench
