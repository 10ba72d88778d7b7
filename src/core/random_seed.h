// Seeding of the one random generator, drand48.
#pragma once

#include <cstdint>

namespace larkspur {

/// Four bytes of the system's entropy; 0 when "/dev/urandom" cannot be read.
std::uint32_t read_entropy() noexcept;

/// Seeds drand48 from the entropy word and the ids of this process and its parent, so that
/// processes started in the same instant differ.
void seed_random(std::uint32_t entropy) noexcept;

}  // namespace larkspur
