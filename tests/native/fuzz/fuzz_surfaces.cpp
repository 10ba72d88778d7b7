// Everything that is done with SDL's surfaces, of all depths, formats, colour keys, alphas and
// pitches, beside pages that must not be touched, at every dispatch level, against the library that
// is stood in for or the formula: both surfaces' memory, what is returned, and the rectangle.
#include <SDL.h>
#include <SDL_imageFilter.h>
#include <SDL_rotozoom.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include "../pixel/formulas.h"
#include "../pixel/memory_field.h"
#include "../pixel/odd_factors.h"
#include "../pixel/surface/same_pictures.h"
#include "../sdl_layer.h"
#include "attempt.h"
#include "base/surface.h"
#include "input.h"
#include "pixel_level.h"

namespace larkspur::pixel {
namespace {

[[noreturn]] void fail(const char* function, const PixelLevel& level, const char* what,
                       std::ptrdiff_t at = 0) {
    std::fprintf(stderr, "%s at level %s: %s (%td)\n", function, level.name.c_str(), what, at);
    std::abort();
}

constexpr std::size_t kMemoryBytes = 1 << 18;

struct Format {
    int depth;
    Uint32 red, green, blue, alpha;
};

constexpr Format kUsualFormats[] = {{32, 0xFF0000, 0xFF00, 0xFF, 0},
                                    {32, 0xFF0000, 0xFF00, 0xFF, 0xFF000000}};
constexpr Format kFormats[] = {{32, 0xFF, 0xFF00, 0xFF0000, 0},
                               {32, 0xFF, 0xFF00, 0xFF0000, 0xFF000000},
                               {32, 0xFF000000, 0xFF0000, 0xFF00, 0xFF},
                               {32, 0xFF000000, 0xFF0000, 0xFF00, 0},
                               {32, 0xFF00, 0xFF0000, 0xFF, 0},
                               {24, 0xFF0000, 0xFF00, 0xFF, 0},
                               {16, 0xF800, 0x7E0, 0x1F, 0},
                               {16, 0xF00, 0xF0, 0xF, 0xF000},
                               {15, 0x7C00, 0x3E0, 0x1F, 0},
                               {8, 0, 0, 0, 0}};

// How a surface is made, and made again for each level.
struct Plan {
    Format format;
    int width;
    int height;
    int pitch;
    bool at_end;  // of its memory, else where it begins
    Uint32 flags;
    Uint32 key;
    Uint8 alpha;
    bool has_clip;
    SDL_Rect clip;

    int pixel_bytes() const { return (format.depth + 7) / 8; }
    std::size_t bytes() const {
        return static_cast<std::size_t>(pitch) * static_cast<std::size_t>(std::max(height - 1, 0)) +
               static_cast<std::size_t>(pixel_bytes()) * static_cast<std::size_t>(width);
    }
};

SDL_Rect any_rectangle(Input& input, int width, int height) {
    if (input.one_in(12)) {
        return {static_cast<Sint16>(input.word()), static_cast<Sint16>(input.word()),
                static_cast<Uint16>(input.word()), static_cast<Uint16>(input.word())};
    }
    return {static_cast<Sint16>(input.from(-width / 3, width)),
            static_cast<Sint16>(input.from(-height / 3, height)),
            static_cast<Uint16>(input.from(0, width + width / 2 + 2)),
            static_cast<Uint16>(input.from(0, height + height / 2 + 2))};
}

enum class Depths { kAll, k32 };

Plan any_plan(Input& input, Depths depths) {
    Plan plan = {};
    do {
        plan.format = input.byte() < 160 ? input.one_of(kUsualFormats) : input.one_of(kFormats);
    } while (depths == Depths::k32 && plan.format.depth != 32);
    const bool large = input.byte() < 24;
    plan.width = input.from(1, large ? 700 : 44);
    plan.height = input.from(1, large ? 60 : 20);
    plan.pitch = plan.width * plan.pixel_bytes() + input.from(0, 16);
    plan.at_end = input.one_in(2);
    const Uint8 flags = input.byte();
    plan.flags = ((flags & 1) != 0 ? SDL_SRCCOLORKEY : 0) | ((flags & 2) != 0 ? SDL_SRCALPHA : 0) |
                 ((flags & 28) == 28 ? SDL_RLEACCEL : 0);
    plan.key = input.word();
    plan.alpha = input.byte();
    plan.has_clip = input.one_in(3);
    plan.clip = any_rectangle(input, plan.width, plan.height);
    return plan;
}

GuardedMemory& memory_of(int which) {
    static GuardedMemory memories[] = {GuardedMemory(kMemoryBytes), GuardedMemory(kMemoryBytes)};
    return memories[which];
}

// A surface in memory that holds what it should begin with, and what it should end with.
class Place {
 public:
    Place(const Plan& plan, int which, Input& input) : plan_(plan) {
        // SDL reads pixels of 24 bits as words.
        const std::size_t distance = plan.format.depth == 32 ? 0 : 16;
        GuardedMemory& memory = memory_of(which);
        start_ = plan.at_end ? memory.end() - distance - plan.bytes() : memory.begin() + distance;
        from_ = start_ - std::min<std::ptrdiff_t>(64, start_ - memory.begin());
        auto* const end = start_ + plan.bytes();
        auto* const to = end + std::min<std::ptrdiff_t>(64, memory.end() - end);
        input.fill(from_, static_cast<std::size_t>(to - from_));
        if ((plan.flags & SDL_SRCCOLORKEY) != 0 && plan.format.depth == 32) {
            plant_key(input.below(5));
        }
        before_.assign(from_, to);
    }

