// The end of the user's session (log-out, restart, shutdown), on systems where it differs from an ordinary
// quit.
//
// macOS requires an immediate answer to "may the session end?" and then ends the process itself. The event
// loop never finishes normally, so nothing that waits for its end would run; the handler is called instead.
// On Linux there is no such end. Session managers request an ordinary quit, send a signal (see
// TerminationSignals.h), or take the display away, which ends the process like a crash; the handler is never
// called.
//
// Threads: main thread only; one object at a time, created after the application object.

#pragma once

#include <functional>

namespace Fenwhirl {

class SessionEnd {
public:
    // When `handler` returns, everything that must happen before the process ends must be done.
    explicit SessionEnd(std::function<void()> handler);
    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;
    SessionEnd(SessionEnd&&) = delete;
    SessionEnd& operator=(SessionEnd&&) = delete;

private:
    std::function<void()> handler_;
};

} // namespace Fenwhirl
