// Every kernel, with rows of any width, height, padding and address close to pages that must not be
// touched, at every dispatch level, against its formula: all bytes around as well.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <vector>

#include "../pixel/formulas.h"
#include "../pixel/memory_field.h"
#include "attempt.h"
#include "input.h"
#include "pixel/kernels/colour.h"
#include "pixel_level.h"

namespace larkspur::pixel {
namespace {

[[noreturn]] void fail(const char* what, const char* level, std::ptrdiff_t at = 0, int is = 0,
                       int should_be = 0) {
    std::fprintf(stderr, "%s at level %s: byte %td after the first one is %d, should be %d\n", what,
                 level, at, is, should_be);
    std::abort();
}

constexpr std::size_t kMemoryBytes = 1 << 20;

// Where rows begin in memory: the last one of a field with a negative pitch is the first.
enum class Walk { kForwards, kEither };

// Rows of noise in memory that begins, or ends, up to 63 bytes away from a page that must not be
// touched, and noise around them. What a kernel should make of it is noted beside.
class Field {
 public:
    Field(GuardedMemory& memory, Input& input, std::size_t row_bytes, std::size_t rows,
          Walk walk = Walk::kForwards, unsigned alignment = 1)
        : rows_(rows) {
        constexpr std::ptrdiff_t kAround = 2 * kWidestVectorBytes;
        const std::size_t offset = input.below(64) / alignment * alignment;
        pitch_ = row_bytes + input.below(16) / alignment * alignment;
        backwards_ = walk == Walk::kEither && input.one_in(2);
        const std::size_t bytes = rows == 0 ? 0 : pitch_ * (rows - 1) + row_bytes;
        if (offset + bytes > kMemoryBytes) {
            fail("a field larger than its memory", "none");
        }
        start_ = input.one_in(2) ? memory.begin() + offset : memory.end() - offset - bytes;
        end_ = start_ + bytes;
        from_ = start_ - std::min(kAround, start_ - memory.begin());
        std::uint8_t* const to = end_ + std::min(kAround, memory.end() - end_);
        input.fill(from_, static_cast<std::size_t>(to - from_));
        before_.assign(from_, to);
        expected_ = before_;
    }

    std::ptrdiff_t pitch() const {
        return backwards_ ? -static_cast<std::ptrdiff_t>(pitch_)
                          : static_cast<std::ptrdiff_t>(pitch_);
    }
    unsigned char* first() const { return start_ + (rows_ == 0 ? 0 : offset_of(0)); }
    PixelWord* first_pixel() const { return pixel_words(first()); }

    unsigned char byte(std::size_t i, std::size_t y) const { return before_[place(i, y)]; }
    std::uint32_t word(std::size_t x, std::size_t y) const {
        std::uint32_t value = 0;
        std::memcpy(&value, &before_[place(4 * x, y)], sizeof value);
        return value;
    }
    // Changes what the kernel finds.
    void set_word(std::size_t x, std::size_t y, std::uint32_t value) {
        std::memcpy(&before_[place(4 * x, y)], &value, sizeof value);
        expect(x, y, value);
    }
    void expect(std::size_t x, std::size_t y, std::uint32_t value) {
        std::memcpy(&expected_[place(4 * x, y)], &value, sizeof value);
    }
    void expect_byte(std::size_t i, std::size_t y, unsigned char value) {
        expected_[place(i, y)] = value;
    }

    void restore() const { std::copy(before_.begin(), before_.end(), from_); }
    void check(const char* kernel, const PixelLevel& level) const {
        if (std::memcmp(from_, expected_.data(), expected_.size()) != 0) {
            const auto different = std::mismatch(expected_.begin(), expected_.end(), from_);
            fail(kernel, level.name.c_str(), different.second - start_, *different.second,
                 *different.first);
        }
    }

 private:
    std::size_t offset_of(std::size_t y) const { return pitch_ * (backwards_ ? rows_ - 1 - y : y); }
    std::size_t place(std::size_t i, std::size_t y) const {
        return static_cast<std::size_t>(start_ - from_) + offset_of(y) + i;
    }

