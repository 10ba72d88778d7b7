// The interpreter's recursion limit for native recursion over Python objects.
#pragma once

#include "core/python.h"

namespace larkspur {

/// Enters one level of recursion for a scope. False with RuntimeError at the limit.
class RecursionGuard {
 public:
    /// @param where text appended to the interpreter's message, such as " in GetFirstInstance()"
    explicit RecursionGuard(const char* where) noexcept
        : entered_(Py_EnterRecursiveCall(const_cast<char*>(where)) == 0) {}
    RecursionGuard(const RecursionGuard&) = delete;
    RecursionGuard& operator=(const RecursionGuard&) = delete;
    ~RecursionGuard() {
        if (entered_) {
            Py_LeaveRecursiveCall();
        }
    }

    explicit operator bool() const noexcept { return entered_; }

 private:
    bool entered_;
};

}  // namespace larkspur
