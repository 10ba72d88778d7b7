#include "pixel/kernels/add_kernels.h"

#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/vectors.h"

namespace larkspur::pixel {
namespace {

struct AddSaturating {
    template <class Vector>
    [[gnu::always_inline]] void draw(typename Vector::Words& drawn, const PixelWord* to,
                                     const PixelWord* from) const noexcept {
        using Words = typename Vector::Words;
        using Bytes = typename Vector::Bytes;
        Bytes sum;
        Bytes added;
        load(sum, to);
        load(added, from);
        // No more than there is room for: in this form no sum leaves its byte.
        const Bytes room = ~sum;
        sum += added < room ? added : room;
        drawn = reinterpret_cast<Words>(sum);
    }
};

}  // namespace

LARKSPUR_MULTIVERSION
void add_saturating_rows(const PixelRows& rows) noexcept {
    step_through_rows(rows, AddSaturating());
}

}  // namespace larkspur::pixel
