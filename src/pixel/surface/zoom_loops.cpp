#include "pixel/surface/zoom_loops.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>

#include "base/surface.h"
#include "pixel/kernels/copy_kernels.h"
#include "pixel/kernels/pixel_word.h"
#include "pixel/kernels/zoom_kernels_avx2.h"

namespace larkspur::pixel {
namespace {

// Places are counted in 65536ths of a pixel.
constexpr unsigned kPixelShift = 16;
constexpr std::int64_t kPixel = 1 << kPixelShift;
constexpr std::uint32_t kShareMask = 0xFFFF;

const ZoomKernels& kernels() noexcept {
    static const ZoomKernels fastest = fastest_zoom_kernels();
    return fastest;
}

PixelWord* row_of(const SDL_Surface& surface, int y) noexcept {
    auto* row = static_cast<unsigned char*>(surface.pixels) + std::ptrdiff_t{y} * surface.pitch;
    return pixel_words(row);
}

std::uint32_t step_between(int from_side, int side) noexcept {
    return (static_cast<std::uint32_t>(from_side) << kPixelShift) /
           static_cast<std::uint32_t>(side);
}

// Memory of rows of pixels; null when there is none.
using RowMemory = std::unique_ptr<std::uint32_t[]>;

RowMemory new_rows(int rows, int width) noexcept {
    const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(width);
    return RowMemory(new (std::nothrow) std::uint32_t[count]);
}

// A picture of 4096 x 4096 pixels. SDL_gfx mirrors larger ones in place.
constexpr std::ptrdiff_t kMostMirroredBytes = 64 << 20;

// The pixels of a surface, mirrored where that is asked: from left to right in a copy.
class SourcePixels {
 public:
    SourcePixels(const SDL_Surface& surface, Mirroring mirroring) noexcept
        : pixels_{row_of(surface, 0), surface.pitch, static_cast<std::size_t>(surface.w)} {
        if (mirroring.left_right) {
            usable_ = mirror_columns(surface.h);
        }
        if (mirroring.top_bottom) {
            pixels_.pixels = pixels_.row(static_cast<std::size_t>(surface.h - 1));
            pixels_.pitch_bytes = -pixels_.pitch_bytes;
        }
    }

    explicit operator bool() const noexcept { return usable_; }

    const LookedUp& get() const noexcept { return pixels_; }

 private:
    // False when there is no memory for the copy, or it would take too much.
    bool mirror_columns(int height) noexcept {
        const auto pitch_bytes = static_cast<std::ptrdiff_t>(pixels_.width * sizeof(PixelWord));
        if (pitch_bytes * height > kMostMirroredBytes) {
            return false;
        }
        mirrored_ = new_rows(height, static_cast<int>(pixels_.width));
        if (mirrored_ == nullptr) {
            return false;
        }
        copy_rows_mirrored(reinterpret_cast<unsigned char*>(mirrored_.get()), pitch_bytes,
                           reinterpret_cast<const unsigned char*>(pixels_.pixels),
                           pixels_.pitch_bytes, pixels_.width, static_cast<std::size_t>(height));
        pixels_ = {mirrored_.get(), pitch_bytes, pixels_.width};
        return true;
    }

    LookedUp pixels_;
    RowMemory mirrored_;
    bool usable_ = true;
};

// Each pixel is the one of the source that lies at its place.
void fill_picked(SDL_Surface& target, const SDL_Surface& source, const LookedUp& pixels) noexcept {
    kernels().pick_pixels(row_of(target, 0), target.pitch, static_cast<std::size_t>(target.w),
                          static_cast<std::size_t>(target.h), pixels,
                          step_between(source.w, target.w), step_between(source.h, target.h));
}

// Rows of the source, mixed to the target's width. The last two are kept: up to a step of a pixel
// each serves several rows of the target.
class MixedRows {
 public:
    MixedRows(const LookedUp& from, std::uint32_t step, int width) noexcept
        : from_(from),
          memory_(new_rows(2, width)),
          step_(step),
          width_(static_cast<std::size_t>(width)) {}

    explicit operator bool() const noexcept { return memory_ != nullptr; }

    const PixelWord* row(int y) noexcept {
        const std::size_t place = static_cast<std::size_t>(y) % kept_.size();
        PixelWord* row = memory_.get() + place * width_;
        if (kept_[place] != y) {
            kernels().mix_columns(row, from_.row(static_cast<std::size_t>(y)), from_.width, step_,
                                  width_);
            kept_[place] = y;
        }
        return row;
    }

