#include "particles/curves.h"

#include "base/convert.h"
#include "larkspur.h"
#include "pixel/kernels/colour.h"

namespace larkspur {
namespace {

// Type and particle hold the three colours under the same names.
template <typename Record>
std::uint32_t tint_of(const Record& record, float t) noexcept {
    const auto color1 = static_cast<std::uint32_t>(record.color1);
    const auto color2 = static_cast<std::uint32_t>(record.color2);
    const auto color3 = static_cast<std::uint32_t>(record.color3);
    if (t > 0.5F) {
        return pixel::interpolate_unformatted(
            color1, color2, static_cast<float>(2.0 * (static_cast<double>(t) - 0.5)));
    }
    return pixel::interpolate_unformatted(color2, color3, 2.0F * t);
}

}  // namespace

std::int32_t desired_alpha(const particle_type_record& type, float t) noexcept {
    // Extended precision throughout: a product of two single-precision numbers is exact in it, so
    // nothing is rounded before the truncation that could cross a whole number.
    const long double life = t;
    const long double start = type.alpha_start;
    const long double half = type.alpha_half;
    const long double end = type.alpha_end;
    long double alpha = 0;
    if (t > 0.5F) {
        const long double share = 2 * (life - 0.5L);
        alpha = start * share + half * (1 - share);
    } else {
        const long double share = 2 * life;
        alpha = end * (1 - share) + half * share;
    }
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(truncate_to_int64(alpha * 255.0L)));
}

std::uint32_t desired_tint(const particle_type_record& type, float t) noexcept {
    return tint_of(type, t);
}

std::uint32_t desired_tint(const particle_record& particle, float t) noexcept {
    return tint_of(particle, t);
}

}  // namespace larkspur

extern "C" {

std::int32_t DesiredAlpha(const particle_type_record* type, float t) {
    return larkspur::desired_alpha(*type, t);
}

std::uint32_t DesiredTint_type(const particle_type_record* type, float t) {
    return larkspur::desired_tint(*type, t);
}

std::uint32_t DesiredTint_part_gm(const particle_record* particle, float t) {
    return larkspur::desired_tint(*particle, t);
}

}  // extern "C"
