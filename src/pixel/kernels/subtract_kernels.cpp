#include "pixel/kernels/subtract_kernels.h"

#include <cstring>

#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {
namespace {

// The widest vector of any processor served.
constexpr std::size_t kBlockBytes = 64;

// The smaller one is subtracted from itself: processors have one instruction for this form.
constexpr std::uint8_t subtract(std::uint8_t byte, std::uint8_t k) noexcept {
    return static_cast<std::uint8_t>((byte > k ? byte : k) - k);
}

}  // namespace

LARKSPUR_MULTIVERSION
void subtract_saturating(unsigned char* bytes, std::size_t count,
                         const BytePattern& pattern) noexcept {
    // The pattern is repeated through one block, so that every byte of a vector meets its own.
    unsigned char block[kBlockBytes];
    for (std::size_t i = 0; i < kBlockBytes; i += kPatternBytes) {
        std::memcpy(block + i, pattern.data(), kPatternBytes);
    }
    while (count >= kBlockBytes) {
        for (std::size_t i = 0; i < kBlockBytes; ++i) {
            bytes[i] = subtract(bytes[i], block[i]);
        }
        bytes += kBlockBytes;
        count -= kBlockBytes;
    }
    for (std::size_t i = 0; i < count; ++i) {
        bytes[i] = subtract(bytes[i], block[i]);
    }
}

}  // namespace larkspur::pixel