 private:
    const LookedUp& from_;
    RowMemory memory_;
    std::uint32_t step_;
    std::size_t width_;
    std::array<int, 2> kept_ = {-1, -1};
};

// Each pixel is mixed of the four of the source around its place. First and last pixels are the
// source's own. False when there is no memory for it.
bool fill_mixed(SDL_Surface& target, const SDL_Surface& source, const LookedUp& pixels) noexcept {
    const auto step_to_last = [](int from_side, int side) {
        return side > 1 ? step_between(from_side - 1, side - 1) : 0;
    };
    const std::uint32_t y_step = step_to_last(source.h, target.h);
    MixedRows mixed(pixels, step_to_last(source.w, target.w), target.w);
    if (!mixed) {
        return false;
    }
    for (int y = 0; y < target.h; ++y) {
        const std::uint32_t place = static_cast<std::uint32_t>(y) * y_step;
        const int from = static_cast<int>(place >> kPixelShift);
        const std::uint32_t share = place & kShareMask;
        const PixelWord* first = mixed.row(from);
        // Without a share of its own the next row may not be there.
        const PixelWord* second = share != 0 ? mixed.row(from + 1) : first;
        mix_rows(row_of(target, y), first, second, share, static_cast<std::size_t>(target.w));
    }
    return true;
}

// Places along one axis of the source: at the target's pixel (x, y) it is
// start + x * column_step + y * row_step.
struct SourceAxis {
    std::int64_t start;
    std::int64_t column_step;
    std::int64_t row_step;
    std::int64_t end;  // of the source

    // Counts from the other end.
    void mirror() noexcept {
        start = end - 1 - start;
        column_step = -column_step;
        row_step = -row_step;
    }
    std::int64_t at(int x, int y) const noexcept { return start + x * column_step + y * row_step; }
    // Whether all places of a picture are numbers of 32 bits, beyond which SDL_gfx wraps.
    bool fits(const SDL_Surface& target) const noexcept {
        for (const int x : {0, target.w - 1}) {
            for (const int y : {0, target.h - 1}) {
                if (at(x, y) != static_cast<std::int32_t>(at(x, y))) {
                    return false;
                }
            }
        }
        return true;
    }
};

// The smallest number from 0 on that a step of at least 1 takes to `place`, its reciprocal given.
// Places have at most 33 bits: the product, in double precision, is off by so little that it never
// reaches the next whole number, and by less than one step below its own.
std::int64_t steps_to(std::int64_t place, std::int64_t step, double reciprocal) noexcept {
    const std::int64_t way = std::max<std::int64_t>(place, 0);
    const auto steps = static_cast<std::int64_t>(static_cast<double>(way) * reciprocal);
    return steps + (way - steps * step > 0 ? 1 : 0);
}

// The pixels of a row (or of a column, by the other step) from `first` to before `end` that lie
// inside along one axis.
class InsideOf {
 public:
    InsideOf(const SourceAxis& axis, std::int64_t step) noexcept
        : end_(axis.end),
          step_(std::abs(step)),
          backwards_(step < 0),
          reciprocal_(1.0 / static_cast<double>(step_)) {}

    // Narrows the pixels to those inside; `place` is that of the row's pixel 0.
    void narrow(std::int64_t place, std::int64_t& first, std::int64_t& end) const noexcept {
        if (step_ == 0) {
            end = place >= 0 && place < end_ ? end : first;
            return;
        }
        const std::int64_t before = backwards_ ? place - (end_ - 1) : -place;
        const std::int64_t left = backwards_ ? place + 1 : end_ - place;
        first = std::max(first, steps_to(before, step_, reciprocal_));
        end = std::min(end, steps_to(left, step_, reciprocal_));
    }

