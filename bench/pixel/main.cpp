#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>
#include <string>

#include "canvas.h"

namespace larkspur::bench {
namespace {

constexpr struct {
    int width;
    int height;
} kSizes[] = {{64, 64}, {320, 240}, {640, 480}, {1024, 768}, {1920, 1080}, {2048, 1536}};

constexpr std::size_t kPageBytes = 4096;
constexpr std::size_t kStallingBytes = 16;
constexpr std::size_t kMostBytes = std::size_t{1} << 30;

unsigned char* allocated(std::size_t bytes) {
    if (bytes > kMostBytes) {
        throw std::bad_alloc();
    }
    auto* memory = static_cast<unsigned char*>(std::malloc(bytes));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    for (std::size_t i = 0; i < bytes; ++i) {
        memory[i] = static_cast<unsigned char>(i * 167 >> 3);
    }
    return memory;
}

void add_routine(const std::string& name, Routine routine, int width, int height) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        Canvas canvas(width, height);
        for (auto step : state) {
            routine(canvas);
            benchmark::ClobberMemory();
        }
    });
}

}  // namespace

Canvas::Canvas(int width, int height)
    : width_(static_cast<std::size_t>(width)),
      height_(static_cast<std::size_t>(height)),
      target_(allocated(bytes() + kPageBytes), std::free),
      source_(allocated(bytes()), std::free),
      stalling_offset_((reinterpret_cast<std::uintptr_t>(source_.get()) + kStallingBytes -
                        reinterpret_cast<std::uintptr_t>(target_.get())) %
                       kPageBytes) {}

unsigned char* Canvas::target_at_stalling_distance() {
    return target_.get() + stalling_offset_;
}

void add_kernel(const char* kernel, Routine ours, Routine scalar, Routine roof) {
    for (const auto& size : kSizes) {
        const std::string at = "/" + std::to_string(size.width) + "x" + std::to_string(size.height);
        add_routine(kernel + ("/ours" + at), ours, size.width, size.height);
        add_routine(kernel + ("/scalar" + at), scalar, size.width, size.height);
        add_routine(kernel + ("/roof" + at), roof, size.width, size.height);
    }
}

}  // namespace larkspur::bench

int main(int argc, char** argv) {
    larkspur::bench::add_blit_kernels();
    larkspur::bench::add_buffer_kernels();
    larkspur::bench::add_fill_kernels();
    larkspur::bench::add_flip_kernels();
    larkspur::bench::add_gradient_kernels();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
