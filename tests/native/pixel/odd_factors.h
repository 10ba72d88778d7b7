// Factors with which pictures are scaled and turned.
#pragma once

#include <limits>

namespace larkspur::pixel {

/// Those that have cases of their own. New ones come last, so that inputs that fuzzing has kept
/// stay what they are.
constexpr double kOddFactors[] = {0,
                                  -0.0,
                                  1e-9,
                                  0.0004,
                                  -0.001,
                                  0.001,
                                  1.0 / 3,
                                  0.5,
                                  2,
                                  3,
                                  4,
                                  -1,
                                  -2,
                                  std::numeric_limits<double>::quiet_NaN(),
                                  std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::infinity()};

}  // namespace larkspur::pixel
