// Which fans return to automatic control when the application ends, however it ends: one rule for the orderly
// quit, the last act of a crash, and the guard.
//
// Pure; safe on every thread.

#pragma once

#include <span>
#include <string>
#include <vector>

// The rule's answer.
struct HandBack {
    enum class Scope {
        nothing, // run no helper
        allFans, // one run without an index
        indices, // one run for each of `indices`, one after another
    };

    Scope scope = Scope::nothing;
    std::vector<int> indices; // ascending, each once; may be empty: every known fan keeps its speed
    // Ascending, each once, none of `indices`: fans that keep their speed when the application ends, because
    // the user wants that, but not while it is silent.
    std::vector<int> pinned = {};

    bool operator==(const HandBack&) const = default;
};

namespace HandBackRule {

// A fan that the user has a setting for.
struct ConfiguredFan {
    int index;
    bool isConstant; // keeps its speed on purpose
};

// A fan that was sent a speed, or was found manual, and has not been handed back since.
struct OwnedFan {
    int index;
    bool runsAsChosen; // at exactly the constant speed that the user chose, and no safety rule holds it
};

// Nothing without a helper. Otherwise every fan that was last read, has a setting or is owned; all fans when
// none is known. A constant fan keeps its speed: without being named when it is not owned, because then there
// is nothing to hand back; among the pinned ones when it is owned and runs as chosen. Any other owned fan
// goes back.
[[nodiscard]] HandBack decide(bool isHelperInstalled, std::span<const int> fansRead,
                              std::span<const ConfiguredFan> configured,
                              std::span<const OwnedFan> owned = {});

// The helper commands that carry it out, in order: {"auto", "0"}, {"auto", "2"}, … or {"auto"}.
[[nodiscard]] std::vector<std::vector<std::string>> commands(const HandBack& handBack);

} // namespace HandBackRule