    std::size_t rows_;
    std::size_t pitch_;
    bool backwards_;
    unsigned char* start_;
    unsigned char* end_;
    unsigned char* from_;  // where the noise begins
    std::vector<unsigned char> before_;
    std::vector<unsigned char> expected_;
};

GuardedMemory& target_memory() {
    static GuardedMemory memory(kMemoryBytes);
    return memory;
}
GuardedMemory& source_memory() {
    static GuardedMemory memory(kMemoryBytes);
    return memory;
}
GuardedMemory& second_memory() {
    static GuardedMemory memory(kMemoryBytes);
    return memory;
}

// Calls a kernel of each level on the fields as they were made, and looks at all of them.
template <class Call>
void check_all_levels(const char* kernel, std::initializer_list<const Field*> fields,
                      const Call& call) {
    for (const PixelLevel& level : pixel_levels()) {
        for (const Field* field : fields) {
            field->restore();
        }
        call(*level.functions);
        for (const Field* field : fields) {
            field->check(kernel, level);
        }
    }
}

struct Size {
    std::size_t width;
    std::size_t height;
};

// Mostly up to somewhat past two of the widest vectors, sometimes long enough for the ways that
// long rows go.
std::size_t any_width(Input& input, std::size_t least = 0) {
    const std::uint8_t kind = input.byte();
    return least + input.below(kind < 4 ? 4200 : kind < 24 ? 600 : kEnoughPixels + 32);
}
Size any_size(Input& input) {
    const std::size_t width = any_width(input);
    return {width, input.below(6)};
}

// Some pixels get the key's colour, with the key's top byte or another one.
void plant_key(Input& input, Field& source, const Size& size, std::uint32_t key) {
    const std::uint32_t every = input.below(5);
    for (std::size_t y = 0; every != 0 && y < size.height; ++y) {
        for (std::size_t x = y % every; x < size.width; x += every) {
            source.set_word(x, y, key ^ (x % 2 == 0 ? 0 : static_cast<std::uint32_t>(x) << 24));
        }
    }
}

// `draw(functions, rows)` draws rows, `drawn(over, under)` says what becomes of a pixel.
template <class Draw, class Drawn>
void try_rows(const char* kernel, Input& input, const Draw& draw, const Drawn& drawn,
              const std::uint32_t* key = nullptr) {
    const Size size = any_size(input);
    Field target(target_memory(), input, 4 * size.width, size.height);
    Field source(source_memory(), input, 4 * size.width, size.height);
    if (key != nullptr) {
        plant_key(input, source, size, *key);
    }
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            target.expect(x, y, drawn(source.word(x, y), target.word(x, y)));
        }
    }
    check_all_levels(kernel, {&target, &source}, [&](const PixelFunctions& functions) {
        draw(functions, PixelRows{target.first_pixel(), target.pitch(), source.first_pixel(),
                                  source.pitch(), size.width, size.height});
    });
}

void try_add_saturating_rows(const char* name, Input& input) {
    try_rows(
        name, input,
        [](const PixelFunctions& functions, const PixelRows& rows) {
            functions.add_saturating_rows(rows);
        },
        added);
}

void try_composite_over_rows(const char* name, Input& input) {
    try_rows(
        name, input,
        [](const PixelFunctions& functions, const PixelRows& rows) {
            functions.composite_over_rows(rows);
        },
        composited_over);
}

void try_composite_evenly_rows(const char* name, Input& input) {
    const std::uint8_t alpha = input.byte();
    try_rows(
        name, input,
        [=](const PixelFunctions& functions, const PixelRows& rows) {
            functions.composite_evenly_rows(rows, alpha);
        },
        [=](std::uint32_t over, std::uint32_t under) {
            return composited_evenly(over, under, alpha);
        });
}

void try_copy_masked_rows(const char* name, Input& input) {
    const std::uint32_t kept = input.word();
    const std::uint32_t new_bits = input.word();
    try_rows(
        name, input,
        [=](const PixelFunctions& functions, const PixelRows& rows) {
            functions.copy_masked_rows(rows, kept, new_bits);
        },
        [=](std::uint32_t over, std::uint32_t) { return (over & kept) | new_bits; });
}

