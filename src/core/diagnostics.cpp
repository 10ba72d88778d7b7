#include "core/diagnostics.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/py_ref.h"
#include "larkspur.h"

namespace larkspur {
namespace {

int append_to_debug_log(const char* message) noexcept {
    std::FILE* log = std::fopen("debug.log", "a");
    if (log == nullptr) {
        return EOF;
    }
    std::fprintf(log, "larkspur: %s\n", message);
    return std::fclose(log);
}

int print_format(const char* format) noexcept {
// The text is the format itself: callers pass fixed texts only.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
    std::printf(format);
#pragma GCC diagnostic pop
    return std::fflush(stdout);
}

int append_to_logfile(const char* message) noexcept {
    const int descriptor = open("logfile.txt", O_RDWR | O_CREAT | O_APPEND, 0644);
    // A failed open is not reported: write and close then fail on the invalid descriptor.
    [[maybe_unused]] const ssize_t written = write(descriptor, message, std::strlen(message));
    return close(descriptor);
}

[[noreturn]] void log_and_exit() noexcept {
    append_to_logfile("crasher called.\n");
    std::exit(EXIT_SUCCESS);
}

}  // namespace

PyObject* breakable(PyObject* /*module*/, PyObject* /*args*/) noexcept {
    print_format("breakable\n");
    return new_none();
}

}  // namespace larkspur

extern "C" {

int debug_log(const char* message) {
    return larkspur::append_to_debug_log(message);
}

int debug(const char* format) {
    return larkspur::print_format(format);
}

int dump(const char* message) {
    return larkspur::append_to_logfile(message);
}

void crasher(void) {
    larkspur::log_and_exit();
}

}  // extern "C"
