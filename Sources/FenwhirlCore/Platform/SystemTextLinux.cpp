// Linux: the machine's name comes from the firmware's tables or the device tree, the processor's from the
// kernel, and the system's from a file of the distribution.

#include "FenwhirlCore/Platform/SystemText.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <unistd.h>

namespace Fenwhirl {

namespace {

// Far more than any of the files needs; a processor's block in /proc/cpuinfo is about 1.5 kB.
constexpr std::size_t maxFileSize = 16384;

std::optional<std::string> contents(const char* path) {
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    std::string text(maxFileSize, '\0');
    std::size_t length = 0;
    while (length < text.size()) {
        const ssize_t count = ::read(file, text.data() + length, text.size() - length);
        if (count <= 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    ::close(file);
    text.resize(length);
    return text;
}

std::string_view withoutSurroundings(std::string_view text, std::string_view surroundings) {
    const auto first = text.find_first_not_of(surroundings);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(surroundings) - first + 1);
}

// The value of the first line "key SEPARATOR value" in a file.
std::optional<std::string> entry(const char* path, std::string_view key, char separator) {
    const auto text = contents(path);
    if (!text) {
        return std::nullopt;
    }
    for (std::string_view rest = *text; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const auto middle = line.find(separator);
        if (middle != std::string_view::npos && withoutSurroundings(line.substr(0, middle), " \t") == key) {
            return std::string(withoutSurroundings(line.substr(middle + 1), " \t\""));
        }
    }
    return std::nullopt;
}

std::optional<std::string> model() {
    for (const char* path : {"/sys/class/dmi/id/product_name", "/proc/device-tree/model"}) {
        const auto text = contents(path);
        const auto name =
            withoutSurroundings(text ? *text : std::string_view(), std::string_view(" \n\0", 3));
        if (!name.empty()) {
            return std::string(name);
        }
    }
    return std::nullopt;
}

std::optional<std::string> textValue(std::string_view name) {
    if (name == "hw.model") {
        return model();
    }
    if (name == "machdep.cpu.brand_string") {
        return entry("/proc/cpuinfo", "model name", ':');
    }
    return std::nullopt;
}

class LinuxText final : public SystemText {
public:
    [[nodiscard]] bool value(std::string_view name, char* buffer, std::size_t& size) const override {
        const auto text = textValue(name);
        if (!text || (buffer != nullptr && size < text->size())) {
            return false;
        }
        size = text->size();
        if (buffer != nullptr) {
            std::memcpy(buffer, text->data(), size);
        }
        return true;
    }

    [[nodiscard]] bool isTranslated() const override { return false; }

    [[nodiscard]] std::string version() const override {
        for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
            if (auto name = entry(path, "PRETTY_NAME", '=')) {
                return *std::move(name);
            }
        }
        return "Linux";
    }
};

} // namespace

const SystemText& thisSystem() {
    static constinit const LinuxText text;
    return text;
}

} // namespace Fenwhirl
