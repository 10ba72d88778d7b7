// Conversions from floating point to integers that are defined for every value. Knows nothing of
// Python.
#pragma once

#include <cstdint>
#include <limits>

namespace larkspur {

/// Truncates toward zero. A value that does not fit, or NaN, gives the smallest integer, as the
/// processor's own conversion does; the language leaves that case undefined.
template <typename Float>
constexpr std::int64_t truncate_to_int64(Float value) noexcept {
    constexpr Float kLimit = static_cast<Float>(9223372036854775808.0);  // 2^63, exact in any Float
    if (value >= -kLimit && value < kLimit) {
        return static_cast<std::int64_t>(value);
    }
    return std::numeric_limits<std::int64_t>::min();
}

/// As truncate_to_int64(), for the signed 32-bit range.
template <typename Float>
constexpr std::int32_t truncate_to_int32(Float value) noexcept {
    // In single precision the lower bound is -2^31 itself, which gives the same either way.
    constexpr Float kBelow = static_cast<Float>(-2147483649.0);  // -2^31 - 1
    constexpr Float kAbove = static_cast<Float>(2147483648.0);   // 2^31
    if (value > kBelow && value < kAbove) {
        return static_cast<std::int32_t>(value);
    }
    return std::numeric_limits<std::int32_t>::min();
}

/// The low 16 bits of a coordinate as SDL's rectangles hold them.
constexpr std::int16_t low_16_bits(std::int64_t value) noexcept {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
}

}  // namespace larkspur
