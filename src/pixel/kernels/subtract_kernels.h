// Saturating subtraction of a repeating pattern from the bytes of a buffer.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace larkspur::pixel {

/// Eight bytes to subtract, in memory order.
constexpr std::size_t kPatternBytes = 8;
using BytePattern = std::array<std::uint8_t, kPatternBytes>;

/// The bytes of `low` and then of `high`, each from bits 0-7 up to bits 24-31: in memory order on
/// every processor.
constexpr BytePattern pattern_of(std::uint32_t low, std::uint32_t high) noexcept {
    BytePattern pattern = {};
    for (unsigned i = 0; i < 4; ++i) {
        pattern[i] = static_cast<std::uint8_t>(low >> (8 * i));
        pattern[i + 4] = static_cast<std::uint8_t>(high >> (8 * i));
    }
    return pattern;
}

/// Byte i of `count` becomes max(0, byte - pattern[i mod 8]).
void subtract_saturating(unsigned char* bytes, std::size_t count,
                         const BytePattern& pattern) noexcept;

}  // namespace larkspur::pixel
