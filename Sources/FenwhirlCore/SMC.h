// One open connection to the System Management Controller, and the program's only access to sensors and fans.
//
// Keys are four-character strings ("FNum", "F0Ac", "TC0P"); fans are numbered from 0, as in the keys.
// Temperatures are in degrees Celsius, speeds in revolutions per minute. Nothing is cached: each key
// read is two round trips (key info, then read). The controller itself holds all state, so two
// connections always agree.
//
// Failures are returned as values: an absent optional, or false. Nothing is retried, except where setFanSpeed
// says so. Only a broken precondition stops the process: a key count, fan count or fan mask that is not a
// usable number, or a fan index that no mask can represent.
//
// Threads: there is no lock. Calls are synchronous round trips on the caller's thread; the application uses
// its connection only from the queue "fenwhirl.smc". Reading needs no privilege; the system refuses writes
// from an unprivileged process.

#pragma once

#include "FenwhirlCore/SMCTransport.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Fenwhirl {

// What one fan reports.
struct FanReading {
    int index;        // as in the SMC keys; a list may have gaps
    double rpm;       // current speed
    double minRPM;    // lowest speed the fan accepts; 0 when unreadable
    double maxRPM;    // highest speed; when unreadable, the current speed, but at least 1
    double targetRPM; // the speed that the SMC is steering to; when unreadable, the current speed
    // Whether the controller reported `maxRPM`. A fan is never driven by a guess.
    bool isMaximumKnown = true;

    bool operator==(const FanReading&) const = default;
};

// What one temperature sensor reports.
struct TemperatureReading {
    std::string key;
    double celsius;

    bool operator==(const TemperatureReading&) const = default;
};

class SystemText;

class SMC {
public:
    struct KeyInfo {
        std::uint32_t size; // in bytes; may exceed the 32 that a read returns
        std::uint32_t type; // four-character code
    };

    struct RawValue {
        std::string type;
        std::vector<std::uint8_t> bytes; // at most 32
    };

    // Connects to this computer's controller; null when it cannot be found or opened.
    [[nodiscard]] static std::unique_ptr<SMC> open();

    explicit SMC(std::unique_ptr<SMCTransport> transport);

    // Once the flag is true, loops of reads (enumeration, discovery, fans, temperatures) end early and return
    // what they have. The caller owns the flag, which must outlive the connection; null means "never stop".
    void setStopFlag(const std::atomic<bool>* stopFlag);

    // Whether the connection is lost for good: every further call fails.
    [[nodiscard]] bool isDead() const { return transport_->isDead(); }

    // --- Keys ---
    [[nodiscard]] std::optional<KeyInfo> info(std::string_view key);
    [[nodiscard]] bool hasKey(std::string_view key);
    [[nodiscard]] std::optional<RawValue> readBytes(std::string_view key);
    [[nodiscard]] std::optional<double> readValue(std::string_view key);
    // `size` is the size that `info` reported, not the number of bytes; at most 32 bytes are sent.
    [[nodiscard]] bool writeBytes(std::string_view key, std::uint32_t size,
                                  std::span<const std::uint8_t> bytes);
    [[nodiscard]] bool writeValue(std::string_view key, double value);
    // Every key that the controller reports, in its order, including duplicates. An index that
    // cannot be read is skipped.
    [[nodiscard]] std::vector<std::string> allKeys();

    // Folds the first four bytes, big-endian. A shorter text is not padded; a longer one is truncated
    // ("F10Ac" becomes "F10A").
    [[nodiscard]] static std::uint32_t fourCC(std::string_view text);
    // The four characters of a code, including NULs and trailing blanks; empty when a byte is not ASCII.
    [[nodiscard]] static std::string string(std::uint32_t code);

