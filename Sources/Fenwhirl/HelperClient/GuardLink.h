// The application's end of the pipe to its guard (Sources/Guard): starts the guard, keeps it informed, sends
// it signs of life, and replaces it when it is lost.
//
// Never blocks on the guard: what the pipe does not accept now is sent with the next call. From the first
// start on, the process ignores SIGPIPE, because writing to a guard that died must not kill the application.
//
// Threads: one at a time. Ownership: the guard is a child of this process; it recognises the end of this
// object, or of the process, by the end of the pipe.

#pragma once

#include "Fenwhirl/HelperClient/HandBackRule.h"
#include "Fenwhirl/Platform/Toolkit/FileDescriptor.h"

#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace Fenwhirl {

class GuardLink {
public:
    // `started` is called with the process ID of each guard, including the first, as soon as it was started.
    explicit GuardLink(std::string guardPath, std::function<void(pid_t)> started = {});
    GuardLink(const GuardLink&) = delete;
    GuardLink& operator=(const GuardLink&) = delete;
    // Without a preceding `finish`, the guard acts.
    ~GuardLink();

    // Tells the guard what to hand back from now on; does nothing after `finish`.
    void send(const HandBack& handBack);

    // Starts a new guard, with the last record, when there is none. Otherwise sends whatever the pipe did not
    // accept before, or else a sign of life. A guard that receives neither acts after
    // GuardRecord::silenceTimeoutSeconds.
    void keepAlive();

    // Dismisses the guard: it ends without acting, and no new one is started.
    void finish();

    // The process ID of the guard, if one is running as far as this object knows.
    [[nodiscard]] std::optional<pid_t> guard() const { return guard_; }

    // The record for a hand-back, including the line end.
    [[nodiscard]] static std::string record(const HandBack& handBack);

private:
    void start();
    void flush();
    [[nodiscard]] bool hasGuardEnded();

    std::string guardPath_;
    std::function<void(pid_t)> started_;
    std::optional<pid_t> guard_;
    FileDescriptor pipe_;
    std::string record_;        // the last record, for a new guard
    std::string pending_;       // what the pipe has not accepted yet
    bool isWithinLine_ = false; // the beginning of the first pending line has been sent already
    bool isFinished_ = false;
};

} // namespace Fenwhirl