ColourKey any_key(Input& input) {
    const std::uint32_t compared = input.one_in(2) ? 0xFFFFFFFF : 0x00FFFFFF;
    return {input.word() & compared, compared};
}

void try_copy_keyed_rows(const char* name, Input& input) {
    const ColourKey key = any_key(input);
    const std::uint32_t kept = input.word();
    const std::uint32_t new_bits = input.word();
    try_rows(
        name, input,
        [=](const PixelFunctions& functions, const PixelRows& rows) {
            functions.copy_keyed_rows(rows, key, kept, new_bits);
        },
        [=](std::uint32_t over, std::uint32_t under) {
            return has_colour(over, key) ? under : (over & kept) | new_bits;
        },
        &key.colour);
}

void try_composite_keyed_rows(const char* name, Input& input) {
    const ColourKey key = any_key(input);
    const std::uint8_t alpha = input.byte();
    const std::uint32_t top = input.word() & 0xFE000000;
    try_rows(
        name, input,
        [=](const PixelFunctions& functions, const PixelRows& rows) {
            functions.composite_keyed_rows(rows, key, alpha, top);
        },
        [=](std::uint32_t over, std::uint32_t under) {
            return has_colour(over, key) ? under : composited_up(over, under, alpha, top);
        },
        &key.colour);
}

void try_copy_rows(const char* name, Input& input) {
    const std::size_t row_bytes = 4 * any_width(input) + input.below(4);
    const std::size_t rows = input.below(6);
    const bool repeats = input.one_in(4);
    Field target(target_memory(), input, row_bytes, rows, Walk::kEither);
    Field source(source_memory(), input, row_bytes, std::max<std::size_t>(rows, 1), Walk::kEither);
    for (std::size_t y = 0; y < rows; ++y) {
        for (std::size_t i = 0; i < row_bytes; ++i) {
            target.expect_byte(i, y, source.byte(i, repeats ? 0 : y));
        }
    }
    check_all_levels(name, {&target, &source}, [&](const PixelFunctions& functions) {
        functions.copy_rows(target.first(), target.pitch(), source.first(),
                            repeats ? 0 : source.pitch(), row_bytes, rows);
    });
}

void try_copy_rows_mirrored(const char* name, Input& input) {
    const Size size = any_size(input);
    Field target(target_memory(), input, 4 * size.width, size.height, Walk::kEither);
    Field source(source_memory(), input, 4 * size.width, size.height, Walk::kEither);
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            target.expect(x, y, source.word(size.width - 1 - x, y));
        }
    }
    check_all_levels(name, {&target, &source}, [&](const PixelFunctions& functions) {
        functions.copy_rows_mirrored(target.first(), target.pitch(), source.first(), source.pitch(),
                                     size.width, size.height);
    });
}

void try_scale_top_alpha(const char* name, Input& input) {
    const std::uint8_t alpha = input.byte();
    const std::uint32_t colour_mask = input.one_in(2) ? 0x00FFFFFF : input.word() & 0x00FFFFFF;
    const std::size_t count = any_width(input);
    Field field(target_memory(), input, 4 * count, 1);
    for (std::size_t x = 0; x < count; ++x) {
        field.expect(x, 0, faded_top(field.word(x, 0), alpha, 0xFF000000, colour_mask));
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        functions.scale_top_alpha(field.first_pixel(), count, alpha, 0xFF000000, colour_mask);
    });
}

void try_scale_low_alpha(const char* name, Input& input) {
    constexpr std::uint32_t kAlphaMasks[] = {0, 0xFF, 0xFF00, 0xFF0000};
    const std::uint8_t alpha = input.byte();
    const std::uint32_t alpha_mask = input.one_of(kAlphaMasks);
    const std::uint32_t colour_mask = ~alpha_mask;
    const std::size_t count = any_width(input);
    Field field(target_memory(), input, 4 * count, 1);
    for (std::size_t x = 0; x < count; ++x) {
        field.expect(x, 0, faded_low(field.word(x, 0), alpha, alpha_mask, colour_mask));
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        functions.scale_low_alpha(field.first_pixel(), count, alpha, alpha_mask, colour_mask);
    });
}

