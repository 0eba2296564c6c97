#include "Fenwhirl/Monitoring/Poller.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Fenwhirl {

namespace {

// Used while another session drives the fans, or the computer is going to sleep: all that remains to be done
// is to hand back our own fans.
void leaveAlone(PollDecision& decision) {
    for (FanRequest& request : decision.fanRequests) {
        request = {request.index, {}, false};
    }
    decision.forbidsManualControl = true;
}

std::vector<int> ours(const SentTargets& sent) {
    std::vector<int> indices;
    for (const auto& [index, target] : sent) {
        if (target.isOurs()) {
            indices.push_back(index);
        }
    }
    return indices;
}

// From index 10 on, fans have no mode key (SMC::fanModes), so it is pointless to ask for their mode again.
constexpr int fansWithReadableMode = 10;

// Whether every fan has reported its mode once. When none has, the answer is no, even if no fan was read.
bool areAllModesKnown(const std::vector<FanReading>& fans, const std::set<int>& told) {
    return !told.empty() && std::ranges::all_of(fans, [&told](const FanReading& fan) {
        return fan.index >= fansWithReadableMode || told.contains(fan.index);
    });
}

} // namespace

Poller::Poller(Services services) : services_(std::move(services)) {}

bool Poller::open() {
    queue_.assertIsCurrent();
    smc_ = services_.openSMC();
    if (!smc_) {
        return false;
    }
    smc_->setStopFlag(services_.stop.get());
    temperatureKeys_ = smc_->discoverTemperatureKeys();
    return true;
}

std::optional<PollResult> Poller::poll(const PollRequest& request) {
    queue_.assertIsCurrent();
    if (!smc_ || *services_.stop) {
        return std::nullopt;
    }
    PollResult result{};
    result.fans = smc_->readFans();
    result.temperatures = smc_->readTemperatures(temperatureKeys_);
    result.readAt = services_.wallClock();
    if (*services_.stop) {
        return std::nullopt; // the readings may have been cut short
    }
    fansLastRead_.clear();
    for (const FanReading& fan : result.fans) {
        fansLastRead_.push_back(fan.index);
    }
    lookForManualFans(result.fans, request.isInFront);

    const PollInput input{.fans = result.fans,
                          .temperatures = result.temperatures,
                          .settings = *request.settings,
                          .protect = request.protect,
                          .protectAt = request.protectAt};
    PollDecision decision = decide(input, boosting_);
    boosting_ = decision.boosting;
    result.primaryCelsius = decision.primaryCelsius;
    result.helperInstalled = request.helperInstalled;
    result.wantsManualControl = decision.wantsManualControl && request.isInFront;
    if (services_.custody) {
        services_.custody->setReadings(result.fans, decision.forbidsManualControl || decision.boosting);
    }
    // A fan that heat protection cannot drive at its maximum must not keep the speed that
    // another program gave it.
    const bool mustLeaveSome = request.isInFront && decision.boosting &&
                               !std::ranges::all_of(result.fans, &FanReading::isMaximumKnown);
    if (decision.forbidsManualControl || mustLeaveSome) {
        takeOverManualFans();
    }
    if (!request.isInFront || request.isGoingToSleep) {
        leaveAlone(decision);
    }
    for (const FanRequest& fan : handBacksOfUnreadFans(decision, input, sent_)) {
        decision.fanRequests.push_back(fan);
    }
    result.isProtecting = decision.boosting && request.isInFront;
    if (request.helperInstalled) {
        removedHelper_ = nullptr;
    } else if (const auto removed = removedHelper_) {
        handBackWithRemovedHelper(removed);
    }
    result.problem = carryOut(decision, request);
    if (request.helperInstalled) {
        result.requested = requestedSpeeds(result.fans);
    }
    return result;
}

void Poller::handBackEverything() {
    queue_.assertIsCurrent();
    static_cast<void>(services_.runHelper({"auto"}));
    const auto modes = smc_ ? smc_->fanModes() : std::map<int, bool>();
    for (const int index : ours(sent_)) {
        if (const auto mode = modes.find(index); mode == modes.end() || mode->second) {
            static_cast<void>(send({index, {}, false}, {"auto", std::to_string(index)}, services_.runHelper));
        } else {
            returnedByAll_.insert(index);
        }
    }
}

void Poller::handBackWithRemovedHelper(const std::function<bool(const HelperCommand&)>& runHelper) {
    queue_.assertIsCurrent();
    handBackOurs(runHelper);
    removedHelper_ = ours(sent_).empty() ? nullptr : runHelper;
}

void Poller::checkModesAgain() {
    queue_.assertIsCurrent();
    fansWithKnownMode_.clear();
}

