// The main function of a fuzz target that is built without a fuzzer. It runs every seed, then inputs derived
// from the seeds by a fixed sequence of random changes. The inputs are the same on every machine and in every
// run.
//
// Usage: TARGET FOLDER [COUNT]

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Input = std::vector<std::uint8_t>;

constexpr unsigned long derivedInputs = 20000;
constexpr std::size_t longestInput = 4096;

std::vector<Input> seeds(const std::filesystem::path& place) {
    std::vector<std::filesystem::path> files;
    if (std::filesystem::is_directory(place)) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(place)) {
            if (entry.is_regular_file()) {
                files.push_back(entry.path());
            }
        }
    } else {
        files.push_back(place);
    }
    std::ranges::sort(files);
    std::vector<Input> inputs;
    for (const auto& path : files) {
        std::ifstream file(path, std::ios::binary);
        inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    return inputs;
}

// Makes one random change: a byte set, flipped, inserted or removed, a piece repeated, or another seed
// appended.
void change(Input& input, const std::vector<Input>& seeds, std::mt19937_64& random) {
    const auto position = [&](std::size_t end) { return end == 0 ? 0 : random() % end; };
    const auto offset = [](std::size_t value) { return static_cast<std::ptrdiff_t>(value); };
    const auto byte = static_cast<std::uint8_t>(random());
    const std::uint64_t kind = input.empty() ? 3 : random() % 6;
    switch (kind) {
    case 0:
        input[position(input.size())] = byte;
        break;
    case 1:
        input[position(input.size())] ^= static_cast<std::uint8_t>(1U << (byte % 8U));
        break;
    case 2:
        input.erase(input.begin() + offset(position(input.size())));
        break;
    case 3:
        input.insert(input.begin() + offset(position(input.size() + 1)), byte);
        break;
    case 4: {
        const std::size_t start = position(input.size());
        const std::size_t length = std::min<std::size_t>(input.size() - start, 1U + byte % 16U);
        const Input piece(input.begin() + offset(start), input.begin() + offset(start + length));
        input.insert(input.begin() + offset(position(input.size() + 1)), piece.begin(), piece.end());
        break;
    }
    default: {
        const Input& other = seeds[position(seeds.size())];
        input.insert(input.end(), other.begin(), other.end());
    }
    }
    input.resize(std::min(input.size(), longestInput));
}

void run(const Input& input) {
    // A copy of exactly the right size, so that a sanitizer notices a read beyond the end.
    const Input exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !std::filesystem::exists(argv[1])) {
        std::fputs("usage: TARGET FOLDER [COUNT], TARGET FILE\n", stderr);
        return EXIT_FAILURE;
    }
    const auto inputs = seeds(argv[1]);
    if (inputs.empty()) {
        std::fprintf(stderr, "no seeds in %s\n", argv[1]);
        return EXIT_FAILURE;
    }
    for (const Input& input : inputs) {
        run(input);
    }
    const unsigned long usual = std::filesystem::is_directory(argv[1]) ? derivedInputs : 0;
    const unsigned long count = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : usual;
    std::mt19937_64 random(20240229);
    for (unsigned long round = 0; round < count; ++round) {
        Input input = inputs[random() % inputs.size()];
        for (std::uint64_t changes = 1 + random() % 8; changes > 0; --changes) {
            change(input, inputs, random);
        }
        run(input);
    }
    std::printf("%zu seeds and %lu derived inputs\n", inputs.size(), count);
    return EXIT_SUCCESS;
}
