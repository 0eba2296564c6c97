#include "SimulatedMac/HeatSource.h"

#include "SimulatedMac/TextParsing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace simulated {

namespace {

// Shorter samples of the processor load are mostly noise.
constexpr double loadSampleSeconds = 1;

Heat between(const Heat& from, const Heat& to, double share) {
    return {.processorWatts = from.processorWatts + (to.processorWatts - from.processorWatts) * share,
            .graphicsWatts = from.graphicsWatts + (to.graphicsWatts - from.graphicsWatts) * share};
}

} // namespace

Heat ConstantHeat::heatAt(double /*simulatedSeconds*/, double /*steadySeconds*/) {
    return heat_;
}

Heat heatOfLoad(double load, const Heat& idle, const Heat& full) {
    // The first busy core runs at its highest clock and costs more than its share, so the curve is concave.
    const double share = std::pow(std::min(1.0, std::max(0.0, load)), 0.7);
    return {.processorWatts =
                idle.processorWatts + std::max(0.0, full.processorWatts - idle.processorWatts) * share,
            .graphicsWatts =
                idle.graphicsWatts + std::max(0.0, 0.3 * full.graphicsWatts - idle.graphicsWatts) * share};
}

Heat HostHeat::heatAt(double /*simulatedSeconds*/, double steadySeconds) {
    if (sampledSeconds_ < 0 || steadySeconds - sampledSeconds_ >= loadSampleSeconds) {
        share_ = load_.sample();
        sampledSeconds_ = steadySeconds;
    }
    return heatOfLoad(share_, idle_, full_);
}

std::vector<CoursePoint> parseCourse(std::string_view text, std::string& error) {
    std::vector<CoursePoint> points;
    std::size_t lineNumber = 0;
    for (const std::string_view line : splitFields(text, '\n')) {
        ++lineNumber;
        const auto words = splitWords(line.substr(0, line.find('\r')));
        if (words.empty() || words.front().starts_with('#')) {
            continue;
        }
        const auto seconds = parseNumber(words[0]);
        const auto processor = words.size() > 1 ? parseNumber(words[1]) : std::nullopt;
        const auto graphics = words.size() > 2 ? parseNumber(words[2]) : std::optional<double>(0.0);
        const double before = points.empty() ? 0 : points.back().seconds;
        const bool rises = points.empty() ? seconds >= 0.0 : seconds > before;
        if (words.size() > 3 || !seconds || !processor || !graphics || !rises || *processor < 0 ||
            *graphics < 0) {
            error = "line " + std::to_string(lineNumber) + ": expected rising SECONDS, then WATTS [WATTS]";
            return {};
        }
        points.push_back(
            {.seconds = *seconds, .heat = {.processorWatts = *processor, .graphicsWatts = *graphics}});
    }
    if (points.empty()) {
        error = "no points";
    }
    return points;
}

CourseHeat::CourseHeat(std::vector<CoursePoint> points, double startSeconds)
    : points_(std::move(points))
    , startSeconds_(startSeconds) {}

Heat CourseHeat::heatAt(double simulatedSeconds, double /*steadySeconds*/) {
    const double length = points_.back().seconds;
    const double since = std::max(0.0, simulatedSeconds - startSeconds_);
    const double seconds = length > 0 ? std::fmod(since, length) : 0;
    const auto after =
        std::upper_bound(points_.begin(), points_.end(), seconds,
                         [](double time, const CoursePoint& point) { return time < point.seconds; });
    if (after == points_.begin()) {
        return points_.front().heat;
    }
    if (after == points_.end()) {
        return points_.back().heat;
    }
    const CoursePoint& before = *(after - 1);
    return between(before.heat, after->heat, (seconds - before.seconds) / (after->seconds - before.seconds));
}

} // namespace simulated
