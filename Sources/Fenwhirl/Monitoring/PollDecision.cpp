#include "Fenwhirl/Monitoring/PollDecision.h"

#include "Fenwhirl/Monitoring/SensorSummary.h"
#include "Fenwhirl/Monitoring/WholeNumber.h"

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

// The distance as an unsigned number, because the difference of two 64-bit speeds may not fit into one.
std::uint64_t distance(std::int64_t a, std::int64_t b) {
    const auto unsignedA = static_cast<std::uint64_t>(a);
    const auto unsignedB = static_cast<std::uint64_t>(b);
    return a > b ? unsignedA - unsignedB : unsignedB - unsignedA;
}

std::optional<std::int64_t> wantedRPM(const FanReading& fan, const PollInput& input,
                                      std::optional<double> primaryCelsius, bool boosting) {
    static const FanSetting defaultSetting;
    if (primaryCelsius && *primaryCelsius >= emergencyCelsius) {
        return std::nullopt;
    }
    if (boosting) {
        return wholeNumber(fan.maxRPM);
    }
    const auto entry = input.settings.find(fan.index);
    const FanSetting& setting = entry == input.settings.end() ? defaultSetting : entry->second;
    return targetRPM(setting, fan.minRPM, fan.maxRPM, input.temperatures, primaryCelsius);
}

} // namespace

PollDecision decide(const PollInput& input, bool wasBoosting) {
    PollDecision decision{};
    decision.primaryCelsius = primaryTemperature(input.temperatures);
    decision.boosting = boostingAfter(wasBoosting, decision.primaryCelsius, input.protect, input.protectAt);
    decision.wishes.reserve(input.fans.size());
    for (const FanReading& fan : input.fans) {
        FanWish wish{fan.index, {wantedRPM(fan, input, decision.primaryCelsius, decision.boosting)}, false};
        if (wish.desired.manualRPM && !decision.primaryCelsius) {
            wish.desired.manualRPM.reset();
            wish.suspended = true;
        }
        decision.wantsManualControl = decision.wantsManualControl || wish.desired.manualRPM.has_value();
        decision.wishes.push_back(wish);
    }
    return decision;
}

std::optional<HelperCommand> commandFor(const FanWish& wish, const SentTargets& sent, bool helperInstalled,
                                        Seconds now) {
    if (!helperInstalled) {
        return std::nullopt;
    }
    const auto entry = sent.find(wish.index);
    const SentTarget* const manualBefore =
        entry != sent.end() && entry->second.desired.manualRPM ? &entry->second : nullptr;
    const std::string index = std::to_string(wish.index);
    if (!wish.desired.manualRPM) {
        return manualBefore ? std::optional<HelperCommand>({"auto", index}) : std::nullopt;
    }
    if (manualBefore && now - manualBefore->at <= resendInterval &&
        distance(*wish.desired.manualRPM, *manualBefore->desired.manualRPM) < smallestPromptChangeRPM) {
        return std::nullopt;
    }
    return HelperCommand{"set", index, std::to_string(*wish.desired.manualRPM)};
}

void record(SentTargets& sent, const FanWish& wish, Seconds now) {
    sent.insert_or_assign(wish.index, SentTarget{wish.desired, now});
}
