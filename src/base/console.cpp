#include "base/console.h"

#include <cstdarg>
#include <cstdio>

namespace larkspur {

void write_stderr(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stderr, format, arguments);
    va_end(arguments);
    std::fflush(stderr);
}

void write_stdout(const char* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(stdout, format, arguments);
    va_end(arguments);
    std::fflush(stdout);
}

}  // namespace larkspur
