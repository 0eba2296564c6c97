// gather-texts OUTPUT ROOT: writes every text of the C++ and QML sources under ROOT to OUTPUT, one per line.
// The fields are kind, file and line, control, and text, separated by tabs. Line breaks and tabs inside a
// text are escaped.

#include "TextCheck/GatheredTexts.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

std::string escaped(const std::string& text) {
    std::string line;
    for (const char c : text) {
        switch (c) {
        case '\n':
            line += "\\n";
            break;
        case '\r':
            line += "\\r";
            break;
        case '\t':
            line += "\\t";
            break;
        default:
            line += c;
        }
    }
    return line;
}

const char* nameOf(TextCheck::Gathered::Kind kind) {
    using Kind = TextCheck::Gathered::Kind;
    switch (kind) {
    case Kind::asked:
        return "asked";
    case Kind::dynamic:
        return "dynamic";
    case Kind::system:
        return "system";
    case Kind::loose:
        return "loose";
    case Kind::other:
        return "other";
    }
    return "";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        (void)std::fputs("gather-texts OUTPUT ROOT\n", stderr);
        return 64;
    }
    const std::filesystem::path root = argv[2];
    static const std::map<std::string, TextCheck::Grammar> grammars = {
        {".cpp", TextCheck::Grammar::cpp}, {".h", TextCheck::Grammar::cpp},
        {".mm", TextCheck::Grammar::cpp},  {".qml", TextCheck::Grammar::qml},
        {".js", TextCheck::Grammar::qml},  {".mjs", TextCheck::Grammar::qml}};
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file() && grammars.contains(entry.path().extension().string())) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    std::ofstream output(argv[1], std::ios::binary);
    for (const std::filesystem::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string source((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
        for (const auto& text : TextCheck::gather(source, grammars.at(file.extension().string()))) {
            output << nameOf(text.kind) << '\t' << file.lexically_relative(root).generic_string() << ':'
                   << text.line << '\t' << text.control << '\t' << escaped(text.text) << '\n';
        }
    }
    output.close();
    return output ? 0 : 1;
}