void try_fills(const char* name, Input& input) {
    const std::uint8_t keep = input.byte();
    const std::array<std::uint32_t, 5> sums = {input.word(), input.word(), input.word(), 1, 0};
    const bool by_row = input.one_in(2);
    const Size size = any_size(input);
    Field field(target_memory(), input, 4 * size.width, size.height);
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            field.expect(x, y, filled(field.word(x, y), keep, sums[by_row ? y : 0]));
        }
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        if (by_row) {
            functions.fill_each_translucent_row(field.first_pixel(), field.pitch(), size.width,
                                                size.height, keep, sums.data());
        } else {
            functions.fill_translucent_rows(field.first_pixel(), field.pitch(), size.width,
                                            size.height, keep, sums[0]);
        }
    });
}

void try_mix_colours(const char* name, Input& input) {
    const auto any_channel = [&] { return PixelLayout::Channel{input.below(32), input.below(32)}; };
    const PixelLayout layout = {any_channel(), any_channel(), any_channel(), input.word()};
    const std::uint32_t first = input.word();
    const std::uint32_t second = input.word();
    const std::size_t count = any_width(input);
    const std::uint32_t first_weight = input.below(257);
    const std::uint32_t step = input.below(257);
    std::vector<std::int32_t> weights(count);
    Field field(target_memory(), input, 4 * count, 1);
    for (std::size_t x = 0; x < count; ++x) {
        weights[x] = static_cast<std::int32_t>((first_weight + x * step) % 257);
        field.expect(x, 0, mixed_colour(first, second, weights[x], layout));
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        functions.mix_colours(field.first_pixel(), weights.data(), count, first, second, layout);
    });
}

void try_add_scaled(const char* name, Input& input) {
    const std::uint8_t weight = input.byte();
    const std::size_t count = any_width(input);
    Field sums(target_memory(), input, 4 * count, 1, Walk::kForwards, 4);
    Field words(source_memory(), input, 4 * count, 1, Walk::kForwards, 4);
    for (std::size_t x = 0; x < count; ++x) {
        sums.expect(x, 0, sums.word(x, 0) + scaled(words.word(x, 0), weight));
    }
    check_all_levels(name, {&sums, &words}, [&](const PixelFunctions& functions) {
        functions.add_scaled(reinterpret_cast<std::uint32_t*>(sums.first()),
                             reinterpret_cast<const std::uint32_t*>(words.first()), count, weight);
    });
}

void try_set_pixels(const char* name, Input& input) {
    const std::uint32_t colour = input.word();
    const std::size_t count = any_width(input);
    Field field(target_memory(), input, 4 * count, 1);
    for (std::size_t x = 0; x < count; ++x) {
        field.expect(x, 0, colour);
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        functions.set_pixels(field.first_pixel(), count, colour);
    });
}

void try_subtract_saturating(const char* name, Input& input) {
    const BytePattern pattern = pattern_of(input.word(), input.word());
    const std::size_t count = 4 * any_width(input) + input.below(4);
    Field field(target_memory(), input, count, 1);
    for (std::size_t i = 0; i < count; ++i) {
        field.expect_byte(i, 0, subtracted(field.byte(i, 0), pattern[i % kPatternBytes]));
    }
    check_all_levels(name, {&field}, [&](const PixelFunctions& functions) {
        functions.subtract_saturating(field.first(), count, pattern);
    });
}

// Steps of a zoom: fractions of a pixel, about one, some.
std::uint32_t any_step(Input& input) {
    constexpr std::uint32_t kTurns[] = {0, 1, 32768, kPixel - 1, kPixel, kPixel + 1, 2 * kPixel};
    return input.one_in(4) ? input.one_of(kTurns) : input.below(12 * kPixel);
}

