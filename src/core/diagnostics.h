// Log files, console prints and the debugger's hook.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Module function breakable(): prints "breakable\n"; a place for a debugger to stop at. Ignores
/// its arguments; returns None.
PyObject* breakable(PyObject* module, PyObject* args) noexcept;

/// Writes one text to standard error or standard output, past Python's own file objects, and
/// flushes it. Never touches the pending exception.
[[gnu::format(printf, 1, 2)]] void write_stderr(const char* format, ...) noexcept;
[[gnu::format(printf, 1, 2)]] void write_stdout(const char* format, ...) noexcept;

}  // namespace larkspur
