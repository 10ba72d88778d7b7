#include "pixel/kernels/fill_kernels.h"

#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/vectors.h"

namespace larkspur::pixel {
namespace {

// Each of the three low bytes becomes floor(byte * keep / 256) and the top byte 0, then the sum is
// added to the word. A pixel is drawn on itself, so the rows to step through are target and source.
struct FadeAndAdd {
    template <class Vector>
    [[gnu::always_inline]] void draw(typename Vector::Words& drawn, const PixelWord* to,
                                     const PixelWord* /*from*/) const noexcept {
        using Words = typename Vector::Words;
        using Halves = typename Vector::Halves;
        Halves pixels;
        Halves low_share;
        Halves high_share;
        load(pixels, to);
        load(low_share, low_shares.words);
        load(high_share, high_shares.words);
        load(drawn, sums.words);
        const Halves low = (pixels & 0xFF) * low_share >> 8;
        const Halves high = (pixels >> 8) * high_share & 0xFF00;
        drawn += reinterpret_cast<Words>(low | high);
    }

    RepeatedWord low_shares;   // for channels 0 and 2
    RepeatedWord high_shares;  // for channel 1; none for the top byte
    RepeatedWord sums;
};

}  // namespace

LARKSPUR_MULTIVERSION
void fill_translucent_rows(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                           std::size_t height, std::uint8_t keep, std::uint32_t sum) noexcept {
    const FadeAndAdd step = {RepeatedWord(keep * 0x00010001U), RepeatedWord(keep),
                             RepeatedWord(sum)};
    step_through_rows({pixels, pitch_bytes, pixels, pitch_bytes, width, height}, step);
}

LARKSPUR_MULTIVERSION
void fill_each_translucent_row(PixelWord* pixels, std::ptrdiff_t pitch_bytes, std::size_t width,
                               std::size_t height, std::uint8_t keep,
                               const std::uint32_t* sums) noexcept {
    FadeAndAdd step = {RepeatedWord(keep * 0x00010001U), RepeatedWord(keep), RepeatedWord(0)};
    auto* row = reinterpret_cast<unsigned char*>(pixels);
    for (std::size_t y = 0; y < height; ++y) {
        step.sums = RepeatedWord(sums[y]);
        step_through_rows({pixel_words(row), 0, pixel_words(row), 0, width, 1}, step);
        row += pitch_bytes;
    }
}

}  // namespace larkspur::pixel
