// What one poll does to the fans: pure functions from readings and settings to helper commands.
//
// A poll goes through three steps. `decide` says for every fan what it should be doing, with the safety rules
// above the user's settings. `commandFor` says whether the helper must run for that now, given what was last
// sent to the fan. `record` notes what was sent and whether the helper succeeded.
//
// A fan is ours from the moment a speed is sent to it, whatever comes of that, until a hand-back of it has
// succeeded. A speed that was refused is not repeated before it would have been sent again anyway; a
// hand-back that was refused is repeated until it succeeds. Fans that somebody else left manual become ours, too
// (`takeOver`), and so come under the same rules.
//
// The safety rules, in the order of precedence:
//  - From 92 °C on, every fan is handed back to macOS (a fixed limit, whatever the user's thresholds are).
//  - With heat protection on, every fan runs at its maximum from the moment the main temperature reaches the
//    alert threshold until it falls 5 °C below it.
//  - Without a readable temperature no fan is controlled manually.
// A fan whose maximum cannot be read is left to macOS: whatever speed was chosen for it would be a guess.
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
    bool forbidsManualControl;   // of any fan: an emergency, or no temperature
};

// `wasBoosting` is the `boosting` of the poll before, false at the start. A speed that is not a finite whole
// number of 64 bits makes its fan automatic.
[[nodiscard]] PollDecision decide(const PollInput& input, bool wasBoosting);

struct SentTarget {
    DesiredState desired;
    std::chrono::duration<double> at; // when
    bool succeeded = true;            // as the helper reported

    // Whether the fan may still be manual because of us.
    [[nodiscard]] bool isOurs() const { return desired.manualRPM || !succeeded; }
};

// By fan index; a fan without an entry was never sent anything.
using SentTargets = std::map<int, SentTarget>;

// The arguments of one run of the helper.
using HelperCommand = std::vector<std::string>;

// How soon a hand-back that failed is sent again.
enum class HandBackPace {
    calm,   // 10 seconds after the last attempt
    urgent, // with every poll: manual control is forbidden
};

// The helper command that the wish needs now, if any. "auto" goes only to a fan that is ours: once when it
// was last sent a speed, then at the pace until it succeeds. A speed is sent when it differs by at least 100
// rpm from the one sent last, else once more than 10 seconds have passed, so that small changes are collected
// and lost ones repaired.
[[nodiscard]] std::optional<HelperCommand> commandFor(const FanWish& wish, const SentTargets& sent,
                                                      bool helperInstalled, std::chrono::duration<double> now,
                                                      HandBackPace pace = HandBackPace::calm);

// The speed that the fan was last told to run at; nothing for a fan that was told nothing, was handed back
// since, or refused: its speed is then not ours.
[[nodiscard]] std::optional<std::int64_t> requestedRPM(const SentTargets& sent, int index);

// To be called after the helper ran for the wish.
void record(SentTargets& sent, const FanWish& wish, std::chrono::duration<double> now, bool succeeded = true);

// Makes a fan ours that was found manual in the machine: as if an unknown speed had been sent long ago.
// Nothing changes for a fan that is ours already.
void takeOver(SentTargets& sent, int index);

// The fans of ours that this poll could not read and that must go back all the same: because of a rule above
// the user's settings, because their setting is automatic, or because an earlier hand-back failed. A fan that
// cannot be read can still be handed back by its index.
[[nodiscard]] std::vector<FanWish> handBacksOfUnreadFans(const PollDecision& decision, const PollInput& input,
                                                         const SentTargets& sent);
