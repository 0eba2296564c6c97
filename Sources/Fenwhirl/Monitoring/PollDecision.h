// What one poll does to the fans: pure functions from readings and settings to helper commands.
//
// A poll goes through three steps. `decide` says for every fan what it should be doing, with the safety rules
// above the user's settings. `commandFor` says whether the helper must run for that now, given what was last
// sent to the fan. `record` notes what was sent, whatever came of it: a failed command is not repeated before
// it would have been sent again anyway.
//
// The safety rules, in the order of precedence:
//  - From 92 °C on, every fan is handed back to macOS (a fixed limit, whatever the user's thresholds are).
//  - With heat protection on, every fan runs at its maximum from the moment the main temperature reaches the
//    alert threshold until it falls 5 °C below it.
//  - Without a readable temperature no fan is controlled manually.
//
// Nothing here knows a clock, a thread or a process. Times are durations on one clock of the caller's choice.

#pragma once

#include "Fenwhirl/Monitoring/FanSetting.h"
#include "FenwhirlCore/SMC.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

// What a fan should be doing: held at a speed, or left to macOS.
struct DesiredState {
    std::optional<std::int64_t> manualRPM; // nothing: automatic

    bool operator==(const DesiredState&) const = default;
};

struct PollInput {
    std::span<const FanReading> fans; // in the controller's order
    std::span<const TemperatureReading> temperatures;
    const FanSettings& settings;
    bool protect;     // heat protection is on
    double protectAt; // °C
};

struct FanWish {
    int index;
    DesiredState desired;
    bool suspended; // manual control was wanted but no temperature can be read

    bool operator==(const FanWish&) const = default;
};

struct PollDecision {
    std::optional<double> primaryCelsius;
    bool boosting;               // to be handed to the next poll
    std::vector<FanWish> wishes; // one per fan read, in the same order
    bool wantsManualControl;     // for at least one fan
};

// `wasBoosting` is the `boosting` of the poll before, false at the start. A speed that is not a finite whole
// number of 64 bits makes its fan automatic.
[[nodiscard]] PollDecision decide(const PollInput& input, bool wasBoosting);

struct SentTarget {
    DesiredState desired;
    std::chrono::duration<double> at; // when
};

// By fan index; a fan without an entry was never sent anything.
using SentTargets = std::map<int, SentTarget>;

// The arguments of one run of the helper.
using HelperCommand = std::vector<std::string>;

// The helper command that the wish needs now, if any. "auto" goes only to a fan that was last sent a speed. A
// speed is sent when it differs by at least 100 rpm from the one sent last, else once more than 10 seconds
// have passed, so that small changes are collected and lost ones repaired.
[[nodiscard]] std::optional<HelperCommand> commandFor(const FanWish& wish, const SentTargets& sent,
                                                      bool helperInstalled,
                                                      std::chrono::duration<double> now);

// To be called after the helper ran for the wish, however that went.
void record(SentTargets& sent, const FanWish& wish, std::chrono::duration<double> now);
