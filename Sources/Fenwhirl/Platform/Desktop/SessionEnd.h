// The end of the user's session (log-out, restart, shutdown), where it is another end than an ordinary quit.
//
// macOS wants the answer to "may the session end?" at once and then ends the process by itself: the event
// loop never ends in order, so nothing that waits for that would happen. There the handler is called instead.
// Linux has no such end. Its session managers ask for an ordinary quit, or send a signal (see
// TerminationSignals.h), or take the display away, which ends the process like a crash; the handler is never
// called.
//
// Threads: main thread only; one at a time, after the application object.

#pragma once

#include <functional>

class SessionEnd {
public:
    // What has to be done before the process ends must be done when `handler` returns.
    explicit SessionEnd(std::function<void()> handler);
    ~SessionEnd();
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;
    SessionEnd(SessionEnd&&) = delete;
    SessionEnd& operator=(SessionEnd&&) = delete;

private:
    std::function<void()> handler_;
};
