// Decides which fans return to automatic control when the application ends, however it ends. The same rule
// applies to a normal quit, to a crash and to the guard.
//
// Pure; safe on every thread.

#pragma once

#include <span>
#include <string>
#include <vector>

namespace Fenwhirl {

// The decision.
struct HandBack {
    enum class Scope {
        nothing, // run no helper
        allFans, // one run without an index
        indices, // one run for each of `indices`, one after another
    };

    Scope scope = Scope::nothing;
    std::vector<int> indices; // ascending, without duplicates; may be empty: every known fan keeps its speed
    // Ascending, without duplicates, disjoint from `indices`: fans that keep their speed when the application
    // ends, because the user wants that, but not while the application is silent.
    std::vector<int> pinned = {};

    bool operator==(const HandBack&) const = default;
};

namespace HandBackRule {

// A fan for which the user has made a setting.
struct ConfiguredFan {
    int index;
    bool isConstant; // keeps its speed on purpose
};

// A fan that was sent a speed, or was found under manual control, and has not been handed back since.
struct OwnedFan {
    int index;
    bool runsAsChosen; // at exactly the constant speed that the user chose, not overridden by a safety rule
};

// Without a helper, nothing is handed back. Otherwise the decision covers every fan that was last read, has a
// setting or is owned; if there is no such fan, it is "all fans". A fan with a constant setting keeps its
// speed: if it is not owned, it is not listed at all, because there is nothing to hand back; if it is owned
// and runs as chosen, it is listed as pinned. Every other fan goes back.
[[nodiscard]] HandBack decide(bool isHelperInstalled, std::span<const int> fansRead,
                              std::span<const ConfiguredFan> configured,
                              std::span<const OwnedFan> owned = {});

// The helper commands that carry out the decision, in order: {"auto", "0"}, {"auto", "2"}, … or {"auto"}.
[[nodiscard]] std::vector<std::vector<std::string>> commands(const HandBack& handBack);

} // namespace HandBackRule

} // namespace Fenwhirl
