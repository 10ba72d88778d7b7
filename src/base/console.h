// Lines on the console, past Python's own file objects.
#pragma once

namespace larkspur {

/// Writes one text to standard error or standard output and flushes it. Knows nothing of Python, so
/// a pending exception stays as it is.
[[gnu::format(printf, 1, 2)]] void write_stderr(const char* format, ...) noexcept;
[[gnu::format(printf, 1, 2)]] void write_stdout(const char* format, ...) noexcept;

}  // namespace larkspur
