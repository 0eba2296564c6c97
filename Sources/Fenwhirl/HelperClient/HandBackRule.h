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
    // Of `indices` none, ascending, each once: fans that keep their speed when the application ends, because
    // the user wants that, but not while it is silent.
    std::vector<int> pinned = {};

    bool operator==(const HandBack&) const = default;
};

namespace HandBackRule {

// A fan that the user has a setting for.
struct ConfiguredFan {
    int index;
    bool isConstant; // pinned: keeps its speed on purpose
};

// Nothing without a helper. Otherwise every fan that was last read or has a setting, but those that are
// pinned; all fans when none is known.
[[nodiscard]] HandBack decide(bool isHelperInstalled, std::span<const int> fansRead,
                              std::span<const ConfiguredFan> configured);

// The helper commands that carry it out, in order: {"auto", "0"}, {"auto", "2"}, … or {"auto"}.
[[nodiscard]] std::vector<std::vector<std::string>> commands(const HandBack& handBack);

} // namespace HandBackRule
