// A machine in memory that fails as real ones do, and tells its true state.
//
// Its controller is a scripted one; everything that may go wrong lies above the table, so that the table
// always holds what the machine really does: which fans are manual, and at which targets. The helper is the
// real code over a connection of its own, so that a refused write leaves behind what it would leave behind.
//
// Threads: none of its own. Faults are changed and the state is looked at while nobody asks the controller.

#pragma once

#include "Support/ScriptedSMC.h"

#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

class FaultyMac {
public:
    // What the controller does with requests.
    enum class Mood {
        willing,
        refusesTargets, // fans become manual but keep their old target
        refusesWrites,
        silent, // answers nothing
    };

    static constexpr const char* processorSensor = "TC0P"; // the main temperature while it is there
    static constexpr const char* otherSensor = "TA0P";     // and else this one

    struct Fan {
        int index;
        double minimum;
        double maximum;
    };

    // A machine of any kind, its fans automatic: none to four fans, perhaps with a gap, with a forced mask,
    // mode keys, an unlock. The controller must be empty.
    FaultyMac(ScriptedSMC& controller, std::mt19937& generator);
    ~FaultyMac();
    FaultyMac(const FaultyMac&) = delete;
    FaultyMac& operator=(const FaultyMac&) = delete;

    // --- The truth ---
    [[nodiscard]] const std::vector<Fan>& fans() const { return fans_; }

    [[nodiscard]] bool isManual(int fan) const;
    [[nodiscard]] double target(int fan) const;
    [[nodiscard]] std::string description() const;

    // --- Faults ---
    [[nodiscard]] Mood mood() const { return mood_; }

    void setMood(Mood mood);
    void vanish(const std::string& key);
    void restore();

    [[nodiscard]] bool hasVanished(const std::string& key) const;

    [[nodiscard]] bool hasVanishedKeys() const { return !vanished_.empty(); }

    [[nodiscard]] bool acceptsHandBacks() const {
        return mood_ == Mood::willing || mood_ == Mood::refusesTargets;
    }

    // Whether a speed that is sent may fail.
    [[nodiscard]] bool mayRefuseSpeeds() const;

    // Whether a reader learns how many fans there are, and how fast this one turns.
    [[nodiscard]] bool showsFanCount() const { return mood_ != Mood::silent && !hasVanished("FNum"); }

    [[nodiscard]] bool shows(int fan) const;
    // The same, and its maximum.
    [[nodiscard]] bool canBeCooled(int fan) const;

    // --- What happens to it ---
    void setCelsius(double processor, double other);
    // Absent when the sensor cannot be read.
    [[nodiscard]] std::optional<double> celsius(const std::string& sensor) const;
    // Another program takes a fan, or hands it back.
    void takeByHand(int fan, double rpm);
    void releaseByHand(int fan);
    // The firmware forgets manual control.
    void sleepAndWake();

    // What the installed helper does with these arguments; true is success.
    [[nodiscard]] bool runHelper(const std::vector<std::string>& arguments);

private:
    [[nodiscard]] std::optional<ScriptedSMC::Reply> answer(const SMCParam& request) const;
    void setManual(int fan, bool manual);

    ScriptedSMC& controller_;
    Mood mood_ = Mood::willing;
    std::vector<Fan> fans_;
    std::set<std::uint32_t> vanished_; // codes of keys
};
