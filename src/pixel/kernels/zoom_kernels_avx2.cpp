#include "pixel/kernels/zoom_kernels_avx2.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include <immintrin.h>

#include <algorithm>
#include <array>

// On the functions and not on the file, which would lend its copies of shared inline functions to
// processors that do not run them.
#define LARKSPUR_AVX2 __attribute__((target("avx2")))

namespace larkspur::pixel {
namespace {

constexpr unsigned kPixelShift = 16;
constexpr int kLanes = 8;

// A row's pixels x to x + 7 lie in so many vectors of the source from the pixel of x on: in one up
// to a step of a whole pixel, in two up to 15/7 of it, which halving stays below.
constexpr std::uint32_t kLongestStepInOne = 1 << kPixelShift;
constexpr std::uint32_t kLongestStepInTwo = (15 << kPixelShift) / 7;

LARKSPUR_AVX2 inline __m256i load(const PixelWord* words) noexcept {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
}

LARKSPUR_AVX2 inline void store(PixelWord* words, __m256i vector) noexcept {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(words), vector);
}

LARKSPUR_AVX2 inline __m256i repeated(std::uint32_t word) noexcept {
    return _mm256_set1_epi32(static_cast<int>(word));
}

// 0, step, ... 7 * step.
LARKSPUR_AVX2 inline __m256i multiples(std::uint32_t step) noexcept {
    return _mm256_mullo_epi32(_mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7), repeated(step));
}

// Lane i becomes from[indices[i]], each index being below 8 * vectors.
template <int vectors>
LARKSPUR_AVX2 inline __m256i shuffled(const PixelWord* from, __m256i indices) noexcept {
    const __m256i low = _mm256_permutevar8x32_epi32(load(from), indices);
    if (vectors == 1) {
        return low;
    }
    const __m256i high = _mm256_permutevar8x32_epi32(load(from + kLanes), indices);
    return _mm256_blendv_epi8(low, high, _mm256_cmpgt_epi32(indices, repeated(kLanes - 1)));
}

// a + floor((b - a) * share / 65536) for each channel; the share is the low half of a pixel's
// place. A share of a half and more is negative in 16 bits, which takes a whole difference too
// much: then b is what to start from.
LARKSPUR_AVX2 inline __m256i mixed(__m256i a, __m256i b, __m256i places) noexcept {
    const __m256i low_halves = _mm256_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13,
                                                0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13);
    const __m256i shares = _mm256_shuffle_epi8(places, low_halves);
    const __m256i low_bytes = _mm256_set1_epi16(0xFF);
    const __m256i low =
        _mm256_sub_epi16(_mm256_and_si256(b, low_bytes), _mm256_and_si256(a, low_bytes));
    const __m256i high = _mm256_sub_epi16(_mm256_srli_epi16(b, 8), _mm256_srli_epi16(a, 8));
    const __m256i change =
        _mm256_or_si256(_mm256_and_si256(_mm256_mulhi_epi16(low, shares), low_bytes),
                        _mm256_slli_epi16(_mm256_mulhi_epi16(high, shares), 8));
    const __m256i start = _mm256_blendv_epi8(a, b, _mm256_srai_epi16(shares, 15));
    return _mm256_add_epi8(start, change);
}

// Where eight pixels of a row are in the source.
struct Window {
    const PixelWord* from;
    __m256i indices;
};

// The window that begins with the pixel of the first place, or before it at `last_column`, where
// the source ends.
LARKSPUR_AVX2 inline Window window_at(const PixelWord* from, std::uint32_t last_column,
                                      std::uint32_t place, __m256i places) noexcept {
    const __m256i columns = _mm256_srli_epi32(places, kPixelShift);
    const __m256i first = _mm256_broadcastd_epi32(_mm256_castsi256_si128(columns));
    return {from + std::min(place >> kPixelShift, last_column),
            _mm256_sub_epi32(columns, _mm256_min_epi32(first, repeated(last_column)))};
}

// Eight pixels of each row: their first column, that of their window in the source, and which
// pixels of the window they are.
struct PickedColumns {
    std::size_t to;
    std::size_t from;
    std::array<std::uint32_t, kLanes> indices;
};

