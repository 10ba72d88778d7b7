// Runs a fuzz target once on each input of the files named, where the fuzzer's own main() is not
// linked: a .txt file holds an input in each line, in hexadecimal digits, any other file is one.
// Ends with an error when there were none.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

namespace {

std::vector<std::uint8_t> bytes_of(const std::string& digits) {
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

std::vector<std::vector<std::uint8_t>> inputs_in(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::vector<std::uint8_t>> inputs;
    if (path.size() > 4 && path.substr(path.size() - 4) == ".txt") {
        for (std::string line; std::getline(file, line);) {
            inputs.push_back(bytes_of(line));
        }
    } else if (file) {
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

}  // namespace

int main(int count, char** paths) {
    std::size_t replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& input : inputs_in(paths[i])) {
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++replayed;
        }
    }
    std::printf("%zu inputs\n", replayed);
    return replayed > 0 ? 0 : 1;
}
