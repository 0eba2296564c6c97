#include "Fenwhirl/Monitoring/Poller.h"

#include <utility>

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
    if (*services_.stop) {
        return std::nullopt; // the readings may have been cut short
    }
    fansLastRead_.clear();
    for (const FanReading& fan : result.fans) {
        fansLastRead_.push_back(fan.index);
    }

    PollDecision decision = decide({.fans = result.fans,
                                    .temperatures = result.temperatures,
                                    .settings = *request.settings,
                                    .protect = request.protect,
                                    .protectAt = request.protectAt},
                                   boosting_);
    boosting_ = decision.boosting;
    result.primaryCelsius = decision.primaryCelsius;
    result.helperInstalled = request.helperInstalled;
    result.wantsManualControl = decision.wantsManualControl;
    result.problem = carryOut(decision.wishes, request);
    return result;
}

std::vector<int> Poller::fansLastRead() const {
    queue_.assertIsCurrent();
    return fansLastRead_;
}

std::optional<PollProblem> Poller::carryOut(const std::vector<FanWish>& wishes, const PollRequest& request) {
    std::optional<PollProblem> problem;
    for (const FanWish& wish : wishes) {
        if (wish.suspended) {
            problem = PollProblem::noTemperature;
        }
        const auto command = commandFor(wish, sent_, request.helperInstalled, services_.now());
        if (!command || *services_.stop || (request.holdsManual && wish.desired.manualRPM)) {
            continue;
        }
        if (!services_.runHelper(*command)) {
            problem = PollProblem::refused;
        }
        record(sent_, wish, services_.now());
    }
    return problem;
}
