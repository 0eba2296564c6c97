// Fans: what they report, and the one sequence of writes that drives or releases them on both generations of
// firmware. Each step is taken only where its key exists: older firmware keeps a mask of forced fans in
// "FS! "; newer firmware must be unlocked through "Ftst" before it obeys the mode keys.

#include "FenwhirlCore/NumberText.h"
#include "FenwhirlCore/Precondition.h"
#include "FenwhirlCore/SMC.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Fenwhirl {

namespace {

constexpr std::string_view forcedMaskKey = "FS! ";
constexpr std::string_view unlockKey = "Ftst";

// The maximum assumed for a fan that does not report one. It exceeds every recorded machine's (the fastest
// fan turns at 8000 rpm).
constexpr double assumedMaximumRPM = 10000;

constexpr int forcedMaskBits = 16;
// From fan 10 on, the truncated mode key ("F10M") would be the same as that of the fan's limits.
constexpr int fansWithModeKeys = 10;

constexpr double automaticMode = 0;
constexpr double manualMode = 1;

// From index 10 on, the text is longer than a key, and the controller sees only its first four characters.
std::string fanKey(std::int64_t index, std::string_view suffix) {
    return std::string("F").append(std::to_string(index)).append(suffix);
}

bool isUsableMask(double mask) {
    return mask > -1 && mask < 65536;
}

bool isUsableMaskIndex(std::int64_t index) {
    return index >= 0 && index <= 65535;
}

// The mask with the fan's bit set or cleared; unchanged for a fan beyond its 16 bits.
std::uint16_t changedMask(double mask, std::int64_t index, bool forced) {
    const auto current = static_cast<std::uint16_t>(mask);
    if (index >= forcedMaskBits) {
        return current;
    }
    const auto bit = static_cast<std::uint16_t>(1U << static_cast<unsigned>(index));
    return static_cast<std::uint16_t>(forced ? current | bit : current & ~bit);
}

} // namespace

std::optional<std::int64_t> SMC::usableFanCount() {
    return NumberText::exactWhole(readValue("FNum").value_or(0));
}

std::int64_t SMC::fanCount() {
    const auto count = usableFanCount();
    if (!count) {
        stopOnBrokenPrecondition();
    }
    return *count;
}

std::vector<FanReading> SMC::readFans() {
    std::vector<FanReading> fans;
    // Indexes beyond an int would take days of round trips to reach.
    const std::int64_t end = std::min<std::int64_t>(fanCount(), std::numeric_limits<int>::max());
    for (int index = 0; index < end && !shouldStop(); ++index) {
        const auto rpm = readValue(fanKey(index, "Ac"));
        if (!rpm) {
            continue;
        }
        FanReading fan{};
        fan.index = index;
        fan.rpm = *rpm;
        fan.minRPM = readValue(fanKey(index, "Mn")).value_or(0);
        const auto maximum = readValue(fanKey(index, "Mx"));
        fan.maxRPM = maximum.value_or(*rpm > 1 ? *rpm : 1);
        fan.isMaximumKnown = maximum.has_value();
        fan.targetRPM = readValue(fanKey(index, "Tg")).value_or(*rpm);
        fans.push_back(fan);
    }
    return fans;
}

std::optional<std::string> SMC::fanModeKey(std::int64_t index) {
    for (const std::string_view suffix : {"Md", "md"}) {
        if (auto key = fanKey(index, suffix); hasKey(key)) {
            return key;
        }
    }
    return std::nullopt;
}

std::map<int, bool> SMC::fanModes() {
    const std::int64_t count = std::min<std::int64_t>(fanCount(), std::numeric_limits<int>::max());
    const bool isCountKnown = count >= 1;
    std::map<int, bool> modes;
    if (const auto mask = readValue(forcedMaskKey); mask && isUsableMask(*mask)) {
        const auto bits = static_cast<std::uint16_t>(*mask);
        for (int index = 0; index < forcedMaskBits && (index < count || !isCountKnown); ++index) {
            modes[index] = (bits >> static_cast<unsigned>(index) & 1U) != 0;
        }
    }
    for (int index = 0; index < fansWithModeKeys && (index < count || !isCountKnown); ++index) {
        const auto isManual = isManualByMode(index);
        if (isManual) {
            modes[index] = *isManual || modes[index];
        } else if (!isCountKnown) {
            break;
        }
    }
    return modes;
}

