#include "pixel_level.h"

#include <dlfcn.h>
#include <glob.h>

#include <cstdio>
#include <cstdlib>

namespace larkspur::pixel {
namespace {

PixelLevel loaded(const char* path) {
    void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    auto* functions = library == nullptr ? nullptr : dlsym(library, "larkspur_pixel_functions");
    if (functions == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        std::abort();
    }
    return {path, reinterpret_cast<decltype(&larkspur_pixel_functions)>(functions)()};
}

std::vector<PixelLevel> all_levels() {
    std::vector<PixelLevel> levels = {{"this program", larkspur_pixel_functions()}};
    glob_t paths = {};
    glob(LARKSPUR_LEVELS "/level_*.so", 0, nullptr, &paths);
    for (std::size_t i = 0; i < paths.gl_pathc; ++i) {
        levels.push_back(loaded(paths.gl_pathv[i]));
    }
    globfree(&paths);
    for (const PixelLevel& level : levels) {
        std::fprintf(stderr, "level: %s\n", level.name.c_str());
    }
    return levels;
}

}  // namespace

const std::vector<PixelLevel>& pixel_levels() {
    static const std::vector<PixelLevel> levels = all_levels();
    return levels;
}

}  // namespace larkspur::pixel
