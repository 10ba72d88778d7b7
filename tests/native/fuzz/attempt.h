// What the targets of surfaces and kernels have in common: the first byte of an input chooses the
// function that is tried with the rest.
#pragma once

#include <cstddef>
#include <cstdint>

#include "input.h"

namespace larkspur::pixel {

/// Tries the function of this name; ends the process when it finds it wrong.
struct Attempt {
    const char* name;
    void (*run)(const char* name, Input& input);
};

/// Makes the one of these attempts that an input chooses. New ones come last, so that kept inputs
/// stay what they are.
template <std::size_t kCount>
void make_one_of(const Attempt (&attempts)[kCount], const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const Attempt attempt = input.one_of(attempts);
    attempt.run(attempt.name, input);
}

}  // namespace larkspur::pixel
