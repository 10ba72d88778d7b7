#include "pixel/kernels/zoom_kernels.h"

#include <algorithm>
#include <array>

#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/multiversion.h"

namespace larkspur::pixel {
namespace {

constexpr unsigned kPixelShift = 16;
constexpr std::uint32_t kBothHalves = 0x10001;

// Pixels that are looked up one by one before vectors work on them.
constexpr std::size_t kBlock = 64;

// Two channels, as they lie in memory that holds pixels.
using ChannelPair [[gnu::aligned(1), gnu::may_alias]] = std::uint16_t;
constexpr std::size_t kPairs = sizeof(PixelWord) / sizeof(ChannelPair);

inline std::uint32_t mixed_channel(std::uint32_t a, std::uint32_t b, std::int16_t share) noexcept {
    const auto difference = static_cast<std::int16_t>(b - a);
    return static_cast<std::uint32_t>(std::int32_t{difference} * share >> 16);
}

// a + floor((b - a) * share / 65536) for both channels of a pair. A share of a half and more is
// negative in 16 bits, which takes a whole difference too much: then b is what to start from.
inline std::uint16_t mixed_pair(std::uint16_t a, std::uint16_t b, std::int16_t share,
                                std::uint16_t start) noexcept {
    const std::uint32_t low = (start & 0xFFU) + mixed_channel(a & 0xFFU, b & 0xFFU, share);
    const std::uint32_t high = (start >> 8U) + mixed_channel(a >> 8U, b >> 8U, share);
    return static_cast<std::uint16_t>(low | high << 8);
}

}  // namespace

// The compiler is not told that source and target share no memory: for newer levels it would gather
// pixels by one instruction, which takes a quarter longer than to look them up one by one.
LARKSPUR_MULTIVERSION
void pick_pixels(PixelWord* to, std::ptrdiff_t to_pitch_bytes, std::size_t width,
                 std::size_t height, const LookedUp& from, std::uint32_t x_step,
                 std::uint32_t y_step) noexcept {
    auto* to_bytes = reinterpret_cast<unsigned char*>(to);
    const PixelWord* shown = nullptr;
    for (std::size_t y = 0; y < height; ++y) {
        const PixelWord* row = from.row(static_cast<std::uint32_t>(y) * y_step >> kPixelShift);
        if (row == shown) {
            copy_rows(to_bytes, 0, to_bytes - to_pitch_bytes, 0, width * sizeof(PixelWord), 1);
        } else {
            std::uint32_t place = 0;
            for (std::size_t x = 0; x < width; ++x) {
                pixel_words(to_bytes)[x] = row[place >> kPixelShift];
                place += x_step;
            }
            shown = row;
        }
        to_bytes += to_pitch_bytes;
    }
}

LARKSPUR_MULTIVERSION
void mix_columns(PixelWord* to, const PixelWord* from, std::size_t from_width, std::uint32_t step,
                 std::size_t width) noexcept {
    std::array<std::uint32_t, kBlock> first = {};
    std::array<std::uint32_t, kBlock> second = {};
    std::array<std::uint32_t, kBlock> shares = {};
    std::uint32_t place = 0;
    for (std::size_t done = 0; done < width; done += kBlock) {
        const std::size_t count = std::min(kBlock, width - done);
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t column = place >> kPixelShift;
            first[i] = from[column];
            second[i] = from[std::min(column + 1, from_width - 1)];
            shares[i] = (place & 0xFFFF) * kBothHalves;
            place += step;
        }
        ChannelPair* __restrict to_pairs = reinterpret_cast<ChannelPair*>(to + done);
        const ChannelPair* a = reinterpret_cast<const ChannelPair*>(first.data());
        const ChannelPair* b = reinterpret_cast<const ChannelPair*>(second.data());
        const ChannelPair* pair_shares = reinterpret_cast<const ChannelPair*>(shares.data());
        for (std::size_t i = 0; i < kPairs * count; ++i) {
            const auto share = static_cast<std::int16_t>(pair_shares[i]);
            to_pairs[i] = mixed_pair(a[i], b[i], share, share < 0 ? b[i] : a[i]);
        }
    }
}

LARKSPUR_MULTIVERSION
void mix_rows(PixelWord* to, const PixelWord* first, const PixelWord* second, std::uint32_t share,
              std::size_t width) noexcept {
    ChannelPair* __restrict to_pairs = reinterpret_cast<ChannelPair*>(to);
    const ChannelPair* a = reinterpret_cast<const ChannelPair*>(first);
    const ChannelPair* b = reinterpret_cast<const ChannelPair*>(second);
    const auto signed_share = static_cast<std::int16_t>(share);
    const ChannelPair* start = signed_share < 0 ? b : a;
    for (std::size_t i = 0; i < kPairs * width; ++i) {
        to_pairs[i] = mixed_pair(a[i], b[i], signed_share, start[i]);
    }
}

LARKSPUR_MULTIVERSION
void pick_along_lines(PixelWord* to, std::ptrdiff_t to_pitch_bytes, const PixelWord* from,
                      std::ptrdiff_t from_pitch_bytes, const SourceLine* lines, std::size_t height,
                      std::uint32_t x_step, std::uint32_t y_step) noexcept {
    const auto* from_bytes = reinterpret_cast<const unsigned char*>(from);
    for (std::size_t row = 0; row < height; ++row) {
        const SourceLine& line = lines[row];
        std::uint32_t x = line.x + static_cast<std::uint32_t>(line.first) * x_step;
        std::uint32_t y = line.y + static_cast<std::uint32_t>(line.first) * y_step;
        for (std::int32_t i = line.first; i < line.end; ++i) {
            to[i] =
                pixel_words(from_bytes + (y >> kPixelShift) * from_pitch_bytes)[x >> kPixelShift];
            x += x_step;
            y += y_step;
        }
        to = pixel_words(reinterpret_cast<unsigned char*>(to) + to_pitch_bytes);
    }
}

// A few rows at once, so that what is read of a row of the source is read together.
LARKSPUR_MULTIVERSION
void transpose(PixelWord* to, std::ptrdiff_t to_pitch_bytes, const PixelWord* from,
               std::ptrdiff_t from_pitch_bytes, std::size_t width, std::size_t height) noexcept {
    constexpr std::size_t kRows = 8;
    auto* to_bytes = reinterpret_cast<unsigned char*>(to);
    const auto* from_bytes = reinterpret_cast<const unsigned char*>(from);
    for (std::size_t top = 0; top < height; top += kRows) {
        const std::size_t bottom = std::min(top + kRows, height);
        for (std::size_t x = 0; x < width; ++x) {
            const PixelWord* column =
                pixel_words(from_bytes + static_cast<std::ptrdiff_t>(x) * from_pitch_bytes);
            for (std::size_t y = top; y < bottom; ++y) {
                pixel_words(to_bytes + static_cast<std::ptrdiff_t>(y) * to_pitch_bytes)[x] =
                    column[y];
            }
        }
    }
}

}  // namespace larkspur::pixel
