// Measures how long the events of the main thread have to wait.
//
// On a busy computer any thread is delayed now and then. Code that blocks the main thread delays it in every
// attempt. Tests therefore take the best of several attempts.

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

// The longest pause that a person does not notice.
inline constexpr std::chrono::milliseconds acceptablePause{100};

// Runs `begin` in the event loop, then waits until `isOver` returns true, for at most half a minute. Returns
// the longest pause between two turns of the event loop. Repeats this until the pause is bearable, up to
// `attempts` times, and returns the shortest result.
[[nodiscard]] inline std::chrono::milliseconds
longestPause(const std::function<void()>& begin, const std::function<bool()>& isOver, int attempts = 5) {
    auto best = std::chrono::milliseconds::max();
    for (int attempt = 0; attempt < attempts && best >= acceptablePause; ++attempt) {
        QElapsedTimer sinceLast;
        qint64 longest = 0;
        QTimer pulse;
        QObject::connect(&pulse, &QTimer::timeout, &pulse,
                         [&] { longest = std::max(longest, sinceLast.restart()); });
        sinceLast.start();
        pulse.start(std::chrono::milliseconds(1));
        QTimer::singleShot(0, &pulse, begin);
        bool begun = false;
        QTimer::singleShot(0, &pulse, [&begun] { begun = true; });
        const QDeadlineTimer deadline(std::chrono::seconds(30));
        while ((!begun || !isOver()) && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        }
        longest = std::max(longest, sinceLast.elapsed());
        best = std::min(best, std::chrono::milliseconds(longest));
    }
    return best;
}
