// main() of a fuzz target that is built without libFuzzer: runs every file of the folders and files given as
// arguments once through the target, and ends with 0 when there was at least one and none stopped the
// program.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (stream.bad()) {
        std::fprintf(stderr, "cannot read %s\n", file.c_str());
        return false;
    }
    // A copy of exactly the input's size, so that a sanitizer sees the first byte beyond it.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    for (const std::string& argument : arguments) {
        if (std::filesystem::is_directory(argument)) {
            for (const auto& entry : std::filesystem::recursive_directory_iterator(argument)) {
                if (entry.is_regular_file()) {
                    files.push_back(entry.path());
                }
            }
        } else {
            files.emplace_back(argument);
        }
    }
    if (files.empty()) {
        std::fputs("no inputs\n", stderr);
        return 1;
    }
    for (const std::filesystem::path& file : files) {
        if (!replay(file)) {
            return 1;
        }
    }
    std::printf("%zu inputs\n", files.size());
    return 0;
}
