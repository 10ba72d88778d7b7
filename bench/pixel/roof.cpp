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

}  // namespace

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
