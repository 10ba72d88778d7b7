// Memory for trying kernels on, with surroundings that tell when they were touched.
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "gtest/gtest.h"

namespace larkspur::pixel {

// Past two of the widest vectors, in bytes and in pixels.
constexpr std::size_t kWidestVectorBytes = 64;
constexpr std::size_t kEnoughBytes = 2 * kWidestVectorBytes + 9;
constexpr std::size_t kEnoughPixels = 2 * kWidestVectorBytes / 4 + 9;

/// Rows of random bytes inside random bytes: a guard before, a guard behind, padding between. What
/// a kernel should do is done by hand to a copy; then all bytes of both have to be the same.
class MemoryField {
 public:
    static constexpr std::size_t kGuardBytes = 128;

    /// @param offset_bytes address of the first row's first byte, modulo 64
    MemoryField(std::size_t offset_bytes, std::size_t row_bytes, std::size_t padding_bytes,
                std::size_t rows, unsigned seed)
        : pitch_bytes_(row_bytes + padding_bytes),
          start_(kGuardBytes + offset_bytes),
          used_bytes_(start_ + pitch_bytes_ * rows + kGuardBytes),
          memory_(used_bytes_ + kWidestVectorBytes) {
        std::mt19937 random(seed);
        for (std::size_t i = 0; i < memory_.size(); i += sizeof(std::uint32_t)) {
            const auto bytes = static_cast<std::uint32_t>(random());
            std::memcpy(&memory_[i], &bytes, std::min(sizeof bytes, memory_.size() - i));
        }
    }

    std::ptrdiff_t pitch() const { return static_cast<std::ptrdiff_t>(pitch_bytes_); }
    unsigned char* row(std::size_t y) { return aligned() + start_ + y * pitch_bytes_; }
    std::uint32_t word(std::size_t x, std::size_t y) {
        std::uint32_t value = 0;
        std::memcpy(&value, row(y) + 4 * x, sizeof value);
        return value;
    }
    void set_word(std::size_t x, std::size_t y, std::uint32_t value) {
        std::memcpy(row(y) + 4 * x, &value, sizeof value);
    }

    /// The same bytes at an address that is the same modulo 64.
    MemoryField copy() {
        MemoryField other = *this;
        std::memcpy(other.aligned(), aligned(), used_bytes_);
        return other;
    }
    /// Everything that is the same is: rows, padding and guards.
    ::testing::AssertionResult equals(MemoryField& expected) {
        for (std::size_t i = 0; i < used_bytes_; ++i) {
            const unsigned char is = aligned()[i];
            const unsigned char should_be = expected.aligned()[i];
            if (is != should_be) {
                return ::testing::AssertionFailure()
                       << "byte " << static_cast<std::ptrdiff_t>(i - start_)
                       << " after the first pixel is " << int{is} << ", should be "
                       << int{should_be};
            }
        }
        return ::testing::AssertionSuccess();
    }

 private:
    unsigned char* aligned() {
        const auto address = reinterpret_cast<std::uintptr_t>(memory_.data());
        return memory_.data() +
               (kWidestVectorBytes - address % kWidestVectorBytes) % kWidestVectorBytes;
    }

    std::size_t pitch_bytes_;
    std::size_t start_;
    std::size_t used_bytes_;
    std::vector<unsigned char> memory_;
};

/// Pages that may be touched, for at least `bytes` bytes, between two that must not even be read.
class GuardedMemory {
 public:
    explicit GuardedMemory(std::size_t bytes)
        : page_bytes_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
          inner_bytes_((bytes + page_bytes_ - 1) / page_bytes_ * page_bytes_),
          pages_(static_cast<unsigned char*>(mmap(nullptr, inner_bytes_ + 2 * page_bytes_,
                                                  PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
        EXPECT_EQ(mprotect(begin(), inner_bytes_, PROT_READ | PROT_WRITE), 0);
    }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;
    ~GuardedMemory() { munmap(pages_, inner_bytes_ + 2 * page_bytes_); }

    unsigned char* begin() { return pages_ + page_bytes_; }
    unsigned char* end() { return begin() + inner_bytes_; }

 private:
    std::size_t page_bytes_;
    std::size_t inner_bytes_;
    unsigned char* pages_;
};

/// One such page.
class GuardedPage {
 public:
    /// `count` bytes that begin, or end, exactly where the page does.
    unsigned char* at_start() { return memory_.begin(); }
    unsigned char* at_end(std::size_t count) { return memory_.end() - count; }

 private:
    GuardedMemory memory_{1};
};

}  // namespace larkspur::pixel
