// How a particle's colour and alpha follow from the share of its life that is left: two straight
// pieces that meet at half life.
#pragma once

#include <cstdint>

#include "larkspur.h"

namespace larkspur {

/// The alpha of a type at life fraction `t` (1 at birth, 0 at death; NaN counts as the second
/// half) as 0 to 255, truncated. Not clamped: the low 32 bits of the 64-bit truncation. Asked by
/// native callers; the alpha that a particle is drawn with rounds otherwise (particle_render).
std::int32_t desired_alpha(const particle_type_record& type, float t) noexcept;

/// The colour of a type at life fraction `t`; its top byte is 0.
std::uint32_t desired_tint(const particle_type_record& type, float t) noexcept;

/// The same from the particle's own three colours.
std::uint32_t desired_tint(const particle_record& particle, float t) noexcept;

}  // namespace larkspur
