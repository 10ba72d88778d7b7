// Numbers, choices and memory out of the bytes that a fuzzer makes up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace larkspur::pixel {

/// Reads from the front; once the bytes are used up, everything is 0. What a byte decides does not
/// depend on those behind it, so that a fuzzer can change one thing at a time.
class Input {
 public:
    Input(const std::uint8_t* bytes, std::size_t count) : at_(bytes), end_(bytes + count) {}

    std::uint8_t byte() { return at_ < end_ ? *at_++ : 0; }
    std::uint32_t word() {
        std::uint32_t word = 0;
        for (unsigned place = 0; place < 4; ++place) {
            word |= std::uint32_t{byte()} << (8 * place);
        }
        return word;
    }
    /// A number below `count`, of as many bytes as it needs; `count` is at least 1.
    std::uint32_t below(std::uint32_t count) {
        std::uint32_t number = byte();
        for (std::uint32_t rest = (count - 1) >> 8; rest > 0; rest >>= 8) {
            number = number << 8 | byte();
        }
        return number % count;
    }
    int from(int least, int most) {
        return least + static_cast<int>(below(static_cast<std::uint32_t>(most - least) + 1));
    }
    bool one_in(std::uint32_t count) { return below(count) == 0; }
    float single() {
        const std::uint32_t bits = word();
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return number;
    }
    template <class Value, std::size_t kCount>
    Value one_of(const Value (&values)[kCount]) {
        return values[below(kCount)];
    }

    /// Fills memory in one of four ways: with bytes of all values, with those at which arithmetic
    /// turns, with a few words, or with a single one.
    void fill(unsigned char* to, std::size_t count) {
        constexpr unsigned char kTurns[] = {0, 1, 127, 128, 129, 254, 255, 255};
        const std::uint8_t way = byte() % 4;
        if (way < 2) {
            std::uint64_t noise = 1 + below(0x10000);
            for (std::size_t i = 0; i < count; ++i) {
                if (i % sizeof noise == 0) {  // xorshift, by Marsaglia
                    noise ^= noise << 13;
                    noise ^= noise >> 7;
                    noise ^= noise << 17;
                }
                const auto value = static_cast<unsigned char>(noise >> (i % sizeof noise * 8));
                to[i] = way == 0 ? value : kTurns[value % 8];
            }
            return;
        }
        const std::uint32_t words[] = {word(), way == 2 ? word() : 0, way == 2 ? word() : 0};
        const std::size_t used_bytes = way == 2 ? sizeof words : sizeof words[0];
        for (std::size_t i = 0; i < count; ++i) {
            to[i] = reinterpret_cast<const unsigned char*>(words)[i % used_bytes];
        }
    }

 private:
    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

}  // namespace larkspur::pixel
