// The side of the monitor that talks to the machine: reads the controller, asks PollDecision what to do, runs
// the helper for it.
//
// Owns the program's one lasting connection, opened once and never again, and remembers what was sent to each
// fan. It does not trust that memory alone: a fan that the machine says is manual is ours (PollDecision.h),
// at the start, when the session comes to the front, and in an emergency at every poll. It has no thread of
// its own.
//
// Threads: everything belongs to the queue "fenwhirl.smc", on which the monitor calls it. Calls block, for a
// helper run up to half a minute when the helper hangs. Only the stop flag is shared: once it is true, polls
// return nothing, a running one starts no further helper, and discovery ends early.

#pragma once

#include "Fenwhirl/Monitoring/FanCustody.h"
#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Platform/Threads.h"
#include "FenwhirlCore/SMC.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

// What a poll takes from the main thread: a snapshot of what the user wants.
struct PollRequest {
    std::shared_ptr<const FanSettings> settings;
    bool helperInstalled;
    bool
        holdsManual; // send no speeds for now but those of heat protection: the helper is about to be removed
    bool protect;    // heat protection is on
    double protectAt;      // °C
    bool isInFront = true; // this session drives the fans; otherwise it reads and gives back what is its own
    bool isGoingToSleep = false; // the same for now: the computer is about to sleep
    // Whether the helper speaks our protocol, if that is known already.
    std::optional<bool> speaksOurProtocol = true;
    unsigned resets = 0; // how often the user has put everything back, see Services
};

// The reason why a fan is not driven as the user wants.
enum class PollProblem { noTemperature, refused };

// What a poll gives back to it.
struct PollResult {
    std::vector<FanReading> fans;
    std::vector<TemperatureReading> temperatures;
    std::optional<double> primaryCelsius;
    std::chrono::system_clock::time_point readAt; // when the temperatures were read
    bool helperInstalled;                         // as in the request
    bool wantsManualControl;
    bool isProtecting = false;               // heat protection drives the fans
    std::optional<PollProblem> problem = {}; // the last one of the poll
    // By fan index, as after this poll: the speeds that fans were told to run at (requestedRPM).
    std::map<int, std::int64_t> requested = {};
};

class Poller {
public:
    struct Services {
        std::function<std::unique_ptr<SMC>()> openSMC;
        std::function<bool(const HelperCommand&)> runHelper;
        std::function<std::chrono::duration<double>()> now;
        std::shared_ptr<const std::atomic<bool>> stop;
        // Asks the helper whether it speaks our protocol; called when that is not known and a speed is to be
        // sent. Blocks. Without it, it does.
        std::function<bool()> asksForProtocol = {};
        // Counts the resets: a poll that was requested before the latest one sends no speed any more.
        std::shared_ptr<const std::atomic<unsigned>> resets = {};
        // Is told what was read and sent; may be left out.
        std::shared_ptr<FanCustody> custody = {};
        // The time of day that readings carry.
        std::function<std::chrono::system_clock::time_point()> wallClock = std::chrono::system_clock::now;
    };

    explicit Poller(Services services);

    // Opens the controller and finds its temperature sensors; false when there is no controller. Once.
    [[nodiscard]] bool open();

    // One poll; nothing without a controller and after the stop.
    [[nodiscard]] std::optional<PollResult> poll(const PollRequest& request);

    // Hands every fan back at once, and by its index each one of ours that the machine does not show to be
    // automatic then: where the controller does not say how many fans it has, "all" are none.
    void handBackEverything();

    // The same for each fan of ours alone, by another helper than usual.
    void handBackOurs(const std::function<bool(const HelperCommand&)>& runHelper);

    // Whether the machine bears out that the fan is automatic. A fan that told its mode before must tell it
    // now; where none was ever told, or the connection is lost, there is nothing to ask.
    [[nodiscard]] bool hasGoneBack(int index);

    // The fans of the last poll that read them all, for handing them back at the end.
    [[nodiscard]] std::vector<int> fansLastRead() const;

private:
    void lookForManualFans(const std::vector<FanReading>& fans, bool isInFront) FENWHIRL_REQUIRES(queue_);
    void takeOverManualFans() FENWHIRL_REQUIRES(queue_);
    [[nodiscard]] std::map<int, std::int64_t> requestedSpeeds(const std::vector<FanReading>& fans) const
        FENWHIRL_REQUIRES(queue_);
    void tellCustody() const FENWHIRL_REQUIRES(queue_);
    // Runs the helper where a wish needs it; the last problem met.
    std::optional<PollProblem> carryOut(const PollDecision& decision, const PollRequest& request)
        FENWHIRL_REQUIRES(queue_);
    [[nodiscard]] bool maySendSpeed(const PollDecision& decision, const PollRequest& request) const
        FENWHIRL_REQUIRES(queue_);
    // Runs the helper and remembers what came of it; the guard knows of the fan beforehand.
    [[nodiscard]] bool send(const FanWish& wish, const HelperCommand& command,
                            const std::function<bool(const HelperCommand&)>& runHelper)
        FENWHIRL_REQUIRES(queue_);

    const Services services_;
    const OneThread queue_;
    std::unique_ptr<SMC> smc_ FENWHIRL_GUARDED_BY(queue_) FENWHIRL_POINTEE_GUARDED_BY(queue_);
    std::vector<std::string> temperatureKeys_ FENWHIRL_GUARDED_BY(queue_);
    SentTargets sent_ FENWHIRL_GUARDED_BY(queue_);
    bool boosting_ FENWHIRL_GUARDED_BY(queue_) = false;
    std::vector<int> fansLastRead_ FENWHIRL_GUARDED_BY(queue_);
    std::set<int> fansLookedAt_ FENWHIRL_GUARDED_BY(queue_); // whose modes are known from the machine
    bool wasInFront_ FENWHIRL_GUARDED_BY(queue_) = true;
};