    // --- Fans ---
    // As the controller reports it, or 0 when it reports none. Not bounded; negative
    // if the controller says so.
    [[nodiscard]] std::int64_t fanCount();
    // Fans whose current speed cannot be read are left out.
    [[nodiscard]] std::vector<FanReading> readFans();
    // "F{i}Md" or "F{i}md", whichever exists first.
    [[nodiscard]] std::optional<std::string> fanModeKey(std::int64_t index);
    // Maps each fan whose mode can be read to whether it is under manual control: its mode is not automatic,
    // or its bit in the 16-bit mask of forced fans is set. From fan 10 on, only the mask can tell. When the
    // controller does not report how many fans it has, the result covers the fans of the mask and those with
    // consecutive mode keys starting at 0.
    [[nodiscard]] std::map<int, bool> fanModes();
    // Puts the fan under manual control at the given speed, clamped to the fan's own range (the maximum wins;
    // 0 to 10000 rpm where the fan does not report its range). A speed that is not finite after clamping is
    // refused before any write. Unlocks the controller where it has a lock, and then retries the mode key for
    // up to about 4 seconds.
    [[nodiscard]] bool setFanSpeed(std::int64_t index, double rpm);
    // Returns the fan to automatic control and, when no fan is manual any more, takes back the unlock. A fan
    // without any key to reset counts as returned; on a dead connection the result is false.
    [[nodiscard]] bool resetFan(std::int64_t index);
    // Resets every fan, without stopping at one that refuses; true when all succeeded, or when there
    // is none. On a dead connection nothing was returned, and the result is false, even if the fan
    // count could not be read.
    [[nodiscard]] bool resetFans();

    // --- Temperatures ---
    // Keys that begin with "T", have a temperature type and currently read between 1 and 130 °C (both
    // exclusive). Walks every key of the controller, so it is meant to be called once per start.
    [[nodiscard]] std::vector<std::string> discoverTemperatureKeys();
    // In the order of the keys; a key that cannot be read, or is not between 0 and 130 °C (both exclusive),
    // yields no reading.
    [[nodiscard]] std::vector<TemperatureReading> readTemperatures(std::span<const std::string> keys);

    // --- Report: French, for human readers; lines separated by "\n", without one at the end ---
    [[nodiscard]] std::string diagnosticReport();
    [[nodiscard]] std::string diagnosticReport(const SystemText& system);
    // Drives the first fan for six seconds and hands every fan back; takes about eight seconds and needs
    // root. Once it has written, it always goes on to the hand-back, whatever the controller answers.
    [[nodiscard]] std::string fanWriteTest();
    [[nodiscard]] std::string fanWriteTest(unsigned effectiveUserId);
    // One line about the key: its type, bytes and value.
    [[nodiscard]] std::string describe(std::string_view key);

private:
    struct Value {
        KeyInfo info;
        std::array<std::uint8_t, 32> bytes;

        [[nodiscard]] std::span<const std::uint8_t> visibleBytes() const;
        [[nodiscard]] std::optional<double> number() const;
    };

    // What to do when the fan count or the mask of forced fans is not a usable number.
    enum class Unusable { stop, carryOn };

    [[nodiscard]] std::optional<SMCParam> call(const SMCParam& input);
    [[nodiscard]] std::optional<Value> read(std::string_view key);
    [[nodiscard]] std::optional<Value> read(std::string_view key, KeyInfo keyInfo);
    [[nodiscard]] std::optional<std::string> keyAt(std::uint32_t index);
    // Number of indexes to enumerate, from "#KEY"; at most as many as a record can address.
    [[nodiscard]] std::uint64_t keyIndexEnd();
    [[nodiscard]] bool shouldStop() const;

    [[nodiscard]] std::optional<std::int64_t> usableFanCount();
    [[nodiscard]] std::optional<bool> isManualByMode(int index);
    [[nodiscard]] bool enterManualMode(std::int64_t index, bool hasUnlock);
    [[nodiscard]] bool handBack(std::int64_t index, Unusable unusable);
    void releaseUnlockIfAllAutomatic(Unusable unusable);

    std::unique_ptr<SMCTransport> transport_;
    const std::atomic<bool>* stopFlag_ = nullptr;
};

} // namespace Fenwhirl