 private:
    std::int64_t end_;
    std::int64_t step_;
    bool backwards_;
    double reciprocal_;
};

// Whether rows become columns, in either direction, pixel by pixel. The other axis has the same
// steps, exchanged.
bool is_quarter_turn(const SourceAxis& x_axis) noexcept {
    return x_axis.column_step == 0 && std::abs(x_axis.row_step) == kPixel;
}

// Its middle shows the source's, so there is always something to fill.
void fill_by_quarter_turn(SDL_Surface& target, const SDL_Surface& source, const SourceAxis& x_axis,
                          const SourceAxis& y_axis) noexcept {
    std::int64_t left = 0;
    std::int64_t right = target.w;
    InsideOf(y_axis, y_axis.column_step).narrow(y_axis.start, left, right);
    std::int64_t top = 0;
    std::int64_t bottom = target.h;
    InsideOf(x_axis, x_axis.row_step).narrow(x_axis.start, top, bottom);
    // The source's columns are walked forwards, so the target's rows may go backwards.
    const bool upwards = x_axis.row_step < 0;
    const auto first_row = static_cast<int>(upwards ? bottom - 1 : top);
    const auto first_column = static_cast<int>(left);
    const auto from_x = static_cast<int>(x_axis.at(0, first_row) / kPixel);
    const auto from_y = static_cast<int>(y_axis.at(first_column, 0) / kPixel);
    const std::ptrdiff_t to_pitch = target.pitch;
    const std::ptrdiff_t from_pitch = source.pitch;
    kernels().transpose(
        row_of(target, first_row) + first_column, upwards ? -to_pitch : to_pitch,
        row_of(source, from_y) + from_x, y_axis.column_step < 0 ? -from_pitch : from_pitch,
        static_cast<std::size_t>(right - left), static_cast<std::size_t>(bottom - top));
}

// False when there is no memory for it.
bool fill_along(SDL_Surface& target, const SDL_Surface& source, const SourceAxis& x_axis,
                const SourceAxis& y_axis) noexcept {
    const std::unique_ptr<SourceLine[]> lines(new (std::nothrow) SourceLine[target.h]);
    if (lines == nullptr) {
        return false;
    }
    const InsideOf inside_x(x_axis, x_axis.column_step);
    const InsideOf inside_y(y_axis, y_axis.column_step);
    for (int y = 0; y < target.h; ++y) {
        std::int64_t first = 0;
        std::int64_t end = target.w;
        inside_x.narrow(x_axis.at(0, y), first, end);
        inside_y.narrow(y_axis.at(0, y), first, end);
        lines[y] = {static_cast<std::uint32_t>(x_axis.at(0, y)),
                    static_cast<std::uint32_t>(y_axis.at(0, y)), static_cast<std::int32_t>(first),
                    static_cast<std::int32_t>(end)};
    }
    kernels().pick_along_lines(row_of(target, 0), target.pitch, row_of(source, 0), source.pitch,
                               lines.get(), static_cast<std::size_t>(target.h),
                               static_cast<std::uint32_t>(x_axis.column_step),
                               static_cast<std::uint32_t>(y_axis.column_step));
    return true;
}

}  // namespace

bool fill_by_zoom(SDL_Surface& target, const SDL_Surface& source, Mirroring mirroring,
                  bool smooth) noexcept {
    const SourcePixels pixels(source, mirroring);
    if (!pixels) {
        return false;
    }
    if (smooth) {
        return fill_mixed(target, source, pixels.get());
    }
    fill_picked(target, source, pixels.get());
    return true;
}

// The picture turns around the centres of both surfaces, which lie on whole pixels in the target:
// halves of odd sides are rounded there, and not in the source.
bool fill_by_turn(SDL_Surface& target, const SDL_Surface& source, Mirroring mirroring,
                  double angle_degrees, double factor) noexcept {
    // Multiplied in this order, in double precision.
    const double radians = angle_degrees * (M_PI / 180.0);
    const double shrink = kPixel / (factor * factor);
    const std::int64_t sine = static_cast<int>(std::sin(radians) * factor * shrink);
    const std::int64_t cosine = static_cast<int>(std::cos(radians) * factor * shrink);
    const std::int64_t centre_x = target.w / 2;
    const std::int64_t centre_y = target.h / 2;
    const auto centred = [](std::int64_t centre, int from_side, int side) {
        return centre * kPixel + std::int64_t{from_side - side} * (kPixel / 2);
    };
    SourceAxis x_axis = {
        centred(centre_x, source.w, target.w) - cosine * centre_x + sine * centre_y, cosine, -sine,
        source.w * kPixel};
    SourceAxis y_axis = {
        centred(centre_y, source.h, target.h) - sine * centre_x - cosine * centre_y, sine, cosine,
        source.h * kPixel};
    if (!x_axis.fits(target) || !y_axis.fits(target)) {
        return false;
    }
    if (mirroring.left_right) {
        x_axis.mirror();
    }
    if (mirroring.top_bottom) {
        y_axis.mirror();
    }
    if (is_quarter_turn(x_axis)) {
        fill_by_quarter_turn(target, source, x_axis, y_axis);
        return true;
    }
    return fill_along(target, source, x_axis, y_axis);
}

}  // namespace larkspur::pixel
