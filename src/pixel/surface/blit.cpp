#include "pixel/surface/blit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "base/convert.h"
#include "base/surface.h"
#include "pixel/kernels/colour.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/key_kernels.h"
#include "pixel/kernels/over_kernels.h"
#include "pixel/kernels/pixel_rows.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::pixel {
namespace {

// What is left of a blit along one axis once it is clipped: nothing when the length is not
// positive.
struct Span {
    int from;
    int to;
    int length;
};

struct Area {
    Span x;
    Span y;

    bool is_empty() const noexcept { return x.length <= 0 || y.length <= 0; }
};

// Clips one axis. Positions in the target are 16 bits wide and wrap like SDL's.
Span clip_axis(int from, int length, std::int16_t to, int source_length, int clip_start,
               int clip_length) noexcept {
    if (from < 0) {
        length += from;
        to = low_16_bits(to - from);
        from = 0;
    }
    length = std::min(length, source_length - from);
    const int before = clip_start - to;
    if (before > 0) {
        length -= before;
        to = low_16_bits(to + before);
        from += before;
    }
    const int behind = to + length - clip_start - clip_length;
    if (behind > 0) {
        length -= behind;
    }
    return {from, to, length};
}

// Clips to the source, the target's clip rectangle and the target itself, which the rectangle of a
// native caller may leave.
Area clip(const SDL_Surface& source, const SDL_Rect* from, const SDL_Surface& target,
          const SDL_Rect& to) noexcept {
    const SDL_Rect& bounds = target.clip_rect;
    const int left = std::max<int>(bounds.x, 0);
    const int top = std::max<int>(bounds.y, 0);
    const int right = std::min(bounds.x + bounds.w, target.w);
    const int bottom = std::min(bounds.y + bounds.h, target.h);
    const int x = from != nullptr ? from->x : 0;
    const int y = from != nullptr ? from->y : 0;
    const int width = from != nullptr ? from->w : source.w;
    const int height = from != nullptr ? from->h : source.h;
    return {clip_axis(x, width, to.x, source.w, left, right - left),
            clip_axis(y, height, to.y, source.h, top, bottom - top)};
}

unsigned char* byte_at(const SDL_Surface& surface, int x, int y) noexcept {
    return static_cast<unsigned char*>(surface.pixels) + std::ptrdiff_t{y} * surface.pitch +
           std::ptrdiff_t{x} * surface.format->BytesPerPixel;
}

// The loops: what each does with an area that is not empty.

// Pixels of one format, whatever it is.
void copy(const SDL_Surface& source, const SDL_Surface& target, const Area& area) noexcept {
    copy_rows(byte_at(target, area.x.to, area.y.to), target.pitch,
              byte_at(source, area.x.from, area.y.from), source.pitch,
              static_cast<std::size_t>(area.x.length) * source.format->BytesPerPixel,
              static_cast<std::size_t>(area.y.length));
}

// The others know one kind of pixel, see has_words().

PixelRows rows_of(const SDL_Surface& source, const SDL_Surface& target, const Area& area) noexcept {
    return {pixel_words(byte_at(target, area.x.to, area.y.to)),
            target.pitch,
            pixel_words(byte_at(source, area.x.from, area.y.from)),
            source.pitch,
            static_cast<std::size_t>(area.x.length),
            static_cast<std::size_t>(area.y.length)};
}

bool has_alpha(const SDL_Surface& surface) noexcept {
    return surface.format->Amask != 0;
}

// What copies set in the top byte: the alpha that a target asks for and its source's pixels lack.
std::uint32_t added_alpha(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    return has_alpha(target) && !has_alpha(source) ? std::uint32_t{source.format->alpha} << 24 : 0;
}

void copy_to_other_alpha(const SDL_Surface& source, const SDL_Surface& target,
                         const Area& area) noexcept {
    copy_masked_rows(rows_of(source, target, area), has_alpha(target) ? ~0U : kAllChannels,
                     added_alpha(source, target));
}

// The top byte is compared where it is not alpha.
ColourKey key_of(const SDL_Surface& source) noexcept {
    const std::uint32_t compared = ~source.format->Amask;
    return {source.format->colorkey & compared, compared};
}

void copy_keyed(const SDL_Surface& source, const SDL_Surface& target, const Area& area) noexcept {
    copy_keyed_rows(rows_of(source, target, area), key_of(source),
                    has_alpha(source) && has_alpha(target) ? ~0U : kAllChannels,
                    added_alpha(source, target));
}

void composite_evenly(const SDL_Surface& source, const SDL_Surface& target,
                      const Area& area) noexcept {
    composite_evenly_rows(rows_of(source, target, area), source.format->alpha);
}

// Without any alpha SDL leaves the top bytes alone too.
void composite_keyed(const SDL_Surface& source, const SDL_Surface& target,
                     const Area& area) noexcept {
    if (source.format->alpha != SDL_ALPHA_TRANSPARENT) {
        composite_keyed_rows(rows_of(source, target, area), key_of(source), source.format->alpha,
                             target.format->Amask);
    }
}

void composite_over(const SDL_Surface& source, const SDL_Surface& target,
                    const Area& area) noexcept {
    composite_over_rows(rows_of(source, target, area));
}

// What SDL's blit depends on, as bits of a number.
constexpr unsigned kKeyed = 1;        // the source has a colour key
constexpr unsigned kBlends = 2;       // it has alpha that counts, of its own or of its pixels
constexpr unsigned kSourceAlpha = 4;  // its pixels have alpha
constexpr unsigned kTargetAlpha = 8;  // the target's pixels have alpha
constexpr std::size_t kKinds = 16;

unsigned kind_of(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    const bool keyed = (source.flags & SDL_SRCCOLORKEY) != 0;
    const bool blends = (source.flags & SDL_SRCALPHA) != 0 &&
                        (has_alpha(source) || source.format->alpha != SDL_ALPHA_OPAQUE);
    return kKeyed * keyed | kBlends * blends | kSourceAlpha * has_alpha(source) |
           kTargetAlpha * has_alpha(target);
}

using Loop = void (*)(const SDL_Surface& source, const SDL_Surface& target,
                      const Area& area) noexcept;

// The loop of each kind. Where pixels have alpha that counts, a key does not.
Loop loop_of(unsigned kind) noexcept {
    static constexpr Loop kLoops[][4] = {
        // Neither keyed nor blending; keyed; blending; both.
        {copy, copy_keyed, composite_evenly, composite_keyed},
        {copy_to_other_alpha, copy_keyed, composite_over, composite_over},     // source alpha
        {copy_to_other_alpha, copy_keyed, composite_evenly, composite_keyed},  // target alpha
        {copy, copy_keyed, composite_over, composite_over},                    // both
    };
    return kLoops[kind / 4][kind % 4];
}

// Which surfaces a loop takes.

// Pixels of one byte stand for colours of a palette, which SDL may have to translate.
bool have_same_format(const SDL_PixelFormat& a, const SDL_PixelFormat& b) noexcept {
    return a.BitsPerPixel == b.BitsPerPixel && a.Rmask == b.Rmask && a.Gmask == b.Gmask &&
           a.Bmask == b.Bmask && a.Amask == b.Amask && a.BytesPerPixel > 1;
}

// The masks of three channels, and a byte for the shift of each and of alpha, red's lowest.
struct ChannelOrder {
    std::uint32_t red;
    std::uint32_t green;
    std::uint32_t blue;
    std::uint32_t shifts;
};
constexpr ChannelOrder kRedLowest = {kLowChannel, kMiddleChannel, kHighChannel, 0x18100800};
constexpr ChannelOrder kBlueLowest = {kHighChannel, kMiddleChannel, kLowChannel, 0x18000810};

// Side by side in the record, so that the compiler reads them at once.
std::uint32_t shifts_of(const SDL_PixelFormat& format) noexcept {
    return format.Rshift | format.Gshift << 8 | format.Bshift << 16 |
           std::uint32_t{format.Ashift} << 24;
}

// Words of three channels in this order, and of alpha or nothing in the top byte. Rows are whole
// words apart: where SDL blends, it forgets an odd rest. A host can set shifts that do not fit the
// masks, and SDL goes by either; without alpha the shift of it says nothing. Inline, as it is asked
// twice for each picture that is drawn.
inline bool has_words(const SDL_Surface& surface, const ChannelOrder& order) noexcept {
    const SDL_PixelFormat& format = *surface.format;
    return format.BitsPerPixel == 32 && format.Rmask == order.red && format.Gmask == order.green &&
           format.Bmask == order.blue && (format.Amask == 0 || format.Amask == kTopByte) &&
           ((shifts_of(format) ^ order.shifts) & (kAllChannels | format.Amask)) == 0 &&
           surface.pitch % sizeof(PixelWord) == 0;
}

bool takes(Loop loop, const SDL_Surface& source, const SDL_Surface& target) noexcept {
    if (loop == copy) {
        return have_same_format(*source.format, *target.format);
    }
    const ChannelOrder& order = source.format->Rmask == kLowChannel ? kRedLowest : kBlueLowest;
    return has_words(source, order) && has_words(target, order);
}

// Where that was asked, SDL encodes a picture when it is first drawn; but never one with both alpha
// that counts in its pixels and a colour key, as turned pictures have.
bool is_never_encoded(unsigned kind) noexcept {
    constexpr unsigned kTurned = kKeyed | kBlends | kSourceAlpha;
    return (kind & kTurned) == kTurned;
}

bool may_become_encoded(const SDL_Surface& source, unsigned kind) noexcept {
    return (source.flags & SDL_RLEACCELOK) != 0 && !is_never_encoded(kind);
}

void draw_by(Loop loop, const SDL_Surface& source, const SDL_Rect* from, const SDL_Surface& target,
             SDL_Rect& to) noexcept {
    const Area area = clip(source, from, target, to);
    to = {low_16_bits(area.x.to), low_16_bits(area.y.to), 0, 0};
    if (!area.is_empty()) {
        loop(source, target, area);
        to.w = static_cast<std::uint16_t>(area.x.length);
        to.h = static_cast<std::uint16_t>(area.y.length);
    }
}

// Trying the loops: other builds of SDL clip and round otherwise, or hide their locks.

// A column for each value that a top byte can have.
constexpr int kTrialWidth = 256;
constexpr int kTrialHeight = 32;

struct Piece {
    SDL_Rect from;
    SDL_Rect to;
};

// All of the source, then pieces that go over each edge and past the ends of 16 bits.
constexpr Piece kPieces[] = {
    {{0, 0, kTrialWidth, kTrialHeight}, {0, 0, 0, 0}},
    {{-2, 3, 9, 20}, {5, -2, 0, 0}},
    {{1, -4, 4, 6}, {-1, 4, 0, 0}},
    {{200, 20, 100, 100}, {250, 30, 0, 0}},
    {{0, -32768, 8, 65535}, {3, 32767, 0, 0}},
    {{-32768, 0, 65535, 8}, {32767, 1, 0, 0}},
};

// Two rows, for trying each alpha that a surface can have.
constexpr Piece kStrip = {{0, 1, kTrialWidth, 2}, {0, 0, 0, 0}};

constexpr std::uint32_t kTrialKey = 0x12345678;
constexpr std::uint8_t kTrialAlpha = 100;

// Colours that take in everything, the same in every run, and about a quarter of them the key's.
SurfacePtr new_trial_surface(bool alpha, std::uint32_t seed) noexcept {
    SurfacePtr surface(SDL_CreateRGBSurface(SDL_SWSURFACE, kTrialWidth, kTrialHeight, 32, 0xFF0000,
                                            0xFF00, 0xFF, alpha ? kTopByte : 0));
    if (surface == nullptr) {
        return nullptr;
    }
    for (int y = 0; y < kTrialHeight; ++y) {
        for (int x = 0; x < kTrialWidth; ++x) {
            seed = seed * 1664525U + 1013904223U;
            const std::uint32_t colour = seed >> 30 == 0 ? kTrialKey : seed >> 8;
            *pixel_words(byte_at(*surface, x, y)) =
                (colour & kAllChannels) | static_cast<std::uint32_t>(x) << 24;
        }
    }
    return surface;
}

// Draws a piece by a loop and by SDL, each on its own target.
bool agrees_on(const Piece& piece, Loop loop, SDL_Surface& source, SDL_Surface& our_target,
               SDL_Surface& sdl_target) noexcept {
    SDL_Rect from = piece.from;
    SDL_Rect drawn_by_us = piece.to;
    SDL_Rect drawn_by_sdl = piece.to;
    draw_by(loop, source, &from, our_target, drawn_by_us);
    return SDL_UpperBlit(&source, &from, &sdl_target, &drawn_by_sdl) == 0 &&
           has_plain_pixels(&source) &&
           std::memcmp(&drawn_by_us, &drawn_by_sdl, sizeof drawn_by_us) == 0 &&
           std::memcmp(our_target.pixels, sdl_target.pixels, buffer_bytes(our_target)) == 0;
}

bool agrees_with_sdl(unsigned kind) noexcept {
    const SurfacePtr source = new_trial_surface((kind & kSourceAlpha) != 0, 1);
    const SurfacePtr our_target = new_trial_surface((kind & kTargetAlpha) != 0, 2);
    const SurfacePtr sdl_target = new_trial_surface((kind & kTargetAlpha) != 0, 2);
    if (source == nullptr || our_target == nullptr || sdl_target == nullptr ||
        !locks_show(source.get())) {
        return false;
    }
    const Loop loop = loop_of(kind);
    const auto agrees = [&](const Piece& piece) {
        return agrees_on(piece, loop, *source, *our_target, *sdl_target);
    };

    SDL_SetAlpha(source.get(), (kind & kBlends) != 0 ? SDL_SRCALPHA : 0, kTrialAlpha);
    if ((kind & kKeyed) != 0) {
        // As turned pictures have it.
        const std::uint32_t encoding = is_never_encoded(kind) ? SDL_RLEACCEL : 0;
        SDL_SetColorKey(source.get(), SDL_SRCCOLORKEY | encoding, kTrialKey);
    }
    if (!std::all_of(std::begin(kPieces), std::end(kPieces), agrees)) {
        return false;
    }
    const bool has_one_alpha = (kind & (kBlends | kSourceAlpha)) == kBlends;
    for (int alpha = 0; has_one_alpha && alpha < SDL_ALPHA_OPAQUE; ++alpha) {
        SDL_SetAlpha(source.get(), SDL_SRCALPHA, static_cast<std::uint8_t>(alpha));
        if (!agrees(kStrip)) {
            return false;
        }
    }
    return true;
}

// The loop that takes a pair of surfaces; null for one that is SDL's.
Loop loop_for(const SDL_Surface& source, const SDL_Surface& target) noexcept {
    enum class Verdict : unsigned char { kUntried, kAgrees, kDiffers };
    static std::array<Verdict, kKinds> verdicts = {};

    const unsigned kind = kind_of(source, target);
    const Loop loop = loop_of(kind);
    if ((source.flags & SDL_HWACCEL) != 0 || !has_plain_pixels(&source) ||
        !has_plain_pixels(&target) || may_become_encoded(source, kind) ||
        !takes(loop, source, target) || share_memory(source, target)) {
        return nullptr;
    }
    Verdict& verdict = verdicts[kind];
    if (verdict == Verdict::kUntried) {
        verdict = agrees_with_sdl(kind) ? Verdict::kAgrees : Verdict::kDiffers;
    }
    return verdict == Verdict::kAgrees ? loop : nullptr;
}

}  // namespace

bool blit(SDL_Surface* source, const SDL_Rect* from, SDL_Surface* target, SDL_Rect* to) noexcept {
    if (source == nullptr || target == nullptr) {
        // As SDL itself does; a layer over SDL 2 would read them.
        SDL_SetError("SDL_UpperBlit: passed a NULL surface");
        return false;
    }
    if (source == target && (source->flags & SDL_RLEACCELOK) != 0) {
        to->w = to->h = 0;
        return true;
    }
    if (const Loop loop = loop_for(*source, *target)) {
        draw_by(loop, *source, from, *target, *to);
        return true;
    }
    decode_pixel_alpha(target);  // SDL locks it
    SDL_Rect piece = from != nullptr ? *from : SDL_Rect{};
    return SDL_UpperBlit(source, from != nullptr ? &piece : nullptr, target, to) == 0;
}

}  // namespace larkspur::pixel