    /// The surface as it begins.
    SurfacePtr open() const {
        std::copy(before_.begin(), before_.end(), from_);
        const Format& format = plan_.format;
        SurfacePtr surface(SDL_CreateRGBSurfaceFrom(start_, plan_.width, plan_.height, format.depth,
                                                    plan_.pitch, format.red, format.green,
                                                    format.blue, format.alpha));
        if (format.depth == 8) {
            SDL_Color colours[256];
            for (int i = 0; i < 256; ++i) {
                const auto value = static_cast<Uint8>(i);
                colours[i] = {value, static_cast<Uint8>(255 - i), static_cast<Uint8>(i * 7), 0};
            }
            SDL_SetColors(surface.get(), colours, 0, 256);
        }
        SDL_SetAlpha(surface.get(), plan_.flags & (SDL_SRCALPHA | SDL_RLEACCEL), plan_.alpha);
        if ((plan_.flags & SDL_SRCCOLORKEY) != 0) {
            SDL_SetColorKey(surface.get(), plan_.flags & (SDL_SRCCOLORKEY | SDL_RLEACCEL),
                            plan_.key);
        }
        if (plan_.has_clip) {
            SDL_SetClipRect(surface.get(), &plan_.clip);
        }
        return surface;
    }
    /// What became of the memory is what should.
    void expect_this() { expected_.assign(from_, from_ + before_.size()); }
    void check(const char* function, const PixelLevel& level) const {
        if (std::memcmp(from_, expected_.data(), expected_.size()) != 0) {
            const auto different = std::mismatch(expected_.begin(), expected_.end(), from_);
            fail(function, level, "a byte of a surface differs", different.second - start_);
        }
    }

 private:
    // Some pixels get the key's colour, with its top byte or another one.
    void plant_key(std::uint32_t every) {
        for (int y = 0; every != 0 && y < plan_.height; ++y) {
            for (std::uint32_t x = 0; x < static_cast<std::uint32_t>(plan_.width); x += every) {
                const std::uint32_t value = plan_.key ^ (x % 2 == 0 ? 0 : x << 24);
                std::memcpy(start_ + y * plan_.pitch + 4 * x, &value, sizeof value);
            }
        }
    }

