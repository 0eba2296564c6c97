#include "SimulatedMac/FanFirmware.h"

#include "FenwhirlCore/SMCRecord.h"

#include <algorithm>
#include <cmath>

namespace simulated {

namespace {

constexpr FourCC maskKey = fourCC("FS! ");
constexpr FourCC unlockKey = fourCC("Ftst");

bool isSet(const std::optional<double>& number) {
    return number && *number != 0;
}

// Commands can define keys with arbitrary bits; an infinity or a NaN must not reach the fan's speed.
double finiteOr(const std::optional<double>& number, double otherwise) {
    return number && std::isfinite(*number) ? *number : otherwise;
}

bool isInMask(const std::optional<double>& mask, unsigned fan) {
    // Converting a number beyond 32 bits to an integer would be undefined behaviour.
    constexpr double beyondMask = 4294967296.0;
    return mask && *mask > 0 && *mask < beyondMask && (static_cast<std::uint32_t>(*mask) >> fan & 1U) != 0;
}

} // namespace

FanFirmware::FanFirmware(const KeyStore& keys) {
    learn(keys);
}

void FanFirmware::learn(const KeyStore& keys) {
    hasUnlock_ = keys.find(unlockKey) != nullptr;
    modeKeys_.clear();
    const double fans = keys.number(fourCC("FNum")).value_or(0);
    // With the arguments in this order, a NaN becomes 0.
    count_ = static_cast<unsigned>(std::max(0.0, std::min<double>(fans, maxFanCount)));
    for (unsigned fan = 0; fan < count_; ++fan) {
        for (const FourCC code : {fanKey(fan, "Md"), fanKey(fan, "md")}) {
            if (keys.find(code) != nullptr) {
                modeKeys_.push_back(code);
            }
        }
    }
}

FanLimits FanFirmware::limits(const KeyStore& keys, unsigned fan) const {
    return {.minimumRPM = finiteOr(keys.number(fanKey(fan, "Mn")), 0),
            .maximumRPM = finiteOr(keys.number(fanKey(fan, "Mx")), 6000)};
}

bool FanFirmware::isManual(const KeyStore& keys, unsigned fan) const {
    return isInMask(keys.number(maskKey), fan) || isSet(keys.number(fanKey(fan, "Md"))) ||
           isSet(keys.number(fanKey(fan, "md")));
}

bool FanFirmware::isUnlocked(const KeyStore& keys, double steadySeconds) const {
    if (!hasUnlock_) {
        return true;
    }
    return isSet(keys.number(unlockKey)) && unlockSeconds_ && unlockedSince_ &&
           steadySeconds - *unlockedSince_ >= *unlockSeconds_;
}

bool FanFirmware::isModeKey(FourCC code) const {
    return std::find(modeKeys_.begin(), modeKeys_.end(), code) != modeKeys_.end();
}

std::uint8_t FanFirmware::checkWrite(const KeyStore& keys, FourCC code, std::span<const std::uint8_t> bytes,
                                     double steadySeconds) const {
    if (!isModeKey(code) || isUnlocked(keys, steadySeconds)) {
        return Fenwhirl::SMCResult::success;
    }
    const bool handsBack =
        std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t byte) { return byte == 0; });
    return handsBack ? Fenwhirl::SMCResult::success : Fenwhirl::SMCResult::notWritable;
}

void FanFirmware::wrote(KeyStore& keys, FourCC code, double steadySeconds) {
    if (code != unlockKey) {
        return;
    }
    if (!isSet(keys.number(unlockKey))) {
        forget(keys);
    } else if (!unlockedSince_) { // writing 1 again does not restart the delay
        unlockedSince_ = steadySeconds;
    }
}

void FanFirmware::forget(KeyStore& keys) {
    keys.setNumber(maskKey, 0);
    keys.setNumber(unlockKey, 0);
    for (const FourCC code : modeKeys_) {
        keys.setNumber(code, 0);
    }
    unlockedSince_.reset();
}

} // namespace simulated
