// Who answers for which fan: what has to be handed back if the application ended at this very moment.
//
// The poll side says what it read and what it sent, the main thread what the user wants; from both follows,
// at every moment, which fans go back at the end and which keep their speed. Whatever may have changed the
// answer is announced before the call returns, so that a fan is known to the guard before the first command
// for it runs.
//
// The rule itself is HandBackRule.h. In a session that is not in front, only our own fans count: the others
// belong to whoever is.
//
// Threads: safe from any thread. Announcements are made one at a time, by whichever thread caused them.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "Fenwhirl/Monitoring/FanSetting.h"
#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Platform/Threads.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class FanCustody {
public:
    // What the main thread knows.
    struct Intent {
        std::shared_ptr<const FanSettings> settings = std::make_shared<const FanSettings>();
        bool helperInstalled = false;
        bool isInFront = true;
        bool isGoingToSleep = false; // fans with a constant speed go back, too
        std::vector<int> fansShown;  // as last published
    };

    // `announce` must neither block nor call back; it may be left out.
    explicit FanCustody(std::function<void(const HandBack&)> announce);

    // Announces, whether the answer changed or not.
    void setIntent(Intent intent);
    // What a poll read, and whether a safety rule holds the fans: an emergency, heat protection, or a missing
    // temperature.
    void setReadings(const std::vector<FanReading>& fans, bool isHeldBySafetyRule);
    // What was sent. Announces when the answer changed.
    void setSent(const SentTargets& sent);
    // One fan has gone back, or was sent its speed, outside of a poll. Announces when the answer changed.
    void setSent(int index, const SentTarget& target);

    [[nodiscard]] HandBack handBack() const;
    // Constant speeds that the user chose and that no poll has sent yet, for fans of the last poll; none
    // while a safety rule holds the fans or the computer goes to sleep, and none without a helper or behind
    // another session.
    [[nodiscard]] std::vector<FanWish> unsentSpeeds() const;
    // The fans that are ours, ascending.
    [[nodiscard]] std::vector<int> ours() const;

private:
    [[nodiscard]] HandBack decided() const FENWHIRL_REQUIRES(mutex_);
    // The constant speed that the user chose for the fan, within the limits that were last read.
    [[nodiscard]] std::optional<std::int64_t> chosenSpeed(int index) const FENWHIRL_REQUIRES(mutex_);
    [[nodiscard]] bool isAtChosenSpeed(int index) const FENWHIRL_REQUIRES(mutex_);
    void announceIfChanged() FENWHIRL_REQUIRES(mutex_);

    const std::function<void(const HandBack&)> announce_;
    mutable Mutex mutex_;
    Intent intent_ FENWHIRL_GUARDED_BY(mutex_);
    SentTargets sent_ FENWHIRL_GUARDED_BY(mutex_);
    std::vector<int> fansRead_ FENWHIRL_GUARDED_BY(mutex_);
    std::map<int, FanReading> limits_ FENWHIRL_GUARDED_BY(mutex_); // of each fan, as last read
    bool isHeldBySafetyRule_ FENWHIRL_GUARDED_BY(mutex_) = false;
    std::optional<HandBack> announced_ FENWHIRL_GUARDED_BY(mutex_);
};
