// The side of the monitor that talks to the machine: reads the controller, asks PollDecision what to do, runs
// the helper for it.
//
// Owns the program's one lasting connection, opened once and never again, and remembers what was sent to each
// fan. It has no thread of its own.
//
// Threads: everything belongs to the queue "fenwhirl.smc", on which the monitor calls it. Calls block, for a
// helper run up to half a minute when the helper hangs. Only the stop flag is shared: once it is true, polls
// return nothing, a running one starts no further helper, and discovery ends early.

#pragma once

#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Platform/Threads.h"
#include "FenwhirlCore/SMC.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// What a poll takes from the main thread: a snapshot of what the user wants.
struct PollRequest {
    std::shared_ptr<const FanSettings> settings;
    bool helperInstalled;
    bool holdsManual; // send no speeds for now: the helper is about to be removed
    bool protect;     // heat protection is on
    double protectAt; // °C
};

// The reason why a fan is not driven as the user wants.
enum class PollProblem { noTemperature, refused };

// What a poll gives back to it.
struct PollResult {
    std::vector<FanReading> fans;
    std::vector<TemperatureReading> temperatures;
    std::optional<double> primaryCelsius;
    bool helperInstalled; // as in the request
    bool wantsManualControl;
    std::optional<PollProblem> problem; // the last one of the poll
};

class Poller {
public:
    struct Services {
        std::function<std::unique_ptr<SMC>()> openSMC;
        std::function<bool(const HelperCommand&)> runHelper;
        std::function<std::chrono::duration<double>()> now;
        std::shared_ptr<const std::atomic<bool>> stop;
    };

    explicit Poller(Services services);

    // Opens the controller and finds its temperature sensors; false when there is no controller. Once.
    [[nodiscard]] bool open();

    // One poll; nothing without a controller and after the stop.
    [[nodiscard]] std::optional<PollResult> poll(const PollRequest& request);

    // The fans of the last poll that read them all, for handing them back at the end.
    [[nodiscard]] std::vector<int> fansLastRead() const;

private:
    // Runs the helper where a wish needs it; the last problem met.
    std::optional<PollProblem> carryOut(const std::vector<FanWish>& wishes, const PollRequest& request)
        FENWHIRL_REQUIRES(queue_);

    const Services services_;
    const OneThread queue_;
    std::unique_ptr<SMC> smc_ FENWHIRL_GUARDED_BY(queue_) FENWHIRL_POINTEE_GUARDED_BY(queue_);
    std::vector<std::string> temperatureKeys_ FENWHIRL_GUARDED_BY(queue_);
    SentTargets sent_ FENWHIRL_GUARDED_BY(queue_);
    bool boosting_ FENWHIRL_GUARDED_BY(queue_) = false;
    std::vector<int> fansLastRead_ FENWHIRL_GUARDED_BY(queue_);
};