std::optional<bool> SMC::isManualByMode(int index) {
    std::optional<bool> isManual;
    for (const std::string_view suffix : {"Md", "md"}) {
        if (const auto mode = readValue(fanKey(index, suffix))) {
            isManual = isManual.value_or(false) || *mode > automaticMode || *mode < automaticMode;
        }
    }
    return isManual;
}

bool SMC::setFanSpeed(std::int64_t index, double rpm) {
    const double minimum = readValue(fanKey(index, "Mn")).value_or(0);
    const double maximum = readValue(fanKey(index, "Mx")).value_or(assumedMaximumRPM);
    double target = rpm;
    if (target <= minimum) {
        target = minimum;
    }
    if (maximum < target) {
        target = maximum;
    }
    // Checked in single precision, the widest type of a target, so that no infinity is ever sent to a fan.
    if (!std::isfinite(static_cast<float>(target))) {
        return false;
    }

    if (const auto mask = readValue(forcedMaskKey)) {
        if (!isUsableMaskIndex(index) || !isUsableMask(*mask)) {
            stopOnBrokenPrecondition();
        }
        // A mask that cannot be written is not a failure: the mode and the target decide.
        static_cast<void>(writeValue(forcedMaskKey, changedMask(*mask, index, true)));
    }
    const bool hasUnlock = hasKey(unlockKey);
    if (hasUnlock) {
        static_cast<void>(writeValue(unlockKey, 1));
    }

    const bool isManual = enterManualMode(index, hasUnlock);
    return writeValue(fanKey(index, "Tg"), target) && (isManual || !hasUnlock);
}

bool SMC::enterManualMode(std::int64_t index, bool hasUnlock) {
    const auto modeKey = fanModeKey(index);
    if (!modeKey || writeValue(*modeKey, manualMode)) {
        return true;
    }
    // The firmware honours the unlock only some hundred milliseconds after the write.
    constexpr int attempts = 20;
    constexpr std::chrono::milliseconds pause{200};
    for (int attempt = 0; hasUnlock && attempt < attempts && !transport_->isDead(); ++attempt) {
        transport_->wait(pause);
        if (writeValue(*modeKey, manualMode)) {
            return true;
        }
    }
    return false;
}

bool SMC::resetFan(std::int64_t index) {
    return handBack(index, Unusable::stop);
}

bool SMC::handBack(std::int64_t index, Unusable unusable) {
    bool succeeded = true;
    if (const auto mask = readValue(forcedMaskKey)) {
        if (isUsableMaskIndex(index) && isUsableMask(*mask)) {
            succeeded = writeValue(forcedMaskKey, changedMask(*mask, index, false));
        } else if (unusable == Unusable::stop) {
            stopOnBrokenPrecondition();
        } else {
            succeeded = false;
        }
    }
    for (const std::string_view suffix : {"Md", "md"}) {
        const std::string key = fanKey(index, suffix);
        if (hasKey(key) && !writeValue(key, automaticMode)) {
            succeeded = false;
        }
    }
    releaseUnlockIfAllAutomatic(unusable);
    // On a dead connection every key seems absent, which must not be taken for "nothing to hand back".
    return succeeded && !transport_->isDead();
}

bool SMC::resetFans() {
    const std::int64_t count = fanCount();
    bool succeeded = !transport_->isDead();
    for (std::int64_t index = 0; index < count; ++index) {
        if (transport_->isDead()) {
            return false;
        }
        succeeded = resetFan(index) && succeeded;
    }
    return succeeded;
}

void SMC::releaseUnlockIfAllAutomatic(Unusable unusable) {
    if (!hasKey(unlockKey)) {
        return;
    }
    const std::int64_t count = unusable == Unusable::stop ? fanCount() : usableFanCount().value_or(0);
    for (std::int64_t index = 0; index < count; ++index) {
        if (transport_->isDead()) {
            return;
        }
        const auto modeKey = fanModeKey(index);
        const auto mode = modeKey ? readValue(*modeKey) : std::nullopt;
        if (mode && (*mode > automaticMode || *mode < automaticMode)) {
            return; // a fan that is still manual needs the unlock
        }
    }
    static_cast<void>(writeValue(unlockKey, 0));
}

} // namespace Fenwhirl
