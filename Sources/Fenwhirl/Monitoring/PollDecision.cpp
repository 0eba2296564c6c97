#include "Fenwhirl/Monitoring/PollDecision.h"

#include "Fenwhirl/Monitoring/SensorSummary.h"
#include "FenwhirlCore/NumberText.h"

#include <limits>
#include <unordered_set>

namespace Fenwhirl {

namespace {

using Seconds = std::chrono::duration<double>;

constexpr double emergencyCelsius = 92;
constexpr double boostHysteresisCelsius = 5;
constexpr std::uint64_t smallestPromptChangeRPM = 100;
constexpr Seconds resendInterval{10};

bool boostingAfter(bool wasBoosting, std::optional<double> primaryCelsius, bool protect, double protectAt) {
    if (!primaryCelsius || !protect) {
        return false;
    }
    if (*primaryCelsius >= protectAt) {
        return true;
    }
    if (*primaryCelsius < protectAt - boostHysteresisCelsius) {
        return false;
    }
    return wasBoosting;
}

// Unsigned, because the difference of two signed 64-bit speeds may not fit into a signed one.
std::uint64_t distance(std::int64_t a, std::int64_t b) {
    const auto unsignedA = static_cast<std::uint64_t>(a);
    const auto unsignedB = static_cast<std::uint64_t>(b);
    return a > b ? unsignedA - unsignedB : unsignedB - unsignedA;
}

bool isEmergency(std::optional<double> primaryCelsius) {
    return primaryCelsius && *primaryCelsius >= emergencyCelsius;
}

const FanSetting& settingOf(int index, const FanSettings& settings) {
    static const FanSetting defaultSetting;
    const auto entry = settings.find(index);
    return entry == settings.end() ? defaultSetting : entry->second;
}

std::optional<std::int64_t> wantedRPM(const FanReading& fan, const PollInput& input,
                                      std::optional<double> primaryCelsius, bool boosting) {
    if (isEmergency(primaryCelsius) || !fan.isMaximumKnown) {
        return std::nullopt;
    }
    if (boosting) {
        return NumberText::exactWhole(fan.maxRPM);
    }
    return targetRPM(settingOf(fan.index, input.settings), fan.minRPM, fan.maxRPM, input.temperatures,
                     primaryCelsius);
}

} // namespace

PollDecision decide(const PollInput& input, bool wasBoosting) {
    PollDecision decision{};
    decision.primaryCelsius = primaryTemperature(input.temperatures);
    decision.boosting = boostingAfter(wasBoosting, decision.primaryCelsius, input.protect, input.protectAt);
    decision.forbidsManualControl = !decision.primaryCelsius || isEmergency(decision.primaryCelsius);
    decision.fanRequests.reserve(input.fans.size());
    for (const FanReading& fan : input.fans) {
        FanRequest request{
            fan.index, {wantedRPM(fan, input, decision.primaryCelsius, decision.boosting)}, false};
        if (request.desired.manualRPM && !decision.primaryCelsius) {
            request.desired.manualRPM.reset();
            request.suspended = true;
        }
        decision.wantsManualControl = decision.wantsManualControl || request.desired.manualRPM.has_value();
        decision.fanRequests.push_back(request);
    }
    return decision;
}

std::optional<HelperCommand> commandFor(const FanRequest& request, const SentTargets& sent,
                                        bool helperInstalled, Seconds now, HandBackPace pace) {
    if (!helperInstalled) {
        return std::nullopt;
    }
    const auto entry = sent.find(request.index);
    const SentTarget* const manualBefore =
        entry != sent.end() && entry->second.desired.manualRPM ? &entry->second : nullptr;
    const std::string index = std::to_string(request.index);
    if (!request.desired.manualRPM) {
        const bool isRepeated = entry != sent.end() && entry->second.isOurs() &&
                                (pace == HandBackPace::urgent || now - entry->second.at >= resendInterval);
        return manualBefore || isRepeated ? std::optional<HelperCommand>({"auto", index}) : std::nullopt;
    }
    if (manualBefore && now - manualBefore->at <= resendInterval &&
        distance(*request.desired.manualRPM, *manualBefore->desired.manualRPM) < smallestPromptChangeRPM) {
        return std::nullopt;
    }
    return HelperCommand{"set", index, std::to_string(*request.desired.manualRPM)};
}

std::optional<std::int64_t> requestedRPM(const SentTargets& sent, int index) {
    const auto entry = sent.find(index);
    return entry != sent.end() && entry->second.succeeded ? entry->second.desired.manualRPM : std::nullopt;
}

void record(SentTargets& sent, const FanRequest& request, Seconds now, bool succeeded) {
    sent.insert_or_assign(request.index, SentTarget{request.desired, now, succeeded});
}

void takeOver(SentTargets& sent, int index) {
    constexpr Seconds longAgo{-std::numeric_limits<double>::infinity()};
    if (const auto entry = sent.find(index); entry == sent.end() || !entry->second.isOurs()) {
        sent.insert_or_assign(index, SentTarget{.desired = {0}, .at = longAgo, .succeeded = false});
    }
}

std::vector<FanRequest> handBacksOfUnreadFans(const PollDecision& decision, const PollInput& input,
                                              const SentTargets& sent) {
    std::unordered_set<int> read;
    for (const FanReading& fan : input.fans) {
        read.insert(fan.index);
    }
    std::vector<FanRequest> fanRequests;
    for (const auto& [index, target] : sent) {
        const bool mustGoBack = decision.forbidsManualControl || decision.boosting ||
                                !target.desired.manualRPM ||
                                settingOf(index, input.settings).mode == FanModeKind::automatic;
        if (target.isOurs() && !read.contains(index) && mustGoBack) {
            fanRequests.push_back({index, {}, false});
        }
    }
    return fanRequests;
}

} // namespace Fenwhirl
