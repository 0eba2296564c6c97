// A named thread with an event loop, for one piece of work that lives by signals: a request over the network.
//
// The work is given the loop, makes its objects, runs the loop until it has what it wants and returns; with
// it the thread ends. The destructor ends the loop, whether it runs already or not yet, and waits for the
// work to return: an owner whose members the work touches declares the thread last.
//
// The library's own thread class would do as much, but what passes between it and its maker passes through
// the library's locks, which the thread sanitizer cannot see. Here every hand-over is one that it can check.
//
// Threads: made and destroyed on one thread, not by its own work. Work must not throw.

#pragma once

#include "Fenwhirl/Platform/Threads.h"

#include <functional>
#include <string>
#include <thread>

class QEventLoop;

class EventLoopThread {
public:
    // Runs `QEventLoop::exec` itself, once.
    using Work = std::function<void(QEventLoop& loop)>;

    EventLoopThread(std::string label, Work work);
    ~EventLoopThread();
    EventLoopThread(const EventLoopThread&) = delete;
    EventLoopThread& operator=(const EventLoopThread&) = delete;
    EventLoopThread(EventLoopThread&&) = delete;
    EventLoopThread& operator=(EventLoopThread&&) = delete;

    // Lets a loop end as soon as it runs, also when it does not yet. Any thread, while the loop exists.
    static void end(QEventLoop& loop);

private:
    void run();

    const std::string label_;
    const Work work_;
    Mutex mutex_;
    QEventLoop* loop_ FENWHIRL_GUARDED_BY(mutex_) = nullptr; // while the work has it
    bool ending_ FENWHIRL_GUARDED_BY(mutex_) = false;
    std::thread thread_; // last: it starts when all the above is ready
};
