#include "Fenwhirl/Monitoring/FanCustody.h"

#include <utility>

namespace Fenwhirl {

FanCustody::FanCustody(std::function<void(const HandBack&)> announce) : announce_(std::move(announce)) {}

void FanCustody::setIntent(Intent intent) {
    const MutexLock lock(mutex_);
    intent_ = std::move(intent);
    announced_.reset();
    announceIfChanged();
}

void FanCustody::setReadings(const std::vector<FanReading>& fans, bool isHeldBySafetyRule) {
    const MutexLock lock(mutex_);
    fansRead_.clear();
    for (const FanReading& fan : fans) {
        fansRead_.push_back(fan.index);
        if (fan.isMaximumKnown) {
            limits_.insert_or_assign(fan.index, fan);
        }
    }
    isHeldBySafetyRule_ = isHeldBySafetyRule;
    announceIfChanged();
}

void FanCustody::setSent(const SentTargets& sent) {
    const MutexLock lock(mutex_);
    sent_ = sent;
    announceIfChanged();
}

void FanCustody::setSent(int index, const SentTarget& target) {
    const MutexLock lock(mutex_);
    sent_.insert_or_assign(index, target);
    announceIfChanged();
}

HandBack FanCustody::handBack() const {
    const MutexLock lock(mutex_);
    return decided();
}

std::vector<FanRequest> FanCustody::unsentSpeeds() const {
    const MutexLock lock(mutex_);
    std::vector<FanRequest> fanRequests;
    if (!intent_.helperInstalled || !intent_.isInFront || intent_.isGoingToSleep || isHeldBySafetyRule_) {
        return fanRequests;
    }
    for (const int index : fansRead_) {
        if (const auto rpm = chosenSpeed(index); rpm && !isAtChosenSpeed(index)) {
            fanRequests.push_back({index, {rpm}, false});
        }
    }
    return fanRequests;
}

std::vector<int> FanCustody::ours() const {
    const MutexLock lock(mutex_);
    std::vector<int> indices;
    for (const auto& [index, target] : sent_) {
        if (target.isOurs()) {
            indices.push_back(index);
        }
    }
    return indices;
}

HandBack FanCustody::decided() const {
    std::vector<HandBackRule::OwnedFan> owned;
    for (const auto& [index, target] : sent_) {
        if (target.isOurs()) {
            owned.push_back({.index = index,
                             .runsAsChosen = intent_.isInFront && !intent_.isGoingToSleep &&
                                             !isHeldBySafetyRule_ && isAtChosenSpeed(index)});
        }
    }
    if (!intent_.isInFront && owned.empty()) {
        return {.scope = HandBack::Scope::indices, .indices = {}}; // the fans belong to another session
    }
    std::vector<int> known;
    std::vector<HandBackRule::ConfiguredFan> configured;
    if (intent_.isInFront) {
        known = fansRead_;
        known.insert(known.end(), intent_.fansShown.begin(), intent_.fansShown.end());
        for (const auto& [index, setting] : *intent_.settings) {
            configured.push_back({.index = index, .isConstant = setting.mode == FanModeKind::constant});
        }
    }
    return HandBackRule::decide(intent_.helperInstalled, known, configured, owned);
}

std::optional<std::int64_t> FanCustody::chosenSpeed(int index) const {
    const auto setting = intent_.settings->find(index);
    const auto limits = limits_.find(index);
    if (setting == intent_.settings->end() || limits == limits_.end() ||
        setting->second.mode != FanModeKind::constant) {
        return std::nullopt;
    }
    return targetRPM(setting->second, limits->second.minRPM, limits->second.maxRPM, {}, std::nullopt);
}

bool FanCustody::isAtChosenSpeed(int index) const {
    const auto target = sent_.find(index);
    const auto speed = chosenSpeed(index);
    return speed && target != sent_.end() && target->second.succeeded &&
           target->second.desired.manualRPM == speed;
}

void FanCustody::announceIfChanged() {
    HandBack current = decided();
    if (announced_ == current) {
        return;
    }
    announced_ = std::move(current);
    if (announce_) {
        announce_(*announced_);
    }
}

} // namespace Fenwhirl