void Poller::handBackOurs(const std::function<bool(const HelperCommand&)>& runHelper) {
    queue_.assertIsCurrent();
    for (const int index : ours(sent_)) {
        static_cast<void>(send({index, {}, false}, {"auto", std::to_string(index)}, runHelper));
    }
}

bool Poller::hasGoneBack(int index) {
    queue_.assertIsCurrent();
    if (!smc_ || smc_->isDead()) {
        return true;
    }
    const auto modes = smc_->fanModes();
    const auto mode = modes.find(index);
    if (mode != modes.end()) {
        return !mode->second;
    }
    return smc_->isDead() || !fansWithKnownMode_.contains(index);
}

std::map<int, std::int64_t> Poller::requestedSpeeds(const std::vector<FanReading>& fans) const {
    std::map<int, std::int64_t> speeds;
    for (const FanReading& fan : fans) {
        if (const auto rpm = requestedRPM(sent_, fan.index)) {
            speeds.emplace(fan.index, *rpm);
        }
    }
    return speeds;
}

std::vector<int> Poller::fansLastRead() const {
    queue_.assertIsCurrent();
    return fansLastRead_;
}

// Checks each fan until the machine has reported its mode once. When the session comes to the front, the
// check starts over: fans that another session left manual are ours from then on.
void Poller::lookForManualFans(const std::vector<FanReading>& fans, bool isInFront) {
    if (isInFront && !wasInFront_) {
        fansWithKnownMode_.clear();
    }
    wasInFront_ = isInFront;
    if (!isInFront || areAllModesKnown(fans, fansWithKnownMode_)) {
        return;
    }
    for (const auto& [index, isManual] : smc_->fanModes()) {
        if (fansWithKnownMode_.insert(index).second && isManual) {
            takeOver(sent_, index);
        }
    }
    tellCustody();
}

void Poller::takeOverManualFans() {
    for (const auto& [index, isManual] : smc_->fanModes()) {
        if (isManual) {
            takeOver(sent_, index);
        }
    }
    tellCustody();
}

void Poller::tellCustody() const {
    if (services_.custody) {
        services_.custody->setSent(sent_);
    }
}

std::optional<PollProblem> Poller::carryOut(const PollDecision& decision, const PollRequest& request) {
    std::optional<PollProblem> problem;
    const auto pace = decision.forbidsManualControl ? HandBackPace::urgent : HandBackPace::calm;
    for (FanRequest fan : decision.fanRequests) {
        if (fan.suspended) {
            problem = PollProblem::noTemperature;
        }
        if (decision.boosting && returnedByAll_.erase(fan.index) > 0) {
            sent_.erase(fan.index); // heat protection does not wait until its last speed would be sent again
        }
        auto command = commandFor(fan, sent_, request.helperInstalled, services_.now(), pace);
        if (command && fan.desired.manualRPM && !*services_.stop) {
            if (services_.resets && *services_.resets != request.resets) {
                continue; // the reset that came meanwhile hands the fan back
            }
            if (!maySendSpeed(decision, request)) {
                // A fan that may not be driven must not keep the speed that it has.
                fan.desired = {};
                command = returnedByAll_.contains(fan.index)
                              ? std::nullopt
                              : commandFor(fan, sent_, request.helperInstalled, services_.now(), pace);
            }
        }
        if (!command || *services_.stop) {
            continue;
        }
        if (!send(fan, *command, services_.runHelper)) {
            problem = PollProblem::refused;
        }
    }
    return problem;
}

bool Poller::maySendSpeed(const PollDecision& decision, const PollRequest& request) const {
    if (request.suspendsUserSpeeds && !decision.boosting) {
        return false;
    }
    return request.speaksOurProtocol ? *request.speaksOurProtocol
                                     : !services_.asksForProtocol || services_.asksForProtocol();
}

bool Poller::send(const FanRequest& request, const HelperCommand& command,
                  const std::function<bool(const HelperCommand&)>& runHelper) {
    returnedByAll_.erase(request.index);
    const auto before = sent_.find(request.index);
    if (request.desired.manualRPM && (before == sent_.end() || !before->second.isOurs())) {
        // Recorded before the command runs, so that the guard already knows of the fan.
        record(sent_, request, services_.now(), false);
        tellCustody();
    }
    // The mode is read after a hand-back, because a controller that does not answer for a while looks like
    // one without fan keys: the helper then has nothing to hand back, and succeeds.
    const bool succeeded = runHelper(command) && (request.desired.manualRPM || hasGoneBack(request.index));
    record(sent_, request, services_.now(), succeeded);
    tellCustody();
    return succeeded;
}

} // namespace Fenwhirl
