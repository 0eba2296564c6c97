#include "Fenwhirl/Platform/Processes/ProcessStatLinux.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <fcntl.h>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// The numbers of the fields, as in proc(5). The name is the second field.
constexpr int firstFieldAfterName = 3;
constexpr int userTimeField = 14;
constexpr int kernelTimeField = 15;
constexpr int startTimeField = 22;

std::optional<std::uint64_t> parseField(std::string_view field) {
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
    if (error != std::errc() || end != field.data() + field.size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

std::optional<ProcessStat> parseProcessStat(std::string_view text) {
    // The name is in parentheses and may itself contain parentheses and blanks, so it ends at the last one.
    const std::size_t open = text.find('(');
    const std::size_t close = text.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
        return std::nullopt;
    }
    std::optional<std::uint64_t> userTime;
    std::optional<std::uint64_t> kernelTime;
    std::optional<std::uint64_t> startTime;
    std::string_view rest = text.substr(close + 1);
    for (int field = firstFieldAfterName; field <= startTimeField; ++field) {
        const std::size_t begin = rest.find_first_not_of(' ');
        if (begin == std::string_view::npos) {
            return std::nullopt;
        }
        rest.remove_prefix(begin);
        const std::string_view word = rest.substr(0, rest.find(' '));
        rest.remove_prefix(word.size());
        if (field == userTimeField) {
            userTime = parseField(word);
        } else if (field == kernelTimeField) {
            kernelTime = parseField(word);
        } else if (field == startTimeField) {
            startTime = parseField(word);
        }
    }
    if (!userTime || !kernelTime || !startTime) {
        return std::nullopt;
    }
    return ProcessStat{std::string(text.substr(open + 1, close - open - 1)), *userTime + *kernelTime,
                       *startTime};
}

std::optional<ProcessStat> readProcessStat(std::int32_t pid) {
    constexpr std::string_view folder = "/proc/";
    constexpr std::string_view file = "/stat";
    std::array<char, 32> path = {};
    char* end = path.data() + folder.copy(path.data(), folder.size());
    end = std::to_chars(end, path.data() + path.size() - file.size() - 1, pid).ptr;
    file.copy(end, file.size());

    const int descriptor = open(path.data(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    // 52 fields of at most 20 digits and a short name fit; the kernel returns the whole file in one read.
    std::array<char, 2048> text = {};
    const ssize_t length = read(descriptor, text.data(), text.size());
    close(descriptor);
    if (length <= 0) {
        return std::nullopt;
    }
    return parseProcessStat({text.data(), static_cast<std::size_t>(length)});
}

} // namespace Fenwhirl
