// How long the events of the main thread had to wait.
//
// On a busy computer a thread waits now and then through no fault of its own; what waits for something that
// hangs waits every time. So a test takes the best of a few attempts.

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>

// What a person does not notice.
inline constexpr std::chrono::milliseconds bearablePause{100};

// The longest pause between two turns of the event loop while `begin` runs in it and then for as long as
// `isOver` says no, half a minute at most. The shortest of at most `attempts`; no further one is made after a
// bearable one.
[[nodiscard]] inline std::chrono::milliseconds
longestPause(const std::function<void()>& begin, const std::function<bool()>& isOver, int attempts = 5) {
    auto best = std::chrono::milliseconds::max();
    for (int attempt = 0; attempt < attempts && best >= bearablePause; ++attempt) {
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
