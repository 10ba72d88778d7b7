#include "../memory_field.h"
#include "gtest/gtest.h"
#include "pixel/kernels/over_kernels.h"

namespace larkspur::pixel {
namespace {

// Each low byte comes nearer to the upper one by its alpha's share in 256ths, rounded down, and all
// the way at 255; the top byte stays.
std::uint32_t composited(std::uint32_t over, std::uint32_t under) {
    const auto alpha = static_cast<int>(over >> 24);
    std::uint32_t result = under & 0xFF000000;
    for (unsigned place = 0; place < 3; ++place) {
        const auto s = static_cast<int>(channel(over, place));
        const auto d = static_cast<int>(channel(under, place));
        const int scaled = 256 * d + (s - d) * alpha;
        result |= static_cast<std::uint32_t>(alpha == 255 ? s : scaled / 256) << (8 * place);
    }
    return result;
}

void composite(MemoryField& target, MemoryField& source, std::size_t width, std::size_t height) {
    composite_over_rows(pixel_words(target.row(0)), target.pitch(), pixel_words(source.row(0)),
                        source.pitch(), width, height);
}

TEST(CompositeOverRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    constexpr std::size_t kRows = 3;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField target(offset, 4 * width, offset % 7, kRows, 11);
            MemoryField source((3 * offset + 1) % kWidestVectorBytes, 4 * width, 5, kRows, 12);
            MemoryField expected = target.copy();
            for (std::size_t y = 0; y < kRows; ++y) {
                for (std::size_t x = 0; x < width; ++x) {
                    expected.set_word(x, y, composited(source.word(x, y), target.word(x, y)));
                }
            }
            composite(target, source, width, kRows);
            ASSERT_TRUE(target.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(CompositeOverRows, PutsEveryByteOverEveryByteWithEveryAlpha) {
    for (std::uint32_t alpha = 0; alpha < 256; ++alpha) {
        MemoryField target(0, 4 * 256, 0, 256, 13);
        MemoryField source(0, 4 * 256, 0, 256, 14);
        for (std::uint32_t s = 0; s < 256; ++s) {
            for (std::uint32_t d = 0; d < 256; ++d) {
                // Another pair of bytes in each channel, all pairs in each.
                source.set_word(d, s, alpha << 24 | (s ^ 0xAA) << 16 | (255 - s) << 8 | s);
                target.set_word(d, s, 0x77000000 | (d ^ 0x33) << 16 | d << 8 | (255 - d));
            }
        }
        MemoryField expected = target.copy();
        for (std::size_t y = 0; y < 256; ++y) {
            for (std::size_t x = 0; x < 256; ++x) {
                expected.set_word(x, y, composited(source.word(x, y), target.word(x, y)));
            }
        }
        composite(target, source, 256, 256);
        ASSERT_TRUE(target.equals(expected)) << "alpha " << alpha;
    }
}

TEST(CompositeOverRows, DoesNothingWithoutRows) {
    MemoryField target(0, 40, 0, 2, 15);
    MemoryField source(0, 40, 0, 2, 16);
    MemoryField expected = target.copy();
    composite(target, source, 10, 0);
    EXPECT_TRUE(target.equals(expected));
}

TEST(CompositeOverRows, TouchesNoMemoryOutside) {
    GuardedPage target;
    GuardedPage source;
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        composite_over_rows(pixel_words(target.at_start()), 0,
                            pixel_words(source.at_end(4 * width)), 0, width, 1);
        composite_over_rows(pixel_words(target.at_end(4 * width)), 0,
                            pixel_words(source.at_start()), 0, width, 1);
    }
}

}  // namespace
}  // namespace larkspur::pixel
