// check-texts PROJECT: checks that every text of the project's sources has a row in the translation tables,
// and that the tables are well-formed. Prints one line for each fault, and exits with 1 if there is any.

#include "TextCheck/TableCheck.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace {

TextCheck::SourceFile readFile(const std::filesystem::path& project, const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {file.lexically_relative(project).generic_string(),
            std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>())};
}

std::vector<TextCheck::SourceFile> readFolder(const std::filesystem::path& project, std::string_view folder) {
    static constexpr std::array<std::string_view, 5> endings = {".cpp", ".h", ".mm", ".qml", ".js"};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(project / folder)) {
        if (entry.is_regular_file() &&
            std::ranges::find(endings, entry.path().extension().string()) != endings.end()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    std::vector<TextCheck::SourceFile> sources;
    sources.reserve(files.size());
    for (const std::filesystem::path& file : files) {
        sources.push_back(readFile(project, file));
    }
    return sources;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        (void)std::fputs("check-texts PROJECT\n", stderr);
        return 64;
    }
    const std::filesystem::path project = argv[1];
    const auto french = readFile(project, project / "Sources/Fenwhirl/Localization/FrenchTexts.h");
    const auto tables = readFolder(project, "Sources/Fenwhirl/Localization/Tables");
    auto sources = readFolder(project, "Sources/Fenwhirl");
    std::ranges::move(readFolder(project, "Sources/FenwhirlCore"), std::back_inserter(sources));
    const auto faults = TextCheck::faults(french, tables, sources);
    for (const std::string& fault : faults) {
        (void)std::fprintf(stderr, "%s\n", fault.c_str());
    }
    return faults.empty() ? 0 : 1;
}