    Plan plan_;
    unsigned char* start_;
    unsigned char* from_;
    std::vector<unsigned char> before_;
    std::vector<unsigned char> expected_;
};

struct Outcome {
    bool done = true;
    SDL_Rect drawn = {};
    SurfacePtr picture;
};

// `expected(target, source)` does by the library or the formula what `done(functions, target,
// source)` should; both give an Outcome. Where there is one surface it is both.
template <class Expected, class Done>
void try_on(const char* function, const std::vector<Place*>& places, const Expected& expected,
            const Done& done) {
    const auto opened = [&] {
        std::vector<SurfacePtr> surfaces;
        surfaces.reserve(places.size());
        for (const Place* place : places) {
            surfaces.push_back(place->open());
        }
        return surfaces;
    };
    std::vector<SurfacePtr> surfaces = opened();
    const Outcome should_be = expected(surfaces.front().get(), surfaces.back().get());
    std::vector<Uint32> flags;
    flags.reserve(surfaces.size());
    for (const SurfacePtr& surface : surfaces) {
        flags.push_back(surface->flags);
    }
    surfaces.clear();
    for (Place* place : places) {
        place->expect_this();
    }
    for (const PixelLevel& level : pixel_levels()) {
        surfaces = opened();
        const Outcome is = done(*level.functions, surfaces.front().get(), surfaces.back().get());
        for (std::size_t i = 0; i < surfaces.size(); ++i) {
            if (surfaces[i]->flags != flags[i]) {
                fail(function, level, "flags of a surface differ", surfaces[i]->flags ^ flags[i]);
            }
        }
        if (is.done != should_be.done ||
            std::memcmp(&is.drawn, &should_be.drawn, sizeof is.drawn) != 0) {
            fail(function, level, "the status or the rectangle differs");
        }
        const auto same = same_pictures(is.picture.get(), should_be.picture.get());
        if (!same) {
            fail(function, level, same.message());
        }
        surfaces.clear();
        for (const Place* place : places) {
            place->check(function, level);
        }
    }
}

unsigned char* bytes_of(const SDL_Surface* surface) {
    return static_cast<unsigned char*>(surface->pixels);
}

void try_blit(const char* name, Input& input) {
    const Plan target_plan = any_plan(input, Depths::kAll);
    Plan source_plan = any_plan(input, Depths::kAll);
    if (!input.one_in(4)) {  // no more than alpha may differ
        source_plan.format = target_plan.format;
        source_plan.pitch = source_plan.width * source_plan.pixel_bytes() + input.from(0, 16);
        if (source_plan.format.depth == 32 && input.one_in(2)) {
            source_plan.format.alpha = 0xFF000000 & ~source_plan.format.red;
        }
    }
    const bool onto_itself = input.one_in(12);
    const SDL_Rect piece = any_rectangle(input, source_plan.width, source_plan.height);
    const SDL_Rect place = any_rectangle(input, target_plan.width, target_plan.height);
    const bool whole = input.one_in(2);
    Place target(target_plan, 0, input);
    Place source(source_plan, 1, input);
    const auto drawn_by = [=](auto&& draw) {
        Outcome outcome;
        SDL_Rect from = piece;
        outcome.drawn = place;
        outcome.done = draw(whole ? nullptr : &from, &outcome.drawn);
        return outcome;
    };
    const bool loses_pixels = onto_itself && (target_plan.flags & SDL_RLEACCEL) != 0;
    std::vector<Place*> places = {&target};
    if (!onto_itself) {
        places.push_back(&source);
    }
    if (loses_pixels) {  // by SDL, which then crashes
        return;
    }
    try_on(
        name, places,
        [&](SDL_Surface* to, SDL_Surface* from) {
            return drawn_by([=](SDL_Rect* part, SDL_Rect* drawn) {
                return SDL_UpperBlit(from, part, to, drawn) == 0;
            });
        },
        [&](const PixelFunctions& functions, SDL_Surface* to, SDL_Surface* from) {
            return drawn_by([&](SDL_Rect* part, SDL_Rect* drawn) {
                return functions.blit(from, part, to, drawn);
            });
        });
}

// Bytes of `rows` rows of the source are added to those of the target, as far as both reach.
void add_bytes(const SDL_Surface* target, const SDL_Surface* source, std::ptrdiff_t from,
               std::ptrdiff_t to, int rows, int row_bytes) {
    const auto leaves = [&](const SDL_Surface* surface, std::ptrdiff_t offset) {
        return offset < 0 ||
               offset + row_bytes > static_cast<std::ptrdiff_t>(buffer_bytes(*surface));
    };
    for (int row = 0; row < rows && !leaves(source, from) && !leaves(target, to); ++row) {
        for (int i = 0; i < row_bytes; ++i) {
            const int sum = bytes_of(source)[from + i] + bytes_of(target)[to + i];
            bytes_of(target)[to + i] = static_cast<unsigned char>(std::min(sum, 255));
        }
        from += source->pitch;
        to += target->pitch;
    }
}

void try_additive_blit(const char* name, Input& input) {
    const Plan target_plan = any_plan(input, Depths::kAll);
    const Plan source_plan = any_plan(input, Depths::kAll);
    const int row_bytes =
        4 * input.from(0, target_plan.width) + (input.one_in(4) ? input.from(0, 3) : 0);
    const std::ptrdiff_t from =
        input.one_in(2) ? 0 : input.from(-4, static_cast<int>(source_plan.bytes()));
    const std::ptrdiff_t to = input.from(-4, static_cast<int>(target_plan.bytes()));
    const int rows = input.one_in(8) ? 100000 : input.from(-1, 42);
    Place target(target_plan, 0, input);
    Place source(source_plan, 1, input);
    try_on(
        name, {&target, &source},
        [=](SDL_Surface* target, SDL_Surface* source) {
            add_bytes(target, source, from, to, rows, row_bytes);
            return Outcome();
        },
        [=](const PixelFunctions& functions, SDL_Surface* target, SDL_Surface* source) {
            functions.additive_blit(source, target, from, to, rows, row_bytes);
            return Outcome();
        });
}

void try_flagged_blit(const char* name, Input& input) {
    constexpr int kModes[] = {1, 128, 0};
    const int mode = input.one_of(kModes);
    const Plan target_plan = any_plan(input, Depths::kAll);
    const Plan source_plan = any_plan(input, Depths::kAll);
    SDL_Rect place = any_rectangle(input, target_plan.width, target_plan.height);
    Place target(target_plan, 0, input);
    Place source(source_plan, 1, input);
    const auto expected = [=](SDL_Surface* to, SDL_Surface* from) {
        Outcome outcome;
        outcome.drawn = place;
        if (mode == 0) {
            SDL_UpperBlit(from, nullptr, to, &outcome.drawn);
        } else if (has_32_bit_pixels(*from) && has_32_bit_pixels(*to) &&
                   place.x + from->w < to->w) {
            const int left_out = std::max<int>(-place.x, 0);
            const int top = std::max<int>(place.y, 0);
            add_bytes(to, from, 4 * left_out, top * to->pitch + 4 * std::max<int>(place.x, 0),
                      std::min(from->h, to->h - top), std::max(0, 4 * (from->w - left_out)));
        }
        return outcome;
    };
    try_on(name, {&target, &source}, expected,
           [=](const PixelFunctions& functions, SDL_Surface* to, SDL_Surface* from) {
               Outcome outcome;
               outcome.drawn = place;
               functions.flagged_blit(from, to, &outcome.drawn, mode);
               return outcome;
           });
}

enum class Flip { kV, kH, kVH, kClone };

// A copy whose pixel (x, y) is the source's pixel source_of(x, y), blank where that is outside. A
// copy has more padding than compared, and its alpha and key are those of a new surface.
void try_flip(const char* name, Input& input) {
    constexpr Flip kFlips[] = {Flip::kV, Flip::kH, Flip::kVH, Flip::kClone};
    const Flip flip = input.one_of(kFlips);
    const bool any_depth = flip == Flip::kV || flip == Flip::kClone;
    Place place(any_plan(input, any_depth ? Depths::kAll : Depths::k32), 0, input);
    const auto expected = [=](SDL_Surface* source, SDL_Surface*) {
        const SDL_PixelFormat& format = *source->format;
        Outcome outcome;
        outcome.picture.reset(SDL_CreateRGBSurface(source->flags, source->w, source->h,
                                                   format.BitsPerPixel, format.Rmask, format.Gmask,
                                                   format.Bmask, format.Amask));
        const int bytes = format.BytesPerPixel;
        for (int y = 0; flip != Flip::kClone && y < source->h; ++y) {
            const int row = flip == Flip::kH ? y : source->h - (flip == Flip::kV ? 1 : 0) - y;
            for (int x = 0; row < source->h && x < source->w; ++x) {
                const int column = flip == Flip::kV ? x : source->w - 1 - x;
                std::memcpy(
                    bytes_of(outcome.picture.get()) + y * outcome.picture->pitch + x * bytes,
                    bytes_of(source) + row * source->pitch + column * bytes,
                    static_cast<std::size_t>(bytes));
            }
        }
        return outcome;
    };
    try_on(name, {&place}, expected,
           [=](const PixelFunctions& functions, SDL_Surface* source, SDL_Surface*) {
               Outcome outcome;
               outcome.picture = flip == Flip::kV    ? functions.flip_v(source)
                                 : flip == Flip::kH  ? functions.flip_h(source)
                                 : flip == Flip::kVH ? functions.flip_vh(source)
                                                     : functions.clone_surface(source);
               return outcome;
           });
}

void try_translucentify(const char* name, Input& input) {
    const std::uint8_t alpha = input.byte();
    Place place(any_plan(input, Depths::kAll), 0, input);
    const auto expected = [=](SDL_Surface* surface, SDL_Surface*) {
        if (has_32_bit_pixels(*surface)) {
            const SDL_PixelFormat& format = *surface->format;
            const auto faded = format.Amask == 0xFF000000 ? faded_top : faded_low;
            PixelWord* words = pixel_words(bytes_of(surface));
            for (std::size_t i = 0; i < buffer_bytes(*surface) / 4; ++i) {
                words[i] = faded(words[i], alpha, format.Amask,
                                 format.Rmask | format.Gmask | format.Bmask);
            }
        }
        return Outcome();
    };
    try_on(name, {&place}, expected,
           [=](const PixelFunctions& functions, SDL_Surface* surface, SDL_Surface*) {
               functions.translucentify(surface, alpha);
               return Outcome();
           });
}

Uint32 mapped(std::uint32_t colour, const SDL_Surface* surface) {
    return SDL_MapRGB(surface->format, static_cast<Uint8>(channel(colour, 0)),
                      static_cast<Uint8>(channel(colour, 1)),
                      static_cast<Uint8>(channel(colour, 2)));
}

void try_tint(const char* name, Input& input) {
    const std::uint32_t tint = input.word();
    Place place(any_plan(input, Depths::kAll), 0, input);
    const auto expected = [=](SDL_Surface* surface, SDL_Surface*) {
        const Uint32 loss = mapped(~tint, surface) & ~surface->format->Amask;
        const std::size_t stepped =
            static_cast<std::size_t>(surface->pitch) * static_cast<std::size_t>(surface->h) / 8 * 8;
        for (std::size_t i = 0; has_32_bit_pixels(*surface) && i < buffer_bytes(*surface); ++i) {
            const std::size_t place_in_word = i < stepped ? i % 4 : 3 - i % 4;
            unsigned char& byte = bytes_of(surface)[i];
            byte = subtracted(
                byte, static_cast<int>(channel(loss, static_cast<unsigned>(place_in_word))));
        }
        return Outcome();
    };
    try_on(name, {&place}, expected,
           [=](const PixelFunctions& functions, SDL_Surface* surface, SDL_Surface*) {
               functions.tint_surface(surface, tint);
               return Outcome();
           });
}

// Buffers that a native caller gives.
void try_subtractions(const char* name, Input& input) {
    const int way = input.from(0, 2);
    const int length = input.from(-1, input.byte() < 16 ? 3000 : 150);
    const Uint32 low = input.word();
    const Uint32 high = input.word();
    const int group = way == 0 ? 1 : way == 1 ? 4 : 8;
    Plan plan = {
        kFormats[8], (std::max(length, 1) + group - 1) / group * group, 1, 0, true, 0, 0, 0, false,
        {}};
    plan.format.depth = 8;
    plan.pitch = plan.width;
    Place place(plan, 0, input);
    const auto expected = [=](SDL_Surface* surface, SDL_Surface*) {
        if (way == 0 && length > 0) {
            SDL_imageFilterSubUint(bytes_of(surface), bytes_of(surface),
                                   static_cast<unsigned>(length), low);
        }
        for (int i = 0; way != 0 && length > 0 && i < surface->w; ++i) {
            const auto place_in_word = static_cast<unsigned>(i % 4);
            const Uint32 word = way == 1 || i % 8 < 4 ? low : high;
            bytes_of(surface)[i] =
                subtracted(bytes_of(surface)[i], static_cast<int>(channel(word, place_in_word)));
        }
        return Outcome();
    };
    try_on(name, {&place}, expected,
           [=](const PixelFunctions& functions, SDL_Surface* surface, SDL_Surface*) {
               if (way == 0) {
                   functions.satusub(surface->pixels, length, low);
               } else if (way == 1) {
                   functions.subtract_words(surface->pixels, length, low);
               } else {
                   functions.subtract_word_pairs(surface->pixels, length, low, high);
               }
               return Outcome();
           });
}

void try_rgba_copy(const char* name, Input& input) {
    Place place(any_plan(input, Depths::kAll), 0, input);
    try_on(
        name, {&place},
        [](SDL_Surface* surface, SDL_Surface*) {
            Outcome outcome;
            outcome.picture.reset(SDL_DisplayFormatAlpha(surface));
            return outcome;
        },
        [](const PixelFunctions& functions, SDL_Surface* surface, SDL_Surface*) {
            Outcome outcome;
            outcome.picture = functions.rgba_copy(surface);
            return outcome;
        });
}

// The colour that a gradient has where `fraction` is left of the first colour.
std::uint32_t gradient_colour(std::uint32_t first, std::uint32_t second, float fraction,
                              const SDL_Surface* surface) {
    constexpr PixelLayout kInPlace = {{0, 0}, {0, 8}, {0, 16}, 0};
    return mapped(
        mixed_colour(first, second, static_cast<std::int32_t>(255.0F * fraction), kInPlace),
        surface);
}

// A pixel where painters see it: an odd rest of the pitch counts for nothing.
PixelWord& pixel_at(const SDL_Surface* surface, int x, int y) {
    return pixel_words(bytes_of(surface) + y * (surface->pitch / 4 * 4))[x];
}

enum Painter { kFill, kBlend, kVertical, kHorizontal, kOutline, kPainters };

struct Painting {
    Painter painter;
    Corners corners;
    GradientLayer layers[3];
    std::size_t count;
    std::uint32_t constant;
    std::uint8_t keep;
};

// Calls paint(x, y) of columns x1 .. x2 - 1, rows y1 .. y2 - 1, or y2 if the last one counts.
template <class Paint>
void for_each_inside(const SDL_Surface* surface, const Corners& corners, bool last_row,
                     const Paint& paint) {
    const int last = std::min(corners.y2, surface->h - 1);
    for (int y = std::max(corners.y1, 0); last_row ? y <= last : y < last; ++y) {
        for (int x = std::max(corners.x1, 0); x < std::min(corners.x2, surface->w - 1); ++x) {
            paint(x, y);
        }
    }
}

// What is left of the first colour at `steps` steps from the start, stepped in single precision.
float fraction_after(int steps, std::int64_t length) {
    float fraction = 1.0F;
    const float step = 1.0F / static_cast<float>(length);
    for (int i = 0; i < steps; ++i) {
        fraction -= step;
    }
    return fraction;
}

void outline_by_formula(const SDL_Surface* surface, const Painting& painting) {
    const Corners& corners = painting.corners;
    const std::uint32_t top = painting.layers[0].top;
    const std::uint32_t bottom = painting.layers[0].bottom;
    const int last_column = std::min(corners.x2, surface->w - 1);
    const int last_row = std::min(corners.y2, surface->h - 1);
    const auto set = [&](int x, int y, std::uint32_t pixel) {
        if (x >= 0 && x < surface->w && y >= 0 && y < surface->h) {
            pixel_at(surface, x, y) = pixel;
        }
    };
    for (int x = std::max(corners.x1, 0); x < last_column; ++x) {
        set(x, corners.y1, mapped(top, surface));
        set(x, last_row, mapped(bottom, surface));
    }
    for (int y = std::max(corners.y1, -1); y < last_row; ++y) {
        const float fraction =
            fraction_after(y - corners.y1, std::int64_t{corners.y2} - corners.y1);
        const std::uint32_t side = gradient_colour(top, bottom, fraction, surface);
        set(corners.x1, y + 1, side);
        set(last_column, y + 1, side);
    }
}

void paint_by_formula(const SDL_Surface* surface, const Painting& painting) {
    const Corners& corners = painting.corners;
    const std::uint32_t top = painting.layers[0].top;
    const std::uint32_t bottom = painting.layers[0].bottom;
    const std::int64_t height = std::int64_t{corners.y2} - corners.y1;
    const int last_column = std::min(corners.x2, surface->w - 1);
    switch (painting.painter) {
        case kFill:
            for_each_inside(surface, corners, true, [&](int x, int y) {
                PixelWord& pixel = pixel_at(surface, x, y);
                pixel = filled(pixel, 255U - painting.keep, scaled(top, painting.keep));
            });
            break;
        case kBlend:
            for_each_inside(surface, corners, false, [&](int x, int y) {
                const float fraction = fraction_after(y - corners.y1, height);
                std::uint32_t sum = painting.constant;
                for (std::size_t i = 0; i < painting.count; ++i) {
                    const GradientLayer& layer = painting.layers[i];
                    sum += scaled(gradient_colour(layer.top, layer.bottom, fraction, surface),
                                  layer.weight);
                }
                PixelWord& pixel = pixel_at(surface, x, y);
                pixel = filled(pixel, painting.keep, sum);
            });
            break;
        case kVertical:
            for_each_inside(surface, corners, false, [&](int x, int y) {
                pixel_at(surface, x, y) =
                    gradient_colour(top, bottom, fraction_after(y - corners.y1, height), surface);
            });
            break;
        case kHorizontal:
            for_each_inside(surface, corners, true, [&](int x, int y) {
                const std::int64_t width = std::int64_t{last_column} - corners.x1;
                pixel_at(surface, x, y) =
                    gradient_colour(top, bottom, fraction_after(x - corners.x1, width), surface);
            });
            break;
        default:
            outline_by_formula(surface, painting);
    }
}

// A coordinate of a surface with this side. One from which a gradient is stepped has a lower end.
int any_coordinate(Input& input, int side, bool stepped_from) {
    constexpr int kFarStepped[] = {kLowestCorner, kLowestCorner, 32767, 100000,
                                   std::numeric_limits<int>::max()};
    constexpr int kFar[] = {std::numeric_limits<int>::min(), -32769, 32768, 1 << 24,
                            std::numeric_limits<int>::max()};
    if (input.byte() < 12) {
        return stepped_from ? input.one_of(kFarStepped) : input.one_of(kFar);
    }
    return input.from(-side, 2 * side);
}

void try_painters(const char* name, Input& input) {
    Painting painting = {};
    painting.painter = static_cast<Painter>(input.below(kPainters));
    Plan plan = any_plan(input, Depths::k32);
    plan.flags &= ~static_cast<Uint32>(SDL_RLEACCEL);
    const bool steps_columns = painting.painter == kHorizontal;
    const bool steps_rows = painting.painter != kHorizontal && painting.painter != kFill;
    painting.corners.x1 = any_coordinate(input, plan.width, steps_columns);
    painting.corners.y1 = any_coordinate(input, plan.height, steps_rows);
    painting.corners.x2 = any_coordinate(input, plan.width, false);
    painting.corners.y2 = any_coordinate(input, plan.height, false);
    painting.count = input.below(4);
    for (GradientLayer& layer : painting.layers) {
        layer.top = input.word();
        layer.bottom = input.word();
        layer.weight = input.byte();
    }
    painting.constant = input.word();
    painting.keep = input.byte();
    Place place(plan, 0, input);
    const auto expected = [&](SDL_Surface* surface, SDL_Surface*) {
        paint_by_formula(surface, painting);
        return Outcome();
    };
    const std::uint32_t top = painting.layers[0].top;
    const std::uint32_t bottom = painting.layers[0].bottom;
    try_on(name, {&place}, expected,
           [&](const PixelFunctions& functions, SDL_Surface* surface, SDL_Surface*) {
               switch (painting.painter) {
                   case kFill:
                       functions.translucent_fill_rect(*surface, painting.corners, top,
                                                       painting.keep);
                       break;
                   case kBlend:
                       functions.blend_vertical_gradients(*surface, painting.corners,
                                                          painting.layers, painting.count,
                                                          painting.constant, painting.keep);
                       break;
                   case kVertical:
                       functions.draw_vertical_gradient(*surface, painting.corners, top, bottom);
                       break;
                   case kHorizontal:
                       functions.draw_horizontal_gradient(*surface, painting.corners, top, bottom);
                       break;
                   default:
                       functions.draw_gradient_outline(*surface, painting.corners, top, bottom);
               }
               return Outcome();
           });
}

double any_factor(Input& input) {
    if (input.one_in(8)) {
        return input.one_of(kOddFactors);
    }
    const double factor = input.from(0, 4000) / 1000.0;
    return input.one_in(4) ? -factor : factor;
}

enum Zoom { kZoom, kSmoothZoom, kTurn, kTurnXY, kScaledPicture, kTurnedPicture, kZooms };

struct ZoomCall {
    Zoom zoom;
    double angle_degrees;
    double x;
    double y;
};

// As SDL_gfx draws it, with the clip rectangle of its own size.
SurfacePtr zoomed_by_gfx(SDL_Surface* source, const ZoomCall& call) {
    SurfacePtr picture;
    switch (call.zoom) {
        case kZoom:
        case kSmoothZoom:
            picture.reset(zoomSurface(source, call.x, call.y, call.zoom == kSmoothZoom));
            break;
        case kScaledPicture:
            picture.reset(zoomSurface(source, call.x / source->w, call.y / source->h, 0));
            break;
        case kTurnXY:
            picture.reset(rotozoomSurfaceXY(source, call.angle_degrees, call.x, call.y, 0));
            break;
        default:
            picture.reset(rotozoomSurface(source, call.angle_degrees, call.x, 0));
    }
    if (picture != nullptr) {
        SDL_SetClipRect(picture.get(), nullptr);
    }
    return picture;
}

SurfacePtr zoomed_by_us(const PixelFunctions& functions, SDL_Surface* source,
                        const ZoomCall& call) {
    switch (call.zoom) {
        case kZoom:
        case kSmoothZoom:
            return functions.zoomed(source, call.x, call.y, call.zoom == kSmoothZoom);
        case kScaledPicture:
            return functions.scaled_picture(source, static_cast<std::int64_t>(call.x),
                                            static_cast<std::int64_t>(call.y));
        case kTurn:
            return functions.rotozoomed(source, call.angle_degrees, call.x, false);
        case kTurnXY:
            return functions.rotozoomed_xy(source, call.angle_degrees, call.x, call.y, false);
        default:
            return functions.turned_picture(source, static_cast<int>(call.angle_degrees), call.x);
    }
}

void try_zooms(const char* name, Input& input) {
    ZoomCall call = {static_cast<Zoom>(input.below(kZooms)), 0, any_factor(input), 0};
    call.y = input.one_in(3) ? call.x : any_factor(input);
    if (!input.one_in(6)) {
        call.angle_degrees = input.one_in(4) ? 90 * input.from(-8, 8) : input.from(-500, 500);
    }
    if (call.zoom == kScaledPicture) {
        call.x = input.from(-300, 300);
        call.y = input.from(-300, 300);
    } else if (call.zoom != kTurnedPicture && input.one_in(20)) {
        call.angle_degrees += input.from(0, 1000) / 1000.0;
    }
    Plan plan = any_plan(input, Depths::kAll);
    plan.flags &= ~static_cast<Uint32>(SDL_RLEACCEL);
    const double x = std::fabs(call.x) * (call.zoom == kScaledPicture ? 1 : plan.width);
    const double y =
        std::fabs(call.zoom == kTurn || call.zoom == kTurnedPicture ? call.x : call.y) *
        (call.zoom == kScaledPicture ? 1 : plan.height);
    const bool takes_too_long = x * y > 4e5 || x > 3000 || y > 3000;
    // SDL_gfx would leave the memory of a picture of 8 bits that is mirrored, and its palette where
    // a key lies behind it.
    if (takes_too_long || (plan.format.depth == 8 && (call.x < 0 || call.y < 0))) {
        return;
    }
    if (plan.format.depth == 8) {
        plan.key %= 256;
    }
    Place place(plan, 0, input);
    try_on(
        name, {&place},
        [&](SDL_Surface* source, SDL_Surface*) {
            Outcome outcome;
            outcome.picture = zoomed_by_gfx(source, call);
            return outcome;
        },
        [&](const PixelFunctions& functions, SDL_Surface* source, SDL_Surface*) {
            Outcome outcome;
            outcome.picture = zoomed_by_us(functions, source, call);
            return outcome;
        });
}

void try_mapped_colours(const char* name, Input& input) {
    const std::uint32_t a = input.word();
    const std::uint32_t b = input.word();
    const float t = static_cast<float>(input.below(1001)) / 1000.0F;
    const Place place(any_plan(input, Depths::kAll), 0, input);
    const SurfacePtr surface = place.open();
    for (const PixelLevel& level : pixel_levels()) {
        if (level.functions->map_colour(a, surface->format) != mapped(a, surface.get()) ||
            level.functions->map_interpolated(a, b, t, surface->format) !=
                gradient_colour(a, b, t, surface.get())) {
            fail(name, level, "a colour differs");
        }
    }
}

constexpr Attempt kAttempts[] = {
    {"blit", try_blit},
    {"additive_blit", try_additive_blit},
    {"flagged_blit", try_flagged_blit},
    {"flips", try_flip},
    {"translucentify", try_translucentify},
    {"tint_surface", try_tint},
    {"subtractions", try_subtractions},
    {"rgba_copy", try_rgba_copy},
    {"painters", try_painters},
    {"zooms", try_zooms},
    {"mapped colours", try_mapped_colours},
};

bool has_display() {
    SDL_putenv(const_cast<char*>("SDL_VIDEODRIVER=dummy"));
    return SDL_Init(SDL_INIT_VIDEO) == 0 && SDL_SetVideoMode(64, 48, 32, SDL_SWSURFACE) != nullptr;
}

}  // namespace
}  // namespace larkspur::pixel

// On a layer over SDL 2, which draws all blits itself and may write outside of odd surfaces, there
// is nothing to compare with.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace larkspur::pixel;
    static const bool can_compare = has_display() && !larkspur::is_layer();
    if (can_compare) {
        make_one_of(kAttempts, bytes, count);
    }
    return 0;
}
