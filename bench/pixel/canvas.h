// What the native benches share: pictures to work on, the sizes, and the rows of the table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "pixel/kernels/pixel_rows.h"
#include "pixel/kernels/pixel_word.h"

namespace larkspur::bench {

/// Two pictures of 32-bit pixels without padding, in memory as SDL allocates it, or with the
/// distance between them that can make copying stall.
class Canvas {
 public:
    Canvas(int width, int height);

    /// A place for the target 16 bytes behind the source, modulo 4096.
    unsigned char* target_at_stalling_distance();

    std::size_t width() const { return width_; }
    std::size_t height() const { return height_; }
    std::size_t pixels() const { return width_ * height_; }
    std::size_t bytes() const { return pixels() * sizeof(pixel::PixelWord); }
    std::ptrdiff_t pitch() const {
        return static_cast<std::ptrdiff_t>(width_ * sizeof(pixel::PixelWord));
    }
    pixel::PixelWord* row(std::size_t y) { return pixel::pixel_words(target_.get()) + y * width_; }
    pixel::PixelRows rows() {
        return {row(0), pitch(), pixel::pixel_words(source()), pitch(), width_, height_};
    }
    unsigned char* target() { return target_.get(); }
    const unsigned char* source() const { return source_.get(); }

 private:
    using Memory = std::unique_ptr<unsigned char, void (*)(void*)>;

    std::size_t width_;
    std::size_t height_;
    Memory target_;
    Memory source_;
    std::size_t stalling_offset_;
};

/// One pass of a routine over a whole canvas.
using Routine = void (*)(Canvas& canvas);

/// Adds a kernel to the table, at all sizes: ours, the plain formula without vectors, and what the
/// machine's memory allows. They are measured as "<kernel>/<ours|scalar|roof>/<width>x<height>".
void add_kernel(const char* kernel, Routine ours, Routine scalar, Routine roof);

// One line per file of benches.
void add_blit_kernels();
void add_buffer_kernels();
void add_fill_kernels();
void add_flip_kernels();
void add_gradient_kernels();

// The roofs, at -O3 and for the newest instructions of this processor.
void xor_in_place(Canvas& canvas);
void xor_onto_target(Canvas& canvas);
void copy_by_memcpy(Canvas& canvas);
void set_by_memset(Canvas& canvas);

}  // namespace larkspur::bench
