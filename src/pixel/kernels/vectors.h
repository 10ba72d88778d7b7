// Vectors as the compiler's own types, for kernels that compute with the two halves of each pixel,
// 16 bits each. Out of a plain loop on pixels compilers make multiplications of 32 bits, which take
// longer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixel/kernels/multiversion.h"
#include "pixel/kernels/pixel_rows.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {

/// Pixels side by side: as words, as halves of words (the low half of each first), and as bytes.
template <std::size_t kBytes>
struct Vectors {
    static constexpr std::size_t kPixels = kBytes / sizeof(std::uint32_t);
    using Words [[gnu::vector_size(kBytes)]] = std::uint32_t;
    using Halves [[gnu::vector_size(kBytes)]] = std::uint16_t;
    using Bytes [[gnu::vector_size(kBytes)]] = std::uint8_t;
};

/// The widest that are used.
constexpr std::size_t kWidestBytes = 64;

template <class Vector>
[[gnu::always_inline]] inline void load(Vector& vector, const void* from) noexcept {
    std::memcpy(&vector, from, sizeof vector);
}

template <class Vector>
[[gnu::always_inline]] inline void store(void* to, const Vector& vector) noexcept {
    std::memcpy(to, &vector, sizeof vector);
}

/// One word in all places of a vector, to be loaded: a vector that is wider than the processor's is
/// otherwise put together in memory, and each time anew.
struct RepeatedWord {
    [[gnu::always_inline]] explicit RepeatedWord(std::uint32_t word) noexcept {
        for (std::uint32_t& place : words) {
            place = word;
        }
    }

    std::uint32_t words[Vectors<kWidestBytes>::kPixels] = {};
};

/// Stores what step.draw<Vectors<bytes>>(drawn, to, from) makes of the `width` pixels of a row, in
/// vectors of `kBytes` bytes or, where the row is shorter, the widest that it fills. The last
/// vector ends with the row, so some pixels may be drawn twice: it is made before the one that it
/// overlaps is stored, of the pixels as they were.
template <std::size_t kBytes, class Step>
[[gnu::always_inline]] inline void step_through_row(PixelWord* to, const PixelWord* from,
                                                    std::size_t width, const Step& step) noexcept {
    using Vector = Vectors<kBytes>;
    if (width < Vector::kPixels) {
        if constexpr (Vector::kPixels > 1) {
            step_through_row<kBytes / 2>(to, from, width, step);
        }
        return;
    }
    const std::size_t last = width - Vector::kPixels;
    typename Vector::Words drawn;
    std::size_t x = 0;
    // Counted for each width of vectors, of which only the widest ever goes round: a row of two
    // others fills one of twice the width. GCOVR_EXCL_BR_START
    for (; x + Vector::kPixels <= last; x += Vector::kPixels) {
        step.template draw<Vector>(drawn, to + x, from + x);
        store(to + x, drawn);
    }
    // GCOVR_EXCL_BR_STOP
    typename Vector::Words at_end;
    step.template draw<Vector>(at_end, to + last, from + last);
    if (x < last) {
        step.template draw<Vector>(drawn, to + x, from + x);
        store(to + x, drawn);
    }
    store(to + last, at_end);
}

/// As above for all rows. Of long ones the columns before a boundary of vectors come first, as
/// access across the lines of a cache takes longer; but rows that overlap, as those of foreign
/// memory can, are stepped through whole and in order.
template <std::size_t kBytes, class Step>
[[gnu::always_inline]] inline void step_through_rows(const PixelRows& rows,
                                                     const Step& step) noexcept {
    constexpr std::size_t kLongRow = 128;
    const auto row_bytes = static_cast<std::ptrdiff_t>(rows.width * sizeof(PixelWord));
    const bool has_boundary = rows.width >= kLongRow && rows.target_pitch_bytes % kBytes == 0 &&
                              (rows.height == 1 || rows.target_pitch_bytes >= row_bytes);
    const std::size_t behind = reinterpret_cast<std::uintptr_t>(rows.target) % kBytes;
    std::size_t begin = 0;
    std::size_t end =
        has_boundary && behind > 0 ? (kBytes - behind) / sizeof(PixelWord) : rows.width;
    do {
        PixelRows columns = rows;
        columns.target += begin;
        columns.source += begin;
        columns.width = end - begin;
        for (; columns.height > 0; columns.drop_row()) {
            step_through_row<kBytes>(columns.target, columns.source, columns.width, step);
        }
        begin = end;
        end = rows.width;
    } while (begin < end);
}

/// Whether this processor, or the level that the unit alone is compiled for, has vectors of 64
/// bytes.
[[gnu::always_inline]] inline bool has_widest_vectors() noexcept {
#if LARKSPUR_HAS_VERSIONS
    return __builtin_cpu_supports("avx512bw");
#elif defined(__AVX512BW__)
    return true;
#else
    return false;
#endif
}

/// As above in vectors of 64 bytes where the processor has them, else of 32, of which older ones
/// make two.
template <class Step>
[[gnu::always_inline]] inline void step_through_rows(const PixelRows& rows,
                                                     const Step& step) noexcept {
    if (has_widest_vectors()) {
        step_through_rows<kWidestBytes>(rows, step);
    } else {
        step_through_rows<kWidestBytes / 2>(rows, step);
    }
}

}  // namespace larkspur::pixel
