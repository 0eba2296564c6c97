// What one poll does to the fans: pure functions from readings and settings to helper commands.
//
// A poll has three steps. `decide` determines for every fan what it should be doing; the safety rules
// override the user's settings. `commandFor` determines whether the helper must run for that now, given what
// was last sent to the fan. `record` notes what was sent and whether the helper succeeded.
//
// A fan is ours from the moment a speed is sent to it, whether that succeeds or not, until it has been handed
// back successfully. A refused speed is not repeated before it would have been sent again anyway; a refused
// hand-back is repeated until it succeeds. Fans that another program left manual become ours, too
// (`takeOver`), and are then subject to the same rules.
//
// The safety rules, in order of precedence:
//  - From 92 °C on, every fan is handed back to macOS (a fixed limit, whatever the user's thresholds are).
//  - With heat protection on, every fan runs at its maximum from the moment the main temperature reaches the
//    alert threshold until it falls 5 °C below it.
//  - Without a readable temperature, no fan is controlled manually.
// A fan whose maximum cannot be read is left to macOS: any speed chosen for it would be a guess.
//
// Nothing here depends on a clock, a thread or a process. Times are durations on any one clock of the
// caller's choice.

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

namespace Fenwhirl {

// What a fan should be doing: run at a speed, or be left to macOS.
struct DesiredState {
    std::optional<std::int64_t> manualRPM; // absent: automatic

    bool operator==(const DesiredState&) const = default;
};

struct PollInput {
    std::span<const FanReading> fans; // in the controller's order
    std::span<const TemperatureReading> temperatures;
    const FanSettings& settings;
    bool protect;     // heat protection is on
    double protectAt; // °C
};

struct FanRequest {
    int index;
    DesiredState desired;
    bool suspended; // manual control was requested, but no temperature can be read

    bool operator==(const FanRequest&) const = default;
};

struct PollDecision {
    std::optional<double> primaryCelsius;
    bool boosting;                       // to be passed to the next poll
    std::vector<FanRequest> fanRequests; // one per fan that was read, in the same order
    bool wantsManualControl;             // for at least one fan
    bool forbidsManualControl;           // of any fan: an emergency, or no temperature
};

// `wasBoosting` is the `boosting` of the previous poll; false at the start. A fan whose speed would not be a
// finite number within 64 bits is left automatic.
[[nodiscard]] PollDecision decide(const PollInput& input, bool wasBoosting);

struct SentTarget {
    DesiredState desired;
    std::chrono::duration<double> at; // when it was sent
    bool succeeded = true;            // as the helper reported

    // Whether the fan may still be manual because of us.
    [[nodiscard]] bool isOurs() const { return desired.manualRPM || !succeeded; }
};

// By fan index; a fan without an entry was never sent anything.
using SentTargets = std::map<int, SentTarget>;

// The arguments of one run of the helper.
using HelperCommand = std::vector<std::string>;

// How soon a failed hand-back is repeated.
enum class HandBackPace {
    calm,   // 10 seconds after the last attempt
    urgent, // at every poll, because manual control is forbidden
};

// The helper command that the request requires now, if any. "auto" is sent only to a fan that is ours: once
// after a speed was sent, then at the given pace until it succeeds. A speed is sent when it differs by at
// least 100 rpm from the last one sent, and otherwise when more than 10 seconds have passed. Small changes
// are thus collected, and lost commands repaired.
[[nodiscard]] std::optional<HelperCommand> commandFor(const FanRequest& request, const SentTargets& sent,
                                                      bool helperInstalled, std::chrono::duration<double> now,
                                                      HandBackPace pace = HandBackPace::calm);

// The speed that the fan was last told to run at; absent if the fan was told nothing, was handed back since,
// or refused: its speed is not ours then.
[[nodiscard]] std::optional<std::int64_t> requestedRPM(const SentTargets& sent, int index);

// To be called after the helper ran for the request.
void record(SentTargets& sent, const FanRequest& request, std::chrono::duration<double> now,
            bool succeeded = true);

// Makes a fan ours that was found manual in the machine, as if an unknown speed had been sent long ago.
// Changes nothing for a fan that is already ours.
void takeOver(SentTargets& sent, int index);

// Hand-backs of our fans that this poll could not read but that must go back nevertheless: because of a rule
// that overrides the user's settings, because their setting is automatic, or because an earlier hand-back
// failed. A fan that cannot be read can still be handed back by its index.
[[nodiscard]] std::vector<FanRequest> handBacksOfUnreadFans(const PollDecision& decision,
                                                            const PollInput& input, const SentTargets& sent);

} // namespace Fenwhirl
