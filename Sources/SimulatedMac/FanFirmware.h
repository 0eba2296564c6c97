// The fan control of the SMC's firmware: which fans are manual, which writes may change that, and what is
// lost in sleep.
//
// There are three generations, which differ in the keys that a machine has:
//   - "FS! ": a mask, bit i set = fan i is manual (Intel Macs until about 2017, and some after);
//   - "F{i}Md" (or "F{i}md"): a mode per fan, 0 automatic, anything else manual;
//   - mode keys behind the unlock flag "Ftst": a fan can be made manual only some time after 1 was written to
//     the flag. Clearing the flag makes every fan automatic. Handing a fan back (writing 0) is always
//     allowed.
//
// The delay of the unlock is real time, whatever the speed of the simulation, because clients wait in real
// time, too.

#pragma once

#include "SimulatedMac/FanModel.h"
#include "SimulatedMac/KeyStore.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace simulated {

class FanFirmware {
public:
    static constexpr unsigned maxFanCount = 10; // a key has room for one digit
    static constexpr double usualUnlockSeconds = 0.5;

    explicit FanFirmware(const KeyStore& keys);

    // Detects the fan keys again, after keys were defined.
    void learn(const KeyStore& keys);

    [[nodiscard]] unsigned count() const { return count_; }

    [[nodiscard]] bool hasUnlock() const { return hasUnlock_; }

    [[nodiscard]] FanLimits limits(const KeyStore& keys, unsigned fan) const;

    // True when the fan follows its target key instead of the firmware's curve.
    [[nodiscard]] bool isManual(const KeyStore& keys, unsigned fan) const;

    // Whether mode keys accept a change to manual at this moment of the steady clock.
    [[nodiscard]] bool isUnlocked(const KeyStore& keys, double steadySeconds) const;

    // The result of writing `bytes` to the key: success, or the refusal of a locked mode key.
    [[nodiscard]] std::uint8_t checkWrite(const KeyStore& keys, FourCC code,
                                          std::span<const std::uint8_t> bytes, double steadySeconds) const;

    // Applies the side effects of a write that has just been stored.
    void wrote(KeyStore& keys, FourCC code, double steadySeconds);

    // Returns to the power-on state: every fan automatic, the unlock gone. Waking from sleep does this.
    void forget(KeyStore& keys);

    // Sets the delay between the unlock and writable mode keys; absent = they never become writable.
    void setUnlockSeconds(std::optional<double> seconds) { unlockSeconds_ = seconds; }

private:
    [[nodiscard]] bool isModeKey(FourCC code) const;

    unsigned count_ = 0;
    bool hasUnlock_ = false;
    std::vector<FourCC> modeKeys_; // of all fans; one per fan where the firmware has them
    std::optional<double> unlockSeconds_ = usualUnlockSeconds;
    std::optional<double> unlockedSince_; // steady clock
};

} // namespace simulated
