#include "core/diagnostics.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/exports.h"
#include "core/py_ref.h"

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

PyObject* breakable(PyObject* /*module*/, PyObject* /*args*/) noexcept {
    debug("breakable\n");
    return new_none();
}

}  // namespace larkspur

extern "C" {

int debug_log(const char* message) {
    std::FILE* log = std::fopen("debug.log", "a");
    if (log == nullptr) {
        return EOF;
    }
    std::fprintf(log, "larkspur: %s\n", message);
    return std::fclose(log);
}

int debug(const char* format) {
// The text is the format itself: callers pass fixed texts only.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    std::printf(format);
#pragma GCC diagnostic pop
    return std::fflush(stdout);
}

int dump(const char* message) {
    const int descriptor = open("logfile.txt", O_RDWR | O_CREAT | O_APPEND, 0644);
    // A failed open is not reported: write and close then fail on the invalid descriptor.
    [[maybe_unused]] const ssize_t written = write(descriptor, message, std::strlen(message));
    return close(descriptor);
}

void crasher(void) {
    dump("crasher called.\n");
    std::exit(EXIT_SUCCESS);
}

}  // extern "C"
