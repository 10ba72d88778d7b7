// The dictionaries that keep prerendered pictures of particles.
#pragma once

#include "core/python.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/py_ref.h"

namespace larkspur {

/// What decides a picture: drawn width and height (pixels), colour, alpha and, unless the picture
/// is never turned, the angle (degrees). In the dictionary a tuple of that many ints.
class PictureKey {
 public:
    PictureKey(std::int32_t width, std::int32_t height, std::int32_t colour,
               std::int32_t alpha) noexcept
        : numbers_{width, height, colour, alpha, 0}, count_(4) {}
    PictureKey(std::int32_t width, std::int32_t height, std::int32_t colour, std::int32_t alpha,
               std::int32_t angle) noexcept
        : numbers_{width, height, colour, alpha, angle}, count_(5) {}

    /// The entry under this key, as the dictionary's own lookup finds it, but without making a
    /// tuple where this class stored all that lies on the way to it: a particle on its way through
    /// a frame does little else. Empty when there is none; with MemoryError when a key is needed
    /// and cannot be made.
    PyRef find_in(PyObject* cache) const noexcept;

    /// Stores an entry under this key. False with an exception when that fails.
    bool store_in(PyObject* cache, PyObject* picture) const noexcept;

 private:
    enum class Match { kEqual, kDifferent, kUnknown };

    PyRef tuple() const noexcept;
    long hash() const noexcept;
    /// Whether a key of the dictionary equals this one, as far as that shows without running code.
    Match compare(PyObject* key) const noexcept;
    /// Sets `picture` to the entry, borrowed, or null when there is none. False when only the
    /// dictionary can tell.
    bool find_quickly(PyObject* cache, PyObject*& picture) const noexcept;

    std::array<std::int32_t, 5> numbers_;
    std::size_t count_;
};

}  // namespace larkspur
