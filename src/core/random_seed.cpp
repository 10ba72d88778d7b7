#include "core/random_seed.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace larkspur {

std::uint32_t read_entropy() noexcept {
    std::uint32_t word = 0;
    const int source = open("/dev/urandom", O_RDONLY);
    if (source >= 0) {
        [[maybe_unused]] const ssize_t count = read(source, &word, sizeof word);
        close(source);
    }
    return word;
}

void seed_random(std::uint32_t entropy) noexcept {
    std::uint32_t seed = entropy ^ static_cast<std::uint32_t>(getpid());
    seed ^= static_cast<std::uint32_t>(getppid()) << 16;
    srand48(static_cast<long>(static_cast<std::int32_t>(seed)));
}

}  // namespace larkspur
