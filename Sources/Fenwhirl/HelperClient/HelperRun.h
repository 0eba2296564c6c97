// Counts the helper runs under way, and can forbid new ones for good.
//
// For the last act of a dying process: it must know that no other thread sends a fan's speed after it has
// handed the fan back.
//
// Threads: safe from any thread. `forbid` and `waitForOthers` may be called by a signal handler.

#pragma once

#include <chrono>

// One helper run, from before its start to after its end.
class HelperRun {
public:
    HelperRun();
    HelperRun(const HelperRun&) = delete;
    HelperRun& operator=(const HelperRun&) = delete;
    ~HelperRun();

    // False when no helper may be started any more.
    [[nodiscard]] bool isAllowed() const { return isAllowed_; }

    static void forbid();
    // Until none is under way, or until `patience` is over.
    static void waitForOthers(std::chrono::milliseconds patience);

private:
    bool isAllowed_;
};