// Where pixels are picked from is worked out once for so many vectors of all rows: 2048 pixels, as
// rows that are written in several pieces take up to 1.8 times as long.
constexpr std::size_t kPickedAtOnce = 256;
using ManyColumns = std::array<PickedColumns, kPickedAtOnce>;

// Fills in the columns from `begin` on, the row's last eight some of them once more. Returns their
// number.
template <int vectors>
LARKSPUR_AVX2 std::size_t look_for_columns(ManyColumns& columns, std::size_t begin,
                                           std::size_t width, std::size_t from_width,
                                           std::uint32_t step) noexcept {
    const auto last_column = static_cast<std::uint32_t>(from_width - vectors * kLanes);
    const __m256i first_places = multiples(step);
    std::size_t count = 0;
    for (std::size_t x = begin; x < width && count < columns.size(); x += kLanes) {
        PickedColumns& picked = columns[count++];
        picked.to = std::min(x, width - kLanes);
        const std::uint32_t place = static_cast<std::uint32_t>(picked.to) * step;
        picked.from = std::min(place >> kPixelShift, last_column);
        const __m256i places = _mm256_add_epi32(first_places, repeated(place));
        store(picked.indices.data(),
              _mm256_sub_epi32(_mm256_srli_epi32(places, kPixelShift),
                               repeated(static_cast<std::uint32_t>(picked.from))));
    }
    return count;
}

// Rows of 8 pixels and more, of a source of as many vectors or more.
template <int vectors>
LARKSPUR_AVX2 void pick_by_vectors(PixelWord* to, std::ptrdiff_t to_pitch_bytes, std::size_t width,
                                   std::size_t height, const LookedUp& from, std::uint32_t x_step,
                                   std::uint32_t y_step) noexcept {
    ManyColumns columns;
    for (std::size_t begin = 0; begin < width; begin += kPickedAtOnce * kLanes) {
        const std::size_t count =
            look_for_columns<vectors>(columns, begin, width, from.width, x_step);
        PixelWord* row = to;
        const PixelWord* above = to;
        const PixelWord* shown = nullptr;
        for (std::size_t y = 0; y < height; ++y) {
            const PixelWord* from_row =
                from.row(static_cast<std::uint32_t>(y) * y_step >> kPixelShift);
            if (from_row == shown) {
                for (std::size_t i = 0; i < count; ++i) {
                    store(row + columns[i].to, load(above + columns[i].to));
                }
            } else {
                for (std::size_t i = 0; i < count; ++i) {
                    store(row + columns[i].to, shuffled<vectors>(from_row + columns[i].from,
                                                                 load(columns[i].indices.data())));
                }
                shown = from_row;
            }
            above = row;
            row = pixel_words(reinterpret_cast<unsigned char*>(row) + to_pitch_bytes);
        }
    }
}

void pick_pixels_avx2(PixelWord* to, std::ptrdiff_t to_pitch_bytes, std::size_t width,
                      std::size_t height, const LookedUp& from, std::uint32_t x_step,
                      std::uint32_t y_step) noexcept {
    const bool in_one = x_step <= kLongestStepInOne;
    const std::size_t least_width = in_one ? kLanes : 2 * kLanes;
    if (width < kLanes || from.width < least_width || x_step > kLongestStepInTwo) {
        pick_pixels(to, to_pitch_bytes, width, height, from, x_step, y_step);
        return;
    }
    const auto pick = in_one ? pick_by_vectors<1> : pick_by_vectors<2>;
    pick(to, to_pitch_bytes, width, height, from, x_step, y_step);
}

// Eight pixels mixed with the next ones. The source has a pixel more than those of the window.
template <int vectors>
LARKSPUR_AVX2 inline __m256i mixed_at(const Window& window, __m256i places) noexcept {
    return mixed(shuffled<vectors>(window.from, window.indices),
                 shuffled<vectors>(window.from + 1, window.indices), places);
}

