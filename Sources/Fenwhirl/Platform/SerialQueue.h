// A named thread that runs the work handed to it, one piece after the other, in the order of handing over.
//
// State that only such pieces touch needs no lock: it belongs to the queue, as widgets belong to the main
// thread. The label names the thread in debuggers and process listings, as far as the system has room for it
// (Linux keeps 15 characters).
//
// The destructor lets everything run that was handed over, then joins the thread; hence it must not be
// destroyed by its own work, and an owner whose members the work touches declares the queue last. Work
// handed over by work that runs during the destruction still runs.
//
// Threads: `async`, `sync` and `isCurrent` from any thread; `sync` from the queue itself would wait for
// itself and is a programming error that ends the process. Work must not throw.

#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

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
    // The same, but before everything that waits.
    void asyncNext(std::function<void()> work);
    // Hands work over and returns when it has run, and with it all that was handed over before.
    void sync(const std::function<void()>& work);
    // Whether the caller runs on this queue.
    [[nodiscard]] bool isCurrent() const;

private:
    void run();

    std::string label_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> pending_; // guarded by mutex_
    bool ending_ = false;                       // guarded by mutex_
    std::thread thread_;                        // last: it starts when all the above is ready
};
