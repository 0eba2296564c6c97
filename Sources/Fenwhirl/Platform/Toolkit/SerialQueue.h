// A named thread that runs the work handed to it, one piece at a time, in the order in which it was handed
// over.
//
// State that only this work uses needs no lock: it belongs to the queue, as widgets belong to the main
// thread. The label names the thread in debuggers and process listings, as far as the system has room for it
// (Linux keeps 15 characters).
//
// The destructor runs all the work that was handed over and then joins the thread. The queue must therefore
// not be destroyed by its own work, and an owner whose members the work uses declares the queue last. Work
// that is handed over by other work during the destruction still runs.
//
// Threads: `async`, `every`, `sync` and `isCurrent` from any thread. A call of `sync` on the queue's own thread would
// deadlock; it is a programming error that aborts the process. Work must not throw.

#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

namespace Fenwhirl {

class SerialQueue {
public:
    explicit SerialQueue(std::string label);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    SerialQueue(SerialQueue&&) = delete;
    SerialQueue& operator=(SerialQueue&&) = delete;

    // Hands work over and returns at once.
    void async(std::function<void()> work);
    // The same, but ahead of all work that is waiting.
    void asyncNext(std::function<void()> work);
    // Runs the work each time this period has passed, beginning one period from now, until the queue is destroyed.
    // Waiting work goes first; a time that is missed by a whole period is left out. It needs no other thread and no
    // event loop, so it costs one wake-up each time. A second call replaces the work of the first.
    void every(std::chrono::milliseconds period, std::function<void()> work);
    // Hands work over and returns when it, and all work that was handed over before it, has run.
    void sync(const std::function<void()>& work);
    // Whether the caller runs on this queue.
    [[nodiscard]] bool isCurrent() const;

private:
    using Clock = std::chrono::steady_clock;

    struct Recurrence {
        std::chrono::milliseconds period;
        Clock::time_point due;
        std::shared_ptr<const std::function<void()>> work;
    };

    void run();
    // The next piece of work, after a wait if necessary; empty at the end.
    [[nodiscard]] std::function<void()> next();

    [[nodiscard]] bool hasNews() const { return ending_ || !pending_.empty(); }

    std::string label_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> pending_; // guarded by mutex_
    std::optional<Recurrence> recurrence_;      // guarded by mutex_
    bool ending_ = false;                       // guarded by mutex_
    std::thread thread_;                        // last, because the thread uses the members above
};

} // namespace Fenwhirl
