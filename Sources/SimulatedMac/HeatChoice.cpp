#include "SimulatedMac/HeatChoice.h"

#include "SimulatedMac/TextParsing.h"

#include <array>
#include <cstdio>
#include <utility>
#include <vector>

namespace simulated {

namespace {

constexpr std::size_t largestFileBytes = std::size_t{16} << 20;

} // namespace

std::optional<std::string> readTextFile(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), &std::fclose);
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    std::array<char, 65536> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init)
    for (std::size_t length = 1; length > 0 && text.size() <= largestFileBytes;) {
        length = std::fread(buffer.data(), 1, buffer.size(), file.get());
        text.append(buffer.data(), length);
    }
    if (std::ferror(file.get()) != 0 || text.size() > largestFileBytes) {
        return std::nullopt;
    }
    return text;
}

std::unique_ptr<HeatSource> makeHeatSource(std::span<const std::string_view> words, const Mac& mac,
                                           std::string& error) {
    const MacModel& model = mac.model();
    if (words.size() == 1 && words[0] == "host") {
        return std::make_unique<HostHeat>(model.idle, Heat{.processorWatts = model.powers.processorWatts,
                                                           .graphicsWatts = model.powers.graphicsWatts});
    }
    if (words.size() == 1 && words[0].ends_with('%')) {
        const auto percent = parseNumber(words[0].substr(0, words[0].size() - 1));
        if (!percent || *percent < 0 || *percent > 100) {
            error = "a load lies between 0% and 100%";
            return nullptr;
        }
        return std::make_unique<ConstantHeat>(heatOfLoad(
            *percent / 100, model.idle,
            {.processorWatts = model.powers.processorWatts, .graphicsWatts = model.powers.graphicsWatts}));
    }
    if (words.size() == 2 && words[0] == "course") {
        const auto text = readTextFile(std::string(words[1]));
        auto points = text ? parseCourse(*text, error) : std::vector<CoursePoint>();
        if (points.empty()) {
            error = std::string(words[1]) + ": " + (text ? error : "cannot be read");
            return nullptr;
        }
        return std::make_unique<CourseHeat>(std::move(points), mac.state().seconds);
    }
    const auto processor = words.empty() ? std::nullopt : parseNumber(words[0]);
    const auto graphics = words.size() > 1 ? parseNumber(words[1]) : std::optional(model.idle.graphicsWatts);
    if (words.size() > 2 || !processor || !graphics || *processor < 0 || *graphics < 0) {
        error = "expected host, LOAD%, WATTS [GRAPHICS-WATTS] or course FILE";
        return nullptr;
    }
    return std::make_unique<ConstantHeat>(Heat{.processorWatts = *processor, .graphicsWatts = *graphics});
}

} // namespace simulated
