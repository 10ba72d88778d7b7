#include "pixel/kernels/gradient_kernels.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "../formulas.h"
#include "../memory_field.h"
#include "gtest/gtest.h"

namespace larkspur::pixel {
namespace {

constexpr PixelLayout kLayouts[] = {
    {{0, 16}, {0, 8}, {0, 0}, 0},            // red above green above blue
    {{0, 0}, {0, 8}, {0, 16}, 0xFF000000},   // the other way round, with alpha
    {{0, 24}, {0, 16}, {0, 8}, 0x000000FF},  // alpha in the low byte
    {{3, 11}, {2, 5}, {3, 0}, 0},            // five, six and five bits
    {{8, 0}, {0, 8}, {30, 31}, 0},           // no red, no blue
};
constexpr std::uint32_t kFirst = 0xFF10F0C3;
constexpr std::uint32_t kSecond = 0x80FF0837;

TEST(MixColours, SetsItsWordsAtEveryCountAndOffset) {
    std::vector<std::int32_t> weights(kEnoughPixels);
    for (std::size_t i = 0; i < weights.size(); ++i) {
        weights[i] = static_cast<std::int32_t>(i * 37 % 257);
    }
    for (const PixelLayout& layout : kLayouts) {
        for (std::size_t count = 0; count <= kEnoughPixels; ++count) {
            for (const std::size_t offset : {0, 4, 1, 28, 63}) {
                MemoryField field(offset, 4 * count, 0, 1, 4);
                MemoryField expected = field.copy();
                for (std::size_t x = 0; x < count; ++x) {
                    expected.set_word(x, 0, mixed_colour(kFirst, kSecond, weights[x], layout));
                }
                mix_colours(pixel_words(field.row(0)), weights.data(), count, kFirst, kSecond,
                            layout);
                ASSERT_TRUE(field.equals(expected)) << "count " << count << ", offset " << offset;
            }
        }
    }
}

TEST(MixColours, MixesEveryValueWithEveryWeight) {
    std::vector<std::int32_t> weights(257);
    std::iota(weights.begin(), weights.end(), 0);
    for (std::uint32_t value = 0; value < 256; ++value) {
        const std::uint32_t first = value | (255 - value) << 8 | (value ^ 0x5A) << 16;
        const std::uint32_t second = (value * 7 & 255) | value << 8 | (255 - value) << 16;
        std::vector<std::uint32_t> words(weights.size());
        mix_colours(words.data(), weights.data(), words.size(), first, second, kLayouts[0]);
        for (std::size_t i = 0; i < words.size(); ++i) {
            ASSERT_EQ(words[i], mixed_colour(first, second, weights[i], kLayouts[0]))
                << "value " << value << ", weight " << i;
        }
    }
}

TEST(AddScaled, AddsEachChannelsShareAtEveryCountAndWeight) {
    std::mt19937 random(5);
    for (std::size_t count = 0; count <= kEnoughPixels; ++count) {
        for (std::uint32_t weight = 0; weight < 256; weight += 5) {
            std::vector<std::uint32_t> words(count + 1);
            std::vector<std::uint32_t> sums(count + 1);
            std::generate(words.begin(), words.end(), random);
            std::generate(sums.begin(), sums.end(), random);
            std::vector<std::uint32_t> expected = sums;
            for (std::size_t i = 0; i < count; ++i) {
                expected[i] += scaled(words[i], weight);
            }
            add_scaled(sums.data(), words.data(), count, static_cast<std::uint8_t>(weight));
            ASSERT_EQ(sums, expected) << "count " << count << ", weight " << weight;
        }
    }
}

constexpr std::uint32_t kColour = 0x89ABCDEF;

TEST(SetPixels, SetsItsPixelsAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField field(offset, 4 * width, 0, 1, 1);
            MemoryField expected = field.copy();
            for (std::size_t x = 0; x < width; ++x) {
                expected.set_word(x, 0, kColour);
            }
            set_pixels(pixel_words(field.row(0)), width, kColour);
            ASSERT_TRUE(field.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

TEST(GradientKernels, TouchNoMemoryOutside) {
    GuardedPage page;
    const std::vector<std::int32_t> weights(kEnoughPixels, 128);
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        set_pixels(pixel_words(page.at_start()), width, kColour);
        set_pixels(pixel_words(page.at_end(4 * width)), width, kColour);
        mix_colours(pixel_words(page.at_start()), weights.data(), width, kFirst, kSecond,
                    kLayouts[0]);
        mix_colours(pixel_words(page.at_end(4 * width)), weights.data(), width, kFirst, kSecond,
                    kLayouts[0]);
    }
}

}  // namespace
}  // namespace larkspur::pixel
