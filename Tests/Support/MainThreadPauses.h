// Measures how long the events of the main thread have to wait.
//
// What counts is what the main thread does, not how busy the computer is. A turn of the event loop in which
// the thread waits for nothing counts with the processor time that it uses; the rest of the turn was taken by
// other programs. A turn in which it does wait counts in full, because nobody can tell how long it would have
// waited on an idle computer. Code that blocks the main thread does so in every attempt, a busy computer only
// in some. Tests therefore take the best of several attempts.

#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <functional>
#include <sys/resource.h>
#include <thread>

namespace Fenwhirl {

// The longest pause that a person does not notice.
inline constexpr std::chrono::milliseconds acceptablePause{100};

// Runs one turn of the event loop, which handles the events that are there and does not wait for more.
// Returns how long later events had to wait for its end.
[[nodiscard]] inline std::chrono::milliseconds pauseOfOneTurn() {
    using namespace std::chrono;
    const auto begin = steady_clock::now();
#ifdef RUSAGE_THREAD
    const auto processorTime = [](const rusage& use) {
        return seconds(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
               microseconds(use.ru_utime.tv_usec + use.ru_stime.tv_usec);
    };
    rusage before{};
    rusage after{};
    const bool isKnown = getrusage(RUSAGE_THREAD, &before) == 0;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    // A voluntary context switch is a wait: for another thread or process, a file, or the time.
    if (isKnown && getrusage(RUSAGE_THREAD, &after) == 0 && after.ru_nvcsw == before.ru_nvcsw) {
        return ceil<milliseconds>(processorTime(after) - processorTime(before));
    }
#else // this system does not count the waits of a single thread
    QCoreApplication::processEvents(QEventLoop::AllEvents);
#endif
    return ceil<milliseconds>(steady_clock::now() - begin);
}

// Runs `begin` in the event loop, then waits until `isOver` returns true, for at most half a minute. Returns
// the longest pause that a turn of the event loop caused. Repeats this until the pause is bearable, up to
// `attempts` times, and returns the shortest result.
[[nodiscard]] inline std::chrono::milliseconds
longestPause(const std::function<void()>& begin, const std::function<bool()>& isOver, int attempts = 10) {
    auto best = std::chrono::milliseconds::max();
    for (int attempt = 0; attempt < attempts && best >= acceptablePause; ++attempt) {
        std::chrono::milliseconds longest{0};
        bool begun = false;
        QObject context;
        QTimer::singleShot(0, &context, [&begin, &begun] {
            begin();
            begun = true;
        });
        const QDeadlineTimer deadline(std::chrono::seconds(30));
        while ((!begun || !isOver()) && !deadline.hasExpired()) {
            longest = std::max(longest, pauseOfOneTurn());
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // not in a turn, so it is not measured
        }
        best = std::min(best, longest);
    }
    return best;
}

} // namespace Fenwhirl