// Sets `width` pixels, 8 and more.
template <int vectors>
LARKSPUR_AVX2 void mix_row(PixelWord* to, const PixelWord* from, std::size_t from_width,
                           std::uint32_t step, std::size_t width) noexcept {
    const auto last_column = static_cast<std::uint32_t>(from_width - 1 - vectors * kLanes);
    const __m256i first_places = multiples(step);
    __m256i places = first_places;
    std::uint32_t place = 0;
    std::size_t x = 0;
    for (; x + kLanes <= width; x += kLanes) {
        store(to + x, mixed_at<vectors>(window_at(from, last_column, place, places), places));
        place += kLanes * step;
        places = _mm256_add_epi32(places, repeated(kLanes * step));
    }
    if (x < width) {  // the last eight, some of them once more
        x = width - kLanes;
        place = static_cast<std::uint32_t>(x) * step;
        places = _mm256_add_epi32(first_places, repeated(place));
        store(to + x, mixed_at<vectors>(window_at(from, last_column, place, places), places));
    }
}

// As mix_row(), of a source of any width: one that is no whole window is made longer.
template <int vectors>
void mix_row_of_any(PixelWord* to, const PixelWord* from, std::size_t from_width,
                    std::uint32_t step, std::size_t width) noexcept {
    constexpr std::size_t kLeastWidth = vectors * kLanes + 1;
    if (from_width >= kLeastWidth) {
        mix_row<vectors>(to, from, from_width, step, width);
        return;
    }
    std::array<std::uint32_t, kLeastWidth> longer = {};
    std::copy_n(from, from_width, longer.begin());
    mix_row<vectors>(to, longer.data(), kLeastWidth, step, width);
}

void mix_columns_avx2(PixelWord* to, const PixelWord* from, std::size_t from_width,
                      std::uint32_t step, std::size_t width) noexcept {
    // A row's last pixel may be the source's, which has none behind it.
    const bool ends_alike = width > 1 && (width - 1) * step == (from_width - 1) << kPixelShift;
    const std::size_t mixed_width = width - (ends_alike ? 1 : 0);
    if (mixed_width < kLanes || step > kLongestStepInTwo) {
        mix_columns(to, from, from_width, step, width);
        return;
    }
    const auto mix = step <= kLongestStepInOne ? mix_row_of_any<1> : mix_row_of_any<2>;
    mix(to, from, from_width, step, mixed_width);
    if (ends_alike) {
        to[width - 1] = from[from_width - 1];
    }
}

// Which pixels of the source are next is worked out for eight at a time, in pixels from its first.
// They are looked up one by one all the same: gathering them by one instruction takes no less time,
// and twice as much on processors that guard it.
constexpr std::int32_t kBlock = 64;
using Places = std::array<std::int32_t, kBlock>;

LARKSPUR_AVX2 void pick_along_lines_avx2(PixelWord* to, std::ptrdiff_t to_pitch_bytes,
                                         const PixelWord* from, std::ptrdiff_t from_pitch_bytes,
                                         const SourceLine* lines, std::size_t height,
                                         std::uint32_t x_step, std::uint32_t y_step) noexcept {
    Places places;
    // A pixel is its row times the pitch and its column: two products of 16 bits in each lane.
    const auto pitch = static_cast<std::uint32_t>(from_pitch_bytes) / sizeof(PixelWord);
    const __m256i weights = repeated(1U << 16 | static_cast<std::uint32_t>(pitch));
    const __m256i first_xs = multiples(x_step);
    const __m256i first_ys = multiples(y_step);
    for (std::size_t row = 0; row < height; ++row) {
        const SourceLine& line = lines[row];
        const auto from_first = static_cast<std::uint32_t>(line.first);
        __m256i xs = _mm256_add_epi32(first_xs, repeated(line.x + from_first * x_step));
        __m256i ys = _mm256_add_epi32(first_ys, repeated(line.y + from_first * y_step));
        for (std::int32_t done = line.first; done < line.end; done += kBlock) {
            const std::int32_t count = std::min(kBlock, line.end - done);
            for (std::int32_t i = 0; i < count; i += kLanes) {
                const __m256i rows = _mm256_srli_epi32(ys, kPixelShift);
                const __m256i columns_and_rows = _mm256_blend_epi16(rows, xs, 0xAA);
                _mm256_storeu_si256(reinterpret_cast<__m256i*>(places.data() + i),
                                    _mm256_madd_epi16(columns_and_rows, weights));
                xs = _mm256_add_epi32(xs, repeated(kLanes * x_step));
                ys = _mm256_add_epi32(ys, repeated(kLanes * y_step));
            }
            PixelWord* pixels = to + done;
#pragma GCC unroll 8
            for (std::int32_t i = 0; i < count; ++i) {
                pixels[i] = from[places[i]];
            }
        }
        to = pixel_words(reinterpret_cast<unsigned char*>(to) + to_pitch_bytes);
    }
}