// The plain loop of a level and the one that it runs best, in turn.
template <class Call>
void check_both_zooms(const char* name, std::initializer_list<const Field*> fields,
                      const Call& call) {
    check_all_levels(name, fields, [&](const PixelFunctions& functions) {
        call(ZoomKernels{functions.pick_pixels, functions.mix_columns, functions.pick_along_lines,
                         functions.transpose});
    });
    check_all_levels(name, fields, [&](const PixelFunctions& functions) {
        call(functions.fastest_zoom_kernels());
    });
}

void try_pick_pixels(const char* name, Input& input) {
    const std::uint32_t x_step = any_step(input);
    const std::uint32_t y_step = any_step(input) / 4;
    Size size = {any_width(input, 1), 1 + input.below(5)};
    while (column_at(size.width, x_step) > 20000) {
        size.width /= 2;
    }
    const std::size_t from_width = column_at(size.width - 1, x_step) + 1 + input.below(40);
    const std::size_t from_height = column_at(size.height - 1, y_step) + 1;
    Field target(target_memory(), input, 4 * size.width, size.height, Walk::kEither);
    Field source(source_memory(), input, 4 * from_width, from_height, Walk::kEither);
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            target.expect(x, y, source.word(column_at(x, x_step), column_at(y, y_step)));
        }
    }
    check_both_zooms(name, {&target, &source}, [&](const ZoomKernels& kernels) {
        kernels.pick_pixels(target.first_pixel(), target.pitch(), size.width, size.height,
                            {source.first_pixel(), source.pitch(), from_width}, x_step, y_step);
    });
}

void try_mix_columns(const char* name, Input& input) {
    const std::uint32_t step = any_step(input);
    std::size_t width = any_width(input, 1);
    while (column_at(width, step) > 60000) {
        width /= 2;
    }
    const std::size_t from_width = least_width_to_mix(width, step) + input.below(40);
    Field target(target_memory(), input, 4 * width, 1);
    Field source(source_memory(), input, 4 * from_width, 1);
    for (std::size_t x = 0; x < width; ++x) {
        const std::size_t column = column_at(x, step);
        const std::size_t next = std::min(column + 1, from_width - 1);
        target.expect(x, 0,
                      mixed_pixel(source.word(column, 0), source.word(next, 0), share_at(x, step)));
    }
    check_both_zooms(name, {&target, &source}, [&](const ZoomKernels& kernels) {
        kernels.mix_columns(target.first_pixel(), source.first_pixel(), from_width, step, width);
    });
}

void try_mix_rows(const char* name, Input& input) {
    const std::uint32_t share = input.below(kPixel);
    const std::size_t width = any_width(input);
    Field target(target_memory(), input, 4 * width, 1);
    Field first(source_memory(), input, 4 * width, 1);
    Field second(second_memory(), input, 4 * width, 1);
    for (std::size_t x = 0; x < width; ++x) {
        target.expect(x, 0, mixed_pixel(first.word(x, 0), second.word(x, 0), share));
    }
    check_all_levels(name, {&target, &first, &second}, [&](const PixelFunctions& functions) {
        functions.mix_rows(target.first_pixel(), first.first_pixel(), second.first_pixel(), share,
                           width);
    });
}

void try_pick_along_lines(const char* name, Input& input) {
    constexpr int kFarthest = 120;
    const int width = input.from(1, 200);
    const std::size_t height = input.below(5);
    const Size of = {1 + input.below(80), 1 + input.below(80)};
    const auto any_place = [&] {
        return std::int64_t{input.from(-kFarthest, kFarthest)} * kPixel + input.below(kPixel);
    };
    const auto any_line_step = [&] {
        const auto step = static_cast<std::int64_t>(any_step(input) / 4);
        return input.one_in(2) ? step : -step;
    };
    const std::int64_t x_step = any_line_step();
    const std::int64_t y_step = any_line_step();
    Field target(target_memory(), input, 4 * static_cast<std::size_t>(width), height,
                 Walk::kForwards, 4);
    Field source(source_memory(), input, 4 * of.width, of.height, Walk::kForwards, 4);
    std::vector<SourceLine> lines;
    for (std::size_t y = 0; y < height; ++y) {
        const std::int64_t start_x = any_place();
        const std::int64_t start_y = any_place();
        lines.push_back(inner_line(start_x, start_y, x_step, y_step, width,
                                   static_cast<std::int64_t>(of.width),
                                   static_cast<std::int64_t>(of.height)));
        for (int x = lines[y].first; x < lines[y].end; ++x) {
            target.expect(static_cast<std::size_t>(x), y,
                          source.word(static_cast<std::size_t>(start_x + x * x_step) / kPixel,
                                      static_cast<std::size_t>(start_y + x * y_step) / kPixel));
        }
    }
    check_both_zooms(name, {&target, &source}, [&](const ZoomKernels& kernels) {
        kernels.pick_along_lines(target.first_pixel(), target.pitch(), source.first_pixel(),
                                 source.pitch(), lines.data(), height,
                                 static_cast<std::uint32_t>(x_step),
                                 static_cast<std::uint32_t>(y_step));
    });
}

