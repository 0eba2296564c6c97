// A machine in memory that fails as real ones do, and reports its true state.
//
// Its controller is a scripted one. All faults lie above the table, so the table always contains what the
// machine really does: which fans are manual, and at which targets. The helper is the real code over a
// connection of its own, so a refused write has the same consequences as with the real helper.
//
// Threads: none of its own. Faults may be changed and the state inspected only while no request is in
// progress.

#pragma once

#include "Support/ScriptedSMC.h"

#include <cstdint>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Fenwhirl {

class FaultyMac {
public:
    // How the controller reacts to requests.
    enum class Mood {
        willing,
        refusesTargets, // fans become manual but keep their old target
        refusesWrites,
        silent, // never answers
    };

    static constexpr const char* processorSensor = "TC0P"; // the main temperature while it is readable
    static constexpr const char* otherSensor = "TA0P";     // the main temperature otherwise

    struct Fan {
        int index;
        double minimum;
        double maximum;
    };

    // A machine of a random kind with automatic fans: none to four fans, possibly with a gap in their
    // numbers, with a mask, mode keys or an unlock. The controller must be empty.
    FaultyMac(ScriptedSMC& controller, std::mt19937& generator);
    ~FaultyMac();
    FaultyMac(const FaultyMac&) = delete;
    FaultyMac& operator=(const FaultyMac&) = delete;

    // --- The true state ---
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

    // Whether sending a speed may fail.
    [[nodiscard]] bool mayRefuseSpeeds() const;

    // Whether a client can read the number of fans.
    [[nodiscard]] bool showsFanCount() const { return mood_ != Mood::silent && !hasVanished("FNum"); }

    // Whether a client can read the number of fans and this fan's speed.
    [[nodiscard]] bool shows(int fan) const;
    // Whether it can read this fan's maximum as well.
    [[nodiscard]] bool canBeCooled(int fan) const;

    // --- Events ---
    void setCelsius(double processor, double other);
    // The sensor's temperature; nothing when it cannot be read.
    [[nodiscard]] std::optional<double> celsius(const std::string& sensor) const;
    // Another program takes a fan over, or hands it back.
    void takeOver(int fan, double rpm);
    void releaseFan(int fan);
    // The firmware forgets manual control.
    void sleepAndWake();

    // Does what the installed helper does with these arguments; returns whether it succeeded.
    [[nodiscard]] bool runHelper(const std::vector<std::string>& arguments);

private:
    [[nodiscard]] std::optional<ScriptedSMC::Reply> answer(const SMCParam& request) const;
    void setManual(int fan, bool manual);

    ScriptedSMC& controller_;
    Mood mood_ = Mood::willing;
    std::vector<Fan> fans_;
    std::set<std::uint32_t> vanished_; // key codes
};

} // namespace Fenwhirl
