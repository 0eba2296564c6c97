// Counts the helper runs in progress, and can forbid new ones permanently.
//
// Used when the process dies of a fatal signal (CrashHandBack.h): after it has handed a fan back, no other thread
// may send that fan a speed.
//
// Threads: safe from any thread. `forbid` and `waitForOthers` may be called by a signal handler.

#pragma once

#include <chrono>

namespace Fenwhirl {

// One helper run, from before its start until after its end.
class HelperRun {
public:
    HelperRun();
    HelperRun(const HelperRun&) = delete;
    HelperRun& operator=(const HelperRun&) = delete;
    ~HelperRun();

    // False when no helper may be started any more.
    [[nodiscard]] bool isAllowed() const { return isAllowed_; }

    static void forbid();
    // Waits until no run is in progress, or until `patience` has passed.
    static void waitForOthers(std::chrono::milliseconds patience);

private:
    bool isAllowed_;
};

} // namespace Fenwhirl
