// Runs the event loop until something is true.
//
// Conditions are looked at after each event of the calling thread, and a hundred times a second for what no event
// announces. Between these looks the thread sleeps: a test that waits leaves the processor to the other threads and to
// the other tests. Needs an application object (QtTestMain.cpp).

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>

#include <chrono>
#include <functional>

namespace Fenwhirl {

// Returns whether the condition became true within the limit, which is generous because a busy computer must not fail a test.
[[nodiscard]] inline bool waitUntil(const std::function<bool()>& condition,
                                    std::chrono::milliseconds limit = std::chrono::minutes(1)) {
    const QDeadlineTimer deadline(limit);
    QTimer looks;
    looks.start(std::chrono::milliseconds(10));
    while (!condition()) {
        if (deadline.hasExpired()) {
            return false;
        }
        // Not the overload with a time, which ignores WaitForMoreEvents and would keep a processor busy.
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace Fenwhirl
