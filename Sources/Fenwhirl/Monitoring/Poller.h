// The part of the monitor that talks to the machine: it reads the controller, asks PollDecision what to do,
// and runs the helper for it.
//
// Owns the program's only permanent connection, which is opened once and never reopened, and remembers what
// was sent to each fan. It does not rely on that memory alone: a fan that the machine reports as manual is
// ours (PollDecision.h). This is checked at the start, when the session comes to the front and, in an
// emergency, at every poll. The poller has no thread of its own.
//
// Threads: everything belongs to the queue "fenwhirl.smc", on which the monitor calls it. Calls block; if the
// helper hangs, a helper run takes up to half a minute. Only the stop flag is shared: once it is true, polls
// return nothing, a running poll starts no further helper, and discovery ends early.

#pragma once

#include "Fenwhirl/Monitoring/FanCustody.h"
#include "Fenwhirl/Monitoring/PollDecision.h"
#include "Fenwhirl/Platform/Toolkit/Threads.h"
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

namespace Fenwhirl {

// The helper's file: whether it is there, and a number that changes whenever it does.
struct HelperFile {
    bool isThere;
    std::int64_t stamp = 0; // 0 if it is not there

    bool operator==(const HelperFile&) const = default;
};

// The input of a poll from the main thread: a snapshot of what the user wants.
struct PollRequest {
    std::shared_ptr<const FanSettings> settings;
    bool helperInstalled;
    bool suspendsUserSpeeds; // the helper is being removed: send no speeds except those of heat protection
    bool protect;            // heat protection is on
    double protectAt;        // °C
    bool isInFront = true;   // this session drives the fans; otherwise the poll reads and hands back our own
    bool isGoingToSleep = false; // the computer is about to sleep; the poll reads and hands back our own
    // Whether the helper speaks our protocol, if that is already known.
    std::optional<bool> speaksOurProtocol = true;
    unsigned resets = 0; // the count of resets when the request was made; see Services
    // The helper's file that the above is about; empty while that is not known.
    std::optional<HelperFile> helperFile = {};
};

// The reason why a fan is not driven as the user wants.
enum class PollProblem { noTemperature, refused };

// The result of a poll for the main thread.
struct PollResult {
    std::vector<FanReading> fans;
    std::vector<TemperatureReading> temperatures;
    std::optional<double> primaryCelsius;
    std::chrono::system_clock::time_point readAt; // when the temperatures were read
    bool helperInstalled;                         // as in the request
    bool wantsManualControl;
    bool isProtecting = false;               // heat protection drives the fans
    std::optional<PollProblem> problem = {}; // the last problem of the poll
    // The speeds that fans were told to run at (requestedRPM), as of the end of this poll, by fan index.
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
        // sent. Blocks. If empty, the helper is assumed to speak it.
        std::function<bool()> asksForProtocol = {};
        // The number of resets and sleeps: a poll that was requested before the latest
        // one sends no more speeds.
        std::shared_ptr<const std::atomic<unsigned>> resets = {};
        // Receives what was read and sent; may be empty.
        std::shared_ptr<FanCustody> custody = {};
        // The time of day for the readings.
        std::function<std::chrono::system_clock::time_point()> wallClock = std::chrono::system_clock::now;
    };

    explicit Poller(Services services);

    // Opens the controller and discovers its temperature sensors; false when there is no
    // controller. To be called once.
    [[nodiscard]] bool open();

    // Runs one poll; returns nothing without a controller or after the stop.
    [[nodiscard]] std::optional<PollResult> poll(const PollRequest& request);

    // Hands back all fans with one command, and then, by its index, each of our fans that the machine does
    // not report as automatic: where the controller does not say how many fans it has, "all" means none.
    void handBackEverything();

    // Hands back only our own fans, one by one, with the given way to run the helper.
    void handBackOurs(const std::function<bool(const HelperCommand&)>& runHelper);

    // The same after the helper's removal. `runHelper` runs the removed file; what it could not hand back is tried
    // again with every poll until a helper is installed.
    void handBackWithRemovedHelper(const std::function<bool(const HelperCommand&)>& runHelper);

    // The next poll reads the mode of every fan again, because something else may have changed it.
    void checkModesAgain();

    // Whether the machine confirms that the fan is automatic. A fan that has reported its mode
    // before must report it now. If it never has, or if the connection is lost, nothing can be
    // checked and the answer is true.
    [[nodiscard]] bool hasGoneBack(int index);

    // The fans that the last completely read poll found, for handing them back at the end.
    [[nodiscard]] std::vector<int> fansLastRead() const;

private:
    void lookForManualFans(const std::vector<FanReading>& fans, bool isInFront) FENWHIRL_REQUIRES(queue_);
    void takeOverManualFans() FENWHIRL_REQUIRES(queue_);
    [[nodiscard]] std::map<int, std::int64_t> requestedSpeeds(const std::vector<FanReading>& fans) const
        FENWHIRL_REQUIRES(queue_);
    void tellCustody() const FENWHIRL_REQUIRES(queue_);
    // Runs the helper for the fanRequests that need it; returns the last problem met.
    std::optional<PollProblem> carryOut(const PollDecision& decision, const PollRequest& request)
        FENWHIRL_REQUIRES(queue_);
    [[nodiscard]] bool maySendSpeed(const PollDecision& decision, const PollRequest& request) const
        FENWHIRL_REQUIRES(queue_);
    // Runs the helper and records the outcome. The guard knows of the fan before the command runs.
    [[nodiscard]] bool send(const FanRequest& request, const HelperCommand& command,
                            const std::function<bool(const HelperCommand&)>& runHelper)
        FENWHIRL_REQUIRES(queue_);

    const Services services_;
    const ThreadAffinity queue_;
    std::unique_ptr<SMC> smc_ FENWHIRL_GUARDED_BY(queue_) FENWHIRL_POINTEE_GUARDED_BY(queue_);
    std::vector<std::string> temperatureKeys_ FENWHIRL_GUARDED_BY(queue_);
    SentTargets sent_ FENWHIRL_GUARDED_BY(queue_);
    bool boosting_ FENWHIRL_GUARDED_BY(queue_) = false;
    std::vector<int> fansLastRead_ FENWHIRL_GUARDED_BY(queue_);
    std::set<int> fansWithKnownMode_ FENWHIRL_GUARDED_BY(queue_); // the machine has reported their modes
    bool wasInFront_ FENWHIRL_GUARDED_BY(queue_) = true;
    // Fans that the machine showed automatic after all were handed back with one command, and that were sent
    // nothing since. Their last speed is still in `sent_`.
    std::set<int> returnedByAll_ FENWHIRL_GUARDED_BY(queue_);
    // Runs the helper that was removed, while fans of ours remain that it could not hand back.
    std::function<bool(const HelperCommand&)> removedHelper_ FENWHIRL_GUARDED_BY(queue_);
};

} // namespace Fenwhirl