// 8 x 8 pixels. Each step brings together what is 1, 2 and 4 rows apart.
LARKSPUR_AVX2 inline void transpose_block(unsigned char* to, std::ptrdiff_t to_pitch_bytes,
                                          const unsigned char* from,
                                          std::ptrdiff_t from_pitch_bytes) noexcept {
    __m256i rows[kLanes];
    for (int y = 0; y < kLanes; ++y) {
        rows[y] = load(pixel_words(from + y * from_pitch_bytes));
    }
    __m256i pairs[kLanes];
    for (int y = 0; y < kLanes; y += 2) {
        pairs[y] = _mm256_unpacklo_epi32(rows[y], rows[y + 1]);
        pairs[y + 1] = _mm256_unpackhi_epi32(rows[y], rows[y + 1]);
    }
    __m256i fours[kLanes];
    for (int half = 0; half < kLanes; half += 4) {
        fours[half] = _mm256_unpacklo_epi64(pairs[half], pairs[half + 2]);
        fours[half + 1] = _mm256_unpackhi_epi64(pairs[half], pairs[half + 2]);
        fours[half + 2] = _mm256_unpacklo_epi64(pairs[half + 1], pairs[half + 3]);
        fours[half + 3] = _mm256_unpackhi_epi64(pairs[half + 1], pairs[half + 3]);
    }
    for (int y = 0; y < 4; ++y) {
        store(pixel_words(to + y * to_pitch_bytes),
              _mm256_permute2x128_si256(fours[y], fours[y + 4], 0x20));
        store(pixel_words(to + (y + 4) * to_pitch_bytes),
              _mm256_permute2x128_si256(fours[y], fours[y + 4], 0x31));
    }
}

LARKSPUR_AVX2 void transpose_avx2(PixelWord* to, std::ptrdiff_t to_pitch_bytes,
                                  const PixelWord* from, std::ptrdiff_t from_pitch_bytes,
                                  std::size_t width, std::size_t height) noexcept {
    auto* to_bytes = reinterpret_cast<unsigned char*>(to);
    const auto* from_bytes = reinterpret_cast<const unsigned char*>(from);
    const auto to_row = [&](std::size_t y) {
        return to_bytes + static_cast<std::ptrdiff_t>(y) * to_pitch_bytes;
    };
    const auto from_row = [&](std::size_t x) {
        return from_bytes + static_cast<std::ptrdiff_t>(x) * from_pitch_bytes;
    };
    const std::size_t whole_width = width / kLanes * kLanes;
    const std::size_t whole_height = height / kLanes * kLanes;
    for (std::size_t y = 0; y < whole_height; y += kLanes) {
        for (std::size_t x = 0; x < whole_width; x += kLanes) {
            transpose_block(to_row(y) + x * sizeof(PixelWord), to_pitch_bytes,
                            from_row(x) + y * sizeof(PixelWord), from_pitch_bytes);
        }
    }
    transpose(to + whole_width, to_pitch_bytes, pixel_words(from_row(whole_width)),
              from_pitch_bytes, width - whole_width, whole_height);
    transpose(pixel_words(to_row(whole_height)), to_pitch_bytes, from + whole_height,
              from_pitch_bytes, width, height - whole_height);
}

}  // namespace

ZoomKernels fastest_zoom_kernels() noexcept {
    if (__builtin_cpu_supports("avx2")) {
        return {pick_pixels_avx2, mix_columns_avx2, pick_along_lines_avx2, transpose_avx2};
    }
    return {pick_pixels, mix_columns, pick_along_lines, transpose};
}

}  // namespace larkspur::pixel

#else

namespace larkspur::pixel {

ZoomKernels fastest_zoom_kernels() noexcept {
    return {pick_pixels, mix_columns, pick_along_lines, transpose};
}

}  // namespace larkspur::pixel

#endif
