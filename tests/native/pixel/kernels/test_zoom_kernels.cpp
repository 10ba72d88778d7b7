#include "pixel/kernels/zoom_kernels.h"

#include <algorithm>
#include <random>
#include <vector>

#include "../formulas.h"
#include "../memory_field.h"
#include "gtest/gtest.h"
#include "pixel/kernels/zoom_kernels_avx2.h"

namespace larkspur::pixel {
namespace {

// The plain loops, and those that this processor runs best.
const ZoomKernels kBoth[] = {{pick_pixels, mix_columns, pick_along_lines, transpose},
                             fastest_zoom_kernels()};

// Fractions of a pixel, its multiples, and what ends in one vector, in two and in none of them.
constexpr std::uint32_t kSteps[] = {0,      1,         4000,          21845,
                                    32768,  40000,     65535,         kPixel,
                                    65537,  70000,     2 * 65536,     2 * 65536 + 1234,
                                    140434, 140435,    145000,        150000,
                                    200000, 3 * 65536, 10 * 65536 + 1};

// Narrowest sources of rows of a width, and some that are wider.
std::vector<std::size_t> source_widths(std::size_t least) {
    return {least, least + 1, least + 7, least + 40};
}

LookedUp all_of(MemoryField& source, std::size_t width) {
    return {pixel_words(source.row(0)), source.pitch(), width};
}

// Five rows of a width, of three of a source.
void check_picking(const ZoomKernels& kernels, std::size_t width, std::size_t from_width,
                   std::uint32_t step) {
    constexpr std::uint32_t kYStep = 40000;
    MemoryField target(4 * (width % 16) + 1, 4 * width, width % 3, 5, 21);
    MemoryField source(4 * (width % 5) + 3, 4 * from_width, width % 2, 3, 22);
    MemoryField expected = target.copy();
    for (std::size_t y = 0; y < 5; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            expected.set_word(x, y, source.word(column_at(x, step), column_at(y, kYStep)));
        }
    }
    kernels.pick_pixels(pixel_words(target.row(0)), target.pitch(), width, 5,
                        all_of(source, from_width), step, kYStep);
    ASSERT_TRUE(target.equals(expected))
        << "width " << width << " of " << from_width << ", step " << step;
}

TEST(PickPixels, TakesThePixelAtEachPlaceAtEveryWidthAndStep) {
    for (const ZoomKernels& kernels : kBoth) {
        for (std::size_t width = 1; width <= kEnoughPixels; ++width) {
            for (const std::uint32_t step : kSteps) {
                for (const std::size_t from_width : source_widths(column_at(width - 1, step) + 1)) {
                    check_picking(kernels, width, from_width, step);
                }
            }
        }
    }
}

TEST(PickPixels, TakesThePixelAtEachPlaceOfLongRows) {
    for (const ZoomKernels& kernels : kBoth) {
        for (const std::size_t width : {257, 1000, 2047, 2048, 2049, 2055, 2056, 2057, 4103}) {
            for (const std::uint32_t step : kSteps) {
                check_picking(kernels, width, column_at(width - 1, step) + 1, step);
            }
        }
    }
}

TEST(PickPixels, WalksRowsBackwardsWithANegativePitch) {
    constexpr std::size_t kWidth = 21;
    for (const ZoomKernels& kernels : kBoth) {
        MemoryField target(0, 4 * kWidth, 4, 4, 23);
        MemoryField source(0, 4 * kWidth, 8, 2, 24);
        MemoryField expected = target.copy();
        for (std::size_t y = 0; y < 4; ++y) {
            for (std::size_t x = 0; x < kWidth; ++x) {
                expected.set_word(x, 3 - y, source.word(x, 1 - y / 2));
            }
        }
        kernels.pick_pixels(pixel_words(target.row(3)), -target.pitch(), kWidth, 4,
                            {pixel_words(source.row(1)), -source.pitch(), kWidth}, kPixel,
                            kPixel / 2);
        ASSERT_TRUE(target.equals(expected));
    }
}

TEST(MixColumns, MixesThePixelsAroundEachPlaceAtEveryWidthAndStep) {
    for (const ZoomKernels& kernels : kBoth) {
        for (std::size_t width = 1; width <= kEnoughPixels; ++width) {
            for (const std::uint32_t step : kSteps) {
                for (const std::size_t from_width :
                     source_widths(least_width_to_mix(width, step))) {
                    MemoryField target(4 * (width % 16) + 1, 4 * width, 0, 1, 23);
                    MemoryField source(4 * (width % 5) + 3, 4 * from_width, 0, 1, 24);
                    MemoryField expected = target.copy();
                    for (std::size_t x = 0; x < width; ++x) {
                        const std::size_t column = column_at(x, step);
                        const std::size_t next = std::min(column + 1, from_width - 1);
                        expected.set_word(x, 0,
                                          mixed_pixel(source.word(column, 0), source.word(next, 0),
                                                      share_at(x, step)));
                    }
                    kernels.mix_columns(pixel_words(target.row(0)), pixel_words(source.row(0)),
                                        from_width, step, width);
                    ASSERT_TRUE(target.equals(expected))
                        << "width " << width << " of " << from_width << ", step " << step;
                }
            }
        }
    }
}

// All pairs of bytes, each in another channel of a pixel, and all shares.
TEST(MixColumns, MixesEveryByteWithEveryByte) {
    constexpr std::size_t kWidth = 257;
    constexpr std::uint32_t kStep = 255;  // a share of each kind between two pixels
    for (const ZoomKernels& kernels : kBoth) {
        MemoryField target(0, 4 * kWidth, 0, 1, 25);
        MemoryField source(0, 4 * 2, 0, 1, 26);
        for (std::uint32_t a = 0; a < 256; ++a) {
            for (std::uint32_t b = 0; b < 256; ++b) {
                const std::uint32_t first = a << 24 | b << 16 | (255 - a) << 8 | (a ^ 0x5A);
                const std::uint32_t second = b << 24 | a << 16 | b << 8 | (b ^ 0xC3);
                source.set_word(0, 0, first);
                source.set_word(1, 0, second);
                kernels.mix_columns(pixel_words(target.row(0)), pixel_words(source.row(0)), 2,
                                    kStep, kWidth);
                for (std::size_t x = 0; x < kWidth; ++x) {
                    ASSERT_EQ(target.word(x, 0), mixed_pixel(first, second, share_at(x, kStep)))
                        << first << ", " << second << " at " << x;
                }
            }
        }
    }
}

TEST(MixRows, MixesEveryByteWithEveryByte) {
    MemoryField target(0, 4 * 256, 0, 1, 27);
    MemoryField first(0, 4 * 256, 0, 1, 28);
    MemoryField second(0, 4 * 256, 0, 1, 29);
    std::vector<std::uint32_t> shares = {0, 1, 255, 256, 32767, 32768, 32769, 65534, 65535};
    std::mt19937 random(30);
    std::generate_n(std::back_inserter(shares), 60, [&] { return random() % kPixel; });
    for (const std::uint32_t share : shares) {
        for (std::uint32_t a = 0; a < 256; ++a) {
            for (std::uint32_t b = 0; b < 256; ++b) {
                first.set_word(b, 0, a << 24 | b << 16 | (255 - a) << 8 | (a ^ 0x5A));
                second.set_word(b, 0, b << 24 | a << 16 | b << 8 | (b ^ 0xC3));
            }
            mix_rows(pixel_words(target.row(0)), pixel_words(first.row(0)),
                     pixel_words(second.row(0)), share, 256);
            for (std::uint32_t b = 0; b < 256; ++b) {
                ASSERT_EQ(target.word(b, 0),
                          mixed_pixel(first.word(b, 0), second.word(b, 0), share))
                    << a << ", " << b << ", share " << share;
            }
        }
    }
}

TEST(MixRows, KeepsToItsPixelsAtEveryWidthAndOffset) {
    for (std::size_t width = 0; width <= kEnoughPixels; ++width) {
        for (std::size_t offset = 0; offset < kWidestVectorBytes; ++offset) {
            MemoryField target(offset, 4 * width, 0, 1, 31);
            MemoryField first((offset + 5) % kWidestVectorBytes, 4 * width, 0, 1, 32);
            MemoryField second((3 * offset) % kWidestVectorBytes, 4 * width, 0, 1, 33);
            MemoryField expected = target.copy();
            for (std::size_t x = 0; x < width; ++x) {
                expected.set_word(x, 0, mixed_pixel(first.word(x, 0), second.word(x, 0), 43210));
            }
            mix_rows(pixel_words(target.row(0)), pixel_words(first.row(0)),
                     pixel_words(second.row(0)), 43210, width);
            ASSERT_TRUE(target.equals(expected)) << "width " << width << ", offset " << offset;
        }
    }
}

// The source of lines is a square.
constexpr std::size_t kSide = 60;

TEST(PickAlongLines, TakesThePixelsInsideAlongEachLine) {
    constexpr std::size_t kRows = 5;
    std::mt19937 random(34);
    const auto between = [&](std::int64_t least, std::int64_t most) {
        return least +
               static_cast<std::int64_t>(random() % static_cast<std::uint32_t>(most - least));
    };
    std::vector<MemoryField> sources;
    for (std::size_t padding = 0; padding < 5; ++padding) {
        sources.emplace_back(8, 4 * kSide, 4 * padding, kSide, 36);
    }
    for (int round = 0; round < 3000; ++round) {
        const int width = static_cast<int>(between(1, 150));
        const std::int64_t x_step = round % 7 == 0 ? 0 : between(-2 * 65536, 2 * 65536);
        const std::int64_t y_step = round % 5 == 0 ? 0 : between(-2 * 65536, 2 * 65536);
        MemoryField target(4, 4 * static_cast<std::size_t>(width), 8, kRows, 35);
        MemoryField& source = sources[static_cast<std::size_t>(between(0, 5))];
        MemoryField expected = target.copy();
        std::vector<SourceLine> lines;
        for (std::size_t y = 0; y < kRows; ++y) {
            const std::int64_t start_x = between(-80 * 65536, 140 * 65536);
            const std::int64_t start_y = between(-80 * 65536, 140 * 65536);
            lines.push_back(inner_line(start_x, start_y, x_step, y_step, width, kSide, kSide));
            for (int x = lines[y].first; x < lines[y].end; ++x) {
                expected.set_word(
                    static_cast<std::size_t>(x), y,
                    source.word(static_cast<std::size_t>(start_x + x * x_step) / kPixel,
                                static_cast<std::size_t>(start_y + x * y_step) / kPixel));
            }
        }
        for (const ZoomKernels& kernels : kBoth) {
            MemoryField drawn = target.copy();
            kernels.pick_along_lines(pixel_words(drawn.row(0)), drawn.pitch(),
                                     pixel_words(source.row(0)), source.pitch(), lines.data(),
                                     kRows, static_cast<std::uint32_t>(x_step),
                                     static_cast<std::uint32_t>(y_step));
            ASSERT_TRUE(drawn.equals(expected)) << "round " << round;
        }
    }
}

TEST(Transpose, SwapsRowsAndColumnsOfEverySize) {
    for (const ZoomKernels& kernels : kBoth) {
        for (std::size_t width = 0; width <= 26; ++width) {
            for (std::size_t height = 0; height <= 26; ++height) {
                MemoryField target(4 * (width % 16) + 1, 4 * width, height % 5, height, 37);
                MemoryField source(4 * (width % 5) + 3, 4 * height, width % 3, width, 38);
                MemoryField expected = target.copy();
                for (std::size_t y = 0; y < height; ++y) {
                    for (std::size_t x = 0; x < width; ++x) {
                        expected.set_word(x, y, source.word(y, x));
                    }
                }
                kernels.transpose(pixel_words(target.row(0)), target.pitch(),
                                  pixel_words(source.row(0)), source.pitch(), width, height);
                ASSERT_TRUE(target.equals(expected)) << width << " x " << height;
            }
        }
    }
}

TEST(Transpose, WalksRowsBackwardsWithANegativePitch) {
    constexpr std::size_t kWidth = 19;
    constexpr std::size_t kHeight = 21;
    for (const ZoomKernels& kernels : kBoth) {
        MemoryField target(0, 4 * kWidth, 4, kHeight, 39);
        MemoryField source(0, 4 * kHeight, 8, kWidth, 40);
        MemoryField expected = target.copy();
        for (std::size_t y = 0; y < kHeight; ++y) {
            for (std::size_t x = 0; x < kWidth; ++x) {
                expected.set_word(x, kHeight - 1 - y, source.word(y, kWidth - 1 - x));
            }
        }
        kernels.transpose(pixel_words(target.row(kHeight - 1)), -target.pitch(),
                          pixel_words(source.row(kWidth - 1)), -source.pitch(), kWidth, kHeight);
        ASSERT_TRUE(target.equals(expected));
    }
}

TEST(ZoomKernels, TouchNoMemoryOutside) {
    GuardedPage target;
    GuardedPage source;
    const auto at_both_ends = [&](std::size_t from_width, std::size_t width, auto kernel) {
        kernel(pixel_words(target.at_start()), pixel_words(source.at_end(4 * from_width)));
        kernel(pixel_words(target.at_end(4 * width)), pixel_words(source.at_start()));
        kernel(pixel_words(target.at_end(4 * width)), pixel_words(source.at_end(4 * from_width)));
    };
    for (const ZoomKernels& kernels : kBoth) {
        for (std::size_t width = 1; width <= kEnoughPixels; ++width) {
            at_both_ends(width, width, [&](PixelWord* to, const PixelWord* from) {
                mix_rows(to, from, from, 1234, width);
            });
            const SourceLine line = {0, 0, 0, static_cast<std::int32_t>(width)};
            at_both_ends(width, width, [&](PixelWord* to, const PixelWord* from) {
                kernels.pick_along_lines(to, 0, from, 4 * 200, &line, 1, kPixel, 0);
            });
            const auto pitch = static_cast<std::ptrdiff_t>(4 * width);
            at_both_ends(width * 10, width * 10, [&](PixelWord* to, const PixelWord* from) {
                kernels.transpose(to, pitch, from, 4 * 10, width, 10);
            });
            for (const std::uint32_t step : kSteps) {
                const std::size_t picked = column_at(width - 1, step) + 1;
                at_both_ends(picked, width, [&](PixelWord* to, const PixelWord* from) {
                    kernels.pick_pixels(to, 0, width, 1, {from, 0, picked}, step, 0);
                });
                const std::size_t mixed_of = least_width_to_mix(width, step);
                at_both_ends(mixed_of, width, [&](PixelWord* to, const PixelWord* from) {
                    kernels.mix_columns(to, from, mixed_of, step, width);
                });
            }
        }
    }
}

}  // namespace
}  // namespace larkspur::pixel
