#include <SDL.h>

#include <iterator>

#include "canvas.h"
#include "pixel/surface/painters.h"
#include "scalar.h"

namespace larkspur::bench {
namespace {

constexpr std::uint32_t kTop = 0x0040FF20;
constexpr std::uint32_t kBottom = 0x00FF1080;
constexpr std::uint32_t kConstant = 0x00203040;
constexpr std::uint8_t kKeep = 127;
constexpr pixel::GradientLayer kOneLayer[] = {{kTop, kBottom, 128}};
constexpr pixel::GradientLayer kThreeLayers[] = {
    {kTop, kBottom, 40}, {kBottom, kTop, 30}, {kTop, kConstant, 50}};

/// A canvas as a surface of the display's usual format. The last column and row, which are never
/// painted, are left out of the measuring by making the surface one larger than what is painted.
class PaintedSurface {
 public:
    explicit PaintedSurface(Canvas& canvas) {
        format_.BitsPerPixel = 32;
        format_.BytesPerPixel = 4;
        format_.Aloss = 8;
        format_.Rshift = 16;
        format_.Gshift = 8;
        format_.Rmask = 0xFF0000;
        format_.Gmask = 0xFF00;
        format_.Bmask = 0xFF;
        surface_.format = &format_;
        surface_.w = static_cast<int>(canvas.width()) + 1;
        surface_.h = static_cast<int>(canvas.height()) + 1;
        surface_.pitch = static_cast<std::uint16_t>(canvas.pitch());
        surface_.pixels = canvas.target();
    }
    PaintedSurface(const PaintedSurface&) = delete;
    PaintedSurface& operator=(const PaintedSurface&) = delete;

    const SDL_Surface& get() const { return surface_; }
    pixel::Corners corners() const { return {0, 0, surface_.w - 1, surface_.h - 1}; }

 private:
    SDL_PixelFormat format_ = {};
    SDL_Surface surface_ = {};
};

template <const auto& layers>
void blend(Canvas& canvas) {
    const PaintedSurface surface(canvas);
    pixel::blend_vertical_gradients(surface.get(), surface.corners(), layers, std::size(layers),
                                    kConstant, kKeep);
}

template <const auto& layers>
void blend_scalar(Canvas& canvas) {
    const PaintedSurface surface(canvas);
    scalar::blend_vertical_gradients(surface.get(), surface.corners(), layers, std::size(layers),
                                     kConstant, kKeep);
}

}  // namespace

void add_gradient_kernels() {
    add_kernel("gradient_v", blend<kOneLayer>, blend_scalar<kOneLayer>, xor_in_place);
    add_kernel("vcvvc", blend<kThreeLayers>, blend_scalar<kThreeLayers>, xor_in_place);
    add_kernel(
        "opaque vertical gradient",
        [](Canvas& canvas) {
            const PaintedSurface surface(canvas);
            pixel::draw_vertical_gradient(surface.get(), surface.corners(), kTop, kBottom);
        },
        [](Canvas& canvas) {
            const PaintedSurface surface(canvas);
            scalar::draw_vertical_gradient(surface.get(), surface.corners(), kTop, kBottom);
        },
        set_by_memset);
    add_kernel(
        "horizontal gradient",
        [](Canvas& canvas) {
            const PaintedSurface surface(canvas);
            const pixel::Corners corners = {0, 0, surface.get().w - 1, surface.get().h - 2};
            pixel::draw_horizontal_gradient(surface.get(), corners, kTop, kBottom);
        },
        [](Canvas& canvas) {
            const PaintedSurface surface(canvas);
            const pixel::Corners corners = {0, 0, surface.get().w - 1, surface.get().h - 2};
            scalar::draw_horizontal_gradient(surface.get(), corners, kTop, kBottom);
        },
        set_by_memset);
}

}  // namespace larkspur::bench
