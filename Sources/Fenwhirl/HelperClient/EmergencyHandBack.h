// Hands the fans back when the application cannot do it itself: from inside a fatal signal, and, where the
// system has a guard, after the process was killed.
//
// Whoever owns the fans tells this object, at the start and at each change, what would have to be handed back
// at that moment (HandBackRule.h); from then on nothing more needs to be computed when it comes to it.
//
// Threads: main thread only. One object for the life of the process.
// Ownership: the guard process belongs to this object and ends by itself after it.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"

#include <memory>
#include <optional>
#include <string>

class EmergencyHandBack {
public:
    // Installs the last act and starts the guard of `guardPath`, if there is one.
    EmergencyHandBack(std::string helperPath, const std::optional<std::string>& guardPath);
    EmergencyHandBack(const EmergencyHandBack&) = delete;
    EmergencyHandBack& operator=(const EmergencyHandBack&) = delete;
    // Without `finish` before, the guard takes this end for a crash.
    ~EmergencyHandBack();

    // For the product's own helper and the guard of this installation.
    [[nodiscard]] static std::unique_ptr<EmergencyHandBack> forThisInstallation();

    // What is to be handed back from now on; cheap when nothing changed.
    void update(const HandBack& handBack);

    // To be called every few seconds: replaces a guard that was lost.
    void keepAlive();

    // The fans have been handed back in order: neither guard nor last act has anything left to do.
    void finish();

private:
    struct Private;
    std::unique_ptr<Private> d_;
};
