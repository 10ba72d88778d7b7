#include "pixel/kernels/over_kernels.h"

#include "pixel/kernels/colour.h"
#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/vectors.h"

namespace larkspur::pixel {
namespace {

// Each byte of `under` becomes floor((over * share + under * (256 - share)) / 256), where the low
// bytes of the halves (channels 0 and 2) have one share and the high ones (channel 1 and the top
// byte) another. No sum reaches 65536.
template <class Halves>
[[gnu::always_inline]] inline void mix(Halves& under, const Halves& over, const Halves& low_share,
                                       const Halves& high_share) noexcept {
    const Halves low = (over & 0xFF) * low_share + (under & 0xFF) * (kFullWeight - low_share);
    const Halves high = (over >> 8) * high_share + (under >> 8) * (kFullWeight - high_share);
    under = low >> 8 | (high & 0xFF00);
}

struct CompositeOver {
    template <class Vector>
    [[gnu::always_inline]] void draw(typename Vector::Words& drawn, const PixelWord* to,
                                     const PixelWord* from) const noexcept {
        using Words = typename Vector::Words;
        using Halves = typename Vector::Halves;
        Halves under;
        Halves over;
        Words alpha;
        load(under, to);
        load(over, from);
        load(alpha, from);
        alpha >>= 24;
        // An opaque pixel has the full weight, not one less. The top byte has none and stays.
        const Words high_share = alpha + ((alpha + 1) >> 8);
        const Words low_share = high_share | high_share << 16;
        mix(under, over, reinterpret_cast<Halves>(low_share), reinterpret_cast<Halves>(high_share));
        drawn = reinterpret_cast<Words>(under);
    }
};

struct CompositeEvenly {
    template <class Vector>
    [[gnu::always_inline]] void draw(typename Vector::Words& drawn, const PixelWord* to,
                                     const PixelWord* from) const noexcept {
        using Words = typename Vector::Words;
        using Halves = typename Vector::Halves;
        Halves under;
        Halves over;
        Halves share;
        Halves top;
        load(under, to);
        load(over, from);
        load(share, shares.words);
        load(top, tops.words);
        mix(under, over, share, share);
        under |= top;
        drawn = reinterpret_cast<Words>(under);
    }

    RepeatedWord shares;
    RepeatedWord tops;
};

}  // namespace

LARKSPUR_MULTIVERSION
void composite_over_rows(const PixelRows& rows) noexcept {
    step_through_rows(rows, CompositeOver());
}

LARKSPUR_MULTIVERSION
void composite_evenly_rows(const PixelRows& rows, std::uint8_t alpha) noexcept {
    step_through_rows(rows,
                      CompositeEvenly{RepeatedWord(alpha * 0x00010001U), RepeatedWord(kTopByte)});
}

}  // namespace larkspur::pixel
