// The application's end of the pipe to its guard (Sources/Guard): starts it, keeps it informed, gives it
// signs of life, replaces it when it is lost.
//
// Never blocks on the guard: what the pipe does not take now is sent with the next call. The process ignores
// SIGPIPE from the first start on, because a guard that died is replaced, not died of.
//
// Threads: one at a time. Ownership: the guard is a child of this process; it notices the end of this object,
// or of the process, by the end of the pipe.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "Fenwhirl/Platform/FileDescriptor.h"

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

class GuardLink {
public:
    // `started` is told of each guard, the first one included, by the call that starts it.
    explicit GuardLink(std::string guardPath, std::function<void(pid_t)> started = {});
    GuardLink(const GuardLink&) = delete;
    GuardLink& operator=(const GuardLink&) = delete;
    // Without `finish` before, the guard acts.
    ~GuardLink();

    // Tells what the guard has to hand back from now on; nothing after `finish`.
    void send(const HandBack& handBack);

    // Starts a new guard, with the last record, when there is none. Otherwise sends a sign of life, without
    // which the guard acts after GuardRecord::secondsOfSilence, or what the pipe did not take before.
    void keepAlive();

    // Dismisses the guard: it ends without acting, and no new one is started.
    void finish();

    // The guard's process, if one is running as far as this object knows.
    [[nodiscard]] std::optional<pid_t> guard() const { return guard_; }

    // The record for a hand-back, with its line end.
    [[nodiscard]] static std::string record(const HandBack& handBack);

private:
    void start();
    void flush();
    [[nodiscard]] bool hasGuardEnded();

    std::string guardPath_;
    std::function<void(pid_t)> started_;
    std::optional<pid_t> guard_;
    FileDescriptor pipe_;
    std::string record_;        // the last one, for a new guard
    std::string pending_;       // what the pipe has not taken yet
    bool isWithinLine_ = false; // the pipe has taken the beginning of the first line of it
    bool isFinished_ = false;
};
