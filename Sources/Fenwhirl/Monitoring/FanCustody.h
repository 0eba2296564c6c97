// Keeps track of the fans that this program is responsible for: what would have to be handed back if the
// application ended at this moment.
//
// The poller reports what it read and what it sent; the main thread reports what the user wants. From both
// follows, at every moment, which fans go back at the end and which keep their speed. Any change that may
// alter the answer is announced before the call returns, so that the guard knows of a fan before the first
// command for it runs.
//
// The rule itself is in HandBackRule.h. In a session that is not in front, only our own fans are considered:
// the others belong to the session that is.
//
// Threads: safe from any thread. Announcements are made one at a time, on the thread that caused them.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "Fenwhirl/Monitoring/FanSetting.h"
#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace Fenwhirl {

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

    // `announce` must neither block nor call back into this object; it may be empty.
    explicit FanCustody(std::function<void(const HandBack&)> announce);

    // Always announces, even if the answer did not change.
    void setIntent(Intent intent);
    // Sets what a poll read, and whether a safety rule controls the fans: an emergency, heat protection, or a
    // missing temperature. Announces when the answer changed.
    void setReadings(const std::vector<FanReading>& fans, bool isHeldBySafetyRule);
    // Sets what was sent. Announces when the answer changed.
    void setSent(const SentTargets& sent);
    // Records that one fan was handed back, or was sent its speed, outside a poll. Announces
    // when the answer changed.
    void setSent(int index, const SentTarget& target);

    [[nodiscard]] HandBack handBack() const;
    // The constant speeds that the user chose and that no poll has sent yet, for the fans of the last poll.
    // Empty while a safety rule controls the fans or the computer is going to sleep, without a helper, and in
    // a session that is not in front.
    [[nodiscard]] std::vector<FanRequest> unsentSpeeds() const;
    // The fans that are ours, in ascending order.
    [[nodiscard]] std::vector<int> ours() const;

private:
    [[nodiscard]] HandBack decided() const FENWHIRL_REQUIRES(mutex_);
    // The constant speed that the user chose for the fan, clamped to the limits that were last read.
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

} // namespace Fenwhirl