void try_transpose(const char* name, Input& input) {
    const Size size = {input.below(70), input.below(70)};
    Field target(target_memory(), input, 4 * size.width, size.height, Walk::kEither);
    Field source(source_memory(), input, 4 * size.height, size.width, Walk::kEither);
    for (std::size_t y = 0; y < size.height; ++y) {
        for (std::size_t x = 0; x < size.width; ++x) {
            target.expect(x, y, source.word(y, x));
        }
    }
    check_both_zooms(name, {&target, &source}, [&](const ZoomKernels& kernels) {
        kernels.transpose(target.first_pixel(), target.pitch(), source.first_pixel(),
                          source.pitch(), size.width, size.height);
    });
}

// The arithmetic on single colours, which is compiled into whoever uses it.
void try_colours(const char* name, Input& input) {
    const std::uint32_t a = input.word();
    const std::uint32_t b = input.word();
    const std::uint8_t alpha = input.byte();
    const auto weight = static_cast<std::int32_t>(input.below(257));
    constexpr PixelLayout kInPlace = {{0, 0}, {0, 8}, {0, 16}, 0};
    const float t = input.single();
    const float product = 255.0F * t;
    const bool fits = std::fabs(product) < 2147483648.0F;
    const std::int32_t truncated = fits ? static_cast<std::int32_t>(std::trunc(product))
                                        : std::numeric_limits<std::int32_t>::min();
    if (multalpha(a, alpha) != scaled(a, alpha) ||
        blend(a, b, weight) != mixed_colour(a, b, weight, kInPlace) ||
        interpolate_unformatted(a, b, static_cast<float>(weight) / 256) !=
            mixed_colour(a, b, weight, kInPlace) ||
        gradient_weight(t) != truncated) {
        fail(name, "this program");
    }
}

constexpr Attempt kAttempts[] = {
    {"add_saturating_rows", try_add_saturating_rows},
    {"composite_over_rows", try_composite_over_rows},
    {"composite_evenly_rows", try_composite_evenly_rows},
    {"copy_masked_rows", try_copy_masked_rows},
    {"copy_keyed_rows", try_copy_keyed_rows},
    {"composite_keyed_rows", try_composite_keyed_rows},
    {"copy_rows", try_copy_rows},
    {"copy_rows_mirrored", try_copy_rows_mirrored},
    {"scale_top_alpha", try_scale_top_alpha},
    {"scale_low_alpha", try_scale_low_alpha},
    {"fill_translucent_rows", try_fills},
    {"mix_colours", try_mix_colours},
    {"add_scaled", try_add_scaled},
    {"set_pixels", try_set_pixels},
    {"subtract_saturating", try_subtract_saturating},
    {"pick_pixels", try_pick_pixels},
    {"mix_columns", try_mix_columns},
    {"mix_rows", try_mix_rows},
    {"pick_along_lines", try_pick_along_lines},
    {"transpose", try_transpose},
    {"colours", try_colours},
};

}  // namespace
}  // namespace larkspur::pixel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace larkspur::pixel;
    make_one_of(kAttempts, bytes, count);
    return 0;
}
